// log10 x, single.
#include "frame/classes.hpp"
#include "ln/slog.hpp"
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// (log10(1 + e) - C e) / e^2, C = log10 e, -1/3 <= e < 1/3: to 2^-25.1 of log10(1 + e) and to 2^-14.2 of log10(1 + e)
struct sLog10Data {
  Row<float> la[8] = {-0x1.bcb78cp-3f, 0x1.287a28p-3f, -0x1.bcdb54p-4f, 0x1.63f8cep-4f,
                      -0x1.24044cp-4f, 0x1.f1f50cp-5f, -0x1.11c04ap-4f, 0x1.f2ec5cp-5f};
  Row<float> ep[4] = {-0x1.bc1896p-3f, 0x1.27ad0ap-3f, -0x1.e9534ep-4f, 0x1.8fd8aep-4f};
  // C_hi has 12 significant bits, and so has the part of the logarithm that it multiplies: their product is
  // exact
  Row<float> C_hi = 0x1.bccp-2f, C_lo = -0x1.09d5b2p-15f, C = 0x1.bcb7b2p-2f;
  Row<uint32_t> leading_bits = 0xFFFFF000;
  // log10 2 * 2^-23
  Row<float> L_hi = 0x1.344p-25f, L_lo = 0x1.3509f8p-41f, L = 0x1.344136p-25f;
};
constexpr sLog10Data vslog10_data{};

int vslog10_cout_rare(const double* a, double* r) {
  const int status = vdln_cout_rare(a, r);
  *r *= 0x1.bcb7b1526e50ep-2;
  return status;
}

// The natural logarithm of the fraction, in two parts, times C in two parts.
struct Slog10HA {
  template <class X>
  static X log(const SingleLogParts<X>& p) {
    const auto& d = vslog10_data;
    const HighLow<X> f = sln_fraction(p.e());
    const X leading = bit_and(f.high, d.leading_bits);
    const X H = p.k * d.L_hi, product = leading * d.C_hi;
    const X S = H + product;
    const X c = product - (S - H);
    const X rest = leading * d.C_lo + ((f.high - leading) + f.low) * d.C;
    return S + (c + (p.k * d.L_lo + rest));
  }
};
struct Slog10LA {
  template <class X>
  static X log(const SingleLogParts<X>& p) {
    const auto& d = vslog10_data;
    const X e = p.e(), e2 = e * e;
    return (p.k * d.L_hi + e * d.C) + (p.k * d.L_lo + e2 * polynomial(e, e2, d.la));
  }
};
struct Slog10EP {
  template <class X>
  static X log(const SingleLogParts<X>& p) {
    const auto& d = vslog10_data;
    const X e = p.e(), e2 = e * e;
    return (p.k * d.L + e * d.C) + e2 * polynomial(e, e2, d.ep);
  }
};

using sLog10HA = SingleLog<vslog10_cout_rare, Slog10HA>;
using sLog10LA = SingleLog<vslog10_cout_rare, Slog10LA>;
using sLog10EP = SingleLog<vslog10_cout_rare, Slog10EP>;

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Log10)
