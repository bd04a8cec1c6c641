#include "kernel_list.hpp"

#include <map>
#include <string_view>

#include "orx/tef.h"

namespace {

constexpr calling_shape shapes[] = {{"unary", 1, 1, 0}, {"binary", 2, 1, 0}, {"linearfrac", 2, 1, 4, true}};

const calling_shape* find_shape(std::string_view name) {
  for (const calling_shape& shape : shapes)
    if (name == shape.name) return &shape;
  return nullptr;
}

struct line {
  double bound, from, to;
};

// Every macro that ends a kernel file has the same arguments.
const std::map<std::string, line>& lines() {
  static const std::map<std::string, line> all{
#define ORX_KERNEL(t, Fn, code, K, bound, from, to) {#t #Fn "_" #code, {bound, from, to}},
#define ORX_BINARY_KERNEL ORX_KERNEL
#define ORX_LINEARFRAC_KERNEL ORX_KERNEL
#include "kernel_lines.inc"
  };
  return all;
}

struct table_row {
  const char *shape, *type, *name;
  const char* codes[3];
  void (*entries[3])();
  float cost[3];
};

constexpr const char* class_names[3] = {"LA", "HA", "EP"};

function_entry make_function(const table_row& row) {
  function_entry f{find_shape(row.shape), *row.type, row.name, {}, {row.cost[0], row.cost[1], row.cost[2]}};
  for (int index = 0; index < 3; ++index) {
    const std::string name = f.full_name() + "_" + row.codes[index];
    kernel_entry* kernel = nullptr;
    for (kernel_entry& known : f.kernels)
      if (known.name == name) kernel = &known;
    if (!kernel) {
      kernel = &f.kernels.emplace_back();
      kernel->name = name;
      kernel->entry = row.entries[index];
      if (const auto found = lines().find(name); found != lines().end()) {
        kernel->has_line = true;
        kernel->bound = found->second.bound;
        kernel->from = found->second.from;
        kernel->to = found->second.to;
      }
    }
    kernel->serves[index] = true;
    kernel->classes += (kernel->classes.empty() ? "" : ", ") + std::string(class_names[index]);
  }
  return f;
}

}  // namespace

const std::vector<function_entry>& kernel_list() {
#define ENTRY(t, Fn, code) reinterpret_cast<void (*)()>(orx_tef_kernel_##t##Fn##_##code)
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, ...)                      \
  make_function({#shape,                                                 \
                 #t,                                                     \
                 #Fn,                                                    \
                 {#la, #ha, #ep},                                        \
                 {ENTRY(t, Fn, la), ENTRY(t, Fn, ha), ENTRY(t, Fn, ep)}, \
                 {__VA_ARGS__}}),
  static const std::vector<function_entry> list{
#include "orx/tef_functions.def"
  };
#undef ORX_FUNCTION
  return list;
}

template <class T>
void call_kernel(const function_entry& function, const kernel_entry& kernel, int n,
                 const kernel_operands<T>& o) {
  const std::string_view shape = function.shape->name;
  if (shape == "unary")
    reinterpret_cast<void (*)(int, const T*, T*)>(kernel.entry)(n, o.in[0], o.out[0]);
  else if (shape == "binary")
    reinterpret_cast<void (*)(int, const T*, const T*, T*)>(kernel.entry)(n, o.in[0], o.in[1], o.out[0]);
  else
    reinterpret_cast<void (*)(int, const T*, const T*, T, T, T, T, T*)>(kernel.entry)(
        n, o.in[0], o.in[1], o.scalar[0], o.scalar[1], o.scalar[2], o.scalar[3], o.out[0]);
}

template void call_kernel(const function_entry&, const kernel_entry&, int, const kernel_operands<float>&);
template void call_kernel(const function_entry&, const kernel_entry&, int, const kernel_operands<double>&);
