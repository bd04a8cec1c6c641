/* orx vector mathematics: scalar routines beside the vector kernels. They touch no mode; unless told otherwise they report
 * nothing. Long double is the x87 type of 80 bits on all targets. */
#ifndef ORX_TEF_SCALAR_H
#define ORX_TEF_SCALAR_H

#ifdef __cplusplus
extern "C" {
#endif

/* Reductions of an argument for the trigonometric functions, by as many digits of 1/(2 pi) as it takes (M. Payne and
 * R. Hanek, ACM SIGNUM Newsletter 18, 1983): right to the last bits for arguments of any size.
 *
 * y[0] + y[1] = x - q pi/2, |y[0]| <= pi/4 but for rounding; y[0] is the sum rounded. The quadrant q, modulo 4, is
 * returned. Where |x| is below pi/4, q is 0 and y[0] is x. Infinities and NaN give NaN, and invalid is raised where C99
 * asks for it. reduce_pio2d does not depend on the x87 control word. */
int orx_tef_kernel_reduce_pio2d(double x, double y[2]);

/* The same for the extended type, in octants: y[0] + y[1] = x - j pi/4. The octant j, modulo 8, is returned; it is even,
 * so that |y[0]| <= pi/4 and the sum is a quarter turn's. The x87 control word must ask for 64-bit significands. */
int orx_tef_kernel_reduce_pi04l(long double x, long double y[2]);

/* r[i] = tan a[i], one element with the accuracy of the high class, in round-to-nearest. A zero keeps its sign; of an
 * infinity the result is NaN, and a domain error is reported in the name of `name`; NaN gives NaN. `n` is the length of
 * the vectors, which nothing depends on. */
void orx_tef_kernel_dTan_SC(int i, const double* a, double* r, int n, const char* name);
void orx_tef_kernel_sTan_SC(int i, const float* a, float* r, int n, const char* name);

/* The same in the names dTan_HA, dTan_LA, dTan_A11, and those of singles. */
void orx_tef_kernel_dTan_SC_HA(int i, const double* a, double* r, int n);
void orx_tef_kernel_dTan_SC_LA(int i, const double* a, double* r, int n);
void orx_tef_kernel_dTan_SC_A11(int i, const double* a, double* r, int n);
void orx_tef_kernel_sTan_SC_HA(int i, const float* a, float* r, int n);
void orx_tef_kernel_sTan_SC_LA(int i, const float* a, float* r, int n);
void orx_tef_kernel_sTan_SC_A11(int i, const float* a, float* r, int n);

#ifdef __cplusplus
}
#endif

#endif
