// RGB <-> YUV 4:2:2: planar and packed, with and without steps. Every row
// is a body of whole 16-pixel blocks, a pair tail, and a rule for the last
// pixel of an odd width (see yuvsub.h for the forms).
#include "frame/checks.h"
#include "frame/rows.h"
#include "lumachroma/yuvsub.h"

namespace kel {
namespace {

using namespace yuvsub;

ChainSub chain(KernSub YuvSubKernels::*m) { return chainFor(m, sse41::kYuvSubKernels, avx2::kYuvSubKernels); }

inline int body16(int w) { return w & ~15; }
inline int body4(int w) { return w & ~3; }

// The row routines of the members.
void rowC3P3(const SubRows& io, int w, const ChainSub& c) { row422Fwd<RGB3, YuvP, P1, PT, O2>(io, w, body16(w), c); }
// When the image and all its steps sit on 16-byte boundaries the body takes
// another arithmetic (P3) and the pair tail takes the former body form.
void rowC3P3Al(const SubRows& io, int w, const ChainSub& c) { row422Fwd<RGB3, YuvP, P3, P1, O2>(io, w, body16(w), c); }
void rowP3(const SubRows& io, int w, const ChainSub& c) { row422Fwd<RGBP, YuvP, P2, PT, O3>(io, w, body16(w), c); }
void rowInvP3C3(const SubRows& io, int w, const ChainSub& c) { rowInv<YuvP, RGB3, I2, KA, KA>(io, 1, w, body16(w), c); }
void rowInvP3(const SubRows& io, int w, const ChainSub& c) { rowInv<YuvP, RGBP, I2, KA, K13>(io, 1, w, body16(w), c); }

// RGB C3 to planes, per row, with the choice of routine by alignment.
void myRGBToYUV422_C3P3(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], KeliSize roi) {
  const uint8_t* s[1] = {src};
  const int ss[1] = {srcStep};
  const bool al = allAligned16({src, dst[0], dst[1], dst[2]}, {srcStep, dstStep[0], dstStep[1], dstStep[2]});
  const ChainSub c = chain(al ? &YuvSubKernels::rgbC3P3_P3 : &YuvSubKernels::rgbC3P3_P1);
  myRowsSub(s, ss, 1, dst, dstStep, 3, roi.height, 0, [&](const SubRows& io) {
    al ? rowC3P3Al(io, roi.width, c) : rowC3P3(io, roi.width, c);
  });
}
void myRGBToYUV422_P3(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], const int dstStep[3],
                      KeliSize roi) {
  const int ss[3] = {srcStep, srcStep, srcStep};
  const ChainSub c = chain(&YuvSubKernels::rgbP3_P2);
  myRowsSub(src, ss, 3, dst, dstStep, 3, roi.height, 0, [&](const SubRows& io) { rowP3(io, roi.width, c); });
}
void myYUV422ToRGB_P3C3(const uint8_t* const src[3], const int srcStep[3], uint8_t* dst, int dstStep, KeliSize roi) {
  uint8_t* d[1] = {dst};
  const int ds[1] = {dstStep};
  const ChainSub c = chain(&YuvSubKernels::yuvP3C3_I2);
  myRowsSub(src, srcStep, 3, d, ds, 1, roi.height, 0, [&](const SubRows& io) { rowInvP3C3(io, roi.width, c); });
}
void myYUV422ToRGB_P3(const uint8_t* const src[3], const int srcStep[3], uint8_t* const dst[3], int dstStep,
                      KeliSize roi) {
  const int ds[3] = {dstStep, dstStep, dstStep};
  const ChainSub c = chain(&YuvSubKernels::yuvP3_I2);
  myRowsSub(src, srcStep, 3, dst, ds, 3, roi.height, 0, [&](const SubRows& io) { rowInvP3(io, roi.width, c); });
}

// The long row of a tight image: pixel offset o of the image is column o of
// one row. An interleaved image moves by 3 * o bytes, a full plane by o, a
// chroma plane by o / 2 (o is even). `srcYuv` says which side has chroma.
SubRows longRowAt(const uint8_t* const* s, int ns, uint8_t* const* d, int nd, int o, bool srcYuv) {
  SubRows io{};
  const int sFullBpp = ns == 1 ? 3 : 1, dFullBpp = nd == 1 ? 3 : 1;
  for (int p = 0; p < ns; ++p) io.s[0][p] = s[p] + (srcYuv && p ? o / 2 : o * sFullBpp);
  for (int p = 0; p < nd; ++p) io.d[0][p] = d[p] + (!srcYuv && p ? o / 2 : o * dFullBpp);
  return io;
}
template <class RowFn>
void myLongRow(const uint8_t* const* s, int ns, uint8_t* const* d, int nd, bool srcYuv, KeliSize roi, RowFn&& row) {
  forLongRow(area32(roi.width, roi.height), [&](int32_t o, int32_t n) { row(longRowAt(s, ns, d, nd, o, srcYuv), n); });
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:                 body      body  pair tail  last odd pixel
//  RGBToYUV422 C3C2R            w & ~15   P1    PT         O1 (Y, U)
//              C3P3R            w & ~15   P1    PT         O2
//              C3P3R aligned    w & ~15   P3    P1         O2
//              P3R              w & ~15   P2    PT         O3
//  YUV422ToRGB C2C3R            w & ~15   I2    KA         KA (V of the pair before)
//              P3C3R            w & ~15   I2    KA         KA
//              P3R              w & ~15   I2    KA         K13
//              P3AC4R           w & ~3    IA    KA         KA (alpha 0)
// The forms without steps run an image of 256 or more pixels with an even
// width as one long row, else the rows of their R form with tight steps.
// Every size that passes the checks gives kelStatusOk.

extern "C" {

KelStatus keliRGBToYUV422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  const uint8_t* s[1] = {src};
  uint8_t* d[1] = {dst};
  const int ss[1] = {srcStep}, ds[1] = {dstStep};
  const ChainSub c = chain(&YuvSubKernels::rgbC3C2_P1);
  myRowsSub(s, ss, 1, d, ds, 1, roi.height, 0, [&](const SubRows& io) {
    row422Fwd<RGB3, YuvC2, P1, PT, O1>(io, roi.width, body16(roi.width), c);
  });
  return kelStatusOk;
}

KelStatus keliRGBToYUV422_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  myRGBToYUV422_C3P3(src, srcStep, dst, dstStep, roi);
  return kelStatusOk;
}

KelStatus keliRGBToYUV422_8u_C3P3(const Kel8u* src, Kel8u* dst[3], KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  if (isLongRow422(roi)) {
    const uint8_t* s[1] = {src};
    const ChainSub c = chain(&YuvSubKernels::rgbC3P3_P1);
    myLongRow(s, 1, dst, 3, false, roi, [&](const SubRows& io, int n) { rowC3P3(io, n, c); });
  } else {
    const TightSteps t = tight422(roi.width);
    const int ds[3] = {t.full, t.chroma, t.chroma};
    myRGBToYUV422_C3P3(src, t.c3, dst, ds, roi);
  }
  return kelStatusOk;
}

KelStatus keliRGBToYUV422_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], const int dstStep[3],
                                 KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  myRGBToYUV422_P3(src, srcStep, dst, dstStep, roi);
  return kelStatusOk;
}

KelStatus keliRGBToYUV422_8u_P3(const Kel8u* const src[3], Kel8u* dst[3], KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  if (isLongRow422(roi)) {
    const ChainSub c = chain(&YuvSubKernels::rgbP3_P2);
    myLongRow(src, 3, dst, 3, false, roi, [&](const SubRows& io, int n) { rowP3(io, n, c); });
  } else {
    const TightSteps t = tight422(roi.width);
    const int ds[3] = {t.full, t.chroma, t.chroma};
    myRGBToYUV422_P3(src, t.full, dst, ds, roi);
  }
  return kelStatusOk;
}

KelStatus keliYUV422ToRGB_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  const uint8_t* s[1] = {src};
  uint8_t* d[1] = {dst};
  const int ss[1] = {srcStep}, ds[1] = {dstStep};
  const ChainSub c = chain(&YuvSubKernels::yuvC2C3_I2);
  // A row of one pixel has no pair before it: YuvC2::getLast then takes the
  // pixel's U for V as well.
  myRowsSub(s, ss, 1, d, ds, 1, roi.height, 0, [&](const SubRows& io) {
    rowInv<YuvC2, RGB3, I2, KA, KA>(io, 1, roi.width, body16(roi.width), c);
  });
  return kelStatusOk;
}

KelStatus keliYUV422ToRGB_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                   KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myYUV422ToRGB_P3C3(src, srcStep, dst, dstStep, roi);
  return kelStatusOk;
}

KelStatus keliYUV422ToRGB_8u_P3C3(const Kel8u* const src[3], Kel8u* dst, KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  if (isLongRow422(roi)) {
    uint8_t* d[1] = {dst};
    const ChainSub c = chain(&YuvSubKernels::yuvP3C3_I2);
    myLongRow(src, 3, d, 1, true, roi, [&](const SubRows& io, int n) { rowInvP3C3(io, n, c); });
  } else {
    const TightSteps t = tight422(roi.width);
    const int ss[3] = {t.full, t.chroma, t.chroma};
    myYUV422ToRGB_P3C3(src, ss, dst, t.c3, roi);
  }
  return kelStatusOk;
}

KelStatus keliYUV422ToRGB_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], int dstStep,
                                 KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  myYUV422ToRGB_P3(src, srcStep, dst, dstStep, roi);
  return kelStatusOk;
}

KelStatus keliYUV422ToRGB_8u_P3(const Kel8u* const src[3], Kel8u* dst[3], KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  if (isLongRow422(roi)) {
    const ChainSub c = chain(&YuvSubKernels::yuvP3_I2);
    myLongRow(src, 3, dst, 3, true, roi, [&](const SubRows& io, int n) { rowInvP3(io, n, c); });
  } else {
    const TightSteps t = tight422(roi.width);
    const int ss[3] = {t.full, t.chroma, t.chroma};
    myYUV422ToRGB_P3(src, ss, dst, t.full, roi);
  }
  return kelStatusOk;
}

// Aligned and unaligned stores of the destination rows give the same bytes;
// the fourth byte of every written pixel is 0.
KelStatus keliYUV422ToRGB_8u_P3AC4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                    KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  uint8_t* d[1] = {dst};
  const int ds[1] = {dstStep};
  const ChainSub c = chain(&YuvSubKernels::yuvP3C4_IA);
  myRowsSub(src, srcStep, 3, d, ds, 1, roi.height, 0, [&](const SubRows& io) {
    rowInv<YuvP, RGBA, IA, KA, KA>(io, 1, roi.width, body4(roi.width), c);
  });
  return kelStatusOk;
}

}  // extern "C"
