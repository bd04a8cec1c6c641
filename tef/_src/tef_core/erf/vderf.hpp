// erf x: by the series about a point of a grid, with erf and its derivative there from a table.
#pragma once
#include "erf/error_integral.hpp"

namespace orx::tef {
// erf a and 2/sqrt(pi) e^(-a^2) for a = j/128, and what the first lacks
extern const double kErfTable[768][2];
extern const double _imldErfHATab[768];
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dErfData {
  Row<double> last = 0x1.7f8p+2;  // 767/128: from here on the result is 1
  Row<double> grid_from =
      0x1.4p-6;  // smaller arguments go by the series about 0, and x itself is the large part
  Row<uint64_t> power = 0xFFF0000000000000;
  Row<double> slope_less_1 = 0x1.06eba8214db69p-3;  // 2/sqrt(pi) - 1
  Row<double> slope_lacks = -0x1.961690a74d8ep-57;  // what that rounds off, of 2/sqrt(pi)
  // Coefficients of the series: t^2 .. t^5; u .. u t^3; u^2, u^2 t, u^3, the last with most of u^4/216
  // where the series is about 0. What is left out is below 2^-56 of erf x.
  Row<double> t[4] = {2.0 / 3, -1.0 / 3, 2.0 / 15, -2.0 / 45};
  Row<double> u[4] = {-1.0 / 3, 1.0 / 2, -2.0 / 5, 2.0 / 9};
  Row<double> uu[3] = {1.0 / 10, -1.0 / 6, -1.0 / 42 + 0.89 * 0x1.4p-6 * 0x1.4p-6 / 216};
};
inline constexpr dErfData vderf_data{};

struct dErf : Kernel<double(double)> {
  // Tiny numbers and zeros, and NaN.
  template <class X>
  static auto rare(X x) {
    return outside(magnitude(x), kTiny, kInfinity);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(less(magnitude(x), kTiny), [&](X tiny) {
      return tiny_product(bit_and(tiny, x), 0x1.20dd750429b6dp+0, 0x1.1ae3a914fed8p-56);
    });
    left.finish(unordered(x, x), [&](X nan) { return bit_and(nan, x) + bit_and(nan, x); });
  }

 protected:
  static constexpr Row<double> kTiny = 0x1p-250, kInfinity = __builtin_inf();

  // The table's row for x, its values, and the step from there.
  template <class X>
  struct Step {
    SpilledWords<X> row;
    X d, t, u, E, D;

    // The row is that of `rounded`, which is x or, for x that are to go by row 0, 0.
    Step(X x, X rounded) : row(rounded + kErfGridShifter) {
      const X a = (rounded + kErfGridShifter) - kErfGridShifter;
      d = x - a;
      t = a * d;
      u = d * d;
      gather_pairs(
          kErfTable[0], [&](int lane) { return row.low(lane); }, E, D);
    }
  };
};

struct dErfHA : dErf {
  template <class X>
  static X eval(X x) {
    const auto& c = vderf_data;
    // 1. The point of the grid.
    const X size = min(magnitude(x), c.last);
    const auto by_grid = not_below(size, c.grid_from);
    const Step<X> s(size, keep(by_grid, size));
    const X low = gather<X>(_imldErfHATab, [&](int lane) { return s.row.low(lane); });

    // 2. The series.
    const X t = s.t, u = s.u, t2 = t * t;
    const X A = multiply_add(t2, multiply_add(t, c.t[3], c.t[2]), multiply_add(t, c.t[1], c.t[0]));
    const X B = multiply_add(t2, multiply_add(t, c.u[3], c.u[2]), multiply_add(t, c.u[1], c.u[0]));
    const X C = multiply_add(u, c.uu[2], multiply_add(t, c.uu[1], c.uu[0]));
    const X g = multiply_add(t2, A, multiply_add(u, multiply_add(u, C, B), c.slope_lacks - t));

    // 3. The power of two below D, 1 where it matters, times d is exact.
    const X power = bit_and(s.D, c.power);
    const X rest = select(by_grid, s.D - power, constant<X>(c.slope_less_1));
    const auto sum = fast_two_sum(s.E, power * s.d);
    const X y = sum.high + (sum.low + (low + (rest * s.d + (s.D * s.d) * g)));
    return with_sign_of(y, x);
  }
};

template <bool ep>
struct dErfLow : dErf {
  template <class X>
  static X eval(X x) {
    const auto& c = vderf_data;
    const X size = min(magnitude(x), c.last);
    // Nothing may cancel in LA: the points next to 0 are left out.
    const Step<X> s(size, ep ? size : keep(not_below(size, c.grid_from), size));
    const X t = s.t, u = s.u;
    X g;
    if constexpr (ep) {  // to 2^-28 of erf x
      g = multiply_add(t * t, c.t[0], multiply_subtract(u, c.u[0], t));
    } else {  // to 2^-56
      const X t2 = t * t;
      const X A = multiply_add(t2, multiply_add(t, c.t[3], c.t[2]), multiply_add(t, c.t[1], c.t[0]));
      const X B = multiply_add(t2, multiply_add(t, c.u[3], c.u[2]), multiply_add(t, c.u[1], c.u[0]));
      const X C = multiply_add(u, c.uu[2], multiply_add(t, c.uu[1], c.uu[0]));
      g = multiply_add(t2, A, multiply_subtract(u, multiply_add(u, C, B), t));
    }
    const X Dd = s.D * s.d;
    return with_sign_of(s.E + multiply_add(Dd, g, Dd), x);
  }
};

ORX_ISA_END
