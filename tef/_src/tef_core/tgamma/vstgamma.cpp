// gamma x, single. Up to 35, in doubles, by rows of polynomials, below 1 as gamma(1 + x)/x; elsewhere as the double, rounded.
#include <cfloat>

#include "_heap/real/gamma_row.hpp"
#include "tgamma/tgamma.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

int vstgamma_cout_rare(const float* a, float* r) {
  double y;
  const int status = gamma_of(*a, &y);
  *r = static_cast<float>(hidden(y));  // raises what belongs to it
  if (status != StatusOk || !__builtin_isfinite(y)) return status;
  if (__builtin_fabsf(*r) > FLT_MAX) return StatusOverflow;
  return __builtin_fabs(y) < FLT_MIN ? StatusUnderflow : StatusOk;
}

struct sTGammaData {
  Row<float> smallest = FLT_MIN, largest = 35.0f;
  Row<double> one = 1.0;
};
constexpr sTGammaData vstgamma_data{};

struct sTGamma : Kernel<float(float)> {
  static constexpr int kTogether = 2;

  template <class X>
  static auto rare(X x) {
    return outside(x, vstgamma_data.smallest, vstgamma_data.largest);
  }
  template <class X>
  static X eval(X x) {
    return narrow(by_rows(widen(x)));
  }
  static int rare_lane(const float* a, float* r) { return vstgamma_cout_rare(a, r); }

 private:
  template <class X>
  static X by_rows(X x) {
    const auto& d = vstgamma_data;
    const auto below_one = less(x, d.one);
    const X s = x + keep(below_one, constant<X>(d.one));
    const GammaRow<X> row(s);
    const X y = polynomial_of_row<8, 8>(kSingleGammaRows[0], row, row.r);
    return y / select(below_one, x, constant<X>(d.one));
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, TGamma, G9HAynn, sTGamma)
