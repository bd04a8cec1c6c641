#include "_rounding/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_rounding({
    .name = "Trunc",
    .computes = "x without its fraction",
    .method = "one instruction of the processor",
    .c_name = "trunc",
    .specials = {{-0.9, -0.0}, {2.75, 2}, {-2.75, -2}, {kLeast, 0}, {-kLeast, -0.0}},
})};
