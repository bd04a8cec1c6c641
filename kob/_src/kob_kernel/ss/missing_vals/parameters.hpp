// The parameters of a normal law as a matrix for the sweep operator (Schafer 1997, chapter 5): row and column 0 hold the
// means, the rest the covariance, and -1 stands in the corner.
#pragma once

#include <cstring>

#include "orx/base/memory.hpp"

namespace orx::ss::missing_vals {

class Parameters {
 public:
  bool allocate(int p) {
    size_ = p + 1;
    return a_.allocate_zeros(int64_t(size_) * size_);
  }
  double& operator()(int i, int j) const { return a_[intptr_t(j) * size_ + i]; }
  double* data() const { return a_.get(); }
  int size() const { return size_; }
  void copy(const Parameters& other) const {
    std::memcpy(a_.get(), other.a_.get(), size_t(size_) * size_ * sizeof(double));
  }
  void set(int i, int j, double value) const { (*this)(i, j) = (*this)(j, i) = value; }

  bool is_swept(int k) const { return (*this)(k, k) < 0; }

  // Sweeps on variable k with sign -1, and takes that back with sign 1. The pivot is not 0.
  void _vSSSweepOperator(int k, int sign) const {
    const Parameters& a = *this;
    const double pivot = -1 / a(k, k);
    for (int j = 0; j < size_; ++j) {
      if (j == k) continue;
      const double factor = pivot * a(k, j);
      for (int i = 0; i < size_; ++i)
        if (i != k) a(i, j) += factor * a(i, k);
    }
    for (int j = 0; j < size_; ++j)
      if (j != k) set(k, j, sign * pivot * a(j, k));
    a(k, k) = pivot;
  }

 private:
  int size_ = 0;
  Block<double> a_;
};

}  // namespace orx::ss::missing_vals
