#include "sin/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_sines({
    .name = "Sin",
    .computes = "sin x",
    .c_name = "sin",
    .specials = {{0, 0},
                 {-0.0, -0.0, StatusOk, kSinesWithSignsOfZero},
                 {kInf, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kNaN, kNaN}},
    .zero_signs_free = kHA,
})};
