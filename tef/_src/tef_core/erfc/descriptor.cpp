#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Erfc",
    .computes = "the complementary error function, 1 - Erf x",
    .method = "series about a grid of 2^-7, erfc and its derivative there from a table",
    .c_name = "erfc",
    .errors = {{StatusUnderflow, "x > 26.6994; singles: the result is 0 or denormal"}},
    .specials = {{0, 1},
                 {-0.0, 1},
                 {kInf, 0},
                 {-kInf, 2},
                 {kNaN, kNaN},
                 {28, 0, StatusUnderflow},
                 {kLargest, 0, StatusUnderflow},
                 {-kLargest, 2},
                 {-7, 2},
                 {kLeast, 1},
                 {1, 0.157299207050285131},
                 {-1, 1.84270079294971487}},
    .strata = {around({0.5, 1, 24 - 1.0 / 256, 26.54325845425098, 26.699372268345602, 27.226017111108366,
                       -5.8635847487551676}),
               multiples({1.0 / 128}, -6, 27.2), even(-6, 6), even(0, 27.2)},
    .s = {.bounds = {.la = 0.55, .ha = 0.55, .ep = 0.55},
          .timed = {-4, 8},
          .specials = {{9.5, 3.76921449e-41, StatusUnderflow}, {9.25, 4.20203721e-39, StatusUnderflow}, {5, 1.53745979e-12}},
          .strata = {around({9.194548606872559, 10.05}), even(8, 10.1)}},
    .d = {.bounds = {.la = 0.85, .ha = 0.85, .ep = 0.85},
          .timed = {-6, 10},
          .specials = {{10, 2.08848758376254449e-45}, {27, 5.23704892378925569e-319, StatusUnderflow}, {26.5, 2.21090766426373428e-307}}},
}};
