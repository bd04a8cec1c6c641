/* Vector mathematics.
 *
 * Every function works on whole vectors, element by element, in up to three accuracy classes:
 *
 *   HA  high accuracy: error below 1 ulp
 *   LA  low accuracy: error below 4 ulp
 *   EP  enhanced performance: at least 26 correct bits in double, 11 in single precision
 *
 * For a function Fn and a type letter t (`s` float, `d` double, `c` and `z` complex of float and of double) there are
 *
 *   _tef<t>Fn, _tef<t>Fn_HA        call the HA kernel
 *   _tefdFn_50, _tefsFn_21         call the LA kernel (z as d, c as s)
 *   _tefdFn_26, _tefsFn_11         call the EP kernel
 *   orx_tef_kernel_<t>Fn_ttab[3]   pointers to the LA, HA and EP kernel, indexed by
 *                                  orx_tef_kernel_GetTTableIndex(), which goes by the thread's mode
 *   orx_tef_kernel_<t>Fn_ctab[3]   what an element costs with each of the three in a long vector in cache, relative
 *                                  to all other functions (dExp: 6.6 LA, 9.5 HA); not cycles
 *
 * Where a table holds one kernel more than once the accuracy is that of the better class. The forwarders do
 * not look at the mode word.
 *
 * Shapes. n counts elements; vectors are contiguous; inputs and outputs may be the same array, but must not
 * overlap in any other way; n = 0 does nothing. Sizes and pointers are not checked. A complex element is a pair of
 * reals, the real part first, as in C's _Complex and C++'s std::complex.
 *
 *   unary          (n, a, r)            r[i] = f(a[i])
 *   binary         (n, a, b, r)         r[i] = f(a[i], b[i])
 *   two results    (n, a, r1, r2)       r1[i], r2[i] = f(a[i])
 *   scalar second  (n, a, b, r)         r[i] = f(a[i], b); a complex b is given as b_re, b_im
 *   linear fraction (n, a, b, scalea, shifta, scaleb, shiftb, r)
 *                                       r[i] = (a[i] * scalea + shifta) / (b[i] * scaleb + shiftb)
 *   pack           (n, a, stride, y)    y[i] = a[i * stride]; by mask or index: (n, a, selection, y)
 *   unpack         (n, a, y, stride)    y[i * stride] = a[i]; by mask or index: (n, a, y, selection)
 *
 * Arithmetic. Kernels compute in round-to-nearest whatever the caller's MXCSR says, with denormals flushed if
 * and only if the mode word's flush field says so, and leave MXCSR as they found it.
 *
 * Errors. Every element gets a result. For an element in error the thread's status is set, and the error
 * modes (errno, message, floating-point exception, callback) act as the mode word tells (orx/tef_mode.h):
 * domain error (1), singularity (2), overflow (3), underflow (4). A NaN goes in and comes out quiet, and is no error.
 *
 * The functions follow: name, types, arguments, what they compute on which domain, the errors that they report, and the
 * methods. Bounds and special values stand in docs/vector-math.md. */
/* begin functions: written by script/reference */
/*
 *   Abs         s, d   (n, a, r)  |x|
 *   Acosh       s, d   (n, a, r)  acosh x, x >= 1
 *                       domain error (1): x < 1
 *                       method: doubles: addition theorem at the middle of a cell of x - 1, 32 cells to a power of
 *                       two; singles: the logarithm of x + sqrt(x^2 - 1)
 *   Add         s, d   (n, a, b, r)  a + b
 *   Asinh       s, d   (n, a, r)  asinh x
 *                       method: doubles: addition theorem at the middle of a cell, 32 cells to a power of two;
 *                       singles: the logarithm of |x| + sqrt(x^2 + 1)
 *   Atanh       s, d   (n, a, r)  atanh x, |x| <= 1
 *                       domain error (1): |x| > 1
 *                       singularity (2): |x| = 1
 *                       method: half the logarithm of (1 + x)/(1 - x), by a quotient that does not cancel; doubles in
 *                       LA and EP: addition theorem, 32 cells to a power of two of 1 - |x|
 *   Cosh        s, d   (n, a, r)  cosh x
 *                       overflow (3): result above the largest number
 *                       method: as Sinh
 *   Exp         s, d   (n, a, r)  e^x
 *                       overflow (3): result above the largest number
 *                       underflow (4): result denormal or 0
 *                       method: reduction by ln 2 / 2^k, table of powers, short polynomial (P. T. P. Tang, ACM TOMS
 *                       15, 1989)
 *   Expm1       s, d   (n, a, r)  e^x - 1
 *                       overflow (3): result above the largest number
 *                       method: as Exp, 1 taken from the high part
 *   LinearFrac  s, d   (n, a, b, scalea, shifta, scaleb, shiftb, r)  (a scalea + shifta) / (b scaleb + shiftb)
 *   Ln          s, d   (n, a, r)  ln x, x >= 0
 *                       domain error (1): x < 0
 *                       singularity (2): x = 0
 *                       method: doubles: reduction by a short rounded reciprocal, table index and exact multiplier at
 *                       once (after W.-F. Wong and E. Goto, IEEE Trans. Computers 43, 1994); singles: polynomial on
 *                       [2/3, 4/3)
 *   Log10       s, d   (n, a, r)  log10 x, x >= 0
 *                       domain error (1): x < 0
 *                       singularity (2): x = 0
 *                       method: as Ln
 *   Log1p       s, d   (n, a, r)  ln(1 + x), x >= -1
 *                       domain error (1): x < -1
 *                       singularity (2): x = -1
 *                       method: as Ln for the rounded sum, and what the rounding lost
 *   Mul         s, d   (n, a, b, r)  a b
 *   Sinh        s, d   (n, a, r)  sinh x
 *                       overflow (3): result above the largest number
 *                       method: both exponentials from one reduction by ln 2/128 and one table row; a polynomial near
 *                       0
 *   Sqr         s, d   (n, a, r)  a^2
 *   Sub         s, d   (n, a, b, r)  a - b
 *   Tanh        s, d   (n, a, r)  tanh x
 *                       method: doubles: addition theorem at the beginning of a cell, 64 cells to a power of two;
 *                       singles: (e^2x - 1)/(e^2x + 1)
 *   Cos         s, d   (n, a, r)  cos x, finite numbers
 *                       domain error (1): infinite x
 *   Sin         s, d   (n, a, r)  sin x, finite numbers
 *                       domain error (1): infinite x
 *   SinCos      s, d   (n, a, r1, r2)  sin x and cos x, finite numbers
 *                       domain error (1): infinite x
 *   Tan         s, d   (n, a, r)  tan x, finite numbers
 *                       domain error (1): infinite x
 *   Acos        s, d   (n, a, r)  acos x, from 0 to pi, |x| <= 1
 *                       domain error (1): |x| > 1
 *                       method: as Asin
 *   Asin        s, d   (n, a, r)  asin x, from -pi/2 to pi/2, |x| <= 1
 *                       domain error (1): |x| > 1
 *                       method: a polynomial, of the square root of (1 - |x|)/2 where |x| is above 1/2
 *   Atan        s, d   (n, a, r)  atan x, from -pi/2 to pi/2
 *                       method: the nearest of 17 angles by a table, and a polynomial for what is left
 *   Atan2       s, d   (n, a, b, r)  the angle of the point (x, y) = (b, a), from -pi to pi
 *                       method: the octant 0 <= y <= x, then as Atan with a quotient of sums
 *   Div         s, d   (n, a, b, r)  a/b, b not 0
 *                       singularity (2): b = 0 (not in sDiv EP)
 *                       method: the processor's division
 *   Inv         s, d   (n, a, r)  1/x, x not 0
 *                       singularity (2): x = 0 (not in sInv EP)
 *                       method: the processor's division
 *   InvSqrt     s, d   (n, a, r)  x^(-1/2), x >= 0
 *                       domain error (1): x < 0
 *                       singularity (2): x = 0
 *                       method: the processor's approximate reciprocal root, refined by the binomial series
 *   Sqrt        s, d   (n, a, r)  x^(1/2), x >= 0
 *                       domain error (1): x < 0
 *                       method: the processor's instruction
 *   Ceil        s, d   (n, a, r)  the least integer not below x
 *                       method: one instruction of the processor
 *   Floor       s, d   (n, a, r)  the greatest integer not above x
 *                       method: one instruction of the processor
 *   Modf        s, d   (n, a, r1, r2)  x without its fraction, and its fraction
 *                       method: the integer part by the processor
 *   NearbyInt   s, d   (n, a, r)  the nearest integer, of two the even one; inexact is not raised
 *                       method: one instruction of the processor
 *   Rint        s, d   (n, a, r)  the nearest integer, of two the even one; inexact is raised
 *                       method: one instruction of the processor
 *   Round       s, d   (n, a, r)  the nearest integer, of two the one farther from 0
 *                       method: towards zero, after the largest number below a half is added
 *   Trunc       s, d   (n, a, r)  x without its fraction
 *                       method: one instruction of the processor
 *   PackI       s, d, c, z (n, a, stride, y)  y[i] = a[i * stride]
 *   PackM       s, d, c, z (n, a, selection, y)  y = the elements of a whose mask is not 0
 *   PackV       s, d, c, z (n, a, selection, y)  y[i] = a[index[i]]
 *   UnpackI     s, d, c, z (n, a, y, stride)  y[i * stride] = a[i]
 *   UnpackM     s, d, c, z (n, a, y, selection)  y[i] = the next element of a where mask[i] is not 0
 *   UnpackV     s, d, c, z (n, a, y, selection)  y[index[i]] = a[i]
 *   CdfNorm     s, d   (n, a, r)  the normal distribution of unit variance, erfc(-x/sqrt(2))/2
 *                       underflow (4): x < -37.7403; singles: the result is 0 or denormal
 *                       method: series about a grid of 2^-7, distribution and density there from a table
 *   CdfNormInv  s, d   (n, a, r)  y with CdfNorm y = x, 0 <= x <= 1
 *                       domain error (1): x < 0, x > 1
 *                       singularity (2): x = 0, x = 1
 *                       method: as ErfcInv, of 2 x
 *   Erf         s, d   (n, a, r)  the error function, 2/sqrt(pi) times the integral of e^(-v^2) from 0 to x
 *                       method: Taylor series about a grid of 2^-7, erf and its derivative there from a table
 *   Erfc        s, d   (n, a, r)  the complementary error function, 1 - Erf x
 *                       underflow (4): x > 26.6994; singles: the result is 0 or denormal
 *                       method: series about a grid of 2^-7, erfc and its derivative there from a table
 *   ErfcInv     s, d   (n, a, r)  y with erfc y = x, 0 <= x <= 2
 *                       domain error (1): x < 0, x > 2
 *                       singularity (2): x = 0, x = 2
 *                       method: as ErfInv; below 2^-54 polynomials in rows by ln x
 *   ErfInv      s, d   (n, a, r)  y with erf y = x, |x| <= 1
 *                       domain error (1): |x| > 1, infinities
 *                       singularity (2): |x| = 1
 *                       method: polynomials in rows by the leading bits of |x| and 1 - |x|; sEP: one in sqrt(-ln(1 -
 *                       x^2))
 *   LGamma      s, d   (n, a, r)  ln |gamma x|
 *                       singularity (2): x is 0 or a negative integer
 *                       overflow (3): x is too large
 *                       method: polynomials in rows of 1/8, Stirling's series from 8 on, reflection (DLMF 5.5, 5.11)
 *   TGamma      s, d   (n, a, r)  gamma x, all numbers but negative integers
 *                       domain error (1): x is a negative integer or -infinity
 *                       singularity (2): x = 0
 *                       overflow (3): the result is too large
 *                       underflow (4): the result is 0 or denormal
 *                       method: polynomials in rows of 1/8, Stirling's series from 8 on, reflection (DLMF 5.5, 5.11)
 *   Pow         s, d   (n, a, b, r)  x^y, x >= 0, or y an integer
 *                       domain error (1): x < 0, y not an integer
 *                       singularity (2): x = 0, y < 0
 *                       overflow (3): result above the largest number
 *                       underflow (4): result denormal or 0
 *                       method: 2^(y log2 x), the logarithm as a sum of two doubles (after P. T. P. Tang, ACM TOMS
 *                       16, 1990)
 *   Powx        s, d   (n, a, b, r; b one value)  x^y for one y, x >= 0, or y an integer
 *                       domain error (1): x < 0, y not an integer
 *                       singularity (2): x = 0, y < 0
 *                       overflow (3): result above the largest number
 *                       underflow (4): result denormal or 0
 *                       method: 2^(y log2 x), the logarithm as a sum of two doubles (after P. T. P. Tang, ACM TOMS
 *                       16, 1990)
 *   Cbrt        s, d   (n, a, r)  x^(1/3)
 *                       method: a table of the power at 96 points, the binomial series for the rest (after P. T. P.
 *                       Tang, ACM TOMS 16, 1990)
 *   InvCbrt     s, d   (n, a, r)  x^(-1/3), x not 0
 *                       singularity (2): x = 0
 *                       method: a table of the power at 96 points, the binomial series for the rest (after P. T. P.
 *                       Tang, ACM TOMS 16, 1990)
 *   Pow2o3      s, d   (n, a, r)  x^(2/3)
 *                       method: a table of the power at 96 points, the binomial series for the rest (after P. T. P.
 *                       Tang, ACM TOMS 16, 1990)
 *   Pow3o2      s, d   (n, a, r)  x^(3/2), x >= 0
 *                       domain error (1): x < 0
 *                       method: the processor's root; HA with its rounding error made good
 *   Hypot       s, d   (n, a, b, r)  (x^2 + y^2)^(1/2)
 *                       method: the processor's root; HA of a sum in two parts, with the root's rounding error made
 *                       good
 *   Add         c, z   (n, a, b, r)  a + b
 *                       overflow (3): a part above the largest number, of finite arguments (HA, LA)
 *   Sub         c, z   (n, a, b, r)  a - b
 *                       overflow (3): a part above the largest number, of finite arguments (HA, LA)
 *   Mul         c, z   (n, a, b, r)  a b
 *                       overflow (3): a part above the largest number, of finite arguments (HA, LA)
 *                       method: singles as doubles; doubles with three roundings in a part
 *   MulByConj   c, z   (n, a, b, r)  a times the conjugate of b
 *                       overflow (3): a part above the largest number, of finite arguments (HA, LA)
 *                       method: as Mul
 *   Div         c, z   (n, a, b, r)  a/b, b not 0
 *                       singularity (2): b = 0 (HA, LA)
 *                       overflow (3): a part above the largest number, of finite arguments (HA, LA)
 *                       method: singles as doubles; doubles, HA, by sums of products in two parts and a corrected
 *                       quotient; EP, single, by the approximate reciprocal
 *   Conj        c, z   (n, a, r)  the conjugate of a
 *   Abs         c, z   (n, a, r; r real)  the modulus (x^2 + y^2)^(1/2) of x + i y
 *                       overflow (3): modulus above the largest number, of finite parts (HA, LA; z: all classes)
 *                       method: as Hypot
 *   Arg         c, z   (n, a, r; r real)  the argument of x + i y, from -pi to pi
 *                       method: as Atan2
 *   Acos        c, z   (n, a, r)  arccos z, cuts on the real axis beyond ±1
 *                       method: T. Hull, T. Fairgrieve, P. Tang, ACM TOMS 23, 1997
 *   Acosh       c, z   (n, a, r)  arcosh z, cut on the real axis below 1
 *                       method: T. Hull, T. Fairgrieve, P. Tang, ACM TOMS 23, 1997
 *   Asin        c, z   (n, a, r)  arcsin z, cuts on the real axis beyond ±1
 *                       method: arsinh(iz)/i
 *   Asinh       c, z   (n, a, r)  arsinh z, cuts on the imaginary axis beyond ±i
 *                       method: T. Hull, T. Fairgrieve, P. Tang, ACM TOMS 23, 1997
 *   Atan        c, z   (n, a, r)  arctan z, cuts on the imaginary axis beyond ±i
 *                       method: artanh(iz)/i
 *   Atanh       c, z   (n, a, r)  artanh z, cuts on the real axis beyond ±1
 *                       method: W. Kahan, Branch cuts for complex elementary functions, 1987
 *   Cos         c, z   (n, a, r)  cos z
 *                       method: cosh(iz)
 *   Cosh        c, z   (n, a, r)  cosh z
 *                       method: cosh x cos y + i sinh x sin y
 *   Log10       c, z   (n, a, r)  log10 z, cut on the negative axis
 *                       method: ln |z| and arg z; next to |z| = 1 of the exact |z|^2 - 1
 *   Pow         c, z   (n, a, b, r)  a^b
 *                       method: e^(b ln a), logarithm and product with low parts
 *   Powx        c, z   (n, a, b_re, b_im, r; b one value)  a^b, one b for all
 *                       method: e^(b ln a), logarithm and product with low parts
 *   Sin         c, z   (n, a, r)  sin z
 *                       method: sinh(iz)/i
 *   Sinh        c, z   (n, a, r)  sinh z
 *                       method: sinh x cos y + i cosh x sin y
 *   Tan         c, z   (n, a, r)  tan z
 *                       method: tanh(iz)/i
 *   Tanh        c, z   (n, a, r)  tanh z
 *                       method: (sinh x cosh x + i sin y cos y)/(sinh^2 x + cos^2 y)
 *   CIS         c, z   (n, a, r; a real)  cos x + i sin x, finite numbers
 *                       domain error (1): infinite x (not in zCIS HA)
 *                       method: as SinCos
 *   Exp         c, z   (n, a, r)  e^a
 *                       overflow (3): a part above the largest number, of finite a
 *                       method: e^x (cos y + i sin y) by the cores of Exp and SinCos; c, HA, in double; z, HA, with
 *                       factors in two parts
 *   Ln          c, z   (n, a, r)  the logarithm of a, with an imaginary part from -pi to pi
 *                       method: ln(x^2 + y^2)/2 + i Atan2(y, x), with the rounding errors of the sum of squares
 *   Sqrt        c, z   (n, a, r)  the square root of a, with a real part that is not negative
 *                       method: the larger part first, which does not cancel (Kahan 1987); c, HA, in double; z with
 *                       sums in two parts
 */
/* end functions */
#ifndef ORX_TEF_H
#define ORX_TEF_H

#include "orx/tef_mode.h"
#include "orx/tef_scalar.h"
#include "orx/tef_shapes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Tables, kernels and forwarders of every function. Macros that begin with ORX_TEF_ are the header's own. */
#define ORX_TEF_FORWARDERS_s(Fn) \
  orx_tef_s##Fn##_function _tefs##Fn, _tefs##Fn##_HA, _tefs##Fn##_21, _tefs##Fn##_11;
#define ORX_TEF_FORWARDERS_d(Fn) \
  orx_tef_d##Fn##_function _tefd##Fn, _tefd##Fn##_HA, _tefd##Fn##_50, _tefd##Fn##_26;
#define ORX_TEF_FORWARDERS_c(Fn) \
  orx_tef_c##Fn##_function _tefc##Fn, _tefc##Fn##_HA, _tefc##Fn##_21, _tefc##Fn##_11;
#define ORX_TEF_FORWARDERS_z(Fn) \
  orx_tef_z##Fn##_function _tefz##Fn, _tefz##Fn##_HA, _tefz##Fn##_50, _tefz##Fn##_26;
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, cost_la, cost_ha, cost_ep)                           \
  typedef void orx_tef_##t##Fn##_function ORX_TEF_PARAMETERS_##shape(ORX_TEF_REAL_##t, );           \
  typedef void orx_tef_##t##Fn##_kernel ORX_TEF_PARAMETERS_##shape(ORX_TEF_REAL_##t, ORX_TEF_FLAG); \
  extern orx_tef_##t##Fn##_kernel* orx_tef_kernel_##t##Fn##_ttab[3];                                \
  extern float orx_tef_kernel_##t##Fn##_ctab[3];                                                    \
  orx_tef_##t##Fn##_kernel orx_tef_kernel_##t##Fn##_##la;                                           \
  orx_tef_##t##Fn##_kernel orx_tef_kernel_##t##Fn##_##ha;                                           \
  orx_tef_##t##Fn##_kernel orx_tef_kernel_##t##Fn##_##ep;                                           \
  ORX_TEF_FORWARDERS_##t(Fn)
#include "orx/tef_functions.def"
#undef ORX_FUNCTION

/* The far tails behind ErfcInv and CdfNormInv, two numbers at a time: r[i] = erfc^-1(y[i]), and the same times sqrt(2), for
 * y from the least denormal to 2^-47, to 1 ulp. Nothing is checked or reported; the control word is the caller's. */
void dErfcInv_Tail(const double* y, double* r);
void dCdfNormInv_Tail(const double* y, double* r);

#ifdef __cplusplus
}
#endif

#endif
