#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Ln",
    .computes = "ln x",
    .method =
        "doubles: reduction by a short rounded reciprocal, table index and exact multiplier at once (after "
        "W.-F. Wong and E. Goto, IEEE Trans. Computers 43, 1994); singles: polynomial on [2/3, 4/3)",
    .c_name = "log",
    .domain = "x >= 0",
    .errors = {{StatusDomain, "x < 0"}, {StatusSingularity, "x = 0"}},
    .specials = {{1, 0},
                 {0, -kInf, StatusSingularity},
                 {-0.0, -kInf, StatusSingularity},
                 {-1, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {-kLeast, kNaN, StatusDomain},
                 {kInf, kInf},
                 {kNaN, kNaN},
                 {kLargest, kFinite}},
    .strata = {around({0.5, 2, 2.0 / 3, 4.0 / 3, 1.41421356237309504, 0.70710678118654752, 724.0 / 512,
                       512.0 / 724, 1.009765625, 0.990234375}),
               multiples({1.0 / 512}, 0, 1000)},
    .s = {.bounds = {.la = 2.2, .ha = 0.7}, .timed = {1e-37, 1e37}, .specials = {{kLeast, -103.278929903}}},
    .d = {.bounds = {.la = 2.0, .ha = 0.51},
          .timed = {1e-300, 1e300},
          .specials = {{kLeast, -744.44007192138126}},
          .strata = {hard({0x1.26e9c4d327960p-232, 0x1.613955dc802f8p-35, 0x1.62a88613629b6p678})},
          .approximate = kAllClasses},
}};
