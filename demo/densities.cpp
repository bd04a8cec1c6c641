// Densities and probabilities beside histograms of the numbers that the generators draw: six laws, one picture, and
// how far each cell is from what is expected of it.
#include <cmath>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "chapters.h"
#include "orx/kob.h"
#include "svg.h"

namespace {

constexpr int kNumbers = 200000;

struct Law {
  std::string title;
  double low, high;  // what is shown
  int cells;         // 0 for counts, which have one for each number
  std::function<int(KobStream*, double* r)> draw;
  std::function<double(double x)> density;  // or probability
};

template <class Generator, class... Parameters>
std::function<int(KobStream*, double*)> counts(Generator generate, Parameters... parameters) {
  return [=](KobStream* stream, double* r) {
    std::vector<int32_t> numbers(kNumbers);
    const int status = generate(0, stream, kNumbers, numbers.data(), parameters...);
    for (size_t i = 0; i < numbers.size(); ++i) r[i] = numbers[i];
    return status;
  };
}

double ln_choose(double n, double k) {
  return std::lgamma(n + 1) - std::lgamma(k + 1) - std::lgamma(n - k + 1);
}

std::vector<Law> laws() {
  return {
      {"Normal, by Box and Muller's second method", -4, 4, 64,
       [](KobStream* s, double* r) { return _kobdRngGaussian(1, s, kNumbers, r, 0, 1); },
       [](double x) { return std::exp(-x * x / 2) / std::sqrt(2 * M_PI); }},
      {"Cauchy", -8, 8, 64, [](KobStream* s, double* r) { return _kobdRngCauchy(0, s, kNumbers, r, 0, 1); },
       [](double x) { return 1 / (M_PI * (1 + x * x)); }},
      {"Gamma, shape 3.5", 0, 14, 56,
       [](KobStream* s, double* r) { return _kobdRngGamma(0, s, kNumbers, r, 3.5, 0, 1); },
       [](double x) { return x > 0 ? std::exp(2.5 * std::log(x) - x - std::lgamma(3.5)) : 0; }},
      {"Beta, shapes 0.8 and 0.7", 0.02, 0.98, 48,
       [](KobStream* s, double* r) { return _kobdRngBeta(0, s, kNumbers, r, 0.8, 0.7, 0, 1); },
       [](double x) {
         return std::pow(x, -0.2) * std::pow(1 - x, -0.3) * std::tgamma(1.5) /
                (std::tgamma(0.8) * std::tgamma(0.7));
       }},
      {"Poisson, mean 10", 0, 26, 0, counts(_kobiRngPoisson, 10.0),
       [](double k) { return std::exp(k * std::log(10) - 10 - std::lgamma(k + 1)); }},
      {"Hypergeometric: 500 marked among 2000, a sample of 400", 70, 130, 0,
       counts(_kobiRngHypergeometric, 2000, 400, 500),
       [](double k) {
         return std::exp(ln_choose(500, k) + ln_choose(1500, 400 - k) - ln_choose(2000, 400));
       }},
  };
}

// What is seen in each cell and what is expected there.
struct Histogram {
  double low, width;
  std::vector<double> seen, expected;

  Histogram(const Law& law, const std::vector<double>& numbers)
      : low(law.cells ? law.low : law.low - 0.5), width(law.cells ? (law.high - law.low) / law.cells : 1) {
    const int cells = law.cells ? law.cells : int(law.high - law.low) + 1;
    seen.resize(size_t(cells));
    for (const double x : numbers) {
      const double cell = std::floor((x - low) / width);
      if (cell >= 0 && cell < cells) ++seen[size_t(cell)];
    }
    for (int i = 0; i < cells; ++i) {
      const double from = low + i * width, middle = from + width / 2;
      // Simpson's rule, where there is a density.
      const double probability =
          law.cells ? (law.density(from) + 4 * law.density(middle) + law.density(from + width)) / 6 * width
                    : law.density(middle);
      expected.push_back(double(numbers.size()) * probability);
    }
  }

  // In standard deviations.
  double largest_deviation() const {
    double largest = 0;
    for (size_t i = 0; i < seen.size(); ++i)
      largest = std::fmax(largest, std::fabs(seen[i] - expected[i]) / std::sqrt(std::fmax(expected[i], 1)));
    return largest;
  }
  double chi_square() const {
    double sum = 0;
    for (size_t i = 0; i < seen.size(); ++i)
      sum += (seen[i] - expected[i]) * (seen[i] - expected[i]) / std::fmax(expected[i], 1);
    return sum;
  }
};

Panel panel(const Law& law, const Histogram& h) {
  Curve seen{{}, {}, "#9ab8d8", std::to_string(kNumbers) + " numbers"};
  for (size_t i = 0; i < h.seen.size(); ++i) {
    const double from = h.low + double(i) * h.width, height = h.seen[i] / (kNumbers * h.width);
    for (const double x : {from, from + h.width}) {
      seen.x.push_back(x);
      seen.y.push_back(height);
    }
  }
  Curve law_itself{{}, {}, "#b03020", law.cells ? "density" : "probability", law.cells == 0};
  const int steps = law.cells ? 4 * law.cells : int(law.high - law.low);
  for (int i = 0; i <= steps; ++i) {
    const double x = law.low + (law.high - law.low) * i / steps;
    law_itself.x.push_back(x);
    law_itself.y.push_back(law.density(x));
  }
  return {law.title, "", "", {seen, law_itself}};
}

}  // namespace

void densities(const std::string&) {
  KobStream* stream = nullptr;
  const uint32_t seed = 20261122;
  if (__kobNewStreamEx(&stream, KOB_BRNG_SFMT19937, 1, &seed) < 0) throw std::runtime_error("no stream");
  std::printf("\n%d numbers of each law in cells, beside what is expected of them\n", kNumbers);
  std::printf(
      "  law                                                      cells   chi-square   largest deviation\n");
  std::vector<Panel> panels;
  for (const Law& law : laws()) {
    std::vector<double> numbers(kNumbers);
    const int status = law.draw(stream, numbers.data());
    if (status < 0) throw std::runtime_error("distribution: status " + std::to_string(status));
    const Histogram h(law, numbers);
    std::printf("  %-56s %5zu       %6.1f   %.2f sigma\n", law.title.c_str(), h.seen.size(), h.chi_square(),
                h.largest_deviation());
    panels.push_back(panel(law, h));
  }
  __kobDeleteStream(&stream);
  write_svg("densities.svg", panels);
  std::printf("  densities.svg\n");
}
