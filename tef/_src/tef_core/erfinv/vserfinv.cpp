// The inverse error function, single. HA, LA: in double, by the rows of its EP. EP: x times a polynomial in
// sqrt(-ln(1 - x^2)), which is nearly the result itself where x is near 1.
#include "erfinv/inverse_erf.hpp"
#include "ln/slog.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct sErfInvKernel : Kernel<float(float)> {
  static constexpr int kTogether = 2;

  template <class X>
  static auto rare(X x) {
    return outside(magnitude(x), kTiny, kBelowOne);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), kTiny), [&](X tiny) {
      const auto wide = widen(bit_and(tiny, x));
      return narrow(wide * broadcast<decltype(wide + wide)>(0x1.c5bf891b4ef6bp-1));  // sqrt(pi)/2
    });
  }
  static int rare_lane(const float* a, float* r) { return erfinv_cout_rare(*a, r); }

 private:
  static constexpr Row<float> kTiny = 0x1p-100f, kBelowOne = 0x1.fffffep-1f;
};

struct sErfInv : sErfInvKernel {
  template <class X>
  static X eval(X x) {
    return narrow(erfinv_by_rows<InverseErfEP>(kErfInvEpTable, widen(x)));
  }
};

struct sErfInvEP : sErfInvKernel {
  template <class X>
  static X eval(X x) {
    const X size = magnitude(x), one = constant<X>(kOne);
    const SingleLogParts<X> y((one - size) * (one + size));
    const X t = square_root(X{} - sln_ep(y, X{})) - kMiddle;
    return x * polynomial(t, t * t, kQuotient);
  }

 private:
  static constexpr Row<float> kOne = 1.0f, kMiddle = 2.0f;
  static constexpr Row<float> kQuotient[] = {
#include "erfinv/vserfinv_ep.inc"
  };
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, ErfInv, G9HAynn, sErfInv)
ORX_KERNEL(s, ErfInv, G9LAynn, sErfInv)
ORX_KERNEL(s, ErfInv, G9EPnnn, sErfInvEP)
