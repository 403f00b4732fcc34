// Vocabulary shared by the colour-model families (XYZ, YCC, gray, and the
// models built on them): steps in elements, the offset form of signed 16-bit
// samples, float-to-integer truncation as the vector units do it, and the
// row routine and image loop of a three-channel pixel conversion at any depth.
#pragma once

#include <xmmintrin.h>

#include <cstddef>
#include <cstdint>

#include "frame/arith.h"
#include "frame/checks.h"
#include "frame/cpu.h"
#include "frame/parallel.h"

namespace kel {
namespace {
namespace colour {

// ---- steps ---------------------------------------------------------------
// A byte step becomes a step in samples by an arithmetic shift: an odd step
// of a 16-bit image acts as the next lower even one, and so on.
template <class T>
constexpr int kElemShift = sizeof(T) == 1 ? 0 : (sizeof(T) == 2 ? 1 : 2);
template <class T>
inline int stepElems(int step) {
  return step >> kElemShift<T>;
}
template <class T>
inline T* rowIn(T* p, int stepEl, int r) {
  return p + static_cast<ptrdiff_t>(stepEl) * r;
}

// ---- the 16s offset form -----------------------------------------------
// Signed 16-bit samples carry no sign of their own in the colour models:
// -32768 is black and 32767 full scale, i.e. s + 32768 on the 16u scale.
inline int32_t in16s(int16_t s) { return static_cast<int32_t>(s) + 32768; }
// A 16u-scale result back to 16s, saturated. The subtraction wraps in 32
// bits as the vector lanes do, which matters only for the integer
// indefinite of an out-of-range float conversion.
inline int16_t out16sSat(int32_t v) {
  return static_cast<int16_t>(sat16s(static_cast<int32_t>(static_cast<uint32_t>(v) - 32768u)));
}
// The same keeping the low 16 bits.
inline int16_t out16sWrap(int32_t v) { return static_cast<int16_t>(static_cast<uint16_t>(v - 32768u)); }

// ---- float to integer -----------------------------------------------------
// Toward zero, with the integer indefinite (INT32_MIN) for NaN and values
// outside the 32-bit range, exactly as cvttps2dq gives it in every lane; the
// scalar definitions use the same instruction so that no path can differ.
inline int32_t truncF(float x) { return _mm_cvtt_ss2si(_mm_set_ss(x)); }

// To nearest, ties to even (the default rounding mode), with the same
// integer indefinite as truncF; as cvtps2dq gives it.
inline int32_t roundF(float x) { return _mm_cvt_ss2si(_mm_set_ss(x)); }

// ---- arithmetic in the written operand order ----------------------------------
// Where both operands of an addition, subtraction or multiplication are NaN,
// the processor keeps the first one's payload (quieted). A compiler is free
// to swap the operands of an add or a multiply, and to turn a - c * b into
// a + (-c) * b and then swap that; the NaN a float member stores would then
// follow the compiler. The float forms whose results carry NaNs through do
// such operations through these words: one instruction each, operands in the
// order written, as the vector lanes do them. (Divisions are never swapped.)
// KEL_COLOUR_OP(type, "add", "ss" or "ps", a, b): the body of such a word, in
// the VEX form where the file is built for AVX (no mixing of the encodings).
#if defined(__AVX__)
#define KEL_COLOUR_OP(T, op, sfx, a, b)                          \
  T r;                                                           \
  __asm__("v" op sfx " %2, %1, %0" : "=x"(r) : "x"(a), "x"(b)); \
  return r
#else
#define KEL_COLOUR_OP(T, op, sfx, a, b)          \
  __asm__(op sfx " %1, %0" : "+x"(a) : "x"(b)); \
  return a
#endif
inline float addF(float a, float b) { KEL_COLOUR_OP(float, "add", "ss", a, b); }
inline float subF(float a, float b) { KEL_COLOUR_OP(float, "sub", "ss", a, b); }
inline float mulF(float a, float b) { KEL_COLOUR_OP(float, "mul", "ss", a, b); }

// ---- reciprocals ----------------------------------------------------------
// arcp: the processor's approximate reciprocal (rcpss), unrefined. Every path
// uses the same 128/256-bit instruction (never the 14-bit AVX-512 form), so
// scalar and vector results agree bit for bit on one processor.
inline float arcp(float a) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(a))); }
// nrcp: arcp refined once, in this order: (r + r) - ((a * r) * r).
inline float nrcp(float a) {
  const float r = arcp(a);
  return (r + r) - ((a * r) * r);
}

// Limits of the float forms: the lower bound first, then the upper; a NaN
// passes through unchanged (the vector max/min are ordered to match).
inline float limit01(float v) {
  v = v < 0.0f ? 0.0f : v;
  return v > 1.0f ? 1.0f : v;
}

// ---- three-channel rows ---------------------------------------------------
// A vector kernel converts pixels from x on in whole blocks while a block
// fits below n and returns the column where it stopped.
template <class T>
using KernPx = int (*)(const T* s, T* d, int x, int n);

// The row routine of a C3 or AC4 conversion: body [0, body), then tail.
// Form::px(const T* in, T* out) converts one pixel; an AC4 destination's
// fourth sample is never touched. The kernels of the active path take what
// they can of the body, the scalar body definition the rest of it.
template <class T, int Ch, class Body, class Tail>
inline void rowPx(const T* s, T* d, int w, int body, const Chain<KernPx<T>>& chain) {
  int x = 0;
  for (KernPx<T> k : chain.k)
    if (k) x = k(s, d, x, body);
  for (; x < body; ++x) Body::px(s + Ch * x, d + Ch * x);
  for (; x < w; ++x) Tail::px(s + Ch * x, d + Ch * x);
}

// The image loop of the colour models: rows by static schedule above 4096
// pixels, on the caller's thread at and below it. Steps are in elements.
template <class S, class D, class RowFn>
inline void imageRows(const S* src, int srcStepEl, D* dst, int dstStepEl, KeliSize roi, RowFn&& row) {
  parallelRowsAbove(roi.width, roi.height, kRowsThreshold,
                    [&](int r) { row(rowIn(src, srcStepEl, r), rowIn(dst, dstStepEl, r)); });
}

// A whole three-channel member: checks (pointers, then size), the image
// loop over the row routine, and the status. Ch is 3 for C3, 4 for AC4;
// `body` is the body's pixel count for the width.
template <class T, int Ch, class Body, class Tail>
inline KelStatus convertPx(const T* src, int srcStep, T* dst, int dstStep, KeliSize roi, int (*body)(int),
                           const Chain<KernPx<T>>& chain) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  const int w = roi.width, b = body(w);
  // A small image (the serial branch) whose rows are all body and follow
  // each other with no gap on both sides is one row of body pixels: every
  // body pixel has the same formula, so only the per-row start-up goes.
  if (static_cast<int64_t>(w) * roi.height <= kRowsThreshold && b == w && stepElems<T>(srcStep) == Ch * w &&
      stepElems<T>(dstStep) == Ch * w) {
    rowPx<T, Ch, Body, Tail>(src, dst, w * roi.height, w * roi.height, chain);
    return kelStatusOk;
  }
  imageRows(src, stepElems<T>(srcStep), dst, stepElems<T>(dstStep), roi,
            [&](const T* s, T* d) { rowPx<T, Ch, Body, Tail>(s, d, w, b, chain); });
  return kelStatusOk;
}

// Pixel-count rules of the bodies.
inline int body8(int w) { return w & ~7; }
inline int body4(int w) { return w & ~3; }

}  // namespace colour
}  // namespace
}  // namespace kel
