// The processor's square root in either precision.
#pragma once

namespace orx::ss {

inline double root(double x) { return __builtin_sqrt(x); }
inline float root(float x) { return __builtin_sqrtf(x); }

}  // namespace orx::ss
