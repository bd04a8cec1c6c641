#include "_complex/annex_g.hpp"

using namespace orx::descriptor;

static const Entry kEntry{
    of_elements({.name = "Acosh",
                 .computes = "arcosh z, cut on the real axis below 1",
                 .method = "T. Hull, T. Fairgrieve, P. Tang, ACM TOMS 23, 1997",
                 .c_name = "acosh",
                 .specials = and_conjugates({at(0, 0, 0, kPi / 2),
                                             at(-0.0, 0, 0, kPi / 2),
                                             at(0, kInf, kInf, kPi / 2),
                                             at(-1, kInf, kInf, kPi / 2),
                                             at(0, kNaN, kNaN, kNaN),
                                             at(1, kNaN, kNaN, kNaN),
                                             at(-kInf, 0, kInf, kPi),
                                             at(-kInf, 1, kInf, kPi),
                                             at(kInf, 0, kInf, 0),
                                             at(kInf, 1, kInf, 0),
                                             at(-kInf, kInf, kInf, 0.75 * kPi),
                                             at(kInf, kInf, kInf, kPi / 4),
                                             at(kInf, kNaN, kInf, kNaN),
                                             at(-kInf, kNaN, kInf, kNaN),
                                             at(kNaN, 0, kNaN, kNaN),
                                             at(kNaN, 1, kNaN, kNaN),
                                             at(kNaN, kInf, kInf, kNaN),
                                             at(kNaN, kNaN, kNaN, kNaN),
                                             at(1, 0, 0, 0),
                                             at(-1, 0, 0, kPi),
                                             at(2, 0, 1.31695789692481671, 0),
                                             at(-2, 0, 1.31695789692481671, kPi),
                                             at(1, 2, 1.52857091948099816, 1.14371774040242049)}),
                 .joints = near_units()},
                {-3, 3})};
