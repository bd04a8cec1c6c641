// Summaries of parts of a stream, joined.
#pragma once

#include "squantiles/summary.hpp"

namespace orx::ss::squantiles {

// ---- finished runs, when joining has made them many ----
//
// Any number of runs of any levels become one of weight W: of the merged values, those at which the sum of the weights
// passes 0, W, 2W, ... That adds between 0 and W to the number of values up to some x, once, however many runs there
// are. With W at most eps/16 of what they stand for, 16/eps values or more remain, and the error grows by eps/32. A
// run is joined only with as much as it stands for itself, or more: so no value takes part in more such steps than the
// logarithm of the number of parts.

constexpr double kLeastCollapsed = 16;  // values that remain, times eps

// The greatest power of two not above x, which is 1 or more.
inline int level_below(double x) { return int(bit_cast<uint64_t>(x) >> 52) - 1023; }

// Puts one run in the place of the runs from `begin` to `end`, which stand for `total` values. False where the error
// does not allow it or there is no memory.
template <class T>
bool collapse(StreamVariable& variable, double eps, int begin, int end, double total) {
  const int level = level_below(total * eps / kLeastCollapsed);
  const double weight = weight_of(level);
  if (total_error(variable) + 0.5 * weight > eps * double(variable.observed)) return false;
  StreamVariable part = variable;
  part.runs += begin;
  const int run_count = end - begin, size = int(total / weight) + (total / weight > int(total / weight));
  Merger<T> merger;
  Block<T> values(size);
  if (!values || !merger.allocate(part, run_count, 0)) return false;
  merger.add_runs(part, run_count);
  const Merged<T> all = merger.merge();
  double up_to = 0;
  int k = 0;
  for (intptr_t i = 0; i < merger.count(); ++i) {
    up_to += weight_of(all.levels[i]);
    while (k < size && k * weight < up_to) values[k++] = all.values[i];
  }
  double error = 0.5 * weight;
  for (int r = begin; r < end; ++r) {
    error += variable.runs[r].error;
    free_array(variable.runs[r].values);
  }
  variable.runs[begin] = {values.release(), size, level, error};
  for (int r = end; r < variable.run_count; ++r) variable.runs[r - run_count + 1] = variable.runs[r];
  variable.run_count -= run_count - 1;
  variable.first_run -= run_count - 1;
  return true;
}

inline void sort_finished(StreamVariable& variable) {
  for (int i = 1; i < variable.first_run; ++i) {
    const Run run = variable.runs[i];
    int j = i;
    for (; j > 0 && represented(run) < represented(variable.runs[j - 1]); --j)
      variable.runs[j] = variable.runs[j - 1];
    variable.runs[j] = run;
  }
}

// Looks for runs of like size, from the smallest on, of which enough values can be done without.
template <class T>
bool collapse_some(StreamVariable& variable, double eps) {
  const double enough = 4 * kLeastCollapsed / eps;
  sort_finished(variable);
  int begin = 0;
  double values = 0, total = 0;
  for (int k = 0; k < variable.first_run; ++k) {
    const double here = represented(variable.runs[k]);
    if (here > total) {
      if (values >= enough) return collapse<T>(variable, eps, begin, k, total);
      begin = k;
      values = total = 0;
    }
    values += variable.runs[k].count;
    total += here;
  }
  return values >= enough && collapse<T>(variable, eps, begin, variable.first_run, total);
}

// Copies of the runs of a variable and of its raw values as one more run, in `runs`; true where there is memory for
// all of them.
template <class T>
bool copy_runs(const StreamVariable& variable, Run* runs) {
  const auto copy = [](const void* from, const Run& like, Run& to) {
    to = like;
    to.values = allocate_array<T>(like.count);
    if (to.values) __builtin_memcpy(to.values, from, size_t(like.count) * sizeof(T));
    return to.values != nullptr;
  };
  for (int k = 0; k < variable.run_count; ++k)
    if (!copy(variable.runs[k].values, variable.runs[k], runs[k])) return false;
  if (variable.fill == 0) return true;
  Run& last = runs[variable.run_count];
  if (!copy(variable.raw, {nullptr, variable.fill, 0, 0}, last)) return false;
  sort_values(values_of<T>(last), last.count);
  return true;
}

inline int copied_count(const StreamVariable& variable) { return variable.run_count + (variable.fill > 0); }

// Adds what `other` has seen to `variable`, given copies of its runs; there is room for them. They go before the runs
// of the present block.
template <class T>
void join(StreamVariable& variable, const StreamVariable& other, const Run* runs, double eps) {
  const int count = copied_count(other);
  if (count == 0) return;
  const int before = variable.first_run;
  for (int k = variable.run_count - 1; k >= before; --k) variable.runs[k + count] = variable.runs[k];
  double greatest = variable.run_count ? variable.greatest : -__builtin_inf();
  for (int k = 0; k < count; ++k) {
    variable.runs[before + k] = runs[k];
    const double last = values_of<T>(runs[k])[runs[k].count - 1];
    if (last > greatest) greatest = last;
  }
  if (other.run_count && other.greatest > greatest) greatest = other.greatest;
  variable.greatest = greatest;
  variable.run_count += count;
  variable.first_run += count;
  variable.observed += other.observed;
  while (collapse_some<T>(variable, eps)) {
  }
}

// Adds a state to another one of the same eps and the same followed variables, all of it or nothing.
template <class T>
int join_states(StreamState& state, const StreamState& other) {
  int total = 0;
  for (int v = 0; v < other.count; ++v) total += copied_count(other.variables()[v]);
  if (total == 0) return KOB_SS_OK;
  Block<Run> runs;
  if (!runs.allocate_zeros(total)) return KOB_SS_ERROR_MEMORY;
  bool whole = true;
  int place = 0;
  for (int v = 0; v < state.count && whole; ++v) {
    const StreamVariable& from = other.variables()[v];
    StreamVariable& to = state.variables()[v];
    whole = reserve_runs(to, to.run_count + copied_count(from)) && copy_runs<T>(from, runs.get() + place);
    place += copied_count(from);
  }
  if (!whole) {
    for (int k = 0; k < total; ++k) free_array(runs[k].values);
    return KOB_SS_ERROR_MEMORY;
  }
  place = 0;
  for (int v = 0; v < state.count; ++v) {
    const StreamVariable& from = other.variables()[v];
    join<T>(state.variables()[v], from, runs.get() + place, state.eps);
    place += copied_count(from);
  }
  return KOB_SS_OK;
}

}  // namespace orx::ss::squantiles
