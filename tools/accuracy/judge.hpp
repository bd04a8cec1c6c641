// How computed results compare with exact ones.
#pragma once
#include <cfloat>
#include <vector>

#include "formulas.hpp"

namespace orx {

template <class R>
struct Format;
template <>
struct Format<float> {
  static constexpr int digits = FLT_MANT_DIG, end = FLT_MAX_EXP, low_unit = FLT_MIN_EXP - FLT_MANT_DIG;
};
template <>
struct Format<double> {
  static constexpr int digits = DBL_MANT_DIG, end = DBL_MAX_EXP, low_unit = DBL_MIN_EXP - DBL_MANT_DIG;
};

// One real number of an exact result, in the terms of a format: (nearest + rest) 2^unit, where `nearest` is an integer
// and 2^unit the weight of the last place of the exact result rounded to the format, and the spacing of denormals at
// least. `nearest` 2^unit is that rounded result; the range has no upper end here.
struct ExactResult {
  enum { kNumber, kInfinite, kNaN } kind;
  bool negative;
  int unit;
  double nearest, rest;
};

// Works out exact results of a function, one element at a time.
class Judge {
 public:
  explicit Judge(const Function& function);
  ~Judge();
  Judge(const Judge&) = delete;
  Judge& operator=(const Judge&) = delete;

  bool known() const { return formula_.known(); }

  // `x` holds the inputs and the scalars of one element, `exact` gets its results.
  template <class R>
  void operator()(const R* x, ExactResult* exact);

 private:
  const Formula formula_;
  const int numbers_in_, numbers_out_;
  mpfr_t x_[kMostColumns], y_[2], units_;
};

// How a computed element compares with the exact one.
struct Verdict {
  bool wrong;    // of another kind (NaN, infinity, number) than it has to be, or a zero of the wrong sign
  bool correct;  // it is the exact result rounded to nearest
  double error;  // in units of the last place
};

// How strict the comparison is.
struct Measure {
  int floor_unit = -100000;  // ulps are not finer than 2^floor_unit
  bool norm_wise = false;    // the distance in the complex plane, in units of 2^-52 or 2^-23 of the modulus
  bool zero_signs_free = false;
};
// What the descriptor asks of a kernel's class.
Measure measure_of(const Function& function, const Kernel& kernel);

// Of `count` results that make one element.
template <class R>
Verdict compare(const ExactResult* exact, const R* computed, int count, const Measure& measure);

}  // namespace orx
