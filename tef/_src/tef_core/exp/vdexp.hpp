// What the exponential functions of double precision share.
#pragma once
#include <cfloat>

#include "frame/kernel.hpp"

ORX_ISA_BEGIN

struct double_pair {
  double hi, lo;
};

// 2^(j/64), j = 0 .. 63.
alignas(64) inline constexpr double_pair _tefdExpHATab[64] = {
#include "exp/vdexp_ha.inc"
};

// 2^k, k in the range of normal numbers.
inline double power_of_two(int k) { return bit_cast<double>(static_cast<uint64_t>(k + 1023) << 52); }

// One bit for each lane whose magnitude has a high word above `threshold`: too large, infinite or NaN.
template <class V>
inline int magnitude_above(V x, int threshold) {
  const __m128i magnitude = _mm_and_si128(high_words(x), _mm_set1_epi32(0x7FFFFFFF));
  return movemask_words<V>(_mm_cmpgt_epi32(magnitude, _mm_set1_epi32(threshold)));
}

// e^x for |x| below 700, as accurate as the HA kernel.
double vdexp_moderate(double x);

// e^x for arguments that the vector code does not take; the status to report.
int vdexp_cout_rare(const double* a, double* r);

ORX_ISA_END
