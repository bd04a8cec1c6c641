#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{
    of_elements({.name = "Acos",
                 .computes = "arccos z, cuts on the real axis beyond ±1",
                 .method = "T. Hull, T. Fairgrieve, P. Tang, ACM TOMS 23, 1997",
                 .c_name = "acos",
                 .specials = and_conjugates({at(0, 0, kPi / 2, -0.0),
                                             at(-0.0, 0, kPi / 2, -0.0),
                                             at(0, kNaN, kPi / 2, kNaN),
                                             at(0, kInf, kPi / 2, -kInf),
                                             at(-1, kInf, kPi / 2, -kInf),
                                             at(1, kNaN, kNaN, kNaN),
                                             at(-kInf, 0, kPi, -kInf),
                                             at(-kInf, 1, kPi, -kInf),
                                             at(kInf, 0, 0, -kInf),
                                             at(kInf, 1, 0, -kInf),
                                             at(-kInf, kInf, 0.75 * kPi, -kInf),
                                             at(kInf, kInf, kPi / 4, -kInf),
                                             at(kInf, kNaN, kNaN, -kInf),
                                             at(-kInf, kNaN, kNaN, -kInf),
                                             at(kNaN, 0, kNaN, kNaN),
                                             at(kNaN, 1, kNaN, kNaN),
                                             at(kNaN, kInf, kNaN, -kInf),
                                             at(kNaN, kNaN, kNaN, kNaN),
                                             at(1, 0, 0, -0.0),
                                             at(-1, 0, kPi, -0.0),
                                             at(2, 0, 0, -1.31695789692481671),
                                             at(-2, 0, kPi, -1.31695789692481671),
                                             at(1, 2, 1.14371774040242049, -1.52857091948099816)}),
                 .joints = near_units()},
                {-3, 3})};
