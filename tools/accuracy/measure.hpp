// Errors of kernels against the judge.
#pragma once
#include <cstdint>
#include <vector>

#include "judge.hpp"
#include "kernel_list.hpp"

// One element of a call.
struct Sample {
  double in[2] = {}, out = 0;
};

// What was found of a kernel.
struct Record {
  double worst = -1;  // largest error, in ulps
  Sample worst_at;
  uint64_t count = 0;    // elements measured
  uint64_t correct = 0;  // of these, rounded to nearest
  uint64_t wrong = 0;    // NaN, infinity or zero of a sign where it should not be, or not where it should
  Sample wrong_at;

  void add(const Verdict& v, const Sample& at);
  void merge(const Record& other);
};

// Measures all kernels of a function, in the order of the list, over the strata of its arguments.
template <class T>
std::vector<Record> measure_strata(const FunctionEntry& function, const JudgedFunction& judged,
                                   double effort);

// The same for a function of one input over all 2^32 singles, on all processors; progress goes to standard
// error.
std::vector<Record> measure_all_singles(const FunctionEntry& function, const JudgedFunction& judged);
