#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

// Pairs whose sizes differ by a given factor, at a given size.
static Pair with_ratio(double size, double ratio) { return {size, size * ratio}; }

static const Entry kEntry{{
    .name = "Hypot",
    .computes = "(x^2 + y^2)^(1/2)",
    .method = "the processor's root; HA of a sum in two parts, with the root's rounding error made good",
    .c_name = "hypot",
    // C99, annex F.9.4.3; an overflow stands in the result and in the exceptions, and is not reported.
    .specials = {{{3, 4}, 5},
                 {{-5, 12}, 13},
                 {{0, 0}, 0},
                 {{-0.0, -0.0}, 0},
                 {{0, -7}, 7},
                 {{kInf, kNaN}, kInf},
                 {{kNaN, -kInf}, kInf},
                 {{kInf, 1}, kInf},
                 {{-kInf, -kInf}, kInf},
                 {{kNaN, 1}, kNaN},
                 {{1, kNaN}, kNaN},
                 {{kLargest, 0}, kLargest},
                 {{kLargest, kLeast}, kLargest},
                 {{kLargest, kLargest}, kInf, StatusOk, kAllClasses, FE_OVERFLOW},
                 {{kLeast, 0}, kLeast},
                 {{1, kLeast}, 1},
                 {{kSmallest, 1}, 1}},
    .joints = {{logarithmic(0.1, 10), logarithmic(0x1p-60, 1), with_ratio},
               {everywhere(), logarithmic(0x1p-30, 1), with_ratio},
               {everywhere(), even(0.5, 2), with_ratio}},
    .s = {.bounds = {.la = 1.5, .ha = 0.51, .ep = 1.5}, .timed = {-1000, 1000}},
    // The bound is that of denormals, which are rounded twice; it is 0.51 elsewhere.
    .d = {.bounds = {.la = 1.5, .ha = 0.75, .ep = 1.5}, .timed = {-1000, 1000}},
}};
