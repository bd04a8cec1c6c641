#include "_service/chunk_kinds.hpp"

#include <cstring>

#include "_service/shared_table.hpp"

namespace orx::brng {
namespace {

struct Rule {
  uint32_t least_size;
  bool (*content)(const uint32_t* words);  // null: any content will do
};

// Left-over words, and how many there are in the word behind the place for `Most` of them.
template <int Most, int W>
bool count_fits(const uint32_t* words) {
  return words[Most * W] <= Most;
}

constexpr Rule kRules[] = {
    {0, nullptr},           {8, nullptr},  // kChunkBoxMuller2Single
    {16, nullptr},                         // kChunkBoxMuller2Double
    {696, nullptr},                        // kChunkPoisson
    {1328, nullptr},                       // kChunkNegativeBinomial
    {544, nullptr},                        // kChunkBinomial
    {596, nullptr},                        // kChunkHypergeometric
    {16, nullptr},                         // kChunkGammaDouble
    {8, nullptr},                          // kChunkGammaSingle
    {0, nullptr},                          // kChunkSobolDirections: by the generator
    {0, nullptr},                          // kChunkNiederrDirections: by the generator
    {16, count_fits<3, 1>},                // kChunkSfmtWords32
    {12, count_fits<1, 2>},                // kChunkSfmtWords64
    {0, nullptr},                          // kChunkSobolPoint: by the generator
};
constexpr size_t kParameterBytes = 16;  // of set-ups, at their beginning
constexpr uint32_t kKinds = sizeof kRules / sizeof *kRules;

}  // namespace

void forget_set_up(uint32_t kind, void* data) {
  if (kind >= kChunkPoisson && kind <= kChunkHypergeometric) memset(data, 0, kParameterBytes);
}

bool is_sound(const KobStream* stream, const KobChunk& chunk) {
  if (chunk.ChunkId >= kKinds) return true;
  // adopt() looks at the first of a kind, and in a copy of the stream, whose list is reversed, another one
  // would be the first.
  if (find_chunk(stream, chunk.ChunkId)) return false;
  // A block that several streams may write would not stay sound.
  if (is_named(chunk.GlobalId) && chunk.ChunkId != kChunkSobolDirections) return false;
  const Rule& rule = kRules[chunk.ChunkId];
  return chunk.Size >= rule.least_size &&
         (!rule.content || rule.content(static_cast<const uint32_t*>(chunk.Data)));
}

}  // namespace orx::brng
