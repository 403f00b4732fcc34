// BGR <-> YCbCr with 4:1:1 chroma: one chroma pair per four adjacent pixels
// of a row. Routines sit in the row drivers; groups of four in body and tail.
#include "frame/checks.h"
#include "lumachroma/ycbcrsub.h"

namespace kel {
namespace {

using namespace ycc;

// Forward: body (YG, CH or YO, CB) over `body` columns, tail groups of four
// (YT, CE) up to w & ~3. The last w & 3 pixels get luma by YT where
// `lastLuma` says so, and never chroma.
template <Pix In, class Ly, class C>
void ownBGRToYCbCr411(const Side& s, const Side& d, KeliSize roi, int body, bool lastLuma, const Chain<KernSub>& ch) {
  const int w = roi.width;
  forRows(roi.height, [&](int r) {
    const SubRows io = rowsOf(s, d, r, false);
    fwdGroups<4, 1, In, Planar, Ly, Ly, C>(io, runChain(ch, io, 0, body), body);
    fwdGroups<4, 1, In, Planar, YT, YT, CE>(io, body, w & ~3);
    if (lastLuma)
      for (int x = w & ~3; x < w; ++x) {
        int R, G, B;
        getRGB<In>(io.s[0], x, R, G, B);
        io.d[0][0][x] = uint8_t(YT::px(R, G, B));
      }
  });
}

// Inverse: J2 on w & ~3. The last r = w & 3 pixels take the chroma of the
// last whole group, the planes having no entry for them: three through J2,
// one or two through L5.
template <Pix Out>
void myYCbCr411ToBGR(const Side& s, const Side& d, KeliSize roi, int alpha) {
  const int w = roi.width, body = w & ~3, r = w & 3;
  const Chain<KernSub> ch = chainOf(Out == Pix::BGR ? &YccSubKernels::p411_J2_bgr : &YccSubKernels::p411_J2_bgra);
  forRows(roi.height, [&](int row) {
    const SubRows io = rowsOf(s, d, row, false, alpha);
    invPixels<1, 2, Planar, Out, J2>(io, runChain(ch, io, 0, body), body);
    const int j = (w >> 2) - 1, Cb = io.s[0][1][j], Cr = io.s[0][2][j];
    for (int x = body; x < w; ++x) {
      int R, G, B;
      if (r == 3) J2::px(io.s[0][0][x], Cb, Cr, R, G, B);
      else L5::px(io.s[0][0][x], Cb, Cr, R, G, B);
      putRGB<Out>(io.d[0], x, R, G, B, io.alpha);
    }
  });
}

}  // namespace
}  // namespace kel

using namespace kel;
using namespace kel::ycc;

// Member table:             body        body     tail        last w & 3 pixels
//  BGRToYCbCr411 C3P3R      w & ~15     YG, CH   YT, CE      not written
//  BGRToYCbCr411 AC4P3R     w & ~31     YO, CB   YT, CE      Y by YT, no chroma
//  YCbCr411ToBGR P3C3R      w & ~3      J2       -           last group's chroma: J2 (3 left), L5 (1 or 2)
//  YCbCr411ToBGR P3C4R      as above, fourth byte alpha

extern "C" {

KelStatus keliBGRToYCbCr411_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 4, 1)) return st;
  ownBGRToYCbCr411<Pix::BGR, YG, CH>(one(src, srcStep), three(dst[0], dst[1], dst[2], dstStep[0], dstStep[1], dstStep[2]),
                                     roi, roi.width & ~15, false, chainOf(&YccSubKernels::bgr411_YG_CH));
  return status411(roi);
}

KelStatus keliBGRToYCbCr411_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 4, 1)) return st;
  ownBGRToYCbCr411<Pix::BGRA, YO, CB>(one(src, srcStep), three(dst[0], dst[1], dst[2], dstStep[0], dstStep[1], dstStep[2]),
                                      roi, roi.width & ~31, true, chainOf(&YccSubKernels::bgra411_YO_CB));
  return status411(roi);
}

KelStatus keliYCbCr411ToBGR_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                     KeliSize roi) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi, 4, 1)) return st;
  myYCbCr411ToBGR<Pix::BGR>(three(src[0], src[1], src[2], srcStep[0], srcStep[1], srcStep[2]), one(dst, dstStep), roi, 0);
  return kelStatusOk;
}

KelStatus keliYCbCr411ToBGR_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                     KeliSize roi, int alpha) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi, 4, 1)) return st;
  myYCbCr411ToBGR<Pix::BGRA>(three(src[0], src[1], src[2], srcStep[0], srcStep[1], srcStep[2]), one(dst, dstStep), roi,
                             alpha);
  return kelStatusOk;
}

}  // extern "C"
