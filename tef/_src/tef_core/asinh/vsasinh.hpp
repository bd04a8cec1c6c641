// asinh x, single. HA: ln(|x| + sqrt(x^2 + 1)) in double. LA and EP: ln(1 + z), z = |x| + x^2/(1 + sqrt(x^2 + 1)).
#pragma once
#include "_heap/real/magnitudes.hpp"
#include "_heap/real/single_inverse.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sAsinhData {
  Row<float> large = 0x1p-38f;         // takes x away where it is tiny and its square would underflow
  Row<float> largest_usual = 0x1p60f;  // squares would overflow
  Row<float> largest = FLT_MAX;
};
inline constexpr sAsinhData vsasinh_data{};

// Infinities and NaN are x + x.
template <class X, class Left>
inline void finish_infinite(X x, Left& left) {
  left.finish(not_at_most(magnitude(x), vsasinh_data.largest),
              [&](X special) { return bit_and(special, x) + bit_and(special, x); });
}

// The result, which is denormal where x is, with the sign of x.
template <class X>
inline X signed_as(X y, X x) {
  raise_underflow_of_denormals(y);
  return with_sign_of(y, x);
}

struct sAsinhHA : Kernel<float(float)> {
  template <class X>
  static auto rare(X x) {
    return above(magnitude(x), vsasinh_data.largest);
  }
  template <class X>
  static X eval(X x) {
    const X size = magnitude(x);
    const auto wide = widen(size);
    const X y = narrow(wide_log(wide + square_root(wide * wide + kSingleInverse.one)));
    return signed_as(select(mask_above(size, kSingleInverse.tiny), y, size), x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    finish_infinite(x, left);
  }
};
template <bool ep>
struct sAsinhLow : Kernel<float(float)> {
  template <class X>
  static auto rare(X x) {
    return above(magnitude(x), vsasinh_data.largest_usual);
  }
  template <class X>
  static X eval(X x) {
    const auto& one = kSingleInverse.single_one;
    const X size = magnitude(x);
    const X q = (size + vsasinh_data.large) - vsasinh_data.large, square = q * q;
    const X above = square / (one + square_root(square + one));
    return signed_as(log_of_sum<ep>(size, above), x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    finish_infinite(x, left);
    left.finish(left.lanes, [&](X large) {
      return with_sign_of(log_of_twice<ep>(magnitude(select(large, x, broadcast<X>(1)))), x);
    });
  }
};
using sAsinhLA = sAsinhLow<false>;
using sAsinhEP = sAsinhLow<true>;

ORX_ISA_END
