#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Atanh",
    .computes = "atanh x",
    .method = "half the logarithm of (1 + x)/(1 - x), by a quotient that does not cancel; doubles in LA and "
              "EP: addition theorem, 32 cells to a power of two of 1 - |x|",
    .c_name = "atanh",
    .domain = "|x| <= 1",
    .errors = {{StatusDomain, "|x| > 1"}, {StatusSingularity, "|x| = 1"}},
    .specials = {{0, 0},
                 {-0.0, -0.0},
                 {1, kInf, StatusSingularity},
                 {-1, -kInf, StatusSingularity},
                 {1.5, kNaN, StatusDomain},
                 {-1.5, kNaN, StatusDomain},
                 {kInf, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kNaN, kNaN},
                 {kLeast, kLeast}},
    .strata = {multiples({1.0 / 512}, -1, 1), around({0.015625, 0.0625, 0.5, -0.5}),
               logarithmic(1e-6, 0.999999), even(-1, 1)},
    .s = {.bounds = {.la = 2.2, .ha = 0.51},
          .timed = {-1, 1},
          // The last: where e and k ln 2 cancel most of the logarithm.
          .strata = {around({0x1p-20, 0.455130309})},
          .approximate = kHA},
    .d = {.bounds = {.la = 2.2, .ha = 0.6}, .timed = {-1, 1}, .approximate = kHA},
}};
