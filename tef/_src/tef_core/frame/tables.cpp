// The tables of entry points and costs and the forwarders, made from the list of functions.
#include "mode/mode.hpp"

#define ORX_EXPORTED __attribute__((visibility("default")))

#define ORX_ARGUMENTS_unary (n, a, r)
#define ORX_ARGUMENTS_binary (n, a, b, r)
#define ORX_ARGUMENTS_linearfrac (n, a, b, scalea, shifta, scaleb, shiftb, r)

#define ORX_FORWARD(shape, t, Fn, suffix, index)                               \
  ORX_EXPORTED void _tef##t##Fn##suffix ORX_PARAMETERS_##shape(ORX_REAL_##t) { \
    orx_tef_kernel_##t##Fn##_ttab[index] ORX_ARGUMENTS_##shape;                \
  }
#define ORX_FORWARD_LA_EP_s(shape, Fn) ORX_FORWARD(shape, s, Fn, _21, 0) ORX_FORWARD(shape, s, Fn, _11, 2)
#define ORX_FORWARD_LA_EP_d(shape, Fn) ORX_FORWARD(shape, d, Fn, _50, 0) ORX_FORWARD(shape, d, Fn, _26, 2)

// The tables are writable: a front layer may put an entry of its own in.
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, cost_la, cost_ha, cost_ep)                                 \
  ORX_EXPORTED orx_tef_##t##Fn##_function* orx_tef_kernel_##t##Fn##_ttab[3] = {                           \
      orx_tef_kernel_##t##Fn##_##la, orx_tef_kernel_##t##Fn##_##ha, orx_tef_kernel_##t##Fn##_##ep};       \
  ORX_EXPORTED float orx_tef_kernel_##t##Fn##_ctab[3] = {float(cost_la), float(cost_ha), float(cost_ep)}; \
  ORX_FORWARD(shape, t, Fn, , 1)                                                                          \
  ORX_FORWARD(shape, t, Fn, _HA, 1)                                                                       \
  ORX_FORWARD_LA_EP_##t(shape, Fn)
extern "C" {
#include "functions.def"
}
#undef ORX_FUNCTION
