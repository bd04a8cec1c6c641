// Rejection for discrete laws of one mode M, whose probabilities are made of factorials: hats of few parts over f(y)
// / f(M), and the exact test of a block of tries by vector math.
#pragma once

#include <numeric>

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
    double logs[kBlock], deltas[kBlock];
    for (int i = 0; i < count; ++i) result[i] = (y[i] - mode) * per_step;
    for (int j = 0; j < terms; ++j) {
      const Term t = term[j];
      const double delta_at_mode = delta(1 / t.at_mode);
      for (int i = 0; i < count; ++i) {
        const double inverse = 1 / (t.at_mode + t.slope * (y[i] - mode));
        logs[i] = t.at_mode * inverse;
        deltas[i] = delta_at_mode - delta(inverse);
      }
      math.ln(count, logs, logs);
      for (int i = 0; i < count; ++i) {
        const double x = t.at_mode + t.slope * (y[i] - mode);
        result[i] += t.weight * ((x - 0.5) * logs[i] + deltas[i]);
      }
    }
  }

  // Bounds on the same without a logarithm, the squeeze of H2PE for any such law: with 1 + t the quotient, ln(1 + t) is
  // below t - t^2/2 + t^3/3, by no more than t^4/4 or, for t < 0, t^4/4 / (1 + t).
  void bounds(int count, const double* y, double* low, double* high) const {
    double middle[kBlock], half_width[kBlock];
    for (int i = 0; i < count; ++i) {
      middle[i] = (y[i] - mode) * per_step;
      half_width[i] = 1e-9;
    }
    for (int j = 0; j < terms; ++j) {
      const Term t = term[j];
      const double of_mode = 1 / t.at_mode, rest_of_mode = of_mode * of_mode * of_mode / 360;
      for (int i = 0; i < count; ++i) {
        const double step = t.slope * (y[i] - mode), x = t.at_mode + step, inverse = 1 / x;
        const double excess = -step * inverse, square = excess * excess;
        const double error = 0.125 * square * square * std::max(1.0, x * of_mode);
        const double ln = excess * (1 + excess * (-0.5 + excess * (1 / 3.0))) - error;
        middle[i] += t.weight * ((x - 0.5) * ln + (of_mode - inverse) * (1 / 12.0));
        half_width[i] += (x - 0.5) * error + inverse * inverse * inverse * (1 / 360.0) + rest_of_mode;
      }
    }
    for (int i = 0; i < count; ++i) {
      low[i] = middle[i] - half_width[i];
      high[i] = middle[i] + half_width[i];
    }
  }

 private:
  // Of 1 / x.
  static double delta(double inverse) {
    const double square = inverse * inverse;
    return inverse *
           (1 / 12.0 -
            square * (1 / 360.0 - square * (1 / 1260.0 - square * (1 / 1680.0 - square * (1 / 1188.0)))));
  }
};

// Tries whose acceptance is still open: from their uniforms u and v come candidates y, and upper bounds on f(y) / f(M)
// that y has to reach. A try that is lost already has a bound above 1.
struct OpenTries {
  int count = 0;
  int32_t index[kBlock];
  double u[kBlock], v[kBlock], y[kBlock], bound[kBlock];

  // `uniforms` holds all u of a block of tries, then all v; u is scaled.
  void gather(const float* uniforms, int tries, double scale) {
    for (int k = 0; k < count; ++k) {
      u[k] = scale * double(uniforms[index[k]]);
      v[k] = uniforms[tries + index[k]];
    }
  }
  // The exponential tails, u beyond `first`: the left one out from xl for u up to `second`, the right one out from xr.
  void tails(const VectorMath& math, double first, double second, double xl, double xr, double lambda_l,
             double lambda_r) {
    int32_t tail[kBlock];
    const int found = where(u, count, tail, [=](Doubles x) { return x > simd::spread(first); });
    double ln_v[kBlock];
    for (int j = 0; j < found; ++j) ln_v[j] = v[tail[j]];
    math.ln(found, ln_v, ln_v);
    const double per_l = 1 / lambda_l, per_r = 1 / lambda_r;
    for (int j = 0; j < found; ++j) {
      const int k = tail[j];
      const bool left = u[k] <= second;
      y[k] = __builtin_floor(left ? xl + ln_v[j] * per_l : xr - ln_v[j] * per_r);
      bound[k] = v[k] * (left ? (u[k] - first) * lambda_l : (u[k] - second) * lambda_r);
    }
  }
  // The exact test. Before it a squeeze decides what it can, all in the same way, where it saves more than it costs: bounds
  // take as long as one logarithm, and to sort out what they leave open takes as long as another.
  template <bool with_squeeze>
  void decide(const VectorMath& math, const FactorialRatio& ratio, double first, double last, double* number,
              double* margin) {
    constexpr double lost = 2;
    for (int k = 0; k < count; ++k) {
      // Beyond the ends there is no ratio.
      const bool possible = y[k] >= first && y[k] <= last;
      bound[k] = possible ? bound[k] : lost;
      y[k] = possible ? y[k] : ratio.mode;
    }
    double ln_ratio[kBlock];
    if constexpr (with_squeeze) {
      math.ln(count, bound, bound);
      squeeze(ratio, number, margin);
      ratio(math, count, y, ln_ratio);
    } else {
      ratio(math, count, y, ln_ratio);
      math.ln(count, bound, bound);
    }
    for (int k = 0; k < count; ++k) {
      number[index[k]] = y[k];
      margin[index[k]] = bound[k] > 0 ? -1 : ln_ratio[k] - bound[k];
    }
  }

 private:
  // What the bounds leave open moves together. Of what is accepted the margin is a lower bound.
  void squeeze(const FactorialRatio& ratio, double* number, double* margin) {
    double low[kBlock], high[kBlock], within[kBlock];
    ratio.bounds(count, y, low, high);
    for (int k = 0; k < count; ++k) {
      const double above_low = low[k] - bound[k];
      number[index[k]] = y[k];
      margin[index[k]] = bound[k] > 0 ? -1 : above_low;
      within[k] = bound[k] > 0 ? 0 : std::max(above_low, bound[k] - high[k]);
    }
    int32_t left[kBlock];
    count = where(within, count, left, [](Doubles m) { return m < Doubles{}; });
    for (int j = 0; j < count; ++j) {
      index[j] = index[left[j]];
      y[j] = y[left[j]];
      bound[j] = bound[left[j]];
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
      const double u = p4 * double(uniforms[i]);
      number[i] = __builtin_floor(xm - p1 * double(uniforms[count + i]) + u);
      margin[i] = p1 - u;
    }
    OpenTries open;
    open.count = where(margin, count, open.index, [](Doubles m) { return m < Doubles{}; });
    open.gather(uniforms, count, p4);
    const double per_c = 1 / c, per_p1 = 1 / p1;
    for (int k = 0; k < open.count; ++k) {
      const double middle = xl + (open.u[k] - p1) * per_c;
      open.y[k] = __builtin_floor(middle);
      open.bound[k] = open.v[k] * c + 1 - __builtin_fabs(xm - middle) * per_p1;
    }
    open.tails(math, p2, p3, xl, xr, lambda_l, lambda_r);
    open.decide<false>(math, ratio, 0, last, number, margin);
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
    open.count = count;
    std::iota(open.index, open.index + count, 0);
    open.gather(uniforms, count, p3);
    for (int i = 0; i < count; ++i) {
      // A number that was rounded up to the end of the rectangle is beyond what its v stands for.
      open.y[i] = __builtin_floor(std::min(xl + open.u[i], xr - 0.5));
      open.bound[i] = open.v[i];
    }
    open.tails(math, p1, p2, xl, xr, lambda_l, lambda_r);
    open.decide<true>(math, ratio, first, last, number, margin);
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
