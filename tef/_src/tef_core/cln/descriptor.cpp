#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kPi = 0x1.921fb54442d18p+1;

// Next to the circle |z| = 1, and near its points on the axes.
static Pair near_circle(double angle, double distance) {
  return {(1 + distance) * std::cos(angle), (1 + distance) * std::sin(angle)};
}
static Pair near_axis(double x, double y) { return {x, y}; }
static Pair near_other_axis(double x, double y) { return {y, x}; }

static const Entry kEntry{{
    .name = "Ln",
    .computes = "the logarithm of a, with an imaginary part from -pi to pi",
    .method = "ln(x^2 + y^2)/2 + i Atan2(y, x), with the rounding errors of the sum of squares",
    .c_name = "log",
    // C99, annex G.6.3.2; nothing is reported.
    .specials = {{{1, 0}, {0, 0}},
                 {{1, -0.0}, {0, -0.0}},
                 {{-1, 0}, {0, kPi}},
                 {{-1, -0.0}, {0, -kPi}},
                 {{0, 1}, {0, kPi / 2}},
                 {{0, 0}, {-kInf, 0}, StatusOk, kAllClasses, FE_DIVBYZERO},
                 {{-0.0, 0}, {-kInf, kPi}, StatusOk, kAllClasses, FE_DIVBYZERO},
                 {{-0.0, -0.0}, {-kInf, -kPi}, StatusOk, kAllClasses, FE_DIVBYZERO},
                 {{-kInf, 1}, {kInf, kPi}},
                 {{kInf, -1}, {kInf, -0.0}},
                 {{1, kInf}, {kInf, kPi / 2}},
                 {{-kInf, kInf}, {kInf, 3 * kPi / 4}},
                 {{kInf, -kInf}, {kInf, -kPi / 4}},
                 {{kInf, kNaN}, {kInf, kNaN}},
                 {{kNaN, kInf}, {kInf, kNaN}},
                 {{kNaN, 1}, {kNaN, kNaN}},
                 {{1, kNaN}, {kNaN, kNaN}}},
    .joints = {{even(-kPi, kPi), around({0}), near_circle},
               {even(-kPi, kPi), logarithmic(0x1p-60, 0x1p-50), near_circle},
               {around({1, -1}), around({0}), near_axis},
               {around({1, -1}), around({0}), near_other_axis},
               {logarithmic(0x1p-59, 0x1p59), logarithmic(0x1p-59, 0x1p59)}},
    .c = {.bounds = {.la = 2.5, .ha = 0.51}, .timed = {-10, 10}, .approximate = kAllClasses},
    .z = {.bounds = {.la = 2.5, .ha = 0.6, .ep = 1048576},
          .timed = {-10, 10},
          .cases = {{0.5041333543431189, 1.6804842175650701e-08}},  // half of |z|^2 - 1 would be lost
          .approximate = kAllClasses,
          .norm_wise = Classes(kLA | kEP)},
}};
