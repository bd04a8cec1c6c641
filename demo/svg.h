// A picture of panels with axes, curves and points, as an SVG file.
#pragma once

#include <string>
#include <vector>

struct Curve {
  std::vector<double> x, y;
  std::string colour, label;
  bool points = false;  // dots in place of a line
};

struct Panel {
  std::string title, x_label, y_label;
  std::vector<Curve> curves;
};

// Panels in two columns, row by row. Throws std::runtime_error when the file cannot be written.
void write_svg(const std::string& file, const std::vector<Panel>& panels);
