// ln |gamma x|, single. Of positive numbers in doubles, by rows of polynomials or Stirling's series; elsewhere as the double,
// rounded.
#include <cfloat>

#include "_heap/real/gamma_row.hpp"
#include "lgamma/lgamma.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int vslgamma_cout_rare(const float* a, float* r) {
  double y;
  const int status = log_gamma_of(*a, &y);
  if (__builtin_isfinite(y) && y > FLT_MAX) {
    *r = raise_overflow<float>();
    return StatusOverflow;
  }
  *r = static_cast<float>(y);
  return status;
}

struct sLGammaData {
  Row<float> smallest = FLT_MIN, largest = 0x1p+121f;
  Row<double> first_row = 0.9375, last_row = 8.0;
  Row<double> one = 1.0, half = 0.5, half_log_2pi = 0x1.d67f1c864beb5p-1;
  // ln gamma x less (x - 1/2) ln x - x + ln(2 pi)/2, times x, by 1/x^2: the first terms of the series
  Row<double> stirling[4] = {1.0 / 12, -1.0 / 360, 1.0 / 1260, -1.0 / 1680};
};
constexpr sLGammaData vslgamma_data{};

struct sLGamma : Kernel<float(float)> {
  template <class X>
  static auto rare(X x) {
    return outside(x, vslgamma_data.smallest, vslgamma_data.largest);
  }
  template <class X>
  static X eval(X x) {
    return narrow(of_positive(widen(x)));
  }
  static int rare_lane(const float* a, float* r) { return vslgamma_cout_rare(a, r); }

 private:
  // Rows up to 8, below the first by ln gamma x = ln gamma(1 + x) - ln x.
  template <class X>
  static X of_positive(X x) {
    const auto& d = vslgamma_data;
    const X log = LogLA<LnDescription, true>::log(x, exponent_field(x));
    const auto below = less(x, d.first_row);
    const X small = by_rows(min(x + keep(below, constant<X>(d.one)), d.last_row)) - keep(below, log);
    return select(less(x, d.last_row), small, by_stirling(x, log));
  }
  template <class X>
  static X by_rows(X s) {
    constexpr int terms = 10;  // what is left is below 2^-38 of the result
    const GammaRow<X> row(s);
    X value, slope;
    gather_pairs<kGammaColumns>(kLGammaRows[0], row, value, slope);
    const X rest = polynomial_of_row<kGammaColumns, terms>(kLGammaRows[0] + 2, row, row.r);
    return value + multiply_add(row.r, slope, rest);
  }
  template <class X>
  static X by_stirling(X x, X log) {
    const auto& d = vslgamma_data;
    const X reciprocal = d.one / x, z = reciprocal * reciprocal;
    const X series = multiply_add(reciprocal, polynomial(z, z * z, d.stirling), d.half_log_2pi);
    return multiply_add(x - d.half, log, series - x);
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, LGamma, G9HAynn, sLGamma)
