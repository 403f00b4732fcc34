// Vector bodies of RGB <-> subsampled YUV, written once on the lane words of
// frame/simd.h and compiled per instruction set. Each is the lane-wise form
// of the scalar definition of the same name in yuvsub.h. A kernel takes 16
// columns per lane and pass: 8 chroma pairs.
#include "frame/simd.h"
#include "lumachroma/yuvsub.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;
constexpr int kBlock = 16 * V::kLanes;

// Sums of horizontally adjacent 16-bit values of lo (pixels 0-7 of a lane)
// and hi (8-15), as eight 16-bit values per lane: one per pixel pair. The
// pair sums are formed in 32 bits; `Shift` is applied there.
template <int Shift>
inline v pairSums(v lo, v hi) {
  const v one = V::set16(1);
  return V::packs32(V::srli32<Shift>(V::madd16(lo, one)), V::srli32<Shift>(V::madd16(hi, one)));
}

// Sums of adjacent bytes (unsigned) as eight 16-bit values per lane.
inline v bytePairs(v x) { return V::maddubs(x, V::set8(1)); }

// ---- 4:2:0 forward, form Q1 ------------------------------------------------
// Luma terms y = mulhr(R << 7, 4899) + ... of eight pixels (inputs x << 8).
inline v lumaQ14(v r8, v g8, v b8) {
  return V::add16(V::add16(V::mulhr(V::srli16<1>(r8), V::set16(4899)), V::mulhr(V::srli16<1>(g8), V::set16(9617))),
                  V::mulhr(V::srli16<1>(b8), V::set16(1868)));
}
// Back to bytes: values 0..255 of the even and the odd pixels.
inline v interleave8(v e, v o) { return V::or_(e, V::slli16<8>(o)); }

// Three-byte pixels to planar bytes: the 48 bytes of a lane are read as four
// 16-byte views of 4 whole pixels (from bytes 0, 12, 24 and, so as not to
// read past the lane, 32), each grouped R R R R G G G G B B B B by one
// shuffle; two rounds of unpacking gather the channels. Fewer shuffles than
// loadC3, and no ors.
constexpr Mask16 maskQuad(int skip) {
  Mask16 m{};
  for (int c = 0; c < 3; ++c)
    for (int p = 0; p < 4; ++p) m.b[4 * c + p] = static_cast<int8_t>(skip + 3 * p + c);
  for (int i = 12; i < 16; ++i) m.b[i] = -128;
  return m;
}
inline constexpr Mask16 kQuad = maskQuad(0), kQuadLast = maskQuad(4);
inline void loadC3q(const uint8_t* p, v& c0, v& c1, v& c2) {
  const v m = V::bcast(kQuad.b);
  const v q0 = V::shuffle8(V::load<48>(p), m), q1 = V::shuffle8(V::load<48>(p + 12), m);
  const v q2 = V::shuffle8(V::load<48>(p + 24), m), q3 = V::shuffle8(V::load<48>(p + 32), V::bcast(kQuadLast.b));
  const v lo01 = V::unpacklo32(q0, q1), lo23 = V::unpacklo32(q2, q3);
  c0 = V::unpacklo64(lo01, lo23);
  c1 = V::unpackhi64(lo01, lo23);
  c2 = V::unpacklo64(V::unpackhi32(q0, q1), V::unpackhi32(q2, q3));
}

// pmaddubsw with weight 64 on the even (or odd) byte of each pair cuts the
// even (odd) pixels out as 16-bit x << 6, and mulhr(x << 6, 2c) is
// mulhr(x << 7, c) bit for bit: both are ((x * c >> 7) + 1) >> 1. With
// weight 32 on both bytes it gives the pair sums << 5 the chroma needs.
int rgbC3_Q1(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v even = V::set16(0x0040), odd = V::set16(0x4000), k32 = V::set8(32);
  auto luma = [](v r6, v g6, v b6) {
    return V::add16(V::add16(V::mulhr(r6, V::set16(2 * 4899)), V::mulhr(g6, V::set16(2 * 9617))),
                    V::mulhr(b6, V::set16(2 * 1868)));
  };
  for (; x + kBlock <= n; x += kBlock) {
    v r0, g0, b0, r1, g1, b1;
    loadC3q(io.s[0][0] + 3 * x, r0, g0, b0);
    loadC3q(io.s[1][0] + 3 * x, r1, g1, b1);
    const v ye0 = luma(V::maddubs(r0, even), V::maddubs(g0, even), V::maddubs(b0, even));
    const v yo0 = luma(V::maddubs(r0, odd), V::maddubs(g0, odd), V::maddubs(b0, odd));
    const v ye1 = luma(V::maddubs(r1, even), V::maddubs(g1, even), V::maddubs(b1, even));
    const v yo1 = luma(V::maddubs(r1, odd), V::maddubs(g1, odd), V::maddubs(b1, odd));
    // Luma terms are 0..16320: y >> 6 needs no clip.
    V::store<16>(io.d[0][0] + x, interleave8(V::srli16<6>(ye0), V::srli16<6>(yo0)));
    V::store<16>(io.d[1][0] + x, interleave8(V::srli16<6>(ye1), V::srli16<6>(yo1)));
    // The four terms of a block sum below 65536: unsigned, then halved.
    const v S = V::srli16<1>(V::add16(V::add16(ye0, yo0), V::add16(ye1, yo1)));
    const v sB = V::add16(V::maddubs(b0, k32), V::maddubs(b1, k32));  // block sums << 5
    const v sR = V::add16(V::maddubs(r0, k32), V::maddubs(r1, k32));
    const v U = V::add16(V::srai16<6>(V::mulhr(V::sub16(sB, S), V::set16(8061))), V::set16(128));
    const v W = V::add16(V::srai16<6>(V::mulhr(V::sub16(sR, S), V::set16(14369))), V::set16(128));
    V::storeHalves(io.d[0][1] + x / 2, io.d[0][2] + x / 2, V::packus16(U, W));
  }
  return x;
}

// ---- inverse forms ------------------------------------------------------------
// Chroma terms of eight pairs per lane, each then doubled to the two pixels
// of its pair: lo for pixels 0-7, hi for 8-15.
struct Terms {
  v rl, rh, gl, gh, bl, bh;
};
inline Terms doubled(v r, v g, v b) {
  return {V::unpacklo16(r, r), V::unpackhi16(r, r), V::unpacklo16(g, g),
          V::unpackhi16(g, g), V::unpacklo16(b, b), V::unpackhi16(b, b)};
}
inline v chroma16(v c8, int shift) {  // (C - 128) << shift of the low 8 bytes per lane
  const v c = V::sub16(V::unpacklo8(c8, V::zero()), V::set16(128));
  return shift == 4 ? V::slli16<4>(c) : V::slli16<7>(c);
}
// I2, I3: y = Y << 1, chroma << 4, final >> 1.
template <int cR, int cGu, int cGv, int cB>
struct Iq {
  static Terms terms(v u8, v w8) {
    const v u = chroma16(u8, 4), w = chroma16(w8, 4);
    return doubled(V::mulhs(w, V::set16(cR)), V::add16(V::mulhs(u, V::set16(cGu)), V::mulhs(w, V::set16(cGv))),
                   V::mulhs(u, V::set16(cB)));
  }
  static v one(v y, v t) { return V::srai16<1>(V::add16(y, t)); }
  static void apply(const Terms& t, v y8, v& R, v& G, v& B) {
    v yl, yh;
    widen(y8, yl, yh);
    yl = V::slli16<1>(yl), yh = V::slli16<1>(yh);
    R = V::packus16(one(yl, t.rl), one(yh, t.rh));
    G = V::packus16(one(yl, t.gl), one(yh, t.gh));
    B = V::packus16(one(yl, t.bl), one(yh, t.bh));
  }
};
using I2 = Iq<9338, -3227, -4759, 16645>;
using I3 = Iq<9339, -3228, -4760, 16646>;
// IA: y = Y << 4, chroma << 7, rounding 8, final >> 4; the green products
// are summed and subtracted together.
struct IA {
  static Terms terms(v u8, v w8) {
    const v u = chroma16(u8, 7), w = chroma16(w8, 7), r8 = V::set16(8);
    const v c = V::add16(V::mulhs(u, V::set16(3227)), V::mulhs(w, V::set16(4759)));
    return doubled(V::add16(V::mulhs(w, V::set16(9338)), r8), V::sub16(r8, c),
                   V::add16(V::mulhs(u, V::set16(16646)), r8));
  }
  static v one(v y, v t) { return V::srai16<4>(V::add16(y, t)); }
  static void apply(const Terms& t, v y8, v& R, v& G, v& B) {
    v yl, yh;
    widen(y8, yl, yh);
    yl = V::slli16<4>(yl), yh = V::slli16<4>(yh);
    R = V::packus16(one(yl, t.rl), one(yh, t.rh));
    G = V::packus16(one(yl, t.gl), one(yh, t.gh));
    B = V::packus16(one(yl, t.bl), one(yh, t.bh));
  }
};

// Sources: 16 luma bytes of row r and the 8 chroma bytes of their pairs.
struct FromP3 {
  static void load(const SubRows& io, int r, int x, v& y, v& u, v& w) {
    y = V::load<16>(io.s[r][0] + x);
    u = V::load8<8>(io.s[0][1] + x / 2), w = V::load8<8>(io.s[0][2] + x / 2);
  }
};
// Packed Y0 U Y1 V: per 16-byte block, luma to the low half, U and V of
// its four pairs to the high half.
inline constexpr Mask16 kYuyvSplit = {{0, 2, 4, 6, 8, 10, 12, 14, 1, 5, 9, 13, 3, 7, 11, 15}};
struct FromC2 {
  static void load(const SubRows& io, int, int x, v& y, v& u, v& w) {
    const v m = V::bcast(kYuyvSplit.b);
    const v a = V::shuffle8(V::load<32>(io.s[0][0] + 2 * x), m);
    const v b = V::shuffle8(V::load<32>(io.s[0][0] + 2 * x + 16), m);
    y = V::unpacklo64(a, b);
    u = V::unpackhi32(a, b);  // U0-3 U4-7 V0-3 V4-7
    w = V::bsrli<8>(u);
  }
};
// Destinations of row r.
struct ToRGB {
  static void store(const SubRows& io, int r, int x, v R, v G, v B) { storeC3(io.d[r][0] + 3 * x, R, G, B); }
};
struct ToBGR {
  static void store(const SubRows& io, int r, int x, v R, v G, v B) { storeC3(io.d[r][0] + 3 * x, B, G, R); }
};
struct ToRGBA {
  static void store(const SubRows& io, int r, int x, v R, v G, v B) {
    storeC4(io.d[r][0] + 4 * x, R, G, B, V::set8(io.alpha));
  }
};
struct ToRGBP {
  static void store(const SubRows& io, int r, int x, v R, v G, v B) {
    V::store<16>(io.d[r][0] + x, R), V::store<16>(io.d[r][1] + x, G), V::store<16>(io.d[r][2] + x, B);
  }
};

// Rows = 1 for a 4:2:2 row, 2 for a 4:2:0 row pair (the chroma terms are
// formed once for both rows).
template <class F, class In, class Out, int Rows>
int inv(const SubRows& io, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    v y, u, w;
    In::load(io, 0, x, y, u, w);
    const Terms t = F::terms(u, w);
    for (int k = 0; k < Rows; ++k) {
      if (k) y = V::load<16>(io.s[k][0] + x);
      v R, G, B;
      F::apply(t, y, R, G, B);
      Out::store(io, k, x, R, G, B);
    }
  }
  return x;
}

// ---- forward 4:2:2 -------------------------------------------------------------
// Sources: 16 pixels per lane of row 0 as bytes.
struct RgbC3 {
  static void load(const SubRows& io, int r, int x, v& R, v& G, v& B) { loadC3(io.s[r][0] + 3 * x, R, G, B); }
};
struct RgbP3 {
  static void load(const SubRows& io, int r, int x, v& R, v& G, v& B) {
    R = V::load<16>(io.s[r][0] + x), G = V::load<16>(io.s[r][1] + x), B = V::load<16>(io.s[r][2] + x);
  }
};
// Destinations: 16 luma bytes, and U, V of the 8 pairs in the low 8 bytes
// of each lane.
struct ToYuvP3 {
  static void store(const SubRows& io, int x, v Y, v U, v W) {
    V::store<16>(io.d[0][0] + x, Y);
    V::store8<8>(io.d[0][1] + x / 2, U);
    V::store8<8>(io.d[0][2] + x / 2, W);
  }
};
struct ToYuyv {
  static void store(const SubRows& io, int x, v Y, v U, v W) {
    const v uv = V::unpacklo8(U, W);
    V::store<32>(io.d[0][0] + 2 * x, V::unpacklo8(Y, uv));
    V::store<32>(io.d[0][0] + 2 * x + 16, V::unpackhi8(Y, uv));
  }
};
inline v chromaOut(v c) { return V::packus16(c, c); }

// P1: the R and G terms by 32-bit dot products shifted together, the B term
// (3736 B) >> 14 as the high half of (B << 2) * 3736.
struct FP1 {
  static v rgTerm(v r, v g) {  // eight pixels
    const v k = V::set32((19235 << 16) | 9798);
    return V::packs32(V::srai32<14>(V::madd16(V::unpacklo16(r, g), k)),
                      V::srai32<14>(V::madd16(V::unpackhi16(r, g), k)));
  }
  static v s(v r, v g, v b) { return V::add16(rgTerm(r, g), V::mulhu(V::slli16<2>(b), V::set16(3736))); }
  static void run(v R, v G, v B, v& Y, v& U, v& W) {
    v rl, rh, gl, gh, bl, bh;
    widen(R, rl, rh), widen(G, gl, gh), widen(B, bl, bh);
    const v sl = s(rl, gl, bl), sh = s(rh, gh, bh);
    Y = V::packus16(V::srai16<1>(sl), V::srai16<1>(sh));
    const v T = pairSums<1>(sl, sh);
    U = chromaOut(V::add16(V::mulhs(V::sub16(bytePairs(B), T), V::set16(16121)), V::set16(128)));
    W = chromaOut(V::add16(V::mulhs(V::sub16(bytePairs(R), T), V::set16(28737)), V::set16(128)));
  }
};
// P2: samples spread to 10 bits, e(x) = (257 x) >> 6.
struct FP2 {
  static v e(v x) { return V::srli16<6>(V::mullo16(x, V::set16(257))); }
  static void run(v R, v G, v B, v& Y, v& U, v& W) {
    v rl, rh, gl, gh, bl, bh;
    widen(R, rl, rh), widen(G, gl, gh), widen(B, bl, bh);
    rl = e(rl), rh = e(rh), gl = e(gl), gh = e(gh), bl = e(bl), bh = e(bh);
    auto s = [](v r, v g, v b) {
      return V::add16(V::add16(V::mulhs(r, V::set16(9798)), V::mulhs(g, V::set16(19235))), V::mulhs(b, V::set16(3736)));
    };
    const v sl = s(rl, gl, bl), sh = s(rh, gh, bh);
    Y = V::packus16(V::srai16<1>(sl), V::srai16<1>(sh));
    const v D = pairSums<0>(sl, sh);
    U = chromaOut(V::add16(V::srai16<1>(V::mulhs(V::sub16(pairSums<1>(bl, bh), D), V::set16(16121))), V::set16(128)));
    W = chromaOut(V::add16(V::srai16<1>(V::mulhs(V::sub16(pairSums<1>(rl, rh), D), V::set16(28737))), V::set16(128)));
  }
};
// P3: Q14 through the rounding product.
struct FP3 {
  static void run(v R, v G, v B, v& Y, v& U, v& W) {
    v rl, rh, gl, gh, bl, bh;
    widenHigh(R, rl, rh), widenHigh(G, gl, gh), widenHigh(B, bl, bh);
    const v yl = lumaQ14(rl, gl, bl), yh = lumaQ14(rh, gh, bh);
    Y = V::packus16(V::srli16<6>(yl), V::srli16<6>(yh));
    const v S = pairSums<0>(yl, yh);
    const v sB = V::slli16<6>(bytePairs(B)), sR = V::slli16<6>(bytePairs(R));
    U = chromaOut(V::add16(V::srai16<6>(V::mulhr(V::sub16(sB, S), V::set16(8061))), V::set16(128)));
    W = chromaOut(V::add16(V::srai16<6>(V::mulhr(V::sub16(sR, S), V::set16(14369))), V::set16(128)));
  }
};
template <class F, class In, class Out>
int fwd422(const SubRows& io, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    v R, G, B, Y, U, W;
    In::load(io, 0, x, R, G, B);
    F::run(R, G, B, Y, U, W);
    Out::store(io, x, Y, U, W);
  }
  return x;
}

// ---- 4:2:0 forward, form Q4 (four-byte B, G, R, X source) ----------------------
// The pixels stay in their 4-byte slots, so nothing is transposed. A mask
// gives the words [B, R] of each pixel and pmaddubsw the words [2G, 0];
// mulhs(x << 2, c) is mulhu(x, 4c) for B and R and mulhu(2G, 2c) for G
// (4 * 19235 does not fit 16 bits), and pmaddwd adds a pixel's terms into
// S. The chroma adds [B, R] of the two rows, then the two columns of a pair
// (even and odd 4-byte units apart); its U and V stay interleaved as words
// until one shuffle splits them. In AVX2 the contiguous loads deal the
// 4-pixel groups to the lanes in turn; zip32Lanes undoes that at the stores.
inline constexpr Mask16 kSwapWords = {{2, 3, 0, 1, 6, 7, 4, 5, 10, 11, 8, 9, 14, 15, 12, 13}};
inline constexpr Mask16 kSplitBytes = {{0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15}};
int bgrx_Q4(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v low = V::set16(0x00FF), wG = V::set32(0x0200), ones = V::set16(1);
  const v kBR = V::set32(static_cast<int>((39192u << 16) | 14944u)), kG = V::set32(38470);
  for (; x + kBlock <= n; x += kBlock) {
    // Per half h of the lane's 16 pixels (blocks 2h, 2h + 1) both rows, so
    // that few sums stay live; the luma bytes of a row go out at the end.
    v s16[2][2], uv[2];
    for (int h = 0; h < 2; ++h) {
      v sBR[2];
      for (int k = 0; k < 2; ++k) {
        const uint8_t* p = io.s[k][0] + 4 * x + 32 * V::kLanes * h;
        v s32[2];
        for (int j = 0; j < 2; ++j) {
          const v c = V::load<16>(p + 16 * V::kLanes * j);
          const v br = V::and_(c, low);
          const v t = V::add16(V::mulhu(br, kBR), V::mulhu(V::maddubs(c, wG), kG));
          s32[j] = V::madd16(t, ones);
          sBR[j] = k ? V::add16(sBR[j], br) : br;
        }
        s16[k][h] = V::packs32(s32[0], s32[1]);
      }
      const v half = V::srli16<1>(V::add16(V::shuffle2x32<0x88>(sBR[0], sBR[1]), V::shuffle2x32<0xDD>(sBR[0], sBR[1])));
      const v sS = V::add16(s16[0][h], s16[1][h]);
      const v D = V::srli16<2>(V::add16(sS, V::shuffle8(sS, V::bcast(kSwapWords.b))));  // in both words of the pair
      uv[h] = V::add16(V::mulhs(V::sub16(half, D), V::set32((28737 << 16) | 16121)), V::set16(128));
    }
    // S is 0..509: S >> 1 needs no clip.
    for (int k = 0; k < 2; ++k)
      V::store<16>(io.d[k][0] + x, V::zip32Lanes(V::packus16(V::srli16<1>(s16[k][0]), V::srli16<1>(s16[k][1]))));
    const v c = V::shuffle8(V::zip32Lanes(V::packus16(uv[0], uv[1])), V::bcast(kSplitBytes.b));
    V::storeHalves(io.d[0][1] + x / 2, io.d[0][2] + x / 2, c);
  }
  return x;
}

// ---- 4:2:0 tail forms in 32-bit lanes ------------------------------------------
// Q3. The block's sum of luma terms is the same weighted sum of its channel
// sums, so the chroma comes from the pair sums of the two rows.
inline v q16(v R, v G, v B) {
  return V::add32(V::add32(V::mullo32(R, V::set32(19595)), V::mullo32(G, V::set32(38470))),
                  V::mullo32(B, V::set32(7471)));
}
inline v chromaQ3(v sC, v s, int k) {  // ((((sC << 16) - s + 131071) >> 16) * k >> 18) + 128
  const v d = V::srai32<16>(V::add32(V::sub32(V::slli32<16>(sC), s), V::set32(131071)));
  return V::add32(V::srai32<18>(V::mullo32(d, V::set32(k))), V::set32(128));
}
int rgbP3_Q3(const SubRows& io, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    v s16[3] = {V::zero(), V::zero(), V::zero()};  // block sums of R, G, B: eight per lane
    for (int k = 0; k < 2; ++k) {
      v c[3][4], y[4];
      for (int p = 0; p < 3; ++p) {
        const v b = V::load<16>(io.s[k][p] + x);
        widen32(b, c[p]);
        s16[p] = V::add16(s16[p], bytePairs(b));
      }
      for (int i = 0; i < 4; ++i) y[i] = V::srai32<16>(q16(c[0][i], c[1][i], c[2][i]));
      V::store<16>(io.d[k][0] + x, narrow32(y));
    }
    v u[2], w[2];
    for (int h = 0; h < 2; ++h) {
      v sc[3];
      for (int p = 0; p < 3; ++p) sc[p] = h ? V::unpackhi16(s16[p], V::zero()) : V::unpacklo16(s16[p], V::zero());
      const v sy = q16(sc[0], sc[1], sc[2]);
      u[h] = chromaQ3(sc[2], sy, 32244);  // in 0..255: the narrowing is the byte8 of the form
      w[h] = chromaQ3(sc[0], sy, 57475);
    }
    V::store8<8>(io.d[0][1] + x / 2, chromaOut(V::packs32(u[0], u[1])));
    V::store8<8>(io.d[0][2] + x / 2, chromaOut(V::packs32(w[0], w[1])));
  }
  return x;
}
// KA, the chroma products formed once for the two rows of the pair.
int yuv420P3_KA(const SubRows& io, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    const v u8 = V::load8<8>(io.s[0][1] + x / 2), w8 = V::load8<8>(io.s[0][2] + x / 2);
    v U[4], W[4], tr[4], tg[4], tb[4];
    widen32(V::unpacklo8(u8, u8), U), widen32(V::unpacklo8(w8, w8), W);
    for (int i = 0; i < 4; ++i) {
      const v u = V::sub32(U[i], V::set32(128)), w = V::sub32(W[i], V::set32(128));
      tr[i] = V::mullo32(w, V::set32(74711));
      tg[i] = V::add32(V::mullo32(u, V::set32(-25821)), V::mullo32(w, V::set32(-38076)));
      tb[i] = V::mullo32(u, V::set32(133169));
    }
    for (int k = 0; k < 2; ++k) {
      v Y[4], r[4], g[4], b[4];
      widen32(V::load<16>(io.s[k][0] + x), Y);
      for (int i = 0; i < 4; ++i) {
        const v y = V::slli32<16>(Y[i]);
        r[i] = V::srai32<16>(V::add32(y, tr[i]));
        g[i] = V::srai32<16>(V::add32(y, tg[i]));
        b[i] = V::srai32<16>(V::add32(y, tb[i]));
      }
      V::store<16>(io.d[k][0] + x, narrow32(r));
      V::store<16>(io.d[k][1] + x, narrow32(g));
      V::store<16>(io.d[k][2] + x, narrow32(b));
    }
  }
  return x;
}

}  // namespace

extern const YuvSubKernels kYuvSubKernels = {
    fwd422<FP1, RgbC3, ToYuyv>,
    fwd422<FP1, RgbC3, ToYuvP3>,
    fwd422<FP3, RgbC3, ToYuvP3>,
    fwd422<FP2, RgbP3, ToYuvP3>,
    rgbC3_Q1,
    bgrx_Q4,
    inv<I2, FromC2, ToRGB, 1>,
    inv<I2, FromP3, ToRGB, 1>,
    inv<I2, FromP3, ToRGBP, 1>,
    inv<IA, FromP3, ToRGBA, 1>,
    inv<I2, FromP3, ToRGB, 2>,
    inv<IA, FromP3, ToRGBA, 2>,
    inv<I3, FromP3, ToBGR, 2>,
    rgbP3_Q3,
    yuv420P3_KA,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
