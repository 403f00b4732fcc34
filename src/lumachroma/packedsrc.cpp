// Packed 16-bit sources to YCbCr and YUV: fourteen members over three row
// shapes (4:2:0 pairs of rows, 4:2:2 rows, 4:1:1 rows). Each row is a body
// run and a tail run of chroma groups; a group that starts below the body's
// column count takes the body form. All members run on the caller's thread.
#include "lumachroma/packedsrc.h"

#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace pks;

// ---- one group through form F ---------------------------------------------------
template <Src S, class F>
inline void group420(const Io420& io, int j) {
  int sR = 0, sG = 0, sB = 0, sT = 0;
  for (int r = 0; r < 2; ++r) {
    const uint8_t* s = r ? io.s1 : io.s0;
    uint8_t* y = r ? io.y1 : io.y0;
    for (int x = 2 * j; x < 2 * j + 2; ++x) {
      int R, G, B;
      pixel<S>(s, x, R, G, B);
      const int t = F::term(R, G, B);
      y[x] = static_cast<uint8_t>(F::luma(t));
      sR += R, sG += G, sB += B, sT += t;
    }
  }
  int c0, c1;
  F::chroma(sR, sG, sB, sT, c0, c1);
  io.c0[j] = static_cast<uint8_t>(c0);
  io.c1[j] = static_cast<uint8_t>(c1);
}

template <Src S, class F, int N>
inline void groupRow(const IoRow& io, int j) {
  int sR = 0, sG = 0, sB = 0, sT = 0;
  for (int x = N * j; x < N * j + N; ++x) {
    int R, G, B;
    pixel<S>(io.s, x, R, G, B);
    const int t = F::term(R, G, B);
    io.y[io.ys * x] = static_cast<uint8_t>(F::luma(t));
    sR += R, sG += G, sB += B, sT += t;
  }
  int c0, c1;
  F::chroma(sR, sG, sB, sT, c0, c1);
  io.c0[io.cs * j] = static_cast<uint8_t>(c0);
  io.c1[io.cs * j] = static_cast<uint8_t>(c1);
}

// Luma by YT for columns x0 .. x1-1 of one row (stride ys in the output).
template <Src S>
inline void lumaYTRun(const uint8_t* s, uint8_t* y, int ys, int x0, int x1) {
  for (int x = x0; x < x1; ++x) {
    int R, G, B;
    pixel<S>(s, x, R, G, B);
    y[ys * x] = static_cast<uint8_t>(lumaYT(R, G, B));
  }
}

// ---- row routines -------------------------------------------------------------------
// Groups below `bodyGroups` through the vector kernels of the chain, then
// the scalar body definition; the remaining whole groups through the tail.
template <class Io, class Kern, void (*BodyG)(const Io&, int), void (*TailG)(const Io&, int)>
inline void groups(const Io& io, int n, int bodyGroups, const Chain<Kern>& chain) {
  int j = 0;
  for (Kern k : chain.k)
    if (k) j = k(io, j, bodyGroups);
  for (; j < bodyGroups; ++j) BodyG(io, j);
  for (; j < n; ++j) TailG(io, j);
}
// The number of groups of N columns that start below `body` columns.
inline int groupsBelow(int body, int N) { return (body + N - 1) / N; }

enum class Odd { None, LumaYT, LumaCbYT };  // what a last odd column receives

template <Src S, class Body, class Tail, Odd O>
void inner420(const Io420& io, int w, int body, const Chain<Kern420>& chain) {
  groups<Io420, Kern420, group420<S, Body>, group420<S, Tail>>(io, w >> 1, groupsBelow(body, 2), chain);
  if (O == Odd::LumaYT && (w & 1)) {
    lumaYTRun<S>(io.s0, io.y0, 1, w - 1, w);
    lumaYTRun<S>(io.s1, io.y1, 1, w - 1, w);
  }
}

template <Src S, class Body, class Tail, int N, Odd O>
void innerRow(const IoRow& io, int w, int body, const Chain<KernRow>& chain) {
  groups<IoRow, KernRow, groupRow<S, Body, N>, groupRow<S, Tail, N>>(io, w / N, groupsBelow(body, N), chain);
  const int x0 = w - w % N;
  if (O != Odd::None) lumaYTRun<S>(io.s, io.y, io.ys, x0, w);
  if (O == Odd::LumaCbYT && x0 < w) {
    int R, G, B;
    pixel<S>(io.s, x0, R, G, B);
    io.y[io.ys * x0 + 1] = static_cast<uint8_t>(cbOne(R, G, B));
  }
}

// ---- row drivers ----------------------------------------------------------------------
// Pairs of rows: pair k reads source rows 2k and 2k+1. The second row of a
// pair lies `srcStep` bytes after the first with the step's low bit dropped,
// so that with an odd step both rows keep the word boundaries of the first;
// an odd step is no valid image of words, and this keeps its reads inside
// the rows the caller describes (give or take that one byte).
template <class Inner>
void ownPairs(const uint8_t* src, int srcStep, Kel8u* const d[3], const int ds[3], KeliSize roi, int body,
              const Chain<Kern420>& chain, Inner inner) {
  forRowPairs(roi.height, [&](int k) {
    const uint8_t* s0 = rowAt(src, srcStep, 2 * k);
    uint8_t* y0 = rowAt(d[0], ds[0], 2 * k);
    const Io420 io{s0, s0 + (srcStep & ~1), y0, rowAt(y0, ds[0], 1), rowAt(d[1], ds[1], k), rowAt(d[2], ds[2], k)};
    inner(io, roi.width, body, chain);
  });
}

template <class Inner>
void ownRows(const uint8_t* src, int srcStep, const IoRow& base, const int ds[3], KeliSize roi, int body,
             const Chain<KernRow>& chain, Inner inner) {
  forRows(roi.height, [&](int r) {
    const IoRow io{rowAt(src, srcStep, r), rowAt(base.y, ds[0], r), rowAt(base.c0, ds[1], r), rowAt(base.c1, ds[2], r),
                   base.ys, base.cs};
    inner(io, roi.width, body, chain);
  });
}

// ---- body column counts ------------------------------------------------------------------
inline int bodyYcc420(int w) { return (w & 7) >= 4 ? (w & ~15) + 4 : (w & ~15); }
inline int bodyYcc422(int w) { return (w & 15) >= 8 ? (w & ~31) + 8 : (w & ~31); }
inline int bodyYuv420(int w) { return (w & 7) >= 4 ? (w & ~7) + 4 : (w & ~7); }
inline int body16(int w) { return w & ~15; }
inline int body4(int w) { return w & ~3; }

template <class K>
Chain<K> chain(K PackedSrcKernels::*m) {
  return chainFor(m, sse41::kPackedSrcKernels, avx2::kPackedSrcKernels);
}

const uint8_t* bytes(const Kel16u* p) { return reinterpret_cast<const uint8_t*>(p); }

// ---- the member families ---------------------------------------------------------------------
// YCbCr 4:2:0; `swap` gives the YCrCb plane order.
template <Src S>
KelStatus ycc420(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi, bool swap,
                 Kern420 PackedSrcKernels::*k) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  Kel8u* d[3] = {dst[0], dst[swap ? 2 : 1], dst[swap ? 1 : 2]};
  const int ds[3] = {dstStep[0], dstStep[swap ? 2 : 1], dstStep[swap ? 1 : 2]};
  ownPairs(bytes(src), srcStep, d, ds, roi, bodyYcc420(roi.width), chain(k),
           inner420<S, YoCb, YtCe, Odd::LumaYT>);
  if (roi.height & 1) {
    const int r = roi.height - 1;
    lumaYTRun<S>(rowAt(bytes(src), srcStep, r), rowAt(d[0], ds[0], r), 1, 0, roi.width);
  }
  return kelStatusOk;
}

template <Src S>
KelStatus ycc422(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi,
                 KernRow PackedSrcKernels::*k) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 1)) return st;
  ownRows(bytes(src), srcStep, {nullptr, dst[0], dst[1], dst[2], 1, 1}, dstStep, roi, bodyYcc422(roi.width), chain(k),
          innerRow<S, YoCa, YtCd, 2, Odd::LumaYT>);
  return kelStatusOk;
}

template <Src S>
KelStatus yccC2(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, KernRow PackedSrcKernels::*k) {
  if (KelStatus st = checkB({src, dst}, {}, roi, 2, 1)) return st;
  const int ds[3] = {dstStep, dstStep, dstStep};
  ownRows(bytes(src), srcStep, {nullptr, dst, dst + 1, dst + 3, 2, 4}, ds, roi, bodyYcc422(roi.width), chain(k),
          innerRow<S, YoCa, YtCd, 2, Odd::LumaCbYT>);
  return kelStatusOk;
}

// 4:1:1: the last w & 3 pixels get luma by YT in the BGR555 member and are
// not written in the BGR565 member.
template <Src S>
KelStatus ycc411(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi,
                 KernRow PackedSrcKernels::*k) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 4, 1)) return st;
  constexpr Odd kLeft = S == Src::BGR555 ? Odd::LumaYT : Odd::None;
  ownRows(bytes(src), srcStep, {nullptr, dst[0], dst[1], dst[2], 1, 1}, dstStep, roi, body4(roi.width), chain(k),
          innerRow<S, YoCb, YoCb, 4, kLeft>);
  return status411(roi);
}

template <Src S>
KelStatus yuv420(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi,
                 Kern420 PackedSrcKernels::*k) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownPairs(bytes(src), srcStep, dst, dstStep, roi, bodyYuv420(roi.width), chain(k), inner420<S, W1, WT, Odd::None>);
  return status420(roi);
}

}  // namespace
}  // namespace kel

using namespace kel;
using kel::pks::Src;

// Member table (w = width; a chroma group starting below the body count
// takes the body forms):
//                            body                               body    tail    left over
//  BGR5x5ToYCbCr420_C3P3R   (w&~15)+4 if (w&7) >= 4, else w&~15 YO, CB  YT, CE  odd column/row: Y by YT
//  BGR5x5ToYCrCb420_C3P3R   the same, Cr plane before Cb
//  BGR5x5ToYCbCr422_C3P3R   (w&~31)+8 if (w&15) >= 8, else w&~31 YO, CA  YT, CD  odd pixel: Y by YT
//  BGR5x5ToYCbCr422_C3C2R   as above                             YO, CA  YT, CD  odd pixel: Y by YT, Cb of one pixel
//  BGR555ToYCbCr411_C3P3R   w&~3                                 YO, CB  -       w&3 pixels: Y by YT
//  BGR565ToYCbCr411_C3P3R   w&~3                                 YO, CB  -       w&3 pixels untouched
//  BGR5x5ToYUV420_C3P3R     (w&~7)+4 if (w&7) >= 4, else w&~7    W1      WT      odd column/row untouched
//  RGB565ToYUV420_C3P3R     w&~15                                X1      XT      odd column/row untouched
//  RGB565ToYUV422_C3P3R     w&~15                                S, X2   XU      odd pixel untouched
// The two RGB565 members check in order A with a minimum of 1 by 1; the
// others in order B.

extern "C" {

KelStatus keliBGR555ToYCbCr411_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi) {
  return ycc411<Src::BGR555>(src, srcStep, dst, dstStep, roi, &PackedSrcKernels::ycc411_555);
}
KelStatus keliBGR565ToYCbCr411_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi) {
  return ycc411<Src::BGR565>(src, srcStep, dst, dstStep, roi, &PackedSrcKernels::ycc411_565);
}
KelStatus keliBGR555ToYCbCr420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi) {
  return ycc420<Src::BGR555>(src, srcStep, dst, dstStep, roi, false, &PackedSrcKernels::ycc420_555);
}
KelStatus keliBGR565ToYCbCr420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi) {
  return ycc420<Src::BGR565>(src, srcStep, dst, dstStep, roi, false, &PackedSrcKernels::ycc420_565);
}
KelStatus keliBGR555ToYCrCb420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi) {
  return ycc420<Src::BGR555>(src, srcStep, dst, dstStep, roi, true, &PackedSrcKernels::ycc420_555);
}
KelStatus keliBGR565ToYCrCb420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi) {
  return ycc420<Src::BGR565>(src, srcStep, dst, dstStep, roi, true, &PackedSrcKernels::ycc420_565);
}
KelStatus keliBGR555ToYCbCr422_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi) {
  return ycc422<Src::BGR555>(src, srcStep, dst, dstStep, roi, &PackedSrcKernels::ycc422_555);
}
KelStatus keliBGR565ToYCbCr422_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                           KeliSize roi) {
  return ycc422<Src::BGR565>(src, srcStep, dst, dstStep, roi, &PackedSrcKernels::ycc422_565);
}
KelStatus keliBGR555ToYCbCr422_16u8u_C3C2R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return yccC2<Src::BGR555>(src, srcStep, dst, dstStep, roi, &PackedSrcKernels::yccC2_555);
}
KelStatus keliBGR565ToYCbCr422_16u8u_C3C2R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return yccC2<Src::BGR565>(src, srcStep, dst, dstStep, roi, &PackedSrcKernels::yccC2_565);
}
KelStatus keliBGR555ToYUV420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                         KeliSize roi) {
  return yuv420<Src::BGR555>(src, srcStep, dst, dstStep, roi, &PackedSrcKernels::yuv420_555);
}
KelStatus keliBGR565ToYUV420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                         KeliSize roi) {
  return yuv420<Src::BGR565>(src, srcStep, dst, dstStep, roi, &PackedSrcKernels::yuv420_565);
}

KelStatus keliRGB565ToYUV420_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                         KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  ownPairs(bytes(src), srcStep, dst, dstStep, roi, body16(roi.width), chain(&PackedSrcKernels::yuv420_rgb565),
           inner420<Src::RGB565, pks::X1, pks::XT, Odd::None>);
  return status420(roi);
}

KelStatus keliRGB565ToYUV422_16u8u_C3P3R(const Kel16u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                         KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  ownRows(bytes(src), srcStep, {nullptr, dst[0], dst[1], dst[2], 1, 1}, dstStep, roi, body16(roi.width),
          chain(&PackedSrcKernels::yuv422_rgb565), innerRow<Src::RGB565, pks::X2, pks::XU, 2, Odd::None>);
  return status422(roi);
}

}  // extern "C"
