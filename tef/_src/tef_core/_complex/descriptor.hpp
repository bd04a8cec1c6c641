// What the descriptors of the complex arithmetic share.
#pragma once
#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

// The classes that report.
inline constexpr Classes kReporting = Classes(kLA | kHA);

inline Descriptor of_sums(Descriptor d) {
  d.errors = {{StatusOverflow, "a part above the largest number, of finite arguments (HA, LA)"}};
  d.judge_precision = 2112;  // sums of two doubles are exact with as many bits
  d.c = d.z = {.bounds = kExact, .timed = {-1000, 1000}};
  return d;
}
