// Scalar helpers that streams, distributions and statistics share.
#pragma once

extern "C" {
// The natural logarithm. Computed in extended precision and rounded once: not more than 0.51 ulp off. It is
// -infinity at 0 of either sign, NaN below 0, and raises no error of the vector functions.
double __kobdLn(double x);
float __kobsLn(float x);
// The square root, correctly rounded; NaN below 0.
double __kobdSqrt(double x);
float __kobsSqrt(float x);
}
