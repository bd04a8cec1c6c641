#include <cfenv>

#include "functions/descriptor.hpp"

using namespace orx::descriptor;

// Imaginary parts where the sine or the cosine is small.
static constexpr double kHalfPi = 0x1.921fb54442d18p+0;

static const Entry kEntry{{
    .name = "Exp",
    .computes = "e^a",
    .method = "e^x (cos y + i sin y) by the cores of Exp and SinCos; c, HA, in double; z, HA, with factors "
              "in two parts",
    .c_name = "exp",
    .errors = {{StatusOverflow, "a part above the largest number, of finite a"}},
    // C99, annex G.6.3.1.
    .specials = {{{0, 0}, {1, 0}},
                 {{-0.0, -0.0}, {1, -0.0}},
                 {{1, -0.0}, {2.71828182845904523536, -0.0}},
                 {{710, 0}, {kInf, 0}, StatusOverflow},
                 {{-1000, 0}, {0, 0}, StatusOk, kAllClasses, FE_UNDERFLOW},
                 {{-1000, -1}, {0, -0.0}, StatusOk, kAllClasses, FE_UNDERFLOW},
                 {{1000, 2}, {-kInf, kInf}, StatusOverflow},
                 {{kLargest, -0.0}, {kInf, -0.0}, StatusOverflow},
                 {{kInf, 0}, {kInf, 0}},
                 {{kInf, 2}, {-kInf, kInf}},
                 {{-kInf, 2}, {-0.0, 0}},
                 {{-kInf, kInf}, {0, 0}},
                 {{kInf, kNaN}, {kInf, kNaN}},
                 {{1, kInf}, {kNaN, kNaN}, StatusOk, kAllClasses, FE_INVALID},
                 {{1, kNaN}, {kNaN, kNaN}},
                 {{kNaN, 0}, {kNaN, 0}},
                 {{kNaN, 1}, {kNaN, kNaN}}},
    .strata = {multiples({kHalfPi}, -1000, 1000)},
    .joints = {{even(-80, 80), multiples({kHalfPi}, -10000, 10000)},
               {around({0}), around({0, kHalfPi})},
               {even(-104, 90), everywhere()},
               {around({88.722839, -87.336544, 700, -700}), even(-10, 10)}},
    .c = {.bounds = {.la = 3.5, .ha = 0.65}, .timed = {-10, 10}},
    .z = {.bounds = {.la = 4, .ha = 0.6},
          .timed = {-10, 10},
          .joints = {{even(-745, 710), everywhere()},
                     {even(-700, 700), multiples({kHalfPi}, -1e6, 1e6)},
                     {around({709.782712893384, -708.396, -745.13}), even(-10, 10)}},
          // The errors of power and sine add up, LA; a part just below the normal numbers, HA.
          .cases = {{-0.69064904595652088, -1.3488925670389393}, {-708.31137214271462, 8.8466493451109756}}},
}};
