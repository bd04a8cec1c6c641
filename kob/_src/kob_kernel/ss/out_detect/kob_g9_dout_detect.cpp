#include "out_detect/out_detect.hpp"

ORX_API int _kobdSSOutliersDetection(SSTask* task, long long, long long method,
                                     const ThreadingServices* threading) {
  return orx::ss::out_detect::compute<double>(task, unsigned(method), threading);
}
