#include "pldcov/pldcov.hpp"

using Real = float;
#include "pldcov/kernels.hpp"

ORX_API int _kobsSSPooledCovariance(SSTask* task, long long estimates, long long method,
                                    const ThreadingServices* threading) {
  return compute<Real>(task, unsigned(estimates), unsigned(method), threading, _vSSPldCovThreader);
}
