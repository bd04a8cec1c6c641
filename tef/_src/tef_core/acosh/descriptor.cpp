#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Acosh",
    .computes = "acosh x",
    .method = "doubles: addition theorem at the middle of a cell of x - 1, 32 cells to a power of two; "
              "singles: the logarithm of x + sqrt(x^2 - 1)",
    .c_name = "acosh",
    .domain = "x >= 1",
    .errors = {{StatusDomain, "x < 1"}},
    .specials = {{1, 0},
                 {0.5, kNaN, StatusDomain},
                 {0, kNaN, StatusDomain},
                 {-1, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kInf, kInf},
                 {kNaN, kNaN},
                 {kLargest, kFinite}},
    .strata = {around({1.0001220703125, 1.5, 2, 0x1p28}), logarithmic(1, 1e6), even(1, 1.001)},
    .s = {.bounds = {.la = 2.2, .ha = 0.51},
          .timed = {1, 1000},
          // The last: where the logarithm of the sum loses most.
          .strata = {around({0x1p60, 0x1p63, 0x1p64, 1.02724147})},
          .approximate = kHA},
    .d = {.bounds = {.la = 2.2, .ha = 0.55},
          .timed = {1, 1000},
          // The last: results just below 2^-6, of squares just above 2^-12.
          .strata = {around({0x1p26, 0x1p27, 0x1p500, 0x1p511}), logarithmic(1e6, 1e9),
                     even(1.00012207, 1.0001220703125)},
          .approximate = kAllClasses},
}};
