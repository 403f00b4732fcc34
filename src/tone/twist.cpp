// Colour twist: 31 members over one row routine per depth and layout
// (formulas in twist.h, vector bodies in twist_vec.inl).
#include "tone/twist.h"

#include <xmmintrin.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace twist;

// ---- the caller's floating-point state -------------------------------------
// Integer members compute under round-to-nearest whatever the caller's mode,
// so their bytes never depend on it. They also mask every exception while
// they work (a NaN or infinite sum must not trap for a caller who unmasked
// one) and leave MXCSR exactly as they found it: mode, masks, DAZ/FTZ and the
// sticky flags, which therefore report only the caller's own arithmetic.
// Float members do not touch MXCSR: their sums round in the caller's mode.
class NearestMode {
 public:
  NearestMode() : saved_(_mm_getcsr()) { _mm_setcsr((saved_ & ~kRoundingBits) | kAllMasks); }
  ~NearestMode() { _mm_setcsr(saved_); }
  NearestMode(const NearestMode&) = delete;
  NearestMode& operator=(const NearestMode&) = delete;

 private:
  static constexpr unsigned kRoundingBits = 0x6000u;  // 00: to nearest, ties to even
  static constexpr unsigned kAllMasks = 0x1F80u;
  unsigned saved_;
};

// The local matrix, read once: group j = (m[0][j], m[1][j], m[2][j], 0) with
// the constants in group 3; the 4 x 4 form fills lane 3 from row 3.
TwistMat localMatrix(const Kel32f* t, int rows) {
  TwistMat m{};
  for (int j = 0; j < 4; ++j)
    for (int i = 0; i < rows; ++i) m.g[j][i] = t[4 * i + j];
  return m;
}
// The row pointers of an interleaved image (element 0 of each side).
template <class T>
Row3 rowsOf(const T* s, T* d) {
  return Row3{{reinterpret_cast<const uint8_t*>(s)}, {reinterpret_cast<uint8_t*>(d)}};
}
const Kel32f* flat(const Kel32f (*t)[4]) { return reinterpret_cast<const Kel32f*>(t); }

Chain<TwistKern> chainOf(TwistKern (*pick)(const TwistKernels&)) {
  return kel::chainOf(pick, sse41::kTwistKernels, avx2::kTwistKernels);
}

// One run through the kernels of the active path, then the scalar definition.
inline void runPixels(const Chain<TwistKern>& chain, TwistKern scalar, const TwistRow& io, int n) {
  scalar(io, runChain(chain, io, 0, n), n);
}

// 32f C3 without streaming stores: 16-pixel blocks first where the processor
// has AVX-512 (the blocks give the bytes of the other paths).
Chain<TwistKern> wide32f(const Chain<TwistKern>& chain) {
  if (activeIsa() < Isa::AVX512) return chain;
  return {{avx2::kTwistKernels.c3Wide32f, chain.k[0], chain.k[1]}};
}

// A run of more pixels than an int counts is handed on in pieces: every
// pixel has the same formula, so the pieces give the bytes of one run.
template <class F>
void forRun(int64_t n, int bytesPerPixelIn, int bytesPerPixelOut, const TwistRow& io, F&& f) {
  constexpr int64_t kPiece = int64_t(1) << 28;
  TwistRow piece = io;
  for (int64_t done = 0;; done += kPiece) {
    f(piece, static_cast<int>(std::min(kPiece, n - done)));
    if (n - done <= kPiece) break;
    piece.p.s[0] += kPiece * bytesPerPixelIn;
    piece.p.d[0] += kPiece * bytesPerPixelOut;
  }
}

// The walk of the 3 x 4 members: one run per row, top to bottom; an
// interleaved image whose rows follow each other with no gap on both sides
// is one run (every pixel has the same formula, so this only saves the
// per-row start-up, which dominates small images).
template <class T, TwistLayout L>
void walk3(const Row3& base, int srcStep, int dstStep, KeliSize roi, const TwistMat& m, const Chain<TwistKern>& chain) {
  if constexpr (L != kTwP3) {
    constexpr int kPx = (L == kTwC3 ? 3 : 4) * static_cast<int>(sizeof(T));
    if (srcStep == dstStep && int64_t(srcStep) == int64_t(roi.width) * kPx) {
      forRun(int64_t(roi.width) * roi.height, kPx, kPx, TwistRow{base, &m},
             [&](const TwistRow& io, int n) { runPixels(chain, row3<T, L>, io, n); });
      return;
    }
  }
  for (int r = 0; r < roi.height; ++r)
    runPixels(chain, row3<T, L>, TwistRow{rowOf(base, srcStep, dstStep, r), &m}, roi.width);
}

// The 3 x 4 members (32f C3 in place among them). 8u C3 runs go first
// through 64-pixel blocks where the processor has AVX-512 VBMI (the byte
// permutes), 32f C3 runs through 16-pixel blocks where it has AVX-512; then
// the AVX2 kernel, then the scalar definition; the blocks give the bytes of
// the other paths.
template <class T, TwistLayout L>
void myTwist(const Row3& base, int srcStep, int dstStep, KeliSize roi, const Kel32f* t) {
  const TwistMat m = localMatrix(t, 3);
  Chain<TwistKern> chain = chainOf([](const TwistKernels& k) { return k.k[Depth<T>::kId][L]; });
  if constexpr (std::is_same<T, Kel8u>::value && L == kTwC3)
    if (activeVbmi()) chain = {{avx2::kTwistKernels.c3Wide8u, chain.k[0]}};
  if constexpr (std::is_same<T, Kel32f>::value && L == kTwC3) chain = wide32f(chain);
  walk3<T, L>(base, srcStep, dstStep, roi, m, chain);
}

// 32f C3 (not in place): the same walk; runs go to the routine with
// non-temporal stores when the image has 34993 samples or more, except on
// AVX-512 processors: their 16-pixel blocks with plain stores run at
// memcpy's speed with the frame in cache and out of it (1920x1080: 26.7 and
// 13.4 GB/s, against 24.3 and 13.2 streamed). Neither choice changes a
// result.
void myTwist32fC3(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi, const Kel32f* t) {
  const int64_t w = roi.width, h = roi.height;
  if (activeIsa() >= Isa::AVX512 || w * 3 * h < 34993)
    return myTwist<Kel32f, kTwC3>(rowsOf(src, dst), srcStep, dstStep, roi, t);
  const TwistMat m = localMatrix(t, 3);
  walk3<Kel32f, kTwC3>(rowsOf(src, dst), srcStep, dstStep, roi, m, chainOf([](const TwistKernels& k) { return k.c3Nt; }));
}

// 32f C4 with the 4 x 4 matrix: one run when both steps equal the row's
// bytes, else one per row; a run whose two pointers lie on 16-byte
// boundaries goes to the routine that streams its stores.
void myTwist32fC4(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi, const Kel32f* t) {
  const TwistMat m = localMatrix(t, 4);
  const Chain<TwistKern> plain = chainOf([](const TwistKernels& k) { return k.c4; });
  const Chain<TwistKern> streamed = chainOf([](const TwistKernels& k) { return k.c4Nt; });
  auto run = [&](const TwistRow& io, int n) {
    const bool aligned = isAligned16(io.p.s[0]) && isAligned16(io.p.d[0]);
    runPixels(aligned ? streamed : plain, row4, io, n);
  };
  const Row3 base = rowsOf(src, dst);
  const int64_t w = roi.width;
  if (srcStep == dstStep && int64_t(srcStep) == w * 16) {
    forRun(w * roi.height, 16, 16, TwistRow{base, &m}, run);
    return;
  }
  for (int r = 0; r < roi.height; ++r) run(TwistRow{rowOf(base, srcStep, dstStep, r), &m}, roi.width);
}

// ---- outer functions -------------------------------------------------------------
// Checks in the order: any pointer (images, planes, matrix) null, then the
// size, then any step below 1.
// Integer depths run their rows under round-to-nearest; 32f as it stands.
template <class T, class F>
void inMode(F&& rows) {
  if constexpr (std::is_same<T, Kel32f>::value) {
    rows();
  } else {
    NearestMode mode;
    rows();
  }
}

template <class T, TwistLayout L>
KelStatus twistPx(const T* src, int srcStep, T* dst, int dstStep, KeliSize roi, const Kel32f (*t)[4]) {
  if (KelStatus st = checkC({src, dst, t}, {}, roi, {srcStep, dstStep})) return st;
  const Row3 base = rowsOf(src, dst);
  if constexpr (std::is_same<T, Kel32f>::value && L == kTwC3)
    myTwist32fC3(src, srcStep, dst, dstStep, roi, flat(t));
  else
    inMode<T>([&] { myTwist<T, L>(base, srcStep, dstStep, roi, flat(t)); });
  return kelStatusOk;
}

// In place, the one image is source and destination of the row routine
// (32f C3 in place never streams its stores).
template <class T, TwistLayout L>
KelStatus twistPxI(T* img, int step, KeliSize roi, const Kel32f (*t)[4]) {
  if (KelStatus st = checkC({img, t}, {}, roi, {step})) return st;
  const Row3 base = rowsOf(img, img);
  inMode<T>([&] { myTwist<T, L>(base, step, step, roi, flat(t)); });
  return kelStatusOk;
}

template <class T>
Row3 planeRow(const T* const* s, T* const* d) {
  Row3 r{};
  for (int k = 0; k < 3; ++k) {
    r.s[k] = reinterpret_cast<const uint8_t*>(s[k]);
    r.d[k] = reinterpret_cast<uint8_t*>(d[k]);
  }
  return r;
}

template <class T>
KelStatus twistP3(const T* const* src, int srcStep, T* const* dst, int dstStep, KeliSize roi,
                  const Kel32f (*t)[4]) {
  if (KelStatus st = checkC({t}, {planes(src, 3), planes(dst, 3)}, roi, {srcStep, dstStep})) return st;
  inMode<T>([&] { myTwist<T, kTwP3>(planeRow(src, dst), srcStep, dstStep, roi, flat(t)); });
  return kelStatusOk;
}
template <class T>
KelStatus twistIP3(T* const* img, int step, KeliSize roi, const Kel32f (*t)[4]) {
  if (KelStatus st = checkC({t}, {planes(img, 3)}, roi, {step})) return st;
  return twistP3<T>(img, step, img, step, roi, t);
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table: every member computes each pixel by its depth's sum of
// twist.h, one formula for the whole row.
//   depth   sum        limits (upper, lower)    conversion
//   8u      grouped A  255, 0                   to nearest even
//   8s      grouped B  127, (saturates to -128) to nearest even
//   16u     grouped A  65535, 0                 to nearest even, low 16 bits
//   16s     grouped A  32767, -32768            to nearest even, low 16 bits
//   32f     grouped A  none                     the sum itself
//   32f C4  4 x 4      none                     the sum itself
// A NaN sum takes the upper limit (the limits act as the vector min/max do).

extern "C" {

#define KEL_TWIST_MEMBERS(d, T)                                                                                  \
  KelStatus keliColorTwist32f_##d##_C3R(const T* src, int srcStep, T* dst, int dstStep, KeliSize roi,            \
                                        const Kel32f twist[3][4]) {                                              \
    return twistPx<T, kTwC3>(src, srcStep, dst, dstStep, roi, twist);                                            \
  }                                                                                                              \
  KelStatus keliColorTwist32f_##d##_C3IR(T* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]) {   \
    return twistPxI<T, kTwC3>(srcDst, srcDstStep, roi, twist);                                                   \
  }                                                                                                              \
  KelStatus keliColorTwist32f_##d##_AC4R(const T* src, int srcStep, T* dst, int dstStep, KeliSize roi,           \
                                         const Kel32f twist[3][4]) {                                             \
    return twistPx<T, kTwAC4>(src, srcStep, dst, dstStep, roi, twist);                                           \
  }                                                                                                              \
  KelStatus keliColorTwist32f_##d##_AC4IR(T* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]) {  \
    return twistPxI<T, kTwAC4>(srcDst, srcDstStep, roi, twist);                                                  \
  }                                                                                                              \
  KelStatus keliColorTwist32f_##d##_P3R(const T* const src[3], int srcStep, T* dst[3], int dstStep,              \
                                        KeliSize roi, const Kel32f twist[3][4]) {                                \
    return twistP3<T>(src, srcStep, dst, dstStep, roi, twist);                                                   \
  }                                                                                                              \
  KelStatus keliColorTwist32f_##d##_IP3R(T* srcDst[3], int srcDstStep, KeliSize roi, const Kel32f twist[3][4]) { \
    return twistIP3<T>(srcDst, srcDstStep, roi, twist);                                                          \
  }

KEL_TWIST_MEMBERS(8u, Kel8u)
KEL_TWIST_MEMBERS(8s, Kel8s)
KEL_TWIST_MEMBERS(16u, Kel16u)
KEL_TWIST_MEMBERS(16s, Kel16s)
#undef KEL_TWIST_MEMBERS

KelStatus keliColorTwist_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                 const Kel32f twist[3][4]) {
  return twistPx<Kel32f, kTwC3>(src, srcStep, dst, dstStep, roi, twist);
}
KelStatus keliColorTwist_32f_C3IR(Kel32f* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]) {
  return twistPxI<Kel32f, kTwC3>(srcDst, srcDstStep, roi, twist);
}
KelStatus keliColorTwist_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                  const Kel32f twist[3][4]) {
  return twistPx<Kel32f, kTwAC4>(src, srcStep, dst, dstStep, roi, twist);
}
KelStatus keliColorTwist_32f_AC4IR(Kel32f* srcDst, int srcDstStep, KeliSize roi, const Kel32f twist[3][4]) {
  return twistPxI<Kel32f, kTwAC4>(srcDst, srcDstStep, roi, twist);
}
KelStatus keliColorTwist_32f_P3R(const Kel32f* const src[3], int srcStep, Kel32f* dst[3], int dstStep,
                                 KeliSize roi, const Kel32f twist[3][4]) {
  return twistP3<Kel32f>(src, srcStep, dst, dstStep, roi, twist);
}
KelStatus keliColorTwist_32f_IP3R(Kel32f* srcDst[3], int srcDstStep, KeliSize roi, const Kel32f twist[3][4]) {
  return twistIP3<Kel32f>(srcDst, srcDstStep, roi, twist);
}
KelStatus keliColorTwist_32f_C4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                 const Kel32f twist[4][4]) {
  if (KelStatus st = checkC({src, dst, twist}, {}, roi, {srcStep, dstStep})) return st;
  myTwist32fC4(src, srcStep, dst, dstStep, roi, flat(twist));
  return kelStatusOk;
}

}  // extern "C"
