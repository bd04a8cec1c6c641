#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Cosh",
                                       .computes = "cosh z",
                                       .method = "cosh x cos y + i sinh x sin y, in the extended type",
                                       .c_name = "cosh",
                                       .specials = cosh_cases(),
                                       .strata = {multiples({kPi}, -100, 100), even(-760, 760)}},
                                      {-3, 3})};
