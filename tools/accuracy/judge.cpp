#include "judge.hpp"

#include <cmath>
#include <limits>

namespace {

constexpr double kLn2 = 0x1.62e42fefa39efp-1, kLog102 = 0x1.34413509f79ffp-2;

template <int (*f)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t)>
int unary(mpfr_ptr r, const mpfr_t* x) {
  return f(r, x[0], MPFR_RNDN);
}
template <int (*f)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t)>
int binary(mpfr_ptr r, const mpfr_t* x) {
  return f(r, x[0], x[1], MPFR_RNDN);
}
int absolute(mpfr_ptr r, const mpfr_t* x) { return mpfr_abs(r, x[0], MPFR_RNDN); }

// (a scalea + shifta) / (b scaleb + shiftb)
int linear_fraction(mpfr_ptr r, const mpfr_t* x) {
  mpfr_t denominator;
  mpfr_init2(denominator, mpfr_get_prec(r));
  mpfr_fma(denominator, x[1], x[4], x[5], MPFR_RNDN);
  mpfr_fma(r, x[0], x[2], x[3], MPFR_RNDN);
  const int inexact = mpfr_div(r, r, denominator, MPFR_RNDN);
  mpfr_clear(denominator);
  return inexact;
}

// Sums of two doubles are exact with this many bits.
constexpr int kSumPrecision = 2112;

// The published arguments: V. Lefevre, J.-M. Muller, "Worst cases for correct rounding of the elementary
// functions in double precision", 15th IEEE Symposium on Computer Arithmetic, 2001, and the tables that grew
// out of it.
const JudgedFunction kJudged[] = {
    {"Abs", absolute, std::fabs},
    {"Add", binary<mpfr_add>, nullptr, {}, {}, {}, kSumPrecision},
    {"Exp",
     unary<mpfr_exp>,
     std::exp,
     {708.3956, 708.3964185322641, -708.3964185322641, 709.782712893384, -745.1332191019411,
      -744.4400719213812, 87.33654, -87.33654, 88.72283, -103.97208, -103.27893},
     {kLn2, kLn2 / 4, kLn2 / 64, kLn2 / 128, kLn2 / 1024},
     {-0x1.12d31a20fb38bp5, 0x1.83d4bcdebb3f4p2, -0x1.a2fefefd580dfp-13, 0x1.9e9cbbfd6080bp-31,
      -0x1.ed318efb627eap-27, 0x1.fffffffffffffp-53}},
    {"Expm1",
     unary<mpfr_expm1>,
     std::expm1,
     {707.703271352, -707.703271352, 709.782712893384, 88.72283, -36.7368, -37.42994775, -17.3286795, 0.5,
      -0.5, kLn2, -kLn2},
     {kLn2, kLn2 / 4, kLn2 / 64, kLn2 / 128, kLn2 / 1024},
     {-0x1.19e53fcd490d0p-23, 0x1.fffffffffffffp-54}},
    {"LinearFrac", linear_fraction, nullptr, {}, {}, {}, 256, true},
    {"Ln",
     unary<mpfr_log>,
     std::log,
     {0.5, 2, 2.0 / 3, 4.0 / 3, 1.41421356237309504, 0.70710678118654752, 724.0 / 512, 512.0 / 724,
      1.009765625, 0.990234375},
     {1.0 / 512},
     {0x1.26e9c4d327960p-232, 0x1.613955dc802f8p-35, 0x1.62a88613629b6p678}},
    {"Log10",
     unary<mpfr_log10>,
     std::log10,
     {0.5, 2, 10, 100, 1e10, 1e22, 2.0 / 3, 4.0 / 3, 1.41421356237309504, 0.70710678118654752, 1.005859375,
      0.994140625},
     {1.0 / 512, kLog102},
     {0x1.e12d66744ff81p429}},
    {"Log1p",
     unary<mpfr_log1p>,
     std::log1p,
     {-0.5, -1.0 / 3, 1.0 / 3, 0.41421356237309504, -0.29289321881345248, 1e16, 0x1p-27, -0x1p-27, 0x1p-53,
      -0x1p-53, 0x1p53, 0x1p54},
     {1.0 / 512}},
    {"Mul", binary<mpfr_mul>},
    {"Sqr", unary<mpfr_sqr>, [](double x) { return x * x; }},
    {"Sub", binary<mpfr_sub>, nullptr, {}, {}, {}, kSumPrecision},
};

}  // namespace

const JudgedFunction* find_judge(const std::string& function) {
  for (const JudgedFunction& f : kJudged)
    if (function == f.name) return &f;
  return nullptr;
}

Judge::Judge(const JudgedFunction& function) : function_(function) {
  for (mpfr_ptr x : x_) mpfr_init2(x, DBL_MANT_DIG);
  mpfr_init2(y_, function.precision);
  mpfr_init2(units_, function.precision);
}

Judge::~Judge() {
  for (mpfr_ptr x : x_) mpfr_clear(x);
  mpfr_clear(y_);
  mpfr_clear(units_);
}

template <class T>
ExactResult Judge::operator()(const T* x, int count) {
  for (int i = 0; i < count; ++i) mpfr_set_d(x_[i], x[i], MPFR_RNDN);
  mpfr_clear_flags();
  function_.exact(y_, x_);

  ExactResult e{ExactResult::kNumber, mpfr_signbit(y_) != 0, Format<T>::kLowUnit, 0, 0};
  if (mpfr_nan_p(y_)) {
    e.kind = ExactResult::kNan;
  } else if (mpfr_inf_p(y_) && !mpfr_overflow_p()) {
    e.kind = ExactResult::kInfinite;
  } else if (mpfr_inf_p(y_)) {  // beyond even MPFR's range
    e.nearest = mpfr_get_d(y_, MPFR_RNDZ);
  } else if (!mpfr_zero_p(y_)) {
    const int exponent = static_cast<int>(mpfr_get_exp(y_));
    const int high_unit = Format<T>::kEnd - Format<T>::kDigits;
    e.unit = std::min(std::max(exponent - Format<T>::kDigits, Format<T>::kLowUnit), high_unit);
    mpfr_mul_2si(units_, y_, -e.unit, MPFR_RNDN);
    // Rounding up may lead to the next power of two, where the places are twice as large.
    if (e.unit < high_unit &&
        std::fabs(mpfr_get_d(units_, MPFR_RNDN)) >= std::ldexp(1.0, Format<T>::kDigits) - 0.5) {
      ++e.unit;
      mpfr_mul_2si(units_, y_, -e.unit, MPFR_RNDN);
    }
    mpfr_rint(y_, units_, MPFR_RNDN);
    e.nearest = mpfr_get_d(y_, MPFR_RNDN);
    mpfr_sub(units_, units_, y_, MPFR_RNDN);
    e.rest = mpfr_get_d(units_, MPFR_RNDN);
  }
  return e;
}

template ExactResult Judge::operator()(const float*, int);
template ExactResult Judge::operator()(const double*, int);

template <class T>
Verdict compare(const ExactResult& exact, T computed) {
  constexpr Verdict right{false, true, 0}, wrong{true, false, std::numeric_limits<double>::infinity()};
  if (exact.kind == ExactResult::kNan) return std::isnan(computed) ? right : wrong;
  if (exact.kind == ExactResult::kInfinite)
    return std::isinf(computed) && std::signbit(computed) == exact.negative ? right : wrong;
  if (std::isnan(computed)) return wrong;
  if (computed == 0 && std::signbit(computed) != exact.negative) return wrong;

  // An infinity stands for the power of two that ends the range, and for all that is beyond.
  double units = std::ldexp(static_cast<double>(computed), -exact.unit);
  if (std::isinf(computed)) {
    units = std::copysign(std::ldexp(1.0, Format<T>::kEnd - exact.unit), static_cast<double>(computed));
    if (units / exact.nearest <= 1 && (units < 0) == exact.negative) return right;
  }
  return {false, units == exact.nearest, std::fabs((units - exact.nearest) - exact.rest)};
}

template Verdict compare(const ExactResult&, float);
template Verdict compare(const ExactResult&, double);
