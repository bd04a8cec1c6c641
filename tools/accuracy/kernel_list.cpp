#include "kernel_list.hpp"

#include <map>
#include <string_view>

#include "orx/tef.h"

namespace {

constexpr CallingShape kShapes[] = {{"unary", 1, 1, 0}, {"binary", 2, 1, 0}, {"linearfrac", 2, 1, 4, true}};

const CallingShape* find_shape(std::string_view name) {
  for (const CallingShape& shape : kShapes)
    if (name == shape.name) return &shape;
  return nullptr;
}

struct Line {
  double bound, from, to;
};

// Every macro that ends a kernel file has the same arguments.
const std::map<std::string, Line>& lines() {
  static const std::map<std::string, Line> all{
#define ORX_KERNEL(t, Fn, code, K, bound, from, to) {#t #Fn "_" #code, {bound, from, to}},
#define ORX_BINARY_KERNEL ORX_KERNEL
#define ORX_LINEARFRAC_KERNEL ORX_KERNEL
#include "kernel_lines.inc"
  };
  return all;
}

struct TableRow {
  const char *shape, *type, *name;
  const char* codes[3];
  void (*entries[3])();
  float cost[3];
};

constexpr const char* kClassNames[3] = {"LA", "HA", "EP"};

FunctionEntry make_function(const TableRow& row) {
  FunctionEntry f{find_shape(row.shape), *row.type, row.name, {}, {row.cost[0], row.cost[1], row.cost[2]}};
  for (int index = 0; index < 3; ++index) {
    const std::string name = f.full_name() + "_" + row.codes[index];
    KernelEntry* kernel = nullptr;
    for (KernelEntry& known : f.kernels)
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
    kernel->classes += (kernel->classes.empty() ? "" : ", ") + std::string(kClassNames[index]);
  }
  return f;
}

}  // namespace

const std::vector<FunctionEntry>& kernel_list() {
#define ENTRY(t, Fn, code) reinterpret_cast<void (*)()>(orx_tef_kernel_##t##Fn##_##code)
#define ORX_FUNCTION(shape, t, Fn, la, ha, ep, ...)                      \
  make_function({#shape,                                                 \
                 #t,                                                     \
                 #Fn,                                                    \
                 {#la, #ha, #ep},                                        \
                 {ENTRY(t, Fn, la), ENTRY(t, Fn, ha), ENTRY(t, Fn, ep)}, \
                 {__VA_ARGS__}}),
  static const std::vector<FunctionEntry> list{
#include "orx/tef_functions.def"
  };
#undef ORX_FUNCTION
  return list;
}

template <class T>
void call_kernel(const FunctionEntry& function, const KernelEntry& kernel, int n,
                 const KernelOperands<T>& o) {
  const std::string_view shape = function.shape->name;
  if (shape == "unary")
    reinterpret_cast<void (*)(int, const T*, T*)>(kernel.entry)(n, o.in[0], o.out[0]);
  else if (shape == "binary")
    reinterpret_cast<void (*)(int, const T*, const T*, T*)>(kernel.entry)(n, o.in[0], o.in[1], o.out[0]);
  else
    reinterpret_cast<void (*)(int, const T*, const T*, T, T, T, T, T*)>(kernel.entry)(
        n, o.in[0], o.in[1], o.scalar[0], o.scalar[1], o.scalar[2], o.scalar[3], o.out[0]);
}

template void call_kernel(const FunctionEntry&, const KernelEntry&, int, const KernelOperands<float>&);
template void call_kernel(const FunctionEntry&, const KernelEntry&, int, const KernelOperands<double>&);
