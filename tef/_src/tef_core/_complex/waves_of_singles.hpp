// Sine and cosine, circular and hyperbolic, of singles in doubles: what complex functions of singles are made of. They are
// right to 2^-39, so that a result rounded to single is off by half a unit and next to nothing.
#pragma once
#include "_complex/waves.hpp"
#include "sin/vdsincos.hpp"
#include "sinh/vdsinh.hpp"

ORX_ISA_BEGIN(orx::tef)

struct WavesOfSinglesData {
  Row<double> small = 0x1p-8;  // below it sinh x = x + x^3/6 to 2^-39; above it e^x - e^-x has lost 8 bits
  Row<double> sixth = 1 / 6.0;
  // From here on e^x and e^-x times any sine of a single are beyond the range of singles.
  Row<double> most = 200.0;
};
inline constexpr WavesOfSinglesData kWavesOfSingles{};

template <class X>
struct SinhCoshOfSingle {
  X sinh, cosh;

  // Of a finite single.
  explicit SinhCoshOfSingle(X x) {
    const auto& d = kWavesOfSingles;
    const X size = min(magnitude(x), d.most);
    const auto h = ExponentialHalves<X>::template without_rests<0>(size, size);
    const X r2 = h.r * h.r, c = cosh_rest(r2), s = h.r + (h.r * r2) * d.sixth;
    const X C = h.a + h.b, S = h.a - h.b;
    cosh = C + (C * c + S * s);
    const X near_0 = size + (size * d.sixth) * (size * size);
    sinh = with_sign_of(select(less(size, d.small), near_0, S + (S * c + C * s)), x);
  }
};

struct WavesOfSingles {
  static constexpr bool kTinyIsRare = false;
  static constexpr Row<float> kAnglesFrom = 0x1p22f;
  static constexpr Row<float> kMost = std::numeric_limits<float>::max(), kMostOfTangent = kMost;

  template <class X>
  static Waves<X> waves(Complex<X> z) {
    const SinhCoshOfSingle<X> of(z.re);
    const auto wave = dSinLA<Wanted::Both>::eval(z.im);
    return {of.sinh, of.cosh, wave.first, wave.second};
  }
};

ORX_ISA_END
