// Sine and cosine, circular and hyperbolic, of doubles in two parts: what complex functions of doubles are made of. They are
// right to 2^-61, and what is made of them to half a unit and a little more.
#pragma once
#include "_complex/waves.hpp"
#include "sin/vdsincos.hpp"
#include "sinh/vdsinh.hpp"

ORX_ISA_BEGIN(orx::tef)

struct WavesOfDoublesData {
  Row<double> sixth = 1 / 6.0, one_by_120 = 1 / 120.0;  // sinh r, |r| <= ln2/256, to 2^-63
};
inline constexpr WavesOfDoublesData kWavesOfDoubles{};

// sinh x and cosh x of |x| <= 700, 0 or not so small that a cube underflows; signs are those of x.
template <class X>
struct SinhCoshInTwo {
  HighLow<X> sinh, cosh;

  explicit SinhCoshInTwo(X x) {
    const auto& d = vdsinh_data;
    const auto& w = kWavesOfDoubles;
    // 1. |x| = n ln2/128 + r + r_lo.
    const X size = magnitude(x);
    const X N = multiply_add(size, d.inv_L, d.shifter), n = N - d.shifter;
    const X first = subtract_product(size, n, d.L_hi), second = n * d.L_lo;
    const X r = first - second, r_lo = (first - r) - second;

    // 2. The halves of e^|x| and e^-|x| at n, their sum and difference, and what all these lack.
    const SpilledWords<X> words(N);
    X row[4];
    gather_rows(
        _tefdSinhHATab[0], [&](int lane) { return words.low(lane) & 127; }, row);
    const X power = scale_from<7>(N);
    const X a = row[0] * power, b = row[1] * bit_xor(power, d.exponent);
    const X a_lo = a * row[2], b_lo = b * row[3];
    const auto C = fast_two_sum(a, b), S = fast_two_sum(a, opposite(b));
    const X C_lo = C.low + (a_lo + b_lo), S_lo = S.low + (a_lo - b_lo);

    // 3. sinh |x| = S cosh r + C sinh r and cosh x = C cosh r + S sinh r, where the large parts of the former are S and C r:
    // it has to be right where x is small, too.
    const X r2 = r * r, c = cosh_rest(r2), s = r_lo + (r * r2) * multiply_add(r2, w.one_by_120, w.sixth);
    const X Cr = C.high * r;
    const auto sum = fast_two_sum(S.high, Cr);
    const X lost = lost_in_product(Factor<X>(C.high), Factor<X>(r), Cr);
    const X sign = bit_and(x, broadcast_bits<X>(kSignBit<double>));
    sinh = {bit_xor(sum.high, sign),
            bit_xor(sum.low + (lost + (S_lo + C_lo * r + (S.high * c + C.high * s))), sign)};
    cosh = fast_two_sum(C.high, S.high * r);
    cosh.low = cosh.low + (C_lo + S_lo * r + (C.high * c + S.high * s));
  }
};

struct WavesOfDoubles {
  static constexpr bool kTinyIsRare = true;
  static constexpr Row<double> kLeast = 0x1p-250, kAnglesFrom = 0x1.fff8p+15;
  static constexpr Row<double> kMost = 700.0, kMostOfTangent = 100.0;

  template <class X>
  static Waves<HighLow<X>> waves(Complex<X> z) {
    const SinhCoshInTwo<X> of(z.re);
    const auto turn = reduce_by_table_steps(magnitude(z.im));
    const SmallSineCosine<X> f(turn);
    const SpilledWords<X> n(turn.N);
    return {normalised(of.sinh), normalised(of.cosh), turned_by(normalised(sine_parts<0>(turn, f, n)), z.im),
            normalised(sine_parts<128>(turn, f, n))};
  }
};

ORX_ISA_END
