#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Asinh",
    .computes = "asinh x",
    .method = "doubles: addition theorem at the middle of a cell, 32 cells to a power of two; singles: the "
              "logarithm of |x| + sqrt(x^2 + 1)",
    .c_name = "asinh",
    .specials = {{0, 0},
                 {-0.0, -0.0},
                 {-kInf, -kInf},
                 {kInf, kInf},
                 {kNaN, kNaN},
                 {kLeast, kLeast},
                 {kLargest, kFinite},
                 {-kLargest, kFinite}},
    .strata = {around({0.015625, 0.0625, 0.5, 4, 0x1p28}), logarithmic(1e-6, 1e6), logarithmic(-1e-3, -10)},
    .s = {.bounds = {.la = 2.2, .ha = 0.51},
          .timed = {-1000, 1000},
          .strata = {around({0x1p-20, 0x1p60, 0x1p63, 0x1p64})},
          .approximate = kHA},
    .d = {.bounds = {.la = 1.6, .ha = 0.55},
          .timed = {-1000, 1000},
          // The last two: results just below a power of two, whose unit is half of that of the argument.
          .strata = {around({0x1p26, 0x1p27, 0x1p500, 0x1p511}), logarithmic(1e6, 1e9), even(0.5, 0.521),
                     even(0.0625, 0.06254)},
          .approximate = kAllClasses},
}};
