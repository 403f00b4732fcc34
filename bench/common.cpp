// The cold-start machinery of common.h: finding the buffers an entry touches
// and flushing them from the caches.
#include <cpuid.h>
#include <immintrin.h>
#include <signal.h>
#include <sys/mman.h>

#include "common.h"

namespace kb {
namespace {

// The regions under watch while an entry's first call runs. Read by the
// signal handler, which does nothing but mprotect and an atomic store.
size_t gFirst = 0, gLast = 0;
struct sigaction gPrevious;

void onFault(int sig, siginfo_t* info, void*) {
  const uintptr_t a = reinterpret_cast<uintptr_t>(info->si_addr);
  auto& rs = regions();
  for (size_t i = gFirst; i < gLast; ++i) {
    Region& r = *rs[i];
    if (a >= r.wlo && a < r.whi) {
      mprotect(reinterpret_cast<void*>(r.wlo), r.whi - r.wlo, PROT_READ | PROT_WRITE);
      r.touched.store(true, std::memory_order_relaxed);
      return;
    }
  }
  // Not ours: a real fault. Let it take its ordinary course.
  sigaction(sig, &gPrevious, nullptr);
}

bool hasClflushopt() {
  unsigned a, b, c, d;
  return __get_cpuid_count(7, 0, &a, &b, &c, &d) && (b & (1u << 23));
}

__attribute__((target("clflushopt"))) void flushOpt(uintptr_t lo, uintptr_t hi) {
  for (uintptr_t p = lo; p < hi; p += 64) _mm_clflushopt(reinterpret_cast<void*>(p));
}

void flushPlain(uintptr_t lo, uintptr_t hi) {
  for (uintptr_t p = lo; p < hi; p += 64) _mm_clflush(reinterpret_cast<void*>(p));
}

}  // namespace

void flush(const std::vector<const Region*>& rs) {
  static const bool opt = hasClflushopt();
  for (const Region* r : rs) (opt ? flushOpt : flushPlain)(r->lo, r->hi);
  _mm_mfence();
}

std::vector<const Region*> touchedBy(size_t first, size_t last, const std::function<void()>& body) {
  auto& rs = regions();
  gFirst = first;
  gLast = last;
  struct sigaction sa = {};
  sa.sa_sigaction = onFault;
  sa.sa_flags = SA_SIGINFO | SA_NODEFER;
  sigemptyset(&sa.sa_mask);
  sigaction(SIGSEGV, &sa, &gPrevious);
  for (size_t i = first; i < last; ++i) {
    Region& r = *rs[i];
    r.touched.store(r.whi == r.wlo);  // too small to watch: counted as touched
    if (r.whi > r.wlo) mprotect(reinterpret_cast<void*>(r.wlo), r.whi - r.wlo, PROT_NONE);
  }
  auto release = [&] {
    for (size_t i = first; i < last; ++i)
      if (rs[i]->whi > rs[i]->wlo)
        mprotect(reinterpret_cast<void*>(rs[i]->wlo), rs[i]->whi - rs[i]->wlo, PROT_READ | PROT_WRITE);
    sigaction(SIGSEGV, &gPrevious, nullptr);
  };
  try {
    body();
  } catch (...) {
    release();
    throw;
  }
  release();
  std::vector<const Region*> out;
  for (size_t i = first; i < last; ++i)
    if (rs[i]->touched.load()) out.push_back(rs[i].get());
  return out;
}

}  // namespace kb
