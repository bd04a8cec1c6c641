// The loop of the simplest functions: one operation per element, no rare elements, nothing to report.
#pragma once
#include "frame/control.hpp"
#include "frame/simd.hpp"

ORX_ISA_BEGIN(orx::tef)

// Which input, if any, is the output array itself.
enum class Alias { None, First, Second };

// Elements before the first 32-byte boundary of r, or n where r never gets to one or where the rest would not
// fill a block.
template <class T>
int peel_count(int n, const T* r, int block) {
  const uintptr_t address = reinterpret_cast<uintptr_t>(r);
  if (address % sizeof(T)) return n;
  const int peel = static_cast<int>((-address % 32) / sizeof(T));
  return n < peel + block ? n : peel;
}

template <class Op, Alias where, class T>
void arithmetic_scalar(int from, int to, const T* a, const T* b, T* r) {
  for (int i = from; i < to; ++i)
    r[i] = Op::apply(where == Alias::First ? r[i] : a[i], where == Alias::Second ? r[i] : b[i]);
}

// Blocks of `vectors` vectors W wide, from element `i` on. The operand that is r is read as r is stored.
template <class Op, Alias where, class W, int vectors, bool aligned, class T>
int arithmetic_blocks(int i, int end, const T* a, const T* b, T* r) {
  constexpr int lanes = sizeof(W) / sizeof(T);
  for (; i < end; i += vectors * lanes) {
    for (int v = 0; v < vectors; ++v) {
      const int j = i + v * lanes;
      const W x = where == Alias::First ? load<W, aligned>(r + j) : load<W>(a + j);
      const W y = where == Alias::Second ? load<W, aligned>(r + j) : load<W>(b + j);
      store<aligned>(r + j, Op::apply(x, y));
    }
  }
  return i;
}

// 16 elements per iteration, stores aligned; singles that do not overwrite an input go 32 at a time, without
// peeling.
template <class Op, Alias where, class T>
void arithmetic_copy(int n, const T* a, const T* b, T* r) {
  constexpr bool peeled = sizeof(T) == 8 || where != Alias::None || Op::kUnary;
  using W = VectorOf<T, 32>;
  constexpr int block = peeled ? 16 : 32;
  const int p = peeled ? peel_count(n, r, block) : (n < block ? n : 0);
  const int m = n - (n - p) % block;
  arithmetic_scalar<Op, where>(0, p, a, b, r);
  arithmetic_blocks<Op, where, W, block * sizeof(T) / sizeof(W), peeled>(p, m, a, b, r);
  arithmetic_scalar<Op, where>(m, n, a, b, r);
}

template <class Op, class T>
__attribute__((noinline)) void arithmetic_body(int n, const T* a, const T* b, T* r) {
  if (r == a)
    arithmetic_copy<Op, Alias::First>(n, a, b, r);
  else if (r == b)
    arithmetic_copy<Op, Alias::Second>(n, a, b, r);
  else
    arithmetic_copy<Op, Alias::None>(n, a, b, r);
  zero_upper();
}

template <class Op, class T>
void arithmetic(int n, const T* a, const T* b, T* r) {
  if (n > 0) run_under<Control::kMode, arithmetic_body<Op, T>>(n, a, b, r);
}

ORX_ISA_END

// Defines both precisions of a function of two inputs: ORX_ARITHMETIC(Add, x + y).
#define ORX_ARITHMETIC(Fn, expression)                                                              \
  namespace {                                                                                       \
  struct Operation {                                                                                \
    static constexpr bool kUnary = false;                                                           \
    template <class V>                                                                              \
    static V apply(V x, V y) {                                                                      \
      return expression;                                                                            \
    }                                                                                               \
  };                                                                                                \
  }                                                                                                 \
  ORX_API void orx_tef_kernel_s##Fn##_G9HAynn(int n, const float* a, const float* b, float* r) {    \
    orx::tef::arithmetic<Operation>(n, a, b, r);                                                    \
  }                                                                                                 \
  ORX_API void orx_tef_kernel_d##Fn##_G9HAynn(int n, const double* a, const double* b, double* r) { \
    orx::tef::arithmetic<Operation>(n, a, b, r);                                                    \
  }
