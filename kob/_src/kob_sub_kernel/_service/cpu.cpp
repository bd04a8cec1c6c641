// What the processor can do.
#include <cpuid.h>

#include "orx/base/api.hpp"
#include "orx/kob.h"

ORX_API int __kobCPUisRDRAND() {
  constexpr unsigned rdrand = 1u << 30;
  unsigned eax, ebx, ecx, edx;
  return __get_cpuid(1, &eax, &ebx, &ecx, &edx) ? int(ecx & rdrand) : 0;
}
