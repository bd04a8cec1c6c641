#include "wmedian/wmedian.hpp"

ORX_API int _kobsSSWMedian(SSTask* task, long long, long long, const ThreadingServices*) {
  return orx::ss::wmedian::compute<float>(task);
}
