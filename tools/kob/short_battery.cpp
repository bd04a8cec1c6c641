// Runs the statistical tests on a generator, or on many streams of it in turn, in some seconds.
//
//   short_battery ID [STREAMS [HOW]]
//
// ID is the number of the generator, as 0x800000; split_streams.hpp tells HOW the streams may be told apart ("own"
// by default). A test is failed where a tail is below 1e-10, suspect below 1e-4. The exit status is 0 where none
// is failed, 1 where one is, 2 where there are no such streams.
#include <cstdio>
#include <cstdlib>

#include "split_streams.hpp"
#include "statistical_tests.hpp"

int main(int argc, char** argv) {
  if (argc < 2) return fprintf(stderr, "usage: short_battery ID [STREAMS [HOW]]\n"), 2;
  SplitStreams streams(uint32_t(strtoul(argv[1], nullptr, 0)), argc > 2 ? atoi(argv[2]) : 1,
                       argc > 3 ? argv[3] : "own");
  if (streams.status() != KOB_STATUS_OK || streams.count() < 1)
    return fprintf(stderr, "short_battery: no such streams, status %d\n", streams.status()), 2;
  const Uniform next = [&] { return streams.real(); };
  int failed = 0, tests = 0;
  const auto report = [&](const char* name, const Outcome& outcome) {
    const double p = outcome.tails.least();
    const char* verdict = p < 1e-10 ? "failed" : p < 1e-4 ? "suspect" : "passed";
    printf("%-28s %14.6g  p %-9.2g %s\n", name, outcome.statistic, p, verdict);
    failed += p < 1e-10;
    ++tests;
  };
  report("birthday spacings", birthday_spacings(next));
  report("collisions", collisions(next));
  report("gaps", gaps(next));
  report("matrix ranks", matrix_ranks(next));
  report("linear complexity, bit 1", linear_complexity(next));
  report("linear complexity, bit 30", linear_complexity(next, 120000, 29));
  printf("failed %d of %d\n", failed, tests);
  return failed > 0;
}
