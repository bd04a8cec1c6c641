// Parts of documents that programs write, between comments such as `<!-- begin accuracy -->` and `<!-- end accuracy -->`.
#pragma once
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace orx {

// What stands in the section, whole lines; ends the program with a message if there is no such section. Marks in C
// comments will do, too.
std::string read_section(const std::string& file, const std::string& name);
// Puts whole lines there.
void write_section(const std::string& file, const std::string& name, const std::string& text);

// The rows of a Markdown table by the code in their first cell, such as dExp_G9HAynn.
std::map<std::string, std::string> table_rows(const std::string& section);
// Cells of a row, without blanks around.
std::vector<std::string> cells(const std::string& row);

// A table in which each kernel of the list has a row: of the new ones, or else of those in the section.
std::string merged_table(const std::string& head, const std::map<std::string, std::string>& fresh,
                         const std::string& old_section);

}  // namespace orx
