// BT.709 conversions: thirteen members over four row shapes (4:2:0 row
// pairs in both directions, 4:4:4 planes to pixels, packed CbYCr 4:2:2 in
// both directions). Formulas in rec709.h.
#include "rec709/rec709.h"

#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace rec709;

ChainIO chain(KernIO Rec709Kernels::*m) { return chainFor(m, sse41::kRec709Kernels, avx2::kRec709Kernels); }

// ---- row routines -------------------------------------------------------
// 4:2:0 row pair from BGR: io.s[0..1] the two source rows, io.d[0..1] the
// two luma rows, io.d[2] Cb and io.d[3] Cr. Each 2 by 2 block gives four
// luma samples and one chroma pair from the block's sums.
template <Pix In, class F>
int blocksTo420(const RowIO& io, int x, int n) {
  for (; x < n; x += 2) {
    int R[4], G[4], B[4];
    for (int i = 0; i < 4; ++i) PixAt<In>::get(io.s[i >> 1], x + (i & 1), R[i], G[i], B[i]);
    for (int i = 0; i < 4; ++i) io.d[i >> 1][x + (i & 1)] = static_cast<uint8_t>(F::y(R[i], G[i], B[i]));
    int Cb, Cr;
    F::c(R[0] + R[1] + R[2] + R[3], G[0] + G[1] + G[2] + G[3], B[0] + B[1] + B[2] + B[3], Cb, Cr);
    io.d[2][x >> 1] = static_cast<uint8_t>(Cb);
    io.d[3][x >> 1] = static_cast<uint8_t>(Cr);
  }
  return x;
}
// The pixels up to `body` by the body form, the rest of the even width by
// the tail form; a last odd column is left alone.
template <Pix In, class Body, class Tail>
void rowPairTo420(const RowIO& io, int w, int body, const ChainIO& chain) {
  const int x = blocksTo420<In, Body>(io, runChain(chain, io, 0, body), body);
  blocksTo420<In, Tail>(io, x, w & ~1);
}

// 4:2:0 row pair to BGR: io.s[0..1] the two luma rows, io.s[2] Cb, io.s[3]
// Cr, io.d[0..1] the two destination rows.
template <Pix Out, class F>
int blocksFrom420(const RowIO& io, int x, int n) {
  for (; x < n; x += 2) {
    const int cb = io.s[2][x >> 1], cr = io.s[3][x >> 1];
    for (int i = 0; i < 4; ++i) {
      int R, G, B;
      F::px(io.s[i >> 1][x + (i & 1)], cb, cr, R, G, B);
      PixAt<Out>::put(io.d[i >> 1], x + (i & 1), R, G, B, io.alpha);
    }
  }
  return x;
}
template <Pix Out, class Body, class Tail>
void rowPairFrom420(const RowIO& io, int w, int body, const ChainIO& chain) {
  const int x = blocksFrom420<Out, Body>(io, runChain(chain, io, 0, body), body);
  blocksFrom420<Out, Tail>(io, x, w & ~1);
}

// 4:4:4 planes Y, Cb, Cr to BGR: all pixels by the body form.
template <Pix Out, class F>
int pixelsFrom444(const RowIO& io, int x, int n) {
  for (; x < n; ++x) {
    int R, G, B;
    F::px(io.s[0][x], io.s[1][x], io.s[2][x], R, G, B);
    PixAt<Out>::put(io.d[0], x, R, G, B, io.alpha);
  }
  return x;
}

// ---- body pixel counts --------------------------------------------------
// BGR -> 4:2:0: whole blocks of 16, then one block of 4 if the width has
// four or more columns beyond a multiple of 8.
inline int bodyTo420(int w) { return (w & ~15) + ((w & 7) >= 4 ? 4 : 0); }
// 4:2:0 -> BGR: chroma columns below (w >> 1) & ~3.
inline int bodyFrom420(int w) { return 2 * ((w >> 1) & ~3); }
// BGR -> CbYCr from three-byte pixels: blocks of 32, and one of 8 if the
// width has bit 3 set.
inline int bodyToC2C3(int w) { return (w & ~31) + (w & 8); }
inline int body8(int w) { return w & ~7; }

// ---- row drivers --------------------------------------------------------
// BGR -> 4:2:0 planes, pairs of rows. `cb` and `cr` name the planes that take
// Cb and Cr: the YCrCb members pass the caller's second and third planes
// exchanged.
template <Pix In, class Body, class Tail>
void ownTo420(const Kel8u* src, int srcStep, Kel8u* y, int yStep, Kel8u* cb, int cbStep, Kel8u* cr, int crStep,
              KeliSize roi, const ChainIO& chain) {
  const int body = bodyTo420(roi.width);
  forRowPairs(roi.height, [&](int k) {
    const RowIO io{{rowAt(src, srcStep, 2 * k), rowAt(src, srcStep, 2 * k + 1)},
                   {rowAt(y, yStep, 2 * k), rowAt(y, yStep, 2 * k + 1), rowAt(cb, cbStep, k), rowAt(cr, crStep, k)},
                   0};
    rowPairTo420<In, Body, Tail>(io, roi.width, body, chain);
  });
}

template <Pix Out, class Body, class Tail>
void myFrom420(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep, KeliSize roi, int alpha,
               const ChainIO& chain) {
  const int body = bodyFrom420(roi.width);
  forRowPairs(roi.height, [&](int k) {
    const RowIO io{{rowAt(src[0], srcStep[0], 2 * k), rowAt(src[0], srcStep[0], 2 * k + 1),
                    rowAt(src[1], srcStep[1], k), rowAt(src[2], srcStep[2], k)},
                   {rowAt(dst, dstStep, 2 * k), rowAt(dst, dstStep, 2 * k + 1)},
                   alpha};
    rowPairFrom420<Out, Body, Tail>(io, roi.width, body, chain);
  });
}

template <Pix Out, class F>
void ownFrom444(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int alpha,
                const ChainIO& chain) {
  forRows(roi.height, [&](int r) {
    const RowIO io{{rowAt(src[0], srcStep, r), rowAt(src[1], srcStep, r), rowAt(src[2], srcStep, r)},
                   {rowAt(dst, dstStep, r)},
                   alpha};
    pixelsFrom444<Out, F>(io, runChain(chain, io, 0, roi.width), roi.width);
  });
}

// The aligned routines of the four-byte CbYCr members use the same
// arithmetic as the general ones, so one routine serves every address.
template <Pix In, class Body>
void myToC2(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int body, const ChainIO& chain) {
  forRows(roi.height, [&](int r) {
    const RowIO io{{rowAt(src, srcStep, r)}, {rowAt(dst, dstStep, r)}, 0};
    rowToC2<In, Body, Hdtv422Tail, Hdtv422Last>(io, roi.width, body, chain);
  });
}

template <Pix Out>
void myFromC2(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int alpha, const ChainIO& chain) {
  const int body = body8(roi.width);
  forRows(roi.height, [&](int r) {
    const RowIO io{{rowAt(src, srcStep, r)}, {rowAt(dst, dstStep, r)}, alpha};
    rowFromC2<Out, HdtvN, HdtvTail>(io, roi.width, body, chain);
  });
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:                      body pixels                body    tail
//  BGRToYCbCr420_709CSC  C3P3R       (w & ~15) + 4 if w&7 >= 4  Csc420  Csc420Tail
//                        AC4P3R      the same                   Csc420  Csc420Tail
//  BGRToYCrCb420_709CSC  C3P3R,AC4P3R  as YCbCr, chroma planes exchanged
//  BGRToYCbCr420_709HDTV AC4P3R      as above                   Hdtv420 Hdtv420Tail
//  YCbCr420ToBGR_709CSC  P3C3R       2 * ((w >> 1) & ~3)        CscN    CscTail
//  YCbCr420ToBGR_709HDTV P3C4R       the same                   HdtvS   HdtvTail
//  YCbCrToBGR_709CSC     P3C3R       w                          CscN    -
//                        P3C4R       w                          CscS    -
//  BGRToCbYCr422_709HDTV C3C2R       (w & ~31) + (w & 8)        Hdtv422U Hdtv422Tail, last Hdtv422Last
//                        AC4C2R      w & ~7                     Hdtv422S Hdtv422Tail, last Hdtv422Last
//  CbYCr422ToBGR_709HDTV C2C3R       w & ~7                     HdtvN   HdtvTail
//                        C2C4R       w & ~7                     HdtvN   HdtvTail

extern "C" {

// ---- BGR -> 4:2:0 (order B, minimum 2 by 2) ----------------------------------
KelStatus keliBGRToYCbCr420_709CSC_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                            KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownTo420<Pix::BGR, Csc420, Csc420Tail>(src, srcStep, dst[0], dstStep[0], dst[1], dstStep[1], dst[2], dstStep[2], roi,
                                         chain(&Rec709Kernels::cscTo420C3));
  return status420(roi);
}

KelStatus keliBGRToYCbCr420_709CSC_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                             KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownTo420<Pix::BGRX, Csc420, Csc420Tail>(src, srcStep, dst[0], dstStep[0], dst[1], dstStep[1], dst[2], dstStep[2], roi,
                                          chain(&Rec709Kernels::cscTo420AC4));
  return status420(roi);
}

KelStatus keliBGRToYCrCb420_709CSC_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                            KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownTo420<Pix::BGR, Csc420, Csc420Tail>(src, srcStep, dst[0], dstStep[0], dst[2], dstStep[2], dst[1], dstStep[1], roi,
                                         chain(&Rec709Kernels::cscTo420C3));
  return status420(roi);
}

KelStatus keliBGRToYCrCb420_709CSC_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                             KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownTo420<Pix::BGRX, Csc420, Csc420Tail>(src, srcStep, dst[0], dstStep[0], dst[2], dstStep[2], dst[1], dstStep[1], roi,
                                          chain(&Rec709Kernels::cscTo420AC4));
  return status420(roi);
}

KelStatus keliBGRToYCbCr420_709HDTV_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], const int dstStep[3],
                                              KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi, 2, 2)) return st;
  ownTo420<Pix::BGRX, Hdtv420, Hdtv420Tail>(src, srcStep, dst[0], dstStep[0], dst[1], dstStep[1], dst[2], dstStep[2],
                                            roi, chain(&Rec709Kernels::hdtvTo420AC4));
  return status420(roi);
}

// ---- 4:2:0 -> BGR (order A) -----------------------------------------------
KelStatus keliYCbCr420ToBGR_709CSC_8u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                            KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myFrom420<Pix::BGR, CscN, CscTail>(src, srcStep, dst, dstStep, roi, 0, chain(&Rec709Kernels::cscFrom420C3));
  return status420(roi);
}

KelStatus keliYCbCr420ToBGR_709HDTV_8u_P3C4R(const Kel8u* const src[3], const int srcStep[3], Kel8u* dst, int dstStep,
                                             KeliSize roi, int alpha) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myFrom420<Pix::BGRA, HdtvS, HdtvTail>(src, srcStep, dst, dstStep, roi, alpha, chain(&Rec709Kernels::hdtvFrom420C4));
  return status420(roi);
}

// ---- 4:4:4 -> BGR (order B) -----------------------------------------------
KelStatus keliYCbCrToBGR_709CSC_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep,
                                         KeliSize roi) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi)) return st;
  ownFrom444<Pix::BGR, CscN>(src, srcStep, dst, dstStep, roi, 0, chain(&Rec709Kernels::cscFrom444C3));
  return kelStatusOk;
}

KelStatus keliYCbCrToBGR_709CSC_8u_P3C4R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                         int alpha) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi)) return st;
  ownFrom444<Pix::BGRA, CscS>(src, srcStep, dst, dstStep, roi, alpha, chain(&Rec709Kernels::cscFrom444C4));
  return kelStatusOk;
}

// ---- BGR <-> CbYCr 4:2:2 (pointers, then size) ------------------------------
KelStatus keliBGRToCbYCr422_709HDTV_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myToC2<Pix::BGR, Hdtv422U>(src, srcStep, dst, dstStep, roi, bodyToC2C3(roi.width), chain(&Rec709Kernels::hdtvToC2C3));
  return kelStatusOk;
}

KelStatus keliBGRToCbYCr422_709HDTV_8u_AC4C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myToC2<Pix::BGRX, Hdtv422S>(src, srcStep, dst, dstStep, roi, body8(roi.width), chain(&Rec709Kernels::hdtvToC2AC4));
  return kelStatusOk;
}

KelStatus keliCbYCr422ToBGR_709HDTV_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myFromC2<Pix::BGR>(src, srcStep, dst, dstStep, roi, 0, chain(&Rec709Kernels::hdtvFromC2C3));
  return kelStatusOk;
}

KelStatus keliCbYCr422ToBGR_709HDTV_8u_C2C4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                             int alpha) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myFromC2<Pix::BGRA>(src, srcStep, dst, dstStep, roi, alpha, chain(&Rec709Kernels::hdtvFromC2C4));
  return kelStatusOk;
}

}  // extern "C"
