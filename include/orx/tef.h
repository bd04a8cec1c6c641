/* Vector mathematics.
 *
 * Every function works on whole vectors, element by element, in up to three accuracy classes:
 *
 *   HA  high accuracy: error below 1 ulp
 *   LA  low accuracy: error below 4 ulp
 *   EP  enhanced performance: at least 26 correct bits in double, 11 in single precision
 *
 * For a function Fn and a type letter t (`s` float, `d` double) there are
 *
 *   _tef<t>Fn, _tef<t>Fn_HA        call the HA kernel
 *   _tefdFn_50, _tefsFn_21         call the LA kernel
 *   _tefdFn_26, _tefsFn_11         call the EP kernel
 *   orx_tef_kernel_<t>Fn_ttab[3]   pointers to the LA, HA and EP kernel, indexed by
 *                                  orx_tef_kernel_GetTTableIndex(), which goes by the thread's mode
 *   orx_tef_kernel_<t>Fn_ctab[3]   costs of the three, in cycles per element
 *
 * Where a table holds one kernel more than once the accuracy is that of the better class. The forwarders do
 * not look at the mode word.
 *
 * Shapes. n counts elements; vectors are contiguous; inputs and outputs may be the same array, but must not
 * overlap in any other way; n = 0 does nothing. Sizes and pointers are not checked.
 *
 *   unary       (n, a, r)         r[i] = f(a[i])
 *   binary      (n, a, b, r)      r[i] = f(a[i], b[i])
 *   linearfrac  (n, a, b, scalea, shifta, scaleb, shiftb, r)
 *                                 r[i] = (a[i] * scalea + shifta) / (b[i] * scaleb + shiftb)
 *
 * Arithmetic. Kernels compute in round-to-nearest whatever the caller's MXCSR says, with denormals flushed if
 * and only if the mode word's flush field says so, and leave MXCSR as they found it.
 *
 * Errors. Every element gets a result. For an element in error the thread's status is set, and the error
 * modes (errno, message, floating-point exception, callback) act as the mode word tells:
 *
 *   function       domain error (1)    singularity (2)    overflow (3)      underflow (4)
 *   Exp                                                   x > 709.78, inf   x < -708.39, denormal or 0
 *   Exp, single                                           x > 88.722, inf   x < -87.336, denormal or 0
 *   Expm1                                                 as Exp            none, -1
 *   Ln, Log10      x < 0, NaN          x = 0, -inf
 *   Log1p          x < -1, NaN         x = -1, -inf
 *
 * Add, Sub, Mul, Sqr, Abs and LinearFrac report nothing: infinities and NaNs stand in the result. A NaN goes
 * in and comes out quiet, and is no error.
 *
 * Methods. Exp, Expm1: reduction by ln 2 / 2^k, table of powers, short polynomial (P. T. P. Tang,
 * "Table-driven implementation of the exponential function in IEEE floating-point arithmetic", ACM TOMS 15,
 * 1989). Ln, Log10, Log1p: reduction by a short rounded reciprocal that serves as table index and exact
 * multiplier at once (after W.-F. Wong and E. Goto, "Fast hardware-based algorithms for elementary function
 * computations using rectangular multipliers", IEEE Trans. Computers 43, 1994). */
#ifndef ORX_TEF_H
#define ORX_TEF_H

#ifdef __cplusplus
extern "C" {
#endif

/* Fields of the mode word, a 32-bit word per thread. */
enum {
  TEF_LA = 0x1,
  TEF_HA = 0x2,
  TEF_EP = 0x3,
  TEF_ACCURACY_MASK = 0xF,
  TEF_DEFAULT_PRECISION = 0x00, /* this field is set by the environment alone; no kernel reads it */
  TEF_FLOAT_CONSISTENT = 0x10,
  TEF_DOUBLE_CONSISTEN = 0x20,
  TEF_RESTORE = 0x30,
  TEF_ERRMODE_IGNORE = 0x100,
  TEF_ERRMODE_ERRNO = 0x200,
  TEF_ERRMODE_STDERR = 0x400,
  TEF_ERRMODE_EXCEPT = 0x800,
  TEF_ERRMODE_CALLBACK = 0x1000,
  TEF_ERRMODE_DEFAULT = 0x1A00,
  TEF_ERRMODE_MASK = 0xFF00,
  TEF_FLUSH_OFF = 0x140000, /* acts like an empty field: denormals are kept */
  TEF_FLUSH_ON = 0x280000,
  TEF_FLUSH_MASK = 0x3C0000
};

/* Status of an error. */
enum {
  StatusBadPointer = -2,
  StatusBadSize = -1,
  StatusOk = 0,
  StatusDomain = 1,
  StatusSingularity = 2,
  StatusOverflow = 3,
  StatusUnderflow = 4
};

/* What an error callback gets. For StatusBadSize and StatusBadPointer only status, index and name are filled.
 * The imaginary parts are filled for complex functions only. */
typedef struct TefErrorContext {
  int status;
  int index;                     /* of the failing element in the caller's vector */
  double arg1, arg2, res1, res2; /* single-precision elements are widened; res1, res2 may be changed */
  char funcName[64];             /* such as "vdExp" */
  int funcNameLen;
  double arg1Im, arg2Im, res1Im, res2Im;
} TefErrorContext;

/* Returns 0 to let the standard handling follow and changed results be stored, anything else when the
 * callback has dealt with the error; then its changes to the results are dropped. */
typedef int (*TefErrorCallBack)(TefErrorContext* context);

/* The mode word. The first call on a thread takes the initial value from the environment variable
 * ORX_TEF_MODE, a comma-separated list of "TEF_" and a keyword of mapModeS_N, e.g.
 * "TEF_LA,TEF_ERRMODE_STDERR"; without the variable, or if anything in it is wrong, it is TEF_HA |
 * TEF_ERRMODE_DEFAULT. */
int orx_tef_kernel_GetMode(void);

/* Replaces the accuracy, error-mode and flush fields that are not 0 in `mode`; returns the previous word. */
int orx_tef_kernel_SetMode(int mode);

/* What the environment variable says now; all ones if it is not set or not valid. */
unsigned long long orx_tef_kernel_ReadEnvVarMode(void);

/* Status of the thread's last error; set and clear return the previous one. Calls that succeed leave it
 * alone. */
int orx_tef_kernel_GetErrStatus(void);
int orx_tef_kernel_SetErrStatus(int status);
int orx_tef_kernel_ClearErrStatus(void);

/* The thread's error callback. Setting one also turns TEF_ERRMODE_CALLBACK on, clearing turns it off unless
 * it is the only error mode. Both return the previous callback. */
TefErrorCallBack orx_tef_kernel_GetErrorCallBack(void);
TefErrorCallBack orx_tef_kernel_SetErrorCallBack(TefErrorCallBack callback);
TefErrorCallBack orx_tef_kernel_ClearErrorCallBack(void);

/* Base of the whole vector of which the following calls on this thread get parts, so that errors tell the
 * index in the whole; null to end that. */
void* orx_tef_kernel_SetInterfInputVectorPointer(void* base);

/* Index into a ttab or ctab: 0 LA, 1 HA, 2 EP; -1 if the mode word names no class. */
int orx_tef_kernel_GetTTableIndex(void);
int orx_tef_kernel_GetTTableIndexM(int unused, int mode);

/* For a layer that checks arguments before it calls a kernel: reports StatusBadSize or StatusBadPointer, or
 * an element's error. a2 is a1, and r2 is r1, for functions of one input or one result. */
void orx_tef_kernel_sError(int status, int index, const float* a1, const float* a2, float* r1, float* r2,
                           const char* name);
void orx_tef_kernel_dError(int status, int index, const double* a1, const double* a2, double* r1, double* r2,
                           const char* name);
/* Complex elements: a pair of reals, the real part first. */
void orx_tef_kernel_cError(int status, int index, const float* a1, const float* a2, float* r1, float* r2,
                           const char* name);
void orx_tef_kernel_zError(int status, int index, const double* a1, const double* a2, double* r1, double* r2,
                           const char* name);

/* Short names of the same. */
int _tefGetMode(void);
int _tefSetMode(int mode);
int _tefGetErrStatus(void);
int _tefSetErrStatus(int status);
int _tefClearErrStatus(void);
TefErrorCallBack _tefGetErrorCallBack(void);
TefErrorCallBack _tefSetErrorCallBack(TefErrorCallBack callback);
TefErrorCallBack _tefClearErrorCallBack(void);
void* _tefSetInterfInputVectorPointer(void* base);

/* The keywords of the environment variable. */
typedef struct TefModeKeyword {
  const char* text;
  unsigned length;
  unsigned value, value_high;
} TefModeKeyword;
extern const TefModeKeyword mapModeS_N[13];

/* Always 0: this library serves one class of processors. */
int dll_cpu_version(void);

/* The functions: tables, forwarders, kernels. */
#define ORX_REAL_s float
#define ORX_REAL_d double
#define ORX_PARAMETERS_unary(T) (int n, const T* a, T* r)
#define ORX_PARAMETERS_binary(T) (int n, const T* a, const T* b, T* r)
#define ORX_PARAMETERS_linearfrac(T) \
  (int n, const T* a, const T* b, T scalea, T shifta, T scaleb, T shiftb, T* r)

#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, cost_la, cost_ha, cost_ep)       \
  typedef void orx_tef_##t##Fn##_function ORX_PARAMETERS_##shape(ORX_REAL_##t); \
  extern orx_tef_##t##Fn##_function* orx_tef_kernel_##t##Fn##_ttab[3];          \
  extern float orx_tef_kernel_##t##Fn##_ctab[3];                                \
  orx_tef_##t##Fn##_function orx_tef_kernel_##t##Fn##_##la;                     \
  orx_tef_##t##Fn##_function orx_tef_kernel_##t##Fn##_##ha;                     \
  orx_tef_##t##Fn##_function orx_tef_kernel_##t##Fn##_##ep;                     \
  ORX_FORWARDER_DECLARATIONS_##t(Fn)
#define ORX_FORWARDER_DECLARATIONS_s(Fn) \
  orx_tef_s##Fn##_function _tefs##Fn, _tefs##Fn##_HA, _tefs##Fn##_21, _tefs##Fn##_11;
#define ORX_FORWARDER_DECLARATIONS_d(Fn) \
  orx_tef_d##Fn##_function _tefd##Fn, _tefd##Fn##_HA, _tefd##Fn##_50, _tefd##Fn##_26;
#include "orx/tef_functions.def"
#undef ORX_FUNCTION

#ifdef __cplusplus
}
#endif

#endif
