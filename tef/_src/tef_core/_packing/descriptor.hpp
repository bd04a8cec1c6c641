// What the functions that pack and unpack have in common, for their descriptors.
#pragma once
#include "functions/descriptor.hpp"

namespace orx::descriptor {

inline Descriptor of_packing(const char* name, const char* computes) {
  const Type type = {.timed = {-1000, 1000}};
  return {.name = name,
          .computes = computes,
          .keep_control_word = kAllClasses,
          .s = type,
          .d = type,
          .c = type,
          .z = type};
}

}  // namespace orx::descriptor
