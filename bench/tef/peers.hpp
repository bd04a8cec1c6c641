// What the vector kernels race against: what a compiler makes of a plain loop over the C library's function
// or the arithmetic, and SLEEF's vector functions for AVX.
#pragma once
#include <vector>

#include "kernel_list.hpp"

enum class PeerKind { Loop, Sleef10, Sleef35 };
constexpr int kPeerKinds = 3;

// A vector function like the kernels; n is a multiple of a vector's length.
template <class T>
struct Peer {
  const char* function;  // without the type letter
  PeerKind kind;
  void (*run)(int n, const KernelOperands<T>& o);
};

template <class T>
const std::vector<Peer<T>>& peers();
