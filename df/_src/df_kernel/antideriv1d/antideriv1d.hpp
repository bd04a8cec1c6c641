// The antiderivative of a spline, 0 at the first breakpoint: a spline of one order more over the same breakpoints.
#include "_service/builder.hpp"
#include "_service/evaluator_number.hpp"
#include "_service/polynomial.hpp"

namespace {
using namespace orx::df;

// What the cells before have added up to, with the rounding errors of the sum added apart (M. Pichat, Numer. Math.
// 19, 1972).
class RunningSum {
 public:
  void add(double x) {
    const double next = sum_ + x, taken = next - sum_;
    errors_ += (sum_ - (next - taken)) + (x - taken);
    sum_ = next;
  }
  Real value() const { return Real(sum_ + errors_); }

 private:
  double sum_ = 0, errors_ = 0;
};

template <Partition G>
void write_antiderivative(const Task<Real>* task, Index function, Real* out) {
  const Grid<Real, G> grid(task);
  const auto order = Index(task->splineOrder);
  const Real* c = task->coeffs[function];
  RunningSum before;
  for (Index i = 0; i + 1 < task->size(); ++i, c += order, out += order + 1) {
    for (Index k = 0; k < order; ++k) out[k + 1] = c[k] / Real(k + 1);
    out[0] = 0;
    const Real whole = derivative(out, order + 1, Index(0), grid.h(i));
    out[0] = before.value();
    before.add(whole);
  }
}

}  // namespace

ORX_API int32_t ORX_DF_NAME(Antiderivative1D)(const DFTask* task, int64_t function, Real* coeffs) {
  const auto* t = Task<Real>::of(const_cast<DFTask*>(task));
  if (!t) return ORX_DF_ERROR_TASK;
  const int32_t evaluator = evaluator_number(t, false);
  if (evaluator < 0 || evaluator == kSubbotin || evaluator > kArbitrary) return ORX_DF_ERROR_SPLINE_KIND;
  if (function < 0 || function >= t->funcCount) return ORX_DF_ERROR_INDEX;
  if (!coeffs) return ORX_DF_ERROR_COEFFS;
  if (const int32_t bad = check_spline_data(t, EvaluatorNumber(evaluator))) return bad;
  if (const int32_t bad = check_breakpoints(t)) return bad;
  if (t->uniform())
    write_antiderivative<kUniformGrid>(t, Index(function), coeffs);
  else
    write_antiderivative<kNoUniformGrid>(t, Index(function), coeffs);
  return ORX_DF_OK;
}
