// A table of threading services for tests: tells of so many workers, runs everything on the calling thread in an order
// that the test chooses, and notes what it was asked for.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <vector>

#include "orx/serv.h"

struct Threads {
  static inline int workers = 1, last_asked = 0;
  static inline std::vector<int> counts;  // items of the loops that were run since the table was handed out
  static inline std::function<void(std::vector<int>&)> arrange = [](std::vector<int>& v) {
    std::reverse(v.begin(), v.end());
  };

  static const ThreadingServices* table(int count) {
    static const ThreadingServices services = {parallel_for, parallel_for_ordered, parallel_run,
                                               ordered_section, max_threads};
    workers = count;
    counts.clear();
    return &services;
  }

 private:
  static std::vector<int> order(int count) {
    std::vector<int> v(static_cast<size_t>(count));
    std::iota(v.begin(), v.end(), 0);
    arrange(v);
    return v;
  }
  static int asked(int count, int threads) {
    counts.push_back(count);
    return last_asked = threads > 0 ? threads : workers;
  }
  static void parallel_for(int count, int threads, void* args, orx_worker fn) {
    const int team = asked(count, threads);
    EXPECT_LE(team, workers);
    for (const int i : order(count)) fn(i, i % team, team, args);
  }
  static void parallel_for_ordered(int count, int threads, void* args, orx_worker fn) {
    const int team = asked(count, threads);
    for (int i = 0; i < count; ++i) fn(i, (count - i) % team, team, args);
  }
  static void parallel_run(int threads, void* args, orx_worker fn) {
    last_asked = threads;
    for (const int t : order(threads)) fn(t, t, threads, args);
  }
  static void ordered_section(int i, int t, int team, void* args, orx_worker fn) { fn(i, t, team, args); }
  static int max_threads() { return workers; }
};
