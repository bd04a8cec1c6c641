// Hermite's cubic: the caller gives the first derivatives at the inner breakpoints.
#include "_service/local_cubic.hpp"

namespace {
using namespace orx::df;

struct HermiteRule {
  static constexpr int kReach = 1;
  static constexpr Index kRowUnit = 7;

  template <class View, class T = typename View::Number>
  static T inner(const View& v) {
    return v.given();
  }
};

ORX_DF_LOCAL_FAMILY(Hermite, periodic_given)

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFHermiteCubicSpline1D)(DFTask* task, int64_t, int64_t,
                                                    const ThreadingServices* threading) {
  return build_local(Task<Real>::of(task), {3, true, false}, _DispatchHermite, threading);
}
