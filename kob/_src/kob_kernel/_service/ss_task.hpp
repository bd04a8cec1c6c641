// The task record of summary statistics and how its fields are read.
#pragma once

#include <cstdint>

#include "orx/base/api.hpp"
#include "orx/ss.h"

struct SSTask {
  int32_t ilp64Flag;  // 0: the caller's integers are 32 bits wide, else 64
  int32_t taskKind;
  int32_t isDouble;
#define ORX_SS_FIELD(name, id, editor, status) void* name;
#define ORX_SS_INTERNAL(name) void* name;
#include "ss_fields.def"
  int32_t cleanupCount;
  void (*cleanup)(SSTask*);  // room for one: the summary of streaming quantiles
};

#if defined(__i386__)
static_assert(sizeof(SSTask) == 80 * 4);
#endif

namespace orx::ss {

// A caller's integer where its sign or its exact value matters.
inline int64_t value(const SSTask* task, const void* integer) {
  return task->ilp64Flag ? *static_cast<const int64_t*>(integer) : *static_cast<const int32_t*>(integer);
}

// A caller's integer everywhere else: the low word.
inline int32_t low_word(const void* integer) { return *static_cast<const int32_t*>(integer); }

// A caller's array of integers, of which the low words are read.
class Integers {
 public:
  Integers(const SSTask* task, const void* array)
      : words_(static_cast<const int32_t*>(array)), stride_(task->ilp64Flag ? 2 : 1) {}
  explicit operator bool() const { return words_; }
  int32_t operator[](int i) const { return words_[i * stride_]; }
  bool is_negative(int i) const { return words_[i * stride_ + stride_ - 1] < 0; }

 private:
  const int32_t* words_;
  int stride_;
};

// Which variables are wanted: those with a non-zero index, or all.
class Selection {
 public:
  explicit Selection(const SSTask* task) : indices_(task, task->indices) {}
  bool all() const { return !indices_; }
  bool operator[](int j) const { return !indices_ || indices_[j] != 0; }

 private:
  Integers indices_;
};

template <class T>
T* reals(void* field) {
  return static_cast<T*>(field);
}

// The storage of the observations, or a failure: KOB_SS_ROWS wins where both bits are set.
inline int observation_storage(const void* storage) {
  if (!storage) return KOB_SS_ERROR_STORAGE_ABSENT;
  const int32_t bits = low_word(storage);
  if (bits & KOB_SS_ROWS) return KOB_SS_ROWS;
  return bits & KOB_SS_COLUMNS ? KOB_SS_COLUMNS : KOB_SS_ERROR_STORAGE;
}

// A task for data of type T: not null, and made by the constructor of that precision.
template <class T>
int check_task(const SSTask* task) {
  return task && task->isDouble == (sizeof(T) == sizeof(double)) ? KOB_SS_OK : KOB_SS_ERROR_TASK;
}

// A count that is there, not negative, and not beyond the integers by which arrays are counted.
inline int check_count(const SSTask* task, const void* count, int failure) {
  return count && value(task, count) >= 0 && value(task, count) <= INT32_MAX ? KOB_SS_OK : failure;
}
inline int check_dimension(const SSTask* task) {
  if (const int status = check_count(task, task->dimension, KOB_SS_ERROR_DIMENSION)) return status;
  return value(task, task->dimension) == 0 ? KOB_SS_ERROR_DIMENSION : KOB_SS_OK;
}

// What every computation needs of its task: a dimension, a known storage, a count that is not negative and,
// where the count is not 0, data.
template <class T>
int check_data(const SSTask* task) {
  if (const int status = check_task<T>(task)) return status;
  const int storage = observation_storage(task->obsStorage);
  if (storage < 0) return storage;
  if (const int status = check_dimension(task)) return status;
  if (const int status = check_count(task, task->observationCount, KOB_SS_ERROR_OBSERVATION_COUNT))
    return status;
  if (!task->observations && value(task, task->observationCount) != 0) return KOB_SS_ERROR_OBSERVATIONS;
  return KOB_SS_OK;
}

// Observations of p variables, by row or by column.
template <class T>
struct Observations {
  explicit Observations(const SSTask* task)
      : x(static_cast<const T*>(task->observations)),
        n(task->observationCount ? low_word(task->observationCount) : 0),
        p(low_word(task->dimension)),
        rows(observation_storage(task->obsStorage) == KOB_SS_ROWS) {}

  const T* variable(int j) const { return rows ? x + intptr_t(j) * n : x + j; }
  // From one observation of a variable to the next.
  intptr_t stride() const { return rows ? 1 : p; }
  T operator()(int j, int i) const { return variable(j)[i * stride()]; }

  const T* x;
  int n, p;
  bool rows;
};

}  // namespace orx::ss
