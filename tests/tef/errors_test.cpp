#include <gtest/gtest.h>

#include <cerrno>
#include <cfenv>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "functions.h"

namespace {

const double inf = std::numeric_limits<double>::infinity();

std::vector<TefErrorContext> seen;
int answer;
void (*action)(TefErrorContext*);

int record(TefErrorContext* e) {
  seen.push_back(*e);
  if (action) action(e);
  return answer;
}

class Errors : public testing::Test {
 protected:
  test::TefState state;
  void SetUp() override {
    seen.clear();
    answer = 0;
    action = nullptr;
    errno = 0;
    _tefSetMode(TEF_HA | TEF_ERRMODE_DEFAULT);
    _tefSetErrorCallBack(record);
  }
};

TEST_F(Errors, CallBackSeesTheElement) {
  const double a[3] = {1.0, 0.0, -4.0};
  double r[3];
  _tefdLn(3, a, r);
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0].status, StatusSingularity);
  EXPECT_EQ(seen[0].index, 1);
  EXPECT_EQ(seen[0].arg1, 0.0);
  EXPECT_EQ(seen[0].res1, -inf);
  EXPECT_STREQ(seen[0].funcName, "vdLn");
  EXPECT_EQ(seen[0].funcNameLen, 4);
  EXPECT_EQ(seen[1].status, StatusDomain);
  EXPECT_EQ(seen[1].index, 2);
  EXPECT_TRUE(std::isnan(seen[1].res1));
  EXPECT_EQ(_tefGetErrStatus(), StatusDomain);
}

TEST_F(Errors, SinglesAreWidened) {
  const float a[1] = {100.0f};
  float r[1];
  action = [](TefErrorContext* e) { e->res1 = 1.0 / 3.0; };
  _tefsExp(1, a, r);
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_STREQ(seen[0].funcName, "vsExp");
  EXPECT_EQ(seen[0].res1, inf);
  EXPECT_EQ(r[0], 1.0f / 3.0f);
}

TEST_F(Errors, AnswerDecidesWhatHappensToResultAndErrno) {
  const double a[1] = {0.0};
  double r[1];
  action = [](TefErrorContext* e) { e->res1 = 42.0; };
  _tefdLn(1, a, r);
  EXPECT_EQ(r[0], 42.0);
  EXPECT_EQ(errno, ERANGE);

  answer = 1;
  errno = 0;
  _tefdLn(1, a, r);
  EXPECT_EQ(r[0], -inf);
  EXPECT_EQ(errno, 0);
}

TEST_F(Errors, IgnoreIsOnlyIgnoreAlone) {
  const double a[1] = {-1.0};
  double r[1];
  _tefSetMode(TEF_ERRMODE_IGNORE);
  _tefdLn(1, a, r);
  EXPECT_EQ(_tefGetErrStatus(), StatusDomain);
  EXPECT_EQ(seen.size(), 0u);
  EXPECT_EQ(errno, 0);

  _tefSetMode(TEF_ERRMODE_IGNORE | TEF_ERRMODE_ERRNO);
  _tefdLn(1, a, r);
  EXPECT_EQ(errno, EDOM);
  EXPECT_EQ(seen.size(), 0u);
}

TEST_F(Errors, CallBackMayChangeTheModeOfTheSameError) {
  const double a[1] = {-1.0};
  double r[1];
  action = [](TefErrorContext*) { _tefSetMode(TEF_ERRMODE_CALLBACK); };
  _tefdLn(1, a, r);
  EXPECT_EQ(errno, 0);
}

TEST_F(Errors, SubVectorsTellTheIndexInTheWhole) {
  std::vector<double> a(1100, 1.0), r(1100);
  a[1005] = -1.0;
  orx_tef_kernel_SetInterfInputVectorPointer(a.data());
  _tefdLn(100, a.data() + 1000, r.data() + 1000);
  orx_tef_kernel_SetInterfInputVectorPointer(nullptr);
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].index, 1005);
  EXPECT_EQ(seen[0].arg1, -1.0);
}

TEST_F(Errors, ArgumentErrorsCarryNoElements) {
  action = [](TefErrorContext* e) { e->res1 = 5.0; };
  orx_tef_kernel_dError(StatusBadSize, -7, nullptr, nullptr, nullptr, nullptr, "vdExp");
  orx_tef_kernel_sError(StatusBadPointer, 0, nullptr, nullptr, nullptr, nullptr, "vsExp");
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0].index, -7);
  EXPECT_STREQ(seen[1].funcName, "vsExp");
  EXPECT_EQ(errno, EACCES);
}

TEST_F(Errors, ComplexElements) {
  const double a[4] = {1, 2, 3, 4};
  double r[4] = {5, 6, 7, 8};
  action = [](TefErrorContext* e) {
    e->res1 = -e->res1;
    e->res1Im = e->arg2Im;
    e->res2 = e->res1;
    e->res2Im = e->res1Im;
  };
  orx_tef_kernel_zError(StatusDomain, 1, a, a, r, r, "vzTest");
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].arg1, 3.0);
  EXPECT_EQ(seen[0].arg1Im, 4.0);
  EXPECT_EQ(seen[0].res1Im, 8.0);
  EXPECT_EQ(r[2], -7.0);
  EXPECT_EQ(r[3], 4.0);

  const float b[4] = {1, 2, 3, 4};
  float s[4] = {5, 6, 7, 8};
  orx_tef_kernel_SetInterfInputVectorPointer(const_cast<float*>(b) - 2 * 9);
  orx_tef_kernel_cError(StatusDomain, 1, b, b, s, s, "vcTest");
  orx_tef_kernel_SetInterfInputVectorPointer(nullptr);
  EXPECT_EQ(seen[1].index, 10);
  EXPECT_EQ(s[3], 4.0f);
}

TEST_F(Errors, ErrnoAndExceptionOfEachStatus) {
  const struct {
    int status, code, exception;
  } cases[] = {{StatusBadPointer, EACCES, 0},
               {StatusBadSize, EINVAL, 0},
               {StatusOk, 0, 0},
               {StatusDomain, EDOM, FE_INVALID},
               {StatusSingularity, ERANGE, FE_DIVBYZERO},
               {StatusOverflow, ERANGE, FE_OVERFLOW},
               {StatusUnderflow, ERANGE, FE_UNDERFLOW},
               {9, EFAULT, 0}};
  double a[1] = {1.0};
  _tefClearErrorCallBack();
  for (const auto& c : cases) {
    errno = 99;
    std::feclearexcept(FE_ALL_EXCEPT);
    _tefSetMode(TEF_ERRMODE_ERRNO);
    orx_tef_kernel_dError(c.status, 0, a, a, a, a, "vdTest");
    EXPECT_EQ(errno, c.code);
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), 0);
    _tefSetMode(TEF_ERRMODE_EXCEPT);
    orx_tef_kernel_dError(c.status, 0, a, a, a, a, "vdTest");
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), c.exception) << c.status;
    EXPECT_EQ(_tefGetErrStatus(), c.status);
  }
}

// What is printed for an error with these elements.
std::string printed(int status, double a1, double a2, double r1, double r2) {
  testing::internal::CaptureStderr();
  orx_tef_kernel_dError(status, 0, &a1, &a2, &r1, &r2, "vdTest");
  return testing::internal::GetCapturedStderr();
}

TEST_F(Errors, PrintedShapeFollowsTheElements) {
  const auto lines = [](const std::string& text) { return std::count(text.begin(), text.end(), '\n'); };
  const double nan = std::nan("");
  _tefClearErrorCallBack();
  _tefSetMode(TEF_ERRMODE_STDERR);
  EXPECT_EQ(lines(printed(StatusDomain, 2, 2, 3, 3)), 3);
  EXPECT_EQ(lines(printed(StatusDomain, 2, 0, 3, 0)), 3);
  EXPECT_EQ(lines(printed(StatusDomain, 2, 5, 3, 3)), 4);
  EXPECT_EQ(lines(printed(StatusDomain, 2, 2, 3, 5)), 4);
  EXPECT_EQ(lines(printed(StatusDomain, 2, 5, 3, 5)), 5);
  EXPECT_EQ(lines(printed(StatusDomain, nan, nan, 3, 3)), 4);  // NaN is present
  EXPECT_EQ(lines(printed(StatusBadSize, 2, 5, 3, 5)), 1);
  EXPECT_EQ(lines(printed(StatusBadPointer, 2, 5, 3, 5)), 1);
  EXPECT_EQ(printed(StatusOk, 2, 5, 3, 5), "");
  const std::string text = printed(StatusOverflow, 2, 2, 0.1, 0.1);
  EXPECT_NE(text.find("vdTest"), std::string::npos);
  EXPECT_NE(text.find("0.1"), std::string::npos);
}

}  // namespace
