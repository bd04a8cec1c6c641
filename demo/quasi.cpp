// The same integral by pseudo-random and by Sobol's points: the error of the one shrinks as one over the root
// of the number of points, that of the other nearly as one over the number.
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "chapters.h"
#include "orx/kob.h"

namespace {

void check(int status) {
  if (status < 0) throw std::runtime_error("random stream: status " + std::to_string(status));
}

constexpr int kDimension = 8, kPoints = 1 << 20, kPseudoRuns = 16;

// The mean over the unit cube is 1: each factor's is.
double integrand(const double* x) {
  double product = 1;
  for (int d = 0; d < kDimension; ++d) product *= 1 + (x[d] - 0.5) / (d + 1);
  return product;
}

// The running mean's error after each power of two of points.
std::vector<double> errors(uint32_t id, const std::vector<uint32_t>& seed) {
  KobStream* stream = nullptr;
  check(__kobNewStreamEx(&stream, id, int(seed.size()), seed.data()));
  std::vector<double> result, x(1024 * kDimension);
  double sum = 0;
  for (int done = 0, next = 64; done < kPoints;) {
    if (done % 1024 == 0) check(_kobdRngUniform(0, stream, int(x.size()), x.data(), 0, 1));
    sum += integrand(&x[done++ % 1024 * kDimension]);
    if (done == next) {
      result.push_back(std::fabs(sum / done - 1));
      next *= 2;
    }
  }
  __kobDeleteStream(&stream);
  return result;
}

// The root mean square of some runs from different seeds.
std::vector<double> pseudo_errors() {
  std::vector<double> squares;
  for (uint32_t run = 0; run < kPseudoRuns; ++run) {
    const uint32_t key[] = {4711, uint32_t(run)};
    std::vector<uint32_t> seed(4);
    check(orx_kob_spread_seed(2, key, 4, seed.data()));
    const std::vector<double> e = errors(KOB_BRNG_SFMT19937, seed);
    squares.resize(e.size());
    for (size_t i = 0; i < e.size(); ++i) squares[i] += e[i] * e[i] / kPseudoRuns;
  }
  for (double& s : squares) s = std::sqrt(s);
  return squares;
}

std::string bar(double error) {
  const double digits = -std::log10(std::fmax(error, 1e-8));
  return std::string(size_t(std::fmax(0, 4 * digits)), '#');
}

}  // namespace

void quasi(const std::string&) {
  std::printf("\nThe integral of prod (1 + (x_d - 1/2) / d) over the unit cube of dimension %d, which is 1\n",
              kDimension);
  std::printf("(pseudo: root mean square error of %d runs of SFMT19937; a bar of 4 is one decimal)\n",
              kPseudoRuns);
  std::printf("   points    pseudo     Sobol\n");
  const std::vector<double> pseudo = pseudo_errors(), sobol = errors(KOB_BRNG_SOBOL, {kDimension});
  for (size_t i = 0; i < sobol.size(); ++i)
    std::printf("  %7d   %.1e   %.1e   %-22s %s\n", 64 << i, pseudo[i], sobol[i], bar(pseudo[i]).c_str(),
                bar(sobol[i]).c_str());
  // The slopes of the straight lines through the first and the last point in logarithms.
  const double doublings = double(sobol.size() - 1);
  std::printf("  error ~ points^%.2f (pseudo), points^%.2f (Sobol)\n",
              std::log2(pseudo.back() / pseudo.front()) / doublings,
              std::log2(sobol.back() / sobol.front()) / doublings);
}
