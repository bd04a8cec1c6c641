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

/* Functions of the extended type, right to its 64 bits: errors are below 0.6 ulp everywhere, denormal numbers included.
 * Special values and exceptions are those of C99's functions of the name (annex F): log of a negative number, sine of an
 * infinity, asin beyond 1 are NaN and raise invalid; poles raise the division by zero; overflow and underflow as by IEEE
 * 754: exp is finite up to 11356.523. The x87 control word must ask for 64-bit significands and round to nearest. They are reentrant. */
long double orx_tef_kernel_expl_scalar(long double x);
long double orx_tef_kernel_logl_scalar(long double x);
long double orx_tef_kernel_log1pl_scalar(long double x); /* ln(1 + x) */
long double orx_tef_kernel_sinl_scalar(long double x);
long double orx_tef_kernel_cosl_scalar(long double x);
void orx_tef_kernel_sincosl_scalar(long double x, long double* sin, long double* cos);
long double orx_tef_kernel_tanl_scalar(long double x);
long double orx_tef_kernel_sinhl_scalar(long double x);
long double orx_tef_kernel_coshl_scalar(long double x);
void orx_tef_kernel_sinhcoshl_scalar(long double x, long double* sinh, long double* cosh);
long double orx_tef_kernel_tanhl_scalar(long double x);
long double orx_tef_kernel_asinl_scalar(long double x);
long double orx_tef_kernel_acosl_scalar(long double x);
long double orx_tef_kernel_atanl_scalar(long double x);
long double orx_tef_kernel_atan2l_scalar(long double y,
                                         long double x); /* the angle of (x, y), in [-pi, pi] */
long double orx_tef_kernel_asinhl_scalar(long double x);
long double orx_tef_kernel_acoshl_scalar(long double x);
long double orx_tef_kernel_atanhl_scalar(long double x);
long double orx_tef_kernel_sqrtl_scalar(long double x); /* correctly rounded */
long double orx_tef_kernel_fabsl_scalar(long double x);
float orx_tef_kernel__sabs_scalar(float x); /* the sign bit cleared, also a NaN's */
double orx_tef_kernel__dabs_scalar(double x);

/* Their tables, for i from 0 to 255 and r = 1/(1 + (i + 1/2)/256) in 11 bits: r; -ln r as a low and a high part; 2^(i/256)
 * to i = 256 as a high and a low part; atan(i/128) to i = 128 as a high and a low part. */
extern const float orx_tef_core_rcp_table_256[256];
extern const double orx_tef_core_double_rcp_table_256[256];
extern const double orx_tef_core_logl_table_256[256][2];
extern const double orx_tef_core_log_table_256[256][2]; /* the same rows */
extern const double orx_tef_core_expl_table_256[257][2];
extern const double orx_tef_core_atanl_table_128[129][2];

/* Complex functions of a number of two doubles, real part first; result[0] is the real part. They compute in the extended
 * type: the x87 control word must ask for it, as above. Both parts are right to 0.51 ulp, but where the parts of a power
 * cancel: those of cpow are right to 0.51 ulp of the larger one while |b ln a| is below 2^10, and its error grows with
 * |b ln a| beyond. Principal values; on a branch cut the sign of a zero tells the side. Special values and exceptions are
 * those of C99, annex G, but that cpow is exp(b ln a) for all arguments: a^b is NaN where a is 0 and b real.
 * Accuracy: T. Hull, T. Fairgrieve, P. Tang, ACM TOMS 23, 1997 (arcsine and arccosine); W. Kahan, "Branch cuts for complex
 * elementary functions", 1987. They report nothing. */
void orx_tef_kernel_cexp_scalar(double re, double im, double result[2]);
void orx_tef_kernel_clog_scalar(double re, double im, double result[2]);
void orx_tef_kernel_clog10_scalar(double re, double im, double result[2]);
void orx_tef_kernel_cpow_scalar(double a_re, double a_im, double b_re, double b_im, double result[2]);
void orx_tef_kernel_csqrt_scalar(double re, double im, double result[2]);
void orx_tef_kernel_csin_scalar(double re, double im, double result[2]);
void orx_tef_kernel_ccos_scalar(double re, double im, double result[2]);
void orx_tef_kernel_ctan_scalar(double re, double im, double result[2]);
void orx_tef_kernel_csinh_scalar(double re, double im, double result[2]);
void orx_tef_kernel_ccosh_scalar(double re, double im, double result[2]);
void orx_tef_kernel_ctanh_scalar(double re, double im, double result[2]);
void orx_tef_kernel_casin_scalar(double re, double im, double result[2]);
void orx_tef_kernel_cacos_scalar(double re, double im, double result[2]);
void orx_tef_kernel_catan_scalar(double re, double im, double result[2]);
void orx_tef_kernel_casinh_scalar(double re, double im, double result[2]);
void orx_tef_kernel_cacosh_scalar(double re, double im, double result[2]);
void orx_tef_kernel_catanh_scalar(double re, double im, double result[2]);

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
