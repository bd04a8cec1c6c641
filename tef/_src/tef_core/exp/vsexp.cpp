// e^x, single.
#include "exp/vsexp_kernels.hpp"

#include "exp/vdexp.hpp"
#include "frame/classes.hpp"

ORX_ISA_BEGIN(orx::tef)
Vec<float, 1> vsexp_half(Vec<float, 1> x) { return sExpHA::scaled<1>(x); }

int vsexp_cout_rare(const float* a, float* r) {
  const float x = *a;
  const uint32_t bits = bit_cast<uint32_t>(x);
  if ((bits & 0x7F800000) == 0x7F800000) {
    *r = bits == 0xFF800000 ? 0.0f : x * x;
    return StatusOk;
  }
  if (x > 88.72283f) {
    *r = raise_overflow<float>();
    return StatusOverflow;
  }
  if (x < -103.97208f) {
    *r = raise_underflow<float>();
    return StatusUnderflow;
  }

  // In double precision; the conversion rounds once, to a denormal too.
  *r = static_cast<float>(vdexp_moderate(x));
  return x < -87.33654f ? StatusUnderflow : StatusOk;
}

ORX_ISA_END

ORX_KERNELS(unary, s, Exp)
