// log10 x, double.
#include "ln/log.hpp"

ORX_ISA_BEGIN
namespace {

alignas(64) constexpr double high_low_table[223][2] = {
#include "log10/vdlog10.inc"
};
alignas(64) constexpr double biased_table[223][2] = {
#include "log10/vdlog10_la.inc"
};

struct vdlog10_data_type {
  row<double> unit = 0.43359375;  // a short stand-in for log10 e
  row<double> L_hi = 0x1.34413509fp-2;
  row<double> L_lo = 0x1.e7fbcc47cp-40;
  row<double> L = 0x1.34413509f79ffp-2;
  // log10(1 + e/unit) = e + e (c0 + e (c1 + e (c2 + ...))), |e| <= 1.15e-3, to 2^-59; c0 makes good for the
  // short unit
  row<double> first = 0x1.a7a6cbf2e411p-10;
  row<double> c[5] = {-0x1.27af2dc77b115p0, 0x1.c6a02dc94bb16p0, -0x1.8930964d46824p1, 0x1.6abaabcf350e3p2,
                      -0x1.5c917e2b1aa62p3};
};

int vdlog10_cout_rare(const double* a, double* r);

struct log10_description {
  static constexpr vdlog10_data_type data{};
  static constexpr int first = 222;
  static constexpr const double (*table)[2] = high_low_table;
  static constexpr const double (*la_table)[2] = biased_table;
  static constexpr float unit = 0.43359375f;

  template <class X>
  static X polynomial_ha(X e) {
    const X e2 = e * e;
    return e * data.first + e2 * polynomial(e, e2, data.c);
  }
  template <bool, class X>
  static X polynomial_la(X e) {
    return polynomial_ha(e);
  }
  static int cout_rare(const double* a, double* r) { return vdlog10_cout_rare(a, r); }
};

int vdlog10_cout_rare(const double* a, double* r) { return log_cout_rare<log10_description>(a, r); }

using dLog10HA = double_log_ha<log10_description>;
using dLog10LA = double_log_la<log10_description>;

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(d, Log10, G9HAynn, dLog10HA, 0.53, 1e-300, 1e300)
ORX_KERNEL(d, Log10, G9LAynn, dLog10LA, 2.0, 1e-300, 1e300)
