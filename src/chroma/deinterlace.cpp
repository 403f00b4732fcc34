// Deinterlacing converters of NV12 pictures to YUY2 and to three 4:2:0
// planes, on a whole picture or on one horizontal slice of it.
//
// Rows are counted from the pointers of the call; H and w are the height and
// width trimmed to even values, h = H / 2. Each destination row names its
// three source luma rows (above, itself, below; an edge row passes its one
// neighbour as "below"), the two chroma rows it averages, its body count and
// the forms of its body and tail runs. Row pair p averages chroma rows
// min(p, h - 2) and the row after it, so the last two pairs share theirs.
//
// Slices run from the top down. A slice stops two luma rows (one chroma
// plane row) short of its end, because those need the rows below; the next
// slice writes them, above its own pointers, and reads luma from row -3 and
// chroma from row -1 to do so.
//
// Slices of height 2 with kelSliceFirst or kelSliceMiddle are accepted and
// run their routines as they stand, so that a caller slicing a picture into
// small pieces gets what the larger slices give: the YUY2 first routine
// always writes its two top rows (for a slice of height 2 it reads luma row 2
// and chroma row 1, below the slice, which must then belong to the picture),
// the planes first routine writes only row 0 and no chroma row, and a middle
// slice of height 2 writes just the two rows above its pointers.
//
// Member table (YUY2 destination, rows relative to the slice):
//  whole   H = 2: rows 0, 1 plusedge, chroma row 0 kept
//          0 plusedge/half; 1 plus4/half; 2..H-3 blend,cavg below w & ~31,
//          plus4,half after; H-2 plus4/half; H-1 plusedge/half
//  first   0 edge,cavg | flooredge,half; 1 blend,cavg | floor4,half (w & ~7);
//          then the middle rows 2..H-3
//  middle  -2..H-3: blend,cavg | floor4,half (w & ~31)
//  last    the middle rows, then H-2 blend,cavg | floor4,half and
//          H-1 edge,cavg | flooredge,half (w & ~7)
// Member table (planes; luma body w & ~15, chroma body (w / 2) & ~15):
//  whole   H = 2: rows 0, 1 plusedge, chroma row 0 split as it is
//          0 flooredge; 1..H-2 blend | floor4; H-1 flooredge;
//          chroma 0..h-2 cavg | half, h-1 half
//  first   0 edge | flooredge; 1..H-3 centre | floor4; chroma 0..h-2 cavg | half
//  middle  -2..H-3 blend | floor4; chroma -1..h-2 cavg | half
//  last    -2..H-2 floor4; H-1 flooredge; chroma -1..h-1 half
#include <cstdint>

#include "chroma/deinterlace.h"
#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace dei;

enum class Slice { Whole, First, Middle, Last, None };
// Any value with the three bits is the whole picture; otherwise exactly one
// of them, or nothing to do.
inline Slice sliceOf(uint32_t flags) {
  if ((flags & kelSliceWhole) == kelSliceWhole) return Slice::Whole;
  if (flags == kelSliceFirst) return Slice::First;
  if (flags == kelSliceMiddle) return Slice::Middle;
  if (flags == kelSliceLast) return Slice::Last;
  return Slice::None;
}

// The NV12 source and the trimmed size.
struct Src {
  const Kel8u* y;
  int ys;
  const Kel8u* c;
  int cs;
  int w, H, h;
};
inline Src srcOf(const Kel8u* y, int ys, const Kel8u* c, int cs, KeliSize roi) {
  const int H = roi.height & ~1;
  return {y, ys, c, cs, roi.width & ~1, H, H / 2};
}
inline Luma3 luma3(const Src& s, int u, int c, int d) {
  return {rowAt(s.y, s.ys, u), rowAt(s.y, s.ys, c), rowAt(s.y, s.ys, d)};
}
inline Chroma2 chroma2(const Src& s, int a, int b) { return {rowAt(s.c, s.cs, a), rowAt(s.c, s.cs, b)}; }

constexpr LSplit L(LForm body, LForm tail) { return {body, tail}; }
constexpr LSplit L(LForm all) { return {all, all}; }
constexpr CSplit C(CForm body, CForm tail) { return {body, tail}; }
constexpr CSplit C(CForm all) { return {all, all}; }

// ---- YUY2 destination ----------------------------------------------------
class Yuy2 {
 public:
  Yuy2(const Src& s, Kel8u* dst, int ds) : s_(s), d_(dst), ds_(ds), ks_(kernels()) {}
  // Destination row r from luma rows u, r, d and chroma rows a, b.
  void row(int r, int u, int d, int a, int b, int body, LSplit lf, CSplit cf) const {
    yuy2Row(luma3(s_, u, r, d), chroma2(s_, a, b), rowAt(d_, ds_, r), s_.w, body, lf, cf, ks_);
  }
  // A row inside the picture: its neighbours and the chroma of its pair.
  void inner(int r, int body, LSplit lf, CSplit cf) const {
    const int p = r >> 1;
    row(r, r - 1, r + 1, p, p + 1, body, lf, cf);
  }

  // myNV12ToYUY2Deinterlace_All
  void whole() const {
    const int H = s_.H, h = s_.h;
    if (H == 2) {
      row(0, 1, 1, 0, 0, 0, L(kPlusEdge), C(kKeep));
      row(1, 0, 0, 0, 0, 0, L(kPlusEdge), C(kKeep));
      return;
    }
    row(0, 1, 1, 0, 1, 0, L(kPlusEdge), C(kHalf));
    row(1, 0, 2, 0, 1, 0, L(kPlus4), C(kHalf));
    for (int r = 2; r <= H - 3; ++r) inner(r, s_.w & ~31, L(kBlend, kPlus4), C(kCavg, kHalf));
    row(H - 2, H - 3, H - 1, h - 2, h - 1, 0, L(kPlus4), C(kHalf));
    row(H - 1, H - 2, H - 2, h - 2, h - 1, 0, L(kPlusEdge), C(kHalf));
  }
  // The middle routine on rows r0 .. r1.
  void middle(int r0, int r1) const {
    for (int r = r0; r <= r1; ++r) inner(r, s_.w & ~31, L(kBlend, kFloor4), C(kCavg, kHalf));
  }
  // The first routine: the two top rows, whatever the height.
  void first() const {
    const int body = s_.w & ~7;
    row(0, 1, 1, 0, 1, body, L(kEdge, kFloorEdge), C(kCavg, kHalf));
    row(1, 0, 2, 0, 1, body, L(kBlend, kFloor4), C(kCavg, kHalf));
  }
  // The last routine: the two bottom rows. The chroma of row H-1 in its tail
  // is that of row H-2, which is the half of the same two chroma rows.
  void last() const {
    const int H = s_.H, h = s_.h, body = s_.w & ~7;
    row(H - 2, H - 3, H - 1, h - 2, h - 1, body, L(kBlend, kFloor4), C(kCavg, kHalf));
    row(H - 1, H - 2, H - 2, h - 2, h - 1, body, L(kEdge, kFloorEdge), C(kCavg, kHalf));
  }

 private:
  Src s_;
  Kel8u* d_;
  int ds_;
  Kernels ks_;
};

void myNV12ToYUY2Deinterlace(const Src& s, Kel8u* dst, int ds, Slice slice) {
  const Yuy2 y(s, dst, ds);
  switch (slice) {
    case Slice::Whole: y.whole(); break;
    case Slice::First: y.first(), y.middle(2, s.H - 3); break;
    case Slice::Middle: y.middle(-2, s.H - 3); break;
    case Slice::Last: y.middle(-2, s.H - 3), y.last(); break;
    case Slice::None: break;
  }
}

// ---- planes destination --------------------------------------------------
class Planes {
 public:
  Planes(const Src& s, Kel8u* const dst[3], const int ds[3])
      : s_(s), d_{dst[0], dst[1], dst[2]}, ds_{ds[0], ds[1], ds[2]}, ks_(kernels()) {}
  // Luma row r from rows u, r, d.
  void luma(int r, int u, int d, int body, LSplit f) const {
    lumaRow(luma3(s_, u, r, d), rowAt(d_[0], ds_[0], r), s_.w, body, f, ks_);
  }
  void lumaRows(int r0, int r1, int body, LSplit f) const {
    for (int r = r0; r <= r1; ++r) luma(r, r - 1, r + 1, body, f);
  }
  // Chroma plane row j from chroma rows a, b.
  void chroma(int j, int a, int b, int body, CSplit f) const {
    chromaRow(chroma2(s_, a, b), rowAt(d_[1], ds_[1], j), rowAt(d_[2], ds_[2], j), s_.w >> 1, body, f, ks_);
  }
  void chromaRows(int j0, int j1, int body, CSplit f) const {
    for (int j = j0; j <= j1; ++j) chroma(j, j, j + 1, body, f);
  }
  int lumaBody() const { return s_.w & ~15; }
  int chromaBody() const { return (s_.w >> 1) & ~15; }

  // innerNV12ToYV12DeinterlaceAll
  void whole() const {
    const int H = s_.H, h = s_.h;
    if (H == 2) {
      luma(0, 1, 1, 0, L(kPlusEdge));
      luma(1, 0, 0, 0, L(kPlusEdge));
      chroma(0, 0, 0, 0, C(kKeep));
      return;
    }
    luma(0, 1, 1, 0, L(kFloorEdge));
    lumaRows(1, H - 2, lumaBody(), L(kBlend, kFloor4));
    luma(H - 1, H - 2, H - 2, 0, L(kFloorEdge));
    chromaRows(0, h - 2, chromaBody(), C(kCavg, kHalf));
    chroma(h - 1, h - 2, h - 1, 0, C(kHalf));
  }
  void first() const {
    luma(0, 1, 1, lumaBody(), L(kEdge, kFloorEdge));
    lumaRows(1, s_.H - 3, lumaBody(), L(kCentre, kFloor4));
    chromaRows(0, s_.h - 2, chromaBody(), C(kCavg, kHalf));
  }
  void middle() const {
    lumaRows(-2, s_.H - 3, lumaBody(), L(kBlend, kFloor4));
    chromaRows(-1, s_.h - 2, chromaBody(), C(kCavg, kHalf));
  }
  void last() const {
    const int H = s_.H, h = s_.h;
    lumaRows(-2, H - 2, 0, L(kFloor4));
    luma(H - 1, H - 2, H - 2, 0, L(kFloorEdge));
    chromaRows(-1, h - 2, 0, C(kHalf));
    chroma(h - 1, h - 2, h - 1, 0, C(kHalf));
  }

 private:
  Src s_;
  Kel8u* d_[3];
  int ds_[3];
  Kernels ks_;
};

void myNV12ToYV12Deinterlace(const Src& s, Kel8u* const dst[3], const int ds[3], Slice slice) {
  const Planes p(s, dst, ds);
  switch (slice) {
    case Slice::Whole: p.whole(); break;
    case Slice::First: p.first(); break;
    case Slice::Middle: p.middle(); break;
    case Slice::Last: p.last(); break;
    case Slice::None: break;
  }
}

}  // namespace
}  // namespace kel

using namespace kel;

extern "C" {

KelStatus keliYCbCr420ToYCbCr422_Filter_8u_P2C2R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr,
                                                 int srcCbCrStep, Kel8u* dst, int dstStep, KeliSize roi,
                                                 uint32_t sliceFlags) {
  if (KelStatus st = checkB({srcY, srcCbCr, dst}, {}, roi, 2, 2)) return st;
  myNV12ToYUY2Deinterlace(srcOf(srcY, srcYStep, srcCbCr, srcCbCrStep, roi), dst, dstStep, sliceOf(sliceFlags));
  return kelStatusOk;
}

// Checks as the plain NV12 to planes member: the arguments, a size below 1,
// the plane elements, then a size below 2.
KelStatus keliYCbCr420ToYCrCb420_Filter_8u_P2P3R(const Kel8u* srcY, int srcYStep, const Kel8u* srcCbCr,
                                                 int srcCbCrStep, Kel8u* dst[3], const int dstStep[3], KeliSize roi,
                                                 uint32_t sliceFlags) {
  if (KelStatus st = checkA({srcY, srcCbCr}, {planes(dst, 3)}, roi)) return st;
  if (chk::sizeBelow(roi, 2, 2)) return kelStatusBadSize;
  myNV12ToYV12Deinterlace(srcOf(srcY, srcYStep, srcCbCr, srcCbCrStep, roi), dst, dstStep, sliceOf(sliceFlags));
  return kelStatusOk;
}

}  // extern "C"
