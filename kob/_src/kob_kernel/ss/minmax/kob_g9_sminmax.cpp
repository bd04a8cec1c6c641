#include "minmax/minmax.hpp"

ORX_API int _kobsSSMinmax(SSTask* task, long long estimates, long long method, const ThreadingServices*) {
  return orx::ss::minmax::compute<float>(task, unsigned(estimates), unsigned(method));
}

ORX_API int __kobsSSJoinMinmax(SSTask* task, const SSTask* other, long long estimates) {
  return orx::ss::minmax::join<float>(task, other, unsigned(estimates));
}
