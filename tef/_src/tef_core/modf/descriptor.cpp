#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Modf",
    .computes = "x without its fraction, and its fraction",
    .method = "the integer part by the processor",
    .c_name = "modf",
    .specials = {{-3, {-3, -0.0}},
                 {2.75, {2, 0.75}},
                 {-2.75, {-2, -0.75}},
                 {kLeast, {0, kLeast}},
                 {0, {0, 0}},
                 {-0.0, {-0.0, -0.0}},
                 {kInf, {kInf, 0}},
                 {-kInf, {-kInf, -0.0}},
                 {kNaN, {kNaN, kNaN}}},
    .strata = {even(-100, 100),
               around({0.5, 1.5, 2.5, 0x1p22, 0x1p23, 0x1p24, 0x1p31, 0x1p51, 0x1p52, 0x1p53})},
    .s = {.bounds = kExact, .timed = {-1000, 1000}},
    .d = {.bounds = kExact, .timed = {-1000, 1000}},
}};
