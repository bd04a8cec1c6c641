// Tridiagonal systems by elimination without pivoting, from both ends at once.
//
// In the classic elimination (L. H. Thomas, 1949) each row waits for the division of the row before it. Here
// the upper half is eliminated downward and the lower half upward until they meet in the middle row, and the
// solution runs outward from there: two chains in place of one, so that the processor works on both at once.
// LINPACK's DPTSL goes the same way (Dongarra, Bunch, Moler, Stewart: LINPACK Users' Guide, 1979, chapter 7).
// It is elimination in another order of the rows, as stable on diagonally dominant matrices as the classic
// one.
//
// A factored matrix keeps dl and du and has the reciprocals of the pivots in d. A pivot is its row's d less
// dl * du / (the neighbour's pivot), so the transposed matrix has the same pivots: to solve with it is to
// swap dl and du. All routines are made of the two sweeps below, so that a right side gets the same bits
// alone, among others, with stored factors and with fresh ones.
//
// A pivot so small that its reciprocal overflows (a subnormal number) gives infinities.
#include <algorithm>
#include <cstddef>
#include <utility>

#include "orx/base/api.hpp"
#include "orx/serv.h"

namespace {

// The right sides that are worked on together: none, one or four. A Row holds their elements in one row.
template <class T>
struct NoSides {
  struct Row {
    friend Row operator*(T, Row) { return {}; }
    friend Row operator-(Row, Row) { return {}; }
  };
  Row row(int) const { return {}; }
  void put(int, Row) const {}
};

template <class T>
struct OneSide {
  using Row = T;
  T* b;
  Row row(int i) const { return b[i]; }
  void put(int i, Row x) const { b[i] = x; }
};

// The columns that lie 0, p, q and p + q elements behind b. Some of them may be one column: it is computed
// twice then, and as each sweep reads a row before it writes it, both writes hold the same value.
template <class T>
struct FourSides {
  typedef T Row __attribute__((vector_size(4 * sizeof(T))));
  T* b;
  ptrdiff_t p, q;
  Row row(int i) const {
    const T* at = b + i;
    return Row{at[0], at[p], at[q], at[p + q]};
  }
  void put(int i, Row x) const {
    T* at = b + i;
    at[0] = x[0], at[p] = x[1], at[q] = x[2], at[p + q] = x[3];
  }
};

template <class T>
struct Matrix {
  int n;
  const T *dl, *du;
  T* d;  // the diagonal; once factored, the reciprocals of the pivots
};

// The row that the elimination has reached from one end: its diagonal element (as Matrix::d has it) and its
// right sides, both cleared of everything from that end.
template <class T, class Row>
struct Front {
  T d;
  Row b;
};

// Moves `front` from row i to the row beside it: `away` is that row's element in column i, `back` the element
// of row i in that row's column, `next` the state of that row so far. False when the pivot of row i is 0.
template <bool kFactor, class T, class Row>
bool advance(Front<T, Row>& front, T* d, int i, T away, T back, Front<T, Row> next) {
  T reciprocal = front.d;
  if constexpr (kFactor) {
    if (front.d == 0) return false;
    // True quotients: a matrix that is singular through equal elements ends in a pivot of exactly 0.
    d[i] = reciprocal = 1 / front.d;
    next.d -= away / front.d * back;
  }
  front = {next.d, next.b - (away * reciprocal) * front.b};
  return true;
}

// Eliminates from both ends and solves the middle row; factors m on the way, or uses its factors. Returns 0,
// or 1 + the row whose pivot is 0.
template <bool kFactor, class T, class Sides>
int sweep_inward(const Matrix<T> m, const Sides b) {
  int i = 0, j = m.n - 1;
  Front<T, typename Sides::Row> top{m.d[i], b.row(i)}, bottom{m.d[j], b.row(j)};
  const auto down = [&] {
    return advance<kFactor>(top, m.d, i, m.dl[i], m.du[i], {m.d[i + 1], b.row(i + 1)});
  };
  for (; j - i > 2; ++i, --j) {
    if (!down()) return 1 + i;
    if (!advance<kFactor>(bottom, m.d, j, m.du[j - 1], m.dl[j - 1], {m.d[j - 1], b.row(j - 1)})) return 1 + j;
    b.put(i + 1, top.b);
    b.put(j - 1, bottom.b);
  }
  if (j - i == 2) {
    if (!down()) return 1 + i;
    ++i;
  }
  if (i < j) {
    if (!advance<kFactor>(bottom, m.d, j, m.du[i], m.dl[i], top)) return 1 + j;
    top = bottom;
  }
  if constexpr (kFactor) {
    if (top.d == 0) return 1 + i;
    m.d[i] = 1 / top.d;
  }
  b.put(i, m.d[i] * top.b);
  return 0;
}

// Substitutes from the middle row, where sweep_inward left the solution, to both ends. The element times the
// reciprocal pivot is taken first, so that only one product and one difference lie on the chain.
template <class T, class Sides>
void sweep_outward(const Matrix<T> m, const Sides b) {
  int i = (m.n - 1) / 2, j = i;
  auto up = b.row(i), down = up;
  const auto solve_down = [&] {
    ++j;
    down = m.d[j] * b.row(j) - (m.dl[j - 1] * m.d[j]) * down;
    b.put(j, down);
  };
  while (i > 0) {
    --i;
    up = m.d[i] * b.row(i) - (m.du[i] * m.d[i]) * up;
    b.put(i, up);
    solve_down();
  }
  if (j < m.n - 1) solve_down();
}

template <bool kFactor, class T, class Sides>
int solve(const Matrix<T>& m, const Sides& b) {
  if (const int zero_pivot = sweep_inward<kFactor>(m, b)) return zero_pivot;
  sweep_outward(m, b);
  return 0;
}

// Solves for the first 1 to 4 of `nrhs` right sides; `solved` receives how many these were.
template <bool kFactor, class T>
int solve_some(const Matrix<T>& m, int nrhs, T* b, ptrdiff_t ldb, int* solved) {
  *solved = std::min(nrhs, 4);
  switch (*solved) {
    case 1:
      return solve<kFactor>(m, OneSide<T>{b});
    case 2:
      return solve<kFactor>(m, FourSides<T>{b, ldb, 0});
    case 3:
      return solve<kFactor>(m, FourSides<T>{b, ldb, ldb});
    default:
      return solve<kFactor>(m, FourSides<T>{b, ldb, 2 * ldb});
  }
}

template <class T>
void solve_factored(const Matrix<T>& m, int nrhs, T* b, ptrdiff_t ldb) {
  for (int j = 0, solved; j < nrhs; j += solved) solve_some<false>(m, nrhs - j, b + j * ldb, ldb, &solved);
}

template <class T>
int factor(int n, const T* dl, T* d, const T* du) {
  if (n < 0) return -1;
  return n == 0 ? 0 : sweep_inward<true>(Matrix<T>{n, dl, du, d}, NoSides<T>{});
}

template <class T>
int solve_with_factors(char trans, int n, int nrhs, const T* dl, const T* d, const T* du, T* b, int ldb) {
  const bool plain = trans == 'N' || trans == 'n';
  if (!plain && trans != 'T' && trans != 't' && trans != 'C' && trans != 'c') return -1;
  if (n < 0) return -2;
  if (nrhs < 0) return -3;
  if (ldb < std::max(1, n)) return -8;
  if (!plain) std::swap(dl, du);
  if (n > 0) solve_factored(Matrix<T>{n, dl, du, const_cast<T*>(d)}, nrhs, b, ldb);
  return 0;
}

template <class T>
int factor_and_solve(int n, int nrhs, const T* dl, T* d, const T* du, T* b, int ldb) {
  if (n < 0) return -1;
  if (nrhs < 0) return -2;
  if (ldb < std::max(1, n)) return -7;
  if (nrhs == 0) return factor(n, dl, d, du);
  if (n == 0) return 0;
  const Matrix<T> m{n, dl, du, d};
  int solved;
  if (const int zero_pivot = solve_some<true>(m, nrhs, b, ldb, &solved)) return zero_pivot;
  solve_factored(m, nrhs - solved, b + ptrdiff_t(solved) * ldb, ldb);
  return 0;
}

}  // namespace

#define ORX_TRIDIAGONAL(t, T)                                                                               \
  ORX_API void t##dttrfb_4dfl(const int* n, T* dl, T* d, const T* du, int* info) {                          \
    *info = factor(*n, dl, d, du);                                                                          \
  }                                                                                                         \
  ORX_API void t##dttrsb_4dfl(const char* trans, const int* n, const int* nrhs, const T* dl, const T* d,    \
                              const T* du, T* b, const int* ldb, int* info) {                               \
    *info = solve_with_factors(*trans, *n, *nrhs, dl, d, du, b, *ldb);                                      \
  }                                                                                                         \
  ORX_API void t##dtsvb_4dfl(const int* n, const int* nrhs, T* dl, T* d, const T* du, T* b, const int* ldb, \
                             int* info) {                                                                   \
    *info = factor_and_solve(*n, *nrhs, dl, d, du, b, *ldb);                                                \
  }

ORX_TRIDIAGONAL(d, double)
ORX_TRIDIAGONAL(s, float)
