// The kernel frame with kernels whose mathematics is plain, in all calling shapes: every count, place and
// alignment, rare elements and reports among usual ones.
#include <gtest/gtest.h>

#include <cfenv>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include "frame/kernel.hpp"

using namespace orx::tef;

namespace {

struct Named {
  static constexpr char _TEF_THISFUNC_NAME[] = "vdTest";
};

template <class T>
constexpr Row<T> kHundred = T(100);
template <class T>
constexpr Row<T> kThousand = T(1000);

// The kernels below are rare where the first argument is 100 or more, and report an overflow from 1000 on. What
// is rare gets another result, so that it shows who made it.
template <class T>
int status_of(T a) {
  return a >= 1000 ? StatusOverflow : StatusOk;
}

template <class T, class B>
struct Product : Kernel<T(T, B)> {
  template <class X>
  static X rare(X a, X) {
    return not_below(a, kHundred<T>);
  }
  template <class X>
  static X eval(X a, X b) {
    return a * b;
  }
  static int rare_lane(const T* a, const T* b, T* r) {
    *r = -*a * *b;
    return status_of(*a);
  }
  static int expected(const T* a, const T* b, T* r) {
    *r = *a * *b;
    return *a < 100 ? StatusOk : rare_lane(a, b, r);
  }
};

template <class T, int together>
struct SumAndSquare : Kernel<Two<T>(T)> {
  static constexpr int kTogether = together;
  template <class X>
  static X rare(X a) {
    return not_below(a, kHundred<T>);
  }
  template <class X>
  static Two<X> eval(X a) {
    return {a + a, a * a};
  }
  static int rare_lane(const T* a, T* sum, T* square) {
    *sum = -1;
    *square = *a;
    return status_of(*a);
  }
  static int expected(const T* a, T* sum, T* square) {
    *sum = *a + *a;
    *square = *a * *a;
    return *a < 100 ? StatusOk : rare_lane(a, sum, square);
  }
};

template <class T>
struct ComplexProduct : Kernel<Complex<T>(Complex<T>, Complex<T>)> {
  template <class X>
  static X rare(Complex<X> a, Complex<X>) {
    return not_below(a.re, kHundred<T>);
  }
  template <class X>
  static Complex<X> eval(Complex<X> a, Complex<X> b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
  }
  static int rare_lane(const Complex<T>* a, const Complex<T>* b, Complex<T>* r) {
    *r = {-a->re, b->im};
    return status_of(a->re);
  }
  static int expected(const Complex<T>* a, const Complex<T>* b, Complex<T>* r) {
    *r = eval(*a, *b);
    return a->re < 100 ? StatusOk : rare_lane(a, b, r);
  }
};

template <class T>
struct Norm : Kernel<T(Complex<T>)> {
  template <class X>
  static X rare(Complex<X> a) {
    return not_below(a.re, kHundred<T>);
  }
  template <class X>
  static X eval(Complex<X> a) {
    return a.re * a.re + a.im * a.im;
  }
  static int rare_lane(const Complex<T>* a, T* r) {
    *r = -a->im;
    return status_of(a->re);
  }
  static int expected(const Complex<T>* a, T* r) {
    *r = eval(*a);
    return a->re < 100 ? StatusOk : rare_lane(a, r);
  }
};

template <class T>
struct FromReal : Kernel<Complex<T>(T)> {
  static constexpr int kTogether = 2;
  template <class X>
  static X rare(X a) {
    return not_below(a, kHundred<T>);
  }
  template <class X>
  static Complex<X> eval(X a) {
    return {a + a, a * a};
  }
  static int rare_lane(const T* a, Complex<T>* r) {
    *r = {-*a, 1};
    return status_of(*a);
  }
  static int expected(const T* a, Complex<T>* r) {
    *r = eval(*a);
    return *a < 100 ? StatusOk : rare_lane(a, r);
  }
};

// Parts side by side; what is rare shows in the sum of either part, so eval tells it itself.
template <class T>
struct PairSum : Kernel<Pair<T>(Pair<T>, Pair<T>)> {
  static constexpr int kTogether = 2;
  template <class X>
  static X eval(X a, X b, X& rare) {
    const X sum = a + b;
    rare = not_below(sum, kHundred<T>);
    return sum;
  }
  static int rare_lane(const Complex<T>* a, const Complex<T>* b, Complex<T>* r) {
    *r = {-(a->re + b->re), -(a->im + b->im)};
    return status_of(a->re + b->re);
  }
  static int expected(const Complex<T>* a, const Complex<T>* b, Complex<T>* r) {
    *r = {a->re + b->re, a->im + b->im};
    return r->re < 100 && r->im < 100 ? StatusOk : rare_lane(a, b, r);
  }
};

// Both tests, and a second path between: from 100 on the difference is finished there, from 1000 on it is finished
// and reported, and from 2000 on the scalar routine is called; eval finds those out that are 50 or more.
template <class T, int together>
struct Staged : Kernel<T(T)> {
  static constexpr int kTogether = together;
  template <class X>
  static X rare(X a) {
    return not_below(a, kHundred<T>);
  }
  template <class X>
  static X eval(X a, X& rare) {
    rare = not_below(a, kFifty);
    return a * a;
  }
  template <class X, class Left>
  static void finish(X a, Left& left) {
    const X enormous = not_below(a, kTwoThousand), large = not_below(a, kThousand<T>);
    left.finish(bit_andnot(enormous, large), a - kThousand<T>, StatusUnderflow);
    left.finish(bit_andnot(large, not_below(a, kHundred<T>)), a - kHundred<T>);
  }
  static int rare_lane(const T* a, T* r) {
    *r = -*a;
    return *a >= 2000 ? StatusDomain : StatusOk;
  }
  static int expected(const T* p, T* r) {
    const T a = *p;
    *r = a < 50 ? a * a : a < 100 ? -a : a < 1000 ? a - 100 : a < 2000 ? a - 1000 : -a;
    return a < 1000 ? StatusOk : a < 2000 ? StatusUnderflow : StatusDomain;
  }

 private:
  static constexpr Row<T> kFifty = T(50), kTwoThousand = T(2000);
};

// The same with a formula of its own from 100 to 1000, for whole blocks, too.
template <class T, int together>
struct StagedWithFar : Staged<T, together> {
  template <class X>
  static auto far(X a) {
    return bit_andnot(not_below(a, kThousand<T>), not_below(a, kHundred<T>));
  }
  template <class X>
  static X eval_far(X a) {
    return a + a;
  }
  static int expected(const T* p, T* r) {
    const int status = Staged<T, together>::expected(p, r);
    if (*p >= 100 && *p < 1000) *r = *p + *p;
    return status;
  }
};

// Singles that are computed in doubles.
struct InDoubles : Kernel<float(float)> {
  static constexpr float kSafe = 1.0f;
  template <class X>
  static X rare(X a) {
    return not_below(a, kHundred<float>);
  }
  template <class X>
  static X eval(X a) {
    const auto wide = widen(a);
    return narrow(wide * wide + wide);
  }
  static int rare_lane(const float* a, float* r) {
    *r = -*a;
    return status_of(*a);
  }
  static int expected(const float* a, float* r) {
    *r = *a * *a + *a;
    return *a < 100 ? StatusOk : rare_lane(a, r);
  }
};

// No vector code, and nothing rare.
template <class E>
struct Elementwise : ElementKernel<E(E)> {
  static constexpr Control kControl = Control::kExtended;
  static int rare_lane(const double* a, double* r) {
    *r = 3 * *a;
    return status_of(*a);
  }
  static int rare_lane(const Complex<float>* a, Complex<float>* r) {
    *r = {-a->im, a->re};
    return status_of(a->re);
  }
  static int expected(const E* a, E* r) { return rare_lane(a, r); }
};

// ---- calls, and what they are to give, by shape; arrays of reals for elements of all kinds
template <class T>
constexpr T kScalar = 3;

template <class K, class Signature = typename K::Signature>
struct Caller;
template <class K, class R, class A>
struct Caller<K, R(A)> {
  using T = typename K::Real;
  static constexpr int kInParts = Element<A>::kParts, kOutParts = Element<R>::kParts;
  static constexpr bool kSecondInput = false, kTwoResults = false;
  static void call(int n, const T* a, const T*, T* r, T*) { run_kernel<K, Named>(n, a, r); }
  static int expected(const T* a, const T*, T* r, T*) {
    return K::expected(reinterpret_cast<const typename Element<A>::Memory*>(a),
                       reinterpret_cast<typename Element<R>::Memory*>(r));
  }
};
template <class K, class T>
struct Caller<K, Two<T>(T)> : Caller<K, T(T)> {
  static constexpr bool kTwoResults = true;
  static void call(int n, const T* a, const T*, T* r, T* s) { run_kernel<K, Named>(n, a, r, s); }
  static int expected(const T* a, const T*, T* r, T* s) { return K::expected(a, r, s); }
};
template <class K, class R, class A, class B>
struct Caller<K, R(A, B)> : Caller<K, R(A)> {
  using T = typename K::Real;
  static constexpr bool kSecondInput = true;
  static void call(int n, const T* a, const T* b, T* r, T*) { run_kernel<K, Named>(n, a, b, r); }
  static int expected(const T* a, const T* b, T* r, T*) {
    using M = typename Element<A>::Memory;
    return K::expected(reinterpret_cast<const M*>(a), reinterpret_cast<const M*>(b), reinterpret_cast<M*>(r));
  }
};
template <class K, class T>
struct Caller<K, T(T, Scalar<T>)> : Caller<K, T(T)> {
  static constexpr bool kSecondInput = true;
  static void call(int n, const T* a, const T*, T* r, T*) { run_kernel<K, Named>(n, a, kScalar<T>, r); }
  static int expected(const T* a, const T*, T* r, T*) { return K::expected(a, &kScalar<T>, r); }
};

// ---- every count and place
struct Report {
  int status, index;
  double arg1, arg1Im, arg2, arg2Im, res2;
  bool operator==(const Report& o) const {
    return status == o.status && index == o.index && arg1 == o.arg1 && arg1Im == o.arg1Im && arg2 == o.arg2 &&
           arg2Im == o.arg2Im && res2 == o.res2;
  }
};
std::vector<Report> reports;

// Leaves its mark on the results.
int record(TefErrorContext* e) {
  reports.push_back({e->status, e->index, e->arg1, e->arg1Im, e->arg2, e->arg2Im, e->res2});
  e->res1 += 0.5;
  e->res1Im += 0.25;
  return 0;
}

// Small numbers, with values between them that are rare in various ways; stretches of small numbers alone, and of such as have a
// formula of their own.
double value(int i) {
  constexpr double kRare[] = {60, 100, 250, 1000, 1500, 2000, 1e6};
  enum { kMixed, kSmall, kFar };
  constexpr int kStretch[] = {kMixed, kMixed, kSmall, kFar, kMixed, kFar, kSmall, kSmall};
  const int stretch = kStretch[i / 35 % 8];
  if (stretch == kFar) return 100 + i % 100;
  const bool rare = i % 5 == 3 || i % 16 > 12;
  return rare && stretch == kMixed ? kRare[i % 7] : i % 9 - 4;
}

template <class K>
class Trial {
  using C = Caller<K>;
  using T = typename K::Real;
  static constexpr int kRoom = 700, kMargin = 16;

 public:
  // n elements from places `from` and `to` of the arrays on.
  void run(int n, int from, int to, bool in_place) {
    for (int i = 0; i < kRoom; ++i) {
      a[i] = static_cast<T>(value(i));
      b[i] = static_cast<T>(value(i) / 4);
      r[i] = s[i] = expected_r[i] = expected_s[i] = in_place ? a[i] : T(-77);
    }
    T *const in = (in_place ? r : a) + kMargin + from, *const second = b + kMargin + from;
    const int out = kMargin + (in_place ? from : to);
    const std::vector<Report> expected = expect(n, a + kMargin + from, second, out, in_place);
    reports.clear();
    C::call(n, in, second, r + out, s + out);
    for (int i = 0; i < kRoom; ++i) {
      ASSERT_EQ(r[i], expected_r[i]) << i - out << " of " << n << " from " << from << " to " << to;
      ASSERT_EQ(s[i], expected_s[i]) << i - out << " of " << n;
    }
    ASSERT_TRUE(reports == expected) << n << " from " << from << " to " << to << ": " << reports.size()
                                     << " reports, expected " << expected.size();
  }

 private:
  std::vector<Report> expect(int n, const T* a_, const T* b_, int out, bool in_place) {
    std::vector<Report> all;
    for (int i = 0; i < n; ++i) {
      const T* const x = a_ + C::kInParts * i;
      const T* const y = b_ + C::kInParts * i;
      T* const first = expected_r + out + C::kOutParts * i;
      T* const other = expected_s + out + C::kOutParts * i;
      const int status = C::expected(x, y, first, other);
      if (status == StatusOk) continue;
      const bool scalar = C::kSecondInput && std::is_same_v<typename K::Signature, T(T, Scalar<T>)>;
      // In place the error layer finds the result for the argument.
      const T* const seen = in_place ? first : x;
      const double re = seen[0], im = C::kInParts == 2 ? seen[1] : 0;
      all.push_back({status, i, re, im,
                     !C::kSecondInput ? re
                     : scalar         ? kScalar<T>
                                      : y[0],
                     !C::kSecondInput   ? im
                     : C::kInParts == 2 ? y[1]
                                        : 0,
                     C::kTwoResults ? other[0] : first[0]});
      first[0] += T(0.5);
      if (C::kOutParts == 2) first[1] += T(0.25);
    }
    return all;
  }

  alignas(64) T a[kRoom], b[kRoom], r[kRoom], s[kRoom], expected_r[kRoom], expected_s[kRoom];
};

template <class K>
class Frame : public testing::Test {
 protected:
  void SetUp() override {
    _tefSetErrorCallBack(record);
    _tefSetMode(TEF_ERRMODE_CALLBACK);
  }
  void TearDown() override { _tefClearErrorCallBack(); }
};

using Kernels =
    testing::Types<Product<double, double>, Product<float, float>, Product<double, Scalar<double>>,
                   Product<float, Scalar<float>>, SumAndSquare<double, 1>, SumAndSquare<double, 2>,
                   SumAndSquare<float, 4>, ComplexProduct<double>, ComplexProduct<float>, Norm<double>,
                   Norm<float>, FromReal<double>, FromReal<float>, PairSum<double>, PairSum<float>,
                   Staged<double, 1>, Staged<double, 4>, Staged<float, 2>, StagedWithFar<double, 1>,
                   StagedWithFar<double, 4>, StagedWithFar<float, 2>, InDoubles, Elementwise<double>,
                   Elementwise<Complex<float>>>;
TYPED_TEST_SUITE(Frame, Kernels);

TYPED_TEST(Frame, EveryCountAndPlace) {
  Trial<TypeParam> trial;
  for (int n = 0; n < 280; n += n < 40 ? 1 : 60)
    for (int from = 0; from < 9; ++from)
      for (int to : {0, 1, 6}) {
        trial.run(n, from, to, false);
        if (this->HasFatalFailure()) return;
      }
}
TYPED_TEST(Frame, InPlace) {
  if constexpr (Caller<TypeParam>::kInParts == Caller<TypeParam>::kOutParts) {
    Trial<TypeParam> trial;
    for (int n = 0; n < 280; n += n < 40 ? 1 : 60)
      for (int from = 0; from < 9; ++from) {
        trial.run(n, from, from, true);
        if (this->HasFatalFailure()) return;
      }
  }
}

// ---- what lies behind the last element
// Rare by its scalar argument, as absent elements are then too.
struct RareByScalar : Kernel<double(double, Scalar<double>)> {
  template <class X>
  static X rare(X, X b) {
    return not_below(b, kHundred<double>);
  }
  template <class X>
  static X eval(X a, X b) {
    return a * b;
  }
  static int rare_lane(const double*, const double* b, double* r) {
    *r = *b;
    return StatusOverflow;
  }
};

TEST(FrameEnd, AbsentElementsAreNotRepaired) {
  _tefSetErrorCallBack(record);
  _tefSetMode(TEF_ERRMODE_CALLBACK);
  for (int n = 1; n < 12; ++n) {
    const std::vector<double> a(n, 1.0);
    std::vector<double> r(n + 8, -77.0);
    reports.clear();
    run_kernel<RareByScalar, Named>(n, a.data(), 1e6, r.data());
    EXPECT_EQ(static_cast<int>(reports.size()), n);
    for (int i = n; i < n + 8; ++i) EXPECT_EQ(r[i], -77.0) << n;
  }
  _tefClearErrorCallBack();
}

// Rare in the same way, and finished by a product that overflows for what stands in the place of absent elements.
struct FinishedByScalar : RareByScalar {
  static constexpr double kSafe = 2;
  template <class X, class Left>
  static void finish(X a, X b, Left& left) {
    left.finish(left.lanes, bit_and(left.lanes, a) * b);
  }
};

TEST(FrameEnd, AbsentElementsRaiseNothing) {
  const double largest = std::numeric_limits<double>::max();
  for (int n = 1; n < 12; ++n) {
    const std::vector<double> a(n, 0.5);
    std::vector<double> r(n);
    std::feclearexcept(FE_ALL_EXCEPT);
    run_kernel<FinishedByScalar, Named>(n, a.data(), largest, r.data());
    EXPECT_FALSE(std::fetestexcept(FE_OVERFLOW)) << n;
    EXPECT_EQ(r, std::vector<double>(n, largest / 2));
  }
}

// The error layer counts in elements of the argument: reals here, though the function is complex.
TEST(FrameErrors, IndexInTheWholeVectorOfReals) {
  _tefSetErrorCallBack(record);
  _tefSetMode(TEF_ERRMODE_CALLBACK);
  std::vector<float> a(20, 1.0f), r(40);
  a[13] = 1000;
  reports.clear();
  orx_tef_kernel_SetInterfInputVectorPointer(a.data());
  run_kernel<FromReal<float>, Named>(10, a.data() + 7, r.data());
  orx_tef_kernel_SetInterfInputVectorPointer(nullptr);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].index, 13);
  _tefClearErrorCallBack();
}

// ---- control words
template <Control control>
struct Third : Kernel<double(double)> {
  static constexpr Control kControl = control;
  template <class X>
  static X eval(X a) {
    return a / kThree;
  }

 private:
  static constexpr Row<double> kThree = 3.0;
};

uint16_t x87_control() {
  uint16_t word;
  asm volatile("fnstcw %0" : "=m"(word));
  return word;
}
void set_x87_control(uint16_t word) { asm volatile("fldcw %0" : : "m"(word)); }

struct ControlWord : ElementKernel<double(double)> {
  static constexpr Control kControl = Control::kExtended;
  static int rare_lane(const double*, double* r) {
    *r = x87_control();
    return StatusOk;
  }
};

TEST(FrameControl, RoundingAndFlushOfEachKind) {
  constexpr unsigned kUpAndFlush = 0x1F80 | 0x4000 | 0x8040;
  const double a[2] = {1.0, 5e-308};
  const double nearest = 1.0 / 3, up = 0x1.5555555555556p-2;
  double r[2];
  const auto call = [&](auto kernel) {
    _mm_setcsr(kUpAndFlush);
    run_kernel<decltype(kernel), Named>(2, a, r);
    EXPECT_EQ(_mm_getcsr() & ~0x3Fu, kUpAndFlush);
    _mm_setcsr(0x1F80);
  };
  _tefSetMode(TEF_FLUSH_OFF);
  call(Third<Control::kMode>{});
  EXPECT_EQ(r[0], nearest);
  EXPECT_GT(r[1], 0);
  call(Third<Control::kUntouched>{});
  EXPECT_EQ(r[0], up);
  EXPECT_EQ(r[1], 0);
  _tefSetMode(TEF_FLUSH_ON);
  call(Third<Control::kMode>{});
  EXPECT_EQ(r[0], nearest);
  EXPECT_EQ(r[1], 0);
  call(Third<Control::kNearest>{});
  EXPECT_EQ(r[0], nearest);
  EXPECT_GT(r[1], 0);
  _tefSetMode(TEF_FLUSH_OFF);
}

TEST(FrameControl, X87WordIsExtendedInsideAndTheCallersAfterwards) {
  const uint16_t caller = x87_control();
  const double a[1] = {};
  double r[1];
  for (const uint16_t word : {0x027F, 0x0B7F, 0x037F}) {  // double; up and extended; nothing to change
    set_x87_control(word);
    run_kernel<ControlWord, Named>(1, a, r);
    EXPECT_EQ(x87_control(), word);
    EXPECT_EQ(static_cast<int>(r[0]) & 0xFFF, (word & 0xFF) | 0x300);
  }
  set_x87_control(caller);
}

// What is evaluated: no vector without elements, and but one more than they fill, where a long call begins and ends
// between boundaries.
template <int together>
struct Evaluations : Kernel<double(double)> {
  static constexpr int kTogether = together;
  static int vectors;
  template <class X>
  static X eval(X a) {
    vectors += X::kCount;
    return a;
  }
};
template <int together>
int Evaluations<together>::vectors;

template <int together>
void check_evaluations() {
  using K = Evaluations<together>;
  constexpr int lanes = Vec<double, 1>::kLanes;
  alignas(64) double a[400] = {}, r[400];
  for (int offset = 0; offset < lanes; ++offset)
    for (int n = 0; n < 390; ++n) {
      K::vectors = 0;
      run_kernel<K, Named>(n, static_cast<const double*>(a + offset), r);
      const int full = (n + lanes - 1) / lanes;
      ASSERT_GE(K::vectors, full) << n << " from " << offset;
      ASSERT_LE(K::vectors, full + (offset > 0 && n > 16 * lanes)) << n << " from " << offset;
    }
}
TEST(FrameLoop, NoEmptyPartIsEvaluated) {
  check_evaluations<1>();
  check_evaluations<2>();
  check_evaluations<4>();
}

// Nothing is touched for no elements, nor asked.
TEST(FrameControl, NoElements) {
  _mm_setcsr(0x7F80);
  run_kernel<Third<Control::kMode>, Named>(0, static_cast<const double*>(nullptr),
                                           static_cast<double*>(nullptr));
  EXPECT_EQ(_mm_getcsr(), 0x7F80u);
  _mm_setcsr(0x1F80);
}

}  // namespace
