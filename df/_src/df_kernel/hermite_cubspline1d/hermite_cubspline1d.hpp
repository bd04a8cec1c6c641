// Hermite's cubic: the caller gives the first derivatives at the inner breakpoints.
#include "_service/local_cubic.hpp"

namespace {
using namespace orx::df;

struct HermiteRule {
  static constexpr int kReach = 1;
  template <Partition G>
  static constexpr Index kRow = G == UniformGrid ? 21 : 35;

  template <class View, class T = typename View::Number>
  static T inner(const View& v) {
    return v.given();
  }
};

ORX_DF_LOCAL_FAMILY(Hermite, periodic_given)

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFHermiteCubicSpline1D)(DFTask* task, int64_t, int64_t,
                                                    const ThreadingServices* threading) {
  const auto* t = Task<Real>::of(task);
  const int32_t boundary = cubic_boundary_number(t, 3);
  return boundary < 0 ? boundary : _DispatchHermite[variant_number(t)](t, boundary, threading);
}
