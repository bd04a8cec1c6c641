#include "_rounding/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_rounding_to_even({
    .name = "NearbyInt",
    .computes = "the nearest integer, of two the even one; inexact is not raised",
    .c_name = "nearbyint",
    .judge = "rint",
})};
