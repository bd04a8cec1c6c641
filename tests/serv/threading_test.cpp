// CTest runs this as it is and again with other limits on the threads, see CMakeLists.txt.
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "orx/serv.h"

namespace {

// What the workers of one call saw.
struct Record {
  const ThreadingServices* table;
  explicit Record(const ThreadingServices* t, int count = 0) : table(t), calls(count) {}
  std::vector<std::atomic<int>> calls;  // per index
  std::mutex lock;
  std::set<int> workers, teams;
  std::set<std::thread::id> threads;
  std::vector<int> order;

  void note(int i, int t, int T) {
    ++calls[i];
    std::lock_guard<std::mutex> hold(lock);
    workers.insert(t);
    teams.insert(T);
    threads.insert(std::this_thread::get_id());
  }
};

void note(int i, int t, int T, void* args) { static_cast<Record*>(args)->note(i, t, T); }

void note_in_order(int i, int t, int T, void* args) {
  auto* record = static_cast<Record*>(args);
  record->note(i, t, T);
  if (i % 3 == 1) return;  // an item may do without its section
  record->table->orderedSection(i, t, T, args, [](int k, int, int, void* a) {
    static_cast<Record*>(a)->order.push_back(k);  // no lock: sections run one at a time
  });
}

void expect_each_index_once(const Record& record, int threads) {
  for (const auto& calls : record.calls) EXPECT_EQ(calls, 1);
  if (record.calls.empty()) return;
  ASSERT_EQ(record.teams.size(), 1u);
  const int team = *record.teams.begin();
  EXPECT_LE(team, threads > 0 ? threads : record.table->maxThreads());
  EXPECT_GE(*record.workers.begin(), 0);
  EXPECT_LT(*record.workers.rbegin(), team);
  EXPECT_LE(record.threads.size(), size_t(team));
}

class Threading : public testing::TestWithParam<const ThreadingServices* (*)()> {
 protected:
  const ThreadingServices* table = GetParam()();
};

}  // namespace

TEST_P(Threading, LoopsRunEachIndexOnceOnNumberedWorkers) {
  for (int threads : {-1, 0, 1, 2, 3, 5})
    for (int count : {0, 1, 2, 7, 500}) {
      SCOPED_TRACE(testing::Message() << threads << " threads, " << count << " items");
      Record plain(table, count), ordered(table, count);
      table->parallelFor(count, threads, &plain, note);
      expect_each_index_once(plain, threads);
      table->parallelForOrdered(count, threads, &ordered, note_in_order);
      expect_each_index_once(ordered, threads);
      std::vector<int> rising;
      for (int i = 0; i < count; ++i)
        if (i % 3 != 1) rising.push_back(i);
      EXPECT_EQ(ordered.order, rising);
    }
  table->parallelFor(-3, 2, nullptr, [](int, int, int, void*) { FAIL(); });
}

TEST_P(Threading, RunCallsEachWorkerOnce) {
  for (int threads : {0, 1, 2, 5}) {
    const int workers = threads > 0 ? threads : table->maxThreads();
    Record record(table, workers);
    table->parallelRun(threads, &record, [](int i, int t, int T, void* args) {
      EXPECT_EQ(i, t);
      note(i, t, T, args);
    });
    expect_each_index_once(record, threads);
    EXPECT_EQ(*record.teams.begin(), workers);
    if (threads == 0) {
      EXPECT_EQ(record.threads.size(), size_t(workers));
    }
  }
}

TEST_P(Threading, NestedCallsStayOnTheirThread) {
  Record outer(table, 6);
  // Outer loops of one worker too: what lies in a loop is nested whatever its team.
  for (int threads : {1, 0}) {
    table->parallelForOrdered(6, threads, &outer, [](int i, int t, int T, void* args) {
      note(i, t, T, args);
      const ThreadingServices* inner_table = static_cast<Record*>(args)->table;
      EXPECT_EQ(inner_table->maxThreads(), 1);
      Record loop(inner_table, 9), ordered(inner_table, 9), run(inner_table, 4);
      inner_table->parallelFor(9, 4, &loop, note);
      inner_table->parallelForOrdered(9, 0, &ordered, note_in_order);
      inner_table->parallelRun(4, &run, note);
      for (const Record* inner : {&loop, &ordered, &run}) {
        expect_each_index_once(*inner, 4);
        EXPECT_EQ(inner->threads, std::set<std::thread::id>{std::this_thread::get_id()});
      }
      EXPECT_EQ(ordered.order, (std::vector<int>{0, 2, 3, 5, 6, 8}));
    });
  }
  for (const auto& calls : outer.calls) EXPECT_EQ(calls, 2);
}

INSTANTIATE_TEST_SUITE_P(Tables, Threading, testing::Values(orx_serv_threading, orx_serv_threading_serial),
                         [](const auto& info) { return info.index == 0 ? "OpenMP" : "Serial"; });
