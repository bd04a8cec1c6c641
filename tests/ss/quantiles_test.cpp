// Exact quantiles and order statistics against a plain sort with the same interpolation.
#include <cmath>

#include "orders.hpp"
#include "ss_test.hpp"

namespace {

template <class T>
T plain_quantile(const std::vector<T>& sorted, T order) {
  const int n = int(sorted.size());
  const double f = (n - 1) * double(order), below = std::floor(f);
  const int k = int(below), next = std::min(k + 1, n - 1);
  return T(double(sorted[k]) + (f - below) * (double(sorted[next]) - double(sorted[k])));
}

template <class T>
struct Quantiles : testing::Test {
  std::mt19937_64 random{5};

  std::vector<T> data(int p, int n) {
    std::normal_distribution<double> normal;
    std::vector<T> x(size_t(p) * n);
    for (size_t i = 0; i < x.size(); ++i)
      x[i] = i % 3 ? T(normal(random)) : T(std::floor(4 * normal(random)));
    return x;
  }
};
TYPED_TEST_SUITE(Quantiles, Precisions);

constexpr int both = KOB_SS_QUANTILES | KOB_SS_ORDER_STATISTICS;

TYPED_TEST(Quantiles, EveryStorageAndRequest) {
  using T = TypeParam;
  const std::vector<T> orders = {T(0.5), 0, T(0.25), T(0.9), T(0.1), 1, T(0.25)};
  const int order_count = int(orders.size());
  for (const int n : {1, 2, 4, 5, 333}) {
    const int p = 4, indices[p] = {1, 0, 2, 1};
    const std::vector<T> rows = this->data(p, n);
    for (const int storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
      for (const int stats_storage : {KOB_SS_ROWS, KOB_SS_COLUMNS})
        for (const int request : {KOB_SS_QUANTILES, KOB_SS_ORDER_STATISTICS, both})
          for (const int* mask : {static_cast<const int*>(nullptr), indices}) {
            Task<T> t(p, n, storage, stored(rows, p, n, storage), nullptr, mask);
            std::vector<T> quantiles(size_t(p) * order_count, T(-77)), stats(size_t(p) * n, T(-77));
            t.set(KOB_SS_ID_QUANTILE_ORDER_COUNT, &order_count);
            t.set(KOB_SS_ID_QUANTILE_ORDERS, orders.data());
            t.set(KOB_SS_ID_QUANTILES, quantiles.data());
            t.set(KOB_SS_ID_ORDER_STATISTICS, stats.data());
            t.set(KOB_SS_ID_ORDER_STATISTICS_STORAGE, &stats_storage);
            Threads::arrange = [](std::vector<int>& v) { std::reverse(v.begin(), v.end()); };
            ASSERT_EQ(Api<T>::quantiles(t.task, request, KOB_SS_FAST, Threads::table(3)), 0);
            int row = 0;
            for (int j = 0; j < p; ++j) {
              std::vector<T> sorted(&rows[size_t(j) * n], &rows[size_t(j) * n] + n);
              std::sort(sorted.begin(), sorted.end());
              const bool wanted = !mask || mask[j], has_stats = wanted && request & KOB_SS_ORDER_STATISTICS;
              for (int i = 0; i < n; ++i)
                ASSERT_EQ(stats[stats_storage == KOB_SS_ROWS ? j * n + i : i * p + j],
                          has_stats ? sorted[i] : T(-77));
              if (!wanted || !(request & KOB_SS_QUANTILES)) continue;
              for (int k = 0; k < order_count; ++k)
                ASSERT_EQ(quantiles[row * order_count + k], plain_quantile(sorted, orders[k]))
                    << n << ' ' << k;
              ++row;
            }
            for (size_t k = size_t(row) * order_count; k < quantiles.size(); ++k)
              ASSERT_EQ(quantiles[k], T(-77));
          }
  }
}

TYPED_TEST(Quantiles, InfiniteNeighboursDoNotSpoilAnExactPlace) {
  using T = TypeParam;
  const T inf = std::numeric_limits<T>::infinity(), orders[] = {0, T(0.5), 1};
  const int order_count = 3;
  std::vector<T> q(3);
  Task<T> t(1, 3, KOB_SS_ROWS, {inf, -inf, 7});
  t.set(KOB_SS_ID_QUANTILE_ORDER_COUNT, &order_count);
  t.set(KOB_SS_ID_QUANTILE_ORDERS, orders);
  t.set(KOB_SS_ID_QUANTILES, q.data());
  ASSERT_EQ(Api<T>::quantiles(t.task, KOB_SS_QUANTILES, KOB_SS_FAST, Threads::table(1)), 0);
  EXPECT_EQ(q, (std::vector<T>{-inf, 7, inf}));
}

template <class T>
std::vector<T> quantiles_of(const std::vector<T>& x, const std::vector<T>& orders) {
  const int order_count = int(orders.size());
  std::vector<T> q(orders.size(), T(-77));
  Task<T> t(1, int(x.size()), KOB_SS_ROWS, x);
  t.set(KOB_SS_ID_QUANTILE_ORDER_COUNT, &order_count);
  t.set(KOB_SS_ID_QUANTILE_ORDERS, orders.data());
  t.set(KOB_SS_ID_QUANTILES, q.data());
  EXPECT_EQ(Api<T>::quantiles(t.task, KOB_SS_QUANTILES, KOB_SS_FAST, Threads::table(1)), 0);
  return q;
}

// Quantiles lie between the least and the greatest number and never fall as the order rises, also where numbers that
// have no short form are repeated, or neighbours lie far apart.
TYPED_TEST(Quantiles, RiseWithTheOrder) {
  using T = TypeParam;
  const T big = std::numeric_limits<T>::max();
  std::vector<T> orders;
  for (int k = 0; k <= 2000; ++k) orders.push_back(T(k / 2000.));
  std::vector<T> few;
  for (int i = 0; i < 997; ++i) few.push_back(T(1 / (3. + scrambled(uint32_t(i)) % 4)));
  for (const std::vector<T>& x : {std::vector<T>(1000, T(1 / 3.)),
                                  few,
                                  {-big, T(0.1), big},
                                  {T(0.1), std::nextafter(T(0.1), T(1)), T(0.7)}}) {
    const std::vector<T> q = quantiles_of(x, orders);
    EXPECT_EQ(q.front(), *std::min_element(x.begin(), x.end()));
    EXPECT_EQ(q.back(), *std::max_element(x.begin(), x.end()));
    for (size_t k = 1; k < q.size(); ++k) ASSERT_LE(q[k - 1], q[k]) << k;
  }
}

TYPED_TEST(Quantiles, NeighboursWhoseDistanceIsOutOfRange) {
  using T = TypeParam;
  const T big = std::numeric_limits<T>::max();
  EXPECT_EQ(quantiles_of<T>({-big, big}, {T(0.5)})[0], 0);
}

// Places beside those where a selection parts the data, in ranges not much longer than what is sorted at once: one
// order at a time, for neighbours would sort each other's places.
TYPED_TEST(Quantiles, PlacesBesideThePivots) {
  using T = TypeParam;
  for (uint32_t n = 101; n < 401; n += 3) {
    std::vector<T> x;
    for (uint32_t i = 0; i < n; ++i) x.push_back(T(scrambled(i + 1000 * n)));
    std::vector<T> sorted = x;
    std::sort(sorted.begin(), sorted.end());
    for (int k = 0; k < 31; ++k) {
      const auto order = T((k + 0.5) / 31);
      ASSERT_EQ(quantiles_of<T>(x, {order})[0], plain_quantile(sorted, order)) << n << ' ' << k;
    }
  }
}

// Few orders are selected, many sorted; the data in orders that are hard on a selection.
TYPED_TEST(Quantiles, FewAndManyOrdersOfAnyData) {
  using T = TypeParam;
  const int n = 5000;
  for (const auto& data : data_orders) {
    std::vector<T> x(n);
    for (int i = 0; i < n; ++i) x[i] = T(data.value(i, n));
    std::vector<T> sorted = x;
    std::sort(sorted.begin(), sorted.end());
    for (const int count : {1, 2, 9, 32, 33, 99}) {
      std::vector<T> orders;
      for (int k = count - 1; k >= 0; --k) orders.push_back(T((k + 0.5) / count));
      const std::vector<T> q = quantiles_of(x, orders);
      for (int k = 0; k < count; ++k)
        ASSERT_EQ(q[k], plain_quantile(sorted, orders[k]))
            << data.name << " order " << orders[k] << " of " << count;
    }
  }
  const T nan = std::numeric_limits<T>::quiet_NaN();
  std::vector<T> spoiled(n, T(1));
  for (int i = 0; i < n; i += 3) spoiled[i] = nan;
  quantiles_of(spoiled, {T(0.1), T(0.5)});  // undefined, but it ends
}

TYPED_TEST(Quantiles, WorkersAndWorkMemory) {
  using T = TypeParam;
  const T order = T(0.3);
  const int order_count = 1, p = 3,
            n = int(0xA00000 / sizeof(T)) / 2;  // two variables fit into the work memory
  std::vector<T> quantiles(p, T(-77));
  Task<T> t(p, n, KOB_SS_ROWS, std::vector<T>(size_t(p) * n, T(2)));
  t.set(KOB_SS_ID_QUANTILE_ORDER_COUNT, &order_count);
  t.set(KOB_SS_ID_QUANTILE_ORDERS, &order);
  t.set(KOB_SS_ID_QUANTILES, quantiles.data());
  const auto call = [&](int workers) {
    return Api<T>::quantiles(t.task, KOB_SS_QUANTILES, KOB_SS_FAST, Threads::table(workers));
  };
  ASSERT_EQ(call(5), 0);
  EXPECT_EQ(Threads::last_asked, 2);
  EXPECT_EQ(quantiles, std::vector<T>(p, T(2)));
  t.n = 100;
  ASSERT_EQ(call(5), 0);
  EXPECT_EQ(Threads::last_asked, p);

  // A failed allocation is not told; nothing is computed.
  quantiles.assign(p, T(-77));
  EXPECT_EQ(fail_each_allocation([&] { return call(2); },
                                 [&](int status) {
                                   EXPECT_EQ(status, 0);
                                   EXPECT_EQ(quantiles, std::vector<T>(p, T(-77)));
                                 }),
            4);
}

TYPED_TEST(Quantiles, StatusesInTheirOrder) {
  using T = TypeParam;
  std::vector<T> orders = {T(0.5), T(1.5)}, results(4, T(-77));
  int order_count = -1, stats_storage = 7;
  Task<T> t(2, 2, KOB_SS_ROWS, {4, 3, 2, 1});
  const auto call = [&](int method = KOB_SS_FAST) {
    return Api<T>::quantiles(t.task, both, method, Threads::table(1));
  };
  mend<T>(t, [&] { return call(); },
          {{-4023, KOB_SS_ID_QUANTILES, results.data()},
           {-4021, KOB_SS_ID_QUANTILE_ORDERS, orders.data()},
           {-4022, KOB_SS_ID_QUANTILE_ORDER_COUNT, &order_count}});
  EXPECT_EQ(call(), -4022);
  order_count = 2;
  for (const T bad : {T(1.5), T(-0.01), std::numeric_limits<T>::quiet_NaN()}) {
    orders[1] = bad;
    EXPECT_EQ(call(), -4022);
  }
  orders[1] = 1;
  mend<T>(t, [&] { return call(); },
          {{-4024, KOB_SS_ID_ORDER_STATISTICS, results.data()},
           {-4044, KOB_SS_ID_ORDER_STATISTICS_STORAGE, &stats_storage}});
  EXPECT_EQ(call(), -4003);
  stats_storage = KOB_SS_ROWS;
  EXPECT_EQ(call(0x2), -4029);
  EXPECT_EQ(results, std::vector<T>(4, T(-77)));
}

}  // namespace
