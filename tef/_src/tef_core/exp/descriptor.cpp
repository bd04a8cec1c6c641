#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kLn2 = 0x1.62e42fefa39efp-1;

// The published arguments, here and with the other functions: V. Lefevre, J.-M. Muller, "Worst cases for correct
// rounding of the elementary functions in double precision", 15th IEEE Symposium on Computer Arithmetic, 2001, and the
// tables that grew out of it.
static const Entry kEntry{{
    .name = "Exp",
    .computes = "e^x",
    .method = "reduction by ln 2 / 2^k, table of powers, short polynomial (P. T. P. Tang, ACM TOMS 15, 1989)",
    .c_name = "exp",
    .errors = {{StatusOverflow, "result above the largest number"},
               {StatusUnderflow, "result denormal or 0"}},
    .specials = {{0, 1}, {-0.0, 1}, {-kInf, 0}, {kInf, kInf}, {kNaN, kNaN}, {kLeast, 1}},
    .strata = {multiples({kLn2, kLn2 / 4, kLn2 / 64, kLn2 / 128, kLn2 / 1024})},
    .s = {.bounds = {.la = 1.2, .ha = 0.9},
          .timed = {-80, 80},
          .specials = {{89, kInf, StatusOverflow},
                       {-104, 0, StatusUnderflow},
                       {-88, kFinite, StatusUnderflow},
                       {88.7, kFinite}},
          .strata = {around({87.33654, -87.33654, 88.72283, -103.97208, -103.27893})}},
    .d = {.bounds = {.la = 2.0, .ha = 0.55},
          .timed = {-700, 700},
          .specials = {{710, kInf, StatusOverflow},
                       {-746, 0, StatusUnderflow},
                       {-710, kFinite, StatusUnderflow},
                       {709.7, kFinite},
                       {-708.396, kFinite}},
          .strata = {around({708.3956, 708.3964185322641, -708.3964185322641, 709.782712893384,
                             -745.1332191019411, -744.4400719213812}),
                     hard({-0x1.12d31a20fb38bp5, 0x1.83d4bcdebb3f4p2, -0x1.a2fefefd580dfp-13,
                           0x1.9e9cbbfd6080bp-31, -0x1.ed318efb627eap-27, 0x1.fffffffffffffp-53})}},
}};
