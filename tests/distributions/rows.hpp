// Every row of the list of distributions as a generator that can be called like every other.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/stream.hpp"

// Numbers of any type as doubles, which hold them all.
using Draw = std::function<int(KobStream*, int n, double* r)>;

struct Row {
  std::string name;
  Draw draw;
  int uniforms;  // a number takes, 0 where it depends
  int chunk;     // the kind that its stream keeps, 0 for none
};

// draw(stream, n, r) with r of the type that the generator writes; what is not written stays.
template <class Number, class Generator>
Draw widened(const Generator& generator) {
  return [generator](KobStream* stream, int n, double* r) {
    std::vector<Number> numbers(r, r + std::max(n, 0) + 1);
    const int status = generator(stream, n, numbers.data());
    std::copy(numbers.begin(), numbers.end(), r);
    return status;
  };
}

inline std::vector<Row> all_rows() {
  std::vector<Row> rows;
#define ORX_ARGUMENTS(...) __VA_ARGS__
#define ORX_CALL(t, Number, Name, method, ...)                    \
  widened<Number>([](KobStream* stream, int n, Number* r) {       \
    return _kob##t##Rng##Name(method, stream, n, r, __VA_ARGS__); \
  })
#define ORX_CALL_UNPACKED(...) ORX_CALL(__VA_ARGS__)
#define ORX_ADD(t, Number, Name, branch, arguments, uniforms, chunk) \
  rows.push_back(                                                    \
      {#t #Name " " branch, ORX_CALL_UNPACKED(t, Number, Name, ORX_ARGUMENTS arguments), uniforms, chunk});
#define ORX_ADD_real(...) ORX_ADD(d, double, __VA_ARGS__) ORX_ADD(s, float, __VA_ARGS__)
#define ORX_ADD_integer(...) ORX_ADD(i, int32_t, __VA_ARGS__)
#define ORX_DISTRIBUTION(result, Name, branch, arguments, uniforms, chunk, law, source) \
  ORX_ADD_##result(Name, branch, arguments, uniforms, chunk)
#include "distributions.def"
#undef ORX_DISTRIBUTION
#undef ORX_ADD_integer
#undef ORX_ADD_real
#undef ORX_ADD
#undef ORX_CALL_UNPACKED
#undef ORX_CALL
#undef ORX_ARGUMENTS
  return rows;
}
