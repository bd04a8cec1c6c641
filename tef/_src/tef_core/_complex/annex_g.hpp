// Special arguments of complex functions as C99, annex G.6, lists them: the lists are for imaginary parts that are not
// negative, or for a quadrant, and symmetry gives the others.
#pragma once
#include <cfenv>

#include "functions/descriptor.hpp"

namespace orx::descriptor {

inline constexpr double kPi = 3.14159265358979323846;

// Re, Im -> Re, Im.
inline Special at(double x, double y, double re, double im, int raises = -1) {
  return {{x, y}, {re, im}, StatusOk, kAllClasses, raises};
}
inline Special invalid(double x, double y, double re, double im) { return at(x, y, re, im, FE_INVALID); }

// The cases that documents tell, and those that symmetry makes of them.
struct Cases {
  std::vector<Special> told, mirrored;
};

// Each case once more with the other sign of an input, which changes the sign of an output. A NaN has no other side.
inline Cases with_mirrored(Cases cases, size_t input, size_t output) {
  std::vector<Special> all = cases.told;
  all.insert(all.end(), cases.mirrored.begin(), cases.mirrored.end());
  for (Special& s : all) {
    if (std::isnan(s.in[input].as<double>())) continue;
    s.in[input] = -s.in[input];
    s.out[output] = -s.out[output];
    cases.mirrored.push_back(s);
  }
  return cases;
}

// f(conj z) = conj f(z).
inline Cases and_conjugates(Cases cases) { return with_mirrored(std::move(cases), 1, 1); }
// And f(-z) = -f(z), or f(-z) = f(z), besides.
inline Cases odd(std::vector<Special> list) {
  return and_conjugates(with_mirrored({std::move(list), {}}, 0, 0));
}
inline Cases even(std::vector<Special> list) {
  return and_conjugates(with_mirrored({std::move(list), {}}, 0, 1));
}

// For g(z) = f(iz)/i, and for g(z) = f(iz): from the cases of f.
inline Cases by_i(Cases cases) {
  for (std::vector<Special>* list : {&cases.told, &cases.mirrored})
    for (Special& s : *list) {
      s.in = {s.in[1], -s.in[0]};
      s.out = {s.out[1], -s.out[0]};
    }
  return cases;
}
inline Cases of_iz(Cases cases) {
  for (std::vector<Special>* list : {&cases.told, &cases.mirrored})
    for (Special& s : *list) s.in = {s.in[1], -s.in[0]};
  return cases;
}

// Far out, where both are e^x/2, and for NaN, sinh and cosh are one.
inline std::vector<Special> with_those_of_sinh_and_cosh(std::vector<Special> own) {
  own.insert(own.end(), {
                            invalid(1, kInf, kNaN, kNaN),
                            at(1, kNaN, kNaN, kNaN),
                            at(kInf, 0, kInf, 0),
                            at(kInf, 1, kInf, kInf),
                            at(kInf, 2, -kInf, kInf),
                            at(kInf, 4, -kInf, -kInf),
                            invalid(kInf, kInf, kInf, kNaN),
                            at(kInf, kNaN, kInf, kNaN),
                            at(kNaN, 0, kNaN, 0),
                            at(kNaN, 1, kNaN, kNaN),
                            at(kNaN, kInf, kNaN, kNaN),
                            at(kNaN, kNaN, kNaN, kNaN),
                            at(1e4, 1, kInf, kInf, FE_OVERFLOW),
                            at(1e4, 0, kInf, 0, FE_OVERFLOW),
                            at(1e4, 3, -kInf, kInf, FE_OVERFLOW),
                        });
  return own;
}

inline Cases sinh_cases() {
  return odd(with_those_of_sinh_and_cosh({
      at(0, 0, 0, 0),
      invalid(0, kInf, 0, kNaN),
      at(0, kNaN, 0, kNaN),
      at(1, 0, 1.17520119364380146, 0),
      at(0, 1, 0, 0.841470984807896507),
      at(1, 2, -0.489056259041293674, 1.40311925062204059),
  }));
}
inline Cases cosh_cases() {
  return even(with_those_of_sinh_and_cosh({
      at(0, 0, 1, 0),
      invalid(0, kInf, kNaN, 0),
      at(0, kNaN, kNaN, 0),
      at(1, 0, 1.54308063481524378, 0),
      at(0, 1, 0.540302305868139717, 0),
      at(1, 2, -0.642148124715520042, 1.06860742138277834),
  }));
}
inline Cases tanh_cases() {
  return odd({at(0, 0, 0, 0),
              invalid(0, kInf, kNaN, kNaN),
              invalid(1, kInf, kNaN, kNaN),
              at(0, kNaN, kNaN, kNaN),
              at(1, kNaN, kNaN, kNaN),
              at(kInf, 0, 1, 0),
              at(kInf, 1, 1, 0),
              at(kInf, 2, 1, -0.0),
              at(kInf, 4, 1, 0),
              at(kInf, kInf, 1, 0),
              at(kInf, kNaN, 1, 0),
              at(kNaN, 0, kNaN, 0),
              at(kNaN, 1, kNaN, kNaN),
              at(kNaN, kInf, kNaN, kNaN),
              at(kNaN, kNaN, kNaN, kNaN),
              at(1, 0, 0.761594155955764888, 0),
              at(0, 1, 0, 1.55740772465490223),
              at(1, 2, 1.16673625724091988, -0.243458201185725253),
              at(1e4, 1, 1, 0, FE_UNDERFLOW),
              at(1e4, 0, 1, 0)});
}
inline Cases asinh_cases() {
  return odd({at(0, 0, 0, 0), at(0, kInf, kInf, kPi / 2), at(1, kInf, kInf, kPi / 2), at(0, kNaN, kNaN, kNaN),
              at(1, kNaN, kNaN, kNaN), at(kInf, 0, kInf, 0), at(kInf, 1, kInf, 0),
              at(kInf, kInf, kInf, kPi / 4), at(kInf, kNaN, kInf, kNaN), at(kNaN, 0, kNaN, 0),
              at(kNaN, 1, kNaN, kNaN), at(kNaN, kInf, kInf, kNaN), at(kNaN, kNaN, kNaN, kNaN),
              at(0, 1, 0, kPi / 2), at(0, 2, 1.31695789692481671, kPi / 2), at(1, 0, 0.881373587019543025, 0),
              at(1, 2, 1.46935174436818527, 1.06344002357775206)});
}
inline Cases atanh_cases() {
  return odd({at(0, 0, 0, 0), at(0, kNaN, 0, kNaN), at(1, 0, kInf, 0, FE_DIVBYZERO), at(0, kInf, 0, kPi / 2),
              at(1, kInf, 0, kPi / 2), at(1, kNaN, kNaN, kNaN), at(kInf, 0, 0, kPi / 2),
              at(kInf, 1, 0, kPi / 2), at(kInf, kInf, 0, kPi / 2), at(kInf, kNaN, 0, kNaN),
              at(kNaN, 0, kNaN, kNaN), at(kNaN, 1, kNaN, kNaN), at(kNaN, kInf, 0, kPi / 2),
              at(kNaN, kNaN, kNaN, kNaN), at(2, 0, 0.549306144334054846, kPi / 2), at(0, 1, 0, kPi / 4),
              at(0.5, 0, 0.549306144334054846, 0), at(1, 2, 0.173286795139986327, 1.17809724509617246)});
}

// Next to the unit circle, and next to 1, -1, i, -i.
inline std::vector<Joint> near_units() {
  const auto circle = [](double angle, double off) {
    return Pair{(1 + off) * std::cos(angle), (1 + off) * std::sin(angle)};
  };
  const auto point = [](double off, double aside) {
    return off > 0 ? Pair{1 - off, aside} : Pair{aside, 1 + off};
  };
  const Stratum below = logarithmic(-1e-2, -1e-17), above = logarithmic(1e-17, 1e-2);
  return {{even(-4, 4), above, circle},
          {even(-4, 4), below, circle},
          {above, above, point},
          {below, above, point}};
}

// What all functions share that have one kernel: their errors are next to half an ulp in both precisions. MPC takes its time
// where the parts are of very different size: of doubles such pairs are a few.
inline Descriptor of_elements(Descriptor d, Cases cases, Interval timed) {
  d.specials = std::move(cases.told);
  d.keep_control_word = kAllClasses;
  d.only_these_strata = true;
  for (const Stratum& s : {around({1, -1}), boundaries(), even(timed.from, timed.to), even(-50, 50),
                           logarithmic(1e-9, 1e9), logarithmic(-1e9, -1e-9)})
    d.strata.push_back(s);
  d.c = {.bounds = {0.501, 0.501, 0.501},
         .timed = timed,
         .specials = cases.mirrored,
         .strata = {everywhere()},
         .approximate = d.c.approximate};
  d.z = {.bounds = {0.51, 0.51, 0.51},
         .timed = timed,
         .specials = cases.mirrored,
         .approximate = d.c.approximate};
  for (const double x : {0.0, 5e-324, -1e-308, 1e-200, -1e-20, 1.0, -1e20, 1e200, -1.7e308})
    for (const double y : {-0.0, -5e-324, 3e-308, -1e-160, 1e-17, 1.0, -1e17, -1e160, 1.7e308})
      d.z.cases.push_back({x, y});
  return d;
}

}  // namespace orx::descriptor
