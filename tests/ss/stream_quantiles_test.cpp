// Streaming quantiles: the rank error stays within eps for any order, in any blocks; memory grows as a
// power of the logarithm; parts are joined.
#include <malloc.h>

#include <cmath>
#include <memory>

#include "orders.hpp"
#include "ss_test.hpp"

namespace {

template <class T>
struct StreamTask : Task<T> {
  std::vector<T> orders, results;
  int order_count, parameter_count = 1;
  T eps;

  StreamTask(int p, double eps_, std::vector<T> orders_, const int* indices = nullptr)
      : Task<T>(p, 1, KOB_SS_ROWS, std::vector<T>(p), nullptr, indices),
        orders(std::move(orders_)),
        results(orders.size() * p, T(-77)),
        order_count(int(orders.size())),
        eps(T(eps_)) {
    this->set(KOB_SS_ID_STREAM_ORDER_COUNT, &order_count);
    this->set(KOB_SS_ID_STREAM_ORDERS, orders.data());
    this->set(KOB_SS_ID_STREAM_QUANTILES, results.data());
    this->set(KOB_SS_ID_STREAM_PARAMETER_COUNT, &parameter_count);
    this->set(KOB_SS_ID_STREAM_PARAMETERS, &eps);
  }
  int call(int method) { return Api<T>::stream_quantiles(this->task, 0, method, Threads::table(2)); }
  int add(const T* x, int count, int method = KOB_SS_STREAM_UPDATE) {
    this->n = count;
    this->set(KOB_SS_ID_OBSERVATIONS, x);
    return call(method);
  }
};

// How far the rank of a value is from the wanted one: 0 where equal values cover it.
template <class T>
double rank_error(const T* x, int n, T value, double order) {
  int smaller = 0, equal = 0;
  for (int i = 0; i < n; ++i) {
    smaller += x[i] < value;
    equal += x[i] == value;
  }
  EXPECT_GT(equal, 0) << "a value that is not among the data";
  const double least = smaller + 1., most = double(smaller) + equal, wanted = order * n;
  return wanted < least ? least - wanted : wanted > most ? wanted - most : 0;
}

template <class T>
struct StreamQuantiles : testing::Test {};
TYPED_TEST_SUITE(StreamQuantiles, Precisions);

TYPED_TEST(StreamQuantiles, RankErrorWithinEps) {
  using T = TypeParam;
  const std::vector<T> orders = {0, T(0.001), T(0.01), T(0.25), T(0.5), T(0.75), T(0.99), 1};
  const int n = 50000;
  std::mt19937_64 random(7);
  std::vector<T> x(n);
  for (const auto& data : data_orders) {
    for (int i = 0; i < n; ++i) x[i] = T(data.value(i, n));
    for (const double eps : {1., 0.3, 0.05, 0.01, 0.001}) {
      StreamTask<T> t(1, eps, orders);
      for (int at = 0; at < n;) {
        const int size = int(std::min<uint64_t>(n - at, random() % (random() % 4 ? 9000 : 12) + 1));
        const bool ask = random() % 8 == 0 || at + size == n;
        ASSERT_EQ(t.add(&x[at], size, ask ? KOB_SS_STREAM_QUANTILES : KOB_SS_STREAM_UPDATE), 0);
        at += size;
        for (size_t k = 0; k < orders.size() && ask; ++k)
          ASSERT_LE(rank_error(x.data(), at, t.results[k], orders[k]), eps * at + 2)
              << data.name << " eps " << eps << " order " << orders[k] << " after " << at;
      }
    }
  }
}

TEST(StreamQuantilesFixed, MillionsOfValuesInLittleMemory) {
  const double eps = 0.001;
  const int n = 2000000, block = 20000;
  std::vector<double> x(n);
  const auto bytes = [] {
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
  };
  for (const auto& data : data_orders) {
    for (int i = 0; i < n; ++i) x[i] = data.value(i, n);
    std::vector<double> memory;
    memory.reserve(3);
    StreamTask<double> t(1, eps, {0.1, 0.5, 0.999});
    const double before = bytes();
    for (int at = 0; at < n; at += block) {
      ASSERT_EQ(t.add(&x[at], block), 0);
      if (at + block == n / 100 || at + block == n / 10 || at + block == n)
        memory.push_back(bytes() - before);
    }
    t.n = 0;
    ASSERT_EQ(t.call(KOB_SS_STREAM_QUANTILES), 0);
    for (size_t k = 0; k < t.orders.size(); ++k)
      EXPECT_LE(rank_error(x.data(), n, t.results[k], t.orders[k]), eps * n) << data.name << t.orders[k];
    if (memory.back() == 0) continue;  // this allocator does not tell what is in use
    // With u = log2(eps n) there are u blocks, which end as runs of u/(3 eps) values, and runs of as many values
    // on u levels of the last one.
    const double u = std::log2(eps * n);
    EXPECT_LE(memory.back(), sizeof(double) * u * u / (2 * eps) * 1.1);
    EXPECT_LT(memory[1], 3 * memory[0]);
    EXPECT_LT(memory[2], 3 * memory[1]);
  }
}

TYPED_TEST(StreamQuantiles, VariablesStoragesAndLaterCalls) {
  using T = TypeParam;
  const int p = 3, n = 700;
  int indices[p] = {1, 0, 1};
  std::mt19937_64 random(9);
  std::vector<T> x(size_t(p) * n);
  for (int j = 0; j < p; ++j)
    for (int i = 0; i < n; ++i) x[size_t(i) * p + j] = T(1000 * j + int(random() % 700));
  StreamTask<T> t(p, 0.001, {T(0.2), T(0.7)}, indices);  // a block takes more than n: the results are exact
  t.storage = KOB_SS_COLUMNS;
  ASSERT_EQ(t.add(x.data(), n, KOB_SS_STREAM_QUANTILES), 0);
  for (int row = 0; row < 2; ++row) {
    std::vector<T> one;
    for (int i = 0; i < n; ++i) one.push_back(x[size_t(i) * p + 2 * row]);
    for (int k = 0; k < 2; ++k) EXPECT_LE(rank_error(one.data(), n, t.results[row * 2 + k], t.orders[k]), 1);
  }
  EXPECT_EQ(t.results[4], T(-77));  // rows of followed variables only
  // With no new data the same comes out again.
  const std::vector<T> before = t.results;
  t.n = 0;
  t.results.assign(t.results.size(), T(0));
  ASSERT_EQ(t.call(KOB_SS_STREAM_QUANTILES | KOB_SS_STREAM_UPDATE), 0);
  EXPECT_TRUE(std::equal(before.begin(), before.begin() + 4, t.results.begin()));
  indices[0] = 0;
  EXPECT_EQ(t.call(KOB_SS_STREAM_UPDATE), 0);
  indices[1] = 1;
  EXPECT_EQ(t.call(KOB_SS_STREAM_UPDATE), -4004);

  // Afresh: with no variable followed, the first call passes and the later ones do not.
  __kobSQuantilesFreeBuffers(t.task);
  std::fill(indices, indices + p, 0);
  EXPECT_EQ(t.call(KOB_SS_STREAM_QUANTILES), 0);
  EXPECT_EQ(t.call(KOB_SS_STREAM_QUANTILES), -4004);
}

// The first call fixes eps and the variables; what is edited later may not break the summary.
TYPED_TEST(StreamQuantiles, LaterEditsAreNotNoticed) {
  using T = TypeParam;
  const int n = 3000;
  std::vector<T> x(4 * n);
  for (size_t i = 0; i < x.size(); ++i) x[i] = T(i % n);
  StreamTask<T> t(2, 0.2, {T(0.5)});
  ASSERT_EQ(t.add(x.data(), n), 0);
  for (const T eps : {T(0.001), T(1)}) {
    t.eps = eps;
    for (const int p : {4, 1, 2}) {
      t.p = p;
      ASSERT_EQ(t.add(x.data(), n, KOB_SS_STREAM_QUANTILES), 0);
      EXPECT_NEAR(t.results[0], n / 2, 0.2 * n + 2);
    }
  }
}

// Each variable is a summary by itself: one that was left out for a while has seen less than the others, and what
// is told of it is true of what it has seen.
TYPED_TEST(StreamQuantiles, VariablesMaySeeDifferentNumbersOfValues) {
  using T = TypeParam;
  const int n = 3000;
  const double eps = 0.01;
  std::vector<T> x(2 * n), seen[2];
  for (size_t i = 0; i < x.size(); ++i) x[i] = T(scrambled(uint32_t(i)) % 100000);
  StreamTask<T> t(2, eps, {0, T(0.3), 1});
  const auto add = [&](int p, int count) {
    t.p = p;
    ASSERT_EQ(t.add(x.data(), count, KOB_SS_STREAM_QUANTILES), 0);
    for (int v = 0; v < p; ++v) seen[v].insert(seen[v].end(), &x[v * count], &x[v * count] + count);
    for (int v = 0; v < p; ++v)
      for (size_t k = 0; k < t.orders.size(); ++k) {
        const int count_seen = int(seen[v].size());
        const double allowed = t.orders[k] == T(0.3) ? eps * count_seen + 2 : 1;
        ASSERT_LE(rank_error(seen[v].data(), count_seen, t.results[v * t.orders.size() + k], t.orders[k]),
                  allowed)
            << "variable " << v << " of " << p << " after " << count_seen;
      }
  };
  for (const int p : {2, 1, 1, 2, 1, 2, 2}) {
    add(p, n);
    add(p, 1200);
  }
}

// The least and the greatest value are kept, however much is thinned.
TYPED_TEST(StreamQuantiles, OrdersZeroAndOneAreExact) {
  using T = TypeParam;
  const int n = 100000;
  std::vector<T> x(n);
  for (const auto& data : data_orders) {
    for (int i = 0; i < n; ++i) x[i] = T(data.value(i, n));
    StreamTask<T> t(1, 0.05, {0, 1});
    ASSERT_EQ(t.add(x.data(), n, KOB_SS_STREAM_QUANTILES), 0);
    EXPECT_EQ(t.results[0], *std::min_element(x.begin(), x.end())) << data.name;
    EXPECT_EQ(t.results[1], *std::max_element(x.begin(), x.end())) << data.name;
  }
}

TYPED_TEST(StreamQuantiles, ExtremeEpsAndNothingSeen) {
  using T = TypeParam;
  StreamTask<T> t(1, 1, {T(0.5)});
  t.n = 0;
  ASSERT_EQ(t.call(KOB_SS_STREAM_QUANTILES), 0);
  EXPECT_EQ(t.results[0], T(-77));
  for (int i = 1; i <= 300; ++i) {
    const T x = T(i);
    ASSERT_EQ(t.add(&x, 1, KOB_SS_STREAM_QUANTILES), 0);
    ASSERT_TRUE(t.results[0] >= 1 && t.results[0] <= T(i)) << i;
  }
  // NaN spoils ranks and nothing else.
  std::vector<T> mixed(20000);
  for (size_t i = 0; i < mixed.size(); ++i) mixed[i] = i % 3 ? T(i) : std::numeric_limits<T>::quiet_NaN();
  StreamTask<T> spoiled(1, 0.05, {T(0.5)});
  EXPECT_EQ(spoiled.add(mixed.data(), int(mixed.size()), KOB_SS_STREAM_QUANTILES), 0);
  // What an eps as small as this asks for no memory holds.
  for (const double eps : {1e-10, 1e-20, 1e-40}) {
    StreamTask<T> fine(1, eps, {T(0.5)});
    const T x = 1;
    EXPECT_EQ(fine.add(&x, 1), -4000) << eps;
  }
}

// ---- summaries of parts ----

std::vector<char> image_of(const SSTask* task) {
  std::vector<char> image(size_t(__kobSSGetStreamSize(task)));
  EXPECT_EQ(__kobSSSaveStream(task, image.data()), 0);
  return image;
}

// 64 parts of unequal sizes, some empty, joined one after the other or by pairs, directly or by way of bytes: the rank
// error is as promised for one stream, and the summary takes more data.
TYPED_TEST(StreamQuantiles, PartsJoined) {
  using T = TypeParam;
  const int parts = 64;
  for (const auto& data : data_orders)
    for (const double eps : {0.2, 0.01, 0.001}) {
      std::mt19937 random(3);
      std::vector<T> x;
      std::vector<std::unique_ptr<StreamTask<T>>> tasks;
      for (int k = 0; k < parts; ++k) {
        const int size = k % 9 == 0 ? 0 : int(random() % (k % 5 == 0 ? 9000 : 300));
        const size_t at = x.size();
        for (int i = 0; i < size; ++i) x.push_back(T(data.value(int(at) + i, 70000)));
        tasks.push_back(
            std::make_unique<StreamTask<T>>(1, eps, std::vector<T>{0, T(0.01), T(0.5), T(0.93), 1}));
        if (size > 0) {
          ASSERT_EQ(tasks[k]->add(&x[at], size), 0);
        }
      }
      for (int step = 1; step < parts; step *= 2)
        for (int k = 0; k + step < parts; k += 2 * step) {
          SSTask* other = tasks[k + step]->task;
          if (k % 4 == 0) {
            const std::vector<char> image = image_of(other);
            if (!image.empty()) {
              ASSERT_EQ(__kobSSLoadStream(other, image.data(), (long long)(image.size())), 0);
              EXPECT_EQ(image_of(other), image);
            }
          }
          ASSERT_EQ(__kobSSJoinStreams(tasks[k]->task, other), 0);
        }
      StreamTask<T>& all = *tasks[0];
      for (const int more : {0, 5000}) {
        const size_t at = x.size();
        for (int i = 0; i < more; ++i) x.push_back(T(data.value(int(at) + i, 70000)));
        ASSERT_EQ(all.add(&x[more ? at : 0], more, KOB_SS_STREAM_QUANTILES), 0);
        for (size_t k = 0; k < all.orders.size(); ++k)
          ASSERT_LE(rank_error(x.data(), int(x.size()), all.results[k], all.orders[k]),
                    eps * double(x.size()) + 2)
              << data.name << " eps " << eps << " order " << all.orders[k];
      }
    }
}

// More values than 32 bits count: a summary joined with its own copy over and over.
TEST(StreamQuantilesFixed, BeyondAnIntOfValues) {
  const int n = 100000;
  const double eps = 0.01;
  std::vector<double> x(n);
  for (int i = 0; i < n; ++i) x[i] = scrambled(uint32_t(i));
  StreamTask<double> t(1, eps, {0.25, 0.5, 0.999});
  ASSERT_EQ(t.add(x.data(), n), 0);
  double seen = n;
  for (int k = 0; k < 20; ++k, seen *= 2) {
    const std::vector<char> image = image_of(t.task);
    StreamTask<double> copy(1, eps, {0.5});
    ASSERT_EQ(__kobSSLoadStream(copy.task, image.data(), (long long)(image.size())), 0);
    ASSERT_EQ(__kobSSJoinStreams(t.task, copy.task), 0);
  }
  EXPECT_GT(seen, 1e11);
  EXPECT_LT(__kobSSGetStreamSize(t.task), 1000000);
  ASSERT_EQ(t.add(x.data(), n, KOB_SS_STREAM_QUANTILES), 0);
  for (size_t k = 0; k < t.orders.size(); ++k)
    EXPECT_LE(rank_error(x.data(), n, t.results[k], t.orders[k]), eps * n + 2);
}

TYPED_TEST(StreamQuantiles, JoiningStatusesAndFailures) {
  using T = TypeParam;
  const int n = 2000;
  std::vector<T> x(2 * n);
  for (size_t i = 0; i < x.size(); ++i) x[i] = T(i % 501);
  StreamTask<T> t(2, 0.05, {T(0.5)}), other(2, 0.05, {T(0.5)}), empty(2, 0.05, {T(0.5)});
  ASSERT_EQ(t.add(x.data(), n), 0);
  ASSERT_EQ(other.add(x.data(), n), 0);
  EXPECT_EQ(__kobSSJoinStreams(nullptr, t.task), -4031);
  EXPECT_EQ(__kobSSJoinStreams(t.task, nullptr), -4031);
  EXPECT_EQ(__kobSSJoinStreams(t.task, t.task), -4031);
  EXPECT_EQ(__kobSSJoinStreams(t.task, empty.task), 0);
  const std::vector<char> before = image_of(t.task);
  const int mask[2] = {1, 0};
  StreamTask<T> narrow(1, 0.05, {T(0.5)}), fine(2, 0.01, {T(0.5)}), masked(2, 0.05, {T(0.5)}, mask);
  for (StreamTask<T>* task : {&narrow, &fine, &masked}) ASSERT_EQ(task->add(x.data(), n), 0);
  EXPECT_EQ(__kobSSJoinStreams(t.task, narrow.task), -4001);
  EXPECT_EQ(__kobSSJoinStreams(t.task, fine.task), -4067);
  EXPECT_EQ(__kobSSJoinStreams(t.task, masked.task), -4004);
  // All of it or nothing.
  for (int k = 1;; ++k) {
    orx_serv_fail_allocation(k);
    const int status = __kobSSJoinStreams(t.task, other.task);
    orx_serv_fail_allocation(0);
    if (status == 0) break;
    ASSERT_EQ(status, -4000);
    EXPECT_EQ(image_of(t.task), before) << k;
  }
  EXPECT_GE(fail_each_allocation(
                [&] {
                  const int status = __kobSSLoadStream(empty.task, before.data(), (long long)(before.size()));
                  __kobSQuantilesFreeBuffers(empty.task);
                  return status;
                },
                [](int status) { EXPECT_EQ(status, -4000); }),
            8);
}

// An image that was cut or changed anywhere is refused, or gives a summary that can be used and freed.
TYPED_TEST(StreamQuantiles, DamagedImages) {
  using T = TypeParam;
  const int n = 900;
  std::vector<T> x(n);
  for (int i = 0; i < n; ++i) x[i] = T(i);
  StreamTask<T> t(1, 0.1, {T(0.5)}), reader(1, 0.1, {T(0.5)});
  ASSERT_EQ(t.add(x.data(), n), 0);
  const std::vector<char> image = image_of(t.task);
  const auto load = [&](const std::vector<char>& bytes) {
    return __kobSSLoadStream(reader.task, bytes.data(), (long long)(bytes.size()));
  };
  EXPECT_EQ(__kobSSLoadStream(reader.task, nullptr, 100), -4074);
  for (size_t size = 0; size < image.size(); ++size)
    EXPECT_EQ(load(std::vector<char>(image.begin(), image.begin() + long(size))), -4074);
  std::vector<char> longer = image;
  longer.push_back(0);
  EXPECT_EQ(load(longer), -4074);
  for (size_t at = 0; at < image.size(); ++at)
    for (const int bit : {0, 6, 7}) {
      std::vector<char> changed = image;
      changed[at] = char(changed[at] ^ 1 << bit);
      const int status = load(changed);
      if (at < 12 || (at >= 24 && at < 32)) {
        EXPECT_EQ(status == -4074 || status == -4001, true) << at;
      }
      if (status == 0) {
        ASSERT_EQ(reader.add(x.data(), n, KOB_SS_STREAM_QUANTILES), 0);
      }
    }
}

TYPED_TEST(StreamQuantiles, StatusesInTheirOrder) {
  using T = TypeParam;
  int order_count = -1, parameter_count = 2;
  std::vector<T> x = {1}, orders = {T(2)}, results = {T(-77)}, eps = {0};
  Task<T> t(1);
  const auto call = [&](int method = KOB_SS_STREAM_QUANTILES) {
    return Api<T>::stream_quantiles(t.task, 0, method, Threads::table(1));
  };
  mend<T>(t, [&] { return call(); }, {{-4002, KOB_SS_ID_OBSERVATION_COUNT, &t.n}});
  t.n = -1;
  EXPECT_EQ(call(), -4002);
  t.n = 1;
  mend<T>(t, [&] { return call(); },
          {{-4032, KOB_SS_ID_OBSERVATIONS, x.data()}, {-4044, KOB_SS_ID_OBSERVATION_STORAGE, &t.storage}});
  EXPECT_EQ(call(), -4003);
  t.storage = KOB_SS_ROWS;
  mend<T>(t, [&] { return call(); },
          {{-4070, KOB_SS_ID_STREAM_QUANTILES, results.data()},
           {-4068, KOB_SS_ID_STREAM_ORDERS, orders.data()},
           {-4069, KOB_SS_ID_STREAM_ORDER_COUNT, &order_count}});
  EXPECT_EQ(call(), -4069);
  order_count = 1;
  mend<T>(t, [&] { return call(); }, {{-4064, KOB_SS_ID_STREAM_PARAMETER_COUNT, &parameter_count}});
  EXPECT_EQ(call(), -4066);
  parameter_count = 1;
  EXPECT_EQ(call(), -4069);
  orders[0] = T(0.5);
  mend<T>(t, [&] { return call(); }, {{-4065, KOB_SS_ID_STREAM_PARAMETERS, eps.data()}});
  EXPECT_EQ(call(KOB_SS_FAST), -4029);
  for (const T bad : {T(0), T(1.5), T(-1), std::numeric_limits<T>::quiet_NaN()}) {
    eps[0] = bad;
    EXPECT_EQ(call(), -4067);
  }
  EXPECT_EQ(results[0], T(-77));
  t.p = 0;
  EXPECT_EQ(call(), -4001);
  t.p = 1;
  EXPECT_EQ(Api<T>::stream_quantiles(nullptr, 0, KOB_SS_STREAM_QUANTILES, Threads::table(1)), -4031);
  eps[0] = T(0.1);
  EXPECT_EQ(call(), 0);
  EXPECT_EQ(results[0], T(1));
}

// Whatever fails, the summary stays whole: freeing it frees all, and the call can be made again.
TYPED_TEST(StreamQuantiles, EveryAllocationFailing) {
  using T = TypeParam;
  const int p = 2, n = 500;
  std::vector<T> x;
  for (int i = 0; i < p * n; ++i) x.push_back(T(i % 97));
  StreamTask<T> t(p, 0.05, {T(0.5)});
  t.x = x;
  const auto call = [&] {
    const int status = t.add(x.data(), n, KOB_SS_STREAM_QUANTILES);
    __kobSQuantilesFreeBuffers(t.task);
    return status;
  };
  // Without memory for the faster sort the slower one serves, so some failures pass unnoticed.
  int told = 0;
  const int count = fail_each_allocation(call, [&](int status) {
    EXPECT_TRUE(status == 0 || status == -4000) << status;
    told += status == -4000;
  });
  EXPECT_GE(count, 20);
  EXPECT_GE(told, 15);
  // After a failure the same task goes on.
  ASSERT_EQ(t.add(x.data(), 10), 0);
  orx_serv_fail_allocation(1);
  EXPECT_EQ(t.add(x.data(), n), -4000);
  orx_serv_fail_allocation(0);
  EXPECT_EQ(t.add(x.data(), n, KOB_SS_STREAM_QUANTILES), 0);
}

}  // namespace
