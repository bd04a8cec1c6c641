// Sobol's sequence: I. M. Sobol, USSR Comput. Math. Math. Phys. 7 (1967); direction numbers by the recursion
// of P. Bratley and B. L. Fox, Algorithm 659, ACM Trans. Math. Softw. 14 (1988).
#include <utility>

#include "_quasi/quasi.hpp"
#include "_service/chunks.hpp"

extern "C" {
#include "sobol/sobol.inc"
}

namespace {

using namespace orx::brng;
using namespace orx::brng::quasi;

constexpr uint32_t kMost = 40;        // dimensions that the state has room for
constexpr uint32_t kRowOfState = 48;  // words, a multiple of a cache line
constexpr int kMostInitial = 8;       // initial numbers of a row of the table

struct State {
  Position position;
  uint32_t X[kMost];
  uint32_t V[kMost][kBits + 1];
  uint32_t align[8];  // rows of T lie on cache lines, behind the stream's header
  uint32_t T[kBits][kRowOfState];
};
static_assert(sizeof(State) == 11632 && (sizeof(KobStream) + offsetof(State, T)) % 64 == 0);

// Direction numbers of many dimensions in one block that copies share: transposed, rows on cache lines, and
// behind them, at the block's end, by dimension.
struct DirectionBlock {
  static uint64_t words(uint64_t dimension) { return 64 * dimension + 2048 - 32 * (4 * dimension & 63); }
  static size_t row(size_t dimension) { return (dimension + 15) & ~size_t(15); }
};

// What the seed words ask for. Polynomials and numbers are those of the dimensions from `first` on.
struct Request {
  uint32_t dimension = 1;
  const uint32_t* matrix = nullptr;
  const uint32_t* polynomials = nullptr;
  const uint32_t* numbers = nullptr;
  uint32_t numbers_each = 0;
  uint32_t first = 1;
};

bool read_user_data(int n, const uint32_t* params, Request* request) {
  if (!has_user_data(n, params)) return false;
  const uint64_t dimension = params[0], length = uint64_t(n);
  const uint32_t *data = params + 3, kind = params[2];
  *request = {params[0], nullptr, nullptr,
              nullptr,   0,       kind == (kPolynomials | kNumbers | kFirstToo) ? 0u : 1u};
  const uint64_t rows = dimension - request->first;
  switch (kind) {
    case kPolynomials:
      request->polynomials = data;
      return dimension <= kMost && length >= 3 + rows;
    case kNumbers:
      if (length < 4) return false;
      request->numbers_each = data[0];
      request->numbers = data + 1;
      return dimension <= kMost && length >= 4 + rows * data[0];
    case kPolynomials | kNumbers:
    case kPolynomials | kNumbers | kFirstToo:
      if (length < 4 + rows) return false;
      request->polynomials = data;
      request->numbers_each = data[rows];
      request->numbers = data + rows + 1;
      return length >= 4 + rows + rows * request->numbers_each;
    case kMatrix:
      request->matrix = data;
      return length >= 3 + kBits * dimension;
    default:
      return false;
  }
}

Request read_seed(int n, const uint32_t* params) {
  Request request;
  if (read_user_data(n, params, &request)) return request;
  request = {};
  request.dimension = plain_dimension(n, params, kMost);
  return request;
}

// m(j) from its `e` predecessors, for e <= j < 32.
void carry_on(uint32_t* m, uint32_t polynomial, int e) {
  for (int j = e; j < kBits; ++j) {
    m[j] = m[j - e] ^ m[j - e] << e;
    for (int i = 1; i < e; ++i)
      if (polynomial >> i & 1) m[j] ^= m[j - e + i] << (e - i);
  }
}

// The numbers m of dimension d >= request.first.
int initial_and_further_numbers(const Request& request, uint32_t d, uint32_t* m) {
  const size_t row = d - request.first;
  const uint32_t polynomial = request.polynomials ? request.polynomials[row] : uSobolIrredPoly[row];
  const int e = request.polynomials ? degree(polynomial) : int(iSobolIrredPolyDeg[row]);
  if (e < 1 || uint32_t(e) > (request.numbers ? request.numbers_each : uint32_t(kMostInitial)))
    return KOB_ERROR_BAD_ARG;
  std::copy_n(request.numbers ? request.numbers + row * request.numbers_each : uSobolMInit[row], e, m);
  carry_on(m, polynomial, e);
  return KOB_STATUS_OK;
}

// V[d][0] to V[d][31].
int direction_numbers(const Request& request, uint32_t d, uint32_t* v) {
  if (request.matrix) {
    std::copy_n(request.matrix + size_t(d) * kBits, kBits, v);
    return KOB_STATUS_OK;
  }
  std::fill_n(v, kBits, 1);
  const int status = d < request.first ? KOB_STATUS_OK : initial_and_further_numbers(request, d, v);
  for (int j = 0; j < kBits; ++j) v[j] <<= kBits - 1 - j;
  return status;
}

// The first point, and the direction numbers both ways.
int fill(const Request& request, uint32_t* x, uint32_t* v, size_t v_row, uint32_t* t, size_t t_row) {
  for (uint32_t d = 0; d < request.dimension; ++d) {
    uint32_t* const row = v + d * v_row;
    const int status = direction_numbers(request, d, row);
    if (status != KOB_STATUS_OK) return status;
    for (size_t j = 0; j < kBits; ++j) t[j * t_row + d] = row[j];
    x[d] = row[0];
  }
  return KOB_STATUS_OK;
}

struct Sobol : Operations<Sobol> {
  using State = ::State;

  static int seed(KobStream* stream, int n, const uint32_t* params);
  static Sequence sequence(KobStream* stream);
  static bool adopt(KobStream* stream);
};

}  // namespace

extern "C" {

int __kobSobolUserPolyms(KobStream* stream, const Request& request) {
  State& s = state<Sobol>(stream);
  return fill(request, s.X, s.V[0], kBits + 1, s.T[0], kRowOfState);
}

int __kobSobolUserPolymsDirNumsChunk(KobStream* stream, const Request& request) {
  const uint32_t dimension = request.dimension;
  const uint64_t words = DirectionBlock::words(dimension), size = 4 * words;
  if (size > UINT32_MAX) return KOB_ERROR_MEM_FAILURE;
  orx::Block<uint32_t> block, x(dimension);
  if (!x || !block.allocate_zeros(int64_t(words))) return KOB_ERROR_MEM_FAILURE;
  uint32_t* const by_dimension = block.get() + (words - kBits * uint64_t(dimension));
  int status = fill(request, x.get(), by_dimension, kBits, block.get(), DirectionBlock::row(dimension));
  if (status != KOB_STATUS_OK) return status;
  KobGlobalId id;
  __kobGenerateNewGlobalRODataTableEntryId(&id, int32_t(dimension));
  status = give_chunk(stream, kChunkSobolDirections, &id, std::move(block), uint32_t(size));
  if (status != KOB_STATUS_OK) return status;
  return give_chunk(stream, kChunkSobolPoint, nullptr, std::move(x), 4 * dimension);
}

}  // extern "C"

namespace {

int Sobol::seed(KobStream* stream, int n, const uint32_t* params) {
  const Request request = read_seed(n, params);
  return quasi::seed<Sobol>(stream, request.dimension, [&] {
    return request.dimension > kMost || request.matrix ? __kobSobolUserPolymsDirNumsChunk(stream, request)
                                                       : __kobSobolUserPolyms(stream, request);
  });
}

Sequence Sobol::sequence(KobStream* stream) {
  State& s = state<Sobol>(stream);
  const int dimension = int(s.position.Dimension);
  const KobChunk* block = find_chunk(stream, kChunkSobolDirections);
  const KobChunk* x = find_chunk(stream, kChunkSobolPoint);
  if (!block || !x) return {&s.position, s.X, 1, {s.T[0], 1, kRowOfState}, dimension};
  return {&s.position,
          static_cast<uint32_t*>(x->Data),
          1,
          {static_cast<const uint32_t*>(block->Data), 1, DirectionBlock::row(size_t(dimension))},
          dimension};
}

bool Sobol::adopt(KobStream* stream) {
  const Position& p = state<Sobol>(stream).position;
  if (!p.is_sound()) return false;
  const KobChunk* block = find_chunk(stream, kChunkSobolDirections);
  const KobChunk* x = find_chunk(stream, kChunkSobolPoint);
  if (!block || !x) return p.Dimension <= kMost;
  return block->Size == 4 * DirectionBlock::words(p.Dimension) && x->Size == 4 * uint64_t(p.Dimension);
}

}  // namespace

ORX_BRNG_FUNCTIONS(Sobol)
