#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{of_elements(
    {.name = "Log10",
     .computes = "log10 z, cut on the negative axis",
     .method = "ln |z| and arg z; next to |z| = 1 of the exact |z|^2 - 1",
     .c_name = "log10",
     .joints = near_units(),
     .c = {.approximate = kAllClasses}},
    and_conjugates(
        {{at(0, 0, -kInf, 0, FE_DIVBYZERO), at(-0.0, 0, -kInf, 1.36437635384184135, FE_DIVBYZERO),
          at(1, kInf, kInf, 0.682188176920920674), at(1, kNaN, kNaN, kNaN),
          at(-kInf, 1, kInf, 1.36437635384184135), at(kInf, 1, kInf, 0),
          at(kInf, kInf, kInf, 0.341094088460460337), at(-kInf, kInf, kInf, 1.02328226538138101),
          at(kInf, kNaN, kInf, kNaN), at(kNaN, 1, kNaN, kNaN), at(kNaN, kInf, kInf, kNaN),
          at(kNaN, kNaN, kNaN, kNaN), at(1, 0, 0, 0), at(100, 0, 2, 0), at(-100, 0, 2, 1.36437635384184135),
          at(1, 2, 0.349485002168009402, 0.480828578784234103),
          at(1, 10, 1.00216068689132129, 0.638902631125276211)},
         {}}),
    {-10, 10})};
