// Samples held against the law that they should have, whose distribution functions come from GSL.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "orx/kob.h"

// A law that a generator promises, for one set of parameters.
struct Law {
  std::string name;
  std::function<int(KobStream*, int n, double* r)> draw;
  // P(X <= x). Sums of probabilities for integers.
  std::function<double(double x)> below;
  enum Type { kIntegers, kSingles, kDoubles } type;
  // How far the distribution function of the generator may be from the law by its own promise.
  double tolerance = 0;
};

std::vector<Law> all_laws();

// The least of the p-values of several tests, times their number: Kolmogorov-Smirnov, Anderson-Darling and moments to
// order 4 of the probability transform; for integers chi-square over pooled cells instead of the first two.
struct Verdict {
  double p_value;
  std::string test;  // the one that gave it
};
// n numbers, so many of them to a call.
Verdict judge(const Law& law, KobStream* stream, int n, int to_a_call = 10007);
