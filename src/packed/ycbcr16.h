// YCbCr and YUV to 16-bit packed RGB (444, 555, 565 in both colour orders),
// plain and with ordered dither: the colour forms, the packers, the source
// layouts, and the table of vector kernels each instruction-set file provides.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "frame/arith.h"
#include "frame/cpu.h"
#include "packed/dither16.h"

namespace kel {

// Row pointers of one row: s[0] the luma (or interleaved) row, s[1] and s[2]
// the Cb and Cr rows of planar sources; d the destination row; r the row
// within the region, which picks the threshold row of the dithered packers.
struct Io16 {
  const uint8_t* s[3];
  uint16_t* d;
  int r;
};
// A vector kernel: converts whole blocks from column x on while a block fits
// below n; returns the column where it stopped. Blocks start at column 0.
using Kern16 = ptrdiff_t (*)(const Io16& io, ptrdiff_t x, ptrdiff_t n);
using Chain16 = Chain<Kern16>;
// The same over two rows that share one chroma row (4:2:0 row pairs).
using Kern16x2 = ptrdiff_t (*)(const Io16& a, const Io16& b, ptrdiff_t x, ptrdiff_t n);
using Chain16x2 = Chain<Kern16x2>;

// Packed formats. BGR puts red in the high bits, RGB red in the low bits.
enum Fmt16 : int { kBGR444, kBGR555, kBGR565, kRGB444, kRGB555, kRGB565, kFmt16Count };
// Source layouts with vector bodies: Y Cb Cr pixels, three full planes,
// Y0 Cb Y1 Cr pairs, and planes with one chroma sample per two columns.
enum Src16 : int { kSrcC3, kSrcP3, kSrcC2, kSrcHalf, kSrc16Count };

struct Ycc16Kernels {
  Kern16 ycc[kSrc16Count][2][kFmt16Count];  // studio-range YCbCr body form: [layout][dithered][format]
  Kern16 yuv[2][kFmt16Count];               // YUV body form, half-width chroma planes
  Kern16x2 pair[2][2][kFmt16Count];         // 4:2:0 row pairs: [YCbCr, YUV][dithered][format]
  Kern16 q411[2];                           // 4:1:1 rounded form, plain BGR555 and BGR565
};
namespace sse41 {
extern const Ycc16Kernels kYcc16Kernels;
}
namespace avx2 {
extern const Ycc16Kernels kYcc16Kernels;
}

// Bit widths and positions of the red, green and blue fields.
struct Fmt16Desc {
  int bits[3];
  int shift[3];
};
inline constexpr Fmt16Desc kFmt16[kFmt16Count] = {
    {{4, 4, 4}, {8, 4, 0}},  {{5, 5, 5}, {10, 5, 0}}, {{5, 6, 5}, {11, 5, 0}},
    {{4, 4, 4}, {0, 4, 8}},  {{5, 5, 5}, {0, 5, 10}}, {{5, 6, 5}, {0, 5, 11}},
};

namespace {
namespace ycc16 {

// Word stores at any address: a caller's image need not sit on an even one.
inline void put16(uint16_t* p, int32_t w) {
  const uint16_t v = static_cast<uint16_t>(w);
  std::memcpy(p, &v, 2);
}

// ---- colour forms: (Y, Cb, Cr) or (Y, U, V) -> R, G, B in 0..255 ------------
// Body form of studio-range YCbCr: Q13 coefficients on samples moved to the
// high bits of a 16-bit value, the result held with four fraction bits. The
// sums stay inside 16 bits for all inputs.
struct YccBody {
  static void rgb(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int y = mulhs((Y - 16) << 7, 9535), cb = (Cb - 128) << 7, cr = (Cr - 128) << 7;
    R = clip8((y + mulhs(cr, 13074)) >> 4);
    G = clip8((y - mulhs(cb, 3211) - mulhs(cr, 6660)) >> 4);
    B = clip8((y + mulhs(cb, 16523)) >> 4);
  }
};
// The same read of the samples, rounded before the shift (4:1:1 sources).
struct YccRounded {
  static void rgb(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int y = mulhs((Y - 16) << 7, 9535), cb = (Cb - 128) << 7, cr = (Cr - 128) << 7;
    R = clip8((y + mulhs(cr, 13074) + 8) >> 4);
    G = clip8((y - (mulhs(cb, 3211) + mulhs(cr, 6660)) + 8) >> 4);
    B = clip8((y + mulhs(cb, 16523) + 8) >> 4);
  }
};
// Body form of YUV.
struct YuvBody {
  static void rgb(int Y, int U, int V, int& R, int& G, int& B) {
    const int y = Y << 4, u = (U - 128) << 7, v = (V - 128) << 7;
    R = clip8((y + mulhs(v, 9338)) >> 4);
    G = clip8((y - mulhs(v, 4759) - mulhs(u, 3227)) >> 4);
    B = clip8((y + mulhs(u, 16646)) >> 4);
  }
};
// Tail forms, 32-bit with Q16 coefficients. They are not the body forms with
// more bits: about one colour in thirteen differs by a level.
struct PixTail {
  static void rgb(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int32_t a = 76284 * Y, p = Cb - 128, q = Cr - 128;
    R = clip8((a + 104595 * q - 1220544) >> 16);
    G = clip8((a - 25690 * p - 53281 * q - 1220544) >> 16);
    B = clip8((a + 132186 * p - 1220544) >> 16);
  }
};
// The pair tail of 4:2:2 pairs folds the chroma offsets into its constants.
struct PairTail {
  static void rgb(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int32_t a = 76284 * Y;
    R = clip8((a + 104595 * Cr - 14608761) >> 16);
    G = clip8((a - 25690 * Cb - 53281 * Cr + 8887730) >> 16);
    B = clip8((a + 132186 * Cb - 18140365) >> 16);
  }
};
struct RoundedTail {
  static void rgb(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int32_t a = 76284 * Y, p = Cb - 128, q = Cr - 128;
    R = clip8((a + 104595 * q - 1187776) >> 16);
    G = clip8((a - 25690 * p - 53281 * q - 1187776) >> 16);
    B = clip8((a + 132186 * p - 1187776) >> 16);
  }
};
struct YuvTail {
  static void rgb(int Y, int U, int V, int& R, int& G, int& B) {
    const int32_t b = Y << 16, u = U - 128, v = V - 128;
    R = clip8((b + 74711 * v) >> 16);
    G = clip8((b - 38076 * v - 25821 * u) >> 16);
    B = clip8((b + 133169 * u) >> 16);
  }
};

// ---- packers: R, G, B -> one word -------------------------------------------
// Plain: each colour keeps its top bits, no rounding.
template <int F>
struct Plain {
  static int32_t px(int R, int G, int B, int, ptrdiff_t) {
    constexpr Fmt16Desc f = kFmt16[F];
    return ((R >> (8 - f.bits[0])) << f.shift[0]) | ((G >> (8 - f.bits[1])) << f.shift[1]) |
           ((B >> (8 - f.bits[2])) << f.shift[2]);
  }
};
// Dithered: the three fields of a pixel share the threshold of its position.
template <int F>
struct Dither {
  static int32_t px(int R, int G, int B, int r, ptrdiff_t x) {
    constexpr Fmt16Desc f = kFmt16[F];
    const int c = static_cast<int>(x & 3);
    return (dither16::field<f.bits[0]>(R, r, c) << f.shift[0]) | (dither16::field<f.bits[1]>(G, r, c) << f.shift[1]) |
           (dither16::field<f.bits[2]>(B, r, c) << f.shift[2]);
  }
};

// ---- source layouts: the samples of pixel x of a row ------------------------
struct C3 {  // Y Cb Cr per pixel
  static void get(const Io16& io, ptrdiff_t x, int& Y, int& Cb, int& Cr) {
    const uint8_t* p = io.s[0] + 3 * x;
    Y = p[0], Cb = p[1], Cr = p[2];
  }
};
struct P3 {  // three full planes
  static void get(const Io16& io, ptrdiff_t x, int& Y, int& Cb, int& Cr) {
    Y = io.s[0][x], Cb = io.s[1][x], Cr = io.s[2][x];
  }
};
struct C2 {  // Y0 Cb Y1 Cr: pixel x takes the chroma of pair x >> 1
  static void get(const Io16& io, ptrdiff_t x, int& Y, int& Cb, int& Cr) {
    const uint8_t* p = io.s[0] + 4 * (x >> 1);
    Y = io.s[0][2 * x], Cb = p[1], Cr = p[3];
  }
};
struct Half {  // chroma planes with a sample per two columns
  static void get(const Io16& io, ptrdiff_t x, int& Y, int& Cb, int& Cr) {
    Y = io.s[0][x], Cb = io.s[1][x >> 1], Cr = io.s[2][x >> 1];
  }
};
struct Quarter {  // chroma planes with a sample per four columns
  static void get(const Io16& io, ptrdiff_t x, int& Y, int& Cb, int& Cr) {
    Y = io.s[0][x], Cb = io.s[1][x >> 2], Cr = io.s[2][x >> 2];
  }
};

// One pixel: layout L, colour form Form, packer Pack.
template <class L, class Form, class Pack>
struct Px {
  static int32_t px(const Io16& io, ptrdiff_t x) {
    int Y, Cb, Cr, R, G, B;
    L::get(io, x, Y, Cb, Cr);
    Form::rgb(Y, Cb, Cr, R, G, B);
    return Pack::px(R, G, B, io.r, x);
  }
};

}  // namespace ycc16
}  // namespace

}  // namespace kel
