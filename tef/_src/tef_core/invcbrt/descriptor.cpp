#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "InvCbrt",
    .computes = "x^(-1/3)",
    .method = "a table of the power at 96 points, the binomial series for the rest (after P. T. P. Tang, ACM "
              "TOMS 16, 1990)",
    .judge = "inv_cbrt",
    .domain = "x not 0",
    .errors = {{StatusSingularity, "x = 0"}},
    .specials = {{0, kInf, StatusSingularity},
                 {-0.0, -kInf, StatusSingularity},
                 {8, 0.5},
                 {-8, -0.5},
                 {kInf, 0},
                 {-kInf, -0.0},
                 {kNaN, kNaN},
                 {kLeast, kFinite},
                 {-kLeast, kFinite},
                 {kLargest, kFinite}},
    .strata = {around({1, 2, 4, 8, 1.0 / 8}), multiples({1.0 / 32})},
    .s = {.bounds = {.la = 1.5, .ha = 0.53}, .timed = {1e-37, 1e37}},
    .d = {.bounds = {.la = 1.5, .ha = 0.54}, .timed = {1e-300, 1e300}},
}};
