// The dimension of equidistribution k(v) of a twister, v = 1 .. 32: the largest k such that the top v bits of
// k successive words take all 2^(kv) values equally often (zero once less) over the whole period.
//
// The top v bits of the outputs from a state make v power series in 1/t.  With the unit vectors they span a
// lattice over GF(2)[t], and k(v) is the negative of its largest successive minimum (R. Couture, P. L'Ecuyer
// and S. Tezuka, Math. Comp. 60 (1993) 749-761).  A reduced basis is found by adding together vectors whose
// leading coefficients are linearly dependent.  A vector is held as its leading coefficient and the state
// that makes all later ones (S. Harase, M. Matsumoto and M. Saito, Math. Comp. 80 (2011) 395-407), so that an
// addition is an XOR of two states and the multiplication by t is one step of the generator.  A basis for v
// bits, with the last bit struck out, spans the lattice for v - 1 bits, so that one descent gives all k(v).
#pragma once

#include <algorithm>
#include <array>
#include <cstring>

#include "mt2203_family.hpp"

namespace mt2203 {

using Dimensions = std::array<int, kWord + 1>;  // k[v] for v = 1 .. 32

class Lattice {
 public:
  explicit Lattice(const Row& row) : row_(row) {
    for (int i = 0; i < kWord; ++i) basis_[i] = {1u << i, 0, 0, {}}, unit_[i] = 1u << i;
    // Any state but zero will do: modulo the lattice each is a multiple of each other.
    loose_.state[1] = 1;
  }

  // k(v) alone.
  int dimension(int v) {
    const uint32_t top = ~0u << (kWord - v);
    reduce(top);
    return least_drop(top)->drop;
  }

  // All of them.
  Dimensions dimensions() {
    Dimensions k{};
    uint32_t places = ~0u;  // where basis_ holds a vector
    for (int v = kWord; v >= 1; --v) {
      reduce(~0u << (kWord - v));
      k[v] = least_drop(places)->drop;
      places &= ~loosen(kWord - v);
    }
    return k;
  }

 private:
  static constexpr int kRoom = 58;  // words that a state can step on before it is moved back
  struct Vector {
    uint32_t lead;  // leading coefficient, first bit on top
    int drop;       // minus the exponent of the leading power of t
    int at;         // where in `state` the state begins
    uint32_t state[kN + kRoom];
  };

  Vector* least_drop(uint32_t members) {
    Vector* least = &basis_[__builtin_ctz(members)];
    for (; members; members &= members - 1) {
      Vector* x = &basis_[__builtin_ctz(members)];
      if (x->drop < least->drop) least = x;
    }
    return least;
  }

  // Adds vectors to the loose one, which must be the one with the highest leading power, until it is zero.
  void reduce(uint32_t top) {
    while (advance(top)) {
      uint32_t members = 0;  // the vectors whose leading coefficients add up to the loose one's
      for (uint32_t bits = loose_.lead & top; bits; bits &= bits - 1) members ^= unit_[__builtin_ctz(bits)];
      Vector* highest = least_drop(members);
      if (highest->drop < loose_.drop) {
        std::swap(*highest, loose_);
        const uint32_t place = 1u << (highest - basis_);
        for (uint32_t& unit : unit_)
          if (unit & place) unit ^= members ^ place;
      }
      add_to_loose(members);
    }
  }

  // Strikes out a bit of the leading coefficients: the vectors that added up to it alone are now dependent,
  // and the highest of them becomes the loose one.  Returns its place.
  uint32_t loosen(int bit) {
    const uint32_t members = unit_[bit];
    Vector* highest = least_drop(members);
    const uint32_t place = 1u << (highest - basis_);
    for (uint32_t& unit : unit_)
      if (unit & place) unit ^= members;
    loose_ = *highest;
    add_to_loose(members & ~place);
    return place;
  }

  void add_to_loose(uint32_t members) {
    for (; members; members &= members - 1) {
      const Vector& x = basis_[__builtin_ctz(members)];
      uint32_t* to = loose_.state + loose_.at;
      const uint32_t* from = x.state + x.at;
      for (int i = 0; i < kN; ++i) to[i] ^= from[i];
      loose_.lead ^= x.lead;
    }
  }

  // Brings the leading coefficient of the loose vector to the front; false when the vector is zero.
  bool advance(uint32_t top) {
    if (loose_.lead & top) return true;
    const uint32_t* s = loose_.state + loose_.at;
    if ((s[0] & ~kLowerMask) == 0 && std::all_of(s + 1, s + kN, [](uint32_t x) { return x == 0; }))
      return false;
    while ((loose_.lead & top) == 0) step();
    return true;
  }

  void step() {
    if (loose_.at == kRoom) {
      std::memmove(loose_.state, loose_.state + kRoom, kN * sizeof(uint32_t));
      loose_.at = 0;
    }
    const uint32_t word = next_word(loose_.state + loose_.at, row_.matrix);
    loose_.state[loose_.at++ + kN] = word;
    loose_.lead = temper(word, row_);
    ++loose_.drop;
  }

  Row row_;
  Vector basis_[kWord];
  Vector loose_{};
  uint32_t
      unit_[kWord];  // unit_[b]: the vectors of the basis whose leading coefficients add up to bit b alone
};

// Sum over v of what k(v) falls short of its bound floor(2203 / v).
inline int total_defect(const Dimensions& k) {
  int defect = 0;
  for (int v = 1; v <= kWord; ++v) defect += kDegree / v - k[v];
  return defect;
}

}  // namespace mt2203
