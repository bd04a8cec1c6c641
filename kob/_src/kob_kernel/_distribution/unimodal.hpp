// Rejection for discrete laws of one mode M, whose probabilities are made of factorials: hats of few parts over f(y)
// / f(M), and the exact test of a block of tries by vector math.
#pragma once

#include "rejection.hpp"

namespace orx::rng {

// f(y) as a product of base^y and, for each term, Gamma(x)^-weight where x = at_mode + slope (y - M), the slope 1 or
// -1, the weight 1 or -1.
struct FactorialRatio {
  struct Term {
    double at_mode, slope, weight;
  };
  static constexpr int kMostTerms = 4;

  double mode, per_step;
  int terms;
  Term term[kMostTerms];

  template <int count>
  FactorialRatio(const VectorMath& math, double at, double base, const Term (&given)[count])
      : mode(at), per_step(0), terms(count) {
    static_assert(count <= kMostTerms);
    for (int j = 0; j < count; ++j) {
      term[j] = given[j];
      per_step += given[j].weight * given[j].slope;
      base = given[j].weight * given[j].slope > 0 ? base / given[j].at_mode : base * given[j].at_mode;
    }
    per_step += math.accurate_ln(base);
  }

  // ln(f(y) / f(M)). By Stirling's formula, ln Gamma(x) = (x - 1/2) ln x - x + ln(2 pi)/2 + delta(x), with logarithms
  // of quotients alone, so that nothing large is left to cancel.
  void operator()(const VectorMath& math, int count, const double* y, double* result) const {
    double logs[kBlock];
    for (int i = 0; i < count; ++i) result[i] = (y[i] - mode) * per_step;
    for (int j = 0; j < terms; ++j) {
      const Term t = term[j];
      const double delta_at_mode = delta(t.at_mode);
      for (int i = 0; i < count; ++i) logs[i] = t.at_mode / (t.at_mode + t.slope * (y[i] - mode));
      math.ln(count, logs, logs);
      for (int i = 0; i < count; ++i) {
        const double x = t.at_mode + t.slope * (y[i] - mode);
        result[i] += t.weight * ((x - 0.5) * logs[i] + (delta_at_mode - delta(x)));
      }
    }
  }

 private:
  static double delta(double x) {
    const double inverse = 1 / x, square = inverse * inverse;
    return inverse *
           (1 / 12.0 - square * (1 / 360.0 - square * (1 / 1260.0 - square * (1 / 1680.0 - square / 1188))));
  }
};

// Tries whose acceptance is still open: candidates y with an upper bound on f(y) / f(M) that they passed.
struct OpenTries {
  int count = 0;
  int index[kBlock];
  double u[kBlock], ln_v[kBlock], y[kBlock], bound[kBlock];

  void take_logarithms(const VectorMath& math, const float* uniforms) {
    for (int k = 0; k < count; ++k) ln_v[k] = uniforms[2 * index[k] + 1];
    math.ln(count, ln_v, ln_v);
  }
  // An impossible candidate is tried as the mode, with a bound that it cannot pass.
  void candidate(int k, double value, double its_bound, bool possible, double mode) {
    y[k] = possible ? value : mode;
    bound[k] = possible ? its_bound : 2;
  }
  void decide(const VectorMath& math, const FactorialRatio& ratio, double* number, double* margin) {
    double ln_ratio[kBlock];
    ratio(math, count, y, ln_ratio);
    math.ln(count, bound, bound);
    for (int k = 0; k < count; ++k) {
      number[index[k]] = y[k];
      margin[index[k]] = ln_ratio[k] - bound[k];
    }
  }
};

// The hat of Kachitvichyanukul and Schmeiser: a triangle whose numbers need no test, two parallelograms, two
// exponential tails. Names are the papers'.
struct Patchwork {
  double mode, last, p1, p2, p3, p4, xm, xl, xr, c, lambda_l, lambda_r;

  // half_width is p1; the slopes of the tails come from a_l and a_r, one minus the ratio of neighbours there.
  Patchwork(double at, double last_number, double half_width, double height, double a_l, double a_r)
      : mode(at), last(last_number), p1(half_width), xm(at + 0.5), xl(xm - p1), xr(xm + p1), c(height) {
    lambda_l = a_l * (1 + a_l / 2);
    lambda_r = a_r * (1 + a_r / 2);
    p2 = p1 * (1 + 2 * c);
    p3 = p2 + c / lambda_l;
    p4 = p3 + c / lambda_r;
  }

  int try_block(const VectorMath& math, KobStream* stream, const FactorialRatio& ratio, int count,
                double* number, double* margin) const {
    float uniforms[2 * kBlock];
    const int status = uniform(stream, 2 * count, uniforms);
    if (status < 0) return status;
    for (int i = 0; i < count; ++i) {
      const double u = p4 * double(uniforms[2 * i]);
      number[i] = __builtin_floor(xm - p1 * double(uniforms[2 * i + 1]) + u);
      margin[i] = p1 - u;
    }
    OpenTries open;
    open.count = where(count, open.index, [&](int i) { return margin[i] < 0; });
    open.take_logarithms(math, uniforms);
    for (int k = 0; k < open.count; ++k) {
      const double u = p4 * double(uniforms[2 * open.index[k]]), v = uniforms[2 * open.index[k] + 1];
      if (u <= p2) {
        const double x = xl + (u - p1) / c, bound = v * c + 1 - __builtin_fabs(xm - x) / p1;
        open.candidate(k, __builtin_floor(x), bound, bound <= 1, mode);
      } else if (u <= p3) {
        const double y = __builtin_floor(xl + open.ln_v[k] / lambda_l);
        open.candidate(k, y, v * (u - p2) * lambda_l, y >= 0, mode);
      } else {
        const double y = __builtin_floor(xr - open.ln_v[k] / lambda_r);
        open.candidate(k, y, v * (u - p3) * lambda_r, y <= last, mode);
      }
    }
    open.decide(math, ratio, number, margin);
    return status;
  }
};

// The hat of H2PE, for any law whose ratios of neighbours fall: a rectangle and two exponential tails.
struct TableMountain {
  double mode, first, last, p1, p2, p3, xl, xr, lambda_l, lambda_r;

  // ratio_at(k) = f(k) / f(k - 1).
  template <class RatioAt>
  TableMountain(const VectorMath& math, const FactorialRatio& ratio, double deviation, double first_number,
                double last_number, const RatioAt& ratio_at)
      : mode(ratio.mode), first(first_number), last(last_number) {
    const double d = __builtin_floor(1.5 * deviation) + 0.5;
    xl = std::max(first, mode - d + 0.5);
    xr = std::min(last + 1, mode + d + 0.5);
    const double ends[2] = {xl, xr - 1};
    double heights[2];
    ratio(math, 2, ends, heights);
    p1 = xr - xl;
    lambda_l = xl > first ? math.accurate_ln(ratio_at(xl)) : 1;
    lambda_r = xr <= last ? -math.accurate_ln(ratio_at(xr)) : 1;
    p2 = p1 + (xl > first ? math.accurate_exp(heights[0]) / lambda_l : 0);
    p3 = p2 + (xr <= last ? math.accurate_exp(heights[1]) / lambda_r : 0);
  }

  int try_block(const VectorMath& math, KobStream* stream, const FactorialRatio& ratio, int count,
                double* number, double* margin) const {
    float uniforms[2 * kBlock];
    const int status = uniform(stream, 2 * count, uniforms);
    if (status < 0) return status;
    OpenTries open;
    open.count = where(count, open.index, [](int) { return true; });
    open.take_logarithms(math, uniforms);
    for (int i = 0; i < count; ++i) {
      const double u = p3 * double(uniforms[2 * i]), v = uniforms[2 * i + 1];
      if (u <= p1) {
        const double y = __builtin_floor(xl + u);
        open.candidate(i, y, v, y < xr, mode);
      } else if (u <= p2) {
        const double y = __builtin_floor(xl + open.ln_v[i] / lambda_l);
        open.candidate(i, y, v * (u - p1) * lambda_l, y >= first, mode);
      } else {
        const double y = __builtin_floor(xr - open.ln_v[i] / lambda_r);
        open.candidate(i, y, v * (u - p2) * lambda_r, y <= last, mode);
      }
    }
    open.decide(math, ratio, number, margin);
    return status;
  }
};

// n numbers to r, as finish(y), y a double.
template <class Hat, class Finish>
int by_hat(const VectorMath& math, KobStream* stream, int n, int32_t* r, const Hat& hat,
           const FactorialRatio& ratio, const Finish& finish) {
  return by_rejection(n, r, kBlock, [&](int count, int32_t* x, double* margin) {
    double y[kBlock];
    const int status = hat.try_block(math, stream, ratio, count, y, margin);
    if (status < 0) return status;
    for (int i = 0; i < count; ++i) x[i] = int32_t(finish(y[i]));
    return status;
  });
}

}  // namespace orx::rng
