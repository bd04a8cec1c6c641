#include "quantiles/quantiles.hpp"

ORX_API int _kobsSSQuantiles(SSTask* task, long long estimates, long long method,
                             const ThreadingServices* threading) {
  return orx::ss::quantiles::compute<float>(task, unsigned(estimates), unsigned(method), threading);
}
