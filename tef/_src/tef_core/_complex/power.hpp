// The descriptor of a^b, with a vector of exponents and with one.
#pragma once
#include "_complex/annex_g.hpp"

namespace orx::descriptor {

// Where |b ln a| is beyond 2^10, the angle of the result loses what that has more of bits; errors are told as distances,
// for powers that are real or imaginary come with a part that is not quite 0.
inline Descriptor of_power(const char* name, const char* computes) {
  Descriptor d = of_elements({.name = name,
                              .computes = computes,
                              .method = "e^(b ln a), logarithm and product with low parts",
                              .c_name = "pow",
                              .joints = near_units(),
                              .c = {.approximate = kAllClasses}},
                             {{{{2, 0, 3, 0}, {8, 0}},
                               {{1, 0, 2.5, 0}, {1, 0}},
                               {{0, 0, 1, 0}, {kNaN, kNaN}, StatusOk, kAllClasses, FE_DIVBYZERO | FE_INVALID},
                               {{0, 0, 0, 0}, {kNaN, kNaN}, StatusOk, kAllClasses, FE_DIVBYZERO | FE_INVALID},
                               {{3, 4, 0, 0}, {1, 0}},
                               {{kNaN, 1, 2, 1}, {kNaN, kNaN}},
                               {{2, 1, kNaN, 0}, {kNaN, kNaN}},
                               {{2, 0, 1, 1}, {1.53847780272794429, 1.27792255262726960}},
                               {{0, 1, 0, 1}, {0.207879576350761909, 0}},
                               {{10, 0, 4000, 0}, {kInf, 0}, StatusOk, kAllClasses, FE_OVERFLOW}},
                              {}},
                             {-3, 3});
  d.strata = {even(-4, 4), even(-40, 40), logarithmic(1e-3, 1e3), logarithmic(1e-8, 1), around({1, -1})};
  d.c.strata = {};
  // Large exponents of numbers next to the unit circle: the powers are of moderate size, their angles take all digits.
  d.z.cases = {};
  for (const double angle : {0.02, 0.05, 0.15, 0.21, 0.4, 0.7, 1.1, 2.0, 3.1})
    for (const double modulus : {0.97, 1.0, 1.01})
      for (const double re : {-700.0, 3.0, 250.0, 775.0})
        for (const double by_angle : {-550.0, 7.0, 370.0})
          d.z.cases.push_back({modulus * std::cos(angle), modulus * std::sin(angle), re, by_angle / angle});
  d.c.bounds = d.z.bounds = {0.75, 0.75, 0.75};
  d.c.norm_wise = d.z.norm_wise = kAllClasses;
  return d;
}

}  // namespace orx::descriptor
