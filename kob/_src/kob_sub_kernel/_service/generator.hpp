// What a basic generator stands on: its state behind the stream's header, the three methods of InitStream,
// and the macro that gives it its four exported functions and its place in the registry.
//
// A generator is a struct with static members:
//
//   struct MCG31M1 {
//     struct State { uint32_t X, Multiplier; };                               // behind the 16-byte header
//     static int seed(KobStream*, int n, const uint32_t* params);             // method 0
//     static int leapfrog(KobStream*, int n, const uint32_t* params);         // method 1, or base NoLeapfrog
//     static int skip(KobStream*, int n, const uint32_t* params);             // method 2, or base NoSkip
//     template <class Real> static int reals(KobStream*, int n, Real* r, Real a, Real b);
//     static int words(KobStream*, int n, uint32_t* r);
//     static constexpr double kUnit;                 // a real is a + (b - a) kUnit number
//     static int number(KobStream*, double* number); // the next one, for calls of one; or base ByBlocks
//     static bool adopt(KobStream*);                                          // or base NothingToCheck
//   };
//   ORX_BRNG_FUNCTIONS(MCG31M1)
//
// and one row in generators.def.
#pragma once

#include "_service/interval.hpp"
#include "_service/stream.hpp"

namespace orx::brng {

template <class Generator>
typename Generator::State& state(KobStream* stream) {
  return *reinterpret_cast<typename Generator::State*>(stream + 1);
}

// The number of the sub-generator that the stream was made for.
inline uint32_t sub_generator(const KobStream* stream) {
  if (stream->BrngId >= kNewIds) return stream->BrngId & 0xFFFFF;
  uint32_t index, offset;
  __kobGetBrngBaseOffset(stream->BrngId, &index, &offset);
  return offset;
}

inline uint64_t word64(const uint32_t* low_first) { return low_first[0] | uint64_t(low_first[1]) << 32; }

struct NoLeapfrog {
  static int leapfrog(KobStream*, int, const uint32_t*) { return KOB_ERROR_LEAPFROG_UNSUPPORTED; }
};
struct NoSkip {
  static int skip(KobStream*, int, const uint32_t*) { return KOB_ERROR_SKIPAHEAD_UNSUPPORTED; }
};

// adopt() takes over a state and chunks that came from outside: it checks what generation would use as an
// index, and drops pointers. False when the stream must not be used. A generator without indices has nothing
// to check.
struct NothingToCheck {
  static bool adopt(KobStream*) { return true; }
};

template <class Generator>
int init_stream(int method, KobStream* stream, int n, const uint32_t* params) {
  switch (method) {
    case 0:
      return Generator::seed(stream, n, params);
    case 1:
      return Generator::leapfrog(stream, n, params);
    case 2:
      return Generator::skip(stream, n, params);
    default:
      return KOB_ERROR_METHOD;
  }
}

// A generator that makes single numbers in no other way than many.
struct ByBlocks {
  static constexpr double kUnit = 0;
};

template <class Generator, class Real>
int one_real(KobStream* stream, Real* r, Real a, Real b) {
  double number;
  const int status = Generator::number(stream, &number);
  if (status == KOB_STATUS_OK) *r = Real(number * ((double(b) - double(a)) * Generator::kUnit) + a);
  return status;
}

// Reals, and with some generators the sequence itself, hang on rounding to nearest: what the caller has set for
// its own arithmetic changes no number. Words see to that by themselves.
template <class Generator, class Real>
[[gnu::noinline]] int reals_of(KobStream* stream, int n, Real* r, Real a, Real b) {
  return Generator::reals(stream, n, r, a, b);
}
template <class Generator, class Real>
int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
  if (!rounds_to_nearest() || !is_far_from_denormals(a, b))
    return in_default_arithmetic([=] { return reals_of<Generator>(stream, n, r, a, b); });
  if constexpr (Generator::kUnit != 0)
    if (n == 1) return one_real<Generator>(stream, r, a, b);
  return reals_of<Generator>(stream, n, r, a, b);
}

}  // namespace orx::brng

// The four functions of one row of the registry, and the check of a loaded state.
#define ORX_BRNG_FUNCTIONS(Name)                                                                            \
  ORX_API int __kobBRng##Name##InitStream(int method, KobStream* stream, int n, const uint32_t* params) {   \
    return orx::brng::init_stream<Name>(method, stream, n, params);                                         \
  }                                                                                                         \
  ORX_API int __kobsBRng##Name(KobStream* stream, int n, float* r, float a, float b) {                      \
    return orx::brng::reals<Name>(stream, n, r, a, b);                                                      \
  }                                                                                                         \
  ORX_API int __kobdBRng##Name(KobStream* stream, int n, double* r, double a, double b) {                   \
    return orx::brng::reals<Name>(stream, n, r, a, b);                                                      \
  }                                                                                                         \
  ORX_API int __kobiBRng##Name(KobStream* stream, int n, uint32_t* r) { return Name::words(stream, n, r); } \
  extern "C" bool _kobAdopt##Name(KobStream* stream) { return Name::adopt(stream); }
