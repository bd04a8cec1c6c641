// The kernels of a function in its three classes by one line: ORX_KERNELS(unary, d, Acos) makes entry points of the structs
// dAcosHA, dAcosLA and dAcosEP.
#pragma once
#include "frame/kernel.hpp"

// A level more, so that builds for other instruction sets can rename the codes by macros.
#define ORX_KERNEL_OF_CODE(shape, t, Fn, code, K) ORX_KERNEL_OF(shape, t, Fn, code, K)

#define ORX_KERNELS(shape, t, Fn)                                \
  ORX_KERNEL_OF_CODE(shape, t, Fn, G9HAynn, orx::tef::t##Fn##HA) \
  ORX_KERNEL_OF_CODE(shape, t, Fn, G9LAynn, orx::tef::t##Fn##LA) \
  ORX_KERNEL_OF_CODE(shape, t, Fn, G9EPnnn, orx::tef::t##Fn##EP)
