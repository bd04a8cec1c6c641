#include "_rounding/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_rounding({
    .name = "Floor",
    .computes = "the greatest integer not above x",
    .method = "one instruction of the processor",
    .c_name = "floor",
    .specials = {{-0.5, -1}, {2.75, 2}, {kLeast, 0}, {-kLeast, -1}},
})};
