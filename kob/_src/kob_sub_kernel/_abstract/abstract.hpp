// Abstract streams: numbers from the caller's ring buffer, refilled by the caller's function when it has run
// dry. One template is all three kinds, integers, doubles and singles.
#pragma once

#include <algorithm>
#include <type_traits>

#include "_service/generator.hpp"

namespace orx::brng::abstract {

template <class Number>
using Refill = int (*)(KobStream*, uint32_t* size, Number* buffer, uint32_t* wanted, uint32_t* room,
                       uint32_t* position);

// Integers go out as they are; reals lie in the interval [Lower, Upper) and are mapped to the one asked for.
template <class Number>
struct State {
  uint32_t Size;      // of the ring, in numbers
  uint32_t Position;  // the next to read
  uint32_t Unread;
  Number Lower, Upper;
  Number* Buffer;  // the caller's
  Refill<Number> CallBack;
};
template <>
struct State<uint32_t> {
  uint32_t Size, Position, Unread;
  uint32_t* Buffer;
  Refill<uint32_t> CallBack;
};

#if defined(__i386__)
static_assert(sizeof(State<uint32_t>) == 36 - 16 && sizeof(State<double>) == 52 - 16 &&
              sizeof(State<float>) == 44 - 16);
#endif

// What InitStream is given as its words: pointers to the values, 64 bits each. Integers have no ends.
enum Argument { kSize, kBuffer, kLower, kUpper, kCallBack, kArguments };

template <class Number>
constexpr bool kHasEnds = !std::is_same_v<Number, uint32_t>;
template <class Number>
constexpr int kArgumentCount = kHasEnds<Number> ? kArguments : kArguments - 2;
template <class Number>
constexpr int place(Argument argument) {
  return kHasEnds<Number> || argument < kLower ? argument : argument - 2;
}

inline uint64_t slot(const void* pointer) { return reinterpret_cast<uintptr_t>(pointer); }

template <class Value>
const Value& value_at(const uint32_t* params, int i) {
  return *reinterpret_cast<const Value*>(static_cast<uintptr_t>(word64(params + 2 * i)));
}

// Numbers [position, position + count) of the ring, in stretches that do not wrap, to put(from, count).
template <class Number, class Put>
uint32_t take(const State<Number>& s, uint32_t position, uint32_t count, const Put& put) {
  while (count > 0) {
    const uint32_t stretch = std::min(count, s.Size - position);
    put(s.Buffer + position, stretch);
    count -= stretch;
    position = position + stretch == s.Size ? 0 : position + stretch;
  }
  return position;
}

// Has the caller put new numbers at `position` of a ring that is all read; *count of them.
template <class Number>
int refill(KobStream* stream, const State<Number>& s, uint32_t position, uint32_t needed, uint32_t* count) {
  uint32_t size = s.Size, room = s.Size, wanted[4] = {std::min(s.Size, needed)};
  const int returned = s.CallBack(stream, &size, s.Buffer, wanted, &room, &position);
  if (returned < 0 || uint32_t(returned) > s.Size) return KOB_ERROR_ABSTRACT_CALLBACK_FAILED;
  *count = uint32_t(returned);
  return returned ? KOB_STATUS_OK : KOB_ERROR_ABSTRACT_CALLBACK_EMPTY;
}

// The next n numbers to put(from, count). The position moves only when all could be had.
template <class Number, class Put>
int read(KobStream* stream, State<Number>& s, int n, const Put& put) {
  if (!s.Buffer) return KOB_ERROR_NULL_PTR;
  uint32_t needed = uint32_t(std::max(n, 0)), position = s.Position, unread = s.Unread;
  for (;;) {
    const uint32_t count = std::min(unread, needed);
    position = take(s, position, count, put);
    unread -= count;
    needed -= count;
    if (needed == 0) break;
    const int status = refill(stream, s, position, needed, &unread);
    if (status != KOB_STATUS_OK) return status;
  }
  s.Position = position;
  s.Unread = unread;
  return KOB_STATUS_OK;
}

// The generator of one kind: its own block function works, the others do not.
template <class Number>
struct Generator : NoLeapfrog, NoSkip, ByBlocks {
  using State = abstract::State<Number>;

  static State& state_of(KobStream* stream) { return *reinterpret_cast<State*>(stream + 1); }

  static int seed(KobStream* stream, int n, const uint32_t* params) {
    if (n != 2 * kArgumentCount<Number>) return KOB_ERROR_BAD_ARG;
    State& s = state_of(stream);
    s.Size = s.Unread = value_at<uint32_t>(params, place<Number>(kSize));
    s.Position = 0;
    s.Buffer = value_at<Number*>(params, place<Number>(kBuffer));
    s.CallBack = value_at<Refill<Number>>(params, place<Number>(kCallBack));
    if constexpr (kHasEnds<Number>) {
      s.Lower = value_at<Number>(params, kLower);
      s.Upper = value_at<Number>(params, kUpper);
    }
    return KOB_STATUS_OK;
  }

  template <class Real>
  static int reals(KobStream* stream, int n, Real* r, Real a, Real b) {
    if constexpr (std::is_same_v<Real, Number>) {
      State& s = state_of(stream);
      const Real scale = (b - a) / (s.Upper - s.Lower), lower = s.Lower;
      return read(stream, s, n, [&](const Real* from, uint32_t count) {
        for (uint32_t i = 0; i < count; ++i) r[i] = a + scale * (from[i] - lower);
        r += count;
      });
    } else {
      return KOB_ERROR_ABSTRACT_WRONG_KIND;
    }
  }

  static int words(KobStream* stream, int n, uint32_t* r) {
    if constexpr (std::is_same_v<Number, uint32_t>) {
      return read(stream, state_of(stream), n, [&](const uint32_t* from, uint32_t count) {
        std::copy_n(from, count, r);
        r += count;
      });
    } else {
      return KOB_ERROR_ABSTRACT_WRONG_KIND;
    }
  }

  // The buffer and the function belonged to whoever saved the stream. Without them it reads nothing.
  static bool adopt(KobStream* stream) {
    State& s = state_of(stream);
    s.Buffer = nullptr;
    s.CallBack = nullptr;
    return true;
  }
};

template <class Number>
int new_stream(KobStream** stream, uint32_t id, int n, Number* buffer, Number a, Number b,
               Refill<Number> callback) {
  if (n < 1 || !buffer || !callback || (kHasEnds<Number> && !(a < b))) return KOB_ERROR_BAD_ARG;
  uint32_t index, offset;
  const KobBrngProperties* table = __kobGetBrngBaseOffset(id, &index, &offset);
  const int status = __kobAllocateStream(stream, table, id, index, offset);
  if (status != KOB_STATUS_OK) return status;
  uint64_t slots[kArguments];
  slots[kSize] = slot(&n);
  slots[kBuffer] = slot(&buffer);
  slots[kLower] = slot(&a);
  slots[kUpper] = slot(&b);
  slots[place<Number>(kCallBack)] = slot(&callback);
  return table[index].InitStream(0, *stream, 2 * kArgumentCount<Number>,
                                 reinterpret_cast<const uint32_t*>(slots));
}

}  // namespace orx::brng::abstract
