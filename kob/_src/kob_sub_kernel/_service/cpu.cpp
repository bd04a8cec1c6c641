// What the processor can do.
#include <cpuid.h>

#include "_service/stream.hpp"

ORX_API int __kobCPUisRDRAND() {
  constexpr unsigned kRdrand = 1u << 30;
  unsigned eax, ebx, ecx, edx;
  return __get_cpuid(1, &eax, &ebx, &ecx, &edx) ? int(ecx & kRdrand) : 0;
}
