// Error and speed of the accuracy classes beside the C library, as measured here and now.
#include <x86intrin.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <vector>

#include "chapters.h"
#include "front.h"

namespace {

template <class T>
struct Function {
  const char* name;
  double low, high;  // of the arguments
  bool logarithmic;  // arguments even in ln x, not in x
  void (*vector)(int, const T*, T*);
  T (*scalar)(T);
  long double (*reference)(long double);
};

template <class T>
std::vector<T> arguments(const Function<T>& f, int n) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> even(f.logarithmic ? std::log(f.low) : f.low,
                                              f.logarithmic ? std::log(f.high) : f.high);
  std::vector<T> x(n);
  for (T& value : x) value = T(f.logarithmic ? std::exp(even(random)) : even(random));
  return x;
}

// Largest distance from the long double result, in units in the last place of the element type.
template <class T, class Compute>
double worst_ulps(const Function<T>& f, Compute compute) {
  const std::vector<T> x = arguments(f, 200000);
  std::vector<T> y(x.size());
  compute(int(x.size()), x.data(), y.data());
  double worst = 0;
  for (size_t i = 0; i < x.size(); ++i) {
    const long double exact = f.reference(x[i]);
    int exponent;
    std::frexp(exact, &exponent);
    const long double ulp = std::ldexp(1.0L, exponent - std::numeric_limits<T>::digits);
    worst = std::max(worst, double(std::fabs(y[i] - exact) / ulp));
  }
  return worst;
}

// Time-stamp cycles per element on a vector that stays in cache, the least of many runs.
template <class T, class Compute>
double cycles(const Function<T>& f, Compute compute) {
  const int n = 2000;
  const std::vector<T> x = arguments(f, n);
  std::vector<T> y(n);
  unsigned long long least = ~0ull;
  for (int run = 0; run < 300; ++run) {
    const unsigned long long start = __rdtsc();
    compute(n, x.data(), y.data());
    least = std::min(least, __rdtsc() - start);
  }
  return double(least) / n;
}

template <class T>
void compare(const Function<T>& f) {
  const auto c_library = [&](int n, const T* x, T* y) {
    for (int i = 0; i < n; ++i) y[i] = f.scalar(x[i]);
  };
  const double c_cycles = cycles(f, c_library);
  const auto print = [&](const char* how, double ulps, double cost) {
    std::printf(
        "  %-5s %-9s  %12.2f  %12.1f  %15.2f  %14.1f\n", f.name, how, ulps,
        std::min<double>(std::numeric_limits<T>::digits, std::numeric_limits<T>::digits - std::log2(ulps)),
        cost, c_cycles / cost);
  };
  print("C library", worst_ulps(f, c_library), c_cycles);
  const struct {
    const char* name;
    int mode;
  } classes[] = {{"HA", TEF_HA}, {"LA", TEF_LA}, {"EP", TEF_EP}};
  for (const auto& c : classes) {
    const front::Mode mode(c.mode);
    print(c.name, worst_ulps(f, f.vector), cycles(f, f.vector));
  }
}

}  // namespace

void accuracy(const std::string& /*data_directory*/) {
  std::printf("\n  function       largest error  correct bits   cycles/element  times as fast\n");
  compare<double>({"dExp", -700, 700, false, front::exp, std::exp, std::exp});
  compare<double>({"dLn", 1e-300, 1e300, true, front::ln, std::log, std::log});
  compare<float>({"sExp", -87, 88, false, front::exp, std::exp, std::exp});
  compare<float>({"sLn", 1e-37, 1e38, true, front::ln, std::log, std::log});
}
