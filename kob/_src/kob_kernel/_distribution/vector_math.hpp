// Vector math inside a distribution generator: errors go to the generator's own handler, and what the calling
// thread had set acts again afterwards, whichever way the generator is left.
#pragma once

#include "orx/tef.h"

namespace orx::rng {

class VectorMath {
 public:
  explicit VectorMath(TefErrorCallBack handler)
      : mode_(orx_tef_kernel_SetMode(TEF_ERRMODE_CALLBACK)),
        handler_(orx_tef_kernel_SetErrorCallBack(handler)) {}
  ~VectorMath() {
    orx_tef_kernel_SetErrorCallBack(handler_);
    orx_tef_kernel_SetMode(mode_);
  }
  VectorMath(const VectorMath&) = delete;
  VectorMath& operator=(const VectorMath&) = delete;

  // Calls the EP kernel of a function's table; denormals are not flushed.
  template <class Kernel, class... Arguments>
  void operator()(Kernel* const (&ttab)[3], Arguments... arguments) const {
    call(ttab[kEP], arguments...);
  }
  // The same with the HA kernel, for constants of which few are made.
  template <class Kernel, class... Arguments>
  void accurately(Kernel* const (&ttab)[3], Arguments... arguments) const {
    call(ttab[kHA], arguments...);
  }

 private:
  enum { kHA = 1, kEP = 2 };

  template <class Kernel, class... Arguments>
  static void call(Kernel* kernel, Arguments... arguments) {
    const int mode = orx_tef_kernel_SetMode(TEF_FLUSH_OFF);
    kernel(arguments...);
    orx_tef_kernel_SetMode(mode);
  }

  int mode_;
  TefErrorCallBack handler_;
};

// What stands for ln 0: the logarithm of the smallest subnormal.
constexpr double kLnOfZeroDouble = -0x1.74385446d71c3p+9;
constexpr float kLnOfZeroSingle = -103.27893f;

// Error handlers: the result of an element in error becomes `value`.
inline int substitute(TefErrorContext* error, double value) {
  error->res1 = error->res2 = value;
  return 0;
}

}  // namespace orx::rng
