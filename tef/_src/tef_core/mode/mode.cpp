#include "mode/mode.hpp"

#include <cstdlib>
#include <initializer_list>

__thread const void* tefInterfInputVecorPointer;
__thread int32_t tefErrStatus;
__thread TefErrorCallBack tefErrorCallBack;
__thread uint64_t tefMode;

// "DOUBLE_CONSISTEN" really is sixteen letters long; users' settings depend on it.
#define KEYWORD(text, value) \
  { text, sizeof(text) - 1, value, 0 }
ORX_API const TefModeKeyword mapModeS_N[13] = {
    KEYWORD("LA", TEF_LA),
    KEYWORD("HA", TEF_HA),
    KEYWORD("EP", TEF_EP),
    KEYWORD("DEFAULT_PRECISION", TEF_DEFAULT_PRECISION),
    KEYWORD("FLOAT_CONSISTENT", TEF_FLOAT_CONSISTENT),
    KEYWORD("DOUBLE_CONSISTEN", TEF_DOUBLE_CONSISTEN),
    KEYWORD("RESTORE", TEF_RESTORE),
    KEYWORD("ERRMODE_IGNORE", TEF_ERRMODE_IGNORE),
    KEYWORD("ERRMODE_ERRNO", TEF_ERRMODE_ERRNO),
    KEYWORD("ERRMODE_STDERR", TEF_ERRMODE_STDERR),
    KEYWORD("ERRMODE_EXCEPT", TEF_ERRMODE_EXCEPT),
    KEYWORD("ERRMODE_CALLBACK", TEF_ERRMODE_CALLBACK),
    KEYWORD("ERRMODE_DEFAULT", TEF_ERRMODE_DEFAULT),
};
#undef KEYWORD

namespace orx::tef {
namespace {

constexpr uint64_t kInvalid = ~uint64_t{0};
constexpr int kDefaultMode = TEF_HA | TEF_ERRMODE_DEFAULT;
constexpr char kPrefix[] = "TEF_";
constexpr unsigned kPrefixLength = sizeof(kPrefix) - 1;

// The variable's name is kept scrambled, so that it does not show in the library's bytes.
constexpr unsigned kNameLength = 12;
constexpr char scramble(char c, unsigned i) { return static_cast<char>(c ^ ((2 * i) % 5 + 1)); }
struct ScrambledName {
  char text[kNameLength + 1];
  constexpr explicit ScrambledName(const char (&plain)[kNameLength + 1]) : text{} {
    for (unsigned i = 0; i < kNameLength; ++i) text[i] = scramble(plain[i], i);
  }
};
constexpr ScrambledName kVariable{"ORX_TEF_MODE"};

const char* initial_value() {
  // Volatile, or the compiler would put the plain name together in advance.
  const volatile char* hidden = kVariable.text;
  char name[kNameLength + 1];
  for (unsigned i = 0; i < kNameLength; ++i) name[i] = scramble(hidden[i], i);
  name[kNameLength] = '\0';
  return std::getenv(name);
}

// True if `text` begins with the first `length` characters of `word`. Stops at the end of `text`.
bool begins_with(const char* text, const char* word, unsigned length) {
  for (unsigned i = 0; i < length; ++i)
    if (text[i] != word[i]) return false;
  return true;
}

// The first keyword that `text` begins with, `position` being its place in the value. Keywords that would end
// at or behind position 255 do not count.
const TefModeKeyword* find_keyword(const char* text, unsigned position) {
  for (const TefModeKeyword& keyword : mapModeS_N)
    if (keyword.length + position < 256 && begins_with(text, keyword.text, keyword.length)) return &keyword;
  return nullptr;
}

uint64_t parse(const char* value) {
  uint64_t mode = 0;
  for (unsigned p = 0;; ++p) {
    if (!begins_with(value + p, kPrefix, kPrefixLength)) return kInvalid;
    p += kPrefixLength;
    const TefModeKeyword* keyword = find_keyword(value + p, p);
    if (!keyword) return kInvalid;
    mode |= keyword->value | uint64_t{keyword->value_high} << 32;
    p += keyword->length;
    if (value[p] == '\0') return mode;
    if (value[p] != ',') return kInvalid;
  }
}

// `word` with the bits of `mask` replaced by those of `mode`, unless these are all zero.
uint32_t replace_field(uint32_t word, uint32_t mode, uint32_t mask) {
  return mode & mask ? (word & ~mask) | (mode & mask) : word;
}

}  // namespace

int read_initial_mode() {
  const uint64_t value = orx_tef_kernel_ReadEnvVarMode();
  tefMode = value == kInvalid ? static_cast<uint64_t>(kDefaultMode) : static_cast<uint32_t>(value);
  return static_cast<int>(tefMode);
}

}  // namespace orx::tef

using namespace orx::tef;

ORX_API unsigned long long orx_tef_kernel_ReadEnvVarMode() {
  const char* value = initial_value();
  return value ? parse(value) : kInvalid;
}

ORX_API int orx_tef_kernel_GetMode() { return mode(); }

ORX_API int orx_tef_kernel_SetMode(int new_mode) {
  const int previous = mode();
  uint32_t word = static_cast<uint32_t>(tefMode);
  for (uint32_t mask : {TEF_ACCURACY_MASK, TEF_ERRMODE_MASK, TEF_FLUSH_MASK})
    word = replace_field(word, static_cast<uint32_t>(new_mode), mask);
  tefMode = word;
  return previous;
}

ORX_API int orx_tef_kernel_GetErrStatus() { return tefErrStatus; }

ORX_API int orx_tef_kernel_SetErrStatus(int status) {
  const int previous = tefErrStatus;
  tefErrStatus = status;
  return previous;
}

ORX_API int orx_tef_kernel_ClearErrStatus() { return orx_tef_kernel_SetErrStatus(StatusOk); }

ORX_API TefErrorCallBack orx_tef_kernel_GetErrorCallBack() { return tefErrorCallBack; }

ORX_API TefErrorCallBack orx_tef_kernel_SetErrorCallBack(TefErrorCallBack callback) {
  const TefErrorCallBack previous = tefErrorCallBack;
  const int word = mode();
  tefErrorCallBack = callback;
  // SetMode ignores an empty field: a lone callback bit stays, with nothing behind it to be called.
  orx_tef_kernel_SetMode(callback ? word | TEF_ERRMODE_CALLBACK : word & ~TEF_ERRMODE_CALLBACK);
  return previous;
}

ORX_API TefErrorCallBack orx_tef_kernel_ClearErrorCallBack() {
  return orx_tef_kernel_SetErrorCallBack(nullptr);
}

ORX_API void* orx_tef_kernel_SetInterfInputVectorPointer(void* base) {
  tefInterfInputVecorPointer = base;
  return base;
}

ORX_API int orx_tef_kernel_GetTTableIndex() { return (mode() & TEF_ACCURACY_MASK) - 1; }
ORX_API int orx_tef_kernel_GetTTableIndexM(int, int mode) { return (mode & TEF_ACCURACY_MASK) - 1; }

ORX_API int dll_cpu_version() { return 0; }

ORX_API int _tefGetMode() { return orx_tef_kernel_GetMode(); }
ORX_API int _tefSetMode(int mode) { return orx_tef_kernel_SetMode(mode); }
ORX_API int _tefGetErrStatus() { return orx_tef_kernel_GetErrStatus(); }
ORX_API int _tefSetErrStatus(int status) { return orx_tef_kernel_SetErrStatus(status); }
ORX_API int _tefClearErrStatus() { return orx_tef_kernel_ClearErrStatus(); }
ORX_API TefErrorCallBack _tefGetErrorCallBack() { return orx_tef_kernel_GetErrorCallBack(); }
ORX_API TefErrorCallBack _tefSetErrorCallBack(TefErrorCallBack callback) {
  return orx_tef_kernel_SetErrorCallBack(callback);
}
ORX_API TefErrorCallBack _tefClearErrorCallBack() { return orx_tef_kernel_ClearErrorCallBack(); }
ORX_API void* _tefSetInterfInputVectorPointer(void* base) {
  return orx_tef_kernel_SetInterfInputVectorPointer(base);
}
