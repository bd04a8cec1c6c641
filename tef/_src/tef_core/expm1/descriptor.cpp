#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kLn2 = 0x1.62e42fefa39efp-1;

static const Entry kEntry{{
    .name = "Expm1",
    .computes = "e^x - 1",
    .method = "as Exp, 1 taken from the high part",
    .c_name = "expm1",
    .errors = {{StatusOverflow, "result above the largest number"}},
    .specials = {{0, 0}, {-0.0, -0.0}, {-kInf, -1}, {kInf, kInf}, {kNaN, kNaN}, {kLeast, kLeast}},
    .strata = {multiples({kLn2, kLn2 / 4, kLn2 / 64, kLn2 / 128, kLn2 / 1024}),
               around({-36.7368, -37.42994775, -17.3286795, 0.5, -0.5, kLn2, -kLn2})},
    .s = {.bounds = {.la = 2.0, .ha = 0.75},
          .timed = {-80, 80},
          .specials = {{-100, -1}, {89, kInf, StatusOverflow}, {88.7, kFinite}},
          .strata = {around({88.72283})}},
    .d = {.bounds = {.la = 2.5, .ha = 0.6},
          .timed = {-700, 700},
          .specials = {{-800, -1}, {710, kInf, StatusOverflow}, {709.7, kFinite}},
          .strata = {around({707.703271352, -707.703271352, 709.782712893384}),
                     hard({-0x1.19e53fcd490d0p-23, 0x1.fffffffffffffp-54})}},
}};
