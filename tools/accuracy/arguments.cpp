#include "arguments.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "judge.hpp"

namespace orx {
namespace {

using descriptor::Joint;
using descriptor::Stratum;

template <class R>
class Collector {
 public:
  Collector(double effort, bool with_specials, std::mt19937_64& random)
      : effort_(effort), with_specials_(with_specials), random_(random) {}

  void add(const Stratum& s) {
    switch (s.kind) {
      case Stratum::Kind::Everywhere:
        return everywhere();
      case Stratum::Kind::Around:
        for (double point : s.points) approach(point);
        return;
      case Stratum::Kind::Multiples:
        for (double step : s.points) multiples(step, s.from, s.to);
        return;
      case Stratum::Kind::Neighbours:
        for (double point : s.points) neighbours(point, 2);
        return;
      case Stratum::Kind::Even:
        for (int i = times(5000); i > 0; --i) add(uniform(s.from, s.to));
        return;
      case Stratum::Kind::Logarithmic:
        for (int i = times(5000); i > 0; --i) add(logarithmic(s.from, s.to));
        return;
      case Stratum::Kind::Boundaries:
        return boundaries();
    }
  }

  void add(double x) { all.push_back(static_cast<R>(x)); }
  int times(double count) const { return std::max(1, static_cast<int>(count * effort_)); }
  double uniform(double from, double to) { return std::uniform_real_distribution<double>(from, to)(random_); }

  std::vector<R> all;

 private:
  double logarithmic(double from, double to) {
    const double exponent = uniform(std::log2(std::fabs(from)), std::log2(std::fabs(to)));
    return std::copysign(std::exp2(exponent), from);
  }

  // 2 radius + 1 consecutive values.
  void neighbours(double center, int radius) {
    const R c = static_cast<R>(center);
    all.push_back(c);
    R up = c, down = c;
    for (int i = 0; i < radius; ++i) {
      all.push_back(up = std::nextafter(up, std::numeric_limits<R>::infinity()));
      all.push_back(down = std::nextafter(down, -std::numeric_limits<R>::infinity()));
    }
  }

  void approach(double center) {
    neighbours(center, times(40));
    const double size = center != 0 ? std::fabs(center) : 1;
    for (int k = 1; k <= Format<R>::digits; ++k)
      for (int i = 0; i < times(2); ++i) {
        const double distance = std::ldexp(size * uniform(1, 2), -k);
        add(center + distance);
        add(center - distance);
      }
  }

  void everywhere() {
    constexpr int p = Format<R>::digits;
    const double last = std::ldexp(1.0, 1 - p);
    for (int e = Format<R>::low_unit; e < Format<R>::end; ++e) {
      for (int i = 0; i < times(1); ++i) {
        const double m = uniform(1, 2);
        for (double mantissa : {1.0, 1 + last, 2 - last, 1.5, m, 3 - m}) {
          add(std::ldexp(mantissa, e));
          add(-std::ldexp(mantissa, e));
        }
      }
    }
    if (with_specials_) specials();
  }

  void specials() {
    using Limits = std::numeric_limits<R>;
    for (R x : {R(0), Limits::infinity(), Limits::quiet_NaN(), Limits::signaling_NaN(), Limits::max(),
                Limits::min(), Limits::denorm_min(), Limits::epsilon()})
      for (int i = 0; i < 4; ++i) {
        all.push_back(x);
        all.push_back(-x);
      }
    neighbours(static_cast<double>(Limits::min()), times(20));
    neighbours(-static_cast<double>(Limits::min()), times(20));
  }

  // Around multiples of half the step.
  void multiples(double step, double from, double to) {
    const double half = step / 2;
    for (int i = 0; i < times(400); ++i) neighbours(std::round(uniform(from, to) / half) * half, 1);
  }

  void boundaries() {
    for (int i = 0; i < times(1000); ++i) {
      const double k = std::floor(uniform(1024, 2048));
      const int e = static_cast<int>(uniform(-12, 4));
      neighbours(std::ldexp(k, e), 1);
      neighbours(std::ldexp(1 / k, e + 20), 1);
    }
  }

  const double effort_;
  const bool with_specials_;
  std::mt19937_64& random_;
};

// What suits every function.
template <class R>
void add_general_strata(Collector<R>& c, descriptor::Interval timed) {
  c.add(descriptor::everywhere());
  c.add(descriptor::around({0, 1, -1}));
  c.add(descriptor::boundaries());
  c.add(descriptor::even(timed.from, timed.to));
  c.add(descriptor::even(timed.from, timed.to));
  if (timed.from > 0) {
    c.add(descriptor::logarithmic(timed.from, timed.to));
    c.add(descriptor::logarithmic(timed.from, timed.to));
  }
  for (int i = 0; i < c.times(5000); ++i) {
    c.add(c.uniform(-2, 2));
    c.add(std::copysign(std::exp2(c.uniform(-10, 4)), c.uniform(-1, 1)));
  }
}

template <class R>
class ArgumentMaker {
 public:
  ArgumentMaker(const Function& f, double effort, std::mt19937_64& random)
      : f_(f),
        effort_(effort),
        random_(random),
        width_(f.in_width()),
        operands_(f.shape->inputs + (f.shape->scalars == width_)),
        columns_(static_cast<size_t>(width_ * operands_)) {}

  Columns<R> make() {
    spread();
    for (const auto* list : {&f_.descriptor->joints, &f_.about().joints})
      for (const Joint& joint : *list) add(joint);
    for (const std::vector<double>& element : f_.about().cases)
      for (size_t k = 0; k < columns_.size(); ++k) columns_[k].push_back(static_cast<R>(element[k]));
    shuffle_rows();
    return std::move(columns_);
  }

 private:
  // Each column all the strata in an order of its own. In three rows of four some columns are of like size: all, the
  // parts of one operand, the same part of both.
  void spread() {
    Collector<R> c(effort_, !f_.complex(), random_);
    if (!f_.descriptor->only_these_strata) add_general_strata(c, f_.about().timed);
    for (const auto* list : {&f_.descriptor->strata, &f_.about().strata})
      for (const Stratum& s : *list) c.add(s);
    for (auto& column : columns_) {
      column = c.all;
      std::shuffle(column.begin(), column.end(), random_);
    }
    for (size_t i = 0; i < c.all.size() && columns_.size() > 1; ++i) {
      const size_t mode = i % 4;
      for (size_t k = 1; k < columns_.size(); ++k) {
        const size_t model = mode == 1 ? 0 : mode == 2 ? k - k % 2 : mode == 3 && k >= 2 ? k - 2 : k;
        if (model != k) columns_[k][i] = like(columns_[model][i]);
      }
    }
  }

  R like(R x) {
    std::uniform_real_distribution<double> factor(0.25, 4);
    const double y = static_cast<double>(x) * factor(random_);
    return static_cast<R>(random_() % 2 || f_.descriptor->only_these_strata ? y : -y);
  }

  // Pairs of the joint stratum as the first two columns, and in another order as the next two.
  void add(const Joint& joint) {
    Collector<R> u(effort_, false, random_), v(effort_, false, random_);
    u.add(joint.u);
    v.add(joint.v);
    const int count = u.times(5000);
    for (size_t first = 0; first + 1 < columns_.size(); first += 2)
      for (int i = 0; i < count; ++i) {
        const double a = static_cast<double>(u.all[random_() % u.all.size()]);
        const double b = static_cast<double>(v.all[random_() % v.all.size()]);
        const descriptor::Pair pair = joint.make ? joint.make(a, b) : descriptor::Pair{a, b};
        columns_[first].push_back(static_cast<R>(pair.x));
        columns_[first + 1].push_back(static_cast<R>(pair.y));
      }
  }

  void shuffle_rows() {
    const uint64_t seed = random_();
    for (auto& column : columns_) {
      std::mt19937_64 same(seed);
      std::shuffle(column.begin(), column.end(), same);
    }
  }

  const Function& f_;
  const double effort_;
  std::mt19937_64& random_;
  const int width_, operands_;
  Columns<R> columns_;
};

}  // namespace

template <class R>
Columns<R> make_arguments(const Function& f, double effort, std::mt19937_64& random) {
  return ArgumentMaker<R>(f, effort, random).make();
}

template <class R>
std::array<R, 4> make_scalars(std::mt19937_64& random) {
  std::uniform_real_distribution<double> exponent(-20, 20);
  std::array<R, 4> scalar;
  for (R& s : scalar) s = static_cast<R>(std::exp2(exponent(random)));
  return scalar;
}

template Columns<float> make_arguments(const Function&, double, std::mt19937_64&);
template Columns<double> make_arguments(const Function&, double, std::mt19937_64&);
template std::array<float, 4> make_scalars(std::mt19937_64&);
template std::array<double, 4> make_scalars(std::mt19937_64&);

}  // namespace orx
