#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Round",
    .computes = "the nearest integer, of two the one farther from 0",
    .method = "towards zero, after the largest number below a half is added",
    .c_name = "round",
    .specials = {{0.5, 1},
                 {-0.5, -1},
                 {-0.25, -0.0},
                 {2.5, 3},
                 {-2.5, -3},
                 {3.5, 4},
                 {kLeast, 0},
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
