#include "laws.hpp"

#include <gsl/gsl_cdf.h>
#include <gsl/gsl_errno.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace {

// ---- p-values ----

// Kolmogorov's limit law with Stephens's correction for finite n.
double kolmogorov(double distance, double n) {
  const double x = distance * (std::sqrt(n) + 0.12 + 0.11 / std::sqrt(n));
  if (x < 0.2) return 1;
  double sum = 0;
  for (int k = 1; k < 100; ++k) sum += (k % 2 ? 2 : -2) * std::exp(-2 * k * k * x * x);
  return std::min(std::max(sum, 0.0), 1.0);
}

// The limit law of the Anderson-Darling statistic: G. Marsaglia, J. Marsaglia, J. Stat. Softw. 9(2), 2004.
double anderson_darling(double z) {
  if (!(z > 0)) return 1;
  if (z < 2)
    return 1 - std::exp(-1.2337141 / z) / std::sqrt(z) *
                   (2.00012 +
                    (0.247105 - (0.0649821 - (0.0347962 - (0.011672 - 0.00168691 * z) * z) * z) * z) * z);
  const double q =
      std::exp(1.0776 - (2.30695 - (0.43424 - (0.082433 - (0.008056 - 0.0003146 * z) * z) * z) * z) * z);
  // The published fit ends where it leaves 1e-8; the true tail is exponential.
  return z < 8 ? -std::expm1(-q) : std::exp(-1.03 * z);
}

double two_sided(double deviations) { return std::erfc(std::abs(deviations) / std::sqrt(2.0)); }

class Least {
 public:
  void add(const char* test, double p) {
    ++tests_;
    if (!(p >= verdict_.p_value)) verdict_ = {p, test};
  }
  Verdict verdict() const { return {std::min(1.0, verdict_.p_value * tests_), verdict_.test}; }

 private:
  Verdict verdict_ = {2, "none"};
  int tests_ = 0;
};

// u: the sorted values of the distribution function.
void judge_uniform(const std::vector<double>& u, double tolerance, Least& least) {
  const double n = double(u.size());
  double distance = 0, anderson = 0, moment[4] = {};
  for (size_t i = 0; i < u.size(); ++i) {
    distance = std::max({distance, (double(i) + 1) / n - u[i], u[i] - double(i) / n});
    const double low = std::min(std::max(u[i], 1e-300), 1 - 0x1p-53);
    const double high = std::min(std::max(u[u.size() - 1 - i], 0x1p-54), 1 - 0x1p-53);
    anderson -= (2 * double(i) + 1) * (std::log(low) + std::log1p(-high));
    double power = 1;
    for (double& m : moment) m += power *= u[i];
  }
  least.add("Kolmogorov-Smirnov", kolmogorov(std::max(0.0, distance - tolerance), n));
  if (tolerance == 0) least.add("Anderson-Darling", anderson_darling(anderson / n - n));
  for (int k = 1; k <= 4; ++k) {
    const double mean = 1.0 / (k + 1), variance = 1.0 / (2 * k + 1) - mean * mean;
    const double off = std::max(0.0, std::abs(moment[k - 1] / n - mean) - tolerance);
    least.add("moments", two_sided(off / std::sqrt(variance / n)));
  }
}

// Cells of at least 20 expected numbers, some 200 of them, from the ends of the law inwards.
void judge_counts(const Law& law, std::vector<double>& x, Least& least) {
  const double n = double(x.size()), wanted = std::max(20.0, n / 200);
  double below = 0, chi_square = 0;
  int cells = 0;
  size_t first = 0;
  while (first < x.size()) {
    // The cell ends at the least number that leaves enough on both sides, found by doubling and halving.
    const auto enough = [&](double end) { return (law.below(end) - below) * n >= wanted; };
    const double start = cells == 0 ? -1 : x[first];
    double low = start, step = 1;
    while (!enough(low + step) && step < 1e12) step *= 2;
    double high = low + step;
    while (high - low > 1) {
      const double middle = std::floor((low + high) / 2);
      (enough(middle) ? high : low) = middle;
    }
    double to = law.below(high);
    const bool last = !enough(high) || (1 - to) * n < wanted;
    if (last) to = 1;
    const size_t end = last ? x.size() : size_t(std::upper_bound(x.begin(), x.end(), high) - x.begin());
    const double expected = (to - below) * n, seen = double(end - first);
    chi_square += (seen - expected) * (seen - expected) / expected;
    ++cells;
    if (last) break;
    below = to;
    first = end;
    if (first == x.size()) {  // none are left where some are expected
      chi_square += (1 - below) * n;
      ++cells;
    }
  }
  if (cells > 1) least.add("chi-square", gsl_cdf_chisq_Q(chi_square, cells - 1));
}

// What was rounded to x lies between these two.
std::pair<double, double> cell(const Law& law, double x) {
  if (law.type == Law::kIntegers) return {x - 1, x};
  if (law.type == Law::kDoubles) {  // which has no halves of its last digit; the smallest ones belong to 0
    if (std::abs(x) <= 0x1p-1074) return {x == 0 ? -1 : x, 0x1p-1074};
    return {std::nextafter(x, -INFINITY), x};
  }
  const float single = float(x);
  const double low = std::nextafter(single, -INFINITY), high = std::nextafter(single, INFINITY);
  return {(low + x) / 2, (x + high) / 2};
}

// The values of the distribution function. Equal numbers are spread evenly over what was rounded to them.
std::vector<double> transformed(const Law& law, const std::vector<double>& sorted) {
  std::vector<double> u(sorted.size());
  for (size_t i = 0; i < sorted.size();) {
    const auto from = sorted.begin() + std::ptrdiff_t(i);
    const size_t end = size_t(std::upper_bound(from, sorted.end(), sorted[i]) - sorted.begin());
    if (end - i == 1 && law.type != Law::kIntegers) {
      u[i] = law.below(sorted[i]);
    } else {
      const auto [low, high] = cell(law, sorted[i]);
      const double below = law.below(low), inside = law.below(high) - below;
      for (size_t k = i; k < end; ++k) u[k] = below + inside * (double(k - i) + 0.5) / double(end - i);
    }
    i = end;
  }
  return u;
}

// ---- the laws ----

using Draw = std::function<int(KobStream*, int, double*)>;

template <class Number, class Generator>
Draw widened(const Generator& generate) {
  return [generate](KobStream* stream, int n, double* r) {
    std::vector<Number> numbers(static_cast<size_t>(n));
    const int status = generate(stream, n, numbers.data());
    std::copy(numbers.begin(), numbers.end(), r);
    return status;
  };
}

std::string named(const char* name, std::initializer_list<double> parameters) {
  std::string text = name;
  const char* separator = "(";
  for (double p : parameters) {
    char number[32];
    std::snprintf(number, sizeof number, "%s%.10g", separator, p);
    text += number;
    separator = ", ";
  }
  return text + ")";
}

class Laws {
 public:
  std::vector<Law> take() { return std::move(laws_); }

  // Both precisions.
  template <class D, class S>
  void real(const std::string& name, D in_double, S in_single, std::function<double(double)> below,
            double least_single = 0, double tolerance = 0) {
    laws_.push_back({"d" + name, widened<double>(in_double), below, Law::kDoubles, tolerance});
    // Numbers that are rounded to a grid, and fast logarithms of 11 bits.
    laws_.push_back(
        {"s" + name, widened<float>(in_single), below, Law::kSingles, std::max(2e-4, least_single)});
  }
  template <class G>
  void integer(const std::string& name, G generate, std::function<double(double)> below,
               double tolerance = 0) {
    laws_.push_back({"i" + name, widened<int32_t>(generate), below, Law::kIntegers, tolerance});
  }

 private:
  std::vector<Law> laws_;
};

#define ORX_REAL(Name, ...)                                                    \
  [=](KobStream* s, int n, double* r) { return _kobdRng##Name(__VA_ARGS__); }, \
      [=](KobStream* s, int n, float* r) { return _kobsRng##Name(__VA_ARGS__); }

void add_transforms(Laws& laws) {
  laws.real("Exponential", ORX_REAL(Exponential, 0, s, n, r, 1, 2),
            [](double x) { return gsl_cdf_exponential_P(x - 1, 2); });
  laws.real("Cauchy", ORX_REAL(Cauchy, 0, s, n, r, 1, 2),
            [](double x) { return gsl_cdf_cauchy_P(x - 1, 2); });
  laws.real("Laplace", ORX_REAL(Laplace, 0, s, n, r, 1, 2),
            [](double x) { return gsl_cdf_laplace_P(x - 1, 2); });
  laws.real("Rayleigh", ORX_REAL(Rayleigh, 0, s, n, r, 1, 2),
            [](double x) { return gsl_cdf_rayleigh_P(x - 1, std::sqrt(2.0)); });
  for (double alpha : {0.5, 1.0, 3.0})
    laws.real(named("Weibull", {alpha}), ORX_REAL(Weibull, 0, s, n, r, decltype (*r + 0)(alpha), 1, 2),
              [=](double x) { return gsl_cdf_weibull_P(x - 1, 2, alpha); });
  laws.real("Gumbel", ORX_REAL(Gumbel, 0, s, n, r, 1, 2),
            [](double x) { return -std::expm1(-std::exp((x - 1) / 2)); });
}

void add_gaussians(Laws& laws) {
  for (int method : {0, 1, 2})
    laws.real(named("Gaussian", {double(method)}), ORX_REAL(Gaussian, method, s, n, r, 1, 2),
              [](double x) { return gsl_cdf_gaussian_P(x - 1, 2); });
  for (int method : {0, 1})
    laws.real(named("Lognormal", {double(method)}), ORX_REAL(Lognormal, method, s, n, r, 0.5f, 1.5f, 1, 2),
              [](double x) { return gsl_cdf_lognormal_P((x - 1) / 2, 0.5, 1.5); });
}

// Where GSL ends, the first term of the series is enough.
double gamma_below(double x, double alpha) {
  if (x <= 0) return 0;
  return x < 1e-200 ? std::exp(alpha * std::log(x) - std::lgamma(alpha + 1)) : gsl_cdf_gamma_P(x, alpha, 1);
}

void add_gammas(Laws& laws) {
  for (double alpha : {1e-3, 0.05, 0.3, 0.59, 0.6, 0.75, 0.99, 1.0, 1.001, 1.5, 3.0, 40.0, 1e3, 1e6}) {
    // The last digit of a single is coarse beside the deviation of a large gamma number.
    const double grid = std::sqrt(alpha) * 0x1p-24;
    laws.real(
        named("Gamma", {alpha}), ORX_REAL(Gamma, 0, s, n, r, decltype (*r + 0)(alpha), 0, 1),
        [=](double x) { return gamma_below(x, alpha); }, grid + 5e-4);
  }
}

void add_betas(Laws& laws) {
  constexpr double pairs[][2] = {{0.01, 0.01}, {0.01, 0.5}, {0.3, 0.4}, {0.5, 0.5},   {0.5, 0.95}, {0.8, 0.7},
                                 {0.95, 0.99}, {0.5, 3},    {0.01, 50}, {0.99, 1.01}, {0.5, 1e4},  {3, 0.5},
                                 {50, 0.01},   {1.5, 1.2},  {2, 5},     {40, 1.01},   {1e4, 1e4},  {1e4, 2},
                                 {0.5, 1},     {30, 1},     {1, 0.5},   {1, 1e3},     {1, 1}};
  for (const auto& pair : pairs) {
    const double p = pair[0], q = pair[1];
    laws.real(
        named("Beta", {p, q}), ORX_REAL(Beta, 0, s, n, r, decltype (*r + 0)(p), decltype (*r + 0)(q), 0, 1),
        [=](double x) { return gsl_cdf_beta_P(x, p, q); }, 1e-3,
        q < 0.05 ? 0.01 : 0);  // most numbers are rounded to 1
  }
}

// Sums of probabilities, where GSL's distribution functions take whole numbers.
template <class Below>
auto of_counts(const Below& below) {
  return [below](double x) { return x < 0 ? 0 : below(unsigned(x)); };
}

// GSL's binomial distribution function wants the complement of an incomplete beta function near 1.
double binomial_below(double k, double trials, double p) {
  return k < 0 ? 0 : k >= trials ? 1 : gsl_cdf_beta_Q(p, k + 1, trials - k);
}
// For large means, where GSL ends: N. M. Temme's uniform expansion of the incomplete gamma function, SIAM J. Math.
// Anal. 10 (1979), to an error below 1 / mean.
double poisson_below(double k, double mean) {
  if (k < 0) return 0;
  if (mean < 1e6) return gsl_cdf_gamma_Q(mean, k + 1, 1);
  const double a = k + 1, d = (mean - a) / a;
  const double eta = std::copysign(std::sqrt(2 * (d - std::log1p(d))), d);
  const double correction = std::abs(d) < 1e-6 ? -1.0 / 3 : 1 / d - 1 / eta;
  return std::erfc(eta * std::sqrt(a / 2)) / 2 +
         std::exp(-a * eta * eta / 2) / std::sqrt(2 * M_PI * a) * correction;
}
double negative_binomial_below(double k, double a, double p) {
  return k < 0 ? 0 : gsl_cdf_beta_P(p, a, k + 1);
}

void add_counts(Laws& laws) {
  constexpr std::pair<int32_t, double> binomials[] = {
      {1, 0.5},        {20, 0.3},         {20, 0.7},         {99, 0.3},        {100, 0.3},
      {101, 0.7},      {1000, 0.3},       {1000, 0.97},      {60, 0.5},        {1000000, 1e-6},
      {1000000, 3e-5}, {100000000, 0.01}, {INT32_MAX, 1e-9}, {INT32_MAX, 0.3}, {INT32_MAX, 0.5}};
  for (const auto& binomial : binomials) {
    const int32_t trials = binomial.first;
    const double p = binomial.second;
    laws.integer(
        named("Binomial", {double(trials), p}),
        [=](KobStream* s, int n, int32_t* r) { return _kobiRngBinomial(0, s, n, r, trials, p); },
        [=](double x) { return binomial_below(x, trials, p); });
  }
  for (double mean : {1e-3, 0.5, 3.0, 10.0, 26.99, 27.0, 30.5, 50.0, 99.9, 1e3, 1e4, 1e6, 1e8})
    laws.integer(
        named("Poisson", {mean}),
        [=](KobStream* s, int n, int32_t* r) { return _kobiRngPoisson(0, s, n, r, mean); },
        [=](double x) { return poisson_below(x, mean); });
  // Near the law: as far as the tables promise, and what singles add.
  for (double mean : {0.01, 0.5, 0.99, 1.0, 1.5, 3.7, 10.0, 25.0, 63.0, 99.0, 100.0, 1e3, 1e5, 1e7}) {
    laws.integer(
        named("Poisson normal", {mean}),
        [=](KobStream* s, int n, int32_t* r) { return _kobiRngPoisson(1, s, n, r, mean); },
        [=](double x) { return poisson_below(x, mean); }, 1e-4);
    laws.integer(
        named("PoissonV", {mean}),
        [=](KobStream* s, int n, int32_t* r) {
          const std::vector<double> means(static_cast<size_t>(n), mean);
          return _kobiRngPoissonV(0, s, n, r, means.data());
        },
        [=](double x) { return poisson_below(x, mean); }, 1e-4);
  }
  constexpr int32_t urns[][3] = {{200, 40, 50},
                                 {200, 160, 50},
                                 {200, 40, 150},
                                 {200, 150, 150},
                                 {10, 5, 5},
                                 {2000, 400, 500},
                                 {2000, 1600, 500},
                                 {2000, 1600, 1500},
                                 {100000, 50000, 50000},
                                 {1000000, 1000, 300000},
                                 {INT32_MAX, 100000, 1000000000}};
  for (const auto& urn : urns) {
    const int32_t lot = urn[0], sample = urn[1], marked = urn[2];
    laws.integer(
        named("Hypergeometric", {double(lot), double(sample), double(marked)}),
        [=](KobStream* s, int n, int32_t* r) {
          return _kobiRngHypergeometric(0, s, n, r, lot, sample, marked);
        },
        of_counts([=](unsigned k) {
          return gsl_cdf_hypergeometric_P(k, unsigned(marked), unsigned(lot - marked), unsigned(sample));
        }));
  }
  constexpr double negative_binomials[][2] = {{5, 0.5},     {0.1, 0.5},  {0.1, 1e-3}, {0.7, 1e-6}, {1, 0.01},
                                              {1.5, 0.005}, {100, 0.2},  {26, 0.2},   {20, 0.2},   {1e5, 0.5},
                                              {1e5, 0.999}, {2.5, 0.02}, {3, 1e-6}};
  for (const auto& pair : negative_binomials) {
    const double a = pair[0], p = pair[1];
    laws.integer(
        named("Negbinomial", {a, p}),
        [=](KobStream* s, int n, int32_t* r) { return _kobiRngNegbinomial(0, s, n, r, a, p); },
        [=](double x) { return negative_binomial_below(x, a, p); });
  }
}

}  // namespace

std::vector<Law> all_laws() {
  gsl_set_error_handler_off();
  Laws laws;
  add_transforms(laws);
  add_gaussians(laws);
  add_gammas(laws);
  add_betas(laws);
  add_counts(laws);
  return laws.take();
}

Verdict judge(const Law& law, KobStream* stream, int n, int to_a_call) {
  std::vector<double> x(static_cast<size_t>(n));
  for (int done = 0, count; done < n; done += count) {
    count = std::min(n - done, to_a_call);
    if (law.draw(stream, count, x.data() + done) < 0) return {0, "status"};
  }
  for (double value : x)
    if (!std::isfinite(value)) return {0, "finite numbers"};
  std::sort(x.begin(), x.end());
  Least least;
  judge_uniform(transformed(law, x), law.tolerance, least);
  if (law.type == Law::kIntegers && law.tolerance == 0) judge_counts(law, x, least);
  return least.verdict();
}
