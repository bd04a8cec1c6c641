// Where a spline, or a derivative of it, takes a value.
#include "_service/builder.hpp"
#include "_service/evaluator_number.hpp"
#include "_service/polynomial.hpp"

namespace {
using namespace orx::df;

int sign_of(double x) { return (x > 0) - (x < 0); }

// A polynomial of degree 3 at most.
struct Polynomial {
  double c[ORX_DF_CUBIC];
  int degree;

  double at(double t) const {
    double sum = 0;
    for (int k = degree; k >= 0; --k) sum = sum * t + c[k];
    return sum;
  }
  Polynomial slope() const {
    Polynomial d{{}, degree - 1};
    for (int k = 1; k <= degree; ++k) d.c[k - 1] = k * c[k];
    return d;
  }
  bool zero() const {
    bool all = true;
    for (int k = 0; k <= degree; ++k) all &= c[k] == 0;
    return all;
  }
  // 0 where the value is no more than rounding can make.
  int sign(double t) const {
    constexpr double rounding = 0x1p-50;
    double size = 0;
    for (int k = degree; k >= 0; --k) size = size * magnitude(t) + magnitude(c[k]);
    const double value = at(t);
    return magnitude(value) <= rounding * size ? 0 : sign_of(value);
  }
};

// The root in (a, b), over which the polynomial rises or falls through 0: Newton's steps, and halving where they
// leave what is left of the interval.
double root_between(const Polynomial& p, double a, double b) {
  constexpr int enough = 200;
  const Polynomial slope = p.slope();
  const bool rises = p.at(a) < 0;
  double t = a + (b - a) / 2;
  for (int i = 0; i < enough && a < t && t < b; ++i) {
    const double value = p.at(t);
    if (value == 0) break;
    ((value < 0) == rises ? a : b) = t;
    const double next = t - value / slope.at(t);
    if (next == t) break;
    t = a < next && next < b ? next : a + (b - a) / 2;
  }
  return t;
}

// The roots in [low, high], ascending; the polynomial's turns part it into pieces that rise or fall. Returns how
// many there are; one that is 0 everywhere has its two ends.
int roots_within(const Polynomial& p, double low, double high, double* roots) {
  if (p.zero()) {
    roots[0] = low, roots[1] = high;
    return 2;
  }
  double points[ORX_DF_CUBIC + 2] = {low};
  int n = 1, found = 0;
  if (p.degree > 1) n += roots_within(p.slope(), low, high, points + 1);
  points[n++] = high;
  for (int i = 0; i < n; ++i) {
    const int sign = p.sign(points[i]);
    if (i > 0 && sign * p.sign(points[i - 1]) < 0)
      roots[found++] = root_between(p, points[i - 1], points[i]);
    else if (sign == 0 && (found == 0 || roots[found - 1] < points[i]))
      roots[found++] = points[i];
  }
  return found;
}

// The caller's array takes what it has room for; all are counted. One that two cells share counts once.
class Sites {
 public:
  Sites(Real* sites, int64_t room) : sites_(sites), room_(room) {}
  void add(Real site) {
    if (count_ > 0 && !(site > latest_)) return;
    if (count_ < room_) sites_[count_] = site;
    latest_ = site;
    ++count_;
  }
  int64_t count() const { return count_; }

 private:
  Real* sites_;
  int64_t room_, count_ = 0;
  Real latest_ = 0;
};

// The derivative of the cell with coefficients c, less the level.
Polynomial derivative_less(const Real* c, int order, int derivative, double level) {
  Polynomial p{{}, order - 1 - derivative};
  for (int k = 0; k <= p.degree; ++k) {
    p.c[k] = double(c[k + derivative]);
    for (int j = 0; j < derivative; ++j) p.c[k] *= k + derivative - j;
  }
  p.c[0] -= level;
  return p;
}

struct Question {
  Index function;
  int derivative;
  Real level, from, to;
};

template <Partition G>
int64_t find_roots(const Task<Real>* task, const Question& q, Sites sites) {
  const Grid<Real, G> grid(task);
  const auto order = int(task->splineOrder);
  int end_before = 0;  // the sign at the right end of the cell before
  if (!(q.from <= q.to)) return 0;
  for (Index i = 0; i + 1 < task->size(); ++i) {
    const Real x = grid.x(i), next = grid.x(i + 1);
    if (next < q.from) continue;
    if (!(x <= q.to)) break;
    const auto p =
        derivative_less(task->coeffs[q.function] + i * order, order, q.derivative, double(q.level));
    const double width = double(next) - double(x);
    const double low = std::max(double(q.from) - double(x), 0.0),
                 high = std::min(double(q.to) - double(x), width);
    // A derivative that jumps may pass the level between two cells.
    if (low == 0 && end_before * p.sign(0) < 0) sites.add(x);
    double roots[ORX_DF_CUBIC + 2];
    const int n = roots_within(p, low, high, roots);
    for (int k = 0; k < n; ++k) sites.add(roots[k] == width ? next : Real(double(x) + roots[k]));
    end_before = p.sign(width);
  }
  return sites.count();
}

}  // namespace

ORX_API int32_t ORX_DF_NAME(Roots1D)(const DFTask* task, int64_t function, int64_t derivative, Real level,
                                     Real from, Real to, int64_t room, Real* sites, int64_t* count) {
  const auto* t = Task<Real>::of(const_cast<DFTask*>(task));
  if (!t) return ORX_DF_ERROR_TASK;
  const int32_t evaluator = evaluator_number(t, false);
  if (evaluator < kLinear || evaluator > kCubic) return ORX_DF_ERROR_SPLINE_KIND;
  if (function < 0 || function >= t->funcCount) return ORX_DF_ERROR_INDEX;
  if (derivative < 0 || derivative >= t->splineOrder) return ORX_DF_ERROR_METHOD;
  if (!count || (room > 0 && !sites)) return ORX_DF_ERROR_INTERPOLATION;
  if (const int32_t bad = check_spline_data(t, EvaluatorNumber(evaluator))) return bad;
  if (const int32_t bad = check_breakpoints(t)) return bad;
  const Question q{Index(function), int(derivative), level, from, to};
  const Sites found(sites, std::max<int64_t>(room, 0));
  *count = t->uniform() ? find_roots<kUniformGrid>(t, q, found) : find_roots<kNoUniformGrid>(t, q, found);
  return ORX_DF_OK;
}
