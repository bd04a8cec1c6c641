#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Log1p",
    .computes = "ln(1 + x)",
    .method = "as Ln for the rounded sum, and what the rounding lost",
    .c_name = "log1p",
    .domain = "x >= -1",
    .errors = {{StatusDomain, "x < -1"}, {StatusSingularity, "x = -1"}},
    .specials = {{0, 0},
                 {-0.0, -0.0},
                 {-1, -kInf, StatusSingularity},
                 {-1.5, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kInf, kInf},
                 {kNaN, kNaN},
                 {kLargest, kFinite},
                 {kLeast, kLeast}},
    .strata = {around({-0.5, -1.0 / 3, 1.0 / 3, 0.41421356237309504, -0.29289321881345248, 1e16, 0x1p-27,
                       -0x1p-27, 0x1p-53, -0x1p-53, 0x1p53, 0x1p54}),
               multiples({1.0 / 512}, -0.99, 1000)},
    .s = {.bounds = {.la = 2.5, .ha = 0.7}, .timed = {-0.99, 1e6}},
    .d = {.bounds = {.la = 3.0, .ha = 0.7}, .timed = {-0.99, 1e6}, .approximate = kAllClasses},
}};
