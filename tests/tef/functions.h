// The library's functions of one input as test parameters, from the list that the library is made of.
#pragma once
#include <string>
#include <vector>

#include "orx/tef.h"

namespace test {

template <class T>
using Unary = void(int, const T*, T*);

template <class T>
struct UnaryFunction {
  std::string name;
  Unary<T>* const* ttab;
  const float* ctab;
};

template <class T>
std::vector<UnaryFunction<T>> unary_functions() {
  std::vector<UnaryFunction<T>> list;
  const auto add_float = [&](const char* name, auto table, const float* costs) {
    if constexpr (sizeof(T) == 4) list.push_back({name, table, costs});
  };
  const auto add_double = [&](const char* name, auto table, const float* costs) {
    if constexpr (sizeof(T) == 8) list.push_back({name, table, costs});
  };
#define ORX_ADD_s add_float
#define ORX_ADD_d add_double
#define ORX_LIST_unary(t, Fn) \
  ORX_ADD_##t(#t #Fn, orx_tef_kernel_##t##Fn##_ttab, orx_tef_kernel_##t##Fn##_ctab);
#define ORX_LIST_binary(t, Fn)
#define ORX_LIST_linearfrac(t, Fn)
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, cost_la, cost_ha, cost_ep) ORX_LIST_##shape(t, Fn)
#include "orx/tef_functions.def"
#undef ORX_FUNCTION
  return list;
}

// Keeps the calling thread's mode, status and callback for the life of a test.
struct TefState {
  int mode = _tefGetMode();
  TefErrorCallBack callback = _tefGetErrorCallBack();
  TefState() { _tefClearErrStatus(); }
  ~TefState() {
    _tefSetErrorCallBack(callback);
    _tefSetMode(mode);
    _tefClearErrStatus();
  }
};

}  // namespace test
