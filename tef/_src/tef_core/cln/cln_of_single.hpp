// ln z of singles in doubles, right to 2^-40 in each part: what the decimal logarithm and powers of singles are made of.
#pragma once
#include "atan/vdatan.hpp"
#include "cln/cln.hpp"

ORX_ISA_BEGIN(orx::tef)

struct LnOfSingleData {
  Row<double> half = 0.5, two = 2.0;
};
inline constexpr LnOfSingleData kLnOfSingle{};

// Of a number that is moderate and not 0, in doubles: squares of singles are exact.
template <class X>
inline Complex<X> ln_of_single(Complex<X> z) {
  const auto& d = kLnOfSingle;
  const auto sum = two_sum(z.re * z.re, z.im * z.im);
  const auto near_one = complement(outside(sum.high, d.half, d.two));
  const X angle = dAngleLA::of(magnitude(z.im), magnitude(z.re), z.re);
  return {ln_of_sum_near_one<LnDescription, false>(sum.high, keep(near_one, sum.low)) * d.half,
          with_sign_of(angle, z.im)};
}

ORX_ISA_END
