// Niederreiter's sequence in base 2: P. Bratley, B. L. Fox, H. Niederreiter, Implementation and tests of
// low-discrepancy sequences, ACM Trans. Model. Comput. Simul. 2 (1992); Algorithm 738, ACM Trans. Math.
// Softw. 20 (1994).
#include <utility>

#include "_quasi/quasi.hpp"
#include "_service/chunks.hpp"

extern "C" {
#include "niederr/niederr.inc"
}

namespace {

using namespace orx::brng;
using namespace orx::brng::quasi;

constexpr uint32_t kMost = 318;      // dimensions that the state has room for
constexpr size_t kRow = kBits + 1;   // words
constexpr size_t kPlaceOfX = kBits;  // of the point's component, in a row of the user's chunk

struct State {
  Position position;
  uint32_t X[kMost];
  uint32_t V[kMost][kRow];
};
static_assert(sizeof(State) == 43264);

// What the seed words ask for.
struct Request {
  uint32_t dimension = 1;
  const uint32_t* matrix = nullptr;
  const uint32_t* polynomials = uNiederrIrredPoly;
  const uint32_t* degrees = iNiederrIrredPolyDeg;  // null for the user's polynomials
};

Request read_seed(int n, const uint32_t* params) {
  if (has_user_data(n, params)) {
    const uint64_t dimension = params[0], length = uint64_t(n);
    if (params[2] == kPolynomials && length >= 3 + dimension)
      return {params[0], nullptr, params + 3, nullptr};
    if (params[2] == kMatrix && length >= 3 + kBits * dimension)
      return {params[0], params + 3, nullptr, nullptr};
  }
  Request request;
  request.dimension = plain_dimension(n, params, kMost);
  return request;
}

// Polynomials over GF(2), and the beginnings of sequences, are words: coefficient i in bit i.
uint64_t product(uint64_t a, uint32_t b) {
  uint64_t sum = 0;
  for (; b; b &= b - 1) sum ^= a << __builtin_ctz(b);
  return sum;
}

// The Laurent coefficients v of the published construction, as many as bits are wanted: `power` is the
// polynomial's power of degree m, the one before had degree k. The first k are 0, the next, up to m, are free
// but for the first of them, and are taken as 1; from there on the power is their recursion.
uint64_t laurent(uint64_t power, int k, int m, int wanted) {
  const uint64_t below = (uint64_t(1) << m) - 1;
  uint64_t v = below & ~((uint64_t(1) << k) - 1);
  for (int r = 0; r + m < wanted; ++r) v |= uint64_t(__builtin_parityll(power & below & v >> r)) << (r + m);
  return v;
}

// For a polynomial p of degree e. Row j of the generator matrix belongs to the digit 2^-(j+1) of the
// component; its bits, along the digits of the index, are Laurent coefficients of x^u / p^i with i = j / e +
// 1, u = j mod e. Direction number c is column c.
int direction_numbers(uint32_t polynomial, int e, uint32_t* v) {
  if (e < 1) return KOB_ERROR_BAD_ARG;
  std::fill_n(v, kBits, 0);
  uint64_t power = 1, coefficients = 0;
  for (int j = 0; j < kBits; ++j) {
    const int u = j % e;
    if (u == 0) {
      power = product(power, polynomial);
      coefficients = laurent(power, j, j + e, kBits + e - 1);
    }
    for (uint32_t row = uint32_t(coefficients >> u); row; row &= row - 1)
      v[__builtin_ctz(row)] |= 0x80000000u >> j;
  }
  return KOB_STATUS_OK;
}

// The direction numbers in rows of kRow words, and the first point.
int fill(const Request& request, uint32_t* v, uint32_t* x, size_t x_step) {
  for (size_t d = 0; d < request.dimension; ++d, v += kRow, x += x_step) {
    if (request.matrix) {
      std::copy_n(request.matrix + d * kBits, kBits, v);
    } else {
      const uint32_t polynomial = request.polynomials[d];
      const int e = request.degrees ? int(request.degrees[d]) : degree(polynomial);
      const int status = direction_numbers(polynomial, e, v);
      if (status != KOB_STATUS_OK) return status;
    }
    *x = v[0];
  }
  return KOB_STATUS_OK;
}

// The user's rows of direction numbers, when there are more than the state holds.
const KobChunk* user_rows(const KobStream* stream) { return find_chunk(stream, kChunkNiederrDirections); }

struct Niederr : Operations<Niederr> {
  using State = ::State;

  static int seed(KobStream* stream, int n, const uint32_t* params);
  static Sequence default_sequence(KobStream* stream);
  static Sequence user_sequence(KobStream* stream);
  static Sequence sequence(KobStream* stream) {
    return user_rows(stream) ? user_sequence(stream) : default_sequence(stream);
  }
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b);
  static int words(KobStream* stream, int n, uint32_t* r);
  static bool adopt(KobStream* stream);
};

}  // namespace

extern "C" {

int __kobNiederrInitUserPolymsStreamStruct(KobStream* stream, const Request& request) {
  State& s = state<Niederr>(stream);
  return fill(request, s.V[0], s.X, 1);
}

// Each row of the chunk holds its component of the point behind the 32 direction numbers.
int __kobNiederrInitUserPolymsChunk(KobStream* stream, const Request& request) {
  const uint64_t size = uint64_t(request.dimension) * kRow * 4;
  if (size > UINT32_MAX) return KOB_ERROR_MEM_FAILURE;
  orx::Block<uint32_t> v(int64_t(size / 4));
  if (!v) return KOB_ERROR_MEM_FAILURE;
  const int status = fill(request, v.get(), v.get() + kPlaceOfX, kRow);
  if (status != KOB_STATUS_OK) return status;
  return give_chunk(stream, kChunkNiederrDirections, nullptr, std::move(v), uint32_t(size));
}

}  // extern "C"

namespace {

int Niederr::seed(KobStream* stream, int n, const uint32_t* params) {
  const Request request = read_seed(n, params);
  return quasi::seed<Niederr>(stream, request.dimension, [&] {
    return request.dimension > kMost ? __kobNiederrInitUserPolymsChunk(stream, request)
                                     : __kobNiederrInitUserPolymsStreamStruct(stream, request);
  });
}

Sequence Niederr::default_sequence(KobStream* stream) {
  State& s = state<Niederr>(stream);
  return {&s.position, s.X, 1, {s.V[0], kRow, 1}, int(s.position.Dimension)};
}

Sequence Niederr::user_sequence(KobStream* stream) {
  Position& p = state<Niederr>(stream).position;
  uint32_t* const v = static_cast<uint32_t*>(user_rows(stream)->Data);
  return {&p, v + kPlaceOfX, kRow, {v, kRow, 1}, int(p.Dimension)};
}

}  // namespace

// The block functions over the state and over the user's chunk.
#define ORX_NIEDERR_WORKERS(Kind, sequence)                                              \
  int __kobsBRngNiederr##Kind(KobStream* stream, int n, float* r, float a, float b) {    \
    return generate_reals(Niederr::sequence(stream), n, r, a, b);                        \
  }                                                                                      \
  int __kobdBRngNiederr##Kind(KobStream* stream, int n, double* r, double a, double b) { \
    return generate_reals(Niederr::sequence(stream), n, r, a, b);                        \
  }                                                                                      \
  int __kobiBRngNiederr##Kind(KobStream* stream, int n, uint32_t* r) {                   \
    return generate(Niederr::sequence(stream), n, Word32Sink<uint32_t>(r));              \
  }

extern "C" {
ORX_NIEDERR_WORKERS(Default, default_sequence)
ORX_NIEDERR_WORKERS(User, user_sequence)
}

namespace {

template <class Real>
int Niederr::reals(KobStream* stream, int n, Real* r, Real a, Real b) {
  const bool user = user_rows(stream);
  if constexpr (sizeof(Real) == sizeof(double))
    return (user ? __kobdBRngNiederrUser : __kobdBRngNiederrDefault)(stream, n, r, a, b);
  else
    return (user ? __kobsBRngNiederrUser : __kobsBRngNiederrDefault)(stream, n, r, a, b);
}

int Niederr::words(KobStream* stream, int n, uint32_t* r) {
  return (user_rows(stream) ? __kobiBRngNiederrUser : __kobiBRngNiederrDefault)(stream, n, r);
}

bool Niederr::adopt(KobStream* stream) {
  const Position& p = state<Niederr>(stream).position;
  if (!p.is_sound()) return false;
  const KobChunk* user = user_rows(stream);
  return user ? user->Size == uint64_t(p.Dimension) * kRow * 4 : p.Dimension <= kMost;
}

}  // namespace

ORX_BRNG_FUNCTIONS(Niederr)
