#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "ErfInv",
    .computes = "y with erf y = x",
    .method = "polynomials in rows by the leading bits of |x| and 1 - |x|; sEP: one in sqrt(-ln(1 - x^2))",
    .c_name = "erfinv",
    .domain = "|x| <= 1",
    .errors = {{StatusDomain, "|x| > 1, infinities"}, {StatusSingularity, "|x| = 1"}},
    .specials = {{0, 0},
                 {-0.0, -0.0},
                 {1, kInf, StatusSingularity},
                 {-1, -kInf, StatusSingularity},
                 {1.5, kNaN, StatusDomain},
                 {-kLargest, kNaN, StatusDomain},
                 {kInf, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kNaN, kNaN},
                 {0.5, 0.476936276204469873},
                 {-0.5, -0.476936276204469873},
                 {0.99951171875, 2.46575495872275535},
                 {-0.25, -0.225312055012178104}},
    .strata = {around({0.0625, 0.5, 0.25, 0.4375, 0.75, 0.875, 0.984375}), multiples({1.0 / 128}, -1, 1),
               even(-1, 1), even(-0.0625, 0.0625), logarithmic(1e-4, 1)},
    .s = {.bounds = {.la = 0.55, .ha = 0.55, .ep = 1024},
          .timed = {-1, 1},
          .specials = {{kLeast, kLeast, StatusOk, kAllClasses, FE_UNDERFLOW}}},
    .d = {.bounds = {.la = 1.9, .ha = 0.9},
          .timed = {-1, 1},
          .specials = {{kLeast, kLeast, StatusOk, kAllClasses, FE_UNDERFLOW}},
          .strata = {hard({0x1.fffffffffffffp-1, 0x1.ffffffffffffep-1, 0x1p-100})}},
}};
