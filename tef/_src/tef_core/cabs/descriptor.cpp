#include <cfenv>

#include "_complex/descriptor.hpp"

// Parts whose sizes differ by a given factor, at a given size.
static Pair with_ratio(double size, double ratio) { return {size, size * ratio}; }

static const Entry kEntry{{
    .name = "Abs",
    .computes = "the modulus (x^2 + y^2)^(1/2) of x + i y",
    .method = "as Hypot",
    .c_name = "abs",
    .errors = {{StatusOverflow,
                "modulus above the largest number, of finite parts (HA, LA; z: all classes)"}},
    .specials = {{{3, -4}, 5},
                 {{0, 0}, 0},
                 {{-0.0, -0.0}, 0},
                 {{-7, 0}, 7},
                 {{kInf, kNaN}, kInf, StatusOk, kReporting},
                 {{kNaN, -kInf}, kInf, StatusOk, kReporting},
                 {{-kInf, -kInf}, kInf},
                 {{kNaN, 1}, kNaN},
                 {{1, kNaN}, kNaN},
                 {{kLargest, 1}, kLargest, StatusOk, kReporting},
                 {{kLargest, kLargest}, kInf, StatusOverflow, kReporting},
                 {{0, -kLeast}, kLeast, StatusOk, kReporting}},
    .joints = {{logarithmic(0.1, 10), logarithmic(0x1p-60, 1), with_ratio},
               {everywhere(), logarithmic(0x1p-30, 1), with_ratio},
               {everywhere(), even(0.5, 2), with_ratio}},
    .c = {.bounds = {.la = 1.5, .ha = 0.51, .ep = 1.5},
          .timed = {-1000, 1000},
          .ep_moderate = {0x1p-48, 0x1p62}},
    // The bound is that of denormals, which are rounded twice; it is 0.51 elsewhere.
    .z = {.bounds = {.la = 1.5, .ha = 0.75, .ep = 1.5},
          .timed = {-1000, 1000},
          .specials = {{{kInf, kNaN}, kInf, StatusOk, kEP},
                       {{kLargest, kLargest}, kInf, StatusOverflow, kEP}}},
}};
