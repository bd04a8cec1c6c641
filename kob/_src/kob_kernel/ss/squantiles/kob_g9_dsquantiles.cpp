#include "squantiles/squantiles.hpp"

ORX_API int _kobdSSStreamQuantiles(SSTask* task, long long estimates, long long method,
                                   const ThreadingServices* threading) {
  (void)estimates;
  return orx::ss::squantiles::compute<double>(task, unsigned(method), threading);
}
