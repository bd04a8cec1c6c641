// One sequence of numbers out of a generator, or out of many streams of it in turn: for test batteries.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orx/kob.h"

// How the streams of one generator are told apart.
//   own        sub-generators, each with a seed of its own
//   alike      sub-generators, all with the same seed
//   seeds      seeds 1, 2, 3, ...
//   spread     seeds from the key {stream} by orx_kob_spread_seed
//   skip=E     2^E numbers apart
//   leapfrog=M stream k takes every M-th number, from the k-th on
class SplitStreams {
 public:
  SplitStreams(uint32_t id, int count, const std::string& how);
  SplitStreams(const SplitStreams&) = delete;
  SplitStreams& operator=(const SplitStreams&) = delete;
  ~SplitStreams();

  int status() const { return status_; }  // of the first stream that could not be made
  int count() const { return int(streams_.size()); }

  // The next numbers on [0, 1), one of each stream in turn.
  double real() {
    if (next_real_ == reals_.size()) renew_reals();
    return reals_[next_real_++];
  }
  // The same as words: the generator's 32 uniform bits, or where it has none the upper bits of its reals. A block
  // of one word from each stream in turn.
  const std::vector<uint32_t>& word_block();

 private:
  static constexpr size_t kBlock = 1 << 12;  // numbers of each stream at a time

  int make(uint32_t id, uint32_t k, const std::string& how);
  void renew_reals();

  std::vector<KobStream*> streams_;
  std::vector<double> reals_;
  std::vector<uint32_t> words_;
  size_t next_real_ = 0;
  int status_ = KOB_STATUS_OK;
};
