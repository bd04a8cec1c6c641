// tan x of one element, for processors without AVX.
#include "frame/control.hpp"
#include "orx/base/api.hpp"
#include "orx/tef_mode.h"
#include "orx/tef_scalar.h"
#include "tan/vdtan.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// Of finite x: the reduction to |y| <= pi/4, then the method of dTan HA. A quarter of a turn is half of its table.
double _dTan(double x) {
  using X = Vec<double, 1>;
  double y[2];
  const int quadrant = orx_tef_kernel_reduce_pio2d(x, y);
  Turn<X> turn = reduce_by_table_steps(broadcast<X>(y[0]));
  turn.N = turn.N + broadcast<X>(128.0 * quadrant);
  turn.r_lo = turn.r_lo + broadcast<X>(y[1]);
  double lanes[X::kLanes];
  store_vectors(lanes, tangent_of(turn));
  return lanes[0];
}

void report_domain(int i, const double* a, double* r, const char* name) {
  orx_tef_kernel_dError(StatusDomain, i, a, a, r, r, name);
}
void report_domain(int i, const float* a, float* r, const char* name) {
  orx_tef_kernel_sError(StatusDomain, i, a, a, r, r, name);
}

template <class T>
void tangent_of_element(int i, const T* a, T* r, const char* name) {
  const T x = hidden(a[i]);
  if (x - x != 0) {  // raises invalid for infinities
    const bool infinite = x == x;
    r[i] = x - x;
    if (infinite) report_domain(i, a, r, name);
    return;
  }
  const X87Control<kX87Double> guard;
  r[i] = x == 0 ? x : static_cast<T>(_dTan(x));
}

}  // namespace
ORX_ISA_END

using namespace orx::tef;

#define ORX_SCALAR_TANGENT(T, letter)                                                            \
  ORX_API void orx_tef_kernel_##letter##Tan_SC(int i, const T* a, T* r, int, const char* name) { \
    tangent_of_element(i, a, r, name);                                                           \
  }                                                                                              \
  ORX_API void orx_tef_kernel_##letter##Tan_SC_HA(int i, const T* a, T* r, int n) {              \
    orx_tef_kernel_##letter##Tan_SC(i, a, r, n, #letter "Tan_HA");                               \
  }                                                                                              \
  ORX_API void orx_tef_kernel_##letter##Tan_SC_LA(int i, const T* a, T* r, int n) {              \
    orx_tef_kernel_##letter##Tan_SC(i, a, r, n, #letter "Tan_LA");                               \
  }                                                                                              \
  ORX_API void orx_tef_kernel_##letter##Tan_SC_A11(int i, const T* a, T* r, int n) {             \
    orx_tef_kernel_##letter##Tan_SC(i, a, r, n, #letter "Tan_A11");                              \
  }
ORX_SCALAR_TANGENT(double, d)
ORX_SCALAR_TANGENT(float, s)
