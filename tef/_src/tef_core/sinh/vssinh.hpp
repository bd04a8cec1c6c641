// sinh x and cosh x, single. HA computes in double, by the halves of double precision; LA and EP in single, by both
// exponentials from one reduction by ln 2, |r| <= ln2/2:
//
//   cosh x = (a + b) cosh r + (a - b) sinh r,   sinh |x| = (a - b) cosh r + (a + b) sinh r,   a = 2^k/2, b = 2^-k/2.
//
// In sinh k is made 0 below 1, where a - b would cancel: the polynomial of sinh r reaches that far.
#pragma once
#include <cfloat>

#include "sinh/vdsinh.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sSinhData {
  Row<float> inv_ln2 = 0x1.715476p+0f;
  Row<float> shifter = 0x1.8000fcp+23f;  // 1.5 * 2^23 + 126: the exponent's bias for 2^(k - 1)
  Row<float> ln2_hi = 0x1.62e4p-1f, ln2_lo = 0x1.7f7d1cp-20f, ln2 = 0x1.62e43p-1f;
  Row<uint32_t> exponent = 0x7F800000;
  Row<float> eighth = 0.125f;
  // (cosh r - 1) / r^2, |r| <= ln2/2: to 2^-33.2 of cosh r, and to 2^-23.4 of cosh r
  Row<float> c[3] = {0x1p-1f, 0x1.5554e4p-5f, 0x1.6d5146p-10f};
  Row<float> ep_c[2] = {0x1.fffdc2p-2f, 0x1.573b6p-5f};
  // Magnitudes from here on, where b would be denormal, infinities and NaN are rare; double precision goes to the end.
  Row<float> rare_from = 86.9f, finite_to = 0x1.65a9f8p+6f, largest = FLT_MAX;
  Row<double> half = 0.5, sixth = 0x1.5555555555555p-3;
};
inline constexpr sSinhData vssinh_data{};

// In double: sums and differences of the halves; cosh r - 1 and sinh r, to 2^-47.
template <class W>
struct WideHyperbolic {
  W C, S, c, s;

  explicit WideHyperbolic(W size) {
    const auto h = ExponentialHalves<W>::template without_rests<0>(size, size);
    const W r2 = h.r * h.r;
    C = h.a + h.b;
    S = h.a - h.b;
    c = r2 * vssinh_data.half;
    s = multiply_add(h.r * r2, vssinh_data.sixth, h.r);
  }
  W cosh() const { return C + (C * c + S * s); }
  W sinh() const { return S + (S * c + C * s); }
};

// In single: the same sums, and r; `at` is |x| as far as k goes by it.
template <class X>
struct SingleHalves {
  X C, S, r;

  SingleHalves(X size, X at, bool ep) {
    const auto& d = vssinh_data;
    const X N = multiply_add(at, d.inv_ln2, d.shifter), k = N - d.shifter;
    r = ep ? subtract_product(size, k, d.ln2)
           : subtract_product(subtract_product(size, k, d.ln2_hi), k, d.ln2_lo);
    const X a = scale_from<0>(N), b = bit_xor(a, d.exponent) * d.eighth;  // the bits turned over: 2^(2 - k)
    C = a + b;
    S = a - b;
  }
  // A cosh r + B sinh r, of c = cosh r - 1 and s = sinh r/r - 1, from the small end.
  X sum(X A, X B, X c, X s) const {
    const X Br = B * r;
    return A + (Br + multiply_add(A, c, Br * s));
  }
};

// What both functions do about rare lanes, F being the kernel in double.
template <class F>
struct sSinhKernel : Kernel<float(float)> {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), vssinh_data.rare_from);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const auto& d = vssinh_data;
    const X size = magnitude(x);
    left.finish(not_at_most(size, d.largest),
                [&](X special) { return F::signed_as(bit_and(special, size + size), bit_and(special, x)); });
    left.finish(at_most(size, d.finite_to), [&](X finite) { return F::eval(bit_and(finite, x)); });
  }
};

ORX_ISA_END
