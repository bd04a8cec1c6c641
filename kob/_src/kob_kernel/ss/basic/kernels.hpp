// The kernels of the basic statistics: each folds a range of observations into running moments.
//
// Whatever the data are, a kernel computes in double precision; it reads the running arrays when it starts
// and writes them when it ends. Observations are taken by blocks that stay in the first-level cache, so that
// each variable (rows) or group of four variables (columns) can be swept with its running values in
// registers. Eight vector registers are all there are on the 32-bit target: no sweep has more than four
// running values.
#pragma once

#include <cstdint>

#include "lanes.hpp"

namespace orx::ss::basic {

// The running arrays of a computation. Raw moments are kept as moments, central ones as sums.
enum { kMean, kRaw2, kRaw3, kRaw4, kCentral2, kCentral3, kCentral4, kArrayCount };

constexpr int raw_array(int order) { return kMean + order - 1; }
constexpr int central_array(int order) { return kCentral2 + order - 2; }

// The orders that a kernel computes: raw moments raw_from to raw_to, central ones 2 to
// central_to.
template <int raw_from, int raw_to, int central_to>
struct Orders {
  static constexpr int kRawFrom = raw_from, kRawTo = raw_to, kCentralTo = central_to;
  static constexpr bool kRaw = kRawFrom <= kRawTo, kCentral = kCentralTo >= 2;

  // The arrays that it updates, as bits.
  static constexpr unsigned raw_arrays() {
    unsigned bits = 0;
    for (int k = kRawFrom; k <= kRawTo; ++k) bits |= 1u << raw_array(k);
    return bits;
  }
  static constexpr unsigned arrays() {
    unsigned bits = raw_arrays();
    for (int k = 2; k <= kCentralTo; ++k) bits |= 1u << central_array(k);
    return bits;
  }
};

template <class T>
struct KernelArgs {
  int first, end;  // of the n observations
  int n, p;
  const T* x;
  const T* weights;
  double* work;         // work_size(p, ...) doubles, aligned to 32 bytes
  double* accumulator;  // W, the sum of weights; W2, the sum of their squares; two words that stay 0
  T* array[kArrayCount];
  T* cross;  // p by p: the lower triangle by rows; what lies above the diagonal may be overwritten
};

template <class T>
using Kernel = void (*)(const KernelArgs<T>&);

// Indexed by storage (rows, columns), weights (none, given), class 0 to 3 and, for one pass, cross-products.
template <class T>
struct KernelTables {
  Kernel<T> one_pass[32], two_pass[16], fast[16];
};

constexpr int padded(int p) { return (p + 3) & ~3; }

// The running arrays in double, one after the other, each padded with zeros to a multiple of four.
class State {
 public:
  template <class T>
  State(const KernelArgs<T>& args, unsigned arrays) : data_(args.work), p_(args.p), size_(padded(args.p)) {
    each(arrays, [&](int k, double* row) {
      for (int j = 0; j < p_; ++j) row[j] = args.array[k][j];
      for (int j = p_; j < size_; ++j) row[j] = 0;
    });
  }
  double* operator[](int k) const { return data_ + intptr_t(k) * size_; }
  int row_size() const { return size_; }

  void scale(unsigned arrays, double factor) const {
    each(arrays, [&](int, double* row) {
      for (int j = 0; j < p_; ++j) row[j] *= factor;
    });
  }
  template <class T>
  void store(const KernelArgs<T>& args, unsigned arrays) const {
    each(arrays, [&](int k, const double* row) {
      for (int j = 0; j < p_; ++j) args.array[k][j] = T(row[j]);
    });
  }

 private:
  template <class F>
  void each(unsigned arrays, F f) const {
    for (int k = 0; k < kArrayCount; ++k)
      if (arrays >> k & 1) f(k, (*this)[k]);
  }

  double* data_;
  int p_, size_;
};

// The first observation that counts: leading weights of exactly zero are passed over.
template <bool weighted, class T>
int first_observation(const KernelArgs<T>& args) {
  int i = args.first;
  if constexpr (weighted)
    while (i < args.end && args.weights[i] == 0) ++i;
  return i;
}

// ---- Fast and two-pass kernels: sums of powers ----

// Sums of w v^k for k = from to to, by lanes; v = x or the distance of x from a centre.
template <int from, int to, bool weighted>
struct PowerSums {
  static constexpr int kTerms = to - from + 1;
  __m256d sum[kTerms];

  PowerSums() {
    for (int k = 0; k < kTerms; ++k) sum[k] = _mm256_setzero_pd();
  }
  void add(__m256d v, __m256d w) {
    __m256d power = weighted ? w * v : v;
    for (int k = 1; k < from; ++k) power *= v;
    sum[0] += power;
    for (int k = 1; k < kTerms; ++k) sum[k] += power *= v;
  }
};

// Data are swept in pieces, between which the processor's own prefetching starts anew.
template <class T>
void prefetch_ahead(const T* x) {
  constexpr int ahead = 2048;
  _mm_prefetch(reinterpret_cast<const char*>(x) + ahead, _MM_HINT_T0);
}

// One variable whose observations lie side by side: the sums go to sums[0], sums[size], ...
template <int from, int to, bool centred, bool weighted, class T>
void sum_row(const T* x, const T* w, int count, double centre, double* sums, int size) {
  PowerSums<from, to, weighted> running;
  const __m256d middle = _mm256_set1_pd(centre);
  int i = 0;
  for (; i + 4 <= count; i += 4) {
    prefetch_ahead(x + i);
    const __m256d v = centred ? load4(x + i) - middle : load4(x + i);
    running.add(v, weighted ? load4(w + i) : v);
  }
  if (i < count) {
    const __m256i mask = first_lanes(count - i);
    const __m256d v = centred ? keep(load4(x + i, mask) - middle, mask) : load4(x + i, mask);
    running.add(v, weighted ? load4(w + i, mask) : v);
  }
  for (int k = 0; k < running.kTerms; ++k) sums[intptr_t(k) * size] += sum4(running.sum[k]);
}

// Four variables that lie side by side, or `lanes` of them. Two leave room for those of the next observation.
template <int from, int to, bool centred, bool weighted, class T>
void sum_columns(const T* x, intptr_t stride, int lanes, const T* w, int count, const double* centre,
                 double* sums, int size) {
  PowerSums<from, to, weighted> running;
  const bool pairs = lanes == 2;
  const __m256i mask = first_lanes(lanes);
  __m256d middle = centred ? _mm256_load_pd(centre) : _mm256_setzero_pd();
  if (pairs) middle = lower_twice(middle);
  const auto weight = [&](int i) { return weighted ? _mm256_set1_pd(w[i]) : middle; };
  const auto pair_weight = [&](int i) {
    return weighted ? _mm256_setr_pd(w[i], w[i], w[i + 1], w[i + 1]) : middle;
  };
  int i = 0;
  const auto sweep = [&](int step, auto load, auto weight_at) {
    for (; i + step <= count; i += step, x += step * stride) {
      prefetch_ahead(x);
      running.add(centred ? load() - middle : load(), weight_at(i));
    }
  };
  if (lanes == 4)
    sweep(
        1, [&] { return load4(x); }, weight);
  if (pairs)
    sweep(
        2, [&] { return load2x2(x, x + stride); }, pair_weight);
  if (pairs) middle = keep(middle, mask);
  sweep(
      1, [&] { return load4(x, mask); }, weight);
  for (int k = 0; k < running.kTerms; ++k, sums += size) {
    const __m256d sum = pairs ? fold(running.sum[k]) : running.sum[k];
    _mm256_store_pd(sums, _mm256_load_pd(sums) + sum);
  }
}

template <bool weighted, class T>
void add_weights(const KernelArgs<T>& args, int first, int count) {
  double sum = count, squares = count;
  if constexpr (weighted) {
    sum = squares = 0;
    for (int i = first; i < first + count; ++i) {
      const double w = args.weights[i];
      sum += w;
      squares += w * w;
    }
  }
  args.accumulator[0] += sum;
  args.accumulator[1] += squares;
}

// All variables over one block of observations: raw powers, then powers of the distance from the given mean.
template <class O, bool rows, bool weighted, class T>
void sum_block(const KernelArgs<T>& args, int first, int count, const State& state) {
  const int size = state.row_size();
  const T* w = weighted ? args.weights + first : nullptr;
  double *mean = state[kMean], *raw = state[raw_array(O::kRawFrom)], *central = state[kCentral2];
  if (rows || args.p == 1) {
    const T* x = args.x + first;
    for (int j = 0; j < args.p; ++j, x += args.n) {
      if constexpr (O::kRaw) sum_row<O::kRawFrom, O::kRawTo, false, weighted>(x, w, count, 0, raw + j, size);
      if constexpr (O::kCentral)
        sum_row<2, O::kCentralTo, true, weighted>(x, w, count, mean[j], central + j, size);
    }
  } else {
    const T* x = args.x + intptr_t(first) * args.p;
    for (int j = 0; j < args.p; j += 4) {
      const int lanes = args.p - j < 4 ? args.p - j : 4;
      if constexpr (O::kRaw)
        sum_columns<O::kRawFrom, O::kRawTo, false, weighted>(x + j, args.p, lanes, w, count, mean, raw + j,
                                                             size);
      if constexpr (O::kCentral)
        sum_columns<2, O::kCentralTo, true, weighted>(x + j, args.p, lanes, w, count, mean + j, central + j,
                                                      size);
    }
  }
  add_weights<weighted>(args, first, count);
}

// The observations of a block: a sweep over rows has but one variable and the weights in cache, a sweep over
// columns all of the data.
template <class T>
int sum_block_size(const KernelArgs<T>& args, bool rows) {
  constexpr int cached = 0x4000 / int(sizeof(T)), least = 16;
  if (rows) return cached;
  return cached / args.p < least ? least : cached / args.p;
}

// Raw moments are turned into sums, the range is added, and they are turned back.
template <class T, bool rows, bool weighted, class O, bool>
void kernel_Fast(const KernelArgs<T>& args) {
  const int begin = first_observation<weighted>(args), block = sum_block_size(args, rows);
  if (begin >= args.end) return;
  const State state(args, O::arrays() | (O::kCentral ? 1u << kMean : 0));
  const double& W = args.accumulator[0];
  if (W > 0) state.scale(O::raw_arrays(), W);
  for (int first = begin, count; first < args.end; first += count) {
    count = args.end - first < block ? args.end - first : block;
    sum_block<O, rows, weighted>(args, first, count, state);
  }
  if (W > 0) state.scale(O::raw_arrays(), 1 / W);
  state.store(args, O::arrays());
}

template <class T, bool rows, bool weighted, class O, bool>
void kernel_2p(const KernelArgs<T>& args) {
  kernel_Fast<T, rows, weighted, O, false>(args);
}

// ---- one-pass kernels: recurrences over the observations ----
//
// With the weight w of an observation x, W the sum of those before it, a = 1/(w + W), r = w a, q = W a and
// d = x - mean:
//
//   cross-products   c(j, k) += t2 d(j) d(k)                            t2 = r W
//   central 4        c4 += t4 d^4 + 6 r^2 d^2 c2 - 4 r d c3             t4 = a^2 t2 (W^2 - (W - w) w)
//   central 3        c3 += t3 d^3 - 3 r d c2                            t3 = a t2 (W - w)
//   central 2        c2 += t2 d^2
//   raw k, mean      raw = r x^k + q raw
//
// all on the right being what was before the observation (West 1979, Pebay 2008). Over a block the mean is
// carried as the sum S of w (x - mean at the block's start), so that the running mean, which the distances
// need, is one product S/W off the chain of additions; raw moments are carried as sums too. Both go into the
// moments by their difference from them, which costs half a unit in the last place for a block.

// What the recurrences need of each observation of a block; `inverse` is 1/W, or 0 where W is 0.
struct Coefficients {
  static constexpr int kBlock = 128;
  double w[kBlock], inverse[kBlock], r[kBlock], t2[kBlock], t3[kBlock], t4[kBlock];
  double W_before, W_after;

  template <bool weighted, class T>
  void fill(const KernelArgs<T>& args, int first, int count) {
    double before[kBlock];
    double W = args.accumulator[0], squares = args.accumulator[1];
    W_before = W;
    for (int i = 0; i < count; ++i) {
      w[i] = weighted ? double(args.weights[first + i]) : 1;
      before[i] = W;
      W += w[i];
      squares += w[i] * w[i];
    }
    args.accumulator[0] = W_after = W;
    args.accumulator[1] = squares;
    for (int i = 0; i < count; ++i) {
      const double wi = w[i], Wi = before[i], a = 1 / (wi + Wi);
      inverse[i] = 1 / Wi;
      r[i] = wi * a;
      t2[i] = r[i] * Wi;
      t3[i] = a * t2[i] * (Wi - wi);
      t4[i] = a * a * t2[i] * (Wi * Wi - (Wi - wi) * wi);
    }
    if (before[0] == 0) inverse[0] = 0;
  }
};

// Numbers of a block four by four, from one observation to the next `stride` apart.
template <class Real>
struct PanelOf {
  Real* x;
  intptr_t stride;
};
using Panel = PanelOf<const double>;

// The panel of four variables from j on: in place where it lies in memory as doubles side by side, else
// copied.
template <bool rows, class T>
Panel data_panel(const KernelArgs<T>& args, int first, int count, int j, double* copy) {
  const int lanes = args.p - j < 4 ? args.p - j : 4;
  if constexpr (rows) {
    panel_from_rows(args.x + intptr_t(j) * args.n + first, args.n, lanes, count, copy);
  } else {
    const T* x = args.x + intptr_t(first) * args.p + j;
    if constexpr (sizeof(T) == sizeof(double))
      if (lanes == 4) return {x, args.p};
    panel_from_columns(x, args.p, lanes, count, copy);
  }
  return {copy, 4};
}

// Where a sweep leaves the distances from the running mean for the later ones. For cross-products they are
// laid out in the order in which those will read them: in panels of eight variables, and times t2 in panels
// of two.
struct Distances {
  enum class Kind { None, Plain, Cross };
  static constexpr int kBlock = Coefficients::kBlock;

  double *panels, *scaled;

  static int64_t size(int p, Kind kind) {
    return kind == Kind::Cross ? int64_t(kBlock) * (((p + 7) & ~7) + padded(p)) : int64_t(kBlock) * 4;
  }
  Distances(double* memory, int p, Kind kind)
      : panels(memory), scaled(memory + (kind == Kind::Cross ? intptr_t((p + 7) & ~7) * kBlock : 0)) {
    // The upper half of the last panel may have no variables.
    if (kind == Kind::Cross && padded(p) % 8 != 0)
      for (double* x = scaled - 8 * kBlock + 4; x < scaled; x += 8) _mm256_store_pd(x, _mm256_setzero_pd());
  }
  // Those of the four variables from j on.
  template <Kind kind>
  PanelOf<double> at(int j) const {
    if constexpr (kind == Kind::Cross) return {panels + intptr_t(j & ~7) * kBlock + (j & 7), 8};
    return {panels, 4};
  }
  double* scaled_at(int j) const { return scaled + intptr_t(j) * kBlock; }
};

// Mean and raw moments to order raw_to; the distances from the running mean are left behind.
template <int raw_to, bool weighted, Distances::Kind kind>
void update_raw(Panel x, int count, const Coefficients& c, double* mean, int size, const Distances& distances,
                int j) {
  double *distance = distances.at<kind>(j).x, *scaled = distances.scaled_at(j);
  // Before the first observation any number serves for the mean: it has no part in the sums.
  const __m256d start = c.W_before == 0 ? load4(x.x) : _mm256_load_pd(mean);
  __m256d sum[raw_to];
  for (int k = 0; k < raw_to; ++k) sum[k] = _mm256_setzero_pd();
  for (int i = 0; i < count; ++i, x.x += x.stride) {
    const __m256d v = load4(x.x), w = weighted ? _mm256_set1_pd(c.w[i]) : v, shifted = v - start;
    if constexpr (kind != Distances::Kind::None) {
      const __m256d d = shifted - sum[0] * _mm256_set1_pd(c.inverse[i]);
      _mm256_store_pd(distance, d);
      distance += kind == Distances::Kind::Cross ? 8 : 4;
      if constexpr (kind == Distances::Kind::Cross) {
        const __m256d e = _mm256_set1_pd(c.t2[i]) * d;
        _mm_store_pd(scaled + 2 * i, _mm256_castpd256_pd128(e));
        _mm_store_pd(scaled + 2 * (i + Distances::kBlock), _mm256_extractf128_pd(e, 1));
      }
    }
    sum[0] += weighted ? w * shifted : shifted;
    __m256d power = weighted ? w * v : v;
    for (int k = 1; k < raw_to; ++k) sum[k] += power *= v;
  }
  const __m256d share = _mm256_set1_pd(c.W_after - c.W_before), W = _mm256_set1_pd(c.W_after);
  _mm256_store_pd(mean, start + sum[0] / W);
  for (int k = 1; k < raw_to; ++k) {
    double* moment = mean + intptr_t(k) * size;
    const __m256d before = _mm256_load_pd(moment);
    _mm256_store_pd(moment, before + (sum[k] - share * before) / W);
  }
}

// Central sums to order central_to from the distances.
template <int central_to>
void update_central(PanelOf<double> distance, int count, const Coefficients& c, double* central2, int size) {
  double *central3 = central2 + size, *central4 = central3 + size;
  __m256d c2 = _mm256_load_pd(central2), c3{}, c4{};
  if constexpr (central_to >= 3) c3 = _mm256_load_pd(central3);
  if constexpr (central_to >= 4) c4 = _mm256_load_pd(central4);
  for (int i = 0; i < count; ++i, distance.x += distance.stride) {
    const __m256d d = _mm256_load_pd(distance.x), d2 = d * d;
    if constexpr (central_to >= 3) {
      const __m256d e = _mm256_set1_pd(c.r[i]) * d, f = e * c2 * _mm256_set1_pd(3);
      if constexpr (central_to >= 4) c4 += _mm256_set1_pd(c.t4[i]) * d2 * d2 + (e + e) * (f - (c3 + c3));
      c3 += _mm256_set1_pd(c.t3[i]) * d2 * d - f;
    }
    c2 += _mm256_set1_pd(c.t2[i]) * d2;
  }
  _mm256_store_pd(central2, c2);
  if constexpr (central_to >= 3) _mm256_store_pd(central3, c3);
  if constexpr (central_to >= 4) _mm256_store_pd(central4, c4);
}

// ---- one-pass kernels: cross-products ----

// Keeps a value in a register: compilers would rather load it once for each use, or load the next one early,
// than leave the running sums where they are.
inline void pin(__m256d& x) { __asm__("" : "+x"(x)); }

// Two rows by eight columns of cross-products, c(j, k) += sum of scaled(i, j) distance(i, k): with eight
// registers, the shape with the fewest loads per product.
inline void sum_tile(const double* scaled, const double* distance, int count, double* tile) {
  __m256d sum[2][2];
  for (auto& row : sum) row[0] = row[1] = _mm256_setzero_pd();
#pragma GCC unroll 2  // a loop of this size runs at half speed where it lies badly across cache lines
  for (int i = 0; i < count; ++i, scaled += 2, distance += 8) {
    __m256d d0 = _mm256_load_pd(distance), d1 = _mm256_load_pd(distance + 4);
    pin(d0);
    pin(d1);
    for (int row = 0; row < 2; ++row) {
      __m256d s = _mm256_set1_pd(scaled[row]);
      pin(s);
      sum[row][0] += s * d0;
      sum[row][1] += s * d1;
    }
  }
  for (int row = 0; row < 2; ++row) {
    _mm256_store_pd(tile + 8 * row, sum[row][0]);
    _mm256_store_pd(tile + 8 * row + 4, sum[row][1]);
  }
}

// Asks for the next block of the data line by line, while there is much else to do: asked for all at once,
// the lines would keep the loads after them waiting.
template <bool rows, class T>
class NextBlock {
 public:
  NextBlock(const KernelArgs<T>& args, int first) : stride_(args.n * intptr_t(sizeof(T))) {
    const int left = args.end - first, count = left < Coefficients::kBlock ? left : Coefficients::kBlock;
    if (count <= 0) return;
    at_ = reinterpret_cast<const char*>(args.x + first * intptr_t(rows ? 1 : args.p));
    rows_ = rows ? args.p : 1;
    row_size_ = (rows ? 1 : args.p) * count * int(sizeof(T));
  }
  int lines() const { return rows_ * (row_size_ / kLine + 1); }
  void ask(int count) {
    for (; count > 0 && rows_ > 0; --count) {
      _mm_prefetch(at_ + offset_, _MM_HINT_T1);
      offset_ += kLine;
      if (offset_ < row_size_) continue;
      offset_ = 0;
      at_ += stride_;
      --rows_;
    }
  }

 private:
  static constexpr int kLine = 64;
  const char* at_ = nullptr;
  intptr_t stride_;
  int rows_ = 0, row_size_ = 0, offset_ = 0;
};

template <bool rows, class T>
void update_cross(const KernelArgs<T>& args, int count, const Distances& distances, NextBlock<rows, T> next) {
  const int p = args.p, lines = int(next.lines() / (int64_t(p) * p / 32 + 1)) + 1;
  alignas(32) double tile[16];
  // A panel of distances stays in the first-level cache while all rows go by.
  for (int k = 0; k < p; k += 8)
    for (int j = k; j < p; j += 2) {
      next.ask(lines);
      sum_tile(distances.scaled_at(j), distances.at<Distances::Kind::Cross>(k).x, count, tile);
      const int columns = p - k < 8 ? p - k : 8;
      for (int row = 0; row < 2 && j + row < p; ++row) {
        T* products = args.cross + intptr_t(j + row) * p + k;
        const double* sums = tile + 8 * row;
        if (columns == 8) {
          store4(products, load4(products) + _mm256_load_pd(sums));
          store4(products + 4, load4(products + 4) + _mm256_load_pd(sums + 4));
        } else {
          for (int m = 0; m < columns; ++m) products[m] += T(sums[m]);
        }
      }
    }
}

template <class T, bool rows, bool weighted, class O, bool cross>
void kernel_1p(const KernelArgs<T>& args) {
  using Kind = Distances::Kind;
  // Cross-products gain from long blocks, the sweeps alone do not.
  constexpr int block = cross ? Coefficients::kBlock : Coefficients::kBlock / 2;
  constexpr Kind kind = cross ? Kind::Cross : O::kCentral ? Kind::Plain : Kind::None;
  const int begin = first_observation<weighted>(args);
  if (begin >= args.end) return;
  const State state(args, O::arrays());
  const Distances distances(state[kArrayCount], args.p, kind);
  Coefficients coefficients;
  alignas(32) double copy[4 * block];
  for (int first = begin, count; first < args.end; first += count) {
    count = args.end - first < block ? args.end - first : block;
    coefficients.fill<weighted>(args, first, count);
    for (int j = 0; j < args.p; j += 4) {
      update_raw<O::kRawTo, weighted, kind>(data_panel<rows>(args, first, count, j, copy), count,
                                            coefficients, state[kMean] + j, state.row_size(), distances, j);
      if constexpr (O::kCentral)
        update_central<O::kCentralTo>(distances.at<kind>(j), count, coefficients, state[kCentral2] + j,
                                      state.row_size());
    }
    if constexpr (cross) update_cross<rows>(args, count, distances, NextBlock<rows, T>(args, first + count));
  }
  state.store(args, O::arrays());
}

// The doubles of work that a kernel for p variables needs.
inline int64_t work_size(int p, bool one_pass_cross) {
  return int64_t(padded(p)) * kArrayCount +
         Distances::size(p, one_pass_cross ? Distances::Kind::Cross : Distances::Kind::Plain);
}

}  // namespace orx::ss::basic
