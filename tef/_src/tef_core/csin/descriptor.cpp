#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Sin",
                                       .computes = "sin z",
                                       .method = "sinh(iz)/i",
                                       .c_name = "sin",
                                       .specials = by_i(sinh_cases()),
                                       .strata = {multiples({kPi}, -100, 100), even(-760, 760)}},
                                      {-3, 3})};
