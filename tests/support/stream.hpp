// A stream that frees itself, and its numbers as vectors.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "orx/kob.h"
#include "orx/serv.h"
#include "support/allocations.hpp"

using Words = std::vector<uint32_t>;

class Stream {
 public:
  explicit Stream(uint32_t id, const Words& seed = {1}) {
    EXPECT_EQ(__kobNewStreamEx(&stream_, id, int(seed.size()), seed.data()), KOB_STATUS_OK);
  }
  explicit Stream(KobStream* stream) : stream_(stream) {}
  Stream(const Stream& other) { EXPECT_EQ(__kobCopyStream(&stream_, other.stream_), KOB_STATUS_OK); }
  Stream(Stream&& other) noexcept : stream_(std::exchange(other.stream_, nullptr)) {}
  Stream& operator=(const Stream&) = delete;
  ~Stream() { __kobDeleteStream(&stream_); }

  operator KobStream*() const { return stream_; }

  KobBrngProperties properties() const {
    KobBrngProperties p{};
    EXPECT_EQ(__kobGetBrngProperties(uint32_t(__kobGetStreamStateBrng(stream_)), &p), KOB_STATUS_OK);
    return p;
  }
  uint32_t* state() const { return reinterpret_cast<uint32_t*>(stream_ + 1); }

  // n generator words.
  Words words(int n) const {
    const KobBrngProperties p = properties();
    Words r(size_t(n) * size_t(p.WordSize) / 4);
    EXPECT_EQ(p.iGenerate(stream_, n, r.data()), KOB_STATUS_OK);
    return r;
  }
  template <class Real = double>
  std::vector<Real> reals(int n, Real a = 0, Real b = 1) const {
    std::vector<Real> r(n);
    if constexpr (sizeof(Real) == 8)
      EXPECT_EQ(properties().dGenerate(stream_, n, r.data(), a, b), KOB_STATUS_OK);
    else
      EXPECT_EQ(properties().sGenerate(stream_, n, r.data(), a, b), KOB_STATUS_OK);
    return r;
  }

 private:
  KobStream* stream_ = nullptr;
};

// Runs make(&stream) with each of its allocations failing, and with none.
template <class Make>
void expect_clean_making(Make make) {
  fail_each_allocation(KOB_ERROR_MEM_FAILURE, [&] {
    KobStream* stream = nullptr;
    const int status = make(&stream);
    __kobDeleteStream(&stream);
    return status;
  });
}

// Gives the stream a chunk; its data.
inline void* add_chunk(KobStream* stream, uint32_t kind, const Words& words,
                       const KobGlobalId* name = nullptr) {
  const uint32_t size = uint32_t(words.size()) * 4;
  void* data = orx_serv_allocate(size, 128);
  std::copy(words.begin(), words.end(), static_cast<uint32_t*>(data));
  EXPECT_EQ(__kobAddChunk(stream, kind, name, data, size), KOB_STATUS_OK);
  return data;
}
