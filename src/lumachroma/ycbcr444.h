// RGB <-> YCbCr at full resolution, studio range (Y 16..235, Cb and Cr
// 16..240 around 128; luma weights 0.257, 0.504, 0.098). Formulas, and the
// table of vector kernels each instruction-set file provides.
#pragma once

#include "frame/arith.h"
#include "frame/pixel3.h"

namespace kel {

// A body that writes four bytes per pixel, the fourth one constant.
using Kern3A = int (*)(const Row3& io, int x, int n, uint8_t alpha);

struct Ycc444Kernels {
  Kern3 rgbC3_F1;     // C3 -> C3, form F1
  Kern3 rgbC3P3_F2;   // C3 -> P3, form F2
  Kern3 rgbAC4P3_F2;  // AC4 -> P3, form F2
  Kern3 rgbP3_F2;     // P3 -> P3, form F2
  Kern3 yccC3_J1;     // C3 -> C3, form J1
  Kern3 yccP3_J2;     // P3 -> P3, form J2
  Kern3 yccP3C3_J3;   // P3 -> C3, form J3
  Kern3 yccP3C3_J3r;  // P3 -> C3, form J3, samples written B, G, R
  Kern3A yccP3C4_J4;  // P3 -> C4, form J4
  Kern3A yccP3C4_J4r; // P3 -> C4, form J4, samples written B, G, R
  // The 32-bit tail forms in 32-bit lanes, for the members that are all tail.
  Kern3 rgbAC4_FT;    // AC4 -> AC4, form FT
  Kern3 yccAC4_L1;    // AC4 -> AC4, form L1
};
namespace sse41 {
extern const Ycc444Kernels kYcc444Kernels;
}
namespace avx2 {
extern const Ycc444Kernels kYcc444Kernels;
}

namespace {
namespace ycc444 {

// ---- forward: RGB -> YCbCr -----------------------------------------------
// F1: Q14 through the rounding product. The offsets are 16 and 128 scaled by
// 64, each with 2 more (1026, 8194).
struct F1 {
  static void px(int R, int G, int B, int& Y, int& Cb, int& Cr) {
    const int r = R << 7, g = G << 7, b = B << 7;
    Y = clip8((mulhr(r, 4211) + mulhr(g, 8258) + mulhr(b, 1606) + 1026) >> 6);
    Cb = clip8((mulhr(b, 7193) - mulhr(g, 4768) - mulhr(r, 2425) + 8194) >> 6);
    Cr = clip8((mulhr(r, 7193) - mulhr(g, 6029) - mulhr(b, 1163) + 8194) >> 6);
  }
};
// F2: Q16, unsigned products for luma (no clip: it stays in 16..235),
// signed products for chroma.
struct F2 {
  static void px(int R, int G, int B, int& Y, int& Cb, int& Cr) {
    const int r = R << 7, g = G << 7, b = B << 7;
    Y = ((mulhu(R << 8, 16843) + mulhu(G << 8, 33030) + mulhu(B << 8, 6423) + 128) >> 8) + 16;
    Cb = clip8(((mulhs(r, -9699) + mulhs(g, -19071) + mulhs(b, 28770) + 64) >> 7) + 128);
    Cr = clip8(((mulhs(r, 28770) + mulhs(g, -24117) + mulhs(b, -4653) + 64) >> 7) + 128);
  }
};
// FT: 32-bit, Q16; the offsets carry the rounding half (16.5 and 128.5 in
// Q16). Results are in range by construction.
struct FT {
  static void px(int R, int G, int B, int& Y, int& Cb, int& Cr) {
    Y = (16843 * R + 33030 * G + 6423 * B + 1081344) >> 16;
    Cb = byte8((-9699 * R - 19071 * G + 28770 * B + 8421376) >> 16);
    Cr = byte8((28770 * R - 24117 * G - 4653 * B + 8421376) >> 16);
  }
};

// ---- inverse: YCbCr -> RGB -----------------------------------------------
// J: Q13 on y = (Y - 16) << 7, u = (Cb - 128) << 7, v = (Cr - 128) << 7
// (written as products: a left shift of a negative value is undefined in C++),
// final shift by 4. `Rnd` is the rounding term (8, or 0 in J2); `NegG`
// multiplies the G terms by positive coefficients and subtracts them, each
// product floored before the sign change (J4).
template <int Ky, int Gu, int Rnd, bool NegG>
struct J {
  static void px(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int y = (Y - 16) * 128, u = (Cb - 128) * 128, v = (Cr - 128) * 128;
    const int t = mulhs(y, Ky);
    R = clip8((t + mulhs(v, 13074) + Rnd) >> 4);
    if constexpr (NegG) G = clip8((t - mulhs(u, Gu) - mulhs(v, 6660) + Rnd) >> 4);
    else G = clip8((t + mulhs(u, -Gu) + mulhs(v, -6660) + Rnd) >> 4);
    B = clip8((t + mulhs(u, 16523) + Rnd) >> 4);
  }
};
using J1 = J<9536, 3203, 8, false>;
using J2 = J<9536, 3203, 0, false>;
using J3 = J<9535, 3211, 8, false>;
using J4 = J<9535, 3211, 8, true>;

// L(k, a, b, c, d, e): 32-bit, Q16, y = k * Y - 16 * k + e.
template <int k, int a, int b, int c, int d, int e>
struct L {
  static void px(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int32_t y = k * Y - 16 * k + e, u = Cb - 128, v = Cr - 128;
    R = clip8((y + a * v) >> 16);
    G = clip8((y + b * u + c * v) >> 16);
    B = clip8((y + d * u) >> 16);
  }
};
using L1 = L<76284, 104595, -25690, -53281, 132186, 0>;
using L2 = L<76282, 104593, -25689, -53279, 132184, 0>;
using L3 = L<76282, 104593, -25689, -53279, 132184, 32768>;

// A formula with its three results written in reverse order (BGR output).
template <class F>
struct Rev {
  static void px(int a, int b, int c, int& x, int& y, int& z) { F::px(a, b, c, z, y, x); }
};

}  // namespace ycc444
}  // namespace

}  // namespace kel
