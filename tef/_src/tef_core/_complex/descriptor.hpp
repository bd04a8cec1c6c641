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

// Products, and with them their errors, are told by the modulus where a part is a difference of rounded products.
inline Descriptor of_products(Descriptor d) {
  d.errors.push_back({StatusOverflow, "a part above the largest number, of finite arguments (HA, LA)"});
  d.judge_precision = 256;
  d.c.timed = d.z.timed = {-1000, 1000};
  d.c.norm_wise = kEP;
  d.z.norm_wise = kAllClasses;
  d.c.ep_moderate = {0x1p-30, 0x1p30};
  d.z.ep_moderate = {0x1p-250, 0x1p250};
  return d;
}
