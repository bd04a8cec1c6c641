// The vector kernels as data: what the list of functions and the lines at the end of the kernel files say,
// and a way to call any of them. The accuracy meter and the benchmark walk this list.
#pragma once
#include <string>
#include <vector>

// How functions of one shape are called.
struct CallingShape {
  const char* name;
  int inputs, outputs, scalars;
  bool formula = false;  // of several rounded operations: the limits of the classes do not bind it
};

struct KernelEntry {
  std::string name;     // such as "dExp_G9HAynn"
  std::string classes;  // those it stands for in the table: "HA" or "LA, EP"
  bool serves[3] = {};  // the same by table index: LA, HA, EP
  void (*entry)() = nullptr;
  bool has_line = false;           // a line in its source file gives the next three; else it is exact
  double bound = 0.5;              // largest error in ulps, over all arguments
  double from = -1000, to = 1000;  // range of arguments on which it is timed
};

struct FunctionEntry {
  const CallingShape* shape;         // null: a shape that this list cannot call yet
  char type;                         // 's' or 'd'
  std::string name;                  // without the type letter
  std::vector<KernelEntry> kernels;  // each once, in the order of the table
  float cost[3];

  std::string full_name() const { return type + name; }
};

const std::vector<FunctionEntry>& kernel_list();

template <class T>
struct KernelOperands {
  const T* in[2] = {};
  T* out[2] = {};
  T scalar[4] = {};
};

// Calls a kernel of element type T on n elements.
template <class T>
void call_kernel(const FunctionEntry& function, const KernelEntry& kernel, int n, const KernelOperands<T>& o);
