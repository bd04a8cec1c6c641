#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static const Entry kEntry{{
    .name = "Tanh",
    .computes = "tanh x",
    .method = "doubles: addition theorem at the beginning of a cell, 64 cells to a power of two; singles: "
              "(e^2x - 1)/(e^2x + 1)",
    .c_name = "tanh",
    .specials =
        {{0, 0}, {-0.0, -0.0}, {-kInf, -1}, {kInf, 1}, {kNaN, kNaN}, {kLeast, kLeast}, {-kLargest, -1}},
    .strata = {multiples({1.0 / 512, 1.0 / 64, 1.0 / 4}, -20, 20), around({0.0625, 0.5, 1, 19.0616, 19.25})},
    .s = {.bounds = {.la = 2.5, .ha = 0.51}, .timed = {-10, 10}, .strata = {around({0.3, 9.011, 10})}},
    .d = {.bounds = {.la = 1.5, .ha = 0.6}, .timed = {-20, 20}},
}};
