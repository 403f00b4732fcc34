// Tone mapping of a float image into 8 bits with one global scale f: the
// per-sample forms of the linear (maximum to 255) and mean (twice the mean
// to 255) members, and their vector kernels.
#pragma once

#include <xmmintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "frame/cpu.h"
#include "frame/rows.h"

namespace kel {

// Maps samples x.. of a float row (at any byte address) to bytes in whole
// vector blocks while a block fits below n; returns where it stopped.
using KernTone = int (*)(const uint8_t* s, uint8_t* d, int x, int n, float f);

struct ToneKernels {
  KernTone linear, mean;
};
namespace sse41 {
extern const ToneKernels kToneKernels;
}
namespace avx2 {
extern const ToneKernels kToneKernels;
}

namespace {
namespace tone {

// Truncation as cvttss2si gives it (and cvttps2dq in every lane): toward
// zero, with INT32_MIN for NaN and for products outside the 32-bit range.
inline int32_t trunc32(float p) { return _mm_cvtt_ss2si(_mm_set_ss(p)); }

// Linear: the low 8 bits of trunc(f x), no limit; a negative product wraps
// (-1.5 gives 255). A product beyond 32 bits or NaN gives 0.
inline uint8_t linear(float x, float f) { return static_cast<uint8_t>(trunc32(f * x)); }

// Mean: trunc(f x) limited to 0..255. The upper limit is applied to the
// float product first, so that a product beyond 32 bits (or infinity) gives
// 255 as the limit says; NaN gives 0. The order of the comparison (255 < p)
// is that of minps(255, p), which hands NaN on.
inline uint8_t mean(float x, float f) {
  float p = f * x;
  p = 255.0f < p ? 255.0f : p;
  const int32_t v = trunc32(p);
  return static_cast<uint8_t>(v < 0 ? 0 : v);
}

inline float sampleAt(const uint8_t* s, int x) { return loadAt<float>(s, x); }

}  // namespace tone
}  // namespace

}  // namespace kel
