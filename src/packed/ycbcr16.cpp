// YCbCr and YUV to 16-bit packed RGB: 74 members generated from a few row
// drivers. Each member keeps its own colour form for body and tail, its own
// split of the row, its packer and its checks (see the member table below).
#include "packed/ycbcr16.h"

#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace ycc16;

// ---- tails: the pixels behind the body ----------------------------------------
struct NoTail {
  static void run(const Io16&, ptrdiff_t, ptrdiff_t) {}
};
// Pixel by pixel through one form.
template <class P>
struct Each {
  static void run(const Io16& io, ptrdiff_t x, ptrdiff_t n) {
    for (; x < n; ++x) put16(io.d + x, P::px(io, x));
  }
};
// Y0 Cb Y1 Cr plain: whole pairs by the pair tail. A last pixel of an odd
// row has only Y and Cb; it takes the Cr of the pair before it (the byte
// just before its Y) through the pixel tail, or, when it is the only pixel
// of the row, its own Cb as Cr through the pair tail.
template <class Pack>
struct PairsC2 {
  static void run(const Io16& io, ptrdiff_t x, ptrdiff_t n) {
    const uint8_t* s = io.s[0];
    int R, G, B;
    for (; x + 1 < n; x += 2) {
      const uint8_t* p = s + 2 * x;
      PairTail::rgb(p[0], p[1], p[3], R, G, B);
      put16(io.d + x, Pack::px(R, G, B, io.r, x));
      PairTail::rgb(p[2], p[1], p[3], R, G, B);
      put16(io.d + x + 1, Pack::px(R, G, B, io.r, x + 1));
    }
    if (x < n) {
      const uint8_t* p = s + 2 * x;
      if (n == 1) PairTail::rgb(p[0], p[1], p[1], R, G, B);
      else PixTail::rgb(p[0], p[1], p[-1], R, G, B);
      put16(io.d + x, Pack::px(R, G, B, io.r, x));
    }
  }
};
// Y0 Cb Y1 Cr dithered: a last pixel of an odd row takes its own Cb as Cr,
// through the body form.
template <class Pack>
struct OddC2 {
  static void run(const Io16& io, ptrdiff_t x, ptrdiff_t n) {
    int R, G, B;
    for (; x < n; ++x) {
      const uint8_t* p = io.s[0] + 2 * x;
      YccBody::rgb(p[0], p[1], p[1], R, G, B);
      put16(io.d + x, Pack::px(R, G, B, io.r, x));
    }
  }
};
// 4:1:1: the one to three columns behind the last whole group of four take
// the rounded tail with that group's chroma.
template <class Pack>
struct Last411 {
  static void run(const Io16& io, ptrdiff_t x, ptrdiff_t n) {
    const ptrdiff_t k = (n >> 2) - 1;
    int R, G, B;
    for (; x < n; ++x) {
      RoundedTail::rgb(io.s[0][x], io.s[1][k], io.s[2][k], R, G, B);
      put16(io.d + x, Pack::px(R, G, B, io.r, x));
    }
  }
};

// ---- the row routine ------------------------------------------------------------
// Columns [0, body) by the body formula: the vector kernels take as many whole
// blocks as they can, widest first, the scalar definition the rest. The tail
// takes [body, n).
template <class Body, class Tail>
inline void row16(const Io16& io, ptrdiff_t n, ptrdiff_t body, const Chain16& chain) {
  ptrdiff_t x = 0;
  for (Kern16 k : chain.k)
    if (k) x = k(io, x, body);
  for (; x < body; ++x) put16(io.d + x, Body::px(io, x));
  Tail::run(io, x, n);
}

Chain16 yccChain(int src, bool dither, int fmt) {
  return chainOf([&](const Ycc16Kernels& t) { return t.ycc[src][dither][fmt]; }, sse41::kYcc16Kernels,
                 avx2::kYcc16Kernels);
}
Chain16 yuvChain(bool dither, int fmt) {
  return chainOf([&](const Ycc16Kernels& t) { return t.yuv[dither][fmt]; }, sse41::kYcc16Kernels,
                 avx2::kYcc16Kernels);
}

// Destination row r: the members other than 4:1:1 count their step in whole
// words, dstStep >> 1, so an odd step loses its low bit.
inline uint16_t* dstRow(Kel16u* dst, int dstStep, int r) { return dst + static_cast<ptrdiff_t>(dstStep >> 1) * r; }

// ---- row drivers ------------------------------------------------------------------
// Interleaved sources (Y Cb Cr, or Y0 Cb Y1 Cr) with one row per ROI row.
// `Bpp` source bytes per pixel; `Block` the body granule (8 for the plain
// members, 2 or 1 for the dithered ones, whose body covers every pixel of
// whole chroma units). The plain members treat a contiguous image (tight
// source step and dstStep >> 1 equal to the width) as one row of w * h pixels,
// which moves the body and tail boundary; `wholeNeedsEven` adds the condition
// that the width is even.
template <int Bpp, class Body, class Tail, int Block>
void myInterleaved(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, bool contiguousMode,
                   bool wholeNeedsEven, const Chain16& chain) {
  const int w = roi.width, h = roi.height;
  if (contiguousMode && srcStep == Bpp * w && (dstStep >> 1) == w && (!wholeNeedsEven || !(w & 1))) {
    // Counted in 64 bits: the pixel count of the image may pass 2^31.
    const ptrdiff_t n = static_cast<ptrdiff_t>(w) * h;
    row16<Body, Tail>(Io16{{src, nullptr, nullptr}, dst, 0}, n, n & ~ptrdiff_t(Block - 1), chain);
    return;
  }
  forRows(h, [&](int r) {
    row16<Body, Tail>(Io16{{rowAt(src, srcStep, r), nullptr, nullptr}, dstRow(dst, dstStep, r), r}, w,
                      w & ~(Block - 1), chain);
  });
}

// Planar sources. `ChromaRow` maps a row to its chroma row (r, or r >> 1).
template <class Body, class Tail, class ChromaRow, class BodyCount>
void myPlanar(const Kel8u* const src[3], const int step[3], Kel16u* dst, int dstStep, KeliSize roi, ChromaRow cr,
              BodyCount body, const Chain16& chain) {
  forRows(roi.height, [&](int r) {
    const int c = cr(r);
    const Io16 io{{rowAt(src[0], step[0], r), rowAt(src[1], step[1], c), rowAt(src[2], step[2], c)},
                  dstRow(dst, dstStep, r), r};
    row16<Body, Tail>(io, roi.width, body(r), chain);
  });
}
inline int sameRow(int r) { return r; }

// 4:2:0 planes: row pairs over one chroma row. The pair kernels take whole
// blocks of both rows' bodies at once, the scalar body definition the rest of
// each row, then the tail; a last odd row goes alone. `body(r)` is the body
// count of row r (the same for both rows of a pair).
template <class Body, class Tail, class BodyCount>
void my420(const Kel8u* const src[3], const int step[3], Kel16u* dst, int dstStep, KeliSize roi, BodyCount body,
           const Chain16& single, const Chain16x2& pair) {
  auto rowIo = [&](int r) {
    return Io16{{rowAt(src[0], step[0], r), rowAt(src[1], step[1], r >> 1), rowAt(src[2], step[2], r >> 1)},
                dstRow(dst, dstStep, r), r};
  };
  forRowPairs(roi.height, [&](int k) {
    const Io16 a = rowIo(2 * k), b = rowIo(2 * k + 1);
    const ptrdiff_t n = body(2 * k);
    ptrdiff_t x = 0;
    for (Kern16x2 kp : pair.k)
      if (kp) x = kp(a, b, x, n);
    for (const Io16& io : {a, b}) {
      for (ptrdiff_t i = x; i < n; ++i) put16(io.d + i, Body::px(io, i));
      Tail::run(io, n, roi.width);
    }
  });
  if (roi.height & 1) row16<Body, Tail>(rowIo(roi.height - 1), roi.width, body(roi.height - 1), single);
}
Chain16x2 pairChain(bool yuv, bool dither, int fmt) {
  return chainOf([&](const Ycc16Kernels& t) { return t.pair[yuv][dither][fmt]; }, sse41::kYcc16Kernels,
                 avx2::kYcc16Kernels);
}

// ---- the groups ---------------------------------------------------------------------
template <int F, bool D>
using Pk = typename std::conditional<D, Dither<F>, Plain<F>>::type;

// Y Cb Cr pixels. Plain: body w & ~7 (or the contiguous image's first
// (w * h) & ~7 pixels), then the pixel tail. Dithered: the body form for all.
template <int F, bool D>
KelStatus ycbcrC3(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, bool wholeNeedsEven = false) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  const Chain16 ch = yccChain(kSrcC3, D, F);
  if (D)
    myInterleaved<3, Px<C3, YccBody, Pk<F, D>>, NoTail, 1>(src, srcStep, dst, dstStep, roi, false, false, ch);
  else
    myInterleaved<3, Px<C3, YccBody, Pk<F, D>>, Each<Px<C3, PixTail, Pk<F, D>>>, 8>(src, srcStep, dst, dstStep, roi,
                                                                                     true, wholeNeedsEven, ch);
  return kelStatusOk;
}

// Three full planes with one step: the body form for all pixels.
template <int F, bool D>
KelStatus ycbcrP3(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  const int steps[3] = {srcStep, srcStep, srcStep};
  myPlanar<Px<P3, YccBody, Pk<F, D>>, NoTail>(src, steps, dst, dstStep, roi, sameRow, [&](int) { return roi.width; },
                                              yccChain(kSrcP3, D, F));
  return kelStatusOk;
}

// Y0 Cb Y1 Cr pairs. Plain: body w & ~7 (or the contiguous image's, when the
// width is even), then pairs by the pair tail. Dithered: the body form for
// all; a last odd pixel takes its own Cb as Cr.
template <int F, bool D>
KelStatus ycbcr422C2(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  const Chain16 ch = yccChain(kSrcC2, D, F);
  if (D)
    myInterleaved<2, Px<C2, YccBody, Pk<F, D>>, OddC2<Pk<F, D>>, 2>(src, srcStep, dst, dstStep, roi, false, false, ch);
  else
    myInterleaved<2, Px<C2, YccBody, Pk<F, D>>, PairsC2<Pk<F, D>>, 8>(src, srcStep, dst, dstStep, roi, true, true, ch);
  return kelStatusOk;
}

// Planes with half-width chroma, on every row (4:2:2) or every second row
// (4:2:0): the body form for all pixels, the last odd column and row included.
template <int F, bool D, bool Rows420>
KelStatus ycbcrHalf(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  const auto all = [&](int) { return roi.width; };
  if (Rows420)
    my420<Px<Half, YccBody, Pk<F, D>>, NoTail>(src, srcStep, dst, dstStep, roi, all, yccChain(kSrcHalf, D, F),
                                               pairChain(false, D, F));
  else
    myPlanar<Px<Half, YccBody, Pk<F, D>>, NoTail>(src, srcStep, dst, dstStep, roi, sameRow, all,
                                                  yccChain(kSrcHalf, D, F));
  return kelStatusOk;
}

// YUV 4:2:0. Plain: the body form on row pairs and column pairs; a last odd
// column, and the whole of a last odd row, take the YUV tail. An image one
// pixel wide or high is all last odd column or row, and is converted by the
// tail too. Dithered: the body form for all pixels.
template <int F, bool D>
KelStatus yuv420(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  const int w = roi.width, pairedRows = roi.height & ~1;
  if (D)
    my420<Px<Half, YuvBody, Pk<F, D>>, NoTail>(src, srcStep, dst, dstStep, roi, [&](int) { return w; },
                                               yuvChain(D, F), pairChain(true, D, F));
  else
    my420<Px<Half, YuvBody, Pk<F, D>>, Each<Px<Half, YuvTail, Pk<F, D>>>>(
        src, srcStep, dst, dstStep, roi, [&](int r) { return r < pairedRows ? w & ~1 : 0; }, yuvChain(D, F),
        pairChain(true, D, F));
  return kelStatusOk;
}

// YCbCr 4:1:1: all pointers, then at least 4 columns; the rounded body form
// on whole groups of four columns, the rounded tail behind them. dstStep is
// added to the row address as it is, in bytes. Every pixel is written; a
// width that is not a multiple of 4 still gives the warning.
template <int F>
KelStatus ycbcr411(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi, 4, 1)) return st;
  const Chain16 ch = chainOf([](const Ycc16Kernels& t) { return t.q411[F == kBGR565]; }, sse41::kYcc16Kernels,
                             avx2::kYcc16Kernels);
  forRows(roi.height, [&](int r) {
    const Io16 io{{rowAt(src[0], srcStep[0], r), rowAt(src[1], srcStep[1], r), rowAt(src[2], srcStep[2], r)},
                  rowAt(dst, dstStep, r), r};
    row16<Px<Quarter, YccRounded, Plain<F>>, Last411<Plain<F>>>(io, roi.width, roi.width & ~3, ch);
  });
  return status411(roi);
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table (F: the format of the name; groups of six, BGR444 .. RGB565):
//  source, layout           variant  body (columns of a row)           body form    behind the body
//  YCbCr C3R                plain    w & ~7; contiguous: (w*h) & ~7 *  YCbCr        pixel tail
//  YCbCr C3R                Dither   all                               YCbCr        -
//  YCbCr P3C3R              both     all                               YCbCr        -
//  YCbCr422 C2C3R           plain    w & ~7; contiguous, w even: (w*h) & ~7
//                                                                      YCbCr        pairs: pair tail; odd last
//                                                                                   pixel: pixel tail, Cr of the
//                                                                                   pair before (w 1: pair tail,
//                                                                                   Cr = Cb)
//  YCbCr422 C2C3R           Dither   all                               YCbCr        (odd last pixel: body, Cr = Cb)
//  YCbCr422 P3C3R           both     all, chroma [r][c >> 1]            YCbCr        -
//  YCbCr420 P3C3R           both     all, chroma [r >> 1][c >> 1]       YCbCr        -
//  YUV420 P3C3R             plain    row pairs x column pairs          YUV          YUV tail
//  YUV420 P3C3R             Dither   all                               YUV          -
//  YCbCr411 P3C3R           BGR555, BGR565: w & ~3, chroma [r][c >> 2]  rounded      rounded tail, last group's chroma
//  contiguous: source step 3 w (C3) or 2 w (C2) and dstStep >> 1 equal to w: the image is one row.
//  * keliYCbCrToBGR444_8u16u_C3R takes the contiguous path only for an even width.
//  YUV420 plain, 1 pixel wide or high: every pixel is a last odd column or row, so all take the YUV tail.
// All but the 411 members: order A, minimum 1 x 1, kelStatusOk. 411: order B,
// minimum 4 x 1, odd-size warning on w & 3.
extern "C" {
KelStatus keliYCbCrToBGR444_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kBGR444, false>(src, srcStep, dst, dstStep, roi, true);
}
KelStatus keliYCbCrToBGR555_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kBGR555, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kBGR565, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB444_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kRGB444, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB555_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kRGB555, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kRGB565, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR444Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kBGR444, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR555Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kBGR555, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR565Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kBGR565, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB444Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kRGB444, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB555Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kRGB555, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB565Dither_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrC3<kRGB565, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR444_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kBGR444, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR555_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kBGR555, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR565_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kBGR565, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB444_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kRGB444, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB555_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kRGB555, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB565_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kRGB565, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR444Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kBGR444, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR555Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kBGR555, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToBGR565Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kBGR565, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB444Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kRGB444, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB555Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kRGB555, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCrToRGB565Dither_8u16u_P3C3R(const Kel8u* const src[3], int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrP3<kRGB565, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR444_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kBGR444, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR555_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kBGR555, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR565_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kBGR565, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB444_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kRGB444, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB555_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kRGB555, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB565_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kRGB565, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR444Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kBGR444, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR555Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kBGR555, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR565Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kBGR565, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB444Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kRGB444, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB555Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kRGB555, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB565Dither_8u16u_C2C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr422C2<kRGB565, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR444, false, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR555, false, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR565, false, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB444, false, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB555, false, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB565, false, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR444, true, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR555, true, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToBGR565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR565, true, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB444, true, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB555, true, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr422ToRGB565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB565, true, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToBGR444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR444, false, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToBGR555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR555, false, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToBGR565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR565, false, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToRGB444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB444, false, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToRGB555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB555, false, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToRGB565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB565, false, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToBGR444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR444, true, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToBGR555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR555, true, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToBGR565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kBGR565, true, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToRGB444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB444, true, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToRGB555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB555, true, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr420ToRGB565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcrHalf<kRGB565, true, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToBGR444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kBGR444, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToBGR555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kBGR555, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToBGR565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kBGR565, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToRGB444_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kRGB444, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToRGB555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kRGB555, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToRGB565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kRGB565, false>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToBGR444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kBGR444, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToBGR555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kBGR555, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToBGR565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kBGR565, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToRGB444Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kRGB444, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToRGB555Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kRGB555, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYUV420ToRGB565Dither_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return yuv420<kRGB565, true>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr411ToBGR555_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr411<kBGR555>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliYCbCr411ToBGR565_8u16u_P3C3R(const Kel8u* const src[3], const int srcStep[3], Kel16u* dst, int dstStep, KeliSize roi) {
  return ycbcr411<kBGR565>(src, srcStep, dst, dstStep, roi);
}
}  // extern "C"
