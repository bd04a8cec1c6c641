#include "mah_distance/mah_distance.hpp"

ORX_API int _kobsSSMahDistance(SSTask* task, long long, long long, const ThreadingServices*) {
  return orx::ss::mah_distance::compute<float>(task);
}
