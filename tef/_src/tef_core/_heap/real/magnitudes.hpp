// Comparisons of magnitudes with a limit, NaN being above all limits. Where integers are as wide as reals they compare the
// bits, as the comparison of reals has to step around NaN there.
#pragma once
#include "frame/simd.hpp"

ORX_ISA_BEGIN(orx::tef)

constexpr bool kWideIntegers = kIntegerBytes == kVectorBytes;

// Lanes above the limit: their signs tell.
template <class X, class T>
inline auto above(X size, const Row<T>& limit) {
  if constexpr (kWideIntegers)
    return reals<X>(bits(constant<X>(limit)) - bits(size));
  else
    return not_at_most(size, limit);
}
// The same as a mask.
template <class X, class T>
inline auto mask_above(X size, const Row<T>& limit) {
  if constexpr (kWideIntegers)
    return spread_signs(above(size, limit));
  else
    return above(size, limit);
}

ORX_ISA_END
