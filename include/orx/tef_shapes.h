/* Parameter lists of the vector functions by shape: a part of tef.h, and of the code behind it.
 *
 *   ORX_TEF_PARAMETERS_<shape>(R, more)
 *
 * R is the real type of the elements: a complex element is two of them, the real part first. n counts elements.
 * `more` is empty for the forwarders and ORX_TEF_FLAG for the kernels. It matters to the kernels that pack and
 * unpack, which have a parameter more: with `flag` 1 they work in 32 bits (the low words of count and stride,
 * selections of int), else in 64 (selections of long long). */
#ifndef ORX_TEF_SHAPES_H
#define ORX_TEF_SHAPES_H

/* By type letter. */
#define ORX_TEF_REAL_s float
#define ORX_TEF_REAL_d double
#define ORX_TEF_REAL_c float
#define ORX_TEF_REAL_z double

#define ORX_TEF_FLAG , int flag

/* r[i] = f(a[i]): real to real, or complex to complex; real to complex; complex to real. */
#define ORX_TEF_PARAMETERS_unary(R, more) (int n, const R* a, R* r)
#define ORX_TEF_PARAMETERS_from_real(R, more) (int n, const R* a, R* r)
#define ORX_TEF_PARAMETERS_to_real(R, more) (int n, const R* a, R* r)

/* r[i] = f(a[i], b[i]). */
#define ORX_TEF_PARAMETERS_binary(R, more) (int n, const R* a, const R* b, R* r)

/* (r1[i], r2[i]) = f(a[i]). */
#define ORX_TEF_PARAMETERS_two_results(R, more) (int n, const R* a, R* r1, R* r2)

/* r[i] = f(a[i], b), with b real or complex. */
#define ORX_TEF_PARAMETERS_scalar_second(R, more) (int n, const R* a, R b, R* r)
#define ORX_TEF_PARAMETERS_complex_scalar_second(R, more) (int n, const R* a, R b_re, R b_im, R* r)

/* r[i] = (a[i] * scalea + shifta) / (b[i] * scaleb + shiftb). */
#define ORX_TEF_PARAMETERS_linearfrac(R, more) \
  (int n, const R* a, const R* b, R scalea, R shifta, R scaleb, R shiftb, R* r)

/* y[i] = a[i * stride], and back: y[i * stride] = a[i]. The selections are masks or indices. */
#define ORX_TEF_PARAMETERS_pack_strided(R, more) (long long n, const R* a, long long stride, R* y more)
#define ORX_TEF_PARAMETERS_unpack_strided(R, more) (long long n, const R* a, R* y, long long stride more)
#define ORX_TEF_PARAMETERS_pack_selected(R, more) (long long n, const R* a, const int* selection, R* y more)
#define ORX_TEF_PARAMETERS_unpack_selected(R, more) (long long n, const R* a, R* y, const int* selection more)

#endif
