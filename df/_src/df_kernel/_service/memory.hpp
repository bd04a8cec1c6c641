// Arrays from the service layer, 128-byte aligned.
#pragma once

#include <cstddef>
#include <cstdint>

#include "orx/serv.h"

namespace orx::df {

// Room for `count` elements; null when there is none, also when the size does not fit in a size_t.
template <class T>
T* allocate_array(int64_t count) {
  if (count < 0 || uint64_t(count) > PTRDIFF_MAX / sizeof(T)) return nullptr;
  return static_cast<T*>(orx_serv_allocate(size_t(count) * sizeof(T), 128));
}

// An array that goes with its scope, unless it is kept. None of 0 elements is allocated.
template <class T>
class Scratch {
 public:
  explicit Scratch(int64_t count) : data_(count == 0 ? nullptr : allocate_array<T>(count)) {}
  ~Scratch() { orx_serv_deallocate(data_); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  T* get() const { return data_; }
  explicit operator bool() const { return data_; }
  // Leaves the block allocated for good.
  void keep() { data_ = nullptr; }

 private:
  T* data_;
};

}  // namespace orx::df
