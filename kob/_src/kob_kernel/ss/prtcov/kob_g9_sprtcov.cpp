#include "prtcov/prtcov.hpp"

ORX_API int _kobsSSPartialCovariance(SSTask* task, long long estimates, long long method,
                                     const ThreadingServices*) {
  return orx::ss::prtcov::compute<float>(task, unsigned(estimates), unsigned(method));
}
