// Measures the error of the vector functions and holds it to the bounds that stand beside the kernels.
//
//   orx_accuracy [--short] [--exhaustive] [--write FILE] [FUNCTION...]
//
// FUNCTION is a type letter and a name, such as dExp; without any, all are measured. --short takes few
// arguments,
// --exhaustive takes all singles for single-precision functions of one input. The result is 1 if a bound is
// exceeded or a special value is wrong.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>

#include "machine.hpp"
#include "measure.hpp"
#include "orx/tef.h"

namespace {

struct Options {
  bool brief = false, exhaustive = false;
  std::string file;
  std::set<std::string> functions;
};

std::string text(const char* form, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, form, value);
  return buffer;
}

// A kernel's record, and what is wrong with it.
struct row {
  const FunctionEntry& function;
  const KernelEntry& kernel;
  Record found;
  bool exhaustive;

  int digits() const { return function.type == 's' ? 24 : 53; }

  // What the classes that the kernel serves ask for, whatever its own bound. Plain arithmetic is held to its
  // own alone.
  double class_limit() const {
    if (function.shape->formula) return kernel.bound;
    const double limits[3] = {4, 1, std::ldexp(1.0, digits() - 1 - (function.type == 's' ? 11 : 26))};
    double limit = INFINITY;
    for (int i = 0; i < 3; ++i)
      if (kernel.serves[i]) limit = std::fmin(limit, limits[i]);
    return limit;
  }

  double correct_bits() const { return digits() - 1 - std::log2(std::fmax(found.worst, 0.5)); }

  std::string faults() const {
    std::ostringstream s;
    if (found.wrong)
      s << "  " << kernel.name << ": " << found.wrong << " special results are wrong, the first "
        << number(found.wrong_at.out) << " at " << place(found.wrong_at) << "\n";
    const double limit = class_limit();
    if (found.worst > kernel.bound)
      s << "  " << kernel.name << ": error " << text("%.6g", found.worst) << " ulp at "
        << place(found.worst_at) << " exceeds its bound " << kernel.bound << "\n";
    if (found.worst > limit)
      s << "  " << kernel.name << ": error " << text("%.6g", found.worst) << " ulp exceeds the limit "
        << limit << " of class " << kernel.classes << "\n";
    return s.str();
  }

  std::string number(double x) const { return text(function.type == 's' ? "%.9g" : "%.17g", x); }

  std::string place(const Sample& at) const {
    return function.shape->inputs == 1 ? number(at.in[0]) : number(at.in[0]) + ", " + number(at.in[1]);
  }
};

const char* const kTableHead =
    "| kernel | class | largest error, ulp | bound | bits | correctly rounded | at | arguments |\n"
    "|---|---|---|---|---|---|---|---|\n";

std::ostream& operator<<(std::ostream& s, const row& r) {
  return s << "| `" << r.kernel.name << "` | " << r.kernel.classes << " | " << text("%.5g", r.found.worst)
           << " | " << r.kernel.bound << " | " << text("%.1f", r.correct_bits()) << " | "
           << text("%.2f %%", 100.0 * r.found.correct / r.found.count) << " | " << r.place(r.found.worst_at)
           << " | " << (r.exhaustive ? "all" : std::to_string(r.found.count)) << " |\n";
}

void write_report(const std::string& file, const std::vector<row>& rows, const std::string& faults) {
  std::ofstream s(file);
  s << "# Accuracy of the vector functions\n\nWritten by `script/accuracy`; not to be edited. Judge: MPFR. "
       "Run on "
    << processor_name() << ", " << kCodeWidth << R"( code.

The error is |computed - exact| in units of the last place (ulp) of the exact result rounded to the format; where results
are denormal the unit is the spacing of the denormals. An infinity that stands for a number counts as the power of two
that ends the range. `bound` is what stands beside the kernel in its source and must hold for all arguments; HA stays below
1 ulp, LA below 4 ulp, EP keeps 26 bits in double and 11 in single precision. `bits` is the number of correct bits that the
largest error leaves, 53 or 24 being a correctly rounded result. NaNs, infinities and the signs of zeros have to agree
with the judge.

Arguments: "all" means all 2^32 singles. Otherwise they are strata: every exponent of both signs with random and boundary
mantissas, denormals, consecutive values around thresholds, around 1 and around 0, table boundaries, published hard cases,
and even spreads; the share of correctly rounded results is that among these. LinearFrac is measured where no sum cancels:
inputs and factors are positive. Where kernels use the processor's approximate reciprocal, other makes of processor may
give slightly different figures.

)" << kTableHead;
  for (const row& r : rows) s << r;
  if (faults.empty())
    s << "\nEvery bound holds, and all special values are right.\n";
  else
    s << "\n## Faults\n\n```\n" << faults << "```\n";
  if (!s.flush()) {
    std::cerr << "orx_accuracy: cannot write " << file << "\n";
    std::exit(2);
  }
}

[[noreturn]] void usage() {
  std::cerr << "usage: orx_accuracy [--short] [--exhaustive] [--write FILE] [FUNCTION...]\n";
  std::exit(2);
}

Options parse(int argc, char** argv) {
  Options o;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--short")
      o.brief = true;
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

}  // namespace

int main(int argc, char** argv) {
  Options o = parse(argc, argv);
  orx_tef_kernel_SetMode(TEF_HA | TEF_ERRMODE_IGNORE | TEF_FLUSH_OFF);
  const bool everything = o.functions.empty();
  std::vector<row> rows;
  std::string faults;
  std::cout << kTableHead;
  for (const FunctionEntry& f : kernel_list()) {
    if (!everything && !o.functions.erase(f.full_name())) continue;
    const JudgedFunction* judged = find_judge(f.name);
    if (!judged || !f.shape) {
      faults += "  " + f.full_name() + " has no judge\n";
      continue;
    }
    const bool all = o.exhaustive && f.type == 's' && f.shape->inputs == 1;
    const double effort = o.brief ? 1 : 60;
    const std::vector<Record> found = all             ? measure_all_singles(f, *judged)
                                      : f.type == 's' ? measure_strata<float>(f, *judged, effort)
                                                      : measure_strata<double>(f, *judged, effort);
    for (size_t k = 0; k < found.size(); ++k) {
      rows.push_back({f, f.kernels[k], found[k], all});
      std::cout << rows.back() << std::flush;
      faults += rows.back().faults();
    }
  }
  for (const std::string& name : o.functions) faults += "  there is no function " + name + "\n";
  if (!o.file.empty()) write_report(o.file, rows, faults);
  if (faults.empty()) return 0;
  std::cout << "faults:\n" << faults;
  return 1;
}
