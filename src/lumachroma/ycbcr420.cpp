// RGB and BGR <-> YCbCr / YCrCb with 4:2:0 chroma. Row routines work on pairs
// of rows: pair k covers rows 2k and 2k + 1 and chroma row k; a last odd
// row and a last odd column are not touched.
#include "frame/checks.h"
#include "lumachroma/ycbcrsub.h"

namespace kel {
namespace {

using namespace ycc;

// ---- forward -----------------------------------------------------------------
// RGB -> planes: (w >> 1) & ~3 pairs of columns in the body (YF, CG), the
// other whole pairs in the tail (YT, CE). The aligned variant of this routine
// gives the same bytes; unaligned loads on aligned addresses cost nothing on
// current cores, so one routine serves both.
void innerRGBToYCbCr420(const SubRows& io, int w, const Chain<KernSub>& ch) {
  const int body = ((w >> 1) & ~3) << 1;
  const int x = runChain(ch, io, 0, body);
  fwdGroups<2, 2, Pix::RGB, Planar, YF, YF, CG>(io, x, body);
  fwdGroups<2, 2, Pix::RGB, Planar, YT, YT, CE>(io, body, w & ~1);
}

// The own... line: 8 pixels a pass up to w & ~15, then one block of 4 when
// w & 7 is 4 or more (YO, CB); the rest of the whole pairs in the tail (YT, CE).
inline int bodyOwn420(int w) { return (w & 7) >= 4 ? (w & ~15) + 4 : w & ~15; }

template <Pix In>
void ownToYCbCr420(const Side& s, const Side& d, KeliSize roi) {
  const int w = roi.width, body = bodyOwn420(w);
  const Chain<KernSub> ch = chainOf(In == Pix::BGR    ? &YccSubKernels::bgr420_YO_CB
                                    : In == Pix::BGRA ? &YccSubKernels::bgra420_YO_CB
                                                      : &YccSubKernels::rgba420_YO_CB);
  forRowPairs(roi.height, [&](int k) {
    const SubRows io = rowsOf(s, d, k, true);
    fwdGroups<2, 2, In, Planar, YO, YO, CB>(io, runChain(ch, io, 0, body), body);
    fwdGroups<2, 2, In, Planar, YT, YT, CE>(io, body, w & ~1);
  });
}

// ---- inverse -----------------------------------------------------------------
// Body w & ~7 (vector kernels, then the scalar body definition), tail L4 on
// the rest of the whole pairs.
template <class Body, Pix Out>
void rowsYCbCr420ToRGB(const Side& s, const Side& d, KeliSize roi, int alpha, const Chain<KernSub>& ch) {
  const int w = roi.width, body = w & ~7;
  forRowPairs(roi.height, [&](int k) {
    const SubRows io = rowsOf(s, d, k, true, alpha);
    const int x = runChain(ch, io, 0, body);
    invPixels<2, 1, Planar, Out, Body>(io, x, body);
    invPixels<2, 1, Planar, Out, L4>(io, body, w & ~1);
  });
}

inline Side dst3(Kel8u* const dst[3], const int step[3]) {
  return three(dst[0], dst[1], dst[2], step[0], step[1], step[2]);
}
// The YCrCb members hand their planes 1 and 2, with their steps, over exchanged.
inline Side dst3Swapped(Kel8u* const dst[3], const int step[3]) {
  return three(dst[0], dst[2], dst[1], step[0], step[2], step[1]);
}

}  // namespace
}  // namespace kel

using namespace kel;
using namespace kel::ycc;

// Member table:                                body                      body     tail
//  RGBToYCbCr420 C3P3R                         ((w >> 1) & ~3) pairs     YF, CG   YT, CE
//  BGRToYCbCr420 C3P3R, AC4P3R                 (w & ~15) [+ 4]           YO, CB   YT, CE
//  BGRToYCrCb420 C3P3R, AC4P3R                 as above, planes 1 and 2 exchanged
//  RGBToYCrCb420 AC4P3R                        as above, R, G, B source
//  YCbCr420ToRGB P3C3R                         w & ~7                    J3       L4
//  YCbCr420ToBGR P3C3R                         w & ~7                    J3 / J5  L4
//  YCbCr420ToBGR P3C4R, YCrCb420ToRGB P3C4R    w & ~7                    J4       L4   (alpha)
// J5 replaces J3 when every plane pointer and step is a multiple of 16.

extern "C" {

KelStatus keliRGBToYCbCr420_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  const Side s = one(src, srcStep), d = dst3(dst, dstStep);
  const Chain<KernSub> ch = chainOf(&YccSubKernels::rgb420_YF_CG);
  forRowPairs(roi.height, [&](int k) { innerRGBToYCbCr420(rowsOf(s, d, k, true), roi.width, ch); });
  return status420(roi);
}

KelStatus keliBGRToYCbCr420_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownToYCbCr420<Pix::BGR>(one(src, srcStep), dst3(dst, dstStep), roi);
  return status420(roi);
}

KelStatus keliBGRToYCbCr420_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownToYCbCr420<Pix::BGRA>(one(src, srcStep), dst3(dst, dstStep), roi);
  return status420(roi);
}

KelStatus keliBGRToYCrCb420_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownToYCbCr420<Pix::BGR>(one(src, srcStep), dst3Swapped(dst, dstStep), roi);
  return status420(roi);
}

KelStatus keliBGRToYCrCb420_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownToYCbCr420<Pix::BGRA>(one(src, srcStep), dst3Swapped(dst, dstStep), roi);
  return status420(roi);
}

KelStatus keliRGBToYCrCb420_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownToYCbCr420<Pix::RGBA>(one(src, srcStep), dst3Swapped(dst, dstStep), roi);
  return status420(roi);
}

KelStatus keliYCbCr420ToRGB_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                     KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  rowsYCbCr420ToRGB<J3, Pix::RGB>(three(src[0], src[1], src[2], srcStep[0], srcStep[1], srcStep[2]),
                                  one(dst, dstStep), roi, 0, chainOf(&YccSubKernels::p420_J3_rgb));
  return status420(roi);
}

KelStatus keliYCbCr420ToBGR_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                     KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  const Side s = three(src[0], src[1], src[2], srcStep[0], srcStep[1], srcStep[2]), d = one(dst, dstStep);
  if (allAligned16({src[0], src[1], src[2], dst}, {srcStep[0], srcStep[1], srcStep[2], dstStep}))
    rowsYCbCr420ToRGB<J5, Pix::BGR>(s, d, roi, 0, chainOf(&YccSubKernels::p420_J5_bgr));
  else
    rowsYCbCr420ToRGB<J3, Pix::BGR>(s, d, roi, 0, chainOf(&YccSubKernels::p420_J3_bgr));
  return status420(roi);
}

KelStatus keliYCbCr420ToBGR_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                     KeliSize roi, int alpha) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  rowsYCbCr420ToRGB<J4, Pix::BGRA>(three(src[0], src[1], src[2], srcStep[0], srcStep[1], srcStep[2]),
                                   one(dst, dstStep), roi, alpha, chainOf(&YccSubKernels::p420_J4_bgra));
  return status420(roi);
}

// Planes Y, Cr, Cb.
KelStatus keliYCrCb420ToRGB_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                     KeliSize roi, int alpha) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  rowsYCbCr420ToRGB<J4, Pix::RGBA>(three(src[0], src[2], src[1], srcStep[0], srcStep[2], srcStep[1]),
                                   one(dst, dstStep), roi, alpha, chainOf(&YccSubKernels::p420_J4_rgba));
  return status420(roi);
}

}  // extern "C"
