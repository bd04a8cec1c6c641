#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

// Overflow and underflow stand in the result and in the exceptions; they are not reported.
static const Entry kEntry{{
    .name = "Pow3o2",
    .computes = "x^(3/2)",
    .method = "the processor's root; HA with its rounding error made good",
    .judge = "pow3o2",
    .domain = "x >= 0",
    .errors = {{StatusDomain, "x < 0"}},
    .specials = {{0, 0},
                 {-0.0, 0},
                 {4, 8},
                 {-1, kNaN, StatusDomain},
                 {-kLeast, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kInf, kInf},
                 {kNaN, kNaN},
                 {kLargest, kInf, StatusOk, kAllClasses, FE_OVERFLOW},
                 {kLeast, 0, StatusOk, kAllClasses, FE_UNDERFLOW}},
    .s = {.bounds = {.la = 1.5, .ha = 0.51}, .timed = {1e-24, 1e24}},
    .d = {.bounds = {.la = 1.5, .ha = 0.51},
          .timed = {1e-200, 1e200},
          .strata = {around({0x1p-580, 0x1p+680, 0x1p-682, 0x1p-715})}},
}};
