// Elements: how they lie in memory, and as what a kernel sees them.
#pragma once
#include "frame/simd.hpp"
#include "orx/base/simd/memory.hpp"

ORX_ISA_BEGIN(orx::tef)

// A complex number: of reals in memory, of vectors in a kernel.
template <class T>
struct Complex {
  T re, im;
};
// In a signature: a complex element whose parts the kernel sees side by side, two lanes of one vector.
template <class T>
struct Pair {};
// In a signature: an argument that is one value for all elements.
template <class E>
struct Scalar {};
// Two results.
template <class T>
struct Two {
  T first, second;
};

template <class T, int n>
inline Complex<Vec<T, n>> select(Vec<T, n> mask, Complex<Vec<T, n>> a, Complex<Vec<T, n>> b) {
  return {select(mask, a.re, b.re), select(mask, a.im, b.im)};
}
template <class T, int n>
inline Two<Vec<T, n>> select(Vec<T, n> mask, Two<Vec<T, n>> a, Two<Vec<T, n>> b) {
  return {select(mask, a.first, b.first), select(mask, a.second, b.second)};
}

// For a type E of a signature:
//   Real            the type of a lane
//   Memory          an element as it lies in memory
//   kParts          reals in an element
//   kLanes          lanes that an element takes up in a vector
//   Vectors<n>      what n vectors of elements are in the kernel
// and loads and stores of all elements of n vectors, and of the first `count` of one, the others being `fill`.
template <class T>
struct Element {
  using Real = T;
  using Memory = T;
  static constexpr int kParts = 1, kLanes = 1;
  template <int n>
  using Vectors = Vec<T, n>;

  template <int n>
  static Vec<T, n> load(const T* p) {
    return load_vectors<Vec<T, n>>(p);
  }
  static Vec<T, 1> load_first(const T* p, int count, T fill) {
    return count < Vec<T, 1>::kLanes ? simd::load_first<Vec<T, 1>>(p, count, fill) : load<1>(p);
  }
  template <int n>
  static void store(T* p, Vec<T, n> x) {
    store_vectors(p, x);
  }
  static void store_first(T* p, int count, Vec<T, 1> x) { simd::store_first(p, count, x); }
  template <class X>
  static X fill(T x) {
    return broadcast<X>(x);
  }
};

template <class T>
struct Element<Complex<T>> {
  using Real = T;
  using Memory = Complex<T>;
  static constexpr int kParts = 2, kLanes = 1;
  template <int n>
  using Vectors = Complex<Vec<T, n>>;

  template <int n>
  static Vectors<n> load(const Memory* p) {
    Vectors<n> x;
    load_pairs(&p->re, x.re, x.im);
    return x;
  }
  static Vectors<1> load_first(const Memory* p, int count, T fill) {
    Vectors<1> x;
    load_first_pairs(&p->re, count, fill, x.re, x.im);
    return x;
  }
  template <int n>
  static void store(Memory* p, Complex<Vec<T, n>> x) {
    store_pairs(&p->re, x.re, x.im);
  }
  static void store_first(Memory* p, int count, Vectors<1> x) {
    store_first_pairs(&p->re, count, x.re, x.im);
  }
  template <class X>
  static Complex<X> fill(T x) {
    return {broadcast<X>(x), broadcast<X>(x)};
  }
  template <class X>
  static Complex<X> fill(Memory x) {
    return {broadcast<X>(x.re), broadcast<X>(x.im)};
  }
};

template <class T>
struct Element<Pair<T>> {
  using Real = T;
  using Memory = Complex<T>;
  static constexpr int kParts = 2, kLanes = 2;
  template <int n>
  using Vectors = Vec<T, n>;

  template <int n>
  static Vec<T, n> load(const Memory* p) {
    return load_vectors<Vec<T, n>>(&p->re);
  }
  static Vec<T, 1> load_first(const Memory* p, int count, T fill) {
    return Element<T>::load_first(&p->re, 2 * count, fill);
  }
  template <int n>
  static void store(Memory* p, Vec<T, n> x) {
    store_vectors(&p->re, x);
  }
  static void store_first(Memory* p, int count, Vec<T, 1> x) { simd::store_first(&p->re, 2 * count, x); }
  template <class X>
  static X fill(T x) {
    return broadcast<X>(x);
  }
};

template <class E>
struct Element<Scalar<E>> : Element<E> {};
template <class E>
struct Element<Two<E>> : Element<E> {
  template <int n>
  using Vectors = Two<typename Element<E>::template Vectors<n>>;
};

ORX_ISA_END
