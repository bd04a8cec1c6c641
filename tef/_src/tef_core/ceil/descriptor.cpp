#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Ceil",
    .computes = "the least integer not below x",
    .method = "one instruction of the processor",
    .c_name = "ceil",
    .specials = {{-0.5, -0.0},
                 {2.25, 3},
                 {kLeast, 1},
                 {-kLeast, -0.0},
                 {0, 0},
                 {-0.0, -0.0},
                 {kInf, kInf},
                 {-kInf, -kInf},
                 {kNaN, kNaN}},
    .strata = {even(-100, 100),
               around({0.5, 1.5, 2.5, 0x1p22, 0x1p23, 0x1p24, 0x1p31, 0x1p51, 0x1p52, 0x1p53})},
    .s = {.bounds = kExact, .timed = {-1000, 1000}},
    .d = {.bounds = kExact, .timed = {-1000, 1000}},
}};
