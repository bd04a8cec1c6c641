#include "list.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "orx/tef.h"

namespace orx {
namespace {

constexpr Shape kShapes[] = {
    {"unary", 1, 1, 0},
    {"from_real", 1, 1, 0, true, false},
    {"to_real", 1, 1, 0, false, true},
    {"binary", 2, 1, 0},
    {"two_results", 1, 2, 0},
    {"scalar_second", 1, 1, 1},
    {"complex_scalar_second", 1, 1, 2},
    {"linearfrac", 2, 1, 4},
    {"pack_strided", 1, 1, 0, false, false, false},
    {"unpack_strided", 1, 1, 0, false, false, false},
    {"pack_selected", 1, 1, 0, false, false, false},
    {"unpack_selected", 1, 1, 0, false, false, false},
};

const Shape* find_shape(std::string_view name) {
  for (const Shape& shape : kShapes)
    if (name == shape.name) return &shape;
  std::abort();  // a row of the list with a shape that is not known here
}

struct Row {
  const char *shape, *type, *name;
  const char* codes[kClassCount];
  void (*entries[kClassCount])();
  float cost[kClassCount];
};

// The class in a code such as "G9HAynn".
int class_in(std::string_view code) {
  for (int i = 0; i < kClassCount; ++i)
    if (code.substr(2, 2) == kClassNames[i]) return i;
  std::abort();
}

double bound_of(const Function& f, int class_index) {
  if (!f.descriptor) return 0;
  const descriptor::Bounds& bounds = f.about().bounds;
  const double given = class_index == kIndexLA ? bounds.la : class_index == kIndexHA ? bounds.ha : bounds.ep;
  return given != 0 ? given : class_limit(f.single(), class_index);
}

Function make_function(const Row& row) {
  Function f{find_shape(row.shape),
             *row.type,
             row.name,
             {},
             {row.cost[0], row.cost[1], row.cost[2]},
             descriptor::find(row.name, *row.type)};
  for (int index = 0; index < kClassCount; ++index) {
    const std::string name = f.full_name() + "_" + row.codes[index];
    auto known =
        std::find_if(f.kernels.begin(), f.kernels.end(), [&](const Kernel& k) { return k.name == name; });
    if (known == f.kernels.end()) {
      const int own_class = class_in(row.codes[index]);
      f.kernels.push_back({name, "", {}, row.entries[index], own_class, bound_of(f, own_class)});
      known = f.kernels.end() - 1;
    }
    known->serves[index] = true;
    known->classes += (known->classes.empty() ? "" : ", ") + std::string(kClassNames[index]);
  }
  return f;
}

}  // namespace

const Kernel& Function::kernel_of(int class_index) const {
  return *std::find_if(kernels.begin(), kernels.end(),
                       [=](const Kernel& k) { return k.serves[class_index]; });
}

double class_limit(bool single, int class_index) {
  const int digits = single ? 24 : 53, bits = single ? 11 : 26;
  return class_index == kIndexLA ? 4 : class_index == kIndexHA ? 1 : std::ldexp(1.0, digits - 1 - bits);
}

const std::vector<Function>& functions() {
#define ENTRY(t, Fn, code) reinterpret_cast<void (*)()>(orx_tef_kernel_##t##Fn##_##code)
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, ...)                      \
  make_function({#shape,                                                 \
                 #t,                                                     \
                 #Fn,                                                    \
                 {#la, #ha, #ep},                                        \
                 {ENTRY(t, Fn, la), ENTRY(t, Fn, ha), ENTRY(t, Fn, ep)}, \
                 {__VA_ARGS__}}),
  static const std::vector<Function> list{
#include "orx/tef_functions.def"
  };
#undef ORX_FUNCTION
#undef ENTRY
  return list;
}

// A call of a kernel by the list of parameters of its shape.
#define CALL(shape, ...)                                                                                          \
  {                                                                                                               \
#shape, [](void (*entry)(), int n, const Operands<R>& o) {                                                      \
     reinterpret_cast<void(*) ORX_TEF_PARAMETERS_##shape(R, ORX_TEF_FLAG)>(entry)(n, __VA_ARGS__);                 \
   } \
  }

template <class R>
KernelCall<R> kernel_call(const Function& f) {
  static constexpr std::pair<std::string_view, KernelCall<R>> calls[] = {
      CALL(unary, o.in[0], o.out[0]),
      CALL(from_real, o.in[0], o.out[0]),
      CALL(to_real, o.in[0], o.out[0]),
      CALL(binary, o.in[0], o.in[1], o.out[0]),
      CALL(two_results, o.in[0], o.out[0], o.out[1]),
      CALL(scalar_second, o.in[0], o.scalar[0], o.out[0]),
      CALL(complex_scalar_second, o.in[0], o.scalar[0], o.scalar[1], o.out[0]),
      CALL(linearfrac, o.in[0], o.in[1], o.scalar[0], o.scalar[1], o.scalar[2], o.scalar[3], o.out[0]),
      CALL(pack_strided, o.in[0], o.stride, o.out[0], 1),
      CALL(unpack_strided, o.in[0], o.out[0], o.stride, 1),
      CALL(pack_selected, o.in[0], o.selection, o.out[0], 1),
      CALL(unpack_selected, o.in[0], o.out[0], o.selection, 1),
  };
  for (const auto& [shape, call] : calls)
    if (shape == f.shape->name) return call;
  return nullptr;
}

template KernelCall<float> kernel_call(const Function&);
template KernelCall<double> kernel_call(const Function&);

}  // namespace orx
