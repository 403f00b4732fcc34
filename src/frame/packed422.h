// Rows that do not map one pixel to one pixel: packed 4:2:2 streams of byte
// pairs (chroma, luma, chroma, luma) to and from three-colour pixels, and the
// row pointers that 4:2:0 row pairs need.
//
// A row routine here runs its body through the vector kernels of the active
// path (widest first), then the scalar definition of the body formula for
// the body pixels they leave, then the tail formula pair by pair, and finally
// the rule of a last odd pixel.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/arith.h"
#include "frame/cpu.h"

namespace kel {

// Row pointers of one row, or of one 4:2:0 row pair (two full-resolution
// rows and the chroma rows they share), and the fourth byte of C4 pixels.
struct RowIO {
  const uint8_t* s[4];
  uint8_t* d[4];
  int alpha;
};

// A vector kernel: converts pixels from column x on, in whole blocks, while
// a block fits below n; returns the column where it stopped.
using KernIO = int (*)(const RowIO& io, int x, int n);
using ChainIO = Chain<KernIO>;

// Three-colour pixels: RGB and BGR, three bytes in the named order; BGRX,
// four bytes, the fourth neither read nor written; BGRA, four bytes, the
// fourth written with the low 8 bits of the call's alpha.
enum class Pix : int { RGB, BGR, BGRX, BGRA };

// The rest has internal linkage, as in frame/arith.h: per-ISA files include
// this header too.
namespace {


// ---- three-colour pixels ------------------------------------------------
template <Pix P>
struct PixAt {
  static constexpr int kBytes = (P == Pix::RGB || P == Pix::BGR) ? 3 : 4;
  static constexpr bool kRgb = P == Pix::RGB;
  static void get(const uint8_t* row, int x, int& R, int& G, int& B) {
    const uint8_t* p = row + kBytes * x;
    R = p[kRgb ? 0 : 2], G = p[1], B = p[kRgb ? 2 : 0];
  }
  static void put(uint8_t* row, int x, int R, int G, int B, int alpha) {
    uint8_t* p = row + kBytes * x;
    p[kRgb ? 0 : 2] = static_cast<uint8_t>(R);
    p[1] = static_cast<uint8_t>(G);
    p[kRgb ? 2 : 0] = static_cast<uint8_t>(B);
    if constexpr (P == Pix::BGRA) p[3] = static_cast<uint8_t>(alpha);
  }
};

// ---- luma-chroma to RGB in Q13 ------------------------------------------
// Chroma and the luma term carry four fraction bits; 8 rounds before the
// final shift. The green term is either a sum of products by negative
// coefficients or a difference of products by positive ones: mulhs floors,
// so the two differ in the low bit for negative products.
struct LumaStudio {  // luma 16..235 stretched to 0..255
  static int32_t term(int Y) { return mulhs((Y - 16) * 128, 9535); }
};
struct LumaFull {  // luma used as it is
  static int32_t term(int Y) { return Y * 16; }
};
enum class Green : int { Negated, Subtracted };

template <class Luma, int kR, int kG1, int kG2, int kB, Green G_>
struct YccQ13 {
  using L = Luma;
  static constexpr int cR = kR, cG1 = kG1, cG2 = kG2, cB = kB;
  static constexpr Green kGreen = G_;
  static void px(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int32_t y = Luma::term(Y), cb = (Cb - 128) * 128, cr = (Cr - 128) * 128;
    R = clip8((y + mulhs(cr, kR) + 8) >> 4);
    if constexpr (G_ == Green::Negated)
      G = clip8((y + mulhs(cr, -kG2) + mulhs(cb, -kG1) + 8) >> 4);
    else
      G = clip8((y - mulhs(cb, kG1) - mulhs(cr, kG2) + 8) >> 4);
    B = clip8((y + mulhs(cb, kB) + 8) >> 4);
  }
};

// ---- packed 4:2:2 source to pixels --------------------------------------
// Both pixels of a pair take its Cb and Cr. A last odd pixel takes Cb from
// its own chroma byte and Cr from the byte two places before it (the Cr of
// the pair before); in a row of one pixel Cr is its own Cb byte.
template <Pix Out, class F>
inline void pairFromC2(const RowIO& io, int x) {
  const uint8_t* p = io.s[0] + 2 * x;
  int R, G, B;
  F::px(p[1], p[0], p[2], R, G, B);
  PixAt<Out>::put(io.d[0], x, R, G, B, io.alpha);
  F::px(p[3], p[0], p[2], R, G, B);
  PixAt<Out>::put(io.d[0], x + 1, R, G, B, io.alpha);
}
template <Pix Out, class F>
inline int scalarFromC2(const RowIO& io, int x, int n) {
  for (; x < n; x += 2) pairFromC2<Out, F>(io, x);
  return x;
}
template <Pix Out, class Body, class Tail>
inline void rowFromC2(const RowIO& io, int w, int body, const ChainIO& chain) {
  int x = scalarFromC2<Out, Body>(io, runChain(chain, io, 0, body), body);
  x = scalarFromC2<Out, Tail>(io, x, w & ~1);
  if (x < w) {
    const uint8_t* p = io.s[0] + 2 * x;
    int R, G, B;
    Tail::px(p[1], p[0], x ? p[-2] : p[0], R, G, B);
    PixAt<Out>::put(io.d[0], x, R, G, B, io.alpha);
  }
}

// ---- pixels to packed 4:2:2 ---------------------------------------------
// A form F gives luma per pixel, F::y(R, G, B), and the chroma of a pair
// from the sums of its two pixels, F::c(SR, SG, SB, Cb, Cr). A last odd
// pixel writes Cb and Y only, by the form Last: Last::y and Last::cb of the
// pixel itself.
template <Pix In, class F>
inline void pairToC2(const RowIO& io, int x) {
  int R0, G0, B0, R1, G1, B1, Cb, Cr;
  PixAt<In>::get(io.s[0], x, R0, G0, B0);
  PixAt<In>::get(io.s[0], x + 1, R1, G1, B1);
  F::c(R0 + R1, G0 + G1, B0 + B1, Cb, Cr);
  uint8_t* p = io.d[0] + 2 * x;
  p[0] = static_cast<uint8_t>(Cb);
  p[1] = static_cast<uint8_t>(F::y(R0, G0, B0));
  p[2] = static_cast<uint8_t>(Cr);
  p[3] = static_cast<uint8_t>(F::y(R1, G1, B1));
}
template <Pix In, class F>
inline int scalarToC2(const RowIO& io, int x, int n) {
  for (; x < n; x += 2) pairToC2<In, F>(io, x);
  return x;
}
template <Pix In, class Last>
inline void lastToC2(const RowIO& io, int x) {
  int R, G, B;
  PixAt<In>::get(io.s[0], x, R, G, B);
  io.d[0][2 * x] = static_cast<uint8_t>(Last::cb(R, G, B));
  io.d[0][2 * x + 1] = static_cast<uint8_t>(Last::y(R, G, B));
}
template <Pix In, class Body, class Tail, class Last>
inline void rowToC2(const RowIO& io, int w, int body, const ChainIO& chain) {
  int x = scalarToC2<In, Body>(io, runChain(chain, io, 0, body), body);
  x = scalarToC2<In, Tail>(io, x, w & ~1);
  if (x < w) lastToC2<In, Last>(io, x);
}

}  // namespace
}  // namespace kel
