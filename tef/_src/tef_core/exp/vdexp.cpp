// e^x, double. x = (64 k + j) ln2/64 + r, |r| <= ln2/128; e^x = 2^k 2^(j/64) e^r.
#include "exp/vdexp.hpp"

ORX_ISA_BEGIN
namespace {

// HA. The polynomial's error is below 2^-63; the sum (p * T_hi + T_lo) + T_hi rounds once more than the exact value.
struct {
  row<double> inv_ln2 = 0x1.71547652b82fep+6;  // 64/ln 2
  row<double> shifter = 0x1.8p+52;             // adding it leaves the nearest integer in the low bits
  row<double> ln2_hi = 0x1.62e42fefap-7;       // ln 2/64; short, so that its product with an integer is exact
  row<double> ln2_lo = 0x1.cf79abc9e3b3ap-46;
  row<double> c2 = 0x1.fffffffffdb3bp-2;
  row<double> c3 = 0x1.555555555653ep-3;
  row<double> c4 = 0x1.555573f218b93p-5;
  row<double> c5 = 0x1.111112d9f549bp-7;
} constexpr vdexp_data{};

struct dExpHA : kernel<double> {
  static void eval(V x, V& y, int& rare) {
    const auto& d = vdexp_data;
    rare = magnitude_above(x, 0x4086232A);  // |x| above 708.3956

    // 1. n = round(x * 64/ln2), in the low bits of N.
    const V N = x * d.inv_ln2 + d.shifter;
    const V Nf = N - d.shifter;

    // 2. The table row is n mod 64; the rest goes to the exponent.
    const auto n = to_ints(N);
    V T_hi, T_lo;
    gather_pairs(_tefdExpHATab, _mm_slli_epi32(_mm_and_si128(low_words(N), _mm_set1_epi32(63)), 4), T_hi, T_lo);
    const auto exponent = shift_left64<46>(bit_andnot(_mm_set1_epi64x(63), n));

    // 3. r = x - n ln2/64.
    const V r = (x - Nf * d.ln2_hi) - Nf * d.ln2_lo;

    // 4. p = e^r - 1.
    const V p = r + r * r * (d.c2 + r * (d.c3 + r * (d.c4 + r * d.c5)));

    // 5. e^x = 2^k T (1 + p).
    const V t = (p * T_hi + T_lo) + T_hi;
    y = from_ints<V>(add64(to_ints(t), exponent));
  }
  static int rare_lane(const double* a, double* r) { return vdexp_cout_rare(a, r); }
};

// LA. The table's entries carry 1/a0, which makes the leading coefficient 1.
alignas(64) constexpr double powers_over_a0[1024] = {
#include "exp/vdexp_la.inc"
};

struct {
  row<double> inv_ln2 = 0x1.71547652b82fep+10;  // 1024/ln 2
  row<double> shifter = 0x1.8p+52;
  row<double> ln2_hi = 0x1.62e42fecp-11;        // ln 2/1024
  row<double> ln2_lo = 0x1.d1cf79abc9e3bp-42;
  row<double> a0 = 0x1.7fffffe3ca7b0p+2;
  row<double> a1 = 0x1.7fffffe3ca7afp+2;
  row<double> a2 = 0x1.8000002503ecdp+1;
} constexpr vdexp_la_data{};

struct dExpLA : kernel<double> {
  static void eval(V x, V& y, int& rare) {
    const auto& d = vdexp_la_data;
    rare = magnitude_above(x, 0x4086232A);
    const V N = x * d.inv_ln2 + d.shifter;
    const V Nf = N - d.shifter;
    const auto n = to_ints(N);
    const V T = gather<V>(powers_over_a0, _mm_slli_epi32(_mm_and_si128(low_words(N), _mm_set1_epi32(1023)), 3));
    const auto exponent = shift_left64<42>(bit_andnot(_mm_set1_epi64x(1023), n));
    const V r = (x - Nf * d.ln2_hi) - Nf * d.ln2_lo;
    const V t = T * (d.a0 + r * (d.a1 + r * (d.a2 + r)));
    y = from_ints<V>(add64(to_ints(t), exponent));
  }
  static int rare_lane(const double* a, double* r) { return vdexp_cout_rare(a, r); }
};

}  // namespace

namespace {

// e^x = 2^k (T.hi + tail), for |x| below 750.
struct scaled_exponential {
  int k;
  double hi, tail;
};

scaled_exponential reduce_and_evaluate(double x) {
  const double shifter = 0x1.8p+52;
  const double N = x * 0x1.71547652b82fep+6 + shifter;
  const double Nf = N - shifter;
  const int n = static_cast<int>(bit_cast<uint64_t>(N));
  const double_pair T = _tefdExpHATab[n & 63];
  const double r = (x - Nf * 0x1.62e42fefap-7) - Nf * 0x1.cf79abc9e3b3ap-46;
  const double p = r + r * r * (0.5 + r * (0.1666666666665788 + r * (0.04166666666677052 +
                   r * (0.008333341995140497 + r * 0.0013888870459233254))));
  return {n >> 6, T.hi, p * T.hi + T.lo};
}

// A result that is denormal. It is formed 60 binary orders too high and rounded there to the grid on which it will
// lie, with the tail still at hand; so it rounds once.
double denormal_result(const scaled_exponential& e) {
  const double up = power_of_two(e.k + 60);
  const double high = e.hi * up, low = e.tail * up;
  const double grid = 0x1.8p-962;  // 1.5 * 2^52 units of the last place to keep, 2^(-1074 + 60)
  const double on_grid = grid + high;
  const double left = (high - (on_grid - grid)) + low;
  return ((on_grid + left) - grid) * 0x1p-60;
}

}  // namespace

double vdexp_moderate(double x) {
  const scaled_exponential e = reduce_and_evaluate(x);
  return (e.tail + e.hi) * power_of_two(e.k);
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
    *r = hidden(DBL_MAX) * DBL_MAX;
    return StatusOverflow;
  }
  if (x < -745.1332191019411) {
    *r = hidden(DBL_MIN) * DBL_MIN;
    return StatusUnderflow;
  }
  const scaled_exponential e = reduce_and_evaluate(x);
  if (x < -708.3964185322641) {
    *r = denormal_result(e);
    return StatusUnderflow;
  }
  // 2^1024 does not fit in a scale factor: one order less, and twice.
  const int doubled = e.k > 1023;
  *r = (e.tail + e.hi) * power_of_two(e.k - doubled) * (1 + doubled);
  return StatusOk;
}

ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Exp, G9HAynn, dExpHA, 0.52, -700, 700)
ORX_KERNEL(d, Exp, G9LAynn, dExpLA, 1.0, -700, 700)
