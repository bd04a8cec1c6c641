#pragma once
#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include "functions/list.hpp"

namespace orx {

// Arrays for calls of a function whose alignments and lengths vary, so that the first, middle and last parts of a
// kernel's loop are all met.
template <class R>
class CallArrays {
 public:
  static constexpr int kMost = 4096;  // elements of a call

  CallArrays(const Function& f, uint64_t seed) : f_(f), random_(seed) {
    for (auto& array : arrays_) array.resize(2 * (kMost + 32));
  }

  // Places the arrays of the next call anew; returns how many elements it may take.
  int shuffle() {
    for (int j = 0; j < 2; ++j) {
      operands_.in[j] = in_[j] = arrays_[j].data() + random_() % 32;
      operands_.out[j] = arrays_[j + 2].data() + random_() % 32;
    }
    return kMost - static_cast<int>(random_() % 64);
  }

  // The numbers of element i.
  R& in(int column, int i) { return in_[column / f_.in_width()][i * f_.in_width() + column % f_.in_width()]; }
  const R& out(int column, int i) const {
    return operands_.out[column / f_.out_width()][i * f_.out_width() + column % f_.out_width()];
  }

  // Runs a kernel on the first n elements.
  void call(const Kernel& k, int n, const R* scalars) {
    std::copy_n(scalars, f_.shape->scalars, operands_.scalar);
    for (int j = 0; j < f_.shape->outputs; ++j) std::fill_n(operands_.out[j], n * f_.out_width(), R(-12345));
    kernel_call<R>(f_)(k.entry, n, operands_);
  }

  std::mt19937_64& random() { return random_; }

 private:
  const Function& f_;
  std::vector<R> arrays_[4];
  R* in_[2];
  Operands<R> operands_;
  std::mt19937_64 random_;
};

}  // namespace orx
