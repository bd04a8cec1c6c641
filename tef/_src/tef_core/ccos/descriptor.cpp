#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Cos",
                                       .computes = "cos z",
                                       .method = "cosh(iz)",
                                       .c_name = "cos",
                                       .strata = {multiples({kPi}, -100, 100), even(-760, 760)}},
                                      of_iz(cosh_cases()), {-3, 3})};
