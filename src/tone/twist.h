// Colour twist: an affine map of three channels with the caller's 3 x 4
// matrix (weights and an additive constant per output channel), and a 4 x 4
// linear map of four float channels.
//
// Every output channel is a sum of single-precision products in a fixed
// grouping (each product rounded, no fused multiply-add):
//   8u, 16u, 16s, 32f   (m[i][3] + c0 m[i][0]) + (c2 m[i][2] + c1 m[i][1])
//   8s                  ((c0 m[i][0] + c1 m[i][1]) + c2 m[i][2]) + m[i][3]
//   32f 4 x 4           ((c0 m[i][0] + c1 m[i][1]) + c2 m[i][2]) + c3 m[i][3]
// Integer forms then limit the float sum (upper limit first, then lower) and
// convert to nearest, ties to even. The row routines have one formula for
// every pixel: there is no body/tail split, and a pixel's value does not
// depend on its column, on the run it falls in or on the vector path.
#pragma once

#include <xmmintrin.h>

#include <cstdint>
#include <cstring>

#include "frame/cpu.h"
#include "frame/rows.h"
#include "frame/pixel3.h"
#include "kelcc.h"

namespace kel {

// The caller's matrix transposed once per call: group j holds the weights of
// input channel j for the output channels 0..3 (lane i = m[i][j]); for the
// 3 x 4 form group 3 holds the constants and lane 3 of every group is 0.
struct TwistMat {
  alignas(16) float g[4][4];
};

// One run of pixels: row pointers (element 0 for interleaved layouts, one per
// plane for P3) and the local matrix.
struct TwistRow {
  Row3 p;
  const TwistMat* m;
};
// A vector kernel: pixels from x on in whole blocks while a block fits
// below n; returns the column where it stopped.
using TwistKern = int (*)(const TwistRow& io, int x, int n);

// Sample depths and layouts of the member table.
enum TwistDepth : int { kTw8u, kTw8s, kTw16u, kTw16s, kTw32f, kTwDepths };
// kTwC4 (four float channels, 4 x 4 matrix) stands outside the table.
enum TwistLayout : int { kTwC3, kTwAC4, kTwP3, kTwLayouts, kTwC4 = kTwLayouts };

struct TwistKernels {
  TwistKern k[kTwDepths][kTwLayouts];
  TwistKern c3Nt;        // 32f C3 with non-temporal stores
  TwistKern c4, c4Nt;    // 32f C4, 4 x 4 matrix; c4Nt streams its stores
  // 8u C3 in blocks of 64 pixels on processors with AVX-512 VBMI (AVX2
  // table only; null elsewhere).
  TwistKern c3Wide8u;
  // 32f C3 in blocks of 16 pixels on processors with AVX-512 (AVX2 table
  // only; null elsewhere).
  TwistKern c3Wide32f;
};
namespace sse41 {
extern const TwistKernels kTwistKernels;
}
namespace avx2 {
extern const TwistKernels kTwistKernels;
}

namespace {
namespace twist {

// ---- sample access ------------------------------------------------------------
// Steps are bytes and are used as bytes, so a 16-bit or float row may start
// anywhere: samples are moved with memcpy, which compiles to plain moves.
template <class T>
inline T ld(const uint8_t* p, int i) {
  return loadAt<T>(p, i);
}
template <class T>
inline void st(uint8_t* p, int i, T v) {
  storeAt(p, v, i);
}

// ---- the sums -----------------------------------------------------------------
inline float sumA(const TwistMat& m, int i, float c0, float c1, float c2) {
  return (m.g[3][i] + c0 * m.g[0][i]) + (c2 * m.g[2][i] + c1 * m.g[1][i]);
}
inline float sumB(const TwistMat& m, int i, float c0, float c1, float c2) {
  return ((c0 * m.g[0][i] + c1 * m.g[1][i]) + c2 * m.g[2][i]) + m.g[3][i];
}

// Float members store their sums as they stand, NaNs included. Where both
// operands of an addition are NaN, the processor keeps the first one's
// payload, and a compiler may swap the operands of an add; so the float
// members add through this fixed order (the NaN of `a` wins), here and in
// the vector bodies, and every path stores the same NaN.
inline float addA(float a, float b) {
  __asm__("addss %1, %0" : "+x"(a) : "x"(b));
  return a;
}
inline float sumA32f(const TwistMat& m, int i, float c0, float c1, float c2) {
  return addA(addA(m.g[3][i], c0 * m.g[0][i]), addA(c2 * m.g[2][i], c1 * m.g[1][i]));
}

// Limits as the vector min/max give them: `upper` returns hi for a NaN, so
// a NaN sum ends at the upper limit of its depth.
inline float upper(float v, float hi) { return v < hi ? v : hi; }
inline float lower(float v, float lo) { return v > lo ? v : lo; }
// To nearest, ties to even, under the rounding mode in force (the integer
// members set round-to-nearest); NaN and values beyond 32 bits give the
// integer indefinite, INT32_MIN, as cvtps2dq does.
inline int32_t cvtn(float v) { return _mm_cvt_ss2si(_mm_set_ss(v)); }

// ---- depths ---------------------------------------------------------------------
template <class T>
struct Depth;
// 8u, 16u, 16s: both limits on the float sum, then the conversion; the
// store keeps the low bits (C++20 conversions to narrower types wrap).
template <class T, TwistDepth Id, int Hi, int Lo>
struct LimitedDepth {
  static constexpr TwistDepth kId = Id;
  static float sum(const TwistMat& m, int i, float c0, float c1, float c2) { return sumA(m, i, c0, c1, c2); }
  static T out(float s) { return static_cast<T>(cvtn(lower(upper(s, float(Hi)), float(Lo)))); }
};
template <>
struct Depth<Kel8u> : LimitedDepth<Kel8u, kTw8u, 255, 0> {};
template <>
struct Depth<Kel16u> : LimitedDepth<Kel16u, kTw16u, 65535, 0> {};
template <>
struct Depth<Kel16s> : LimitedDepth<Kel16s, kTw16s, 32767, -32768> {};
// 8s: no lower limit in float; the converted value saturates to -128.
template <>
struct Depth<Kel8s> {
  static constexpr TwistDepth kId = kTw8s;
  static float sum(const TwistMat& m, int i, float c0, float c1, float c2) { return sumB(m, i, c0, c1, c2); }
  static Kel8s out(float s) {
    const int32_t r = cvtn(upper(s, 127.0f));
    return static_cast<Kel8s>(r < -128 ? -128 : r);
  }
};
// 32f: the sum as it stands, rounded as the caller's mode says.
template <>
struct Depth<Kel32f> {
  static constexpr TwistDepth kId = kTw32f;
  static float sum(const TwistMat& m, int i, float c0, float c1, float c2) { return sumA32f(m, i, c0, c1, c2); }
  static Kel32f out(float s) { return s; }
};

// ---- layouts ----------------------------------------------------------------------
// Samples of pixel x: interleaved with `Ch` samples per pixel, or planar.
template <TwistLayout L>
struct Lay3 {
  static constexpr int kCh = L == kTwAC4 ? 4 : 3;
  static const uint8_t* src(const Row3& r, int k) { return L == kTwP3 ? r.s[k] : r.s[0]; }
  static uint8_t* dst(const Row3& r, int k) { return L == kTwP3 ? r.d[k] : r.d[0]; }
  static int at(int x, int k) { return L == kTwP3 ? x : kCh * x + k; }
};

// The scalar definition of a 3 x 4 row routine on pixels [x, n). An AC4
// source's fourth sample is not read, a destination's not written.
template <class T, TwistLayout L>
inline int row3(const TwistRow& io, int x, int n) {
  using D = Depth<T>;
  using P = Lay3<L>;
  const TwistMat& m = *io.m;
  for (; x < n; ++x) {
    const float c0 = static_cast<float>(ld<T>(P::src(io.p, 0), P::at(x, 0)));
    const float c1 = static_cast<float>(ld<T>(P::src(io.p, 1), P::at(x, 1)));
    const float c2 = static_cast<float>(ld<T>(P::src(io.p, 2), P::at(x, 2)));
    const T o0 = D::out(D::sum(m, 0, c0, c1, c2));
    const T o1 = D::out(D::sum(m, 1, c0, c1, c2));
    const T o2 = D::out(D::sum(m, 2, c0, c1, c2));
    st<T>(P::dst(io.p, 0), P::at(x, 0), o0);
    st<T>(P::dst(io.p, 1), P::at(x, 1), o1);
    st<T>(P::dst(io.p, 2), P::at(x, 2), o2);
  }
  return x;
}

inline float sum4(const TwistMat& m, int i, float c0, float c1, float c2, float c3) {
  return addA(addA(addA(c0 * m.g[0][i], c1 * m.g[1][i]), c2 * m.g[2][i]), c3 * m.g[3][i]);
}

// The scalar definition of the 4 x 4 row routine (all four samples written).
inline int row4(const TwistRow& io, int x, int n) {
  const TwistMat& m = *io.m;
  for (; x < n; ++x) {
    const uint8_t* s = io.p.s[0];
    float c[4];
    for (int k = 0; k < 4; ++k) c[k] = ld<float>(s, 4 * x + k);
    float o[4];
    for (int i = 0; i < 4; ++i) o[i] = sum4(m, i, c[0], c[1], c[2], c[3]);
    for (int i = 0; i < 4; ++i) st<float>(io.p.d[0], 4 * x + i, o[i]);
  }
  return x;
}

}  // namespace twist
}  // namespace

}  // namespace kel
