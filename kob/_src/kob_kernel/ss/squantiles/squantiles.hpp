// Quantiles of a stream to a rank error of eps, in memory that grows as the logarithm of its length.
//
// Each variable has a row of blocks for more and more data: block k takes about 2^(k+1)/eps observations. A
// block has levels: level 0 collects raw values; when it is full every second one of it, in order, makes a
// summary, and two summaries of a level are merged and thinned into one of the next, as bits carry in a
// binary counter. Each element of a summary keeps bounds of its rank (Zhang & Wang, A fast algorithm for
// approximate quantiles in high speed data streams, SSDBM 2007; Greenwald & Khanna, Space-efficient online
// computation of quantile summaries, SIGMOD 2001).
#pragma once

#include "_math/scalar.hpp"
#include "_math/sort.hpp"
#include "orx/base/first_failure.hpp"
#include "orx/base/memory.hpp"
#include "orx/base/threading.hpp"
#include "radix.hpp"
#include "squantiles/state.hpp"
#include "squantiles/summary.hpp"
#include "ss_task.hpp"

namespace orx::ss::squantiles {

// Rows for `places` elements in one block of memory.
template <class T>
class Rows {
 public:
  bool allocate(int64_t places) {
    if (!memory_.allocate(places * int(sizeof(T) + 2 * sizeof(int)))) return false;
    values_ = reinterpret_cast<T*>(memory_.get());
    r_min_ = reinterpret_cast<int*>(values_ + places);
    r_max_ = r_min_ + places;
    return true;
  }
  Summary<T> at(intptr_t place) const { return Summary<T>::in(values_, r_min_, r_max_, place); }

 private:
  Block<char> memory_;
  T* values_ = nullptr;
  int *r_min_ = nullptr, *r_max_ = nullptr;
};

// ---- levels ----

// Row 0 holds raw values, the rows above it a summary each.
template <class T>
T* ground(const StreamBlock& block) {
  return static_cast<T*>(block.values);
}

template <class T>
Summary<T> level(const StreamBlock& block, int l) {
  return Summary<T>::in(ground<T>(block), block.rMin, block.rMax, intptr_t(l) * (block.levelSize + 1));
}

// The elements of a summary.
inline int half_size(const StreamBlock& block) { return block.levelSize / 2; }

// Without memory for the faster sort the values are sorted in place.
template <class T>
void sort_ground(const StreamBlock& block) {
  Block<T> work(block.fill);
  if (work)
    radix_sort(ground<T>(block), work.get(), block.fill);
  else
    sorting::sort(ground<T>(block), block.fill, sorting::Contiguous());
}

// ---- adding data ----

template <class T>
struct Addition {
  explicit Addition(const SSTask* task) : data(task), variables(state_of(task)->variables()) {}

  Observations<T> data;
  StreamVariable* variables;
  int first = 0, count = 0;  // the observations to be added
  FirstFailure failure;
};

// Makes a summary of the full level 0 and carries it up to the first free level, by way of two sets of rows.
template <class T>
void carry(StreamBlock& block, Summary<T> summary, Summary<T> other) {
  const int half = half_size(block);
  sort_ground<T>(block);
  for (int i = 0; i < half; ++i) summary.set(i, ground<T>(block)[2 * i], 2 * i + 1, 2 * i + 1);
  summary.close(half);
  int l = 1;
  for (; block.occupied[l]; ++l) {
    merge_and_thin(level<T>(block, l), summary, half, other);
    const Summary<T> merged = other;
    other = summary;
    summary = merged;
    block.occupied[l] = 0;
  }
  copy(summary, half, level<T>(block, l));
  block.occupied[l] = 1;
  if (block.topLevel < l) block.topLevel = l;
  block.fill = 0;
}

// Level 0 is put in order when it is full or when quantiles are asked for.
template <class T>
void _vSSSQuantilesAddDataThreader(int v, int, int, void* arguments) {
  Addition<T>& addition = *static_cast<Addition<T>*>(arguments);
  const StreamVariable& variable = addition.variables[v];
  if (!variable.active) return;
  StreamBlock& block = variable.blocks[variable.currentBlock];
  T* const values = ground<T>(block);
  const intptr_t stride = addition.data.stride();
  const T* x = addition.data.variable(v) + addition.first * stride;
  int left = addition.count;
  const int places = half_size(block) + Summary<T>::kExtra;
  Rows<T> rows;
  if (block.fill + left >= block.levelSize && !rows.allocate(2 * int64_t(places))) {
    addition.failure.report(KOB_SS_ERROR_MEMORY);
    return;
  }
  while (left > 0) {
    const int room = block.levelSize - block.fill, taken = left < room ? left : room;
    for (int i = 0; i < taken; ++i, x += stride) values[block.fill + i] = *x;
    block.fill += taken;
    left -= taken;
    if (block.fill == block.levelSize) carry(block, rows.at(0), rows.at(places));
  }
  block.observed += addition.count;
}

// ---- asking for quantiles ----

// A summary among the rows.
struct Piece {
  intptr_t place;
  int count;
};

// Merges all pieces into one, in `rows` or in `other`. As each merge only adds to ranks their order does not
// matter, so neighbours are merged in rounds.
template <class T>
Summary<T> merge_all(const Rows<T>& rows, const Rows<T>& other, Piece* pieces, int count) {
  if (count == 1) return rows.at(pieces[0].place);
  int merged = 0;
  for (int k = 0; k < count; k += 2) {
    const Piece a = pieces[k], s = k + 1 < count ? pieces[k + 1] : Piece{0, 0};
    if (s.count)
      merge(rows.at(a.place), a.count, rows.at(s.place), s.count, other.at(a.place));
    else
      copy(rows.at(a.place), a.count, other.at(a.place));
    pieces[merged++] = {a.place, a.count + s.count};
  }
  return merge_all(other, rows, pieces, merged);
}

// The value whose middle rank is nearest to N q, the first of those at the same whole distance.
template <class T>
T nearest(const Summary<T>& all, int count, double rank) {
  T result = all.values[0];
  int best = INT32_MAX;
  for (int i = 0; i < count; ++i) {
    const double middle = 0.5 * (double(all.r_min[i]) + all.r_max[i]);
    const int distance = int(middle < rank ? rank - middle : middle - rank);
    if (distance < best) {
      best = distance;
      result = all.values[i];
    }
  }
  return result;
}

// The elements and summaries of a variable, level 0 counting as one where it has values.
inline void count_pieces(const StreamVariable& variable, int& elements, int& pieces) {
  elements = pieces = 0;
  for (int k = 0; k < variable.blockCount; ++k) {
    const StreamBlock& block = variable.blocks[k];
    elements += block.fill;
    pieces += block.fill > 0;
    for (int l = 1; l <= block.topLevel; ++l) {
      elements += block.occupied[l] * half_size(block);
      pieces += block.occupied[l];
    }
  }
}

template <class T>
void gather_pieces(const StreamVariable& variable, const Rows<T>& rows, Piece* piece) {
  intptr_t place = 0;
  const auto add = [&](int count) {
    *piece = {place, count};
    place += count + Summary<T>::kExtra;
    return rows.at(piece++->place);
  };
  for (int k = 0; k < variable.blockCount; ++k) {
    const StreamBlock& block = variable.blocks[k];
    if (block.fill) {
      sort_ground<T>(block);
      const Summary<T> raw = add(block.fill);
      for (int i = 0; i < block.fill; ++i) raw.set(i, ground<T>(block)[i], i + 1, i + 1);
      raw.close(block.fill);
    }
    for (int l = 1; l <= block.topLevel; ++l)
      if (block.occupied[l]) copy(level<T>(block, l), half_size(block), add(half_size(block)));
  }
}

template <class T>
int query(const StreamVariable& variable, const T* orders, int order_count, T* results) {
  int elements, count;
  count_pieces(variable, elements, count);
  if (elements == 0) return KOB_SS_OK;
  const int64_t places = elements + int64_t(count) * Summary<T>::kExtra;
  Rows<T> rows, other;
  Block<Piece> pieces;
  if (!rows.allocate(places) || !other.allocate(places) || !pieces.allocate(count))
    return KOB_SS_ERROR_MEMORY;
  gather_pieces(variable, rows, pieces.get());
  const Summary<T> all = merge_all(rows, other, pieces.get(), count);
  double observed = 0;
  for (int k = 0; k < variable.blockCount; ++k) observed += variable.blocks[k].observed;
  for (int k = 0; k < order_count; ++k) results[k] = nearest(all, elements, observed * orders[k]);
  return KOB_SS_OK;
}

// ---- blocks ----

// The observations that block k takes.
inline int block_capacity(int k, double eps) {
  const double twice = double(uint64_t(1) << (k + 1));
  if (twice / eps >= INT32_MAX) return INT32_MAX;
  return int(int64_t((2 * twice - 1) / eps) - int64_t((twice - 1) / eps));
}

// Levels hold an even number of values: of an odd one the last would be lost in the thinning, and the error
// would exceed eps. With fewer values in a level, for eps near 1, every second one says less than eps asks
// for, and there would be more levels than the logarithm counts.
constexpr int kLeastLevelSize = 16;

// Adds a block to a variable.
template <class T>
bool add_block(StreamVariable& variable, double eps) {
  constexpr double log2_e = 1.4426950408889634;
  double doublings = __kobdLn(eps * block_capacity(variable.currentBlock + 1, eps)) * log2_e;
  // A block of as many values as can be counted may be less than eps asks for.
  if (doublings < 1) doublings = 1;
  if (doublings / eps >= INT32_MAX) return false;
  StreamBlock block{};
  block.levelSize = (int(doublings / eps) + 1) & ~1;
  if (block.levelSize < kLeastLevelSize) block.levelSize = kLeastLevelSize;
  block.levelCount = int(doublings + 2.0);
  const int64_t rows = block.levelCount + 1, elements = (block.levelSize + int64_t(1)) * rows;
  Block<char> memory;
  Block<StreamBlock> blocks;
  if (!memory.allocate(elements * int(sizeof(T) + 2 * sizeof(int)) + rows * int(sizeof(int))) ||
      !blocks.allocate(variable.blockCount + 1))
    return false;
  block.values = memory.release();
  block.rMin = reinterpret_cast<int*>(static_cast<T*>(block.values) + elements);
  block.rMax = block.rMin + elements;
  block.occupied = block.rMax + elements;
  for (int64_t l = 0; l < rows; ++l) block.occupied[l] = 0;

  for (int k = 0; k < variable.blockCount; ++k) blocks[k] = variable.blocks[k];
  blocks[variable.blockCount++] = block;
  free_array(variable.blocks);
  variable.blocks = blocks.release();
  ++variable.currentBlock;
  return true;
}

// Adds a block to each active variable, or to none.
template <class T>
int add_blocks(StreamVariable* variables, int p, double eps) {
  for (int v = 0; v < p; ++v) {
    if (!variables[v].active || add_block<T>(variables[v], eps)) continue;
    while (--v >= 0)
      if (variables[v].active) drop_last_block(variables[v]);
    return KOB_SS_ERROR_MEMORY;
  }
  return KOB_SS_OK;
}

// ---- the whole ----

template <class T>
int check(const SSTask* task) {
  if (const int status = check_task<T>(task)) return status;
  if (const int status = check_dimension(task)) return status;
  if (const int status = check_count(task, task->observationCount, KOB_SS_ERROR_OBSERVATION_COUNT))
    return status;
  if (value(task, task->observationCount) != 0) {
    if (!task->observations) return KOB_SS_ERROR_OBSERVATIONS;
    const int storage = observation_storage(task->obsStorage);
    if (storage < 0) return storage;
  }
  return KOB_SS_OK;
}

template <class T>
int check_parameters(const SSTask* task, unsigned method) {
  if (!task->streamQuantiles) return KOB_SS_ERROR_STREAM_QUANTILES;
  if (!task->streamOrders) return KOB_SS_ERROR_STREAM_ORDERS;
  if (const int status = check_count(task, task->streamOrderCount, KOB_SS_ERROR_STREAM_ORDER_COUNT))
    return status;
  if (!task->streamParamCount) return KOB_SS_ERROR_STREAM_PARAMETER_COUNT;
  if (value(task, task->streamParamCount) != 1) return KOB_SS_ERROR_STREAM_PARAMETER_COUNT_VALUE;
  if (!orders_in_range(reals<T>(task->streamOrders), low_word(task->streamOrderCount)))
    return KOB_SS_ERROR_STREAM_ORDER_COUNT;
  if (!task->streamParams) return KOB_SS_ERROR_STREAM_PARAMETERS;
  if (!(method & (KOB_SS_STREAM_QUANTILES | KOB_SS_STREAM_UPDATE))) return KOB_SS_ERROR_METHOD;
  const T eps = reals<T>(task->streamParams)[0];
  return eps > 0 && eps <= 1 ? KOB_SS_OK : KOB_SS_ERROR_STREAM_EPS;
}

// The first call says which variables are followed.
template <class T>
int start(SSTask* task) {
  const int p = low_word(task->dimension);
  Block<char> memory(int64_t(sizeof(StreamState)) + p * int64_t(sizeof(StreamVariable)));
  if (!memory) return KOB_SS_ERROR_MEMORY;
  StreamState* state = reinterpret_cast<StreamState*>(memory.release());
  state->eps = double(reals<T>(task->streamParams)[0]);
  state->count = p;
  const Selection wanted(task);
  for (int v = 0; v < p; ++v) state->variables()[v] = {0, -1, wanted[v], nullptr};
  task->streamState = state;
  task->cleanup = __kobSQuantilesFreeBuffers;
  task->cleanupCount = 1;
  return KOB_SS_OK;
}

// A later call may ask for fewer variables, but not for new ones, nor for none.
inline int check_wanted(const SSTask* task, int p) {
  const StreamVariable* variables = state_of(task)->variables();
  const Selection wanted(task);
  if (wanted.all()) return KOB_SS_OK;
  bool any = false;
  for (int v = 0; v < p; ++v) {
    if (wanted[v] && !variables[v].active) return KOB_SS_ERROR_INDICES;
    any = any || variables[v].active;
  }
  return any ? KOB_SS_OK : KOB_SS_ERROR_INDICES;
}

// Adds all observations, block by block. Active variables fill their blocks in step.
template <class T>
int add_data(SSTask* task, int p, const ThreadingServices* threading) {
  Addition<T> addition(task);
  const double eps = state_of(task)->eps;
  const StreamVariable* leader = addition.variables;
  while (leader < addition.variables + p && !leader->active) ++leader;
  if (leader == addition.variables + p) return KOB_SS_OK;
  int left = low_word(task->observationCount);
  while (left > 0 || leader->currentBlock < 0) {
    int room = 0;
    if (leader->currentBlock >= 0)
      room = block_capacity(leader->currentBlock, eps) - leader->blocks[leader->currentBlock].observed;
    if (room <= 0) {
      if (const int status = add_blocks<T>(addition.variables, p, eps)) return status;
      continue;
    }
    addition.count = left < room ? left : room;
    threading->parallelFor(p, 0, &addition, _vSSSQuantilesAddDataThreader<T>);
    if (const int status = addition.failure.status()) return status;
    addition.first += addition.count;
    left -= addition.count;
  }
  return KOB_SS_OK;
}

template <class T>
int compute(SSTask* task, unsigned method, const ThreadingServices* services) {
  const ThreadingServices* threading = threading_or_serial(services);
  if (const int status = check<T>(task)) return status;
  if (const int status = check_parameters<T>(task, method)) return status;
  const bool first_call = !task->streamState;
  if (first_call)
    if (const int status = start<T>(task)) return status;
  StreamState& state = *state_of(task);
  const int now = low_word(task->dimension), p = now < state.count ? now : state.count;
  if (!first_call)
    if (const int status = check_wanted(task, p)) return status;
  if (const int status = add_data<T>(task, p, threading)) return status;
  if (!(method & KOB_SS_STREAM_QUANTILES)) return KOB_SS_OK;

  const int order_count = low_word(task->streamOrderCount);
  T* results = reals<T>(task->streamQuantiles);
  for (int v = 0; v < p; ++v) {
    const StreamVariable& variable = state.variables()[v];
    if (!variable.active) continue;
    if (const int status = query(variable, reals<T>(task->streamOrders), order_count, results)) return status;
    results += order_count;
  }
  return KOB_SS_OK;
}

}  // namespace orx::ss::squantiles
