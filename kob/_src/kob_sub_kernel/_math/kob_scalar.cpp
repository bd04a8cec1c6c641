#include "_math/scalar.hpp"

#include <immintrin.h>

#include "orx/base/api.hpp"

namespace {

// ln 2 log2 x by the x87 unit, whose result is within one unit of the last of its 64 bits.
template <class T>
T logarithm(T x) {
  constexpr long double ln2 = 0.693147180559945309417232121458L;
  long double result;
  __asm__("fyl2x" : "=t"(result) : "0"(static_cast<long double>(x)), "u"(ln2) : "st(1)");
  return static_cast<T>(result);
}

}  // namespace

ORX_API double __kobdLn(double x) { return logarithm(x); }
extern "C" float __kobsLn(float x) { return logarithm(x); }
ORX_API double __kobdSqrt(double x) { return _mm_cvtsd_f64(_mm_sqrt_pd(_mm_set1_pd(x))); }
extern "C" float __kobsSqrt(float x) { return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(x))); }
