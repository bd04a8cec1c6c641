// Splines through two series: carbon dioxide on Mauna Loa, month by month, and the flow of the Nile, year by
// year. What lies between the samples, how fast it changes, and what it adds up to; and a picture of it.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "chapters.h"
#include "csv.h"
#include "orx/df.h"
#include "svg.h"

namespace {

void check(int status) {
  if (status < 0) throw std::runtime_error("data fitting: status " + std::to_string(status));
}

using Builder = int32_t(DFTask*, int64_t, int64_t, const ThreadingServices*);

// A kind of spline: a cubic with free ends unless it is told otherwise.
struct Kind {
  int64_t kind;
  Builder* build;
  int64_t order = ORX_DF_CUBIC, boundary = ORX_DF_FREE_END;
  Column ends = {}, inner = {};  // values that the boundary takes, derivatives at the inner breakpoints
};

// The cubic with slopes that keep the shape of the data.
Kind shaped(const Column& x, const Column& y, int64_t rule) {
  Column slopes(x.size());
  check(orx_df_kernel_dShapeSlopes1D(int64_t(x.size()), x.data(), y.data(), rule, slopes.data()));
  return {ORX_DF_HERMITE,
          orx_df_kernel_dDFHermiteCubicSpline1D,
          ORX_DF_CUBIC,
          ORX_DF_FIRST_LEFT + ORX_DF_FIRST_RIGHT,
          {slopes.front(), slopes.back()},
          Column(slopes.begin() + 1, slopes.end() - 1)};
}

// A spline through y over x. Breakpoints that are evenly spaced may be given by the first and the last alone.
class Spline {
 public:
  Spline(const Column& x, const Column& y, bool even, const Kind& kind)
      : x_(even ? Column{x.front(), x.back()} : x),
        y_(y),
        coeffs_(size_t(kind.order) * (y.size() - 1)),
        ends_(kind.ends),
        inner_(kind.inner) {
    const auto n = int64_t(y_.size());
    check(orx_df_kernel_dNewTask1D(&task_, n, x_.data(), even ? ORX_DF_UNIFORM_PARTITION : ORX_DF_NO_HINT, 1,
                                   y_.data(), ORX_DF_NO_HINT, 0));
    check(orx_df_kernel_dEditPPSpline1D(
        task_, kind.order, kind.kind, kind.boundary, ends_.empty() ? nullptr : ends_.data(),
        inner_.empty() ? 0 : ORX_DF_FIRST_DERIVATIVES, inner_.empty() ? nullptr : inner_.data(),
        coeffs_.data(), ORX_DF_NO_HINT));
    check(kind.build(task_, 0, 0, orx_serv_threading()));
  }
  ~Spline() { orx_df_kernel_DeleteTask(&task_); }
  Spline(const Spline&) = delete;
  Spline& operator=(const Spline&) = delete;

  // The spline at ascending sites, or its derivative there.
  Column at(const Column& sites, bool slope = false) const {
    const int32_t orders[2] = {!slope, slope};
    Column result(sites.size());
    check(orx_df_kernel_dDFInterpolate1D(task_, ORX_DF_VALUES, 0, int64_t(sites.size()), sites.data(),
                                         ORX_DF_SORTED_SITES, 2, orders, nullptr, result.data(),
                                         ORX_DF_NO_HINT, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                         nullptr, nullptr, nullptr, orx_serv_threading()));
    return result;
  }
  double slope(double site) const { return at({site}, true)[0]; }
  double value(double site) const { return at({site})[0]; }
  double integral(double from, double to) const {
    double result;
    check(orx_df_kernel_dDFIntegrate1D(task_, 0, 1, &from, 0, &to, 0, nullptr, nullptr, &result,
                                       ORX_DF_NO_HINT, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                       nullptr, nullptr, orx_serv_threading()));
    return result;
  }

 private:
  Column x_, y_, coeffs_, ends_, inner_;
  DFTask* task_ = nullptr;
};

Kind natural() { return {ORX_DF_NATURAL, orx_df_kernel_dDFNaturalCubicSpline1D}; }
Kind akima() { return {ORX_DF_AKIMA, orx_df_kernel_dDFAkimaCubicSpline1D}; }
Kind bessel() { return {ORX_DF_BESSEL, orx_df_kernel_dDFBesselCubicSpline1D}; }
Kind linear() {
  const auto build = [](DFTask* task, int64_t, int64_t, const ThreadingServices* threading) {
    return orx_df_kernel_dDFLinearSpline1D(task, 0, 0, 0, threading);
  };
  return {ORX_DF_DEFAULT, build, ORX_DF_LINEAR, 0};
}
Kind quadratic(double middle) {
  const auto build = [](DFTask* task, int64_t, int64_t, const ThreadingServices* threading) {
    return orx_df_kernel_dDFQuadraticSpline1D(task, 0, 0, 0, threading);
  };
  return {ORX_DF_DEFAULT, build, ORX_DF_QUADRATIC, ORX_DF_QUADRATIC_VALUE, {middle}};
}

Column range(double from, double to, size_t n) {
  Column x(n);
  for (size_t i = 0; i < n; ++i) x[i] = from + (to - from) * double(i) / double(n - 1);
  return x;
}

// ---- Carbon dioxide ----

constexpr double kMonth = 1.0 / 12;

void between_samples(const Spline& spline, const Column& years, const Column& ppm) {
  std::printf("\nCarbon dioxide on Mauna Loa, a natural cubic spline through %zu months\n", years.size());
  std::printf("  year and month   sample    half a month on   growth, ppm per year\n");
  for (size_t i = 456; i < 464; ++i) {
    const double year = years[i] + 1e-6;
    std::printf("  %4d %02d         %7.2f        %7.2f             %+7.2f\n", int(year),
                int((year - std::floor(year)) * 12) + 1, ppm[i], spline.value(years[i] + kMonth / 2),
                spline.slope(years[i] + kMonth / 2));
  }
}

// Splines through every other month, held against the months left out.
void left_out(const Column& years, const Column& ppm) {
  Column kept_x, kept_y, sites, truth;
  for (size_t i = 0; i < years.size(); ++i) {
    (i % 2 ? sites : kept_x).push_back(years[i]);
    (i % 2 ? truth : kept_y).push_back(ppm[i]);
  }
  sites.pop_back();  // lies beyond the last month kept
  const auto error = [&](const Column& estimate) {
    double sum = 0;
    for (size_t i = 0; i < sites.size(); ++i) sum += (estimate[i] - truth[i]) * (estimate[i] - truth[i]);
    return std::sqrt(sum / double(sites.size()));
  };
  Column line(sites.size());
  for (size_t i = 0; i < sites.size(); ++i) line[i] = (kept_y[i] + kept_y[i + 1]) / 2;
  std::printf("\n  Every other month left out and filled in, root mean square error in ppm:\n");
  std::printf("    straight lines %.3f", error(line));
  for (const auto& [name, kind] :
       {std::pair{"Akima", akima()}, {"Bessel", bessel()}, {"natural cubic", natural()}})
    std::printf(", %s %.3f", name, error(Spline(kept_x, kept_y, false, kind).at(sites)));
  std::printf("\n");
}

void yearly_means(const Spline& spline, const Column& ppm) {
  std::printf(
      "\n  Mean of a year by the integral, beside that of its twelve samples, and the growth since ten years "
      "before\n");
  for (int year = 1960; year <= 1990; year += 10) {
    const auto first = ppm.begin() + (year - 1959) * 12;
    double sum = 0;
    for (auto month = first; month < first + 12; ++month) sum += *month;
    // A sample stands for its month, so that the year reaches half a month beyond the first and the last one.
    const double from = year - kMonth / 2, mean = spline.integral(from, from + 1);
    std::printf("    %d  %.2f  %.2f", year, mean, sum / 12);
    if (year > 1960) std::printf("  %+.2f ppm per year", (mean - spline.integral(from - 10, from - 9)) / 10);
    std::printf("\n");
  }
}

// ---- The Nile ----

void nile_flow(const Spline& spline, const Column& years) {
  std::printf("\nThe Nile at Aswan, flow in 1e8 m^3 a year, a natural cubic spline through %zu years\n",
              years.size());
  const Column sites = range(years.front(), years.back(), 9901), slopes = spline.at(sites, true);
  const auto [fall, rise] = std::minmax_element(slopes.begin(), slopes.end());
  std::printf("  fastest fall %.0f a year at %.2f, fastest rise %+.0f a year at %.2f\n", *fall,
              sites[size_t(fall - slopes.begin())], *rise, sites[size_t(rise - slopes.begin())]);
  const double dam = 1898.5;  // the flow drops at the turn to 1899
  const double before = spline.integral(1871, dam) / (dam - 1871),
               after = spline.integral(dam, 1970) / (1970 - dam);
  std::printf(
      "  mean flow until 1898 %.0f, from 1899 on %.0f; all that flowed by from 1871 to 1970: %.4g km^3\n",
      before, after, spline.integral(1871, 1970) / 10);
}

Panel panel(const char* title, const char* unit, const Column& x, const Column& y, const Spline& spline,
            double from) {
  Panel p{title, "year", unit, {}};
  const Column sites = range(from, x.back(), 2000);
  p.curves.push_back({sites, spline.at(sites), "#1f6fb4", "natural cubic spline"});
  Curve data{{}, {}, "#c23b22", "data", true};
  for (size_t i = 0; i < x.size(); ++i)
    if (x[i] >= from) data.x.push_back(x[i]), data.y.push_back(y[i]);
  p.curves.push_back(data);
  return p;
}

Panel slope_panel(const char* title, const char* unit, const Spline& spline, double from, double to) {
  const Column sites = range(from, to, 2000);
  return {title, "year", unit, {{sites, spline.at(sites, true), "#2d8a4e", "derivative"}}};
}

// ---- Overshoot ----

// Every kind of spline through one step and one outlier, and how far each leaves the range of the data.
void overshoot(const std::string& picture) {
  const Column x = range(0, 15, 16), y = {0, 0, 0, 0, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1, 0.5, 0.5};
  const Column sites = range(0, 15, 301);
  const std::pair<const char*, Kind> kinds[] = {
      {"linear", linear()},         {"standard quadratic", quadratic(0)},
      {"natural cubic", natural()}, {"Bessel", bessel()},
      {"Akima", akima()},           {"Hermite, slopes of PCHIP", shaped(x, y, ORX_DF_PCHIP)}};
  std::vector<Panel> panels;
  std::printf("\nA step and an outlier between 0 and 1: how far each spline leaves that range\n");
  for (const auto& [name, kind] : kinds) {
    const Column curve = Spline(x, y, false, kind).at(sites);
    const auto [low, high] = std::minmax_element(curve.begin(), curve.end());
    std::printf("  %-26s below %.3f  above %.3f\n", name, std::max(0.0, -*low), std::max(0.0, *high - 1));
    panels.push_back({name, "x", "y", {{sites, curve, "#1f6fb4", ""}, {x, y, "#c23b22", "", true}}});
  }
  write_svg(picture, panels);
  std::printf("  plotted in %s\n", picture.c_str());
}

}  // namespace

void data_fitting(const std::string& data_directory) {
  const auto co2 = read_csv(data_directory + "/co2.csv", {"month", "ppm"});
  const auto nile = read_csv(data_directory + "/nile.csv", {"year", "flow"});
  const Spline months(co2[0], co2[1], true, natural());
  const Spline years(nile[0], nile[1], false, natural());
  between_samples(months, co2[0], co2[1]);
  left_out(co2[0], co2[1]);
  yearly_means(months, co2[1]);
  nile_flow(years, nile[0]);
  const std::string picture = "data_fitting.svg";
  write_svg(picture, {panel("Carbon dioxide on Mauna Loa", "ppm", co2[0], co2[1], months, 1991),
                      panel("The Nile at Aswan", "1e8 m^3 a year", nile[0], nile[1], years, 1871),
                      slope_panel("Growth of carbon dioxide", "ppm per year", months, 1991, co2[0].back()),
                      slope_panel("Change of the flow of the Nile", "1e8 m^3 a year, per year", years, 1871,
                                  nile[0].back())});
  std::printf("\nPlotted in %s\n", picture.c_str());
  overshoot("overshoot.svg");
}
