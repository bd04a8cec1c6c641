// Checks the parameter table of MT2203 by the generators' output alone, with NTL.
//
//   mt2203_verify TABLE [EVERY]
//
// Of each row: the first output bits have a minimal polynomial of degree 2203 (Berlekamp and Massey), which
// NTL finds irreducible; no two rows have the same; the masks have no bits that the shifts
// never reach.  Of every EVERY-th row and the last (default 250): the total defect of equidistribution, from
// the ranks of the matrices that carry a state to the outputs.  The recursion, the polynomials and the ranks
// are written anew here; nothing is shared with the search.
#include <NTL/GF2X.h>
#include <NTL/GF2XFactoring.h>

#include <bitset>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr int kDegree = 2203, kBar = 713;
using Bits = std::bitset<kDegree>;

struct Row {
  unsigned matrix, mask_b, mask_c;
};

class Generator {
 public:
  Generator(const Row& row, std::vector<uint32_t> state) : row_(row), x_(std::move(state)) {}

  uint32_t operator()() {
    const size_t k = x_.size();
    const uint32_t y = (x_[k - 69] & 0xFFFFFFE0u) + (x_[k - 68] & 0x1Fu);
    uint32_t z = x_[k - 69 + 34] ^ (y / 2) ^ (y % 2) * row_.matrix;
    x_.push_back(z);
    z ^= z >> 12;
    z ^= z << 7 & row_.mask_b;
    z ^= z << 15 & row_.mask_c;
    z ^= z >> 18;
    return z;
  }

 private:
  Row row_;
  std::vector<uint32_t> x_;
};

// The state with one of its 2203 bits set: 27 upper bits of the first word, then whole words.
std::vector<uint32_t> unit_state(int bit) {
  std::vector<uint32_t> x(69);
  const int place = bit + 5;
  x[place / 32] = 1u << place % 32;
  return x;
}

NTL::GF2X minimal_polynomial(const Row& row) {
  Generator generator(row, unit_state(1000));
  NTL::vec_GF2 bits;
  bits.SetLength(2 * kDegree);
  for (int i = 0; i < 2 * kDegree; ++i) bits[i] = generator() >> 31;
  NTL::GF2X polynomial;
  NTL::MinPolySeq(polynomial, bits, kDegree);
  return polynomial;
}

// k(v) by its definition: as long as the bits of one more output are independent of all before.
int dimension(const std::vector<std::vector<uint32_t>>& outputs, int v) {
  std::vector<Bits> reduced(kDegree);
  std::vector<bool> taken(kDegree);
  for (int k = 0; k < kDegree / v; ++k)
    for (int b = 0; b < v; ++b) {
      Bits row;
      for (int j = 0; j < kDegree; ++j) row[j] = outputs[j][k] >> (31 - b) & 1;
      size_t lead = row._Find_first();
      while (lead < kDegree && taken[lead]) {
        row ^= reduced[lead];
        lead = row._Find_next(lead);
      }
      if (lead >= kDegree) return k;
      reduced[lead] = row;
      taken[lead] = true;
    }
  return kDegree / v;
}

int total_defect(const Row& row) {
  std::vector<std::vector<uint32_t>> outputs(kDegree, std::vector<uint32_t>(kDegree));
  for (int j = 0; j < kDegree; ++j) {
    Generator generator(row, unit_state(j));
    for (uint32_t& word : outputs[j]) word = generator();
  }
  int defect = 0;
  for (int v = 1; v <= 32; ++v) defect += kDegree / v - dimension(outputs, v);
  return defect;
}

std::vector<Row> read_table(const char* path) {
  std::vector<Row> rows;
  std::FILE* file = std::fopen(path, "r");
  if (!file) {
    std::perror(path);
    std::exit(1);
  }
  for (int c; (c = std::fgetc(file)) != EOF;) {
    if (c == '/') {
      while (c != '\n' && c != EOF) c = std::fgetc(file);
    } else if (c == '{') {
      Row row;
      if (std::fscanf(file, "%x ,%x ,%x", &row.matrix, &row.mask_b, &row.mask_c) != 3) break;
      rows.push_back(row);
    }
  }
  std::fclose(file);
  return rows;
}

void require(bool holds, const char* what, size_t row) {
  if (holds) return;
  std::fprintf(stderr, "row %zu: %s\n", row, what);
  std::exit(1);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s TABLE [EVERY]\n", argv[0]);
    return 2;
  }
  const size_t every = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 250;
  const std::vector<Row> rows = read_table(argv[1]);
  require(rows.size() == 6024, "is the end, not the 6024th", rows.size());
  std::set<std::string> polynomials;
  long weight = 0, least_weight = kDegree;
  for (size_t k = 0; k < rows.size(); ++k) {
    const NTL::GF2X polynomial = minimal_polynomial(rows[k]);
    require(deg(polynomial) == kDegree, "the degree is not 2203", k);
    require(NTL::IterIrredTest(polynomial), "the polynomial is reducible", k);
    std::string bits;
    for (int i = 0; i < kDegree; ++i) bits += IsOne(coeff(polynomial, i)) ? '1' : '0';
    require(polynomials.insert(bits).second, "the polynomial was there before", k);
    require((rows[k].mask_b & 0x7F) == 0 && (rows[k].mask_c & 0x7FFF) == 0, "mask bits without effect", k);
    const long terms = NTL::weight(polynomial);
    weight += terms;
    least_weight = std::min(least_weight, terms);
  }
  std::printf(
      "%zu rows: polynomials irreducible of degree %d and distinct; terms at least %ld, on average %.0f\n",
      rows.size(), kDegree, least_weight, double(weight) / double(rows.size()));
  for (size_t k = 0; k < rows.size();
       k = k + every < rows.size() || k + 1 == rows.size() ? k + every : rows.size() - 1) {
    const int defect = total_defect(rows[k]);
    std::printf("row %zu: total defect %d\n", k, defect);
    require(defect <= kBar, "the defect is above the bar", k);
  }
  std::puts("table holds");
}
