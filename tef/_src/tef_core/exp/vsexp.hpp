// What the exponential functions of single precision share.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN

// One bit for each lane whose magnitude has bits above `threshold`: too large, infinite or NaN.
template <class V>
inline int bits_above(V x, int threshold) {
  return movemask32(greater32(bit_and(to_ints(x), _mm_set1_epi32(0x7FFFFFFF)), _mm_set1_epi32(threshold)));
}

// 2^k from N = shifter + k, where the shifter holds the exponent bias in its low bits.
template <class V>
inline V scale_from(ints<sizeof(V) / 16> N) {
  return from_ints<V>(shift_left32<23>(N));
}

// e^x for arguments that the vector code does not take; the status to report.
int vsexp_cout_rare(const float* a, float* r);

ORX_ISA_END
