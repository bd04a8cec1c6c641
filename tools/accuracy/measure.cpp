#include "measure.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <deque>
#include <thread>

#include "arguments.hpp"
#include "orx/tef.h"

namespace {

constexpr int most = 4096;  // elements of a call

// Arrays for calls whose alignments and lengths vary, so that the first, middle and last parts of a kernel's
// loop are all met.
template <class T>
class bench_arrays {
 public:
  explicit bench_arrays(uint64_t seed) : random_(seed) {
    for (auto& array : arrays_) array.resize(most + 32);
  }

  // Places the arrays of the next call anew; returns how many elements it may take.
  int shuffle() {
    for (int i = 0; i < 3; ++i) at[i] = arrays_[i].data() + random_() % 32;
    return most - static_cast<int>(random_() % 64);
  }

  // Runs a kernel on the first n elements of the inputs at[0] and at[1]; the result is in at[2].
  void call(const function_entry& f, const kernel_entry& k, int n, const std::array<T, 4>& scalar) {
    kernel_operands<T> o{{at[0], at[1]}, {at[2]}, {}};
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

void set_mode() { orx_tef_kernel_SetMode(TEF_HA | TEF_ERRMODE_IGNORE | TEF_FLUSH_OFF); }

// The quick judgement of a single: most elements need no other.
class quick_judge {
 public:
  // The weight of the last place is read off the result rounded to single.
  explicit quick_judge(double exact) : exact_(exact), nearest_(static_cast<float>(exact)) {
    uint32_t bits;
    std::memcpy(&bits, &nearest_, 4);
    const int exponent = std::max(bits >> 23 & 0xFF, 1u);
    const uint64_t scale = static_cast<uint64_t>(1023 + 150 - exponent) << 52;
    std::memcpy(&places_per_unit_, &scale, 8);
  }
  // In ulps; NaN where it cannot tell.
  double error(float computed) const {
    if (std::isnan(exact_) && std::isnan(computed)) return 0;
    if (std::isinf(nearest_) && computed == nearest_) return 0;
    if (computed == 0 && std::signbit(computed) != std::signbit(exact_)) return NAN;
    return std::fabs(computed - exact_) * places_per_unit_;
  }
  bool is_nearest(float computed) const { return computed == nearest_ || std::isnan(exact_); }

 private:
  double exact_, places_per_unit_;
  float nearest_;
};

// Measures chunks of consecutive singles until none is left.
class singles_worker {
 public:
  singles_worker(const function_entry& function, const judged_function& judged)
      : records(function.kernels.size()), f_(function), quick_(judged.quick), exactly_(judged), arrays_(1) {}

  void run(std::atomic<uint32_t>& next_chunk) {
    set_mode();
    for (uint32_t chunk; (chunk = next_chunk++) < chunks;) {
      if (chunk % (chunks / 64) == 0) std::fprintf(stderr, ".");
      arrays_.shuffle();
      for (uint32_t i = 0; i < most; ++i) {
        const uint32_t bits = chunk * most + i;
        std::memcpy(&arrays_.at[0][i], &bits, 4);
      }
      measure_chunk();
    }
  }

  std::vector<record> records;

 private:
  static constexpr uint32_t chunks = (uint64_t(1) << 32) / most;

  void measure_chunk() {
    const float* x = arrays_.at[0];
    if (quick_)
      for (int i = 0; i < most; ++i) exact_[i] = quick_(x[i]);
    for (size_t k = 0; k < records.size(); ++k) {
      arrays_.call(f_, f_.kernels[k], most, {});
      for (int i = 0; i < most; ++i) measure_element(records[k], f_.kernels[k].bound, i);
    }
  }

  void measure_element(record& r, double bound, int i) {
    constexpr double doubt = 1e-6;  // far above the error of the quick judge
    const float x = arrays_.at[0][i], y = arrays_.at[2][i];
    if (quick_) {
      const quick_judge quick(exact_[i]);
      const double error = quick.error(y);
      const bool far_from_record = error < r.worst - doubt || (error < doubt && r.worst >= 0);
      if (far_from_record && error < bound - doubt && std::fabs(error - 0.5) > doubt) {
        ++r.count;
        r.correct += quick.is_nearest(y);
        return;
      }
    }
    r.add(compare(exactly_(&x, 1), y), {{x}, y});
  }

  const function_entry& f_;
  double (*quick_)(double);
  judge exactly_;
  bench_arrays<float> arrays_;
  double exact_[most];
};

}  // namespace

void record::add(const verdict& v, const sample& at) {
  ++count;
  correct += v.correct;
  if (v.wrong && wrong++ == 0) wrong_at = at;
  if (!v.wrong && v.error > worst) {
    worst = v.error;
    worst_at = at;
  }
}

void record::merge(const record& other) {
  if (wrong == 0) wrong_at = other.wrong_at;
  if (other.worst > worst || (other.worst == worst && other.worst_at.in[0] > worst_at.in[0])) {
    worst = other.worst;
    worst_at = other.worst_at;
  }
  count += other.count;
  correct += other.correct;
  wrong += other.wrong;
}

template <class T>
std::vector<record> measure_strata(const function_entry& f, const judged_function& judged, double effort) {
  set_mode();
  bench_arrays<T> arrays(1);
  const columns<T> x = make_arguments<T>(f, judged, effort, arrays.random());
  judge exactly(judged);
  std::vector<record> records(f.kernels.size());
  std::vector<exact_result> exact(most);
  const int inputs = f.shape->inputs, parameters = inputs + f.shape->scalars;

  for (size_t done = 0, n; done < x[0].size(); done += n) {
    n = std::min<size_t>(arrays.shuffle(), x[0].size() - done);
    T element[6];
    const std::array<T, 4> scalar = make_scalars<T>(arrays.random());
    std::copy(scalar.begin(), scalar.end(), element + inputs);
    for (int j = 0; j < inputs; ++j) std::copy_n(x[j].data() + done, n, arrays.at[j]);
    for (size_t i = 0; i < n; ++i) {
      for (int j = 0; j < inputs; ++j) element[j] = arrays.at[j][i];
      exact[i] = exactly(element, parameters);
    }
    for (size_t k = 0; k < records.size(); ++k) {
      arrays.call(f, f.kernels[k], static_cast<int>(n), scalar);
      for (size_t i = 0; i < n; ++i) {
        sample at{{}, arrays.at[2][i]};
        for (int j = 0; j < inputs; ++j) at.in[j] = arrays.at[j][i];
        records[k].add(compare(exact[i], arrays.at[2][i]), at);
      }
    }
  }
  return records;
}

template std::vector<record> measure_strata<float>(const function_entry&, const judged_function&, double);
template std::vector<record> measure_strata<double>(const function_entry&, const judged_function&, double);

std::vector<record> measure_all_singles(const function_entry& function, const judged_function& judged) {
  std::fprintf(stderr, "%s ", function.full_name().c_str());
  std::deque<singles_worker> workers;
  const unsigned count = std::max(1u, std::thread::hardware_concurrency());
  for (unsigned i = 0; i < count; ++i) workers.emplace_back(function, judged);
  std::atomic<uint32_t> next_chunk{0};
  std::vector<std::thread> threads;
  for (singles_worker& worker : workers) threads.emplace_back([&] { worker.run(next_chunk); });
  for (std::thread& thread : threads) thread.join();
  std::fprintf(stderr, "\n");
  std::vector<record> records = std::move(workers.front().records);
  for (unsigned i = 1; i < count; ++i)
    for (size_t k = 0; k < records.size(); ++k) records[k].merge(workers[i].records[k]);
  return records;
}
