// First derivatives for cubics that keep the shape of their data, to be handed to the Hermite builder: between two
// breakpoints such a cubic rises or falls as its data do, and does not overshoot.
#include <algorithm>

#include "_service/task.hpp"

namespace {
using namespace orx::df;

// An inner breakpoint, by its two cells: widths h and slopes m, to the left (0) and to the right (1).
struct Around {
  Real h0, m0, h1, m1;
  bool turns() const { return !(m0 * m1 > 0); }  // an extremum of the data, or next to a flat cell
};
Real magnitude_of(Real x) { return x < 0 ? -x : x; }
Real with_sign(Real size, Real sign) { return sign < 0 ? -size : size; }
Real least_slope(const Around& a) { return std::min(magnitude_of(a.m0), magnitude_of(a.m1)); }

// A weighted harmonic mean of the slopes (F. N. Fritsch, J. Butland, A method for constructing local monotone
// piecewise cubic interpolants, SIAM J. Sci. Stat. Comput. 5, 1984). An end takes the derivative of the parabola
// through three breakpoints, cut where the shape asks for it (C. Moler, Numerical Computing with MATLAB, 2004,
// ch. 3).
struct Pchip {
  static Real inner(const Around& a, Real) {
    if (a.turns()) return 0;
    const Real w0 = 2 * a.h1 + a.h0, w1 = a.h1 + 2 * a.h0;
    return (w0 + w1) / (w0 / a.m0 + w1 / a.m1);
  }
  // h0 and m0 are those of the outer cell.
  static Real end(const Around& a, Real) {
    const Real d = ((2 * a.h0 + a.h1) * a.m0 - a.h0 * a.m1) / (a.h0 + a.h1);
    if (!(d * a.m0 > 0)) return 0;
    return a.turns() && magnitude_of(d) > 3 * magnitude_of(a.m0) ? 3 * a.m0 : d;
  }
};

// The derivative of the parabola through three breakpoints, no greater than twice the lesser slope (M. Steffen, A
// simple method for monotonic interpolation in one dimension, Astron. Astrophys. 239, 1990). An end takes the
// slope of its cell.
struct Steffen {
  static Real inner(const Around& a, Real) {
    if (a.turns()) return 0;
    const Real parabola = (a.m0 * a.h1 + a.m1 * a.h0) / (a.h0 + a.h1);
    return with_sign(2 * std::min(least_slope(a), magnitude_of(parabola) / 2), a.m0);
  }
  static Real end(const Around& a, Real) { return a.m0; }
};

// Derivatives of any origin, cut down to what keeps each cell monotone (J. M. Hyman, Accurate monotonicity
// preserving cubic interpolation, SIAM J. Sci. Stat. Comput. 4, 1983).
struct Hyman {
  static Real cut(Real d, Real m, Real most) {
    return d * m > 0 ? with_sign(std::min(magnitude_of(d), 3 * most), m) : 0;
  }
  static Real inner(const Around& a, Real d) { return a.turns() ? 0 : cut(d, a.m0, least_slope(a)); }
  static Real end(const Around& a, Real d) { return cut(d, a.m0, magnitude_of(a.m0)); }
};

template <class Rule>
void write_slopes(Index n, const Real* x, const Real* y, Real* d) {
  const auto h = [=](Index i) { return x[i + 1] - x[i]; };
  const auto m = [=](Index i) { return (y[i + 1] - y[i]) / h(i); };
  if (n == 2) {  // one cell: a straight line
    d[0] = d[1] = m(0);
    return;
  }
  d[0] = Rule::end({h(0), m(0), h(1), m(1)}, d[0]);
  for (Index i = 1; i + 1 < n; ++i) d[i] = Rule::inner({h(i - 1), m(i - 1), h(i), m(i)}, d[i]);
  d[n - 1] = Rule::end({h(n - 2), m(n - 2), h(n - 3), m(n - 3)}, d[n - 1]);
}

}  // namespace

ORX_API int32_t ORX_DF_NAME(ShapeSlopes1D)(int64_t nx, const Real* x, const Real* y, int64_t rule,
                                           Real* slopes) {
  if (nx < 2 || nx > INT32_MAX) return ORX_DF_ERROR_GRID_SIZE;
  if (!x) return ORX_DF_ERROR_GRID;
  if (!y) return ORX_DF_ERROR_FUNCS;
  if (!slopes) return ORX_DF_ERROR_INT_CONDS;
  switch (rule) {
    case ORX_DF_PCHIP:
      write_slopes<Pchip>(Index(nx), x, y, slopes);
      return ORX_DF_OK;
    case ORX_DF_STEFFEN:
      write_slopes<Steffen>(Index(nx), x, y, slopes);
      return ORX_DF_OK;
    case ORX_DF_HYMAN:
      write_slopes<Hyman>(Index(nx), x, y, slopes);
      return ORX_DF_OK;
    default:
      return ORX_DF_ERROR_METHOD;
  }
}
