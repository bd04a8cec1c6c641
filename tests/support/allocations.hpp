// Memory that runs out on order, and blocks that are not given back.
#pragma once

#include <gtest/gtest.h>

#include "orx/serv.h"

// Runs `call` with its k-th allocation failing, for every k that it reaches: each time the status is
// `memory_status`, and nothing is lost. Returns how many allocations there are.
template <class Call>
int fail_each_allocation(int memory_status, Call call) {
  for (int k = 1;; ++k) {
    const long before = orx_serv_live_blocks();
    orx_serv_fail_allocation(k);
    const int status = call();
    orx_serv_fail_allocation(0);
    EXPECT_EQ(orx_serv_live_blocks(), before) << "allocation " << k;
    if (status != memory_status || k == 1000) {
      EXPECT_EQ(status, 0);
      return k - 1;
    }
  }
}

// What `call` returns; it must leave as many blocks as it found.
template <class Call>
int without_loss(Call call) {
  const long before = orx_serv_live_blocks();
  const int status = call();
  EXPECT_EQ(orx_serv_live_blocks(), before);
  return status;
}
