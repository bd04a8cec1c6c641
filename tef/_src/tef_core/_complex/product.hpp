// a b, or a times the conjugate of b.
//
// Singles are multiplied as doubles, where products are exact, so that each part is rounded twice, once of them to the
// nearest double. Doubles have three roundings in a part: the error is below sqrt(5) 2^-53 of the product's modulus
// (R. Brent, C. Percival, P. Zimmermann, "Error bounds on complex floating-point multiplication", Mathematics of
// Computation 76, 2007).
#pragma once
#include "_complex/special.hpp"
#include "_complex/vectors.hpp"

ORX_ISA_BEGIN(orx::tef)

struct Times {
  template <class X>
  static Complex<X> of(Complex<X> a, Complex<X> b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
  }
};
struct TimesConjugate {
  template <class X>
  static Complex<X> of(Complex<X> a, Complex<X> b) {
    return {a.re * b.re + a.im * b.im, a.im * b.re - a.re * b.im};
  }
};

template <class T, class Operation>
struct QuietProduct : Kernel<Pair<T>(Pair<T>, Pair<T>)> {
  static constexpr int kTogether = 2;
  template <class X>
  static X eval(X a, X b) {
    return side_by_side<Operation>(a, b);
  }
};

// The scalar routine, for what is not finite, and where products of doubles leave the range; the status to report. An
// infinite factor makes an infinite product of two NaNs.
template <class Operation, class T>
inline int rare_product(const Complex<T>* a, const Complex<T>* b, Complex<T>* r) {
  using W = Wider<T>;
  const auto x = widened<W>(*a), y = widened<W>(*b);
  auto product = Operation::of(x, y);
  if (both_nan(product) && (is_infinite(x) || is_infinite(y))) {
    const auto part = [](auto z) { return is_infinite(z) ? boxed(z) : without_nan(z); };
    product = scaled(std::numeric_limits<W>::infinity(), Operation::of(part(x), part(y)));
  }
  *r = rounded<T>(product);
  return is_finite(x) && is_finite(y) ? status_of(*r) : StatusOk;
}

template <class T, class Operation, int cout_rare(const Complex<T>*, const Complex<T>*, Complex<T>*)>
struct Product : Kernel<Pair<T>(Pair<T>, Pair<T>)> {
  static constexpr int kTogether = sizeof(T) == 4 ? 1 : 2;
  // What is not finite comes from such arguments or from overflow; it raises what the scalar routine raises, too.
  template <class X>
  static X eval(X a, X b, X& rare) {
    X product;
    if constexpr (sizeof(T) == 4)
      product = narrow(side_by_side<Operation>(widen(a), widen(b)));
    else
      product = side_by_side<Operation>(a, b);
    rare = not_at_most(magnitude(product), kLargestPart<T>);
    return product;
  }
  static int rare_lane(const Complex<T>* a, const Complex<T>* b, Complex<T>* r) { return cout_rare(a, b, r); }
};

ORX_ISA_END

// The kernels of both precisions with their scalar routines: ORX_PRODUCTS(Mul, mul, Times).
#define ORX_PRODUCTS(Fn, name, Operation)                        \
  ORX_PRODUCTS_OF(c, float, Fn, vc##name##_cout_rare, Operation) \
  ORX_PRODUCTS_OF(z, double, Fn, vz##name##_cout_rare, Operation)
#define ORX_PRODUCTS_OF(t, T, Fn, cout_rare, Operation)                              \
  static int cout_rare(const orx::tef::Complex<T>* a, const orx::tef::Complex<T>* b, \
                       orx::tef::Complex<T>* r) {                                    \
    return orx::tef::rare_product<orx::tef::Operation>(a, b, r);                     \
  }                                                                                  \
  using t##Fn##HA = orx::tef::Product<T, orx::tef::Operation, cout_rare>;            \
  using t##Fn##EP = orx::tef::QuietProduct<T, orx::tef::Operation>;                  \
  ORX_KERNEL_OF(binary, t, Fn, G9HAynn, t##Fn##HA)                                   \
  ORX_KERNEL_OF(binary, t, Fn, G9EPnnn, t##Fn##EP)
