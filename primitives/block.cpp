// Block copy, fill and zero. Small blocks go through the caches, large ones past them by streaming stores.
#include <cstdint>
#include <cstring>

#include "orx/base/api.hpp"
#include "orx/base/simd/lanes.hpp"
#include "orx/primitives.h"

namespace simd = orx::simd;

namespace {

// A block of this size would push most other data out of the second-level cache.
constexpr size_t kStreamingSize = size_t(4) << 20;

size_t bytes_to_alignment(const void* p) { return -reinterpret_cast<uintptr_t>(p) & 31; }

// Writes `vector(offset)` to each aligned 32-byte piece of the block past the caches; `plain(offset, bytes)`
// writes what lies before the first and after the last of them.
template <class Vector, class Plain>
void stream_block(char* to, size_t size, Vector vector, Plain plain) {
  size_t i = bytes_to_alignment(to);
  plain(0, i);
  for (; i + 32 <= size; i += 32) simd::store_past_caches(to + i, vector(i));
  simd::fence_stores();
  plain(i, size - i);
}

template <class T>
void fill(T value, T* to, size_t n) {
  if (n * sizeof(T) < kStreamingSize || reinterpret_cast<uintptr_t>(to) % sizeof(T) != 0) {
    for (size_t i = 0; i < n; ++i) to[i] = value;
    return;
  }
  T row[32 / sizeof(T)];
  for (T& element : row) element = value;
  const simd::Doubles vector = simd::load<simd::Doubles>(row);
  stream_block(
      reinterpret_cast<char*>(to), n * sizeof(T), [=](size_t) { return vector; },
      [=](size_t at, size_t bytes) { std::memcpy(reinterpret_cast<char*>(to) + at, row, bytes); });
}

}  // namespace

ORX_API void g9_ulosCopy_8u(const void* source, void* destination, size_t size) {
  const char* from = static_cast<const char*>(source);
  char* to = static_cast<char*>(destination);
  if (size < kStreamingSize) {
    std::memcpy(to, from, size);
    return;
  }
  stream_block(
      to, size, [=](size_t at) { return simd::load<simd::Doubles>(from + at); },
      [=](size_t at, size_t bytes) { std::memcpy(to + at, from + at, bytes); });
}

ORX_API void g9_ulosZero_8u(void* destination, size_t size) {
  char* to = static_cast<char*>(destination);
  if (size < kStreamingSize) {
    std::memset(to, 0, size);
    return;
  }
  stream_block(
      to, size, [](size_t) { return simd::Doubles{}; },
      [=](size_t at, size_t bytes) { std::memset(to + at, 0, bytes); });
}

ORX_API void g9_ulosSet_32f(float value, float* destination, size_t n) { fill(value, destination, n); }
ORX_API void g9_ulosSet_64f(double value, double* destination, size_t n) { fill(value, destination, n); }
