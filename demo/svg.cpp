#include "svg.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace {

constexpr double kWidth = 620, kHeight = 300, kLeft = 64, kRight = 16, kTop = 34, kBottom = 46;

// A range of data, and ticks at round numbers in it.
struct Axis {
  double low = INFINITY, high = -INFINITY, step = 1;

  void take(const std::vector<double>& values) {
    for (double value : values) low = std::min(low, value), high = std::max(high, value);
  }
  // Room below the data, and above it for the legend.
  void add_margin() {
    const double span = high - low;
    low -= 0.06 * span;
    high += 0.16 * span;
  }
  void choose_step() {
    const double raw = (high - low) / 6, power = std::pow(10, std::floor(std::log10(raw)));
    for (double factor : {1, 2, 5, 10})
      if (step = factor * power; step >= raw) return;
  }
  double place(double value) const { return (value - low) / (high - low); }
};

class Plot {
 public:
  Plot(std::FILE* file, const Panel& panel, double left, double top) : file_(file), left_(left), top_(top) {
    for (const Curve& curve : panel.curves) x_.take(curve.x), y_.take(curve.y);
    y_.add_margin();
    x_.choose_step();
    y_.choose_step();
    frame(panel);
    double legend = 0;
    for (const Curve& curve : panel.curves) {
      if (curve.points)
        dots(curve);
      else
        line(curve);
      text(kLeft + 12 + legend, kTop + 16, "start", curve.colour.c_str(), 12, curve.label);
      legend += 7.5 * double(curve.label.size()) + 16;
    }
  }

 private:
  double at_x(double x) const { return left_ + kLeft + x_.place(x) * (kWidth - kLeft - kRight); }
  double at_y(double y) const { return top_ + kHeight - kBottom - y_.place(y) * (kHeight - kTop - kBottom); }

  void text(double x, double y, const char* anchor, const char* colour, int size, const std::string& what) {
    std::fprintf(file_, "<text x='%.1f' y='%.1f' text-anchor='%s' fill='%s' font-size='%d'>%s</text>\n",
                 left_ + x, top_ + y, anchor, colour, size, what.c_str());
  }
  void stroke(double x0, double y0, double x1, double y1, const char* colour) {
    std::fprintf(file_, "<line x1='%.1f' y1='%.1f' x2='%.1f' y2='%.1f' stroke='%s'/>\n", x0, y0, x1, y1,
                 colour);
  }
  void frame(const Panel& panel) {
    char number[32];
    for (double x = std::ceil(x_.low / x_.step) * x_.step; x <= x_.high; x += x_.step) {
      stroke(at_x(x), at_y(y_.low), at_x(x), at_y(y_.high), "#e4e4e4");
      std::snprintf(number, sizeof number, "%g", x + 0.0);  // no sign of 0
      text(at_x(x) - left_, kHeight - kBottom + 16, "middle", "#333", 12, number);
    }
    for (double y = std::ceil(y_.low / y_.step) * y_.step; y <= y_.high; y += y_.step) {
      const double shown = std::fabs(y) < 1e-9 * y_.step ? 0 : y;
      stroke(at_x(x_.low), at_y(y), at_x(x_.high), at_y(y), shown == 0 ? "#888" : "#e4e4e4");
      std::snprintf(number, sizeof number, "%g", shown);
      text(kLeft - 6, at_y(y) - top_ + 4, "end", "#333", 12, number);
    }
    std::fprintf(file_, "<rect x='%.1f' y='%.1f' width='%.1f' height='%.1f' fill='none' stroke='#333'/>\n",
                 left_ + kLeft, top_ + kTop, kWidth - kLeft - kRight, kHeight - kTop - kBottom);
    text(kWidth / 2, kTop - 12, "middle", "#000", 15, panel.title);
    text((kWidth + kLeft - kRight) / 2, kHeight - 10, "middle", "#333", 12, panel.x_label);
    std::fprintf(file_,
                 "<text transform='translate(%.1f %.1f) rotate(-90)' text-anchor='middle' fill='#333' "
                 "font-size='12'>%s</text>\n",
                 left_ + 16, top_ + (kHeight + kTop - kBottom) / 2, panel.y_label.c_str());
  }
  void line(const Curve& curve) {
    std::fprintf(file_, "<polyline fill='none' stroke='%s' stroke-width='1.4' points='",
                 curve.colour.c_str());
    for (size_t i = 0; i < curve.x.size(); ++i)
      std::fprintf(file_, "%.1f,%.1f ", at_x(curve.x[i]), at_y(curve.y[i]));
    std::fprintf(file_, "'/>\n");
  }
  void dots(const Curve& curve) {
    for (size_t i = 0; i < curve.x.size(); ++i)
      std::fprintf(file_, "<circle cx='%.1f' cy='%.1f' r='2.4' fill='%s'/>\n", at_x(curve.x[i]),
                   at_y(curve.y[i]), curve.colour.c_str());
  }

  std::FILE* file_;
  double left_, top_;
  Axis x_, y_;
};

}  // namespace

void write_svg(const std::string& file, const std::vector<Panel>& panels) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> out(std::fopen(file.c_str(), "w"), std::fclose);
  if (!out) throw std::runtime_error(file + ": cannot be written");
  const size_t rows = (panels.size() + 1) / 2;
  std::fprintf(out.get(),
               "<svg xmlns='http://www.w3.org/2000/svg' width='%g' height='%g' font-family='sans-serif'>\n"
               "<rect width='100%%' height='100%%' fill='white'/>\n",
               2 * kWidth, double(rows) * kHeight);
  for (size_t i = 0; i < panels.size(); ++i)
    Plot(out.get(), panels[i], double(i % 2) * kWidth, double(i / 2) * kHeight);
  std::fprintf(out.get(), "</svg>\n");
}
