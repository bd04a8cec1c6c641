#include "_rounding/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_rounding({
    .name = "Ceil",
    .computes = "the least integer not below x",
    .method = "one instruction of the processor",
    .c_name = "ceil",
    .specials = {{-0.5, -0.0}, {2.25, 3}, {kLeast, 1}, {-kLeast, -0.0}},
})};
