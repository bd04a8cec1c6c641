#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kPi = 0x1.921fb54442d18p+1;

static const Entry kEntry{{
    .name = "Tan",
    .computes = "tan x",
    .c_name = "tan",
    .domain = "finite numbers",
    .errors = {{StatusDomain, "infinite x"}},
    .specials = {{0, 0}, {-0.0, -0.0}, {kInf, kNaN, StatusDomain}, {-kInf, kNaN, StatusDomain}, {kNaN, kNaN}},
    .strata = {multiples({kPi / 2, kPi, kPi / 256}, -65568, 65568), multiples({kPi / 2}, 0x1p16, 0x1p25),
               around({kPi / 2, kPi / 4, kPi, 65568, 16777216, 10000, 0x1p30, 0x1p53})},
    .s = {.bounds = {.la = 2.5, .ha = 0.52},
          .timed = {-1000, 1000},
          // The last: a large remainder, divided by what is rounded most.
          .strata = {logarithmic(1, 0x1.fffffep127), around({7042.67139})}},
    .d = {.bounds = {.la = 2.5, .ha = 0.52},
          .timed = {-1000, 1000},
          .strata = {logarithmic(1, 0x1.fffffffffffffp1023),
                     hard({0x1.6ac5b262ca1ffp849, 0x1.6ac5b262ca1ffp848, 0x1p1000, 1e22,
                           0x1.d12ed0af1a27fp+15, 0x1.9eb7148f354d6p+20, 0x1.9eb7148f354d6p+21,
                           0x1.b951f1572eba5p+23, 0x1.d3ecce1f28274p+23, 32853149.411645658})}},
}};
