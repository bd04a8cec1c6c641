// What figures in documents were measured on.
#pragma once
#include <fstream>
#include <string>

inline std::string processor_name() {
  std::ifstream info("/proc/cpuinfo");
  for (std::string line; std::getline(info, line);)
    if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
  return "an unknown processor";
}

#if defined(__clang__)
constexpr const char* kCompilerName = __VERSION__;
#else
constexpr const char* kCompilerName = "GCC " __VERSION__;
#endif

constexpr const char* kCodeWidth = sizeof(void*) == 4 ? "32-bit" : "64-bit";
