#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "UnpackM",
    .computes = "y[i] = the next element of a where mask[i] is not 0",
    .keep_control_word = kAllClasses,
    .s = {.timed = {-1000, 1000}},
    .d = {.timed = {-1000, 1000}},
    .c = {.timed = {-1000, 1000}},
    .z = {.timed = {-1000, 1000}},
}};
