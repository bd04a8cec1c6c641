// Five statistical tests with exact or Poisson tails, of the sizes of the battery SmallCrush (the last of Crush):
// P. L'Ecuyer, R. Simard, TestU01: a C library for empirical testing of random number generators, ACM Trans.
// Math. Softw. 33 (2007); the tests are those of D. E. Knuth, The Art of Computer Programming, vol. 2, 3.3.2, and
// G. Marsaglia's. Each takes numbers on [0, 1) from a function.
#pragma once

#include <cstdint>
#include <functional>

#include "probabilities.hpp"

using Uniform = std::function<double()>;

struct Outcome {
  double statistic;
  Tails tails;
};

// Sorts n points of a cube of `cells`^2 cells, and their spacings: equal spacings are Poisson with n^3 / (4 cells^2).
Outcome birthday_spacings(const Uniform& next, int n = 5000000, uint32_t cells = 1u << 30);

// n points into cells^2 cells: how many fall where one is already.
Outcome collisions(const Uniform& next, int n = 5000000, uint32_t cells = 1u << 16);

// n gaps between visits of [0, width), after the first `skipped` bits of each number.
Outcome gaps(const Uniform& next, int n = 200000, int skipped = 22, double width = 1.0 / 256);

// Ranks of n matrices of 60 by 60 bits over GF(2), made of ten bits of each number behind the first `skipped`.
Outcome matrix_ranks(const Uniform& next, int n = 20000, int skipped = 20);

// Linear complexity of n bits, one of each number behind the first `skipped`, by Berlekamp and Massey's algorithm.
Outcome linear_complexity(const Uniform& next, int n = 120000, int skipped = 0);
