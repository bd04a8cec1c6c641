// Complex numbers: a low-pass filter of one resistor and one capacitor, and a cable as its end sees it.
#include <cmath>
#include <complex>
#include <cstdio>
#include <vector>

#include "chapters.h"
#include "orx/tef.h"
#include "svg.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

using Complex = std::complex<double>;
using Response = std::vector<Complex>;

const double* parts(const Response& z) { return reinterpret_cast<const double*>(z.data()); }
double* parts(Response& z) { return reinterpret_cast<double*>(z.data()); }

Response tanh(const Response& z) {
  Response r(z.size());
  _tefzTanh(int(z.size()), parts(z), parts(r));
  return r;
}
Response log10(const Response& z) {
  Response r(z.size());
  _tefzLog10(int(z.size()), parts(z), parts(r));
  return r;
}
Response quotient(const Response& a, const Response& b) {
  Response r(a.size());
  _tefzDiv(int(a.size()), parts(a), parts(b), parts(r));
  return r;
}

// H = 1/(1 + i f/f0), f0 = 1/(2 pi R C). Log10 H tells both: 20 times its real part is the gain in decibels, its imaginary
// part over log10 e the phase.
Panel low_pass() {
  constexpr double resistance = 1600, capacitance = 100e-9;
  const double corner = 1 / (2 * kPi * resistance * capacitance);
  Response one, denominator;
  std::vector<double> ratios;
  for (int i = -40; i <= 40; ++i) {
    ratios.push_back(std::pow(10.0, i / 20.0));
    one.emplace_back(1, 0);
    denominator.emplace_back(1, ratios.back());
  }
  const Response log = log10(quotient(one, denominator));
  Curve gain{{}, {}, "#1f77b4", "gain, dB"}, phase{{}, {}, "#d62728", "phase, degrees"};
  std::printf("\n1.6 kOhm and 100 nF: a low-pass filter from %.1f Hz on\n  f/f0   gain, dB  phase, degrees\n",
              corner);
  for (size_t i = 0; i < ratios.size(); ++i) {
    const double decibels = 20 * log[i].real(), degrees = log[i].imag() * std::log(10.0) * 180 / kPi;
    gain.x.push_back(std::log10(ratios[i]));
    gain.y.push_back(decibels);
    phase.x.push_back(std::log10(ratios[i]));
    phase.y.push_back(degrees);
    if (i % 20 == 0) std::printf("  %5.2f   %7.3f   %8.3f\n", ratios[i], decibels, degrees);
  }
  return {"RC low-pass filter", "log10 f/f0", "dB, degrees", {gain, phase}};
}

// A line of impedance Z0 that ends in Z: at length l it is Z0 (Z + Z0 t)/(Z0 + Z t), t = tanh(gamma l). Half a wave brings
// the load back, a quarter turns it round to Z0^2/Z, and long lossy ones hide it.
Panel cable() {
  constexpr double own = 50, load = 100, loss_per_wave = 0.02;  // ohms; nepers
  constexpr int steps = 80;
  std::vector<double> waves;
  Response gamma_l;
  for (int i = 0; i <= 4 * steps; ++i) {
    waves.push_back(double(i) / steps);
    gamma_l.emplace_back(loss_per_wave * waves.back(), 2 * kPi * waves.back());
  }
  Curve real{{}, {}, "#1f77b4", "resistance"}, imaginary{{}, {}, "#d62728", "reactance"};
  const Response t = tanh(gamma_l);
  Response above, below;
  for (const Complex& x : t) {
    above.push_back(own * (load + own * x));
    below.push_back(own + load * x);
  }
  const Response impedance = quotient(above, below);
  std::printf("\nA cable of 50 Ohm that ends in 100 Ohm, %.2f nepers a wave\n  waves  impedance, Ohm\n",
              loss_per_wave);
  for (size_t i = 0; i < waves.size(); ++i) {
    real.x.push_back(waves[i]);
    real.y.push_back(impedance[i].real());
    imaginary.x.push_back(waves[i]);
    imaginary.y.push_back(impedance[i].imag());
    if (i % 20 == 0 && i <= 80)
      std::printf("  %5.2f  %8.3f %+8.3f i\n", waves[i], impedance[i].real(), impedance[i].imag());
  }
  return {"Cable of 50 Ohm, ended by 100 Ohm", "length, waves", "Ohm", {real, imaginary}};
}

}  // namespace

void impedance(const std::string&) {
  const std::vector<Panel> panels = {low_pass(), cable()};
  write_svg("impedance.svg", panels);
  std::printf("\nwrote impedance.svg\n");
}
