#include "functions/descriptor.hpp"

using namespace orx::descriptor;

// Near its zeros on the negative side, all but those nearest to 0 next to poles, the terms of the reflection cancel: what is
// promised there is an error against the terms, which are of the size of 1.
static const Entry kEntry{{
    .name = "LGamma",
    .computes = "ln |gamma x|",
    .method = "polynomials in rows of 1/8, Stirling's series from 8 on, reflection (DLMF 5.5, 5.11)",
    .c_name = "lgamma",
    .errors = {{StatusSingularity, "x is 0 or a negative integer"}, {StatusOverflow, "x is too large"}},
    .specials = {{1, 0},
                 {2, 0},
                 {0, kInf, StatusSingularity},
                 {-0.0, kInf, StatusSingularity},
                 {-1, kInf, StatusSingularity},
                 {-2, kInf, StatusSingularity},
                 {-kLargest, kInf, StatusSingularity},
                 {kLargest, kInf, StatusOverflow},
                 {kInf, kInf},
                 {-kInf, kInf},
                 {kNaN, kNaN},
                 {0.5, 0.572364942924700087},
                 {3, 0.693147180559945309},
                 {100, 359.134205369575399},
                 {-0.5, 1.26551212348464540}},
    .strata = {around({1, 2, 0.9375, 1.0625, 7.9375, 8, -1, -2, -7, -8, -50.5}), multiples({0.125}, -20, 20),
               even(-10, 10), even(0.5, 3), logarithmic(3, 1000), even(-200, 0)},
    .s = {.bounds = {.la = 0.55, .ha = 0.55, .ep = 0.55},
          .timed = {0.1, 30},
          .strata = {around({0x1p121})},
          .approximate = kAllClasses,
          .floor = {.la = 0x1p-20, .ha = 0x1p-20, .ep = 0x1p-20}},
    .d = {.bounds = {.la = 0.85, .ha = 0.85, .ep = 0.85},
          .timed = {0.1, 30},
          .specials = {{1e305, kFinite},
                       {-0x1.0000000000002p51, kInf, StatusSingularity},
                       {-0x1.0000000000003p51, kFinite},
                       {2.6e305, kInf, StatusOverflow}},
          .approximate = kAllClasses,
          .floor = {.la = 0x1p-4, .ha = 0x1p-4, .ep = 0x1p-4}},
}};
