// libkelcore: aligned memory, cache size and the thread-count setting.
#include "kelcore.h"

#include <omp.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

#ifdef KELCORE_TEST_HOOKS
#include "core/core_test.h"
#endif

namespace {
// 0 means "not set": the OpenMP default applies.
std::atomic<int> g_threads{0};

#ifdef KELCORE_TEST_HOOKS
// Allocation failure injection of the test build: the countdown reaches 0 at
// the allocation that is to fail; below 0 it is off.
std::atomic<long> g_failIn{-1};
std::atomic<long> g_allocs{0};
std::atomic<long> g_live{0};
#endif
}  // namespace

#ifdef KELCORE_TEST_HOOKS
namespace kelcore_test {
void failAllocation(long n) { g_failIn.store(n >= 1 ? n : -1); }
long allocations() { return g_allocs.load(); }
long liveBlocks() { return g_live.load(); }
}  // namespace kelcore_test
#endif

extern "C" {

void* kelMalloc(size_t size) {
  if (size == 0) return nullptr;
#ifdef KELCORE_TEST_HOOKS
  g_allocs.fetch_add(1);
  if (g_failIn.load() > 0 && g_failIn.fetch_sub(1) == 1) return nullptr;
#endif
  void* p = nullptr;
  // 64 bytes: a cache line, and enough for aligned AVX-512 loads.
  if (posix_memalign(&p, 64, size) != 0) return nullptr;
#ifdef KELCORE_TEST_HOOKS
  g_live.fetch_add(1);
#endif
  return p;
}

void kelFree(void* ptr) {
#ifdef KELCORE_TEST_HOOKS
  if (ptr) g_live.fetch_sub(1);
#endif
  std::free(ptr);
}

int kelGetMaxCacheSizeB(int* size) {
  if (!size) return -1;
  long best = 0;
  // glibc reads these through cpuid; the largest level present wins.
  const int names[] = {_SC_LEVEL1_DCACHE_SIZE, _SC_LEVEL2_CACHE_SIZE,
                       _SC_LEVEL3_CACHE_SIZE, _SC_LEVEL4_CACHE_SIZE};
  for (int n : names) {
    long v = sysconf(n);
    if (v > best) best = v;
  }
  if (best <= 0 || best > 0x7fffffffL) return 1;
  *size = static_cast<int>(best);
  return 0;
}

int ownGetNumThreads(void) {
  int n = g_threads.load(std::memory_order_relaxed);
  if (n < 1) n = omp_get_max_threads();
  return n < 1 ? 1 : n;
}

void kelSetNumThreads(int n) { g_threads.store(n < 1 ? 0 : n, std::memory_order_relaxed); }

int kelGetNumThreads(void) { return ownGetNumThreads(); }

}  // extern "C"
