// The two ThreadingServices tables: OpenMP, and the calling thread alone.
#include <omp.h>

#include <algorithm>

#include "orx/base/api.hpp"
#include "orx/serv.h"

namespace {

// Levels are counted whether or not they run on more than one thread, so that a call from a worker stays on
// that worker's thread even where the region around it has only one.
bool nested() { return omp_get_level() > 0; }

int max_threads() { return nested() ? 1 : std::min(omp_get_max_threads(), omp_get_thread_limit()); }

int team(int count, int threads) {
  if (threads <= 0 || nested()) threads = max_threads();
  return std::max(1, std::min(threads, count));
}

// Items are dealt out in runs of neighbours, about this many to a worker: few enough that fetching a run and
// touching the same cache lines at its ends cost nothing, enough that a slow worker is made up for.
constexpr int kRunsPerWorker = 64;

// Worker numbers come from the team that the run-time really gave, which may be smaller than asked for.
void parallel_for(int count, int threads, void* args, orx_worker fn) {
#pragma omp parallel num_threads(team(count, threads))
  {
    const int t = omp_get_thread_num(), T = omp_get_num_threads();
    // NOLINTNEXTLINE(clang-analyzer-deadcode.DeadStores): the schedule reads it
    const int run = std::max(1, count / (kRunsPerWorker * T));
#pragma omp for schedule(dynamic, run) nowait
    for (int i = 0; i < count; ++i) fn(i, t, T, args);
  }
}

void parallel_for_ordered(int count, int threads, void* args, orx_worker fn) {
#pragma omp parallel num_threads(team(count, threads))
  {
    const int t = omp_get_thread_num(), T = omp_get_num_threads();
#pragma omp for ordered schedule(dynamic, 1) nowait
    for (int i = 0; i < count; ++i) fn(i, t, T, args);
  }
}

// The caller has cut its work into `threads` parts: every worker runs, however many threads there are.
void parallel_run(int threads, void* args, orx_worker fn) {
  if (threads <= 0) threads = max_threads();
#pragma omp parallel num_threads(team(threads, threads))
  for (int t = omp_get_thread_num(); t < threads; t += omp_get_num_threads()) fn(t, t, threads, args);
}

void ordered_section(int i, int t, int T, void* args, orx_worker fn) {
#pragma omp ordered
  fn(i, t, T, args);
}

int one_thread() { return 1; }

void serial_for(int count, int, void* args, orx_worker fn) {
  for (int i = 0; i < count; ++i) fn(i, 0, 1, args);
}

void serial_run(int threads, void* args, orx_worker fn) {
  threads = std::max(1, threads);
  for (int t = 0; t < threads; ++t) fn(t, t, threads, args);
}

void serial_ordered_section(int i, int t, int T, void* args, orx_worker fn) { fn(i, t, T, args); }

const ThreadingServices kOpenmp = {parallel_for, parallel_for_ordered, parallel_run, ordered_section,
                                   max_threads};
const ThreadingServices kSerial = {serial_for, serial_for, serial_run, serial_ordered_section, one_thread};

}  // namespace

ORX_API const ThreadingServices* orx_serv_threading() { return &kOpenmp; }

ORX_API const ThreadingServices* orx_serv_threading_serial() { return &kSerial; }
