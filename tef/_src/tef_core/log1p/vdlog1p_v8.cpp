// ln(1 + x), double, for processors without AVX. u = 1 + x, rounded, goes the way of ln, and what the
// rounding lost is added to the reduced argument.
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// x is -1 or below: the rounded sum serves. The routine of ln is made anew here, for processors without AVX.
int vdlog1p_cout_rare(const double* a, double* r) {
  const double u = *a + 1.0;
  return log_cout_rare<LnDescription>(&u, r);
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

// The lanes' high words as signed integers: an ordered comparison of NaN would raise an exception. The sign of x reads
// as that of an integer, and for negative x larger magnitudes are larger integers.
template <class X>
inline auto words_of(X x) {
  return as<int32_t>(bits(x));
}
// Its sign tells whether the lane's high word is above `word`.
template <class X>
inline X high_word_above(X x, int32_t word) {
  return reals<X>(greater(words_of(x), word));
}
// High words: of 2^512, from where on 1 does not matter and the square of the
// reciprocal might underflow; of infinity.
constexpr int32_t kLarge = 0x5FF00000, kInfinity = 0x7FF00000;

// Rare are x up to -1, large x, infinities and NaN.
template <class Log>
struct dLog1p : Kernel<double(double)> {
  template <class X>
  static X rare(X x) {
    const auto words = words_of(x);
    const auto low = words & greater(words, static_cast<int32_t>(0xBFEFFFFF));
    return reals<X>(greater(words, kLarge - 1) | low);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const X infinite = spread_signs(high_word_above(x, kInfinity - 1));
    left.finish(bit_or(unordered(x, x), infinite),
                [&](X special) { return bit_and(special, x) + bit_and(special, x); });
    left.finish(spread_signs(high_word_above(x, kLarge - 1)), [&](X large) {
      const X u = select(large, x, broadcast<X>(0.75));
      return Log::log(u, exponent_field(u));
    });
  }
  static int rare_lane(const double* a, double* r) { return vdlog1p_cout_rare(a, r); }
};

struct dLog1pHA : dLog1p<LogHA<LnDescription>> {
  template <class X>
  static X eval(X x) {
    const Log1pParts<X> p(x);
    // ln(1 + e + t) = ln(1 + e) + t/(1 + e), and e is small
    const X q = LnDescription::polynomial_ha(p.e) + (p.t - p.t * p.e);
    return with_sign_and_underflow_of(log_ha<LnDescription>(p.k, p.R, p.e, q), x);
  }
};
template <bool ep>
struct dLog1pLow : dLog1p<LogLA<LnDescription, ep>> {
  template <class X>
  static X eval(X x) {
    const Log1pParts<X> p(x);
    // The higher terms do without t, whose square might underflow.
    return with_sign_and_underflow_of(
        log_la<LnDescription>(p.k, p.R, p.e + p.t, LnDescription::polynomial_la<ep>(p.e)), x);
  }
};
using dLog1pLA = dLog1pLow<false>;
using dLog1pEP = dLog1pLow<true>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Log1p, V8HAynn, dLog1pHA)
ORX_KERNEL(d, Log1p, V8LAynn, dLog1pLA)
ORX_KERNEL(d, Log1p, V8EPnnn, dLog1pEP)
