// Finds the 273 parameter rows of the Wichmann-Hill generators: four prime moduli just below 2^24 and a
// multiplier below 256 for each.
//
//   wh_search TABLE [TRIALS]
//
// Moduli.  Going down from 2^24, each row takes the first four primes not yet used whose (m - 1) / 2 have no
// common factor in pairs.  With primitive roots as multipliers the period is then the product of the m - 1
// over 8, above 2^92.9, the largest that four odd primes allow.
//
// Multipliers.  The combined generator is the congruential generator with the product of the moduli as
// modulus and the multiplier that the Chinese remainder theorem gives.  Of TRIALS quadruples of primitive
// roots from 112 to 255 the one with the best figure of merit is kept: the least, over dimensions 2 to 6, of
// the spectral test's v_t / (sqrt(gamma_t) M^(1/t)), where v_t is the length of the shortest vector of the
// dual lattice and gamma_t is Hermite's constant, so that 1 is out of reach at best.  Larger multipliers also
// make each component better by itself, since none can do better than v_2 = sqrt(a^2 + 1).
//
// N. M. Maclaren, "The generation of multiple independent sequences of pseudorandom numbers", Applied
// Statistics 38 (1989) 351-359; D. E. Knuth, The Art of Computer Programming 2, 3.3.4.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace {

using Wide = __int128;
using Real = long double;

constexpr int kRows = 273, kParts = 4, kDimensions = 6;
constexpr uint32_t kLeastMultiplier = 112, kMultiplierEnd = 256;

struct Row {
  std::array<uint32_t, kParts> modulus, multiplier;
};

const Row kFirst = {{16770647, 16770643, 16770623, 16770617}, {125, 117, 127, 126}};
const Row kLast = {{16766363, 16766359, 16766327, 16766231}, {126, 127, 125, 124}};

uint32_t power_mod(uint64_t a, uint32_t n, uint32_t m) {
  uint64_t power = 1;
  for (; n; n >>= 1, a = a * a % m)
    if (n & 1) power = power * a % m;
  return uint32_t(power);
}

std::vector<uint32_t> prime_factors(uint32_t n) {
  std::vector<uint32_t> factors;
  for (uint32_t p = 2; p * p <= n; ++p) {
    if (n % p) continue;
    factors.push_back(p);
    while (n % p == 0) n /= p;
  }
  if (n > 1) factors.push_back(n);
  return factors;
}

bool is_prime(uint32_t n) { return prime_factors(n) == std::vector<uint32_t>{n}; }

std::vector<uint32_t> primitive_roots(uint32_t m) {
  const std::vector<uint32_t> factors = prime_factors(m - 1);
  std::vector<uint32_t> roots;
  for (uint32_t a = kLeastMultiplier; a < kMultiplierEnd; ++a)
    if (std::all_of(factors.begin(), factors.end(),
                    [&](uint32_t p) { return power_mod(a, (m - 1) / p, m) != 1; }))
      roots.push_back(a);
  return roots;
}

// The next prime below `from` that is not used and fits the moduli chosen for the row so far.
uint32_t next_modulus(uint32_t from, const uint32_t* chosen, int count, const std::set<uint32_t>& used) {
  for (uint32_t m = from - 1;; --m) {
    if (m % 2 == 0 || used.count(m)) continue;
    const bool fits = std::all_of(
        chosen, chosen + count, [&](uint32_t other) { return std::gcd((m - 1) / 2, (other - 1) / 2) == 1; });
    if (fits && is_prime(m)) return m;
  }
}

std::vector<Row> choose_moduli() {
  std::vector<Row> rows(kRows);
  rows.front() = kFirst;
  rows.back() = kLast;
  std::set<uint32_t> used(kFirst.modulus.begin(), kFirst.modulus.end());
  used.insert(kLast.modulus.begin(), kLast.modulus.end());
  for (int k = 1; k < kRows - 1; ++k) {
    uint32_t m = 1 << 24;
    for (int i = 0; i < kParts; ++i) {
      m = rows[k].modulus[i] = next_modulus(m, rows[k].modulus.data(), i, used);
      used.insert(m);
    }
  }
  return rows;
}

// The dual lattice of a congruential generator, all h with h_0 + h_1 a + h_2 a^2 + ... = 0 modulo M, one
// dimension after the other.  Coordinates are exact; the orthogonalised vectors, which only choose the steps,
// are not.
class DualLattice {
 public:
  explicit DualLattice(Wide modulus) { basis_[0][0] = modulus; }

  void add_dimension(Wide multiplier) {
    basis_[size_] = {};
    basis_[size_][0] = multiplier;
    basis_[size_][size_] = 1;
    ++size_;
    reduce();
  }

  // Squared length of the shortest vector, by enumeration of what is shorter than the first of the basis.
  Real shortest() {
    best_ = norm_[0];
    enumerate(size_ - 1, 0);
    return best_;
  }

 private:
  Real dot(int i, int j) const {
    Real sum = 0;
    for (int k = 0; k < size_; ++k) sum += Real(basis_[i][k]) * Real(basis_[j][k]);
    return sum;
  }

  // Row i of the Gram-Schmidt coefficients, from the rows above.
  void orthogonalise(int i) {
    Real along[kDimensions];
    for (int j = 0; j <= i; ++j) {
      along[j] = dot(i, j);
      for (int k = 0; k < j; ++k) along[j] -= mu_[j][k] * along[k];
      if (j < i) mu_[i][j] = along[j] / norm_[j];
    }
    norm_[i] = along[i];
  }

  // Subtracts from vector i multiples of those above until all coefficients are at most about 1/2.
  void size_reduce(int i) {
    for (bool changed = true; changed;) {
      changed = false;
      orthogonalise(i);
      for (int j = i - 1; j >= 0; --j) {
        const Real multiple = std::nearbyint(mu_[i][j]);
        if (std::fabs(mu_[i][j]) < 0.51L) continue;
        for (int k = 0; k < size_; ++k) basis_[i][k] -= Wide(multiple) * basis_[j][k];
        for (int k = 0; k < j; ++k) mu_[i][k] -= multiple * mu_[j][k];
        changed = true;
      }
    }
  }

  // Lenstra, Lenstra and Lovasz.
  void reduce() {
    orthogonalise(0);
    for (int i = 1; i < size_;) {
      size_reduce(i);
      if (norm_[i] >= (0.99L - mu_[i][i - 1] * mu_[i][i - 1]) * norm_[i - 1]) {
        ++i;
      } else {
        std::swap(basis_[i], basis_[i - 1]);
        if (i == 1) orthogonalise(0);
        i = std::max(1, i - 1);
      }
    }
  }

  void enumerate(int i, Real length) {
    if (i < 0) {
      if (length > 0.5L) best_ = std::min(best_, length);
      return;
    }
    Real centre = 0;
    for (int j = i + 1; j < size_; ++j) centre -= coefficient_[j] * mu_[j][i];
    const Real reach = std::sqrt((best_ - length) / norm_[i]);
    for (Real x = std::ceil(centre - reach); x <= centre + reach; ++x) {
      coefficient_[i] = x;
      const Real sum = length + (x - centre) * (x - centre) * norm_[i];
      if (sum <= best_) enumerate(i - 1, sum);
    }
  }

  int size_ = 1;
  std::array<Wide, kDimensions> basis_[kDimensions] = {};
  Real mu_[kDimensions][kDimensions], norm_[kDimensions], coefficient_[kDimensions], best_;
};

// The figure of merit of a row, for the moduli of the row and any multipliers.
class Merit {
 public:
  explicit Merit(const Row& row) : product_(1) {
    for (uint32_t m : row.modulus) product_ *= m;
    for (int i = 0; i < kParts; ++i) {
      const uint32_t m = row.modulus[i];
      const Wide others = product_ / m;
      idempotent_[i] = others * power_mod(uint32_t(others % m), m - 2, m);
    }
  }

  // Exact when above `least`, else some value that is not.
  double operator()(const Row& row, double least) const {
    DualLattice lattice(product_);
    double figure = 1;
    std::array<uint64_t, kParts> power;
    power.fill(1);
    for (int t = 2; t <= kDimensions && figure > least; ++t) {
      Wide combined = 0;
      for (int i = 0; i < kParts; ++i) {
        power[i] = power[i] * row.multiplier[i] % row.modulus[i];
        combined += power[i] * idempotent_[i];
      }
      lattice.add_dimension(product_ - combined % product_);
      const Real scale = std::pow(kHermite[t], 0.5L / t) * std::pow(Real(product_), 1.0L / t);
      figure = std::min(figure, double(std::sqrt(lattice.shortest()) / scale));
    }
    return figure;
  }

 private:
  static constexpr Real kHermite[kDimensions + 1] = {1, 1, 4.0L / 3, 2,
                                                     4, 8, 64.0L / 3};  // gamma_t to the power t

  Wide product_;
  std::array<Wide, kParts> idempotent_;  // 1 modulo the part's own modulus, 0 modulo the others
};

double choose_multipliers(Row& row, int trials, uint32_t seed) {
  const Merit merit(row);
  std::array<std::vector<uint32_t>, kParts> roots;
  for (int i = 0; i < kParts; ++i) roots[i] = primitive_roots(row.modulus[i]);
  std::mt19937 random(seed);
  double best = 0;
  Row trial = row;
  for (int n = 0; n < trials; ++n) {
    for (int i = 0; i < kParts; ++i) trial.multiplier[i] = roots[i][random() % roots[i].size()];
    const double figure = merit(trial, best);
    if (figure > best) {
      best = figure;
      row = trial;
    }
  }
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s TABLE [TRIALS]\n", argv[0]);
    return 2;
  }
  const int trials = argc > 2 ? std::atoi(argv[2]) : 100000;
  std::vector<Row> rows = choose_moduli();
  double worst = 1, sum = 0;
  for (int k = 1; k < kRows - 1; ++k) {
    const double figure = choose_multipliers(rows[k], trials, k);
    worst = std::min(worst, figure);
    sum += figure;
  }
  std::FILE* file = std::fopen(argv[1], "w");
  if (!file) {
    std::perror(argv[1]);
    return 1;
  }
  std::fprintf(
      file,
      "// Moduli and multipliers of 273 Wichmann-Hill generators; made by wh_search, %d trials a row.\n"
      "// Spectral figure of merit, the least of dimensions 2 to 6: worst %.3f, mean %.3f over rows 1 to "
      "271;\n"
      "// rows 0 and 272, which were given beforehand, have %.3f and %.3f.\n",
      trials, worst, sum / (kRows - 2), Merit(kFirst)(kFirst, 0), Merit(kLast)(kLast, 0));
  for (const Row& row : rows)
    std::fprintf(file, "WH_ROW(%u, %u, %u, %u, %u, %u, %u, %u)\n", row.modulus[0], row.modulus[1],
                 row.modulus[2], row.modulus[3], row.multiplier[0], row.multiplier[1], row.multiplier[2],
                 row.multiplier[3]);
  std::fclose(file);
}
