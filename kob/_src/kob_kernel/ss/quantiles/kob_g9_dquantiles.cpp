#include "quantiles/quantiles.hpp"

ORX_API int _kobdSSQuantiles(SSTask* task, long long estimates, long long method,
                             const ThreadingServices* threading) {
  return orx::ss::quantiles::compute<double>(task, unsigned(estimates), unsigned(method), threading);
}
