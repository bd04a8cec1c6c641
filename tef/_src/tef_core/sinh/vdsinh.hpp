// sinh x and cosh x, double.
//
// |x| = n ln2/128 + r, n = 128 k + j, T = 2^(j/128). One reduction gives both halves, a = 2^k T/2 of e^|x|/2 and
// b = 2^-k/(2 T) of e^-|x|/2, and
//
//   cosh x = (a + b) cosh r + (a - b) sinh r,   sinh |x| = (a - b) cosh r + (a + b) sinh r.
//
// For small x, where a - b would cancel, n is made 0 in sinh: x is r then, a - b is 0, and the polynomial of sinh r, which
// reaches that far, is the result.
#pragma once
#include <cfloat>

#include "_heap/real/horner_of_pairs.hpp"
#include "_heap/real/magnitudes.hpp"
#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

namespace orx::tef {
extern const double _tefdSinhHATab[128][4];  // T/2, 1/(4 T), and what each lacks as a fraction of it
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dSinhData {
  Row<double> inv_L = 0x1.71547652b82fep+7;    // 128/ln 2
  Row<double> shifter = 0x1.800000001ff8p+52;  // 1.5 * 2^52 + 128 * 1023: leaves n and the exponent's bias
  Row<double> L_hi = 0x1.62e42fef8p-8;  // ln 2/128; short, so that its product with an integer is exact
  Row<double> L_lo = 0x1.1cf79abc9e3b4p-43;
  Row<uint64_t> exponent = 0x7FF0000000000000;
  Row<double> least = 0x1p-400;  // what b is raised to where a is 2^399 or more: its products would underflow
  // (cosh r - 1 - r^2/2) / r^4, |r| <= ln2/256, to 2^-63.9 of cosh r
  Row<double> half = 0.5, c4 = 0x1.55555a3890e07p-5;
  // Magnitudes above this (707.6998), infinities and NaN are rare; finite results end at finite_to.
  Row<double> rare_above = 0x1.61d99p+9, finite_to = 0x1.633ce8fb9f87dp+9, largest = DBL_MAX;
};
inline constexpr dSinhData vdsinh_data{};

// The halves of e^|x| and e^-|x| at n ln2/128, times 2^-orders in the first, and r. `at` is |x| as far as n goes by it.
template <class X>
struct ExponentialHalves {
  X r, a, b, a_rest, b_rest;  // the rests as fractions

  template <int orders>
  static ExponentialHalves with_rests(X size, X at) {
    ExponentialHalves h;
    const SpilledWords<X> n(h.reduce(size, at));
    X row[4];
    gather_rows(
        _tefdSinhHATab[0], [&](int lane) { return n.low(lane) & 127; }, row);
    h.scale<orders>(n.vector(), row[0], row[1]);
    h.b = max(h.b, vdsinh_data.least);
    h.a_rest = row[2];
    h.b_rest = row[3];
    return h;
  }
  template <int orders>
  static ExponentialHalves without_rests(X size, X at) {
    ExponentialHalves h;
    const SpilledWords<X> n(h.reduce(size, at));
    X T, inverse;
    gather_pairs<4>(
        _tefdSinhHATab[0], [&](int lane) { return n.low(lane) & 127; }, T, inverse);
    h.scale<orders>(n.vector(), T, inverse);
    return h;
  }

 private:
  X reduce(X size, X at) {
    const auto& d = vdsinh_data;
    const X N = multiply_add(at, d.inv_L, d.shifter), Nf = N - d.shifter;
    r = subtract_product(subtract_product(size, Nf, d.L_hi), Nf, d.L_lo);
    return N;
  }
  template <int orders>
  void scale(X N, X T, X inverse) {
    X k = N;
    if constexpr (orders > 0) k = k - broadcast<X>(128.0 * orders);
    const X power = scale_from<7>(k);
    a = T * power;
    b = inverse * bit_xor(power, vdsinh_data.exponent);  // the exponent's bits turned over: 2^(1 - k)
  }
};

// Overflow in the direction of the argument.
inline int vdsinh_cout_rare(const double* a, double* r) {
  *r = *a < 0 ? -raise_overflow<double>() : raise_overflow<double>();
  return StatusOverflow;
}

// What both functions do about rare lanes. F::scaled<orders> is the function of |x| times 2^-orders, F::signed_as
// makes it that of x.
template <class F>
struct dSinhKernel : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return above(magnitude(x), vdsinh_data.rare_above);
  }
  template <class X>
  static X eval(X x) {
    return F::signed_as(F::template scaled<0>(magnitude(x)), x);
  }
  // Infinities and NaN, and where the halves would overflow before the sum does. What is left overflows.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const auto& d = vdsinh_data;
    constexpr int orders = 64;
    const X size = magnitude(x);
    left.finish(not_at_most(size, d.largest),
                [&](X special) { return F::signed_as(bit_and(special, size + size), bit_and(special, x)); });
    left.finish(at_most(size, d.finite_to), [&](X finite) {
      const X y = F::template scaled<orders>(bit_and(finite, size)) * broadcast<X>(0x1p64);
      return F::signed_as(y, bit_and(finite, x));
    });
  }
};

// ---- sinh
struct dSinhHAData {
  // Below this n is 0. (sinh r - r) / r^3 for |r| up to it, to 2^-57.2 of sinh r
  Row<double> small = 0.0625;
  Row<double> large = 0x1p-180;  // takes r away where it is tiny and its square would underflow
  Row<double> s[3] = {0x1.5555555555993p-3, 0x1.111110f753fcep-7, 0x1.a0251b7f82067p-13};
};
inline constexpr dSinhHAData vdsinh_ha_data{};
struct dSinhLAData {
  // Without the rests of a and b, a - b is good enough only from here on. The same to 2^-55.4 of sinh r
  Row<double> small = 0.5, one = 1.0;
  Row<double> least = 0x1p-200;  // added to r, so that its fourth power does not underflow
  Row<double> s[5] = {0x1.55555555555dfp-3, 0x1.11111110f26b1p-7, 0x1.a01a022dadf7ep-13,
                      0x1.71dd1d39bf43ep-19, 0x1.b06d138d85428p-26};
};
inline constexpr dSinhLAData vdsinh_la_data{};

// cosh r - 1, of |r| up to ln2/256, from the square of r.
template <class X>
inline X cosh_rest(X r2) {
  return r2 * multiply_add(r2, vdsinh_data.c4, vdsinh_data.half);
}
// The magnitude, but 0 where it is small.
template <class X>
inline X unless_small(X size, const Row<double>& small) {
  return keep(mask_above(size, small), size);
}

template <class F>
struct dSinh : dSinhKernel<F> {
  static constexpr int kTogether = 2;
  template <class X>
  static X signed_as(X y, X x) {
    return with_sign_and_underflow_of(y, x);
  }
  static int rare_lane(const double* a, double* r) { return vdsinh_cout_rare(a, r); }
};
struct dSinhHA : dSinh<dSinhHA> {
  template <int orders, class X>
  static X scaled(X size) {
    const auto& d = vdsinh_ha_data;
    const auto h = ExponentialHalves<X>::template with_rests<orders>(size, unless_small(size, d.small));
    const X q = (h.r + d.large) - d.large, r2 = q * q;
    const X c = cosh_rest(r2), s = h.r + (q * r2) * horner(r2, d.s);
    const X C = h.a + h.b, S = h.a - h.b, S_lo = (h.a - S) - h.b;
    const X rest = h.a * h.a_rest - h.b * h.b_rest;
    return S + ((S_lo + rest) + (S * c + C * s));
  }
};
struct dSinhLA : dSinh<dSinhLA> {
  template <int orders, class X>
  static X scaled(X size) {
    const auto& d = vdsinh_la_data;
    const auto h = ExponentialHalves<X>::template without_rests<orders>(size, unless_small(size, d.small));
    const X q = h.r + d.least, r2 = q * q;
    const X C = h.a + h.b, S = h.a - h.b;
    const X s = multiply_add(r2, horner_of_pairs(r2, r2 * r2, d.s), d.one);  // sinh r / r
    return S + (S * cosh_rest(r2) + (C * h.r) * s);
  }
};

ORX_ISA_END
