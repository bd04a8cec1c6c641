/* Data fitting: splines over one-dimensional data.
 *
 * A task describes one partition (breakpoints x[0] < ... < x[nx-1]), one or more functions given by their
 * values at the breakpoints, the spline that is to be built and the array for its coefficients. Builders fill
 * the coefficients; search, interpolation and integration read them. Everything a task points to belongs to
 * the caller and must live as long as it is used; only two arrays of pointers and the table of the cell
 * search are the task's.
 *
 * Every function exists for double (`d`) and single precision (`s`); a task serves the precision it was made
 * for. Integers are 64 bits wide on all platforms. Functions return ORX_DF_OK or a negative status and do not
 * print.
 *
 * What a call needs and was not given has a status: null values or coefficients of any function FUNCS or COEFFS, a
 * spline of another order METHOD, and nothing is written then. A null table of threads runs everything on the
 * calling thread.
 *
 * A built task is only read by search, interpolation and integration, so threads may share it. */
#ifndef ORX_DF_H
#define ORX_DF_H

#include <stdint.h>

#include "orx/serv.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct DFTask DFTask;

/* Status codes. */
enum {
  ORX_DF_OK = 0,
  ORX_DF_ERROR_TASK = -1000,       /* null task, or a task of the other precision */
  ORX_DF_ERROR_MEMORY = -1001,     /* memory could not be allocated, or arrays so long that none holds them */
  ORX_DF_ERROR_METHOD = -1002,     /* the method, or the task's spline order, is not this builder's */
  ORX_DF_ERROR_GRID_SIZE = -1004,  /* too few breakpoints, or more than 2^31 - 1 */
  ORX_DF_ERROR_GRID = -1005,       /* null breakpoints */
  ORX_DF_ERROR_GRID_HINT = -1006,  /* unknown partition hint */
  ORX_DF_ERROR_FUNC_COUNT = -1007, /* bad count of functions, or none where some are needed */
  ORX_DF_ERROR_FUNCS = -1008,      /* null function values */
  ORX_DF_ERROR_FUNC_HINT = -1009,  /* unknown storage hint of function values */
  ORX_DF_ERROR_SPLINE_ORDER = -1010,      /* bad spline order */
  ORX_DF_ERROR_SPLINE_KIND = -1011,       /* bad spline kind, or nothing evaluates this order and kind */
  ORX_DF_ERROR_INT_COND_KIND = -1012,     /* bad kind of internal conditions */
  ORX_DF_ERROR_INT_CONDS = -1013,         /* internal conditions missing or not usable */
  ORX_DF_ERROR_BND_COND_KIND = -1014,     /* bad kind of boundary conditions */
  ORX_DF_ERROR_BND_CONDS = -1015,         /* boundary conditions missing */
  ORX_DF_ERROR_COEFFS = -1016,            /* null coefficients */
  ORX_DF_ERROR_COEFF_HINT = -1017,        /* unknown storage hint of coefficients */
  ORX_DF_ERROR_NOT_PERIODIC = -1018,      /* periodic spline, and first and last function value differ */
  ORX_DF_ERROR_PARAMETER = -1019,         /* unknown parameter */
  ORX_DF_ERROR_INDEX = -1020,             /* function index out of range */
  ORX_DF_ERROR_LOOKUP_SITE = -1022,       /* look-up at a site that is no breakpoint */
  ORX_DF_ERROR_LOOKUP_DERIVATIVE = -1024, /* derivative of a look-up interpolant */
  ORX_DF_ERROR_LOOKUP_VALUES = -1025,     /* look-up in a task without function values */
  ORX_DF_ERROR_DATA_HINT = -1026,         /* bad data hint */
  ORX_DF_ERROR_INTERPOLATION = -1028,     /* bad argument of interpolation */
  ORX_DF_ERROR_RESULT_HINT = -1034,       /* unknown result hint of integration */
  ORX_DF_ERROR_CHECK_FLAG = -1036,        /* check flag neither 0 nor 1 */
  ORX_DF_ERROR_SINGULAR = -1500,          /* the system of a cubic spline has a pivot of 0 */
  ORX_DF_ERROR_OUTSIDE = -1600,           /* a site outside the partition, by orx_df_kernel_dErrorOutside */
  ORX_DF_ERROR_BREAKPOINT = -1000000      /* and below: a bad breakpoint, see ORX_DF_CHECK_FLAG */
};

/* Partition hints. */
enum {
  ORX_DF_NO_HINT = 0,
  ORX_DF_NON_UNIFORM_PARTITION = 1,
  ORX_DF_QUASI_UNIFORM_PARTITION = 2,
  ORX_DF_UNIFORM_PARTITION = 4 /* only the first and the last breakpoint are given */
};

/* Storage hints of function values, coefficients and results (results: see interpolation). ORX_DF_NO_HINT
 * means rows. */
enum {
  ORX_DF_ROWS = 16,       /* function after function */
  ORX_DF_COLUMNS = 32,    /* element k of function i at k * function count + i */
  ORX_DF_FIRST_ONLY = 128 /* only the first function's array is given; the others follow one by one */
};

/* Site hints. */
enum {
  ORX_DF_UNIFORM_SITES = 4, /* only the first and the last site are given */
  ORX_DF_SORTED_SITES = 64  /* ascending */
};

/* Spline orders: the number of coefficients of a cell. 5 and more: polynomials of the caller's own. */
enum { ORX_DF_STEPWISE = 0, ORX_DF_LINEAR = 2, ORX_DF_QUADRATIC = 3, ORX_DF_CUBIC = 4 };

/* Spline kinds. */
enum {
  ORX_DF_DEFAULT = 0,
  ORX_DF_SUBBOTIN = 1,
  ORX_DF_NATURAL = 2,
  ORX_DF_HERMITE = 3,
  ORX_DF_BESSEL = 4,
  ORX_DF_AKIMA = 5,
  ORX_DF_LOOK_UP = 6,
  ORX_DF_STEP_RIGHT_CONTINUOUS = 7,
  ORX_DF_STEP_LEFT_CONTINUOUS = 8
};

/* Boundary conditions. The two-sided kinds are sums of a left and a right one and take both values from
 * bndConds. */
enum {
  ORX_DF_NOT_A_KNOT = 1,
  ORX_DF_FREE_END = 2,
  ORX_DF_FIRST_LEFT = 4,
  ORX_DF_FIRST_RIGHT = 8,
  ORX_DF_SECOND_LEFT = 16,
  ORX_DF_SECOND_RIGHT = 32,
  ORX_DF_PERIODIC = 64,
  ORX_DF_QUADRATIC_VALUE = 128 /* bndConds[0] is the spline's value in the middle of the first cell */
};

/* Internal conditions. */
enum {
  ORX_DF_FIRST_DERIVATIVES = 1,  /* Hermite: nx-2 first derivatives at the inner breakpoints */
  ORX_DF_SECOND_DERIVATIVES = 2, /* default cubic: nx-2 second derivatives at the inner breakpoints */
  ORX_DF_UNIFORM_KNOTS = 4,      /* with ORX_DF_KNOTS: only the first and the last inner knot are given */
  ORX_DF_KNOTS = 8               /* Subbotin: nx+1 knots, of which the outer two are the outer breakpoints */
};

/* Parameters of the editors: pointers 1 to 5, values 14 to 23. */
enum {
  ORX_DF_GRID = 1,
  ORX_DF_FUNCS = 2,
  ORX_DF_INT_CONDS = 3,
  ORX_DF_BND_CONDS = 4,
  ORX_DF_COEFFS = 5,
  ORX_DF_GRID_SIZE = 14,
  ORX_DF_GRID_HINT = 15,
  ORX_DF_FUNC_COUNT = 16,
  ORX_DF_FUNC_HINT = 17,
  ORX_DF_SPLINE_ORDER = 18,
  ORX_DF_SPLINE_KIND = 19,
  ORX_DF_INT_COND_KIND = 20,
  ORX_DF_BND_COND_KIND = 21,
  ORX_DF_COEFF_HINT = 22,
  ORX_DF_CHECK_FLAG = 23
};

/* With ORX_DF_CHECK_FLAG set to 1, builders, searches, interpolation and integration check first that breakpoints
 * are finite and each is above the one before it, in time proportional to their count. The status of a task that
 * fails is ORX_DF_ERROR_BREAKPOINT less the index of the first bad one (on a uniform partition 0 or 1, which of the
 * two ends), and this gives the index back. The flag is 0 in a new task: no check. */
#define ORX_DF_BAD_BREAKPOINT(status) (ORX_DF_ERROR_BREAKPOINT - (status))

/* ---- Task and editors ---- */

/* Makes a task. gridSize: 2 to 2^31 - 1. grid: gridSize ascending breakpoints, or, with
 * ORX_DF_UNIFORM_PARTITION, the first and the last one. funcs: the values of funcCount functions, stored as
 * funcHint says; null if and only if funcCount is 0. ilp64Flag: 0 if the arrays of cell indices and
 * derivative orders that later calls take hold 32-bit integers, else 64-bit.
 *
 * Where memory runs out half way the unfinished task stays in *task, to be deleted.
 * Errors, in the order of the checks: TASK (`task` is null), GRID_SIZE, GRID, GRID_HINT, FUNCS or FUNC_COUNT, FUNC_HINT, MEMORY. */
int32_t orx_df_kernel_dNewTask1D(DFTask** task, int64_t gridSize, const double* grid, int64_t gridHint,
                                 int64_t funcCount, const double* funcs, int64_t funcHint, int32_t ilp64Flag);
int32_t orx_df_kernel_sNewTask1D(DFTask** task, int64_t gridSize, const float* grid, int64_t gridHint,
                                 int64_t funcCount, const float* funcs, int64_t funcHint, int32_t ilp64Flag);

/* Describes the spline. coeffs may be null (the field stays as it was); else it is the array for the
 * coefficients, cell by cell, lowest power first, splineOrder of them per cell, function after function: the
 * polynomial of cell i is c[0] + c[1] t + c[2] t^2 + ..., t the distance from breakpoint x[i]. There are nx-1
 * cells, for a Subbotin spline nx.
 *
 * The checks run in the order of the arguments, and what came before a bad one has been stored.
 * Errors: TASK, SPLINE_ORDER, SPLINE_KIND, BND_CONDS (null, and bndCondKind is neither 0 nor NOT_A_KNOT,
 * FREE_END, PERIODIC), INT_CONDS (null, and intCondKind is not 0), INT_COND_KIND (0, and intConds is not
 * null), FUNC_COUNT (no functions for the coefficients), MEMORY. */
int32_t orx_df_kernel_dEditPPSpline1D(DFTask* task, int64_t splineOrder, int64_t splineKind,
                                      int64_t bndCondKind, const double* bndConds, int64_t intCondKind,
                                      const double* intConds, double* coeffs, int64_t coeffHint);
int32_t orx_df_kernel_sEditPPSpline1D(DFTask* task, int64_t splineOrder, int64_t splineKind,
                                      int64_t bndCondKind, const float* bndConds, int64_t intCondKind,
                                      const float* intConds, float* coeffs, int64_t coeffHint);

/* Replaces a pointer. New breakpoints do not renew the table of the cell search: set ORX_DF_GRID_HINT to
 * ORX_DF_NON_UNIFORM_PARTITION after it. Errors: TASK, PARAMETER, for a null pointer the parameter's own
 * error, FUNC_COUNT (coefficients without functions), MEMORY (the old array of pointers is gone then). */
int32_t orx_df_kernel_dEditPtr(DFTask* task, int64_t parameter, const double* pointer);
int32_t orx_df_kernel_sEditPtr(DFTask* task, int64_t parameter, const float* pointer);

/* Replaces the values (ORX_DF_FUNCS) or the coefficients (ORX_DF_COEFFS) of function `index`. Values stored
 * in columns have one pointer, that of index 0. Errors: TASK, PARAMETER, INDEX, FUNCS or COEFFS (null), MEMORY (the
 * count of functions has been raised, and there is no room for more pointers). */
int32_t orx_df_kernel_dEditIdxPtr(DFTask* task, int64_t parameter, int64_t index, const double* pointer);
int32_t orx_df_kernel_sEditIdxPtr(DFTask* task, int64_t parameter, int64_t index, const float* pointer);

/* Replaces a value; for both precisions. Arrays made from the old value stay as they are: functions beyond them
 * have no pointers yet, and a table of the cell search for another count of breakpoints is not used. Setting
 * ORX_DF_GRID_HINT to ORX_DF_NON_UNIFORM_PARTITION also builds the table of the cell search anew.
 * ORX_DF_SPLINE_KIND takes 0 to 5 here. Errors: TASK, PARAMETER, or the parameter's own. */
int32_t orx_df_kernel_iEditVal(DFTask* task, int64_t parameter, int64_t value);

/* Deletes a task of either precision and sets *task to null. Error: TASK (null). */
int32_t orx_df_kernel_DeleteTask(DFTask** task);

/* ---- Construction ----
 *
 * All read breakpoints and function values and write the coefficients. `order`, `kind` and `type` are not
 * read; `method` must be 0 where an error METHOD is listed. A periodic spline asks for first and last
 * function values that are equal, to the bit.
 *
 * The two-sided boundary kinds are FIRST_LEFT or SECOND_LEFT plus FIRST_RIGHT or SECOND_RIGHT. */

/* The broken line through the values. Errors: METHOD, GRID_SIZE, FUNC_HINT, NOT_PERIODIC (boundary kind
 * PERIODIC). */
int32_t orx_df_kernel_dDFLinearSpline1D(DFTask* task, int64_t order, int64_t kind, int64_t method,
                                        const ThreadingServices* threading);
int32_t orx_df_kernel_sDFLinearSpline1D(DFTask* task, int64_t order, int64_t kind, int64_t method,
                                        const ThreadingServices* threading);

/* Quadratic splines. Kind DEFAULT: once continuously differentiable with knots at the breakpoints; boundary
 * kind QUADRATIC_VALUE. Kind SUBBOTIN: knots between the breakpoints, at intConds or, where intConds is null,
 * in the middle (Y. N. Subbotin, Proc. Steklov Inst. Math. 88, 1967); two-sided boundary kinds; internal kind
 * KNOTS. Errors: FUNC_HINT, METHOD (another kind), INT_COND_KIND, BND_COND_KIND, BND_CONDS, INT_CONDS (the
 * knots do not separate the breakpoints), MEMORY. */
int32_t orx_df_kernel_dDFQuadraticSpline1D(DFTask* task, int64_t order, int64_t kind, int64_t method,
                                           const ThreadingServices* threading);
int32_t orx_df_kernel_sDFQuadraticSpline1D(DFTask* task, int64_t order, int64_t kind, int64_t method,
                                           const ThreadingServices* threading);

/* The cubic spline with two continuous derivatives (C. de Boor, A Practical Guide to Splines, ch. IV), at
 * least 3 breakpoints. Boundary kinds: NOT_A_KNOT (3 breakpoints: the parabola), FREE_END, the two-sided ones,
 * PERIODIC.
 *
 * ON A UNIFORM PARTITION, NOT_A_KNOT IS NOT THE TEXTBOOK'S: its row is 2 d[0] + d[1] = (y[2] - y[0]) / 2h, which does
 * not even reproduce a straight line. Give the breakpoints one by one with another hint, where NOT_A_KNOT is what the
 * name says, or the derivatives at the ends. Errors: METHOD, GRID_SIZE, FUNC_HINT, BND_COND_KIND, BND_CONDS, MEMORY,
 * NOT_PERIODIC, SINGULAR. */
int32_t orx_df_kernel_dDFNaturalCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                              const ThreadingServices* threading);
int32_t orx_df_kernel_sDFNaturalCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                              const ThreadingServices* threading);

/* The cubic with given second derivatives at the inner breakpoints (intConds, nx-2 values per task, shared by
 * its functions), at least 3 breakpoints. Boundary kinds as for the natural spline; for PERIODIC, bndConds[0]
 * is the second derivative at both ends. With 3 breakpoints NOT_A_KNOT at both ends leaves one coefficient
 * open; c[3] is 0 then. Errors: GRID_SIZE, FUNC_HINT, BND_COND_KIND, BND_CONDS, MEMORY, NOT_PERIODIC. */
int32_t orx_df_kernel_dDFDefaultCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                              const ThreadingServices* threading);
int32_t orx_df_kernel_sDFDefaultCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                              const ThreadingServices* threading);

/* The cubic with given first derivatives at the inner breakpoints (intConds, nx-2 values, shared by the
 * functions), at least 3 breakpoints. Boundary kinds as for the natural spline, the rule applied to the
 * nearest cells; for PERIODIC, bndConds[0] is the first derivative at both ends. Errors: GRID_SIZE,
 * FUNC_HINT, BND_COND_KIND, BND_CONDS, MEMORY, NOT_PERIODIC. */
int32_t orx_df_kernel_dDFHermiteCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                              const ThreadingServices* threading);
int32_t orx_df_kernel_sDFHermiteCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                              const ThreadingServices* threading);

/* The cubic whose derivative at a breakpoint is that of the parabola through it and its neighbours; at least
 * 3 breakpoints. Boundary kinds and errors as for the Hermite spline. */
int32_t orx_df_kernel_dDFBesselCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                             const ThreadingServices* threading);
int32_t orx_df_kernel_sDFBesselCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                             const ThreadingServices* threading);

/* H. Akima's cubic (J. ACM 17, 1970), at least 5 breakpoints; where the neighbouring slopes agree to 1e-10,
 * an absolute bound, the derivative is their mean: scale data whose slopes are that small, by a power of two for
 * the same bits. Boundary kinds and errors as for the Hermite spline, and besides kind 0, no
 * condition: the derivative at the left end is then what stands in c[1] of the first cell, that at the right
 * end the one of the breakpoint before it. */
int32_t orx_df_kernel_dDFAkimaCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                            const ThreadingServices* threading);
int32_t orx_df_kernel_sDFAkimaCubicSpline1D(DFTask* task, int64_t type, int64_t method,
                                            const ThreadingServices* threading);

/* Slopes for the Hermite builder that keep the shape of the data: between two breakpoints the cubic rises or falls as
 * the data do, without overshoot. They are handed over as intConds = slopes + 1 (FIRST_DERIVATIVES) and bndConds =
 * {slopes[0], slopes[nx-1]} (FIRST_LEFT + FIRST_RIGHT). */
enum {
  ORX_DF_PCHIP = 0,   /* F. N. Fritsch and J. Butland, SIAM J. Sci. Stat. Comput. 5, 1984 */
  ORX_DF_STEFFEN = 1, /* M. Steffen, Astron. Astrophys. 239, 1990; an end takes the slope of its cell */
  ORX_DF_HYMAN = 2 /* J. M. Hyman, SIAM J. Sci. Stat. Comput. 4, 1983: cuts down the slopes that are there */
};

/* Writes the derivatives at all nx breakpoints, 2 to 2^31 - 1, given one by one; HYMAN also reads them, from a
 * natural spline for instance. Errors: GRID_SIZE, GRID, FUNCS or INT_CONDS (null), METHOD (unknown rule). */
int32_t orx_df_kernel_dShapeSlopes1D(int64_t nx, const double* x, const double* y, int64_t rule,
                                     double* slopes);
int32_t orx_df_kernel_sShapeSlopes1D(int64_t nx, const float* x, const float* y, int64_t rule, float* slopes);

/* The antiderivative of one function's spline that is 0 at the first breakpoint, as coefficients of one order more:
 * (splineOrder + 1) (nx - 1) numbers, for a task over the same breakpoints with that order. Integrals are then
 * differences of its values. Errors: TASK, SPLINE_KIND (steps, look-up, Subbotin), INDEX, COEFFS, MEMORY. */
int32_t orx_df_kernel_dAntiderivative1D(const DFTask* task, int64_t function, double* coeffs);
int32_t orx_df_kernel_sAntiderivative1D(const DFTask* task, int64_t function, float* coeffs);

/* Where derivative number `derivative` (0: the spline itself) of a spline of order 2 to 4 takes the value `level`, between
 * `from` and `to`, within the partition: ascending, each once. Derivative 1 with level 0 gives the sites of the
 * extrema (and where the slope is 0 without a turn). A derivative that jumps over the level at a breakpoint takes it
 * there; a cell that is the level throughout gives its two ends; where the spline touches the level to rounding
 * that is one site. *count is how many there are, the first `room` of which are written: a call with room 0
 * counts. Sites are found by the turns of the cell's polynomial, and between them by Newton's steps, in double
 * precision. Errors: TASK, SPLINE_KIND (another order, Subbotin), INDEX, METHOD (no such derivative),
 * INTERPOLATION (null count, or sites with room), COEFFS. */
int32_t orx_df_kernel_dRoots1D(const DFTask* task, int64_t function, int64_t derivative, double level,
                               double from, double to, int64_t room, double* sites, int64_t* count);
int32_t orx_df_kernel_sRoots1D(const DFTask* task, int64_t function, int64_t derivative, float level,
                               float from, float to, int64_t room, float* sites, int64_t* count);

/* ---- Cell search ----
 *
 * The cell of a site is the number of breakpoints at or below it: 0 left of the partition, nx from the last
 * breakpoint on. No result is defined for a site that is not a number.
 *
 * dataHint: null, or 5 numbers, of which [1] is 0 (nothing known) or 1 (most sites lie in one cell) and [4]
 * is that cell, 0 to nx. */

/* A caller's own search: fills cells[0 .. *count-1], and sets flags[i] to non-zero where cells[i] is final;
 * the others are guesses, which the library corrects. A negative return ends the call with that status; 1000
 * says that all cells are final. */
typedef int32_t (*orx_df_dsearch_cb)(const int64_t* count, const double* sites, int64_t* cells,
                                     int32_t* flags, void* params);
typedef int32_t (*orx_df_ssearch_cb)(const int64_t* count, const float* sites, int64_t* cells, int32_t* flags,
                                     void* params);

/* Writes the cells of siteCount sites, as 32-bit or 64-bit integers by the task's ilp64Flag. `method` is not
 * read: the method follows from the partition, siteHint (SORTED_SITES, UNIFORM_SITES or anything else for
 * unknown) and dataHint. search may be null. Returns what the last call of `search` returned where there is
 * one.
 *
 * More than 4096 uniform sites take scratch.
 * Errors: DATA_HINT, MEMORY, a negative status of `search`. */
int32_t orx_df_kernel_dDFSearch1D(DFTask* task, int64_t method, int64_t siteCount, const double* sites,
                                  int64_t siteHint, const double* dataHint, void* cells,
                                  orx_df_dsearch_cb search, void* searchParams,
                                  const ThreadingServices* threading);
int32_t orx_df_kernel_sDFSearch1D(DFTask* task, int64_t method, int64_t siteCount, const float* sites,
                                  int64_t siteHint, const float* dataHint, void* cells,
                                  orx_df_ssearch_cb search, void* searchParams,
                                  const ThreadingServices* threading);

/* The search of one block of sites by a given method, all with the same arguments so that they fit in one
 * table.
 *
 * start: in and out, the cell where the scan of the sorted search begins. value: by method the reciprocal
 * step of the partition, (nx-1) / (last - first); the most likely cell; or the reciprocal width of the bins
 * of cellTable. unused: not read. flags: 0, cells receives 32-bit integers for inner use; 2, the same for the
 * caller; 3, 64-bit integers. The last three are read by the two user-defined searches alone; siteFlags is
 * room for one integer per site. The return value is 0 or the status of `search`. */
#define ORX_DF_BLOCK_SEARCH(t, real, Method)                                                              \
  int32_t orx_df_kernel_##t##DF##Method##Search1D(                                                        \
      int32_t nx, const real* grid, int32_t siteCount, const real* sites, int32_t* start, real value,     \
      int32_t unused, const int32_t* cellTable, void* cells, int32_t flags, orx_df_##t##search_cb search, \
      void* searchParams, int32_t* siteFlags);
#define ORX_DF_BLOCK_SEARCHES(t, real)       \
  ORX_DF_BLOCK_SEARCH(t, real, Uniform)      \
  ORX_DF_BLOCK_SEARCH(t, real, QuasiUniform) \
  ORX_DF_BLOCK_SEARCH(t, real, Sorted)       \
  ORX_DF_BLOCK_SEARCH(t, real, Peak)         \
  ORX_DF_BLOCK_SEARCH(t, real, Hybrid)       \
  ORX_DF_BLOCK_SEARCH(t, real, UserDef)      \
  ORX_DF_BLOCK_SEARCH(t, real, UniUserDef)
ORX_DF_BLOCK_SEARCHES(d, double)
ORX_DF_BLOCK_SEARCHES(s, float)
#undef ORX_DF_BLOCK_SEARCHES
#undef ORX_DF_BLOCK_SEARCH

/* ---- Interpolation ---- */

/* Bits of an interpolation's type. */
enum { ORX_DF_VALUES = 1, ORX_DF_CELLS = 2 };

/* A caller's own function for sites left of the partition (cell 0), right of it (cell nx) or inside. `result`
 * has room for *count sites of one function, laid out by the call's result hint as a call for these sites
 * alone would be; the call-back is run once per function. It may run on any worker thread. A negative return
 * ends the call. */
typedef int32_t (*orx_df_dinterp_cb)(const int64_t* count, const int64_t* cells, const double* sites,
                                     double* result, void* params);
typedef int32_t (*orx_df_sinterp_cb)(const int64_t* count, const int64_t* cells, const float* sites,
                                     float* result, void* params);

/* Call-backs that are ready, for `left` and `right`: not-a-number for each result (params: null for one wanted order,
 * else the count of wanted orders, an int64_t), or the status ORX_DF_ERROR_OUTSIDE, which ends the call. A site at
 * the last breakpoint belongs to the right part. */
int32_t orx_df_kernel_dNanOutside(const int64_t* count, const int64_t* cells, const double* sites,
                                  double* result, void* params);
int32_t orx_df_kernel_sNanOutside(const int64_t* count, const int64_t* cells, const float* sites,
                                  float* result, void* params);
int32_t orx_df_kernel_dErrorOutside(const int64_t* count, const int64_t* cells, const double* sites,
                                    double* result, void* params);
int32_t orx_df_kernel_sErrorOutside(const int64_t* count, const int64_t* cells, const float* sites,
                                    float* result, void* params);

/* Values and derivatives of all functions at siteCount sites (ORX_DF_VALUES), and their cells (ORX_DF_CELLS).
 *
 * orders: orderCount integers of the width of the task's ilp64Flag; where element k is 1 the k-th derivative
 * is wanted, 0 being the function. Nothing wanted means the function. With D the number of wanted orders and
 * n sites, order number d of function f at site i stands in result[(f D + d) n + i]  for resultHint 0 or
 * ORX_DF_COLUMNS, result[(f n + i) D + d]  for ORX_DF_ROWS or ORX_DF_FIRST_ONLY. A site outside the partition
 * takes the polynomial of the nearest cell unless there is a call-back for it. Derivatives past the degree
 * are 0. Steps have derivative 0 everywhere. A look-up interpolant is defined at its breakpoints only: on a
 * uniform partition within 2^-40 of one, an absolute distance (scale breakpoints that lie closer together than some
 * 2^-38), else exactly there.
 *
 * One site with nothing but values of at most one function of order 2, 3 or 4 takes a short path that checks
 * no result hint and returns what its call-back returned. Errors: SPLINE_KIND (also: order 0 of another kind,
 * and not all of left, right and inside are given), DATA_HINT, INTERPOLATION (unknown result hint), COEFFS,
 * LOOKUP_VALUES, LOOKUP_DERIVATIVE, MEMORY, LOOKUP_SITE, a call-back's negative status. */
int32_t orx_df_kernel_dDFInterpolate1D(DFTask* task, int64_t type, int64_t method, int64_t siteCount,
                                       const double* sites, int64_t siteHint, int64_t orderCount,
                                       const void* orders, const double* dataHint, double* result,
                                       int64_t resultHint, orx_df_dinterp_cb left, void* leftParams,
                                       orx_df_dinterp_cb right, void* rightParams, orx_df_dinterp_cb inside,
                                       void* insideParams, orx_df_dsearch_cb search, void* searchParams,
                                       void* cells, const ThreadingServices* threading);
int32_t orx_df_kernel_sDFInterpolate1D(DFTask* task, int64_t type, int64_t method, int64_t siteCount,
                                       const float* sites, int64_t siteHint, int64_t orderCount,
                                       const void* orders, const float* dataHint, float* result,
                                       int64_t resultHint, orx_df_sinterp_cb left, void* leftParams,
                                       orx_df_sinterp_cb right, void* rightParams, orx_df_sinterp_cb inside,
                                       void* insideParams, orx_df_ssearch_cb search, void* searchParams,
                                       void* cells, const ThreadingServices* threading);

/* ---- Integration ---- */

/* A caller's own integral of one function from *lower to *upper, whose cells are *lowerCell and *upperCell;
 * *count is 1. Run once per pair of limits and function. A negative return ends the call. */
typedef int32_t (*orx_df_dintegr_cb)(const int64_t* count, const int64_t* lowerCell, const double* lower,
                                     const int64_t* upperCell, const double* upper, double* result,
                                     void* params);
typedef int32_t (*orx_df_sintegr_cb)(const int64_t* count, const int64_t* lowerCell, const float* lower,
                                     const int64_t* upperCell, const float* upper, float* result,
                                     void* params);

/* The integrals of all functions from lower[j] to upper[j], limitCount pairs; a pair with lower above upper
 * gives the negative integral. Function f of pair j stands in result[f limitCount + j] for all of the result
 * hints 0, ORX_DF_ROWS, ORX_DF_COLUMNS, ORX_DF_FIRST_ONLY. Hints and data hints of the limits as for sites of
 * a search, but for UNIFORM_SITES. The parts of an interval left and right of the partition take the
 * outermost polynomials unless there are call-backs; so does the part inside. Errors: SPLINE_KIND (also: a
 * look-up interpolant; order 0 of another kind, and not all call-backs are given), DATA_HINT, RESULT_HINT,
 * FUNCS, COEFFS, a call-back's negative status. */
int32_t orx_df_kernel_dDFIntegrate1D(DFTask* task, int64_t method, int64_t limitCount, const double* lower,
                                     int64_t lowerHint, const double* upper, int64_t upperHint,
                                     const double* lowerDataHint, const double* upperDataHint, double* result,
                                     int64_t resultHint, orx_df_dintegr_cb left, void* leftParams,
                                     orx_df_dintegr_cb right, void* rightParams, orx_df_dintegr_cb inside,
                                     void* insideParams, orx_df_dsearch_cb search, void* searchParams,
                                     const ThreadingServices* threading);
int32_t orx_df_kernel_sDFIntegrate1D(DFTask* task, int64_t method, int64_t limitCount, const float* lower,
                                     int64_t lowerHint, const float* upper, int64_t upperHint,
                                     const float* lowerDataHint, const float* upperDataHint, float* result,
                                     int64_t resultHint, orx_df_sintegr_cb left, void* leftParams,
                                     orx_df_sintegr_cb right, void* rightParams, orx_df_sintegr_cb inside,
                                     void* insideParams, orx_df_ssearch_cb search, void* searchParams,
                                     const ThreadingServices* threading);

#ifdef __cplusplus
}
#endif

#endif
