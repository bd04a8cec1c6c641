// How a kernel tells of an element that went wrong.
#pragma once

namespace orx::tef {

// An argument or a result of a call, as the error layer finds its elements.
struct Operand {
  void* vector;
  int real_bytes;         // 4 or 8
  int parts;              // 1: real, 2: complex
  bool is_vector = true;  // false: one value for all elements
};

// Takes down the status and acts on element `index` as the mode word tells. A callback may change the results,
// which it finds, as the arguments, in the caller's vectors.
void report(int status, int index, const Operand& a1, const Operand& a2, const Operand& r1, const Operand& r2,
            const char* name);

}  // namespace orx::tef
