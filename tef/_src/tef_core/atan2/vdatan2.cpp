// The angle of the point (x, y), double.
#include "atan/vdatan.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct dAtan2Data {
  Row<double> low = 0x1p-60, high = 0x1p+60;
  Row<double> lowest = 0x1p-900, up = 0x1p+200;
  Row<double> one = 1.0, infinity = std::numeric_limits<double>::infinity();
  Row<double> quarter = 0x1.921fb54442d18p+0, half_turn = 0x1.921fb54442d18p+1;
};
inline constexpr dAtan2Data vdatan2_data{};

// The sizes of coordinates, of 1 in lanes that are not asked for.
template <class X>
struct Sizes {
  X y, x;

  Sizes(X which, X point_y, X point_x)
      : y(select(which, magnitude(point_y), constant<X>(vdatan2_data.one))),
        x(select(which, magnitude(point_x), constant<X>(vdatan2_data.one))) {}

  // One of them is 0 or below 2^-60 of the other: the angle is y/x, pi/2 or pi.
  X near_axis() const {
    constexpr uint64_t exponent = uint64_t{60} << 52;
    const X smaller = min(y, x), larger = max(y, x);
    return bit_or(less(smaller, reals<X>(bits(larger) - exponent)), equal(smaller, X{}));
  }

  // Others of any size become moderate. What is infinite counts as 1 beside 0; else a power of two, exactly, gives the
  // larger the size 2^20.
  void make_moderate() {
    const auto& d = vdatan2_data;
    const X one = constant<X>(d.one);
    const auto infinite = equal(max(y, x), d.infinity);
    y = select(infinite, keep(equal(y, d.infinity), one), y);
    x = select(infinite, keep(equal(x, d.infinity), one), x);
    scale_by(select(less(max(y, x), d.lowest), constant<X>(d.up), one));
    constexpr uint64_t field = uint64_t{0x7FF} << 52;
    scale_by(reals<X>((uint64_t{2066} << 52) - (bits(max(y, x)) & field)));
  }

 private:
  void scale_by(X factor) {
    y = y * factor;
    x = x * factor;
  }
};

template <class Method>
struct dAtan2Kernel : Kernel<double(double, double)> {
  template <class X>
  static auto rare(X y, X x) {
    const auto& d = vdatan2_data;
    return bit_or(outside(magnitude(y), d.low, d.high), outside(magnitude(x), d.low, d.high));
  }
  template <class X>
  static X eval(X y, X x) {
    return with_sign_of(angle(magnitude(y), magnitude(x), x), y);
  }
  template <class X, class Left>
  static void finish(X y, X x, Left& left) {
    const auto nan = unordered(y, x);
    left.finish(nan, [&](X which) { return keep(which, y) + keep(which, x); });
    const Sizes<X> sizes(left.lanes, y, x);
    left.finish(sizes.near_axis(), [&](X) { return with_sign_of(axis(sizes, x), y); });
    left.finish(left.lanes, [&](X which) {
      Sizes<X> others(which, y, x);
      others.make_moderate();
      return with_sign_of(angle(others.y, others.x, x), y);
    });
  }

 private:
  // The angle near an axis; x counts by its sign. Ahead it may be denormal.
  template <class X>
  static X axis(const Sizes<X>& sizes, X x) {
    const auto& d = vdatan2_data;
    const X one = constant<X>(d.one);
    const auto behind = spread_signs(x), steep = less(sizes.x, sizes.y);
    const auto ahead = bit_andnot(bit_or(behind, steep), not_equal(sizes.x, X{}));
    const X quotient = exact_result(keep(ahead, sizes.y) / select(ahead, sizes.x, one));
    return select(steep, constant<X>(d.quarter), select(behind, constant<X>(d.half_turn), quotient));
  }
  template <class X>
  static X angle(X size_y, X size_x, X x) {
    return Method::angle(min(size_y, size_x), max(size_y, size_x), Octant<X>(less(size_x, size_y), x));
  }
};
using dAtan2HA = dAtan2Kernel<AngleHA>;
using dAtan2LA = dAtan2Kernel<AngleLA>;
using dAtan2EP = dAtan2Kernel<AngleEP>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL_OF(binary, d, Atan2, G9HAynn, dAtan2HA)
ORX_KERNEL_OF(binary, d, Atan2, G9LAynn, dAtan2LA)
ORX_KERNEL_OF(binary, d, Atan2, G9EPnnn, dAtan2EP)
