// What ln and log1p of double precision share.
#pragma once
#include "ln/log.hpp"

namespace orx::tef {
extern const double _tefdLnHATab[513][2];
extern const double kLnLaTable[513][2];
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dLnData {
  Row<double> unit = 1.0;
  Row<double> L_hi = 0x1.62e42fefap-1;
  Row<double> L_lo = 0x1.cf79abc9ep-40;
  Row<double> L = 0x1.62e42fefa39efp-1;
  // (ln(1 + e) - e) / e^2, |e| <= 2^-9.5, to 2^-64.5 of ln(1 + e)
  Row<double> c[5] = {-0.5, 0x1.555555555458fp-2, -0x1.0000000001bc4p-2, 0x1.9999cc8e83a81p-3,
                      -0x1.55554833ee671p-3};
};
struct dLnLaData {
  // the same to 2^-54 of ln(1 + e), and to 2^-32.4 of ln(1 + e)
  Row<double> c[4] = {-0x1.ffffffffff2a6p-2, 0x1.555555555715cp-2, -0x1.00001ab0264ap-2,
                      0x1.9999894bc8ddbp-3};
  Row<double> ep_c2 = -0x1.00000c0277b22p-1, ep_c3 = 0x1.5555517ebad38p-2;
};

struct LnDescription {
  static constexpr dLnData kData{};
  static constexpr dLnLaData kLaData{};
  static constexpr int kFirst = 512;
  static constexpr const double (*kTable)[2] = _tefdLnHATab;
  static constexpr const double (*kLaTable)[2] = kLnLaTable;
  static constexpr float kUnit = 1.0f;

  // ln(1 + e) - e
  template <class X>
  static X polynomial_ha(X e) {
    const X e2 = e * e;
    return e2 * polynomial(e, e2, kData.c);
  }
  template <bool ep, class X>
  static X polynomial_la(X e) {
    const X e2 = e * e;
    if constexpr (ep)
      return e2 * multiply_add(e, kLaData.ep_c3, kLaData.ep_c2);
    else
      return e2 * polynomial(e, e2, kLaData.c);
  }
  static int cout_rare(const double* a, double* r);
};

// ln x where the vector code does not take it; the status to report.
inline int vdln_cout_rare(const double* a, double* r) { return log_cout_rare<LnDescription>(a, r); }
inline int LnDescription::cout_rare(const double* a, double* r) { return vdln_cout_rare(a, r); }

ORX_ISA_END
