// The error functions on two old questions: is a series normally distributed, and how deep does carbon diffuse into steel?
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <string>

#include "chapters.h"
#include "csv.h"
#include "orx/tef.h"
#include "svg.h"

namespace {

using UnaryTable = void (*const[3])(int, const double*, double*);

Column apply(UnaryTable& table, const Column& x) {
  Column y(x.size());
  table[1](static_cast<int>(x.size()), x.data(), y.data());  // high accuracy
  return y;
}

double mean_of(const Column& x) { return std::accumulate(x.begin(), x.end(), 0.0) / double(x.size()); }

double correlation(const Column& x, const Column& y) {
  const double x_mean = mean_of(x), y_mean = mean_of(y);
  double xx = 0, xy = 0, yy = 0;
  for (size_t i = 0; i < x.size(); ++i) {
    xx += (x[i] - x_mean) * (x[i] - x_mean);
    xy += (x[i] - x_mean) * (y[i] - y_mean);
    yy += (y[i] - y_mean) * (y[i] - y_mean);
  }
  return xy / std::sqrt(xx * yy);
}

// A sample in order beside the quantiles that a normal distribution has at (i - 1/2)/n.
struct NormalPlot {
  Column sample, quantile;
  double mean, deviation;

  explicit NormalPlot(Column x) : sample(std::move(x)), mean(mean_of(sample)) {
    std::sort(sample.begin(), sample.end());
    double squares = 0;
    for (double value : sample) squares += (value - mean) * (value - mean);
    const double n = double(sample.size());
    deviation = std::sqrt(squares / (n - 1));
    Column probability;
    for (size_t i = 0; i < sample.size(); ++i) probability.push_back((double(i) + 0.5) / n);
    quantile = apply(orx_tef_kernel_dCdfNormInv_ttab, probability);
  }

  // The largest distance between the sample's distribution and the normal one, after Kolmogorov.
  double distance() const {
    Column z;
    for (double value : sample) z.push_back((value - mean) / deviation);
    const Column law = apply(orx_tef_kernel_dCdfNorm_ttab, z);
    const double n = double(z.size());
    double largest = 0;
    for (size_t i = 0; i < z.size(); ++i)
      largest = std::max({largest, law[i] - double(i) / n, double(i + 1) / n - law[i]});
    return largest;
  }

  Panel panel(const std::string& title, const std::string& label) const {
    const Column ends = {quantile.front(), quantile.back()};
    const Column line = {mean + deviation * ends[0], mean + deviation * ends[1]};
    return {
        title,
        "quantile of the normal distribution",
        label,
        {{quantile, sample, "#2060a0", "ordered values", true}, {ends, line, "#a03020", "normal", false}}};
  }
};

void tell(const char* name, const NormalPlot& plot) {
  std::printf("  %-28s %5zu  %8.3f  %8.3f    %.4f    %.4f\n", name, plot.sample.size(), plot.mean,
              plot.deviation, correlation(plot.quantile, plot.sample), plot.distance());
}

// Carbon in steel of 0.25 % under a gas that keeps its surface at 1.20 %, 950 C: the example of W. D. Callister, "Materials
// Science and Engineering: An Introduction", on non-steady diffusion, who reads 7.1 hours off a table of erf.
class Carburizing {
 public:
  Panel run() const {
    const double wanted = 0.80, depth = 0.5e-3;
    const double x = apply(orx_tef_kernel_dErfcInv_ttab, {(wanted - inside_) / (surface_ - inside_)})[0];
    const double seconds = std::pow(depth / (2 * x), 2) / diffusivity_;
    std::printf("\nCarbon diffusing into steel: erfc\n");
    std::printf("  %.2f %% at %.1f mm after %.0f s = %.2f hours\n", wanted, 1e3 * depth, seconds,
                seconds / 3600);
    std::printf("  mm      1 h    %.1f h   24 h\n", seconds / 3600);
    const double hours[] = {1, seconds / 3600, 24};
    const char* const colours[] = {"#2060a0", "#208040", "#a03020"};
    Panel panel{"Carbon in steel", "depth, mm", "carbon, %", {}};
    Column mm;
    for (int i = 0; i <= 60; ++i) mm.push_back(0.05 * i);
    for (int k = 0; k < 3; ++k) {
      char label[32];
      std::snprintf(label, sizeof label, "%.1f hours", hours[k]);
      panel.curves.push_back({mm, profile(mm, 3600 * hours[k]), colours[k], label, false});
    }
    for (size_t i = 0; i < mm.size(); i += 10)
      std::printf("  %.1f  %.4f  %.4f  %.4f\n", mm[i], panel.curves[0].y[i], panel.curves[1].y[i],
                  panel.curves[2].y[i]);
    return panel;
  }

 private:
  Column profile(const Column& mm, double seconds) const {
    Column scaled;
    for (double x : mm) scaled.push_back(1e-3 * x / (2 * std::sqrt(diffusivity_ * seconds)));
    Column c = apply(orx_tef_kernel_dErfc_ttab, scaled);
    for (double& value : c) value = inside_ + (surface_ - inside_) * value;
    return c;
  }

  static constexpr double inside_ = 0.25, surface_ = 1.20, diffusivity_ = 1.6e-11;  // %, %, m^2/s
};

}  // namespace

void normal_plot(const std::string& data_directory) {
  const NormalPlot nile(read_csv(data_directory + "/nile.csv", {"year", "flow"})[1]);
  const NormalPlot faithful(read_csv(data_directory + "/faithful.csv", {"eruptions", "waiting"})[0]);
  std::printf("\nNormal or not: ordered values against CdfNormInv\n");
  std::printf("  %-28s %5s  %8s  %8s    %s   %s\n", "", "n", "mean", "deviation", "line", "distance");
  tell("Nile, flow of a year", nile);
  tell("Old Faithful, eruptions", faithful);
  const Panel steel = Carburizing().run();
  const char* const picture = "normal_plot.svg";
  write_svg(picture, {nile.panel("Flow of the Nile", "10^8 m^3 in a year"),
                      faithful.panel("Old Faithful: no normal distribution", "minutes"), steel});
  std::printf("\nPicture: %s\n", picture);
}
