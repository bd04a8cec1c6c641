// What the vector kernels race against: a plain loop over the C library's function, or over the arithmetic itself as the
// compiler builds it, and vector functions for the instruction set that the benchmark is compiled for: SLEEF's, and the
// C library's on 64-bit targets. All but the arithmetic are found by the name in the function's descriptor.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "functions/list.hpp"

// A vector function like the kernels; n is a multiple of a vector's length.
template <class R>
using VectorCall = std::function<void(int n, const orx::Operands<R>& o)>;

enum class PeerKind { Loop, SleefBest, SleefFast, VectorC };
inline constexpr const char* kPeerNames[] = {"loop", "SLEEF 1.0", "SLEEF 3.5",
#if defined(__x86_64__)
                                             "glibc vector"
#endif
};

template <class R>
struct Peer {
  PeerKind kind;
  VectorCall<R> run;
};

template <class R>
std::vector<Peer<R>> peers(const orx::Function& f);

// The loop where the compiler's own code is the peer; empty for other functions. (loops.cpp)
template <class R>
VectorCall<R> compiled_loop(const orx::Function& f);
