// The first failure of several workers.
#pragma once

#include <atomic>

namespace orx {

// Statuses below 0 are failures. Workers on any threads report; the first one that gets through stays.
class FirstFailure {
 public:
  void report(int status) {
    int none = 0;
    if (status < 0) status_.compare_exchange_strong(none, status, std::memory_order_relaxed);
  }
  // What has been reported so far, 0 for nothing. A worker may look whether there is any use in going on.
  int status() const { return status_.load(std::memory_order_relaxed); }

 private:
  std::atomic<int> status_{0};
};

}  // namespace orx
