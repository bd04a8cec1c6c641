#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Sqrt",
    .computes = "x^(1/2)",
    .method = "the processor's instruction",
    .c_name = "sqrt",
    .domain = "x >= 0",
    .errors = {{StatusDomain, "x < 0"}},
    .specials = {{0, 0},
                 {-0.0, -0.0},
                 {4, 2},
                 {-1, kNaN, StatusDomain},
                 {-kLeast, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kInf, kInf},
                 {kNaN, kNaN},
                 {kLeast, kFinite},
                 {kLargest, kFinite}},
    .s = {.bounds = kExact, .timed = {1e-37, 1e37}},
    .d = {.bounds = kExact, .timed = {1e-300, 1e300}},
}};
