#include "_math/scalar.hpp"

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
ORX_API double __kobdSqrt(double x) { return __builtin_sqrt(x); }
extern "C" float __kobsSqrt(float x) { return __builtin_sqrtf(x); }
