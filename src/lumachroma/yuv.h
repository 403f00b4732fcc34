// RGB <-> YUV at full resolution (analogue-TV YUV: U = 0.492 (B - Y),
// V = 0.877 (R - Y), both offset by 128). Formulas, and the table of vector
// kernels each instruction-set file provides.
#pragma once

#include "frame/arith.h"
#include "frame/pixel3.h"

namespace kel {

struct YuvKernels {
  Kern3 rgbC3_V1;    // C3 -> C3, form V1
  Kern3 rgbC3P3_V1;  // C3 -> P3, form V1
  Kern3 rgbP3_V1;    // P3 -> P3, form V1
  Kern3 rgbAC4P4_V2; // AC4 -> P3 + alpha plane, form V2
  Kern3 yuvC3_I1;    // C3 -> C3, form I1
  Kern3 yuvP3C3_I2;  // P3 -> C3, form I2
  // The 32-bit tail forms in 32-bit lanes, for the members that are all tail.
  Kern3 rgbAC4_T1;   // AC4 -> AC4, form T1
  Kern3 yuvAC4_KA;   // AC4 -> AC4, form KA
  Kern3 yuvP3_KB;    // P3 -> P3, form KB
};
namespace sse41 {
extern const YuvKernels kYuvKernels;
}
namespace avx2 {
extern const YuvKernels kYuvKernels;
}

namespace {
namespace yuv {

// ---- forward: RGB -> YUV --------------------------------------------------
// V1: Q16 luma, Q15 chroma, truncating 16-bit products.
struct V1 {
  static void px(int R, int G, int B, int& Y, int& U, int& V) {
    Y = (mulhu(R << 8, 19595) + mulhu(G << 8, 38469) + mulhu(B << 8, 7471)) >> 8;
    U = clip8(((mulhs(R << 7, -4816) + mulhs(G << 7, -9469) + mulhs(B << 7, 14286)) >> 6) + 128);
    V = clip8(((mulhs(R << 7, 20152) + mulhs(G << 7, -16875) + mulhs(B << 7, -3276)) >> 6) + 128);
  }
};
// V2: Q15, chroma from the difference to the luma term.
struct V2 {
  static void px(int R, int G, int B, int& Y, int& U, int& V) {
    const int S = mulhs(R << 2, 9798) + mulhs(G << 2, 19235) + mulhs(B << 2, 3736);
    Y = clip8(S >> 1);
    U = clip8(mulhs((B << 1) - S, 16121) + 128);
    V = clip8(mulhs((R << 1) - S, 28737) + 128);
  }
};
// T1: 32-bit, Q16; the G weight is 38470 so that the three add to 65536.
struct T1 {
  static void px(int R, int G, int B, int& Y, int& U, int& V) {
    const int32_t y = 19595 * R + 38470 * G + 7471 * B;
    Y = y >> 16;
    U = byte8(((((B << 16) - y + 32767) >> 16) * 32244 >> 16) + 128);
    V = clip8(((((R << 16) - y + 32767) >> 16) * 57475 >> 16) + 128);
  }
};
// T2: 32-bit, Q16 luma, Q15 chroma.
struct T2 {
  static void px(int R, int G, int B, int& Y, int& U, int& V) {
    Y = (19595 * R + 38469 * G + 7471 * B) >> 16;
    U = byte8(((-4816 * R - 9469 * G + 14286 * B) >> 15) + 128);
    V = clip8(((20152 * R - 16875 * G - 3276 * B) >> 15) + 128);
  }
};

// ---- inverse: YUV -> RGB --------------------------------------------------
// I1: Q13, chroma shifted by 3.
struct I1 {
  static void px(int Y, int U, int V, int& R, int& G, int& B) {
    const int u = (U - 128) << 3, v = (V - 128) << 3;
    R = clip8(Y + mulhs(v, 9339));
    G = clip8(Y + mulhs(u, -3228) + mulhs(v, -4760));
    B = clip8(Y + mulhs(u, 16646));
  }
};
// I2: Q13, luma doubled and one more bit of chroma.
struct I2 {
  static void px(int Y, int U, int V, int& R, int& G, int& B) {
    const int y = Y << 1, u = (U - 128) << 4, v = (V - 128) << 4;
    R = clip8((y + mulhs(v, 9338)) >> 1);
    G = clip8((y + mulhs(u, -3227) + mulhs(v, -4759)) >> 1);
    B = clip8((y + mulhs(u, 16645)) >> 1);
  }
};
// K(a, b, c, d): 32-bit, Q16.
template <int a, int b, int c, int d>
struct K {
  static void px(int Y, int U, int V, int& R, int& G, int& B) {
    const int32_t y = Y << 16, u = U - 128, v = V - 128;
    R = clip8((y + a * v) >> 16);
    G = clip8((y + b * u + c * v) >> 16);
    B = clip8((y + d * u) >> 16);
  }
};
using KA = K<74711, -25821, -38076, 133169>;
using KB = K<74710, -25820, -38075, 133168>;

}  // namespace yuv
}  // namespace

}  // namespace kel
