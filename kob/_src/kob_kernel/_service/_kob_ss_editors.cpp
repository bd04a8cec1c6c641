// The specialised editors: several parameters at once, those that are not null. Each is a list of fields: OUT
// for an array of results, IN for an array that is only read, INT for integers.
#include "ss_task.hpp"

// clang-format off
#define MOMENTS(OUT, IN, INT)                                 \
  OUT(mean) OUT(rawMoment2) OUT(rawMoment3) OUT(rawMoment4)    \
  OUT(centralMoment2) OUT(centralMoment3) OUT(centralMoment4)
#define COV_COR(OUT, IN, INT)                                 \
  OUT(mean) OUT(cov) INT(covStorage) OUT(cor) INT(corStorage)
#define PARTIAL_COV_COR(OUT, IN, INT)                         \
  INT(partialIndices)                                          \
  IN(cov) INT(covStorage) IN(cor) INT(corStorage)              \
  OUT(partialCov) INT(partialCovStorage)                       \
  OUT(partialCor) INT(partialCorStorage)
#define POOLED_COVARIANCE(OUT, IN, INT)                       \
  INT(groupIndices) OUT(pooledMean) OUT(pooledCov)             \
  INT(requestedGroups) OUT(groupMean) OUT(groupCov)
#define QUANTILES(OUT, IN, INT)                               \
  INT(quantOrderCount) IN(quantOrders) OUT(quantiles)          \
  OUT(orderStats) INT(orderStatsStorage)
#define STREAM_QUANTILES(OUT, IN, INT)                        \
  INT(streamOrderCount) IN(streamOrders) OUT(streamQuantiles)  \
  INT(streamParamCount) IN(streamParams)
#define MISSING_VALS(OUT, IN, INT)                            \
  INT(miParamCount) IN(miParams)                               \
  INT(miInitCount) IN(miInit)                                  \
  INT(miPriorCount) IN(miPrior)                                \
  INT(miSimulCount) OUT(miSimul)                               \
  INT(miEstimateCount) OUT(miEstimates)
#define OUT_DETECT(OUT, IN, INT)                              \
  INT(outlierParamCount) IN(outlierParams) OUT(outlierWeights)
#define R_COV(OUT, IN, INT)                                   \
  INT(robustCovStorage) INT(robustParamCount) IN(robustParams) \
  OUT(robustMean) OUT(robustCov)
#define MTX_PARAMETRZ(OUT, IN, INT)                           \
  IN(cor) INT(corStorage) OUT(paramCor) INT(paramCorStorage)
#define MAH_DISTANCE(OUT, IN, INT)                            \
  INT(mahFirst) INT(mahEnd) IN(mahMean) IN(mahInvCov)          \
  OUT(mahDistances) OUT(mahWork) INT(mahWorkSize)
// clang-format on

#define PARAMETER_OUT(name) , Real* name
#define PARAMETER_IN(name) , const Real* name
#define PARAMETER_INT(name) , const void* name
#define SET_FIELD(name) \
  if (name) task->name = const_cast<void*>(static_cast<const void*>(name));

#define EDITOR(function, FIELDS)                                                          \
  ORX_API int function(SSTask* task FIELDS(PARAMETER_OUT, PARAMETER_IN, PARAMETER_INT)) { \
    if (!task) return KOB_SS_ERROR_TASK;                                                  \
    FIELDS(SET_FIELD, SET_FIELD, SET_FIELD)                                               \
    return KOB_SS_OK;                                                                     \
  }
#define EDITORS(t)                                            \
  EDITOR(__kob##t##SSEditMoments, MOMENTS)                    \
  EDITOR(__kob##t##SSEditCovCor, COV_COR)                     \
  EDITOR(__kob##t##SSEditPartialCovCor, PARTIAL_COV_COR)      \
  EDITOR(__kob##t##SSEditPooledCovariance, POOLED_COVARIANCE) \
  EDITOR(__kob##t##SSEditQuantiles, QUANTILES)                \
  EDITOR(__kob##t##SSEditStreamQuantiles, STREAM_QUANTILES)   \
  EDITOR(__kob##t##SSEditMissingVals, MISSING_VALS)           \
  EDITOR(__kob##t##SSEditOutDetect, OUT_DETECT)               \
  EDITOR(__kob##t##SSEditRCov, R_COV)                         \
  EDITOR(__kob##t##SSEditMtxParametrz, MTX_PARAMETRZ)         \
  EDITOR(__kob##t##SSEditMahDistance, MAH_DISTANCE)

#define Real double
EDITORS(d)
#undef Real
#define Real float
EDITORS(s)
