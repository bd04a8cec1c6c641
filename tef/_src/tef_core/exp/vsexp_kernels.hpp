// The kernels of e^x, single.
#pragma once
#include "exp/exp.hpp"
#include "exp/vsexp.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sExp : Exp<sExp, float> {
  static constexpr int kTogether = 2;
  // 87.33654, where results stop being normal numbers; infinities and NaN are rare, too
  static constexpr Row<float> kRareFrom = 0x1.5d58ap+6f, kLowest = -FLT_MAX;
  template <class X, class Left>
  static void finish_large(X x, Left& left) {
    vsexp_finish_large(x, left);
  }
  static int rare_lane(const float* a, float* r) { return vsexp_cout_rare(a, r); }
};

// HA and LA. Added to arguments, so that nothing underflows where they are tiny; the result is 1 there. n waits for no
// addition: it is found from x/ln 2 in units so small that this is a normal number for denormal x. The units are, too,
// those in which n with the exponent's bias is, rounded to an integer, the bits of a scale factor.
inline constexpr Row<float> kSingleExpLeast = 0x1p-50f;
inline constexpr float kSingleExpUnits = 0x1p23f, kSingleExpQuarters = 0x1p21f;  // to a whole

// HA. x = (4 k + j) ln2/4 + r, |r| <= ln2/8; e^x = 2^k 2^(j/4) e^r. The four powers lie in a vector. The unit is 2^-21.
struct sExpData {
  Row<float> inv_ln2 = 0x1.715476p+2f * kSingleExpQuarters;  // 4/ln 2
  Row<float> shifter = 0x1.8p+23f * kSingleExpQuarters;
  Row<float> biased = (0x1.8p+23f - 4 * 127) * kSingleExpQuarters;
  Row<float> ln2_hi = 0x1.62ep-3f / kSingleExpQuarters;  // ln 2/4
  Row<float> ln2_lo = 0x1.0bfbe8p-17f / kSingleExpQuarters;
  Row<float> c[3] = {0x1.000006p-1f, 0x1.5571d6p-3f,
                     0x1.552922p-5f};  // (e^r - 1 - r) / r^2, to 2^-27.4 of e^r
  Row<uint32_t> exponent = 0x7F800000;
  alignas(64) float T_hi[8] = {0x1p+0f, 0x1.306fep+0f, 0x1.6a09e6p+0f, 0x1.ae89fap+0f,
                               0x1p+0f, 0x1.306fep+0f, 0x1.6a09e6p+0f, 0x1.ae89fap+0f};
  alignas(64) float T_lo[8] = {0.0f, 0x1.4636e2p-25f, 0x1.9fcef4p-26f, -0x1.a94b14p-26f,
                               0.0f, 0x1.4636e2p-25f, 0x1.9fcef4p-26f, -0x1.a94b14p-26f};
};
inline constexpr sExpData vsexp_data{};

struct sExpHA : sExp {
  template <class X>
  static X eval(X x) {
    return scaled<0>(x);
  }
  // e^x 2^-orders.
  template <int orders, class X>
  static X scaled(X x) {
    const auto& d = vsexp_data;
    const X N = multiply_add(x, d.inv_ln2, d.shifter);
    const X Nf = N - d.shifter;
    const X r = subtract_product(subtract_product(x + kSingleExpLeast, Nf, d.ln2_hi), Nf, d.ln2_lo);
    const X T_hi = select_of_4(d.T_hi, N), T_lo = select_of_4(d.T_lo, N);
    const X r2 = r * r;
    const X p = multiply_add(r2, polynomial(r, r2, d.c), r);
    X k = N - d.biased;
    if constexpr (orders > 0) k = k - broadcast<X>(4 * orders * kSingleExpQuarters);
    return (multiply_add(p, T_hi, T_lo) + T_hi) * bit_and(real_of_bits(k), d.exponent);
  }
};

// LA. x = k ln2 + r, |r| <= ln2/2; e^x = 2^k e^r. The unit is 2^-23.
struct sExpLaData {
  Row<float> inv_ln2 = 0x1.715476p+0f * kSingleExpUnits;
  Row<float> shifter = 0x1.8p+23f * kSingleExpUnits;
  Row<float> biased = (0x1.8p+23f - 127) * kSingleExpUnits;
  Row<float> ln2_hi = 0x1.62e4p-1f / kSingleExpUnits;
  Row<float> ln2_lo = 0x1.7f7d1cp-20f / kSingleExpUnits;
  Row<float> one = 1.0f;
  // (e^r - 1 - r) / r^2, to 2^-28.1 of e^r
  Row<float> c[5] = {0x1.fffffap-2f, 0x1.555492p-3f, 0x1.555a26p-5f, 0x1.12397cp-7f, 0x1.694c86p-10f};
};
inline constexpr sExpLaData vsexp_la_data{};

struct sExpLA : sExp {
  template <class X>
  static X eval(X x) {
    const auto& d = vsexp_la_data;
    const X N = multiply_add(x, d.inv_ln2, d.shifter);
    const X Nf = N - d.shifter;
    const X r = subtract_product(subtract_product(x + kSingleExpLeast, Nf, d.ln2_hi), Nf, d.ln2_lo);
    const X r2 = r * r;
    // not by the fourth power of r, which might underflow
    const X q = multiply_add(r2, estrin<2, 3>(r, r2, d.c), estrin<0, 2>(r, r2, d.c));
    return (d.one + multiply_add(r2, q, r)) * real_of_bits(N - d.biased);
  }
};

// EP. x/ln2 = k + f, |f| <= 1/2; e^x = 2^k 2^f, with a polynomial for 2^f itself. All is in units of 2^-23, x/ln2 with
// the exponent's bias: so k is the scale's bits, and f, which loses what the bias covers, is never tiny.
struct sExpEpData {
  Row<float> inv_ln2 = 0x1.715476p+0f * kSingleExpUnits;
  Row<float> bias = 127 * kSingleExpUnits;
  Row<float> shifter = 0x1.8p+23f * kSingleExpUnits;
  // to 2^-13.2 of 2^f
  Row<float> c[4] = {1.0f, 0x1.62f5fap-1f / kSingleExpUnits,
                     0x1.f00c4cp-3f / kSingleExpUnits / kSingleExpUnits,
                     0x1.c2a254p-5f / kSingleExpUnits / kSingleExpUnits / kSingleExpUnits};
};
inline constexpr sExpEpData vsexp_ep_data{};

struct sExpEP : sExp {
  template <class X>
  static X eval(X x) {
    const auto& d = vsexp_ep_data;
    const X t = multiply_add(x, d.inv_ln2, d.bias);
    const X k = (t + d.shifter) - d.shifter;
    const X f = t - k;
    return polynomial(f, f * f, d.c) * real_of_bits(k);
  }
};

ORX_ISA_END
