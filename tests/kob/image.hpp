// Images of streams from anywhere: loaded, and put to use when they load.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "orx/kob.h"
#include "orx/serv.h"

using Bytes = std::vector<unsigned char>;

// A file in memory with a name.
class TemporaryFile {
 public:
  TemporaryFile() : fd_(memfd_create("image", 0)), name_("/proc/self/fd/" + std::to_string(fd_)) {}
  explicit TemporaryFile(const Bytes& content) : TemporaryFile() { set(content); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { close(fd_); }

  const char* name() const { return name_.c_str(); }
  void set(const Bytes& content) {
    if (ftruncate(fd_, 0) != 0 || pwrite(fd_, content.data(), content.size(), 0) != ssize_t(content.size()))
      perror("image");
  }
  Bytes content() const {
    Bytes bytes(size_t(lseek(fd_, 0, SEEK_END)));
    if (pread(fd_, bytes.data(), bytes.size(), 0) != ssize_t(bytes.size())) perror("image");
    return bytes;
  }

 private:
  int fd_;
  std::string name_;
};

inline Bytes image_of(const KobStream* stream) {
  Bytes bytes(size_t(__kobGetStreamSize(stream)));
  __kobSaveStreamM(stream, bytes.data());
  return bytes;
}

template <class Field>
Field field(const Bytes& image, size_t offset) {
  Field value;
  memcpy(&value, image.data() + offset, sizeof value);
  return value;
}

// Whether all lengths in the image stay inside it, which is what loading from memory takes for granted.
inline bool is_whole(const Bytes& image) {
  if (image.size() < 16) return false;
  size_t at = size_t(16) + field<uint16_t>(image, 6);
  const unsigned version = image[0];
  for (int left = field<uint16_t>(image, 8); left > 0 && version <= 1; --left) {
    const size_t header = version == 1 ? 24 : 8;
    if (image.size() < at || image.size() - at < header) return false;
    const size_t size = field<uint32_t>(image, at + header - 4);
    if (image.size() - at - header < size) return false;
    at += header + size;
  }
  return at <= image.size();
}

// Draws numbers of every kind from a stream and from a copy of it, splits and saves; deletes the stream.
inline void use(KobStream* stream) {
  constexpr int kCount = 700;
  uint32_t words[4 * kCount];
  uint64_t wide[40];
  KobStream* copy = nullptr;
  if (__kobCopyStream(&copy, stream) != KOB_STATUS_OK) abort();
  for (KobStream* s : {stream, copy}) {
    _kobiRngUniformBits(0, s, kCount, words);
    _kobdRngUniform(0, s, kCount / 2, reinterpret_cast<double*>(words), -1, 1);
    for (int n : {1, 3, 2, 0, 37}) {
      _kobiRngUniformBits32(0, s, n, words);
      _kobiRngUniformBits64(0, s, n, wide);
      _kobsRngUniform(0, s, n, reinterpret_cast<float*>(words), -1, 1);
    }
    __kobSkipAheadStream(s, 12345678901234);
    __kobLeapfrogStream(s, 1, 3);
    __kobLeapfrogStream(s, 0, 0x7FFFFFFF);
    _kobiRngUniformBits(0, s, 40, words);
    image_of(s);
    __kobDeleteStream(&s);
  }
}

// Loads an image from a file and, when its lengths allow it, from memory, and uses what was loaded. False
// when a failed load left a stream, or anything left a block of memory.
inline bool survives(TemporaryFile& file, const Bytes& image) {
  const long before = orx_serv_live_blocks();
  const auto finish = [](int status, KobStream* stream) {
    if (status == KOB_STATUS_OK) use(stream);
    return status == KOB_STATUS_OK || !stream;
  };
  KobStream* stream = nullptr;
  file.set(image);
  int status = __kobLoadStreamF(&stream, file.name(), -1);
  bool ok = finish(status, stream);
  if (is_whole(image)) {
    stream = nullptr;
    status = __kobLoadStreamM(&stream, image.data());
    ok = finish(status, stream) && ok;
  }
  return ok && orx_serv_live_blocks() == before;
}
