// Filtered chroma upsampling: 4:2:0 to 4:2:2 planes with a four-tap vertical
// filter, and 4:2:0 YCrCb planes to BGRA with a two-tap horizontal one.
//
// Vertical members (width trimmed to even, height to a multiple of 8):
//   luma rows copied; source chroma row k into destination row 2k; then, in
//   the destination planes themselves, with S[k] = D[2k] and row indices
//   clamped to 0 .. c - 1 (c = height / 2):
//     D[2k + 1] = clip8((9 (S[k] + S[k + 1]) - S[k - 1] - S[k + 2] + 8) >> 4)
//   Each odd row is filtered as soon as the even rows it needs stand, while
//   they are still in the cache. Status kelStatusOk.
//
// keliYCrCb420ToBGR_Filter_8u_P3C4R: row pairs share chroma row r; pixel pair
// i takes Cb[i], Cr[i] on its left pixel and their avg8 with sample i + 1 on
// its right one (the row's last pair: the samples themselves). Pairs below
// (n - 1) & ~7 (n = width >> 1) take the 16-bit body form, all others the
// 32-bit tail form (grids.h). An odd last column and row stay unwritten.
//
// Width 1, which the size check lets pass, has no whole pixel pair: nothing
// is written and the status is kelStatusOddSizeTrimmed, as for any odd width
// whose last column is left out. (The last-pair rule would otherwise have to
// write a second column outside the image.)
#include <algorithm>
#include <cstdint>

#include "chroma/grids.h"
#include "chroma/layout_rows.h"
#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace grid;

// The destination of the vertical members: planes Y, Cb, Cr, w by H.
struct Dst3 {
  Kel8u* d[3];
  int ds[3];
  int w, H;
};

// Filters the odd rows of one destination chroma plane (n samples a row)
// whose even rows stand; `ready(k)` writes even row 2k.
template <class Ready>
void ownFilterPlane(Kel8u* d, int ds, int n, int c, const GridOp<Tap4>& tap, Ready ready) {
  auto S = [&](int k) { return rowAt(d, ds, 2 * std::clamp(k, 0, c - 1)); };
  auto odd = [&](int k) { tap({{S(k - 1), S(k), S(k + 1), S(k + 2)}, {rowAt(d, ds, 2 * k + 1)}}, n); };
  for (int k = 0; k < c; ++k) {
    ready(k);
    if (k >= 2) odd(k - 2);
  }
  for (int k = std::max(c - 2, 0); k < c; ++k) odd(k);
}

// ownYCbCr420ToYCbCr422Filter_8u_P3R: source planes Y, Cb, Cr (a YCrCb
// source comes with its chroma planes exchanged).
void ownYCbCr420ToYCbCr422Filter_8u_P3R(const Kel8u* const s[3], const int ss[3], const Dst3& o) {
  copyPlane(s[0], ss[0], o.d[0], o.ds[0], o.w, o.H);
  const auto copy = mover<lrow::Copy>();
  const auto tap = gridOp<Tap4>();
  const int n = o.w >> 1;
  for (int p = 1; p < 3; ++p)
    ownFilterPlane(o.d[p], o.ds[p], n, o.H / 2, tap,
                   [&](int k) { copy({{rowAt(s[p], ss[p], k)}, {rowAt(o.d[p], o.ds[p], 2 * k)}}, n); });
}

// ownYCbCr420ToYCbCr422Filter_8u_P2P3R: the pairs of each chroma row are
// split into the even rows of both planes while the first plane is filtered.
void ownYCbCr420ToYCbCr422Filter_8u_P2P3R(const Kel8u* y, int ys, const Kel8u* c, int cs, const Dst3& o) {
  copyPlane(y, ys, o.d[0], o.ds[0], o.w, o.H);
  const auto split = mover<lrow::SplitPairs>();
  const auto tap = gridOp<Tap4>();
  const int n = o.w >> 1, rows = o.H / 2;
  ownFilterPlane(o.d[1], o.ds[1], n, rows, tap, [&](int k) {
    split({{rowAt(c, cs, k)}, {rowAt(o.d[1], o.ds[1], 2 * k), rowAt(o.d[2], o.ds[2], 2 * k)}}, n);
  });
  ownFilterPlane(o.d[2], o.ds[2], n, rows, tap, [](int) {});
}

inline Dst3 dst3(Kel8u* const d[3], const int ds[3], KeliSize roi) {
  return {{d[0], d[1], d[2]}, {ds[0], ds[1], ds[2]}, roi.width & ~1, roi.height & ~7};
}

// myYCrCb420ToBGR_8u_P3C4R: planes Y, Cr, Cb.
void myYCrCb420ToBGR_8u_P3C4R(const Kel8u* const s[3], const int ss[3], Kel8u* d, int ds, KeliSize roi, int alpha) {
  const int n = roi.width >> 1;
  if (n < 1) return;
  const int body = (n - 1) & ~7;
  const auto bodyOp = gridOp<BgraBody>();
  forRowPairs(roi.height, [&](int k) {
    for (int r = 2 * k; r < 2 * k + 2; ++r) {
      const GridIO io{{rowAt(s[0], ss[0], r), rowAt(s[1], ss[1], k), rowAt(s[2], ss[2], k)},
                      {rowAt(d, ds, r)}, 0, 0, alpha};
      bodyOp(io, body);
      bgraPairs<false>(io, body, n, n - 1);
    }
  });
}

}  // namespace
}  // namespace kel

using namespace kel;

extern "C" {

KelStatus keliYCbCr420ToYCbCr422_Filter_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3],
                                               const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({}, {planes(src, 3), planes(dst, 3)}, roi, 2, 8)) return st;
  ownYCbCr420ToYCbCr422Filter_8u_P3R(src, srcStep, dst3(dst, dstStep, roi));
  return kelStatusOk;
}

KelStatus keliYCrCb420ToYCbCr422_Filter_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3],
                                               const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({}, {planes(src, 3), planes(dst, 3)}, roi, 2, 8)) return st;
  const Kel8u* const s[3] = {src[0], src[2], src[1]};
  const int ss[3] = {srcStep[0], srcStep[2], srcStep[1]};
  ownYCbCr420ToYCbCr422Filter_8u_P3R(s, ss, dst3(dst, dstStep, roi));
  return kelStatusOk;
}

KelStatus keliYCbCr420ToYCbCr422_Filter_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr,
                                                 int srcCbCrStep, Kel8u* dst[3], const int dstStep[3],
                                                 KeliSize roi) {
  if (KelStatus st = checkB({srcY, srcCbCr}, {planes(dst, 3)}, roi, 2, 8)) return st;
  ownYCbCr420ToYCbCr422Filter_8u_P2P3R(srcY, srcYStep, srcCbCr, srcCbCrStep, dst3(dst, dstStep, roi));
  return kelStatusOk;
}

KelStatus keliYCrCb420ToBGR_Filter_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                            KeliSize roi, int alpha) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myYCrCb420ToBGR_8u_P3C4R(src, srcStep, dst, dstStep, roi, alpha);
  return status420(roi);
}

}  // extern "C"
