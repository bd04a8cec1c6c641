// What vector mathematics keeps per thread. Layers that call its kernels while they generate numbers or run
// tasks of their own put it back bit for bit, which orx_tef_kernel_SetMode cannot: it never empties a field.
#pragma once

#include <cstdint>

#include "orx/tef_mode.h"

extern "C" {
// Base of the caller's whole first input vector, or null.
extern __thread const void* tefInterfInputVecorPointer;
// Status of the last error reported on this thread.
extern __thread int32_t tefErrStatus;
extern __thread TefErrorCallBack tefErrorCallBack;
// The mode word in the low half; 0 while the environment has not been read.
extern __thread uint64_t tefMode;
}

namespace orx {

// Mode word, error callback and error status are at the end of the object's life what they were at its
// beginning.
class KeepVectorMathThread {
 public:
  KeepVectorMathThread() : mode_(tefMode), call_back_(tefErrorCallBack), status_(tefErrStatus) {}
  ~KeepVectorMathThread() {
    tefMode = mode_;
    tefErrorCallBack = call_back_;
    tefErrStatus = status_;
  }
  KeepVectorMathThread(const KeepVectorMathThread&) = delete;
  KeepVectorMathThread& operator=(const KeepVectorMathThread&) = delete;

 private:
  uint64_t mode_;
  TefErrorCallBack call_back_;
  int32_t status_;
};

}  // namespace orx
