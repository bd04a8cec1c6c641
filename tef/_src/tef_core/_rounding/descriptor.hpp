// What the functions that round to an integer have in common, for their descriptors.
#pragma once
#include "functions/descriptor.hpp"

namespace orx::descriptor {

// Zeros, infinities and NaN are themselves; what hurts are halves, and where numbers begin to be integers.
inline Descriptor of_rounding(Descriptor descriptor) {
  const std::vector<Special> unchanged = {{0, 0}, {-0.0, -0.0}, {kInf, kInf}, {-kInf, -kInf}, {kNaN, kNaN}};
  descriptor.specials.insert(descriptor.specials.end(), unchanged.begin(), unchanged.end());
  descriptor.strata = {even(-100, 100),
                       around({0.5, 1.5, 2.5, 0x1p22, 0x1p23, 0x1p24, 0x1p31, 0x1p51, 0x1p52, 0x1p53})};
  descriptor.s = descriptor.d = {.bounds = kExact, .timed = {-1000, 1000}};
  return descriptor;
}

// To the nearest one, of two the even one.
inline Descriptor of_rounding_to_even(Descriptor descriptor) {
  descriptor.method = "one instruction of the processor";
  descriptor.specials = {{0.5, 0}, {-0.5, -0.0}, {2.5, 2}, {3.5, 4}, {-2.75, -3}, {-kLeast, -0.0}};
  return of_rounding(descriptor);
}

}  // namespace orx::descriptor
