// Uniform doubles of 53 random bits on [a, b).
#include "distribution.hpp"
#include "orx/base/bits.hpp"
#include "orx/base/simd/words.hpp"
#include "wide_words.hpp"

namespace {

using namespace orx::rng;
namespace simd = orx::simd;
using simd::Doubles;

// The largest double below b, which is finite.
double just_below(double b) {
  const int64_t bits = orx::bit_cast<int64_t>(b);
  return b == 0 ? -0x1p-1074 : orx::bit_cast<double>(b > 0 ? bits - 1 : bits + 1);
}

// The upper 53 bits of four words that stand in memory as doubles there, on [0, 2^64 unit): the halves stand in the low bits
// of 2^84 unit and of 2^52 unit, and only what is exact is added.
Doubles converted(const double* words, double unit) {
  const Doubles w = simd::load4(words), kept = simd::spread(orx::bit_cast<double>(~uint64_t{0x7FF}));
  const Doubles high = simd::upper_half_below(simd::spread(0x1p84 * unit), w);
  const Doubles low = simd::lower_half_below(simd::spread(0x1p52 * unit), simd::native::bit_and(w, kept));
  return high - (0x1p84 + 0x1p52) * unit + low;
}

// On [0, 1) nothing rounds.
Doubles on_unit_interval(const double* words) { return converted(words, 0x1p-64); }

// a + (b - a) u, which rounding must not carry to b.
class OnInterval {
 public:
  OnInterval(double a, double b) : a_(a), scale_((b - a) * 0x1p-64), below_(just_below(b)) {}

  Doubles operator()(const double* words) const {
    return simd::lesser(converted(words, 1) * scale_ + a_, simd::spread(below_));
  }

 private:
  double a_, scale_, below_;
};

// n words in memory as doubles there.
template <class Conversion>
void convert(const Conversion& conversion, int n, double* r) {
  int i = 0;
  for (; i + 4 <= n; i += 4) simd::store4(r + i, conversion(r + i));
  double last[4] = {};
  std::copy(r + i, r + n, last);
  simd::store4(last, conversion(last));
  std::copy_n(last, n - i, r + i);
}

int uniforms(KobStream* stream, int n, double* r, double a, double b) {
  if (!(a < b)) return KOB_ERROR_BAD_ARG;
  return in_blocks(n, [&](int done, int count) {
    const int status = wide_words(stream, count, reinterpret_cast<uint64_t*>(r + done));
    if (status < 0) return status;
    if (a == 0 && b == 1)
      convert(on_unit_interval, count, r + done);
    else
      convert(OnInterval(a, b), count, r + done);
    return status;
  });
}

}  // namespace

ORX_API int orx_kob_dRngUniform53(int, KobStream* stream, int n, double r[], double a, double b) {
  return orx::in_default_arithmetic([&] { return uniforms(stream, n, r, a, b); });
}
