// Holds every distribution against its law on a grid of parameters: many numbers, several seeds, the verdicts as a
// table.
//   distributions [NUMBERS [SEEDS [NAME]]]     a million numbers, three seeds, all names
// Of each law the least p-value of all tests and seeds counts, times their number. Exit status 1 when one is below
// 1e-6.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "distributions/laws.hpp"

int main(int argc, char** argv) {
  const int n = argc > 1 ? std::atoi(argv[1]) : 1000000, seeds = argc > 2 ? std::atoi(argv[2]) : 3;
  const char* const wanted = argc > 3 ? argv[3] : "";
  std::printf("| law | numbers | p-value | test |\n|---|---|---|---|\n");
  int failed = 0;
  for (const Law& law : all_laws()) {
    if (!std::strstr(law.name.c_str(), wanted)) continue;
    Verdict worst{2, ""};
    for (int seed = 1; seed <= seeds; ++seed) {
      const uint32_t key[] = {uint32_t(seed), 20261121};
      KobStream* stream = nullptr;
      if (__kobNewStreamEx(&stream, KOB_BRNG_SFMT19937, 2, key) != KOB_STATUS_OK) return 2;
      const Verdict verdict = judge(law, stream, n);
      __kobDeleteStream(&stream);
      if (verdict.p_value < worst.p_value) worst = verdict;
    }
    const double p = std::min(1.0, worst.p_value * seeds);
    const bool bad = p < 1e-6;
    failed += bad;
    std::printf("| `%s` | %d x %d | %.2g%s | %s |\n", law.name.c_str(), seeds, n, p, bad ? " FAILED" : "",
                p < 0.01 ? worst.test.c_str() : "");
    std::fflush(stdout);
  }
  return failed != 0;
}
