#include "sin/descriptor.hpp"

#include <cfenv>

using namespace orx::descriptor;

static Descriptor of_cis() {
  Descriptor d = of_sines({
      .name = "CIS",
      .computes = "cos x + i sin x",
      .method = "as SinCos",
      .judge = "cis",
      .specials = {{0, {1, 0}}, {-0.0, {1, -0.0}, StatusOk, kSinesWithSignsOfZero}, {kNaN, {kNaN, kNaN}}},
      .zero_signs_free = kHA,
  });
  d.errors = {{StatusDomain, "infinite x (not in zCIS HA)"}};
  d.c = d.s;
  d.z = d.d;
  d.s = d.d = {};
  d.c.specials = {{kInf, {kNaN, kNaN}, StatusDomain}, {-kInf, {kNaN, kNaN}, StatusDomain}};
  d.z.specials = {{kInf, {kNaN, kNaN}, StatusDomain, kSinesWithSignsOfZero},
                  {-kInf, {kNaN, kNaN}, StatusOk, kHA, FE_INVALID}};
  return d;
}

static const Entry kEntry{of_cis()};
