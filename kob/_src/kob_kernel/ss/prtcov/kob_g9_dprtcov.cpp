#include "prtcov/prtcov.hpp"

ORX_API int _kobdSSPartialCovariance(SSTask* task, long long estimates, long long method,
                                     const ThreadingServices*) {
  return orx::ss::prtcov::compute<double>(task, unsigned(estimates), unsigned(method));
}
