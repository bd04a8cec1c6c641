// Moments and covariance: each method and storage beside GSL, a plain loop, the bare BLAS and the memory.
#include <gsl/gsl_statistics.h>
#include <immintrin.h>

#include <cmath>
#include <random>
#include <vector>

#include "orx/ss.h"
#include "table.hpp"

extern "C" void dsyrk_(const char*, const char*, const int*, const int*, const double*, const double*,
                       const int*, const double*, double*, const int*);
extern "C" void openblas_set_num_threads(int);

namespace {

template <class T>
struct DataSet {
  DataSet(int p_, int n_, int storage_) : p(p_), n(n_), storage(storage_), x(size_t(p) * n) {
    std::mt19937_64 random(1);
    std::normal_distribution<float> normal(3, 2);
    for (T& v : x) v = T(normal(random));
  }
  int p, n, storage;
  std::vector<T> x;
};

// The last data set is kept: benchmarks that use the same one stand together.
template <class T>
const DataSet<T>& data_set(int p, int n, int storage) {
  static DataSet<T>* last = nullptr;
  if (!last || last->p != p || last->n != n || last->storage != storage) {
    delete last;
    last = new DataSet<T>(p, n, storage);
  }
  return *last;
}

int new_task(SSTask** task, const DataSet<double>& d) {
  return __kobdSSNewTask(task, &d.p, &d.n, &d.storage, d.x.data(), nullptr, nullptr, 0);
}
int new_task(SSTask** task, const DataSet<float>& d) {
  return __kobsSSNewTask(task, &d.p, &d.n, &d.storage, d.x.data(), nullptr, nullptr, 0);
}
int edit(SSTask* task, int id, double* a) { return __kobdSSEditTask(task, id, a); }
int edit(SSTask* task, int id, float* a) { return __kobsSSEditTask(task, id, a); }
int basic(SSTask* t, int e, int m, const ThreadingServices* s, double) { return _kobdSSBasic(t, e, m, s); }
int basic(SSTask* t, int e, int m, const ThreadingServices* s, float) { return _kobsSSBasic(t, e, m, s); }

constexpr int all_moments = KOB_SS_MEAN | KOB_SS_RAW_MOMENT_2 | KOB_SS_RAW_MOMENT_3 | KOB_SS_RAW_MOMENT_4 |
                            KOB_SS_CENTRAL_MOMENT_2 | KOB_SS_CENTRAL_MOMENT_3 | KOB_SS_CENTRAL_MOMENT_4 |
                            KOB_SS_KURTOSIS | KOB_SS_SKEWNESS | KOB_SS_VARIATION;

template <class T>
void run(benchmark::State& state, int p, int n, int storage, int estimates, int method, bool threads,
         bool weighted = false) {
  const DataSet<T>& d = data_set<T>(p, n, storage);
  std::vector<T> results(size_t(p) * 20 + size_t(p) * p);
  const int full = KOB_SS_FULL;
  SSTask* task;
  new_task(&task, d);
  for (int id = KOB_SS_ID_MEAN; id <= KOB_SS_ID_VARIATION; ++id)
    edit(task, id, &results[(id - KOB_SS_ID_MEAN) * p]);
  edit(task, KOB_SS_ID_COVARIANCE, &results[size_t(p) * 20]);
  __kobiSSEditTask(task, KOB_SS_ID_COVARIANCE_STORAGE, &full);
  for (int j = 0; j < p; ++j) results[j] = T(3);
  std::vector<T> weights(n);
  for (int i = 0; i < n; ++i) weights[i] = T(1 + i % 3);
  if (weighted) edit(task, KOB_SS_ID_WEIGHTS, weights.data());
  const ThreadingServices* table = threads ? orx_serv_threading() : orx_serv_threading_serial();
  bench::cycles(state, double(p) * n, [&] { basic(task, estimates, method, table, T()); });
  __kobSSDeleteTask(&task);
}

double read(const double* x, size_t n) {
  __m256d s[4] = {};
  for (size_t i = 0; i + 16 <= n; i += 16)
    for (int k = 0; k < 4; ++k) s[k] += _mm256_loadu_pd(x + i + 4 * k);
  const __m256d t = s[0] + s[1] + s[2] + s[3];
  return t[0] + t[1] + t[2] + t[3];
}

void read_memory(benchmark::State& state, int p, int n) {
  const DataSet<double>& d = data_set<double>(p, n, KOB_SS_ROWS);
  bench::cycles(state, double(p) * n, [&] { benchmark::DoNotOptimize(read(d.x.data(), d.x.size())); });
}

// The same results by GSL: mean, raw moments from their definition are left out; they would only add to its
// time.
void gsl_moments(benchmark::State& state, int p, int n, int storage) {
  const DataSet<double>& d = data_set<double>(p, n, storage);
  const size_t stride = storage == KOB_SS_ROWS ? 1 : p;
  bench::cycles(state, double(p) * n, [&] {
    for (int j = 0; j < p; ++j) {
      const double* x = d.x.data() + (storage == KOB_SS_ROWS ? size_t(j) * n : j);
      const double mean = gsl_stats_mean(x, stride, n), sd = gsl_stats_sd_m(x, stride, n, mean);
      benchmark::DoNotOptimize(gsl_stats_skew_m_sd(x, stride, n, mean, sd));
      benchmark::DoNotOptimize(gsl_stats_kurtosis_m_sd(x, stride, n, mean, sd));
    }
  });
}

void bare_syrk(benchmark::State& state, int p, int n, int storage) {
  const DataSet<double>& d = data_set<double>(p, n, storage);
  std::vector<double> c(size_t(p) * p);
  const double one = 1, zero = 0;
  const int ld = storage == KOB_SS_ROWS ? n : p;
  bench::cycles(state, double(p) * n, [&] {
    dsyrk_("U", storage == KOB_SS_ROWS ? "T" : "N", &p, &n, &one, d.x.data(), &ld, &zero, c.data(), &p);
  });
}

// A plain double loop over the variables for each observation, with the running mean.
void plain_covariance(benchmark::State& state, int p, int n) {
  const DataSet<double>& d = data_set<double>(p, n, KOB_SS_COLUMNS);
  bench::cycles(state, double(p) * n, [&] {
    std::vector<double> mean(p), c(size_t(p) * p), distance(p);
    for (int i = 0; i < n; ++i) {
      const double* x = &d.x[size_t(i) * p];
      const double r = 1 / (i + 1.), t = i * r;
      for (int j = 0; j < p; ++j) distance[j] = x[j] - mean[j];
      for (int j = 0; j < p; ++j)
        for (int k = 0; k <= j; ++k) c[size_t(j) * p + k] += t * distance[j] * distance[k];
      for (int j = 0; j < p; ++j) mean[j] += r * distance[j];
    }
    benchmark::DoNotOptimize(c.data());
  });
}

// A plain double loop over pairs of variables, the mean being known.
void plain_pairs(benchmark::State& state, int p, int n) {
  const DataSet<double>& d = data_set<double>(p, n, KOB_SS_ROWS);
  bench::cycles(state, double(p) * n, [&] {
    for (int j = 0; j < p; ++j)
      for (int k = 0; k <= j; ++k) {
        const double *x = &d.x[size_t(j) * n], *y = &d.x[size_t(k) * n];
        double sum = 0;
        for (int i = 0; i < n; ++i) sum += (x[i] - 3) * (y[i] - 3);
        benchmark::DoNotOptimize(sum);
      }
  });
}

const char* name_of(int storage) { return storage == KOB_SS_ROWS ? "rows" : "columns"; }

void register_all() {
  const auto add = [](const std::string& name, int iterations, auto f) {
    bench::repeat(benchmark::RegisterBenchmark(name.c_str(), f), iterations);
  };
  const struct {
    int bit;
    const char* name;
  } methods[] = {{KOB_SS_FAST, "fast"}, {KOB_SS_ONE_PASS, "one_pass"}, {KOB_SS_USER_MEAN, "user_mean"}};
  const int n = 1000000;
  add("moments/p10/read_memory", 200, [=](auto& s) { read_memory(s, 10, n); });
  for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS}) {
    const std::string where = name_of(storage);
    for (const auto& m : methods) {
      const int bit = m.bit;
      add("moments/p10/" + where + "/" + m.name, 100,
          [=](auto& s) { run<double>(s, 10, n, storage, all_moments, bit, false); });
    }
    add("moments/p10/" + where + "/one_pass_two_threads", 100,
        [=](auto& s) { run<double>(s, 10, n, storage, all_moments, KOB_SS_ONE_PASS, true); });
    add("moments/p10/" + where + "/fast_two_threads", 100,
        [=](auto& s) { run<double>(s, 10, n, storage, all_moments, KOB_SS_FAST, true); });
    for (const auto& m : methods) {
      const int bit = m.bit;
      add("moments/p10/" + where + "/weights/" + m.name, 50,
          [=](auto& s) { run<double>(s, 10, n, storage, all_moments, bit, false, true); });
    }
    add("mean/p10/" + where + "/one_pass", 100,
        [=](auto& s) { run<double>(s, 10, n, storage, KOB_SS_MEAN, KOB_SS_ONE_PASS, false); });
    add("mean/p10/" + where + "/one_pass_two_threads", 100,
        [=](auto& s) { run<double>(s, 10, n, storage, KOB_SS_MEAN, KOB_SS_ONE_PASS, true); });
    add("moments/p10/" + where + "/gsl", 3, [=](auto& s) { gsl_moments(s, 10, n, storage); });
  }
  for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
    for (const auto& m : methods) {
      const int bit = m.bit;
      add(std::string("moments/p10/float/") + name_of(storage) + "/" + m.name, 100,
          [=](auto& s) { run<float>(s, 10, n, storage, all_moments, bit, false); });
    }
  for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
    for (const auto& m : {methods[0], methods[1]})
      for (const bool weighted : {false, true}) {
        const int bit = m.bit;
        add(std::string("covariance/p10/") + name_of(storage) + (weighted ? "/weights/" : "/") + m.name, 50,
            [=](auto& s) { run<double>(s, 10, n, storage, KOB_SS_COVARIANCE, bit, false, weighted); });
      }
  for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS}) {
    const std::string where = name_of(storage);
    add("covariance/p100/" + where + "/fast", 5,
        [=](auto& s) { run<double>(s, 100, n / 10, storage, KOB_SS_COVARIANCE, KOB_SS_FAST, false); });
    add("covariance/p100/" + where + "/dsyrk", 5, [=](auto& s) { bare_syrk(s, 100, n / 10, storage); });
    add("covariance/p100/" + where + "/one_pass", 5,
        [=](auto& s) { run<double>(s, 100, n / 10, storage, KOB_SS_COVARIANCE, KOB_SS_ONE_PASS, false); });
  }
  add("covariance/p100/columns/plain_update", 3, [=](auto& s) { plain_covariance(s, 100, n / 10); });
  add("covariance/p100/rows/plain_pairs", 1, [=](auto& s) { plain_pairs(s, 100, n / 10); });
}

}  // namespace

int main(int argc, char** argv) {
  openblas_set_num_threads(1);  // the workers are the threads
  register_all();
  return bench::run(argc, argv, "moments");
}
