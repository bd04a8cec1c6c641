// Bessel's cubic: the derivative at an inner breakpoint is that of the parabola through it and its two
// neighbours.
#include "_service/local_cubic.hpp"

namespace {
using namespace orx::df;

struct BesselRule {
  static constexpr int kReach = 1;
  static constexpr Index kRowUnit = 7;

  template <class View, class T = typename View::Number>
  static T inner(const View& v) {
    if constexpr (View::kUniform) return (v.m(-1) + v.m(0)) * Real(0.5);
    return (v.m(-1) * v.h(0) + v.m(0) * v.h(-1)) / (v.h(-1) + v.h(0));
  }
};

ORX_DF_LOCAL_FAMILY(Bessel, periodic)

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFBesselCubicSpline1D)(DFTask* task, int64_t, int64_t,
                                                   const ThreadingServices* threading) {
  return build_local(Task<Real>::of(task), {3, false, false}, _DispatchBessel, threading);
}
