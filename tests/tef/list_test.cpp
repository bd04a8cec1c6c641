// The tables and the forwarders of every function.
#include <gtest/gtest.h>

#include "orx/tef.h"

namespace {

void* called;

// Puts a kernel of the test's own into the three entries in turn and looks which forwarders reach it.
template <class F>
void check_forwarders(F* (&ttab)[3], F* stand_in, void (*call)(int which)) {
  const int expected[4] = {0, 1, 1, 2};  // LA, plain, HA, EP
  for (int index = 0; index < 3; ++index) {
    F* const kernel = ttab[index];
    ttab[index] = stand_in;
    for (int which = 0; which < 4; ++which) {
      if (expected[which] != index) continue;
      called = nullptr;
      call(which);
      EXPECT_EQ(called, reinterpret_cast<void*>(stand_in));
    }
    ttab[index] = kernel;
  }
}

template <class T>
void stand_in_unary(int n, const T* a, T* r) {
  if (n == 3 && *a == 5 && *r == 7) called = reinterpret_cast<void*>(stand_in_unary<T>);
}
template <class T>
void stand_in_binary(int n, const T* a, const T* b, T* r) {
  if (n == 3 && *a == 5 && *b == 6 && *r == 7) called = reinterpret_cast<void*>(stand_in_binary<T>);
}
template <class T>
void stand_in_linearfrac(int n, const T* a, const T* b, T sa, T ha, T sb, T hb, T* r) {
  if (n == 3 && *a == 5 && *b == 6 && *r == 7 && sa == 1 && ha == 2 && sb == 3 && hb == 4)
    called = reinterpret_cast<void*>(stand_in_linearfrac<T>);
}

#define ORX_TEST_ARGUMENTS_unary (3, &a, &r)
#define ORX_TEST_ARGUMENTS_binary (3, &a, &b, &r)
#define ORX_TEST_ARGUMENTS_linearfrac (3, &a, &b, 1, 2, 3, 4, &r)
#define ORX_TEST_CALLS_s(shape, Fn)                          \
  if (which == 0) _tefs##Fn##_21 ORX_TEST_ARGUMENTS_##shape; \
  if (which == 1) _tefs##Fn ORX_TEST_ARGUMENTS_##shape;      \
  if (which == 2) _tefs##Fn##_HA ORX_TEST_ARGUMENTS_##shape; \
  if (which == 3) _tefs##Fn##_11 ORX_TEST_ARGUMENTS_##shape;
#define ORX_TEST_CALLS_d(shape, Fn)                          \
  if (which == 0) _tefd##Fn##_50 ORX_TEST_ARGUMENTS_##shape; \
  if (which == 1) _tefd##Fn ORX_TEST_ARGUMENTS_##shape;      \
  if (which == 2) _tefd##Fn##_HA ORX_TEST_ARGUMENTS_##shape; \
  if (which == 3) _tefd##Fn##_26 ORX_TEST_ARGUMENTS_##shape;

TEST(List, ForwardersReachTheirEntryWithTheirArguments) {
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, cost_la, cost_ha, cost_ep)                         \
  check_forwarders(orx_tef_kernel_##t##Fn##_ttab, stand_in_##shape<ORX_REAL_##t>, [](int which) { \
    static ORX_REAL_##t a = 5, b = 6, r = 7;                                                      \
    static_cast<void>(b);                                                                         \
    ORX_TEST_CALLS_##t(shape, Fn)                                                                 \
  });
#include "orx/tef_functions.def"
#undef ORX_FUNCTION
}

TEST(List, OneKernelHasOneCost) {
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, cost_la, cost_ha, cost_ep)                      \
  for (int i = 0; i < 3; ++i) {                                                                \
    EXPECT_GT(orx_tef_kernel_##t##Fn##_ctab[i], 0.0f);                                         \
    for (int j = 0; j < i; ++j) {                                                              \
      if (orx_tef_kernel_##t##Fn##_ttab[i] != orx_tef_kernel_##t##Fn##_ttab[j]) continue;      \
      EXPECT_EQ(orx_tef_kernel_##t##Fn##_ctab[i], orx_tef_kernel_##t##Fn##_ctab[j]) << #t #Fn; \
    }                                                                                          \
  }
#include "orx/tef_functions.def"
#undef ORX_FUNCTION
}

TEST(List, TellingRows) {
  EXPECT_EQ(orx_tef_kernel_dExp_ttab[0], orx_tef_kernel_dExp_ttab[2]);
  EXPECT_NE(orx_tef_kernel_dExp_ttab[0], orx_tef_kernel_dExp_ttab[1]);
  EXPECT_EQ(orx_tef_kernel_dLog10_ttab[0], orx_tef_kernel_dLog10_ttab[2]);
  EXPECT_EQ(orx_tef_kernel_sAdd_ttab[0], orx_tef_kernel_sAdd_ttab[2]);
  const float exp_costs[3] = {4.02f, 4.53f, 2.34f};
  for (int i = 0; i < 3; ++i) EXPECT_EQ(orx_tef_kernel_sExp_ctab[i], exp_costs[i]);
  EXPECT_EQ(orx_tef_kernel_dLinearFrac_ctab[1], 6.05f);
}

}  // namespace
