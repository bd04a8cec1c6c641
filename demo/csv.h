// Comma-separated files of numbers below a line of column names.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

// What is wrong in an input file, as "file:line: what is wrong". Line 0 is the file as a whole.
class InputError : public std::runtime_error {
 public:
  InputError(const std::string& file, int line, const std::string& what)
      : std::runtime_error(file + ':' + std::to_string(line) + ": " + what) {}
};

using Column = std::vector<double>;

// The columns of the file, which must have exactly these names, at least one row, and a finite number in each
// field, or where `missing` is given also NA, which it stands for. Throws InputError.
std::vector<Column> read_csv(const std::string& file, const std::vector<std::string>& names,
                             const double* missing = nullptr);
