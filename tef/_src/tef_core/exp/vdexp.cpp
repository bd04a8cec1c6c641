// e^x, double. x = (256 k + j) ln2/256 + r, |r| <= ln2/512; e^x = 2^k 2^(j/256) e^r.
#include "exp/vdexp.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// Magnitudes from here on (708.3956 is where results stop being normal numbers), infinities and NaN are rare.
constexpr Row<double> kRareFrom = 0x1.6232bp+9;

struct dExp : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return not_below(magnitude(x), kRareFrom);
  }
  // What is left is to be reported: overflow, and results that are denormal or 0.
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(x, kLowest), X{});
    vdexp_finish_large(x, left);
  }
  static int rare_lane(const double* a, double* r) { return vdexp_cout_rare(a, r); }

 private:
  static constexpr Row<double> kLowest = -DBL_MAX;
};

// Where x is tiny the result is 1, and nothing may underflow on the way. x/ln 2 is formed in units of 2^-60, so that it
// is a normal number for denormal x. For all else something small is added to x, which is ready before n is.
constexpr double kUp = 0x1p60;
constexpr Row<double> kLeast = 0x1p-300;

// HA. The sum T + T (p + T_lo) rounds once more than the exact value.
struct {
  Row<double> inv_ln2 = 0x1.71547652b82fep+8 * kUp;  // 256/ln 2
  Row<double> shifter =
      0x1.800000003ffp+52 * kUp;  // 1.5 * 2^52 + 256 * 1023: leaves n and the exponent's bias
  Row<double> ln2_hi =
      0x1.62e42fef8p-9 / kUp;  // ln 2/256; short, so that its product with an integer is exact
  Row<double> ln2_lo = 0x1.1cf79abc9e3b4p-44 / kUp;
  // (e^r - 1 - r) / r^2, to 2^-57.4 of e^r
  Row<double> c[3] = {0x1.fffffffffffdcp-2, 0x1.5555571d6b6bbp-3, 0x1.5555573c703e7p-5};
} constexpr vdexp_data{};

struct dExpHA : dExp {
  template <class X>
  static X eval(X x) {
    return scaled<0>(x);
  }
  // e^x 2^-orders.
  template <int orders, class X>
  static X scaled(X x) {
    const auto& d = vdexp_data;
    // 1. n = round(x * 256/ln2), in the low bits of N.
    const X N = multiply_add(x, d.inv_ln2, d.shifter);
    const X Nf = N - d.shifter;
    const SpilledWords<X> n(N);

    // 2. r = x - n ln2/256.
    const X r = subtract_product(subtract_product(x + kLeast, Nf, d.ln2_hi), Nf, d.ln2_lo);

    // 3. p = e^r - 1.
    const X r2 = r * r;
    const X p = multiply_add(r2, polynomial(r, r2, d.c), r);

    // 4. The table row is n mod 256; the rest of n is the exponent of a scale factor.
    X T, T_lo;
    gather_pairs(
        _tefdExpHATab[0], [&](int lane) { return n.low_byte(lane); }, T, T_lo);

    // 5. e^x = 2^k T (1 + p).
    X k = n.vector();
    if constexpr (orders > 0) k = k - broadcast<X>(256.0 * orders * kUp);
    return multiply_add(T, p + T_lo, T) * scale_from<8>(k);
  }
};

// LA. A finer table, |r| <= ln2/2048, and a shorter polynomial. The exponent comes in last: T p might underflow if T had
// it already.
struct {
  Row<double> inv_ln2 = 0x1.71547652b82fep+10 * kUp;  // 1024/ln 2
  Row<double> shifter = 0x1.80000000ffcp+52 * kUp;    // 1.5 * 2^52 + 1024 * 1023
  Row<double> ln2_hi = 0x1.62e42fecp-11 / kUp;        // ln 2/1024
  Row<double> ln2_lo = 0x1.d1cf79abc9e3bp-42 / kUp;
  // (e^r - 1 - r) / r^2, with the table's factor to 2^-53.5 of e^r
  Row<double> c2 = 0x1.0000002726a4bp-1;
  Row<double> c3 = 0x1.5555557081401p-3;
} constexpr vdexp_la_data{};

struct dExpLA : dExp {
  template <class X>
  static X eval(X x) {
    const auto& d = vdexp_la_data;
    const X N = multiply_add(x, d.inv_ln2, d.shifter);
    const X Nf = N - d.shifter;
    const SpilledWords<X> n(N);
    const X r = subtract_product(subtract_product(x + kLeast, Nf, d.ln2_hi), Nf, d.ln2_lo);
    const X p = multiply_add(r * r, multiply_add(r, d.c3, d.c2), r);
    const X T = gather<X>(kExpLaPowers, [&](int lane) { return n.low(lane) & 1023; });
    return multiply_add(T, p, T) * scale_from<10>(n.vector());
  }
};

// e^(x + rest) = 2^k (hi + tail), for |x| below 750; rest is small.
struct ScaledExponential {
  int k;
  double hi, tail;
};

ScaledExponential reduce_and_evaluate(double x, double rest) {
  const double shifter = 0x1.8p+52;
  const double N = x * 0x1.71547652b82fep+6 + shifter;
  const double Nf = N - shifter;
  const int n = static_cast<int>(bit_cast<uint64_t>(N));
  const double* T = _tefdExpHATab[4 * (n & 63)];
  const double r = (x - Nf * 0x1.62e42fefap-7) + (rest - Nf * 0x1.cf79abc9e3b3ap-46);
  // e^r - 1, to 2^-70.2 of e^r
  const double c3 = 0x1.55555555548fdp-3, c4 = 0x1.5555555556592p-5, c5 = 0x1.111123a859c35p-7,
               c6 = 0x1.6c16ba65f287fp-10;
  const double p = r + r * r * (0.5 + r * (c3 + r * (c4 + r * (c5 + r * c6))));
  return {n >> 6, T[0], T[0] * (p + T[1])};
}

// A result that is denormal. It is formed 60 binary orders too high and rounded there to the grid on which it
// will lie, with the tail still at hand; so it rounds once.
constexpr double kDenormalBelow = -708.3964185322641;
double denormal_result(const ScaledExponential& e) {
  const double up = power_of_two(e.k + 60);
  const double high = e.hi * up, low = e.tail * up;
  const double grid = 0x1p-962;  // 2^52 units of the last place to keep, 2^(-1074 + 60)
  const double on_grid = grid + high;
  const double left = (high - (on_grid - grid)) + low;
  return ((on_grid + left) - grid) * 0x1p-60;
}

}  // namespace

Vec<double, 1> vdexp_half(Vec<double, 1> x) { return dExpHA::scaled<1>(x); }

double vdexp_moderate(double x) {
  const ScaledExponential e = reduce_and_evaluate(x, 0);
  return (e.tail + e.hi) * power_of_two(e.k);
}

double vdexp_wide(double x, double rest) {
  const ScaledExponential e = reduce_and_evaluate(x, rest);
  if (x < kDenormalBelow) return denormal_result(e);
  // 2^1024 does not fit in a scale factor: one order less, and twice.
  const int doubled = e.k > 1023;
  return (e.tail + e.hi) * power_of_two(e.k - doubled) * (1 + doubled);
}

int vdexp_cout_rare(const double* a, double* r) {
  const double x = *a;
  const uint64_t bits = bit_cast<uint64_t>(x);
  const int exponent_field = static_cast<int>(bits >> 52) & 0x7FF;
  if (exponent_field == 0x7FF) {
    *r = bits == bit_cast<uint64_t>(-__builtin_inf()) ? 0.0 : x * x;
    return StatusOk;
  }
  if (exponent_field < 971) {  // |x| below 2^-52
    *r = x + 1.0;
    return StatusOk;
  }
  if (x > 709.782712893384) {
    *r = raise_overflow<double>();
    return StatusOverflow;
  }
  if (x < -745.1332191019411) {
    *r = raise_underflow<double>();
    return StatusUnderflow;
  }
  *r = vdexp_wide(x, 0);
  if (x >= kDenormalBelow) return StatusOk;
  hidden(raise_underflow<double>());  // the last step of the result is exact
  return StatusUnderflow;
}

ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Exp, G9HAynn, dExpHA)
ORX_KERNEL(d, Exp, G9LAynn, dExpLA)
