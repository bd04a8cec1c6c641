// The search of a whole array: one driver per method, the expansion of uniform sites, and the split among
// threads.
#include <algorithm>

#include "_service/checks.hpp"
#include "_service/search.hpp"
#include "orx/base/memory.hpp"
#include "orx/base/threading.hpp"

namespace {
using namespace orx::df;

constexpr int32_t kBlock = 128, kMaxStackSites = 4096, kInlineSites = 32;
constexpr int32_t kMaxRun = 1 << 30;  // sites per call of a block kernel, whose counts are 32 bits wide

// A whole-array search, as the workers see it. Worker i takes the sites from i * slice on.
struct ArraySearch {
  Search search;
  const Real* sites;
  void* cells;
  int64_t slice;

  // `wide`: the caller's cells are 64-bit integers.
  int32_t run(int64_t from, int64_t count, bool wide) const {
    int32_t start = 0, status = ORX_DF_OK, flags[kBlock];
    const int64_t most = search.callback ? kBlock : kMaxRun;
    for (const int64_t end = from + count; from < end && status >= 0; from += most) {
      void* out = static_cast<char*>(cells) + from * (wide ? sizeof(int64_t) : sizeof(int32_t));
      status =
          search.block(int32_t(std::min(most, end - from)), sites + from, &start, out, flags, wide ? 3 : 2);
    }
    return status;
  }
  int32_t run(int64_t from, int64_t count) const { return run(from, count, search.task->ilp64Flag != 0); }
};

// Whether a run of n sites is worth the threads.
bool threads_pay(SearchMethod method, int64_t n, int64_t nx, int32_t threads) {
  if (threads < 2) return false;
  switch (method) {
    case kUniform:
      return n > 5000;
    case kSorted:
      return n > 3000;
    case kQuasiUniform:
      return n > 300 || (n > 150 && (nx >= 600 || (nx >= 40 && threads >= 4)));
    case kPeak:
      return n > 1200 || nx > 1200;
    case kHybrid:
      return nx > 16 && (n > 2000 || (n > 600 && threads <= 4) || (n > 300 && threads == 2));
    default:
      return false;
  }
}

int32_t search_array(ArraySearch& work, int64_t n, const ThreadingServices* threading, orx_worker narrow,
                     orx_worker wide) {
  const int32_t threads = threading->maxThreads();
  int64_t done = 0;
  if (threads_pay(work.search.method, n, work.search.task->gridSize, threads)) {
    const int64_t unit = work.search.method == kHybrid ? kBlock : 1;
    const auto workers = int32_t(std::min<int64_t>(n / unit, threads));
    work.slice = n / unit / workers * unit;
    threading->parallelFor(workers, workers, &work, work.search.task->ilp64Flag ? wide : narrow);
    done = work.slice * workers;
  }
  return work.run(done, n - done);
}

// Sites from the first to the last, evenly spaced.
void expand_sites(const Real* ends, int64_t n, Real* sites) {
  const Real step = n > 1 ? (ends[1] - ends[0]) / Real(n - 1) : 0;
  for (int64_t i = 0; i < n; ++i) sites[i] = ends[0] + Real(i) * step;
}

using Driver = int32_t(ArraySearch& work, int64_t n, const ThreadingServices* threading);

#define ORX_DF_THREADER(name, wide)                      \
  static void name(int i, int, int, void* args) {        \
    const auto& work = *static_cast<ArraySearch*>(args); \
    work.run(i* work.slice, work.slice, wide);           \
  }
#define ORX_DF_DRIVER(Method)                                                                           \
  ORX_DF_THREADER(_v1DSearch##Method##ThreaderILP64, true)                                              \
  ORX_DF_THREADER(_v1DSearch##Method##ThreaderLP64, false)                                              \
  static int32_t _v1DSearch##Method(ArraySearch& work, int64_t n, const ThreadingServices* threading) { \
    return search_array(work, n, threading, _v1DSearch##Method##ThreaderLP64,                           \
                        _v1DSearch##Method##ThreaderILP64);                                             \
  }
// A call-back is never run on threads.
#define ORX_DF_CALLBACK_DRIVER(Method)                                                        \
  static int32_t _v1DSearch##Method(ArraySearch& work, int64_t n, const ThreadingServices*) { \
    return work.run(0, n);                                                                    \
  }

extern "C" {
ORX_DF_DRIVER(Uniform)
ORX_DF_DRIVER(QuasiUniform)
ORX_DF_DRIVER(Sorted)
ORX_DF_DRIVER(Peak)
ORX_DF_DRIVER(Hybrid)
ORX_DF_CALLBACK_DRIVER(UserDef)
ORX_DF_CALLBACK_DRIVER(UserDefUni)
}

Driver* const _SearchDispatch[7] = {_v1DSearchUniform,   _v1DSearchQuasiUniform, _v1DSearchSorted,
                                    _v1DSearchPeak,      _v1DSearchHybrid,       _v1DSearchUserDef,
                                    _v1DSearchUserDefUni};

int32_t search_sites(ArraySearch& work, int64_t n, const ThreadingServices* threading) {
  return n < kInlineSites ? work.run(0, n) : _SearchDispatch[work.search.method](work, n, threading);
}

int32_t search_uniform_sites(ArraySearch& work, int64_t n, const ThreadingServices* threading) {
  if (n <= kMaxStackSites) {
    Real sites[kMaxStackSites];
    expand_sites(work.sites, n, sites);
    work.sites = sites;
    return search_sites(work, n, threading);
  }
  const orx::Block<Real> sites(n);
  if (!sites) return ORX_DF_ERROR_MEMORY;
  expand_sites(work.sites, n, sites.get());
  work.sites = sites.get();
  return search_sites(work, n, threading);
}

}  // namespace

ORX_API int32_t ORX_DF_NAME(DFSearch1D)(DFTask* task, int64_t, int64_t site_count, const Real* sites,
                                        int64_t site_hint, const Real* data_hint, void* cells,
                                        SearchCallback<Real> search, void* search_params,
                                        const ThreadingServices* threading) {
  const auto* t = Task<Real>::of(task);
  if (!t) return ORX_DF_ERROR_TASK;
  ArraySearch work{{}, sites, cells, 0};
  if (const int32_t bad = choose_search(t, site_hint, data_hint, search, search_params, &work.search))
    return bad;
  if (const int32_t bad = check_breakpoints(t)) return bad;
  if (site_count <= 0) return ORX_DF_OK;
  if (site_count > PTRDIFF_MAX / int64_t(sizeof(Real))) return ORX_DF_ERROR_MEMORY;
  threading = orx::threading_or_serial(threading);
  return site_hint == ORX_DF_UNIFORM_SITES ? search_uniform_sites(work, site_count, threading)
                                           : search_sites(work, site_count, threading);
}
