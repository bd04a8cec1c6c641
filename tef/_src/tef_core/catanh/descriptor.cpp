#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{
    of_elements({.name = "Atanh",
                 .computes = "artanh z, cuts on the real axis beyond ±1",
                 .method = "W. Kahan, Branch cuts for complex elementary functions, 1987",
                 .c_name = "atanh",
                 .joints = near_units(),
                 .c = {.approximate = kAllClasses}},
                atanh_cases(), {-3, 3})};
