// Least-significant-digit radix sort of floating-point numbers by their bit patterns.
//
// The bits of non-negative numbers rise with the numbers, those of negative ones fall. So all digits but the
// last are sorted as they stand, and in the last pass, whose digit holds the sign, the buckets of negative
// numbers are laid out backwards and each is filled from its end.
#include <cstdint>
#include <cstring>

#include "api.hpp"
#include "orx/primitives.h"

namespace {

// Where digit number `pass` of `bits` bits lies in an element: it is taken from the 32-bit word at `offset`.
template <class T, int bits>
struct Digit {
  static constexpr int passes = (8 * int(sizeof(T)) + bits - 1) / bits;
  static constexpr unsigned buckets = 1u << bits;
  static constexpr unsigned first_negative = 1u << (8 * sizeof(T) - (passes - 1) * bits - 1);

  template <int pass>
  static unsigned of(const T* element) {
    constexpr int last_word = sizeof(T) - 4, byte = pass * bits / 8;
    constexpr int offset = byte < last_word ? byte : last_word;
    uint32_t word;
    std::memcpy(&word, reinterpret_cast<const char*>(element) + offset, 4);
    return (word >> (pass * bits - 8 * offset)) & (buckets - 1);
  }
};

template <class T, int bits, int pass = 0>
inline void count(const T* element, uint32_t (*counts)[1u << bits]) {
  ++counts[pass][Digit<T, bits>::template of<pass>(element)];
  if constexpr (pass + 1 < Digit<T, bits>::passes) count<T, bits, pass + 1>(element, counts);
}

// Turns the counts of a digit into the positions at which its buckets start (end, for negative numbers).
template <class T, int bits>
void make_positions(uint32_t* counts, bool last_pass) {
  using D = Digit<T, bits>;
  uint32_t position = 0;
  unsigned end = D::buckets;
  if (last_pass) {
    for (unsigned d = 2 * D::first_negative; d-- > D::first_negative;) counts[d] = position += counts[d];
    end = D::first_negative;
  }
  for (unsigned d = 0; d < end; ++d) {
    const uint32_t here = counts[d];
    counts[d] = position;
    position += here;
  }
}

template <class T, int bits, int pass>
void scatter(const T* from, T* to, int n, uint32_t* positions) {
  using D = Digit<T, bits>;
  for (int i = 0; i < n; ++i) {
    const unsigned digit = D::template of<pass>(from + i);
    const unsigned negative = pass + 1 == D::passes && digit >= D::first_negative;
    const uint32_t position = positions[digit] - negative;
    positions[digit] = position + 1 - negative;
    to[position] = from[i];
  }
}

// One pass after the other, the data going to and fro between the two arrays; a digit that all elements share
// needs no pass. A shared sign digit still reverses negative numbers.
template <class T, int bits, int pass = 0>
void sort_digits(T* from, T* to, int n, uint32_t (*counts)[1u << bits], const T* home) {
  using D = Digit<T, bits>;
  if constexpr (pass < D::passes) {
    constexpr bool last_pass = pass + 1 == D::passes;
    const unsigned digit = D::template of<pass>(from);
    const bool shared = counts[pass][digit] == uint32_t(n) && !(last_pass && digit >= D::first_negative);
    if (!shared) {
      make_positions<T, bits>(counts[pass], last_pass);
      scatter<T, bits, pass>(from, to, n, counts[pass]);
      T* other = from;
      from = to;
      to = other;
    }
    sort_digits<T, bits, pass + 1>(from, to, n, counts, home);
  } else if (from != home) {
    std::memcpy(to, from, n * sizeof(T));
  }
}

template <class T, int bits>
__attribute__((noinline)) void radix_sort(T* data, T* work, int n) {
  uint32_t counts[Digit<T, bits>::passes][1u << bits];
  std::memset(counts, 0, sizeof counts);
  for (int i = 0; i < n; ++i) count<T, bits>(data + i, counts);
  sort_digits<T, bits>(data, work, n, counts, data);
}

// The bits of a number as a signed integer that rises in total order.
inline int32_t rank(float x) {
  int32_t bits;
  std::memcpy(&bits, &x, 4);
  return bits ^ int32_t(uint32_t(bits >> 31) >> 1);
}
inline int64_t rank(double x) {
  int64_t bits;
  std::memcpy(&bits, &x, 8);
  return bits ^ int64_t(uint64_t(bits >> 63) >> 1);
}

template <class T>
void insertion_sort(T* data, int n) {
  for (int i = 1; i < n; ++i) {
    const T x = data[i];
    const auto key = rank(x);
    int j = i;
    for (; j > 0 && rank(data[j - 1]) > key; --j) data[j] = data[j - 1];
    data[j] = x;
  }
}

// Few elements are sorted by insertion; few buckets serve where clearing and summing many would cost more
// than the passes that they save.
template <class T>
void sort(T* data, T* work, int n) {
  constexpr int insertion_limit = 40, narrow_limit = sizeof(T) == 8 ? 2000 : 500;
  if (n <= insertion_limit)
    insertion_sort(data, n);
  else if (n <= narrow_limit)
    radix_sort<T, 8>(data, work, n);
  else
    radix_sort<T, 11>(data, work, n);
}

}  // namespace

ORX_API void g9_ulosSortRadixAscend_32f_I(float* data, float* work, int n) { sort(data, work, n); }
ORX_API void g9_ulosSortRadixAscend_64f_I(double* data, double* work, int n) { sort(data, work, n); }
