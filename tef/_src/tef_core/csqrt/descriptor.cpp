#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static Pair near_negative_axis(double x, double ratio) { return {-x, x * ratio}; }
static Pair near_positive_axis(double x, double ratio) { return {x, x * ratio}; }

static const Entry kEntry{{
    .name = "Sqrt",
    .computes = "the square root of a, with a real part that is not negative",
    .method = "the larger part first, which does not cancel (Kahan 1987); c, HA, in double; z with sums in "
              "two parts",
    .c_name = "sqrt",
    // C99, annex G.6.4.2.
    .specials = {{{-4, 0}, {0, 2}},
                 {{-4, -0.0}, {0, -2}},
                 {{3, 4}, {2, 1}},
                 {{-3, -4}, {1, -2}},
                 {{1, 10}, {2.35051862586971328, 2.12719012092488929}},
                 {{0, 0}, {0, 0}},
                 {{-0.0, 0}, {0, 0}},
                 {{-0.0, -0.0}, {0, -0.0}},
                 {{1, kInf}, {kInf, kInf}},
                 {{kNaN, -kInf}, {kInf, -kInf}},
                 {{-kInf, kInf}, {kInf, kInf}},
                 {{kInf, 1}, {kInf, 0}},
                 {{kInf, -1}, {kInf, -0.0}},
                 {{-kInf, 1}, {0, kInf}},
                 {{-kInf, -1}, {0, -kInf}},
                 {{kInf, kNaN}, {kInf, kNaN}},
                 {{1, kNaN}, {kNaN, kNaN}},
                 {{kNaN, 1}, {kNaN, kNaN}},
                 {{kNaN, kNaN}, {kNaN, kNaN}}},
    .joints = {{logarithmic(0x1p-90, 0x1p90), around({0}), near_negative_axis},
               {everywhere(), logarithmic(0x1p-30, 1), near_negative_axis},
               {everywhere(), around({0, 1}), near_positive_axis}},
    .c = {.bounds = {.la = 3, .ha = 0.51}, .timed = {-1000, 1000}},
    .z = {.bounds = {.la = 0.6, .ha = 0.6, .ep = 0.6}, .timed = {-1000, 1000}},
}};
