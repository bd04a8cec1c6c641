#include "functions/descriptor.hpp"

using namespace orx::descriptor;

// x, and y such that y ln x is u: results over all of the range and beyond both ends; x near 1 makes y huge. Below
// 1 - 2^-11 the logarithm is no larger than what the table leaves to the series.
static Pair at_logarithm(double x, double u) { return {x, u / std::log(x)}; }
static Pair near_one(double x, double u) { return at_logarithm(1 + x, u); }
static std::vector<Joint> joints(double least, double largest) {
  return {{logarithmic(0.01, 100), even(1.01 * least, 1.01 * largest), at_logarithm},
          {everywhere(), even(1.01 * least, 1.01 * largest), at_logarithm},
          {logarithmic(1e-7, 0.5), even(least, largest), near_one},
          {logarithmic(-0.5, -1e-7), even(least, largest), near_one},
          {logarithmic(1e-15, 1e-7), even(least, largest), near_one},
          {logarithmic(-0.0012, -0.0006), even(least, largest), near_one},
          {logarithmic(0.1, 10), even(0.995 * largest, 1.005 * largest), at_logarithm},
          {logarithmic(0.1, 10), even(1.06 * least, 0.94 * least), at_logarithm},
          {even(-20, 20), even(-50, 50), [](double x, double y) {
             return Pair{x, std::round(y)};
           }}};
}

// Hard for a logarithm whose square is rounded with other terms, for one whose parts cancel next to 1, and for an exponential
// that forgets what y log2 x lacks, of which the last result is denormal and has to be rounded once.
static const std::vector<std::vector<double>> kHard = {
    {0.9989909092747743, 691372.40145048453},     {1.0005187287951061, -1205606.1553606982},
    {0.99894543316530582, -562971.71561066399},   {0.76770298685066163, -2673.8961161209872},
    {0.99999595862685131, -141463519.12112281},   {0.99999999999999689, -26308535935872036.0},
    {1.0000000003271865, 2048363008116.8723},     {1.000972067662335, 426431.85755371524},
    {2.2250738585066461e-308, 1.0000000000002316}};

// With a vector of y, and with one y for all x.
static Descriptor power(const char* name, const char* computes) {
  return {
      .name = name,
      .computes = computes,
      .method =
          "2^(y log2 x), the logarithm as a sum of two doubles (after P. T. P. Tang, ACM TOMS 16, 1990)",
      .c_name = "pow",
      .domain = "x >= 0, or y an integer",
      .errors = {{StatusDomain, "x < 0, y not an integer"},
                 {StatusSingularity, "x = 0, y < 0"},
                 {StatusOverflow, "result above the largest number"},
                 {StatusUnderflow, "result denormal or 0"}},
      // C99, annex F.9.4.4
      .specials = {{{1, kNaN}, 1},
                   {{1, kInf}, 1},
                   {{kNaN, 0}, 1},
                   {{kNaN, -0.0}, 1},
                   {{kInf, 0}, 1},
                   {{0, 0}, 1},
                   {{kNaN, 1}, kNaN},
                   {{2, kNaN}, kNaN},
                   {{-1, kInf}, 1},
                   {{-1, -kInf}, 1},
                   {{0.5, kInf}, 0},
                   {{-0.5, kInf}, 0},
                   {{2, kInf}, kInf},
                   {{-2, kInf}, kInf},
                   {{0.5, -kInf}, kInf},
                   {{2, -kInf}, 0},
                   {{0, kInf}, 0},
                   {{0, -kInf}, kInf},
                   {{-0.0, -kInf}, kInf},
                   {{kInf, kInf}, kInf},
                   {{kInf, -kInf}, 0},
                   {{kInf, 2.5}, kInf},
                   {{kInf, -2.5}, 0},
                   {{-kInf, 3}, -kInf},
                   {{-kInf, 2}, kInf},
                   {{-kInf, 2.5}, kInf},
                   {{-kInf, -3}, -0.0},
                   {{-kInf, -2}, 0},
                   {{-kInf, -2.5}, 0},
                   {{-kInf, kInf}, kInf},
                   {{0, 3}, 0},
                   {{-0.0, 3}, -0.0},
                   {{-0.0, 2}, 0},
                   {{-0.0, 2.5}, 0},
                   {{0, kLeast}, 0},
                   {{0, -1}, kInf, StatusSingularity},
                   {{-0.0, -1}, -kInf, StatusSingularity},
                   {{-0.0, -2}, kInf, StatusSingularity},
                   {{-0.0, -2.5}, kInf, StatusSingularity},
                   {{-8, 1.0 / 3}, kNaN, StatusDomain},
                   {{-kLeast, 0.5}, kNaN, StatusDomain},
                   {{-1, 0.5}, kNaN, StatusDomain},
                   {{2, 3}, 8},
                   {{-2, 3}, -8},
                   {{-2, -2}, 0.25},
                   {{-1, kLargest}, 1},
                   {{2, kLeast}, 1},
                   {{2, -kLeast}, 1},
                   {{-2, kLargest}, kInf, StatusOverflow},
                   {{0.5, kLargest}, 0, StatusUnderflow},
                   {{kLeast, 1}, kLeast, StatusUnderflow},
                   {{-kLeast, -1}, -kInf, StatusOverflow},
                   {{kLeast, 0.5}, kFinite},
                   {{kSmallest, 1}, kSmallest},
                   {{kLargest, 1}, kLargest}},
      .s = {.bounds = {.la = 0.51, .ha = 0.51},
            .timed = {0.1, 10},
            .timed_second = {-30, 30},
            .specials = {{{2, 128}, kInf, StatusOverflow},
                         {{-2, 129}, -kInf, StatusOverflow},
                         {{2, 127}, kFinite},
                         {{2, -126}, kSmallest},
                         {{2, -149}, kLeast, StatusUnderflow},
                         {{-2, -149}, -kLeast, StatusUnderflow},
                         {{2, -155}, 0, StatusUnderflow},
                         {{0.5, 155}, 0, StatusUnderflow}},
            .joints = joints(-103.97, 88.72)},
      .d = {.bounds = {.la = 1.2, .ha = 0.53},
            .timed = {0.1, 10},
            .timed_second = {-100, 100},
            .specials = {{{2, 1024}, kInf, StatusOverflow},
                         {{-2, 1025}, -kInf, StatusOverflow},
                         {{2, 1023}, kFinite},
                         {{2, -1022}, kSmallest},
                         {{2, -1074}, kLeast, StatusUnderflow},
                         {{-2, -1073}, kFinite, StatusUnderflow},
                         {{2, -1080}, 0, StatusUnderflow},
                         {{-0.5, 1081}, -0.0, StatusUnderflow},
                         {{-3, 0x1p53}, kInf, StatusOverflow},
                         {{-0x1.fffffffffffffp-1, 0x1.fffffffffffffp52}, kFinite},
                         {{1.5, 0x1p-990}, 1}},
            .joints = joints(-745.1, 709.78),
            .cases = kHard},
  };
}
static const Entry kPow{power("Pow", "x^y")}, kPowx{power("Powx", "x^y for one y")};
