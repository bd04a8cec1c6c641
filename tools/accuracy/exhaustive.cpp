// All 2^32 singles. A quick judge, whose own error does not matter, passes nearly all elements; those that
// might set a record, or that it cannot judge, go to MPFR.
#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <cfenv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <deque>
#include <thread>

#include "call_arrays.hpp"
#include "measure.hpp"
#include "orx/tef.h"

namespace orx {
namespace {

constexpr int kMost = CallArrays<float>::kMost;
constexpr uint32_t kChunks = (uint64_t(1) << 32) / kMost;
constexpr double kDoubt = 1e-6;  // ulps; far above the error of the quick judge

uint32_t bits_of(float x) {
  uint32_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}

// Measures chunks of consecutive singles until none is left.
class SinglesWorker {
 public:
  // `known` errors are those to beat: without them half of all elements might be the largest so far in their
  // turn.
  SinglesWorker(const Function& function, const std::vector<Record>& known)
      : records(known.size()),
        f_(function),
        quick_(quick_judge(function)),
        exactly_(function),
        arrays_(function, 1) {
    for (size_t k = 0; k < known.size(); ++k) {
      records[k].worst = known[k].worst;
      records[k].worst_at = known[k].worst_at;
    }
  }

  void run(std::atomic<uint32_t>& next_chunk) {
    const float no_scalars[4] = {};
    orx_tef_kernel_SetMode(TEF_HA | TEF_ERRMODE_IGNORE | TEF_FLUSH_OFF);
    for (uint32_t chunk; (chunk = next_chunk++) < kChunks;) {
      if (chunk % (kChunks / 64) == 0) std::fprintf(stderr, ".");
      arrays_.shuffle();
      for (uint32_t i = 0; i < kMost; ++i) {
        const uint32_t bits = chunk * kMost + i;
        std::memcpy(&arrays_.in(0, static_cast<int>(i)), &bits, sizeof bits);
      }
      judge_quickly();
      for (size_t k = 0; k < records.size(); ++k) {
        measure_ = measure_of(f_, f_.kernels[k]);
        for (int direction : callers_directions(f_.kernels[k])) {
          std::fesetround(direction);
          arrays_.call(f_.kernels[k], kMost, no_scalars);
          std::fesetround(FE_TONEAREST);
          measure_quickly(records[k]);
        }
      }
    }
  }

  std::vector<Record> records;

 private:
  // The caller's rounding must not matter. Where results are exact, and cheap, all four directions are tried.
  std::vector<int> callers_directions(const Kernel& kernel) const {
    const bool exact = kernel.bound == descriptor::kExact.ha && !f_.descriptor->keep_control_word;
    return exact ? std::vector<int>{FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}
                 : std::vector<int>{FE_TONEAREST};
  }

  void judge_quickly() {
    for (int i = 0; i < kMost; ++i) exact_[i] = quick_(arrays_.in(0, i));
    for (int i = 0; i < kMost; ++i) {
      nearest_[i] = static_cast<float>(exact_[i]);
      const uint32_t exponent = std::max(bits_of(nearest_[i]) >> 23 & 0xFF, 1u);
      const uint64_t places = static_cast<uint64_t>(1023 + 150 - exponent) << 52;
      std::memcpy(places_ + i, &places, sizeof places);
    }
  }

  void measure_quickly(Record& r) {
    const float* y = &arrays_.out(0, 0);
    const double most_places = std::ldexp(1.0, -measure_.floor_unit);
    uint32_t sign_differs = 0;
    for (int i = 0; i < kMost; ++i) {
      error_[i] = std::fabs(y[i] - exact_[i]) * std::min(places_[i], most_places);
      sign_differs |= bits_of(y[i]) ^ bits_of(nearest_[i]);
    }
    const bool look_at_signs = sign_differs >> 31;
    const double limit = std::max(r.worst - kDoubt, kDoubt);
    for (int i = 0; i < kMost; ++i) {
      const bool far_from_record = error_[i] < limit && !(std::fabs(error_[i] - 0.5) < kDoubt);
      const bool sign_agrees = !look_at_signs || std::signbit(y[i]) == std::signbit(nearest_[i]);
      const bool as_special =
          (std::isinf(nearest_[i]) && y[i] == nearest_[i]) || (std::isnan(exact_[i]) && std::isnan(y[i]));
      if ((far_from_record && sign_agrees) || as_special) {
        ++r.count;
        r.correct += as_special || y[i] == nearest_[i];
      } else {
        measure(r, i);
      }
    }
  }

  void measure(Record& r, int i) {
    const float x = arrays_.in(0, i), y = arrays_.out(0, i);
    ExactResult exact;
    exactly_(&x, &exact);
    r.add(compare(&exact, &y, 1, measure_), {{x}, {y}});
  }

  const Function& f_;
  Measure measure_;
  double (*quick_)(double);
  Judge exactly_;
  CallArrays<float> arrays_;
  double exact_[kMost], places_[kMost], error_[kMost];
  float nearest_[kMost];
};

}  // namespace

double (*quick_judge(const Function& f))(double) {
  if (f.descriptor->quick_judge) return f.descriptor->quick_judge;
  return reinterpret_cast<double (*)(double)>(dlsym(RTLD_DEFAULT, f.descriptor->c_name));
}

std::vector<Record> measure_all_singles(const Function& function) {
  const std::vector<Record> known = measure_strata<float>(function, 10);
  std::fprintf(stderr, "%s ", function.full_name().c_str());
  std::deque<SinglesWorker> workers;
  const unsigned count = std::max(1u, std::thread::hardware_concurrency());
  for (unsigned i = 0; i < count; ++i) workers.emplace_back(function, known);
  std::atomic<uint32_t> next_chunk{0};
  std::vector<std::thread> threads;
  for (SinglesWorker& worker : workers) threads.emplace_back([&] { worker.run(next_chunk); });
  for (std::thread& thread : threads) thread.join();
  std::fprintf(stderr, "\n");
  std::vector<Record> records = std::move(workers.front().records);
  for (unsigned i = 1; i < count; ++i)
    for (size_t k = 0; k < records.size(); ++k) records[k].merge(workers[i].records[k]);
  return records;
}

}  // namespace orx
