// Vector words for the rows of frame/packed422.h: three-colour pixels in
// any byte order, the Q13 luma-chroma to RGB body form, the 16-bit fixed
// point forward forms, and the kernels of the packed 4:2:2 row shapes.
// Include after defining KEL_ISA, like frame/simd.h.
#pragma once

#include <type_traits>

#include "frame/packed422.h"
#include "frame/simd.h"

namespace kel {
namespace KEL_ISA_NS {

// ---- three-colour pixels, 16 per lane ---------------------------------------
template <Pix P>
inline void loadPix(const uint8_t* row, int x, V::v& r, V::v& g, V::v& b) {
  if constexpr (P == Pix::RGB) {
    loadC3(row + 3 * x, r, g, b);
  } else if constexpr (P == Pix::BGR) {
    loadC3(row + 3 * x, b, g, r);
  } else {
    V::v a;
    loadC4(row + 4 * x, b, g, r, a);
  }
}
template <Pix P>
inline void storePix(uint8_t* row, int x, V::v r, V::v g, V::v b, int alpha) {
  if constexpr (P == Pix::RGB) {
    storeC3(row + 3 * x, r, g, b);
  } else if constexpr (P == Pix::BGR) {
    storeC3(row + 3 * x, b, g, r);
  } else if constexpr (P == Pix::BGRA) {
    storeC4(row + 4 * x, b, g, r, V::set8(alpha));
  } else {
    static_assert(P == Pix::BGRA, "BGRX destinations keep their fourth byte: not a store of this kind");
  }
}

// Sums of the two samples of each pixel pair: 8 bytes pairs per lane into
// eight 16-bit values.
inline V::v pairSums(V::v x) { return V::add16(V::and_(x, V::set16(0x00FF)), V::srli16<8>(x)); }

inline V::v clamp16(V::v x, int lo, int hi) { return V::min16(V::max16(x, V::set16(lo)), V::set16(hi)); }

// ---- luma-chroma -> RGB, Q13 ----------------------------------------------------
// The lane form of YccQ13 (frame/packed422.h), in two halves: the luma term
// with the rounding 8 of each pixel, and the chroma terms of each chroma
// sample (which 4:2:2 and 4:2:0 rows compute once per pair and widen). The
// sums are exact in 16 bits, so the order of the additions is free.
template <class F>
inline V::v yccLuma(V::v y) {
  V::v t;
  if constexpr (std::is_same_v<typename F::L, LumaStudio>)
    t = V::mulhs(V::slli16<7>(V::sub16(y, V::set16(16))), V::set16(9535));
  else
    t = V::slli16<4>(y);
  return V::add16(t, V::set16(8));
}
// yccChroma7 takes (Cb - 128) << 7 and (Cr - 128) << 7.
template <class F>
inline void yccChroma7(V::v cb, V::v cr, V::v& tR, V::v& tG, V::v& tB) {
  tR = V::mulhs(cr, V::set16(F::cR));
  if constexpr (F::kGreen == Green::Negated)
    tG = V::add16(V::mulhs(cr, V::set16(-F::cG2)), V::mulhs(cb, V::set16(-F::cG1)));
  else
    tG = V::sub16(V::sub16(V::zero(), V::mulhs(cb, V::set16(F::cG1))), V::mulhs(cr, V::set16(F::cG2)));
  tB = V::mulhs(cb, V::set16(F::cB));
}
template <class F>
inline void yccChroma(V::v cb, V::v cr, V::v& tR, V::v& tG, V::v& tB) {
  yccChroma7<F>(V::slli16<7>(V::sub16(cb, V::set16(128))), V::slli16<7>(V::sub16(cr, V::set16(128))), tR, tG, tB);
}
// 16-bit results, to be packed with unsigned saturation (which is clip8).
inline void yccSum(V::v t, V::v tR, V::v tG, V::v tB, V::v& R, V::v& G, V::v& B) {
  R = V::srai16<4>(V::add16(t, tR)), G = V::srai16<4>(V::add16(t, tG)), B = V::srai16<4>(V::add16(t, tB));
}
// Sixteen pixels per lane as their luma terms (yccLuma; pixels 0..7 in tl,
// 8..15 in th), and the chroma terms of eight chroma samples, each serving
// two neighbouring pixels, to 8-bit R, G, B.
template <class F>
inline void yccQ13PairsT(V::v tl, V::v th, V::v tR, V::v tG, V::v tB, V::v& R, V::v& G, V::v& B) {
  V::v R0, G0, B0, R1, G1, B1;
  yccSum(tl, V::unpacklo16(tR, tR), V::unpacklo16(tG, tG), V::unpacklo16(tB, tB), R0, G0, B0);
  yccSum(th, V::unpackhi16(tR, tR), V::unpackhi16(tG, tG), V::unpackhi16(tB, tB), R1, G1, B1);
  R = V::packus16(R0, R1), G = V::packus16(G0, G1), B = V::packus16(B0, B1);
}
// The same from 16-bit Y.
template <class F>
inline void yccQ13Pairs(V::v yl, V::v yh, V::v tR, V::v tG, V::v tB, V::v& R, V::v& G, V::v& B) {
  yccQ13PairsT<F>(yccLuma<F>(yl), yccLuma<F>(yh), tR, tG, tB, R, G, B);
}
// Sixteen pixels per lane of 8-bit Y, Cb, Cr to 8-bit R, G, B.
template <class F>
inline void yccQ13x16(V::v y, V::v cb, V::v cr, V::v& R, V::v& G, V::v& B) {
  V::v yl, yh, bl, bh, rl, rh, tR, tG, tB, R0, G0, B0, R1, G1, B1;
  widen(y, yl, yh), widen(cb, bl, bh), widen(cr, rl, rh);
  yccChroma<F>(bl, rl, tR, tG, tB);
  yccSum(yccLuma<F>(yl), tR, tG, tB, R0, G0, B0);
  yccChroma<F>(bh, rh, tR, tG, tB);
  yccSum(yccLuma<F>(yh), tR, tG, tB, R1, G1, B1);
  R = V::packus16(R0, R1), G = V::packus16(G0, G1), B = V::packus16(B0, B1);
}

// ---- RGB -> luma-chroma, 16-bit fixed point --------------------------------------
// Luma: sum of mulhu(sample << 8, weight) plus an offset, >> 7, kept in
// [Lo, Hi]. Inputs are the samples in the high byte.
template <int kR, int kG, int kB, int Off, int Lo, int Hi>
inline V::v lumaQ15(V::v r8, V::v g8, V::v b8) {
  const V::v s = V::add16(V::add16(V::add16(V::mulhu(r8, V::set16(kR)), V::mulhu(g8, V::set16(kG))),
                                   V::mulhu(b8, V::set16(kB))),
                          V::set16(Off));
  return clamp16(V::srli16<7>(s), Lo, Hi);
}
// Chroma from sums shifted left by Shift: with Signed, the sum of
// mulhs(sum, c); without, mulhu(sum, |c|) added for positive and subtracted
// for negative coefficients. Then the offset, >> Down, kept in [Lo, Hi].
// The partial sums stay inside 16 bits for every form that uses this.
template <bool Signed, int Shift, int cR, int cG, int cB, int Off, int Down, int Lo, int Hi>
struct ChromaQ {
  static V::v term(V::v acc, V::v x, int c) {
    x = V::slli16<Shift>(x);
    if constexpr (Signed) return V::add16(acc, V::mulhs(x, V::set16(c)));
    return c >= 0 ? V::add16(acc, V::mulhu(x, V::set16(c))) : V::sub16(acc, V::mulhu(x, V::set16(-c)));
  }
  static V::v of(V::v sr, V::v sg, V::v sb) {
    // The positive term first, as the written forms do; exact either way.
    V::v s = V::set16(Off);
    s = term(s, sb, cB), s = term(s, sr, cR), s = term(s, sg, cG);
    return clamp16(V::srai16<Down>(s), Lo, Hi);
  }
};

// The packed 4:2:2 kernel works on words of (chroma, luma) byte pairs, and
// pmaddubsw by a constant picks one byte of each word already scaled:
// yccLuma of the high bytes (for studio luma, mulhs((Y - 16) << 6, 2 * 9535)
// is mulhs((Y - 16) << 7, 9535) bit for bit), and the chroma << 7 of words
// whose bytes are C - 128 as signed bytes (Cb low, Cr high).
template <class F>
inline V::v yccLumaHigh(V::v w) {
  V::v t;
  if constexpr (std::is_same_v<typename F::L, LumaStudio>)
    t = V::mulhs(V::sub16(V::maddubs(w, V::set16(64 << 8)), V::set16(16 << 6)), V::set16(2 * 9535));
  else
    t = V::maddubs(w, V::set16(16 << 8));
  return V::add16(t, V::set16(8));
}
template <class F>
inline void yccChromaSigned(V::v c, V::v& tR, V::v& tG, V::v& tB) {
  yccChroma7<F>(V::maddubs(V::set16(0x0080), c), V::maddubs(V::set16(0x8000), c), tR, tG, tB);
}

// ---- kernels of the packed 4:2:2 rows --------------------------------------------
// CbYCr -> pixels, 16 pixels (32 source bytes) per lane. Packing the chroma
// bytes of both halves gives one word per pair, Cb low and Cr high, and
// flipping their top bits makes them the signed bytes yccChromaSigned takes.
// Four-byte pixels read the source in whole vectors with the quarters in the
// order of V::loadQ0213: the chroma pack, the widening of the chroma terms
// and the interleave of the pixel bytes then leave the pixels in row order,
// so that the stores are whole vectors too.
template <Pix Out, class F>
int kernFromC2(const RowIO& row, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  // A local copy of the row pointers, which byte stores could otherwise alias.
  const RowIO io = row;
  const V::v lo = V::set16(0x00FF);
  for (; x + kBlock <= n; x += kBlock) {
    const uint8_t* s = io.s[0] + 2 * x;
    V::v a, b;
    if constexpr (Out == Pix::BGRA)
      a = V::loadQ0213(s), b = V::loadQ0213(s + 16 * V::kLanes);
    else
      a = V::load<32>(s), b = V::load<32>(s + 16);
    const V::v c = V::xor_(V::packus16(V::and_(a, lo), V::and_(b, lo)), V::set8(0x80));
    V::v tR, tG, tB, R, G, B;
    yccChromaSigned<F>(c, tR, tG, tB);
    yccQ13PairsT<F>(yccLumaHigh<F>(a), yccLumaHigh<F>(b), tR, tG, tB, R, G, B);
    if constexpr (Out == Pix::BGRA) {
      const V::v A = V::set8(io.alpha);
      const V::v t0 = V::unpacklo8(B, G), t1 = V::unpackhi8(B, G);
      const V::v t2 = V::unpacklo8(R, A), t3 = V::unpackhi8(R, A);
      uint8_t* d = io.d[0] + 4 * x;
      V::store<16>(d, V::unpacklo16(t0, t2));
      V::store<16>(d + 16 * V::kLanes, V::unpackhi16(t0, t2));
      V::store<16>(d + 32 * V::kLanes, V::unpacklo16(t1, t3));
      V::store<16>(d + 48 * V::kLanes, V::unpackhi16(t1, t3));
    } else {
      storePix<Out>(io.d[0], x, R, G, B, io.alpha);
    }
  }
  return x;
}

// Pixels -> CbYCr, 16 pixels per lane. VF::y(r8, g8, b8) gives luma of eight
// pixels (samples in the high byte), VF::c(sr, sg, sb, cb, cr) the chroma of
// eight pairs from their sums; all results within 0..255.
template <Pix In, class VF>
int kernToC2(const RowIO& io, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  for (; x + kBlock <= n; x += kBlock) {
    V::v r, g, b, rl, rh, gl, gh, bl, bh, cb, cr;
    loadPix<In>(io.s[0], x, r, g, b);
    widenHigh(r, rl, rh), widenHigh(g, gl, gh), widenHigh(b, bl, bh);
    const V::v yl = VF::y(rl, gl, bl), yh = VF::y(rh, gh, bh);
    VF::c(pairSums(r), pairSums(g), pairSums(b), cb, cr);
    uint8_t* d = io.d[0] + 2 * x;
    V::store<32>(d, V::or_(V::unpacklo16(cb, cr), V::slli16<8>(yl)));
    V::store<32>(d + 16, V::or_(V::unpackhi16(cb, cr), V::slli16<8>(yh)));
  }
  return x;
}

}  // namespace KEL_ISA_NS
}  // namespace kel
