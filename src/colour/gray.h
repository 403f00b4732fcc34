// Weighted sums of three channels into one: the fixed luma weights
// 0.299, 0.587, 0.114 (RGBToGray) or the caller's three weights
// (ColorToGray), at 8u, 16u, 16s and 32f. The 8u form turns the weights into
// 12-bit fixed point; the other depths use them as floats.
#pragma once

#include <emmintrin.h>

#include "colour/colour_common.h"

namespace kel {

// A gray body kernel: pixels from x on in whole blocks below n, with the
// weights of the call; returns the column where it stopped.
template <class T, class W>
using KernGray = int (*)(const T* s, T* d, int x, int n, const W* w);

struct GrayKernels {
  KernGray<uint8_t, uint16_t> g8C3, g8AC4;  // form GB8
  KernGray<uint16_t, float> g16uC3, g16uAC4;
  KernGray<int16_t, float> g16sC3, g16sAC4;
  KernGray<float, float> g32fC3, g32fAC4;
};
namespace sse41 {
extern const GrayKernels kGrayKernels;
}
namespace avx2 {
extern const GrayKernels kGrayKernels;
}
namespace avx512 {
extern const GrayKernels kGrayKernels;
}

namespace {
namespace gray {

// ---- weights ------------------------------------------------------------------
inline constexpr uint16_t kW8[3] = {1225, 2404, 467};  // Q12, sum 4096
inline constexpr float kWf[3] = {0.299f, 0.587f, 0.114f};

// A caller's weight in Q12: trunc(0.5 + 4096 c) in double precision, the low
// 16 bits kept, so a negative weight acts as a large unsigned factor. A value
// outside the 64-bit range (or NaN) gives the integer indefinite of the
// 64-bit conversion, whose low 16 bits are 0: such a weight contributes
// nothing.
inline uint16_t weight8(float c) {
  return static_cast<uint16_t>(_mm_cvttsd_si64(_mm_set_sd(0.5 + 4096.0 * static_cast<double>(c))));
}

// ---- 8u -----------------------------------------------------------------------
// GB8: 16-bit factors, each term truncated by itself, sums saturating at
// 65535, read back as signed 16 bits: a sum of 32768 or more gives 0.
struct GB8 {
  static uint8_t px(const uint8_t* i, const uint16_t* w) {
    const int s = addu(addu(addu(mulhu(i[0] << 8, w[0]), mulhu(i[1] << 8, w[1])), mulhu(i[2] << 8, w[2])), 8);
    return static_cast<uint8_t>(clip8(static_cast<int16_t>(s) >> 4));
  }
};
// GT8: 32-bit unsigned, rounded, low byte stored.
struct GT8 {
  static uint8_t px(const uint8_t* i, const uint16_t* w) {
    const uint32_t s = i[0] * uint32_t{w[0]} + i[1] * uint32_t{w[1]} + i[2] * uint32_t{w[2]} + 2048u;
    return static_cast<uint8_t>(s >> 12);
  }
};

// ---- floats ---------------------------------------------------------------------
// Weights first in each product, sums left to right, in that operand order
// (colour::addF, mulF): where both operands are NaN, the first one's payload.
inline float sumF(float a, float b, float c, const float* w) {
  using colour::addF;
  using colour::mulF;
  return addF(addF(mulF(w[0], a), mulF(w[1], b)), mulF(w[2], c));
}

// 16u: truncated, the low 16 bits stored; body and tail alike.
struct G16u {
  static uint16_t px(const uint16_t* i, const float* w) {
    return static_cast<uint16_t>(colour::truncF(sumF(i[0], i[1], i[2], w)));
  }
};
// 16s on the offset form: the body saturates, the tail keeps the low 16 bits.
struct GB16s {
  static int16_t px(const int16_t* i, const float* w) {
    using colour::in16s;
    return colour::out16sSat(colour::truncF(sumF(in16s(i[0]), in16s(i[1]), in16s(i[2]), w)));
  }
};
struct GT16s {
  static int16_t px(const int16_t* i, const float* w) {
    using colour::in16s;
    return colour::out16sWrap(colour::truncF(sumF(in16s(i[0]), in16s(i[1]), in16s(i[2]), w)));
  }
};
// 32f: no limit.
struct G32f {
  static float px(const float* i, const float* w) { return sumF(i[0], i[1], i[2], w); }
};

// The row routine: body [0, body), then tail.
template <class T, class W, int Ch, class Body, class Tail>
inline void rowGray(const T* s, T* d, int w, int body, const W* wt, const Chain<KernGray<T, W>>& chain) {
  int x = 0;
  for (KernGray<T, W> k : chain.k)
    if (k) x = k(s, d, x, body, wt);
  for (; x < body; ++x) d[x] = Body::px(s + Ch * x, wt);
  for (; x < w; ++x) d[x] = Tail::px(s + Ch * x, wt);
}

}  // namespace gray
}  // namespace

}  // namespace kel
