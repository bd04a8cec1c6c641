#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Sqr",
    .computes = "a^2",
    .judge = "sqr",
    .quick_judge = [](double x) { return x * x; },
    .specials = {{-3, 9},
                 {-kInf, kInf},
                 {kNaN, kNaN},
                 {-0.0, 0},
                 {kLargest, kInf, StatusOk, kAllClasses, FE_OVERFLOW},
                 {kSmallest, 0, StatusOk, kAllClasses, FE_UNDERFLOW}},
    .s = {.bounds = kExact, .timed = {-1000, 1000}},
    .d = {.bounds = kExact, .timed = {-1000, 1000}},
}};
