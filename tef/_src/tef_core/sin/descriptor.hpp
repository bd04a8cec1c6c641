// What the descriptors of the sine, the cosine and both have in common.
#pragma once
#include "functions/descriptor.hpp"

namespace orx::descriptor {

// The HA method adds the sine of the nearest table point, 0, to x: so it loses the sign of 0.
inline constexpr Classes kSinesWithSignsOfZero = static_cast<Classes>(kLA | kEP);

inline Descriptor of_sines(Descriptor d) {
  constexpr double pi = 0x1.921fb54442d18p+1;
  d.domain = "finite numbers";
  d.errors = {{StatusDomain, "infinite x"}};
  d.strata = {multiples({pi / 2, pi, pi / 256}, -65568, 65568), multiples({pi / 2}, 0x1p16, 0x1p25),
              around({pi / 2, pi / 4, pi, 65568, 0x1p22, 16777216, 10000, 0x1p30, 0x1p53})};
  d.s = {.bounds = {.la = 2.5, .ha = 0.65}, .timed = {-1000, 1000}, .floor = {.ep = 1}};
  d.d = {.bounds = {.la = 2.2, .ha = 0.52},
         .timed = {-1000, 1000},
         .strata = {logarithmic(1, 0x1.fffffffffffffp1023),
                    hard({0x1.6ac5b262ca1ffp849, 0x1.6ac5b262ca1ffp848, 0x1p1000, 1e22, 0x1.d12ed0af1a27fp+15,
                          0x1.9eb7148f354d6p+20, 0x1.9eb7148f354d6p+21, 0x1.b951f1572eba5p+23,
                          0x1.d3ecce1f28274p+23})},
         .floor = {.ep = 1}};
  return d;
}

}  // namespace orx::descriptor
