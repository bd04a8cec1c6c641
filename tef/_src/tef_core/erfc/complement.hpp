// The complementary error function and the normal distribution's tail: one method.
//
// f(a + d) = f(a) - D d (1 + g(t, u)) as in erf/error_integral.hpp, f from 1 or 1/2 down to the least number, with a
// table's row for each multiple of 2^-7. Where f is small, D d is up to a fifth of it, so its leading part is made exact.
// Far out the table holds multiples, so that nothing in between is denormal.
#pragma once
#include <cfloat>

#include "erf/error_integral.hpp"

ORX_ISA_BEGIN(orx::tef)

// The integrals of v^(2m) e^(-2 t v), v from 0 to 1, times (-1)^m/m!: (first - 1 + t)/t^2, second, third; the next is a
// number.
struct ComplementData {
  Row<double> fourth = -1.0 / 42;
  // |t| <= 0.107: to 2^-56.2 of the first integral, to 2^-41.9 of the second integral, to 2^-23 of the third integral
  Row<double> first[8] = {0x1.555555555544cp-1,  -0x1.5555555555821p-2, 0x1.11111111f1a9cp-3,
                          -0x1.6c16c169ff8b5p-5, 0x1.a019f2ffeede4p-7,  -0x1.a01a0e2af1ff6p-9,
                          0x1.723de6af228dcp-11, -0x1.27ea88c366c5ep-13};
  Row<double> second[8] = {-0x1.5555555554ffp-2,  0x1.000000000181bp-1, -0x1.9999999d4cc1p-2,
                           0x1.c71c71b7c5f47p-3,  -0x1.861848342806p-4, 0x1.111134c3e72a2p-5,
                           -0x1.44113a2b56a17p-7, 0x1.4cac410bccb1ap-9};
  Row<double> third[5] = {0x1.99999924f9c97p-4, -0x1.55550c84a9978p-3, 0x1.2492d2ab38b8p-3,
                          -0x1.561d143ec425fp-4, 0x1.2f075793efc35p-5};
  Row<double> least = 0x1p-200;  // in place of smaller magnitudes, which make no difference
  Row<uint64_t> leading =
      0xFFFFFE0000000000;  // 12 bits of a number: their product with d is exact where f is small
};
inline constexpr ComplementData kComplement{};
struct ComplementLowData {
  // |t| <= 34/512. LA: to 2^-55.4 of the first integral, to 2^-33.5 of the second integral, to 2^-20 of the third integral
  Row<double> first[7] = {0x1.5555555555575p-1,  -0x1.5555555562c5p-2, 0x1.11111110e6a79p-3,
                          -0x1.6c16bf7cc70f4p-5, 0x1.a01a04fb0d055p-7, -0x1.a044ed3b01317p-9,
                          0x1.71d930e9edb6dp-11};
  Row<double> second[6] = {-0x1.55555555ca46bp-2, 0x1.fffffffd45596p-2,  -0x1.99999251e32edp-2,
                           0x1.c71c8228c383dp-3,  -0x1.865d0cbbc178bp-4, 0x1.10fb7ac8c24e9p-5};
  Row<double> third[4] = {0x1.99998166b6a8ap-4, -0x1.555580909ce81p-3, 0x1.24e81724bf782p-3,
                          -0x1.5522f8058dbb2p-4};
  // EP: to 2^-26.9 of the first integral, to 2^-8.5 of the second integral
  Row<double> ep_first[3] = {0x1.55556030024d3p-1, -0x1.55821dc908cddp-2, 0x1.10faac1763f85p-3};
  Row<double> ep_second[2] = {-0x1.563c9644b55a6p-2, 0x1.ffa58955dfc57p-2};
};
inline constexpr ComplementLowData kComplementLow{};

enum class Accuracy { kHA, kLA, kEP };

// The row that belongs to x, its values, and t and u; F describes the function.
template <class F, class X>
struct ComplementStep {
  SpilledWords<X> row;
  X d, t, u, E, D;

  explicit ComplementStep(X x) : row(x + kErfGridShifter) {
    const X a = (x + kErfGridShifter) - kErfGridShifter;
    d = x - a;
    const X scaled = F::kHalf ? d * broadcast<X>(0.5) : d;
    t = a * scaled;
    u = d * scaled;
    gather_pairs(
        F::kTable[0], [&](int lane) { return row.low(lane); }, E, D);
  }
  // f in two parts; from row F::kFar on 2^300 f.
  HighLow<X> value() const {
    const auto& c = kComplement;
    const X low = gather<X>(F::kLowTable, [&](int lane) { return row.low(lane); });
    const X t2 = t * t;
    const X third = multiply_add(u, c.fourth, polynomial(t, t2, c.third));
    const X second = multiply_add(u, third, polynomial(t, t2, c.second));
    const X g = multiply_add(t2, polynomial(t, t2, c.first), multiply_subtract(u, second, t));
    const X leading = bit_and(D, c.leading);
    const auto sum = fast_two_sum(E, X{} - leading * d);
    return {sum.high, sum.low + (low - ((D - leading) * d + (D * d) * g))};
  }
  // The same rounded.
  template <bool ep>
  X rounded_value() const {
    const auto& c = kComplementLow;
    const X t2 = t * t;
    X g;
    if constexpr (ep) {
      g = multiply_add(t2, polynomial(t, t2, c.ep_first),
                       multiply_subtract(u, multiply_add(t, c.ep_second[1], c.ep_second[0]), t));
    } else {
      const X second = multiply_add(u, polynomial(t, t2, c.third), polynomial(t, t2, c.second));
      g = multiply_add(t2, polynomial(t, t2, c.first), multiply_subtract(u, second, t));
    }
    const X Dd = D * d;
    return E - multiply_add(Dd, g, Dd);
  }
};

// F tells the tables, the sign by which its argument becomes x in f(x), the whole, which is f(x) + f(-x), and where results
// become small.
template <class F, Accuracy accuracy>
struct Complement : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return not_below(F::oriented(x), kFar);
  }
  template <class X>
  static X eval(X argument) {
    const X x = F::oriented(argument), size = min(max(magnitude(x), kComplement.least), kBelowFar);
    const ComplementStep<F, X> step(size);
    // On the other side it is the whole less f(-x).
    const auto negative = less(x, X{});
    const X other = keep(negative, broadcast_bits<X>(kSignBit<double>)),
            whole = keep(negative, constant<X>(kWhole));
    if constexpr (accuracy == Accuracy::kHA) {
      const auto f = step.value();
      const auto sum = fast_two_sum(whole, bit_xor(f.high, other));
      return sum.high + (sum.low + bit_xor(f.low, other));
    } else {
      return whole + bit_xor(step.template rounded_value<accuracy == Accuracy::kEP>(), other);
    }
  }
  // Far out; what rounds to 0 is left.
  template <class X, class Left>
  static void finish(X argument, Left& left) {
    const X x = F::oriented(argument);
    left.finish(unordered(x, x), [&](X nan) { return bit_and(nan, x) + bit_and(nan, x); });
    left.finish(equal(x, broadcast<X>(__builtin_inf())), X{});
    const auto in_range = at_most(x, broadcast<X>(F::kLast));
    if (any(bit_and(left.lanes, Vec<double, 1>(in_range)))) {
      const auto f = ComplementStep<F, X>(select(in_range, max(x, kFar), constant<X>(kFar))).value();
      const X y = (f.high + f.low) * broadcast<X>(0x1p-300);
      raise_underflow_of_denormals(y);
      left.finish(at_most(x, broadcast<X>(F::kReported)), y);
      left.finish(in_range, y, StatusUnderflow);
    }
  }
  static int rare_lane(const double*, double* r) {
    *r = raise_underflow<double>();
    return StatusUnderflow;
  }

 private:
  // From here on rows are those of multiples.
  static constexpr double kFarFrom = F::kFar / 128.0 - 1.0 / 256;
  static constexpr Row<double> kFar = kFarFrom, kBelowFar = kFarFrom * (1 - DBL_EPSILON / 2),
                               kWhole = F::kWhole;
};

// The same in single precision: in double, where the shortest series gives more than a single holds. Results that are denormal or
// 0 are reported.
template <class F>
struct SingleComplement : Kernel<float(float)> {
  static constexpr int kTogether = 2;

  template <class X>
  static auto rare(X x) {
    return not_at_most(F::oriented(x), kLastNormal);
  }
  template <class X>
  static X eval(X x) {
    return narrow(Complement<F, Accuracy::kEP>::eval(widen(x)));
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(unordered(x, x), [&](X nan) { return bit_and(nan, x) + bit_and(nan, x); });
    left.finish(equal(F::oriented(x), broadcast<X>(__builtin_inff())), X{});
    left.finish(not_at_most(F::oriented(x), kLastNormal), eval(select(left.lanes, x, X{})), StatusUnderflow);
  }

 private:
  static constexpr Row<float> kLastNormal = F::kLastNormalSingle;
};

ORX_ISA_END
