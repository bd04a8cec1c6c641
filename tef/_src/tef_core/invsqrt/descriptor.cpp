#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "InvSqrt",
    .computes = "x^(-1/2)",
    .method = "the processor's approximate reciprocal root, refined by the binomial series",
    .judge = "inv_sqrt",
    .domain = "x >= 0",
    .errors = {{StatusDomain, "x < 0"}, {StatusSingularity, "x = 0"}},
    .specials = {{0, kInf, StatusSingularity},
                 {-0.0, -kInf, StatusSingularity},
                 {4, 0.5},
                 {-1, kNaN, StatusDomain},
                 {-kLeast, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kInf, 0},
                 {kNaN, kNaN},
                 {kLeast, kFinite},
                 {kLargest, kFinite}},
    .strata = {around({0.25, 0.5, 2, 4})},
    .s = {.bounds = {.la = 1.5, .ha = 0.51}, .timed = {1e-37, 1e37}, .approximate = kAllClasses},
    .d = {.bounds = {.la = 1.5, .ha = 0.51},
          .timed = {1e-300, 1e300},
          .approximate = static_cast<Classes>(kHA | kEP)},
}};
