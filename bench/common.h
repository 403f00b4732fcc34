// Shared pieces of the benchmarks.
//
// Each conversion is one group of entries named "<Group>/<impl>", with impl
// one of kel (ours), opencv, libyuv and memcpy (the same bytes as our source
// plus destination, read once and written once). The main program prints
// throughput per entry and, per group, the ratio of every entry to ours.
#pragma once

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "frame/cpu.h"
#include "kelcc.h"
#include "kelcore.h"

namespace kb {

// ---- Run configuration ---------------------------------------------------
//
// One run of the program measures one configuration: the frame size, the
// thread count and whether the frame starts hot (left in the caches by the
// previous call) or cold (flushed to memory before every timed call). It is
// read once, at load time, before the families register their entries (they
// size their buffers by it), from the flags --kb_size=WxH, --kb_threads=N and
// --kb_cache=hot|cold (read from /proc/self/cmdline, since registration runs
// before main) or, failing those, from KELCC_BENCH_SIZE, KELCC_BENCH_THREADS
// and KELCC_BENCH_CACHE. Defaults: 1920x1080, one thread, hot.
struct Config {
  int w = 1920, h = 1080, threads = 1;
  bool cold = false;
};

inline const Config& config() {
  static const Config c = [] {
    Config r;
    auto apply = [&r](const std::string& key, const std::string& v) {
      if (v.empty()) return;
      if (key == "size") {
        int w = 0, h = 0;
        if (std::sscanf(v.c_str(), "%dx%d", &w, &h) == 2 && w > 0 && h > 0) r.w = w, r.h = h;
      } else if (key == "threads") {
        const int n = std::atoi(v.c_str());
        if (n > 0) r.threads = n;
      } else if (key == "cache") {
        r.cold = v == "cold";
      }
    };
    for (const char* key : {"size", "threads", "cache"}) {
      std::string env = "KELCC_BENCH_";
      for (const char* k = key; *k; ++k) env += static_cast<char>(*k - 'a' + 'A');
      if (const char* v = std::getenv(env.c_str())) apply(key, v);
    }
    if (FILE* f = std::fopen("/proc/self/cmdline", "rb")) {
      std::string arg;
      for (int ch; (ch = std::fgetc(f)) != EOF;) {
        if (ch) {
          arg += static_cast<char>(ch);
          continue;
        }
        if (arg.rfind("--kb_", 0) == 0 && arg.find('=') != std::string::npos)
          apply(arg.substr(5, arg.find('=') - 5), arg.substr(arg.find('=') + 1));
        arg.clear();
      }
      std::fclose(f);
    }
    return r;
  }();
  return c;
}

// The frame of every entry. Not compile-time constants: a run takes its size
// from the configuration above (registration reads them after they are set,
// since this header comes before every KB_REGISTER).
inline const int kW = config().w, kH = config().h;
inline const KeliSize kRoi = {kW, kH};
// Subsampled plane widths and heights, rounded up: room for an odd size.
inline int half(int n) { return (n + 1) / 2; }
inline int quarter(int n) { return (n + 3) / 4; }
// The thread count of the run: ours (kelSetNumThreads) and the peers' own
// (OpenCV's pool, swscale's slice threads; libyuv has none).
inline int threads() { return config().threads; }
inline bool cold() { return config().cold; }

// ---- Buffers and cold starts ---------------------------------------------
//
// A cold start must put the frame out of every cache. Two generic ways exist:
// streaming an eviction buffer of a few times the last-level cache through the
// caches before each timed call, or rotating among enough copies of the
// buffers to exceed that cache. Both cost time in proportion to the cache,
// not to the frame, and on large-cache servers (this machine reports 480 MiB
// and keeps a 6 MiB frame resident until well over 128 MiB have streamed
// past) one eviction costs 200-400 ms per timed call, 100 times the call.
// So cold runs flush instead: every big buffer of the benchmarks is
// registered here (Plane does it; kb::track for others), the first run of an
// entry finds which of its family's buffers the call touches (they are
// protected, and the first access to each is caught and recorded), and
// before every timed call those buffers are written back and dropped from
// every level with clflushopt (a few hundred microseconds for a 1080p frame;
// KELCC_BENCH_VERBOSE=1 prints what each entry flushes).
// The call then reads its source from memory and writes its destination
// through cache misses, with dirty data of its predecessor already written
// back, which is the state of a frame arriving from a decoder or a capture
// device. Measured on the same 6 MiB copy: 13.3 GB/s after a 1 GiB eviction
// stream, 14.5 GB/s after the flush, 29 GB/s hot.
struct Region {
  uintptr_t lo, hi;      // the buffer's cache lines: what a flush writes back
  uintptr_t wlo, whi;    // the whole pages inside the buffer: what is watched
  std::atomic<bool> touched{false};
};
inline std::vector<std::unique_ptr<Region>>& regions() {
  static std::vector<std::unique_ptr<Region>> r;
  return r;
}
// The first region of the family being registered (set by KB_REGISTER).
inline size_t& familyStart() {
  static size_t s = 0;
  return s;
}
// Registers a buffer. Only pages that lie wholly inside it are ever
// protected (a page it shares holds other data, even our own bookkeeping),
// or the `owned` bytes from `p` where the caller owns whole pages. A buffer
// with no whole page counts as touched by every entry of its family.
inline Region* track(const void* p, size_t bytes, size_t owned = 0) {
  if (!bytes) return nullptr;
  const uintptr_t a = reinterpret_cast<uintptr_t>(p), page = 4096;
  auto r = std::make_unique<Region>();
  r->lo = a & ~uintptr_t(63);
  r->hi = (a + bytes + 63) & ~uintptr_t(63);
  r->wlo = (a + page - 1) & ~(page - 1);
  r->whi = owned ? a + owned : (a + bytes) & ~(page - 1);
  if (r->whi < r->wlo) r->whi = r->wlo;
  regions().push_back(std::move(r));
  return regions().back().get();
}
void flush(const std::vector<const Region*>& rs);
std::vector<const Region*> touchedBy(size_t first, size_t last, const std::function<void()>& body);

// A plane of random bytes, page-aligned, rows `step` bytes apart. 64 bytes
// of slack after the last row: at odd widths some peers read or write whole
// pixel pairs (packed 4:2:2, interleaved chroma) past the last pixel.
struct Plane {
  Plane(int rowBytes, int rows, uint32_t seed = 1, int stepPad = 0)
      : step(rowBytes + stepPad), bytes(static_cast<size_t>(step) * rows) {
    void* mem = nullptr;
    const size_t owned = (bytes + 64 + 4095) & ~size_t(4095);  // whole pages: cold runs protect them
    if (posix_memalign(&mem, 4096, owned)) std::abort();
    p = static_cast<uint8_t*>(mem);
    // splitmix64, eight bytes a step: a fast start for the whole program.
    uint64_t x = seed;
    for (size_t i = 0; i < bytes; i += 8) {
      uint64_t z = (x += 0x9e3779b97f4a7c15u);
      z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
      z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
      z ^= z >> 31;
      std::memcpy(p + i, &z, bytes - i < 8 ? bytes - i : 8);
    }
    region = track(p, bytes, owned);
  }
  ~Plane() { std::free(p); }
  Plane(const Plane&) = delete;
  Plane& operator=(const Plane&) = delete;
  int step;
  size_t bytes;
  uint8_t* p;
  Region* region;
};

// Registers one entry; `bytes` is the traffic of one call (source plus
// destination), reported as bytes per second. Hot: back-to-back calls, wall
// time. Cold: the entry's buffers flushed before each call, each call timed
// alone (manual time, so that neither the flush nor the timer's pause is
// counted). `known`, where given, are the buffers the call touches.
inline void add(const std::string& group, const std::string& impl, size_t bytes, std::function<void()> body,
                std::vector<const Region*> known = {}) {
  const size_t first = familyStart(), last = regions().size();
  auto touched = std::make_shared<std::vector<const Region*>>(std::move(known));
  auto found = std::make_shared<bool>(!touched->empty());
  auto* b = benchmark::RegisterBenchmark((group + "/" + impl).c_str(), [=](benchmark::State& st) {
    try {
      if (!cold()) {
        for (auto _ : st) {
          body();
          benchmark::ClobberMemory();
        }
      } else {
        if (!*found) {
          *touched = touchedBy(first, last, body), *found = true;
          if (std::getenv("KELCC_BENCH_VERBOSE")) {
            size_t n = 0;
            for (const Region* r : *touched) n += r->hi - r->lo;
            std::fprintf(stderr, "%s/%s: flushes %zu buffers, %zu bytes\n", group.c_str(), impl.c_str(),
                         touched->size(), n);
          }
        }
        for (auto _ : st) {
          flush(*touched);
          const auto t0 = std::chrono::steady_clock::now();
          body();
          benchmark::ClobberMemory();
          st.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count());
        }
      }
    } catch (const std::exception& e) {  // a peer that refuses the size (OpenCV's 4:2:0 wants even ones)
      st.SkipWithError(e.what());
    }
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations()) * static_cast<int64_t>(bytes));
  });
  b->Unit(benchmark::kMicrosecond);
  if (cold())
    b->UseManualTime();
  else
    b->UseRealTime();
}

// Ours; and in the one-thread groups on an AVX-512 processor, the same call
// held to the AVX2 path ("kel-avx2"), what such a processor runs for the
// families without AVX-512 kernels.
inline void addKelAndAvx2(const std::string& g, size_t bytes, std::function<void()> f) {
  add(g, "kel", bytes, f);
  if (g.find('@') == std::string::npos && kel::cpuIsa() >= kel::Isa::AVX512)
    add(g, "kel-avx2", bytes, [f] {
      kel::setIsaLimit(kel::Isa::AVX2);
      f();
      kel::setIsaLimit(kel::Isa::AVX512);
    });
}

// The memcpy line of a group: reads `srcBytes`, writes `dstBytes` (the copy
// moves max of the two, from one buffer to another). Hot or cold as the
// group's other entries, so that the ratio to it is fair.
// Groups of the same size share their pair of buffers.
inline void addMemcpy(const std::string& group, size_t srcBytes, size_t dstBytes) {
  const size_t n = srcBytes > dstBytes ? srcBytes : dstBytes;
  static std::vector<std::pair<size_t, std::pair<Plane*, Plane*>>> pairs;
  Plane *a = nullptr, *b = nullptr;
  for (auto& [size, ab] : pairs)
    if (size == n) a = ab.first, b = ab.second;
  if (!a) {
    a = new Plane(static_cast<int>(n), 1, 1);  // kept for the whole run
    b = new Plane(static_cast<int>(n), 1, 2);
    pairs.push_back({n, {a, b}});
  }
  add(group, "memcpy", srcBytes + dstBytes, [a, b, n] { std::memcpy(b->p, a->p, n); }, {a->region, b->region});
}

// `f` run with our thread count set to `threads` (and set back after).
inline std::function<void()> withThreads(int threads, void (*f)()) {
  return [threads, f] {
    const int before = kelGetNumThreads();
    kelSetNumThreads(threads);
    f();
    kelSetNumThreads(before);
  };
}

// The thread counts a family with a parallel region registers its groups for:
// the run's one count (its groups carry "@2t" when it is two).
inline std::vector<int> threadCounts() { return {config().threads}; }

// Registration at load time: KB_REGISTER(fn) runs fn() before main.
struct Registrar {
  explicit Registrar(void (*fn)()) {
    familyStart() = regions().size();
    fn();
  }
};
#define KB_CAT2(a, b) a##b
#define KB_CAT(a, b) KB_CAT2(a, b)
#define KB_REGISTER(fn) static ::kb::Registrar KB_CAT(kbReg_, __LINE__)(fn)

}  // namespace kb
