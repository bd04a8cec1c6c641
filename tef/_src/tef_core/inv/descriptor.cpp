#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr Classes kReporting = static_cast<Classes>(kLA | kHA);

static const Entry kEntry{{
    .name = "Inv",
    .computes = "1/x",
    .method = "the processor's division",
    .judge = "inv",
    .domain = "x not 0",
    .errors = {{StatusSingularity, "x = 0 (not in sInv EP)"}},
    .specials = {{2, 0.5},
                 {-4, -0.25},
                 {kInf, 0},
                 {-kInf, -0.0},
                 {kNaN, kNaN},
                 {kSmallest, kFinite},
                 {kLeast, kInf, StatusOk, kAllClasses, FE_OVERFLOW}},
    .s = {.bounds = kExact,
          .timed = {1e-37, 1e37},
          .specials = {{0, kInf, StatusSingularity, kReporting},
                       {-0.0, -kInf, StatusSingularity, kReporting},
                       {0, kInf, StatusOk, kEP, FE_DIVBYZERO},
                       {-0.0, -kInf, StatusOk, kEP, FE_DIVBYZERO}}},
    .d = {.bounds = kExact,
          .timed = {1e-300, 1e300},
          .specials = {{0, kInf, StatusSingularity}, {-0.0, -kInf, StatusSingularity}}},
}};
