// Chroma grid changes of three-plane images between 420 (2 x 2 luma pixels per
// chroma sample), 411 (4 x 1) and 1620 (4 x 4). Going down, every second
// sample is kept; going up, means of two neighbours are placed between the
// kept ones. The luma plane is copied as it is; plane 1 goes to plane 1 and
// plane 2 to plane 2. The wide stages of each row round a mean up (avg8) and
// the narrow and single-sample stages round it down (half), so a mean's
// value depends on the column it falls in:
//
//   420 -> 1620  d[i][j] = s[2i][2j]
//   420 -> 411   d[2k][j] = s[k][2j]; d[2k+1][j] = mean(s[k][2j], s[k+1][2j]),
//                avg8 for j below 32 (n / 32), half after; the last k repeats
//                its row: d[2k+1] = d[2k]
//   411 -> 420   from the even source rows: d[i][2j] = s[2i][j],
//                d[i][2j+1] = mean(s[2i][j], s[2i][j+1]), avg8 for j below
//                b = 16 ((n - 1) / 16), half after; d[i][2n-1] = s[2i][n-1]
//   1620 -> 420  both directions, the same b; the last column takes no
//                horizontal mean and half vertical ones; the last source row
//                repeats its samples into the last destination row
//
// n = width / 4. Sizes off the grid are refused, never trimmed.
//
// Height 2 of 420 -> 411: the source has one chroma row, which is its last;
// both destination rows take it unchanged (the last-row rule), no second
// source row is read and no third destination row written.
//
// The chroma steps are unsigned 32-bit numbers here: a negative chroma step
// walks forward by 2^32 minus its size, and is not supported.
#include <cstdint>

#include "chroma/grids.h"
#include "chroma/layout_rows.h"
#include "frame/checks.h"
#include "support/support.h"

namespace kel {
namespace {

using namespace grid;

// One chroma plane of a call; rows by unsigned steps.
struct ChromaPlane {
  const Kel8u* s;
  int ss;
  Kel8u* d;
  int ds;
  const Kel8u* S(int r) const { return rowAtU(s, ss, r); }
  Kel8u* D(int r) const { return rowAtU(d, ds, r); }
};

// yuv420toyuv1620
void yuv420toyuv1620(const ChromaPlane& p, int height, int width) {
  const auto even = mover<lrow::EvenBytes>();
  for (int i = 0; i < height / 4; ++i) even({{p.S(2 * i)}, {p.D(i)}}, width / 4);
}

// yuv420toyuv411
void yuv420toyuv411(const ChromaPlane& p, int height, int width) {
  const int n = width / 4, wide = 32 * (n / 32), rows = height / 2;
  const auto even = mover<lrow::EvenBytes>();
  const auto avg = gridOp<EvenMean<kAvg>>();
  const auto half = gridOp<EvenMean<kHalf>>();
  for (int k = 0; k < rows; ++k) {
    even({{p.S(k)}, {p.D(2 * k)}}, n);
    if (k == rows - 1) {
      even({{p.S(k)}, {p.D(2 * k + 1)}}, n);
      continue;
    }
    const GridIO io{{p.S(k), p.S(k + 1)}, {p.D(2 * k + 1)}};
    avg(io, wide);
    half(io, wide, n);
  }
}

// One row of samples doubled across: d[2j] = t[j], means between, the last
// sample repeated; b the end of the avg8 run.
inline void dupRow(const GridOp<DupMean<kAvg>>& avg, const Kel8u* t, Kel8u* d, int n, int b) {
  const GridIO io{{t}, {d}};
  avg(io, b);
  DupMean<kHalf>::run(io, b, n - 1);
  d[2 * n - 2] = d[2 * n - 1] = t[n - 1];
}
inline int bodyOf(int n) { return 16 * ((n - 1) / 16); }

// yvu411toyuv420
void yvu411toyuv420(const ChromaPlane& p, int height, int width) {
  const int n = width / 4, b = bodyOf(n);
  const auto avg = gridOp<DupMean<kAvg>>();
  for (int i = 0; i < height / 2; ++i) dupRow(avg, p.S(2 * i), p.D(i), n, b);
}

// yvu1620toyuv420
void yvu1620toyuv420(const ChromaPlane& p, int height, int width) {
  const int n = width / 4, b = bodyOf(n), rows = height / 4;
  const auto avg = gridOp<QuadMean<kAvg>>();
  const auto dupAvg = gridOp<DupMean<kAvg>>();
  const auto dup = mover<lrow::DupBytes>();
  for (int i = 0; i < rows - 1; ++i) {
    const Kel8u *t = p.S(i), *u = p.S(i + 1);
    Kel8u *d0 = p.D(2 * i), *d1 = p.D(2 * i + 1);
    const GridIO io{{t, u}, {d0, d1}};
    avg(io, b);
    QuadMean<kHalf>::run(io, b, n - 1);
    d0[2 * n - 2] = d0[2 * n - 1] = t[n - 1];
    d1[2 * n - 2] = d1[2 * n - 1] = static_cast<Kel8u>(mean(kHalf, t[n - 1], u[n - 1]));
  }
  const Kel8u* t = p.S(rows - 1);
  dupRow(dupAvg, t, p.D(2 * rows - 2), n, b);
  dup({{t}, {p.D(2 * rows - 1)}}, n);
}

using ChromaRoutine = void (*)(const ChromaPlane&, int height, int width);

// Every member: checks, the luma plane by keliCopy_8u_C1R (its status is not
// examined), then planes 1 and 2 through the chroma routine.
KelStatus convert(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3], const int dstStep[3], KeliSize roi,
                  int minH, int heightMultiple, ChromaRoutine routine) {
  if (KelStatus st = checkB({}, {planes(src, 3), planes(dst, 3)}, roi, 4, minH)) return st;
  if ((roi.width & 3) || (roi.height & (heightMultiple - 1))) return kelStatusBadSize;
  keliCopy_8u_C1R(src[0], srcStep[0], dst[0], dstStep[0], roi);
  for (int c = 1; c < 3; ++c) routine({src[c], srcStep[c], dst[c], dstStep[c]}, roi.height, roi.width);
  return kelStatusOk;
}

}  // namespace
}  // namespace kel

using namespace kel;

extern "C" {

KelStatus keliYCbCr420To411_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3],
                                    const int dstStep[3], KeliSize roi) {
  return convert(src, srcStep, dst, dstStep, roi, 2, 2, yuv420toyuv411);
}

KelStatus keliYCbCr411To420_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3],
                                    const int dstStep[3], KeliSize roi) {
  return convert(src, srcStep, dst, dstStep, roi, 4, 4, yvu411toyuv420);
}

KelStatus keliYCbCr420To1620_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3],
                                     const int dstStep[3], KeliSize roi) {
  return convert(src, srcStep, dst, dstStep, roi, 4, 4, yuv420toyuv1620);
}

KelStatus keliYCbCr1620To420_8u_P3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst[3],
                                     const int dstStep[3], KeliSize roi) {
  return convert(src, srcStep, dst, dstStep, roi, 4, 4, yvu1620toyuv420);
}

}  // extern "C"
