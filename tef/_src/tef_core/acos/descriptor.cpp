#include "functions/descriptor.hpp"

using namespace orx::descriptor;

static constexpr double kPi = 0x1.921fb54442d18p+1;

static const Entry kEntry{{
    .name = "Acos",
    .computes = "acos x, from 0 to pi",
    .method = "as Asin",
    .c_name = "acos",
    .domain = "|x| <= 1",
    .errors = {{StatusDomain, "|x| > 1"}},
    .specials = {{0, kPi / 2},
                 {-0.0, kPi / 2},
                 {kLeast, kPi / 2},
                 {-kSmallest, kPi / 2},
                 {1, 0},
                 {-1, kPi},
                 {0.5, kPi / 3},
                 {-0.5, 2 * kPi / 3},
                 {1.0000002, kNaN, StatusDomain},
                 {-2, kNaN, StatusDomain},
                 {kLargest, kNaN, StatusDomain},
                 {kInf, kNaN, StatusDomain},
                 {-kInf, kNaN, StatusDomain},
                 {kNaN, kNaN}},
    .strata = {even(-1, 1), around({0.5, -0.5})},
    .s = {.bounds = {.la = 1.6, .ha = 0.65}, .timed = {-1, 1}, .approximate = kHA},
    .d = {.bounds = {.la = 1.5, .ha = 0.65, .ep = 0x1p26}, .timed = {-1, 1}, .approximate = kHA},
}};
