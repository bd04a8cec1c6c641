// Sine and cosine of single precision. HA computes in double, by the polynomial that is EP there; LA and EP subtract
// multiples of pi in single precision. Large arguments go by the digits of 1/(2 pi), then as HA.
#pragma once
#include "sin/vdsincos.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sSinData {
  static constexpr float kUnits = kSinUnits<float>;
  Row<float> inv = 0x1.45f306p-2f * kUnits;  // 1/pi
  Row<float> shifter = 0x1.8p+23f * kUnits, half = 0.5f * kUnits;
  // pi; all parts but the last have 12 bits, so that their products with n, and with a half of it, are exact
  Row<float> p1 = 0x1.92p+1f / kUnits, p2 = 0x1.fb4p-11f / kUnits, p3 = 0x1.444p-23f / kUnits,
             p4 = 0x1.68c234p-38f / kUnits;
  Row<float> ep_p3 = 0x1.4442d2p-23f / kUnits;
  Row<float> tiny = 0x1p-24f;  // its fourth power does not underflow
  // (sin r - r)/r^3, |r| <= pi/2: to 2^-27.2 of sin r and to 2^-12.8 of sin r
  Row<float> c[4] = {-0x1.55554cp-3f, 0x1.110edap-7f, -0x1.9f70fp-13f, 0x1.5dc902p-19f};
  Row<float> ep[2] = {-0x1.543b6ep-3f, 0x1.f5c54cp-8f};
};
inline constexpr sSinData vssin_data{};

// A function of doubles for singles: f gives one result, or two.
template <class X, class F>
inline auto in_double(X x, F f) {
  const auto y = f(widen(x));
  if constexpr (std::is_same_v<std::decay_t<decltype(y)>, decltype(widen(x))>)
    return narrow(y);
  else
    return Two<X>{narrow(y.first), narrow(y.second)};
}

// A large single, widened: n half turns and a rest, as above.
template <Wanted wanted, class X>
inline auto sines_of_large(X x) {
  static constexpr Row<double> pi = 0x1.921fb54442d18p+1, shifter = 0x1.8p+52, half = 0.5;
  const auto turns = half_turns_of_single(x);
  const X all = turns.high + turns.low;
  return chosen<wanted>([&](auto cosine) {
    const X N = (cosine ? all + half : all) + shifter;
    const X n = cosine ? (N - shifter) - half : N - shifter;
    const X r = ((turns.high - n) + turns.low) * pi;
    return bit_xor(small_sine<true>(r, r, vdsin_data), reals<X>(shift_left<63>(bits(N))));
  });
}

int vssin_cout_rare(const float* a, float* r);

template <Wanted wanted>
struct sSinKernel : SinKernel<float, wanted, vssin_cout_rare> {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), kFrom);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(at_most(magnitude(x), kLargest), [&](X which) {
      return in_double(keep(which, x), [](auto wide) { return sines_of_large<wanted>(wide); });
    });
    finish_nan<wanted>(x, left);
  }

 private:
  static constexpr Row<float> kFrom = 10000.0f, kLargest = FLT_MAX;
};
template <Wanted wanted>
struct sSinHA : sSinKernel<wanted> {
  template <class X>
  static auto eval(X x) {
    return in_double(x, [](auto wide) {
      return chosen<wanted>(
          [wide](auto cosine) { return sine_by_polynomial<cosine, true>(wide, vdsin_data); });
    });
  }
};
template <Wanted wanted, bool ep>
struct sSinPolynomial : sSinKernel<wanted> {
  static constexpr int kTogether = wanted == Wanted::Both ? 1 : 2;
  template <class X>
  static auto eval(X x) {
    return chosen<wanted>([x](auto cosine) { return sine_by_polynomial<cosine, ep>(x, vssin_data); });
  }
};
template <Wanted wanted>
using sSinLA = sSinPolynomial<wanted, false>;
template <Wanted wanted>
using sSinEP = sSinPolynomial<wanted, true>;

ORX_ISA_END
