// What the exponential functions of double precision share.
#pragma once
#include <cfloat>

#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// 2^(j/256), j = 0 .. 255: a double, and what it lacks as a fraction of it.
alignas(64) inline constexpr double _tefdExpHATab[256][2] = {
#include "exp/vdexp_ha.inc"
};

// 2^(j/1024), j = 0 .. 1023, with a factor that makes up for the cubic polynomial of the LA kernel.
alignas(64) inline constexpr double kExpLaPowers[1024] = {
#include "exp/vdexp_la.inc"
};

// 2^k, k in the range of normal numbers.
inline double power_of_two(int k) { return bit_cast<double>(static_cast<uint64_t>(k + 1023) << 52); }

// e^x for |x| below 700, as accurate as the HA kernel.
double vdexp_moderate(double x);

// e^(x + rest) for x from -746 to 710, rounded once even where it is denormal, overflowing where it does; rest is small.
double vdexp_wide(double x, double rest);

// e^x / 2, as accurate as the HA kernel, for x from -700 up to where e^x overflows.
Vec<double, 1> vdexp_half(Vec<double, 1> x);

// Rare lanes that are positive, or NaN, and not in error.
template <class X, class Left>
inline void vdexp_finish_large(X x, Left& left) {
  const X largest = broadcast<X>(DBL_MAX), finite_to = broadcast<X>(709.782712893384);
  left.finish(not_at_most(magnitude(x), largest),
              [&](X special) { return bit_and(special, x) + bit_and(special, x); });
  left.finish(bit_and(less(X{}, x), at_most(x, finite_to)),
              [&](X finite) { return vdexp_half(bit_and(finite, x)) * broadcast<X>(2); });
}

// e^x for arguments that the vector code does not take; the status to report.
int vdexp_cout_rare(const double* a, double* r);

ORX_ISA_END
