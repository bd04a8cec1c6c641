// The logarithms of single precision.
//
// x = 2^k m with m in [2/3, 4/3); e = m - 1 is exact, and the logarithm is k L + log(1 + e), L the logarithm
// of 2, with a polynomial for the second term. No table, and no integers: the exponent of 3 x is k + 1, its
// complement that of 2^-k.
#pragma once
#include <cfloat>

#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

struct SingleLogConstants {
  Row<float> three = 3.0f, one = 1.0f;
  Row<float> bias = 0x1p30f;  // 128 in an exponent field, as an integer
  Row<uint32_t> exponent_field = 0x7F800000;
};
inline constexpr SingleLogConstants kSlogData{};

template <class X>
struct SingleLogParts {
  X k, scale, m;  // k in units of 2^-23, as an exponent field read as an integer has it; scale = 2^-k

  explicit SingleLogParts(X x) {
    const auto& d = kSlogData;
    const X field = constant<X>(d.exponent_field), x3 = x * d.three;
    k = integer_bits(bit_and(x3, field)) - d.bias;
    scale = bit_andnot(x3, field);
    m = x * scale;
  }
  X e() const { return m - kSlogData.one; }
};

// For -1/3 <= e < 1/3: (ln(1 + e) - e + e^2/2) / e^3 to 2^-27.6 of ln(1 + e), and (ln(1 + e) - e) / e^2
// to 2^-25.1 of ln(1 + e) and to 2^-14.2 of ln(1 + e).
struct sLnData {
  Row<float> half = 0.5f;
  Row<float> ha[8] = {0x1.555506p-2f, -0x1.fffefp-3f,  0x1.99d05ep-3f, -0x1.559de4p-3f,
                      0x1.1ed424p-3f, -0x1.f30e36p-4f, 0x1.1e73ap-3f,  -0x1.080c9ep-3f};
  Row<float> la[8] = {-0x1.ffffd6p-2f, 0x1.5554fcp-2f, -0x1.00144ep-2f, 0x1.99d398p-3f,
                      -0x1.5038e4p-3f, 0x1.1eaacap-3f, -0x1.3b0c36p-3f, 0x1.1f1bb8p-3f};
  Row<float> ep[4] = {-0x1.ff48d4p-2f, 0x1.5468d6p-2f, -0x1.19ad96p-2f, 0x1.cc56fep-3f};
  Row<uint32_t> leading_bits = 0xFFFFF000;  // 12 significant ones, so that a product is exact
  // ln 2 * 2^-23; L_hi is short: its product with an exponent is exact
  Row<float> L_hi = 0x1.62e4p-24f, L_lo = 0x1.7f7d1cp-43f;
  Row<float> L = 0x1.62e43p-24f;
};
inline constexpr sLnData vsln_data{};

// ln(1 + e) = (e - e^2/2) + e^3 Q(e). Half the square of e's leading bits is exact, and its difference from e
// keeps its rounding error.
template <class X>
inline HighLow<X> sln_fraction(X e) {
  const auto& d = vsln_data;
  const X e_hi = bit_and(e, d.leading_bits), e2 = e * e;
  const X half_hi = e_hi * d.half;
  const X square = e_hi * half_hi;
  const X high = e - square;
  const X square_rest = (e - e_hi) * multiply_add(e, d.half, half_hi);
  return {high, ((e - high) - square) + multiply_subtract(e2 * e, polynomial(e, e2, d.ha), square_rest)};
}

// ln(m + t) + k ln 2, t a correction to m of half a unit of its last place at most, or m = 1 and t anything
// below.
template <class X>
inline X sln_ha(const SingleLogParts<X>& p, X t) {
  const auto& d = vsln_data;
  const HighLow<X> f = sln_fraction(p.e());
  const auto S = fast_two_sum(p.k * d.L_hi, f.high);
  return S.high + (S.low + multiply_add(p.k, d.L_lo, t + f.low));
}
template <class X, int n>
inline X sln_low(const SingleLogParts<X>& p, X t, const Row<float> (&coefficients)[n]) {
  const X e = p.e(), e2 = e * e, first = multiply_add(p.k, vsln_data.L, e + t);
  return multiply_add(e2, polynomial(e, e2, coefficients), first);
}
template <class X>
inline X sln_la(const SingleLogParts<X>& p, X t) {
  return sln_low(p, t, vsln_data.la);
}
template <class X>
inline X sln_ep(const SingleLogParts<X>& p, X t) {
  return sln_low(p, t, vsln_data.ep);
}

struct SlnHA {
  template <class X>
  static X log(const SingleLogParts<X>& p) {
    return sln_ha(p, X{});
  }
};
struct SlnLA {
  template <class X>
  static X log(const SingleLogParts<X>& p) {
    return sln_la(p, X{});
  }
};
struct SlnEP {
  template <class X>
  static X log(const SingleLogParts<X>& p) {
    return sln_ep(p, X{});
  }
};

struct SingleLogLimits {
  Row<float> smallest = FLT_MIN, largest = FLT_MAX / 4, finite = FLT_MAX;  // 3 x overflows behind the largest
  // What brings the others among the usual ones, and what that does to k.
  // A denormal's bits behind the exponent of `under`, less `under`, are the denormal times 2^32, without a product; the
  // other lanes stay at `under`.
  Row<float> under = 0x1p-94f, down = 0x1p-32f, orders = 0x1p28f, orders_down = -0x1p28f;
};
inline constexpr SingleLogLimits kSingleLog{};

// Rare lanes that are denormal, or so large that 3 x overflows; infinity and NaN. Log::log gives the logarithm
// from the parts.
template <class Log, class X, class Left>
inline void finish_single_log(X x, const Row<float>& large_from, Left& left) {
  const auto& d = kSingleLog;
  const auto moved = [&](X scaled, const Row<float>& orders) {
    SingleLogParts<X> p(scaled);
    p.k = p.k + orders;
    return Log::log(p);
  };
  left.finish(not_at_most(x, d.finite), [&](X special) { return bit_and(special, x) + bit_and(special, x); });
  left.finish(bit_and(less(X{}, x), less(x, d.smallest)), [&](X denormal) {
    return moved(bit_or(bit_and(denormal, x), d.under) - bit_and(denormal, d.under), d.orders_down);
  });
  left.finish(less(constant<X>(large_from), x),
              [&](X large) { return moved(select(large, x, constant<X>(d.finite)) * d.down, d.orders); });
}

// A logarithm of singles, rare where x is not a positive normal number or 3 x overflows. The scalar routine is
// that of double precision.
template <int (*rare_function)(const double*, double*), class Log>
struct SingleLog : Kernel<float(float)> {
  static constexpr int kTogether = 2;
  template <class X>
  static auto rare(X x) {
    return outside(x, kSingleLog.smallest, kSingleLog.largest);
  }
  template <class X>
  static X eval(X x) {
    return Log::log(SingleLogParts<X>(x));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    finish_single_log<Log>(x, kSingleLog.largest, left);
  }
  static int rare_lane(const float* a, float* r) {
    const double x = *a;
    double y;
    const int status = rare_function(&x, &y);
    *r = static_cast<float>(y);
    return status;
  }
};

ORX_ISA_END
