#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements({.name = "Tanh",
                                       .computes = "tanh z",
                                       .method = "(sinh x cosh x + i sin y cos y)/(sinh^2 x + cos^2 y)",
                                       .c_name = "tanh",
                                       .judge = "complex_tanh",
                                       .strata = {multiples({kPi}, -100, 100), even(-400, 400)}},
                                      tanh_cases(), {-3, 3})};
