// The statuses of all functions in words.
#include "orx/base/api.hpp"
#include "orx/df.h"
#include "orx/kob.h"
#include "orx/ss.h"
#include "orx/status.h"

namespace {

struct StatusText {
  int status;
  const char* text;
};

constexpr StatusText kSsTexts[] = {
    {KOB_SS_OK, "success"},
    {KOB_SS_ERROR_BAD_ID, "no such parameter, or it belongs to the other generic editor"},
    {KOB_SS_ERROR_MEMORY, "memory could not be allocated"},
    {KOB_SS_ERROR_DIMENSION, "the dimension is absent, not positive or too large, or two tasks differ in it"},
    {KOB_SS_ERROR_OBSERVATION_COUNT,
     "the number of observations is absent, negative, too small or too large"},
    {KOB_SS_ERROR_STORAGE, "not one of the storages"},
    {KOB_SS_ERROR_INDICES,
     "the indices are absent, or a variable is asked for that the stream does not follow"},
    {KOB_SS_ERROR_WEIGHTS, "the weights are absent"},
    {KOB_SS_ERROR_MEAN, "the array of means is absent"},
    {KOB_SS_ERROR_RAW_MOMENT_2, "the array of second raw moments is absent"},
    {KOB_SS_ERROR_RAW_MOMENT_3, "the array of third raw moments is absent"},
    {KOB_SS_ERROR_RAW_MOMENT_4, "the array of fourth raw moments is absent"},
    {KOB_SS_ERROR_CENTRAL_MOMENT_2, "the array of second central moments is absent"},
    {KOB_SS_ERROR_CENTRAL_MOMENT_3, "the array of third central moments is absent"},
    {KOB_SS_ERROR_CENTRAL_MOMENT_4, "the array of fourth central moments is absent"},
    {KOB_SS_ERROR_KURTOSIS, "the array of kurtoses is absent"},
    {KOB_SS_ERROR_SKEWNESS, "the array of skewnesses is absent"},
    {KOB_SS_ERROR_MINIMUM, "the array of minima is absent"},
    {KOB_SS_ERROR_MAXIMUM, "the array of maxima is absent"},
    {KOB_SS_ERROR_VARIATION, "the array of coefficients of variation is absent"},
    {KOB_SS_ERROR_COVARIANCE, "the covariance matrix is absent"},
    {KOB_SS_ERROR_CORRELATION, "the correlation matrix is absent"},
    {KOB_SS_ERROR_ACCUMULATED_WEIGHTS, "the accumulated weights are absent"},
    {KOB_SS_ERROR_QUANTILE_ORDERS, "the quantile orders are absent"},
    {KOB_SS_ERROR_QUANTILE_ORDER_COUNT,
     "the number of quantile orders is absent or bad, or an order is not in 0 to 1"},
    {KOB_SS_ERROR_QUANTILES, "the array of quantiles is absent"},
    {KOB_SS_ERROR_ORDER_STATISTICS, "the array of order statistics is absent"},
    {KOB_SS_ERROR_NO_SUBSET, "no acceptable subset of the observations was found"},
    {KOB_SS_ERROR_ROBUST_COVARIANCE, "the robust covariance matrix is absent"},
    {KOB_SS_ERROR_ROBUST_MEAN, "the array of robust means is absent"},
    {KOB_SS_ERROR_METHOD, "the method is none of this function's, or not exactly one of them"},
    {KOB_SS_ERROR_GROUPS_ABSENT, "the group indices or the requested groups are absent"},
    {KOB_SS_ERROR_TASK, "the task is null or of the other precision"},
    {KOB_SS_ERROR_OBSERVATIONS, "the observations are absent, or too few for a robust covariance"},
    {KOB_SS_ERROR_NOT_POSITIVE_DEFINITE, "the covariance is not positive definite"},
    {KOB_SS_ERROR_POOLED_COVARIANCE, "the pooled covariance matrix is absent"},
    {KOB_SS_ERROR_POOLED_MEAN, "the array of pooled means is absent"},
    {KOB_SS_ERROR_GROUP_COVARIANCE, "the array of group covariances is absent"},
    {KOB_SS_ERROR_GROUP_MEAN, "the array of group means is absent"},
    {KOB_SS_ERROR_GROUP_VALUE,
     "a group index is absent or out of range, or a requested-group flag is neither 0 nor 1"},
    {KOB_SS_ERROR_OUTLIER_PARAMETERS, "the parameters of outlier detection are absent"},
    {KOB_SS_ERROR_OUTLIER_PARAMETER_COUNT, "the number of parameters of outlier detection is absent"},
    {KOB_SS_ERROR_OUTLIER_WEIGHTS, "the array of outlier weights is absent"},
    {KOB_SS_ERROR_ROBUST_PARAMETERS, "the parameters of robust covariance are absent"},
    {KOB_SS_ERROR_ROBUST_PARAMETER_COUNT, "the number of parameters of robust covariance is absent"},
    {KOB_SS_ERROR_STORAGE_ABSENT, "a storage is absent"},
    {KOB_SS_ERROR_PARTIAL_INDICES, "the roles of variables in partial covariance are absent"},
    {KOB_SS_ERROR_PARTIAL_COVARIANCE, "the partial covariance matrix is absent"},
    {KOB_SS_ERROR_PARTIAL_CORRELATION, "the partial correlation matrix is absent"},
    {KOB_SS_ERROR_IMPUTATION_PARAMETERS, "the parameters of imputation are absent"},
    {KOB_SS_ERROR_IMPUTATION_PARAMETER_COUNT, "the number of parameters of imputation is absent"},
    {KOB_SS_ERROR_IMPUTATION_PARAMETER_COUNT_VALUE, "the number of parameters of imputation is not 5"},
    {KOB_SS_ERROR_IMPUTATION_COUNTS, "less than one imputation or missing value"},
    {KOB_SS_ERROR_IMPUTATION_START_COUNT, "the number of initial estimates is absent"},
    {KOB_SS_ERROR_IMPUTATION_START, "the array of initial estimates is absent"},
    {KOB_SS_ERROR_IMPUTED_VALUES, "the array of imputed values is absent"},
    {KOB_SS_ERROR_IMPUTED_VALUE_COUNT, "the number of imputed values is absent"},
    {KOB_SS_ERROR_IMPUTATION_ESTIMATE_COUNT, "the number of estimates of imputation is absent"},
    {KOB_SS_ERROR_IMPUTATION_ESTIMATES, "the array of estimates of imputation is absent"},
    {KOB_SS_ERROR_IMPUTED_VALUE_COUNT_VALUE,
     "the number of imputed values is not imputations times missing values"},
    {KOB_SS_ERROR_IMPUTATION_ESTIMATE_COUNT_VALUE, "the number of estimates of imputation does not fit"},
    {KOB_SS_ERROR_IMPUTATION_NO_RESULT, "neither imputed values nor estimates are asked for"},
    {KOB_SS_ERROR_IMPUTATION_PRIOR_COUNT, "the number of prior parameters is absent"},
    {KOB_SS_ERROR_IMPUTATION_PRIOR, "the array of prior parameters is absent"},
    {KOB_SS_ERROR_MISSING_VALUE_COUNT, "the number of missing values in the data is not the one declared"},
    {KOB_SS_ERROR_STREAM_PARAMETER_COUNT, "the number of parameters of streaming quantiles is absent"},
    {KOB_SS_ERROR_STREAM_PARAMETERS, "the parameters of streaming quantiles are absent"},
    {KOB_SS_ERROR_STREAM_PARAMETER_COUNT_VALUE, "the number of parameters of streaming quantiles is not 1"},
    {KOB_SS_ERROR_STREAM_EPS, "eps is not above 0 and at most 1, or two summaries differ in it"},
    {KOB_SS_ERROR_STREAM_ORDERS, "the orders of streaming quantiles are absent"},
    {KOB_SS_ERROR_STREAM_ORDER_COUNT,
     "the number of streaming quantile orders is absent or bad, or an order is not in 0 to 1"},
    {KOB_SS_ERROR_STREAM_QUANTILES, "the array of streaming quantiles is absent"},
    {KOB_SS_ERROR_PARAMETRIZED_CORRELATION, "the parametrized correlation matrix is absent"},
    {KOB_SS_ERROR_EIGENVALUES, "no eigenvalue is above the floor"},
    {KOB_SS_ERROR_PARTIAL_ROLES, "no variable of one of the two roles in partial covariance"},
    {KOB_SS_ERROR_STREAM_IMAGE,
     "the image of a summary is null, cut short, damaged or of the other precision"},
    {KOB_SS_ERROR_ROBUST_EIGEN, "the eigenvalues of the first robust estimate were not found"},
    {KOB_SS_ERROR_PARTIAL_FACTOR, "the covariance of the conditioning variables does not factor"},
    {KOB_SS_ERROR_PARTIAL_INVERSE, "the covariance of the conditioning variables has no inverse"},
    {KOB_SS_ERROR_I_STEP_FACTOR, "a covariance does not factor in the imputation step"},
    {KOB_SS_ERROR_I_STEP_GENERATOR, "random numbers failed in the imputation step"},
    {KOB_SS_ERROR_P_STEP_GENERATOR, "random numbers failed in the parameter step"},
    {KOB_SS_ERROR_P_STEP_FACTOR, "a matrix does not factor in the parameter step"},
    {KOB_SS_ERROR_P_STEP_INVERSE, "a matrix has no inverse in the parameter step"},
    {KOB_SS_ERROR_PARAMETRIZATION_EIGEN, "the eigenvalues of a correlation were not found"},
    {KOB_SS_ERROR_RANK_EIGEN, "the eigenvalues of a covariance were not found"},
    {KOB_SS_ERROR_INVERSE_FACTOR, "a covariance does not factor"},
    {KOB_SS_ERROR_INVERSE, "a covariance has no inverse"},
};

constexpr StatusText kKobTexts[] = {
    {KOB_STATUS_OK, "success"},
    {KOB_ERROR_METHOD, "the method is none of this function's"},
    {KOB_ERROR_BAD_ARG, "an argument is out of its range"},
    {KOB_ERROR_MEM_FAILURE, "memory could not be allocated"},
    {KOB_ERROR_NULL_PTR, "a function of a record or the buffer of an abstract stream is null"},
    {KOB_ERROR_BRNG_INDEX, "no such generator, or one that this call does not make"},
    {KOB_ERROR_LEAPFROG_UNSUPPORTED, "the generator cannot leap"},
    {KOB_ERROR_SKIPAHEAD_UNSUPPORTED, "the generator cannot skip"},
    {KOB_ERROR_BAD_STATE_SIZE, "the size of a state is negative"},
    {KOB_ERROR_BAD_WORD_SIZE, "the size of a word is not 4, 8 or 16"},
    {KOB_ERROR_BAD_SEED_COUNT, "the number of seeds is below 1"},
    {KOB_ERROR_BAD_BIT_COUNT, "the number of bits is below 1"},
    {KOB_ERROR_QRNG_PERIOD_ELAPSED, "the quasi-random sequence is at its end"},
    {KOB_ERROR_LEAPFROG_NSTREAMS, "the number of streams is negative"},
    {KOB_ERROR_UNSUPPORTED_WORD_BITS, "the generator has no such output of bits"},
    {KOB_ERROR_FILE_CLOSE, "the file could not be closed"},
    {KOB_ERROR_FILE_OPEN, "the file could not be opened"},
    {KOB_ERROR_FILE_WRITE, "the file could not be written"},
    {KOB_ERROR_FILE_READ, "the file could not be read"},
    {KOB_ERROR_BAD_FILE_FORMAT, "the file holds no stream, or a damaged one"},
    {KOB_ERROR_UNSUPPORTED_FILE_VER, "the file is of an unknown version"},
    {KOB_ERROR_ABSTRACT_CALLBACK_FAILED, "the call-back of an abstract stream failed"},
    {KOB_ERROR_ABSTRACT_CALLBACK_EMPTY, "the call-back of an abstract stream gave nothing"},
    {KOB_ERROR_ABSTRACT_WRONG_KIND, "the abstract stream has numbers of another kind"},
    {KOB_ERROR_TRNG_UNSUPPORTED, "the processor has no random numbers of its own"},
    {KOB_ERROR_TRNG_FAILED, "the processor's random numbers failed"},
    {KOB_ERROR_BAD_MEM_FORMAT, "the memory holds no stream, or a damaged one"},
    {KOB_ERROR_GLOBAL_ENTRY_NOT_FOUND, "no shared block of that name"},
    {KOB_ERROR_GLOBAL_TABLE_FULL, "the table of shared blocks is full"},
};

constexpr StatusText kDfTexts[] = {
    {ORX_DF_OK, "success"},
    {ORX_DF_ERROR_TASK, "the task is null or of the other precision"},
    {ORX_DF_ERROR_MEMORY, "memory could not be allocated"},
    {ORX_DF_ERROR_METHOD, "the method or the spline order is not this builder's"},
    {ORX_DF_ERROR_GRID_SIZE, "too few breakpoints, or too many"},
    {ORX_DF_ERROR_GRID, "the breakpoints are absent"},
    {ORX_DF_ERROR_GRID_HINT, "the hint of the partition is unknown"},
    {ORX_DF_ERROR_FUNC_COUNT, "the number of functions is bad"},
    {ORX_DF_ERROR_FUNCS, "the function values are absent"},
    {ORX_DF_ERROR_FUNC_HINT, "the storage hint of function values is unknown"},
    {ORX_DF_ERROR_SPLINE_ORDER, "the spline order is bad"},
    {ORX_DF_ERROR_SPLINE_KIND, "the spline kind is bad"},
    {ORX_DF_ERROR_INT_COND_KIND, "the kind of internal conditions is bad"},
    {ORX_DF_ERROR_INT_CONDS, "the internal conditions are absent or not usable"},
    {ORX_DF_ERROR_BND_COND_KIND, "the kind of boundary conditions is bad"},
    {ORX_DF_ERROR_BND_CONDS, "the boundary conditions are absent"},
    {ORX_DF_ERROR_COEFFS, "the coefficients are absent"},
    {ORX_DF_ERROR_COEFF_HINT, "the storage hint of coefficients is unknown"},
    {ORX_DF_ERROR_NOT_PERIODIC, "the spline is periodic, and its first and last value differ"},
    {ORX_DF_ERROR_PARAMETER, "no such parameter"},
    {ORX_DF_ERROR_INDEX, "the index of a function is out of range"},
    {ORX_DF_ERROR_LOOKUP_SITE, "a look-up at a site that is no breakpoint"},
    {ORX_DF_ERROR_LOOKUP_DERIVATIVE, "a look-up has no derivatives"},
    {ORX_DF_ERROR_LOOKUP_VALUES, "a look-up in a task without function values"},
    {ORX_DF_ERROR_DATA_HINT, "the hint of the data is bad"},
    {ORX_DF_ERROR_INTERPOLATION, "an argument of the interpolation is bad"},
    {ORX_DF_ERROR_RESULT_HINT, "the storage hint of results is unknown"},
    {ORX_DF_ERROR_CHECK_FLAG, "the check flag is neither 0 nor 1"},
    {ORX_DF_ERROR_SINGULAR, "the system of the spline is singular"},
    {ORX_DF_ERROR_OUTSIDE, "a site lies outside the partition"},
    {ORX_DF_ERROR_BREAKPOINT, "the breakpoints do not rise"},
};

template <int count>
const char* find(const StatusText (&texts)[count], int status) {
  for (const StatusText& t : texts)
    if (t.status == status) return t.text;
  return "unknown status";
}

}  // namespace

ORX_API const char* orx_ss_status_text(int status) { return find(kSsTexts, status); }
ORX_API const char* orx_kob_status_text(int status) { return find(kKobTexts, status); }
ORX_API const char* orx_df_status_text(int status) {
  // Which breakpoint it is stands below the status of a bad one.
  return find(kDfTexts, status < ORX_DF_ERROR_BREAKPOINT ? ORX_DF_ERROR_BREAKPOINT : status);
}
