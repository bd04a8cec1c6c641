// The vector functions as data: what the list of functions and the descriptors say, and a way to call any kernel. The
// accuracy meter, the benchmark, the tests and the tables in the documents walk this list.
#pragma once
#include <string>
#include <vector>

#include "functions/descriptor.hpp"

namespace orx {

// How functions of one shape are called.
struct Shape {
  const char* name;
  int inputs, outputs;    // vectors
  int scalars;            // real parameters besides
  bool real_in = false;   // of a complex type, but its argument is real
  bool real_out = false;  // of a complex type, but its result is real
  bool elementwise = true;
};

// The entries of a table.
enum ClassIndex { kIndexLA, kIndexHA, kIndexEP, kClassCount };
inline constexpr const char* kClassNames[kClassCount] = {"LA", "HA", "EP"};

struct Kernel {
  std::string name;               // such as "dExp_G9HAynn"
  std::string classes;            // those it stands for in the table: "HA" or "LA, EP"
  bool serves[kClassCount] = {};  // the same by table index
  void (*entry)() = nullptr;
  int own_class = kIndexHA;  // that in its name
  double bound = 0;          // largest error in ulps, over all arguments
};

struct Function {
  const Shape* shape;
  char type;                    // s, d, c or z
  std::string name;             // without the type letter
  std::vector<Kernel> kernels;  // each once, in the order of the table
  float cost[kClassCount];
  // Null where no descriptor stands beside the kernels; the tests see that there is one.
  const descriptor::Descriptor* descriptor;

  std::string full_name() const { return type + name; }
  bool single() const { return type == 's' || type == 'c'; }
  bool complex() const { return type == 'c' || type == 'z'; }
  // Real numbers of an element.
  int in_width() const { return complex() && !shape->real_in ? 2 : 1; }
  int out_width() const { return complex() && !shape->real_out ? 2 : 1; }
  int columns_in() const { return shape->inputs * in_width(); }
  int columns_out() const { return shape->outputs * out_width(); }

  const descriptor::Type& about() const { return descriptor->type(type); }
  const Kernel& kernel_of(int class_index) const;
};

const std::vector<Function>& functions();

// What a class asks for whatever the kernel's own bound, in ulps.
double class_limit(bool single, int class_index);

inline constexpr int kMostColumns = 6;  // inputs and scalars of an element

template <class R>
struct Operands {
  const R* in[2] = {};
  R* out[2] = {};
  R scalar[4] = {};
  long long stride = 1;            // where elements are packed and unpacked
  const int* selection = nullptr;  // the same: a mask or indices
};

// How kernels of the function's shape, whose elements are of the real type R, are called on n elements.
template <class R>
using KernelCall = void (*)(void (*entry)(), int n, const Operands<R>& o);
template <class R>
KernelCall<R> kernel_call(const Function& function);

}  // namespace orx
