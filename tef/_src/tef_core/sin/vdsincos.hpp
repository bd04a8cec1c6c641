// Sine and cosine of double precision.
//
// HA: x = n pi/256 + r, |r| <= pi/512, and sin x = sin t cos r + cos t sin r, t = n pi/256, by a table of both at t
// (after S. Gal, B. Bachelis, "An accurate elementary mathematical library for the IEEE floating point standard",
// ACM TOMS 17, 1991). The cosine in the table is split into a power of two and a rest, so that the large part of
// cos t sin r, the power times r, is exact. The cosine of x is the sine a quarter of a turn further on.
//
// LA: the same with plain doubles in the table, so that sine and cosine come from one row.
// EP: x = n pi + r, |r| <= pi/2, an odd polynomial, and the sign of n.
#pragma once
#include <limits>

#include "_heap/real/turns.hpp"

namespace orx::tef {
// cos t less its power of two, the power, sin t, what it lacks; t = j pi/256
extern const double kSinTable[512][4];
// sin t, cos t
extern const double kPlainSinTable[512][2];
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dSinTableData {
  Row<double> inv = 0x1.45f306dc9c883p+6;  // 256/pi
  // pi/256. The product of n and the first part is exact; that of n and the second is where the result can be small, for
  // there n is a multiple of 128.
  Row<double> p1 = 0x1.921fb544p-7, p2 = 0x1.0b4611a62p-41, p3 = 0x1.8cc51701b839ap-79;
  Row<double> tiny = 0x1p-120;  // its eighth power, which the tangent has, does not underflow
  Row<double> s[2] = {-0x1.5555555554437p-3, 0x1.1110faafe3719p-7};  // (sin r - r)/r^3, to 2^-61 of sin r
  Row<double> c[3] = {-0x1p-1, 0x1.5555555554996p-5,
                      -0x1.6c16a82117c45p-10};  // (cos r - 1)/r^2, to 2^-79.7 of cos r
};
inline constexpr dSinTableData vdsin_data_ha{};

// r, what reduction leaves of x, or +0 where it is too small to be squared: that is where x is, so that this need not wait for
// the reduction. +0 for -0, too, keeps the sign of zero in r + r^3 p for p < 0.
template <class X>
inline X without_tiny(X r, X x, const Row<typename X::Element>& tiny) {
  return keep(not_below(magnitude(x), tiny), r);
}

template <int step = 1, class X>
inline Turn<X> reduce_by_table_steps(X x) {
  const auto& d = vdsin_data_ha;
  const X N = x * d.inv + kShifter<step>;
  const X n = N - kShifter<step>;
  const X r1 = x - n * d.p1;
  const X w = n * d.p2;
  const X r = r1 - w;
  return {N, r, ((r1 - r) - w) - n * d.p3, without_tiny(r, x, d.tiny)};
}

// sin r - r, with the low part of r, and cos r - 1.
template <class X>
struct SmallSineCosine {
  X s, c;
  explicit SmallSineCosine(const Turn<X>& t) {
    const auto& d = vdsin_data_ha;
    const X r2 = t.q * t.q;
    s = multiply_add(t.q * r2, multiply_add(r2, d.s[1], d.s[0]), t.r_lo);
    c = r2 * multiply_add(r2, multiply_add(r2, d.c[2], d.c[1]), d.c[0]);
  }
};

// sin(x + shift pi/256) as an exact large part and a small rest.
template <int shift, class X>
inline HighLow<X> sine_parts(const Turn<X>& t, const SmallSineCosine<X>& f, const SpilledWords<X>& n) {
  X row[4];
  gather_rows(
      kSinTable[0], [&](int lane) { return (n.low(lane) + shift) & 511; }, row);
  const X cos_lo = row[0], cos_hi = row[1], sin_hi = row[2], sin_lo = row[3];
  const auto sum = fast_two_sum(sin_hi, cos_hi * t.r);
  return {sum.high, ((sin_lo + sin_hi * f.c) + (cos_lo * t.r + (cos_hi + cos_lo) * f.s)) + sum.low};
}

enum class Wanted { Sine, Cosine, Both };

template <Wanted wanted, class X>
inline auto wanted_of(const Turn<X>& t) {
  const SmallSineCosine<X> f(t);
  const SpilledWords<X> n(t.N);
  const auto sine = [&](auto shift) {
    const auto y = sine_parts<shift>(t, f, n);
    return y.high + y.low;
  };
  using Quarter = std::integral_constant<int, 128>;
  using None = std::integral_constant<int, 0>;
  if constexpr (wanted == Wanted::Sine)
    return sine(None());
  else if constexpr (wanted == Wanted::Cosine)
    return sine(Quarter());
  else
    return Two<X>{sine(None()), sine(Quarter())};
}

// ---- LA
struct dSinLaData {
  // pi/256. The products of n, below 2^29, with the first two parts are exact; that with the third is where the result can be
  // small, for there n is a multiple of 128. The rounding of the last one does not show in any r of arguments below 2^22.
  Row<double> p1 = 0x1.921fb4p-7, p2 = 0x1.4442dp-31, p3 = 0x1.8469898cp-55, p4 = 0x1.8a2e03707344ap-88;
  Row<double> c[2] = {-0x1.fffffffffc415p-2, 0x1.55552e2b14609p-5};  // (cos r - 1)/r^2, to 2^-58.2 of cos r
};
inline constexpr dSinLaData vdsin_data_la{};

template <class X>
inline Turn<X> reduce_la(X x) {
  const auto& ha = vdsin_data_ha;
  const auto& d = vdsin_data_la;
  const X N = x * ha.inv + kShifter<1>, n = N - kShifter<1>;
  const X r = (((x - n * d.p1) - n * d.p2) - n * d.p3) - n * d.p4;
  return {N, r, X{}, r};
}

template <Wanted wanted, class X>
inline auto wanted_of_la(const Turn<X>& t) {
  const auto& ha = vdsin_data_ha;
  const SpilledWords<X> words(t.N);
  X S, C;
  gather_pairs(
      kPlainSinTable[0], [&](int lane) { return words.low(lane) & 511; }, S, C);
  const X r2 = t.q * t.q;
  const X s = multiply_add(t.q * r2, multiply_add(r2, ha.s[1], ha.s[0]), t.r);
  // So that zeros come out as +0, and those of x keep their sign beside -0 in the table.
  const X c = multiply_add(r2 * r2, vdsin_data_la.c[1], r2 * vdsin_data_la.c[0]);
  const X sine = S + (C * s + S * c), cosine = C + (C * c - S * s);
  if constexpr (wanted == Wanted::Sine)
    return sine;
  else if constexpr (wanted == Wanted::Cosine)
    return cosine;
  else
    return Two<X>{sine, cosine};
}

// ---- EP
// x/pi and n are found in units in which they are normal numbers for denormal x.
template <class T>
constexpr T kSinUnits = sizeof(T) == 8 ? T(0x1p60) : T(0x1p30f);

struct dSinData {
  static constexpr double kUnits = kSinUnits<double>;
  Row<double> inv = 0x1.45f306dc9c883p-2 * kUnits;  // 1/pi
  Row<double> shifter = 0x1.8p+52 * kUnits, half = 0.5 * kUnits;
  // pi; the products of the first two parts with n below 2^23 and a half are exact
  Row<double> p1 = 0x1.921fb4p+1 / kUnits, p2 = 0x1.4442dp-23 / kUnits,
              ep_p3 = 0x1.8469898cc5170p-47 / kUnits;
  Row<double> tiny = 0x1p-100;  // its eighth power does not underflow
  // (sin r - r)/r^3, |r| <= pi/2, to 2^-27.2 of sin r
  Row<double> ep[4] = {-0x1.55554bc6346dbp-3, 0x1.110ed326a50afp-7, -0x1.9f6fed59cab0cp-13,
                       0x1.5dbce9e4f43c4p-19};
};
inline constexpr dSinData vdsin_data{};

// sin r, |r| <= pi/2; q is r without what is too small to be squared.
template <bool ep, class X, class D>
inline X small_sine(X r, X q, const D& d) {
  const X square = q * q;
  X p;
  if constexpr (ep)
    p = polynomial(square, square * square, d.ep);
  else
    p = polynomial(square, square * square, d.c);
  return r + (q * square) * p;
}

// The last bit of N as a sign, and y with its sign turned by it.
template <class X>
inline X last_bit_as_sign(X N) {
  return reals<X>(shift_left<8 * sizeof(typename X::Element) - 1>(bits(N)));
}
template <class X>
inline X turned_over(X y, X N) {
  return bit_xor(y, last_bit_as_sign(N));
}

// sin(n pi + r), as EP, of r that is not tiny; the last bit of N is n's.
template <class X>
inline X sine_of_rest(X r, X N) {
  return turned_over(small_sine<true>(r, r, vdsin_data), N);
}

// sin of x, or of x + pi/2: then n counts from a half. The constants `d` are those of the precision; only singles have LA.
template <bool cosine, bool ep, class X, class D>
inline X sine_by_polynomial(X x, const D& d) {
  const X N = (cosine ? multiply_add(x, d.inv, d.half) : x * d.inv) + d.shifter;
  const X n = cosine ? (N - d.shifter) - d.half : N - d.shifter;
  const X rest = (x - n * d.p1) - n * d.p2;
  X r;
  if constexpr (ep)
    r = rest - n * d.ep_p3;
  else
    r = (rest - n * d.p3) - n * d.p4;
  return turned_over(small_sine<ep>(r, cosine ? r : without_tiny(r, x, d.tiny), d), N);
}

// What is wanted of sine(std::false_type) and, for the cosine, sine(std::true_type).
template <Wanted wanted, class Sine>
inline auto chosen(Sine sine) {
  if constexpr (wanted == Wanted::Both)
    return Two<decltype(sine(std::false_type()))>{sine(std::false_type()), sine(std::true_type())};
  else
    return sine(std::bool_constant<wanted == Wanted::Cosine>());
}

// ---- the kernels
// The scalar routine, for what is not finite; the status to report. x is looked at by its bits: quietly.
template <class T>
inline int sine_of_special(const T* a, T* r) {
  const T x = hidden(*a);
  const bool infinite = bit_cast<BitsOf<T>>(x) << 1 == ~BitsOf<T>{} << std::numeric_limits<T>::digits;
  *r = infinite ? x * 0 : x * x;
  return infinite ? StatusDomain : StatusOk;
}
int vdsin_cout_rare(const double* a, double* r);

// Arguments from `from` on go by the digits of 1/pi: there the kernel has an eval_far. NaN, still as a vector, is its own result.
template <class R, const auto& from>
struct PeriodicKernel : Kernel<R(typename std::decay_t<decltype(from)>::Element)> {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), from);
  }
  template <class X>
  static auto far(X x) {
    return complement(outside(magnitude(x), from, kLargest));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(unordered(x, x), [&](X nan) {
      const X y = keep(nan, x) * keep(nan, x);
      if constexpr (std::is_same_v<R, T>)
        return y;
      else
        return Two<X>{y, y};
    });
  }

 private:
  using T = typename std::decay_t<decltype(from)>::Element;
  static constexpr Row<T> kLargest = std::numeric_limits<T>::max();
};

template <class T, Wanted wanted>
using ResultOf = std::conditional_t<wanted == Wanted::Both, Two<T>, T>;

template <Wanted wanted, const auto& from, auto cout_rare>
struct SinKernel : PeriodicKernel<ResultOf<typename std::decay_t<decltype(from)>::Element, wanted>, from> {
  template <class T>
  static int rare_lane(const T* a, T* r) {
    return cout_rare(a, r);
  }
  template <class T>
  static int rare_lane(const T* a, T* r, T* r2) {
    const int status = cout_rare(a, r);
    *r2 = *r;
    return status;
  }
};

// HA and LA subtract multiples of pi/256 from what is small enough, EP multiples of pi.
inline constexpr Row<double> kSinHaFrom = 0x1.fff8p+15, kSinLaFrom = 0x1p+22, kSinEpFrom = 0x1p+24;

template <Wanted wanted>
struct dSinHA : SinKernel<wanted, kSinHaFrom, vdsin_cout_rare> {
  template <class X>
  static auto eval(X x) {
    if constexpr (wanted == Wanted::Cosine) x = x + vdsin_data_ha.tiny;
    return wanted_of<wanted>(reduce_by_table_steps(x));
  }
  template <class X>
  static auto eval_far(X x) {
    return wanted_of<wanted>(reduce_by_digits(x));
  }
};
template <Wanted wanted>
struct dSinLA : SinKernel<wanted, kSinLaFrom, vdsin_cout_rare> {
  template <class X>
  static auto eval(X x) {
    const auto& d = vdsin_data_ha;
    if constexpr (wanted == Wanted::Cosine) return wanted_of_la<wanted>(reduce_la(x + d.tiny));
    Turn<X> t = reduce_la(x);
    t.q = without_tiny(t.r, x, d.tiny);
    return wanted_of_la<wanted>(t);
  }
  template <class X>
  static auto eval_far(X x) {
    return wanted_of_la<wanted>(reduce_by_digits_la(x));
  }
};
template <Wanted wanted>
struct dSinEP : SinKernel<wanted, kSinEpFrom, vdsin_cout_rare> {
  template <class X>
  static auto eval(X x) {
    return chosen<wanted>([x](auto cosine) { return sine_by_polynomial<cosine, true>(x, vdsin_data); });
  }
  template <class X>
  static auto eval_far(X x) {
    const Units<X> units(x);
    return chosen<wanted>([&](auto cosine) {
      const Steps<2 * kQuarterTurn, cosine ? kQuarterTurn : 0, X> n(units);
      const X r = (n.rest + units.places(3)) * kTurnData.unit;  // to 2^-49
      return sine_of_rest(r, n.N);
    });
  }
};

ORX_ISA_END

// The kernels of a function, in all classes: ORX_SINES(unary, d, Cos, Cosine).
#define ORX_SINES(shape, t, Fn, what)                                              \
  ORX_KERNEL_OF(shape, t, Fn, G9HAynn, orx::tef::t##SinHA<orx::tef::Wanted::what>) \
  ORX_KERNEL_OF(shape, t, Fn, G9LAynn, orx::tef::t##SinLA<orx::tef::Wanted::what>) \
  ORX_KERNEL_OF(shape, t, Fn, G9EPnnn, orx::tef::t##SinEP<orx::tef::Wanted::what>)
