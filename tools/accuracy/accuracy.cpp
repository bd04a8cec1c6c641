// Measures the error of the vector functions and holds it to the bounds of their descriptors.
//
//   orx_accuracy [--short] [--effort N] [--exhaustive] [--write FILE] [FUNCTION...]
//
// FUNCTION is a type letter and a name, such as dExp, a name for all types, or a letter for all functions of its type;
// without any, all are measured. --short takes few arguments, --effort N times as many (60 unless told), --exhaustive all
// singles for single-precision functions of one input, under every rounding mode of the caller where results are exact.
// --write puts the rows into the document's table, where those of functions that are not measured stay. The result is 1
// if a bound is exceeded or a special value is wrong.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <set>
#include <sstream>

#include "functions/sections.hpp"
#include "machine.hpp"
#include "measure.hpp"

namespace {

using namespace orx;

struct Options {
  bool exhaustive = false;
  double effort = 60;
  std::string file;
  std::set<std::string> functions;

  bool wants(const Function& f) const {
    return functions.empty() || functions.count(f.full_name()) || functions.count(f.name) ||
           functions.count(std::string(1, f.type));
  }
};

std::string text(const char* form, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, form, value);
  return buffer;
}

// A kernel's record, and what is wrong with it.
struct Row {
  const Function& function;
  const Kernel& kernel;
  Record found;
  bool exhaustive;

  int digits() const { return function.single() ? 24 : 53; }

  // What the classes that the kernel serves ask for, whatever its own bound.
  double limit() const {
    double least = INFINITY;
    for (int i = 0; i < kClassCount && !function.descriptor->formula; ++i)
      if (kernel.serves[i]) least = std::fmin(least, class_limit(function.single(), i));
    return least;
  }

  double correct_bits() const { return digits() - 1 - std::log2(std::fmax(found.worst, 0.5)); }

  std::string faults() const {
    std::ostringstream s;
    if (found.wrong)
      s << "  " << kernel.name << ": " << found.wrong << " special results are wrong, the first "
        << numbers(found.wrong_at.out, function.columns_out()) << " at " << place(found.wrong_at) << "\n";
    if (found.worst > kernel.bound)
      s << "  " << kernel.name << ": error " << text("%.6g", found.worst) << " ulp at "
        << place(found.worst_at) << " exceeds its bound " << kernel.bound << "\n";
    if (found.worst > limit())
      s << "  " << kernel.name << ": error " << text("%.6g", found.worst) << " ulp exceeds the limit "
        << limit() << " of class " << kernel.classes << "\n";
    return s.str();
  }

  std::string numbers(const double* x, int count) const {
    std::string all;
    for (int i = 0; i < count; ++i) all += (i ? ", " : "") + text(function.single() ? "%.9g" : "%.17g", x[i]);
    return all;
  }

  // Scalars that make a second argument belong to the element; those of a formula do not.
  std::string place(const Sample& at) const {
    const int scalars = function.descriptor->formula ? 0 : function.shape->scalars;
    return numbers(at.in, function.columns_in() + scalars);
  }

  std::string line() const {
    std::ostringstream s;
    s << "| `" << kernel.name << "` | " << kernel.classes << " | " << text("%.5g", found.worst) << " | "
      << kernel.bound << " | " << text("%.1f", correct_bits()) << " | "
      << text("%.2f %%", 100.0 * static_cast<double>(found.correct) / static_cast<double>(found.count))
      << " | " << place(found.worst_at) << " | " << (exhaustive ? "all" : std::to_string(found.count))
      << " |\n";
    return s.str();
  }
};

const char* const kTableHead =
    "| kernel | class | largest error, ulp | bound | bits | correctly rounded | at | arguments |\n"
    "|---|---|---|---|---|---|---|---|\n";

void write_report(const std::string& file, const std::map<std::string, std::string>& lines) {
  write_section(file, "table", merged_table(kTableHead, lines, read_section(file, "table")));
  write_section(file, "machine",
                "Last written on " + processor_name() + ", " + kCodeWidth + " code, judges MPFR " +
                    mpfr_get_version() + " and, for complex functions, MPC.\n");
}

[[noreturn]] void usage() {
  std::cerr << "usage: orx_accuracy [--short] [--effort N] [--exhaustive] [--write FILE] [FUNCTION...]\n";
  std::exit(2);
}

Options parse(int argc, char** argv) {
  Options o;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--short")
      o.effort = 1;
    else if (word == "--effort" && i + 1 < argc)
      o.effort = std::atof(argv[++i]);
    else if (word == "--exhaustive")
      o.exhaustive = true;
    else if (word == "--write" && i + 1 < argc)
      o.file = argv[++i];
    else if (word[0] == '-')
      usage();
    else
      o.functions.insert(word);
  }
  return o;
}

std::vector<Record> measure(const Function& f, const Options& o, bool all) {
  if (all) return measure_all_singles(f);
  return f.single() ? measure_strata<float>(f, o.effort) : measure_strata<double>(f, o.effort);
}

}  // namespace

int main(int argc, char** argv) {
  const Options o = parse(argc, argv);
  orx_tef_kernel_SetMode(TEF_HA | TEF_ERRMODE_IGNORE | TEF_FLUSH_OFF);
  std::map<std::string, std::string> lines;
  std::string faults;
  std::cout << kTableHead;
  for (const Function& f : functions()) {
    if (!f.shape->elementwise || !o.wants(f)) continue;
    if (!Judge(f).known()) {
      faults += "  " + f.full_name() + " has no judge\n";
      continue;
    }
    const bool all = o.exhaustive && f.type == 's' && f.shape->name == std::string("unary") && quick_judge(f);
    const std::vector<Record> found = measure(f, o, all);
    for (size_t k = 0; k < found.size(); ++k) {
      const Row row{f, f.kernels[k], found[k], all};
      std::cout << row.line() << std::flush;
      lines[row.kernel.name] = row.line();
      faults += row.faults();
    }
  }
  if (lines.empty()) faults += "  nothing was measured\n";
  if (!o.file.empty()) write_report(o.file, lines);
  if (faults.empty()) return 0;
  std::cout << "faults:\n" << faults;
  return 1;
}
