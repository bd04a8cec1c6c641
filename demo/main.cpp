// orx_demo DATA [CHAPTER...]: a tour of the library on real data, all chapters or those named.
#include <cstdio>
#include <cstring>
#include <exception>

#include "chapters.h"

namespace {

struct Chapter {
  const char* name;
  const char* title;
  void (*run)(const std::string& data_directory);
};

constexpr Chapter chapters[] = {
    {"vector-math", "Vector mathematics: exponentials and logarithms", vector_math},
    {"powers", "Powers and roots: petals, populations, planets", powers},
    {"accuracy", "Accuracy classes: error in ulp and speed beside the C library", accuracy},
    {"globe", "Trigonometry: earthquakes on the globe, and the length of the day", globe},
    {"impedance", "Complex functions: a filter's response and a cable's impedance", impedance},
    {"monte-carlo", "Random streams: pi and an option price by Monte Carlo", monte_carlo},
    {"densities", "Distributions: densities beside histograms", densities},
    {"statistics", "Summary statistics: irises, and quantiles of a long stream", statistics},
    {"robust", "Summary statistics: outliers that hide, and what gaps in the data cost", robust},
    {"data-fitting", "Data fitting: splines through carbon dioxide and the Nile", data_fitting},
    {"normal-plot", "Error functions: is it normal, and carbon in steel", normal_plot},
    {"quasi", "Quasi-random streams: one integral by pseudo-random and by Sobol points", quasi},
};

const Chapter* find(const char* name) {
  for (const Chapter& chapter : chapters)
    if (std::strcmp(chapter.name, name) == 0) return &chapter;
  return nullptr;
}

void run(const Chapter& chapter, const char* data_directory) {
  std::printf("==== %s ====\n", chapter.title);
  chapter.run(data_directory);
}

int usage() {
  std::fprintf(stderr, "usage: orx_demo DATA_DIRECTORY [CHAPTER...]\nchapters:");
  for (const Chapter& chapter : chapters) std::fprintf(stderr, " %s", chapter.name);
  std::fprintf(stderr, "\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return usage();
  for (int i = 2; i < argc; ++i)
    if (!find(argv[i])) return usage();
  try {
    if (argc == 2)
      for (const Chapter& chapter : chapters) run(chapter, argv[1]);
    for (int i = 2; i < argc; ++i) run(*find(argv[i]), argv[1]);
  } catch (const std::exception& error) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
