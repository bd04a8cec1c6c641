#include <gtest/gtest.h>

#include <cstdint>

#include "orx/serv.h"

TEST(Memory, AlignedCountedAndFailingOnOrder) {
  const long before = orx_serv_live_blocks();
  for (size_t alignment = 1; alignment <= 4096; alignment *= 2) {
    void* block = orx_serv_allocate(100, alignment);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % alignment, 0u);
    EXPECT_EQ(orx_serv_live_blocks(), before + 1);
    orx_serv_deallocate(block);
  }
  EXPECT_EQ(orx_serv_allocate(SIZE_MAX - 64, 128), nullptr);
  orx_serv_fail_allocation(2);
  void* first = orx_serv_allocate(8, 128);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(orx_serv_allocate(8, 128), nullptr);
  void* third = orx_serv_allocate(8, 128);
  EXPECT_NE(third, nullptr);
  orx_serv_deallocate(first);
  orx_serv_deallocate(third);
  orx_serv_deallocate(nullptr);
  EXPECT_EQ(orx_serv_live_blocks(), before);
}
