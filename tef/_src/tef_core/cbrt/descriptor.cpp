#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Cbrt",
    .computes = "x^(1/3)",
    .method = "a table of the power at 96 points, the binomial series for the rest (after P. T. P. Tang, ACM "
              "TOMS 16, 1990)",
    .c_name = "cbrt",
    .specials = {{0, 0},
                 {-0.0, -0.0},
                 {8, 2},
                 {-8, -2},
                 {kInf, kInf},
                 {-kInf, -kInf},
                 {kNaN, kNaN},
                 {kLeast, kFinite},
                 {-kLeast, kFinite},
                 {kSmallest, kFinite},
                 {kLargest, kFinite}},
    .strata = {around({1, 2, 4, 8, 1.0 / 8}), multiples({1.0 / 32})},
    .s = {.bounds = {.la = 1.5, .ha = 0.51}, .timed = {1e-37, 1e37}},
    .d = {.bounds = {.la = 1.5, .ha = 0.52}, .timed = {1e-300, 1e300}},
}};
