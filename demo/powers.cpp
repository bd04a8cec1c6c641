// Powers and roots: how petals grow, how far the planets are from the Sun, and how far each rules the space around it.
#include <cmath>
#include <cstdio>
#include <numeric>

#include "chapters.h"
#include "csv.h"
#include "front.h"

namespace {

// Allometry: where one part of a body grows as a power of another, width = c length^b, a line fits the logarithms. b is
// the reduced major axis, the ratio of deviations, as both measures vary.
void petals(const std::string& directory) {
  const auto table = read_csv(directory + "/iris.csv",
                              {"Sepal.Length", "Sepal.Width", "Petal.Length", "Petal.Width", "Species"});
  const Column &length = table[2], &width = table[3];
  const Column u = front::ln(length), v = front::ln(width);
  const double n = double(u.size());
  const double mean_u = std::accumulate(u.begin(), u.end(), 0.0) / n,
               mean_v = std::accumulate(v.begin(), v.end(), 0.0) / n;
  double uu = 0, uv = 0, vv = 0;
  for (size_t i = 0; i < u.size(); ++i) {
    uu += (u[i] - mean_u) * (u[i] - mean_u);
    uv += (u[i] - mean_u) * (v[i] - mean_v);
    vv += (v[i] - mean_v) * (v[i] - mean_v);
  }
  const double b = std::sqrt(vv / uu), c = std::exp(mean_v - b * mean_u);

  std::printf(
      "\nPetals of %zu irises: width = %.3f cm (length / cm)^%.2f, correlation of the logarithms %.3f\n",
      u.size(), c, b, uv / std::sqrt(uu * vv));
  const Column lengths = {1, 1.5, 2, 3, 4, 5, 6, 7};
  const Column powers = front::powx(lengths, b);
  std::printf("  length  width by the law\n");
  for (size_t i = 0; i < lengths.size(); ++i) std::printf("  %5.1f   %5.2f\n", lengths[i], c * powers[i]);
}

// Compound growth from the first census: the n-th year has first * factor^n.
void compound_growth(const std::string& directory) {
  const auto table = read_csv(directory + "/uspop.csv", {"year", "population_millions"});
  const Column &year = table[0], &population = table[1];
  const size_t half = 8;  // 1870
  const double factor = std::pow(population[half] / population[0], 1 / (year[half] - year[0]));
  Column factors(year.size(), factor), years;
  for (double y : year) years.push_back(y - year[0]);
  const Column grown = front::pow(factors, years);

  std::printf("\nPopulation of the United States if it had grown on as from %.0f to %.0f, %.2f %% per year\n",
              year[0], year[half], 100 * (factor - 1));
  std::printf("  year  millions   at that rate\n");
  for (size_t i = 0; i < year.size(); i += 2)
    std::printf("  %.0f  %7.2f   %8.2f\n", year[i], population[i], population[0] * grown[i]);
}

// Kepler's third law: with the year and the Earth's distance as units, distance = period^(2/3); Hill's radius, within
// which a moon stays with its planet: distance (mass / 3)^(1/3), the Sun's mass being the unit. Figures of NASA's
// planetary fact sheets: sidereal periods in days, semi-major axes in 10^6 km, masses in 10^24 kg.
void planets() {
  struct Planet {
    const char* name;
    double period, axis, mass;
  };
  constexpr Planet all[] = {{"Mercury", 87.969, 57.909, 0.33010},    {"Venus", 224.701, 108.210, 4.8673},
                            {"Earth", 365.256, 149.598, 5.9722},     {"Mars", 686.980, 227.956, 0.64169},
                            {"Jupiter", 4332.589, 778.479, 1898.13}, {"Saturn", 10759.22, 1432.041, 568.32},
                            {"Uranus", 30685.4, 2867.043, 86.811},   {"Neptune", 60189, 4514.953, 102.409}};
  constexpr double year = 365.256, earth = 149.598, sun = 1988400;
  Column periods, shares;
  for (const Planet& p : all) {
    periods.push_back(p.period / year);
    shares.push_back(p.mass / sun / 3);
  }
  const Column distances = front::pow2o3(periods), roots = front::cbrt(shares);

  std::printf(
      "\nPlanets: distances by Kepler's third law, in 10^6 km, and how far their pull reaches beside the "
      "Sun's\n");
  std::printf("  planet     years  distance   by the law   off by   Hill's radius\n");
  for (size_t i = 0; i < periods.size(); ++i) {
    const double law = earth * distances[i];
    std::printf("  %-8s %7.2f  %8.1f  %11.1f  %+5.2f %%   %8.2f\n", all[i].name, periods[i], all[i].axis, law,
                100 * (all[i].axis / law - 1), all[i].axis * roots[i]);
  }
}

}  // namespace

void powers(const std::string& data_directory) {
  const front::Mode mode(TEF_HA);
  petals(data_directory);
  compound_growth(data_directory);
  planets();
}
