#include "atan2/descriptor.hpp"

static Pair as_it_is(double u, double v) { return {u, v}; }
// Near the lines on which the table's angles lie, and near the axes.
static Pair on_a_line(double u, double v) { return {u * v, u}; }
static Pair on_a_line_from_the_other_side(double u, double v) { return {-u, u * v}; }
static Pair behind(double u, double v) { return {u * v, -u}; }

static const Entry kEntry{{
    .name = "Atan2",
    .computes = "the angle of the point (x, y) = (b, a), from -pi to pi",
    .method = "the octant 0 <= y <= x, then as Atan with a quotient of sums",
    .c_name = "atan2",
    .specials = kAngles,
    .joints = {{logarithmic(0x1p-58, 0x1p58), multiples({1.0 / 32}, -1, 1), on_a_line},
               {logarithmic(0x1p-58, 0x1p58), around({0, 1.0 / 32, 0.5, 1}), on_a_line_from_the_other_side},
               {logarithmic(0x1p-100, 0x1p100), around({0, 1.0 / 32, 0.5, 1}), behind},
               {around({0, 0x1p-60, 0x1p60}), everywhere(), as_it_is},
               {everywhere(), around({0, 0x1p-60, 0x1p60}), as_it_is}},
    .s = {.bounds = {.la = 2.5, .ha = 0.51}, .timed = {-5, 5}, .approximate = kHA},
    .d = {.bounds = {.la = 2.4, .ha = 0.53, .ep = 65536}, .timed = {-5, 5}, .approximate = kAllClasses},
}};
