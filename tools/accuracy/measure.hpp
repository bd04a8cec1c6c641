// Errors of kernels against the judge.
#pragma once
#include <cstdint>
#include <vector>

#include "judge.hpp"

namespace orx {

// One element of a call.
struct Sample {
  double in[kMostColumns] = {}, out[4] = {};
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
template <class R>
std::vector<Record> measure_strata(const Function& function, double effort);

// What judges nearly all of 2^32 singles in no time: the function in double, good to about 1 ulp of double. From the
// descriptor, or the C library's function of the descriptor's name; null if there is none.
double (*quick_judge(const Function& function))(double);

// The same over all 2^32 singles for a function of one input and one result that has a quick judge, on all processors; progress goes to
// standard error.
std::vector<Record> measure_all_singles(const Function& function);

}  // namespace orx
