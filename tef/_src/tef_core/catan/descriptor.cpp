#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Atan",
                                       .computes = "arctan z, cuts on the imaginary axis beyond ±i",
                                       .method = "artanh(iz)/i",
                                       .c_name = "atan",
                                       .joints = near_units(),
                                       .c = {.approximate = kAllClasses}},
                                      by_i(atanh_cases()), {-3, 3})};
