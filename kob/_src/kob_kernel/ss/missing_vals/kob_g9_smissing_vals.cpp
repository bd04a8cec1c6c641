#include "missing_vals/missing_vals.hpp"

ORX_API int _kobsSSMissingValues(SSTask* task, long long, long long method, const ThreadingServices*) {
  return orx::ss::missing_vals::compute<float>(task, unsigned(method));
}
