#include "rcov/rcov.hpp"

ORX_API int _kobdSSRobustCovariance(SSTask* task, long long, long long method,
                                    const ThreadingServices* threading) {
  return orx::ss::rcov::compute<double>(task, unsigned(method), threading);
}
