#include "rcov/rcov.hpp"

ORX_API int _kobsSSRobustCovariance(SSTask* task, long long, long long method,
                                    const ThreadingServices* threading) {
  return orx::ss::rcov::compute<float>(task, unsigned(method), threading);
}
