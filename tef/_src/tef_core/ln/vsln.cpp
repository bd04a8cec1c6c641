// ln x, single.
#include "ln/slog.hpp"
#include "ln/vdln.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

using sLn = SingleLog<vdln_cout_rare>;

struct sLnHA : sLn {
  template <class X>
  static X eval(X x) {
    return sln_ha(SingleLogParts<X>(x), X{});
  }
};
struct sLnLA : sLn {
  template <class X>
  static X eval(X x) {
    const SingleLogParts<X> p(x);
    return sln_la(p, p.e());
  }
};
struct sLnEP : sLn {
  template <class X>
  static X eval(X x) {
    const SingleLogParts<X> p(x);
    return sln_ep(p, p.e());
  }
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(s, Ln, G9HAynn, sLnHA)
ORX_KERNEL(s, Ln, G9LAynn, sLnLA)
ORX_KERNEL(s, Ln, G9EPnnn, sLnEP)
