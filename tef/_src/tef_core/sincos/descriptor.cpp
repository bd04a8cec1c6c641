#include "sin/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_sines({
    .name = "SinCos",
    .computes = "sin x and cos x",
    .c_name = "sincos",
    .judge = "sin_cos",
    .specials = {{0, {0, 1}},
                 {-0.0, {-0.0, 1}, StatusOk, kSinesWithSignsOfZero},
                 {kInf, {kNaN, kNaN}, StatusDomain},
                 {-kInf, {kNaN, kNaN}, StatusDomain},
                 {kNaN, {kNaN, kNaN}}},
    .zero_signs_free = kHA,
})};
