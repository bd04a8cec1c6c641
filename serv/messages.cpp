// The message catalogue: one line per message on standard error.
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "orx/base/api.hpp"
#include "orx/serv.h"

namespace {

// Messages 735 to 741 tell what went wrong in which function; 742 to 753 follow with the values of the
// failing element, an argument or a result each.
enum Kind { kName, kNameAndSize, kValue };

struct Message {
  int id;
  Kind kind;
  const char* text;
};

constexpr Message kCatalogue[] = {
    {735, kNameAndSize, "bad array size"},
    {736, kName, "bad array pointer"},
    {737, kName, "argument outside the domain of the function"},
    {738, kName, "singularity: a finite argument has an infinite result"},
    {739, kName, "overflow: the result is too large"},
    {740, kName, "underflow: the result is too small"},
    {741, kName, "unknown error"},
    {742, kValue, "argument"},
    {743, kValue, "result"},
    {744, kValue, "argument"},
    {745, kValue, "first result"},
    {746, kValue, "second result"},
    {747, kValue, "first argument"},
    {748, kValue, "second argument"},
    {749, kValue, "result"},
    {750, kValue, "first argument"},
    {751, kValue, "second argument"},
    {752, kValue, "first result"},
    {753, kValue, "second result"},
};

const Message* find(int id) {
  for (const Message& message : kCatalogue)
    if (message.id == id) return &message;
  return nullptr;
}

// The words are taken one by one, so that it does not matter whether they were pushed as two words or as a
// pair of 32-bit integers in registers.
double take_double(va_list args) {
  const uint64_t low = va_arg(args, uint32_t), high = va_arg(args, uint32_t);
  const uint64_t bits = high << 32 | low;
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

void print(const Message& message, va_list args) {
  if (message.kind == kValue) {
    const int index = va_arg(args, int);
    const double value = take_double(args);
    std::fprintf(stderr, "orx:   %s[%d] = %.17g\n", message.text, index,
                 value);  // 17 digits tell every double
    return;
  }
  const char* name = va_arg(args, const char*);
  if (message.kind == kNameAndSize) {
    std::fprintf(stderr, "orx: %s: %s %d\n", name, message.text, va_arg(args, int));
  } else {
    std::fprintf(stderr, "orx: %s: %s\n", name, message.text);
  }
}

}  // namespace

ORX_API void orx_serv_print(int /*channel*/, int id, int count, ...) {
  const int caller_errno = errno;  // an error report must not change what it reports
  const Message* message = find(id);
  if (message && count == (message->kind == kName ? 1 : 2)) {
    va_list args;
    va_start(args, count);
    print(*message, args);
    va_end(args);
  } else {
    std::fprintf(stderr, "orx: message %d with %d arguments\n", id, count);
  }
  errno = caller_errno;
}
