#include "functions/descriptor.hpp"

using namespace orx::descriptor;

// Where a sum cancels no bound holds: it is measured where none does, all inputs and factors positive. The bound is
// that of five roundings.
static const Entry kEntry{{
    .name = "LinearFrac",
    .computes = "(a scalea + shifta) / (b scaleb + shiftb)",
    .judge = "linear_fraction",
    .strata = {even(0x1p-30, 0x1p30), logarithmic(0x1p-30, 0x1p30)},
    .only_these_strata = true,
    .formula = true,
    .judge_precision = 256,
    .s = {.bounds = {5, 5, 5}, .timed = {-10, 10}},
    .d = {.bounds = {5, 5, 5}, .timed = {-10, 10}},
}};
