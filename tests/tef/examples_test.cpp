// What stands for all kernels, on single ones: rows of the list, misaligned arrays, flags, flushing, the order of errors.
#include <gtest/gtest.h>
#include <immintrin.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "functions.h"

namespace {

TEST(List, TellingRows) {
  EXPECT_EQ(orx_tef_kernel_dExp_ttab[0], orx_tef_kernel_dExp_ttab[2]);
  EXPECT_NE(orx_tef_kernel_dExp_ttab[0], orx_tef_kernel_dExp_ttab[1]);
  EXPECT_EQ(orx_tef_kernel_dLog10_ttab[0], orx_tef_kernel_dLog10_ttab[2]);
  EXPECT_EQ(orx_tef_kernel_sAdd_ttab[0], orx_tef_kernel_sAdd_ttab[2]);
  const float exp_costs[3] = {4.02f, 4.53f, 2.34f};
  for (int i = 0; i < 3; ++i) EXPECT_EQ(orx_tef_kernel_sExp_ctab[i], exp_costs[i]);
  EXPECT_EQ(orx_tef_kernel_dLinearFrac_ctab[1], 6.05f);
}

TEST(Loop, ArraysThatAreNotAlignedToTheirElements) {
  alignas(8) char in[41 * 8 + 8], out[41 * 8 + 8];
  double a[41], expected[41];
  for (int i = 0; i < 41; ++i) a[i] = 0.3 + i;
  for (const orx::Function& f : orx::functions()) {
    if (f.type != 'd' || f.shape->name != std::string("unary")) continue;
    for (const orx::Kernel& k : f.kernels) {
      const auto call = reinterpret_cast<void (*)(int, const double*, double*)>(k.entry);
      call(41, a, expected);
      std::memcpy(in + 4, a, sizeof a);
      call(41, reinterpret_cast<double*>(in + 4), reinterpret_cast<double*>(out + 4));
      EXPECT_EQ(std::memcmp(out + 4, expected, sizeof expected), 0) << k.name;
    }
  }
}

// The saved image goes back whole where it had to be changed: flags that were raised meanwhile are lost.
TEST(Loop, FlagsAreLostWhereTheControlWordChanged) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_IGNORE);
  const double a[1] = {-1};
  double r[1];
  for (unsigned rounding : {0x0000u, 0x4000u}) {
    _mm_setcsr(0x1F80 | rounding);
    _tefdLn(1, a, r);
    EXPECT_EQ(_mm_getcsr() & 1, rounding ? 0u : 1u);
    _mm_setcsr(0x1F80);
  }
}

// With flushing on, a denormal argument is zero.
TEST(SpecialValues, DenormalArgumentsUnderFlush) {
  const test::TefState state;
  _tefSetMode(TEF_FLUSH_ON | TEF_ERRMODE_IGNORE);
  const double denormal = 4.9406564584124654e-324, a[2] = {denormal, -denormal};
  double r[2];
  _tefdLn(2, a, r);
  EXPECT_EQ(r[0], -HUGE_VAL);
  EXPECT_EQ(r[1], -HUGE_VAL);
  EXPECT_EQ(_tefGetErrStatus(), StatusSingularity);
  const double b[1] = {-720};
  _tefdExp(1, b, r);
  EXPECT_EQ(r[0], 0.0);
  _tefSetMode(TEF_FLUSH_OFF);
}

std::vector<int> order;
int note_index(TefErrorContext* e) {
  order.push_back(e->index);
  if (e->index == 7) e->res1 = 99.0;
  return 0;
}

TEST(Loop, ErrorsComeInAscendingOrderAndMayChangeResults) {
  const test::TefState state;
  _tefSetMode(TEF_ERRMODE_CALLBACK);
  _tefSetErrorCallBack(note_index);
  alignas(32) double a[41], r[41];
  for (int offset = 0; offset < 4; ++offset) {
    order.clear();
    for (double& x : a) x = 2.0;
    for (int i : {0, 1, 7, 8, 15, 22, 30}) a[offset + i] = i % 2 ? -1.0 : 0.0;
    a[offset + 3] = std::nan("");  // special, but no error
    _tefdLn(31, a + offset, r);
    EXPECT_EQ(order, (std::vector<int>{0, 1, 7, 8, 15, 22, 30}));
    EXPECT_EQ(r[7], 99.0);
    EXPECT_EQ(r[8], -HUGE_VAL);
    EXPECT_NEAR(r[9], std::log(2.0), 1e-15);
  }
}

}  // namespace
