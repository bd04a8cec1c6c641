// The basic statistics: mean, raw and central moments, kurtosis, skewness, variation, covariance and
// correlation, in one call or over many blocks of data.
#pragma once

#include "_math/scalar.hpp"
#include "basic/kernels.hpp"
#include "blas.hpp"
#include "matrix.hpp"
#include "ss_task.hpp"

namespace orx::ss::basic {

// ---- what is asked for ----

// The arrays of results; the first ArrayCount of them are the running arrays of the kernels.
enum { Covariance = ArrayCount, Correlation, Kurtosis, Skewness, Variation, ResultCount };

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

constexpr Estimate estimates[ResultCount] = {
    {KOB_SS_MEAN, bits(), &SSTask::mean, KOB_SS_ERROR_MEAN},
    {KOB_SS_RAW_MOMENT_2, bits(), &SSTask::rawMoment2, KOB_SS_ERROR_RAW_MOMENT_2},
    {KOB_SS_RAW_MOMENT_3, bits(), &SSTask::rawMoment3, KOB_SS_ERROR_RAW_MOMENT_3},
    {KOB_SS_RAW_MOMENT_4, bits(), &SSTask::rawMoment4, KOB_SS_ERROR_RAW_MOMENT_4},
    {KOB_SS_CENTRAL_MOMENT_2, bits(Mean, Raw2), &SSTask::centralMoment2, KOB_SS_ERROR_CENTRAL_MOMENT_2},
    {KOB_SS_CENTRAL_MOMENT_3, bits(Mean, Raw2, Raw3), &SSTask::centralMoment3, KOB_SS_ERROR_CENTRAL_MOMENT_3},
    {KOB_SS_CENTRAL_MOMENT_4, bits(Mean, Raw2, Raw3, Raw4), &SSTask::centralMoment4,
     KOB_SS_ERROR_CENTRAL_MOMENT_4},
    {KOB_SS_COVARIANCE, bits(Mean), &SSTask::cov, KOB_SS_ERROR_COVARIANCE},
    {KOB_SS_CORRELATION, bits(Mean), &SSTask::cor, KOB_SS_ERROR_CORRELATION},
    {KOB_SS_KURTOSIS, bits(Mean, Raw2, Raw3, Raw4, Central2, Central4), &SSTask::kurtosis,
     KOB_SS_ERROR_KURTOSIS},
    {KOB_SS_SKEWNESS, bits(Mean, Raw2, Raw3, Central2, Central3), &SSTask::skewness, KOB_SS_ERROR_SKEWNESS},
    {KOB_SS_VARIATION, bits(Mean, Raw2, Central2), &SSTask::variation, KOB_SS_ERROR_VARIATION},
};

// The arrays that the requested estimates need, as bits.
inline unsigned widen(unsigned requested) {
  unsigned wanted = 0;
  for (int k = 0; k < ResultCount; ++k)
    if (requested & estimates[k].bit) wanted |= 1u << k | estimates[k].needs;
  return wanted;
}

inline int check_arrays(const SSTask* task, unsigned wanted) {
  for (int k = 0; k < ResultCount; ++k)
    if (wanted >> k & 1 && !(task->*estimates[k].array)) return estimates[k].status;
  if ((wanted & bits(Covariance) && !task->covStorage) || (wanted & bits(Correlation) && !task->corStorage))
    return KOB_SS_ERROR_STORAGE_ABSENT;
  return KOB_SS_OK;
}

// The kernel class that computes the wanted arrays.
inline int fast_class(unsigned wanted) {
  return wanted & bits(Raw4) ? 3 : wanted & bits(Raw3) ? 2 : wanted & bits(Raw2) ? 1 : 0;
}
inline int two_pass_class(unsigned wanted) {
  if (wanted & bits(Raw2, Raw3, Raw4)) return 3;
  return wanted & bits(Central4) ? 2 : wanted & bits(Central3) ? 1 : 0;
}
inline int one_pass_class(unsigned wanted) {
  if (wanted & bits(Raw3, Raw4, Central3, Central4)) return 3;
  return wanted & bits(Raw2) ? 2 : wanted & bits(Central2) ? 1 : 0;
}

constexpr unsigned fast_arrays[4] = {bits(Mean), bits(Mean, Raw2), bits(Mean, Raw2, Raw3),
                                     bits(Mean, Raw2, Raw3, Raw4)};
constexpr unsigned two_pass_arrays[4] = {bits(Central2), bits(Central2, Central3),
                                         bits(Central2, Central3, Central4),
                                         bits(Raw2, Raw3, Raw4, Central2, Central3, Central4)};
constexpr unsigned one_pass_arrays[4] = {bits(Mean), bits(Mean, Central2), bits(Mean, Raw2, Central2),
                                         (1u << ArrayCount) - 1};

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
  int status;

  T* array[ArrayCount] = {};  // worker 0's running arrays and cross-products
  T* products = nullptr;
  T* private_arrays = nullptr;     // those of the others, one set after the other
  intptr_t private_size = 0;       // elements of a set
  double* accumulators = nullptr;  // a worker's four accumulator words, then its work area
  intptr_t accumulator_size = 0;

  Block<double> accumulator_block;
  Block<T> private_block, products_block, array_block[ArrayCount];

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
    c.arrays = one_pass_arrays[k];
  } else if (c.method == KOB_SS_USER_MEAN) {
    const int k = two_pass_class(c.wanted);
    c.kernel = tables.two_pass[variant * 4 + k];
    c.arrays = two_pass_arrays[k];
  } else {
    const int k = fast_class(c.wanted);
    c.kernel = tables.fast[variant * 4 + k];
    c.arrays = fast_arrays[k];
  }
}

// ---- start ----

// An array of the caller's serves as it is, where it exists and all of it is wanted. Otherwise results are
// made in a copy.
template <class T>
bool init_array(Computation<T>& c, int k) {
  T* callers = reals<T>(c.task->*estimates[k].array);
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
  const auto given = [&](int k) { return (c.task->*estimates[k].array) != nullptr; };
  for (int j = 0; j < c.p(); ++j) {
    const double mean = c.array[Mean] ? c.array[Mean][j] : 0;
    const auto raw = [&](int k) { return double(c.array[k][j]); };
    if (c.arrays & bits(Central2)) {
      double sum = c.back_to_sum(c.array[Central2][j]);
      if (!given(Central2) && c.arrays & bits(Raw2) && given(Raw2)) sum = W * (raw(Raw2) - mean * mean);
      c.array[Central2][j] = T(sum);
    }
    if (c.arrays & bits(Central3)) {
      double sum = c.array[Central3][j] * W;
      if (!given(Central3) && c.arrays & bits(Raw3) && given(Raw2) && given(Raw3))
        sum = W * (raw(Raw3) + mean * (2 * mean * mean - 3 * raw(Raw2)));
      c.array[Central3][j] = T(sum);
    }
    if (c.arrays & bits(Central4)) c.array[Central4][j] = T(c.array[Central4][j] * W);
  }
}

// The earlier covariance or correlation back to sums, into the lower triangle.
template <class T>
void rebuild_products(Computation<T>& c) {
  const bool from_cov = c.wanted & bits(Covariance);
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
  const bool in_place = c.wanted & bits(Covariance) && c.selection.all() &&
                        SymmetricMatrix<T>(c.task->cov, c.task->covStorage, c.p()).full();
  if (!in_place && !c.products_block.allocate(uint64_t(c.p()) * c.p())) return false;
  c.products = in_place ? reals<T>(c.task->cov) : c.products_block.get();
  return true;
}

template <class T>
bool allocate(Computation<T>& c) {
  const uint64_t p = c.p(), words = 4 + work_size(c.p(), c.method == KOB_SS_ONE_PASS && c.cross);
  const uint64_t accumulator_size = (words + 15) & ~uint64_t(15);
  const uint64_t private_size = p * (__builtin_popcount(c.arrays) + (c.cross ? p : 0));
  if (!c.accumulator_block.allocate(accumulator_size * c.workers)) return false;
  if (c.cross && !place_products(c)) return false;
  if (c.workers > 1 && !c.private_block.allocate_zeros(private_size * (c.workers - 1))) return false;
  for (int k = 0; k < ArrayCount; ++k)
    if (((c.arrays | bits(Mean)) >> k & 1) && !init_array(c, k)) return false;
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
  for (int k = 0; k < ArrayCount; ++k)
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
  if (c.weights && !copy.allocate(uint64_t(c.data.n) * p)) return KOB_SS_ERROR_MEMORY;
  blas::syr(p, T(args.accumulator[0]), args.array[Mean], args.cross, p);
  for (args.first = first; args.first < end; args.first = args.end) {
    args.end = end - args.first < block ? end : args.first + block;
    c.kernel(args);
    add_block_products(c, args.first, args.end - args.first, copy.get(), args.cross);
  }
  blas::syr(p, -T(args.accumulator[0]), args.array[Mean], args.cross, p);
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
  for (int k = 0; k < ArrayCount; ++k) args.array[k] = c.worker_array(t, k);
  args.cross = c.worker_products(t);
  if (!c.in_products())
    c.kernel(args);
  else if (const int status = run_by_blocks(c, args))
    c.status = status;
}

// ---- merge ----

// Folds worker t's results into worker 0's (Chan, Golub & LeVeque 1983 for the products, Pebay 2008 for
// orders 3 and 4).
template <class T>
void merge_worker(Computation<T>& c, int t) {
  double *a = c.accumulator(0), *b = c.accumulator(t);
  const double Wa = a[0], Wb = b[0], s = 1 / (Wa + Wb);
  if (Wb == 0) return;
  T* other[ArrayCount];
  for (int k = 0; k < ArrayCount; ++k) other[k] = c.worker_array(t, k);

  if (c.cross) {
    const double h = Wa == 0 ? 0 : Wa * Wb * s;
    const T *products = c.worker_products(t), *mean_a = c.array[Mean], *mean_b = other[Mean];
    for (int j = 0; j < c.p(); ++j) {
      const double hd = h * (double(mean_b[j]) - double(mean_a[j]));
      for (int k = 0; k <= j; ++k) {
        const intptr_t at = intptr_t(j) * c.p() + k;
        c.products[at] = T(c.products[at] + (products[at] + (hd * mean_b[k] - hd * mean_a[k])));
      }
    }
  }
  for (int j = 0; j < c.p(); ++j) {
    const double d = double(other[Mean][j]) - double(c.array[Mean][j]), e = s * d;
    const auto has = [&](int k) { return c.arrays >> k & 1; };
    const double c2a = has(Central2) ? c.array[Central2][j] : 0, c2b = has(Central2) ? other[Central2][j] : 0;
    const double c3a = has(Central3) ? c.array[Central3][j] : 0, c3b = has(Central3) ? other[Central3][j] : 0;
    if (has(Central4)) {
      const double quadratic =
          Wa * (((Wa - Wb) * Wa + Wb * Wb) * (Wb * d * e) + 6 * Wa * c2b) + 6 * Wb * Wb * c2a;
      c.array[Central4][j] =
          T(c.array[Central4][j] + (other[Central4][j] + e * (e * quadratic + 4 * (Wa * c3b - Wb * c3a))));
    }
    if (has(Central3))
      c.array[Central3][j] = T(c3a + (c3b + Wa * Wb * (Wa - Wb) * d * e * e + 3 * e * (Wa * c2b - Wb * c2a)));
    if (has(Central2)) c.array[Central2][j] = T(c2a + (c2b + Wa * Wb * e * d));
    for (int k = Mean; k <= Raw4; ++k)
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
    const SymmetricMatrix<T> result(c.task->*estimates[which].array, storage, c.p());
    for (int i = 0; i < c.p(); ++i)
      for (int j = 0; j <= i; ++j)
        if (c.selection[i] && c.selection[j]) result.set(i, j, T(element(i, j)));
  };
  write(Correlation, c.task->corStorage, [&](int i, int j) {
    return i == j ? scale * sum(i, i) : sum(i, j) / __kobdSqrt(sum(i, i) * sum(j, j));
  });
  write(Covariance, c.task->covStorage, [&](int i, int j) { return scale * sum(i, j); });
}

template <class T>
void _vSSFinishBasic(Computation<T>& c) {
  if (c.cross) write_matrices(c);
  for (int k = 0; k < ArrayCount; ++k) {
    T* callers = reals<T>(c.task->*estimates[k].array);
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
  const unsigned results = c.wanted | (fast ? 0 : c.arrays & bits(Central2, Central3, Central4));
  T* a[ResultCount];
  for (int k = 0; k < ResultCount; ++k)
    a[k] = results >> k & 1 ? reals<T>(c.task->*estimates[k].array) : nullptr;

  for (int j = 0; j < c.p(); ++j) {
    if (!c.selection[j]) continue;
    const auto moment = [&](int k) { return double(a[k][j]); };
    if (a[Central2]) {
      const double biased = fast ? moment(Raw2) - moment(Mean) * moment(Mean) : moment(Central2) / W;
      a[Central2][j] = T(biased * (W * W / (W * W - W2)));
    }
    if (a[Central3]) {
      const double mean = fast ? moment(Mean) : 0;
      a[Central3][j] =
          T(fast ? mean * (2 * mean * mean - 3 * moment(Raw2)) + moment(Raw3) : moment(Central3) / W);
    }
    if (a[Central4]) {
      const double mean = fast ? moment(Mean) : 0;
      a[Central4][j] =
          T(fast ? ((6 * moment(Raw2) - 3 * mean * mean) * mean - 4 * moment(Raw3)) * mean + moment(Raw4)
                 : moment(Central4) / W);
    }
    if (a[Kurtosis]) a[Kurtosis][j] = T(moment(Central4) / (moment(Central2) * moment(Central2)) - 3);
    if (a[Skewness]) {
      const double variance = moment(Central2);
      a[Skewness][j] = T(moment(Central3) / __kobdSqrt(variance * variance * variance));
    }
    if (a[Variation]) a[Variation][j] = T(__kobdSqrt(moment(Central2)) / moment(Mean));
  }
}

// ---- the whole ----

template <class T>
int compute(SSTask* task, unsigned requested, unsigned method, const ThreadingServices* threading,
            const KernelTables<T>& tables) {
  if (const int status = check_data(task)) return status;
  const unsigned wanted = widen(requested);
  if (const int status = check_arrays(task, wanted)) return status;
  method &= KOB_SS_FAST | KOB_SS_ONE_PASS | KOB_SS_USER_MEAN;
  if (__builtin_popcount(method) != 1) return KOB_SS_ERROR_METHOD;

  Computation<T> c(task, wanted, method);
  c.cross = wanted & bits(Covariance, Correlation);
  choose_kernel(c, tables);
  constexpr int min_share = 1000;
  c.workers = threading->maxThreads();
  if (c.workers < 1) c.workers = 1;
  if (c.data.n / c.workers < min_share) c.workers = c.data.n < min_share ? 1 : c.data.n / min_share;
  c.status = KOB_SS_OK;
  if (const int status = _vSSInitBasic(c)) return status;
  if (c.W() == 0) clear(c);
  threading->parallelRun(c.workers, &c, _vSSBasicThreader<T>);
  if (c.status) return c.status;
  for (int t = 1; t < c.workers; ++t) merge_worker(c, t);
  _vSSFinishBasic(c);
  convert(c);
  return KOB_SS_OK;
}

}  // namespace orx::ss::basic
