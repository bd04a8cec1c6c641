// The angle of a point from that of its image in the octant 0 <= y <= x.
//
// A method has the type Octant<X>, made of the masks that tell where the point was, and angle(y, x, octant): the angle of
// the point, y and x being the image's coordinates.
#pragma once
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)

template <class Method>
struct Angle {
  // Of the point (x, y), both positive.
  template <class X>
  static X of(X y, X x) {
    return Method::angle(min(y, x), max(y, x), typename Method::template Octant<X>(less(x, y)));
  }
  // Of (-x, y) where `sign` has a minus.
  template <class X>
  static X of(X y, X x, X sign) {
    return Method::angle(min(y, x), max(y, x), typename Method::template Octant<X>(less(x, y), sign));
  }
};

ORX_ISA_END
