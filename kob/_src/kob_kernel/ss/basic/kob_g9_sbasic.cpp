#include "basic/basic.hpp"

using Real = float;
#include "basic/variants.hpp"

ORX_API int _kobsSSBasic(SSTask* task, long long estimates, long long method,
                         const ThreadingServices* threading) {
  return compute<Real>(task, unsigned(estimates), unsigned(method), threading, kKernelTables);
}
