#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Sinh",
                                       .computes = "sinh z",
                                       .method = "sinh x cos y + i cosh x sin y",
                                       .c_name = "sinh",
                                       .strata = {multiples({kPi}, -100, 100), even(-760, 760)}},
                                      sinh_cases(), {-3, 3})};
