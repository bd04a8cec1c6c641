// Words of a task that are looked at closely.
#pragma once

#include "ss_task.hpp"

namespace orx::ss {

// The storage is one of the two values, not any word with their bits.
inline bool is_observation_storage(const SSTask* task, const void* storage) {
  const int64_t word = value(task, storage);
  return word == KOB_SS_ROWS || word == KOB_SS_COLUMNS;
}

// A matrix has one of the three storages.
inline int check_matrix_storage(const SSTask* task, const void* storage) {
  if (!storage) return KOB_SS_ERROR_STORAGE_ABSENT;
  const int64_t word = value(task, storage);
  return word >= KOB_SS_FULL && word <= KOB_SS_UPPER_PACKED ? KOB_SS_OK : KOB_SS_ERROR_STORAGE;
}

// A caller's array of parameters, if their number is the right one, else null.
template <class T>
const T* given_parameters(const SSTask* task, const void* count, const void* array, int64_t right_count) {
  return count && array && value(task, count) == right_count ? static_cast<const T*>(array) : nullptr;
}

}  // namespace orx::ss
