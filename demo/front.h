// A front layer in small: checks the caller's arguments, reports what is wrong with them the way the library
// reports its own errors, and calls the kernel of the accuracy class that the thread's mode asks for.
#pragma once

#include <vector>

#include "orx/tef.h"

namespace front {

inline void error(int status, int index, const double* a, double* r, const char* name) {
  orx_tef_kernel_dError(status, index, a, a, r, r, name);
}
inline void error(int status, int index, const float* a, float* r, const char* name) {
  orx_tef_kernel_sError(status, index, a, a, r, r, name);
}

// r = f(a). Nothing is computed when the size or a pointer is bad.
template <class T>
void unary(const char* name, void (*const ttab[3])(int, const T*, T*), int n, const T* a, T* r) {
  if (n < 0) return error(StatusBadSize, n, a, r, name);
  if (n > 0 && (!a || !r)) return error(StatusBadPointer, 0, a, r, name);
  const int chosen = orx_tef_kernel_GetTTableIndex();
  ttab[chosen < 0 ? 1 : chosen](n, a, r);  // a mode word that names no class: high accuracy
}

inline void exp(int n, const double* a, double* r) { unary("vdExp", orx_tef_kernel_dExp_ttab, n, a, r); }
inline void exp(int n, const float* a, float* r) { unary("vsExp", orx_tef_kernel_sExp_ttab, n, a, r); }
inline void ln(int n, const double* a, double* r) { unary("vdLn", orx_tef_kernel_dLn_ttab, n, a, r); }
inline void ln(int n, const float* a, float* r) { unary("vsLn", orx_tef_kernel_sLn_ttab, n, a, r); }

// Of whole vectors, about which there is nothing to report.
using Unary = void (*const[3])(int, const double*, double*);
inline std::vector<double> unary(const char* name, Unary ttab, const std::vector<double>& x) {
  std::vector<double> y(x.size());
  unary(name, ttab, int(x.size()), x.data(), y.data());
  return y;
}
inline std::vector<double> exp(const std::vector<double>& x) {
  return unary("vdExp", orx_tef_kernel_dExp_ttab, x);
}
inline std::vector<double> ln(const std::vector<double>& x) {
  return unary("vdLn", orx_tef_kernel_dLn_ttab, x);
}
inline std::vector<double> cbrt(const std::vector<double>& x) {
  return unary("vdCbrt", orx_tef_kernel_dCbrt_ttab, x);
}
inline std::vector<double> pow2o3(const std::vector<double>& x) {
  return unary("vdPow2o3", orx_tef_kernel_dPow2o3_ttab, x);
}
// x[i]^y[i], the vectors of one length, and x[i]^y, in high accuracy.
inline std::vector<double> pow(const std::vector<double>& x, const std::vector<double>& y) {
  std::vector<double> r(x.size());
  _tefdPow(int(x.size()), x.data(), y.data(), r.data());
  return r;
}
inline std::vector<double> powx(const std::vector<double>& x, double y) {
  std::vector<double> r(x.size());
  _tefdPowx(int(x.size()), x.data(), y, r.data());
  return r;
}

// Sets the thread's accuracy class, error mode or both, and puts the old ones back at the end.
class Mode {
 public:
  explicit Mode(int mode) : before_(_tefSetMode(mode)) {}
  ~Mode() { _tefSetMode(before_); }
  Mode(const Mode&) = delete;
  Mode& operator=(const Mode&) = delete;

 private:
  int before_;
};

}  // namespace front
