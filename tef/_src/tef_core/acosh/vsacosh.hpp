// acosh x, single. HA: ln(x + sqrt(x^2 - 1)) in double. LA and EP: ln(1 + z), z = w + sqrt(w^2 + 2 w), w = x - 1.
#pragma once
#include "_heap/real/single_inverse.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sAcoshData {
  Row<float> one = 1.0f, half = 0.5f;
  Row<float> least = 0x1p-20f;         // below all s but 0
  Row<float> largest_usual = 0x1p60f;  // squares would overflow
  Row<float> largest = FLT_MAX;
};
inline constexpr sAcoshData vsacosh_data{};

// The scalar routine, for arguments below 1.
inline int vsacosh_cout_rare(const float*, float* r) {
  *r = raise_invalid<float>();
  return StatusDomain;
}

struct sAcosh : Kernel<float(float)> {
  static constexpr float kSafe = 2.0f;
  static int rare_lane(const float* a, float* r) { return vsacosh_cout_rare(a, r); }

 protected:
  // Infinity and NaN are x + x.
  template <class X, class Left>
  static void finish_infinite(X x, Left& left) {
    left.finish(not_at_most(x, vsacosh_data.largest),
                [&](X special) { return bit_and(special, x) + bit_and(special, x); });
  }
};
struct sAcoshHA : sAcosh {
  template <class X>
  static auto rare(X x) {
    return outside(x, vsacosh_data.one, vsacosh_data.largest);
  }
  template <class X>
  static X eval(X x) {
    const auto wide = widen(x);
    return narrow(wide_log(wide + square_root(wide * wide - kSingleInverse.one)));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    finish_infinite(x, left);
  }
};
template <bool ep>
struct sAcoshLow : sAcosh {
  template <class X>
  static auto rare(X x) {
    return outside(x, vsacosh_data.one, vsacosh_data.largest_usual);
  }
  template <class X>
  static X eval(X x) {
    const X w = x - vsacosh_data.one, square = multiply_add(w, w, w + w), s = square_root(square);
    if constexpr (ep) return log_of_sum<ep>(s, w);
    // What the root lost: (2 w + w^2 - s^2)/(2 s), s^2 from its leading bits and the rest.
    const auto parts = split(s);
    const X left = (((w + w) - parts.high * parts.high) - (s + parts.high) * parts.low) + w * w;
    const X lost = left * (vsacosh_data.half * approximate_reciprocal(max(s, vsacosh_data.least)));
    return log_of_sum<ep>(s, w + lost);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    finish_infinite(x, left);
    left.finish(less(broadcast<X>(1), x),
                [&](X large) { return log_of_twice<ep>(select(large, x, broadcast<X>(1))); });
  }
};
using sAcoshLA = sAcoshLow<false>;
using sAcoshEP = sAcoshLow<true>;

ORX_ISA_END
