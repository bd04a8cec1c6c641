// Every generator once more, written straight from its recursion, one number at a time.
#pragma once

#include <functional>
#include <memory>

#include "stream.hpp"

// A generator family under test: where it starts, its words one after the other, and its reals from them.
struct Reference {
  const char* name;
  uint32_t id;
  Words seed;
  std::function<std::function<Words()>()> start;
  double (*real)(const Words& word, double a, double b);
};

inline std::ostream& operator<<(std::ostream& out, const Reference& reference) {
  return out << reference.name;
}

inline double real_of_word32(const Words& w, double a, double b) { return w[0] * ((b - a) * 0x1p-32) + a; }

inline Reference mcg31m1() {
  return {"MCG31M1",
          KOB_BRNG_MCG31M1,
          {77777777},
          [] {
            return [x = uint64_t(77777777)]() mutable {
              const uint64_t now = x;
              x = x * 1132489760 % 2147483647;
              return Words{uint32_t(now)};
            };
          },
          [](const Words& w, double a, double b) { return w[0] * ((b - a) * 4.656612875245797e-10) + a; }};
}

inline Reference mcg59() {
  return {"MCG59",
          KOB_BRNG_MCG59,
          {0xDEADBEEF, 0xFFFFFFFF},
          [] {
            return [x = uint64_t(0x7FFFFFFDEADBEEF)]() mutable {
              const uint64_t now = x;
              x = x * 302875106592253 % (uint64_t(1) << 59);
              return Words{uint32_t(now), uint32_t(now >> 32)};
            };
          },
          [](const Words& w, double a, double b) {
            return double(w[0] | uint64_t(w[1]) << 32) * ((b - a) * 0x1p-59) + a;
          }};
}

inline Reference mrg32k3a() {
  return {"MRG32K3A", KOB_BRNG_MRG32K3A, Words(6, 12345),
          [] {
            return [x = std::vector<int64_t>(3, 12345), y = std::vector<int64_t>(3, 12345)]() mutable {
              const int64_t m1 = 4294967087, m2 = 4294944443;
              x.push_back(((1403580 * x[x.size() - 2] - 810728 * x[x.size() - 3]) % m1 + m1) % m1);
              y.push_back(((527612 * y.back() - 1370589 * y[y.size() - 3]) % m2 + m2) % m2);
              return Words{uint32_t((x.back() - y.back() + m1) % m1)};
            };
          },
          [](const Words& w, double a, double b) { return w[0] * ((b - a) * (1.0 / 4294967087)) + a; }};
}

inline Reference r250() {
  Words seed(250);
  for (uint32_t i = 0; i < 250; ++i) seed[i] = i * i * 2654435761u + 12345;
  return {"R250", KOB_BRNG_R250, seed,
          [seed] {
            return [x = seed]() mutable {
              x.push_back(x[x.size() - 250] ^ x[x.size() - 147]);
              return Words{x.back()};
            };
          },
          real_of_word32};
}

// The last row of the tables: moduli 16766363, 16766359, 16766327, 16766231 with multipliers 126, 127, 125, 124.
inline Reference wh() {
  return {"WH", KOB_BRNG_WH + 272, {1234567, 0, 16766327 + 5, 0xFFFFFFFF},
          [] {
            return [x = std::vector<uint64_t>{1234567, 1, 5, 0xFFFFFFFF % 16766231}]() mutable {
              const Words now(x.begin(), x.end());
              const uint64_t m[] = {16766363, 16766359, 16766327, 16766231}, a[] = {126, 127, 125, 124};
              for (int i = 0; i < 4; ++i) x[i] = x[i] * a[i] % m[i];
              return now;
            };
          },
          [](const Words& w, double a, double b) {
            const double inverse[] = {1.0 / 16766363, 1.0 / 16766359, 1.0 / 16766327, 1.0 / 16766231};
            const double sum = ((w[0] * inverse[0] + w[1] * inverse[1]) + w[2] * inverse[2]) + w[3] * inverse[3];
            return (sum - int(sum)) * (b - a) + a;
          }};
}

inline std::vector<Reference> references() { return {mcg31m1(), mcg59(), mrg32k3a(), r250(), wh()}; }
