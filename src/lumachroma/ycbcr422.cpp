// RGB and BGR <-> YCbCr / YCrCb with 4:2:2 chroma: planar, and packed as
// byte pairs Y0 C Y1 C'. Three code lines with their own forms and edge
// rules: the RGB -> packed line (my...), the BGR and RGB -> planar/packed
// line whose routines sit in the row driver (own...), and the inverse lines.
#include "frame/checks.h"
#include "lumachroma/ycbcrsub.h"

namespace kel {
namespace {

using namespace ycc;

// ---- forward, RGB -> packed (body w & ~7: YH, CF) -------------------------------
// The tail rounds the first luma of a pair (YT) but not the second (YU); a
// lone last pixel gets YT and, as its chroma byte, the chroma of its own
// sample (Cb in a YCbCr row, Cr in a YCrCb row).
template <Pix In, bool CrFirst>
void innerRGBToYCbCr422_C2(const SubRows& io, int w, const Chain<KernSub>& ch) {
  using Out = Packed<CrFirst>;
  const int body = w & ~7;
  fwdGroups<2, 1, In, Out, YH, YH, CF>(io, runChain(ch, io, 0, body), body);
  fwdGroups<2, 1, In, Out, YT, YU, CF>(io, body, w & ~1);
  if (w & 1) {
    const int x = w - 1;
    int R, G, B;
    getRGB<In>(io.s[0], x, R, G, B);
    io.d[0][0][2 * x] = uint8_t(YT::px(R, G, B));
    io.d[0][0][2 * x + 1] = uint8_t(CrFirst ? crOne(R, G, B) : cbOne<8421376>(R, G, B));
  }
}
template <Pix In, bool CrFirst>
void myRGBToYCbCr422_C2(const Side& s, const Side& d, KeliSize roi) {
  using K = YccSubKernels;
  const Chain<KernSub> ch = chainOf(In == Pix::P3 ? (CrFirst ? &K::p3c2cr_YH_CF : &K::p3c2_YH_CF)
                                                  : (CrFirst ? &K::rgbc2cr_YH_CF : &K::rgbc2_YH_CF));
  forRows(roi.height, [&](int r) { innerRGBToYCbCr422_C2<In, CrFirst>(rowsOf(s, d, r, false), roi.width, ch); });
}

// ---- forward, the own... line (YO, CA; tail YT, CD) -----------------------------
// 16 pixels a pass up to w & ~31, then one block of 8 when w & 15 is 8 or
// more: a block of 8 to 15 pixels past w & ~31 can fall wholly in the tail.
inline int bodyOwn422(int w) { return (w & 15) >= 8 ? (w & ~31) + 8 : w & ~31; }

// What a last odd pixel gets.
enum class Odd { Nothing, Luma, LumaAndCb };

template <Pix In, class Out, Odd O>
void ownRGBToYCbCr422(const Side& s, const Side& d, KeliSize roi, KernSub YccSubKernels::*kern) {
  const int w = roi.width, body = bodyOwn422(w);
  const Chain<KernSub> ch = chainOf(kern);
  forRows(roi.height, [&](int r) {
    const SubRows io = rowsOf(s, d, r, false);
    fwdGroups<2, 1, In, Out, YO, YO, CA>(io, runChain(ch, io, 0, body), body);
    fwdGroups<2, 1, In, Out, YT, YT, CD>(io, body, w & ~1);
    if (O != Odd::Nothing && (w & 1)) {
      const int x = w - 1;
      int R, G, B;
      getRGB<In>(io.s[0], x, R, G, B);
      Out::putY(io, 0, x, YT::px(R, G, B));
      if (O == Odd::LumaAndCb) io.d[0][0][2 * x + 1] = uint8_t(cbOne<8396800>(R, G, B));
    }
  });
}

// ---- inverse, packed -> RGB ----------------------------------------------------
// A lone last pixel of a packed row has Y and one chroma byte of its own
// (Cb in YCbCr rows, Cr in YCrCb rows); the other chroma value is the byte
// before its Y, the second chroma byte of the pair before. In a row of one
// pixel its own byte serves as both.
template <bool CrFirst, Pix Out, class F>
void lastPackedPixel(const SubRows& io, int w) {
  const int x = w - 1;
  const uint8_t* p = io.s[0][0];
  const int own = p[2 * x + 1], other = w == 1 ? own : p[2 * x - 1];
  int R, G, B;
  F::px(p[2 * x], CrFirst ? other : own, CrFirst ? own : other, R, G, B);
  putRGB<Out>(io.d[0], x, R, G, B, io.alpha);
}

// Body J2 on w & ~3, tail S1, a last odd pixel through S1.
template <bool CrFirst, Pix Out>
void myYCbCr422ToRGB_C2(const Side& s, const Side& d, KeliSize roi) {
  using In = Packed<CrFirst>;
  using K = YccSubKernels;
  const Chain<KernSub> ch = chainOf(Out == Pix::P3 ? (CrFirst ? &K::c2cr_J2_p3 : &K::c2_J2_p3)
                                                   : (CrFirst ? &K::c2cr_J2_rgb : &K::c2_J2_rgb));
  const int w = roi.width, body = w & ~3;
  forRows(roi.height, [&](int r) {
    const SubRows io = rowsOf(s, d, r, false);
    invPixels<1, 1, In, Out, J2>(io, runChain(ch, io, 0, body), body);
    invPixels<1, 1, In, Out, S1>(io, body, w & ~1);
    if (w & 1) lastPackedPixel<CrFirst, Out, S1>(io, w);
  });
}

// The own... packed -> BGR line: body (J3 over w & ~1, or J6 with the
// 16-and-8 block rule), tail S1, last odd pixel S1.
template <class Body, Pix Out>
void ownYCbCr422ToBGR_C2(const Side& s, const Side& d, KeliSize roi, int body, int alpha, const Chain<KernSub>& ch) {
  const int w = roi.width;
  forRows(roi.height, [&](int r) {
    const SubRows io = rowsOf(s, d, r, false, alpha);
    invPixels<1, 1, Packed<false>, Out, Body>(io, runChain(ch, io, 0, body), body);
    invPixels<1, 1, Packed<false>, Out, S1>(io, body, w & ~1);
    if (w & 1) lastPackedPixel<false, Out, S1>(io, w);
  });
}

// Planes -> RGB/BGR: body w & ~7 through the chain's vector kernels and the
// scalar body definition, then the tail up to `end`.
template <class Body, class Tail, Pix Out>
void planes422(const Side& s, const Side& d, KeliSize roi, int end, const Chain<KernSub>& ch) {
  const int body = roi.width & ~7;
  forRows(roi.height, [&](int r) {
    const SubRows io = rowsOf(s, d, r, false);
    const int x = runChain(ch, io, 0, body);
    invPixels<1, 1, Planar, Out, Body>(io, x, body);
    invPixels<1, 1, Planar, Out, Tail>(io, body, end);
  });
}

}  // namespace
}  // namespace kel

using namespace kel;
using namespace kel::ycc;

// Member table:                     body                      body     tail        last odd pixel
//  RGBToYCbCr422 C3C2R, P3C2R       w & ~7                    YH, CF   YT/YU, CF   YT + own Cb
//  RGBToYCrCb422 C3C2R, P3C2R       w & ~7                    YH, CF   YT/YU, CF   YT + own Cr
//  BGRToYCbCr422 C3C2R, AC4C2R      (w & ~31) [+ 8]           YO, CA   YT, CD      YT + own Cb
//  BGRToYCbCr422 C3P3R, AC4P3R      (w & ~31) [+ 8]           YO, CA   YT, CD      YT, no chroma
//  RGBToYCbCr422 C3P3R              (w & ~31) [+ 8]           YO, CA   YT, CD      not written
//  YCbCr422ToRGB C2C3R, C2P3R       w & ~3                    J2       S1          S1
//  YCrCb422ToRGB C2C3R, C2P3R       w & ~3                    J2       S1          S1
//  YCbCr422ToRGB P3C3R              w & ~7                    J3 / J5  L2          L2
//  YCbCr422ToBGR C2C3R              w & ~1                    J3       -           S1
//  YCbCr422ToBGR C2C4R              (w & ~15) [+ 8]           J6       S1          S1
//  YCbCr422ToBGR P3C3R              w & ~7                    J3       S1          not written
// J5 replaces J3 when every plane pointer and step is a multiple of 16.

extern "C" {

KelStatus keliRGBToYCbCr422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRGBToYCbCr422_C2<Pix::RGB, false>(one(src, srcStep), one(dst, dstStep), roi);
  return kelStatusOk;
}

KelStatus keliRGBToYCbCr422_8u_P3C2R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myRGBToYCbCr422_C2<Pix::P3, false>(three(src[0], src[1], src[2], srcStep, srcStep, srcStep), one(dst, dstStep), roi);
  return kelStatusOk;
}

KelStatus keliRGBToYCrCb422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRGBToYCbCr422_C2<Pix::RGB, true>(one(src, srcStep), one(dst, dstStep), roi);
  return kelStatusOk;
}

KelStatus keliRGBToYCrCb422_8u_P3C2R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myRGBToYCbCr422_C2<Pix::P3, true>(three(src[0], src[1], src[2], srcStep, srcStep, srcStep), one(dst, dstStep), roi);
  return kelStatusOk;
}

KelStatus keliRGBToYCbCr422_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 1)) return st;
  ownRGBToYCbCr422<Pix::RGB, Planar, Odd::Nothing>(
      one(src, srcStep), three(dst[0], dst[1], dst[2], dstStep[0], dstStep[1], dstStep[2]), roi,
      &YccSubKernels::rgb422_YO_CA);
  return status422(roi);
}

KelStatus keliBGRToYCbCr422_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 1)) return st;
  ownRGBToYCbCr422<Pix::BGR, Planar, Odd::Luma>(
      one(src, srcStep), three(dst[0], dst[1], dst[2], dstStep[0], dstStep[1], dstStep[2]), roi,
      &YccSubKernels::bgr422_YO_CA);
  return kelStatusOk;
}

KelStatus keliBGRToYCbCr422_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 1)) return st;
  ownRGBToYCbCr422<Pix::BGRA, Planar, Odd::Luma>(
      one(src, srcStep), three(dst[0], dst[1], dst[2], dstStep[0], dstStep[1], dstStep[2]), roi,
      &YccSubKernels::bgra422_YO_CA);
  return kelStatusOk;
}

KelStatus keliBGRToYCbCr422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({src, dst}, {}, roi, 2, 1)) return st;
  ownRGBToYCbCr422<Pix::BGR, Packed<false>, Odd::LumaAndCb>(one(src, srcStep), one(dst, dstStep), roi,
      &YccSubKernels::bgr422c2_YO_CA);
  return kelStatusOk;
}

KelStatus keliBGRToYCbCr422_8u_AC4C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({src, dst}, {}, roi, 2, 1)) return st;
  ownRGBToYCbCr422<Pix::BGRA, Packed<false>, Odd::LumaAndCb>(one(src, srcStep), one(dst, dstStep), roi,
      &YccSubKernels::bgra422c2_YO_CA);
  return kelStatusOk;
}

KelStatus keliYCbCr422ToRGB_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myYCbCr422ToRGB_C2<false, Pix::RGB>(one(src, srcStep), one(dst, dstStep), roi);
  return kelStatusOk;
}

KelStatus keliYCbCr422ToRGB_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  myYCbCr422ToRGB_C2<false, Pix::P3>(one(src, srcStep), three(dst[0], dst[1], dst[2], dstStep, dstStep, dstStep), roi);
  return kelStatusOk;
}

KelStatus keliYCrCb422ToRGB_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myYCbCr422ToRGB_C2<true, Pix::RGB>(one(src, srcStep), one(dst, dstStep), roi);
  return kelStatusOk;
}

KelStatus keliYCrCb422ToRGB_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  myYCbCr422ToRGB_C2<true, Pix::P3>(one(src, srcStep), three(dst[0], dst[1], dst[2], dstStep, dstStep, dstStep), roi);
  return kelStatusOk;
}

// The chroma planes hold (w + 1) >> 1 entries: a last odd pixel has its own
// chroma and goes through the tail form.
KelStatus keliYCbCr422ToRGB_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                     KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  const Side s = three(src[0], src[1], src[2], srcStep[0], srcStep[1], srcStep[2]);
  const bool al = allAligned16({src[0], src[1], src[2], dst}, {srcStep[0], srcStep[1], srcStep[2], dstStep});
  if (al)
    planes422<J5, L2, Pix::RGB>(s, one(dst, dstStep), roi, roi.width, chainOf(&YccSubKernels::p422_J5_rgb));
  else
    planes422<J3, L2, Pix::RGB>(s, one(dst, dstStep), roi, roi.width, chainOf(&YccSubKernels::p422_J3_rgb));
  return kelStatusOk;
}

KelStatus keliYCbCr422ToBGR_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({src, dst}, {}, roi, 2, 1)) return st;
  ownYCbCr422ToBGR_C2<J3, Pix::BGR>(one(src, srcStep), one(dst, dstStep), roi, roi.width & ~1, 0,
                                    chainOf(&YccSubKernels::c2_J3_bgr));
  return kelStatusOk;
}

KelStatus keliYCbCr422ToBGR_8u_C2C4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                     int alpha) {
  if (KelStatus st = checkB({src, dst}, {}, roi, 2, 1)) return st;
  const int w = roi.width, body = (w & 15) >= 8 ? (w & ~15) + 8 : w & ~15;
  ownYCbCr422ToBGR_C2<J6, Pix::BGRA>(one(src, srcStep), one(dst, dstStep), roi, body, alpha,
                                     chainOf(&YccSubKernels::c2_J6_bgra));
  return kelStatusOk;
}

// The chroma planes hold w >> 1 entries; a last odd pixel is not written.
KelStatus keliYCbCr422ToBGR_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                     KeliSize roi) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi, 2, 1)) return st;
  planes422<J3, S1, Pix::BGR>(three(src[0], src[1], src[2], srcStep[0], srcStep[1], srcStep[2]), one(dst, dstStep),
                              roi, roi.width & ~1, chainOf(&YccSubKernels::p422_J3_bgr));
  return kelStatusOk;
}

}  // extern "C"
