// The kernels of e^x, double. x = (256 k + j) ln2/256 + r, |r| <= ln2/512; e^x = 2^k 2^(j/256) e^r.
#pragma once
#include "exp/exp.hpp"
#include "exp/vdexp.hpp"

ORX_ISA_BEGIN(orx::tef)

struct dExp : Exp<dExp, double> {
  // 708.3956, where results stop being normal numbers; infinities and NaN are rare, too
  static constexpr Row<double> kRareFrom = 0x1.6232bp+9, kLowest = -DBL_MAX;
  template <class X, class Left>
  static void finish_large(X x, Left& left) {
    vdexp_finish_large(x, left);
  }
  static int rare_lane(const double* a, double* r) { return vdexp_cout_rare(a, r); }
};

// Where x is tiny the result is 1, and nothing may underflow on the way. x/ln 2 is formed in units of 2^-60, so that it
// is a normal number for denormal x. For all else something small is added to x, which is ready before n is.
inline constexpr double kDoubleExpUp = 0x1p60;
inline constexpr Row<double> kDoubleExpLeast = 0x1p-300;

// HA. The sum T + T (p + T_lo) rounds once more than the exact value.
struct dExpData {
  Row<double> inv_ln2 = 0x1.71547652b82fep+8 * kDoubleExpUp;  // 256/ln 2
  Row<double> shifter =
      0x1.800000003ffp+52 * kDoubleExpUp;  // 1.5 * 2^52 + 256 * 1023: leaves n and the exponent's bias
  Row<double> ln2_hi =
      0x1.62e42fef8p-9 / kDoubleExpUp;  // ln 2/256; short, so that its product with an integer is exact
  Row<double> ln2_lo = 0x1.1cf79abc9e3b4p-44 / kDoubleExpUp;
  // (e^r - 1 - r) / r^2, to 2^-57.4 of e^r
  Row<double> c[3] = {0x1.fffffffffffdcp-2, 0x1.5555571d6b6bbp-3, 0x1.5555573c703e7p-5};
};
inline constexpr dExpData vdexp_data{};

// e^x = 2^k T (1 + rest), before it is rounded; scale is 2^k.
template <class X>
struct ExpParts {
  X T, rest, scale;
};

struct dExpHA : dExp {
  template <class X>
  static X eval(X x) {
    return scaled<0>(x);
  }
  // e^x 2^-orders.
  template <int orders, class X>
  static X scaled(X x) {
    const auto e = parts<orders>(x);
    return multiply_add(e.T, e.rest, e.T) * e.scale;
  }
  template <int orders, class X>
  static ExpParts<X> parts(X x) {
    const auto& d = vdexp_data;
    // 1. n = round(x * 256/ln2), in the low bits of N.
    const X N = multiply_add(x, d.inv_ln2, d.shifter);
    const X Nf = N - d.shifter;
    const SpilledWords<X> n(N);

    // 2. r = x - n ln2/256.
    const X r = subtract_product(subtract_product(x + kDoubleExpLeast, Nf, d.ln2_hi), Nf, d.ln2_lo);

    // 3. p = e^r - 1.
    const X r2 = r * r;
    const X p = multiply_add(r2, polynomial(r, r2, d.c), r);

    // 4. The table row is n mod 256; the rest of n is the exponent of a scale factor.
    X T, T_lo;
    gather_pairs(
        _tefdExpHATab[0], [&](int lane) { return n.low_byte(lane); }, T, T_lo);

    // 5. e^x = 2^k T (1 + p).
    X k = n.vector();
    if constexpr (orders > 0) k = k - broadcast<X>(256.0 * orders * kDoubleExpUp);
    return {T, p + T_lo, scale_from<8>(k)};
  }
};

// LA. A finer table, |r| <= ln2/2048, and a shorter polynomial. The exponent comes in last: T p might underflow if T had
// it already.
struct dExpLaData {
  Row<double> inv_ln2 = 0x1.71547652b82fep+10 * kDoubleExpUp;  // 1024/ln 2
  Row<double> shifter = 0x1.80000000ffcp+52 * kDoubleExpUp;    // 1.5 * 2^52 + 1024 * 1023
  Row<double> ln2_hi = 0x1.62e42fecp-11 / kDoubleExpUp;        // ln 2/1024
  Row<double> ln2_lo = 0x1.d1cf79abc9e3bp-42 / kDoubleExpUp;
  // (e^r - 1 - r) / r^2, with the table's factor to 2^-53.5 of e^r
  Row<double> c2 = 0x1.0000002726a4bp-1;
  Row<double> c3 = 0x1.5555557081401p-3;
};
inline constexpr dExpLaData vdexp_la_data{};

struct dExpLA : dExp {
  template <class X>
  static X eval(X x) {
    const auto& d = vdexp_la_data;
    const X N = multiply_add(x, d.inv_ln2, d.shifter);
    const X Nf = N - d.shifter;
    const SpilledWords<X> n(N);
    const X r = subtract_product(subtract_product(x + kDoubleExpLeast, Nf, d.ln2_hi), Nf, d.ln2_lo);
    const X p = multiply_add(r * r, multiply_add(r, d.c3, d.c2), r);
    const X T = gather<X>(kExpLaPowers, [&](int lane) { return n.low(lane) & 1023; });
    return multiply_add(T, p, T) * scale_from<10>(n.vector());
  }
};

ORX_ISA_END
