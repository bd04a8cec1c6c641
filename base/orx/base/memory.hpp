// Memory of the service layer with an owner. All layers take their memory here: blocks on 128-byte boundaries,
// given back on every path. Nothing throws; a block that could not be had is null.
#pragma once

#include <cstddef>
#include <cstdint>

#include "orx/serv.h"

namespace orx {

constexpr size_t kMemoryAlignment = 128;

// An array of `count` elements of a type without constructors, uninitialised; null where there is no memory or
// the size does not fit. A block of no elements is null as well, and so is one of a negative count.
template <class T>
T* allocate_array(int64_t count) {
  if (count <= 0 || static_cast<uint64_t>(count) > PTRDIFF_MAX / sizeof(T)) return nullptr;
  return static_cast<T*>(orx_serv_allocate(static_cast<size_t>(count) * sizeof(T), kMemoryAlignment));
}

// The only owner of an array.
template <class T>
class Block {
 public:
  Block() = default;
  explicit Block(int64_t count) : data_(allocate_array<T>(count)) {}
  Block(Block&& other) noexcept : data_(other.release()) {}
  Block& operator=(Block&& other) noexcept {
    reset(other.release());
    return *this;
  }
  ~Block() { orx_serv_deallocate(data_); }

  // Takes over what a record of C held.
  static Block adopt(T* data) {
    Block block;
    block.data_ = data;
    return block;
  }

  // Gives back what it holds and takes room for `count` elements. False where there is none.
  bool allocate(int64_t count) {
    reset(allocate_array<T>(count));
    return data_ != nullptr;
  }
  // The same, and all bytes 0.
  bool allocate_zeros(int64_t count) {
    if (!allocate(count)) return false;
    __builtin_memset(data_, 0, static_cast<size_t>(count) * sizeof(T));
    return true;
  }

  T* get() const { return data_; }
  T* operator->() const { return data_; }
  T& operator[](intptr_t i) const { return data_[i]; }
  explicit operator bool() const { return data_ != nullptr; }

  // Gives the array away: the caller, or the record that it goes into, owns it from here on.
  [[nodiscard]] T* release() {
    T* const data = data_;
    data_ = nullptr;
    return data;
  }
  // Gives back what it holds and takes over `data`.
  void reset(T* data = nullptr) {
    orx_serv_deallocate(data_);
    data_ = data;
  }

 private:
  T* data_ = nullptr;
};

// Gives back an array that a record of C holds, and leaves null in its place.
template <class T>
void free_array(T*& held) {
  orx_serv_deallocate(held);
  held = nullptr;
}

}  // namespace orx
