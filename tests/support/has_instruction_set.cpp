// Ends the program before anything else in it runs where the processor lacks the instruction set ORX_TEST_ISA, for
// which parts of it are compiled.
#include <unistd.h>

#include <cstdio>

#define STRING_OF(x) #x
#define NAME_OF(x) STRING_OF(x)

namespace {

[[maybe_unused]] bool processor_has_sse3() { return __builtin_cpu_supports("sse3"); }
[[maybe_unused]] bool processor_has_avx() { return __builtin_cpu_supports("avx"); }
[[maybe_unused]] bool processor_has_avx2() {
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}
[[maybe_unused]] bool processor_has_avx512() {
  return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
         __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512bw");
}

#define HAS_(isa) processor_has_##isa()
#define HAS(isa) HAS_(isa)

__attribute__((constructor(101))) void end_without_instruction_set() {
  __builtin_cpu_init();
  if (HAS(ORX_TEST_ISA)) return;
  static const char message[] = "skipped: this processor has no " NAME_OF(ORX_TEST_ISA) "\n";
  if (write(1, message, sizeof message - 1) < 0) std::perror("write");
  _exit(77);
}

}  // namespace
