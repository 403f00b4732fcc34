// RGB <-> YUV 4:2:0: planar, with and without steps. The row driver walks
// pairs of rows; a last odd row and a last odd column are neither read nor
// written, and the outer function reports an odd size after the work.
#include "frame/checks.h"
#include "frame/rows.h"
#include "lumachroma/yuvsub.h"

namespace kel {
namespace {

using namespace yuvsub;

ChainSub chain(KernSub YuvSubKernels::*m) { return chainFor(m, sse41::kYuvSubKernels, avx2::kYuvSubKernels); }

// Columns of a row pair: whole chroma pairs only.
inline int cols(KeliSize roi) { return roi.width & ~1; }

// RGB C3 to planes. Aligned images could take aligned loads and stores;
// the results are the same bytes, so one routine serves both.
void myRGBToYUV420_C3P3(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], KeliSize roi) {
  const uint8_t* s[1] = {src};
  const int ss[1] = {srcStep};
  const int n = cols(roi), body = n & ~7;  // (w >> 1) & ~3 chroma pairs
  const ChainSub c = chain(&YuvSubKernels::rgbC3_Q1);
  myPairsSub(s, ss, 1, 1, dst, dstStep, 3, 1, roi.height, 0, [&](const SubRows& io) {
    row420Fwd<RGB3, Q1, Q2>(io, n, body, c);
  });
}
void myRGBToYUV420_P3(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], const int dstStep[3],
                      KeliSize roi) {
  const int ss[3] = {srcStep, srcStep, srcStep};
  // The whole row is tail. Its formula is exact in 32-bit lanes: the
  // kernels take whole blocks of it and the scalar form the rest.
  const int n = cols(roi);
  const ChainSub c = chain(&YuvSubKernels::rgbP3_Q3);
  myPairsSub(src, ss, 3, 3, dst, dstStep, 3, 1, roi.height, 0, [&](const SubRows& io) {
    row420Fwd<RGBP, Q3, Q3>(io, n, n, c);
  });
}
// Planes to RGB C3: every column by I2 (the vector blocks, then single
// pairs by the same formula). Aligned destinations change only the kind of
// store.
void myYUV420ToRGB_P3C3(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, KeliSize roi) {
  uint8_t* d[1] = {dst};
  const int ds[1] = {dstStep};
  const int n = cols(roi);
  const ChainSub c = chain(&YuvSubKernels::yuv420C3_I2);
  myPairsSub(src, srcStep, 3, 1, d, ds, 1, 1, roi.height, 0, [&](const SubRows& io) {
    rowInv<YuvP, RGB3, I2, I2>(io, 2, n, n, c);
  });
}
void myYUV420ToRGB_P3(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], int dstStep,
                      KeliSize roi) {
  const int ds[3] = {dstStep, dstStep, dstStep};
  // All tail, with 32-bit-lane kernels of the tail formula (as above).
  const int n = cols(roi);
  const ChainSub c = chain(&YuvSubKernels::yuv420P3_KA);
  myPairsSub(src, srcStep, 3, 1, dst, ds, 3, 3, roi.height, 0, [&](const SubRows& io) {
    rowInv<YuvP, RGBP, KA, KA>(io, 2, n, n, c);
  });
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table (n = columns of whole chroma pairs, w & ~1):
//                          body        body  tail
//  RGBToYUV420 C3P3R, C3P3 n & ~7      Q1    Q2   (8 pairs, then a group of 4)
//              P3R, P3     0           -     Q3
//  BGRToYUV420 AC4P3R      n & ~15     Q4    Q3   (source B, G, R, alpha ignored)
//  YUV420ToRGB P3C3R, P3C3 n           I2    -
//              P3R, P3     0           -     KA
//              P3AC4R      w & ~3      IA    KR   (alpha 0)
//  YUV420ToBGR P3C3R       n           I3    -    (B, G, R; minimum 2 by 2)
// The forms without steps take the steps of a tight image: 3 * w or w, and
// w >> 1 for the chroma planes.

extern "C" {

KelStatus keliRGBToYUV420_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  myRGBToYUV420_C3P3(src, srcStep, dst, dstStep, roi);
  return status420(roi);
}

KelStatus keliRGBToYUV420_8u_C3P3(const Kel8u* src, Kel8u* dst[3], KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  const TightSteps t = tight420(roi.width);
  const int ds[3] = {t.full, t.chroma, t.chroma};
  myRGBToYUV420_C3P3(src, t.c3, dst, ds, roi);
  return status420(roi);
}

KelStatus keliRGBToYUV420_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], const int dstStep[3],
                                 KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  myRGBToYUV420_P3(src, srcStep, dst, dstStep, roi);
  return status420(roi);
}

KelStatus keliRGBToYUV420_8u_P3(const Kel8u* const src[3], Kel8u* dst[3], KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  const TightSteps t = tight420(roi.width);
  const int ds[3] = {t.full, t.chroma, t.chroma};
  myRGBToYUV420_P3(src, t.full, dst, ds, roi);
  return status420(roi);
}

KelStatus keliBGRToYUV420_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                    KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  const uint8_t* s[1] = {src};
  const int ss[1] = {srcStep};
  const int n = cols(roi), body = n & ~15;  // (w >> 1) & ~7 chroma pairs
  const ChainSub c = chain(&YuvSubKernels::bgrx_Q4);
  myPairsSub(s, ss, 1, 1, dst, dstStep, 3, 1, roi.height, 0, [&](const SubRows& io) {
    row420Fwd<BGRX, Q4, Q3>(io, n, body, c);
  });
  return status420(roi);
}

KelStatus keliYUV420ToRGB_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                   KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myYUV420ToRGB_P3C3(src, srcStep, dst, dstStep, roi);
  return status420(roi);
}

KelStatus keliYUV420ToRGB_8u_P3C3(const Kel8u* const src[3], Kel8u* dst, KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  const TightSteps t = tight420(roi.width);
  const int ss[3] = {t.full, t.chroma, t.chroma};
  myYUV420ToRGB_P3C3(src, ss, dst, t.c3, roi);
  return status420(roi);
}

KelStatus keliYUV420ToRGB_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], int dstStep,
                                 KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  myYUV420ToRGB_P3(src, srcStep, dst, dstStep, roi);
  return status420(roi);
}

KelStatus keliYUV420ToRGB_8u_P3(const Kel8u* const src[3], Kel8u* dst[3], KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  const TightSteps t = tight420(roi.width);
  const int ss[3] = {t.full, t.chroma, t.chroma};
  myYUV420ToRGB_P3(src, ss, dst, t.full, roi);
  return status420(roi);
}

// The row loop stands in the outer function.
KelStatus keliYUV420ToRGB_8u_P3AC4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                    KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  uint8_t* d[1] = {dst};
  const int ds[1] = {dstStep};
  const int n = cols(roi), body = roi.width & ~3;
  const ChainSub c = chain(&YuvSubKernels::yuv420C4_IA);
  myPairsSub(src, srcStep, 3, 1, d, ds, 1, 1, roi.height, 0, [&](const SubRows& io) {
    rowInv<YuvP, RGBA, IA, KR>(io, 2, n, body, c);
  });
  return status420(roi);
}

KelStatus keliYUV420ToBGR_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                   KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi, 2, 2)) return st;
  uint8_t* d[1] = {dst};
  const int ds[1] = {dstStep};
  const int n = cols(roi);
  const ChainSub c = chain(&YuvSubKernels::yuv420BGR_I3);
  myPairsSub(src, srcStep, 3, 1, d, ds, 1, 1, roi.height, 0, [&](const SubRows& io) {
    rowInv<YuvP, BGR3, I3, I3>(io, 2, n, n, c);
  });
  return status420(roi);
}

}  // extern "C"
