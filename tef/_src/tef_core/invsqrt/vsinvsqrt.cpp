// x^(-1/2), single. y is the processor's approximate reciprocal root; with e = 1 - x y^2 the result is
// y (1 - e)^(-1/2), of which two terms of the binomial series behind the 1 come near enough: to 2^-32.8 of the root.
#include "invsqrt/invsqrt.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

template <class T>
struct Series {
  Row<T> one = 1, half = T(0.5), three_eighths = T(0.375);
};
template <class T>
constexpr Series<T> vsinvsqrt_data{};

template <class X>
inline X refined(X x, X y) {
  const auto& d = vsinvsqrt_data<typename X::Element>;
  const X e = d.one - (x * y) * y;
  return y + y * (e * multiply_add(e, d.three_eighths, d.half));
}

// HA: in doubles.
struct Accurate {
  template <class X>
  static X root(X x) {
    return narrow(refined(widen(x), widen(approximate_reciprocal_root(x))));
  }
};
struct Quick {
  template <class X>
  static X root(X x) {
    return refined(x, approximate_reciprocal_root(x));
  }
};
struct Rough {
  template <class X>
  static X root(X x) {
    return approximate_reciprocal_root(x);
  }
};

using sInvSqrtHA = InvSqrt<float, Accurate>;
using sInvSqrtLA = InvSqrt<float, Quick>;
using sInvSqrtEP = InvSqrt<float, Rough>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, InvSqrt, G9HAynn, sInvSqrtHA)
ORX_KERNEL(s, InvSqrt, G9LAynn, sInvSqrtLA)
ORX_KERNEL(s, InvSqrt, G9EPnnn, sInvSqrtEP)
