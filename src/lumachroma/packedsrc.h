// Packed 16-bit pixels (BGR555, BGR565, RGB565) to 8-bit YCbCr and YUV with
// 4:2:2, 4:2:0 and 4:1:1 chroma. Each word is first widened to three 8-bit
// samples by a plain left shift; the luma and chroma forms then work on the
// widened samples. Formulas, and the table of vector kernels each
// instruction-set file provides.
#pragma once

#include <cstdint>
#include <cstring>

#include "frame/arith.h"
#include "frame/cpu.h"

namespace kel {

// ---- row routines' pointers --------------------------------------------------
// Source rows are byte addresses (a row is 2 bytes per pixel); a group j
// covers columns N*j .. N*j+N-1 and chroma sample j.
// A 4:2:0 pair of rows: two source rows, two luma rows, one row per chroma plane.
struct Io420 {
  const uint8_t* s0;
  const uint8_t* s1;
  uint8_t* y0;
  uint8_t* y1;
  uint8_t* c0;
  uint8_t* c1;
};
// One row of 4:2:2 or 4:1:1. The planar form has ys = cs = 1; the Y0 Cb Y1 Cr
// stream has y = d, c0 = d + 1, c1 = d + 3, ys = 2, cs = 4.
struct IoRow {
  const uint8_t* s;
  uint8_t* y;
  uint8_t* c0;
  uint8_t* c1;
  int ys, cs;
};

// A vector kernel: converts whole blocks from group j on while a block fits
// below group n; returns the group where it stopped.
using Kern420 = int (*)(const Io420& io, int j, int n);
using KernRow = int (*)(const IoRow& io, int j, int n);

struct PackedSrcKernels {
  Kern420 ycc420_555, ycc420_565;  // YO, CB
  KernRow ycc422_555, ycc422_565;  // YO, CA, planes
  KernRow yccC2_555, yccC2_565;    // YO, CA, Y0 Cb Y1 Cr stream
  KernRow ycc411_555, ycc411_565;  // YO, CB
  Kern420 yuv420_555, yuv420_565;  // W1
  Kern420 yuv420_rgb565;           // X1
  KernRow yuv422_rgb565;           // S luma, X2
};
namespace sse41 {
extern const PackedSrcKernels kPackedSrcKernels;
}
namespace avx2 {
extern const PackedSrcKernels kPackedSrcKernels;
}

namespace {
namespace pks {

// ---- widening -------------------------------------------------------------------
// The three fields of a word moved to the top of a byte; the low bits stay 0,
// so white is 248 (252 for a 6-bit G). Bit 15 of a BGR555 word is not read.
enum class Src { BGR555, BGR565, RGB565 };

template <Src S>
inline void widen(uint32_t w, int& R, int& G, int& B) {
  if constexpr (S == Src::BGR555) {
    R = ((w >> 10) & 31) << 3, G = ((w >> 5) & 31) << 3, B = (w & 31) << 3;
  } else if constexpr (S == Src::BGR565) {
    R = ((w >> 11) & 31) << 3, G = ((w >> 5) & 63) << 2, B = (w & 31) << 3;
  } else {
    R = (w & 31) << 3, G = ((w >> 5) & 63) << 2, B = ((w >> 11) & 31) << 3;
  }
}
// Pixel x of a source row, at any address.
template <Src S>
inline void pixel(const uint8_t* row, int x, int& R, int& G, int& B) {
  uint16_t w;
  std::memcpy(&w, row + 2 * x, 2);
  widen<S>(w, R, G, B);
}

// ---- forms -----------------------------------------------------------------------
// A form maps each pixel to a term, the term to its luma, and the sums of a
// chroma group (widened samples and terms) to its two chroma samples.

// Studio-range YCbCr luma: YO in 16-bit lanes (Q15, mulhu), YT 32-bit (Q16).
inline int lumaYO(int R, int G, int B) {
  return clip8((mulhu(R << 8, 8422) + mulhu(G << 8, 16515) + mulhu(B << 8, 3212) + 2112) >> 7);
}
inline int lumaYT(int R, int G, int B) { return (16843 * R + 33030 * G + 6423 * B + 1081344) >> 16; }

// Studio-range chroma of a group: CA (2 pixels) and CB (4 pixels) in 16-bit
// lanes; CD (2 pixels) and CE (4 pixels) 32-bit, keeping the low byte.
template <int Round, int Shift>
struct ChromaQ {
  static void px(int sR, int sG, int sB, int& cb, int& cr) {
    cb = clip8((mulhu(sB << 5, 28770) - mulhu(sR << 5, 9699) - mulhu(sG << 5, 19071) + Round) >> Shift);
    cr = clip8((mulhu(sR << 5, 28770) - mulhu(sG << 5, 24117) - mulhu(sB << 5, 4653) + Round) >> Shift);
  }
};
template <int Round, int Shift>
struct ChromaS {
  static void px(int sR, int sG, int sB, int& cb, int& cr) {
    cb = byte8((28770 * sB - 19071 * sG - 9699 * sR + Round) >> Shift);
    cr = byte8((28770 * sR - 24117 * sG - 4653 * sB + Round) >> Shift);
  }
};
using CA = ChromaQ<8200, 6>;
using CB = ChromaQ<16400, 7>;
using CD = ChromaS<16793600, 17>;
using CE = ChromaS<33587200, 18>;
// The Cb byte of a last odd pixel of the Y0 Cb Y1 Cr stream.
inline int cbOne(int R, int G, int B) { return byte8((28770 * B - 19071 * G - 9699 * R + 8396800) >> 16); }

template <bool Vec, class C>
struct Ycc {
  static int term(int R, int G, int B) { return Vec ? lumaYO(R, G, B) : lumaYT(R, G, B); }
  static int luma(int t) { return t; }
  static void chroma(int sR, int sG, int sB, int, int& c0, int& c1) { C::px(sR, sG, sB, c0, c1); }
};
using YoCa = Ycc<true, CA>;
using YoCb = Ycc<true, CB>;
using YtCd = Ycc<false, CD>;
using YtCe = Ycc<false, CE>;

// YUV 4:2:0 of the BGR555 and BGR565 sources. W1: Q15, mulhu luma, mulhs
// chroma from the difference to the sum of the four unclipped lumas.
struct W1 {
  static int term(int R, int G, int B) {
    return (mulhu(R << 8, 9798) + mulhu(G << 8, 19235) + mulhu(B << 8, 3736) + 64) >> 7;
  }
  static int luma(int t) { return clip8(t); }
  static void chroma(int sR, int, int sB, int S, int& U, int& V) {
    U = clip8((mulhs((sB - S) << 5, 16122) + 8224) >> 6);
    V = clip8((mulhs((sR - S) << 5, 28737) + 8224) >> 6);
  }
};
// WT: 32-bit, Q16, rounded luma; chroma from the unrounded sum.
struct WT {
  static int term(int R, int G, int B) { return 19595 * R + 38470 * G + 7471 * B; }
  static int luma(int t) { return (t + 32768) >> 16; }
  static void chroma(int sR, int, int sB, int s, int& U, int& V) {
    U = clip8(((((sB << 16) - s + 131071) >> 16) * 32244 >> 18) + 128);
    V = clip8(((((sR << 16) - s + 131071) >> 16) * 57475 >> 18) + 128);
  }
};

// YUV of the RGB565 source. The vector forms share the term S_i (twice the
// luma, Q15 with mulhs); X1 for 4:2:0, X2 for 4:2:2.
struct XS {
  static int term(int R, int G, int B) { return mulhs(R << 2, 9798) + mulhs(B << 2, 3736) + mulhs(G << 2, 19235); }
  static int luma(int S) { return clip8((S + 1) >> 1); }
};
struct X1 : XS {
  static void chroma(int sR, int, int sB, int sS, int& U, int& V) {
    const int T = sS >> 2;
    U = clip8(mulhs((sB >> 1) - T, 16121) + 128);
    V = clip8(mulhs((sR >> 1) - T, 28737) + 128);
  }
};
struct X2 : XS {
  static void chroma(int sR, int, int sB, int sS, int& U, int& V) {
    const int T = sS >> 1;
    U = clip8(mulhs(sB - T, 16121) + 128);
    V = clip8(mulhs(sR - T, 28737) + 128);
  }
};
// XT (4:2:0) and XU (4:2:2): 32-bit, Q16, truncated luma; U keeps its low byte.
template <int Round, int Shift>
struct XQ {
  static int term(int R, int G, int B) { return 19595 * R + 38470 * G + 7471 * B; }
  static int luma(int t) { return t >> 16; }
  static void chroma(int sR, int, int sB, int s, int& U, int& V) {
    U = byte8(((((sB << 16) - s + Round) >> 16) * 32244 >> Shift) + 128);
    V = clip8(((((sR << 16) - s + Round) >> 16) * 57475 >> Shift) + 128);
  }
};
using XT = XQ<131071, 18>;
using XU = XQ<65535, 17>;

}  // namespace pks
}  // namespace

}  // namespace kel
