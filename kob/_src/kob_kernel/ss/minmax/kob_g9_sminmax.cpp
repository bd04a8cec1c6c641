#include "minmax/minmax.hpp"

ORX_API int _kobsSSMinmax(SSTask* task, long long estimates, long long method, const ThreadingServices*) {
  return orx::ss::minmax::compute<float>(task, unsigned(estimates), unsigned(method));
}
