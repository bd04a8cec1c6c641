#include "mtx_parametrz/mtx_parametrz.hpp"

ORX_API int _kobdSSCorParametrization(SSTask* task, long long, long long method, const ThreadingServices*) {
  return orx::ss::mtx_parametrz::compute<double>(task, unsigned(method));
}
