// Digital sequences in base 2. Component d of point i is the XOR of the direction numbers V[d][c] at the set
// bits c of i's Gray code, so that a point differs from the one before by one direction number a component:
//   I. A. Antonov, V. M. Saleev, An economic method of computing LP-tau sequences, USSR Comput. Math. Math.
//   Phys. 19 (1980).
//
// Points taken 2^k at a time are again such a sequence, of 2^k times the dimension: with q = i / 2^k, the
// Gray code of i + 2^k differs from that of i in bit k + (lowest zero bit of q) and in bit k - 1. This is how
// small dimensions, and single components, fill vectors.
#pragma once

#include <algorithm>

#include "_service/generator.hpp"
#include "_service/reals.hpp"

namespace orx::brng::quasi {

constexpr int kBits = 32;
constexpr uint32_t kNone = 0xFFFFFFFF;

// The first words of a state.
struct Position {
  uint32_t Index;  // of the current point
  uint32_t Dimension;
  uint32_t Selected;   // the only component that is delivered, or kNone
  uint32_t Remaining;  // components of the current point still to be delivered; 0: all, none is out yet

  static Position start(uint32_t dimension) { return {1, dimension, kNone, 0}; }
  bool is_sound() const {
    return Dimension >= 1 && Dimension <= INT32_MAX && Remaining < Dimension &&
           (Selected == kNone || (Selected < Dimension && Remaining == 0));
  }
};

inline uint32_t gray(uint32_t i) { return i ^ i >> 1; }
inline int lowest_zero(uint32_t i) { return __builtin_ctz(~i); }

// Direction numbers where they lie: V[d][c] at first[d * component + c * bit].
struct Directions {
  const uint32_t* first;
  size_t component, bit;

  uint32_t operator()(size_t d, int c) const { return first[d * component + size_t(c) * bit]; }
};

// A stream's current point, component d at x[d * x_step], and what it goes on by.
struct Sequence {
  Position* position;
  uint32_t* x;
  size_t x_step;
  Directions v;
  int dimension;

  Sequence component(size_t d) const {
    return {position, x + d * x_step, 1, {v.first + d * v.component, v.component, v.bit}, 1};
  }
  // What the stream delivers: whole points, or one component of each.
  Sequence delivered() const { return position->Selected == kNone ? *this : component(position->Selected); }

  // XORs the direction numbers at the set bits of `bits` into the point.
  void add(uint32_t bits) const {
    for (; bits; bits &= bits - 1)
      for (int d = 0, c = __builtin_ctz(bits); d < dimension; ++d) x[size_t(d) * x_step] ^= v(size_t(d), c);
  }
  void move_to(uint32_t index) const {
    add(gray(position->Index) ^ gray(index));
    position->Index = index;
  }
};

// ---- delivery ----

template <class Sink>
void emit_components(const Sequence& s, size_t from, int count, const Sink& sink, int at) {
  for (int i = 0; i < count; ++i) sink(at + i, s.x[(from + size_t(i)) * s.x_step]);
}

// The current point, and the step to the next.
template <class Sink>
void emit_point(const Sequence& s, const Sink& sink, int at) {
  const int c = lowest_zero(s.position->Index++);
  const auto next = [&](int d) {
    uint32_t& x = s.x[size_t(d) * s.x_step];
    const uint32_t now = x;
    x = now ^ s.v(size_t(d), c);
    return now;
  };
  int d = 0;
  for (; d + 4 <= s.dimension; d += 4) {
    const uint32_t w0 = next(d), w1 = next(d + 1), w2 = next(d + 2), w3 = next(d + 3);
    sink(at + d, Words4{w0, w1, w2, w3});
  }
  for (; d < s.dimension; ++d) sink(at + d, next(d));
}

constexpr int kMostWidth = 320;  // words of a row that is made here
constexpr int kWideEnough = 8;   // a point of this dimension fills vectors by itself

inline int group_log2(int dimension) {
  return dimension >= kWideEnough ? 0 : dimension >= 4 ? 3 : dimension >= 2 ? 4 : 5;
}

// The steps of points taken 2^k at a time, as rows: where they lie, or made here.
class Rows {
 public:
  // For the steps of `count` groups from group q on, and steps 0 to 2.
  Rows(const Sequence& s, int k, uint32_t q, int count) {
    if (k == 0 && s.v.component == 1) {
      first_ = s.v.first;
      stride_ = s.v.bit;
      return;
    }
    const int top = 31 - __builtin_clz((q ^ (q + uint32_t(count))) | 7);
    for (int c = 0; c <= std::min(top, kBits - 1 - k); ++c) make(s, k, c);
  }

  const uint32_t* operator()(int c) const { return first_ + size_t(c) * stride_; }

 private:
  void make(const Sequence& s, int k, int c) {
    uint32_t* const row = space_ + size_t(c) * stride_;
    for (int d = 0; d < s.dimension; ++d) {
      const uint32_t w = s.v(size_t(d), c + k) ^ (k ? s.v(size_t(d), k - 1) : 0);
      for (int j = 0; j < 1 << k; ++j) row[j * s.dimension + d] = w;
    }
  }

  uint32_t space_[kBits * kMostWidth];
  const uint32_t* first_ = space_;
  size_t stride_ = kMostWidth;
};

// Eight components of points that come one after the other, which stay in registers.
template <class Sink>
class Octets {
 public:
  // Those from `from` on in rows.
  Octets(const uint32_t* x, const Rows& rows, int from)
      : from_(from), row0_(rows(0) + from), stride_(rows(1) - rows(0)), x_(load(x + from, Sink::lane)) {}

  // Puts out points q, q + 1, ..., `width` places apart. From a multiple of 8 on the steps are those of bits
  // 0, 1, 0, 2, 0, 1, 0 and one more: only the last must be looked up.
  void emit(uint32_t q, int points, int width, const Sink sink, int at) {
    const uint32_t* const row0 = row0_;
    const size_t stride = stride_;
    const auto step = [=](int c) { return load(row0 + size_t(c) * stride, Sink::step); };
    Lanes x = x_;
    const auto one = [&] {
      put(x, sink, at);
      x = moved(x, step(lowest_zero(q)));
      ++q, --points, at += width;
    };
    while (points > 0 && q & 7) one();
    const Lanes v0 = step(0), v1 = step(1), v2 = step(2);
    for (; points >= 8; points -= 8, q += 8, at += 8 * width) {
      four(x, v0, v1, width, sink, at);
      x = moved(moved(x, v1), v2);
      four(x, v0, v1, width, sink, at + 4 * width);
      x = moved(moved(x, v1), step(3 + lowest_zero(q >> 3)));
    }
    while (points > 0) one();
    x_ = x;
  }

  void store(uint32_t* x) const {
    store4(x + from_, Sink::words(x_.low));
    store4(x + from_ + 4, Sink::words(x_.high));
  }

 private:
  struct Lanes {
    typename Sink::Lane low, high;
  };
  template <class Form>
  static Lanes load(const uint32_t* w, Form form) {
    return {form(load4(w)), form(load4(w + 4))};
  }
  static Lanes moved(Lanes x, Lanes step) {
    return {Sink::moved(x.low, step.low), Sink::moved(x.high, step.high)};
  }
  static void put(Lanes x, const Sink& sink, int at) { sink.put(at, x.low), sink.put(at + 4, x.high); }
  // Points 4 k to 4 k + 3, from the first of them.
  static void four(Lanes x, Lanes v0, Lanes v1, int width, const Sink& sink, int at) {
    const Lanes x3 = moved(x, v1);
    put(x, sink, at);
    put(moved(x, v0), sink, at + width);
    put(moved(x3, v0), sink, at + 2 * width);
    put(x3, sink, at + 3 * width);
  }

  int from_;
  const uint32_t* row0_;
  size_t stride_;
  Lanes x_;
};

// Points q, q + 1, ... of a sequence in rows, no shorter than eight words. They are made eight components
// after eight; the last eight may have some in common with those before.
template <class Sink>
void emit_in_rows(uint32_t* x, const Rows& rows, int width, uint32_t q, int points, const Sink& sink,
                  int at) {
  // Numbers: a cache line of the output that two columns share is still near when the second one comes.
  constexpr int tile = 8192;
  const int most = std::max(8, tile / width & ~7);
  for (int count; points > 0; points -= count, q += uint32_t(count), at += count * width) {
    count = std::min(points, most);
    Octets<Sink> last(x, rows, width - 8);
    for (int from = 0; from + 8 < width; from += 8) {
      Octets<Sink> octets(x, rows, from);
      octets.emit(q, count, width, sink, at + from);
      octets.store(x);
    }
    last.emit(q, count, width, sink, at + width - 8);
    last.store(x);
  }
}

// Groups of 2^k points from an index that is a multiple of 2^k.
template <class Sink>
void emit_groups(const Sequence& s, int k, int groups, const Sink& sink, int at) {
  const int width = s.dimension << k;
  const uint32_t q = s.position->Index >> k;
  const Rows rows(s, k, q, groups);
  s.position->Index += uint32_t(groups) << k;
  if (k == 0) return emit_in_rows(s.x, rows, width, q, groups, sink, at);
  uint32_t group[8 * kWideEnough];
  emit_components(s, 0, s.dimension, Word32Sink<uint32_t>(group), 0);
  for (int j = 1; j < 1 << k; ++j)
    for (int d = 0; d < s.dimension; ++d)
      group[j * s.dimension + d] =
          group[(j - 1) * s.dimension + d] ^ s.v(size_t(d), lowest_zero(uint32_t(j - 1)));
  emit_in_rows(group, rows, width, q, groups, sink, at);
  for (int d = 0; d < s.dimension; ++d) s.x[size_t(d) * s.x_step] = group[d];
}

template <class Sink>
void emit_points(const Sequence& s, int points, const Sink& sink, int at) {
  const uint32_t& index = s.position->Index;
  const int k = group_log2(s.dimension);
  const bool in_rows = s.x_step == 1 && (s.v.component == 1 || s.dimension <= kMostWidth);
  if (in_rows) {
    const uint32_t mask = (uint32_t(1) << k) - 1;
    for (; points > 0 && index & mask; --points, at += s.dimension) emit_point(s, sink, at);
    const int groups = points >> k;
    if (groups >= 8) {  // fewer are not worth their rows
      emit_groups(s, k, groups, sink, at);
      points -= groups << k;
      at += (groups << k) * s.dimension;
    }
  }
  for (; points > 0; --points, at += s.dimension) emit_point(s, sink, at);
}

template <class Sink>
int generate(const Sequence& stream, int n, const Sink& sink) {
  Position& p = *stream.position;
  // Numbers against points: stricter than need be, and simple to foresee for the caller.
  if (int64_t(p.Index) + n > int64_t(0xFFFFFFFF)) return KOB_ERROR_QRNG_PERIOD_ELAPSED;
  if (n <= 0) return KOB_STATUS_OK;
  const Sequence s = stream.delivered();
  int done = 0;
  if (p.Remaining) {
    done = int(std::min(uint32_t(n), p.Remaining));
    emit_components(s, p.Dimension - p.Remaining, done, sink, 0);
    p.Remaining -= uint32_t(done);
    if (p.Remaining) return KOB_STATUS_OK;
    s.move_to(p.Index + 1);
  }
  const int points = (n - done) / s.dimension;
  emit_points(s, points, sink, done);
  done += points * s.dimension;
  emit_components(s, 0, n - done, sink, done);
  if (done < n) p.Remaining = uint32_t(s.dimension - (n - done));
  return KOB_STATUS_OK;
}

// generate() of one word.
inline int next_word(const Sequence& stream, uint32_t* w) {
  Position& p = *stream.position;
  if (p.Index == 0xFFFFFFFF) return KOB_ERROR_QRNG_PERIOD_ELAPSED;
  const Sequence s = stream.delivered();
  if (p.Remaining == 0) p.Remaining = uint32_t(s.dimension);
  *w = s.x[(uint32_t(s.dimension) - p.Remaining) * s.x_step];
  if (--p.Remaining == 0) s.move_to(p.Index + 1);
  return KOB_STATUS_OK;
}

template <class Real>
int generate_reals(const Sequence& s, int n, Real* r, Real a, Real b) {
  return with_sink(r, a, b, [&](const auto& sink) { return generate(s, n, sink); });
}

// ---- the operations of a generator that has sequence(KobStream*) ----

// Component k of each point from here on, beginning with the first point of which nothing is out yet.
inline int select_component(const Sequence& s, int n, uint32_t k) {
  Position& p = *s.position;
  if (n != INT32_MAX || k >= p.Dimension) return KOB_ERROR_LEAPFROG_UNSUPPORTED;
  if (p.Selected != k) {
    if (p.Remaining) ++p.Index;
    // The component may not have been brought along: made anew.
    const Sequence c = s.component(k);
    *c.x = 0;
    c.add(gray(p.Index));
  }
  p.Selected = k;
  p.Remaining = 0;
  return KOB_STATUS_OK;
}

inline int skip_numbers(const Sequence& s, uint64_t numbers) {
  Position& p = *s.position;
  const uint64_t dimension = uint64_t(s.dimension), most = 0xFFFFFFFF;
  uint64_t points = numbers / dimension;
  if (points >= most || p.Index + points >= most) return KOB_ERROR_SKIPAHEAD_UNSUPPORTED;
  if (numbers < p.Remaining) {
    p.Remaining -= uint32_t(numbers);
    return KOB_STATUS_OK;
  }
  uint64_t rest = numbers - dimension * points;
  if (p.Remaining) {
    numbers -= p.Remaining;
    points = numbers / dimension;
    rest = numbers - dimension * points;
    ++points;
  }
  s.move_to(p.Index + uint32_t(points));
  p.Remaining = rest ? uint32_t(dimension - rest) : 0;
  return KOB_STATUS_OK;
}

template <class Generator>
struct Operations {
  static int leapfrog(KobStream* stream, int n, const uint32_t* params) {
    return select_component(Generator::sequence(stream), n, params[0]);
  }
  static int skip(KobStream* stream, int n, const uint32_t* params) {
    if (n < 1) return KOB_ERROR_SKIPAHEAD_UNSUPPORTED;
    return skip_numbers(Generator::sequence(stream).delivered(), n > 1 ? word64(params) : params[0]);
  }
  static constexpr double kUnit = 0x1p-32;
  static int number(KobStream* stream, double* number) {
    uint32_t w = 0;
    const int status = next_word(Generator::sequence(stream), &w);
    *number = word_to_double(w);
    return status;
  }
  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    return generate_reals(Generator::sequence(stream), n, r, a, b);
  }
  static int words(KobStream* stream, int n, uint32_t* r) {
    const Sequence s = Generator::sequence(stream);
    return n == 1 ? next_word(s, r) : generate(s, n, Word32Sink<uint32_t>(r));
  }
};

// ---- seeds ----

// What the classes of user data are made of.
enum : uint32_t { kPolynomials = 1, kNumbers = 2, kMatrix = 4, kFirstToo = 8 };

// Whether the words announce user data.
inline bool has_user_data(int n, const uint32_t* params) {
  return n >= 3 && params[1] == 1 && int32_t(params[0]) >= 1;
}

// The dimension where there are no user data; 1 for what does not go.
inline uint32_t plain_dimension(int n, const uint32_t* params, uint32_t most) {
  return n >= 1 && params[0] >= 1 && params[0] <= most ? params[0] : 1;
}

// Seeds a generator of this dimension: `fill` fills the state that was cleared, or chunks. Whatever the
// stream held over belonged to another sequence. A stream that could not be seeded is not to be used, but
// must not lead outside its state if it is.
template <class Generator, class Fill>
int seed(KobStream* stream, uint32_t dimension, const Fill& fill) {
  auto& s = state<Generator>(stream);
  __kobDeleteChunks(stream);
  s = {};
  s.position = Position::start(1);
  const int status = fill();
  if (status == KOB_STATUS_OK) s.position.Dimension = dimension;
  return status;
}

inline int degree(uint32_t polynomial) { return polynomial ? 31 - __builtin_clz(polynomial) : -1; }

}  // namespace orx::brng::quasi
