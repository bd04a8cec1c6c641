// The square root, by the processor's own instruction in all classes: exact, and quicker on processors of today than any
// approximation that is refined.
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// The instruction makes a NaN of negative numbers, and raises invalid; they are to be reported, too.
template <class T>
struct Root : Kernel<T(T)> {
  template <class X>
  static auto rare(X x) {
    return less(x, X{});
  }
  template <class X>
  static X eval(X x) {
    return square_root(x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(left.lanes, square_root(x), StatusDomain);
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Sqrt, G9HAynn, Root<double>)
ORX_KERNEL(d, Sqrt, G9LAynn, Root<double>)
ORX_KERNEL(d, Sqrt, G9EPnnn, Root<double>)
ORX_KERNEL(s, Sqrt, G9HAynn, Root<float>)
ORX_KERNEL(s, Sqrt, G9LAynn, Root<float>)
ORX_KERNEL(s, Sqrt, G9EPnnn, Root<float>)
