// RGB and BGR to and from packed CbYCr 4:2:2 (bytes Cb, Y0, Cr, Y1 per pair)
// with the BT.601 studio-swing weights. Formulas, and the table of vector
// kernels each instruction-set file provides.
#pragma once

#include "frame/arith.h"
#include "frame/packed422.h"

namespace kel {

struct CbYCrKernels {
  KernIO toC2AC4;     // BGRX -> CbYCr, pair means
  KernIO fromC2RGB;   // CbYCr -> RGB
  KernIO fromC2BGRA;  // CbYCr -> BGR + alpha
  KernIO filtered;    // RGB -> CbYCr with the chroma filter, from the second pair on
};
namespace sse41 {
extern const CbYCrKernels kCbYCrKernels;
}
namespace avx2 {
extern const CbYCrKernels kCbYCrKernels;
}

namespace {
namespace cbycr {

// ---- RGB -> CbYCr with the horizontal chroma filter 1/4, 1/2, 1/4 ----------
// Q15, 32 bits. A pixel of even index is the centre of its pair (weight 1/2),
// a pixel of odd index is a neighbour of two pairs (weight 1/4 each).
struct Filtered {
  static int32_t y(int R, int G, int B) { return (8422 * R + 16515 * G + 3212 * B + 540672) >> 15; }
  static int32_t cbCentre(int R, int G, int B) { return 7193 * B - 2426 * R - 4769 * G; }
  static int32_t crCentre(int R, int G, int B) { return 7193 * R - 6030 * G - 1164 * B; }
  static int32_t cbSide(int R, int G, int B) { return 3596 * B - 1213 * R - 2385 * G; }
  static int32_t crSide(int R, int G, int B) { return 3596 * R - 3015 * G - 582 * B; }
  // 0x403FFF: the offset 128, half a unit, less one.
  static int32_t chroma(int32_t left, int32_t centre, int32_t right) { return (left + centre + right + 4210687) >> 15; }
};

// ---- BGR -> CbYCr with pair means ----------------------------------------------
// Body: Q15 on samples in the high byte (luma) and on pair sums << 6 (chroma).
struct MeanBody {
  static int32_t y(int R, int G, int B) {
    return (mulhu(R << 8, 8422) + mulhu(G << 8, 16515) + mulhu(B << 8, 3212) + 2112) >> 7;
  }
  static void c(int SR, int SG, int SB, int& Cb, int& Cr) {
    Cb = (mulhs(SR << 6, -9699) + mulhs(SG << 6, -19071) + mulhs(SB << 6, 28770) + 16448) >> 7;
    Cr = (mulhs(SR << 6, 28770) + mulhs(SG << 6, -24117) + mulhs(SB << 6, -4653) + 16448) >> 7;
  }
};
// Tail: Q16 luma, Q16 chroma on pair sums; Cr's constant is two below Cb's.
struct MeanTail {
  static int32_t y(int R, int G, int B) { return (16843 * R + 33030 * G + 6423 * B + 1081344) >> 16; }
  static void c(int SR, int SG, int SB, int& Cb, int& Cr) {
    Cb = (28770 * SB - 19071 * SG - 9699 * SR + 16842752) >> 17;
    Cr = (28770 * SR - 24117 * SG - 4653 * SB + 16842750) >> 17;
  }
};
// A last odd pixel, in both forward conversions: Cb of the pixel alone.
struct Last {
  static int32_t y(int R, int G, int B) { return MeanTail::y(R, G, B); }
  static int32_t cb(int R, int G, int B) { return (28770 * B - 9699 * R - 19071 * G + 8421376) >> 16; }
};

// ---- CbYCr -> RGB --------------------------------------------------------------
// Body: the Q13 studio-swing set with negated green coefficients.
using InvBody = YccQ13<LumaStudio, 13074, 3211, 6660, 16523, Green::Negated>;
// Tail: Q16, coefficients slightly below the exact ones.
struct InvTail {
  static void px(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int32_t a = 76282 * Y - 1187744, p = Cb - 128, q = Cr - 128;
    R = clip8((a + 104593 * q) >> 16);
    G = clip8((a - 25689 * p - 53279 * q) >> 16);
    B = clip8((a + 132184 * p) >> 16);
  }
};

}  // namespace cbycr
}  // namespace

}  // namespace kel
