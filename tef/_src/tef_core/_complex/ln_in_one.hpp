// ln z of singles in doubles, right to 2^-40 in each part: what the decimal logarithm and powers of singles are made of.
#pragma once
#include "_complex/carried.hpp"
#include "atan/vdatan.hpp"
#include "cln/cln.hpp"

ORX_ISA_BEGIN(orx::tef)

struct LnInOneData {
  Row<double> half = 0.5, two = 2.0;
};
inline constexpr LnInOneData kLnInOne{};

// ln |z| of a number that is not too small: squares of singles are exact.
template <bool ep, class X>
inline X ln_of_modulus(Complex<X> z) {
  const auto& d = kLnInOne;
  const auto sum = two_sum(z.re * z.re, z.im * z.im);
  const auto near_one = complement(outside(sum.high, d.half, d.two));
  return ln_of_sum_near_one<LnDescription, ep>(sum.high, keep(near_one, sum.low)) * d.half;
}

// Of a number that is moderate and not too small.
template <class X>
inline Complex<X> ln_of(InOne, Complex<X> z) {
  const X angle = dAngleLA::of(magnitude(z.im), magnitude(z.re), z.re);
  return {ln_of_modulus<false>(z), with_sign_of(angle, z.im)};
}

ORX_ISA_END
