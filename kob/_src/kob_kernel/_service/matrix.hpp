// Symmetric matrices in the three storages that callers may choose.
#pragma once

#include <cstdint>

#include "orx/ss.h"

namespace orx::ss {

// A symmetric p by p matrix of the caller's. Only bits of the storage word are looked at: bit 1 is upper
// packed, neither of bits 0 and 1 is full, otherwise lower packed.
template <class T>
class SymmetricMatrix {
 public:
  SymmetricMatrix(void* elements, const void* storage, int p)
      : a_(static_cast<T*>(elements)), p_(p), storage_(*static_cast<const int32_t*>(storage) & 3) {}

  bool full() const { return storage_ == KOB_SS_FULL; }
  T* data() const { return a_; }
  // The number of elements that it occupies.
  intptr_t size() const { return full() ? intptr_t(p_) * p_ : intptr_t(p_) * (p_ + 1) / 2; }

  // The `count`-th matrix after it.
  SymmetricMatrix next(int count) const {
    SymmetricMatrix matrix = *this;
    matrix.a_ += count * size();
    return matrix;
  }

  T get(int i, int j) const { return i < j ? a_[index(j, i)] : a_[index(i, j)]; }
  void set(int i, int j, T value) const {
    a_[i < j ? index(j, i) : index(i, j)] = value;
    if (full()) a_[i < j ? index_full(i, j) : index_full(j, i)] = value;
  }

 private:
  intptr_t index_full(int i, int j) const { return intptr_t(i) * p_ + j; }
  // Element (i, j), j <= i.
  intptr_t index(int i, int j) const {
    if (full()) return index_full(i, j);
    if (storage_ & KOB_SS_UPPER_PACKED) return intptr_t(j) * (2 * p_ - j - 1) / 2 + i;
    return intptr_t(i) * (i + 1) / 2 + j;
  }

  T* a_;
  int p_, storage_;
};

}  // namespace orx::ss
