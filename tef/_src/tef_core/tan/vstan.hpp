// tan x, single: as dTan LA. HA computes in double. Large arguments go by the digits of 1/pi, then as HA.
#pragma once
#include "tan/vdtan.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sTanHaData {
  Row<double> inv = 0x1.45f306dc9c883p-1;  // 2/pi
  Row<double> shifter = 0x1.8p+52;
  Row<double> p1 = 0x1.921fb544p+0, p2 = 0x1.0b4611a626331p-34;  // pi/2
  Row<double> one = 1.0;
  // tan y = (y - y^3 a(y^2))/(1 - b y^2), |y| <= pi/4, to 2^-31.7 of tan y
  Row<double> a[3] = {0x1.2696f5cf53279p-4, 0x1.cb1b2099cdec2p-10, 0x1.172883a366186p-14};
  Row<double> b = 0x1.9efb11e6ab3d3p-2;
};
inline constexpr sTanHaData vstan_data_ha{};

struct sTanData {
  Row<float> inv = 0x1.45f306p-1f;  // 2/pi
  Row<float> shifter = 0x1.8p+23f;
  // pi/2; the products of all parts but the last with n below 2^13 are exact
  Row<float> p1 = 0x1.92p+0f, p2 = 0x1.fb4p-12f, p3 = 0x1.444p-24f, p4 = 0x1.68c234p-39f;
  Row<float> ep_p3 = 0x1.4442d2p-24f;
  Row<float> tiny = 0x1p-30f, one = 1.0f;
  // tan y as above: to 2^-31.5 of tan y and to 2^-17 of tan y
  Row<float> a[3] = {0x1.2696f6p-4f, 0x1.cb1b64p-10f, 0x1.1724e4p-14f}, b = 0x1.9efb12p-2f;
  Row<float> ep_a = 0x1.1810cep-4f, ep_b = 0x1.9b3b16p-2f;
};
inline constexpr sTanData vstan_data{};

// tan(n pi/2 + r), |r| <= pi/4; the last bit of N is n's.
template <class X>
inline X tangent_in_quadrant(X r, X N) {
  const auto& d = vstan_data_ha;
  const X z = r * r;
  const X above = r * (d.one - z * polynomial(z, z * z, d.a)), below = d.one - z * d.b;
  return quotient_in_quadrant(above, below, last_bit_as_sign(N));
}

// A large single, widened: n quarters of a turn and a rest.
template <class X>
inline X tangent_of_large(X x) {
  static constexpr Row<double> pi = 0x1.921fb54442d18p+1,
                               shifter = 0x1.8p+51;  // whose last bit is worth a half
  const auto turns = half_turns_of_single(x);
  const X N = (turns.high + turns.low) + shifter;
  const X r = ((turns.high - (N - shifter)) + turns.low) * pi;
  return tangent_in_quadrant(r, N);
}

inline constexpr Row<float> kSingleTanFrom = 10000.0f;

struct sTanKernel : PeriodicKernel<float, kSingleTanFrom> {
  template <class X>
  static X eval_far(X x) {
    return narrow(tangent_of_large(widen(x)));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    PeriodicKernel::finish(x, left);
    left.finish(
        left.lanes, [&](X infinite) { return keep(infinite, x) * X{}; }, StatusDomain);
  }
};

struct sTanHA : sTanKernel {
  template <class X>
  static X eval(X x) {
    return narrow(tangent(widen(x)));
  }

 private:
  template <class X>
  static X tangent(X x) {
    const auto& d = vstan_data_ha;
    const X N = x * d.inv + d.shifter, n = N - d.shifter;
    const X r = (x - n * d.p1) - n * d.p2;
    return tangent_in_quadrant(r, N);
  }
};

template <bool ep>
struct sTanRational : sTanKernel {
  template <class X>
  static X eval(X x) {
    const auto& d = vstan_data;
    const X N = x * d.inv + d.shifter, n = N - d.shifter;
    const X rest = (x - n * d.p1) - n * d.p2;
    const X w = n * (ep ? d.ep_p3 : d.p3), r = rest - w;
    const X q = without_tiny(r, x, d.tiny), z = q * q;
    const X part = z * (ep ? d.ep_b : d.b), below = d.one - part;
    X less;
    if constexpr (ep) {
      less = q * (z * d.ep_a);
    } else {
      less = multiply_add(q * z, horner(z, d.a), n * d.p4 - ((rest - r) - w));
      // What the divisor lacks goes to the dividend, nearly: as a like part of it.
      less = multiply_add(q, (d.one - below) - part, less);
    }
    return quotient_in_quadrant(r - less, below, last_bit_as_sign(N));
  }
};

ORX_ISA_END
