#include "csv.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>

namespace {

std::vector<std::string> split(const std::string& line) {
  std::vector<std::string> fields(1);
  for (char c : line) {
    if (c == ',') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

std::string join(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) line += (line.empty() ? "" : ",") + field;
  return line;
}

bool parse(const std::string& field, double& value) {
  const char *begin = field.data(), *end = begin + field.size();
  const auto [stop, error] = std::from_chars(begin, end, value);
  return error == std::errc() && stop == end && std::isfinite(value);
}

bool next_line(std::ifstream& in, std::string& line) {
  if (!std::getline(in, line)) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

}  // namespace

std::vector<Column> read_csv(const std::string& file, const std::vector<std::string>& names,
                             const double* missing) {
  errno = 0;
  std::ifstream in(file);
  if (!in) throw InputError(file, 0, std::string("cannot be opened: ") + std::strerror(errno));

  std::string line;
  if (!next_line(in, line)) throw InputError(file, 0, in.bad() ? "cannot be read" : "is empty");
  if (line != join(names))
    throw InputError(file, 1, "expected the columns " + join(names) + ", found " + line);

  std::vector<Column> columns(names.size());
  for (int number = 2; next_line(in, line); ++number) {
    const std::vector<std::string> fields = split(line);
    if (fields.size() != names.size()) {
      throw InputError(
          file, number,
          "expected " + std::to_string(names.size()) + " fields, found " + std::to_string(fields.size()));
    }
    for (size_t k = 0; k < fields.size(); ++k) {
      double value;
      if (missing && fields[k] == "NA") {
        value = *missing;
      } else if (!parse(fields[k], value)) {
        throw InputError(file, number, names[k] + " is not a number: '" + fields[k] + "'");
      }
      columns[k].push_back(value);
    }
  }
  if (in.bad()) throw InputError(file, 0, "cannot be read");
  if (columns[0].empty()) throw InputError(file, 1, "no rows follow the column names");
  return columns;
}
