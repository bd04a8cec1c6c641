// Rows of the gamma functions' tables, for vectors.
#pragma once
#include "frame/row_polynomial.hpp"

ORX_ISA_BEGIN(orx::tef)

struct GammaRowData {
  Row<double> rows = 8.0, width = 0.125, shifter = 0x1.8p+52;
};
inline constexpr GammaRowData kGammaRowData{};

// The row of the nearest eighth, from 1 on, and the distance from there.
template <class X>
class GammaRow {
 public:
  X r;

  explicit GammaRow(X s) : GammaRow(s, multiply_add(s, kGammaRowData.rows, kGammaRowData.shifter)) {}
  int operator()(int lane) const { return words_.low(lane) - 8; }

 private:
  SpilledWords<X> words_;

  GammaRow(X s, X N) : r(subtract_product(s, N - kGammaRowData.shifter, kGammaRowData.width)), words_(N) {}
};

ORX_ISA_END
