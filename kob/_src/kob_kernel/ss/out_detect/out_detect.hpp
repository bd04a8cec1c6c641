// Outliers by BACON, the blocked adaptive computationally efficient outlier nominator (Billor, Hadi and Velleman,
// Computational Statistics & Data Analysis 34, 2000): from a small subset of observations near the centre the basic
// subset grows to all those whose distance, by mean and covariance of the subset before, is below a corrected quantile.
#pragma once

#include <algorithm>

#include "_math/chi_square.hpp"
#include "_robust/checks.hpp"
#include "_robust/inner_task.hpp"
#include "_robust/median.hpp"
#include "_robust/rank.hpp"
#include "mah_distance/mah_distance.hpp"
#include "orx/base/default_arithmetic.hpp"
#include "out_detect/cycle.hpp"
#include "wmedian/wmedian.hpp"

namespace orx::ss::out_detect {

template <class T>
int check(const SSTask* task, unsigned method) {
  if (const int status = check_task<T>(task)) return status;
  if (const int status = check_dimension(task)) return status;
  if (const int status = check_count(task, task->observationCount, KOB_SS_ERROR_OBSERVATION_COUNT))
    return status;
  if (value(task, task->observationCount) < 5 * value(task, task->dimension))
    return KOB_SS_ERROR_OBSERVATION_COUNT;
  if (!task->obsStorage || !is_observation_storage(task, task->obsStorage)) return KOB_SS_ERROR_STORAGE;
  if (!task->observations) return KOB_SS_ERROR_OBSERVATIONS;
  if (!task->outlierWeights) return KOB_SS_ERROR_OUTLIER_WEIGHTS;
  return method & KOB_SS_BACON ? KOB_SS_OK : KOB_SS_ERROR_METHOD;
}

struct Parameters {
  bool start_by_mahalanobis = false;
  double alpha = 0.05, beta = 0.005;

  template <class T>
  void read(const T* given) {
    start_by_mahalanobis = given[0] >= 1 && given[0] < 2;
    if (given[1] >= 0 && given[1] <= 1) alpha = double(given[1]);
    if (given[2] > 0) beta = double(given[2]);
  }
};

// An observation and how far it is from the centre.
template <class T>
struct Near {
  T distance;
  int observation;
  bool operator<(const Near& other) const {
    return distance < other.distance || (distance == other.distance && observation < other.observation);
  }
};

// What a worker has marked: the observations that it kept, and a number that stands for the set of the others.
struct alignas(64) Tally {
  int kept;
  uint64_t outliers;
};

// A number that looks random (the finalizer of SplitMix64).
inline uint64_t scrambled(uint64_t x) {
  x = (x + 0x9E3779B97F4A7C15) * 0xBF58476D1CE4E5B9;
  x = (x ^ x >> 27) * 0x94D049BB133111EB;
  return x ^ x >> 31;
}

template <class T>
struct Bacon {
  SSTask* task;
  Observations<T> data;
  const T* given;  // weights, or null
  T* weights;      // the results: 0 of an outlier
  const ThreadingServices* threading;
  int workers;
  Block<T> centre, covariance, inverse, work;  // of the work an area for each worker
  Block<Near<T>> nearest;
  Block<Tally> tallies;
  T cut = 0;

  // Observations whose distances are had at a time.
  static constexpr int kRun = 2048;

  Bacon(SSTask* t, const ThreadingServices* services)
      : task(t),
        data(t),
        given(reals<T>(t->weights)),
        weights(reals<T>(t->outlierWeights)),
        threading(threading_or_serial(services)),
        workers(int64_t(data.n) * data.p < 10000 ? 1 : threading->maxThreads()) {}

  int subset_size() const { return 5 * data.p; }
  // A worker's area: the distances of a run, then what they are computed in.
  int64_t area_size() const { return kRun + mah_distance::work_size<T>(data.p); }
  T* run(int worker) const { return work.get() + worker * area_size(); }

  bool allocate() {
    const int64_t p = data.p;
    return centre.allocate(p) && covariance.allocate(p * p) && nearest.allocate(5 * p * workers) &&
           tallies.allocate(workers) && work.allocate(int64_t(workers) * area_size());
  }
  T weight(int i) const { return given ? given[i] : T(1); }

  // Distances of a run of observations into a worker's area.
  const T* distances(int worker, int first, int count) const {
    T* const d = run(worker);
    mah_distance::distances<T>(data, first, first + count, {centre.get(), inverse.get()}, d, d + kRun);
    return d;
  }
  // The centre and the inverse covariance of weighted observations.
  int measure_by(const T* w) {
    WeightedCovariance<T> moments;
    if (const int status = moments.compute(task, w, centre.get(), covariance.get(), threading)) return status;
    return invert_covariance(data.p, covariance.get(), inverse);
  }
};

// ---- the start ----

template <class T>
struct Medians {
  const Bacon<T>* bacon;
  T* areas;                              // for each worker n numbers,
  wmedian::Weighted<T>* weighted_areas;  // or as many with their weights
};

template <class T>
void _vSSMedianThreader(int j, int t, int, void* arguments) {
  const Medians<T>& m = *static_cast<const Medians<T>*>(arguments);
  const Bacon<T>& b = *m.bacon;
  const int n = b.data.n;
  if (b.given) {
    b.centre[j] = wmedian::quantile_of(b.data, j, b.given, T(0.5), m.weighted_areas + intptr_t(t) * n);
    return;
  }
  T* const area = m.areas + intptr_t(t) * n;
  quantiles::copy(b.data.variable(j), b.data.stride(), area, 1, n);
  b.centre[j] = median(area, n);
}

// The medians of all variables become the centre.
template <class T>
int centre_at_medians(Bacon<T>& b) {
  const int threads = std::min(b.workers, b.data.p);
  const int64_t size = int64_t(threads) * b.data.n;
  Block<T> areas;
  Block<wmedian::Weighted<T>> weighted_areas;
  if (b.given ? !weighted_areas.allocate(size) : !areas.allocate(size)) return KOB_SS_ERROR_MEMORY;
  Medians<T> medians = {&b, areas.get(), weighted_areas.get()};
  b.threading->parallelFor(b.data.p, threads, &medians, _vSSMedianThreader<T>);
  return KOB_SS_OK;
}

// Keeps the nearest of all that it is shown; of equally near ones the earlier.
template <class T>
class Nearest {
 public:
  // The first `count` of the room are there already.
  Nearest(Near<T>* room, int size, int count = 0) : room_(room), size_(size), count_(count) {}
  int count() const { return count_; }

  void show(T distance, int i) {
    // One whose distance is NaN is farther than all others.
    const Near<T> next = {distance == distance ? distance : std::numeric_limits<T>::infinity(), i};
    if (count_ < size_) {
      room_[count_++] = next;
      std::push_heap(room_, room_ + count_);
    } else if (next < room_[0]) {
      std::pop_heap(room_, room_ + size_);
      room_[size_ - 1] = next;
      std::push_heap(room_, room_ + size_);
    }
  }

 private:
  Near<T>* room_;
  int size_, count_;
};

// The observations of worker t: equal shares, the rest to the last.
template <class T>
void share(const Bacon<T>& b, int t, int& first, int& end) {
  const int size = b.data.n / b.workers;
  first = t * size;
  end = t == b.workers - 1 ? b.data.n : first + size;
}

// Each worker keeps the nearest of its share.
template <class T>
void _vSSNearestThreader(int t, int, int, void* arguments) {
  const Bacon<T>& b = *static_cast<const Bacon<T>*>(arguments);
  Nearest<T> nearest(b.nearest.get() + intptr_t(t) * b.subset_size(), b.subset_size());
  int first, end;
  for (share(b, t, first, end); first < end; first += b.kRun) {
    const int count = std::min(b.kRun, end - first);
    const T* const d = b.distances(t, first, count);
    for (int i = 0; i < count; ++i) nearest.show(d[i], first + i);
  }
  b.tallies[t].kept = nearest.count();
}

// The weights of the first basic subset.
template <class T>
int start(Bacon<T>& b, bool by_mahalanobis) {
  if (const int status = by_mahalanobis ? b.measure_by(b.given) : centre_at_medians(b)) return status;
  b.threading->parallelRun(b.workers, &b, _vSSNearestThreader<T>);
  Nearest<T> nearest(b.nearest.get(), b.subset_size(), b.tallies[0].kept);
  for (int t = 1; t < b.workers; ++t)
    for (int k = 0; k < b.tallies[t].kept; ++k) {
      const Near<T>& next = b.nearest[intptr_t(t) * b.subset_size() + k];
      nearest.show(next.distance, next.observation);
    }
  for (int i = 0; i < b.data.n; ++i) b.weights[i] = 0;
  for (int k = 0; k < b.subset_size(); ++k) {
    const int i = b.nearest[k].observation;
    b.weights[i] = b.weight(i);
  }
  return KOB_SS_OK;
}

// ---- the rounds ----

template <class T>
void _vSSBaconThreader(int t, int, int, void* arguments) {
  const Bacon<T>& b = *static_cast<const Bacon<T>*>(arguments);
  int first, end;
  Tally tally = {0, 0};
  for (share(b, t, first, end); first < end; first += b.kRun) {
    const int count = std::min(b.kRun, end - first);
    const T* const d = b.distances(t, first, count);
    for (int i = 0; i < count; ++i) {
      const bool keep = b.cut > d[i];
      b.weights[first + i] = keep ? b.weight(first + i) : T(0);
      tally.kept += keep;
      if (!keep) tally.outliers += scrambled(uint64_t(first) + uint64_t(i));
    }
  }
  b.tallies[t] = tally;
}

// The corrections of the quantile for a basic subset of r out of n observations.
struct Correction {
  Correction(double n, double p) : h((1 + p + n) * 0.5), cnp(1 + (1 + p) / (n - p) + 2 / (n - 1 - 3 * p)) {}
  double operator()(double r) const { return std::max(0.0, (h - r) / (h + r)) + cnp; }
  double h, cnp;
};

template <class T>
int iterate(Bacon<T>& b, const Parameters& parameters) {
  const int n = b.data.n, p = b.data.p;
  const double chi = in_default_arithmetic(
      [&] { return double(extended::root(extended::chi2_upper_quantile(p, parameters.alpha))); });
  const Correction correction(n, p);
  Cycle cycle;
  for (int r = b.subset_size();;) {
    if (const int status = b.measure_by(b.weights)) return status;
    b.cut = T(correction(r) * chi);
    b.threading->parallelRun(b.workers, &b, _vSSBaconThreader<T>);
    Tally all = {0, 0};
    for (int t = 0; t < b.workers; ++t) {
      all.kept += b.tallies[t].kept;
      all.outliers += b.tallies[t].outliers;
    }
    const int before = r;
    r = all.kept;
    if (r == n || r == 0 || std::abs(r - before) < parameters.beta * before ||
        cycle.stops_at(all.outliers, r))
      return r > b.subset_size() ? KOB_SS_OK : KOB_SS_ERROR_NO_SUBSET;
  }
}

template <class T>
int compute(SSTask* task, unsigned method, const ThreadingServices* threading) {
  if (const int status = check<T>(task, method)) return status;
  Parameters parameters;
  if (const T* given = given_parameters<T>(task, task->outlierParamCount, task->outlierParams, 3))
    parameters.read(given);
  Bacon<T> b(task, threading);
  if (!b.allocate()) return KOB_SS_ERROR_MEMORY;
  if (const int status = start(b, parameters.start_by_mahalanobis)) return status;
  return iterate(b, parameters);
}

}  // namespace orx::ss::out_detect
