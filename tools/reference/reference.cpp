// Writes what documents and the public header say of the vector functions, from the list, the descriptors, and the
// tables that the meter and the benchmark have written. Run from the top directory.
//
//   orx_reference           writes
//   orx_reference --check   tells what is out of date; the result is 1 if anything is
#include <cstring>
#include <iostream>
#include <sstream>

#include "functions/list.hpp"
#include "functions/sections.hpp"

namespace {

using namespace orx;
using descriptor::Bounds;
using descriptor::Special;

// Functions of one name and one descriptor, which differ in type: sExp and dExp.
struct Group {
  std::vector<const Function*> functions;

  const Function& front() const { return *functions.front(); }
  const descriptor::Descriptor& about() const { return *front().descriptor; }
  std::string types() const {
    std::string all;
    for (const Function* f : functions) all += (all.empty() ? "" : ", ") + std::string(1, f->type);
    return all;
  }
  bool packs() const { return !front().shape->elementwise; }
};

std::vector<Group> groups() {
  std::vector<Group> all;
  for (const Function& f : functions()) {
    bool known = false;
    for (Group& g : all) {
      if (g.front().name != f.name || g.front().descriptor != f.descriptor) continue;
      g.functions.push_back(&f);
      known = true;
    }
    if (!known && f.descriptor) all.push_back({{&f}});
  }
  return all;
}

std::string text(double x) {
  std::ostringstream s;
  s.precision(4);
  s << x;
  return s.str();
}

std::string status_name(int status) {
  const char* const names[] = {"", "domain error (1)", "singularity (2)", "overflow (3)", "underflow (4)"};
  return names[status];
}

// "domain error (1): x < 0; singularity (2): x = 0".
std::string errors(const descriptor::Descriptor& d) {
  std::string all;
  for (const descriptor::Error& e : d.errors)
    all += (all.empty() ? "" : "; ") + status_name(e.status) + ": " + e.when;
  return all.empty() ? "none" : all;
}

// A number, or the parts of a complex one, or two arguments.
std::string tuple(const descriptor::Numbers& numbers, int width) {
  std::string all;
  for (size_t i = 0; i < numbers.size(); ++i) {
    const bool imaginary = width == 2 && i % 2;
    all += (i == 0 ? "" : imaginary ? " + i " : ", ") + numbers[i].name();
  }
  return all;
}

// " in LA, HA"; nothing where a case is that of all classes.
std::string in_classes(descriptor::Classes classes) {
  std::string names;
  for (int i = 0; i < kClassCount && classes != descriptor::kAllClasses; ++i)
    if (classes >> i & 1) names += (names.empty() ? " in " : ", ") + std::string(kClassNames[i]);
  return names;
}

// "f(0) = 1, f(-inf) = 0 (1)": what is told of all types, but for mere numbers.
std::string special_values(const Function& f) {
  std::string all;
  for (const Special& s : f.descriptor->specials) {
    bool telling = true;
    for (const descriptor::Number& n : s.out) telling &= !n.any_finite();
    if (!telling) continue;
    all += (all.empty() ? "" : "; ") + tuple(s.in, f.in_width()) + " → " + tuple(s.out, f.out_width());
    if (s.status) all += " (" + std::to_string(s.status) + ")";
    all += in_classes(s.classes);
  }
  return all;
}

// As a cell of a Markdown table.
std::string escaped(const std::string& text) {
  std::string all;
  for (char c : text) all += c == '|' ? "\\|" : std::string(1, c);
  return all;
}

const char* arguments(const Function& f) {
  const std::string shape = f.shape->name;
  if (shape == "binary") return "n, a, b, r";
  if (shape == "two_results") return "n, a, r1, r2";
  if (shape == "scalar_second") return "n, a, b, r; b one value";
  if (shape == "complex_scalar_second") return "n, a, b_re, b_im, r; b one value";
  if (shape == "linearfrac") return "n, a, b, scalea, shifta, scaleb, shiftb, r";
  if (shape == "from_real") return "n, a, r; a real";
  if (shape == "to_real") return "n, a, r; r real";
  if (shape == "pack_strided") return "n, a, stride, y";
  if (shape == "unpack_strided") return "n, a, y, stride";
  if (shape == "pack_selected") return "n, a, selection, y";
  if (shape == "unpack_selected") return "n, a, y, selection";
  return "n, a, r";
}

std::string function_table() {
  std::string table =
      "| function | types | arguments | computes | domain | errors | special arguments → results (status) |\n"
      "|---|---|---|---|---|---|---|\n";
  for (const Group& g : groups()) {
    table += "| `" + g.front().name + "`";
    for (const std::string& cell :
         {g.types(), std::string(arguments(g.front())), std::string(g.about().computes),
          std::string(g.about().domain), errors(g.about()), special_values(g.front())})
      table += " | " + escaped(cell);
    table += " |\n";
  }
  return table;
}

// What a class promises: ulps, or bits where it is many of them; of the modulus where it is said.
std::string promise(const Function& f, int class_index) {
  const double bound = f.kernel_of(class_index).bound;
  const int digits = f.single() ? 24 : 53;
  const bool norm_wise = f.about().norm_wise >> f.kernel_of(class_index).own_class & 1;
  return (bound < 100 ? text(bound) : text(digits - 1 - std::log2(bound)) + " bits") +
         (norm_wise ? " (norm)" : "");
}

std::string bounds_table() {
  std::string table = "| function | HA | LA | EP |\n|---|---|---|---|\n";
  for (const Group& g : groups())
    for (const Function* f : g.functions)
      if (!g.packs())
        table += "| `" + f->full_name() + "` | " + promise(*f, kIndexHA) + " | " + promise(*f, kIndexLA) +
                 " | " + promise(*f, kIndexEP) + " |\n";
  return table;
}

// The functions whose kernels start from an approximate reciprocal, and in which classes if not in all.
std::string approximate_list() {
  std::string list;
  for (const Function& f : functions()) {
    std::string classes;
    for (int i = 0; i < kClassCount; ++i)
      if (f.descriptor && f.about().approximate >> i & 1)
        classes += (classes.empty() ? "" : ", ") + std::string(kClassNames[i]);
    if (classes.empty()) continue;
    list += (list.empty() ? "" : ", ") + ("`" + f.full_name() + "`");
    if (f.about().approximate != descriptor::kAllClasses) list += " (" + classes + ")";
  }
  return list + ".\n";
}

// Lines of a comment no wider than the header's.
std::string wrapped(const std::string& text, size_t indent) {
  constexpr size_t width = 118;
  std::istringstream words(text);
  std::string all, line;
  const std::string margin = " *" + std::string(indent - 2, ' ');
  for (std::string word; words >> word;) {
    if (!line.empty() && indent + line.size() + 1 + word.size() > width) {
      all += margin + line + "\n";
      line.clear();
    }
    line += (line.empty() ? "" : " ") + word;
  }
  return line.empty() ? all : all + margin + line + "\n";
}

// A comment for the header: some lines for each.
std::string header_list() {
  std::string list = "/*\n";
  for (const Group& g : groups()) {
    std::string line = " *   " + g.front().name;
    line.resize(std::max<size_t>(line.size() + 1, 17), ' ');
    line += g.types();
    line.resize(std::max<size_t>(line.size() + 1, 24), ' ');
    line += "(" + std::string(arguments(g.front())) + ")  " + g.about().computes;
    if (std::strcmp(g.about().domain, "all numbers") != 0) line += ", " + std::string(g.about().domain);
    list += line + "\n";
    for (const descriptor::Error& e : g.about().errors)
      list += wrapped(status_name(e.status) + ": " + e.when, 25);
    list += wrapped(*g.about().method ? "method: " + std::string(g.about().method) : "", 25);
  }
  return list + " */\n";
}

// Of the doubles' HA and LA kernels, from the tables of the documents: error, cycles, how many times as fast as the peers.
class Figures {
 public:
  Figures(const std::string& accuracy, const std::string& speed)
      : accuracy_(table_rows(read_section(accuracy, "table"))),
        speed_(table_rows(read_section(speed, "in cache"))) {}

  std::string table() const {
    std::string table =
        "| function | HA: error, ulp | cycles | C library | SLEEF 1.0 | LA: error, ulp | cycles | SLEEF 1.0 "
        "| SLEEF 3.5 |\n"
        "|---|---|---|---|---|---|---|---|---|\n";
    for (const Function& f : functions()) {
      const Kernel &ha = f.kernel_of(kIndexHA), &la = f.kernel_of(kIndexLA);
      if (f.type != 'd' || !f.descriptor || f.descriptor->formula || ha.bound == descriptor::kExact.ha)
        continue;
      if (!accuracy_.count(ha.name) || !speed_.count(ha.name)) continue;
      table += "| `" + f.full_name() + "` | " + error(ha) + " | " + cycles(ha) + " | " + ratio(ha, 3) +
               " | " + ratio(ha, 4) + " | ";
      table += &ha == &la
                   ? "as HA | | | |\n"
                   : error(la) + " | " + cycles(la) + " | " + ratio(la, 4) + " | " + ratio(la, 5) + " |\n";
    }
    return table;
  }

 private:
  using Rows = std::map<std::string, std::string>;

  static std::string cell(const Rows& rows, const Kernel& k, size_t column) {
    const auto row = rows.find(k.name);
    return row == rows.end() ? "" : cells(row->second).at(column);
  }
  std::string error(const Kernel& k) const {
    char rounded[32];
    std::snprintf(rounded, sizeof rounded, "%.2f", std::atof(cell(accuracy_, k, 2).c_str()));
    return rounded;
  }
  std::string cycles(const Kernel& k) const { return cell(speed_, k, 2); }
  // Of "3.39 (1.74x)" the ratio.
  std::string ratio(const Kernel& k, size_t column) const {
    const std::string both = cell(speed_, k, column);
    const size_t open = both.find('(');
    return open == std::string::npos ? "" : both.substr(open + 1, both.find('x') - open - 1);
  }

  const Rows accuracy_, speed_;
};

}  // namespace

int main(int argc, char** argv) {
  const bool check = argc == 2 && std::strcmp(argv[1], "--check") == 0;
  if (argc > 1 && !check) {
    std::cerr << "usage: orx_reference [--check]\n";
    return 2;
  }
  const struct {
    const char *file, *section;
    std::string text;
  } parts[] = {{"docs/vector-math.md", "functions", function_table()},
               {"docs/vector-math.md", "bounds", bounds_table()},
               {"docs/vector-math.md", "approximate", approximate_list()},
               {"include/orx/tef.h", "functions", header_list()},
               {"README.md", "figures", Figures("docs/accuracy.md", "docs/performance.md").table()}};
  bool stale = false;
  for (const auto& part : parts) {
    if (read_section(part.file, part.section) == part.text) continue;
    if (check) {
      std::cerr << part.file << ": section " << part.section << " is out of date (script/reference)\n";
      stale = true;
    } else {
      write_section(part.file, part.section, part.text);
    }
  }
  return stale;
}
