#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Asin",
                                       .computes = "arcsin z, cuts on the real axis beyond ±1",
                                       .method = "arsinh(iz)/i",
                                       .c_name = "asin",
                                       .joints = near_units(),
                                       .c = {.approximate = kAllClasses}},
                                      by_i(asinh_cases()), {-3, 3})};
