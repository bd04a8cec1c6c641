#include "peers.hpp"

#include "orx/kob.h"
#ifdef ORX_HAVE_BOOST
#include <boost/random/additive_combine.hpp>
#include <boost/random/linear_congruential.hpp>
#include <boost/random/mersenne_twister.hpp>
#include <boost/random/uniform_01.hpp>
#endif
#ifdef ORX_HAVE_GSL
#include <gsl/gsl_rng.h>
#endif

namespace {

#ifdef ORX_HAVE_BOOST
using Mcg31 = boost::random::linear_congruential_engine<uint32_t, 1132489760, 0, 2147483647>;
using Mcg59 = boost::random::linear_congruential_engine<uint64_t, 302875106592253, 0, uint64_t(1) << 59>;
using Mt2203 = boost::random::mersenne_twister_engine<uint32_t, 32, 69, 34, 5, 0xAF81055F, 12, 0xFFFFFFFF, 7,
                                                      0xDD7EEF80, 15, 0xEFD78000, 18, 1812433253>;

template <class Engine>
void boost_fill(double* r, int n) {
  static Engine engine;
  boost::random::uniform_01<double> uniform;
  for (int i = 0; i < n; ++i) r[i] = uniform(engine);
}
#endif

#ifdef ORX_HAVE_GSL
template <const gsl_rng_type** type>
void gsl_fill(double* r, int n) {
  static gsl_rng* const rng = gsl_rng_alloc(*type);
  for (int i = 0; i < n; ++i) r[i] = gsl_rng_uniform(rng);
}
#endif

}  // namespace

const std::vector<Peer>& peers() {
  static const std::vector<Peer> all = {
#ifdef ORX_HAVE_BOOST
      {KOB_BRNG_MCG31M1, "Boost", "the same", boost_fill<Mcg31>},
      {KOB_BRNG_MCG59, "Boost", "the same", boost_fill<Mcg59>},
      {KOB_BRNG_MRG32K3A, "Boost", "ecuyer1988", boost_fill<boost::random::ecuyer1988>},
      {KOB_BRNG_WH, "Boost", "ecuyer1988", boost_fill<boost::random::ecuyer1988>},
      {KOB_BRNG_R250, "Boost", "mt11213b", boost_fill<boost::random::mt11213b>},
      {KOB_BRNG_MT19937, "Boost", "the same", boost_fill<boost::random::mt19937>},
      {KOB_BRNG_MT2203, "Boost", "the same", boost_fill<Mt2203>},
      {KOB_BRNG_SFMT19937, "Boost", "mt19937", boost_fill<boost::random::mt19937>},
#endif
#ifdef ORX_HAVE_GSL
      {KOB_BRNG_MCG31M1, "GSL", "fishman18", gsl_fill<&gsl_rng_fishman18>},
      {KOB_BRNG_MCG59, "GSL", "rand48", gsl_fill<&gsl_rng_rand48>},
      {KOB_BRNG_MRG32K3A, "GSL", "cmrg", gsl_fill<&gsl_rng_cmrg>},
      {KOB_BRNG_WH, "GSL", "cmrg", gsl_fill<&gsl_rng_cmrg>},
      {KOB_BRNG_R250, "GSL", "the same", gsl_fill<&gsl_rng_r250>},
      {KOB_BRNG_MT19937, "GSL", "the same", gsl_fill<&gsl_rng_mt19937>},
      {KOB_BRNG_MT2203, "GSL", "mt19937", gsl_fill<&gsl_rng_mt19937>},
      {KOB_BRNG_SFMT19937, "GSL", "mt19937", gsl_fill<&gsl_rng_mt19937>},
#endif
  };
  return all;
}
