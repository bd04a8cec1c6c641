// What the right result is, by MPFR.
#pragma once
#include <mpfr.h>

#include <cfloat>
#include <string>
#include <vector>

template <class T>
struct Format;
template <>
struct Format<float> {
  static constexpr int kDigits = FLT_MANT_DIG, kEnd = FLT_MAX_EXP, kLowUnit = FLT_MIN_EXP - FLT_MANT_DIG;
};
template <>
struct Format<double> {
  static constexpr int kDigits = DBL_MANT_DIG, kEnd = DBL_MAX_EXP, kLowUnit = DBL_MIN_EXP - DBL_MANT_DIG;
};

// How a function is judged, and where its difficult arguments lie.
struct JudgedFunction {
  const char* name;
  // The exact result, rounded to the precision of r. x holds the inputs, then the scalars.
  int (*exact)(mpfr_ptr r, const mpfr_t* x);
  // The same to about 1 ulp of double for inputs that are singles, in no time; null if there is none.
  double (*quick)(double x) = nullptr;
  // Thresholds and other points around which consecutive arguments are tried, besides 0, 1 and -1.
  std::vector<double> points = {};
  // Steps of reductions: arguments around random multiples, and midpoints, of these are tried.
  std::vector<double> steps = {};
  // Published arguments whose results lie extremely near to a double or the middle of two.
  std::vector<double> hard = {};
  // Enough that the rounding to this precision hides no bit that matters to the rounding to double.
  int precision = 192;
  // Where the error of the formula itself has no bound because of cancellation, it is measured without: all
  // inputs and scalars are positive, so that sums do not cancel, and far from the ends of the range.
  bool moderate_positive = false;
};

const JudgedFunction* find_judge(const std::string& function);

// The exact result of one element, in the terms of a format: (nearest + rest) 2^unit, where `nearest` is an
// integer and 2^unit the weight of the last place of the exact result rounded to the format, and the spacing
// of denormals at least. `nearest` 2^unit is that rounded result; the range has no upper end here.
struct ExactResult {
  enum { kNumber, kInfinite, kNan } kind;
  bool negative;
  int unit;
  double nearest, rest;
};

// Works out exact results, one at a time.
class Judge {
 public:
  explicit Judge(const JudgedFunction& function);
  ~Judge();
  Judge(const Judge&) = delete;
  Judge& operator=(const Judge&) = delete;

  // `x` holds the inputs and the scalars of one element.
  template <class T>
  ExactResult operator()(const T* x, int count);

 private:
  static constexpr int kMost = 6;
  const JudgedFunction& function_;
  mpfr_t x_[kMost], y_, units_;
};

// How a computed result compares with the exact one.
struct Verdict {
  bool wrong;    // of another kind (NaN, infinity, number) than it has to be, or a zero of the wrong sign
  bool correct;  // it is the exact result rounded to nearest
  double error;  // in units of the last place
};

template <class T>
Verdict compare(const ExactResult& exact, T computed);
