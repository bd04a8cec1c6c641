/* Vector mathematics without the functions: the mode word, statuses, error reports. A part of tef.h. */
#ifndef ORX_TEF_MODE_H
#define ORX_TEF_MODE_H

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

/* Returns 0 to let the standard handling follow and changed results be stored, anything else when the callback has
 * dealt with the error; then its changes to the results are dropped.
 *
 * It is called on the thread of the failing call, in the midst of its work: some elements have their results, others
 * not yet. It may read and set mode, status and callback, call vector functions on other arrays, and allocate. It
 * must return: the library has no code to unwind its frames, so that no C++ exception may leave it and no longjmp
 * may pass over it. The floating-point control words are the kernel's (round to nearest, denormals flushed if the
 * mode says so). When a call works in place, arg1 or arg2 may be the result already, since results are stored
 * before the report. */
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

#ifdef __cplusplus
}
#endif

#endif
