// Akima's cubic: each of the two slopes at an inner breakpoint counts the more, the less the slopes change on
// its side (H. Akima, A new method of interpolation and smooth curve fitting based on local procedures, J.
// ACM 17, 1970).
#include "_service/local_cubic.hpp"

namespace {
using namespace orx::df;

constexpr Real kEqualSlopes = Real(1e-10);

struct AkimaRule {
  static constexpr int kReach = 2;
  static constexpr Index kRowUnit = 13;

  // Next to an end, where a slope is missing, the change on that side is the one across the breakpoint
  // itself.
  template <class View, class T = typename View::Number>
  static T inner(const View& v) {
    const T before = v.m(-1), after = v.m(0);
    const T left = magnitude(v.second() ? after - before : before - v.m(-2));
    const T right = magnitude(v.last_but_one() ? after - before : v.m(1) - after);
    const T sum = left + right, mean = (before + after) * Real(0.5);
    return sum < kEqualSlopes ? mean : (before * right + after * left) / sum;
  }
};

ORX_DF_LOCAL_FAMILY(Akima, periodic)

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFAkimaCubicSpline1D)(DFTask* task, int64_t, int64_t,
                                                  const ThreadingServices* threading) {
  return build_local(Task<Real>::of(task), {5, false, true}, _DispatchAkima, threading);
}
