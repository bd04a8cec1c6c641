// log10 x, double.
#include "ln/log.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

alignas(64) constexpr double kHighLowTable[223][2] = {
#include "log10/vdlog10.inc"
};
alignas(64) constexpr double kBiasedTable[223][2] = {
#include "log10/vdlog10_la.inc"
};

struct dLog10Data {
  Row<double> unit = 0x1.bcp-2;  // a short stand-in for log10 e
  Row<double> L_hi = 0x1.34413509fp-2;
  Row<double> L_lo = 0x1.e7fbcc47cp-40;
  Row<double> L = 0x1.34413509f79ffp-2;
  // log10(1 + e/unit) = e + e (c0 + e (c1 + e (c2 + ...))), |e| <= 1.15e-3, to 2^-59 of log10(1 + e/unit);
  // c0 makes good for the short unit
  Row<double> first = 0x1.a7a6cbf2e411p-10;
  Row<double> c[5] = {-0x1.27af2dc77b115p0, 0x1.c6a02dc94ba9bp0, -0x1.8930964d5e4ccp1, 0x1.6abaabf2a190cp2,
                      -0x1.5c911e9f49c9fp3};
};

int vdlog10_cout_rare(const double* a, double* r);

struct Log10Description {
  static constexpr dLog10Data kData{};
  static constexpr int kFirst = 222;
  static constexpr const double (*kTable)[2] = kHighLowTable;
  static constexpr const double (*kLaTable)[2] = kBiasedTable;
  static constexpr float kUnit = 0.43359375f;

  template <class X>
  static X polynomial_ha(X e) {
    const X e2 = e * e;
    return e * kData.first + e2 * polynomial(e, e2, kData.c);
  }
  template <bool, class X>
  static X polynomial_la(X e) {
    return polynomial_ha(e);
  }
  static int cout_rare(const double* a, double* r) { return vdlog10_cout_rare(a, r); }
};

int vdlog10_cout_rare(const double* a, double* r) { return log_cout_rare<Log10Description>(a, r); }

using dLog10HA = DoubleLogHA<Log10Description>;
using dLog10LA = DoubleLogLA<Log10Description>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Log10, G9HAynn, dLog10HA)
ORX_KERNEL(d, Log10, G9LAynn, dLog10LA)
