#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "PackI",
    .computes = "y[i] = a[i * stride]",
    .keep_control_word = kAllClasses,
    .s = {.timed = {-1000, 1000}},
    .d = {.timed = {-1000, 1000}},
    .c = {.timed = {-1000, 1000}},
    .z = {.timed = {-1000, 1000}},
}};
