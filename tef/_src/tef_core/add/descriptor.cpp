#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Add",
    .computes = "a + b",
    .c_name = "add",
    .specials = {{{2, 3}, 5},
                 {{kInf, 1}, kInf},
                 {{kInf, -kInf}, kNaN, StatusOk, kAllClasses, FE_INVALID},
                 {{kLargest, kLargest}, kInf, StatusOk, kAllClasses, FE_OVERFLOW},
                 {{kNaN, 1}, kNaN},
                 {{-0.0, -0.0}, -0.0}},
    .judge_precision = 2112,  // sums of two doubles are exact with as many bits
    .s = {.bounds = kExact, .timed = {-1000, 1000}},
    .d = {.bounds = kExact, .timed = {-1000, 1000}},
}};
