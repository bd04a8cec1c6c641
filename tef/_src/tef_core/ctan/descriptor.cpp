#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Tan",
                                       .computes = "tan z",
                                       .method = "tanh(iz)/i",
                                       .c_name = "tan",
                                       .judge = "complex_tan",
                                       .strata = {multiples({kPi}, -100, 100), even(-400, 400)}},
                                      by_i(tanh_cases()), {-3, 3})};
