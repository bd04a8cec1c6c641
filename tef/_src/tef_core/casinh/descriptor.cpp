#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Asinh",
                                       .computes = "arsinh z, cuts on the imaginary axis beyond ±i",
                                       .method = "T. Hull, T. Fairgrieve, P. Tang, ACM TOMS 23, 1997",
                                       .c_name = "asinh",
                                       .joints = near_units(),
                                       .c = {.approximate = kAllClasses}},
                                      asinh_cases(), {-3, 3})};
