// Descriptors of the functions in the list beside this file.
#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr Classes kMXCSR = kAllClasses;  // the C library follows the caller's control word

static const Entry kExp{{
    .name = "Exp",
    .c_name = "exp",
    .specials = {{0, 1}, {-kInf, 0, StatusOk, kHA}, {kInf, kInf}},
    .keep_control_word = kMXCSR,
    .s = {.bounds = {3.6, 0.51}, .timed = {-80, 80}},
}};
static const Entry kComplexExp{{
    .name = "Exp",
    .c_name = "exp",
    .specials = {{{0, 0}, {1, 0}}, {{-kInf, 0}, {0, 0}}, {{kInf, 0}, {kInf, 0}}},
    .keep_control_word = kMXCSR,
    .z = {.bounds = {3, 3, 3},
          .timed = {-30, 30},
          .joints = {{even(-30, 30), even(-30, 30)}},
          .cases = {{1, 2}, {-700, 1}},
          .norm_wise = kAllClasses},
}};
static const Entry kPow{{
    .name = "Pow",
    .c_name = "pow",
    .specials = {{{2, 3}, 8}, {{2, -kInf}, 0}, {{-1, 2}, 1}},
    .keep_control_word = kMXCSR,
    // Results over all of the range.
    .d = {.timed = {0.1, 10},
          .timed_second = {-50, 50},
          .joints = {{logarithmic(0.01, 100), even(-745, 710),
                      [](double x, double u) {
                        return Pair{x, u / std::log(x)};
                      }}}},
}};
static const Entry kPowx{{
    .name = "Powx",
    .c_name = "pow",
    .specials = {{{2, 3}, 8}, {{2, -kInf}, 0}, {{-1, 2}, 1}},
    .keep_control_word = kMXCSR,
    .d = {.timed = {0.1, 10}, .timed_second = {-50, 50}, .cases = {{1.5, 2}}},
}};
static const Entry kComplexPowx{{
    .name = "Powx",
    .c_name = "pow",
    .specials = {{{1, 0, 2, 0}, {1, 0}}, {{1, 0, 3, 0}, {1, 0}}, {{1, 0, 0, 1}, {1, 0}}},
    .joints = {{even(0.5, 2), even(0.5, 2)}},
    .only_these_strata = true,
    .formula = true,
    .keep_control_word = kMXCSR,
    .z = {.bounds = {20, 20, 20}, .timed = {0.5, 2}, .norm_wise = kAllClasses},
}};
static const Entry kMul{{
    .name = "Mul",
    .c_name = "mul",
    .specials = {{{1, 2, 3, 4}, {-5, 10}}, {{0, 1, 0, 1}, {-1, 0}}, {{1, 0, 1, 0}, {1, 0}}},
    .keep_control_word = kMXCSR,
    .c = {.bounds = {1, 1, 1}, .timed = {-10, 10}},
}};
static const Entry kSinCos{{
    .name = "SinCos",
    .c_name = "sincos",
    .judge = "sin_cos",
    .specials = {{0, {0, 1}}, {-0.0, {-0.0, 1}}, {kNaN, {kNaN, kNaN}}},
    .keep_control_word = kMXCSR,
    .d = {.timed = {-10, 10}, .strata = {multiples({0x1.921fb54442d18p+0})}},
}};
static const Entry kCIS{{
    .name = "CIS",
    .judge = "cis",
    .specials = {{0, {1, 0}}, {-0.0, {1, -0.0}}, {kNaN, {kNaN, kNaN}}},
    .keep_control_word = kMXCSR,
    .c = {.timed = {-10, 10}},
}};
static const Entry kAbs{{
    .name = "Abs",
    .c_name = "abs",
    .specials = {{{3, 4}, 5}, {{0, 0}, 0}, {{kInf, kNaN}, kInf}},
    .keep_control_word = kMXCSR,
    .z = {.timed = {-10, 10}},
}};
static const Entry kLinearFrac{{
    .name = "LinearFrac",
    .judge = "linear_fraction",
    .strata = {logarithmic(0x1p-30, 0x1p30)},
    .only_these_strata = true,
    .formula = true,
    .keep_control_word = kMXCSR,
    .s = {.bounds = {5, 5, 5}, .timed = {-10, 10}},
}};
static const Type kPacked = {.timed = {-1, 1}};
static const Entry kPackI{{.name = "PackI", .d = kPacked}};
static const Entry kPackM{{.name = "PackM", .s = kPacked}};
static const Entry kUnpackI{{.name = "UnpackI", .z = kPacked}};
static const Entry kUnpackV{{.name = "UnpackV", .c = kPacked}};
