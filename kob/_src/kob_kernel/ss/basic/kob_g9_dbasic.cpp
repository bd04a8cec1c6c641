#include "basic/basic.hpp"

using Real = double;
#include "basic/variants.hpp"

ORX_API int _kobdSSBasic(SSTask* task, long long estimates, long long method,
                         const ThreadingServices* threading) {
  return compute<Real>(task, unsigned(estimates), unsigned(method), threading, kKernelTables);
}
