#include "missing_vals/missing_vals.hpp"

ORX_API int _kobdSSMissingValues(SSTask* task, long long, long long method, const ThreadingServices*) {
  return orx::ss::missing_vals::compute<double>(task, unsigned(method));
}
