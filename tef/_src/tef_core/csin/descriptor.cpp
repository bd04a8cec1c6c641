#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Sin",
                                       .computes = "sin z",
                                       .method = "sinh(iz)/i",
                                       .c_name = "sin",
                                       .strata = {multiples({kPi}, -100, 100), even(-760, 760)}},
                                      by_i(sinh_cases()), {-3, 3})};
