// Growth, trend and vapour pressure by vector logarithms and exponentials; then what happens with bad
// elements and bad arguments.
#include <cmath>
#include <cstdio>
#include <numeric>
#include <vector>

#include "chapters.h"
#include "csv.h"
#include "front.h"

namespace {

// y = at_mean + slope (x - mean), by least squares.
struct Line {
  double mean, at_mean, slope, deviation;  // standard deviation of the residuals

  Line(const Column& x, const Column& y) {
    const double n = double(x.size());
    mean = std::accumulate(x.begin(), x.end(), 0.0) / n;
    at_mean = std::accumulate(y.begin(), y.end(), 0.0) / n;
    double xx = 0, xy = 0, rest = 0;
    for (size_t i = 0; i < x.size(); ++i) {
      xx += (x[i] - mean) * (x[i] - mean);
      xy += (x[i] - mean) * (y[i] - at_mean);
    }
    slope = xy / xx;
    for (size_t i = 0; i < x.size(); ++i) rest += std::pow(y[i] - at(x[i]), 2);
    deviation = std::sqrt(rest / (n - 2));
  }
  double at(double x) const { return at_mean + slope * (x - mean); }
  Column at(const Column& x) const {
    Column y(x);
    for (double& value : y) value = at(value);
    return y;
  }
};

void population_growth(const std::string& directory) {
  const auto table = read_csv(directory + "/uspop.csv", {"year", "population_millions"});
  const Column &year = table[0], &population = table[1];
  Column ratio, rate;
  for (size_t i = 1; i < year.size(); ++i) ratio.push_back(population[i] / population[i - 1]);
  rate = front::ln(ratio);
  for (size_t i = 0; i < rate.size(); ++i) rate[i] /= year[i + 1] - year[i];
  const Column factor = front::exp(rate);

  std::printf("\nPopulation of the United States: growth between censuses, ln(ratio) / years\n");
  std::printf("  years      millions          ratio   %% per year   years to double\n");
  for (size_t i = 0; i < rate.size(); ++i) {
    std::printf("  %.0f-%.0f  %6.2f to %6.2f  %7.4f  %9.2f  %14.1f\n", year[i], year[i + 1], population[i],
                population[i + 1], ratio[i], 100 * (factor[i] - 1), std::log(2) / rate[i]);
  }
}

void carbon_dioxide_trend(const std::string& directory) {
  const auto table = read_csv(directory + "/co2.csv", {"month", "ppm"});
  const Column &month = table[0], &ppm = table[1];
  const Line line(month, front::ln(ppm));
  const Column trend = front::exp(line.at(month));

  std::printf("\nCarbon dioxide at Mauna Loa: least-squares line through ln(ppm), %zu months\n",
              month.size());
  std::printf("  trend %.3f %% per year, doubling in %.0f years, scatter of the months %.2f %%\n",
              100 * std::expm1(line.slope), std::log(2) / line.slope, 100 * line.deviation);
  std::printf("  January   measured   trend    off by\n");
  for (size_t i = 0; i < month.size(); i += 60) {
    std::printf("  %.0f      %7.2f  %7.2f  %+6.2f %%\n", month[i], ppm[i], trend[i],
                100 * (ppm[i] / trend[i] - 1));
  }
}

// Clausius and Clapeyron: where the heat of vaporisation H is constant, ln p = c - (H / R) / T.
void vapour_pressure(const std::string& directory) {
  const auto table = read_csv(directory + "/pressure.csv", {"temperature", "pressure"});
  const Column &celsius = table[0], &pressure = table[1];
  const double zero_celsius = 273.15, gas_constant = 8.314462618, atmosphere = 760;  // K, J/(mol K), mm Hg
  Column inverse;
  for (double t : celsius) inverse.push_back(1 / (t + zero_celsius));
  const Line line(inverse, front::ln(pressure));
  const Column fitted = front::exp(line.at(inverse));
  const double boiling = 1 / (line.mean + (std::log(atmosphere) - line.at_mean) / line.slope) - zero_celsius;

  std::printf("\nVapour pressure of mercury: ln p against 1/T\n");
  std::printf("  heat of vaporisation %.1f kJ/mol, boils at %.1f C under %.0f mm Hg, scatter of ln p %.3f\n",
              -line.slope * gas_constant / 1000, boiling, atmosphere, line.deviation);
  std::printf("     C   mm Hg    fitted   off by\n");
  for (size_t i = 0; i < celsius.size(); ++i) {
    std::printf("  %4.0f  %7.4g  %8.4g  %+5.1f %%\n", celsius[i], pressure[i], fitted[i],
                100 * (pressure[i] / fitted[i] - 1));
  }
}

// Prints what it is told. A logarithm outside its domain gets the result 0; all else stays as the library has
// it.
int tell(TefErrorContext* context) {
  static const char* const names[] = {"bad pointer", "bad size", "",         "domain",
                                      "singularity", "overflow", "underflow"};
  std::printf("  callback: %s, status %d (%s), index %d", context->funcName, context->status,
              names[context->status + 2], context->index);
  if (context->status > 0) {
    std::printf(", argument %g, result %g", context->arg1, context->res1);
    if (context->status == StatusDomain) std::printf(" replaced by %g", context->res1 = 0);
  }
  std::printf("\n");
  return 0;
}

void errors() {
  std::printf("\nErrors, told by an installed callback\n");
  const TefErrorCallBack before = _tefSetErrorCallBack(tell);
  _tefClearErrStatus();

  const Column x = {1, 0, 203.2, -3.93, INFINITY};
  const Column y = front::ln(x);
  for (size_t i = 0; i < x.size(); ++i) std::printf("  ln(%g) = %g\n", x[i], y[i]);
  std::printf("  status left by the call: %d\n", _tefGetErrStatus());

  double result = 7;
  front::ln(-1, x.data(), &result);
  front::exp(1, nullptr, &result);
  std::printf("  status %d, the result was not touched: %g\n", _tefClearErrStatus(), result);
  _tefSetErrorCallBack(before);
}

}  // namespace

void vector_math(const std::string& data_directory) {
  const front::Mode mode(TEF_HA);
  population_growth(data_directory);
  carbon_dioxide_trend(data_directory);
  vapour_pressure(data_directory);
  errors();
}
