// Finds the table of 6024 parameter rows of MT2203: as many twisters of period 2^2203 - 1 with characteristic
// polynomials that are pairwise distinct, hence without a common factor.
//
//   mt2203_search PARTIAL TABLE
//
// Finished rows are appended to PARTIAL, from which a later run goes on; a row depends on its number alone,
// so that the table is the same however often the work was interrupted.  With all rows found, TABLE is
// written.
//
// A row carries its identity in the low half of the matrix word, as in the dynamic creation of Matsumoto and
// Nishimura (2000); the high half is drawn until the polynomial is irreducible.  The tempering masks then
// follow from the top bit down: a beam keeps the masks with the least sum of defects floor(2203 / v) - k(v)
// so far.  A row is accepted when its total defect over v = 1 .. 32 is at most that of the worst of the rows
// given beforehand; otherwise the next irreducible polynomial is tried.
#include <cstdio>
#include <map>
#include <random>
#include <vector>

#include "equidistribution.hpp"
#include "irreducible.hpp"

using namespace mt2203;

namespace {

constexpr int kRows = 6024, kFirstId = 1476;
const std::map<int, Row> kGiven = {{0, {0xAF81055F, 0xDD7EEF80, 0xEFD78000}},
                                   {1, {0x832604E1, 0x66AD7F80, 0xEBD58000}},
                                   {6023, {0xE8761D4B, 0x72967680, 0xEFEB0000}}};

struct Tempered {
  Row row;
  int defect;

  // The smaller defect first. Among equals those go on that some hash prefers: with sparse masks, or dense
  // ones, the beam would end in a corner.
  bool operator<(const Tempered& other) const {
    return defect != other.defect ? defect < other.defect : hash() < other.hash();
  }
  uint32_t hash() const { return (row.mask_b * 0x9E3779B1u ^ row.mask_c) * 0x85EBCA77u; }
};

class TemperingSearch {
 public:
  TemperingSearch() {
    for (const auto& [number, row] : kGiven) {
      const Dimensions k = Lattice(row).dimensions();
      int rest = 0;
      for (int v = kWord; v >= 0; --v) {
        if (number == 0 || rest < rest_[v]) rest_[v] = rest;
        if (v > 0) rest += kDegree / v - k[v];
      }
      bar_ = std::max(bar_, rest);
    }
  }

  int bar() const { return bar_; }

  // The best masks for the matrix word, or a defect above the bar.
  Tempered best(uint32_t matrix) const {
    std::vector<Tempered> beam = {{{matrix, 0, 0}, 0}};
    for (int v = 1; v <= kDeciding && !beam.empty(); ++v) beam = next_level(beam, v);
    Tempered best = {{matrix, 0, 0}, bar_ + 1};
    for (const Tempered& x : beam) {
      const int defect = total_defect(Lattice(x.row).dimensions());
      if (defect < best.defect) best = {x.row, defect};
    }
    return best;
  }

 private:
  static constexpr size_t kBeam = 8;
  static constexpr int kDeciding = 17;  // bits below the 17th of the output bring no mask bit of their own

  // The choices for bit 32 - v of both masks, and for the bit of mask_b that reaches it through mask_c.  What
  // cannot end at the bar, unless the bits to come do better than in any row given, is dropped.
  std::vector<Tempered> next_level(const std::vector<Tempered>& beam, int v) const {
    std::vector<Tempered> level;
    const int bit = kWord - v;
    for (const Tempered& x : beam)
      for (int choice = 0; choice < 8; ++choice) {
        const bool b = choice & 1, c = choice & 2, through = choice & 4;
        if (through && (!c || bit - 15 < 7)) continue;
        if (b && x.row.mask_b >> bit & 1) continue;  // taken before, for a bit further up
        Row row = x.row;
        row.mask_b |= uint32_t(b) << bit | (through ? 1u << (bit - 15) : 0);
        row.mask_c |= uint32_t(c) << bit;
        const int defect = x.defect + kDegree / v - Lattice(row).dimension(v);
        if (defect + rest_[v] <= bar_) level.push_back({row, defect});
      }
    std::sort(level.begin(), level.end());
    if (level.size() > kBeam) level.resize(kBeam);
    return level;
  }

  int bar_ = 0;
  int rest_[kWord + 1];  // the least defect that the given rows add after bit v
};

Row find(int number, const Sieve& sieve, FermatTest& test, const TemperingSearch& tempering) {
  std::mt19937 random(number);
  for (;;) {
    const uint32_t matrix = 0x80000000 | (random() & 0x7FFF0000) | (kFirstId + number);
    if (!sieve.passes(matrix) || !test.irreducible(matrix)) continue;
    const Tempered found = tempering.best(matrix);
    if (found.defect <= tempering.bar()) return found.row;
  }
}

std::map<int, Row> read_partial(const char* path) {
  std::map<int, Row> rows = kGiven;
  if (std::FILE* file = std::fopen(path, "r")) {
    int number;
    Row row;
    while (std::fscanf(file, "%d %x %x %x\n", &number, &row.matrix, &row.mask_b, &row.mask_c) == 4)
      rows[number] = row;
    std::fclose(file);
  }
  return rows;
}

void write_table(const char* path, const std::map<int, Row>& rows, int bar) {
  std::FILE* file = std::fopen(path, "w");
  if (!file) {
    std::perror(path);
    std::exit(1);
  }
  std::fprintf(file,
               "// Matrix word and the two tempering masks of 6024 twisters of period 2^2203 - 1; made by "
               "mt2203_search.\n"
               "// Characteristic polynomials irreducible and distinct; total defect of equidistribution at "
               "most %d.\n",
               bar);
  for (const auto& [number, row] : rows)
    std::fprintf(file, "{0x%08X,0x%08X,0x%08X},%s", row.matrix, row.mask_b, row.mask_c,
                 number % 3 == 2 ? "\n" : "");
  std::fclose(file);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s PARTIAL TABLE\n", argv[0]);
    return 2;
  }
  std::map<int, Row> rows = read_partial(argv[1]);
  std::FILE* partial = std::fopen(argv[1], "a");
  if (!partial) {
    std::perror(argv[1]);
    return 1;
  }
  const Sieve sieve;
  FermatTest test;
  const TemperingSearch tempering;
  for (const auto& [number, row] : kGiven)
    if (!sieve.passes(row.matrix) || !test.irreducible(row.matrix)) {
      std::fprintf(stderr, "row %d, given beforehand, is not irreducible\n", number);
      return 1;
    }
  for (int number = 0; number < kRows; ++number) {
    if (rows.count(number)) continue;
    const Row row = rows[number] = find(number, sieve, test, tempering);
    std::fprintf(partial, "%d %08X %08X %08X\n", number, row.matrix, row.mask_b, row.mask_c);
    std::fflush(partial);
  }
  std::fclose(partial);
  write_table(argv[2], rows, tempering.bar());
}
