#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kLog10Of2 = 0x1.34413509f79ffp-2;

static const Entry kEntry{{
    .name = "Log10",
    .computes = "log10 x",
    .method = "as Ln",
    .c_name = "log10",
    .domain = "x >= 0",
    .errors = {{StatusDomain, "x < 0"}, {StatusSingularity, "x = 0"}},
    .specials = {{1, 0},
                 {1000, 3},
                 {0, -kInf, StatusSingularity},
                 {-0.0, -kInf, StatusSingularity},
                 {-3, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kInf, kInf},
                 {kNaN, kNaN},
                 {kLeast, kFinite},
                 {kLargest, kFinite}},
    .strata = {around({0.5, 2, 10, 100, 1e10, 1e22, 2.0 / 3, 4.0 / 3, 1.41421356237309504,
                       0.70710678118654752, 1.005859375, 0.994140625}),
               multiples({1.0 / 512, kLog10Of2}, 0, 1000)},
    .s = {.bounds = {.la = 3.0, .ha = 0.8}, .timed = {1e-37, 1e37}},
    .d = {.bounds = {.la = 2.0, .ha = 0.53},
          .timed = {1e-300, 1e300},
          .strata = {hard({0x1.e12d66744ff81p429})},
          .approximate = kAllClasses},
}};
