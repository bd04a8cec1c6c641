#include "quasi_peers.hpp"

#include <memory>

#include "orx/kob.h"
#ifdef ORX_HAVE_BOOST
#include <boost/random/niederreiter_base2.hpp>
#include <boost/random/sobol.hpp>
#include <boost/random/uniform_01.hpp>
#endif
#ifdef ORX_HAVE_GSL
#include <gsl/gsl_qrng.h>
#endif

namespace {

#ifdef ORX_HAVE_BOOST
// Engines of 32 bits, as ours are.
template <class Engine>
QuasiPeer boost_peer(unsigned dimension) {
  const auto engine = std::make_shared<Engine>(dimension);
  return {"Boost", [=](double* r, int points) {
            boost::random::uniform_01<double> uniform;
            for (int i = 0; i < points * int(dimension); ++i) r[i] = uniform(*engine);
          }};
}
#endif

#ifdef ORX_HAVE_GSL
QuasiPeer gsl_peer(const gsl_qrng_type* type, unsigned dimension) {
  const std::shared_ptr<gsl_qrng> q(gsl_qrng_alloc(type, dimension), gsl_qrng_free);
  return {"GSL", [=](double* r, int points) {
            for (int i = 0; i < points; ++i) gsl_qrng_get(q.get(), r + i * int(dimension));
          }};
}
#endif

}  // namespace

std::vector<QuasiPeer> quasi_peers(uint32_t id, unsigned dimension) {
  std::vector<QuasiPeer> peers;
  const bool sobol = id == KOB_BRNG_SOBOL;
#ifdef ORX_HAVE_BOOST
  if (sobol)
    peers.push_back(boost_peer<boost::random::sobol_engine<uint32_t, 32>>(dimension));
  else
    peers.push_back(boost_peer<boost::random::niederreiter_base2_engine<uint32_t, 32>>(dimension));
#endif
#ifdef ORX_HAVE_GSL
  if (sobol)
    peers.push_back(gsl_peer(gsl_qrng_sobol, dimension));
  else if (dimension <= 12)
    peers.push_back(gsl_peer(gsl_qrng_niederreiter_2, dimension));
#endif
  return peers;
}
