// Moves between NV12 (luma plane + one plane of Cb Cr pairs, 4:2:0), YV12
// (planes Y, Cr, Cb, 4:2:0), YUY2 (Y0 Cb Y1 Cr) and UYVY (Cb Y0 Cr Y1).
// No member computes a value: luma goes unchanged to its new place, chroma is
// moved, repeated on both rows of a pair (4:2:0 to 4:2:2) or taken from the
// upper row of a pair (4:2:2 to 4:2:0). Width and height are trimmed to even
// values; what lies beyond the trimmed rectangle is neither read nor written.
//
// The rows go through the shared row moves of chroma/layout_rows.h.
//
// Member table:                    from  to    chroma       row move(s)
//  YCbCr420ToYCbCr422  P2C2R       NV12  YUY2  row repeat   P2ToC2
//  YCbCr420ToCbYCr422  P2C2R       NV12  UYVY  row repeat   P2ToC2
//  YCbCr420ToYCrCb420  P2P3R       NV12  P3    move         Copy, SplitPairs (pair order)
//  YCbCr422ToYCbCr420  C2P2R       YUY2  NV12  even rows    C2ToP2 / C2ToY
//  CbYCr422ToYCbCr420  C2P2R       UYVY  NV12  even rows    C2ToP2 / C2ToY
//  YCbCr422ToYCrCb420  C2P3R       YUY2  YV12  even rows    C2ToP3 / C2ToY
//  CbYCr422ToYCrCb420  C2P3R       UYVY  YV12  even rows    C2ToP3 / C2ToY
//  YCbCr422ToCbYCr422  C2R         YUY2  UYVY  move         PermC2 (streamed when large)
//  CbYCr422ToYCbCr422  C2R         UYVY  YUY2  move         PermC2
//  YCrCb420ToYCbCr420  P3P2R       YV12  NV12  move         Copy, ZipBytes(Cb, Cr)
//  YCrCb420ToYCbCr422  P3C2R       YV12  YUY2  row repeat   P3ToC2 (streamed when large)
//  YCrCb420ToCbYCr422  P3C2R       YV12  UYVY  row repeat   P3ToC2 (streamed when large)
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "chroma/layout_rows.h"
#include "frame/checks.h"
#include "frame/rows.h"
#include "kelcore.h"

namespace kel {
namespace {

using namespace lrow;

// Non-temporal stores for a destination on 16-byte boundaries when the sum
// of the steps of the call times the rows is above 512 KiB, and the
// destination itself (its step times the rows) is larger than the
// processor's largest cache. The second test is ours: below that size the
// written picture stays in the cache for whoever reads it next, and streaming
// it past the cache only makes the call slower (a 1080p YUY2 frame is about
// 4 MB; caches of 32 MB are common). Where the cache size is not known the
// first test decides alone. The stores change no result.
constexpr int64_t kStreamBytes = 524288;
inline bool large(std::initializer_list<int> steps, int dstStep, int h) {
  int64_t sum = 0;
  for (int s : steps) sum += s;
  if (sum * h <= kStreamBytes) return false;
  int cache = 0;
  return kelGetMaxCacheSizeB(&cache) != 0 || static_cast<int64_t>(dstStep < 0 ? -dstStep : dstStep) * h > cache;
}

// The trimmed size: w pixels (w / 2 pixel pairs) by h rows.
struct Even {
  int w, h;
};
inline Even even(KeliSize roi) { return {roi.width & ~1, roi.height & ~1}; }

// ---- row drivers ---------------------------------------------------------

// NV12 to a 4:2:2 quad stream: each chroma row serves both rows of its pair.
template <const Quad& Q>
void myNV12ToC2(const Kel8u* srcY, int ys, const Kel8u* srcC, int cs, Kel8u* dst, int ds, Even e) {
  const auto mv = mover<P2ToC2<Q>>();
  forRowPairs(e.h, [&](int k) {
    const Kel8u* c = rowAt(srcC, cs, k);
    for (int r = 2 * k; r < 2 * k + 2; ++r) mv({{rowAt(srcY, ys, r), c}, {rowAt(dst, ds, r)}}, e.w >> 1);
  });
}

// A 4:2:2 quad stream to NV12: the upper row of each pair gives luma and
// chroma, the lower row its luma only.
template <const Quad& Q>
void myC2ToNV12(const Kel8u* src, int ss, Kel8u* dstY, int ys, Kel8u* dstC, int cs, Even e) {
  const auto both = mover<C2ToP2<Q>>();
  const auto luma = mover<C2ToY<Q>>();
  forRowPairs(e.h, [&](int k) {
    both({{rowAt(src, ss, 2 * k)}, {rowAt(dstY, ys, 2 * k), rowAt(dstC, cs, k)}}, e.w >> 1);
    luma({{rowAt(src, ss, 2 * k + 1)}, {rowAt(dstY, ys, 2 * k + 1)}}, e.w >> 1);
  });
}

// A 4:2:2 quad stream to YV12 planes Y, Cr, Cb.
template <const Quad& Q>
void myC2ToYV12(const Kel8u* src, int ss, Kel8u* const dst[3], const int ds[3], Even e) {
  const auto all = mover<C2ToP3<Q>>();
  const auto luma = mover<C2ToY<Q>>();
  forRowPairs(e.h, [&](int k) {
    all({{rowAt(src, ss, 2 * k)}, {rowAt(dst[0], ds[0], 2 * k), rowAt(dst[2], ds[2], k), rowAt(dst[1], ds[1], k)}},
        e.w >> 1);
    luma({{rowAt(src, ss, 2 * k + 1)}, {rowAt(dst[0], ds[0], 2 * k + 1)}}, e.w >> 1);
  });
}

// YV12 planes Y, Cr, Cb to a 4:2:2 quad stream.
template <const Quad& Q, bool Nt>
void myYV12ToC2(const Kel8u* const src[3], const int ss[3], Kel8u* dst, int ds, Even e) {
  const auto mv = mover<P3ToC2<Q, Nt>>();
  forRowPairs(e.h, [&](int k) {
    const Kel8u* cb = rowAt(src[2], ss[2], k);
    const Kel8u* cr = rowAt(src[1], ss[1], k);
    for (int r = 2 * k; r < 2 * k + 2; ++r) mv({{rowAt(src[0], ss[0], r), cb, cr}, {rowAt(dst, ds, r)}}, e.w >> 1);
  });
  if (Nt) storeFence();
}
template <const Quad& Q>
void myYV12ToC2(const Kel8u* const src[3], const int ss[3], Kel8u* dst, int ds, Even e, bool nt) {
  if (nt) myYV12ToC2<Q, true>(src, ss, dst, ds, e);
  else myYV12ToC2<Q, false>(src, ss, dst, ds, e);
}

// YUY2 <-> UYVY: the bytes of each pair exchanged, every row.
template <bool Nt>
void mySwapRows(const Kel8u* src, int ss, Kel8u* dst, int ds, int w, int h) {
  mover<PermC2<1, Nt>>().rows({{src}, {dst}}, &ss, &ds, h, w >> 1);
  if (Nt) storeFence();
}
void mySwap(const Kel8u* src, int ss, Kel8u* dst, int ds, KeliSize roi) {
  const int w = roi.width & ~1;
  if (allAligned16({dst}, {ds}) && large({ss, ds}, ds, roi.height)) mySwapRows<true>(src, ss, dst, ds, w, roi.height);
  else mySwapRows<false>(src, ss, dst, ds, w, roi.height);
}

}  // namespace
}  // namespace kel

using namespace kel;

extern "C" {

KelStatus keliYCbCr420ToYCbCr422_8u_P2C2R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep,
                                          Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({srcY, srcCbCr, dst}, {}, roi, 2, 2)) return st;
  myNV12ToC2<kYCbCr>(srcY, srcYStep, srcCbCr, srcCbCrStep, dst, dstStep, even(roi));
  return kelStatusOk;
}

KelStatus keliYCbCr420ToCbYCr422_8u_P2C2R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep,
                                          Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({srcY, srcCbCr, dst}, {}, roi, 2, 2)) return st;
  myNV12ToC2<kCbYCr>(srcY, srcYStep, srcCbCr, srcCbCrStep, dst, dstStep, even(roi));
  return kelStatusOk;
}

// The destination planes take the chroma pairs in their own order: dst[1]
// the first byte of each pair, dst[2] the second. Checks: the arguments, a
// size below 1, the plane elements, then a size below 2.
KelStatus keliYCbCr420ToYCrCb420_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep,
                                          Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkA({srcY, srcCbCr}, {planes(dst, 3)}, roi)) return st;
  if (chk::sizeBelow(roi, 2, 2)) return kelStatusBadSize;
  const Even e = even(roi);
  copyPlane(srcY, srcYStep, dst[0], dstStep[0], e.w, e.h);
  splitChroma(srcCbCr, srcCbCrStep, dst[1], dstStep[1], dst[2], dstStep[2], e.w >> 1, e.h >> 1);
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCbCr420_8u_C2P2R(const Kel8u* src, int srcStep, Kel8u* dstY, int dstYStep, Kel8u* dstCbCr,
                                          int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = checkB({src, dstY, dstCbCr}, {}, roi, 2, 2)) return st;
  myC2ToNV12<kYCbCr>(src, srcStep, dstY, dstYStep, dstCbCr, dstCbCrStep, even(roi));
  return kelStatusOk;
}

KelStatus keliCbYCr422ToYCbCr420_8u_C2P2R(const Kel8u* src, int srcStep, Kel8u* dstY, int dstYStep, Kel8u* dstCbCr,
                                          int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = checkB({src, dstY, dstCbCr}, {}, roi, 2, 2)) return st;
  myC2ToNV12<kCbYCr>(src, srcStep, dstY, dstYStep, dstCbCr, dstCbCrStep, even(roi));
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCrCb420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                          KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  myC2ToYV12<kYCbCr>(src, srcStep, dst, dstStep, even(roi));
  return kelStatusOk;
}

KelStatus keliCbYCr422ToYCrCb420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                          KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  myC2ToYV12<kCbYCr>(src, srcStep, dst, dstStep, even(roi));
  return kelStatusOk;
}

// The 4:2:2 swaps examine the width only; a height below 1 is a bad size.
KelStatus keliYCbCr422ToCbYCr422_8u_C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({src, dst}, {}, roi, 2, 1)) return st;
  mySwap(src, srcStep, dst, dstStep, roi);
  return kelStatusOk;
}

KelStatus keliCbYCr422ToYCbCr422_8u_C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({src, dst}, {}, roi, 2, 1)) return st;
  mySwapRows<false>(src, srcStep, dst, dstStep, roi.width & ~1, roi.height);
  return kelStatusOk;
}

KelStatus keliYCrCb420ToYCbCr420_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep,
                                          Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = checkB({dstY, dstCbCr}, {planes(src, 3)}, roi, 2, 2)) return st;
  const Even e = even(roi);
  copyPlane(src[0], srcStep[0], dstY, dstYStep, e.w, e.h);
  // YV12 planes: the Cb pair byte comes from the third plane.
  zipChroma(src[2], srcStep[2], src[1], srcStep[1], dstCbCr, dstCbCrStep, e.w >> 1, e.h >> 1);
  return kelStatusOk;
}

KelStatus keliYCrCb420ToYCbCr422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                          KeliSize roi) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi, 2, 2)) return st;
  const bool nt = allAligned16({src[0], src[1], src[2], dst}, {srcStep[0], srcStep[1], srcStep[2], dstStep}) &&
                  large({srcStep[0], srcStep[1], srcStep[2], dstStep}, dstStep, roi.height);
  myYV12ToC2<kYCbCr>(src, srcStep, dst, dstStep, even(roi), nt);
  return kelStatusOk;
}

KelStatus keliYCrCb420ToCbYCr422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                          KeliSize roi) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi, 2, 2)) return st;
  const bool nt = allAligned16({dst}, {dstStep}) && large({srcStep[0], srcStep[1], srcStep[2], dstStep}, dstStep, roi.height);
  myYV12ToC2<kCbYCr>(src, srcStep, dst, dstStep, even(roi), nt);
  return kelStatusOk;
}

}  // extern "C"
