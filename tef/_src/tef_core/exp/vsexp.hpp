// What the exponential functions of single precision share.
#pragma once
#include <cfloat>

#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// e^x / 2, as accurate as the HA kernel, for x from -80 up to where e^x overflows.
Vec<float, 1> vsexp_half(Vec<float, 1> x);

// Rare lanes that are positive, or NaN, and not in error.
template <class X, class Left>
inline void vsexp_finish_large(X x, Left& left) {
  const X largest = broadcast<X>(FLT_MAX), finite_to = broadcast<X>(0x1.62e42ep+6f);
  left.finish(not_at_most(magnitude(x), largest),
              [&](X special) { return bit_and(special, x) + bit_and(special, x); });
  left.finish(bit_and(less(X{}, x), at_most(x, finite_to)),
              [&](X finite) { return vsexp_half(bit_and(finite, x)) * broadcast<X>(2); });
}

// e^x for arguments that the vector code does not take; the status to report.
int vsexp_cout_rare(const float* a, float* r);

ORX_ISA_END
