// Akima's cubic: each of the two slopes at an inner breakpoint counts the more, the less the slopes change on its side
// (H. Akima, A new method of interpolation and smooth curve fitting based on local procedures, J. ACM 17, 1970).
#include "_service/local_cubic.h"

namespace {
using namespace orx::df;

constexpr Real kEqualSlopes = Real(1e-10);

Real magnitude(Real x) { return x < 0 ? -x : x; }

struct AkimaRule {
  static constexpr int kReach = 2;
  template <Partition G>
  static constexpr Index kRow = G == UniformGrid ? 39 : 65;

  // Next to an end, where a slope is missing, the change on that side is the one across the breakpoint itself.
  template <bool kAmid, Partition>
  static Real inner(const Task<Real>* task, const Real* m, const Real*, Index first, Index k) {
    const Index i = first + k;
    const Real across = magnitude(m[k] - m[k - 1]);
    const Real left = kAmid || i != 1 ? magnitude(m[k - 1] - m[k - 2]) : across;
    const Real right = kAmid || i != task->size() - 2 ? magnitude(m[k + 1] - m[k]) : across;
    const Real sum = left + right, weighted = (m[k - 1] * right + m[k] * left) / sum;
    return sum < kEqualSlopes ? Real(0.5) * (m[k - 1] + m[k]) : weighted;
  }
};

ORX_DF_LOCAL_FAMILY(Akima, periodic)

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFAkimaCubicSpline1D)(DFTask* task, int64_t, int64_t, const ThreadingServices* threading) {
  const auto* t = Task<Real>::of(task);
  const int32_t boundary = cubic_boundary_number(t, 5);
  if (boundary == ORX_DF_ERROR_BND_COND_KIND && t->bndCondKind == 0)
    return _DispatchAkima[variant_number(t)](t, BoundaryNotSet, threading);
  return boundary < 0 ? boundary : _DispatchAkima[variant_number(t)](t, boundary, threading);
}
