#include "judge.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orx {

Judge::Judge(const Function& f)
    : formula_(f), numbers_in_(f.columns_in() + f.shape->scalars), numbers_out_(f.columns_out()) {
  const int precision = f.descriptor ? f.descriptor->judge_precision : 192;
  for (mpfr_ptr x : x_) mpfr_init2(x, DBL_MANT_DIG);
  for (mpfr_ptr y : y_) mpfr_init2(y, precision);
  mpfr_init2(units_, precision);
}

Judge::~Judge() {
  for (mpfr_ptr x : x_) mpfr_clear(x);
  for (mpfr_ptr y : y_) mpfr_clear(y);
  mpfr_clear(units_);
}

namespace {

// y in the terms of a format; it is changed.
template <class R>
ExactResult in_format(mpfr_ptr y, mpfr_ptr units) {
  ExactResult e{ExactResult::kNumber, mpfr_signbit(y) != 0, Format<R>::low_unit, 0, 0};
  if (mpfr_nan_p(y)) {
    e.kind = ExactResult::kNaN;
  } else if (mpfr_inf_p(y) && !mpfr_overflow_p()) {
    e.kind = ExactResult::kInfinite;
  } else if (mpfr_inf_p(y)) {  // beyond even MPFR's range
    e.nearest = mpfr_get_d(y, MPFR_RNDZ);
  } else if (!mpfr_zero_p(y)) {
    const int exponent = static_cast<int>(mpfr_get_exp(y));
    const int high_unit = Format<R>::end - Format<R>::digits;
    e.unit = std::min(std::max(exponent - Format<R>::digits, Format<R>::low_unit), high_unit);
    mpfr_mul_2si(units, y, -e.unit, MPFR_RNDN);
    // Rounding up may lead to the next power of two, where the places are twice as large.
    if (e.unit < high_unit &&
        std::fabs(mpfr_get_d(units, MPFR_RNDN)) >= std::ldexp(1.0, Format<R>::digits) - 0.5) {
      ++e.unit;
      mpfr_mul_2si(units, y, -e.unit, MPFR_RNDN);
    }
    mpfr_rint(y, units, MPFR_RNDN);
    e.nearest = mpfr_get_d(y, MPFR_RNDN);
    mpfr_sub(units, units, y, MPFR_RNDN);
    e.rest = mpfr_get_d(units, MPFR_RNDN);
  }
  return e;
}

}  // namespace

template <class R>
void Judge::operator()(const R* x, ExactResult* exact) {
  for (int i = 0; i < numbers_in_; ++i) mpfr_set_d(x_[i], static_cast<double>(x[i]), MPFR_RNDN);
  mpfr_clear_flags();
  formula_(y_, x_);
  const bool overflow = mpfr_overflow_p();
  for (int i = 0; i < numbers_out_; ++i) {
    if (overflow) mpfr_set_overflow();
    exact[i] = in_format<R>(y_[i], units_);
  }
}

template void Judge::operator()(const float*, ExactResult*);
template void Judge::operator()(const double*, ExactResult*);

Measure measure_of(const Function& f, const Kernel& k) {
  Measure m;
  const descriptor::Bounds& floors = f.about().floor;
  const double floor = k.own_class == kIndexLA ? floors.la : k.own_class == kIndexHA ? floors.ha : floors.ep;
  if (floor > 0)
    m.floor_unit = std::ilogb(floor) + 1 - (f.single() ? Format<float>::digits : Format<double>::digits);
  m.norm_wise = f.about().norm_wise >> k.own_class & 1;
  m.zero_signs_free = f.descriptor->zero_signs_free >> k.own_class & 1;
  return m;
}

namespace {

template <class R>
Verdict compare_one(const ExactResult& exact, R computed, bool signs_of_zeros) {
  constexpr Verdict right{false, true, 0}, wrong{true, false, std::numeric_limits<double>::infinity()};
  if (exact.kind == ExactResult::kNaN) return std::isnan(computed) ? right : wrong;
  if (exact.kind == ExactResult::kInfinite)
    return std::isinf(computed) && std::signbit(computed) == exact.negative ? right : wrong;
  if (std::isnan(computed)) return wrong;
  if (signs_of_zeros && computed == 0 && std::signbit(computed) != exact.negative) return wrong;

  // An infinity stands for the power of two that ends the range, and for all that is beyond.
  double units = std::ldexp(static_cast<double>(computed), -exact.unit);
  if (std::isinf(computed)) {
    units = std::copysign(std::ldexp(1.0, Format<R>::end - exact.unit), static_cast<double>(computed));
    if (units / exact.nearest <= 1 && (units < 0) == exact.negative) return right;
  }
  return {false, units == exact.nearest, std::fabs((units - exact.nearest) - exact.rest)};
}

// The modulus; at least that of the smallest number with all digits.
template <class R>
double size_in_units(const ExactResult* exact, int count, int unit) {
  double size = 0;
  for (int i = 0; i < count; ++i) size = std::hypot(size, std::ldexp(exact[i].nearest, exact[i].unit - unit));
  return std::max(size, std::ldexp(1.0, Format<R>::digits - 1));
}

}  // namespace

template <class R>
Verdict compare(const ExactResult* exact, const R* computed, int count, const Measure& m) {
  int larger_unit = m.floor_unit;
  if (m.norm_wise)
    for (int i = 0; i < count; ++i) larger_unit = std::max(larger_unit, exact[i].unit);
  Verdict all{false, true, 0};
  for (int i = 0; i < count; ++i) {
    const Verdict v = compare_one(exact[i], computed[i], !m.zero_signs_free && !m.norm_wise);
    const int unit = m.norm_wise ? larger_unit : std::max(m.floor_unit, exact[i].unit);
    const double error = unit > exact[i].unit ? std::ldexp(v.error, exact[i].unit - unit) : v.error;
    all.wrong |= v.wrong;
    all.correct &= v.correct;
    all.error = m.norm_wise ? std::hypot(all.error, error) : std::max(all.error, error);
  }
  if (m.norm_wise)
    all.error *= std::ldexp(1.0, Format<R>::digits - 1) / size_in_units<R>(exact, count, larger_unit);
  return all;
}

template Verdict compare(const ExactResult*, const float*, int, const Measure&);
template Verdict compare(const ExactResult*, const double*, int, const Measure&);

}  // namespace orx
