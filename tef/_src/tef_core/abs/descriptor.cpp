#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Abs",
    .computes = "|x|",
    .c_name = "fabs",
    .judge = "abs",
    .specials = {{-0.0, 0}, {-3.5, 3.5}, {-kInf, kInf}, {kNaN, kNaN}, {-kLeast, kLeast}},
    .keep_control_word = kAllClasses,
    .s = {.bounds = kExact, .timed = {-1000, 1000}},
    .d = {.bounds = kExact, .timed = {-1000, 1000}},
}};
