// x^y, single. HA, which serves LA too: in doubles, as the EP kernel of double precision, and narrowed at the end.
// EP: 2^(y log2 x), in singles throughout.
#pragma once
#include <cfloat>

#include "ln/slog.hpp"
#include "pow/vdpow.hpp"

ORX_ISA_BEGIN(orx::tef)

struct sPowData {
  // Of y log2 x: from here on the result, or its inverse, is not a normal number.
  Row<double> rare_from = 125.9375;
  // Of y log2 x.
  Row<float> ep_rare_from = 126.0f;
  Row<float> orders = 0x1p-23f;  // of an exponent field read as an integer
  // log2(1 + e) / e, -1/3 <= e < 1/3, to 2^-22.4 of log2(1 + e)
  Row<float> log[8] = {0x1.715472p+0f, -0x1.715458p-1f, 0x1.ec82a8p-2f, -0x1.717148p-2f,
                       0x1.246742p-2f, -0x1.e52b48p-3f, 0x1.f9ee7p-3f,  -0x1.c5db7cp-3f};
  Row<float> shifter = 0x1.8000fep+23f;  // 1.5 * 2^23 + 127
  Row<float> exp[4] = {1.0f, 0x1.62f5fap-1f, 0x1.f00c4cp-3f,
                       0x1.c2a254p-5f};  // 2^f, |f| <= 1/2, to 2^-13.2 of 2^f
};
inline constexpr sPowData vspow_data{};

struct PowInDoubles {
  static constexpr Row<float> kLargest = FLT_MAX;

  template <class X>
  static X power(X x, X y, X& late) {
    const auto base = widen(x);
    const auto z = widen(y) * log2_in_one(base, exponent_field(base));
    const std::remove_const_t<decltype(z)> z_late = not_below(magnitude(z), vspow_data.rare_from);
    late = narrow(z_late);
    return narrow(exp2_by_polynomial(z, z_late));
  }
  template <class X>
  static X power_of_any(X x, X y, X& late) {
    return power(x, y, late);
  }
};

struct PowInSingles : PowInDoubles {
  static constexpr Row<float> kLargest = FLT_MAX / 4;  // 3 x overflows behind it

  template <class X>
  static X power(X x, X y, X& late) {
    const auto& d = vspow_data;
    const SingleLogParts<X> p(x);
    const X e = p.e();
    const X t = y * multiply_add(p.k, d.orders, e * polynomial(e, e * e, d.log));
    late = not_below(magnitude(t), d.ep_rare_from);
    const X moderate = bit_andnot(late, t);
    const X N = moderate + d.shifter, f = moderate - (N - d.shifter);
    return polynomial(f, f * f, d.exp) * scale_from<0>(N);
  }
};

// As vdpow_cout_rare.
int vspow_cout_rare(const float* a, const float* b, float* r);

template <class Signature, class Method>
using sPow = Pow<Signature, Method, vspow_cout_rare>;

ORX_ISA_END
