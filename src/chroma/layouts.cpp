// Layout conversions between 4:2:2, 4:2:0 and 4:1:1 images in planar (P3),
// semi-planar (P2) and packed (C2) form. No member computes a value: luma is
// copied, chroma is kept, dropped, repeated or moved (layout_rows.h).
//
// Every member: pointers (plane elements included) not null, then the size
// at its minimum; the width, and the height where the member has row pairs,
// trimmed down to whole chroma groups; the status is kelStatusOk for every
// size that passes. Members without row pairs do not examine the height: a
// height below 1 does nothing.
//
// Member table (rule, trim W x H, minimum; rows: what one row / row pair does)
//  move         C2 -> P3 422    2x1  w2 (h1 for YCbCr422_C2P3R)   C2ToP3
//               P3 -> C2 422    2x1  w2 (h1 for YCbCr422_P3C2R)   P3ToC2
//               C2 -> C2        2x1  w2                           PermC2
//               P2 <-> P3 420   2x2  w2 h2                        SplitPairs / ZipBytes
//               P2 <-> P3 411   4x1  w4                           SplitPairs / ZipBytes
//  even rows    422 -> 420      2x2  w2 h2   row 2k moves, row 2k+1 gives its luma only
//  even columns 422 -> 411      4x1  w4      EvenBytes, C2ToP3Even, C2ToP2Even, ZipEvenBytes
//  row repeat   420 -> 422      2x2  w2 h2   chroma row k into rows 2k and 2k+1
//  column rep.  411 -> 422      4x1  w4      DupBytes, SplitPairsDup, P3ToC2Dup, P2ToC2Dup
//  row fold     411 -> 420      4x2  w4 h2   ZipBytes, FoldPairs, Zip4
//  row unfold   420 -> 411      4x2  w4 h2   Unzip4, UnfoldPairs
//
// YCrCb planes and C2 rows use the routine of their YCbCr twin with the two
// chroma planes exchanged, so plane 1 of a YCbCr side always holds Cb.
#include <climits>
#include <cstdint>

#include "chroma/layout_rows.h"
#include "frame/checks.h"
#include "frame/rows.h"
#include "kelcore.h"

namespace kel {
namespace {

using namespace lrow;

constexpr int kNoHeight = INT_MIN;  // minimum height of members that do not examine it

inline KelStatus check(Ptrs ptrs, Arrays arrays, KeliSize roi, int minW, int minH) {
  return checkB(ptrs, arrays, roi, minW, minH);
}

// The trimmed region: width and height rounded down to multiples of W and H.
inline KeliSize trim(KeliSize roi, int W, int H) { return {roi.width & ~(W - 1), roi.height & ~(H - 1)}; }

// Above these sizes (w * h of the trimmed region) the luma copies of some
// members stream past the cache: the image will not be read back soon.
constexpr int64_t kStreamLuma = 348603;
constexpr int64_t kStreamLuma411 = 524289;
// Members writing C2 rows stream when all their steps times the height pass
// this, and the destination's pointer and step are 16-byte aligned.
constexpr int64_t kStreamC2 = 524288;

// Streaming only pays when the written bytes would not stay in the cache
// anyway. The sizes above were tuned for caches of a few megabytes; on a
// processor whose largest cache holds the whole output, streaming forces
// every byte out to memory and a following reader back in (measured: a
// 1080p 4:2:2 -> 4:2:0 move at less than half the speed of plain stores
// with a 32 MB cache). So the sizes above apply only where the output is
// larger than the largest cache, or where its size is not known. The bytes
// written do not depend on the choice.
inline bool beyondCache(int64_t bytes) {
  int cache = 0;
  return kelGetMaxCacheSizeB(&cache) != 0 || cache <= 0 || bytes > cache;
}
// Luma and chroma written: at most twice the luma plane.
inline bool streamLuma(KeliSize t, int64_t limit) {
  const int64_t px = int64_t(t.width) * t.height;
  return px >= limit && beyondCache(2 * px);
}
inline bool streamC2(std::initializer_list<const void*> dst, std::initializer_list<int> dstSteps, int64_t stepSum,
                     int h) {
  return allAligned16(dst, dstSteps) && stepSum * h > kStreamC2 && beyondCache(stepSum * h);
}

// ---- row drivers ------------------------------------------------------------------
// Luma plane: h rows of w bytes, streamed (with a fence after each row) or not.
void ownLumaRows(const uint8_t* s, int ss, uint8_t* d, int ds, KeliSize t, bool stream) {
  if (stream) {
    const auto mv = mover<CopyNt>();
    forRows(t.height, [&](int r) {
      mv({{rowAt(s, ss, r)}, {rowAt(d, ds, r)}}, t.width);
      storeFence();
    });
  } else {
    copyPlane(s, ss, d, ds, t.width, t.height);
  }
}

// One row in, one row out per plane, n units a row: step r takes source
// rows r * sRows and destination rows r * dRows of every plane.
template <class M>
void ownRows(const RowsIO& base, const int* ss, const int* ds, int h, int n, int sRows = 1, int dRows = 1) {
  mover<M>().rows(base, ss, ds, h, n, sRows, dRows);
}
// The same with streaming stores and a fence at the end when `stream`.
template <class Plain, class Streamed>
void ownRowsNt(bool stream, const RowsIO& base, const int* ss, const int* ds, int h, int n) {
  if (stream) {
    ownRows<Streamed>(base, ss, ds, h, n);
    storeFence();
  } else {
    ownRows<Plain>(base, ss, ds, h, n);
  }
}

// 4:2:2 C2 to 4:2:0 planes: row 2k gives luma and chroma, row 2k+1 luma.
template <const Quad& Q>
void ownC2To420(const uint8_t* s, int ss, uint8_t* const d[3], const int ds[3], KeliSize t) {
  const auto full = mover<C2ToP3<Q>>();
  const auto luma = mover<C2ToY<Q>>();
  forRowPairs(t.height, [&](int k) {
    full({{rowAt(s, ss, 2 * k)}, {rowAt(d[0], ds[0], 2 * k), rowAt(d[1], ds[1], k), rowAt(d[2], ds[2], k)}},
         t.width >> 1);
    luma({{rowAt(s, ss, 2 * k + 1)}, {rowAt(d[0], ds[0], 2 * k + 1)}}, t.width >> 1);
  });
}

// Chroma of 4:2:0 planes from 4:1:1 row pairs, or the reverse: `fold` maps
// the source rows 2k, 2k+1 (or k) to the destination rows k (or 2k, 2k+1).
template <class M>
void ownFold(const RowsIO& base, const int* ss, const int* ds, int pairs, int n, bool srcPaired, int ns, int nd) {
  const auto mv = mover<M>();
  forRowPairs(2 * pairs, [&](int k) {
    RowsIO io{};
    for (int i = 0; i < ns; ++i) {
      const int plane = srcPaired ? i >> 1 : i;
      io.s[i] = rowAt(base.s[plane], ss[plane], srcPaired ? 2 * k + (i & 1) : k);
    }
    for (int i = 0; i < nd; ++i) {
      const int plane = srcPaired ? i : i >> 1;
      io.d[i] = rowAt(base.d[plane], ds[plane], srcPaired ? k : 2 * k + (i & 1));
    }
    mv(io, n);
  });
}

// Chroma row k of each 4:2:0 plane into rows 2k and 2k + 1: the same move
// twice in a row, the second time from a source row still in the cache.
template <class M>
void ownRowRepeat(const RowsIO& base, const int* ss, const int* ds, KeliSize t) {
  const auto mv = mover<M>();
  RowsIO io{};
  forRows(t.height & ~1, [&](int r) { mv(mv.seat(io, base, ss, ds, r >> 1, r), t.width >> 1); });
}

struct Steps4 {
  int v[4];
};
inline Steps4 steps(int a, int b = 0, int c = 0, int d = 0) { return {{a, b, c, d}}; }

}  // namespace
}  // namespace kel

using namespace kel;

extern "C" {

// ================================================================ move, 4:2:2
KelStatus keliCbYCr422ToYCbCr422_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({src}, {planes(dst, 3)}, roi, 2, kNoHeight)) return st;
  const KeliSize t = trim(roi, 2, 1);
  const Steps4 ss = steps(srcStep);
  ownRows<C2ToP3<kCbYCr>>({{src}, {dst[0], dst[1], dst[2]}}, ss.v, dstStep, t.height, t.width >> 1);
  return kelStatusOk;
}

// The one member that also refuses a null array of steps. One row routine
// serves aligned and unaligned images: the unaligned loads cost nothing on
// aligned data, and the bytes are the same.
KelStatus keliYCbCr422_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({src, dstStep}, {planes(dst, 3)}, roi, 2, 1)) return st;
  const KeliSize t = trim(roi, 2, 1);
  const Steps4 ss = steps(srcStep);
  ownRows<C2ToP3<kYCbCr>>({{src}, {dst[0], dst[1], dst[2]}}, ss.v, dstStep, t.height, t.width >> 1);
  return kelStatusOk;
}

KelStatus keliYCrCb422ToYCbCr422_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({src}, {planes(dst, 3)}, roi, 2, kNoHeight)) return st;
  const KeliSize t = trim(roi, 2, 1);
  const Steps4 ss = steps(srcStep), ds = steps(dstStep[0], dstStep[2], dstStep[1]);
  ownRows<C2ToP3<kYCbCr>>({{src}, {dst[0], dst[2], dst[1]}}, ss.v, ds.v, t.height, t.width >> 1);
  return kelStatusOk;
}

KelStatus keliYCbCr422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = check({dst}, {planes(src, 3)}, roi, 2, 1)) return st;
  const KeliSize t = trim(roi, 2, 1);
  const Steps4 ds = steps(dstStep);
  ownRows<P3ToC2<kYCbCr>>({{src[0], src[1], src[2]}, {dst}}, srcStep, ds.v, t.height, t.width >> 1);
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCrCb422_8u_C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = check({src, dst}, {}, roi, 2, kNoHeight)) return st;
  const KeliSize t = trim(roi, 2, 1);
  const Steps4 ss = steps(srcStep), ds = steps(dstStep);
  const bool nt = streamC2({dst}, {dstStep}, int64_t(srcStep) + dstStep, t.height);
  ownRowsNt<PermC2<0>, PermC2<0, true>>(nt, {{src}, {dst}}, ss.v, ds.v, t.height, t.width >> 1);
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCrCb422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                          KeliSize roi) {
  if (KelStatus st = check({dst}, {planes(src, 3)}, roi, 2, kNoHeight)) return st;
  const KeliSize t = trim(roi, 2, 1);
  const Steps4 ss = steps(srcStep[0], srcStep[2], srcStep[1]), ds = steps(dstStep);
  const bool nt = streamC2({dst}, {dstStep}, int64_t(srcStep[0]) + srcStep[1] + srcStep[2] + dstStep, t.height);
  ownRowsNt<P3ToC2<kYCbCr>, P3ToC2<kYCbCr, true>>(nt, {{src[0], src[2], src[1]}, {dst}}, ss.v, ds.v, t.height,
                                                  t.width >> 1);
  return kelStatusOk;
}

// ================================================================ move, 4:2:0 and 4:1:1
KelStatus keliYCbCr420_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3],
                                const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({srcY, srcCbCr}, {planes(dst, 3)}, roi, 2, 2)) return st;
  const KeliSize t = trim(roi, 2, 2);
  copyPlane(srcY, srcYStep, dst[0], dstStep[0], t.width, t.height);
  splitChroma(srcCbCr, srcCbCrStep, dst[1], dstStep[1], dst[2], dstStep[2], t.width >> 1, t.height >> 1);
  return kelStatusOk;
}

KelStatus keliYCbCr420_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr,
                                int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = check({dstY, dstCbCr}, {planes(src, 3)}, roi, 2, 2)) return st;
  const KeliSize t = trim(roi, 2, 2);
  copyPlane(src[0], srcStep[0], dstY, dstYStep, t.width, t.height);
  zipChroma(src[1], srcStep[1], src[2], srcStep[2], dstCbCr, dstCbCrStep, t.width >> 1, t.height >> 1);
  return kelStatusOk;
}

KelStatus keliYCbCr411_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep, Kel8u* dst[3],
                                const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({srcY, srcCbCr}, {planes(dst, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  ownLumaRows(srcY, srcYStep, dst[0], dstStep[0], t, false);
  const Steps4 ss = steps(srcCbCrStep), ds = steps(dstStep[1], dstStep[2]);
  ownRows<SplitPairs>({{srcCbCr}, {dst[1], dst[2]}}, ss.v, ds.v, t.height, t.width >> 2);
  return kelStatusOk;
}

KelStatus keliYCbCr411_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep, Kel8u* dstCbCr,
                                int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = check({dstY, dstCbCr}, {planes(src, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  ownLumaRows(src[0], srcStep[0], dstY, dstYStep, t, streamLuma(t, kStreamLuma));
  const Steps4 ss = steps(srcStep[1], srcStep[2]), ds = steps(dstCbCrStep);
  ownRows<ZipBytes>({{src[1], src[2]}, {dstCbCr}}, ss.v, ds.v, t.height, t.width >> 2);
  return kelStatusOk;
}

// ================================================================ even rows, 4:2:2 -> 4:2:0
KelStatus keliCbYCr422ToYCbCr420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownC2To420<kCbYCr>(src, srcStep, dst, dstStep, trim(roi, 2, 2));
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCbCr420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownC2To420<kYCbCr>(src, srcStep, dst, dstStep, trim(roi, 2, 2));
  return kelStatusOk;
}

KelStatus keliYCrCb422ToYCbCr420_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  Kel8u* const d[3] = {dst[0], dst[2], dst[1]};
  const int ds[3] = {dstStep[0], dstStep[2], dstStep[1]};
  ownC2To420<kYCbCr>(src, srcStep, d, ds, trim(roi, 2, 2));
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCbCr420_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3],
                                        KeliSize roi) {
  if (KelStatus st = check({}, {planes(src, 3), planes(dst, 3)}, roi, 2, 2)) return st;
  const KeliSize t = trim(roi, 2, 2);
  ownLumaRows(src[0], srcStep[0], dst[0], dstStep[0], t, streamLuma(t, kStreamLuma));
  for (int c = 1; c < 3; ++c) {
    const Steps4 ss = steps(srcStep[c]), ds = steps(dstStep[c]);
    ownRows<Copy>({{src[c]}, {dst[c]}}, ss.v, ds.v, t.height >> 1, t.width >> 1, 2, 1);  // rows 2k -> k
  }
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCbCr420_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep,
                                          Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = check({dstY, dstCbCr}, {planes(src, 3)}, roi, 2, 2)) return st;
  const KeliSize t = trim(roi, 2, 2);
  ownLumaRows(src[0], srcStep[0], dstY, dstYStep, t, false);
  const Steps4 ss = steps(srcStep[1], srcStep[2]), ds = steps(dstCbCrStep);
  ownRows<ZipBytes>({{src[1], src[2]}, {dstCbCr}}, ss.v, ds.v, t.height >> 1, t.width >> 1, 2, 1);
  return kelStatusOk;
}

// ================================================================ even columns, 4:2:2 -> 4:1:1
KelStatus keliCbYCr422ToYCbCr411_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({src}, {planes(dst, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  const Steps4 ss = steps(srcStep);
  ownRows<C2ToP3Even<kCbYCr>>({{src}, {dst[0], dst[1], dst[2]}}, ss.v, dstStep, t.height, t.width >> 2);
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCbCr411_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({src}, {planes(dst, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  const Steps4 ss = steps(srcStep);
  ownRows<C2ToP3Even<kYCbCr>>({{src}, {dst[0], dst[1], dst[2]}}, ss.v, dstStep, t.height, t.width >> 2);
  return kelStatusOk;
}

KelStatus keliYCrCb422ToYCbCr411_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({src}, {planes(dst, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  const Steps4 ss = steps(srcStep), ds = steps(dstStep[0], dstStep[2], dstStep[1]);
  ownRows<C2ToP3Even<kYCbCr>>({{src}, {dst[0], dst[2], dst[1]}}, ss.v, ds.v, t.height, t.width >> 2);
  return kelStatusOk;
}

// Both destination planes must be aligned for the streamed form.
KelStatus keliYCbCr422ToYCbCr411_8u_C2P2R(const Kel8u* src, int srcStep, Kel8u* dstY, int dstYStep, Kel8u* dstCbCr,
                                          int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = check({src, dstY, dstCbCr}, {}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  const Steps4 ss = steps(srcStep), ds = steps(dstYStep, dstCbCrStep);
  const bool nt =
      streamC2({dstY, dstCbCr}, {dstYStep, dstCbCrStep}, int64_t(srcStep) + dstYStep + dstCbCrStep, t.height);
  ownRowsNt<C2ToP2Even<kYCbCr>, C2ToP2Even<kYCbCr, true>>(nt, {{src}, {dstY, dstCbCr}}, ss.v, ds.v, t.height,
                                                          t.width >> 2);
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCbCr411_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3],
                                        KeliSize roi) {
  if (KelStatus st = check({}, {planes(src, 3), planes(dst, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  ownLumaRows(src[0], srcStep[0], dst[0], dstStep[0], t, streamLuma(t, kStreamLuma411));
  for (int c = 1; c < 3; ++c) {
    const Steps4 ss = steps(srcStep[c]), ds = steps(dstStep[c]);
    ownRows<EvenBytes>({{src[c]}, {dst[c]}}, ss.v, ds.v, t.height, t.width >> 2);
  }
  return kelStatusOk;
}

KelStatus keliYCbCr422ToYCbCr411_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep,
                                          Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = check({dstY, dstCbCr}, {planes(src, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  ownLumaRows(src[0], srcStep[0], dstY, dstYStep, t, false);
  const Steps4 ss = steps(srcStep[1], srcStep[2]), ds = steps(dstCbCrStep);
  ownRows<ZipEvenBytes>({{src[1], src[2]}, {dstCbCr}}, ss.v, ds.v, t.height, t.width >> 2);
  return kelStatusOk;
}

// ================================================================ row repeat, 4:2:0 -> 4:2:2

KelStatus keliYCbCr420ToYCbCr422_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3],
                                        KeliSize roi) {
  if (KelStatus st = check({}, {planes(src, 3), planes(dst, 3)}, roi, 2, 2)) return st;
  const KeliSize t = trim(roi, 2, 2);
  ownLumaRows(src[0], srcStep[0], dst[0], dstStep[0], t, false);
  for (int c = 1; c < 3; ++c) {
    const Steps4 ss = steps(srcStep[c]), ds = steps(dstStep[c]);
    ownRowRepeat<Copy>({{src[c]}, {dst[c]}}, ss.v, ds.v, t);
  }
  return kelStatusOk;
}

KelStatus keliYCbCr420ToYCbCr422_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep,
                                          Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({srcY, srcCbCr}, {planes(dst, 3)}, roi, 2, 2)) return st;
  const KeliSize t = trim(roi, 2, 2);
  ownLumaRows(srcY, srcYStep, dst[0], dstStep[0], t, false);
  const Steps4 ss = steps(srcCbCrStep), ds = steps(dstStep[1], dstStep[2]);
  ownRowRepeat<SplitPairs>({{srcCbCr}, {dst[1], dst[2]}}, ss.v, ds.v, t);
  return kelStatusOk;
}

KelStatus keliYCrCb420ToYCbCr422_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3],
                                        KeliSize roi) {
  if (KelStatus st = check({}, {planes(src, 3), planes(dst, 3)}, roi, 2, 2)) return st;
  const KeliSize t = trim(roi, 2, 2);
  ownLumaRows(src[0], srcStep[0], dst[0], dstStep[0], t, false);
  for (int c = 1; c < 3; ++c) {
    const Steps4 ss = steps(srcStep[3 - c]), ds = steps(dstStep[c]);  // Cr, Cb source planes
    ownRowRepeat<Copy>({{src[3 - c]}, {dst[c]}}, ss.v, ds.v, t);
  }
  return kelStatusOk;
}

// ================================================================ column repeat, 4:1:1 -> 4:2:2
KelStatus keliYCbCr411ToYCbCr422_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3],
                                        KeliSize roi) {
  if (KelStatus st = check({}, {planes(src, 3), planes(dst, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  ownLumaRows(src[0], srcStep[0], dst[0], dstStep[0], t, false);
  for (int c = 1; c < 3; ++c) {
    const Steps4 ss = steps(srcStep[c]), ds = steps(dstStep[c]);
    ownRows<DupBytes>({{src[c]}, {dst[c]}}, ss.v, ds.v, t.height, t.width >> 2);
  }
  return kelStatusOk;
}

KelStatus keliYCbCr411ToYCrCb422_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3],
                                        KeliSize roi) {
  if (KelStatus st = check({}, {planes(src, 3), planes(dst, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  ownLumaRows(src[0], srcStep[0], dst[0], dstStep[0], t, false);
  for (int c = 1; c < 3; ++c) {
    const Steps4 ss = steps(srcStep[c]), ds = steps(dstStep[3 - c]);  // Cb into plane 2, Cr into plane 1
    ownRows<DupBytes>({{src[c]}, {dst[3 - c]}}, ss.v, ds.v, t.height, t.width >> 2);
  }
  return kelStatusOk;
}

KelStatus keliYCbCr411ToYCbCr422_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep,
                                          Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({srcY, srcCbCr}, {planes(dst, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  ownLumaRows(srcY, srcYStep, dst[0], dstStep[0], t, streamLuma(t, kStreamLuma));
  const Steps4 ss = steps(srcCbCrStep), ds = steps(dstStep[1], dstStep[2]);
  ownRows<SplitPairsDup>({{srcCbCr}, {dst[1], dst[2]}}, ss.v, ds.v, t.height, t.width >> 2);
  return kelStatusOk;
}

KelStatus keliYCbCr411ToYCbCr422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                          KeliSize roi) {
  if (KelStatus st = check({dst}, {planes(src, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  const Steps4 ds = steps(dstStep);
  const bool nt = streamC2({dst}, {dstStep}, int64_t(srcStep[0]) + srcStep[1] + srcStep[2] + dstStep, t.height);
  ownRowsNt<P3ToC2Dup<kYCbCr>, P3ToC2Dup<kYCbCr, true>>(nt, {{src[0], src[1], src[2]}, {dst}}, srcStep, ds.v,
                                                        t.height, t.width >> 2);
  return kelStatusOk;
}

KelStatus keliYCbCr411ToYCrCb422_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                          KeliSize roi) {
  if (KelStatus st = check({dst}, {planes(src, 3)}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  const Steps4 ss = steps(srcStep[0], srcStep[2], srcStep[1]), ds = steps(dstStep);
  const bool nt = streamC2({dst}, {dstStep}, int64_t(srcStep[0]) + srcStep[1] + srcStep[2] + dstStep, t.height);
  ownRowsNt<P3ToC2Dup<kYCbCr>, P3ToC2Dup<kYCbCr, true>>(nt, {{src[0], src[2], src[1]}, {dst}}, ss.v, ds.v,
                                                        t.height, t.width >> 2);
  return kelStatusOk;
}

KelStatus keliYCbCr411ToYCbCr422_8u_P2C2R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep,
                                          Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = check({srcY, srcCbCr, dst}, {}, roi, 4, kNoHeight)) return st;
  const KeliSize t = trim(roi, 4, 1);
  const Steps4 ss = steps(srcYStep, srcCbCrStep), ds = steps(dstStep);
  const bool nt = streamC2({dst}, {dstStep}, int64_t(srcYStep) + srcCbCrStep + dstStep, t.height);
  ownRowsNt<P2ToC2Dup<kYCbCr>, P2ToC2Dup<kYCbCr, true>>(nt, {{srcY, srcCbCr}, {dst}}, ss.v, ds.v, t.height,
                                                        t.width >> 2);
  return kelStatusOk;
}

// ================================================================ row fold, 4:1:1 -> 4:2:0
KelStatus keliYCbCr411ToYCbCr420_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3],
                                        KeliSize roi) {
  if (KelStatus st = check({}, {planes(src, 3), planes(dst, 3)}, roi, 4, 2)) return st;
  const KeliSize t = trim(roi, 4, 2);
  ownLumaRows(src[0], srcStep[0], dst[0], dstStep[0], t, false);
  for (int c = 1; c < 3; ++c) {
    const Steps4 ss = steps(srcStep[c]), ds = steps(dstStep[c]);
    ownFold<ZipBytes>({{src[c]}, {dst[c]}}, ss.v, ds.v, t.height >> 1, t.width >> 2, true, 2, 1);
  }
  return kelStatusOk;
}

KelStatus keliYCbCr411ToYCbCr420_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep,
                                          Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({srcY, srcCbCr}, {planes(dst, 3)}, roi, 4, 2)) return st;
  const KeliSize t = trim(roi, 4, 2);
  ownLumaRows(srcY, srcYStep, dst[0], dstStep[0], t, false);
  const Steps4 ss = steps(srcCbCrStep), ds = steps(dstStep[1], dstStep[2]);
  ownFold<FoldPairs>({{srcCbCr}, {dst[1], dst[2]}}, ss.v, ds.v, t.height >> 1, t.width >> 2, true, 2, 2);
  return kelStatusOk;
}

KelStatus keliYCbCr411ToYCrCb420_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep,
                                          Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({srcY, srcCbCr}, {planes(dst, 3)}, roi, 4, 2)) return st;
  const KeliSize t = trim(roi, 4, 2);
  ownLumaRows(srcY, srcYStep, dst[0], dstStep[0], t, false);
  const Steps4 ss = steps(srcCbCrStep), ds = steps(dstStep[2], dstStep[1]);
  ownFold<FoldPairs>({{srcCbCr}, {dst[2], dst[1]}}, ss.v, ds.v, t.height >> 1, t.width >> 2, true, 2, 2);
  return kelStatusOk;
}

KelStatus keliYCbCr411ToYCbCr420_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep,
                                          Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = check({dstY, dstCbCr}, {planes(src, 3)}, roi, 4, 2)) return st;
  const KeliSize t = trim(roi, 4, 2);
  ownLumaRows(src[0], srcStep[0], dstY, dstYStep, t, streamLuma(t, kStreamLuma));
  // Sources in the order Cb, Cr of row 2k, then of row 2k + 1.
  const auto mv = mover<Zip4>();
  forRowPairs(t.height, [&](int k) {
    mv({{rowAt(src[1], srcStep[1], 2 * k), rowAt(src[2], srcStep[2], 2 * k), rowAt(src[1], srcStep[1], 2 * k + 1),
         rowAt(src[2], srcStep[2], 2 * k + 1)},
        {rowAt(dstCbCr, dstCbCrStep, k)}},
       t.width >> 2);
  });
  return kelStatusOk;
}

// ================================================================ row unfold, 4:2:0 -> 4:1:1
KelStatus keliYCbCr420ToYCbCr411_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr, int srcCbCrStep,
                                          Kel8u* dst[3], const int dstStep[3], KeliSize roi) {
  if (KelStatus st = check({srcY, srcCbCr}, {planes(dst, 3)}, roi, 4, 2)) return st;
  const KeliSize t = trim(roi, 4, 2);
  ownLumaRows(srcY, srcYStep, dst[0], dstStep[0], t, false);
  // Destinations in the order Cb, Cr of row 2k, then of row 2k + 1.
  const auto mv = mover<Unzip4>();
  forRowPairs(t.height, [&](int k) {
    mv({{rowAt(srcCbCr, srcCbCrStep, k)},
        {rowAt(dst[1], dstStep[1], 2 * k), rowAt(dst[2], dstStep[2], 2 * k), rowAt(dst[1], dstStep[1], 2 * k + 1),
         rowAt(dst[2], dstStep[2], 2 * k + 1)}},
       t.width >> 2);
  });
  return kelStatusOk;
}

KelStatus keliYCbCr420ToYCbCr411_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep,
                                          Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = check({dstY, dstCbCr}, {planes(src, 3)}, roi, 4, 2)) return st;
  const KeliSize t = trim(roi, 4, 2);
  ownLumaRows(src[0], srcStep[0], dstY, dstYStep, t, false);
  const Steps4 ss = steps(srcStep[1], srcStep[2]), ds = steps(dstCbCrStep);
  ownFold<UnfoldPairs>({{src[1], src[2]}, {dstCbCr}}, ss.v, ds.v, t.height >> 1, t.width >> 2, false, 2, 2);
  return kelStatusOk;
}

KelStatus keliYCrCb420ToYCbCr411_8u_P3P2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dstY, int dstYStep,
                                          Kel8u* dstCbCr, int dstCbCrStep, KeliSize roi) {
  if (KelStatus st = check({dstY, dstCbCr}, {planes(src, 3)}, roi, 4, 2)) return st;
  const KeliSize t = trim(roi, 4, 2);
  ownLumaRows(src[0], srcStep[0], dstY, dstYStep, t, false);
  const Steps4 ss = steps(srcStep[2], srcStep[1]), ds = steps(dstCbCrStep);
  ownFold<UnfoldPairs>({{src[2], src[1]}, {dstCbCr}}, ss.v, ds.v, t.height >> 1, t.width >> 2, false, 2, 2);
  return kelStatusOk;
}

}  // extern "C"
