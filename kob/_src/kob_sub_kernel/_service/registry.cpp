// The registry: the family table, which grows by registration, and the table of the older numbering.
#include "_service/registry.hpp"

#define ORX_BRNG(Name, ...) \
  KOB_BRNG_FUNCTIONS(Name)  \
  bool _kobAdopt##Name(KobStream*);
extern "C" {
#include "_service/generators.def"
}
#undef ORX_BRNG

namespace orx::brng {
namespace {

struct Family {
  KobBrngProperties record;
  int32_t sub_generators;
  bool (*adopt)(KobStream*);
};

#define ORX_BRNG(Name, size, seeds, zero, word, bits, subs)                                         \
  {{size, seeds, zero, word, bits, __kobBRng##Name##InitStream, __kobsBRng##Name, __kobdBRng##Name, \
    __kobiBRng##Name},                                                                              \
   subs,                                                                                            \
   _kobAdopt##Name},
constexpr Family kFamily[] = {
#include "_service/generators.def"
};
#undef ORX_BRNG
static_assert(sizeof kFamily / sizeof *kFamily == kFamilies);

// The row of the family table that a row of the older numbering stands for.
constexpr uint32_t family_of_legacy(uint32_t row) { return row < 4 ? row : row < 277 ? 4 : row - 272; }

constexpr Slots<KobBrngProperties> legacy_rows() {
  Slots<KobBrngProperties> table{};
  for (uint32_t i = 0; i < kLegacyRows; ++i) table.row[i] = kFamily[family_of_legacy(i)].record;
  return table;
}

constexpr Slots<KobBrngProperties> family_rows() {
  Slots<KobBrngProperties> table{};
  for (uint32_t i = 0; i < kFamilies; ++i) table.row[i] = kFamily[i].record;
  return table;
}

// What checks a loaded stream; null where a generator was registered, which sees to that itself.
constexpr Slots<bool (*)(KobStream*)> adopt_rows() {
  Slots<bool (*)(KobStream*)> table{};
  for (uint32_t i = 0; i < kFamilies; ++i) table.row[i] = kFamily[i].adopt;
  return table;
}
constexpr Slots<bool (*)(KobStream*)> kAdopt = adopt_rows();

constexpr Slots<int32_t> sub_generators() {
  Slots<int32_t> table{};
  for (uint32_t i = 0; i < kFamilies; ++i) table.row[i] = kFamily[i].sub_generators;
  return table;
}

}  // namespace

extern "C" {
extern const Slots<KobBrngProperties> __RegBrngs;
const Slots<KobBrngProperties> __RegBrngs = legacy_rows();
Slots<KobBrngProperties> __RegBrngsNew = family_rows();
Slots<int32_t> NumOffsets = sub_generators();
uint32_t NRegBrngsNew = kFamilies;
}

uint32_t family_row(const KobStream* stream) {
  uint32_t index, offset;
  const KobBrngProperties* table = __kobGetBrngBaseOffset(stream->BrngId, &index, &offset);
  return table == __RegBrngs.row ? family_of_legacy(index) : index;
}

bool adopt(KobStream* stream) {
  bool (*const check)(KobStream*) = kAdopt.row[family_row(stream)];
  return !check || check(stream);
}

}  // namespace orx::brng

using namespace orx::brng;

ORX_API const KobBrngProperties* __kobGetBrngBaseOffset(uint32_t id, uint32_t* index, uint32_t* offset) {
  if (id >= kNewIds) {
    *index = (id >> 20) - 1;
    *offset = id & 0xFFFFF;
    return __RegBrngsNew.row;
  }
  const bool wichmann_hill = id >= 4 && id < 277;
  *index = wichmann_hill ? 4 : id;
  *offset = wichmann_hill ? id - 4 : 0;
  return __RegBrngs.row;
}

ORX_API int __kobIsBrngValid(const KobBrngProperties* table, uint32_t index, uint32_t offset) {
  const bool known = table == __RegBrngs.row
                         ? index < kLegacyRows
                         : index < NRegBrngsNew && offset < uint32_t(NumOffsets.row[index]);
  return known ? KOB_STATUS_OK : KOB_ERROR_BRNG_INDEX;
}

ORX_API int __kobGetBrngProperties(uint32_t id, KobBrngProperties* properties) {
  uint32_t index, offset;
  const KobBrngProperties* table = __kobGetBrngBaseOffset(id, &index, &offset);
  const int status = __kobIsBrngValid(table, index, offset);
  if (status == KOB_STATUS_OK) *properties = table[index];
  return status;
}

ORX_API int __kobRegisterBrng(const KobBrngProperties* properties) {
  const KobBrngProperties& p = *properties;
  if (p.StateSize < 0) return KOB_ERROR_BAD_STATE_SIZE;
  if (p.WordSize != 4 && p.WordSize != 8 && p.WordSize != 16) return KOB_ERROR_BAD_WORD_SIZE;
  if (p.SeedCount < 1) return KOB_ERROR_BAD_SEED_COUNT;
  if (p.BitCount < 1) return KOB_ERROR_BAD_BIT_COUNT;
  if (!p.InitStream || !p.sGenerate || !p.dGenerate || !p.iGenerate) return KOB_ERROR_NULL_PTR;
  if (NRegBrngsNew >= kSlots) return KOB_ERROR_BRNG_INDEX;
  const uint32_t slot = NRegBrngsNew;
  __RegBrngsNew.row[slot] = p;
  NumOffsets.row[slot] = 1;
  ++NRegBrngsNew;
  return int(slot << 20) + int(kNewIds);
}

ORX_API int __kobGetNumRegBrngs() { return int(NRegBrngsNew); }
