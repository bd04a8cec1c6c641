// The angle of a point, single. HA computes in double, by the method that is EP there; LA and EP by a polynomial in
// t = y/x for all of the octant 0 <= y <= x.
#pragma once
#include "atan/vdatan.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sAtanData {
  Row<float> quarter = 0x1.921fb6p+0f, half_turn = 0x1.921fb6p+1f;
  Row<float> least = 0x1p-12f;  // its square, times t from 2^-100 on, does not underflow
  // (atan t - t)/t^3, t <= 1: to 2^-25.8 of atan t, and to 2^-11.9 of atan t
  Row<float> la[8] = {-0x1.5554dcp-2f, 0x1.9978eep-3f, -0x1.230abp-3f,  0x1.b4dfdcp-4f,
                      -0x1.3553f4p-4f, 0x1.61f756p-5f, -0x1.0c23fep-6f, 0x1.7ec1c4p-9f};
  Row<float> ep[3] = {-0x1.4f7c58p-2f, 0x1.46468ap-3f, -0x1.7ce62ep-5f};
};
inline constexpr sAtanData vsatan_data{};

// The angle is `base` and atan t with the sign of `sign`.
template <class X>
struct PlainOctant {
  X base, sign;

  explicit PlainOctant(X steep)
      : base(keep(steep, constant<X>(vsatan_data.quarter))),
        sign(keep(steep, broadcast_bits<X>(kSignBit<float>))) {}
  PlainOctant(X steep, X x) {
    const auto behind = less(x, X{});
    base = select(steep, constant<X>(vsatan_data.quarter), keep(behind, constant<X>(vsatan_data.half_turn)));
    sign = bit_and(bit_xor(steep, x), broadcast_bits<X>(kSignBit<float>));
  }
};

template <bool ep>
struct ReflectedByPolynomial {
  template <class X>
  using Octant = PlainOctant<X>;
  template <class X>
  static X angle(X y, X x, const Octant<X>& octant) {
    const auto& d = vsatan_data;
    const X t = y / x, u = max(t, d.least), square = u * u;
    X p;
    if constexpr (ep)
      p = horner(square, d.ep);
    else
      p = polynomial(square, square * square, d.la);
    const X part = bit_xor(t, octant.sign);
    return multiply_add(part * square, p, octant.base + part);
  }
};

struct sAngleHA {
  template <class X>
  static X of(X y, X x) {
    return narrow(dAngleEP::of(widen(y), widen(x)));
  }
  template <class X>
  static X of(X y, X x, X sign) {
    return narrow(dAngleEP::of(widen(y), widen(x), widen(sign)));
  }
};
using sAngleLA = Angle<ReflectedByPolynomial<false>>;
using sAngleEP = Angle<ReflectedByPolynomial<true>>;

ORX_ISA_END
