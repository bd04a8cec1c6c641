#include "basic/join.hpp"

using Real = float;
#include "basic/variants.hpp"

ORX_API int _kobsSSBasic(SSTask* task, long long estimates, long long method,
                         const ThreadingServices* threading) {
  return compute<Real>(task, unsigned(estimates), unsigned(method), threading, kKernelTables);
}

ORX_API int __kobsSSJoinBasic(SSTask* task, const SSTask* other, long long estimates, long long method) {
  return join<Real>(task, other, unsigned(estimates), unsigned(method), kKernelTables);
}
