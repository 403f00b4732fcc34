// 4:2:2 <-> 4:2:0 on interlaced pictures: true vertical chroma filters that
// never mix the two fields. Chroma rows of even index are combined only with
// rows of even index, odd with odd, and the weights follow each row's place
// inside its field. Luma is moved unchanged.
//
// The size used is w = width & ~1 by h = height & ~3; nothing beyond it is
// read or written. Status kelStatusOddSizeTrimmed when the width is odd or
// the height not a multiple of 4, the trimmed picture being complete.
//
//   4:2:2 -> 4:2:0, group g of source rows 4g .. 4g+3 (S) gives D rows 2g, 2g+1:
//     D[2g]     = (3 S[4g]     + S[4g+2]   + 2) >> 2
//     D[2g + 1] = (S[4g+1]     + 3 S[4g+3] + 2) >> 2
//   4:2:0 -> 4:2:2, D[0], D[1] = S[0], S[1]; D[h-2], D[h-1] = S[h/2-2], S[h/2-1];
//   group g (0 .. h/4 - 2) of source rows 2g .. 2g+3 gives D rows 4g+2 .. 4g+5:
//     (5 S[2g] + 3 S[2g+2] + 4) >> 3,   (7 S[2g+1] + S[2g+3] + 4) >> 3,
//     (S[2g] + 7 S[2g+2] + 4) >> 3,     (3 S[2g+1] + 5 S[2g+3] + 4) >> 3
// Every one is the mix (wa a + wb b + 4) >> 3 of grids.h with wa + wb = 8
// (the first pair as 6, 2; the unfiltered edge rows as 8, 0).
//
// Threads: above 128 x 128 (w at least 128, h at least 129) with two or more
// threads, the master thread of the region splits the rows into bands of
// whole groups by the team's real size; each thread then converts its band.
// Since the bands follow the team the runtime actually gave, every row is
// done whatever that size, and the bytes never depend on it.
#include <cstdint>

#include "chroma/grids.h"
#include "frame/checks.h"
#include "frame/parallel.h"
#include "frame/rows.h"
#include "support/support.h"

namespace kel {
namespace {

using namespace grid;

struct Pic {
  const Kel8u* s[3];
  int ss[3];
  Kel8u* d[3];
  int ds[3];
  int w, h;
};
inline Pic trimmed(const Kel8u* const s[3], const int ss[3], Kel8u* const d[3], const int ds[3], KeliSize roi) {
  return {{s[0], s[1], s[2]}, {ss[0], ss[1], ss[2]}, {d[0], d[1], d[2]}, {ds[0], ds[1], ds[2]},
          roi.width & ~1, roi.height & ~3};
}
inline KelStatus finalStatus(KeliSize roi) {
  return ((roi.width & 1) || (roi.height & 3)) ? kelStatusOddSizeTrimmed : kelStatusOk;
}
inline bool parallelSize(const Pic& p) { return p.w >= 128 && p.h >= 129; }

// Luma rows r0 .. r0 + rows - 1, plane to plane.
inline void lumaBand(const Pic& p, int r0, int rows) {
  if (rows > 0)
    keliCopy_8u_C1R(rowAt(p.s[0], p.ss[0], r0), p.ss[0], rowAt(p.d[0], p.ds[0], r0), p.ds[0], {p.w, rows});
}

// ---- 4:2:2 -> 4:2:0 ---------------------------------------------------------------
// Bands of b = ((h >> 2) / n) * 4 rows; the last band also takes e = h - n b.
struct DownPlan {
  int b, e, n;
};
inline DownPlan downPlan(int h, int n) {
  const int b = ((h >> 2) / n) * 4;
  return {b, h - n * b, n};
}
template <class Band>
inline void downBands(const Pic& p, Band band) {
  parallelMasterBands<DownPlan>(
      parallelSize(p), [&](int n) { return downPlan(p.h, n); },
      [&](int t, int, const DownPlan& pl) { band(t * pl.b, pl.b + (t == pl.n - 1 ? pl.e : 0)); },
      [&] { band(0, p.h); });
}

// ownYCbCr422To420_Interlace_P3R: luma rows r0 .. r0 + rows - 1 and their groups.
void ownYCbCr422To420_Interlace_P3R(const Pic& p, const GridOp<Mix>& mx, int r0, int rows) {
  lumaBand(p, r0, rows);
  for (int c = 1; c < 3; ++c)
    for (int g = r0 / 4; g < (r0 + rows) / 4; ++g) {
      auto S = [&](int r) { return rowAt(p.s[c], p.ss[c], r); };
      mx({{S(4 * g), S(4 * g + 2)}, {rowAt(p.d[c], p.ds[c], 2 * g)}, 6, 2}, p.w >> 1);
      mx({{S(4 * g + 3), S(4 * g + 1)}, {rowAt(p.d[c], p.ds[c], 2 * g + 1)}, 6, 2}, p.w >> 1);
    }
}
// ownCbYCr422ToYCbCr420_Interlace_C2P3R: each C2 row read once; the first of
// the two rows of a mix is the one of weight 3.
void ownCbYCr422ToYCbCr420_Interlace_C2P3R(const Pic& p, const GridOp<MixFromC2>& mx, int r0, int rows) {
  auto S = [&](int r) { return rowAt(p.s[0], p.ss[0], r); };
  auto Y = [&](int r) { return rowAt(p.d[0], p.ds[0], r); };
  for (int g = r0 / 4; g < (r0 + rows) / 4; ++g) {
    const int r = 4 * g;
    Kel8u *cb0 = rowAt(p.d[1], p.ds[1], 2 * g), *cr0 = rowAt(p.d[2], p.ds[2], 2 * g);
    Kel8u *cb1 = rowAt(p.d[1], p.ds[1], 2 * g + 1), *cr1 = rowAt(p.d[2], p.ds[2], 2 * g + 1);
    mx({{S(r), S(r + 2)}, {Y(r), Y(r + 2), cb0, cr0}, 6, 2}, p.w >> 1);
    mx({{S(r + 3), S(r + 1)}, {Y(r + 3), Y(r + 1), cb1, cr1}, 6, 2}, p.w >> 1);
  }
}

// ---- 4:2:0 -> 4:2:2 ---------------------------------------------------------------
// Bands of b = (((h - 4) >> 2) / n) * 4 rows: band t starts at row t b (plus
// 2 after the first), the first band also takes the two top rows and the last
// the e = h - n b - 2 rows left, the two bottom rows among them.
struct UpPlan {
  int b, e, n;
};
inline UpPlan upPlan(int h, int n) {
  const int b = (((h - 4) >> 2) / n) * 4;
  return {b, h - n * b - 2, n};
}
// A band: destination rows r0 .. r0 + rows - 1, the top and bottom edges
// included where the flags say so.
struct UpBand {
  int r0, rows;
  bool top, bottom;
};
template <class Band>
inline void upBands(const Pic& p, Band band) {
  parallelMasterBands<UpPlan>(
      parallelSize(p), [&](int n) { return upPlan(p.h, n); },
      [&](int t, int, const UpPlan& pl) {
        const bool top = t == 0, bottom = t == pl.n - 1;
        band(UpBand{t * pl.b + (top ? 0 : 2), pl.b + (top ? 2 : 0) + (bottom ? pl.e : 0), top, bottom});
      },
      [&] { band(UpBand{0, p.h, true, true}); });
}
// The chroma rows of a band as (destination row, source row a, source row b,
// weight of a) in the order of the rows.
template <class Row>
inline void upRows(const UpBand& bd, int h, Row row) {
  if (bd.rows <= 0) return;
  if (bd.top) row(0, 0, 0, 8), row(1, 1, 1, 8);
  const int first = bd.r0 + (bd.top ? 2 : 0), last = bd.r0 + bd.rows - (bd.bottom ? 2 : 0);
  for (int g = (first - 2) / 4; 4 * g + 2 < last; ++g) {
    const int s = 2 * g, r = 4 * g + 2;
    row(r, s, s + 2, 5), row(r + 1, s + 1, s + 3, 7), row(r + 2, s + 2, s, 7), row(r + 3, s + 3, s + 1, 5);
  }
  if (bd.bottom) row(h - 2, h / 2 - 2, h / 2 - 2, 8), row(h - 1, h / 2 - 1, h / 2 - 1, 8);
}

// ownYCbCr420To422_Interlace_P3R
void ownYCbCr420To422_Interlace_P3R(const Pic& p, const GridOp<Mix>& mx, const UpBand& bd) {
  lumaBand(p, bd.r0, bd.rows);
  upRows(bd, p.h, [&](int r, int a, int b, int wa) {
    for (int c = 1; c < 3; ++c)
      mx({{rowAt(p.s[c], p.ss[c], a), rowAt(p.s[c], p.ss[c], b)}, {rowAt(p.d[c], p.ds[c], r)}, wa, 8 - wa},
         p.w >> 1);
  });
}
// ownYCbCr420ToCbYCr422_Interlace_P3C2R: each C2 row in one pass.
void ownYCbCr420ToCbYCr422_Interlace_P3C2R(const Pic& p, const GridOp<MixToC2>& mx, const UpBand& bd) {
  upRows(bd, p.h, [&](int r, int a, int b, int wa) {
    mx({{rowAt(p.s[0], p.ss[0], r), rowAt(p.s[1], p.ss[1], a), rowAt(p.s[1], p.ss[1], b), rowAt(p.s[2], p.ss[2], a),
         rowAt(p.s[2], p.ss[2], b)},
        {rowAt(p.d[0], p.ds[0], r)},
        wa,
        8 - wa},
       p.w >> 1);
  });
}

}  // namespace
}  // namespace kel

using namespace kel;

extern "C" {

KelStatus keliYCbCr422To420_Interlace_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3],
                                              const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({}, {planes(src, 3), planes(dst, 3)}, roi, 2, 4)) return st;
  const Pic p = trimmed(src, srcStep, dst, dstStep, roi);
  const auto mx = gridOp<Mix>();
  downBands(p, [&](int r0, int rows) { ownYCbCr422To420_Interlace_P3R(p, mx, r0, rows); });
  return finalStatus(roi);
}

KelStatus keliCbYCr422ToYCbCr420_Interlace_8u_C2P3R(const Kel8u* src, int srcStep, Kel8u* dst[3],
                                                    const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 4)) return st;
  const Kel8u* const s[3] = {src, nullptr, nullptr};
  const int ss[3] = {srcStep, 0, 0};
  const Pic p = trimmed(s, ss, dst, dstStep, roi);
  const auto mx = gridOp<MixFromC2>();
  downBands(p, [&](int r0, int rows) { ownCbYCr422ToYCbCr420_Interlace_C2P3R(p, mx, r0, rows); });
  return finalStatus(roi);
}

KelStatus keliYCbCr420To422_Interlace_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3],
                                              const int dstStep[3], KeliSize roi) {
  if (KelStatus st = checkB({}, {planes(src, 3), planes(dst, 3)}, roi, 2, 4)) return st;
  const Pic p = trimmed(src, srcStep, dst, dstStep, roi);
  const auto mx = gridOp<Mix>();
  upBands(p, [&](const UpBand& bd) { ownYCbCr420To422_Interlace_P3R(p, mx, bd); });
  return finalStatus(roi);
}

KelStatus keliYCbCr420ToCbYCr422_Interlace_8u_P3C2R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst,
                                                    int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi, 2, 4)) return st;
  Kel8u* const d[3] = {dst, nullptr, nullptr};
  const int ds[3] = {dstStep, 0, 0};
  const Pic p = trimmed(src, srcStep, d, ds, roi);
  const auto mx = gridOp<MixToC2>();
  upBands(p, [&](const UpBand& bd) { ownYCbCr420ToCbYCr422_Interlace_P3C2R(p, mx, bd); });
  return finalStatus(roi);
}

}  // extern "C"
