#include "squantiles/squantiles.hpp"

ORX_API int _kobsSSStreamQuantiles(SSTask* task, long long estimates, long long method,
                                   const ThreadingServices* threading) {
  (void)estimates;
  return orx::ss::squantiles::compute<float>(task, unsigned(method), threading);
}
