#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Erf",
    .computes = "the error function, 2/sqrt(pi) times the integral of e^(-v^2) from 0 to x",
    .method = "Taylor series about a grid of 2^-7, erf and its derivative there from a table",
    .c_name = "erf",
    .specials = {{0, 0},
                 {-0.0, -0.0},
                 {6, 1},
                 {-6, -1},
                 {kInf, 1},
                 {-kInf, -1},
                 {kNaN, kNaN},
                 {kLargest, 1},
                 {0.5, 0.520499877813046538},
                 {1, 0.842700792949714869},
                 {-2, -0.995322265018952734}},
    .strata = {around({0.01171875, 0.01953125, 0.02734375, 0.00390625, 0.5, 2, 3.92, 5.92, 5.9921875}),
               multiples({1.0 / 128}, 0, 6), even(0, 6), logarithmic(1e-5, 6)},
    .s = {.bounds = {.la = 0.55, .ha = 0.55, .ep = 0.55},
          .timed = {-4, 4},
          .specials = {{kLeast, kLeast, StatusOk, kAllClasses, FE_UNDERFLOW}}},
    .d = {.bounds = {.la = 1.5, .ha = 0.75},
          .timed = {-6, 6},
          .specials = {{kLeast, kLeast, StatusOk, kAllClasses, FE_UNDERFLOW}}},
}};
