// Mahalanobis distances beside the bare dsymm, BACON beside the passes that its rounds consist of, robust covariance by n
// and p, weighted medians, imputation; on one thread and on two.
#include <random>
#include <string>
#include <vector>

#include "orx/ss.h"
#include "table.hpp"

extern "C" void dsymm_(const char* side, const char* uplo, const int* m, const int* n, const double* alpha,
                       const double* a, const int* lda, const double* b, const int* ldb, const double* beta,
                       double* c, const int* ldc);

extern "C" void openblas_set_num_threads(int count);

namespace {

constexpr int full = KOB_SS_FULL;

// Threads as many as asked for, and how often all of them were set to work at once: twice in each round.
struct Workers {
  static inline int runs = 0, threads = 1;
  static const ThreadingServices* services() {
    return threads == 1 ? orx_serv_threading_serial() : orx_serv_threading();
  }
  static int max_threads() { return threads; }
  static void run(int count, void* args, orx_worker fn) {
    ++runs;
    services()->parallelRun(count, args, fn);
  }
  static const ThreadingServices* table(int count) {
    static ThreadingServices table;
    threads = count;
    table = *services();
    table.parallelRun = run;
    table.maxThreads = max_threads;
    return &table;
  }
};

// Normal data, a tenth of them far away.
std::vector<double> contaminated(int p, int n) {
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal;
  std::vector<double> x(size_t(p) * n);
  for (double& v : x) v = normal(random);
  for (int j = 0; j < p; ++j)
    for (int i = 0; i < n / 10; ++i) x[size_t(j) * n + i * 10] += 20;
  return x;
}

struct Task {
  SSTask* task;
  int p, n, storage;
  std::vector<double> x, mean, cov, weights, inverse, distances, work;

  Task(int p_, int n_, int storage_ = KOB_SS_ROWS)
      : p(p_), n(n_), storage(storage_), x(contaminated(p, n)), mean(p), cov(size_t(p) * p), weights(n, 1.0) {
    if (storage == KOB_SS_COLUMNS) {
      std::vector<double> columns(x.size());
      for (int j = 0; j < p; ++j)
        for (int i = 0; i < n; ++i) columns[size_t(i) * p + j] = x[size_t(j) * n + i];
      x = std::move(columns);
    }
    __kobdSSNewTask(&task, &p, &n, &storage, x.data(), nullptr, nullptr, 0);
  }
  ~Task() { __kobSSDeleteTask(&task); }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;

  void prepare_distances() {
    inverse.assign(size_t(p) * p, 0.01);
    for (int j = 0; j < p; ++j) inverse[size_t(j) * p + j] = 1;
    distances.resize(n);
    work.resize(size_t(2000) * p);
    size = int(work.size());
    __kobdSSEditMahDistance(task, nullptr, nullptr, mean.data(), inverse.data(), distances.data(),
                            work.data(), &size);
  }
  void prepare_covariance() {
    __kobdSSEditTask(task, KOB_SS_ID_WEIGHTS, weights.data());
    __kobdSSEditCovCor(task, mean.data(), cov.data(), &full, nullptr, nullptr);
  }
  int size = 0;
};

void distances(benchmark::State& state, int p, int n, int storage) {
  Task t(p, n, storage);
  t.prepare_distances();
  bench::cycles(state, double(p) * n, [&] { _kobdSSMahDistance(t.task, 0, 0, nullptr); });
}

void bare_dsymm(benchmark::State& state, int p, int n) {
  Task t(p, n, KOB_SS_COLUMNS);
  t.prepare_distances();
  std::vector<double> product(t.x.size());
  const double one = 1, zero = 0;
  bench::cycles(state, double(p) * n, [&] {
    dsymm_("L", "U", &p, &n, &one, t.inverse.data(), &p, t.x.data(), &p, &zero, product.data(), &p);
  });
}

void covariance(benchmark::State& state, int p, int n, int threads) {
  Task t(p, n);
  t.prepare_covariance();
  const ThreadingServices* const table = Workers::table(threads);
  bench::cycles(state, double(p) * n,
                [&] { _kobdSSBasic(t.task, KOB_SS_COVARIANCE, KOB_SS_ONE_PASS, table); });
}

void bacon(benchmark::State& state, int p, int n, int threads) {
  Task t(p, n);
  __kobdSSEditOutDetect(t.task, nullptr, nullptr, t.weights.data());
  const ThreadingServices* const table = Workers::table(threads);
  int calls = 0;
  Workers::runs = 0;
  bench::cycles(state, double(p) * n, [&] {
    ++calls;
    _kobdSSOutliersDetection(t.task, 0, KOB_SS_BACON, table);
  });
  state.counters["rounds"] = (double(Workers::runs) / calls - 1) / 2;  // one in the start
}

void robust(benchmark::State& state, int p, int n, int storage, int threads, double rounds) {
  Task t(p, n, storage);
  const double params[] = {0.5, 0.001, 0.001, rounds};
  const int four = 4;
  __kobdSSEditRCov(t.task, &full, &four, params, t.mean.data(), t.cov.data());
  const ThreadingServices* const table = Workers::table(threads);
  int calls = 0;
  Workers::runs = 0;
  bench::cycles(state, double(p) * n, [&] {
    ++calls;
    _kobdSSRobustCovariance(t.task, 0, KOB_SS_TBS, table);
  });
  // Two runs of all workers each, and two in the start.
  state.counters["rounds"] = (double(Workers::runs) / calls - 2) / 2;
}

void weighted_median(benchmark::State& state, int p, int n) {
  Task t(p, n);
  const double half = 0.5;
  std::vector<double> medians(p);
  __kobdSSEditTask(t.task, KOB_SS_ID_WEIGHTS, t.weights.data());
  __kobdSSEditQuantiles(t.task, nullptr, &half, medians.data(), nullptr, nullptr);
  bench::cycles(state, double(p) * n, [&] { _kobdSSWMedian(t.task, 0, 0, nullptr); });
}

// A tenth of the values missing, anywhere.
void imputation(benchmark::State& state, int p, int n) {
  Task t(p, n);
  std::mt19937_64 random(2);
  int missing = 0;
  for (double& v : t.x)
    if (random() % 10 == 0) {
      v = -std::numeric_limits<double>::quiet_NaN();
      ++missing;
    }
  const double params[] = {10, 10, 1e-9, 1, double(missing)};
  const int five = 5;
  std::vector<double> simulated(missing);
  __kobdSSEditMissingVals(t.task, &five, params, nullptr, nullptr, nullptr, nullptr, &missing,
                          simulated.data(), nullptr, nullptr);
  bench::cycles(state, double(p) * n, [&] {
    _kobdSSMissingValues(t.task, 0, KOB_SS_MULTIPLE_IMPUTATION | KOB_SS_RESTORED_PRIOR, nullptr);
  });
}

template <class Function, class... Arguments>
void add(const std::string& name, int iterations, Function function, Arguments... arguments) {
  bench::repeat(benchmark::RegisterBenchmark(name.c_str(),
                                             [=](benchmark::State& state) { function(state, arguments...); }),
                iterations);
}

std::string sizes(int p, int n) { return "/p=" + std::to_string(p) + "/n=" + std::to_string(n); }

void add_all() {
  for (const int p : {3, 10, 50}) {
    const int n = 1000000 / p;
    add("distances/rows" + sizes(p, n), 50, distances, p, n, KOB_SS_ROWS);
    add("distances/columns" + sizes(p, n), 50, distances, p, n, KOB_SS_COLUMNS);
    add("bare dsymm" + sizes(p, n), 20, bare_dsymm, p, n);
  }
  const int p = 10, n = 1000000;
  add("covariance pass" + sizes(p, n), 10, covariance, p, n, 1);
  add("distance pass" + sizes(p, n), 10, distances, p, n, KOB_SS_ROWS);
  for (const int threads : {1, 2}) {
    const std::string suffix = "/threads=" + std::to_string(threads);
    add("BACON" + sizes(p, n) + suffix, 2, bacon, p, n, threads);
    add("robust" + sizes(20, 100000) + suffix, 1, robust, 20, 100000, KOB_SS_ROWS, threads, 100);
  }
  for (const int m : {10000, 50000, 200000})
    add("robust" + sizes(10, m), 3, robust, 10, m, KOB_SS_ROWS, 1, 100);
  for (const int q : {5, 10, 20, 40}) {
    add("robust" + sizes(q, 20000), 3, robust, q, 20000, KOB_SS_ROWS, 1, 100);
    add("robust, the start" + sizes(q, 20000), 3, robust, q, 20000, KOB_SS_ROWS, 1, 0);
  }
  add("robust/columns" + sizes(20, 20000), 1, robust, 20, 20000, KOB_SS_COLUMNS, 1, 100);
  add("weighted median" + sizes(10, 100000), 10, weighted_median, 10, 100000);
  add("imputation, ten rounds of either kind" + sizes(10, 10000), 3, imputation, 10, 10000);
}

}  // namespace

int main(int argc, char** argv) {
  openblas_set_num_threads(1);  // the workers are the threads
  add_all();
  return bench::run(argc, argv, "robust");
}
