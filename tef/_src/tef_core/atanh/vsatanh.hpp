// atanh x, single. HA: half of ln((1 + |x|)/(1 - |x|)) in double. LA and EP: half of ln(1 + z), z = 2|x| + 2x^2/(1 - |x|).
#pragma once
#include "_heap/real/single_inverse.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sAtanhData {
  Row<float> one = 1.0f, half = 0.5f;
  Row<float> large = 0x1p-38f;  // takes x away where it is tiny and its square would underflow
};
inline constexpr sAtanhData vsatanh_data{};

// The scalar routine, for magnitudes of 1 and above.
inline int vsatanh_cout_rare(const float* a, float* r) {
  const float x = *a;
  if (x == 1 || x == -1) {
    *r = raise_divide_by_zero(x);
    return StatusSingularity;
  }
  *r = raise_invalid<float>();
  return StatusDomain;
}

struct sAtanh : Kernel<float(float)> {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), vsatanh_data.one);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(unordered(x, x), [&](X nan) { return bit_and(nan, x + x); });
  }
  static int rare_lane(const float* a, float* r) { return vsatanh_cout_rare(a, r); }
};
struct sAtanhHA : sAtanh {
  static constexpr int kTogether = 2;
  template <class X>
  static X eval(X x) {
    const auto& d = kSingleInverse;
    const X size = magnitude(x);
    const auto wide = widen(size);
    const X y = narrow(wide_log((d.one + wide) / (d.one - wide)) * d.half);
    return with_sign_and_underflow_of(select(less(size, d.tiny), size, y), x);
  }
};
template <bool ep>
struct sAtanhLow : sAtanh {
  static constexpr int kTogether = ep ? 1 : 2;
  template <class X>
  static X eval(X x) {
    const auto& d = vsatanh_data;
    const X size = magnitude(x);
    const X q = (size + d.large) - d.large;
    const X y = log_of_sum<ep>(size + size, (q * q + q * q) / (d.one - size));
    return with_sign_and_underflow_of(y * d.half, x);
  }
};
using sAtanhLA = sAtanhLow<false>;
using sAtanhEP = sAtanhLow<true>;

ORX_ISA_END
