#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr Classes kReporting = static_cast<Classes>(kLA | kHA);

static const Entry kEntry{{
    .name = "Div",
    .computes = "a/b",
    .method = "the processor's division",
    .c_name = "div",
    .domain = "b not 0",
    .errors = {{StatusSingularity, "b = 0 (not in sDiv EP)"}},
    .specials = {{{6, 3}, 2},
                 {{-1, 4}, -0.25},
                 {{0, -3}, -0.0},
                 {{kInf, 2}, kInf},
                 {{2, -kInf}, -0.0},
                 {{kInf, kInf}, kNaN, StatusOk, kAllClasses, FE_INVALID},
                 {{kNaN, 1}, kNaN},
                 {{1, kNaN}, kNaN},
                 {{kLargest, 0.5}, kInf, StatusOk, kAllClasses, FE_OVERFLOW},
                 {{kLeast, 4}, 0, StatusOk, kAllClasses, FE_UNDERFLOW}},
    .s = {.bounds = kExact,
          .timed = {1, 1000},
          .specials = {{{1, 0}, kInf, StatusSingularity, kReporting},
                       {{1, -0.0}, -kInf, StatusSingularity, kReporting},
                       {{0, 0}, kNaN, StatusSingularity, kReporting, FE_INVALID},
                       {{kInf, 0}, kInf, StatusSingularity, kReporting, 0},
                       {{1, 0}, kInf, StatusOk, kEP, FE_DIVBYZERO},
                       {{0, 0}, kNaN, StatusOk, kEP, FE_INVALID}}},
    .d = {.bounds = kExact,
          .timed = {1, 1000},
          .specials = {{{1, 0}, kInf, StatusSingularity},
                       {{1, -0.0}, -kInf, StatusSingularity},
                       {{0, 0}, kNaN, StatusSingularity, kAllClasses, FE_INVALID},
                       {{kInf, 0}, kInf, StatusSingularity, kAllClasses, 0}}},
}};
