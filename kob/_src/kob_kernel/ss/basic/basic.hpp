// The basic statistics: mean, raw and central moments, kurtosis, skewness, variation, covariance and
// correlation, in one call or over many blocks of data.
#pragma once

#include "_math/scalar.hpp"
#include "basic/kernels.hpp"
#include "blas.hpp"
#include "matrix.hpp"
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

// Results of earlier calls and their weights, as the caller's arrays hold them.
template <class T>
struct Earlier {
  double W = 0, W2 = 0;
  const T* array[kArrayCount] = {};

  // Without accumulated weights, or where they are not above 0, nothing came before.
  explicit Earlier(const SSTask* task) {
    for (int k = 0; k < kArrayCount; ++k) array[k] = reals<T>(task->*kEstimates[k].array);
    const T* sums = reals<T>(task->accumWeight);
    if (!sums || !(sums[0] > 0)) return;
    W = sums[0];
    W2 = sums[1];
  }

  bool has(int k) const { return array[k] != nullptr; }
  double operator()(int k, int j) const { return array[k] ? double(array[k][j]) : 0; }

  // A sum of squares or products that a result was made from. Where there were no degrees of freedom, up to the
  // rounding of W2, the result is NaN, infinite or noise; the sum was 0, if it was taken about the mean of the
  // data. One about a mean that the user gave is lost.
  double back_to_sum(double result, unsigned method) const {
    constexpr double unit = sizeof(T) == sizeof(double) ? 0x1p-52 : 0x1p-23;
    const bool none = W * W - W2 <= 4 * unit * W * W;
    return none && method != KOB_SS_USER_MEAN ? 0 : result * freedom(W, W2);
  }
  // A central sum of order 2 to 4. One that the caller did not ask for, but that higher orders stand on, is made anew
  // from the raw moments.
  double central_sum(int order, int j, unsigned method) const {
    const Earlier& e = *this;
    const double mean = e(kMean, j);
    const int k = central_array(order);
    if (order == 2)
      return e.has(k) || !e.has(kRaw2) ? back_to_sum(e(k, j), method) : W * (e(kRaw2, j) - mean * mean);
    if (order == 3 && !e.has(k) && e.has(kRaw2) && e.has(kRaw3))
      return W * (e(kRaw3, j) + mean * (2 * mean * mean - 3 * e(kRaw2, j)));
    return e(k, j) * W;
  }
};

template <class T>
struct Computation {
  SSTask* task;
  Observations<T> data;
  Selection selection;
  const T* weights;
  unsigned wanted;  // bits of the result arrays
  unsigned method;
  unsigned arrays = 0;  // bits of the running arrays that the kernel updates
  bool cross;           // cross-products are wanted
  Kernel<T> kernel = nullptr;
  int workers = 1;
  Earlier<T> earlier;

  Block<double> workers_block;  // for each worker: four accumulator words, the state, distances
  int64_t worker_size = 0;
  Block<T> products_block;  // worker 0's, where the caller's array does not serve, then those of the others
  T* first_products = nullptr;
  T* other_products = nullptr;
  Block<T> copy_block;  // for each worker: a block of weighted observations
  int64_t copy_size = 0;
  Block<T> mean_block;  // the final means, for the products about 0

  Computation(SSTask* t, unsigned wanted_arrays, unsigned method_bit)
      : task(t),
        data(t),
        selection(t),
        weights(reals<T>(t->weights)),
        wanted(wanted_arrays),
        method(method_bit),
        cross(wanted_arrays & bits(kCovariance, kCorrelation)),
        earlier(t) {}

  int p() const { return data.p; }
  // The Fast and the user-mean method leave the products to the BLAS.
  bool by_blas() const { return cross && method != KOB_SS_ONE_PASS; }
  double* accumulator(int worker) const { return workers_block.get() + worker * worker_size; }
  State state(int worker) const { return {accumulator(worker) + 4, p()}; }
  double* distances(int worker) const { return accumulator(worker) + 4 + State::size(p()); }
  T* products(int worker) const {
    return worker == 0 ? first_products : other_products + (worker - 1) * (intptr_t(p()) * p());
  }
  // Of the data of this call, once the workers are merged, and of all data.
  double new_W() const { return accumulator(0)[0]; }
  double W() const { return earlier.W + accumulator(0)[0]; }
  double W2() const { return earlier.W2 + accumulator(0)[1]; }
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

// Observations for which the BLAS is called at a time: they stay in cache.
template <class T>
int products_block_size(int p) {
  constexpr int block_bytes = 0x40000, min_block = 128;
  const int block = block_bytes / int(sizeof(T)) / p;
  return block < min_block ? min_block : block;
}

// The caller's covariance serves where it is whole and all of it is wanted.
template <class T>
bool allocate_products(Computation<T>& c) {
  const bool in_place = c.wanted & bits(kCovariance) && c.selection.all() &&
                        SymmetricMatrix<T>(c.task->cov, c.task->covStorage, c.p()).full();
  const int64_t size = int64_t(c.p()) * c.p(), count = c.workers - in_place;
  if (count > 0 && !c.products_block.allocate_zeros(size * count)) return false;
  c.first_products = in_place ? reals<T>(c.task->cov) : c.products_block.get();
  c.other_products = in_place ? c.products_block.get() : c.products_block.get() + size;
  if (!c.by_blas()) return true;
  c.copy_size = int64_t(products_block_size<T>(c.p())) * c.p();
  return c.mean_block.allocate(c.p()) && (!c.weights || c.copy_block.allocate(c.copy_size * c.workers));
}

template <class T>
bool allocate(Computation<T>& c) {
  const int64_t distances = c.cross && !c.by_blas() ? Distances::size(c.p()) : 0;
  c.worker_size = (4 + State::size(c.p()) + distances + 15) & ~int64_t(15);
  return c.workers_block.allocate_zeros(c.worker_size * c.workers) && (!c.cross || allocate_products(c));
}

// The covariance or correlation of earlier results as sums, in the lower triangle.
template <class T>
void rebuild_products(const Computation<T>& c, const SSTask* task, const Earlier<T>& earlier, T* products) {
  const bool from_cov = c.wanted & bits(kCovariance);
  const SymmetricMatrix<T> given = from_cov ? SymmetricMatrix<T>(task->cov, task->covStorage, c.p())
                                            : SymmetricMatrix<T>(task->cor, task->corStorage, c.p());
  for (int i = 0; i < c.p(); ++i) {
    T* row = products + intptr_t(i) * c.p();
    for (int j = 0; j <= i; ++j) {
      double value = given.get(i, j);
      if (!from_cov && i != j)
        value = value * __kobdSqrt(double(given.get(i, i))) * __kobdSqrt(double(given.get(j, j)));
      row[j] = T(earlier.back_to_sum(value, c.method));
    }
  }
  // Products about 0 until the end.
  if (c.by_blas()) blas::syr(c.p(), T(earlier.W), earlier.array[kMean], products, c.p());
}

// Nothing of the caller's is changed before all memory is there.
template <class T>
int _vSSInitBasic(Computation<T>& c) {
  if (!allocate(c)) return KOB_SS_ERROR_MEMORY;
  if (c.cross && c.earlier.W > 0)
    rebuild_products(c, c.task, c.earlier, c.first_products);
  else if (c.cross)
    for (intptr_t i = 0; i < intptr_t(c.p()) * c.p(); ++i) c.first_products[i] = 0;
  for (int t = 0; t < c.workers && c.method == KOB_SS_USER_MEAN; ++t)
    for (int j = 0; j < c.p(); ++j) c.state(t)[kMean][j] = c.earlier(kMean, j);
  return KOB_SS_OK;
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

// The kernel and the BLAS by turns on blocks that stay in cache. Leading observations of weight 0 are left to
// neither.
template <class T>
void run_by_blocks(const Computation<T>& c, KernelArgs<T> args, T* copy) {
  const int begin = c.weights ? first_observation<true>(args) : args.first;
  each_block(begin, args.end, products_block_size<T>(c.p()), [&](int first, int count) {
    args.first = first;
    args.end = first + count;
    c.kernel(args);
    add_block_products(c, first, count, copy, args.cross);
  });
}

template <class T>
void _vSSBasicThreader(int t, int, int, void* arguments) {
  const Computation<T>& c = *static_cast<const Computation<T>*>(arguments);
  const int n = c.data.n, share = n / c.workers, first = t * share;
  const KernelArgs<T> args = {first,
                              t == c.workers - 1 ? n : first + share,
                              n,
                              c.p(),
                              c.data.x,
                              c.weights,
                              c.accumulator(t),
                              c.accumulator(t) + 4,
                              c.distances(t),
                              c.cross ? c.products(t) : nullptr};
  if (c.by_blas())
    run_by_blocks(c, args, c.copy_block ? c.copy_block.get() + t * c.copy_size : nullptr);
  else
    c.kernel(args);
}

// ---- merge ----

// Adds h d d' to the lower triangle of the first products.
template <class T>
void add_between(const Computation<T>& c, double h, const double* d) {
  for (int j = 0; j < c.p(); ++j) {
    T* row = c.first_products + intptr_t(j) * c.p();
    const double hd = h * d[j];
    for (int k = 0; k <= j; ++k) row[k] = T(row[k] + hd * d[k]);
  }
}

// Folds data of weight Wb into worker 0's one-pass results: the distances of their means from worker 0's stand in
// `delta`, and sum(order, j) gives central sums of four variables.
template <class T, class F>
void fold_one_pass(const Computation<T>& c, double Wb, const double* delta, F sum) {
  const double Wa = c.new_W();
  if (c.cross && Wa != 0) add_between(c, Wa * Wb / (Wa + Wb), delta);
  for (int j = 0; j < c.p(); j += 4)
    fold_moments<4>(c.state(0), j, Wa, Wb, load<Doubles, true>(delta + j), {sum(2, j), sum(3, j), sum(4, j)});
}

// How far a mean in two parts lies from the running one; see add_to_mean.
inline double from_running_mean(const State& state, int j, double mean, double rest) {
  const double low = state[kMeanLow][j];
  return (mean - state[kMean][j]) + (rest - (low - low == 0 ? low : 0));
}

// Folds worker t's results into worker 0's.
template <class T>
void merge_worker(const Computation<T>& c, int t) {
  double *a = c.accumulator(0), *b = c.accumulator(t);
  if (b[0] == 0) return;
  const State to = c.state(0), from = c.state(t);
  const intptr_t products = c.cross ? intptr_t(c.p()) * c.p() : 0;
  for (intptr_t i = 0; i < products; ++i) c.first_products[i] += c.products(t)[i];
  if (c.method == KOB_SS_ONE_PASS) {
    double* delta = from[kBlockSums];
    for (int j = 0; j < c.p(); ++j) delta[j] = from_running_mean(to, j, from[kMean][j], from[kMeanLow][j]);
    fold_one_pass(c, b[0], delta, [&](int order, int j) {
      return row_at(from, central_array(order), j) + row_at(from, central_low(order), j);
    });
  } else {
    for (int k = c.method == KOB_SS_USER_MEAN ? kRaw2 : kMean; k < kArrayCount; ++k)
      for (int j = 0; j < c.p(); ++j) to[k][j] += from[k][j];
  }
  for (int k = 0; k < 4; ++k) a[k] += b[k];
}

// ---- earlier results ----

// A raw moment of all data from the sum of those of this call.
template <class T>
double merged_raw(const Computation<T>& c, int k, int j, double sum) {
  if (c.W() == 0) return 0;
  return c.earlier.W > 0 ? (c.earlier.W * c.earlier(k, j) + sum) / c.W() : sum / c.W();
}

// Turns worker 0's state into results over all data: means and raw moments, and central sums.
template <class T>
void merge_earlier_sums(const Computation<T>& c) {
  const State state = c.state(0);
  for (int j = 0; j < c.p(); ++j) {
    for (int k = c.method == KOB_SS_USER_MEAN ? kRaw2 : kMean; k <= kRaw4; ++k)
      state[k][j] = merged_raw(c, k, j, state[k][j]);
    for (int order = 2; order <= 4 && c.earlier.W > 0; ++order)
      state[central_array(order)][j] += c.earlier.central_sum(order, j, c.method);
  }
}

// What rounding left over is added where the result is finite.
inline double whole_central(const State& state, int order, int j) {
  const double sum = state[central_array(order)][j], rest = state[central_low(order)][j];
  return rest - rest == 0 ? sum + rest : sum;
}

// The one-pass kernels leave the raw moments to be made from the central sums.
template <class T>
void make_raw_sums(const Computation<T>& c) {
  const State state = c.state(0);
  const double W = c.new_W();
  for (int j = 0; j < c.p(); ++j) {
    if (W == 0) state[kMean][j] = state[kMeanLow][j] = 0;
    const double m = state[kMean][j] + state[kMeanLow][j], m2 = W * m * m, c2 = whole_central(state, 2, j),
                 c3 = whole_central(state, 3, j), c4 = whole_central(state, 4, j);
    state[kRaw2][j] = c2 + m2;
    state[kRaw3][j] = c3 + m * (3 * c2 + m2);
    state[kRaw4][j] = c4 + m * (4 * c3 + m * (6 * c2 + m2));
  }
}

// The same as for sums where the rest is about running means.
template <class T>
void merge_earlier_moments(const Computation<T>& c) {
  const State state = c.state(0);
  for (int j = 0; j < c.p(); ++j)
    for (int k = kRaw2; k <= kRaw4; ++k) state[k][j] = merged_raw(c, k, j, state[k][j]);
  if (c.earlier.W > 0) {
    const auto row = [&](int order) { return state[kBlockSums + order - 1]; };
    for (int j = 0; j < c.p(); ++j) {
      const bool known = c.earlier.has(kMean);
      row(1)[j] = known ? from_running_mean(state, j, c.earlier(kMean, j), 0) : 0;
      for (int order = 2; order <= 4; ++order) row(order)[j] = c.earlier.central_sum(order, j, c.method);
    }
    fold_one_pass(c, c.earlier.W, row(1),
                  [&](int order, int j) { return load<Doubles, true>(row(order) + j); });
  }
  for (int j = 0; j < c.p(); ++j) {
    state[kMean][j] += state[kMeanLow][j];
    for (int order = 2; order <= 4; ++order) state[central_array(order)][j] = whole_central(state, order, j);
  }
}

template <class T>
void merge_earlier(const Computation<T>& c) {
  c.method == KOB_SS_ONE_PASS ? merge_earlier_moments(c) : merge_earlier_sums(c);
}

// ---- finish ----

// Correlation and covariance from the sums. On the diagonal of a correlation stand the variances. Each deviation
// divides by itself: their product may be out of range.
template <class T>
void write_matrices(const Computation<T>& c) {
  const double scale = c.W() > 0 ? 1 / freedom(c.W(), c.W2()) : 1;
  const auto sum = [&](int i, int j) { return double(c.first_products[intptr_t(i) * c.p() + j]); };
  const auto write = [&](int which, const void* storage, auto element) {
    if (!(c.wanted >> which & 1)) return;
    const SymmetricMatrix<T> result(c.task->*kEstimates[which].array, storage, c.p());
    for (int i = 0; i < c.p(); ++i)
      for (int j = 0; j <= i; ++j)
        if (c.selection[i] && c.selection[j]) result.set(i, j, T(element(i, j)));
  };
  write(kCorrelation, c.task->corStorage, [&](int i, int j) {
    return i == j ? scale * sum(i, i) : sum(i, j) / __kobdSqrt(sum(i, i)) / __kobdSqrt(sum(j, j));
  });
  write(kCovariance, c.task->covStorage, [&](int i, int j) { return scale * sum(i, j); });
}

template <class T>
void _vSSFinishBasic(const Computation<T>& c) {
  if (c.cross) {
    for (int j = 0; j < c.p() && c.by_blas(); ++j) c.mean_block[j] = T(c.state(0)[kMean][j]);
    if (c.by_blas()) blas::syr(c.p(), -T(c.W()), c.mean_block.get(), c.first_products, c.p());
    write_matrices(c);
  }
  if (T* sums = reals<T>(c.task->accumWeight)) {
    sums[0] = T(c.W());
    sums[1] = T(c.W2());
  }
}

// Central sums to moments in place, or, where the raw moments are all there is, central moments from them. The second
// one is the unbiased variance, the third and fourth are divided by W.
template <class T>
void make_central_moments(const Computation<T>& c, const State& state, int j) {
  const double W = c.W();
  double &c2 = state[kCentral2][j], &c3 = state[kCentral3][j], &c4 = state[kCentral4][j];
  if (c.method != KOB_SS_FAST) {
    c2 /= freedom(W, c.W2());
    c3 /= W;
    c4 /= W;
    return;
  }
  const double m = state[kMean][j], raw2 = state[kRaw2][j], raw3 = state[kRaw3][j], raw4 = state[kRaw4][j];
  c2 = W * W / (W * W - c.W2()) * (raw2 - m * m);
  c3 = m * (2 * m * m - 3 * raw2) + raw3;
  c4 = ((6 * raw2 - 3 * m * m) * m - 4 * raw3) * m + raw4;
}

// Results to the caller's arrays: those that were asked for and those that they stand on, so that a later call can
// go on from them. Skewness and kurtosis are made from the central moments as they are.
template <class T>
void write_moments(const Computation<T>& c) {
  const unsigned given = c.method == KOB_SS_USER_MEAN ? bits(kMean) : 0,
                 written = (c.wanted | c.arrays) & ~given;
  const State state = c.state(0);
  for (int j = 0; j < c.p(); ++j) {
    if (!c.selection[j]) continue;
    make_central_moments(c, state, j);
    const double c2 = state[kCentral2][j], deviation = __kobdSqrt(c2);
    const auto write = [&](int k, double value) {
      T* const array = reals<T>(c.task->*kEstimates[k].array);
      if (written >> k & 1 && array) array[j] = T(value);
    };
    for (int k = kMean; k < kArrayCount; ++k) write(k, state[k][j]);
    write(kKurtosis, state[kCentral4][j] / c2 / c2 - 3);
    write(kSkewness, state[kCentral3][j] / c2 / deviation);
    write(kVariation, deviation / state[kMean][j]);
  }
}

template <class T>
void finish(const Computation<T>& c) {
  merge_earlier(c);
  _vSSFinishBasic(c);
  write_moments(c);
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
  choose_kernel(c, tables);
  constexpr int min_share = 1000;
  const ThreadingServices* threading = threading_or_serial(services);
  c.workers = threading->maxThreads();
  if (c.workers < 1) c.workers = 1;
  if (c.data.n / c.workers < min_share) c.workers = c.data.n < min_share ? 1 : c.data.n / min_share;
  if (const int status = _vSSInitBasic(c)) return status;
  threading->parallelRun(c.workers, &c, _vSSBasicThreader<T>);
  for (int t = 1; t < c.workers; ++t) merge_worker(c, t);
  if (c.method == KOB_SS_ONE_PASS) make_raw_sums(c);
  finish(c);
  return KOB_SS_OK;
}

}  // namespace orx::ss::basic
