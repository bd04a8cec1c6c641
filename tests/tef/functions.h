// The library's functions as test parameters: the list, the descriptors, and vectors to call a kernel on.
#pragma once
#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "functions/list.hpp"
#include "orx/tef.h"

namespace test {

// A call f(R()) for every function whose elements are of the real type R.
template <class F>
void for_each_function(F f) {
  for (const orx::Function& function : orx::functions()) {
    if (!function.shape->elementwise || !function.descriptor) continue;
    if (function.single())
      f(function, float());
    else
      f(function, double());
  }
}

// Does a kernel stand for one of the classes?
inline bool serves(const orx::Kernel& k, orx::descriptor::Classes classes) {
  for (int i = 0; i < orx::kClassCount; ++i)
    if (k.serves[i] && classes >> i & 1) return true;
  return false;
}

// The cases of all types and of one.
inline std::vector<orx::descriptor::Special> specials(const orx::Function& f) {
  std::vector<orx::descriptor::Special> all = f.descriptor->specials;
  all.insert(all.end(), f.about().specials.begin(), f.about().specials.end());
  return all;
}

// Vectors of n elements at any offset (in elements) from a 64-byte boundary, with room around to see what is written
// outside.
template <class R>
class Vectors {
 public:
  static constexpr R kUntouched = R(-77.25);

  Vectors(const orx::Function& f, int n, int offset_in = 0, int offset_out = 0)
      : f_(f), n_(n), call_(orx::kernel_call<R>(f)) {
    for (int j = 0; j < 2; ++j) {
      in_[j] = place(storage_[j], f.in_width(), offset_in);
      out_[j] = place(storage_[j + 2], f.out_width(), offset_out);
    }
    std::fill_n(scalar_, 4, R(1.25));
  }

  // The numbers of element i: its inputs, then the second argument where it is a scalar.
  void set(int i, const std::vector<R>& numbers) {
    for (int k = 0; k < f_.columns_in(); ++k)
      in_[k / f_.in_width()][i * f_.in_width() + k % f_.in_width()] = numbers[static_cast<size_t>(k)];
    for (size_t k = static_cast<size_t>(f_.columns_in()); k < numbers.size(); ++k)
      scalar_[k - static_cast<size_t>(f_.columns_in())] = numbers[k];
  }
  void set_all(const std::vector<R>& numbers) {
    for (int i = 0; i < n_; ++i) set(i, numbers);
  }
  std::vector<R> result(int i) const {
    std::vector<R> r;
    for (int k = 0; k < f_.columns_out(); ++k)
      r.push_back(out_[k / f_.out_width()][i * f_.out_width() + k % f_.out_width()]);
    return r;
  }

  // The result takes the place of the first input.
  void in_place() { out_[0] = in_[0]; }

  void run(const orx::Kernel& k) {
    call_(k.entry, n_,
          {{in_[0], in_[1]}, {out_[0], out_[1]}, {scalar_[0], scalar_[1], scalar_[2], scalar_[3]}});
  }

  // Nothing was written beside the results.
  bool surroundings_untouched() const {
    for (int j = 0; j < f_.shape->outputs; ++j)
      for (int k = 1; k <= kRoom / 2; ++k)
        if (out_[j][-k] != kUntouched || out_[j][n_ * f_.out_width() + k - 1] != kUntouched) return false;
    return true;
  }

 private:
  static constexpr int kRoom = 64;

  R* place(std::vector<R>& storage, int width, int offset) {
    storage.assign(static_cast<size_t>((n_ + offset) * width + 3 * kRoom), kUntouched);
    R* const boundary = storage.data() + (64 - reinterpret_cast<uintptr_t>(storage.data()) % 64) / sizeof(R);
    return boundary + kRoom / 2 + kRoom / 2 * (sizeof(R) == 4) + offset * width;
  }

  const orx::Function& f_;
  const int n_;
  const orx::KernelCall<R> call_;
  std::vector<R> storage_[4];
  R *in_[2], *out_[2];
  R scalar_[4];
};

// An element of which nothing special is to be told: the numbers are spread over the range in which the function is
// timed.
template <class R>
std::vector<R> usual_element(const orx::Function& f, std::mt19937& random) {
  const auto number = [&](orx::descriptor::Interval range) {
    std::uniform_real_distribution<double> share(0.3, 0.7);
    const double u = share(random);
    if (range.from > 0) return static_cast<R>(range.from * std::pow(range.to / range.from, u));
    return static_cast<R>(range.from + u * (range.to - range.from));
  };
  const orx::descriptor::Interval first = f.about().timed, own = f.about().timed_second;
  const auto second = own.from < own.to ? own : first;
  std::vector<R> numbers;
  for (int k = 0; k < f.columns_in(); ++k) numbers.push_back(number(k < f.in_width() ? first : second));
  if (f.shape->scalars == f.in_width())
    for (int k = 0; k < f.shape->scalars; ++k) numbers.push_back(number(second));
  return numbers;
}

// Bits, so that NaNs and signs of zeros count.
template <class R>
bool same_bits(const std::vector<R>& a, const std::vector<R>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(R)) == 0;
}

// Keeps the calling thread's mode, status and callback for the life of a test.
struct TefState {
  int mode = _tefGetMode();
  TefErrorCallBack callback = _tefGetErrorCallBack();
  TefState() { _tefClearErrStatus(); }
  ~TefState() {
    _tefSetErrorCallBack(callback);
    _tefSetMode(mode);
    _tefClearErrStatus();
  }
};

}  // namespace test
