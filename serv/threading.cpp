// The two ThreadingServices tables: OpenMP, and the calling thread alone.
#include <omp.h>

#include "orx/serv.h"

#define ORX_API extern "C" __attribute__((visibility("default")))

namespace {

int max_threads() { return omp_in_parallel() ? 1 : omp_get_max_threads(); }

int team(int count, int threads) {
  const int available = max_threads();
  if (threads <= 0 || omp_in_parallel()) threads = available;
  return threads < count ? threads : (count > 1 ? count : 1);
}

void parallel_for(int count, int threads, void* args, orx_worker fn) {
#pragma omp parallel num_threads(team(count, threads))
  {
    const int t = omp_get_thread_num(), T = omp_get_num_threads();
#pragma omp for schedule(dynamic)
    for (int i = 0; i < count; ++i) fn(i, t, T, args);
  }
}

void parallel_for_ordered(int count, int threads, void* args, orx_worker fn) {
#pragma omp parallel num_threads(team(count, threads))
  {
    const int t = omp_get_thread_num(), T = omp_get_num_threads();
#pragma omp for ordered schedule(dynamic, 1)
    for (int i = 0; i < count; ++i) fn(i, t, T, args);
  }
}

void parallel_run(int threads, void* args, orx_worker fn) {
  if (threads <= 0) threads = max_threads();
  if (omp_in_parallel() || threads == 1) {  // a nested region would have one thread, yet each worker must run
    for (int t = 0; t < threads; ++t) fn(t, t, threads, args);
    return;
  }
#pragma omp parallel num_threads(threads)
  {
    // The run-time may give fewer threads than were asked for; every worker still runs once.
    for (int t = omp_get_thread_num(); t < threads; t += omp_get_num_threads()) fn(t, t, threads, args);
  }
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
  if (threads <= 0) threads = 1;
  for (int t = 0; t < threads; ++t) fn(t, t, threads, args);
}

void serial_ordered(int i, int t, int T, void* args, orx_worker fn) { fn(i, t, T, args); }

const ThreadingServices openmp = {parallel_for, parallel_for_ordered, parallel_run, ordered_section, max_threads};
const ThreadingServices serial = {serial_for, serial_for, serial_run, serial_ordered, one_thread};

}  // namespace

ORX_API const ThreadingServices* orx_serv_threading() { return &openmp; }
ORX_API const ThreadingServices* orx_serv_threading_serial() { return &serial; }
