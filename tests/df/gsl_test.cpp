// Linear, natural, periodic and Akima splines beside GSL's: values, derivatives, integrals.
#include <gsl/gsl_spline.h>

#include "fixture.h"

namespace {

struct Peer {
  const char* name;
  const gsl_interp_type* type;
  int64_t order, kind, boundary;
};

class BesideGsl : public ::testing::TestWithParam<Peer> {};

TEST_P(BesideGsl, ValuesDerivativesIntegrals) {
  const Peer& peer = GetParam();
  for (const size_t n : {5u, 12u, 400u}) {
    const auto x = make_grid<double>(int64_t(n), 0.4);
    auto y = random_values<double>(int64_t(n), -1, 1, 3);
    y.back() = y.front();
    gsl_spline* gsl = gsl_spline_alloc(peer.type, n);
    gsl_interp_accel* accel = gsl_interp_accel_alloc();
    ASSERT_EQ(gsl_spline_init(gsl, x.data(), y.data(), n), 0);

    Spline<double> s(x, 1, {y});
    // GSL's Akima spline goes on beyond its ends; its derivatives there stand for ours.
    std::vector<double> ends;
    if (peer.kind == ORX_DF_AKIMA)
      ends = {gsl_spline_eval_deriv(gsl, x[0], accel), gsl_spline_eval_deriv(gsl, x[n - 1], accel)};
    s.describe(peer.order, peer.kind, peer.boundary, ends);
    const auto status =
        peer.order == ORX_DF_LINEAR ? orx_df_kernel_dDFLinearSpline1D(s.task, 0, 0, 0, serial())
        : peer.kind == ORX_DF_AKIMA ? orx_df_kernel_dDFAkimaCubicSpline1D(s.task, 0, 0, serial())
                                    : orx_df_kernel_dDFNaturalCubicSpline1D(s.task, 0, 0, serial());
    ASSERT_EQ(status, 0);

    const auto sites = random_values<double>(500, x[0], x.back(), 5),
               limits = random_values<double>(500, x[0], x.back(), 6);
    std::vector<double> result, integrals;
    ASSERT_EQ(s.interpolate(sites, {1, 1, 1}, result, ORX_DF_ROWS), 0);
    ASSERT_EQ(s.integrate(sites, limits, integrals), 0);
    for (size_t i = 0; i < sites.size(); ++i) {
      ASSERT_NEAR(result[3 * i], gsl_spline_eval(gsl, sites[i], accel), 1e-13);
      ASSERT_NEAR(result[3 * i + 1], gsl_spline_eval_deriv(gsl, sites[i], accel), 1e-12);
      ASSERT_NEAR(result[3 * i + 2], gsl_spline_eval_deriv2(gsl, sites[i], accel), 1e-11);
      const auto [low, high] = std::minmax(sites[i], limits[i]);
      const double integral = gsl_spline_eval_integ(gsl, low, high, accel);
      ASSERT_NEAR(integrals[i], sites[i] < limits[i] ? integral : -integral, 1e-12);
    }
    gsl_spline_free(gsl);
    gsl_interp_accel_free(accel);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, BesideGsl,
    ::testing::Values(Peer{"linear", gsl_interp_linear, 2, 0, 0},
                      Peer{"natural", gsl_interp_cspline, 4, ORX_DF_NATURAL, ORX_DF_FREE_END},
                      Peer{"periodic", gsl_interp_cspline_periodic, 4, ORX_DF_NATURAL, ORX_DF_PERIODIC},
                      Peer{"akima", gsl_interp_akima, 4, ORX_DF_AKIMA, 12}),
    [](const auto& info) { return info.param.name; });

}  // namespace
