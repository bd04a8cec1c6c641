// Numbers and their bit patterns.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace orx {

// The unsigned integer as wide as T.
template <class T>
using BitsOf = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;

template <class T>
constexpr BitsOf<T> kSignBit = BitsOf<T>(1) << (8 * sizeof(T) - 1);

// Inlined even where nothing else is: files for several instruction sets share this.
template <class To, class From>
[[gnu::always_inline]] inline To bit_cast(From from) {
  static_assert(sizeof(To) == sizeof(From));
  To to;
  std::memcpy(&to, &from, sizeof to);
  return to;
}

}  // namespace orx
