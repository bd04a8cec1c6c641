// The basic statistics: mean, raw and central moments, kurtosis, skewness, variation, covariance and
// correlation, in one call or over many blocks of data.
#pragma once

#include "_math/scalar.hpp"
#include "basic/kernels.hpp"
#include "blas.hpp"
#include "matrix.hpp"
#include "orx/base/first_failure.hpp"
#include "orx/base/memory.hpp"
#include "orx/base/threading.hpp"
#include "ss_task.hpp"

namespace orx::ss::basic {

// ---- what is asked for ----

// The arrays of results; the first kArrayCount of them are the running arrays of the kernels.
enum { kCovariance = kArrayCount, kCorrelation, kKurtosis, kSkewness, kVariation, kResultCount };

constexpr unsigned bits() { return 0; }
template <class... Rest>
constexpr unsigned bits(int first, Rest... rest) {
  return 1u << first | bits(rest...);
}

// An estimate, the other arrays that it is made from, and the status for its own array's absence.
struct Estimate {
  unsigned bit, needs;
  void* SSTask::*array;
  int status;
};

constexpr Estimate kEstimates[kResultCount] = {
    {KOB_SS_MEAN, bits(), &SSTask::mean, KOB_SS_ERROR_MEAN},
    {KOB_SS_RAW_MOMENT_2, bits(), &SSTask::rawMoment2, KOB_SS_ERROR_RAW_MOMENT_2},
    {KOB_SS_RAW_MOMENT_3, bits(), &SSTask::rawMoment3, KOB_SS_ERROR_RAW_MOMENT_3},
    {KOB_SS_RAW_MOMENT_4, bits(), &SSTask::rawMoment4, KOB_SS_ERROR_RAW_MOMENT_4},
    {KOB_SS_CENTRAL_MOMENT_2, bits(kMean, kRaw2), &SSTask::centralMoment2, KOB_SS_ERROR_CENTRAL_MOMENT_2},
    {KOB_SS_CENTRAL_MOMENT_3, bits(kMean, kRaw2, kRaw3), &SSTask::centralMoment3,
     KOB_SS_ERROR_CENTRAL_MOMENT_3},
    {KOB_SS_CENTRAL_MOMENT_4, bits(kMean, kRaw2, kRaw3, kRaw4), &SSTask::centralMoment4,
     KOB_SS_ERROR_CENTRAL_MOMENT_4},
    {KOB_SS_COVARIANCE, bits(kMean), &SSTask::cov, KOB_SS_ERROR_COVARIANCE},
    {KOB_SS_CORRELATION, bits(kMean), &SSTask::cor, KOB_SS_ERROR_CORRELATION},
    {KOB_SS_KURTOSIS, bits(kMean, kRaw2, kRaw3, kRaw4, kCentral2, kCentral4), &SSTask::kurtosis,
     KOB_SS_ERROR_KURTOSIS},
    {KOB_SS_SKEWNESS, bits(kMean, kRaw2, kRaw3, kCentral2, kCentral3), &SSTask::skewness,
     KOB_SS_ERROR_SKEWNESS},
    {KOB_SS_VARIATION, bits(kMean, kRaw2, kCentral2), &SSTask::variation, KOB_SS_ERROR_VARIATION},
};

// The arrays that the requested estimates need, as bits.
inline unsigned widen(unsigned requested) {
  unsigned wanted = 0;
  for (int k = 0; k < kResultCount; ++k)
    if (requested & kEstimates[k].bit) wanted |= 1u << k | kEstimates[k].needs;
  return wanted;
}

inline int check_arrays(const SSTask* task, unsigned wanted) {
  for (int k = 0; k < kResultCount; ++k)
    if (wanted >> k & 1 && !(task->*kEstimates[k].array)) return kEstimates[k].status;
  if ((wanted & bits(kCovariance) && !task->covStorage) || (wanted & bits(kCorrelation) && !task->corStorage))
    return KOB_SS_ERROR_STORAGE_ABSENT;
  return KOB_SS_OK;
}

// The kernel class that computes the wanted arrays.
inline int fast_class(unsigned wanted) {
  return wanted & bits(kRaw4) ? 3 : wanted & bits(kRaw3) ? 2 : wanted & bits(kRaw2) ? 1 : 0;
}
inline int two_pass_class(unsigned wanted) {
  if (wanted & bits(kRaw2, kRaw3, kRaw4)) return 3;
  return wanted & bits(kCentral4) ? 2 : wanted & bits(kCentral3) ? 1 : 0;
}
inline int one_pass_class(unsigned wanted) {
  if (wanted & bits(kRaw3, kRaw4, kCentral3, kCentral4)) return 3;
  return wanted & bits(kRaw2) ? 2 : wanted & bits(kCentral2) ? 1 : 0;
}

constexpr unsigned kFastArrays[4] = {bits(kMean), bits(kMean, kRaw2), bits(kMean, kRaw2, kRaw3),
                                     bits(kMean, kRaw2, kRaw3, kRaw4)};
constexpr unsigned kTwoPassArrays[4] = {bits(kCentral2), bits(kCentral2, kCentral3),
                                        bits(kCentral2, kCentral3, kCentral4),
                                        bits(kRaw2, kRaw3, kRaw4, kCentral2, kCentral3, kCentral4)};
constexpr unsigned kOnePassArrays[4] = {bits(kMean), bits(kMean, kCentral2), bits(kMean, kRaw2, kCentral2),
                                        (1u << kArrayCount) - 1};

// The sum of squares of distances from the mean divided by this is the unbiased variance. It is 0 for a
// single observation, of which the variance is not defined.
inline double freedom(double W, double W2) { return (W * W - W2) / W; }

// ---- one computation ----

template <class T>
struct Computation {
  SSTask* task;
  Observations<T> data;
  Selection selection;
  const T* weights;
  unsigned wanted;  // bits of the result arrays
  unsigned method;
  unsigned arrays;  // bits of the running arrays that the kernel updates
  bool cross;       // cross-products are wanted
  Kernel<T> kernel;
  int workers;
  FirstFailure failure;

  T* array[kArrayCount] = {};  // worker 0's running arrays and cross-products
  T* products = nullptr;
  T* private_arrays = nullptr;     // those of the others, one set after the other
  intptr_t private_size = 0;       // elements of a set
  double* accumulators = nullptr;  // a worker's four accumulator words, then its work area
  intptr_t accumulator_size = 0;

  Block<double> accumulator_block;
  Block<T> private_block, products_block, array_block[kArrayCount];

  Computation(SSTask* t, unsigned wanted_arrays, unsigned method_bit)
      : task(t),
        data(t),
        selection(t),
        weights(reals<T>(t->weights)),
        wanted(wanted_arrays),
        method(method_bit) {}

  int p() const { return data.p; }
  bool in_products() const { return cross && method != KOB_SS_ONE_PASS; }
  double* accumulator(int worker) const { return accumulators + worker * accumulator_size; }
  double W() const { return accumulators[0]; }
  double W2() const { return accumulators[1]; }

  // A sum of squares or products that an earlier result was made from. Where there were no degrees of
  // freedom, up to the rounding of W2, the result is NaN, infinite or noise; the sum was 0, if it was taken
  // about the mean of the data. One about a mean that the user gave is lost.
  double back_to_sum(double result) const {
    constexpr double unit = sizeof(T) == sizeof(double) ? 0x1p-52 : 0x1p-23;
    const bool none = W() * W() - W2() <= 4 * unit * W() * W();
    return none && method != KOB_SS_USER_MEAN ? 0 : result * freedom(W(), W2());
  }

  // The running arrays of a worker; the given mean is shared.
  T* worker_array(int worker, int k) const {
    if (worker == 0 || !(arrays >> k & 1)) return array[k];
    const int before = __builtin_popcount(arrays & ((1u << k) - 1));
    return private_arrays + (worker - 1) * private_size + intptr_t(before) * p();
  }
  T* worker_products(int worker) const {
    if (worker == 0 || !cross) return products;
    return private_arrays + (worker - 1) * private_size + intptr_t(__builtin_popcount(arrays)) * p();
  }
};

template <class T>
void choose_kernel(Computation<T>& c, const KernelTables<T>& tables) {
  const int variant = (c.data.rows ? 0 : 2) + (c.weights ? 1 : 0);
  if (c.method == KOB_SS_ONE_PASS) {
    const int k = one_pass_class(c.wanted);
    c.kernel = tables.one_pass[(variant * 4 + k) * 2 + c.cross];
    c.arrays = kOnePassArrays[k];
  } else if (c.method == KOB_SS_USER_MEAN) {
    const int k = two_pass_class(c.wanted);
    c.kernel = tables.two_pass[variant * 4 + k];
    c.arrays = kTwoPassArrays[k];
  } else {
    const int k = fast_class(c.wanted);
    c.kernel = tables.fast[variant * 4 + k];
    c.arrays = kFastArrays[k];
  }
}

// ---- start ----

// An array of the caller's serves as it is, where it exists and all of it is wanted. Otherwise results are
// made in a copy.
template <class T>
bool init_array(Computation<T>& c, int k) {
  T* callers = reals<T>(c.task->*kEstimates[k].array);
  c.array[k] = callers;
  if (callers && c.selection.all()) return true;
  if (!c.array_block[k].allocate_zeros(c.p())) return false;
  c.array[k] = c.array_block[k].get();
  if (callers)
    for (int j = 0; j < c.p(); ++j) c.array[k][j] = callers[j];
  return true;
}

// Central moments back to sums. One that the caller did not ask for, but that the recurrences of the higher
// orders stand on, is made anew from the raw moments.
template <class T>
void rebuild_central_sums(Computation<T>& c) {
  const double W = c.W();
  const auto given = [&](int k) { return (c.task->*kEstimates[k].array) != nullptr; };
  for (int j = 0; j < c.p(); ++j) {
    const double mean = c.array[kMean] ? c.array[kMean][j] : 0;
    const auto raw = [&](int k) { return double(c.array[k][j]); };
    if (c.arrays & bits(kCentral2)) {
      double sum = c.back_to_sum(c.array[kCentral2][j]);
      if (!given(kCentral2) && c.arrays & bits(kRaw2) && given(kRaw2)) sum = W * (raw(kRaw2) - mean * mean);
      c.array[kCentral2][j] = T(sum);
    }
    if (c.arrays & bits(kCentral3)) {
      double sum = c.array[kCentral3][j] * W;
      if (!given(kCentral3) && c.arrays & bits(kRaw3) && given(kRaw2) && given(kRaw3))
        sum = W * (raw(kRaw3) + mean * (2 * mean * mean - 3 * raw(kRaw2)));
      c.array[kCentral3][j] = T(sum);
    }
    if (c.arrays & bits(kCentral4)) c.array[kCentral4][j] = T(c.array[kCentral4][j] * W);
  }
}

// The earlier covariance or correlation back to sums, into the lower triangle.
template <class T>
void rebuild_products(Computation<T>& c) {
  const bool from_cov = c.wanted & bits(kCovariance);
  const SymmetricMatrix<T> earlier = from_cov ? SymmetricMatrix<T>(c.task->cov, c.task->covStorage, c.p())
                                              : SymmetricMatrix<T>(c.task->cor, c.task->corStorage, c.p());
  for (int i = 0; i < c.p(); ++i) {
    T* row = c.products + intptr_t(i) * c.p();
    for (int j = 0; j <= i; ++j) {
      double value = earlier.get(i, j);
      if (!from_cov && i != j) value *= __kobdSqrt(double(earlier.get(i, i)) * double(earlier.get(j, j)));
      row[j] = T(c.back_to_sum(value));
    }
  }
}

// The caller's covariance serves where it is whole and all of it is wanted.
template <class T>
bool place_products(Computation<T>& c) {
  const bool in_place = c.wanted & bits(kCovariance) && c.selection.all() &&
                        SymmetricMatrix<T>(c.task->cov, c.task->covStorage, c.p()).full();
  if (!in_place && !c.products_block.allocate(int64_t(c.p()) * c.p())) return false;
  c.products = in_place ? reals<T>(c.task->cov) : c.products_block.get();
  return true;
}

template <class T>
bool allocate(Computation<T>& c) {
  const int64_t p = c.p(), words = 4 + work_size(c.p(), c.method == KOB_SS_ONE_PASS && c.cross);
  const int64_t accumulator_size = (words + 15) & ~int64_t(15);
  const int64_t private_size = p * (__builtin_popcount(c.arrays) + (c.cross ? p : 0));
  if (!c.accumulator_block.allocate(accumulator_size * c.workers)) return false;
  if (c.cross && !place_products(c)) return false;
  if (c.workers > 1 && !c.private_block.allocate_zeros(private_size * (c.workers - 1))) return false;
  for (int k = 0; k < kArrayCount; ++k)
    if (((c.arrays | bits(kMean)) >> k & 1) && !init_array(c, k)) return false;
  c.accumulators = c.accumulator_block.get();
  c.accumulator_size = intptr_t(accumulator_size);
  c.private_arrays = c.private_block.get();
  c.private_size = intptr_t(private_size);
  return true;
}

// Takes up what the arrays hold of earlier data, or clears them. Nothing of the caller's is changed before
// all memory is there.
template <class T>
int _vSSInitBasic(Computation<T>& c) {
  if (!allocate(c)) return KOB_SS_ERROR_MEMORY;
  for (int t = 0; t < c.workers; ++t)
    for (int k = 0; k < 4; ++k) c.accumulator(t)[k] = 0;
  if (const T* earlier = reals<T>(c.task->accumWeight)) {
    c.accumulators[0] = earlier[0];
    c.accumulators[1] = earlier[1];
  }
  if (c.cross && c.W() > 0) rebuild_products(c);
  if (c.cross && !(c.W() > 0))
    for (intptr_t i = 0; i < intptr_t(c.p()) * c.p(); ++i) c.products[i] = 0;
  if (c.W() > 0 && c.method != KOB_SS_FAST) rebuild_central_sums(c);
  return KOB_SS_OK;
}

// Nothing came before: what the arrays hold does not count.
template <class T>
void clear(Computation<T>& c) {
  for (int k = 0; k < kArrayCount; ++k)
    if (c.arrays >> k & 1)
      for (int j = 0; j < c.p(); ++j) c.array[k][j] = 0;
}

// ---- workers ----

// A block of observations, each multiplied by its weight, in the storage of the data.
template <class T>
void weigh_block(const Computation<T>& c, int first, int count, T* copy) {
  const T* w = c.weights + first;
  if (c.data.rows) {
    for (int j = 0; j < c.p(); ++j, copy += count)
      for (int i = 0; i < count; ++i) copy[i] = w[i] * c.data.variable(j)[first + i];
  } else {
    const T* x = c.data.x + intptr_t(first) * c.p();
    for (int i = 0; i < count; ++i, copy += c.p(), x += c.p())
      for (int j = 0; j < c.p(); ++j) copy[j] = w[i] * x[j];
  }
}

// Adds sum of w x x' over a block to the products.
template <class T>
void add_block_products(const Computation<T>& c, int first, int count, T* copy, T* products) {
  const int p = c.p(), n = c.data.n;
  const T* x = c.data.rows ? c.data.x + first : c.data.x + intptr_t(first) * p;
  if (!c.weights) {
    blas::syrk(c.data.rows ? 'T' : 'N', p, count, x, c.data.rows ? n : p, products, p);
    return;
  }
  weigh_block(c, first, count, copy);
  if (c.data.rows)
    blas::gemm('T', 'N', p, p, count, T(1), x, n, copy, count, T(1), products, p);
  else
    blas::gemm('N', 'T', p, p, count, T(1), x, p, copy, p, T(1), products, p);
}

// Cross-products of the Fast and two-pass methods: the kernel and the BLAS by turns on blocks that stay in
// cache, the products being taken about 0 on the way.
template <class T>
int run_by_blocks(const Computation<T>& c, KernelArgs<T>& args) {
  constexpr int block_bytes = 0x40000, min_block = 128;
  const int p = c.p(), first = args.first, end = args.end;
  int block = block_bytes / int(sizeof(T)) / p;
  if (block < min_block) block = min_block;

  Block<T> copy;
  // As large as all data whatever this worker's share is; what is not touched costs address space alone.
  if (c.weights && !copy.allocate(int64_t(c.data.n) * p)) return KOB_SS_ERROR_MEMORY;
  blas::syr(p, T(args.accumulator[0]), args.array[kMean], args.cross, p);
  for (args.first = first; args.first < end; args.first = args.end) {
    args.end = end - args.first < block ? end : args.first + block;
    c.kernel(args);
    add_block_products(c, args.first, args.end - args.first, copy.get(), args.cross);
  }
  blas::syr(p, -T(args.accumulator[0]), args.array[kMean], args.cross, p);
  return KOB_SS_OK;
}

template <class T>
void _vSSBasicThreader(int t, int, int, void* arguments) {
  Computation<T>& c = *static_cast<Computation<T>*>(arguments);
  const int n = c.data.n, share = n / c.workers;
  KernelArgs<T> args;
  args.first = t * share;
  args.end = t == c.workers - 1 ? n : args.first + share;
  args.n = n;
  args.p = c.p();
  args.x = c.data.x;
  args.weights = c.weights;
  args.accumulator = c.accumulator(t);
  args.work = args.accumulator + 4;
  for (int k = 0; k < kArrayCount; ++k) args.array[k] = c.worker_array(t, k);
  args.cross = c.worker_products(t);
  if (!c.in_products())
    c.kernel(args);
  else if (const int status = run_by_blocks(c, args))
    c.failure.report(status);
}

// ---- merge ----

// Folds worker t's results into worker 0's (Chan, Golub & LeVeque 1983 for the products, Pebay 2008 for
// orders 3 and 4).
template <class T>
void merge_worker(Computation<T>& c, int t) {
  double *a = c.accumulator(0), *b = c.accumulator(t);
  const double Wa = a[0], Wb = b[0], s = 1 / (Wa + Wb);
  if (Wb == 0) return;
  T* other[kArrayCount];
  for (int k = 0; k < kArrayCount; ++k) other[k] = c.worker_array(t, k);

  if (c.cross) {
    const double h = Wa == 0 ? 0 : Wa * Wb * s;
    const T *products = c.worker_products(t), *mean_a = c.array[kMean], *mean_b = other[kMean];
    for (int j = 0; j < c.p(); ++j) {
      const double hd = h * (double(mean_b[j]) - double(mean_a[j]));
      for (int k = 0; k <= j; ++k) {
        const intptr_t at = intptr_t(j) * c.p() + k;
        c.products[at] = T(c.products[at] + (products[at] + (hd * mean_b[k] - hd * mean_a[k])));
      }
    }
  }
  for (int j = 0; j < c.p(); ++j) {
    const double d = double(other[kMean][j]) - double(c.array[kMean][j]), e = s * d;
    const auto has = [&](int k) { return c.arrays >> k & 1; };
    const double c2a = has(kCentral2) ? c.array[kCentral2][j] : 0,
                 c2b = has(kCentral2) ? other[kCentral2][j] : 0;
    const double c3a = has(kCentral3) ? c.array[kCentral3][j] : 0,
                 c3b = has(kCentral3) ? other[kCentral3][j] : 0;
    if (has(kCentral4)) {
      const double quadratic =
          Wa * (((Wa - Wb) * Wa + Wb * Wb) * (Wb * d * e) + 6 * Wa * c2b) + 6 * Wb * Wb * c2a;
      c.array[kCentral4][j] =
          T(c.array[kCentral4][j] + (other[kCentral4][j] + e * (e * quadratic + 4 * (Wa * c3b - Wb * c3a))));
    }
    if (has(kCentral3))
      c.array[kCentral3][j] =
          T(c3a + (c3b + Wa * Wb * (Wa - Wb) * d * e * e + 3 * e * (Wa * c2b - Wb * c2a)));
    if (has(kCentral2)) c.array[kCentral2][j] = T(c2a + (c2b + Wa * Wb * e * d));
    for (int k = kMean; k <= kRaw4; ++k)
      if (has(k)) c.array[k][j] = T(s * (Wa * c.array[k][j] + Wb * other[k][j]));
  }
  for (int k = 0; k < 4; ++k) a[k] += b[k];
}

// ---- finish ----

// Correlation and covariance from the sums. On the diagonal of a correlation stand the variances.
template <class T>
void write_matrices(const Computation<T>& c) {
  const double scale = c.W() > 0 ? 1 / freedom(c.W(), c.W2()) : 1;
  const auto sum = [&](int i, int j) { return double(c.products[intptr_t(i) * c.p() + j]); };
  const auto write = [&](int which, const void* storage, auto element) {
    if (!(c.wanted >> which & 1)) return;
    const SymmetricMatrix<T> result(c.task->*kEstimates[which].array, storage, c.p());
    for (int i = 0; i < c.p(); ++i)
      for (int j = 0; j <= i; ++j)
        if (c.selection[i] && c.selection[j]) result.set(i, j, T(element(i, j)));
  };
  write(kCorrelation, c.task->corStorage, [&](int i, int j) {
    return i == j ? scale * sum(i, i) : sum(i, j) / __kobdSqrt(sum(i, i) * sum(j, j));
  });
  write(kCovariance, c.task->covStorage, [&](int i, int j) { return scale * sum(i, j); });
}

template <class T>
void _vSSFinishBasic(Computation<T>& c) {
  if (c.cross) write_matrices(c);
  for (int k = 0; k < kArrayCount; ++k) {
    T* callers = reals<T>(c.task->*kEstimates[k].array);
    if (!(c.arrays >> k & 1) || !callers || callers == c.array[k]) continue;
    for (int j = 0; j < c.p(); ++j)
      if (c.selection[j]) callers[j] = c.array[k][j];
  }
  if (T* sums = reals<T>(c.task->accumWeight)) {
    sums[0] = T(c.W());
    sums[1] = T(c.W2());
  }
}

// Sums to moments, and what is made from moments, in the caller's arrays. The second central moment is the
// unbiased variance, the third and fourth are divided by W; skewness and kurtosis are made from them as they
// are.
template <class T>
void convert(const Computation<T>& c) {
  const double W = c.W(), W2 = c.W2();
  const bool fast = c.method == KOB_SS_FAST;
  // Arrays that hold sums are turned into moments even if they were not asked for themselves.
  const unsigned results = c.wanted | (fast ? 0 : c.arrays & bits(kCentral2, kCentral3, kCentral4));
  T* a[kResultCount];
  for (int k = 0; k < kResultCount; ++k)
    a[k] = results >> k & 1 ? reals<T>(c.task->*kEstimates[k].array) : nullptr;

  for (int j = 0; j < c.p(); ++j) {
    if (!c.selection[j]) continue;
    const auto moment = [&](int k) { return double(a[k][j]); };
    if (a[kCentral2]) {
      const double biased = fast ? moment(kRaw2) - moment(kMean) * moment(kMean) : moment(kCentral2) / W;
      a[kCentral2][j] = T(biased * (W * W / (W * W - W2)));
    }
    if (a[kCentral3]) {
      const double mean = fast ? moment(kMean) : 0;
      a[kCentral3][j] =
          T(fast ? mean * (2 * mean * mean - 3 * moment(kRaw2)) + moment(kRaw3) : moment(kCentral3) / W);
    }
    if (a[kCentral4]) {
      const double mean = fast ? moment(kMean) : 0;
      a[kCentral4][j] =
          T(fast ? ((6 * moment(kRaw2) - 3 * mean * mean) * mean - 4 * moment(kRaw3)) * mean + moment(kRaw4)
                 : moment(kCentral4) / W);
    }
    if (a[kKurtosis]) a[kKurtosis][j] = T(moment(kCentral4) / (moment(kCentral2) * moment(kCentral2)) - 3);
    if (a[kSkewness]) {
      const double variance = moment(kCentral2);
      a[kSkewness][j] = T(moment(kCentral3) / __kobdSqrt(variance * variance * variance));
    }
    if (a[kVariation]) a[kVariation][j] = T(__kobdSqrt(moment(kCentral2)) / moment(kMean));
  }
}

// ---- the whole ----

template <class T>
int compute(SSTask* task, unsigned requested, unsigned method, const ThreadingServices* services,
            const KernelTables<T>& tables) {
  if (const int status = check_data<T>(task)) return status;
  const unsigned wanted = widen(requested);
  if (const int status = check_arrays(task, wanted)) return status;
  method &= KOB_SS_FAST | KOB_SS_ONE_PASS | KOB_SS_USER_MEAN;
  if (__builtin_popcount(method) != 1) return KOB_SS_ERROR_METHOD;

  Computation<T> c(task, wanted, method);
  c.cross = wanted & bits(kCovariance, kCorrelation);
  choose_kernel(c, tables);
  constexpr int min_share = 1000;
  const ThreadingServices* threading = threading_or_serial(services);
  c.workers = threading->maxThreads();
  if (c.workers < 1) c.workers = 1;
  if (c.data.n / c.workers < min_share) c.workers = c.data.n < min_share ? 1 : c.data.n / min_share;
  if (const int status = _vSSInitBasic(c)) return status;
  if (c.W() == 0) clear(c);
  threading->parallelRun(c.workers, &c, _vSSBasicThreader<T>);
  if (const int status = c.failure.status()) return status;
  for (int t = 1; t < c.workers; ++t) merge_worker(c, t);
  _vSSFinishBasic(c);
  convert(c);
  return KOB_SS_OK;
}

}  // namespace orx::ss::basic
