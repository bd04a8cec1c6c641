#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Pow2o3",
    .computes = "x^(2/3)",
    .method = "a table of the power at 96 points, the binomial series for the rest (after P. T. P. Tang, ACM "
              "TOMS 16, 1990)",
    .judge = "pow2o3",
    .specials = {{0, 0},
                 {-0.0, 0},
                 {8, 4},
                 {-8, 4},
                 {kInf, kInf},
                 {-kInf, kInf},
                 {kNaN, kNaN},
                 {kLeast, kFinite},
                 {-kLeast, kFinite},
                 {kLargest, kFinite}},
    .strata = {around({1, 2, 4, 8, 1.0 / 8}), multiples({1.0 / 32})},
    .s = {.bounds = {.la = 1.5, .ha = 0.51}, .timed = {1e-37, 1e37}},
    .d = {.bounds = {.la = 1.5, .ha = 0.53}, .timed = {1e-300, 1e300}},
}};
