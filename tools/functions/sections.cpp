#include "sections.hpp"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>

#include "list.hpp"

namespace orx {
namespace {

[[noreturn]] void fail(const std::string& message) {
  std::cerr << message << "\n";
  std::exit(2);
}

struct Document {
  std::string text;
  size_t from, to;  // of the section
};

// The end of the line that has `words` in it.
size_t after_line(const std::string& text, size_t mark) { return text.find('\n', mark) + 1; }

Document open_section(const std::string& file, const std::string& name) {
  std::ifstream in(file);
  std::stringstream all;
  all << in.rdbuf();
  Document d{all.str(), 0, 0};
  const size_t begin = d.text.find(" begin " + name), end = d.text.find(" end " + name);
  if (begin == std::string::npos || end == std::string::npos) fail(file + " has no section " + name);
  d.from = after_line(d.text, begin);
  d.to = d.text.rfind('\n', end) + 1;
  return d;
}

}  // namespace

std::string read_section(const std::string& file, const std::string& name) {
  const Document d = open_section(file, name);
  return d.text.substr(d.from, d.to - d.from);
}

void write_section(const std::string& file, const std::string& name, const std::string& text) {
  const Document d = open_section(file, name);
  std::ofstream out(file);
  out << d.text.substr(0, d.from) << text << d.text.substr(d.to);
  if (!out.flush()) fail("cannot write " + file);
}

std::map<std::string, std::string> table_rows(const std::string& section) {
  std::map<std::string, std::string> rows;
  std::istringstream lines(section);
  for (std::string line; std::getline(lines, line);)
    if (line.rfind("| `", 0) == 0) rows[line.substr(3, line.find('`', 3) - 3)] = line + "\n";
  return rows;
}

std::vector<std::string> cells(const std::string& row) {
  std::vector<std::string> all;
  for (size_t at = row.find('|'), next; (next = row.find('|', at + 1)) != std::string::npos; at = next) {
    const size_t from = row.find_first_not_of(' ', at + 1), to = row.find_last_not_of(' ', next - 1);
    all.push_back(from >= next ? "" : row.substr(from, to - from + 1));
  }
  return all;
}

std::string merged_table(const std::string& head, const std::map<std::string, std::string>& fresh,
                         const std::string& old_section) {
  std::string table = head;
  const auto old = table_rows(old_section);
  for (const Function& f : functions())
    for (const Kernel& k : f.kernels)
      if (const auto row = fresh.find(k.name); row != fresh.end())
        table += row->second;
      else if (const auto kept = old.find(k.name); kept != old.end())
        table += kept->second;
  return table;
}

}  // namespace orx
