#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "CdfNorm",
    .computes = "the normal distribution of unit variance, erfc(-x/sqrt(2))/2",
    .method = "series about a grid of 2^-7, distribution and density there from a table",
    .c_name = "cdfnorm",
    .errors = {{StatusUnderflow, "x < -37.7403; singles: the result is 0 or denormal"}},
    .specials = {{0, 0.5},
                 {-0.0, 0.5},
                 {kInf, 1},
                 {-kInf, 0},
                 {kNaN, kNaN},
                 {-39, 0, StatusUnderflow},
                 {-kLargest, 0, StatusUnderflow},
                 {kLargest, 1},
                 {9, 1},
                 {kLeast, 0.5},
                 {-1, 0.158655253931457051},
                 {1, 0.841344746068542949}},
    .strata = {around({-1, 1, 8.292361075813595, -34 + 1.0 / 256, -37.5193793471445, -37.74026543984266,
                       -38.485408335567335}),
               multiples({1.0 / 128}, -38.5, 8), even(-8, 8), even(-38.5, 0)},
    .s = {.bounds = {.la = 0.55, .ha = 0.55, .ep = 0.55},
          .timed = {-6, 6},
          .specials = {{-13.5, 7.81880731e-42, StatusUnderflow}, {-5, 2.86651572e-07}},
          .strata = {around({-12.949952125549316, -14.17}), even(-14.2, -12)}},
    .d = {.bounds = {.la = 2.2, .ha = 0.85}, .timed = {-8, 8}, .specials = {{-10, 7.61985302416052606e-24}}},
}};
