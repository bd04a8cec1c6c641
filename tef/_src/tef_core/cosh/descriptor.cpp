#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kLn2 = 0x1.62e42fefa39efp-1;

static const Entry kEntry{{
    .name = "Cosh",
    .computes = "cosh x",
    .method = "as Sinh",
    .c_name = "cosh",
    .errors = {{StatusOverflow, "result above the largest number"}},
    .specials = {{0, 1}, {-0.0, 1}, {-kInf, kInf}, {kInf, kInf}, {kNaN, kNaN}, {kLeast, 1}},
    .strata = {multiples({kLn2, kLn2 / 2, kLn2 / 128, kLn2 / 256}), around({0.0625, 0.5, 1, 22})},
    .s = {.bounds = {.la = 2.0, .ha = 0.51},
          .timed = {-80, 80},
          .specials = {{90, kInf, StatusOverflow}, {-90, kInf, StatusOverflow}, {89.4, kFinite}},
          .strata = {around({86.9, 89.415985})}},
    .d = {.bounds = {.la = 2.0, .ha = 0.6},
          .timed = {-700, 700},
          .specials = {{711, kInf, StatusOverflow}, {-711, kInf, StatusOverflow}, {710.4, kFinite}},
          .strata = {around({707.699830101, 709.782712893384, 710.4758600739439})}},
}};
