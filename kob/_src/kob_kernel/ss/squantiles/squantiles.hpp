// Quantiles of a stream to a rank error of eps, in memory that grows as the logarithm of its length.
//
// Each variable has a row of blocks for more and more data: block k takes about 2^(k+1)/eps observations. A
// block has levels: level 0 collects raw values; when it is full every second one of it, in order, makes a
// summary, and two summaries of a level are merged and thinned into one of the next, as bits carry in a
// binary counter. Each element of a summary keeps bounds of its rank (Zhang & Wang, A fast algorithm for
// approximate quantiles in high speed data streams, SSDBM 2007; Greenwald & Khanna, Space-efficient online
// computation of quantile summaries, SIGMOD 2001).
#pragma once

#include "../../../kob_sub_kernel/_math/scalar.hpp"
#include "../../../kob_sub_kernel/_math/sort.hpp"
#include "../../_service/ss_task.hpp"
#include "../radix.hpp"
#include "state.hpp"

namespace orx::ss::squantiles {

// Values in order with bounds of their ranks, the first rank being 1.
template <class T>
struct Summary {
  T* values;
  int *r_min, *r_max;

  Summary from(intptr_t i) const { return {values + i, r_min + i, r_max + i}; }
};

template <class T>
Summary<T> level(const StreamBlock& block, int l) {
  const intptr_t at = intptr_t(l) * (block.levelSize + 1);
  return {static_cast<T*>(block.values) + at, block.rMin + at, block.rMax + at};
}

// The elements of a summary made from a full level 0.
inline int half_size(const StreamBlock& block) { return block.levelSize / 2; }

// A set of rows for `count` elements in one block of memory.
template <class T>
class SummaryBlock {
 public:
  bool allocate(uint64_t count) {
    if (!memory_.allocate(count * (sizeof(T) + 2 * sizeof(int)))) return false;
    rows_.values = reinterpret_cast<T*>(memory_.get());
    rows_.r_min = reinterpret_cast<int*>(rows_.values + count);
    rows_.r_max = rows_.r_min + count;
    return true;
  }
  const Summary<T>& operator*() const { return rows_; }

 private:
  Block<char> memory_;
  Summary<T> rows_;
};

template <class T>
void copy(const Summary<T>& from, int count, const Summary<T>& to) {
  for (int i = 0; i < count; ++i) to.values[i] = from.values[i];
  for (int i = 0; i < count; ++i) to.r_min[i] = from.r_min[i];
  for (int i = 0; i < count; ++i) to.r_max[i] = from.r_max[i];
}

// Every second element of `from`, `count` in all.
template <class T>
void thin(const Summary<T>& from, int count, const Summary<T>& to) {
  for (int i = 0; i < count; ++i) {
    to.values[i] = from.values[2 * i];
    to.r_min[i] = from.r_min[2 * i];
    to.r_max[i] = from.r_max[2 * i];
  }
}

// Merges a and s. An element's least rank grows by that of the last one taken from the other side, its
// greatest by that of the next one there, less 1. The comparison decides nothing but selections: as a branch
// it could not be foretold.
template <class T>
void merge(const Summary<T>& a, int a_count, const Summary<T>& s, int s_count, Summary<T> out) {
  int i = 0, j = 0, a_last = 0, s_last = 0;
  for (; i < a_count && j < s_count; ++out.values, ++out.r_min, ++out.r_max) {
    const T av = a.values[i], sv = s.values[j];
    const int a_min = a.r_min[i], s_min = s.r_min[j];
    const bool take_s = sv < av;
    *out.values = take_s ? sv : av;
    *out.r_min = take_s ? s_min + a_last : a_min + s_last;
    *out.r_max = a.r_max[i] + s.r_max[j] - 1;
    s_last = take_s ? s_min : s_last;
    a_last = take_s ? a_last : a_min;
    j += take_s;
    i += !take_s;
  }
  const bool a_left = i < a_count;
  const Summary<T> rest = a_left ? a.from(i) : s.from(j), done = a_left ? s : a;
  const int rest_count = a_left ? a_count - i : s_count - j, done_count = a_left ? s_count : a_count;
  const int done_min = done_count ? done.r_min[done_count - 1] : 0;
  const int done_max = done_count ? done.r_max[done_count - 1] : 0;
  for (int k = 0; k < rest_count; ++k) {
    out.values[k] = rest.values[k];
    out.r_min[k] = rest.r_min[k] + done_min;
    out.r_max[k] = rest.r_max[k] + done_max;
  }
}

// Raw values have the ranks of their places. Without memory for the faster sort they are sorted in place.
template <class T>
void sort_raw(const Summary<T>& rows, int count) {
  Block<T> work(count);
  if (work)
    radix_sort(rows.values, work.get(), count);
  else
    sorting::sort(rows.values, count, sorting::Contiguous());
  for (int i = 0; i < count; ++i) rows.r_min[i] = rows.r_max[i] = i + 1;
}

// ---- adding data ----

template <class T>
struct Addition {
  explicit Addition(const SSTask* task) : data(task), variables(state_of(task)->variables()) {}

  Observations<T> data;
  StreamVariable* variables;
  int first = 0, count = 0;  // the observations to be added
  int status = KOB_SS_OK;
};

// Thins the full level 0 and carries the summary up to the first free level.
template <class T>
void carry(StreamBlock& block, const Summary<T>& summary) {
  const int half = half_size(block);
  const Summary<T> ground = level<T>(block, 0);
  sort_raw(ground, block.levelSize);
  thin(ground, half, summary);
  int l = 1;
  for (; block.occupied[l]; ++l) {
    merge(level<T>(block, l), half, summary, half, ground);
    thin(ground, half, summary);
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
  T* const ground = level<T>(block, 0).values;
  const intptr_t stride = addition.data.stride();
  const T* x = addition.data.variable(v) + addition.first * stride;
  int left = addition.count;
  SummaryBlock<T> summary;
  if (block.fill + left >= block.levelSize && !summary.allocate(half_size(block))) {
    addition.status = KOB_SS_ERROR_MEMORY;
    return;
  }
  while (left > 0) {
    const int room = block.levelSize - block.fill, taken = left < room ? left : room;
    for (int i = 0; i < taken; ++i, x += stride) ground[block.fill + i] = *x;
    block.fill += taken;
    left -= taken;
    if (block.fill == block.levelSize) carry(block, *summary);
  }
  block.observed += addition.count;
}

// ---- asking for quantiles ----

// All summaries of a variable merged into one, in one of two sets of rows. As each merge only adds to ranks,
// their order does not matter: neighbours are merged in rounds.
template <class T>
Summary<T> merge_all(Summary<T> rows, Summary<T> other, int* sizes, int pieces) {
  while (pieces > 1) {
    int merged = 0;
    intptr_t at = 0;
    for (int k = 0; k < pieces; k += 2) {
      const int a = sizes[k], s = k + 1 < pieces ? sizes[k + 1] : 0;
      merge(rows.from(at), a, rows.from(at + a), s, other.from(at));
      at += sizes[merged++] = a + s;
    }
    pieces = merged;
    const Summary<T> swap = rows;
    rows = other;
    other = swap;
  }
  return rows;
}

// Calls f(summary, count, whether it is raw) for each summary of a variable.
template <class T, class F>
void each_summary(const StreamVariable& variable, F f) {
  for (int k = 0; k < variable.blockCount; ++k) {
    const StreamBlock& block = variable.blocks[k];
    if (block.fill) f(level<T>(block, 0), block.fill, true);
    for (int l = 1; l <= block.topLevel; ++l)
      if (block.occupied[l]) f(level<T>(block, l), half_size(block), false);
  }
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

template <class T>
int query(const StreamVariable& variable, const T* orders, int order_count, T* results) {
  int count = 0, pieces = 0, observed = 0;
  each_summary<T>(variable, [&](const Summary<T>&, int size, bool) { count += size, ++pieces; });
  for (int k = 0; k < variable.blockCount; ++k) observed += variable.blocks[k].observed;
  if (count == 0) return KOB_SS_OK;

  SummaryBlock<T> rows, other;
  Block<int> sizes;
  if (!rows.allocate(count) || !other.allocate(count) || !sizes.allocate(pieces)) return KOB_SS_ERROR_MEMORY;
  int at = 0, piece = 0;
  each_summary<T>(variable, [&](const Summary<T>& summary, int size, bool raw) {
    if (raw) sort_raw(summary, size);
    copy(summary, size, (*rows).from(at));
    at += sizes[piece++] = size;
  });
  const Summary<T> all = merge_all(*rows, *other, sizes.get(), pieces);
  for (int k = 0; k < order_count; ++k) results[k] = nearest(all, count, observed * double(orders[k]));
  return KOB_SS_OK;
}

// ---- blocks ----

// The observations that block k takes.
inline int block_capacity(int k, double eps) {
  const double twice = double(uint64_t(1) << (k + 1));
  const double count = double(int64_t((2 * twice - 1) / eps) - int64_t((twice - 1) / eps));
  return count < INT32_MAX ? int(count) : INT32_MAX;
}

// Levels hold an even number of values: of an odd one the last would be lost in the thinning, and the error
// would exceed eps. With fewer values in a level, for eps near 1, every second one says less than eps asks
// for, and there would be more levels than the logarithm counts.
constexpr int least_level_size = 16;

// Adds a block to a variable.
template <class T>
bool add_block(StreamVariable& variable, double eps) {
  constexpr double log2_e = 1.4426950408889634;
  const double doublings = __kobdLn(eps * block_capacity(variable.currentBlock + 1, eps)) * log2_e;
  if (doublings / eps >= INT32_MAX) return false;
  StreamBlock block{};
  block.levelSize = (int(doublings / eps) + 1) & ~1;
  if (block.levelSize < least_level_size) block.levelSize = least_level_size;
  block.levelCount = int(doublings + 2.0);
  const uint64_t rows = block.levelCount + 1, elements = (block.levelSize + uint64_t(1)) * rows;
  Block<char> memory;
  Block<StreamBlock> blocks;
  if (!memory.allocate(elements * (sizeof(T) + 2 * sizeof(int)) + rows * sizeof(int)) ||
      !blocks.allocate(variable.blockCount + 1))
    return false;
  block.values = memory.keep();
  block.rMin = reinterpret_cast<int*>(static_cast<T*>(block.values) + elements);
  block.rMax = block.rMin + elements;
  block.occupied = block.rMax + elements;
  for (uint64_t l = 0; l < rows; ++l) block.occupied[l] = 0;

  for (int k = 0; k < variable.blockCount; ++k) blocks[k] = variable.blocks[k];
  blocks[variable.blockCount++] = block;
  orx_serv_deallocate(variable.blocks);
  variable.blocks = blocks.keep();
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

inline int check(const SSTask* task) {
  if (!task) return KOB_SS_ERROR_TASK;
  if (!task->dimension || value(task, task->dimension) <= 0) return KOB_SS_ERROR_DIMENSION;
  if (!task->observationCount || value(task, task->observationCount) < 0)
    return KOB_SS_ERROR_OBSERVATION_COUNT;
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
  if (!task->streamOrderCount || value(task, task->streamOrderCount) < 0)
    return KOB_SS_ERROR_STREAM_ORDER_COUNT;
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
  Block<char> memory(sizeof(StreamState) + uint64_t(p) * sizeof(StreamVariable));
  if (!memory) return KOB_SS_ERROR_MEMORY;
  StreamState* state = reinterpret_cast<StreamState*>(memory.keep());
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
    if (addition.status) return addition.status;
    addition.first += addition.count;
    left -= addition.count;
  }
  return KOB_SS_OK;
}

template <class T>
int compute(SSTask* task, unsigned method, const ThreadingServices* threading) {
  if (const int status = check(task)) return status;
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
