// ln(1 + x), double, for processors without AVX. u = 1 + x, rounded, goes the way of ln, and what the
// rounding lost is added to the reduced argument.
#include "ln/vdln.hpp"

namespace orx::tef {
namespace {

// x is a lane that is -1 or below, large, or NaN: the rounded sum serves.
int vdlog1p_cout_rare(const double* a, double* r) {
  const double u = *a + 1.0;
  return vdln_cout_rare(&u, r);
}

struct dLog1pData {
  Row<double> one = 1.0;
};
constexpr dLog1pData vdlog1p_data{};

// x + 1 taken apart: e of the rounded sum, and t, what e lacks.
template <class X>
struct Log1pParts {
  X k, e, t;
  Indices<X> R;

  explicit Log1pParts(X x) {
    const auto& one = vdlog1p_data.one;
    const X u = x + one;
    const X back = u - x;  // Knuth's error of the sum
    const X lost = (one - back) + (x - (u - back));
    const auto reduced = log_reduce<LnDescription>(log_fraction(u), R);
    e = reduced.e;
    t = lost * (scale_to_fraction(u) * reduced.R);  // in this order nothing of a denormal x is lost
    k = exponent_field(u);
  }

 private:
  // What brings u to its fraction in [2^-10, 2^-9).
  static X scale_to_fraction(X u) {
    const X field = bit_and(u, broadcast_bits<X>(0x7FF0000000000000));
    return reals<X>((uint64_t{2036} << 52) - bits(field));
  }
};

struct dLog1p : Kernel<double(double)> {
  // -1 < x < 2^1000, by integers: an ordered comparison of NaN would raise an exception. The sign of x reads
  // as that of an integer, and for negative x larger magnitudes are larger integers.
  template <class X>
  static X rare(X x) {
    const auto words = as<int32_t>(bits(x));
    return reals<X>(greater(words, 0x7E6FFFFF) | (words & greater(words, static_cast<int32_t>(0xBFEFFFFF))));
  }
  static int rare_lane(const double* a, double* r) { return vdlog1p_cout_rare(a, r); }
};

struct dLog1pHA : dLog1p {
  template <class X>
  static X eval(X x) {
    const Log1pParts<X> p(x);
    // ln(1 + e + t) = ln(1 + e) + t/(1 + e), and e is small
    const X q = LnDescription::polynomial_ha(p.e) + (p.t - p.t * p.e);
    return with_sign_of(log_ha<LnDescription>(p.k, p.R, p.e, q), x);
  }
};
template <bool ep>
struct dLog1pLow : dLog1p {
  template <class X>
  static X eval(X x) {
    const Log1pParts<X> p(x);
    const X e = p.e + p.t;
    return with_sign_of(log_la<LnDescription>(p.k, p.R, e, LnDescription::polynomial_la<ep>(e)), x);
  }
};
using dLog1pLA = dLog1pLow<false>;
using dLog1pEP = dLog1pLow<true>;

}  // namespace
}  // namespace orx::tef

using namespace orx::tef;
ORX_KERNEL(d, Log1p, V8HAynn, dLog1pHA)
ORX_KERNEL(d, Log1p, V8LAynn, dLog1pLA)
ORX_KERNEL(d, Log1p, V8EPnnn, dLog1pEP)
