// What happens when an element of a vector goes wrong.
#include <cerrno>
#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "errors/report.hpp"
#include "mode/mode.hpp"
#include "orx/serv.h"

namespace orx::tef {
namespace {

#if defined(__i386__)
static_assert(sizeof(TefErrorContext) == 140 && offsetof(TefErrorContext, arg1Im) == 108);
#endif

// Messages of the service layer's catalogue.
enum {
  kMessageBadSize = 735,
  kMessageBadPointer = 736,
  kMessageStatus1 = 737,  // 738, 739, 740 for status 2, 3, 4
  kMessageUnknown = 741,
  kMessageValues1To1 = 742,  // one input, one result: two messages
  kMessageValues1To2 = 744,  // one input, two results: three
  kMessageValues2To1 = 747,  // two inputs, one result: three
  kMessageValues2To2 = 750,  // two of both: four
};

bool is_argument_error(int status) { return status == StatusBadSize || status == StatusBadPointer; }

int errno_of(int status) {
  switch (status) {
    case StatusBadPointer:
      return EACCES;
    case StatusBadSize:
      return EINVAL;
    case StatusOk:
      return 0;
    case StatusDomain:
      return EDOM;
    case StatusSingularity:
    case StatusOverflow:
    case StatusUnderflow:
      return ERANGE;
    default:
      return EFAULT;
  }
}

void print_value(int message, int index, double value) {
  uint32_t words[2];
  std::memcpy(words, &value, sizeof words);
  orx_serv_print(1, message, 2, index, words[0], words[1]);
}

// One line for each input and result. A second input or result that is equal to the first, or zero, is taken
// to be absent; NaN is present.
void print_values(const TefErrorContext& e) {
  const bool second_input = !(e.arg2 == e.arg1 || e.arg2 == 0);
  const bool second_result = !(e.res2 == e.res1 || e.res2 == 0);
  int message = second_input ? (second_result ? kMessageValues2To2 : kMessageValues2To1)
                             : (second_result ? kMessageValues1To2 : kMessageValues1To1);
  print_value(message++, e.index, e.arg1);
  if (second_input) print_value(message++, e.index, e.arg2);
  print_value(message++, e.index, e.res1);
  if (second_result) print_value(message, e.index, e.res2);
}

void print_error(const TefErrorContext& e) {
  if (e.status == StatusOk) return;
  if (e.status == StatusBadSize) {
    orx_serv_print(1, kMessageBadSize, 2, e.funcName, e.index);
    return;
  }
  if (e.status == StatusBadPointer) {
    orx_serv_print(1, kMessageBadPointer, 1, e.funcName);
    return;
  }
  const bool known = e.status >= StatusDomain && e.status <= StatusUnderflow;
  orx_serv_print(1, known ? kMessageStatus1 + (e.status - StatusDomain) : kMessageUnknown, 1, e.funcName);
  print_values(e);
}

// x87 arithmetic, on operands that the compiler cannot see through; the store to a double rounds, overflows
// or underflows.
void raise_exception(int status) {
  volatile long double zero = 0, one = 1, largest = DBL_MAX, smallest = DBL_MIN;
  volatile double result;
  switch (status) {
    case StatusDomain:
      result = static_cast<double>(zero / zero);
      break;
    case StatusSingularity:
      result = static_cast<double>(one / zero);
      break;
    case StatusOverflow:
      result = static_cast<double>(largest * largest);
      break;
    case StatusUnderflow:
      result = static_cast<double>(smallest * smallest);
      break;
    default:
      return;
  }
  static_cast<void>(result);
}

void _tefStdErrorHandler(const TefErrorContext& e) {
  const int m = mode();
  if (m & TEF_ERRMODE_ERRNO) errno = errno_of(e.status);
  if (m & TEF_ERRMODE_STDERR) print_error(e);
  if (m & TEF_ERRMODE_EXCEPT) raise_exception(e.status);
}

// Joins prefix (8 characters at most), name (64) and suffix (8); returns the length. The caller sees to it
// that the whole fits.
int _tefCreateFuncNameStr(char* out, const char* prefix, const char* name, const char* suffix) {
  char* end = out;
  const auto append = [&end](const char* text, int limit) {
    for (int i = 0; i < limit && text[i]; ++i) *end++ = text[i];
  };
  append(prefix, 8);
  append(name, 64);
  append(suffix, 8);
  *end = '\0';
  return static_cast<int>(end - out);
}

// A part of an element, 0 where the operand has none.
double get(const Operand& o, int index, int part) {
  if (part >= o.parts) return 0;
  const ptrdiff_t at = (o.is_vector ? ptrdiff_t{o.parts} * index : 0) + part;
  return o.real_bytes == 4 ? static_cast<const float*>(o.vector)[at]
                           : static_cast<const double*>(o.vector)[at];
}
void put(const Operand& o, int index, int part, double value) {
  if (part >= o.parts) return;
  const ptrdiff_t at = ptrdiff_t{o.parts} * index + part;
  if (o.real_bytes == 4)
    static_cast<float*>(o.vector)[at] = static_cast<float>(value);
  else
    static_cast<double*>(o.vector)[at] = value;
}

// The index of the element in the whole vector, of which the caller may have told where it begins.
int whole_index(int index, const Operand& a1) {
  if (!tefInterfInputVecorPointer) return index;
  const intptr_t bytes =
      reinterpret_cast<intptr_t>(a1.vector) - reinterpret_cast<intptr_t>(tefInterfInputVecorPointer);
  return index + static_cast<int>(bytes / (a1.parts * a1.real_bytes));
}

}  // namespace

void report(int status, int index, const Operand& a1, const Operand& a2, const Operand& r1, const Operand& r2,
            const char* name) {
  tefErrStatus = status;
  if ((mode() & TEF_ERRMODE_MASK) == TEF_ERRMODE_IGNORE) return;

  TefErrorContext e;
  e.status = status;
  e.index = whole_index(index, a1);
  e.funcNameLen = _tefCreateFuncNameStr(e.funcName, "", name, "");
  const bool has_elements = !is_argument_error(status);
  if (has_elements) {
    e.arg1 = get(a1, index, 0), e.arg1Im = get(a1, index, 1);
    e.arg2 = get(a2, index, 0), e.arg2Im = get(a2, index, 1);
    e.res1 = get(r1, index, 0), e.res1Im = get(r1, index, 1);
    e.res2 = get(r2, index, 0), e.res2Im = get(r2, index, 1);
  }
  // The mode is read anew each time: the callback may change it.
  if ((mode() & 0xF000) && tefErrorCallBack && tefErrorCallBack(&e) != 0) return;
  if ((mode() >> 8) & 0xF) _tefStdErrorHandler(e);
  if (has_elements) {
    put(r2, index, 0, e.res2), put(r2, index, 1, e.res2Im);
    put(r1, index, 0, e.res1), put(r1, index, 1, e.res1Im);
  }
}

}  // namespace orx::tef

#define ORX_ERROR_ENTRY(letter, T, parts)                                                                    \
  ORX_API void orx_tef_kernel_##letter##Error(int status, int index, const T* a1, const T* a2, T* r1, T* r2, \
                                              const char* name) {                                            \
    const auto operand = [](const T* vector) {                                                               \
      return orx::tef::Operand{const_cast<T*>(vector), sizeof(T), parts};                                    \
    };                                                                                                       \
    orx::tef::report(status, index, operand(a1), operand(a2), operand(r1), operand(r2), name);               \
  }
ORX_ERROR_ENTRY(s, float, 1)
ORX_ERROR_ENTRY(d, double, 1)
ORX_ERROR_ENTRY(c, float, 2)
ORX_ERROR_ENTRY(z, double, 2)
