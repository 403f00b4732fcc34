// The uniform random source of the dithering noise: a subtract-with-borrow
// sequence added to a linear congruential one, scaled into [low, high] in
// double precision. The 16s and 32f variants run the same sequence and
// differ in how the range is widened and how a sample is stored.
#include <cstring>

#include "support/support.h"

namespace {

constexpr int32_t kId16s = 36;
constexpr int32_t kId32f = 37;
constexpr uint32_t kLcgStart = 1131199209u;  // 0x436CBAE9
constexpr uint32_t kMul = 69069u;
constexpr uint32_t kAdd = 1013904243u;

// A hair above 2^-32: the stored constant 2.3283064365387e-10, whose bits are
// 0x3DF0000000000007 (not the exact power of two).
double scaleFactor() {
  const uint64_t bits = 0x3DF0000000000007ull;
  double d;
  std::memcpy(&d, &bits, sizeof d);
  return d;
}

void seedState(KelRandUniformState* st, int32_t id, uint32_t seed) {
  st->idCtx = id;
  st->seed = seed;
  st->lcg = kLcgStart;
  st->a = seed;
  st->b = seed * kMul + kAdd;
  st->c = st->b * kMul + kAdd;
  st->borrow = -1;
}

// One step of the sequence: the raw signed value of the next sample.
inline int32_t next(uint32_t& lcg, uint32_t& a, uint32_t& b, uint32_t& c, int32_t& borrow) {
  lcg = lcg * kMul + kAdd;
  uint32_t d = b - c + static_cast<uint32_t>(borrow);
  borrow = static_cast<int32_t>(d) < 0 ? -1 : 0;
  if (borrow) d -= 18;
  c = b;
  b = a;
  a = d;
  return static_cast<int32_t>(d + lcg);
}

template <class T, int32_t Id, class Store>
KelStatus generate(T* dst, int len, KelRandUniformState* st, Store store) {
  if (!dst || !st) return kelStatusNullPointer;
  if (len < 1) return kelStatusBadSize;
  if (st->idCtx != Id) return kelStatusBadContext;
  uint32_t lcg = st->lcg, a = st->a, b = st->b, c = st->c;
  int32_t borrow = st->borrow;
  const double mean = st->mean, scale = st->scale;
  for (int i = 0; i < len; ++i) {
    const int32_t raw = next(lcg, a, b, c, borrow);
    dst[i] = store(mean + scale * static_cast<double>(raw));
  }
  st->lcg = lcg, st->a = a, st->b = b, st->c = c, st->borrow = borrow;
  return kelStatusOk;
}

KelStatus release(KelRandUniformState* st, int32_t id) {
  if (!st) return kelStatusNullPointer;
  if (st->idCtx != id) return kelStatusBadContext;
  kelsFree(st);
  return kelStatusOk;
}

}  // namespace

// The record lives in a block of 56 elements of the variant's type, more
// than it needs.
KelStatus kelsRandUniformInitAlloc_16s(KelRandUniformState** state, Kel16s low, Kel16s high, uint32_t seed) {
  if (!state) return kelStatusNullPointer;
  static_assert(sizeof(KelRandUniformState) <= 56 * sizeof(Kel16s));
  auto* st = reinterpret_cast<KelRandUniformState*>(kelsMalloc_16s(56));
  if (!st) return kelStatusNoMemory;
  seedState(st, kId16s, seed);
  st->range.s[0] = low;
  st->range.s[1] = high;
  // Sum and difference as 32-bit integers, then widened.
  st->mean = static_cast<double>(int32_t{low} + int32_t{high}) * 0.5;
  st->scale = static_cast<double>(int32_t{high} - int32_t{low}) * scaleFactor();
  *state = st;
  return kelStatusOk;
}

KelStatus kelsRandUniformInitAlloc_32f(KelRandUniformState** state, Kel32f low, Kel32f high, uint32_t seed) {
  if (!state) return kelStatusNullPointer;
  auto* st = reinterpret_cast<KelRandUniformState*>(kelsMalloc_32f(56));
  if (!st) return kelStatusNoMemory;
  seedState(st, kId32f, seed);
  st->range.f[0] = low;
  st->range.f[1] = high;
  // Sum and difference in single precision, then widened.
  const float sum = low + high, diff = high - low;
  st->mean = static_cast<double>(sum) * 0.5;
  st->scale = static_cast<double>(diff) * scaleFactor();
  *state = st;
  return kelStatusOk;
}

KelStatus kelsRandUniform_16s(Kel16s* dst, int len, KelRandUniformState* state) {
  // Toward zero to 32 bits, the low 16 bits kept.
  return generate<Kel16s, kId16s>(dst, len, state,
                                  [](double x) { return static_cast<Kel16s>(static_cast<int32_t>(x)); });
}

KelStatus kelsRandUniform_32f(Kel32f* dst, int len, KelRandUniformState* state) {
  return generate<Kel32f, kId32f>(dst, len, state, [](double x) { return static_cast<Kel32f>(x); });
}

KelStatus kelsRandUniformFree_16s(KelRandUniformState* state) { return release(state, kId16s); }
KelStatus kelsRandUniformFree_32f(KelRandUniformState* state) { return release(state, kId32f); }
