// 1/x. See div/quotient.hpp.
#include "div/quotient.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

template <class T>
constexpr Row<T> kOne = 1;

template <class T>
struct QuietInv : Kernel<T(T)> {
  static constexpr T kSafe = 1;
  template <class X>
  static X eval(X x) {
    return kOne<T> / x;
  }
};
template <class T>
struct Inv : QuietInv<T> {
  template <class X>
  static auto rare(X x) {
    return equal(x, X{});
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(left.lanes, kOne<T> / x, StatusSingularity);
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Inv, G9HAynn, Inv<double>)
ORX_KERNEL(d, Inv, G9LAynn, Inv<double>)
ORX_KERNEL(s, Inv, G9HAynn, Inv<float>)
ORX_KERNEL(s, Inv, G9LAynn, Inv<float>)
ORX_KERNEL(s, Inv, G9EPnnn, QuietInv<float>)
