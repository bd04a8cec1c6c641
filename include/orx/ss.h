/* Summary statistics.
 *
 * A task says where a data set is and where the estimates shall go. It holds pointers into the caller's
 * memory and, but for the summary of streaming quantiles, nothing of its own; so counts, data and results may
 * be changed between calls without an edit. The compute functions do the work:
 *
 *   SSTask* task;
 *   int p = 3, n = 1000, storage = KOB_SS_ROWS;
 *   __kobdSSNewTask(&task, &p, &n, &storage, x, 0, 0, 0);
 *   __kobdSSEditTask(task, KOB_SS_ID_MEAN, mean);
 *   _kobdSSBasic(task, KOB_SS_MEAN, KOB_SS_FAST, orx_serv_threading());
 *   __kobSSDeleteTask(&task);
 *
 * Names with `d` take data in double, names with `s` in single precision. All functions return 0 or one of
 * the negative codes below. Integers that a task points at are 32 bits wide, or 64 when it was made with a
 * non-zero last argument. A task may be used from one thread at a time. docs/statistics.md gives the
 * formulas; orx/status.h turns statuses into words. */
#ifndef ORX_SS_H
#define ORX_SS_H

#include "orx/serv.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct SSTask SSTask;

/* Storage of the observations of p variables: in rows x(j, i) is x[j*n + i], in columns x[i*p + j]. */
#define KOB_SS_ROWS 0x10000
#define KOB_SS_COLUMNS 0x20000

/* Storage of a symmetric matrix: whole; lower or upper triangle packed row by row. */
#define KOB_SS_FULL 0
#define KOB_SS_LOWER_PACKED 1
#define KOB_SS_UPPER_PACKED 2

/* Estimates, the second argument of a compute function; they may be or-ed. */
#define KOB_SS_MEAN 0x1
#define KOB_SS_RAW_MOMENT_2 0x2
#define KOB_SS_RAW_MOMENT_3 0x4
#define KOB_SS_RAW_MOMENT_4 0x8
#define KOB_SS_CENTRAL_MOMENT_2 0x10
#define KOB_SS_CENTRAL_MOMENT_3 0x20
#define KOB_SS_CENTRAL_MOMENT_4 0x40
#define KOB_SS_KURTOSIS 0x80
#define KOB_SS_SKEWNESS 0x100
#define KOB_SS_VARIATION 0x200
#define KOB_SS_MINIMUM 0x400
#define KOB_SS_MAXIMUM 0x800
#define KOB_SS_COVARIANCE 0x1000
#define KOB_SS_CORRELATION 0x2000
#define KOB_SS_POOLED_COVARIANCE 0x4000
#define KOB_SS_GROUP_COVARIANCE 0x8000
#define KOB_SS_QUANTILES 0x10000
#define KOB_SS_ORDER_STATISTICS 0x20000
#define KOB_SS_PARTIAL_COVARIANCE 0x100000
#define KOB_SS_PARTIAL_CORRELATION 0x200000
#define KOB_SS_MAHALANOBIS_DISTANCE 0x4000000

/* Methods, the third argument of a compute function. */
#define KOB_SS_FAST 0x1
#define KOB_SS_ONE_PASS 0x2
#define KOB_SS_SPECTRAL_DECOMPOSITION 0x4
#define KOB_SS_TBS 0x8
#define KOB_SS_MULTIPLE_IMPUTATION 0x10
#define KOB_SS_BACON 0x20
#define KOB_SS_STREAM_QUANTILES 0x40
#define KOB_SS_STREAM_UPDATE 0x80
#define KOB_SS_USER_MEAN 0x100
#define KOB_SS_RESTORED_PRIOR 0x200 /* or-ed to KOB_SS_MULTIPLE_IMPUTATION */

/* Parameter numbers of the generic editors. Integers go through __kobiSSEditTask. */
enum {
  KOB_SS_ID_DIMENSION = 1,
  KOB_SS_ID_OBSERVATION_COUNT = 2,
  KOB_SS_ID_OBSERVATIONS = 3,
  KOB_SS_ID_OBSERVATION_STORAGE = 4,
  KOB_SS_ID_INDICES = 5,
  KOB_SS_ID_WEIGHTS = 6,
  KOB_SS_ID_MEAN = 7,
  KOB_SS_ID_RAW_MOMENT_2 = 8,
  KOB_SS_ID_RAW_MOMENT_3 = 9,
  KOB_SS_ID_RAW_MOMENT_4 = 10,
  KOB_SS_ID_CENTRAL_MOMENT_2 = 11,
  KOB_SS_ID_CENTRAL_MOMENT_3 = 12,
  KOB_SS_ID_CENTRAL_MOMENT_4 = 13,
  KOB_SS_ID_KURTOSIS = 14,
  KOB_SS_ID_SKEWNESS = 15,
  KOB_SS_ID_MINIMUM = 16,
  KOB_SS_ID_MAXIMUM = 17,
  KOB_SS_ID_VARIATION = 18,
  KOB_SS_ID_COVARIANCE = 19,
  KOB_SS_ID_COVARIANCE_STORAGE = 20,
  KOB_SS_ID_CORRELATION = 21,
  KOB_SS_ID_CORRELATION_STORAGE = 22,
  KOB_SS_ID_ACCUMULATED_WEIGHTS = 23,
  KOB_SS_ID_QUANTILE_ORDER_COUNT = 24,
  KOB_SS_ID_QUANTILE_ORDERS = 25,
  KOB_SS_ID_QUANTILES = 26,
  KOB_SS_ID_ORDER_STATISTICS = 27,
  KOB_SS_ID_GROUP_INDICES = 28,
  KOB_SS_ID_POOLED_COVARIANCE_STORAGE = 29,
  KOB_SS_ID_POOLED_MEAN = 30,
  KOB_SS_ID_POOLED_COVARIANCE = 31,
  KOB_SS_ID_REQUESTED_GROUPS = 32,
  KOB_SS_ID_GROUP_MEAN = 33,
  KOB_SS_ID_GROUP_COVARIANCE_STORAGE = 34,
  KOB_SS_ID_GROUP_COVARIANCE = 35,
  KOB_SS_ID_ROBUST_COVARIANCE_STORAGE = 36,
  KOB_SS_ID_ROBUST_PARAMETER_COUNT = 37,
  KOB_SS_ID_ROBUST_PARAMETERS = 38,
  KOB_SS_ID_ROBUST_MEAN = 39,
  KOB_SS_ID_ROBUST_COVARIANCE = 40,
  KOB_SS_ID_OUTLIER_PARAMETER_COUNT = 41,
  KOB_SS_ID_OUTLIER_PARAMETERS = 42,
  KOB_SS_ID_OUTLIER_WEIGHTS = 43,
  KOB_SS_ID_ORDER_STATISTICS_STORAGE = 44,
  KOB_SS_ID_PARTIAL_INDICES = 45,
  KOB_SS_ID_PARTIAL_COVARIANCE = 46,
  KOB_SS_ID_PARTIAL_COVARIANCE_STORAGE = 47,
  KOB_SS_ID_PARTIAL_CORRELATION = 48,
  KOB_SS_ID_PARTIAL_CORRELATION_STORAGE = 49,
  KOB_SS_ID_IMPUTATION_PARAMETER_COUNT = 50,
  KOB_SS_ID_IMPUTATION_PARAMETERS = 51,
  KOB_SS_ID_IMPUTATION_START_COUNT = 52,
  KOB_SS_ID_IMPUTATION_START = 53,
  KOB_SS_ID_IMPUTED_VALUE_COUNT = 54,
  KOB_SS_ID_IMPUTED_VALUES = 55,
  KOB_SS_ID_IMPUTATION_ESTIMATE_COUNT = 56,
  KOB_SS_ID_IMPUTATION_ESTIMATES = 57,
  KOB_SS_ID_IMPUTATION_PRIOR_COUNT = 58,
  KOB_SS_ID_IMPUTATION_PRIOR = 59,
  KOB_SS_ID_PARAMETRIZED_CORRELATION = 60,
  KOB_SS_ID_PARAMETRIZED_CORRELATION_STORAGE = 61,
  KOB_SS_ID_STREAM_PARAMETER_COUNT = 62,
  KOB_SS_ID_STREAM_PARAMETERS = 63,
  KOB_SS_ID_STREAM_ORDER_COUNT = 64,
  KOB_SS_ID_STREAM_ORDERS = 65,
  KOB_SS_ID_STREAM_QUANTILES = 66
};

/* Status codes. An array code is given when the array is absent though the request needs it, and by the
 * generic editors for a null pointer. */
enum {
  KOB_SS_OK = 0,
  KOB_SS_ERROR_BAD_ID = -3, /* no such parameter, or it belongs to the other generic editor */
  KOB_SS_ERROR_MEMORY = -4000,
  KOB_SS_ERROR_DIMENSION = -4001,         /* absent, not positive, or 2^31 and more */
  KOB_SS_ERROR_OBSERVATION_COUNT = -4002, /* absent, negative, too small for the method, or 2^31 and more */
  KOB_SS_ERROR_STORAGE = -4003,           /* not one of the storage values above */
  KOB_SS_ERROR_INDICES = -4004, /* absent; or a stream variable is asked for that the first call left out */
  KOB_SS_ERROR_WEIGHTS = -4005,
  KOB_SS_ERROR_MEAN = -4006,
  KOB_SS_ERROR_RAW_MOMENT_2 = -4007,
  KOB_SS_ERROR_RAW_MOMENT_3 = -4008,
  KOB_SS_ERROR_RAW_MOMENT_4 = -4009,
  KOB_SS_ERROR_CENTRAL_MOMENT_2 = -4010,
  KOB_SS_ERROR_CENTRAL_MOMENT_3 = -4011,
  KOB_SS_ERROR_CENTRAL_MOMENT_4 = -4012,
  KOB_SS_ERROR_KURTOSIS = -4013,
  KOB_SS_ERROR_SKEWNESS = -4014,
  KOB_SS_ERROR_MINIMUM = -4015,
  KOB_SS_ERROR_MAXIMUM = -4016,
  KOB_SS_ERROR_VARIATION = -4017,
  KOB_SS_ERROR_COVARIANCE = -4018,
  KOB_SS_ERROR_CORRELATION = -4019,
  KOB_SS_ERROR_ACCUMULATED_WEIGHTS = -4020, /* absent */
  KOB_SS_ERROR_QUANTILE_ORDERS = -4021,
  KOB_SS_ERROR_QUANTILE_ORDER_COUNT = -4022, /* absent or bad, or an order outside 0 to 1 */
  KOB_SS_ERROR_QUANTILES = -4023,
  KOB_SS_ERROR_ORDER_STATISTICS = -4024,
  KOB_SS_ERROR_NO_SUBSET = -4026, /* a robust or outlier method found no acceptable subset */
  KOB_SS_ERROR_ROBUST_COVARIANCE = -4027,
  KOB_SS_ERROR_ROBUST_MEAN = -4028,
  KOB_SS_ERROR_METHOD = -4029,        /* the method is none of this function's, or not exactly one of them */
  KOB_SS_ERROR_GROUPS_ABSENT = -4030, /* group indices, or the requested groups */
  KOB_SS_ERROR_TASK = -4031,          /* null task or handle, or a task of the other precision */
  KOB_SS_ERROR_OBSERVATIONS = -4032,  /* absent, or too few for a robust covariance */
  KOB_SS_ERROR_NOT_POSITIVE_DEFINITE = -4033,
  KOB_SS_ERROR_POOLED_COVARIANCE = -4034,
  KOB_SS_ERROR_POOLED_MEAN = -4035,
  KOB_SS_ERROR_GROUP_COVARIANCE = -4036,
  KOB_SS_ERROR_GROUP_MEAN = -4037,
  KOB_SS_ERROR_GROUP_VALUE = -4038, /* a group index below 0 or of 2^31 - 1, a request but 0 or 1 */
  KOB_SS_ERROR_OUTLIER_PARAMETERS = -4039,
  KOB_SS_ERROR_OUTLIER_PARAMETER_COUNT = -4040,
  KOB_SS_ERROR_OUTLIER_WEIGHTS = -4041,
  KOB_SS_ERROR_ROBUST_PARAMETERS = -4042,
  KOB_SS_ERROR_ROBUST_PARAMETER_COUNT = -4043,
  KOB_SS_ERROR_STORAGE_ABSENT = -4044,
  KOB_SS_ERROR_PARTIAL_INDICES = -4045,
  KOB_SS_ERROR_PARTIAL_COVARIANCE = -4046,
  KOB_SS_ERROR_PARTIAL_CORRELATION = -4047,
  KOB_SS_ERROR_IMPUTATION_PARAMETERS = -4048,
  KOB_SS_ERROR_IMPUTATION_PARAMETER_COUNT = -4049,
  KOB_SS_ERROR_IMPUTATION_PARAMETER_COUNT_VALUE = -4050,
  KOB_SS_ERROR_IMPUTATION_COUNTS = -4051, /* fewer than one imputation or missing value */
  KOB_SS_ERROR_IMPUTATION_START_COUNT = -4052,
  KOB_SS_ERROR_IMPUTATION_START = -4053,
  KOB_SS_ERROR_IMPUTED_VALUES = -4054,      /* the count is given without the array */
  KOB_SS_ERROR_IMPUTED_VALUE_COUNT = -4055, /* the array is given without the count */
  KOB_SS_ERROR_IMPUTATION_ESTIMATE_COUNT = -4056,
  KOB_SS_ERROR_IMPUTATION_ESTIMATES = -4057,
  KOB_SS_ERROR_IMPUTED_VALUE_COUNT_VALUE = -4058,
  KOB_SS_ERROR_IMPUTATION_ESTIMATE_COUNT_VALUE = -4059,
  KOB_SS_ERROR_IMPUTATION_NO_RESULT = -4060,
  KOB_SS_ERROR_IMPUTATION_PRIOR_COUNT = -4061,
  KOB_SS_ERROR_IMPUTATION_PRIOR = -4062,
  KOB_SS_ERROR_MISSING_VALUE_COUNT = -4063,
  KOB_SS_ERROR_STREAM_PARAMETER_COUNT = -4064,
  KOB_SS_ERROR_STREAM_PARAMETERS = -4065,
  KOB_SS_ERROR_STREAM_PARAMETER_COUNT_VALUE = -4066,
  KOB_SS_ERROR_STREAM_EPS = -4067, /* not above 0 and at most 1 */
  KOB_SS_ERROR_STREAM_ORDERS = -4068,
  KOB_SS_ERROR_STREAM_ORDER_COUNT = -4069, /* absent or bad, or an order outside 0 to 1 */
  KOB_SS_ERROR_STREAM_QUANTILES = -4070,
  KOB_SS_ERROR_PARAMETRIZED_CORRELATION = -4071,
  KOB_SS_ERROR_EIGENVALUES = -4072,
  KOB_SS_ERROR_PARTIAL_ROLES = -4073, /* no variable of one of the two roles */
  KOB_SS_ERROR_STREAM_IMAGE = -4074,  /* null, cut short, damaged, or of the other precision */
  KOB_SS_ERROR_MAHALANOBIS = -4075, /* centre, inverse or distances absent, or a bad range of observations */
  KOB_SS_ERROR_ROBUST_EIGEN = -5000,
  KOB_SS_ERROR_PARTIAL_FACTOR = -5010, /* the covariance of the conditioning variables does not factor */
  KOB_SS_ERROR_PARTIAL_INVERSE = -5011,
  KOB_SS_ERROR_I_STEP_FACTOR = -5021,
  KOB_SS_ERROR_I_STEP_GENERATOR = -5022,
  KOB_SS_ERROR_P_STEP_GENERATOR = -5023,
  KOB_SS_ERROR_P_STEP_FACTOR = -5024,
  KOB_SS_ERROR_P_STEP_INVERSE = -5025,
  KOB_SS_ERROR_PARAMETRIZATION_EIGEN = -5030,
  KOB_SS_ERROR_RANK_EIGEN = -5040,
  KOB_SS_ERROR_INVERSE_FACTOR = -5041,
  KOB_SS_ERROR_INVERSE = -5042
};

/* ---- tasks ---- */

/* Makes a task for p variables. `weights` and `indices` may be null: all weights 1, all variables wanted. `x`
 * may be null too; then n and xStorage are not looked at and are to be edited in, as is x, before a
 * computation. indices[j] of 0 leaves the estimates of variable j unwritten. */
int __kobdSSNewTask(SSTask** task, const void* p, const void* n, const void* xStorage, const double* x,
                    const double* weights, const void* indices, int ilp64Flag);
int __kobsSSNewTask(SSTask** task, const void* p, const void* n, const void* xStorage, const float* x,
                    const float* weights, const void* indices, int ilp64Flag);

/* Releases the task and the summary that it may own, and puts null in *task. */
int __kobSSDeleteTask(SSTask** task);

/* Sets one parameter, by its number. A null pointer is refused and changes nothing. */
int __kobdSSEditTask(SSTask* task, long long id, const double* array);
int __kobsSSEditTask(SSTask* task, long long id, const float* array);
int __kobiSSEditTask(SSTask* task, long long id, const void* integers);

/* Takes a parameter out again, so that it is as in a task that never had it: with KOB_SS_ID_WEIGHTS all weights are 1,
 * with KOB_SS_ID_INDICES all variables are wanted. KOB_SS_ERROR_BAD_ID for an unknown number. */
int __kobSSUnset(SSTask* task, long long id);

/* Set several parameters at once; an argument that is null leaves its parameter as it was.
 * EditPooledCovariance sets no storage: those go through the generic editor. */
int __kobdSSEditMoments(SSTask* task, double* mean, double* rawMoment2, double* rawMoment3,
                        double* rawMoment4, double* centralMoment2, double* centralMoment3,
                        double* centralMoment4);
int __kobsSSEditMoments(SSTask* task, float* mean, float* rawMoment2, float* rawMoment3, float* rawMoment4,
                        float* centralMoment2, float* centralMoment3, float* centralMoment4);
int __kobdSSEditCovCor(SSTask* task, double* mean, double* cov, const void* covStorage, double* cor,
                       const void* corStorage);
int __kobsSSEditCovCor(SSTask* task, float* mean, float* cov, const void* covStorage, float* cor,
                       const void* corStorage);
int __kobdSSEditPartialCovCor(SSTask* task, const void* partialIndices, const double* cov,
                              const void* covStorage, const double* cor, const void* corStorage,
                              double* partialCov, const void* partialCovStorage, double* partialCor,
                              const void* partialCorStorage);
int __kobsSSEditPartialCovCor(SSTask* task, const void* partialIndices, const float* cov,
                              const void* covStorage, const float* cor, const void* corStorage,
                              float* partialCov, const void* partialCovStorage, float* partialCor,
                              const void* partialCorStorage);
int __kobdSSEditPooledCovariance(SSTask* task, const void* groupIndices, double* pooledMean,
                                 double* pooledCov, const void* requestedGroups, double* groupMean,
                                 double* groupCov);
int __kobsSSEditPooledCovariance(SSTask* task, const void* groupIndices, float* pooledMean, float* pooledCov,
                                 const void* requestedGroups, float* groupMean, float* groupCov);
int __kobdSSEditQuantiles(SSTask* task, const void* quantOrderCount, const double* quantOrders,
                          double* quantiles, double* orderStats, const void* orderStatsStorage);
int __kobsSSEditQuantiles(SSTask* task, const void* quantOrderCount, const float* quantOrders,
                          float* quantiles, float* orderStats, const void* orderStatsStorage);
int __kobdSSEditStreamQuantiles(SSTask* task, const void* streamOrderCount, const double* streamOrders,
                                double* streamQuantiles, const void* streamParamCount,
                                const double* streamParams);
int __kobsSSEditStreamQuantiles(SSTask* task, const void* streamOrderCount, const float* streamOrders,
                                float* streamQuantiles, const void* streamParamCount,
                                const float* streamParams);
int __kobdSSEditMissingVals(SSTask* task, const void* miParamCount, const double* miParams,
                            const void* miInitCount, const double* miInit, const void* miPriorCount,
                            const double* miPrior, const void* miSimulCount, double* miSimul,
                            const void* miEstimateCount, double* miEstimates);
int __kobsSSEditMissingVals(SSTask* task, const void* miParamCount, const float* miParams,
                            const void* miInitCount, const float* miInit, const void* miPriorCount,
                            const float* miPrior, const void* miSimulCount, float* miSimul,
                            const void* miEstimateCount, float* miEstimates);
int __kobdSSEditOutDetect(SSTask* task, const void* outlierParamCount, const double* outlierParams,
                          double* outlierWeights);
int __kobsSSEditOutDetect(SSTask* task, const void* outlierParamCount, const float* outlierParams,
                          float* outlierWeights);
int __kobdSSEditRCov(SSTask* task, const void* robustCovStorage, const void* robustParamCount,
                     const double* robustParams, double* robustMean, double* robustCov);
int __kobsSSEditRCov(SSTask* task, const void* robustCovStorage, const void* robustParamCount,
                     const float* robustParams, float* robustMean, float* robustCov);
int __kobdSSEditMtxParametrz(SSTask* task, const double* cor, const void* corStorage, double* paramCor,
                             const void* paramCorStorage);
int __kobsSSEditMtxParametrz(SSTask* task, const float* cor, const void* corStorage, float* paramCor,
                             const void* paramCorStorage);

/* What a Mahalanobis distance is taken from, see _kobdSSMahDistance. */
int __kobdSSEditMahDistance(SSTask* task, const void* first, const void* end, const double* mean,
                            const double* invCov, double* distances, double* work, const void* workSize);
int __kobsSSEditMahDistance(SSTask* task, const void* first, const void* end, const float* mean,
                            const float* invCov, float* distances, float* work, const void* workSize);

/* ---- computations ----
 *
 * All take a task, estimates (or-ed), a method, and a table of threads; nothing is written before all checks
 * are through. An array that holds one value for each variable has p elements. Counts of 2^31 and more are refused
 * as bad ones are. A null table of threads runs everything on the calling thread. */

/* Mean, raw and central moments, kurtosis, skewness, variation, covariance, correlation. Exactly one method:
 * KOB_SS_FAST sums powers about 0; KOB_SS_ONE_PASS sums them about the running mean and merges blocks (Pebay 2008), so
 * that moments are good to a few units in the last place however large the mean is beside the deviation;
 * KOB_SS_USER_MEAN sums powers about the mean that the caller has put in the array of means.
 *
 * Derived estimates want the arrays of those that they are made from: central 2 wants mean and raw 2; central
 * 3 raw 3 too; central 4 raw 4 too; kurtosis all of those of central 4 and central 2; skewness those of
 * central 3 and central 2; variation those of central 2; covariance and correlation the mean. Central 2 and
 * covariance are unbiased; the other central moments are divided by the sum of weights. A correlation has the
 * variances on its diagonal.
 *
 * Where the task has accumulated weights [W, W2], a call with W above 0 continues: data are folded into the
 * results that the arrays hold, and W and W2 go on. Set both to 0 to begin. They have the precision of the data: in
 * single precision W stalls at 2^24 when single observations are added to it; give blocks, or scale the weights down.
 * Results are written at the end; a call that fails has changed nothing.
 *
 * Leading observations of weight 0 are left out, so that their values do not matter. Weights are expected not to be
 * negative: a negative one enters the formulas of every method as it is, and where the sum of weights is not above 0
 * the results mean nothing. */
int _kobdSSBasic(SSTask* task, long long estimates, long long method, const ThreadingServices* threading);
int _kobsSSBasic(SSTask* task, long long estimates, long long method, const ThreadingServices* threading);

/* The common case without a task: mean, unbiased variance, skewness, kurtosis, minimum and maximum of p variables, by
 * one pass. `weights` and any of the results may be null. Statuses are those of a task that was made and computed with
 * the same arguments; KOB_SS_ERROR_OBSERVATIONS for null data. */
int __kobdSSDescribe(int p, int n, int storage, const double* x, const double* weights, double* mean,
                     double* variance, double* skewness, double* kurtosis, double* minimum, double* maximum,
                     const ThreadingServices* threading);
int __kobsSSDescribe(int p, int n, int storage, const float* x, const float* weights, float* mean,
                     float* variance, float* skewness, float* kurtosis, float* minimum, float* maximum,
                     const ThreadingServices* threading);

/* Quantiles and order statistics, method KOB_SS_FAST. For order q and f = (n-1) q the quantile lies between
 * the order statistics of numbers floor(f) and the next, counted from 0, in proportion to the fractional part
 * of f. Results are rows of one value for each order, a row for each wanted variable, rows close together.
 * Order statistics have the shape of the data, in a storage of their own. Where NaN stands among the data,
 * results are not defined.
 *
 * Work memory is kept to 10 MiB or n elements, whichever is more; if there is none to be had, nothing is
 * computed and 0 returned. */
int _kobdSSQuantiles(SSTask* task, long long estimates, long long method, const ThreadingServices* threading);
int _kobsSSQuantiles(SSTask* task, long long estimates, long long method, const ThreadingServices* threading);

/* Quantiles of data that come in blocks, each call folding the task's present observations into a summary
 * that the task owns. A result is a value among the data whose rank is off by at most eps N + 1, N being the
 * number of values seen; orders 0 and 1 give the least and the greatest of them. Methods: KOB_SS_STREAM_QUANTILES
 * adds the data and writes results, KOB_SS_STREAM_UPDATE only adds. With a count of 0 results are written of what has
 * been seen. `streamParams` holds one number, eps, above 0 and at most 1.
 *
 * The first call fixes eps and the followed variables for the life of the summary. Each variable has a summary of its
 * own: where the dimension is edited in between, those beyond it see nothing and have a smaller N. Results are rows as
 * above, for the followed variables. N may go beyond 2^31. After a failure for lack of memory some variables may have
 * taken data that others have not; the summary is whole and goes on. */
int _kobdSSStreamQuantiles(SSTask* task, long long estimates, long long method,
                           const ThreadingServices* threading);
int _kobsSSStreamQuantiles(SSTask* task, long long estimates, long long method,
                           const ThreadingServices* threading);

/* Releases a task's summary; the next stream call starts afresh. Deleting the task does it too. */
void __kobSQuantilesFreeBuffers(SSTask* task);

/* Folds the results of `other` into those of `task`, as if one task had been given the data of both: moments, covariance
 * and correlation with the method by which both were made (with KOB_SS_USER_MEAN about the same means), minima and
 * maxima. Both tasks are of one precision and dimension, have the arrays that the estimates want, and
 * accumulated weights (KOB_SS_ERROR_ACCUMULATED_WEIGHTS otherwise), which are added. So threads, processes or machines may
 * each take a part of the data. A failure changes nothing. */
int __kobdSSJoinBasic(SSTask* task, const SSTask* other, long long estimates, long long method);
int __kobsSSJoinBasic(SSTask* task, const SSTask* other, long long estimates, long long method);
int __kobdSSJoinMinmax(SSTask* task, const SSTask* other, long long estimates);
int __kobsSSJoinMinmax(SSTask* task, const SSTask* other, long long estimates);

/* Adds what the summary of `other` has seen to that of `task`, all of it or nothing: summaries of parts of the data
 * that threads, processes or machines have made become one. Ranks are off by at most eps times the sum of both
 * numbers of values, plus 1. Both tasks are of one precision and follow the same variables with the same eps:
 * KOB_SS_ERROR_DIMENSION, _INDICES or _STREAM_EPS otherwise. A task that has no summary yet gets a copy. */
int __kobSSJoinStreams(SSTask* task, const SSTask* other);

/* The summary as bytes: their number (0 without a summary, or a negative status), writing them, and taking them into a
 * task of the same precision and dimension in place of the summary that it had. Images may be kept, sent and read by
 * another process; a damaged one is refused with KOB_SS_ERROR_STREAM_IMAGE and leaves the task as it was. */
long long __kobSSGetStreamSize(const SSTask* task);
int __kobSSSaveStream(const SSTask* task, void* image);
int __kobSSLoadStream(SSTask* task, const void* image, long long size);

/* The k-th smallest of n numbers, counted from 0, by quickselect. It is moved to its place, with no larger
 * one before it and no smaller one after it. */
double __kobdQSortSelect(int n, double* array, int k);

/* Sort ascending, in place, n numbers that are `stride` apart, or adjacent. */
void __kobdQSortStep(int n, double* array, int stride);
void __kobdQSort(int n, double* array);

/* Covariance of observations that fall into groups, method KOB_SS_ONE_PASS. KOB_SS_GROUP_COVARIANCE gives the
 * mean and covariance of each requested group, one group after the other; KOB_SS_POOLED_COVARIANCE the pooled
 * mean and covariance, in which the sums of squares about the groups' own means are added and divided by the
 * sum of the groups' degrees of freedom. `groupIndices` holds n group numbers from 0; `requestedGroups` a
 * flag, 0 or 1, for each group up to the largest number. An empty group gives NaN. Nothing is continued from
 * earlier calls. */
int _kobdSSPooledCovariance(SSTask* task, long long estimates, long long method,
                            const ThreadingServices* threading);
int _kobsSSPooledCovariance(SSTask* task, long long estimates, long long method,
                            const ThreadingServices* threading);

/* Covariance and correlation of some variables given others, method KOB_SS_FAST. `partialIndices` is 1 for a
 * variable of the result, -1 for one that is given, anything else for one that is left out. The task's
 * covariance is read, or if it has none its correlation, with the variances on the diagonal as _kobdSSBasic
 * writes them. Results are square in the number of variables with a 1; the diagonal of a partial correlation
 * holds the partial variances. */
int _kobdSSPartialCovariance(SSTask* task, long long estimates, long long method,
                             const ThreadingServices* threading);
int _kobsSSPartialCovariance(SSTask* task, long long estimates, long long method,
                             const ThreadingServices* threading);

/* Running minima and maxima, method KOB_SS_FAST or KOB_SS_ONE_PASS: the arrays are read as well as written,
 * so that data may come in blocks; begin with the first observation, with infinities, or with NaN, which
 * stands for nothing seen. A NaN among the data is passed over; where there is nothing else the minimum is
 * infinity and the maximum -infinity. */
int _kobdSSMinmax(SSTask* task, long long estimates, long long method, const ThreadingServices* threading);
int _kobsSSMinmax(SSTask* task, long long estimates, long long method, const ThreadingServices* threading);

/* Robust mean and covariance, method KOB_SS_TBS: the S-estimate of the translated biweight (Rocke 1996), from an OGK start
 * (Maronna and Zamar 2002). n > 2p observations; `weights` and `indices` are not looked at. `robustParams`, read if
 * `robustParamCount` is 4:
 *   0  breakdown point, above 0, at most 0.5 (n - p)/n, which is also the default;
 *   1  asymptotic rejection probability, in 0 to 1: the part of normal data that gets weight 0 (0.001);
 *   2  accuracy: the weights of two rounds differ by that much in the root of the sum of squares (0.001);
 *   3  limit of rounds (100); 0 gives the OGK start.
 * Values outside these ranges stand for the defaults. Results are written when all has gone well.
 * KOB_SS_ERROR_NO_SUBSET: no observation has a weight above 0, as where all are equal; -5000: a NaN or an infinity
 * among the data; KOB_SS_ERROR_NOT_POSITIVE_DEFINITE, -5041: the
 * covariance is singular and could not be regularised. */
int _kobdSSRobustCovariance(SSTask* task, long long estimates, long long method,
                            const ThreadingServices* threading);
int _kobsSSRobustCovariance(SSTask* task, long long estimates, long long method,
                            const ThreadingServices* threading);

/* Outliers by BACON, method KOB_SS_BACON (Billor, Hadi and Velleman 2000): `outlierWeights`, n numbers, becomes 0 for
 * an outlier, and the weight of the observation, or 1, for others. n >= 5p observations. `outlierParams`, read
 * if `outlierParamCount` is 3:
 *   0  start: 1 by Mahalanobis distances, 2 by distances from the medians (2; also for other values);
 *   1  alpha, the part of normal data beyond the cut before its correction for small samples, in 0 to 1 (0.05);
 *   2  beta: rounds end when the number of good observations changes by less than that part of it (0.005).
 * Where the rounds go in circles the set with the fewest outliers of the circle is taken. KOB_SS_ERROR_NO_SUBSET: no
 * more than 5p observations are good; KOB_SS_ERROR_NOT_POSITIVE_DEFINITE, -5041: the good ones have a singular covariance
 * that could not be regularised, or a NaN among the data. The weights then hold the last round. */
int _kobdSSOutliersDetection(SSTask* task, long long estimates, long long method,
                             const ThreadingServices* threading);
int _kobsSSOutliersDetection(SSTask* task, long long estimates, long long method,
                             const ThreadingServices* threading);

/* Multiple imputation of missing values in normal data, method KOB_SS_MULTIPLE_IMPUTATION (Schafer 1997): EM gives a start,
 * then data augmentation draws the missing values, and mean and covariance, by turns; the values that the last round
 * of an imputation has drawn are its result. Or-ed with KOB_SS_RESTORED_PRIOR, which is recommended, each round
 * draws mean and covariance from the posterior of the prior; without it the prior of a round is the posterior of the
 * round before, so that they vary less and less and intervals become too short (docs/statistics.md).
 *
 * A missing value is a quiet NaN whose sign is set (-NAN in C; high word 0xFFF80000 or more, in single precision
 * 0xFFC00000). Any other NaN is taken as a value and ends in KOB_SS_ERROR_NOT_POSITIVE_DEFINITE.
 *   miParams, 5 numbers: rounds of EM (below 1: 50); rounds for each imputation (below 1: 30); EM stops when no mean
 *     and covariance changes by more (not above 0: 0.001; in the units of the data); number m of imputations; number
 *     of missing values, which must be right.
 *   miInit, p(p+3)/2 numbers: where EM begins: means, then the upper triangle of the covariance by rows. Without, or
 *     where miInitCount is another, 0 and the unit matrix.
 *   miPrior, at least p(p+3)/2 + 2 numbers: prior means; tau >= 0, how many observations they are worth; degrees of freedom,
 *     p at least; inverse scale, upper triangle by rows. Without: tau 0, p degrees of freedom, inverse scale 0.
 *   miSimul, m times the number of missing values: for each imputation the missing values of the first observation that
 *     has some, in the order of the variables, then those of the next.
 *   miEstimates, may be absent; m times rounds times p(p+3)/2: mean and upper triangle of the covariance of each round.
 * The same data give the same results. Everything is computed in double precision, on the calling thread.
 * KOB_SS_ERROR_NOT_POSITIVE_DEFINITE: an observed variable is constant or made of others. -5021: so are missing ones
 * among themselves. -5024: the inverse scale of the prior is not positive semidefinite. After these
 * `miSimul` and `miEstimates` hold what was drawn until then. */
int _kobdSSMissingValues(SSTask* task, long long estimates, long long method,
                         const ThreadingServices* threading);
int _kobsSSMissingValues(SSTask* task, long long estimates, long long method,
                         const ThreadingServices* threading);

/* Mahalanobis distances sqrt((x - mean)' invCov (x - mean)) of the observations from number `first` (0 if absent) up
 * to, not including, `end` (n if absent), written to distances[0] and on. Of invCov, p by p, the upper triangle of columns
 * is read (element (i, j), i <= j, at invCov[j*p + i]), as __kobdInvCov leaves it. The work area may be absent: where
 * workSize is below 8p, or 16p in single precision, memory for as much is allocated. Where invCov is not positive
 * definite a distance may be NaN. Set these arguments with __kobdSSEditMahDistance; KOB_SS_ERROR_MAHALANOBIS tells of what
 * is absent or of a bad range. */
int _kobdSSMahDistance(SSTask* task, long long estimates, long long method,
                       const ThreadingServices* threading);
int _kobsSSMahDistance(SSTask* task, long long estimates, long long method,
                       const ThreadingServices* threading);

/* Repairs a correlation matrix `cor` that is not positive semidefinite, method KOB_SS_SPECTRAL_DECOMPOSITION:
 * eigenvalues below 1e-14 become 1e-14, and rows and columns are scaled so that the diagonal is 1 (Rebonato and Jaeckel
 * 1999). A matrix that needs no repair is returned as it is. The diagonal of `cor` is not read and taken as 1.
 * `paramCor` may be `cor` itself, unless that is packed and the result whole. -5030: the eigenvalues were not found,
 * because of a NaN or an infinity. */
int _kobdSSCorParametrization(SSTask* task, long long estimates, long long method,
                              const ThreadingServices* threading);
int _kobsSSCorParametrization(SSTask* task, long long estimates, long long method,
                              const ThreadingServices* threading);

/* Weighted quantile of order quantOrders[0], one value for each of the p variables into `quantiles` (all of them:
 * `indices` are not looked at). In the order of the values the weights are added up until their sum reaches the
 * order's part of the total S: the value at which it does, or, where that part is met exactly and n is even, the mean of it
 * and of the next value of positive weight; where it is passed, between the last value of positive weight and this
 * one in proportion. With equal weights and order 0.5 it is the median. Without weights all are 1. */
int _kobdSSWMedian(SSTask* task, long long estimates, long long method, const ThreadingServices* threading);
int _kobsSSWMedian(SSTask* task, long long estimates, long long method, const ThreadingServices* threading);

/* The chi-square law with k degrees of freedom: P(X <= x); the density; the x below which there is the probability P,
 * infinity for P = 1, NaN for what is no probability. ln |gamma(x)|, infinite at the poles. Computed in extended
 * precision: of k up to 1000 all are good to 1e-15 relative in both tails, as far as 1 - P can tell the upper one. */
double __kobdChi2CDF(int k, double x);
double __kobdChi2PDF(int k, double x);
double __kobdChi2ICDF(int k, double P);
double __kobdLGamma(double x);

/* Makes a covariance matrix, p by p, fit for inversion. One whose eigenvalues are all above 0 is accepted; otherwise a
 * hundredth of the least positive eigenvalue is added to the diagonal. A single variance of 0 becomes the least
 * number that counts as one. The upper triangle of columns stays, the lower one is destroyed.
 * KOB_SS_ERROR_NOT_POSITIVE_DEFINITE: no eigenvalue is positive, or the matrix holds a NaN or an infinity. */
int __kobdTestCovRank(int p, double* matrix);

/* Scalar helpers: the natural logarithm, at most 0.51 ulp off, -infinity at 0 and NaN below; the square root.
 */
double __kobdLn(double x);
double __kobdSqrt(double x);

#ifdef __cplusplus
}
#endif

#endif
