// Streams as byte images, in files and in memory: a header, the state, the chunks. Whatever is loaded may be
// damaged or hostile: nothing is used before it was checked.
#include <stdio.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "_service/chunk_kinds.hpp"
#include "_service/registry.hpp"
#include "orx/base/memory.hpp"

using namespace orx;
using namespace orx::brng;

namespace {

struct ImageHeader {
  uint32_t magic;  // the version in the low byte, "RNG" above it
  uint16_t header_size, state_size, chunk_count, reserved;
  uint32_t id;
};
static_assert(sizeof(ImageHeader) == 16);

constexpr uint32_t kMagic = 0x474E5200, kMagicBytes = 0xFFFFFF00, kVersion = 1;
// The same in the other byte order.
constexpr uint32_t kSwappedMagic = 0x00474E52, kSwappedMagicBytes = 0x00FFFFFF;

struct ChunkHeader {
  uint32_t id;
  KobGlobalId global_id;  // not there in version 0
  uint32_t size;
};
static_assert(sizeof(ChunkHeader) == 24);

enum Place { kFile, kMemory };
using Mover = int (*)(void* buffer, uint32_t size, uint32_t count, void* place);

const Mover SaveDispatch[] = {__kobSaveToFile, __kobSaveToMemory};
const Mover LoadDispatch[] = {__kobLoadFromFile, __kobLoadFromMemory};

}  // namespace

ORX_API int __kobSaveToFile(void* buffer, uint32_t size, uint32_t count, void* file) {
  if (size == 0) return KOB_STATUS_OK;
  return fwrite(buffer, size, count, static_cast<FILE*>(file)) == count ? KOB_STATUS_OK
                                                                        : KOB_ERROR_FILE_WRITE;
}

ORX_API int __kobLoadFromFile(void* buffer, uint32_t size, uint32_t count, void* file) {
  if (size == 0) return KOB_STATUS_OK;
  return fread(buffer, size, count, static_cast<FILE*>(file)) == count ? KOB_STATUS_OK : KOB_ERROR_FILE_READ;
}

ORX_API int __kobSaveToMemory(void* buffer, uint32_t size, uint32_t count, void* cursor) {
  KobCursor* to = static_cast<KobCursor*>(cursor);
  memcpy(to->Base + to->Position, buffer, size_t(size) * count);
  to->Position += size * count;
  return KOB_STATUS_OK;
}

ORX_API int __kobLoadFromMemory(void* buffer, uint32_t size, uint32_t count, void* cursor) {
  KobCursor* from = static_cast<KobCursor*>(cursor);
  memcpy(buffer, from->Base + from->Position, size_t(size) * count);
  from->Position += size * count;
  return KOB_STATUS_OK;
}

ORX_API int __kobSkipLoadingFromFile(void* file, uint32_t bytes) {
  return fseek(static_cast<FILE*>(file), long(bytes), SEEK_CUR) == 0 ? KOB_STATUS_OK : KOB_ERROR_FILE_READ;
}

ORX_API int __kobSkipLoadingFromMemory(void* cursor, uint32_t bytes) {
  static_cast<KobCursor*>(cursor)->Position += bytes;
  return KOB_STATUS_OK;
}

ORX_API int __kobGetStreamSize(const KobStream* stream) {
  size_t size = sizeof(ImageHeader) + state_bytes(record(stream));
  for (const KobChunk* chunk = chunks(stream); chunk; chunk = chunk->Next)
    size += sizeof(ChunkHeader) + chunk->Size;
  return int(size);
}

namespace {

// ---- saving ----

// The status of a chunk is that of its data.
int save_chunk(const KobChunk& chunk, Mover save, void* place) {
  ChunkHeader header{chunk.ChunkId, chunk.GlobalId, chunk.Size};
  save(&header, sizeof header, 1, place);
  return save(chunk.Data, chunk.Size, 1, place);
}

int save_image(const KobStream* stream, Mover save, void* place) {
  const uint32_t state_size = uint32_t(state_bytes(record(stream)));
  ImageHeader header{
      kMagic | kVersion, sizeof(ImageHeader), uint16_t(state_size), uint16_t(__kobGetNumChunks(stream)), 0,
      stream->BrngId};
  int status = save(&header, sizeof header, 1, place);
  if (status == KOB_STATUS_OK) status = save(const_cast<KobStream*>(stream + 1), state_size, 1, place);
  if (status != KOB_STATUS_OK) return status;
  // A chunk that could not be written does not keep the others from it; the last one's status stands.
  for (const KobChunk* chunk = chunks(stream); chunk; chunk = chunk->Next)
    status = save_chunk(*chunk, save, place);
  return status;
}

// ---- loading ----

// Whether the file goes on for that many bytes; its position stays. Small blocks need not be looked after:
// reading them stops at the first short read.
bool file_holds(FILE* file, uint32_t size) {
  constexpr uint32_t small = 1 << 24;
  if (size <= small) return true;
  if (size > INT32_MAX) return false;
  char last;
  return fseek(file, long(size) - 1, SEEK_CUR) == 0 && fread(&last, 1, 1, file) == 1 &&
         fseek(file, -long(size), SEEK_CUR) == 0;
}

int read_chunk_header(ChunkHeader* header, uint32_t version, Mover load, void* place) {
  *header = {};
  int status = load(&header->id, sizeof header->id, 1, place);
  if (status == KOB_STATUS_OK && version == 1)
    status = load(&header->global_id, sizeof header->global_id, 1, place);
  if (status == KOB_STATUS_OK) status = load(&header->size, sizeof header->size, 1, place);
  return status;
}

int read_chunk(KobStream* stream, uint32_t version, Place kind, void* place) {
  const Mover load = LoadDispatch[kind];
  ChunkHeader header;
  int status = read_chunk_header(&header, version, load, place);
  if (status != KOB_STATUS_OK) return status;
  if (kind == kFile && !file_holds(static_cast<FILE*>(place), header.size)) return KOB_ERROR_FILE_READ;

  Block<unsigned char> data(std::max(header.size, 1u));
  if (!data) return KOB_ERROR_MEM_FAILURE;
  status = load(data.get(), header.size, 1, place);
  if (status != KOB_STATUS_OK) return status;
  if (!is_sound(stream, {header.id, header.size, data.get(), nullptr, header.global_id}))
    return KOB_ERROR_BAD_FILE_FORMAT;
  forget_set_up(header.id, data.get());
  return give_loaded_chunk(stream, header.id, header.global_id, std::move(data), header.size);
}

int __kobReadChunks(KobStream* stream, const ImageHeader& header, Place kind, void* place) {
  const uint32_t version = header.magic & 0xFF;
  // An image of the other byte order has its version elsewhere, and chunks that are not understood.
  if (header.chunk_count && version > kVersion) return KOB_ERROR_FILE_READ;
  int status = KOB_STATUS_OK;
  for (int i = 0; i < header.chunk_count && status == KOB_STATUS_OK; ++i)
    status = read_chunk(stream, version, kind, place);
  return status;
}

int check_header(const ImageHeader& header) {
  if ((header.magic & kMagicBytes) != kMagic && (header.magic & kSwappedMagicBytes) != kSwappedMagic)
    return KOB_ERROR_BAD_FILE_FORMAT;
  if ((header.magic & 0xFF) > kVersion && header.magic >> 24 > kVersion)
    return KOB_ERROR_UNSUPPORTED_FILE_VER;
  KobBrngProperties properties;
  const bool known = __kobGetBrngProperties(header.id, &properties) == KOB_STATUS_OK;
  return known && header.state_size == state_bytes(properties) && header.header_size >= sizeof(ImageHeader)
             ? KOB_STATUS_OK
             : KOB_ERROR_BAD_FILE_FORMAT;
}

// Everything behind the header, into a stream that was allocated for it.
int read_body(KobStream* stream, const ImageHeader& header, Place kind, void* place) {
  int status = LoadDispatch[kind](stream + 1, header.state_size, 1, place);
  if (status == KOB_STATUS_OK && header.id == KOB_BRNG_TRNG && !__kobCPUisRDRAND())
    status = KOB_ERROR_TRNG_UNSUPPORTED;
  if (status == KOB_STATUS_OK) status = __kobReadChunks(stream, header, kind, place);
  if (status == KOB_STATUS_OK && !adopt(stream)) status = KOB_ERROR_BAD_FILE_FORMAT;
  return status;
}

int read_image(KobStream** stream, Place kind, void* place) {
  ImageHeader header;
  int status = LoadDispatch[kind](&header, sizeof header, 1, place);
  if (status == KOB_STATUS_OK) status = check_header(header);
  if (status != KOB_STATUS_OK) return status;
  uint32_t index, offset;
  const KobBrngProperties* table = __kobGetBrngBaseOffset(header.id, &index, &offset);
  status = __kobAllocateStream(stream, table, header.id, index, offset);
  return status == KOB_STATUS_OK ? read_body(*stream, header, kind, place) : status;
}

// A file name with a length, or terminated when that is negative.
class FileName {
 public:
  FileName(const char* name, int length) : name_(name) {
    if (length < 0) return;
    if (copy_.allocate(int64_t(length) + 1)) {
      memcpy(copy_.get(), name, size_t(length));
      copy_[length] = 0;
    }
    name_ = copy_.get();
  }
  const char* get() const { return name_; }  // null when memory was out

 private:
  const char* name_;
  Block<char> copy_;
};

// Calls move(file) on the opened file.
template <class Move>
int with_file(const char* name, int name_length, const char* mode, Move move) {
  const FileName path(name, name_length);
  if (!path.get()) return KOB_ERROR_MEM_FAILURE;
  FILE* file = fopen(path.get(), mode);
  if (!file) return KOB_ERROR_FILE_OPEN;
  const int status = move(file);
  return fclose(file) == 0 ? status : KOB_ERROR_FILE_CLOSE;
}

int deleted_if_failed(KobStream** stream, int status) {
  if (status < 0) __kobDeleteStream(stream);
  return status;
}

}  // namespace

ORX_API int __kobSaveStreamF(const KobStream* stream, const char* name, int name_length) {
  return with_file(name, name_length, "wb",
                   [&](FILE* file) { return save_image(stream, SaveDispatch[kFile], file); });
}

ORX_API int __kobSaveStreamM(const KobStream* stream, void* memory) {
  KobCursor cursor{static_cast<unsigned char*>(memory), 0};
  return save_image(stream, SaveDispatch[kMemory], &cursor);
}

ORX_API int __kobLoadStreamF(KobStream** stream, const char* name, int name_length) {
  *stream = nullptr;
  return deleted_if_failed(stream, with_file(name, name_length, "rb",
                                             [&](FILE* file) { return read_image(stream, kFile, file); }));
}

ORX_API int __kobLoadStreamM(KobStream** stream, const void* memory) {
  *stream = nullptr;
  KobCursor cursor{static_cast<unsigned char*>(const_cast<void*>(memory)), 0};
  const int status = read_image(stream, kMemory, &cursor);
  const bool format = status == KOB_ERROR_BAD_FILE_FORMAT || status == KOB_ERROR_UNSUPPORTED_FILE_VER;
  return deleted_if_failed(stream, format ? KOB_ERROR_BAD_MEM_FORMAT : status);
}
