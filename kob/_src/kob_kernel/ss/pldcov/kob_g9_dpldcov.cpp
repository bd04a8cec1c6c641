#include "pldcov/pldcov.hpp"

using Real = double;
#include "pldcov/kernels.hpp"

ORX_API int _kobdSSPooledCovariance(SSTask* task, long long estimates, long long method,
                                    const ThreadingServices* threading) {
  return compute<Real>(task, unsigned(estimates), unsigned(method), threading, _vSSPldCovThreader);
}
