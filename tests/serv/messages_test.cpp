#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <set>
#include <string>

#include "orx/serv.h"

namespace {

template <class... Args>
std::string printed(int id, int count, Args... args) {
  testing::internal::CaptureStderr();
  orx_serv_print(1, id, count, args...);
  return testing::internal::GetCapturedStderr();
}

// As the error layer passes it: two 32-bit words, low word first.
std::string printed_value(int id, int index, double value) {
  uint32_t word[2];
  std::memcpy(word, &value, sizeof value);
  return printed(id, 2, index, word[0], word[1]);
}

}  // namespace

TEST(Messages, NameTheFunctionOnOneLine) {
  EXPECT_EQ(printed(735, 2, "vdExp", -7), "orx: vdExp: bad array size -7\n");
  std::set<std::string> lines;
  for (int id = 736; id <= 741; ++id) {
    const std::string line = printed(id, 1, "vsAcosh");
    EXPECT_EQ(line.find("orx: vsAcosh: "), 0u) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    lines.insert(line);
  }
  EXPECT_EQ(lines.size(), 6u);
}

TEST(Messages, GiveIndexAndExactValue) {
  for (int id = 742; id <= 753; ++id) {
    const bool is_result = std::set<int>{743, 745, 746, 749, 752, 753}.count(id) > 0;
    for (double value : {0.1, -1.0 / 3, 5e-324, std::numeric_limits<double>::max(), -0.0}) {
      const std::string line = printed_value(id, 1005, value);
      EXPECT_NE(line.find(is_result ? "result[1005] = " : "argument[1005] = "), std::string::npos) << line;
      const double back = std::strtod(line.c_str() + line.find('=') + 1, nullptr);
      EXPECT_EQ(std::memcmp(&back, &value, sizeof value), 0) << line;
      EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    }
  }
  EXPECT_NE(printed_value(743, 0, INFINITY).find("= inf\n"), std::string::npos);
  EXPECT_NE(printed_value(742, 0, NAN).find("nan\n"), std::string::npos);
}

TEST(Messages, UnknownOrWrongCountPrintsTheNumber) {
  EXPECT_NE(printed(1234, 0).find("1234"), std::string::npos);
  EXPECT_NE(printed(742, 1, 3).find("742"), std::string::npos);
}

TEST(Messages, LeaveErrnoAlone) {
  errno = EDOM;
  printed(736, 1, "vdExp");
  EXPECT_EQ(errno, EDOM);
}
