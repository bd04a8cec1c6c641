// tanh x, double. |x| = a + r, a the middle of the cell that x lies in, 32 cells to each power of two; with t = tanh r
//
//   tanh |x| = T + (1 - T^2) t / (1 + T t),   T = tanh a.
//
// The second term is a small part of the first, |r| being at most x/64, so that its rounding errors do not count. Below
// 1/16 there is one cell more, whose a is 0.
#include "frame/exceptions.hpp"
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

constexpr int kCells = 264;
// T, 1 - T^2, what T lacks
alignas(64) constexpr double kTanhTable[kCells][4] = {
#include "tanh/vdtanh.inc"
};

struct {
  Row<double> small = 0x1p-4, below_small = 0x1.fffffffffffffp-5;
  Row<double> top = 19.25;  // the result is 1 from 19.0616 on
  // The bits that a cell's arguments share, and the next one, which leads to its middle.
  Row<uint64_t> cell = 0xFFFF800000000000, middle = 0x0000400000000000;
  Row<double> large = 0x1p-180;  // takes r away where it is tiny and its square would underflow
  Row<double> one = 1.0;
  // (tanh r - r) / r^3, |r| <= 1/16: to 2^-66.9 of tanh r, to 2^-55.6 of tanh r and to 2^-32.9 of tanh r. Where r is
  // larger, 1 - T^2 is small.
  Row<double> ha[5] = {-0x1.5555555555554p-2, 0x1.111111110e9ep-3, -0x1.ba1ba18c2215dp-5,
                       0x1.664e8d8bffce6p-6, -0x1.2116332e632cap-7};
  Row<double> la[4] = {-0x1.5555555554b3dp-2, 0x1.11111104cde4ep-3, -0x1.ba1b0d8a62dc9p-5,
                       0x1.64ee3f845ff05p-6};
  Row<double> ep[2] = {-0x1.55553d94a37c9p-2, 0x1.1077722f5ef64p-3};
} constexpr vdtanh_data{};

// The cell of |x|, and tanh r from one of the polynomials.
template <class X>
struct TanhCell {
  X size, t;
  SpilledWords<X> n;

  template <int terms>
  TanhCell(X x, const Row<double> (&c)[terms])
      : size(min(magnitude(x), vdtanh_data.top)), n(max(size, vdtanh_data.below_small)) {
    const auto& d = vdtanh_data;
    const X a = keep(not_below(size, d.small), bit_or(bit_and(size, d.cell), constant<X>(d.middle)));
    const X r = size - a;
    const X q = (r + d.large) - d.large, r2 = q * q;
    t = r + (q * r2) * polynomial(r2, r2 * r2, c);
  }
  int operator()(int lane) const { return (n.high(lane) >> 15) - (((1023 - 4) << 5) - 1); }
};

struct dTanh : Kernel<double(double)> {
  template <class X>
  static auto rare(X x) {
    return unordered(x, x);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    left.finish(left.lanes, bit_and(left.lanes, x + x));
  }
  // With the sign of x, and the exception that belongs to denormals.
  template <class X>
  static X signed_as(X y, X x, X size) {
    raise_underflow_of_denormals(size);
    return with_sign_of(y, x);
  }
};
struct dTanhHA : dTanh {
  template <class X>
  static X eval(X x) {
    const TanhCell<X> f(x, vdtanh_data.ha);
    X row[4];
    gather_rows(kTanhTable[0], f, row);
    const X T = row[0], slope = row[1], T_lo = row[2];
    return signed_as(T + (T_lo + slope * f.t / (vdtanh_data.one + T * f.t)), x, f.size);
  }
};
template <int terms>
struct dTanhLow : dTanh {
  template <class X>
  static X eval(X x) {
    const TanhCell<X> f(x, coefficients());
    X T, slope;
    gather_pairs<4>(kTanhTable[0], f, T, slope);
    return signed_as(T + slope * f.t / (vdtanh_data.one + T * f.t), x, f.size);
  }

 private:
  static constexpr auto& coefficients() {
    if constexpr (terms == 4)
      return vdtanh_data.la;
    else
      return vdtanh_data.ep;
  }
};
using dTanhLA = dTanhLow<4>;
using dTanhEP = dTanhLow<2>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Tanh, G9HAynn, dTanhHA)
ORX_KERNEL(d, Tanh, G9LAynn, dTanhLA)
ORX_KERNEL(d, Tanh, G9EPnnn, dTanhEP)
