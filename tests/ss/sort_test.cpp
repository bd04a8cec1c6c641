// Quicksort and quickselect against the standard library, on orders that make simple versions quadratic.
#include <cmath>

#include "orders.hpp"
#include "ss_test.hpp"

namespace {

// For a quickselect with a median of three (Musser 1997): places where each median is nearly the least.
std::vector<double> median_killer(int n) {
  std::vector<double> x(n);
  for (int i = 0; i < n / 2; ++i) {
    x[i] = i % 2 == 0 ? i + 1 : n / 2 + i;
    x[n / 2 + i] = 2 * (i + 1);
  }
  return x;
}

std::vector<std::vector<double>> orders(int n) {
  std::vector<std::vector<double>> result = {median_killer(n)};
  for (const auto& data : data_orders) {
    std::vector<double> x(n);
    for (int i = 0; i < n; ++i) x[i] = data.value(i, n);
    result.push_back(x);
  }
  return result;
}

TEST(Sort, AnyOrder) {
  for (const int n : {0, 1, 2, 3, 4, 6, 7, 8, 50, 1000, 20000})
    for (const std::vector<double>& x : orders(n)) {
      std::vector<double> sorted = x, quick = x, strided(size_t(n) * 3, -1.);
      std::sort(sorted.begin(), sorted.end());
      __kobdQSort(n, quick.data());
      EXPECT_EQ(quick, sorted) << n;
      for (int i = 0; i < n; ++i) strided[size_t(i) * 3] = x[i];
      __kobdQSortStep(n, strided.data(), 3);
      for (int i = 0; i < n; ++i) {
        ASSERT_EQ(strided[size_t(i) * 3], sorted[i]);
        ASSERT_EQ(strided[size_t(i) * 3 + 1], -1);
      }
    }
}

TEST(Sort, SelectPutsTheElementAtItsPlace) {
  for (const int n : {1, 2, 3, 4, 5, 9, 100, 20000})
    for (const std::vector<double>& x : orders(n)) {
      std::vector<double> sorted = x;
      std::sort(sorted.begin(), sorted.end());
      for (const int k : {0, n / 3, n / 2, n - 1}) {
        std::vector<double> y = x;
        ASSERT_EQ(__kobdQSortSelect(n, y.data(), k), sorted[k]) << n;
        ASSERT_EQ(y[k], sorted[k]);
        for (int i = 0; i < n; ++i) ASSERT_TRUE(i < k ? y[i] <= y[k] : y[i] >= y[k]);
      }
    }
}

// NaN has no place, but nothing is lost, and it ends.
TEST(Sort, NanSpoilsNothingButTheOrder) {
  std::mt19937_64 random(4);
  for (const int n : {2, 5, 8, 1000}) {
    std::vector<double> x(n);
    for (int i = 0; i < n; ++i) x[i] = random() % 3 == 0 ? NAN : double(i);
    std::vector<double> y = x;
    __kobdQSort(n, y.data());
    __kobdQSortSelect(n, y.data(), n / 2);
    double sum_x = 0, sum_y = 0;
    for (const double v : x) sum_x += std::isnan(v) ? 1e6 : v;
    for (const double v : y) sum_y += std::isnan(v) ? 1e6 : v;
    EXPECT_EQ(sum_x, sum_y);
  }
}

}  // namespace
