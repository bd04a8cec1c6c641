// Published data sets, and normal data with outliers of known number.
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "ss_test.hpp"

// A missing value: a quiet NaN with its sign set.
inline double missing_value() { return -std::numeric_limits<double>::quiet_NaN(); }

// The first p columns of a file below data/, variable by variable.
inline std::vector<double> read_rows(const std::string& file, int p) {
  std::ifstream in(ORX_DATA "/" + file);
  EXPECT_TRUE(in) << file;
  std::vector<std::vector<double>> columns(p);
  std::string line, field;
  std::getline(in, line);
  while (std::getline(in, line)) {
    std::istringstream fields(line);
    for (std::vector<double>& column : columns) {
      std::getline(fields, field, ',');
      column.push_back(field == "NA" ? missing_value() : std::strtod(field.c_str(), nullptr));
    }
  }
  std::vector<double> rows;
  for (const std::vector<double>& column : columns) rows.insert(rows.end(), column.begin(), column.end());
  return rows;
}

template <class T>
std::vector<T> in_precision(const std::vector<double>& x) {
  return std::vector<T>(x.begin(), x.end());
}

// Normal data, variable by variable: variable j has mean j and variance j + 1, neighbours have correlation 0.6. The
// first `outliers` observations lie `shift` away in all variables and are `spread` times as wide.
struct Contaminated {
  int p, n, outliers;
  double shift, spread;

  std::vector<double> rows(int seed = 1) const {
    std::mt19937_64 random(seed);
    std::normal_distribution<double> normal;
    std::vector<double> x(size_t(p) * n);
    for (int i = 0; i < n; ++i) {
      double z = 0;
      for (int j = 0; j < p; ++j) {
        z = j == 0 ? normal(random) : 0.6 * z + 0.8 * normal(random);
        const double wide = std::sqrt(j + 1.) * z;
        x[size_t(j) * n + i] = j + (i < outliers ? shift + spread * wide : wide);
      }
    }
    return x;
  }
  double covariance(int j, int k) const {
    return std::sqrt((j + 1.) * (k + 1)) * std::pow(0.6, std::abs(j - k));
  }
};

// The numbers, from 1, of observations for which test(i) holds.
template <class Test>
std::vector<int> observations_where(int n, Test test) {
  std::vector<int> found;
  for (int i = 0; i < n; ++i)
    if (test(i)) found.push_back(i + 1);
  return found;
}
