// The figures of a program as a table in a document:
//
//   PROGRAM --write docs/performance.md    puts all of them into the program's section
#pragma once

#include <algorithm>
#include <cstdio>
#include <string>

#include "cycles.hpp"
#include "functions/sections.hpp"

namespace bench {

// Prints as usual, and keeps the figures as rows of a table.
class Table : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) add(run);
    ConsoleReporter::ReportRuns(runs);
  }
  std::string text = "| what | cycles | of the calling thread |\n|---|---|---|\n";

 private:
  void add(const Run& run) {
    std::string name = run.run_name.function_name;
    for (size_t at; (at = name.find('/')) != std::string::npos;) name.replace(at, 1, ", ");
    std::replace(name.begin(), name.end(), '_', ' ');
    const auto counter = [&](const char* key) {
      const auto found = run.counters.find(key);
      return found == run.counters.end() ? 0 : found->second.value;
    };
    if (const double rounds = counter("rounds")) name += " (" + std::to_string(int(rounds)) + " rounds)";
    char row[256];
    std::snprintf(row, sizeof row, "| %s | %.3g | %.3g |\n", name.c_str(), counter("cycles/elem"),
                  counter("thread_cycles/elem"));
    text += row;
  }
};

// What the command line asks of the benchmarks that are registered.
inline int run(int argc, char** argv, const char* section) {
  const char* const document = argc == 3 && argv[1] == std::string("--write") ? argv[2] : nullptr;
  benchmark::Initialize(&argc, argv);
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  if (document) orx::write_section(document, section, table.text);
  return 0;
}

}  // namespace bench
