// ln(1 + x), single. u = 1 + x, rounded, is taken apart as ln takes its argument, and what the rounding lost
// is added to its fraction.
#include "ln/slog.hpp"
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct sLog1pData {
  Row<float> one = 1.0f;
  Row<float> above_minus_one = -0x1.fffffep-1f, largest = FLT_MAX / 4;
};
constexpr sLog1pData vslog1p_data{};

// The double sum is exact or nearly so, and its logarithm is rounded once.
int vslog1p_cout_rare(const double* a, double* r) {
  const double u = *a + 1.0;
  return vdln_cout_rare(&u, r);
}

template <class X>
struct Log1pArgument {
  X u, lost;
  explicit Log1pArgument(X x) : u(x + vslog1p_data.one) {
    // Knuth's error of the sum 1 + x
    const X t = u - x;
    lost = (vslog1p_data.one - t) + (x - (u - t));
  }
};

struct sLog1p : SingleLog<vslog1p_cout_rare> {
  template <class X>
  static X rare(X x) {
    return outside(x, vslog1p_data.above_minus_one, vslog1p_data.largest);
  }
};

struct sLog1pHA : sLog1p {
  template <class X>
  static X eval(X x) {
    const Log1pArgument<X> a(x);
    const SingleLogParts<X> p(a.u);
    const X t = a.lost * p.scale;
    // ln(m + t) - ln m = t/m = t - t e/m, nearly; exact where m is 1 and t is all there is
    const X correction = t - t * p.e() * approximate_reciprocal(p.m);
    return with_sign_of(sln_ha(p, correction), x);
  }
};
struct sLog1pLA : sLog1p {
  template <class X>
  static X eval(X x) {
    const Log1pArgument<X> a(x);
    const SingleLogParts<X> p(a.u);
    return with_sign_of(sln_la(p, p.e() + a.lost * p.scale), x);
  }
};
struct sLog1pEP : sLog1p {
  template <class X>
  static X eval(X x) {
    const Log1pArgument<X> a(x);
    const SingleLogParts<X> p(a.u);
    return with_sign_of(sln_ep(p, p.e() + a.lost * p.scale), x);
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Log1p, G9HAynn, sLog1pHA)
ORX_KERNEL(s, Log1p, G9LAynn, sLog1pLA)
ORX_KERNEL(s, Log1p, G9EPnnn, sLog1pEP)
