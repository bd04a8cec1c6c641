// How a kernel is described, and the loop and the rare path that all kernels share.
//
// A kernel file holds mathematics alone. It describes each kernel by a struct, and ends with a line that makes
// the entry point of it:
//
//   struct dLnHA : Kernel<double(double)> {
//     template <class X> static auto rare(X x);                   // lanes that eval cannot be trusted with
//     template <class X> static X eval(X x);                      // the mathematics
//     template <class X> static auto far(X x);                    // those of them that eval_far takes
//     template <class X> static X eval_far(X x);                  // other mathematics, for whole vectors too
//     template <class X, class Left> static void finish(X x, Left& left);  // rare lanes, still as vectors
//     static int rare_lane(const double* a, double* r);           // one rare element; its status
//   };
//   ORX_KERNEL(d, Ln, G9HAynn, dLnHA)
//
// The signature. Kernel<R(A)> and Kernel<R(A, B)> name the types of the elements; all have the same precision:
//
//   in the signature         in memory              in the kernel, for X a Vec<T, n>
//   T (float or double)      T                      X
//   Complex<T>               real, imaginary part   Complex<X>: .re, .im, deinterleaved; a lane for an element
//   Pair<T>                  real, imaginary part   X: the parts side by side, two lanes for an element; in all
//                                                   operands or in none (for sums, where parts keep apart)
//   Scalar<T>, as B          one value of the call  X, the value in all lanes
//   Two<T>, as R             two vectors            Two<X>: .first, .second
//
// so that Kernel<Two<double>(double)> is dSinCos, Kernel<float(Complex<float>)> cAbs,
// Kernel<Complex<double>(double)> zCIS, Kernel<double(double, Scalar<double>)> dPowx. Members take and return what
// stands in the right column, one parameter for each argument. They are templates over X: n is kTogether in the
// main part and 1 elsewhere, and a lane's result must not depend on n nor on what stands in other lanes.
//
// Members. Only eval is needed.
//
//   eval(x [, y] [, X& rare])
//       The results. It must be right, and raise exactly the exceptions that belong to the results, for all
//       arguments that `rare` does not name; for others it is never asked. A kernel that knows only from
//       intermediate values what it cannot do (x^y, from y log x) takes a last parameter and sets the lanes' mask
//       there; it must then not raise exceptions for such lanes on its way (clamp), and gets the same arguments
//       again in the rare path, with all lanes that `rare` names replaced.
//   rare(x [, y])
//       A mask X of lanes by their arguments; the sign of a lane tells. It must be quiet for NaN: integer
//       operations on the bits, or the comparisons of the vocabulary that are quiet. Padding (kSafe) is not rare.
//   far(x [, y]), eval_far(x [, y])
//       A full mask of those rare lanes that another formula is for, which vectors may be made of entirely (large arguments
//       of Sin, by the digits of pi), and the results of it. Blocks of such elements alone go through it as those of usual
//       elements through eval; other lanes are kSafe. X has one vector in eval_far.
//   finish(x [, y], left)
//       The second path for what is left: blends, or other formulas. `x` holds the rare lanes' arguments, the others being
//       kSafe; left.lanes is the full mask of the lanes still to be finished and left.y the results so far.
//       left.finish(mask, value) settles lanes of left.lanes, left.finish(mask, value, status) settles and reports them: so
//       a vector kernel reports a constant status without a scalar routine.
//       Mask by select what is computed on: exceptions raised in finish count. Where the value is long to come by,
//       pass a function of the mask instead, left.finish(mask, [&](X which) { ... }): it is called if there is a lane.
//       X has one vector here.
//   rare_lane(const A* a [, const B* b], R* r [, R* r2])
//       What finish has left, or all that is rare where there is no finish: writes the result, returns the status
//       to report or StatusOk. Elements are as in memory: Complex<T> for complex ones, also where the signature
//       says Pair. Without it finish settles all.
//
//   kSafe       (0.75) what stands in padding lanes and for rare elements in eval: a value, of all arguments and
//               their parts, for which eval runs clean and raises nothing, nor inexact where the function never does
//   kTogether   (1) vectors that eval takes at once: 1, 2 or 4. A constant then is loaded once for all of them; more
//               than 2 is for what shares more than constants
//   kControl    (Control::kMode) what is done about the control words, frame/control.hpp
//
// A kernel without vector code (gamma functions; PX kernels, with kControl = Control::kExtended) derives from
// ElementKernel<signature> and has rare_lane alone, which is called for every element.
//
// Exceptions: frame/exceptions.hpp raises each on purpose. Usual elements must not meet an underflow on the way to a
// normal result, nor an overflow; a tiny argument's square is the usual place (add something small before squaring).
//
// Singles that are computed in doubles: eval widens, computes in Vec<double, 2n> and narrows; see the vocabulary.
//
// What the frame does. Short vectors begin with the main part; long ones with the elements up to an aligned
// address. The main part takes a block of two vectors (or kTogether) at a time: asks rare for all of them, then
// evaluates and stores; what is left over is taken by vectors whose absent lanes are kSafe. Blocks of far elements alone go
// through eval_far. Another block with a rare lane, and those behind it as long as they have some, go through the rare
// path, a vector at a time: eval with kSafe in the rare lanes, eval_far, finish, stores, then the scalar routine and the
// reports in ascending order. Results, exceptions and reports do not depend on where an element stands. Errors go to the
// error layer in the types of the signature; a real operand of a complex function has imaginary parts 0. Every call of code
// that may be compiled for another instruction set follows a vzeroupper.
//
// Code that depends on the instruction set (ORX_ISA_BEGIN) includes the rare path: a kernel in a file for another
// instruction set must not call a scalar routine that is compiled for AVX; instantiate its template in the file.
//
// A complete example, with all the members but far (tests/tef/frame/example_test.cpp has it running):
//
//   // 1/sqrt(x), by the processor's root.
//   struct dInvSqrt : Kernel<double(double)> {
//     template <class X>
//     static X rare(X x) {  // zeros, denormals, negative numbers, infinities, NaN
//       return outside(x, kSmallest, kLargest);
//     }
//     template <class X>
//     static X eval(X x) {
//       return kOne / square_root(x);
//     }
//     template <class X, class Left>
//     static void finish(X x, Left& left) {
//       const X one = constant<X>(kOne);
//       left.finish(bit_and(less(X{}, x), less(x, kSmallest)), [&](X denormal) {
//         return kUp / square_root(select(denormal, x, one) * kUpSquare);  // nothing to report
//       });
//       left.finish(equal(x, X{}), [&](X zero) { return one / select(zero, x, one); }, StatusSingularity);
//     }
//     static int rare_lane(const double* a, double* r) {  // what is left: negative numbers, infinities, NaN
//       if (*a != *a) return *r = *a + *a, StatusOk;
//       if (*a > 0) return *r = 0, StatusOk;
//       return *r = raise_invalid<double>(), StatusDomain;
//     }
//
//    private:
//     static constexpr Row<double> kSmallest = DBL_MIN, kLargest = DBL_MAX, kOne = 1.0, kUp = 0x1p60, kUpSquare = 0x1p120;
//   };
//   ORX_KERNEL(d, InvSqrt, G9HAynn, dInvSqrt)
//
// Stability: the interface above is settled, and 300 kernels may lean on it; what is added will be optional.
#pragma once
#include <tuple>
#include <type_traits>

#include "errors/report.hpp"
#include "frame/control.hpp"
#include "frame/element.hpp"
#include "orx/tef_shapes.h"

ORX_ISA_BEGIN(orx::tef)

struct Absent {};

template <class Signature>
struct Kernel;
template <class R, class... A>
struct Kernel<R(A...)> {
  using Signature = R(A...);
  using Real = typename Element<R>::Real;
  static constexpr Real kSafe = Real(0.75);
  static constexpr int kTogether = 1;
  static constexpr Control kControl = Control::kMode;
  static constexpr bool kElementwise = false;
  static constexpr Absent eval{}, rare{}, far{}, finish{}, rare_lane{};
};
template <class Signature>
struct ElementKernel : Kernel<Signature> {
  static constexpr bool kElementwise = true;
};

// Whether K has a member of the name, be it a template or not.
#define ORX_HAS_MEMBER(Name, name)                                                         \
  template <class K, class = void>                                                         \
  struct Lacks##Name : std::false_type {};                                                 \
  template <class K>                                                                       \
  struct Lacks##Name<K, std::enable_if_t<std::is_same_v<decltype(K::name), const Absent>>> \
      : std::true_type {};                                                                 \
  template <class K>                                                                       \
  constexpr bool kHas##Name = !Lacks##Name<K>::value;
ORX_HAS_MEMBER(Rare, rare)
ORX_HAS_MEMBER(Far, far)
ORX_HAS_MEMBER(Finish, finish)
ORX_HAS_MEMBER(RareLane, rare_lane)
#undef ORX_HAS_MEMBER

// ---- the vectors of a call
// What goes in and out, from the parameters of a kernel in their order.
template <class E>
struct Input {
  using Memory = typename Element<E>::Memory;
  using Real = typename Element<E>::Real;
  const Real* vector;

  const Memory* at(unsigned i) const { return reinterpret_cast<const Memory*>(vector) + i; }
  template <int n>
  auto load(unsigned i) const {
    return Element<E>::template load<n>(at(i));
  }
  auto load_first(unsigned i, int count, Real fill) const {
    return Element<E>::load_first(at(i), count, fill);
  }
  Operand operand() const { return {const_cast<Real*>(vector), sizeof(Real), Element<E>::kParts}; }
};
template <class E>
struct Input<Scalar<E>> {
  using Memory = typename Element<E>::Memory;
  using Real = typename Element<E>::Real;
  Memory value;

  const Memory* at(unsigned) const { return &value; }
  template <int n>
  auto load(unsigned) const {
    return Element<E>::template fill<Vec<Real, n>>(value);
  }
  auto load_first(unsigned i, int, Real) const { return load<1>(i); }
  Operand operand() const { return {const_cast<Memory*>(&value), sizeof(Real), Element<E>::kParts, false}; }
};

template <class E>
struct Output {
  using Memory = typename Element<E>::Memory;
  using Real = typename Element<E>::Real;
  Real* vector;

  Memory* at(unsigned i) const { return reinterpret_cast<Memory*>(vector) + i; }
  template <int n, class Y>
  void store(unsigned i, Y y) const {
    Element<E>::template store<n>(at(i), y);
  }
  template <class Y>
  void store_first(unsigned i, int count, Y y) const {
    Element<E>::store_first(at(i), count, y);
  }
  template <class F>
  auto into(unsigned i, F f) const {
    return f(at(i));
  }
  Operand operand() const { return {vector, sizeof(Real), Element<E>::kParts}; }
  Operand second_operand() const { return operand(); }
};
template <class E>
struct Output<Two<E>> {
  Output<E> first, second;

  template <int n, class Y>
  void store(unsigned i, Y y) const {
    first.template store<n>(i, y.first);
    second.template store<n>(i, y.second);
  }
  template <class Y>
  void store_first(unsigned i, int count, Y y) const {
    first.store_first(i, count, y.first);
    second.store_first(i, count, y.second);
  }
  template <class F>
  auto into(unsigned i, F f) const {
    return f(first.at(i), second.at(i));
  }
  Operand operand() const { return first.operand(); }
  Operand second_operand() const { return second.operand(); }
};

// One or two things of a kind, one for each argument, that are passed to functions together.
template <class... V>
struct Pack;
template <class V>
struct Pack<V> {
  V a;
  const V& last() const { return a; }
  template <class F>
  auto into(F f) const {
    return f(a);
  }
};
template <class V, class W>
struct Pack<V, W> {
  V a;
  W b;
  const W& last() const { return b; }
  template <class F>
  auto into(F f) const {
    return f(a, b);
  }
};
template <class M, class V>
inline Pack<V> select(M mask, const Pack<V>& x, const Pack<V>& y) {
  return {select(mask, x.a, y.a)};
}
template <class M, class V, class W>
inline Pack<V, W> select(M mask, const Pack<V, W>& x, const Pack<V, W>& y) {
  return {select(mask, x.a, y.a), select(mask, x.b, y.b)};
}

// An argument's elements of one vector in memory, for the scalar routine.
template <class E>
struct Spilled {
  using Real = typename Element<E>::Real;
  alignas(64) typename Element<E>::Memory element[Vec<Real, 1>::kLanes / Element<E>::kLanes];
  template <class X>
  explicit Spilled(X x) {
    Element<E>::template store<1>(element, x);
  }
};

template <class Signature>
struct Call;
template <class R, class... A>
struct Call<R(A...)> {
  template <int n>
  using Arguments = Pack<typename Element<A>::template Vectors<n>...>;
  template <int n>
  using Results = typename Element<R>::template Vectors<n>;
  using Real = typename Element<R>::Real;
  // Elements in a vector.
  static constexpr unsigned kLanes = Vec<Real, 1>::kLanes / Element<R>::kLanes;
  static_assert((... && (Element<A>::kLanes == Element<R>::kLanes)),
                "parts side by side in all operands or in none");
  static_assert((... && std::is_same_v<typename Element<A>::Real, Real>), "operands of one precision");

  Pack<Input<A>...> in;
  Output<R> out;

  template <int n>
  Arguments<n> load(unsigned i) const {
    return in.into([&](const auto&... a) { return Arguments<n>{a.template load<n>(i)...}; });
  }
  Arguments<1> load_first(unsigned i, int count, Real fill) const {
    return in.into([&](const auto&... a) { return Arguments<1>{a.load_first(i, count, fill)...}; });
  }
  static Arguments<1> filled(Real x) { return {Element<A>::template fill<Vec<Real, 1>>(x)...}; }
  // Tells the error layer of an element.
  void tell(int status, unsigned i, const char* name) const {
    report(status, static_cast<int>(i), in.a.operand(), in.last().operand(), out.operand(),
           out.second_operand(), name);
  }
  Pack<typename Element<A>::Memory...> copy(unsigned i) const {
    return in.into([&](const auto&... a) { return Pack<typename Element<A>::Memory...>{*a.at(i)...}; });
  }
  static Pack<Spilled<A>...> spill(const Arguments<1>& x) {
    return x.into([](const auto&... a) { return Pack<Spilled<A>...>{Spilled<A>(a)...}; });
  }
};

// ---- the rare lanes of a vector, while they are being finished
template <class X, class Y>
class RareLanes {
 public:
  X lanes;  // a mask of those that are still to be finished
  Y y;      // results

  RareLanes(X mask, Y results) : lanes(mask), y(results) {}

  // Lanes of `which` have their result now; `status` is reported for each of them.
  void finish(X which, Y value, int status = StatusOk) {
    which = bit_and(which, lanes);
    y = select(which, value, y);
    lanes = bit_andnot(which, lanes);
    if (status != StatusOk) reported_[status - 1] |= movemask(which);
  }
  // The same with value(mask), which is asked for only if there is a lane that is left and of `which`: the mask.
  template <class F, class = std::enable_if_t<std::is_invocable_v<F, X>>>
  void finish(X which, F value, int status = StatusOk) {
    which = bit_and(which, lanes);
    if (any(which)) finish(which, value(which), status);
  }

  bool any_reported() const {
    int all = 0;
    for (int lanes_of_status : reported_) all |= lanes_of_status;
    return all != 0;
  }
  // The status with which lanes of the given bits have been finished.
  int status(int bits) const {
    for (int s = StatusDomain; s <= StatusUnderflow; ++s)
      if (reported_[s - 1] & bits) return s;
    return StatusOk;
  }

 private:
  int reported_[StatusUnderflow] = {};
};

// ---- the loop
// Whether K's eval takes a mask beside its arguments.
template <class K, class M, class Arguments, class = void>
struct TakesMask : std::false_type {};
template <class K, class M, class... V>
struct TakesMask<K, M, Pack<V...>, std::void_t<decltype(K::eval(std::declval<V>()..., std::declval<M&>()))>>
    : std::true_type {};

// P are the parameters of the entry point behind the count.
template <class K, class Function, class... P>
class Loop {
  using Call = tef::Call<typename K::Signature>;
  template <int n>
  using Arguments = typename Call::template Arguments<n>;
  template <int n>
  using Results = typename Call::template Results<n>;
  template <int n>
  using Mask = Vec<typename K::Real, n>;
  static constexpr unsigned kLanes = Call::kLanes;
  // The main part takes a block at a time: two vectors, or more where more are evaluated together.
  static_assert(K::kTogether == 1 || K::kTogether == 2 || K::kTogether == 4, "a power of two that Vec knows");
  static constexpr int kBlockVectors = K::kTogether > 2 ? K::kTogether : 2;
  static constexpr unsigned kBlock = kBlockVectors * kLanes;
  // Vectors from here on are worth being aligned.
  static constexpr unsigned kLong = 16 * kBlock;
  static_assert(!kHasRare<K> || kHasRareLane<K> || kHasFinish<K> || kHasFar<K>,
                "rare lanes that nobody finishes");

 public:
  // The count is taken as unsigned.
  [[gnu::always_inline]] static void run(int count, P... p) {
    const unsigned n = static_cast<unsigned>(count);
    if (n >= kBlock) return all(n, p...);
    unsigned i = 0;
    for (; n - i > kLanes; i += kLanes) some(i, static_cast<int>(kLanes), p...);
    some(i, static_cast<int>(n - i), p...);
  }

 private:
  __attribute__((noinline, flatten)) static void all(unsigned n, P... p) {
    const Call call{p...};
    unsigned i = 0;
    if (n >= kLong) {
      forget_upper();
      i = to_boundary(call);
      if (i) some(0, static_cast<int>(i), p...);
    }
    for (const unsigned end = n - (n - i) % kBlock; i != end;) {
      i = usual_blocks(i, end, call);
      if (i != end) i = rare_blocks(i, end, call);
    }
    for (; i < n; i += kLanes) some(i, static_cast<int>(n - i < kLanes ? n - i : kLanes), p...);
    zero_upper();
  }

  static unsigned to_boundary(const Call& call) {
    const auto* first = call.in.a.at(0);
    return static_cast<unsigned>(-reinterpret_cast<uintptr_t>(first) % kVectorBytes / sizeof *first);
  }

  template <int n>
  static auto rare(const Arguments<n>& x) {
    if constexpr (kHasRare<K>)
      return x.into([](const auto&... a) { return K::rare(a...); });
    else
      return Mask<n>{};
  }
  template <int n>
  static constexpr bool kTakesMask = TakesMask<K, Mask<n>, Arguments<n>>::value;
  // The results, and as `late` the lanes that eval itself found to be rare.
  template <int n>
  static Results<n> eval(const Arguments<n>& x, Mask<n>& late) {
    return x.into([&](const auto&... a) -> Results<n> {
      if constexpr (kTakesMask<n>) {
        return K::eval(a..., late);
      } else {
        static_cast<void>(late);
        return K::eval(a...);
      }
    });
  }

  // Blocks up to the first that has rare lanes, or up to `end`; where it came to.
  static unsigned usual_blocks(unsigned i, unsigned end, const Call& call) {
    for (; i != end; i += kBlock) {
      if (kHasRare<K> && __builtin_expect(any_rare(i, call), 0)) break;
      block(i, call);
    }
    return i;
  }
  static void block(unsigned first, const Call& call) {
    for (int v = 0; v < kBlockVectors; v += K::kTogether) {
      const unsigned i = first + static_cast<unsigned>(v) * kLanes;
      Mask<K::kTogether> late{};
      const auto y = eval<K::kTogether>(call.template load<K::kTogether>(i), late);
      if (kTakesMask<K::kTogether> && __builtin_expect(any(late), 0))
        careful(i, K::kTogether * kLanes, 0, call);
      else
        call.out.template store<K::kTogether>(i, y);
    }
  }
  static bool any_rare(unsigned first, const Call& call) {
    return any(rare<kBlockVectors>(call.template load<kBlockVectors>(first)));
  }

  // The first block has rare elements.
  static unsigned rare_blocks(unsigned i, unsigned end, const Call& call) {
    if constexpr (kHasFar<K>)
      if (all_far(i, call)) return far_blocks(i, end, call);
    return careful(i, kBlock, end, call);
  }
  static bool all_far(unsigned first, const Call& call) {
    if constexpr (kHasFar<K>)
      return !any(complement(far(call.template load<kBlockVectors>(first))));
    else
      return false;
  }
  template <class V>
  static auto far(const V& x) {
    return x.into([](const auto&... a) { return K::far(a...); });
  }
  static Results<1> eval_far(const Arguments<1>& x) {
    return x.into([](const auto&... a) -> Results<1> { return K::eval_far(a...); });
  }
  // The first block is known to be far; then those behind it that are. Not inlined, as `some` and `careful`.
  __attribute__((noinline, flatten)) static unsigned far_blocks(unsigned i, unsigned end, Call call) {
    do {
      for (int v = 0; v < kBlockVectors; ++v, i += kLanes)
        call.out.template store<1>(i, eval_far(call.template load<1>(i)));
    } while (i != end && all_far(i, call));
    return i;
  }

  // A vector or less. Not inlined: the calls of few elements need not set up the main part's constants.
  __attribute__((noinline, flatten)) static void some(unsigned i, int count, P... p) {
    const Call call{p...};
    if (!usual(i, count, call)) careful(i, static_cast<unsigned>(count), 0, call);
    zero_upper();
  }
  static bool usual(unsigned i, int count, const Call& call) {
    const auto x = call.load_first(i, count, K::kSafe);
    if (__builtin_expect(any(rare<1>(x)), 0)) return false;
    Mask<1> late{};
    const auto y = eval<1>(x, late);
    if (kTakesMask<1> && __builtin_expect(any(late), 0)) return false;
    call.out.store_first(i, count, y);
    return true;
  }

  // `count` elements with rare ones among them; then the blocks up to `end` that have rare ones, too: to go back to the
  // main part and to leave it anew costs more than a block. Ends at the first element behind. Not inlined, and given a
  // copy of the call, so that the main part need not keep for it what it does not need itself.
  __attribute__((noinline, flatten)) static unsigned careful(unsigned i, unsigned count, unsigned end,
                                                             Call call) {
    for (;;) {
      for (const unsigned to = i + count; i < to; i += kLanes)
        careful_vector(i, static_cast<int>(to - i < kLanes ? to - i : kLanes), call);
      if (i >= end || !any_rare(i, call) || all_far(i, call)) return i;
      count = kBlock;
    }
  }

  // Rare lanes pass through the usual path as the safe value, so that they raise nothing there.
  static void careful_vector(unsigned i, int count, const Call& call) {
    using X = Mask<1>;
    constexpr int all = (1 << X::kLanes) - 1;
    const auto x = call.load_first(i, count, K::kSafe), safe = Call::filled(K::kSafe);
    X mask = spread_signs(rare<1>(x));
    Results<1> y{};
    if (movemask(mask) != all) {
      X late{};
      y = eval<1>(select(mask, safe, x), late);
      mask = bit_or(mask, spread_signs(late));
    }
    if (count < static_cast<int>(kLanes)) mask = bit_and(mask, first_lanes<X>(count * kLanesOfElement));
    RareLanes<X, Results<1>> left(mask, y);
    if constexpr (kHasFar<K>) left.finish(far(x), [&](X which) { return eval_far(select(which, x, safe)); });
    if constexpr (kHasFinish<K>)
      select(left.lanes, x, safe).into([&](const auto&... a) { K::finish(a..., left); });
    call.out.store_first(i, count, left.y);
    if (any(left.lanes) || left.any_reported()) repair(i, count, x, left, call);
  }
  static constexpr int kLanesOfElement = static_cast<int>(Mask<1>::kLanes / kLanes);

  // What has no result yet, or is to be reported, in ascending order.
  template <class Left>
  static void repair(unsigned i, int count, const Arguments<1>& x, const Left& left, const Call& call) {
    const int pending = movemask(left.lanes);
    const auto spilled = Call::spill(x);
    for (int lane = 0; lane < count; ++lane, ++i) {
      const int bits = ((1 << kLanesOfElement) - 1) << (lane * kLanesOfElement);
      int status = left.status(bits);
      zero_upper();
      if constexpr (kHasRareLane<K>)
        if (pending & bits)
          status = spilled.into([&](const auto&... a) {
            return call.out.into(i, [&](auto*... r) { return K::rare_lane(&a.element[lane]..., r...); });
          });
      if (status != StatusOk) call.tell(status, i, Function::_TEF_THISFUNC_NAME);
    }
  }
};

// The loop of kernels that have no vector code.
template <class K, class Function, class... P>
class ElementLoop {
  using Call = tef::Call<typename K::Signature>;

 public:
  __attribute__((noinline)) static void run(int count, P... p) {
    const Call call{p...};
    zero_upper();
    for (unsigned i = 0; i < static_cast<unsigned>(count); ++i) {
      const auto x = call.copy(i);  // the result may be written over the argument
      const int status = x.into([&](const auto&... a) {
        return call.out.into(i, [&](auto*... r) { return K::rare_lane(&a..., r...); });
      });
      if (status != StatusOk) call.tell(status, i, Function::_TEF_THISFUNC_NAME);
    }
  }
};

// A call of kernel K: `p` are the vectors, and the value of a scalar argument, in the order of the entry point.
template <class K, class Function, class... P>
[[gnu::always_inline]] inline void run_kernel(int n, P... p) {
  using L = std::conditional_t<K::kElementwise, ElementLoop<K, Function, P...>, Loop<K, Function, P...>>;
  if (n != 0) run_under<K::kControl, L::run>(n, p...);
}

ORX_ISA_END

// Defines the entry point of a kernel; the shape is that of the function's row in the list:
//   ORX_KERNEL_OF(shape, type, function, code, description)
// ORX_KERNEL is for one argument and one result (shapes unary, from_real, to_real).
#define ORX_KERNEL_OF(shape, t, Fn, code, K)                                                    \
  namespace orx::tef::function {                                                                \
  struct t##Fn##_##code {                                                                       \
    static constexpr char _TEF_THISFUNC_NAME[] = "v" #t #Fn;                                    \
  };                                                                                            \
  }                                                                                             \
  ORX_API void orx_tef_kernel_##t##Fn##_##code ORX_TEF_PARAMETERS_##shape(ORX_TEF_REAL_##t, ) { \
    orx::tef::run_kernel<K, orx::tef::function::t##Fn##_##code> ORX_KERNEL_ARGUMENTS_##shape;   \
  }
#define ORX_KERNEL(t, Fn, code, K) ORX_KERNEL_OF(unary, t, Fn, code, K)

#define ORX_KERNEL_ARGUMENTS_unary (n, a, r)
#define ORX_KERNEL_ARGUMENTS_binary (n, a, b, r)
#define ORX_KERNEL_ARGUMENTS_two_results (n, a, r1, r2)
#define ORX_KERNEL_ARGUMENTS_scalar_second (n, a, b, r)
#define ORX_KERNEL_ARGUMENTS_complex_scalar_second (n, a, orx::tef::Complex<decltype(b_re)>{b_re, b_im}, r)
