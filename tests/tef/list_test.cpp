// The tables and the forwarders of every function.
#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "functions/list.hpp"
#include "orx/tef.h"

namespace {

using namespace orx;

// A kernel of the test's own takes the place of each entry in turn; the forwarders that lead there must reach it with
// their arguments. It is called with counts and pointers to nothing.
const void* called;
template <class... P>
std::tuple<P...> passed;
template <class... P>
void stand_in(P... p) {
  called = &called;
  passed<P...> = {p...};
}

template <class... P, class... Q>
void check_forwarders(void (*(&ttab)[3])(P...), void (*const (&forwarders)[4])(Q...),
                      std::tuple<Q...> arguments, std::tuple<P...> expected) {
  const int entries[4] = {kIndexLA, kIndexHA, kIndexHA, kIndexEP};
  for (int which = 0; which < 4; ++which) {
    auto* const kernel = std::exchange(ttab[entries[which]], stand_in<P...>);
    called = nullptr;
    passed<P...> = {};
    std::apply(forwarders[which], arguments);
    ttab[entries[which]] = kernel;
    EXPECT_NE(called, nullptr);
    EXPECT_EQ(passed<P...>, expected);
  }
}

// Arguments that differ from each other.
template <class P>
P distinct(int i) {
  if constexpr (std::is_pointer_v<P>)
    return reinterpret_cast<P>(static_cast<uintptr_t>(64 * (i + 1)));
  else
    return static_cast<P>(i + 3);
}
template <class... Q, int... i>
std::tuple<Q...> arguments(void (*)(Q...), std::integer_sequence<int, i...>) {
  return {distinct<Q>(i)...};
}

template <class... P, class... Q>
void check(void (*(&ttab)[3])(P...), void (*const (&forwarders)[4])(Q...)) {
  const auto given = arguments(forwarders[0], std::make_integer_sequence<int, sizeof...(Q)>());
  if constexpr (sizeof...(P) > sizeof...(Q))  // packing: the flag follows
    check_forwarders(ttab, forwarders, given, std::tuple_cat(given, std::make_tuple(1)));
  else
    check_forwarders(ttab, forwarders, given, given);
}

#define FORWARDERS_s(Fn) \
  { _tefs##Fn##_21, _tefs##Fn, _tefs##Fn##_HA, _tefs##Fn##_11 }
#define FORWARDERS_d(Fn) \
  { _tefd##Fn##_50, _tefd##Fn, _tefd##Fn##_HA, _tefd##Fn##_26 }
#define FORWARDERS_c(Fn) \
  { _tefc##Fn##_21, _tefc##Fn, _tefc##Fn##_HA, _tefc##Fn##_11 }
#define FORWARDERS_z(Fn) \
  { _tefz##Fn##_50, _tefz##Fn, _tefz##Fn##_HA, _tefz##Fn##_26 }

TEST(List, ForwardersReachTheirEntryWithTheirArguments){
#define ORX_FUNCTION(shape, t, Fn, ...)                                          \
  {                                                                              \
    SCOPED_TRACE(#t #Fn);                                                        \
    static orx_tef_##t##Fn##_function* const forwarders[4] = FORWARDERS_##t(Fn); \
    check(orx_tef_kernel_##t##Fn##_ttab, forwarders);                            \
  }
#include "orx/tef_functions.def"
#undef ORX_FUNCTION
}

TEST(List, TablesHoldTheListsKernelsAndOneKernelHasOneCost) {
  auto f = functions().begin();
#define ORX_FUNCTION(shape, t, Fn, ...)                                                                 \
  for (int i = 0; i < kClassCount; ++i) {                                                               \
    EXPECT_EQ(reinterpret_cast<void (*)()>(orx_tef_kernel_##t##Fn##_ttab[i]), f->kernel_of(i).entry)    \
        << #t #Fn;                                                                                      \
    EXPECT_GT(orx_tef_kernel_##t##Fn##_ctab[i], 0.0f);                                                  \
    for (int j = 0; j < i; ++j) {                                                                       \
      const bool same_kernel = &f->kernel_of(i) == &f->kernel_of(j);                                    \
      EXPECT_TRUE(!same_kernel || orx_tef_kernel_##t##Fn##_ctab[i] == orx_tef_kernel_##t##Fn##_ctab[j]) \
          << #t #Fn;                                                                                    \
    }                                                                                                   \
  }                                                                                                     \
  ++f;
#include "orx/tef_functions.def"
#undef ORX_FUNCTION
}

TEST(List, EveryFunctionHasADescriptor) {
  for (const Function& f : functions()) EXPECT_NE(f.descriptor, nullptr) << f.full_name();
}

}  // namespace
