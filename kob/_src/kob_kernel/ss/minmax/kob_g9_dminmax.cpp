#include "minmax/minmax.hpp"

ORX_API int _kobdSSMinmax(SSTask* task, long long estimates, long long method, const ThreadingServices*) {
  return orx::ss::minmax::compute<double>(task, unsigned(estimates), unsigned(method));
}

ORX_API int __kobdSSJoinMinmax(SSTask* task, const SSTask* other, long long estimates) {
  return orx::ss::minmax::join<double>(task, other, unsigned(estimates));
}
