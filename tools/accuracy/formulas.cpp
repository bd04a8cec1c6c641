#include "formulas.hpp"

#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace orx {
namespace {

// A number of the precision of another.
class Local {
 public:
  explicit Local(mpfr_srcptr like) { mpfr_init2(x_, mpfr_get_prec(like)); }
  ~Local() { mpfr_clear(x_); }
  Local(const Local&) = delete;
  Local& operator=(const Local&) = delete;
  operator mpfr_ptr() { return x_; }

 private:
  mpfr_t x_;
};

// MPC's complex number: the two parts in a row, as this program holds them.
using mpc_ptr = mpfr_t*;
using mpc_srcptr = const mpfr_t*;
constexpr int kNearest = 0;  // MPC_RNDNN

// Steps of Newton's method from a start that is not far off: each doubles the digits, and the one after a change in the
// last half of them would change nothing.
template <class Step>
void newton(mpfr_ptr r, Step step) {
  Local change(r);
  for (int i = 0; i < 10; ++i) {
    step(change);
    mpfr_sub(r, r, change, MPFR_RNDN);
    if (mpfr_zero_p(change)) return;
    const long small = static_cast<long>(mpfr_get_prec(r)) * 5 / 8;
    if (mpfr_get_exp(change) < mpfr_get_exp(r) - small) return;
  }
}

// 2/sqrt(pi) e^(-x^2), the derivative of erf.
void gauss(mpfr_ptr r, mpfr_srcptr x) {
  Local root(r);
  mpfr_const_pi(root, MPFR_RNDN);
  mpfr_sqrt(root, root, MPFR_RNDN);
  mpfr_sqr(r, x, MPFR_RNDN);
  mpfr_neg(r, r, MPFR_RNDN);
  mpfr_exp(r, r, MPFR_RNDN);
  mpfr_div(r, r, root, MPFR_RNDN);
  mpfr_mul_2ui(r, r, 1, MPFR_RNDN);
}

// erf(r) = y for |y| <= 1/2.
void inverse_erf_small(mpfr_ptr r, mpfr_srcptr y) {
  // The digits of doubles first, where a step is cheap.
  const double goal = mpfr_get_d(y, MPFR_RNDN);
  double start = 0.9 * goal;
  for (int i = 0; i < 5; ++i) start -= (std::erf(start) - goal) * 0.886226925452758 * std::exp(start * start);
  if (std::fabs(start) > 1e-290)
    mpfr_set_d(r, start, MPFR_RNDN);
  else
    mpfr_mul_d(r, y, 0.886226925452758, MPFR_RNDN);
  newton(r, [&](mpfr_ptr change) {
    Local slope(r);
    gauss(slope, r);
    mpfr_erf(change, r, MPFR_RNDN);
    mpfr_sub(change, change, y, MPFR_RNDN);
    mpfr_div(change, change, slope, MPFR_RNDN);
  });
}

// erfc(r) = y for 0 < y <= 1/2, from ln erfc(r) = ln y: the logarithm is nearly a parabola and Newton's method cannot
// miss.
void inverse_erfc_small(mpfr_ptr r, mpfr_srcptr y) {
  Local goal(r);
  mpfr_log(goal, y, MPFR_RNDN);
  const double log = mpfr_get_d(goal, MPFR_RNDN);
  double start = std::sqrt(-log);  // x^2 is somewhat below -ln y
  for (int i = 0; i < 6 && start < 26; ++i) {
    const double value = std::erfc(start);
    start += (std::log(value) - log) * value * 0.886226925452758 * std::exp(start * start);
  }
  mpfr_set_d(r, start, MPFR_RNDN);
  newton(r, [&](mpfr_ptr change) {
    Local slope(r), value(r);
    mpfr_erfc(value, r, MPFR_RNDN);
    gauss(slope, r);
    mpfr_div(slope, slope, value, MPFR_RNDN);
    mpfr_log(change, value, MPFR_RNDN);
    mpfr_sub(change, goal, change, MPFR_RNDN);
    mpfr_div(change, change, slope, MPFR_RNDN);
  });
}

// erfc(r) = y for all y. 1 - y is exact where it is needed.
void inverse_erfc(mpfr_ptr r, mpfr_srcptr y) {
  if (mpfr_nan_p(y) || mpfr_sgn(y) < 0 || mpfr_cmp_ui(y, 2) > 0) return mpfr_set_nan(r);
  if (mpfr_zero_p(y)) return mpfr_set_inf(r, 1);
  if (mpfr_cmp_ui(y, 2) == 0) return mpfr_set_inf(r, -1);
  Local rest(r);
  if (mpfr_cmp_d(y, 0.5) <= 0) return inverse_erfc_small(r, y);
  if (mpfr_cmp_d(y, 1.5) < 0) {
    mpfr_ui_sub(rest, 1, y, MPFR_RNDN);
    return inverse_erf_small(r, rest);
  }
  mpfr_ui_sub(rest, 2, y, MPFR_RNDN);
  inverse_erfc_small(r, rest);
  mpfr_neg(r, r, MPFR_RNDN);
}

void erfcinv(mpfr_t* r, const mpfr_t* x) { inverse_erfc(r[0], x[0]); }

void erfinv(mpfr_t* r, const mpfr_t* x) {
  if (mpfr_zero_p(x[0])) {
    mpfr_set(r[0], x[0], MPFR_RNDN);
    return;
  }
  if (mpfr_cmp_d(x[0], -0.5) > 0 && mpfr_cmp_d(x[0], 0.5) < 0) return inverse_erf_small(r[0], x[0]);
  Local rest(r[0]);
  mpfr_ui_sub(rest, 1, x[0], MPFR_RNDN);
  inverse_erfc(r[0], rest);
}

// -sqrt(2) erfcinv(2 p).
void cdfnorminv(mpfr_t* r, const mpfr_t* x) {
  Local twice(r[0]), root(r[0]);
  mpfr_mul_2ui(twice, x[0], 1, MPFR_RNDN);
  inverse_erfc(r[0], twice);
  mpfr_sqrt_ui(root, 2, MPFR_RNDN);
  mpfr_mul(r[0], r[0], root, MPFR_RNDN);
  mpfr_neg(r[0], r[0], MPFR_RNDN);
  if (mpfr_zero_p(r[0])) mpfr_setsign(r[0], r[0], 0, MPFR_RNDN);
}

void cdfnorm(mpfr_t* r, const mpfr_t* x) {
  Local root(r[0]);
  mpfr_sqrt_ui(root, 2, MPFR_RNDN);
  mpfr_div(root, x[0], root, MPFR_RNDN);
  mpfr_neg(root, root, MPFR_RNDN);
  mpfr_erfc(r[0], root, MPFR_RNDN);
  mpfr_div_2ui(r[0], r[0], 1, MPFR_RNDN);
}

void lgamma(mpfr_t* r, const mpfr_t* x) {
  int sign;
  mpfr_lgamma(r[0], &sign, x[0], MPFR_RNDN);
}

void inv(mpfr_t* r, const mpfr_t* x) { mpfr_ui_div(r[0], 1, x[0], MPFR_RNDN); }

void inv_cbrt(mpfr_t* r, const mpfr_t* x) {
  mpfr_cbrt(r[0], x[0], MPFR_RNDN);
  mpfr_ui_div(r[0], 1, r[0], MPFR_RNDN);
}

// MPFR's own knows no sign of zero.
void inv_sqrt(mpfr_t* r, const mpfr_t* x) {
  mpfr_sqrt(r[0], x[0], MPFR_RNDN);
  mpfr_ui_div(r[0], 1, r[0], MPFR_RNDN);
}

// Squares and cubes of doubles are exact in 192 bits.
void pow2o3(mpfr_t* r, const mpfr_t* x) {
  mpfr_sqr(r[0], x[0], MPFR_RNDN);
  mpfr_cbrt(r[0], r[0], MPFR_RNDN);
}
void pow3o2(mpfr_t* r, const mpfr_t* x) {
  mpfr_pow_ui(r[0], x[0], 3, MPFR_RNDN);
  mpfr_sqrt(r[0], r[0], MPFR_RNDN);
  if (mpfr_zero_p(r[0])) mpfr_abs(r[0], r[0], MPFR_RNDN);  // as powers that are not odd integers
}

void linear_fraction(mpfr_t* r, const mpfr_t* x) {
  Local denominator(r[0]);
  mpfr_fma(denominator, x[1], x[4], x[5], MPFR_RNDN);
  mpfr_fma(r[0], x[0], x[2], x[3], MPFR_RNDN);
  mpfr_div(r[0], r[0], denominator, MPFR_RNDN);
}

void cis(mpfr_t* r, const mpfr_t* x) { mpfr_sin_cos(r[1], r[0], x[0], MPFR_RNDN); }

// (a + ib)(c - id) = ac + bd + i(bc - ad), each part rounded once.
void mul_by_conj(mpfr_t* r, const mpfr_t* x) {
  mpfr_fmma(r[0], x[0], x[2], x[1], x[3], MPFR_RNDN);
  mpfr_fmms(r[1], x[1], x[2], x[0], x[3], MPFR_RNDN);
}

// sinh x cosh x + i sin y cos y over sinh^2 x + cos^2 y; for large x, where MPC's own takes its time, the denominator is a
// power of e^2.
void complex_tanh(mpfr_t* r, const mpfr_t* z) {
  mpfr_srcptr x = z[0], y = z[1];
  if (mpfr_inf_p(y)) {
    const bool far = mpfr_inf_p(x);
    mpfr_set_nan(r[0]);
    mpfr_set_nan(r[1]);
    if (far) mpfr_set_si(r[0], mpfr_sgn(x), MPFR_RNDN);
    if (far) mpfr_set_zero(r[1], mpfr_sgn(y));
    return;
  }
  Local sin(r[0]), cos(r[0]), sinh(r[0]), cosh(r[0]), square(r[0]);
  mpfr_sin_cos(sin, cos, y, MPFR_RNDN);
  mpfr_mul(sin, sin, cos, MPFR_RNDN);
  if (mpfr_cmpabs_ui(x, 10000) > 0) {
    mpfr_set_si(r[0], mpfr_sgn(x), MPFR_RNDN);
    mpfr_abs(square, x, MPFR_RNDN);
    mpfr_mul_si(square, square, -2, MPFR_RNDN);
    mpfr_exp(square, square, MPFR_RNDN);
    mpfr_mul(r[1], sin, square, MPFR_RNDN);
    mpfr_mul_2ui(r[1], r[1], 2, MPFR_RNDN);
    return;
  }
  mpfr_sinh_cosh(sinh, cosh, x, MPFR_RNDN);
  mpfr_fmma(square, sinh, sinh, cos, cos, MPFR_RNDN);
  mpfr_mul(r[0], sinh, cosh, MPFR_RNDN);
  mpfr_div(r[0], r[0], square, MPFR_RNDN);
  mpfr_div(r[1], sin, square, MPFR_RNDN);
}

// tanh(iz)/i.
void complex_tan(mpfr_t* r, const mpfr_t* z) {
  Local re(r[0]), im(r[0]);
  mpfr_t iz[2] = {*static_cast<mpfr_ptr>(re), *static_cast<mpfr_ptr>(im)};
  mpfr_neg(iz[0], z[1], MPFR_RNDN);
  mpfr_set(iz[1], z[0], MPFR_RNDN);
  complex_tanh(r, iz);
  mpfr_swap(r[0], r[1]);
  mpfr_neg(r[1], r[1], MPFR_RNDN);
}

const std::pair<std::string_view, void (*)(mpfr_t*, const mpfr_t*)> kFormulas[] = {
    {"cdfnorm", cdfnorm},
    {"cdfnorminv", cdfnorminv},
    {"cis", cis},
    {"complex_tan", complex_tan},
    {"complex_tanh", complex_tanh},
    {"erfcinv", erfcinv},
    {"erfinv", erfinv},
    {"inv", inv},
    {"inv_cbrt", inv_cbrt},
    {"inv_sqrt", inv_sqrt},
    {"lgamma", lgamma},
    {"linear_fraction", linear_fraction},
    {"mul_by_conj", mul_by_conj},
    {"pow2o3", pow2o3},
    {"pow3o2", pow3o2},
};

template <class F>
F as(Formula::AnyFunction function) {
  return reinterpret_cast<F>(function);
}

void call_formula(Formula::AnyFunction f, mpfr_t* r, const mpfr_t* x) {
  as<void (*)(mpfr_t*, const mpfr_t*)>(f)(r, x);
}
void call_mpfr_unary(Formula::AnyFunction f, mpfr_t* r, const mpfr_t* x) {
  as<int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t)>(f)(r[0], x[0], MPFR_RNDN);
}
void call_mpfr_binary(Formula::AnyFunction f, mpfr_t* r, const mpfr_t* x) {
  as<int (*)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t)>(f)(r[0], x[0], x[1], MPFR_RNDN);
}
void call_mpfr_two_results(Formula::AnyFunction f, mpfr_t* r, const mpfr_t* x) {
  as<int (*)(mpfr_ptr, mpfr_ptr, mpfr_srcptr, mpfr_rnd_t)>(f)(r[0], r[1], x[0], MPFR_RNDN);
}
void call_mpc_unary(Formula::AnyFunction f, mpfr_t* r, const mpfr_t* x) {
  as<int (*)(mpc_ptr, mpc_srcptr, int)>(f)(r, x, kNearest);
}
void call_mpc_to_real(Formula::AnyFunction f, mpfr_t* r, const mpfr_t* x) {
  as<int (*)(mpfr_ptr, mpc_srcptr, mpfr_rnd_t)>(f)(r[0], x, MPFR_RNDN);
}
void call_mpc_binary(Formula::AnyFunction f, mpfr_t* r, const mpfr_t* x) {
  as<int (*)(mpc_ptr, mpc_srcptr, mpc_srcptr, int)>(f)(r, x, x + 2, kNearest);
}

Formula::Call caller(const Function& f) {
  const bool two = f.shape->inputs == 2 || f.shape->scalars;
  if (f.complex()) return f.shape->real_out ? call_mpc_to_real : two ? call_mpc_binary : call_mpc_unary;
  return f.shape->outputs == 2 ? call_mpfr_two_results : two ? call_mpfr_binary : call_mpfr_unary;
}

// MPC may be missing on a machine: complex functions then have no judge.
Formula::AnyFunction in_library(const Function& f) {
  static void* const mpfr = dlopen("libmpfr.so.6", RTLD_NOW);
  static void* const mpc = dlopen("libmpc.so.3", RTLD_NOW);
  void* const library = f.complex() ? mpc : mpfr;
  if (!library) return nullptr;
  const std::string name = std::string(f.complex() ? "mpc_" : "mpfr_") + f.descriptor->judged_as();
  return reinterpret_cast<Formula::AnyFunction>(dlsym(library, name.c_str()));
}

}  // namespace

Formula::Formula(const Function& f) {
  if (!f.descriptor) return;
  const std::string_view name = f.descriptor->judged_as();
  const auto found = std::find_if(std::begin(kFormulas), std::end(kFormulas),
                                  [=](const auto& row) { return row.first == name; });
  if (found != std::end(kFormulas)) {
    function_ = reinterpret_cast<AnyFunction>(found->second);
    call_ = call_formula;
  } else {
    function_ = in_library(f);
    call_ = function_ ? caller(f) : nullptr;
  }
}

}  // namespace orx
