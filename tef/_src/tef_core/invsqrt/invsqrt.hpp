// What both precisions of x^(-1/2) share: arguments that are not positive normal numbers.
#pragma once
#include <limits>

#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// A denormal's bits behind the exponent of `under`, less `under`, are the denormal times 1/`down`^2.
template <class T>
struct InvSqrtLimits {
  Row<T> smallest = std::numeric_limits<T>::min(), largest = std::numeric_limits<T>::max(), one = 1;
  Row<T> under = sizeof(T) == 8 ? T(0x1p-968) : T(0x1p-94f), up = sizeof(T) == 8 ? T(0x1p27) : T(0x1p16);
};
template <class T>
inline constexpr InvSqrtLimits<T> kInvSqrt{};

// Method::root(x) is the function of positive normal numbers.
template <class T, class Method>
struct InvSqrt : Kernel<T(T)> {
  template <class X>
  static auto rare(X x) {
    return outside(x, kInvSqrt<T>.smallest, kInvSqrt<T>.largest);
  }
  template <class X>
  static X eval(X x) {
    return Method::root(x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const auto& d = kInvSqrt<T>;
    left.finish(bit_and(less(X{}, x), less(x, d.smallest)), [&](X denormal) {
      const X up = bit_or(x, constant<X>(d.under)) - d.under;
      return Method::root(select(denormal, up, constant<X>(d.one))) * d.up;
    });
    // The processor's operations give the others their results and exceptions.
    const X y = d.one / square_root(select(left.lanes, x, constant<X>(d.one)));
    left.finish(less(x, X{}), y, StatusDomain);
    left.finish(equal(x, X{}), y, StatusSingularity);
    left.finish(left.lanes, y);
  }
};

ORX_ISA_END
