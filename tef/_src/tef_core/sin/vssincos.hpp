// Sine and cosine of single precision. HA computes in double, by the polynomial that is EP there; LA and EP subtract
// multiples of pi in single precision. Large arguments go by the digits of 1/pi.
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

// Sines of a large single: n half turns and a rest, as above. `small` gives the result of the rest and N, whose last bit is n's.
template <Wanted wanted, class X, class F>
inline auto sines_of_large(X x, F small) {
  static constexpr Row<double> pi = 0x1.921fb54442d18p+1, half = 0.5;
  const auto turns = half_turns_of_single(widen(x));
  const auto all = turns.high + turns.low;
  return chosen<wanted>([&](auto cosine) {
    const auto N = (cosine ? all + half : all) + kShifter<1>;
    const auto n = cosine ? (N - kShifter<1>)-half : N - kShifter<1>;
    return small(((turns.high - n) + turns.low) * pi, N);
  });
}

int vssin_cout_rare(const float* a, float* r);

inline constexpr Row<float> kSingleSinFrom = 10000.0f;

template <Wanted wanted>
struct sSinHA : SinKernel<wanted, kSingleSinFrom, vssin_cout_rare> {
  template <class X>
  static auto eval(X x) {
    return in_double(x, [](auto wide) {
      return chosen<wanted>(
          [wide](auto cosine) { return sine_by_polynomial<cosine, true>(wide, vdsin_data); });
    });
  }
  template <class X>
  static auto eval_far(X x) {
    return sines_of_large<wanted>(x, [](auto r, auto N) { return narrow(sine_of_rest(r, N)); });
  }
};
template <Wanted wanted, bool ep>
struct sSinPolynomial : SinKernel<wanted, kSingleSinFrom, vssin_cout_rare> {
  static constexpr int kTogether = wanted == Wanted::Both ? 1 : 2;
  template <class X>
  static auto eval(X x) {
    return chosen<wanted>([x](auto cosine) { return sine_by_polynomial<cosine, ep>(x, vssin_data); });
  }
  template <class X>
  static auto eval_far(X x) {
    return sines_of_large<wanted>(x, [](auto wide, auto N) {
      const X r = narrow(wide);
      return bit_xor(small_sine<ep>(r, r, vssin_data), reals<X>(shift_left<31>(low_words(N))));
    });
  }
};
template <Wanted wanted>
using sSinLA = sSinPolynomial<wanted, false>;
template <Wanted wanted>
using sSinEP = sSinPolynomial<wanted, true>;

ORX_ISA_END
