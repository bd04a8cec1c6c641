// Quasi-random sequences from their definition: each point by itself, from the binary digits of its index.
#pragma once

#include "stream.hpp"

namespace quasi {

using Rows = std::vector<Words>;  // direction numbers, a row of 32 for each dimension

inline uint32_t component(const Words& v, uint32_t index) {
  uint32_t x = 0;
  for (int c = 0; c < 32; ++c)
    if ((index ^ index >> 1) >> c & 1) x ^= v[c];
  return x;
}

// Numbers `from` to `from + n - 1` of the stream, counted from 0.
inline Words numbers(const Rows& rows, uint64_t from, int n) {
  Words r;
  for (uint64_t i = from; i < from + uint64_t(n); ++i)
    r.push_back(component(rows[i % rows.size()], uint32_t(i / rows.size()) + 1));
  return r;
}

// The seed words of class 4 for these rows.
inline Words matrix_seed(const Rows& rows) {
  Words seed = {uint32_t(rows.size()), 1, 4};
  for (const Words& row : rows) seed.insert(seed.end(), row.begin(), row.end());
  return seed;
}

// A stream's own rows, read off its points 2^c, each of which differs from an earlier one by a single number.
inline Rows rows_of(const Stream& start, uint32_t dimension) {
  Rows rows(dimension, Words(32));
  for (int c = 0; c < 32; ++c) {
    // The index with the Gray code 2^c is 2^(c+1) - 1; the last of all is out of a skip's reach.
    const Stream s = start;
    const uint32_t index = c < 31 ? (uint32_t(2) << c) - 1 : 0x80000000u;
    EXPECT_EQ(__kobSkipAheadStream(s, uint64_t(index - 1) * dimension), 0);
    const Words point = s.words(int(dimension));
    for (uint32_t d = 0; d < dimension; ++d) rows[d][c] = c < 31 ? point[d] : point[d] ^ rows[d][30];
  }
  return rows;
}

}  // namespace quasi
