#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>

#include "orx/tef.h"

namespace {

// A new thread reads the environment anew.
template <class F>
void on_new_thread(const char* variable, F f) {
  if (variable)
    setenv("ORX_TEF_MODE", variable, 1);
  else
    unsetenv("ORX_TEF_MODE");
  std::thread(f).join();
  unsetenv("ORX_TEF_MODE");
}

int mode_of(const char* variable) {
  int mode = 0;
  on_new_thread(variable, [&] { mode = _tefGetMode(); });
  return mode;
}

TEST(Mode, EnvironmentValues) {
  const struct {
    const char* value;
    int mode;
  } cases[] = {
      {nullptr, 0x1A02},
      {"", 0x1A02},
      {"TEF_HA", 0x2},
      {"TEF_EP,TEF_ERRMODE_ERRNO", 0x203},
      {"TEF_LA,TEF_HA", 0x3},
      {"TEF_FLOAT_CONSISTENT,TEF_DOUBLE_CONSISTEN", 0x30},
      {"TEF_DOUBLE_CONSISTEN", 0x20},
      {"TEF_DOUBLE_CONSISTENT", 0x1A02},
      {"TEF_RESTORE,TEF_ERRMODE_IGNORE,TEF_ERRMODE_STDERR,TEF_ERRMODE_EXCEPT,TEF_ERRMODE_CALLBACK", 0x1D30},
      {"TEF_ERRMODE_DEFAULT", 0x1A00},
      {"TEF_HA,", 0x1A02},
      {" TEF_HA", 0x1A02},
      {"TEF_HA, TEF_LA", 0x1A02},
      {"TEF_HA,,TEF_LA", 0x1A02},
      {"tef_ha", 0x1A02},
      {"TEF_ha", 0x1A02},
      {"TEF_", 0x1A02},
      {"T", 0x1A02},
      {"HA", 0x1A02},
      {"TEF_HAX", 0x1A02},
      {"TEF_EP,TEF_NONSENSE", 0x1A02},  // nothing of a bad value takes effect
      {"TEF_DEFAULT_PRECISION", 0},
  };
  for (const auto& c : cases) EXPECT_EQ(mode_of(c.value), c.mode) << (c.value ? c.value : "(not set)");
}

TEST(Mode, NoKeywordEndsAtPosition255OrBehind) {
  std::string value = "TEF_HA";
  while (value.size() + 7 < 255) value += ",TEF_LA";
  ASSERT_EQ(value.size(), 251u);
  EXPECT_EQ(mode_of(value.c_str()), 0x3);
  EXPECT_EQ(mode_of((value + ",TEF_LA").c_str()), 0x1A02);
  // The keyword of the last token begins at 251 - 7 + 5 and ends before 255 or not.
  value = value.substr(0, 244);
  EXPECT_EQ(mode_of((value + ",TEF_RESTORE").c_str()), 0x1A02);
}

TEST(Mode, WordOfZeroIsReadAgain) {
  on_new_thread("TEF_DEFAULT_PRECISION", [] {
    EXPECT_EQ(_tefGetMode(), 0);
    setenv("ORX_TEF_MODE", "TEF_LA", 1);
    EXPECT_EQ(_tefGetMode(), 1);
    setenv("ORX_TEF_MODE", "TEF_EP", 1);
    EXPECT_EQ(_tefGetMode(), 1);
    EXPECT_EQ(orx_tef_kernel_ReadEnvVarMode(), 3u);
  });
}

TEST(Mode, SetReplacesFieldsThatAreNotEmpty) {
  on_new_thread("TEF_HA,TEF_ERRMODE_DEFAULT,TEF_FLOAT_CONSISTENT", [] {
    EXPECT_EQ(_tefSetMode(0), 0x1A12);
    EXPECT_EQ(_tefSetMode(0x20), 0x1A12);  // the precision field cannot be set
    EXPECT_EQ(_tefSetMode(0x100 | 0x1), 0x1A12);
    EXPECT_EQ(_tefSetMode(TEF_FLUSH_ON), 0x111);
    EXPECT_EQ(_tefSetMode(TEF_FLUSH_OFF | TEF_EP), 0x280111);
    EXPECT_EQ(_tefGetMode(), 0x140113);
  });
}

TEST(Mode, TableIndex) {
  EXPECT_EQ(orx_tef_kernel_GetTTableIndexM(77, 0x1A02), 1);
  EXPECT_EQ(orx_tef_kernel_GetTTableIndexM(77, 0x1A00), -1);
  on_new_thread("TEF_EP", [] { EXPECT_EQ(orx_tef_kernel_GetTTableIndex(), 2); });
  on_new_thread("TEF_DOUBLE_CONSISTEN", [] { EXPECT_EQ(orx_tef_kernel_GetTTableIndex(), -1); });
  EXPECT_EQ(dll_cpu_version(), 0);
}

int ignore_error(TefErrorContext*) { return 1; }

TEST(Mode, CallBackTurnsItsBitOnAndOff) {
  on_new_thread("TEF_HA,TEF_ERRMODE_ERRNO", [] {
    EXPECT_EQ(_tefSetErrorCallBack(ignore_error), nullptr);
    EXPECT_EQ(_tefGetMode(), 0x1202);
    EXPECT_EQ(_tefClearErrorCallBack(), ignore_error);
    EXPECT_EQ(_tefGetMode(), 0x202);
    _tefSetMode(TEF_ERRMODE_CALLBACK);
    _tefSetErrorCallBack(ignore_error);
    _tefClearErrorCallBack();
    EXPECT_EQ(_tefGetMode(), 0x1002);  // a field cannot become empty
    EXPECT_EQ(_tefGetErrorCallBack(), nullptr);
  });
}

TEST(Mode, StatusAndCallBackBelongToTheThread) {
  _tefSetErrStatus(3);
  on_new_thread(nullptr, [] {
    EXPECT_EQ(_tefGetErrStatus(), 0);
    EXPECT_EQ(_tefSetErrStatus(2), 0);
    EXPECT_EQ(_tefClearErrStatus(), 2);
  });
  EXPECT_EQ(_tefClearErrStatus(), 3);
}

TEST(Mode, KeywordTable) {
  EXPECT_STREQ(mapModeS_N[5].text, "DOUBLE_CONSISTEN");
  for (const auto& keyword : mapModeS_N) {
    EXPECT_EQ(std::string(keyword.text).size(), keyword.length);
    EXPECT_EQ(keyword.value_high, 0u);
  }
#if defined(__i386__)
  static_assert(sizeof(TefModeKeyword) == 16);
#endif
}

}  // namespace
