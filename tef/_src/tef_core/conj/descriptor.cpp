#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Conj",
    .computes = "the conjugate of a",
    .c_name = "conj",
    .specials = {{{2, 3}, {2, -3}},
                 {{-1, -0.0}, {-1, 0}},
                 {{kInf, kNaN}, {kInf, kNaN}},
                 {{kNaN, -kInf}, {kNaN, kInf}},
                 {{kLeast, kLeast}, {kLeast, -kLeast}}},
    .keep_control_word = kAllClasses,
    .c = {.bounds = kExact, .timed = {-1000, 1000}},
    .z = {.bounds = kExact, .timed = {-1000, 1000}},
}};
