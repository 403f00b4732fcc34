// Shared pieces of the benchmarks.
//
// Each conversion is one group of entries named "<Group>/<impl>", with impl
// one of kel (ours), opencv, libyuv and memcpy (the same bytes as our source
// plus destination, read once and written once). The main program prints
// throughput per entry and, per group, the ratio of every entry to ours.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "kelcc.h"
#include "kelcore.h"

namespace kb {

constexpr int kW = 1920, kH = 1080;
constexpr KeliSize kRoi = {kW, kH};

// A plane of random bytes, 64-byte aligned, rows `step` bytes apart.
struct Plane {
  Plane(int rowBytes, int rows, uint32_t seed = 1, int stepPad = 0)
      : step(rowBytes + stepPad), bytes(static_cast<size_t>(step) * rows) {
    p = static_cast<uint8_t*>(std::aligned_alloc(64, (bytes + 63) & ~size_t(63)));
    std::mt19937 g(seed);
    for (size_t i = 0; i < bytes; ++i) p[i] = static_cast<uint8_t>(g());
  }
  ~Plane() { std::free(p); }
  Plane(const Plane&) = delete;
  Plane& operator=(const Plane&) = delete;
  int step;
  size_t bytes;
  uint8_t* p;
};

// Registers one entry; `bytes` is the traffic of one call (source plus
// destination), reported as bytes per second.
inline void add(const std::string& group, const std::string& impl, size_t bytes, std::function<void()> body) {
  benchmark::RegisterBenchmark((group + "/" + impl).c_str(), [bytes, body](benchmark::State& st) {
    for (auto _ : st) {
      body();
      benchmark::ClobberMemory();
    }
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations()) * static_cast<int64_t>(bytes));
  })->Unit(benchmark::kMicrosecond)->UseRealTime();
}

// The memcpy line of a group: reads `srcBytes`, writes `dstBytes` (the copy
// moves max of the two, from one buffer to another).
inline void addMemcpy(const std::string& group, size_t srcBytes, size_t dstBytes) {
  const size_t n = srcBytes > dstBytes ? srcBytes : dstBytes;
  auto a = std::make_shared<std::vector<uint8_t>>(n, 1), b = std::make_shared<std::vector<uint8_t>>(n, 2);
  add(group, "memcpy", srcBytes + dstBytes, [a, b, n] { std::memcpy(b->data(), a->data(), n); });
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

// Registration at load time: KB_REGISTER(fn) runs fn() before main.
struct Registrar {
  explicit Registrar(void (*fn)()) { fn(); }
};
#define KB_CAT2(a, b) a##b
#define KB_CAT(a, b) KB_CAT2(a, b)
#define KB_REGISTER(fn) static ::kb::Registrar KB_CAT(kbReg_, __LINE__)(fn)

}  // namespace kb
