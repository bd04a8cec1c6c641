#include "statistical_tests.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

double behind(double u, int skipped) {
  const double x = std::ldexp(u, skipped);
  return x - std::floor(x);
}

// The cell of a point of two numbers.
uint64_t cell(const Uniform& next, uint32_t cells) {
  const uint64_t first = uint64_t(next() * cells);
  return first * cells + uint64_t(next() * cells);
}

template <class Value>
double equal_neighbours(const std::vector<Value>& sorted) {
  double equal = 0;
  for (size_t i = 1; i < sorted.size(); ++i) equal += sorted[i] == sorted[i - 1];
  return equal;
}

// Chi-square of counts, classes at the end joined until each expects ten.
Outcome chi_square(std::vector<double> counts, std::vector<double> expected) {
  while (expected.size() > 1 && expected.back() < 10) {
    const size_t last = expected.size() - 1;
    expected[last - 1] += expected[last];
    counts[last - 1] += counts[last];
    expected.pop_back();
    counts.pop_back();
  }
  double x = 0;
  for (size_t i = 0; i < expected.size(); ++i) {
    const double off = counts[i] - expected[i];
    x += off * off / expected[i];
  }
  return {x, tails::chi_square(double(expected.size()) - 1, x)};
}

}  // namespace

Outcome birthday_spacings(const Uniform& next, int n, uint32_t cells) {
  std::vector<uint64_t> points(static_cast<size_t>(n));
  for (uint64_t& p : points) p = cell(next, cells);
  std::sort(points.begin(), points.end());
  const double all = double(cells) * cells;
  std::vector<uint64_t> spacings(points.size());
  for (size_t i = 1; i < points.size(); ++i) spacings[i] = points[i] - points[i - 1];
  spacings[0] = points[0] + uint64_t(all) - points.back();  // round the end
  std::sort(spacings.begin(), spacings.end());
  const double equal = equal_neighbours(spacings);
  return {equal, tails::poisson(double(n) * n * n / (4 * all), equal)};
}

Outcome collisions(const Uniform& next, int n, uint32_t cells) {
  std::vector<uint64_t> points(static_cast<size_t>(n));
  for (uint64_t& p : points) p = cell(next, cells);
  std::sort(points.begin(), points.end());
  const double all = double(cells) * cells, equal = equal_neighbours(points);
  const double mean = n + all * std::expm1(n * std::log1p(-1 / all));
  return {equal, tails::poisson(mean, equal)};
}

Outcome gaps(const Uniform& next, int n, int skipped, double width) {
  std::vector<double> counts, expected;
  for (double left = n; left > 1; left *= 1 - width) expected.push_back(left * width);
  counts.resize(expected.size());
  double rest = n;
  for (double e : expected) rest -= e;
  expected.back() += rest;
  const size_t longest = counts.size() - 1;
  for (int found = 0; found < n; ++found) {
    size_t gap = 0;
    // A generator that never comes back is cut off; its one long gap says enough.
    while (behind(next(), skipped) >= width && gap < 1000 * longest) ++gap;
    counts[std::min(gap, longest)] += 1;
  }
  return chi_square(counts, expected);
}

Outcome matrix_ranks(const Uniform& next, int n, int skipped) {
  constexpr int kSize = 60, kBits = 10;
  // The number of matrices of rank r over GF(2), over all: P(60) times factors for each rank less.
  std::vector<double> expected, counts(kSize + 1);
  double full = 1;
  for (int i = 1; i <= kSize; ++i) full *= 1 - std::ldexp(1, -i);
  double probability = full;
  for (int defect = 0; defect <= kSize; ++defect) {
    expected.push_back(n * probability);
    const double a = 1 - std::ldexp(1, defect - kSize), b = 1 - std::ldexp(1, -(defect + 1));
    probability *= std::ldexp(a / (b * b), -(2 * defect + 1));
  }
  for (int m = 0; m < n; ++m) {
    uint64_t rows[kSize];
    for (uint64_t& row : rows) {
      row = 0;
      for (int i = 0; i < kSize; i += kBits)
        row = row << kBits | uint64_t(std::ldexp(behind(next(), skipped), kBits));
    }
    int rank = 0;
    for (int bit = 0; bit < kSize; ++bit) {
      uint64_t* const pivot =
          std::find_if(rows + rank, rows + kSize, [=](uint64_t row) { return row >> bit & 1; });
      if (pivot == rows + kSize) continue;
      std::swap(*pivot, rows[rank]);
      for (uint64_t* row = pivot + (pivot == rows + rank); row < rows + kSize; ++row)
        if (row != rows + rank && *row >> bit & 1) *row ^= rows[rank];
      ++rank;
    }
    counts[size_t(kSize - rank)] += 1;
  }
  return chi_square(counts, expected);
}

// With C the connection polynomial and S the sequence, the product C S is kept instead of C: its coefficient i is
// the discrepancy of step i.
Outcome linear_complexity(const Uniform& next, int n, int skipped) {
  const size_t words = size_t(n) / 64 + 1;
  std::vector<uint64_t> product(words), before;
  for (int i = 0; i < n; ++i) product[size_t(i) / 64] |= uint64_t(behind(next(), skipped) >= 0.5) << i % 64;
  before = product;
  int complexity = 0, last = -1;
  std::vector<uint64_t> old;
  for (int i = 0; i < n; ++i) {
    if (!(product[size_t(i) / 64] >> i % 64 & 1)) continue;
    const bool longer = 2 * complexity <= i;
    if (longer) old = product;
    const size_t far = size_t(i - last) / 64;
    const int near = (i - last) % 64;
    for (size_t j = std::max(size_t(i) / 64, far); j < words; ++j) {
      uint64_t shifted = before[j - far] << near;
      if (near && j > far) shifted |= before[j - far - 1] >> (64 - near);
      product[j] ^= shifted;
    }
    if (!longer) continue;
    before.swap(old);
    last = i;
    complexity = i + 1 - complexity;
  }
  return {double(complexity), tails::linear_complexity(n, complexity)};
}
