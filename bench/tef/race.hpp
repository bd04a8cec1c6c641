// The kernels of a function and its peers, on the same arrays.
#pragma once
#include <x86intrin.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "peers.hpp"

inline uint64_t time_stamp() {
  _mm_lfence();
  const uint64_t t = __rdtsc();
  _mm_lfence();
  return t;
}

// A vector is walked in blocks, short enough that many escape an interruption by another process.
inline constexpr int kRaceBlock = 1 << 14;

template <class R>
struct Competitor {
  std::string name;
  VectorCall<R> call;
};

template <class R>
class Race {
 public:
  // Arrays of n elements, the arguments spread over the interval that the descriptor tells.
  Race(const orx::Function& f, int n) : f_(f), n_(n), random_(1) {
    using orx::descriptor::Interval;
    const Interval first = f.about().timed, own = f.about().timed_second;
    const Interval second = own.from < own.to ? own : first;
    for (int j = 0; j < f.shape->inputs; ++j) {
      R* const x = new_array(f.in_width());
      spread(x, n * f.in_width(), j ? second : first);
      o_.in[j] = x;
    }
    for (int j = 0; j < f.shape->outputs; ++j) o_.out[j] = new_array(f.out_width());
    std::fill_n(o_.scalar, 4, R(1.25));
    if (!f.shape->elementwise) make_selection();
    for (const orx::Kernel& k : f.kernels)
      competitors.push_back({k.name, [call = orx::kernel_call<R>(f), entry = k.entry](
                                         int n, const orx::Operands<R>& o) { call(entry, n, o); }});
    for (Peer<R>& p : peers<R>(f))
      competitors.push_back({kPeerNames[static_cast<int>(p.kind)], std::move(p.run)});
  }

  // The operands from element `from` on.
  orx::Operands<R> operands_at(int from) const {
    orx::Operands<R> o = o_;
    for (int j = 0; j < f_.shape->inputs; ++j) o.in[j] += from * f_.in_width();
    for (int j = 0; j < f_.shape->outputs; ++j) o.out[j] += from * f_.out_width();
    if (o.selection) o.selection += from;
    return o;
  }

  std::vector<Competitor<R>> competitors;

 private:
  // Twice as large as needed, for the strides.
  R* new_array(int width) {
    const size_t count = 2 * static_cast<size_t>(n_ * width), bytes = (sizeof(R) * count + 63) / 64 * 64;
    arrays_.emplace_back(static_cast<R*>(std::aligned_alloc(64, bytes)), std::free);
    std::fill_n(arrays_.back().get(), count, R(0));
    return arrays_.back().get();
  }

  // For packing: every other element, about half of them, or neighbours out of order.
  void make_selection() {
    const bool mask = f_.name.back() == 'M';
    for (int i = 0; i < n_; ++i)
      selection_.push_back(mask ? static_cast<int>(random_() >> 16 & 1) : i % kRaceBlock ^ 5);
    o_.selection = selection_.data();
    o_.stride = 2;
  }

  // Evenly, or evenly in the logarithm over a wide range of positive numbers.
  void spread(R* x, int count, orx::descriptor::Interval range) {
    const bool by_logarithm = range.from > 0 && range.to / range.from > 1e6;
    std::uniform_real_distribution<double> even(by_logarithm ? std::log(range.from) : range.from,
                                                by_logarithm ? std::log(range.to) : range.to);
    for (int i = 0; i < count; ++i) {
      const double u = even(random_);
      x[i] = static_cast<R>(by_logarithm ? std::exp(u) : u);
    }
  }

  const orx::Function& f_;
  const int n_;
  std::mt19937 random_;
  orx::Operands<R> o_;
  std::vector<int> selection_;
  std::vector<std::unique_ptr<R, void (*)(void*)>> arrays_;
};
