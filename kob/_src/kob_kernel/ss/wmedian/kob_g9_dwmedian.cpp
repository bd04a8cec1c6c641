#include "wmedian/wmedian.hpp"

ORX_API int _kobdSSWMedian(SSTask* task, long long, long long, const ThreadingServices*) {
  return orx::ss::wmedian::compute<double>(task);
}
