#include "atan2/descriptor.hpp"

// The cases of Atan2, the real part first.
static std::vector<Special> real_part_first() {
  std::vector<Special> all = kAngles;
  for (Special& s : all) std::swap(s.in[0], s.in[1]);
  return all;
}

static Pair as_it_is(double u, double v) { return {u, v}; }
// Near the lines on which the table's angles lie, and near the axes.
static Pair on_a_line(double u, double v) { return {u, u * v}; }
static Pair behind(double u, double v) { return {-u * v, u}; }

static const Entry kEntry{{
    .name = "Arg",
    .computes = "the argument of x + i y, from -pi to pi",
    .method = "as Atan2",
    .c_name = "arg",
    .specials = real_part_first(),
    .joints = {{logarithmic(0x1p-58, 0x1p58), multiples({1.0 / 32}, -1, 1), on_a_line},
               {logarithmic(0x1p-100, 0x1p100), around({0, 1.0 / 32, 0.5, 1}), behind},
               {everywhere(), around({0, 0x1p-60, 0x1p60}), as_it_is}},
    .c = {.bounds = {.la = 2.5, .ha = 0.51}, .timed = {-5, 5}, .approximate = kHA},
    .z = {.bounds = {.la = 2.4, .ha = 0.53, .ep = 65536}, .timed = {-5, 5}, .approximate = kAllClasses},
}};
