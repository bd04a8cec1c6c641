// Products of doubles and what rounding them has lost.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

// A number, and its leading bits and the rest.
template <class X>
struct Factor {
  X value;
  HighLow<X> half;
  explicit Factor(X x) : value(x), half(split(x)) {}
};

// Next to what `product`, the rounded one, lacks: 2^-79 of it may be lost.
template <class X>
inline X lost_in_product(const Factor<X>& x, const Factor<X>& y, X product) {
  return ((x.half.high * y.half.high - product) + (x.half.high * y.half.low + x.half.low * y.half.high)) +
         x.half.low * y.half.low;
}

ORX_ISA_END
