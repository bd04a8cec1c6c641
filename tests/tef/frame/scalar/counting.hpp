// Included before all else of kernel files: their kernels count the elements that get to the scalar routine.
#pragma once
#include "frame/kernel.hpp"

extern long scalar_elements;

ORX_ISA_BEGIN(orx::tef)

template <class K>
struct Counting : K {
  template <class... P>
  static int rare_lane(P... p) {
    ++scalar_elements;
    return K::rare_lane(p...);
  }
};
template <class K>
using Counted = std::conditional_t<kHasRareLane<K>, Counting<K>, K>;

ORX_ISA_END

#undef ORX_KERNEL_OF
#define ORX_KERNEL_OF(shape, t, Fn, code, K)                                                    \
  namespace orx::tef::function {                                                                \
  struct t##Fn##_##code {                                                                       \
    static constexpr char _TEF_THISFUNC_NAME[] = "v" #t #Fn;                                    \
  };                                                                                            \
  }                                                                                             \
  ORX_API void orx_tef_kernel_##t##Fn##_##code ORX_TEF_PARAMETERS_##shape(ORX_TEF_REAL_##t, ) { \
    orx::tef::run_kernel<orx::tef::Counted<K>, orx::tef::function::t##Fn##_##code>              \
        ORX_KERNEL_ARGUMENTS_##shape;                                                           \
  }
