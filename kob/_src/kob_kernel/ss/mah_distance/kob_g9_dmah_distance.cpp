#include "mah_distance/mah_distance.hpp"

ORX_API int _kobdSSMahDistance(SSTask* task, long long, long long, const ThreadingServices*) {
  return orx::ss::mah_distance::compute<double>(task);
}
