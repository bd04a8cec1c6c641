// What the vector kernels race against: what a compiler makes of a plain loop over the C library's function
// or the arithmetic, and SLEEF's vector functions for AVX.
#pragma once
#include <vector>

#include "kernel_list.hpp"

enum class peer_kind { loop, sleef_1_0, sleef_3_5 };
constexpr int peer_kinds = 3;

// A vector function like the kernels; n is a multiple of a vector's length.
template <class T>
struct peer {
  const char* function;  // without the type letter
  peer_kind kind;
  void (*run)(int n, const kernel_operands<T>& o);
};

template <class T>
const std::vector<peer<T>>& peers();
