#pragma once
#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include "kernel_list.hpp"

// Arrays for calls whose alignments and lengths vary, so that the first, middle and last parts of a kernel's
// loop are all met.
template <class T>
class CallArrays {
 public:
  static constexpr int kMost = 4096;  // elements of a call

  explicit CallArrays(uint64_t seed) : random_(seed) {
    for (auto& array : arrays_) array.resize(kMost + 32);
  }

  // Places the arrays of the next call anew; returns how many elements it may take.
  int shuffle() {
    for (int i = 0; i < 3; ++i) at[i] = arrays_[i].data() + random_() % 32;
    return kMost - static_cast<int>(random_() % 64);
  }

  // Runs a kernel on the first n elements of the inputs at[0] and at[1]; the result is in at[2].
  void call(const FunctionEntry& f, const KernelEntry& k, int n, const std::array<T, 4>& scalar) {
    KernelOperands<T> o{{at[0], at[1]}, {at[2]}, {}};
    std::copy(scalar.begin(), scalar.end(), o.scalar);
    std::fill_n(at[2], n, T(-12345));
    call_kernel(f, k, n, o);
  }

  std::mt19937_64& random() { return random_; }
  T* at[3];

 private:
  std::vector<T> arrays_[3];
  std::mt19937_64 random_;
};
