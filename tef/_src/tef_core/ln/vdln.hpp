// What ln and log1p of double precision share.
#pragma once
#include "ln/log.hpp"

namespace orx::tef {
extern const double _tefdLnHATab[513][2];
extern const double kLnLaTable[513][2];
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)

struct dLnData {
  Row<double> unit = 1.0;
  Row<double> L_hi = 0x1.62e42fefap-1;
  Row<double> L_lo = 0x1.cf79abc9ep-40;
  Row<double> L = 0x1.62e42fefa39efp-1;
  // (ln(1 + e) - e) / e^2, |e| <= 2^-9.5, to 2^-64 of e
  Row<double> c[5] = {-0.5, 0x1.555555555475fp-2, -0x1.fffffffffe21bp-3, 0x1.9999c98901219p-3,
                      -0x1.5555825208ae1p-3};
};
struct dLnLaData {
  // the same to 2^-54 of e
  Row<double> c[4] = {-0x1.ffffffffff43p-2, 0x1.555555555401fp-2, -0x1.0000191a06d59p-2,
                      0x1.9999d28fa91dbp-3};
  Row<double> ep_c2 = -0x1.00000b4b80efcp-1, ep_c3 = 0x1.55556d6ef9d28p-2;
};

struct LnDescription {
  static constexpr dLnData kData{};
  static constexpr dLnLaData kLaData{};
  static constexpr int kFirst = 512;
  static constexpr const double (*kTable)[2] = _tefdLnHATab;
  static constexpr const double (*kLaTable)[2] = kLnLaTable;
  static constexpr float kUnit = 1.0f;

  // ln(1 + e) - e
  template <class X>
  static X polynomial_ha(X e) {
    const X e2 = e * e;
    return e2 * polynomial(e, e2, kData.c);
  }
  template <bool ep, class X>
  static X polynomial_la(X e) {
    const X e2 = e * e;
    if constexpr (ep)
      return e2 * (kLaData.ep_c2 + e * kLaData.ep_c3);
    else
      return e2 * polynomial(e, e2, kLaData.c);
  }
  static int cout_rare(const double* a, double* r);
};

ORX_ISA_END

namespace orx::tef {
// ln x where the vector code does not take it; the status to report.
int vdln_cout_rare(const double* a, double* r);
}  // namespace orx::tef

ORX_ISA_BEGIN(orx::tef)
inline int LnDescription::cout_rare(const double* a, double* r) { return vdln_cout_rare(a, r); }
ORX_ISA_END
