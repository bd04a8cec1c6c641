#include "_math/chi_square.hpp"
#include "orx/base/api.hpp"
#include "orx/base/default_arithmetic.hpp"

using namespace orx;

ORX_API double __kobdChi2CDF(int k, double x) {
  return in_default_arithmetic([=] { return double(extended::chi2_lower(k, x)); });
}
ORX_API double __kobdChi2PDF(int k, double x) {
  return in_default_arithmetic([=] { return double(extended::chi2_density(k, x)); });
}
ORX_API double __kobdChi2ICDF(int k, double probability) {
  return in_default_arithmetic([=] { return double(extended::chi2_quantile(k, probability)); });
}
ORX_API double __kobdLGamma(double x) {
  return in_default_arithmetic([=] { return double(extended::ln_gamma(x)); });
}
