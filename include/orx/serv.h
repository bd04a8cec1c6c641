/* The service layer, liborx_serv.so: aligned memory, numbered messages, tridiagonal solvers and the
 * threading tables that the compute functions of the kernel library take as their last argument. */
#ifndef ORX_SERV_H
#define ORX_SERV_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A block of `size` bytes whose address is a multiple of `alignment`, a power of two; null when there is
 * none to be had (also when `size + alignment` does not fit in a size_t). A size of 0 gives a block too. */
void* orx_serv_allocate(size_t size, size_t alignment);

/* Gives a block back. A null pointer is allowed and does nothing. */
void orx_serv_deallocate(void* block);

/* Prints message `id` of the catalogue, filled with `count` arguments, on standard error, one line.
 * `channel` is 1. Messages 735 to 741 take the function's name (735 the index too, so its count is 2);
 * 742 to 753 take an index and one double, which is passed as two 32-bit words, low word first.
 * An unknown id prints its number. */
void orx_serv_print(int channel, int id, int count, ...);

/* For tests. From now on the k-th call of orx_serv_allocate (1 is the next one) returns null, once;
 * 0 takes the order back. */
void orx_serv_fail_allocation(long k);

/* The number of blocks that were allocated and not yet given back, in the whole process. */
long orx_serv_live_blocks(void);

/* A worker: item index i, worker number t in 0..T-1, number of workers T, the caller's arguments. */
typedef void (*orx_worker)(int i, int t, int T, void* args);

/* How a compute function runs its workers. Every call returns only after all of its workers have ended;
 * `threads` of 0 or less means maxThreads(). Calls may nest: a nested call runs on the thread that makes it. */
typedef struct ThreadingServices {
  /* fn(i, t, T, args) for i = 0 .. count-1, on at most `threads` workers. */
  void (*parallelFor)(int count, int threads, void* args, orx_worker fn);
  /* The same in a region in which orderedSection may be used, at most once per item. */
  void (*parallelForOrdered)(int count, int threads, void* args, orx_worker fn);
  /* fn(t, t, T, args) once per worker, t = 0 .. T-1. */
  void (*parallelRun)(int threads, void* args, orx_worker fn);
  /* From within item i of a parallelForOrdered: fn(i, t, T, args), items one at a time in rising order. */
  void (*orderedSection)(int i, int t, int T, void* args, orx_worker fn);
  /* The number of workers available. */
  int (*maxThreads)(void);
} ThreadingServices;

/* The table that runs on OpenMP threads, and the one that runs everything on the calling thread. */
const ThreadingServices* orx_serv_threading(void);
const ThreadingServices* orx_serv_threading_serial(void);

/* Tridiagonal systems of order n by elimination without pivoting, for diagonally dominant matrices; `d` double,
 * `s` single. All arguments by reference. `dl` and `du` hold n-1 elements, `d` n. `b` is n by nrhs, column by
 * column, `ldb` apart. *info is 0, -i for a bad i-th argument, or i when the pivot of row i is exactly 0; b is
 * not solved then. A pivot whose reciprocal overflows (a subnormal number) gives infinities.
 *
 * trfb factors in place: dl, d and du are the factors then, in the solver's own form (elimination runs from both
 *      ends to the middle row; d has the reciprocals of the pivots).
 * trsb solves with such factors; *trans is "N", "T" or "C". Up to four right sides share one pass.
 * tsvb factors and solves in one pass; dl, d and du are the factors after it. The solution has the same bits as
 *      by trfb and trsb, and those of a right side do not depend on the others. */
void ddttrfb_4dfl(const int* n, double* dl, double* d, const double* du, int* info);
void ddttrsb_4dfl(const char* trans, const int* n, const int* nrhs, const double* dl, const double* d,
                  const double* du, double* b, const int* ldb, int* info);
void ddtsvb_4dfl(const int* n, const int* nrhs, double* dl, double* d, const double* du, double* b,
                 const int* ldb, int* info);
void sdttrfb_4dfl(const int* n, float* dl, float* d, const float* du, int* info);
void sdttrsb_4dfl(const char* trans, const int* n, const int* nrhs, const float* dl, const float* d,
                  const float* du, float* b, const int* ldb, int* info);
void sdtsvb_4dfl(const int* n, const int* nrhs, float* dl, float* d, const float* du, float* b,
                 const int* ldb, int* info);

#ifdef __cplusplus
}
#endif

#endif
