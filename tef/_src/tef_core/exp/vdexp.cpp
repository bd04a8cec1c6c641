// e^x, double.
#include "exp/vdexp_kernels.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

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

// Where e^x is just a normal number, the rest tells on which side of it the result is.
bool is_denormal(const ScaledExponential& e) { return e.k < -1022 || (e.k == -1022 && e.hi + e.tail < 1); }

// A result that is denormal. It is formed 60 binary orders too high and rounded there to the grid on which it
// will lie, with the tail still at hand; so it rounds once.
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
  if (is_denormal(e)) return denormal_result(e);
  // 2^1024 does not fit in a scale factor: one order less, and twice.
  const int doubled = e.k > 1023;
  return (e.tail + e.hi) * power_of_two(e.k - doubled) * (1 + doubled);
}

int vdexp_cout_rare(const double* a, double* r) {
  constexpr double denormal_below = -708.3964185322641;
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
  if (x >= denormal_below) return StatusOk;
  hidden(raise_underflow<double>());  // the last step of the result is exact
  return StatusUnderflow;
}

ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Exp, G9HAynn, dExpHA)
ORX_KERNEL(d, Exp, G9LAynn, dExpLA)
