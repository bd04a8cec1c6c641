#include "_rounding/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_rounding({
    .name = "Round",
    .computes = "the nearest integer, of two the one farther from 0",
    .method = "towards zero, after the largest number below a half is added",
    .c_name = "round",
    .specials = {{0.5, 1}, {-0.5, -1}, {-0.25, -0.0}, {2.5, 3}, {-2.5, -3}, {3.5, 4}, {kLeast, 0}},
})};
