// BT.709 conversions, BGR on the RGB side. Two coefficient sets:
//   CSC   studio swing, luma 16..235 and chroma 16..240;
//   HDTV  full swing; the forward direction limits every output to 1..254.
// Formulas (body forms in 16-bit fixed point as the vector lanes compute
// them, tail forms in 32 bits), and the table of vector kernels each
// instruction-set file provides.
#pragma once

#include "frame/arith.h"
#include "frame/packed422.h"

namespace kel {

struct Rec709Kernels {
  KernIO cscTo420C3, cscTo420AC4, hdtvTo420AC4;  // BGR -> 4:2:0 planes (row pairs)
  KernIO cscFrom420C3, hdtvFrom420C4;           // 4:2:0 planes -> BGR (row pairs)
  KernIO cscFrom444C3, cscFrom444C4;            // 4:4:4 planes -> BGR
  KernIO hdtvToC2C3, hdtvToC2AC4;               // BGR -> CbYCr 4:2:2
  KernIO hdtvFromC2C3, hdtvFromC2C4;            // CbYCr 4:2:2 -> BGR
};
namespace sse41 {
extern const Rec709Kernels kRec709Kernels;
}
namespace avx2 {
extern const Rec709Kernels kRec709Kernels;
}

namespace {
namespace rec709 {

// Full-swing outputs keep clear of 0 and 255.
constexpr int32_t limit(int32_t x) { return x < 1 ? 1 : (x > 254 ? 254 : x); }

// ---- luma-chroma -> BGR ----------------------------------------------------
// Body forms, Q13 (frame/packed422.h): negated or subtracted green products.
using CscN = YccQ13<LumaStudio, 14688, 1745, 4375, 17326, Green::Negated>;
using CscS = YccQ13<LumaStudio, 14688, 1745, 4375, 17326, Green::Subtracted>;
using HdtvN = YccQ13<LumaFull, 12616, 1499, 3760, 14877, Green::Negated>;
using HdtvS = YccQ13<LumaFull, 12616, 1499, 3760, 14877, Green::Subtracted>;

// Tail forms, Q16 in 32 bits.
struct CscTail {
  static void px(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int32_t y = 76284 * Y - 1187776, p = Cb - 128, q = Cr - 128;
    R = clip8((y + 117506 * q) >> 16);
    G = clip8((y - 13959 * p - 34996 * q) >> 16);
    B = clip8((y + 138609 * p) >> 16);
  }
};
struct HdtvTail {
  static void px(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int32_t y = Y * 65536 + 32768, p = Cb - 128, q = Cr - 128;
    R = clip8((y + 100925 * q) >> 16);
    G = clip8((y - 11993 * p - 30081 * q) >> 16);
    B = clip8((y + 119013 * p) >> 16);
  }
};

// ---- BGR -> luma-chroma ----------------------------------------------------
// Each form: y(R, G, B) per pixel, c(SR, SG, SB, Cb, Cr) from the sums of
// the pixels that share a chroma sample (four in 4:2:0, two in 4:2:2).

// Body luma: Q15 weights on samples in the high byte, offset and rounding
// half in 1/128 units.
inline int32_t lumaCsc(int R, int G, int B) {
  return (mulhu(R << 8, 5997) + mulhu(G << 8, 20120) + mulhu(B << 8, 2032) + 2112) >> 7;
}
inline int32_t lumaHdtv(int R, int G, int B) {
  return limit((mulhu(R << 8, 6980) + mulhu(G << 8, 23429) + mulhu(B << 8, 2359) + 64) >> 7);
}
inline int32_t lumaHdtvTail(int R, int G, int B) { return limit((13959 * R + 46858 * G + 4719 * B + 32768) >> 16); }

// 4:2:0, sums of four: Q16 chroma on sums << 5.
struct Csc420 {
  static int32_t y(int R, int G, int B) { return lumaCsc(R, G, B); }
  static void c(int SR, int SG, int SB, int& Cb, int& Cr) {
    Cb = clip8((mulhu(SB << 5, 28770) - (mulhu(SR << 5, 6619) + mulhu(SG << 5, 22151)) + 16400) >> 7);
    Cr = clip8((mulhu(SR << 5, 28770) - (mulhu(SG << 5, 26149) + mulhu(SB << 5, 2621)) + 16400) >> 7);
  }
};
struct Csc420Tail {
  static int32_t y(int R, int G, int B) { return (11993 * R + 40239 * G + 4063 * B + 1081344) >> 16; }
  static void c(int SR, int SG, int SB, int& Cb, int& Cr) {
    Cb = (28770 * SB - 22151 * SG - 6619 * SR + 33587200) >> 18;
    Cr = (28770 * SR - 26149 * SG - 2621 * SB + 33587200) >> 18;
  }
};
// Q15 chroma; the values are signed before the limit (a yellow block goes
// below 0, a blue one above 255).
struct Hdtv420 {
  static int32_t y(int R, int G, int B) { return lumaHdtv(R, G, B); }
  static void c(int SR, int SG, int SB, int& Cb, int& Cr) {
    Cb = limit((mulhu(SB << 5, 16744) - (mulhu(SR << 5, 3834) + mulhu(SG << 5, 12911)) + 8224) >> 6);
    Cr = limit((mulhu(SR << 5, 16744) - (mulhu(SG << 5, 15204) + mulhu(SB << 5, 1540)) + 8224) >> 6);
  }
};
struct Hdtv420Tail {
  static int32_t y(int R, int G, int B) { return lumaHdtvTail(R, G, B); }
  static void c(int SR, int SG, int SB, int& Cb, int& Cr) {
    Cb = limit((33489 * SB - 25821 * SG - 7668 * SR + 33587200) >> 18);
    Cr = limit((33489 * SR - 30409 * SG - 3080 * SB + 33587200) >> 18);
  }
};

// 4:2:2, sums of two on sums << 6: unsigned products from three-byte
// pixels, signed ones (negated coefficients) from four-byte pixels.
struct Hdtv422U {
  static int32_t y(int R, int G, int B) { return lumaHdtv(R, G, B); }
  static void c(int SR, int SG, int SB, int& Cb, int& Cr) {
    Cb = limit((mulhu(SB << 6, 16744) - (mulhu(SR << 6, 3834) + mulhu(SG << 6, 12911)) + 8224) >> 6);
    Cr = limit((mulhu(SR << 6, 16744) - (mulhu(SG << 6, 15204) + mulhu(SB << 6, 1540)) + 8224) >> 6);
  }
};
struct Hdtv422S {
  static int32_t y(int R, int G, int B) { return lumaHdtv(R, G, B); }
  static void c(int SR, int SG, int SB, int& Cb, int& Cr) {
    Cb = limit((mulhs(SR << 6, -3834) + mulhs(SG << 6, -12911) + mulhs(SB << 6, 16744) + 8224) >> 6);
    Cr = limit((mulhs(SR << 6, 16744) + mulhs(SG << 6, -15204) + mulhs(SB << 6, -1540) + 8224) >> 6);
  }
};
// Cr's constant is two below Cb's.
struct Hdtv422Tail {
  static int32_t y(int R, int G, int B) { return lumaHdtvTail(R, G, B); }
  static void c(int SR, int SG, int SB, int& Cb, int& Cr) {
    Cb = limit((33489 * SB - 25821 * SG - 7668 * SR + 16842752) >> 17);
    Cr = limit((33489 * SR - 30409 * SG - 3080 * SB + 16842750) >> 17);
  }
};
// A last odd pixel: Cb of the pixel alone.
struct Hdtv422Last {
  static int32_t y(int R, int G, int B) { return lumaHdtvTail(R, G, B); }
  static int32_t cb(int R, int G, int B) { return limit((33489 * B - 25821 * G - 7668 * R + 8421376) >> 16); }
};

}  // namespace rec709
}  // namespace

}  // namespace kel
