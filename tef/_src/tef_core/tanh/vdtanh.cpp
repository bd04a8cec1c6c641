// tanh x, double.
#include "tanh/vdtanh.hpp"
#include "frame/classes.hpp"

namespace orx::tef {
alignas(64) const double kTanhTable[1024][4] = {
#include "tanh/vdtanh.inc"
};
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)
namespace {

struct dTanh : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return unordered(x, x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(left.lanes, bit_and(left.lanes, x + x));
  }
  // With the sign of x, and the exception that belongs to denormals.
  template <class X>
  static X signed_as(X y, X x, X size) {
    raise_underflow_of_denormals(size);
    return with_sign_of(y, x);
  }
};
struct dTanhHA : dTanh {
  template <class X>
  static X eval(X x) {
    const TanhCell<X> f(x);
    return signed_as(f.accurate_tanh(), x, f.size);
  }
};
struct dTanhLA : dTanh {
  template <class X>
  static X eval(X x) {
    const TanhCell<X> f(x);
    return signed_as(f.tanh(vdtanh_data.la), x, f.size);
  }
};
struct dTanhEP : dTanh {
  template <class X>
  static X eval(X x) {
    const TanhCell<X> f(x);
    return signed_as(f.tanh(vdtanh_data.ep), x, f.size);
  }
};

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, d, Tanh)
