// Means and covariances of groups of observations, and the pooled ones.
//
// The observations are put in the order of their groups first, by an index; then each group is gathered block by block
// and goes through the one-pass kernel of the basic statistics. So the data are gone through once, however many groups
// there are, and memory is for the groups that occur, whatever their numbers.
#pragma once

#include "basic/kernels.hpp"
#include "matrix.hpp"
#include "orx/base/memory.hpp"
#include "orx/base/threading.hpp"
#include "pldcov/order.hpp"
#include "ss_task.hpp"

namespace orx::ss::pldcov {

using basic::Distances;
using basic::State;

// The observations of a group: in the order of the groups from `first` to before `end`. `place` tells how many groups
// were asked for before it, or is -1 where it was not asked for.
struct Group {
  int first, end;
  int place;
};

// A worker's memory for q variables: a block of observations and their weights, and the one-pass kernel's.
struct Room {
  static constexpr int kBlock = Distances::kBlock;

  double *weights, *values, *accumulator, *rows, *distances, *products;

  Room(double* memory, int q)
      : weights(memory),
        values(weights + kBlock),
        accumulator(values + intptr_t(kBlock) * basic::padded(q)),
        rows(accumulator + 4),
        distances(rows + State::size(q)),
        products(distances + Distances::size(q)) {}
  // Rooms lie one after the other on 128-byte boundaries.
  static int64_t size(int q) {
    const int64_t used =
        int64_t(kBlock) * (1 + basic::padded(q)) + 4 + State::size(q) + Distances::size(q) + int64_t(q) * q;
    return (used + 15) & ~int64_t(15);
  }
};

template <class T>
struct Computation {
  explicit Computation(const SSTask* t) : task(t), data(t), selection(t), weights(reals<T>(t->weights)) {}

  const SSTask* task;
  Observations<T> data;
  Selection selection;
  const T* weights;
  unsigned estimates = 0;
  const ThreadingServices* threading = nullptr;
  int q = 0;                   // wanted variables
  int* variables = nullptr;    // their numbers
  const int* order = nullptr;  // the observations group by group
  Group* groups = nullptr;
  double* rooms = nullptr;        // one for each worker
  double* pooled_mean = nullptr;  // sums over groups of W times the mean
  double* pooled_products = nullptr;
  double pooled_W = 0, pooled_freedom = 0;

  Room room(int t) const { return {rooms + t * Room::size(q), q}; }
};

// ---- the sums of one group ----

template <class T>
struct KernelArgs {
  const Computation<T>* computation;
  Group group;
  Room room;
};

// Copies observations of the group from number i of the order on, side by side; the number of them. Leading ones of
// weight 0 are passed over.
template <bool indexed, bool weighted, bool rows, class T>
int gather_block(const KernelArgs<T>& args, int& i, bool leading) {
  const Computation<T>& c = *args.computation;
  const intptr_t from_variable = rows ? c.data.n : 1, from_observation = rows ? 1 : c.data.p;
  int count = 0;
  for (; i < args.group.end && count < Room::kBlock; ++i) {
    const int observation = c.order[i];
    const double w = weighted ? double(c.weights[observation]) : 1;
    if (leading && count == 0 && w == 0) continue;
    const T* x = c.data.x + observation * from_observation;
    double* to = args.room.values + intptr_t(count) * c.q;
    for (int j = 0; j < c.q; ++j) to[j] = x[(indexed ? c.variables[j] : j) * from_variable];
    args.room.weights[count++] = w;
  }
  return count;
}

// Means and products of a group, about its running mean.
template <bool indexed, bool weighted, bool rows, class T>
void one_pass(const KernelArgs<T>& args) {
  const int q = args.computation->q;
  const Room& room = args.room;
  for (double* x = room.accumulator; x < room.rows + State::size(q); ++x) *x = 0;
  for (intptr_t k = 0; k < intptr_t(q) * q; ++k) room.products[k] = 0;
  bool started = false;
  for (int i = args.group.first; i < args.group.end;) {
    const int count = gather_block<indexed, weighted, rows>(args, i, !started);
    if (count == 0) break;
    const basic::KernelArgs<double> block = {
        0,         count,          count,        q, room.values, room.weights, room.accumulator,
        room.rows, room.distances, room.products};
    if (!started) basic::start_mean<false, weighted>(block, 0);
    started = true;
    basic::one_pass_cross<double, false, weighted, 1>(block, 0);
  }
}

template <class T>
using Kernel = void (*)(const KernelArgs<T>&);

// The kernels by indices (none, given), weights (none, given) and storage (rows, columns).
template <class T>
struct KernelTable {
  Kernel<T> by_index_weight_storage[2][2][2];
};

template <class T>
void _vSSPldCovCalculateGroup(const KernelArgs<T>& args, const KernelTable<T>& table) {
  const Computation<T>& c = *args.computation;
  if (const Kernel<T> kernel =
          table.by_index_weight_storage[!c.selection.all()][c.weights != nullptr][!c.data.rows])
    kernel(args);
  else
    one_pass<true, false, true>(args);
}

// ---- results ----

// The mean and the products of the wanted variables, each times its factor.
template <class T, class Mean>
void write(const Computation<T>& c, Mean mean, const double* products, double share, T* to_mean,
           const SymmetricMatrix<T>& to_cov) {
  for (int j = 0; j < c.q; ++j) {
    to_mean[c.variables[j]] = T(mean(j));
    for (int k = 0; k <= j; ++k)
      to_cov.set(c.variables[j], c.variables[k], T(products[intptr_t(j) * c.q + k] * share));
  }
}

// A group without observations, or without weight, gives NaN.
template <class T>
void write_group(const Computation<T>& c, const Group& group, const Room& room) {
  if (group.place < 0) return;
  const State state(room.rows, c.q);
  const double W = room.accumulator[0], W2 = room.accumulator[1];
  const SymmetricMatrix<T> cov(c.task->groupCov, c.task->groupCovStorage, c.data.p);
  const auto mean = [&](int j) {
    return W == 0 ? 0 / W : state[basic::kMean][j] + state[basic::kMeanLow][j];
  };
  write(c, mean, room.products, W / (W * W - W2),
        reals<T>(c.task->groupMean) + intptr_t(group.place) * c.data.p, cov.next(group.place));
}

// Adds a group to the pooled sums; one worker at a time, in the order of the groups.
template <class T>
void _vSSPldCovThreaderOrdered(int, int t, int, void* arguments) {
  Computation<T>& c = *static_cast<Computation<T>*>(arguments);
  const Room room = c.room(t);
  const State state(room.rows, c.q);
  const double W = room.accumulator[0], W2 = room.accumulator[1];
  if (W == 0) return;
  for (int j = 0; j < c.q; ++j) {
    c.pooled_mean[j] += W * (state[basic::kMean][j] + state[basic::kMeanLow][j]);
    for (int k = 0; k <= j; ++k)
      c.pooled_products[intptr_t(j) * c.q + k] += room.products[intptr_t(j) * c.q + k];
  }
  c.pooled_W += W;
  c.pooled_freedom += (W * W - W2) / W;
}

// ---- the whole ----

inline int check(const SSTask* task, unsigned estimates, unsigned method) {
  if (!task->groupIndices) return KOB_SS_ERROR_GROUPS_ABSENT;
  if (estimates & KOB_SS_POOLED_COVARIANCE) {
    if (!task->pooledCovStorage) return KOB_SS_ERROR_STORAGE_ABSENT;
    if (!task->pooledCov) return KOB_SS_ERROR_POOLED_COVARIANCE;
    if (!task->pooledMean) return KOB_SS_ERROR_POOLED_MEAN;
  }
  if (estimates & KOB_SS_GROUP_COVARIANCE) {
    if (!task->groupCovStorage) return KOB_SS_ERROR_STORAGE_ABSENT;
    if (!task->requestedGroups) return KOB_SS_ERROR_GROUPS_ABSENT;
    if (!task->groupCov) return KOB_SS_ERROR_GROUP_COVARIANCE;
    if (!task->groupMean) return KOB_SS_ERROR_GROUP_MEAN;
  }
  return method & KOB_SS_ONE_PASS ? KOB_SS_OK : KOB_SS_ERROR_METHOD;
}

// The number of groups, or a failure.
inline int count_groups(const SSTask* task, unsigned estimates) {
  const Integers groups(task, task->groupIndices), requested(task, task->requestedGroups);
  const int n = low_word(task->observationCount);
  int count = 0;
  for (int i = 0; i < n; ++i) {
    // The greatest index would leave no count of groups.
    if (groups.is_negative(i) || groups[i] == INT32_MAX) return KOB_SS_ERROR_GROUP_VALUE;
    if (groups[i] >= count) count = groups[i] + 1;
  }
  for (int g = 0; g < count && estimates & KOB_SS_GROUP_COVARIANCE; ++g)
    if (requested[g] != 0 && requested[g] != 1) return KOB_SS_ERROR_GROUP_VALUE;
  return count;
}

// Lists the groups that occur, in `list`, and those that were asked for but do not. The number of them.
template <class T>
int list_groups(const Computation<T>& c, int group_count, Group* list) {
  const Integers groups(c.task, c.task->groupIndices), requested(c.task, c.task->requestedGroups);
  const bool asked = c.estimates & KOB_SS_GROUP_COVARIANCE;
  int count = 0, place = 0, next = 0;  // the first group that has not been looked at
  const auto pass = [&](int end, int at) {
    for (; asked && next < end; ++next)
      if (requested[next]) list[count++] = {at, at, place++};
  };
  for (int first = 0, end; first < c.data.n; first = end) {
    const int number = groups[c.order[first]];
    for (end = first + 1; end < c.data.n && groups[c.order[end]] == number;) ++end;
    pass(number, first);
    list[count++] = {first, end, asked && requested[number] ? place++ : -1};
    next = number + 1;
  }
  pass(group_count, c.data.n);
  return count;
}

// The groups that were asked for, which may not occur.
inline int count_requested(const SSTask* task, unsigned estimates, int group_count) {
  const Integers requested(task, task->requestedGroups);
  int count = 0;
  for (int g = 0; g < group_count && estimates & KOB_SS_GROUP_COVARIANCE; ++g) count += requested[g];
  return count;
}

template <class T>
int compute(SSTask* task, unsigned estimates, unsigned method, const ThreadingServices* services,
            orx_worker worker) {
  if (const int status = check_data<T>(task)) return status;
  const int n = low_word(task->observationCount);
  if (n == 0) return KOB_SS_ERROR_OBSERVATION_COUNT;
  if (const int status = check(task, estimates, method)) return status;
  const int group_count = count_groups(task, estimates);
  if (group_count < 0) return group_count;

  const ThreadingServices* threading = threading_or_serial(services);
  constexpr int least_for_threads = 11;
  Computation<T> c(task);
  const int threads = c.data.p >= least_for_threads ? threading->maxThreads() : 1;
  c.estimates = estimates;
  c.threading = threading;
  const Block<int> variables(c.data.p), orders(2 * int64_t(n));
  if (!variables || !orders) return KOB_SS_ERROR_MEMORY;
  c.variables = variables.get();
  for (int j = 0; j < c.data.p; ++j)
    if (c.selection[j]) c.variables[c.q++] = j;
  c.order =
      order_by_group(Integers(task, task->groupIndices), n, group_count, orders.get(), orders.get() + n);

  const int64_t pooled_size = c.q + int64_t(c.q) * c.q, room_size = Room::size(c.q);
  const int most_groups = count_occurring(Integers(task, task->groupIndices), n, c.order) +
                          count_requested(task, estimates, group_count);
  const Block<Group> groups(most_groups);
  Block<double> work;
  if (!groups || !work.allocate_zeros(room_size * threads + pooled_size)) return KOB_SS_ERROR_MEMORY;
  c.groups = groups.get();
  c.rooms = work.get();
  c.pooled_mean = c.rooms + room_size * threads;
  c.pooled_products = c.pooled_mean + c.q;
  threading->parallelForOrdered(list_groups(c, group_count, c.groups), threads, &c, worker);
  if (estimates & KOB_SS_POOLED_COVARIANCE)
    write(
        c, [&](int j) { return c.pooled_mean[j] / c.pooled_W; }, c.pooled_products, 1 / c.pooled_freedom,
        reals<T>(task->pooledMean), SymmetricMatrix<T>(task->pooledCov, task->pooledCovStorage, c.data.p));
  return KOB_SS_OK;
}

}  // namespace orx::ss::pldcov
