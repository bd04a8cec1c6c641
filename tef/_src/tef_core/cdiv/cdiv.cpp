// a/b. C99, annex G.5.1, tells what becomes of zero and of infinite numbers.
#include "_complex/exact.hpp"
#include "_complex/product.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// The scalar routine, in a format in which nothing overflows or underflows on the way; *status is to be reported.
template <class T>
__attribute__((noinline)) void rare_quotient(const Complex<T>* a, const Complex<T>* b, Complex<T>* r,
                                             int* status) {
  using W = Wider<T>;
  const auto x = widened<W>(*a), y = widened<W>(*b);
  if (y.re == 0 && y.im == 0) {
    const T zero = hidden(b->re);
    *r = {a->re / zero, a->im / zero};
    *status = StatusSingularity;
    return;
  }
  Complex<W> quotient;
  if (is_finite(x) && is_infinite(y)) {
    quotient = scaled(W(0), TimesConjugate::of(x, boxed(y)));
  } else {
    const auto product = TimesConjugate::of(x, y);
    const W square = y.re * y.re + y.im * y.im;
    quotient = {product.re / square, product.im / square};
    if (both_nan(quotient) && is_infinite(x) && is_finite(y))
      quotient = scaled(std::numeric_limits<W>::infinity(), TimesConjugate::of(boxed(x), y));
  }
  *r = rounded<T>(quotient);
  *status = is_finite(x) && is_finite(y) ? status_of(*r) : StatusOk;
}

int vcdiv_cout_rare(const Complex<float>* a, const Complex<float>* b, Complex<float>* r) {
  int status;
  rare_quotient(a, b, r, &status);
  return status;
}
int vzdiv_cout_rare(const Complex<double>* a, const Complex<double>* b, Complex<double>* r) {
  int status;
  run_under<Control::kExtended, rare_quotient<double>>(a, b, r, &status);
  return status;
}

// Single, HA: by doubles, for which squares and products of singles are exact.
struct {
  Row<double> one = 1.0;
} constexpr vcdiv_data_cDiv{};

struct cDivHA : Kernel<Complex<float>(Complex<float>, Complex<float>)> {
  template <class X>
  static auto rare(Complex<X> a, Complex<X> b) {
    return bit_or(bit_or(not_finite(a), not_finite(b)), is_zero(b));
  }
  template <class X>
  static Complex<X> eval(Complex<X> a, Complex<X> b, X& rare) {
    const auto x = widen(a), y = widen(b);
    const auto inverse = vcdiv_data_cDiv.one / (y.re * y.re + y.im * y.im);
    const auto quotient = narrow(scaled(inverse, TimesConjugate::of(x, y)));
    rare = not_finite(quotient);
    return quotient;
  }
  static int rare_lane(const Complex<float>* a, const Complex<float>* b, Complex<float>* r) {
    return vcdiv_cout_rare(a, b, r);
  }
};

struct cDivEP : Kernel<Complex<float>(Complex<float>, Complex<float>)> {
  template <class X>
  static Complex<X> eval(Complex<X> a, Complex<X> b) {
    const X inverse = approximate_reciprocal(b.re * b.re + b.im * b.im);
    return scaled(inverse, TimesConjugate::of(a, b));
  }
};

// Double, HA: a times the conjugate of b, and the square of b's modulus, in two parts each; then the quotient is corrected
// by its remainder. Each part of the result is rounded once, but where its terms cancel. Parts that are neither zero nor
// of moderate size are rare: their products might overflow, or what products lack might underflow.
struct {
  Row<double> one = 1.0;
  Row<double> least = 0x1p-200, largest = 0x1p+200;
} constexpr vzdiv_data_zDiv{};

// x y + u v, and x y - u v.
template <class X>
inline HighLow<X> sum_of_products(const Factor<X>& x, const Factor<X>& y, const Factor<X>& u,
                                  const Factor<X>& v) {
  const X p = x.value * y.value, q = u.value * v.value;
  const auto sum = two_sum(p, q);
  return {sum.high, sum.low + (lost_in_product(x, y, p) + lost_in_product(u, v, q))};
}
template <class X>
inline HighLow<X> difference_of_products(const Factor<X>& x, const Factor<X>& y, const Factor<X>& u,
                                         const Factor<X>& v) {
  const X p = x.value * y.value, q = u.value * v.value;
  const auto sum = two_sum(p, X{} - q);
  return {sum.high, sum.low + (lost_in_product(x, y, p) - lost_in_product(u, v, q))};
}

template <class X>
struct Divisor {
  Factor<X> high;
  X low, inverse;
  explicit Divisor(HighLow<X> x) : high(x.high), low(x.low), inverse(vzdiv_data_zDiv.one / x.high) {}

  X quotient_of(HighLow<X> x) const {
    const Factor<X> q(x.high * inverse);
    const X back = q.value * high.value;
    const X remainder = ((x.high - back) - lost_in_product(q, high, back)) + (x.low - q.value * low);
    return with_sign_of(q.value + remainder * inverse, q.value);  // the sum loses the sign of zero
  }
};

struct zDivHA : Kernel<Complex<double>(Complex<double>, Complex<double>)> {
  template <class X>
  static auto rare(Complex<X> a, Complex<X> b) {
    return bit_or(bit_or(extreme(a.re), extreme(a.im)),
                  bit_or(bit_or(extreme(b.re), extreme(b.im)), is_zero(b)));
  }
  template <class X>
  static Complex<X> eval(Complex<X> a, Complex<X> b) {
    const Factor<X> x(a.re), y(a.im), u(b.re), v(b.im);
    const Divisor<X> square(sum_of_products(u, u, v, v));
    return {square.quotient_of(sum_of_products(x, u, y, v)),
            square.quotient_of(difference_of_products(y, u, x, v))};
  }
  static int rare_lane(const Complex<double>* a, const Complex<double>* b, Complex<double>* r) {
    return vzdiv_cout_rare(a, b, r);
  }

 private:
  template <class X>
  static auto extreme(X x) {
    const auto& d = vzdiv_data_zDiv;
    return bit_and(outside(magnitude(x), d.least, d.largest), not_equal(x, X{}));
  }
};

struct zDivEP : Kernel<Complex<double>(Complex<double>, Complex<double>)> {
  template <class X>
  static Complex<X> eval(Complex<X> a, Complex<X> b) {
    const X inverse = vzdiv_data_zDiv.one / (b.re * b.re + b.im * b.im);
    return scaled(inverse, TimesConjugate::of(a, b));
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(binary, c, Div, G9HAynn, cDivHA)
ORX_KERNEL_OF(binary, c, Div, G9EPnnn, cDivEP)
ORX_KERNEL_OF(binary, z, Div, G9HAynn, zDivHA)
ORX_KERNEL_OF(binary, z, Div, G9EPnnn, zDivEP)
