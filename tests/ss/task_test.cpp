// Tasks and editors: every parameter lands where the computations read it, every status is told.
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>
#include <tuple>
#include <type_traits>

#include "mp.hpp"
#include "orx/status.h"
#include "ss_task.hpp"
#include "ss_test.hpp"

extern "C" double __kobdLn(double);
extern "C" double __kobdSqrt(double);

namespace {

template <class T>
struct TaskTest : testing::Test {};
TYPED_TEST_SUITE(TaskTest, Precisions);

TYPED_TEST(TaskTest, ConstructorChecksInOrder) {
  using T = TypeParam;
  const T x[4] = {1, 2, 3, 4};
  int p = 2, n = 2, storage = KOB_SS_ROWS;
  SSTask* const untouched = reinterpret_cast<SSTask*>(&p);
  SSTask* task = untouched;
  const auto make = [&](const void* p_, const void* n_, const void* storage_, const T* x_, int wide = 0) {
    return Api<T>::new_task(&task, p_, n_, storage_, x_, nullptr, nullptr, wide);
  };
  EXPECT_EQ(make(nullptr, nullptr, nullptr, x), -4001);
  for (const int bad : {0, -1}) {
    p = bad;
    EXPECT_EQ(make(&p, nullptr, nullptr, x), -4001);
  }
  p = 2;
  EXPECT_EQ(make(&p, nullptr, nullptr, x), -4044);
  for (const int bad : {0, 1, 0x30000, 0x10001}) {
    storage = bad;
    EXPECT_EQ(make(&p, nullptr, &storage, x), -4003);
  }
  storage = KOB_SS_COLUMNS;
  EXPECT_EQ(make(&p, nullptr, &storage, x), -4002);
  n = 0;
  EXPECT_EQ(make(&p, &n, &storage, x), -4002);
  n = 2;
  orx_serv_fail_allocation(1);
  EXPECT_EQ(make(&p, &n, &storage, x), -4000);
  EXPECT_EQ(task, untouched);
  EXPECT_EQ(Api<T>::new_task(nullptr, &p, &n, &storage, x, nullptr, nullptr, 0), -4031);
  const long before = orx_serv_live_blocks();
  EXPECT_EQ(make(&p, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(__kobSSDeleteTask(&task), 0);
  EXPECT_EQ(task, nullptr);
  EXPECT_EQ(orx_serv_live_blocks(), before);
  EXPECT_EQ(__kobSSDeleteTask(nullptr), -4031);
  EXPECT_EQ(__kobSSDeleteTask(&task), -4031);

  // Wide integers: the sign is in the high word, and the whole counts.
  long long wide_p = 0x100000000, wide_n = 2, wide_storage = KOB_SS_ROWS;
  EXPECT_EQ(make(&wide_p, nullptr, nullptr, nullptr, 1), 0);
  EXPECT_EQ(__kobSSDeleteTask(&task), 0);
  wide_p = -0x100000000 + 2;
  EXPECT_EQ(make(&wide_p, nullptr, nullptr, nullptr, 1), -4001);
  wide_p = 2;
  wide_storage = 0x100000000 + KOB_SS_ROWS;
  EXPECT_EQ(make(&wide_p, &wide_n, &wide_storage, x, 1), -4003);
  wide_storage = KOB_SS_ROWS;
  wide_n = -1;
  EXPECT_EQ(make(&wide_p, &wide_n, &wide_storage, x, 1), -4002);
}

TYPED_TEST(TaskTest, GenericEditorsKnowTheirIdsAndStatuses) {
  using T = TypeParam;
  const std::map<int, int> integers = {
      {1, -4001},  {2, -4002},  {4, -4044},  {5, -4004},  {20, -4044}, {22, -4044}, {24, -4022},
      {28, -4038}, {29, -4044}, {32, -4038}, {34, -4044}, {36, -4044}, {37, -4043}, {41, -4040},
      {44, -4044}, {45, -4045}, {47, -4044}, {49, -4044}, {50, -4049}, {52, -4052}, {54, -4055},
      {56, -4056}, {58, -4061}, {61, -4044}, {62, -4066}, {64, -4069}};
  const std::map<int, int> reals = {
      {3, -4032},  {6, -4005},  {7, -4006},  {8, -4007},  {9, -4008},  {10, -4009}, {11, -4010}, {12, -4011},
      {13, -4012}, {14, -4013}, {15, -4014}, {16, -4015}, {17, -4016}, {18, -4017}, {19, -4018}, {21, -4019},
      {23, -4020}, {25, -4021}, {26, -4023}, {27, -4024}, {30, -4035}, {31, -4034}, {33, -4037}, {35, -4036},
      {38, -4042}, {39, -4028}, {40, -4027}, {42, -4039}, {43, -4041}, {46, -4046}, {48, -4047}, {51, -4048},
      {53, -4053}, {55, -4054}, {57, -4057}, {59, -4062}, {60, -4071}, {63, -4065}, {65, -4068}, {66, -4070}};
  EXPECT_EQ(integers.size() + reals.size(), 66u);
  Task<T> t(1, 1, KOB_SS_ROWS, {1});
  const T real = 1;
  const int integer = 1;
  for (long long id = -2; id <= 70; ++id) {
    const auto status = [&](const std::map<int, int>& own) {
      const auto found = own.find(int(id));
      return found == own.end() ? -3 : found->second;
    };
    EXPECT_EQ(__kobiSSEditTask(t.task, id, nullptr), status(integers)) << id;
    EXPECT_EQ(Api<T>::edit(t.task, id, nullptr), status(reals)) << id;
    EXPECT_EQ(__kobiSSEditTask(t.task, id, &integer), integers.count(int(id)) ? 0 : -3) << id;
    EXPECT_EQ(Api<T>::edit(t.task, id, &real), reals.count(int(id)) ? 0 : -3) << id;
  }
  EXPECT_EQ(Api<T>::edit(t.task, 0x100000003, &real), -3);
  EXPECT_EQ(Api<T>::edit(nullptr, 7, &real), -4031);
  EXPECT_EQ(__kobiSSEditTask(nullptr, 1, &integer), -4031);
}

TYPED_TEST(TaskTest, SpecialEditorsLeaveOutWhatIsNull) {
  using T = TypeParam;
  Task<T> t(1, 2, KOB_SS_ROWS, {3, 5});
  T mean = 0, other = 0, raw2 = 0;
  EXPECT_EQ(Api<T>::edit_moments(t.task, &mean, nullptr, &raw2, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(Api<T>::edit_moments(t.task, nullptr, &other, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(Api<T>::basic(t.task, KOB_SS_MEAN | KOB_SS_RAW_MOMENT_2, KOB_SS_FAST, Threads::table(1)), 0);
  EXPECT_EQ(mean, T(4));
  EXPECT_EQ(other, T(17));
  EXPECT_EQ(raw2, T(0));
}

// An editor sets the fields that the generic editors set by these numbers, and no others.
template <class... Array>
void check_editor(int (*editor)(SSTask*, Array...), const std::vector<int>& ids) {
  ASSERT_EQ(ids.size(), sizeof...(Array));
  using T = std::conditional_t<(std::is_same_v<std::decay_t<Array>, float*> || ...) ||
                                   (std::is_same_v<std::decay_t<Array>, const float*> || ...),
                               float, double>;
  static double places[16];
  Task<T> special(1), generic(1);
  int k = 0;
  const auto next = [&] { return reinterpret_cast<T*>(&places[k++]); };
  EXPECT_EQ(std::apply(editor, std::tuple<SSTask*, Array...>{special.task, static_cast<Array>(next())...}),
            0);
  for (size_t i = 0; i < ids.size(); ++i)
    if (__kobiSSEditTask(generic.task, ids[i], &places[i]) == -3)
      generic.set(ids[i], reinterpret_cast<const T*>(&places[i]));
  generic.task->dimension = special.task->dimension;
  EXPECT_EQ(std::memcmp(special.task, generic.task, sizeof(SSTask)), 0) << "from parameter " << ids[0];
  EXPECT_EQ(editor(nullptr, static_cast<Array>(nullptr)...), -4031);
}

TEST(SpecialEditors, SetTheirParameters) {
#define BOTH(editor, ...)                            \
  check_editor(__kobdSSEdit##editor, {__VA_ARGS__}); \
  check_editor(__kobsSSEdit##editor, {__VA_ARGS__})
  BOTH(Moments, 7, 8, 9, 10, 11, 12, 13);
  BOTH(CovCor, 7, 19, 20, 21, 22);
  BOTH(PartialCovCor, 45, 19, 20, 21, 22, 46, 47, 48, 49);
  BOTH(PooledCovariance, 28, 30, 31, 32, 33, 35);
  BOTH(Quantiles, 24, 25, 26, 27, 44);
  BOTH(StreamQuantiles, 64, 65, 66, 62, 63);
  BOTH(MissingVals, 50, 51, 52, 53, 58, 59, 54, 55, 56, 57);
  BOTH(OutDetect, 41, 42, 43);
  BOTH(RCov, 36, 37, 38, 39, 40);
  BOTH(MtxParametrz, 21, 22, 60, 61);
#undef BOTH
}

TYPED_TEST(TaskTest, ComputationsCheckTheirData) {
  using T = TypeParam;
  const T x[2] = {1, 2};
  for (const auto compute : {Api<T>::basic, Api<T>::quantiles, Api<T>::pooled, Api<T>::minmax}) {
    Task<T> t(1);
    const auto call = [&] { return compute(t.task, KOB_SS_MEAN, KOB_SS_ONE_PASS, Threads::table(1)); };
    mend<T>(t, call, {{-4044, KOB_SS_ID_OBSERVATION_STORAGE, &t.storage}});
    t.storage = 0x30;
    EXPECT_EQ(call(), -4003);
    t.storage = KOB_SS_ROWS;
    t.p = 0;
    EXPECT_EQ(call(), -4001);
    t.p = 1;
    mend<T>(t, call, {{-4002, KOB_SS_ID_OBSERVATION_COUNT, &t.n}});
    t.n = -1;
    EXPECT_EQ(call(), -4002);
    t.n = 2;
    mend<T>(t, call, {{-4032, KOB_SS_ID_OBSERVATIONS, x}});
    EXPECT_NE(call(), -4032);
    t.n = 0;
    const bool needs_data = compute == Api<T>::quantiles || compute == Api<T>::pooled;
    EXPECT_EQ(call() == -4002, needs_data);
    EXPECT_EQ(compute(nullptr, KOB_SS_MEAN, KOB_SS_ONE_PASS, Threads::table(1)), -4031);
  }
}

// Functions of the other precision refuse a task, whose arrays they would misread.
TYPED_TEST(TaskTest, OfTheOtherPrecisionIsRefused) {
  using T = TypeParam;
  using Other = std::conditional_t<sizeof(T) == 8, float, double>;
  Task<T> t(1, 2, KOB_SS_ROWS, {3, 5});
  T result[2] = {-77, -77};
  t.set(KOB_SS_ID_MEAN, result);
  t.set(KOB_SS_ID_MINIMUM, result);
  for (const auto compute : {Api<Other>::basic, Api<Other>::quantiles, Api<Other>::stream_quantiles,
                             Api<Other>::pooled, Api<Other>::partial, Api<Other>::minmax})
    EXPECT_EQ(compute(t.task, KOB_SS_MEAN, KOB_SS_ONE_PASS, Threads::table(1)), -4031);
  EXPECT_EQ(result[0], T(-77));
}

// Without a table of threads everything is done on the calling one.
TYPED_TEST(TaskTest, NoTableOfThreads) {
  using T = TypeParam;
  const int one = 1, full = KOB_SS_FULL, group = 0;
  const T order = T(0.5), eps = T(0.1);
  T mean = 0, quantile = 0, stream = 0, pooled_mean = 0, pooled_cov = 0;
  Task<T> t(1, 1, KOB_SS_ROWS, {3});
  t.set(KOB_SS_ID_MEAN, &mean);
  EXPECT_EQ(Api<T>::basic(t.task, KOB_SS_MEAN, KOB_SS_ONE_PASS, nullptr), 0);
  t.set(KOB_SS_ID_QUANTILE_ORDER_COUNT, &one);
  t.set(KOB_SS_ID_QUANTILE_ORDERS, &order);
  t.set(KOB_SS_ID_QUANTILES, &quantile);
  EXPECT_EQ(Api<T>::quantiles(t.task, KOB_SS_QUANTILES, KOB_SS_FAST, nullptr), 0);
  t.set(KOB_SS_ID_STREAM_ORDER_COUNT, &one);
  t.set(KOB_SS_ID_STREAM_ORDERS, &order);
  t.set(KOB_SS_ID_STREAM_QUANTILES, &stream);
  t.set(KOB_SS_ID_STREAM_PARAMETER_COUNT, &one);
  t.set(KOB_SS_ID_STREAM_PARAMETERS, &eps);
  EXPECT_EQ(Api<T>::stream_quantiles(t.task, 0, KOB_SS_STREAM_QUANTILES, nullptr), 0);
  t.set(KOB_SS_ID_GROUP_INDICES, &group);
  t.set(KOB_SS_ID_POOLED_MEAN, &pooled_mean);
  t.set(KOB_SS_ID_POOLED_COVARIANCE, &pooled_cov);
  t.set(KOB_SS_ID_POOLED_COVARIANCE_STORAGE, &full);
  EXPECT_EQ(Api<T>::pooled(t.task, KOB_SS_POOLED_COVARIANCE, KOB_SS_ONE_PASS, nullptr), 0);
  for (const T result : {mean, quantile, stream, pooled_mean}) EXPECT_EQ(result, T(3));
}

// Counts that arrays of this library cannot have are refused, whatever their low words say.
TYPED_TEST(TaskTest, WideCountsBeyondAnIntAreRefused) {
  using T = TypeParam;
  const T x[2] = {1, 2};
  T mean = -77;
  long long p = 1, n = 2, storage = KOB_SS_ROWS;
  SSTask* task;
  ASSERT_EQ(Api<T>::new_task(&task, &p, &n, &storage, x, nullptr, nullptr, 1), 0);
  Api<T>::edit(task, KOB_SS_ID_MEAN, &mean);
  const auto call = [&] { return Api<T>::basic(task, KOB_SS_MEAN, KOB_SS_ONE_PASS, Threads::table(1)); };
  for (const long long count : {0x80000000LL, 0x100000000LL, 0x100000002LL}) {
    n = count;
    EXPECT_EQ(call(), -4002) << count;
    n = 2;
    p = count;
    EXPECT_EQ(call(), -4001) << count;
    p = 1;
  }
  EXPECT_EQ(mean, T(-77));
  EXPECT_EQ(call(), 0);
  EXPECT_EQ(mean, T(1.5));
  __kobSSDeleteTask(&task);
}

TYPED_TEST(TaskTest, UnsetParametersAreAsIfNeverSet) {
  using T = TypeParam;
  const T w[] = {0, 3};
  const int mask[] = {1, 0};
  T mean[2] = {-77, -77};
  Task<T> t(2, 2, KOB_SS_ROWS, {2, 6, 1, 5}, w, mask);
  t.set(KOB_SS_ID_MEAN, mean);
  const auto call = [&] { return Api<T>::basic(t.task, KOB_SS_MEAN, KOB_SS_ONE_PASS, nullptr); };
  ASSERT_EQ(call(), 0);
  EXPECT_EQ(mean[0], T(6));
  EXPECT_EQ(mean[1], T(-77));
  EXPECT_EQ(__kobSSUnset(t.task, KOB_SS_ID_WEIGHTS), 0);
  EXPECT_EQ(__kobSSUnset(t.task, KOB_SS_ID_INDICES), 0);
  ASSERT_EQ(call(), 0);
  EXPECT_EQ(mean[0], T(4));
  EXPECT_EQ(mean[1], T(3));
  EXPECT_EQ(__kobSSUnset(t.task, KOB_SS_ID_MEAN), 0);
  EXPECT_EQ(call(), -4006);
  EXPECT_EQ(__kobSSUnset(t.task, 0), -3);
  EXPECT_EQ(__kobSSUnset(t.task, 67), -3);
  EXPECT_EQ(__kobSSUnset(nullptr, 6), -4031);
}

TYPED_TEST(TaskTest, DescribeInOneCall) {
  using T = TypeParam;
  const T x[] = {1, 2, 3, 4, -2, -2, -2, 6}, w[] = {1, 1, 1, 1};
  T mean[2], variance[2], skewness[2], kurtosis[2], least[2], greatest[2];
  const auto describe = [&](int n, int storage, const T* data, const T* weights) {
    return Api<T>::describe(2, n, storage, data, weights, mean, variance, skewness, kurtosis, least, greatest,
                            nullptr);
  };
  for (const T* weights : {static_cast<const T*>(nullptr), w}) {
    ASSERT_EQ(describe(4, KOB_SS_ROWS, x, weights), 0);
    EXPECT_EQ(mean[0], T(2.5));
    EXPECT_EQ(mean[1], T(0));
    EXPECT_EQ(variance[0], T(5 / 3.));
    EXPECT_EQ(variance[1], T(16));
    EXPECT_EQ(skewness[0], T(0));
    EXPECT_EQ(skewness[1], T(0.75));            // 48/64
    EXPECT_EQ(kurtosis[1], T(336. / 256 - 3));  // the fourth moment is (3 * 16 + 1296)/4
    EXPECT_EQ(least[0], T(1));
    EXPECT_EQ(greatest[1], T(6));
  }
  T alone[2] = {0, 0};
  EXPECT_EQ(Api<T>::describe(2, 4, KOB_SS_COLUMNS, x, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             alone, nullptr),
            0);
  EXPECT_EQ(alone[0], T(3));
  EXPECT_EQ(describe(0, KOB_SS_ROWS, x, nullptr), -4002);
  EXPECT_EQ(describe(4, 7, x, nullptr), -4003);
  EXPECT_EQ(describe(4, KOB_SS_ROWS, nullptr, nullptr), -4032);
  EXPECT_EQ(fail_each_allocation([&] { return describe(4, KOB_SS_ROWS, x, nullptr); },
                                 [](int status) { EXPECT_EQ(status, -4000); }),
            4);
}

// Every status of the public headers has words of its own.
TEST(StatusText, OfEveryStatusInTheHeaders) {
  const struct {
    const char *header, *pattern;
    const char* (*text)(int);
  } headers[] = {{"ss.h", "KOB_SS_(OK|ERROR_\\w+) = (-?\\d+)", orx_ss_status_text},
                 {"kob.h", "KOB_(STATUS_OK|ERROR_\\w+) = (-?\\d+)", orx_kob_status_text},
                 {"df.h", "ORX_DF_(OK|ERROR_\\w+) = (-?\\d+)", orx_df_status_text}};
  for (const auto& h : headers) {
    std::ifstream file(std::string(ORX_HEADERS "/") + h.header);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    const std::regex pattern(h.pattern);
    int count = 0;
    for (std::sregex_iterator i(content.begin(), content.end(), pattern), end; i != end; ++i, ++count)
      EXPECT_STRNE(h.text(std::stoi((*i)[2])), "unknown status") << (*i)[0];
    EXPECT_GE(count, 28) << h.header;
    EXPECT_STREQ(h.text(12345), "unknown status");
  }
  EXPECT_STREQ(orx_df_status_text(-1000007), orx_df_status_text(-1000000));
}

TEST(Scalar, LogarithmAndRoot) {
  std::mt19937_64 random(11);
  double worst = 0;
  for (int i = 0; i < 3000; ++i) {
    const double near_one = 1 + std::ldexp(double(int64_t(random())), -64 - int(random() % 40));
    const double wide = std::ldexp(double(random() | 1), int(random() % 2000) - 1100);
    for (const double x : {near_one, wide}) {
      if (x == 1 || x == 0) continue;
      const double got = __kobdLn(x), unit = std::abs(got - std::nextafter(got, 0));
      worst = std::max(worst, double(abs(Mp(got) - log(Mp(x)))) / unit);
      EXPECT_EQ(__kobdSqrt(x), std::sqrt(x));
    }
  }
  EXPECT_LE(worst, 0.51);
  EXPECT_EQ(__kobdLn(1), 0);
  EXPECT_EQ(__kobdLn(0), -INFINITY);
  EXPECT_EQ(__kobdLn(INFINITY), INFINITY);
  EXPECT_TRUE(std::isnan(__kobdLn(-1)));
  EXPECT_TRUE(std::isnan(__kobdSqrt(-1)));
}

}  // namespace
