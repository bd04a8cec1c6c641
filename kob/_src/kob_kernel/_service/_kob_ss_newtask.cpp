// Makes and deletes tasks.
#include "orx/base/memory.hpp"
#include "ss_task.hpp"

namespace {

using orx::ss::value;

struct Request {
  SSTask** task;
  const void *p, *n, *storage, *x, *weights, *indices;
  int ilp64_flag;
};

int check(const Request& r) {
  SSTask probe{};
  probe.ilp64Flag = r.ilp64_flag;
  if (!r.p || value(&probe, r.p) <= 0) return KOB_SS_ERROR_DIMENSION;
  if (r.x) {
    if (!r.storage) return KOB_SS_ERROR_STORAGE_ABSENT;
    const int64_t storage = value(&probe, r.storage);
    if (storage != KOB_SS_ROWS && storage != KOB_SS_COLUMNS) return KOB_SS_ERROR_STORAGE;
    if (!r.n || value(&probe, r.n) <= 0) return KOB_SS_ERROR_OBSERVATION_COUNT;
  }
  return r.task ? KOB_SS_OK : KOB_SS_ERROR_TASK;
}

int new_task(const Request& r, bool is_double) {
  if (const int status = check(r)) return status;
  orx::Block<SSTask> task;
  if (!task.allocate_zeros(1)) return KOB_SS_ERROR_MEMORY;
  task->ilp64Flag = r.ilp64_flag;
  task->taskKind = 2;
  task->isDouble = is_double;
  task->dimension = const_cast<void*>(r.p);
  task->observationCount = const_cast<void*>(r.n);
  task->observations = const_cast<void*>(r.x);
  task->obsStorage = const_cast<void*>(r.storage);
  task->weights = const_cast<void*>(r.weights);
  task->indices = const_cast<void*>(r.indices);
  *r.task = task.release();
  return KOB_SS_OK;
}

}  // namespace

ORX_API int __kobdSSNewTask(SSTask** task, const void* p, const void* n, const void* xStorage,
                            const double* x, const double* weights, const void* indices, int ilp64Flag) {
  return new_task({task, p, n, xStorage, x, weights, indices, ilp64Flag}, true);
}

ORX_API int __kobsSSNewTask(SSTask** task, const void* p, const void* n, const void* xStorage, const float* x,
                            const float* weights, const void* indices, int ilp64Flag) {
  return new_task({task, p, n, xStorage, x, weights, indices, ilp64Flag}, false);
}

ORX_API int __kobSSDeleteTask(SSTask** task) {
  if (!task || !*task) return KOB_SS_ERROR_TASK;
  if ((*task)->cleanupCount > 0) (*task)->cleanup(*task);
  orx::free_array(*task);
  return KOB_SS_OK;
}
