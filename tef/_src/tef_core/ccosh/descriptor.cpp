#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Cosh",
                                       .computes = "cosh z",
                                       .method = "cosh x cos y + i sinh x sin y",
                                       .c_name = "cosh",
                                       .strata = {multiples({kPi}, -100, 100), even(-760, 760)}},
                                      cosh_cases(), {-3, 3})};
