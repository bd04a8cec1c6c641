// The tables of entry points and costs and the forwarders, made from the list of functions.
#include "orx/tef.h"

#define ORX_EXPORTED __attribute__((visibility("default")))

// What a forwarder passes on: its own arguments and, where elements are packed or unpacked, the flag that asks
// for work in 32 bits.
#define ORX_ARGUMENTS_unary (n, a, r)
#define ORX_ARGUMENTS_from_real (n, a, r)
#define ORX_ARGUMENTS_to_real (n, a, r)
#define ORX_ARGUMENTS_binary (n, a, b, r)
#define ORX_ARGUMENTS_two_results (n, a, r1, r2)
#define ORX_ARGUMENTS_scalar_second (n, a, b, r)
#define ORX_ARGUMENTS_complex_scalar_second (n, a, b_re, b_im, r)
#define ORX_ARGUMENTS_linearfrac (n, a, b, scalea, shifta, scaleb, shiftb, r)
#define ORX_ARGUMENTS_pack_strided (n, a, stride, y, 1)
#define ORX_ARGUMENTS_unpack_strided (n, a, y, stride, 1)
#define ORX_ARGUMENTS_pack_selected (n, a, selection, y, 1)
#define ORX_ARGUMENTS_unpack_selected (n, a, y, selection, 1)

#define ORX_FORWARD(shape, t, Fn, suffix, index)                                         \
  ORX_EXPORTED void _tef##t##Fn##suffix ORX_TEF_PARAMETERS_##shape(ORX_TEF_REAL_##t, ) { \
    orx_tef_kernel_##t##Fn##_ttab[index] ORX_ARGUMENTS_##shape;                          \
  }
#define ORX_FORWARD_LA_EP_s(shape, t, Fn) ORX_FORWARD(shape, t, Fn, _21, 0) ORX_FORWARD(shape, t, Fn, _11, 2)
#define ORX_FORWARD_LA_EP_d(shape, t, Fn) ORX_FORWARD(shape, t, Fn, _50, 0) ORX_FORWARD(shape, t, Fn, _26, 2)
#define ORX_FORWARD_LA_EP_c ORX_FORWARD_LA_EP_s
#define ORX_FORWARD_LA_EP_z ORX_FORWARD_LA_EP_d

// The tables are writable: a front layer may put an entry of its own in.
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, cost_la, cost_ha, cost_ep)                                 \
  ORX_EXPORTED orx_tef_##t##Fn##_kernel* orx_tef_kernel_##t##Fn##_ttab[3] = {                             \
      orx_tef_kernel_##t##Fn##_##la, orx_tef_kernel_##t##Fn##_##ha, orx_tef_kernel_##t##Fn##_##ep};       \
  ORX_EXPORTED float orx_tef_kernel_##t##Fn##_ctab[3] = {float(cost_la), float(cost_ha), float(cost_ep)}; \
  ORX_FORWARD(shape, t, Fn, , 1)                                                                          \
  ORX_FORWARD(shape, t, Fn, _HA, 1)                                                                       \
  ORX_FORWARD_LA_EP_##t(shape, t, Fn)
extern "C" {
#include "orx/tef_functions.def"
}
#undef ORX_FUNCTION
