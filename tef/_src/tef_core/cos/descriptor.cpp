#include "sin/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_sines({
    .name = "Cos",
    .computes = "cos x",
    .c_name = "cos",
    .specials = {{0, 1},
                 {-0.0, 1},
                 {kLeast, 1},
                 {kInf, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kNaN, kNaN}},
})};
