// ln(1 + x), single. u = 1 + x, rounded, is taken apart as ln takes its argument, and what the rounding lost
// is added to its fraction.
#include "frame/classes.hpp"
#include "ln/slog.hpp"
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

struct sLog1pData {
  Row<float> one = 1.0f;
  // Rare are x up to -1, and x so large that 1 does not matter and the square of the
  // reciprocal might underflow.
  Row<float> above_minus_one = -0x1.fffffep-1f, largest = 0x1p60f;
};
constexpr sLog1pData vslog1p_data{};

template <class X>
struct Log1pArgument {
  X u, lost;
  explicit Log1pArgument(X x) : u(x + vslog1p_data.one) {
    // Knuth's error of the sum 1 + x
    const X t = u - x;
    lost = (vslog1p_data.one - t) + (x - (u - t));
  }
};

template <class Log>
struct sLog1p : Kernel<float(float)> {
  static constexpr int kTogether = 2;
  template <class X>
  static X rare(X x) {
    const auto& d = vslog1p_data;
    return outside(x, d.above_minus_one, d.largest);
  }
  template <class X, class Left>
  static void finish(X x, Left& left) {
    const auto& d = vslog1p_data;
    finish_single_log<Log>(x, d.largest, left);
  }
  // What is left is to be reported.
  static int rare_lane(const float* a, float* r) {
    const double u = *a + 1.0;
    double y;
    const int status = vdln_cout_rare(&u, &y);
    *r = static_cast<float>(y);
    return status;
  }
};

struct sLog1pHA : sLog1p<SlnHA> {
  static constexpr int kTogether = 1;
  template <class X>
  static X eval(X x) {
    raise_underflow_of_denormals(x);
    const Log1pArgument<X> a(x);
    const SingleLogParts<X> p(a.u);
    const X t = a.lost * p.scale;
    // ln(m + t) - ln m = t/m = t - t e/m, nearly; exact where m is 1 and t is all there is
    const X correction = t - t * p.e() * approximate_reciprocal(p.m);
    return with_sign_of(sln_ha(p, correction), x);
  }
};
struct sLog1pLA : sLog1p<SlnLA> {
  template <class X>
  static X eval(X x) {
    const Log1pArgument<X> a(x);
    const SingleLogParts<X> p(a.u);
    return with_sign_and_underflow_of(sln_la(p, a.lost * p.scale), x);
  }
};
struct sLog1pEP : sLog1p<SlnEP> {
  template <class X>
  static X eval(X x) {
    const Log1pArgument<X> a(x);
    const SingleLogParts<X> p(a.u);
    return with_sign_and_underflow_of(sln_ep(p, a.lost * p.scale), x);
  }
};

}  // namespace
ORX_ISA_END

ORX_KERNELS(unary, s, Log1p)
