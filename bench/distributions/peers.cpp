#include "peers.hpp"

#include <boost/random.hpp>
#include <boost/random/beta_distribution.hpp>
#include <boost/random/laplace_distribution.hpp>
#include <random>
#ifdef ORX_HAVE_GSL
#include <gsl/gsl_randist.h>
#include <gsl/gsl_rng.h>
#endif

namespace bench {
namespace {

template <class Engine, class Distribution>
Fill drawn(Distribution distribution) {
  return [engine = Engine(5489), distribution](double* r, int n) mutable {
    for (int i = 0; i < n; ++i) r[i] = double(distribution(engine));
  };
}
template <class Distribution>
Fill of_std(Distribution distribution) {
  return drawn<std::mt19937>(distribution);
}
template <class Distribution>
Fill of_boost(Distribution distribution) {
  return drawn<boost::random::mt19937>(distribution);
}
#ifdef ORX_HAVE_GSL
template <class Draw>
Fill of_gsl(Draw draw) {
  static gsl_rng* const rng = gsl_rng_alloc(gsl_rng_mt19937);
  return [draw](double* r, int n) {
    for (int i = 0; i < n; ++i) r[i] = double(draw(rng));
  };
}
#else
template <class Draw>
Fill of_gsl(Draw) {
  return nullptr;
}
#endif
#define GSL(call) of_gsl([](auto* g) { return call; })

}  // namespace

std::map<std::string, Peers> all_peers() {
  namespace b = boost::random;
  std::map<std::string, Peers> peers;
  peers["Uniform"] = {of_std(std::uniform_real_distribution<>(3, 5)),
                      of_boost(b::uniform_real_distribution<>(3, 5)), GSL(gsl_ran_flat(g, 3, 5))};
  peers["iUniform"] = {of_std(std::uniform_int_distribution<>(-7, 89)),
                       of_boost(b::uniform_int_distribution<>(-7, 89)), GSL(gsl_rng_uniform_int(g, 97))};
  peers["Bernoulli"] = {of_std(std::bernoulli_distribution(0.3)), of_boost(b::bernoulli_distribution<>(0.3)),
                        GSL(gsl_ran_bernoulli(g, 0.3))};
  peers["Geometric"] = {of_std(std::geometric_distribution<>(0.3)),
                        of_boost(b::geometric_distribution<>(0.3)), GSL(gsl_ran_geometric(g, 0.3))};
  const Peers gaussian = {of_std(std::normal_distribution<>(1, 2)), of_boost(b::normal_distribution<>(1, 2)),
                          GSL(gsl_ran_gaussian_ziggurat(g, 2))};
  for (const char* method : {"Box-Muller", "Box-Muller 2", "ICDF"})
    peers[std::string("Gaussian ") + method] = gaussian;
  peers["Lognormal"] = {of_std(std::lognormal_distribution<>(0, 0.5)),
                        of_boost(b::lognormal_distribution<>(0, 0.5)), GSL(gsl_ran_lognormal(g, 0, 0.5))};
  peers["Exponential"] = {of_std(std::exponential_distribution<>(0.5)),
                          of_boost(b::exponential_distribution<>(0.5)), GSL(gsl_ran_exponential(g, 2))};
  peers["Cauchy"] = {of_std(std::cauchy_distribution<>(1, 2)), of_boost(b::cauchy_distribution<>(1, 2)),
                     GSL(gsl_ran_cauchy(g, 2))};
  peers["Laplace"] = {nullptr, of_boost(b::laplace_distribution<>(1, 2)), GSL(gsl_ran_laplace(g, 2))};
  peers["Rayleigh"] = {nullptr, of_boost(b::weibull_distribution<>(2, 2)), GSL(gsl_ran_rayleigh(g, 2))};
  peers["Weibull"] = {of_std(std::weibull_distribution<>(1.5, 2)),
                      of_boost(b::weibull_distribution<>(1.5, 2)), GSL(gsl_ran_weibull(g, 2, 1.5))};
  peers["Gumbel"] = {of_std(std::extreme_value_distribution<>(1, 2)),
                     of_boost(b::extreme_value_distribution<>(1, 2)), GSL(gsl_ran_gumbel1(g, 1, 2))};
#define GAMMA(branch, alpha)                                             \
  peers["Gamma " branch] = {of_std(std::gamma_distribution<>(alpha, 2)), \
                            of_boost(b::gamma_distribution<>(alpha, 2)), GSL(gsl_ran_gamma(g, alpha, 2))};
  GAMMA("alpha > 1", 3.5)
  GAMMA("alpha = 1", 1)
  GAMMA("0.6 <= alpha < 1", 0.75)
  GAMMA("alpha < 0.6", 0.3)
#undef GAMMA
#define BETA(branch, p, q) \
  peers["Beta " branch] = {nullptr, of_boost(b::beta_distribution<>(p, q)), GSL(gsl_ran_beta(g, p, q))};
  BETA("p, q < 1, far below", 0.3, 0.4)
  BETA("p, q < 1", 0.8, 0.7)
  BETA("p < 1 < q", 0.5, 3)
  BETA("q < 1 < p", 3, 0.5)
  BETA("p, q > 1", 2.5, 4)
  BETA("q = 1", 0.5, 1)
  BETA("p = 1", 1, 0.5)
  BETA("p = q = 1", 1, 1)
#undef BETA
#define BINOMIAL(branch, trials)                                                  \
  peers["Binomial " branch] = {of_std(std::binomial_distribution<>(trials, 0.3)), \
                               of_boost(b::binomial_distribution<>(trials, 0.3)), \
                               GSL(gsl_ran_binomial(g, 0.3, trials))};
  BINOMIAL("fewer than 30", 20)
  BINOMIAL("30 or more", 1000)
#undef BINOMIAL
#define POISSON(branch, mean)                                            \
  peers["Poisson " branch] = {of_std(std::poisson_distribution<>(mean)), \
                              of_boost(b::poisson_distribution<>(mean)), GSL(gsl_ran_poisson(g, mean))};
  POISSON("mean < 27", 10)
  POISSON("mean >= 27", 50)
  POISSON("mean = 1000", 1000)
  POISSON("normal, mean < 1", 0.5)
  POISSON("normal, mean < 100", 50)
  POISSON("normal, mean >= 100", 1000)
#undef POISSON
  peers["Hypergeometric mode < 40"] = {nullptr, nullptr, GSL(gsl_ran_hypergeometric(g, 50, 150, 40))};
  peers["Hypergeometric mode >= 40"] = {nullptr, nullptr, GSL(gsl_ran_hypergeometric(g, 500, 1500, 400))};
  peers["Negbinomial few"] = {of_std(std::negative_binomial_distribution<>(5, 0.5)),
                              of_boost(b::negative_binomial_distribution<>(5, 0.5)),
                              GSL(gsl_ran_negative_binomial(g, 0.5, 5))};
  peers["Negbinomial many"] = {of_std(std::negative_binomial_distribution<>(100, 0.2)),
                               of_boost(b::negative_binomial_distribution<>(100, 0.2)),
                               GSL(gsl_ran_negative_binomial(g, 0.2, 100))};
  peers["Negbinomial a < 1, long tail"] = {nullptr, nullptr, GSL(gsl_ran_negative_binomial(g, 0.001, 0.1))};
  return peers;
}

Peers poisson_peers(const std::vector<double>& means) {
  const auto each = [means](auto engine, auto draw) -> Fill {
    return [=](double* r, int n) mutable {
      for (int i = 0; i < n; ++i) r[i] = double(draw(engine, means[size_t(i)]));
    };
  };
  Peers peers;
  peers.std =
      each(std::mt19937(5489), [](auto& g, double mean) { return std::poisson_distribution<>(mean)(g); });
  peers.boost = each(boost::random::mt19937(5489),
                     [](auto& g, double mean) { return boost::random::poisson_distribution<>(mean)(g); });
#ifdef ORX_HAVE_GSL
  peers.gsl =
      each(gsl_rng_alloc(gsl_rng_mt19937), [](auto* g, double mean) { return gsl_ran_poisson(g, mean); });
#endif
  return peers;
}

}  // namespace bench
