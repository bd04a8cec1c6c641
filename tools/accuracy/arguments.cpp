#include "arguments.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

template <class T>
class Collector {
 public:
  Collector(double effort, std::mt19937_64& random) : effort_(effort), random_(random) {}

  double uniform(double from, double to) { return std::uniform_real_distribution<double>(from, to)(random_); }
  int times(double count) const { return std::max(1, static_cast<int>(count * effort_)); }

  void add(double x) { all.push_back(static_cast<T>(x)); }

  // 2 radius + 1 consecutive values.
  void around(double center, int radius) {
    const T c = static_cast<T>(center);
    all.push_back(c);
    T up = c, down = c;
    for (int i = 0; i < radius; ++i) {
      all.push_back(up = std::nextafter(up, std::numeric_limits<T>::infinity()));
      all.push_back(down = std::nextafter(down, -std::numeric_limits<T>::infinity()));
    }
  }

  // Consecutive values, and both sides at distances from one place to the point's own size.
  void approach(double center) {
    around(center, times(40));
    const double size = center != 0 ? std::fabs(center) : 1;
    for (int k = 1; k <= Format<T>::kDigits; ++k)
      for (int i = 0; i < times(2); ++i) {
        const double distance = std::ldexp(size * uniform(1, 2), -k);
        add(center + distance);
        add(center - distance);
      }
  }

  // Every exponent of both signs; below the normal range every length.
  void every_exponent() {
    constexpr int p = Format<T>::kDigits;
    const double last = std::ldexp(1.0, 1 - p);
    for (int e = Format<T>::kLowUnit; e < Format<T>::kEnd; ++e) {
      for (int i = 0; i < times(1); ++i) {
        const double m = uniform(1, 2);
        for (double mantissa : {1.0, 1 + last, 2 - last, 1.5, m, 3 - m}) {
          add(std::ldexp(mantissa, e));
          add(-std::ldexp(mantissa, e));
        }
      }
    }
  }

  void specials() {
    using Limits = std::numeric_limits<T>;
    for (T x : {T(0), Limits::infinity(), Limits::quiet_NaN(), Limits::signaling_NaN(), Limits::max(),
                Limits::min(), Limits::denorm_min(), Limits::epsilon()})
      for (int i = 0; i < 4; ++i) {
        all.push_back(x);
        all.push_back(-x);
      }
    around(static_cast<double>(Limits::min()), times(20));
    around(-static_cast<double>(Limits::min()), times(20));
  }

  // Around multiples of half the step.
  void multiples(double step, double from, double to) {
    const double half = step / 2;
    for (int i = 0; i < times(400); ++i) around(std::round(uniform(from, to) / half) * half, 1);
  }

  // Boundaries of tables that are indexed by leading bits of the mantissa, or by those of its reciprocal.
  void mantissa_boundaries() {
    for (int i = 0; i < times(1000); ++i) {
      const double k = std::floor(uniform(1024, 2048));
      const int e = static_cast<int>(uniform(-12, 4));
      around(std::ldexp(k, e), 1);
      around(std::ldexp(1 / k, e + 20), 1);
    }
  }

  void spread(double from, double to, int count) {
    for (int i = 0; i < count; ++i) add(uniform(from, to));
    if (from <= 0) return;
    for (int i = 0; i < count; ++i) add(std::exp(uniform(std::log(from), std::log(to))));
  }

  std::vector<T> all;

 private:
  const double effort_;
  std::mt19937_64& random_;
};

template <class T>
std::vector<T> strata(const FunctionEntry& function, const JudgedFunction& judged, double effort,
                      std::mt19937_64& random) {
  const KernelEntry& kernel = function.kernels.front();
  Collector<T> c(effort, random);
  if (judged.moderate_positive) {
    c.spread(0x1p-30, 0x1p30, c.times(10000));
    return std::move(c.all);
  }
  c.specials();
  c.every_exponent();
  for (double point : {0.0, 1.0, -1.0}) c.approach(point);
  for (double point : judged.points) c.approach(point);
  for (double step : judged.steps)
    c.multiples(step, std::max(kernel.from, -1000.0), std::min(kernel.to, 1000.0));
  c.mantissa_boundaries();
  for (double x : judged.hard) c.around(x, 2);
  c.spread(kernel.from, kernel.to, c.times(10000));
  for (int i = 0; i < c.times(5000); ++i) {
    c.add(c.uniform(-2, 2));
    c.add(std::copysign(std::exp2(c.uniform(-10, 4)), c.uniform(-1, 1)));
  }
  return std::move(c.all);
}

}  // namespace

template <class T>
Columns<T> make_arguments(const FunctionEntry& function, const JudgedFunction& judged, double effort,
                          std::mt19937_64& random) {
  Columns<T> x(1, strata<T>(function, judged, effort, random));
  std::shuffle(x[0].begin(), x[0].end(), random);
  if (function.shape->inputs == 2) {
    // Every other pair is of any two arguments, the rest are of like size.
    x.push_back(x[0]);
    std::shuffle(x[1].begin(), x[1].end(), random);
    std::uniform_real_distribution<double> factor(0.25, 4);
    for (size_t i = 0; i < x[1].size(); i += 2) {
      const double like = x[0][i] * factor(random);
      x[1][i] = static_cast<T>(i % 4 && !judged.moderate_positive ? -like : like);
    }
  }
  return x;
}

template <class T>
std::array<T, 4> make_scalars(std::mt19937_64& random) {
  std::uniform_real_distribution<double> exponent(-20, 20);
  std::array<T, 4> scalar;
  for (T& s : scalar) s = static_cast<T>(std::exp2(exponent(random)));
  return scalar;
}

template Columns<float> make_arguments(const FunctionEntry&, const JudgedFunction&, double, std::mt19937_64&);
template Columns<double> make_arguments(const FunctionEntry&, const JudgedFunction&, double,
                                        std::mt19937_64&);
template std::array<float, 4> make_scalars(std::mt19937_64&);
template std::array<double, 4> make_scalars(std::mt19937_64&);
