// Observations in the order of their groups.
#pragma once

#include "ss_task.hpp"

namespace orx::ss::pldcov {

// A stable sort of the numbers 0 to n-1 by their groups, digit by digit; only the digits that the numbers of groups
// have are looked at. The result is in `order` or in `other`, each of n elements.
inline const int* order_by_group(const Integers& groups, int n, int group_count, int* order, int* other) {
  constexpr int bits = 11, buckets = 1 << bits;
  for (int i = 0; i < n; ++i) order[i] = i;
  for (int shift = 0; shift < 31 && (group_count - 1) >> shift; shift += bits) {
    int start[buckets + 1] = {};
    const auto digit = [&](int i) { return groups[i] >> shift & (buckets - 1); };
    for (int i = 0; i < n; ++i) ++start[digit(i) + 1];
    for (int d = 0; d < buckets; ++d) start[d + 1] += start[d];
    for (int i = 0; i < n; ++i) other[start[digit(order[i])]++] = order[i];
    int* const sorted = other;
    other = order;
    order = sorted;
  }
  return order;
}

// The number of groups in an order of them.
inline int count_occurring(const Integers& groups, int n, const int* order) {
  int count = 0;
  for (int i = 0; i < n; ++i) count += i == 0 || groups[order[i]] != groups[order[i - 1]];
  return count;
}

}  // namespace orx::ss::pldcov
