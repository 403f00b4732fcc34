// libkelcore: aligned memory, cache size and the thread-count setting.
#include "kelcore.h"

#include <omp.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

namespace {
// 0 means "not set": the OpenMP default applies.
std::atomic<int> g_threads{0};
}  // namespace

extern "C" {

void* kelMalloc(size_t size) {
  if (size == 0) return nullptr;
  void* p = nullptr;
  // 64 bytes: a cache line, and enough for aligned AVX-512 loads.
  if (posix_memalign(&p, 64, size) != 0) return nullptr;
  return p;
}

void kelFree(void* ptr) { std::free(ptr); }

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
