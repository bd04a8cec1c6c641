// The kernels of the basic statistics: each adds a range of observations to a worker's sums.
//
// Whatever the data are, a kernel computes in double precision. Observations are taken by blocks, so that each
// variable (rows) or group of four variables (columns) can be swept with its sums in registers. Eight vector
// registers are all there are on the 32-bit target: no sweep has more than four sums.
#pragma once

#include <algorithm>
#include <cstdint>

#include "orx/base/simd/lanes.hpp"

namespace orx::ss::basic {

using namespace simd;

// The running arrays of a computation. Raw moments are sums of powers in the Fast and the two-pass kernels; central
// ones are sums everywhere.
enum { kMean, kRaw2, kRaw3, kRaw4, kCentral2, kCentral3, kCentral4, kArrayCount };

constexpr int raw_array(int order) { return kMean + order - 1; }
constexpr int central_array(int order) { return kCentral2 + order - 2; }

// What a worker has beside them: what rounding left over of the one-pass results, and sums over a block.
enum {
  kMeanLow = kArrayCount,
  kCentral2Low,
  kCentral3Low,
  kCentral4Low,
  kBlockSums,
  kRowCount = kBlockSums + 4
};

constexpr int central_low(int order) { return kCentral2Low + order - 2; }

// The orders that a kernel computes: raw moments raw_from to raw_to, central ones 2 to central_to.
template <int raw_from, int raw_to, int central_to>
struct Orders {
  static constexpr int kRawFrom = raw_from, kRawTo = raw_to, kCentralTo = central_to;
  static constexpr bool kRaw = kRawFrom <= kRawTo, kCentral = kCentralTo >= 2;
};

constexpr int padded(int p) { return (p + 3) & ~3; }

// The rows of a worker, each padded to a multiple of four, aligned to 32 bytes.
class State {
 public:
  State(double* rows, int p) : rows_(rows), size_(padded(p)) {}
  double* operator[](int k) const { return rows_ + intptr_t(k) * size_; }
  int row_size() const { return size_; }
  static int64_t size(int p) { return int64_t(kRowCount) * padded(p); }

 private:
  double* rows_;
  int size_;
};

template <class T>
struct KernelArgs {
  int first, end;  // of the n observations
  int n, p;
  const T* x;
  const T* weights;
  double* accumulator;  // W, the sum of weights; W2, the sum of their squares; two words that stay 0
  double* rows;         // of the state; the two-pass kernels find the given mean there
  double* distances;    // work for cross-products
  T* cross;             // p by p: the lower triangle by rows; what lies above the diagonal may be overwritten

  State state() const { return {rows, p}; }
};

template <class T>
using Kernel = void (*)(const KernelArgs<T>&);

// Indexed by storage (rows, columns), weights (none, given), class 0 to 3 and, for one pass, cross-products.
template <class T>
struct KernelTables {
  Kernel<T> one_pass[32], two_pass[16], fast[16];
};

// The first observation that counts: leading weights of exactly zero are passed over.
template <bool weighted, class T>
int first_observation(const KernelArgs<T>& args) {
  int i = args.first;
  if constexpr (weighted)
    while (i < args.end && args.weights[i] == 0) ++i;
  return i;
}

// ---- sums of powers ----

// Sums of w v^k for k = from to to, by lanes; v = x or the distance of x from a centre. Where the powers are few,
// several sets of sums run side by side: an addition takes longer than what it waits for.
template <int from, int to, bool centred, bool weighted>
struct PowerSums {
  static constexpr int kTerms = to - from + 1, kSets = kTerms == 1 ? 4 : kTerms == 2 && centred ? 2 : 1;
  Doubles sum[kSets][kTerms];

  PowerSums() {
    for (auto& set : sum)
      for (Doubles& s : set) s = Doubles{};
  }
  void add(int set, Doubles v, Doubles w) {
    Doubles power = weighted ? w * v : v;
    for (int k = 1; k < from; ++k) power *= v;
    sum[set][0] += power;
    for (int k = 1; k < kTerms; ++k) sum[set][k] += power *= v;
  }
  Doubles total(int k) const {
    Doubles all = sum[0][k];
    for (int set = 1; set < kSets; ++set) all += sum[set][k];
    return all;
  }
};

// Additions in one chain. On data that lie on a coarse grid the roundings of many squares all go one way, for odd
// squares are 1 modulo 8.
constexpr int kChain = 64;

// One variable whose observations lie side by side: the sums are added to sums[0], sums[size], ...
template <int from, int to, bool centred, bool weighted, class T>
void sum_row(const T* x, const T* w, int count, double centre, double* sums, int size) {
  using Sums = PowerSums<from, to, centred, weighted>;
  constexpr int step = 4 * Sums::kSets, piece = centred ? kChain * step : INT32_MAX - step;
  const Doubles middle = spread(centre);
  Doubles total[Sums::kTerms] = {};
  for (int i = 0; i < count;) {
    Sums running;
    const int end = count - i < piece ? count : i + piece;
    const auto add = [&](int set, int at) {
      const Doubles v = centred ? load4(x + at) - middle : load4(x + at);
      running.add(set, v, weighted ? load4(w + at) : v);
    };
    for (; end - i >= step; i += step)
      for (int set = 0; set < Sums::kSets; ++set) add(set, i + 4 * set);
    for (; end - i >= 4; i += 4) add(0, i);
    if (i < end) {
      const Doubles mask = first_four(end - i);
      const Doubles v = centred ? keep(load4(x + i, mask) - middle, mask) : load4(x + i, mask);
      running.add(0, v, weighted ? load4(w + i, mask) : v);
      i = end;
    }
    for (int k = 0; k < Sums::kTerms; ++k) total[k] += running.total(k);
  }
  for (int k = 0; k < Sums::kTerms; ++k) sums[intptr_t(k) * size] += sum4(total[k]);
}

// Four variables that lie side by side, or `lanes` of them. Two leave room for those of the next observation.
template <int from, int to, bool centred, bool weighted, class T>
void sum_columns(const T* x, intptr_t stride, int lanes, const T* w, int count, const double* centre,
                 double* sums, int size) {
  using Sums = PowerSums<from, to, centred, weighted>;
  Sums running;
  const bool pairs = lanes == 2;
  const Doubles mask = first_four(lanes);
  Doubles middle = centred ? load<Doubles, true>(centre) : Doubles{};
  if (pairs) middle = lower_twice(middle);
  const auto weight = [&](int i) { return weighted ? spread(w[i]) : middle; };
  const auto pair_weight = [&](int i) { return weighted ? each_twice(w[i], w[i + 1]) : middle; };
  int i = 0;
  const auto sweep = [&](auto sets, int step, auto load, auto weight_at) {
    for (; i + sets * step <= count; i += sets * step)
      for (int set = 0; set < sets; ++set, x += step * stride) {
        running.add(set, centred ? load() - middle : load(), weight_at(i + set * step));
      }
  };
  constexpr std::integral_constant<int, 1> one;
  constexpr std::integral_constant<int, Sums::kSets> all;
  if (lanes == 4)
    sweep(
        all, 1, [&] { return load4(x); }, weight);
  if (pairs)
    sweep(
        all, 2, [&] { return load2x2(x, x + stride); }, pair_weight);
  if (pairs) middle = keep(middle, mask);
  sweep(
      one, 1, [&] { return load4(x, mask); }, weight);
  for (int k = 0; k < running.kTerms; ++k, sums += size) {
    const Doubles sum = pairs ? fold(running.total(k)) : running.total(k);
    store<true>(sums, load<Doubles, true>(sums) + sum);
  }
}

// All variables over one block of observations; centres and sums in rows of a state.
template <int from, int to, bool centred, bool rows, bool weighted, class T>
void sum_block(const KernelArgs<T>& args, int first, int count, const double* centre, double* sums) {
  const int size = padded(args.p);
  const T* w = weighted ? args.weights + first : nullptr;
  if (rows || args.p == 1) {
    const T* x = args.x + first;
    for (int j = 0; j < args.p; ++j, x += args.n)
      sum_row<from, to, centred, weighted>(x, w, count, centre[j], sums + j, size);
  } else {
    const T* x = args.x + intptr_t(first) * args.p;
    for (int j = 0; j < args.p; j += 4)
      sum_columns<from, to, centred, weighted>(x + j, args.p, args.p - j < 4 ? args.p - j : 4, w, count,
                                               centre + j, sums + j, size);
  }
}

// The weights of a block: their sum and that of their squares.
struct Weights {
  double sum, squares;
};

template <bool weighted, class T>
Weights block_weights(const KernelArgs<T>& args, int first, int count) {
  if constexpr (!weighted) return {double(count), double(count)};
  double sums[2] = {0, 0};
  sum_row<1, 2, false, false>(args.weights + first, args.weights, count, 0, sums, 1);
  return {sums[0], sums[1]};
}

inline void add_weights(double* accumulator, Weights w) {
  accumulator[0] += w.sum;
  accumulator[1] += w.squares;
}

// The observations of a block. A sweep over columns has all of the data in the first-level cache, or at least what its
// own variables share cache lines with; one over rows but one variable and the weights: its blocks are long, for between
// them the processor's own prefetching starts anew.
template <class T>
int sum_block_size(const KernelArgs<T>& args, bool rows) {
  constexpr int least = 16, cached = 0x4000 / int(sizeof(T));
  if (rows) return 4 * cached;
  return cached / args.p < least ? least : cached / args.p;
}

// Calls f(first, count) for the blocks of a range.
template <class F>
void each_block(int begin, int end, int block, F f) {
  for (int first = begin, count; first < end; first += count) {
    count = end - first < block ? end - first : block;
    f(first, count);
  }
}

// ---- Fast and two-pass kernels ----

template <class T, bool rows, bool weighted, class O, bool>
void kernel_Fast(const KernelArgs<T>& args) {
  const State state = args.state();
  each_block(first_observation<weighted>(args), args.end, sum_block_size(args, rows),
             [&](int first, int count) {
               if constexpr (O::kRaw)
                 sum_block<O::kRawFrom, O::kRawTo, false, rows, weighted>(args, first, count, state[kMean],
                                                                          state[raw_array(O::kRawFrom)]);
               if constexpr (O::kCentral)
                 sum_block<2, O::kCentralTo, true, rows, weighted>(args, first, count, state[kMean],
                                                                   state[kCentral2]);
               add_weights(args.accumulator, block_weights<weighted>(args, first, count));
             });
}

template <class T, bool rows, bool weighted, class O, bool>
void kernel_2p(const KernelArgs<T>& args) {
  kernel_Fast<T, rows, weighted, O, false>(args);
}

// ---- one-pass kernels ----
//
// The powers of a block are summed about the mean of all before it, rounded, and turned into central sums of the
// block by the binomial theorem; these are merged with the running ones (P. Pebay, Formulas for robust, one-pass
// parallel computation of covariances and arbitrary-order statistical moments, SAND2008-6212). As the centre is
// near the data, little cancels; the mean and the sums carry along what rounding leaves over. For covariance the
// block's two corrections are two more observations: one takes the sums from the centre to the mean of the block,
// one adds the distance between the means.

// a + b and what rounding left over of it (D. Knuth).
inline Doubles add_exactly(Doubles a, Doubles b, Doubles& rest) {
  const Doubles sum = a + b, part = sum - a;
  rest = (a - (sum - part)) + (b - part);
  return sum;
}

inline Doubles row_at(const State& state, int k, int j) { return load<Doubles, true>(state[k] + j); }

inline void add_to_sum(const State& state, int k, int low, int j, Doubles increment) {
  Doubles rest;
  store<true>(state[k] + j, add_exactly(row_at(state, k, j), increment, rest));
  store<true>(state[low] + j, row_at(state, low, j) + rest);
}

// The running mean stays finite, so that it can be subtracted: what is infinite or not a number goes into its rest, and
// is there when both are added.
inline Doubles finite_rest(const State& state, int j) {
  const Doubles rest = row_at(state, kMeanLow, j);
  return rest - rest == Doubles{} ? rest : Doubles{};
}

inline void add_to_mean(const State& state, int j, Doubles increment) {
  const Doubles mean = row_at(state, kMean, j), more = row_at(state, kMeanLow, j) + increment;
  Doubles rest;
  const Doubles sum = add_exactly(mean, more, rest);
  const auto finite = sum - sum == Doubles{};
  store<true>(state[kMean] + j, finite ? sum : mean);
  store<true>(state[kMeanLow] + j, finite ? rest : more);
}

// Central sums of some data.
struct CentralSums {
  Doubles c2, c3, c4;
};

// Folds data of weight Wb, whose mean is that of the state plus `delta`, into the four variables from j on, which have
// the weight Wa.
template <int order>
void fold_moments(const State& state, int j, double Wa, double Wb, Doubles delta, const CentralSums& b) {
  const double s = 1 / (Wa + Wb);
  const Doubles e = s * delta;
  if constexpr (order >= 2) {
    const Doubles c2 = row_at(state, kCentral2, j);
    if constexpr (order >= 4) {
      const Doubles c3 = row_at(state, kCentral3, j);
      const Doubles quadratic =
          Wa * (((Wa - Wb) * Wa + Wb * Wb) * (Wb * delta * e) + 6 * Wa * b.c2) + 6 * Wb * Wb * c2;
      add_to_sum(state, kCentral4, kCentral4Low, j, b.c4 + e * (e * quadratic + 4 * (Wa * b.c3 - Wb * c3)));
    }
    if constexpr (order >= 3)
      add_to_sum(state, kCentral3, kCentral3Low, j,
                 b.c3 + Wa * Wb * (Wa - Wb) * delta * e * e + 3 * e * (Wa * b.c2 - Wb * c2));
    add_to_sum(state, kCentral2, kCentral2Low, j, b.c2 + Wa * Wb * e * delta);
  }
  add_to_mean(state, j, Wb * e);
}

// A block whose powers about the running mean, rounded, are summed up: where its own mean lies from that, and its
// central sums about it.
template <int order>
Doubles central_sums(const Doubles* s, double Wb, CentralSums& b) {
  const Doubles d = s[0] / Wb;
  if constexpr (order >= 2) b.c2 = s[1] - s[0] * d;
  if constexpr (order >= 3) b.c3 = s[2] - d * (3 * s[1] - 2 * d * s[0]);
  if constexpr (order >= 4) b.c4 = s[3] - d * (4 * s[2] - d * (6 * s[1] - 3 * d * s[0]));
  return d;
}

// Before the first block the mean is that of some observations spread over the range: no trend of the data, nor a few
// that lie far off, take it far from the mean of all.
template <bool rows, bool weighted, class T>
void start_mean(const KernelArgs<T>& args, int begin) {
  constexpr int most = 64;
  double* const mean = args.state()[kMean];
  const int count = args.end - begin, step = count <= most ? 1 : count / most;
  for (int j = 0; j < args.p; ++j) {
    const T* x = args.x + (rows ? intptr_t(j) * args.n : j);
    const auto value = [&](int i) { return double(x[intptr_t(i) * (rows ? 1 : args.p)]); };
    const double start = value(begin);
    double sum = 0, weight = 0;
    for (int k = 0; k < count / step; ++k) {
      const int i = begin + k * step;
      const double w = weighted ? double(args.weights[i]) : 1;
      sum += w * (value(i) - start);
      weight += w;
    }
    const double near = start + sum / weight;
    mean[j] = near - near == 0 ? near : start - start == 0 ? start : 0;  // not infinity, nor NaN
  }
}

template <class T, bool rows, bool weighted, int order>
void one_pass_moments(const KernelArgs<T>& args, int begin) {
  const State state = args.state();
  // Columns: as many observations as the chains of all sets of sums take, if the cache does. The mean alone waits for
  // memory, and the less so the sooner the first variables ask for the next lines.
  constexpr int chains = order == 1 ? kChain / 2 : kChain * PowerSums<1, order, true, weighted>::kSets;
  const bool in_row = rows || args.p == 1;
  const int cached = sum_block_size(args, in_row),
            block = in_row ? cached : std::clamp(cached, std::min(kChain, chains), chains);
  each_block(begin, args.end, block, [&](int first, int count) {
    sum_block<1, order, true, rows, weighted>(args, first, count, state[kMean], state[kBlockSums]);
    const Weights w = block_weights<weighted>(args, first, count);
    const double W = args.accumulator[0];
    for (int j = 0; j < args.p; j += 4) {
      Doubles sums[order];
      for (int k = 0; k < order; ++k) {
        sums[k] = row_at(state, kBlockSums + k, j);
        store<true>(state[kBlockSums + k] + j, Doubles{});
      }
      if (w.sum == 0) continue;
      CentralSums b;
      const Doubles d = central_sums<order>(sums, w.sum, b);
      fold_moments<order>(state, j, W, w.sum, d - finite_rest(state, j), b);
    }
    add_weights(args.accumulator, w);
  });
}

// ---- one-pass kernels: cross-products ----

// Numbers of a block four by four, from one observation to the next `stride` apart.
struct Panel {
  const double* x;
  intptr_t stride;
};

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

// The distances from the centre in the order in which the products read them: in panels of eight variables, and times
// their weights in panels of two. Two more observations hold the corrections.
class Distances {
 public:
  static constexpr int kBlock = 128, kRows = kBlock + 2;

  static int64_t size(int p) { return int64_t(kRows) * (padded_to_8(p) + padded(p)); }
  Distances(double* memory, int p) : panels_(memory), scaled_(memory + intptr_t(padded_to_8(p)) * kRows) {
    // The upper half of the last panel may have no variables.
    if (padded(p) % 8 != 0)
      for (double* x = scaled_ - 8 * kRows + 4; x < scaled_; x += 8) store<true>(x, Doubles{});
  }
  const double* panel(int j) const { return panels_ + intptr_t(j & ~7) * kRows; }
  const double* scaled(int j) const { return scaled_ + intptr_t(j) * kRows; }
  // Observation i of the four variables from j on.
  void set(int j, int i, Doubles distance, Doubles scaled) const {
    store<true>(panels_ + intptr_t(j & ~7) * kRows + (j & 7) + 8 * i, distance);
    double* low = scaled_ + intptr_t(j) * kRows + 2 * i;
    store2x2(low, low + 2 * kRows, scaled);
  }

 private:
  static int padded_to_8(int p) { return (p + 7) & ~7; }
  double *panels_, *scaled_;
};

// Sums the powers of four variables and leaves their distances behind.
template <int order, bool weighted, class T>
void sweep_panel(Panel x, int count, const T* w, Doubles centre, const Distances& distances, int j,
                 Doubles* sums) {
  PowerSums<1, order, true, weighted> running;
  for (int i = 0; i < count; ++i, x.x += x.stride) {
    const Doubles v = load4(x.x) - centre, weight = weighted ? spread(w[i]) : v;
    distances.set(j, i, v, weighted ? weight * v : v);
    running.add(0, v, weight);
  }
  for (int k = 0; k < order; ++k) sums[k] = running.sum[0][k];
}

// Two rows by eight columns of cross-products, c(j, k) += sum of scaled(i, j) distance(i, k): with eight
// registers, the shape with the fewest loads per product.
inline void sum_tile(const double* scaled, const double* distance, int count, double* tile) {
  Doubles sum[2][2];
  for (auto& row : sum) row[0] = row[1] = Doubles{};
#pragma GCC unroll 2  // a loop of this size runs at half speed where it lies badly across cache lines
  for (int i = 0; i < count; ++i, scaled += 2, distance += 8) {
    Doubles d0 = load<Doubles, true>(distance), d1 = load<Doubles, true>(distance + 4);
    pin(d0);
    pin(d1);
    for (int row = 0; row < 2; ++row) {
      Doubles s = spread(scaled[row]);
      pin(s);
      sum[row][0] += s * d0;
      sum[row][1] += s * d1;
    }
  }
  for (int row = 0; row < 2; ++row) {
    store<true>(tile + 8 * row, sum[row][0]);
    store<true>(tile + 8 * row + 4, sum[row][1]);
  }
}

// Asks for the next block of the data line by line, while there is much else to do: asked for all at once,
// the lines would keep the loads after them waiting.
template <bool rows, class T>
class NextBlock {
 public:
  NextBlock(const KernelArgs<T>& args, int first) : stride_(args.n * intptr_t(sizeof(T))) {
    const int left = args.end - first, count = left < Distances::kBlock ? left : Distances::kBlock;
    if (count <= 0) return;
    at_ = reinterpret_cast<const char*>(args.x + first * intptr_t(rows ? 1 : args.p));
    rows_ = rows ? args.p : 1;
    row_size_ = (rows ? 1 : args.p) * count * int(sizeof(T));
  }
  int lines() const { return rows_ * (row_size_ / kLine + 1); }
  void ask(int count) {
    for (; count > 0 && rows_ > 0; --count) {
      prefetch_far(at_ + offset_);
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
      sum_tile(distances.scaled(j), distances.panel(k), count, tile);
      const int columns = p - k < 8 ? p - k : 8;
      for (int row = 0; row < 2 && j + row < p; ++row) {
        T* products = args.cross + intptr_t(j + row) * p + k;
        const double* sums = tile + 8 * row;
        if (columns == 8) {
          store4(products, load4(products) + load<Doubles, true>(sums));
          store4(products + 4, load4(products + 4) + load<Doubles, true>(sums + 4));
        } else {
          for (int m = 0; m < columns; ++m) products[m] += T(sums[m]);
        }
      }
    }
}

template <class T, bool rows, bool weighted, int order>
void one_pass_cross(const KernelArgs<T>& args, int begin) {
  const State state = args.state();
  const Distances distances(args.distances, args.p);
  alignas(32) double copy[4 * Distances::kBlock];
  each_block(begin, args.end, Distances::kBlock, [&](int first, int count) {
    const Weights w = block_weights<weighted>(args, first, count);
    const double Wa = args.accumulator[0], Wb = w.sum, h = Wa == 0 ? 0 : Wa * Wb / (Wa + Wb);
    for (int j = 0; j < args.p; j += 4) {
      Doubles sums[order], d{}, delta{};
      sweep_panel<order, weighted>(data_panel<rows>(args, first, count, j, copy), count,
                                   weighted ? args.weights + first : nullptr, row_at(state, kMean, j),
                                   distances, j, sums);
      if (Wb != 0) {
        CentralSums b;
        d = central_sums<order>(sums, Wb, b);
        delta = d - finite_rest(state, j);
        fold_moments<order>(state, j, Wa, Wb, delta, b);
      }
      distances.set(j, count, d, -Wb * d);
      distances.set(j, count + 1, delta, h * delta);
    }
    update_cross<rows>(args, count + 2, distances, NextBlock<rows, T>(args, first + count));
    add_weights(args.accumulator, w);
  });
}

template <class T, bool rows, bool weighted, class O, bool cross>
void kernel_1p(const KernelArgs<T>& args) {
  constexpr int order = O::kCentral ? O::kCentralTo : 1;
  const int begin = first_observation<weighted>(args);
  if (begin >= args.end) return;
  start_mean<rows, weighted>(args, begin);
  if constexpr (cross)
    one_pass_cross<T, rows, weighted, order>(args, begin);
  else
    one_pass_moments<T, rows, weighted, order>(args, begin);
}

}  // namespace orx::ss::basic
