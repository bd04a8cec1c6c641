// Fisher's irises by summary statistics, over all and by species, and what petals have to do with sepals;
// then quartiles of ten million random numbers from a summary of their stream, beside the exact ones.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <stdexcept>
#include <vector>

#include "chapters.h"
#include "csv.h"
#include "orx/kob.h"
#include "orx/ss.h"

namespace {

void check(int status) {
  if (status < 0) throw std::runtime_error("statistics: status " + std::to_string(status));
}

const ThreadingServices* threads() { return orx_serv_threading(); }

// A task over variables in rows, with the arrays that it is given.
class Statistics {
 public:
  explicit Statistics(const std::vector<Column>& rows) : p_(int(rows.size())), n_(int(rows[0].size())) {
    for (const Column& row : rows) data_.insert(data_.end(), row.begin(), row.end());
    check(__kobdSSNewTask(&task_, &p_, &n_, &storage_, data_.data(), nullptr, nullptr, 0));
  }
  Statistics(const Statistics&) = delete;
  Statistics& operator=(const Statistics&) = delete;
  ~Statistics() { __kobSSDeleteTask(&task_); }

  operator SSTask*() const { return task_; }
  int p() const { return p_; }
  int n() const { return n_; }

  const std::vector<double>& give(int id, std::vector<double> values) {
    arrays_[id] = std::move(values);
    check(__kobdSSEditTask(task_, id, arrays_[id].data()));
    return arrays_[id];
  }
  // An array with a value for each variable, or a matrix.
  const std::vector<double>& vector(int id, double start = 0) {
    return give(id, std::vector<double>(p_, start));
  }
  const std::vector<double>& matrix(int id, int storage_id) {
    set(storage_id, &full_);
    return give(id, std::vector<double>(size_t(p_) * p_));
  }
  void set(int id, const int* integers) { check(__kobiSSEditTask(task_, id, integers)); }

 private:
  int p_, n_;
  const int storage_ = KOB_SS_ROWS, full_ = KOB_SS_FULL;
  std::vector<double> data_, arrays_[KOB_SS_ID_STREAM_QUANTILES + 1];
  SSTask* task_ = nullptr;
};

// ---- irises ----

const std::vector<std::string> kColumns = {"Sepal.Length", "Sepal.Width", "Petal.Length", "Petal.Width",
                                           "Species"};
const char* const kNames[] = {"sepal length", "sepal width", "petal length", "petal width"};
const char* const kSpecies[] = {"Iris setosa", "Iris versicolor", "Iris virginica"};

void describe(const char* title, const std::vector<Column>& rows) {
  Statistics s(rows);
  for (int id = KOB_SS_ID_RAW_MOMENT_2; id <= KOB_SS_ID_CENTRAL_MOMENT_4; ++id) s.vector(id);
  const auto &mean = s.vector(KOB_SS_ID_MEAN), &variance = s.vector(KOB_SS_ID_CENTRAL_MOMENT_2);
  const auto &skewness = s.vector(KOB_SS_ID_SKEWNESS), &kurtosis = s.vector(KOB_SS_ID_KURTOSIS);
  const auto& variation = s.vector(KOB_SS_ID_VARIATION);
  check(_kobdSSBasic(s, KOB_SS_SKEWNESS | KOB_SS_KURTOSIS | KOB_SS_VARIATION, KOB_SS_ONE_PASS, threads()));

  const double infinity = std::numeric_limits<double>::infinity();
  const auto &least = s.vector(KOB_SS_ID_MINIMUM, infinity), &most = s.vector(KOB_SS_ID_MAXIMUM, -infinity);
  check(_kobdSSMinmax(s, KOB_SS_MINIMUM | KOB_SS_MAXIMUM, KOB_SS_FAST, threads()));

  const int quartiles = 3;
  s.set(KOB_SS_ID_QUANTILE_ORDER_COUNT, &quartiles);
  s.give(KOB_SS_ID_QUANTILE_ORDERS, {0.25, 0.5, 0.75});
  const auto& quantiles = s.give(KOB_SS_ID_QUANTILES, std::vector<double>(s.p() * quartiles));
  check(_kobdSSQuantiles(s, KOB_SS_QUANTILES, KOB_SS_FAST, threads()));

  std::printf("\n%s, n = %d\n", title, s.n());
  std::printf(
      "                  mean  variance  skewness  kurtosis  variation   min    25%%    50%%    75%%   "
      "max\n");
  for (int j = 0; j < s.p(); ++j) {
    const double* q = &quantiles[j * quartiles];
    std::printf("  %-12s %7.4f  %8.5f  %8.5f  %8.5f  %9.5f  %4.1f  %5.3f  %5.3f  %5.3f  %4.1f\n", kNames[j],
                mean[j], variance[j], skewness[j], kurtosis[j], variation[j], least[j], q[0], q[1], q[2],
                most[j]);
  }
}

// The variables of one species, 1 to 3.
std::vector<Column> of_species(const std::vector<Column>& table, int species) {
  std::vector<Column> rows(4);
  for (size_t i = 0; i < table[4].size(); ++i)
    for (int j = 0; j < 4 && table[4][i] == species; ++j) rows[j].push_back(table[j][i]);
  return rows;
}

void relations(const std::vector<Column>& table) {
  Statistics s({table.begin(), table.begin() + 4});
  const int p = s.p();
  s.vector(KOB_SS_ID_MEAN);
  const auto& cor = s.matrix(KOB_SS_ID_CORRELATION, KOB_SS_ID_CORRELATION_STORAGE);
  s.matrix(KOB_SS_ID_COVARIANCE, KOB_SS_ID_COVARIANCE_STORAGE);
  check(_kobdSSBasic(s, KOB_SS_COVARIANCE | KOB_SS_CORRELATION, KOB_SS_ONE_PASS, threads()));
  std::printf("\nCorrelation over all species (the variances stand on the diagonal)\n");
  for (int j = 0; j < p; ++j) {
    std::printf("  %-12s", kNames[j]);
    for (int k = 0; k <= j; ++k) std::printf("  %8.5f", cor[j * p + k]);
    std::printf("\n");
  }

  const int roles[] = {1, 1, -1, -1}, full = KOB_SS_FULL;
  std::vector<double> partial(4), pooled(size_t(p) * p);
  s.set(KOB_SS_ID_PARTIAL_INDICES, roles);
  s.set(KOB_SS_ID_PARTIAL_CORRELATION_STORAGE, &full);
  check(__kobdSSEditTask(s, KOB_SS_ID_PARTIAL_CORRELATION, partial.data()));
  check(_kobdSSPartialCovariance(s, KOB_SS_PARTIAL_CORRELATION, KOB_SS_FAST, threads()));

  std::vector<int> species(table[4].size());
  std::transform(table[4].begin(), table[4].end(), species.begin(), [](double v) { return int(v) - 1; });
  s.set(KOB_SS_ID_GROUP_INDICES, species.data());
  s.set(KOB_SS_ID_POOLED_COVARIANCE_STORAGE, &full);
  s.vector(KOB_SS_ID_POOLED_MEAN);
  check(__kobdSSEditTask(s, KOB_SS_ID_POOLED_COVARIANCE, pooled.data()));
  check(_kobdSSPooledCovariance(s, KOB_SS_POOLED_COVARIANCE, KOB_SS_ONE_PASS, threads()));

  std::printf("\nSepal length against sepal width: longer sepals seem narrower, but only across species\n");
  std::printf("  correlation over all irises            %8.5f\n", cor[p]);
  std::printf("  within species, by pooled covariance   %8.5f\n",
              pooled[1] / std::sqrt(pooled[0] * pooled[p + 1]));
  std::printf("  given the petals' length and width     %8.5f\n", partial[1]);
}

// ---- a stream ----

// Ten million numbers that come in blocks: a summary of them as they pass, and at the end the exact
// quantiles.
void stream() {
  const int n = 10000000, block = 100000, one = 1, storage = KOB_SS_ROWS, order_count = 5;
  const double eps = 0.001, orders[order_count] = {0.01, 0.25, 0.5, 0.75, 0.99};
  const uint32_t key = 777;
  uint32_t seed[8];
  double summary[order_count], exact[order_count];
  std::vector<double> all(n);
  KobStream* source;
  SSTask* task;
  check(orx_kob_spread_seed(1, &key, 8, seed));
  check(__kobNewStreamEx(&source, KOB_BRNG_MT19937, 8, seed));
  check(__kobdSSNewTask(&task, &one, &block, &storage, all.data(), nullptr, nullptr, 0));
  check(__kobdSSEditStreamQuantiles(task, &order_count, orders, summary, &one, &eps));
  for (int at = 0; at < n; at += block) {
    double* x = &all[at];
    check(_kobdRngUniform(0, source, block, x, 0, 1));
    check(__kobdSSEditTask(task, KOB_SS_ID_OBSERVATIONS, x));
    const bool last = at + block == n;
    check(_kobdSSStreamQuantiles(task, 0, last ? KOB_SS_STREAM_QUANTILES : KOB_SS_STREAM_UPDATE, threads()));
  }
  check(__kobdSSEditTask(task, KOB_SS_ID_OBSERVATIONS, all.data()));
  check(__kobiSSEditTask(task, KOB_SS_ID_OBSERVATION_COUNT, &n));
  check(__kobdSSEditQuantiles(task, &order_count, orders, exact, nullptr, nullptr));
  check(_kobdSSQuantiles(task, KOB_SS_QUANTILES, KOB_SS_FAST, threads()));

  std::printf(
      "\nTen million uniform numbers of MT19937 in blocks of %d: quantiles from a summary, eps = %g\n", block,
      eps);
  std::printf("  order    summary      exact    rank off by, as a part of n\n");
  for (int k = 0; k < order_count; ++k) {
    const double below =
        double(std::count_if(all.begin(), all.end(), [&](double v) { return v < summary[k]; }));
    std::printf("  %5.2f   %8.6f   %8.6f   %+.6f\n", orders[k], summary[k], exact[k], below / n - orders[k]);
  }
  __kobSSDeleteTask(&task);
  __kobDeleteStream(&source);
}

}  // namespace

void statistics(const std::string& data_directory) {
  const std::vector<Column> table = read_csv(data_directory + "/iris.csv", kColumns);
  describe("All irises", {table.begin(), table.begin() + 4});
  for (int species = 1; species <= 3; ++species) describe(kSpecies[species - 1], of_species(table, species));
  relations(table);
  stream();
}
