#include "minmax/minmax.hpp"

ORX_API int _kobdSSMinmax(SSTask* task, long long estimates, long long method, const ThreadingServices*) {
  return orx::ss::minmax::compute<double>(task, unsigned(estimates), unsigned(method));
}
