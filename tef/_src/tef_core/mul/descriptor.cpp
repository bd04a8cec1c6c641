#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Mul",
    .computes = "a b",
    .c_name = "mul",
    .specials = {{{2, 3}, 6},
                 {{kInf, -1}, -kInf},
                 {{kInf, 0}, kNaN, StatusOk, kAllClasses, FE_INVALID},
                 {{kLargest, 2}, kInf, StatusOk, kAllClasses, FE_OVERFLOW},
                 {{kSmallest, kSmallest}, 0, StatusOk, kAllClasses, FE_UNDERFLOW},
                 {{kNaN, 1}, kNaN},
                 {{-0.0, 1}, -0.0}},
    .s = {.bounds = kExact, .timed = {-1000, 1000}},
    .d = {.bounds = kExact, .timed = {-1000, 1000}},
}};
