// What right results are, to any precision: MPFR's and MPC's functions by name, and formulas for what they lack.
#pragma once
#include <mpfr.h>

#include <string>

#include "functions/list.hpp"

namespace orx {

// Exact results of one element, rounded to the precision of r. x holds its inputs and scalars, r gets its results;
// a complex number is two of them.
class Formula {
 public:
  // By the name that the function's descriptor gives.
  explicit Formula(const Function& function);

  bool known() const { return call_ != nullptr; }
  void operator()(mpfr_t* r, const mpfr_t* x) const { call_(function_, r, x); }

  using AnyFunction = void (*)();
  using Call = void (*)(AnyFunction function, mpfr_t* r, const mpfr_t* x);

 private:
  AnyFunction function_ = nullptr;
  Call call_ = nullptr;
};

}  // namespace orx
