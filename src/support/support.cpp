// Internal primitives: copy and fill of 8-bit images, maximum, sum and mean
// of a float image, and the typed allocators. They run on the caller's
// thread and keep no state.
//
// The copy and the fill choose between ordinary and streamed (non-temporal)
// stores by the image's size against the largest cache; that choice changes
// no byte. The sums are another matter: their order of accumulation is part
// of the result (tone mapping scales by the mean), so both are written out
// lane by lane, and the vector form of the fast sum does exactly the lane
// additions of its scalar definition.
#include <emmintrin.h>

#include <cstring>

#include "frame/rows.h"
#include "kelcore.h"
#include "support/support.h"
#include "support/sum.h"

namespace kel {
namespace {

// The largest cache in bytes, or 0 where the core layer does not know it.
int64_t largestCache() {
  int size = 0;
  return kelGetMaxCacheSizeB(&size) == 0 ? size : 0;
}

// ---- copy ---------------------------------------------------------------------
// Streamed copy of one row: single bytes until the destination lies on 16
// bytes, then blocks of 256 KiB, each read ahead by one touch per cache line
// before its 16-byte non-temporal stores, then the rest likewise.
void copyRowStreamed(const uint8_t* s, uint8_t* d, int64_t n) {
  while (n > 0 && (reinterpret_cast<uintptr_t>(d) & 15)) *d++ = *s++, --n;
  constexpr int64_t kBlock = 0x40000;
  while (n >= 64) {
    const int64_t block = n < kBlock ? (n & ~int64_t{63}) : kBlock;
    volatile uint8_t sink = 0;
    for (int64_t i = 0; i < block; i += 64) sink = s[i];
    (void)sink;
    for (int64_t i = 0; i < block; i += 64) {
      const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
      const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 16));
      const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 32));
      const __m128i e = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 48));
      _mm_stream_si128(reinterpret_cast<__m128i*>(d + i), a);
      _mm_stream_si128(reinterpret_cast<__m128i*>(d + i + 16), b);
      _mm_stream_si128(reinterpret_cast<__m128i*>(d + i + 32), c);
      _mm_stream_si128(reinterpret_cast<__m128i*>(d + i + 48), e);
    }
    s += block, d += block, n -= block;
  }
  for (; n >= 16; s += 16, d += 16, n -= 16)
    _mm_stream_si128(reinterpret_cast<__m128i*>(d), _mm_loadu_si128(reinterpret_cast<const __m128i*>(s)));
  while (n-- > 0) *d++ = *s++;
}

// ---- fill -----------------------------------------------------------------------
void setRowStreamed(uint8_t v, uint8_t* d, int64_t n) {
  while (n > 0 && (reinterpret_cast<uintptr_t>(d) & 15)) *d++ = v, --n;
  const __m128i x = _mm_set1_epi8(static_cast<char>(v));
  for (; n >= 16; d += 16, n -= 16) _mm_stream_si128(reinterpret_cast<__m128i*>(d), x);
  while (n-- > 0) *d++ = v;
}

// ---- maximum --------------------------------------------------------------------
// m = m > x ? m : x, as maxps(m, x) does: a NaN sample takes the lane over
// until the next sample replaces it. Eight lanes run across the image.
void maxRow(const float* s, int n, __m128& m0, __m128& m1) {
  int i = 0;
  for (; i + 8 <= n; i += 8) {
    m0 = _mm_max_ps(m0, _mm_loadu_ps(s + i));
    m1 = _mm_max_ps(m1, _mm_loadu_ps(s + i + 4));
  }
  for (; i < n; ++i) m0 = _mm_max_ss(m0, _mm_load_ss(s + i));
}

}  // namespace
}  // namespace kel

using namespace kel;

KelStatus keliCopy_8u_C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (!src || !dst) return kelStatusNullPointer;
  if (roi.width < 1 || roi.height < 1) return kelStatusBadSize;
  const int64_t total = int64_t{roi.width} * roi.height;
  int64_t len = roi.width;
  int rows = roi.height;
  if (roi.width == srcStep && roi.width == dstStep) len = total, rows = 1;
  // Large images that would push the whole cache out go through streamed
  // stores; below that, the row copy of the C library is the fastest.
  if (total >= 0x100000) {
    const int64_t cache = largestCache();
    if (cache > 0 && total >= cache / 2) {
      for (int r = 0; r < rows; ++r) copyRowStreamed(rowAt(src, srcStep, r), rowAt(dst, dstStep, r), len);
      _mm_sfence();
      return kelStatusOk;
    }
  }
  for (int r = 0; r < rows; ++r) std::memcpy(rowAt(dst, dstStep, r), rowAt(src, srcStep, r), static_cast<size_t>(len));
  return kelStatusOk;
}

KelStatus keliSet_8u_C1R(Kel8u value, Kel8u* dst, int dstStep, KeliSize roi) {
  if (!dst) return kelStatusNullPointer;
  if (roi.width < 1 || roi.height < 1) return kelStatusBadSize;
  int64_t len = roi.width;
  int rows = roi.height;
  if (dstStep == roi.width) len = int64_t{roi.width} * roi.height, rows = 1;
  // The size test is on the 32-bit product, as the row count and width
  // arrive; the cache is asked only above 512 KiB.
  const int32_t area = static_cast<int32_t>(static_cast<uint32_t>(roi.width) * static_cast<uint32_t>(roi.height));
  bool streamed = false;
  if (area > 0x80000) {
    int cache = 0;
    streamed = kelGetMaxCacheSizeB(&cache) == 0 && area >= cache;
  }
  for (int r = 0; r < rows; ++r) {
    Kel8u* d = rowAt(dst, dstStep, r);
    if (streamed) {
      setRowStreamed(value, d, len);
      _mm_sfence();
    } else {
      std::memset(d, value, static_cast<size_t>(len));
    }
  }
  return kelStatusOk;
}

KelStatus keliMax_32f_C1R(const Kel32f* src, int srcStep, KeliSize roi, Kel32f* max) {
  if (!src || !max) return kelStatusNullPointer;
  if (roi.width < 1 || roi.height < 1) return kelStatusBadSize;
  // -FLT_MAX (bits 0xFF7FFFFF), not the first sample and not -infinity.
  const __m128 start = _mm_set1_ps(-3.40282347e38f);
  __m128 m0 = start, m1 = start;
  for (int r = 0; r < roi.height; ++r) maxRow(rowAt(src, srcStep, r), roi.width, m0, m1);
  m0 = _mm_max_ps(m0, m1);
  m0 = _mm_max_ps(m0, _mm_movehl_ps(m0, m0));
  m0 = _mm_max_ss(m0, _mm_shuffle_ps(m0, m0, 1));
  *max = _mm_cvtss_f32(m0);
  return kelStatusOk;
}

KelStatus keliSum_32f_C1R(const Kel32f* src, int srcStep, KeliSize roi, double* sum, int hint) {
  if (!src || !sum) return kelStatusNullPointer;
  if (roi.width < 1 || roi.height < 1) return kelStatusBadSize;
  if (hint == 2) {
    sum::Accurate acc;
    for (int r = 0; r < roi.height; ++r) acc.row(rowAt(src, srcStep, r), roi.width);
    *sum = acc.result();
  } else {
    double d0 = 0, d1 = 0;
    for (int r = 0; r < roi.height; ++r) {
      const sum::Pair s = sum::fastRow(rowAt(src, srcStep, r), roi.width);
      d0 += s.s0;
      d1 += s.s1;
    }
    *sum = d0 + d1;
  }
  return kelStatusOk;
}

KelStatus keliMean_32f_C1R(const Kel32f* src, int srcStep, KeliSize roi, double* mean, int hint) {
  if (!mean) return kelStatusNullPointer;
  double s = 0;
  if (KelStatus st = keliSum_32f_C1R(src, srcStep, roi, &s, hint)) return st;
  // The pixel count is a 32-bit product.
  const int32_t count = static_cast<int32_t>(static_cast<uint32_t>(roi.width) * static_cast<uint32_t>(roi.height));
  *mean = s / static_cast<double>(count);
  return kelStatusOk;
}

// ---- allocators -------------------------------------------------------------------
namespace {
template <class T>
T* typedAlloc(int len) {
  if (len < 1) return nullptr;
  return static_cast<T*>(kelMalloc(static_cast<size_t>(int64_t{len} * static_cast<int64_t>(sizeof(T)))));
}
}  // namespace

Kel16s* kelsMalloc_16s(int len) { return typedAlloc<Kel16s>(len); }
Kel16u* kelsMalloc_16u(int len) { return typedAlloc<Kel16u>(len); }
Kel32f* kelsMalloc_32f(int len) { return typedAlloc<Kel32f>(len); }
void kelsFree(void* ptr) { kelFree(ptr); }
