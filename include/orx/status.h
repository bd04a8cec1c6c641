/* Statuses in words. */
#ifndef ORX_STATUS_H
#define ORX_STATUS_H

#ifdef __cplusplus
extern "C" {
#endif

/* What a status of the statistics (orx/ss.h), of the random numbers (orx/kob.h) or of the fitting functions (orx/df.h)
 * says, in one line of English without a stop. The text lasts as long as the program; a number that is no status gives
 * "unknown status". */
const char* orx_ss_status_text(int status);
const char* orx_kob_status_text(int status);
const char* orx_df_status_text(int status);

#ifdef __cplusplus
}
#endif

#endif
