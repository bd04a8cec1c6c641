#include "_complex/descriptor.hpp"

// M. Baudin, R. Smith, "A robust complex division in Scilab" (2012): ten divisions that defeat simple formulas.
static const std::vector<std::vector<double>> kHardDivisions = {{1, 1, 1, 0x1p1023},
                                                                {1, 1, 0x1p-1023, 0x1p-1023},
                                                                {0x1p1023, 0x1p-1023, 0x1p677, 0x1p-677},
                                                                {0x1p1023, 0x1p1023, 1, 1},
                                                                {0x1p1020, 0x1p-844, 0x1p656, 0x1p-780},
                                                                {0x1p-71, 0x1p1021, 0x1p1001, 0x1p-323},
                                                                {0x1p-347, 0x1p-54, 0x1p-1037, 0x1p-1058},
                                                                {0x1p-1074, 0x1p-1074, 0x1p-1073, 0x1p-1074},
                                                                {0x1p1015, 0x1p-989, 0x1p1023, 0x1p1023},
                                                                {0x1p-622, 0x1p-1071, 0x1p-343, 0x1p-798}};

static const Entry kEntry{of_products({
    .name = "Div",
    .computes = "a/b",
    .method = "singles as doubles; doubles, HA, by sums of products in two parts and a corrected quotient; "
              "EP, single, by the "
              "approximate reciprocal",
    .c_name = "div",
    .domain = "b not 0",
    .errors = {{StatusSingularity, "b = 0 (HA, LA)"}},
    // C99, annex G.5.1.
    .specials = {{{-7, 22, 4, 5}, {82.0 / 41, 123.0 / 41}},
                 {{-99, 20, 1, 10}, {1, 10}},
                 {{-0.0, 1, 1, 0}, {0, 1}, StatusOk, kReporting},
                 {{-0.0, -0.0, 1, 0}, {-0.0, 0}, StatusOk, kReporting},
                 {{1, -1, 0, 0}, {kInf, -kInf}, StatusSingularity, kReporting},
                 {{1, -1, -0.0, 0}, {-kInf, kInf}, StatusSingularity, kReporting},
                 {{0, 1, 0, 0}, {kNaN, kInf}, StatusSingularity, kReporting, FE_DIVBYZERO | FE_INVALID},
                 {{0, 0, 0, 0}, {kNaN, kNaN}, StatusSingularity, kReporting, FE_INVALID},
                 {{kNaN, 1, 0, 0}, {kNaN, kInf}, StatusSingularity, kReporting},
                 {{kInf, 1, 0, 0}, {kInf, kInf}, StatusSingularity, kReporting},
                 {{kInf, 1, 1, 1}, {kInf, -kInf}, StatusOk, kReporting},
                 {{kInf, kNaN, 1, 1}, {kInf, -kInf}, StatusOk, kReporting},
                 {{1, 1, kInf, 1}, {0, 0}, StatusOk, kReporting},
                 {{1, -1, kNaN, kInf}, {-0.0, -0.0}, StatusOk, kReporting},
                 {{kInf, 1, kInf, 1}, {kNaN, kNaN}, StatusOk, kReporting, FE_INVALID},
                 {{kNaN, 1, 1, 1}, {kNaN, kNaN}},
                 {{kLargest, 0, 0.5, 0}, {kInf, 0}, StatusOverflow, kReporting},
                 {{kLargest, kLargest, kLargest, kLargest}, {1, 0}, StatusOk, kReporting},
                 {{kLeast, kLeast, kLeast, kLeast}, {1, 0}, StatusOk, kReporting}},
    .c = {.bounds = {.la = 0.51, .ha = 0.51}, .approximate = kEP, .ep_divides = true},
    // 0.51 but for denormal results.
    .z = {.bounds = {.la = 0.75, .ha = 0.75, .ep = 4}, .cases = kHardDivisions, .ep_divides = true},
})};
