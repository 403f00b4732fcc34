// Vector bodies of RGB <-> YUV, written once on the lane words of
// frame/simd.h and compiled per instruction set. Each is the lane-wise form of
// the scalar definition of the same name in yuv.h.
#include "frame/simd.h"
#include "lumachroma/yuv.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;

struct V1 {
  static v luma(v r8, v g8, v b8) {  // inputs are R << 8, ...
    const v s = V::add16(V::add16(V::mulhu(r8, V::set16(19595)), V::mulhu(g8, V::set16(38469))),
                         V::mulhu(b8, V::set16(7471)));
    return V::srli16<8>(s);
  }
  static v chroma(v r7, v g7, v b7, int cr, int cg, int cb) {
    const v s = V::add16(V::add16(V::mulhs(r7, V::set16(cr)), V::mulhs(g7, V::set16(cg))),
                         V::mulhs(b7, V::set16(cb)));
    return V::add16(V::srai16<6>(s), V::set16(128));
  }
  static void half(v r8, v g8, v b8, v& y, v& u, v& w) {
    const v r7 = V::srli16<1>(r8), g7 = V::srli16<1>(g8), b7 = V::srli16<1>(b8);
    y = luma(r8, g8, b8);
    u = chroma(r7, g7, b7, -4816, -9469, 14286);
    w = chroma(r7, g7, b7, 20152, -16875, -3276);
  }
  static void vec(v r, v g, v b, v& Y, v& U, v& W) {
    v rl, rh, gl, gh, bl, bh;
    widenHigh(r, rl, rh), widenHigh(g, gl, gh), widenHigh(b, bl, bh);
    v y0, u0, w0, y1, u1, w1;
    half(rl, gl, bl, y0, u0, w0);
    half(rh, gh, bh, y1, u1, w1);
    Y = V::packus16(y0, y1), U = V::packus16(u0, u1), W = V::packus16(w0, w1);
  }
};

struct V2 {
  static void half(v r, v g, v b, v& y, v& u, v& w) {
    const v s = V::add16(V::add16(V::mulhs(V::slli16<2>(r), V::set16(9798)),
                                  V::mulhs(V::slli16<2>(g), V::set16(19235))),
                         V::mulhs(V::slli16<2>(b), V::set16(3736)));
    y = V::srai16<1>(s);
    u = V::add16(V::mulhs(V::sub16(V::slli16<1>(b), s), V::set16(16121)), V::set16(128));
    w = V::add16(V::mulhs(V::sub16(V::slli16<1>(r), s), V::set16(28737)), V::set16(128));
  }
  static void vec(v r, v g, v b, v& Y, v& U, v& W) {
    v rl, rh, gl, gh, bl, bh;
    widen(r, rl, rh), widen(g, gl, gh), widen(b, bl, bh);
    v y0, u0, w0, y1, u1, w1;
    half(rl, gl, bl, y0, u0, w0);
    half(rh, gh, bh, y1, u1, w1);
    Y = V::packus16(y0, y1), U = V::packus16(u0, u1), W = V::packus16(w0, w1);
  }
};

// I1 (Shift 3, Q13, no final shift) and I2 (Shift 4, luma doubled, >> 1).
template <int Shift, int cR, int cGu, int cGv, int cB>
struct Inv {
  static void half(v y, v u, v w, v& r, v& g, v& b) {
    const v c = V::set16(128);
    u = V::slli16<Shift>(V::sub16(u, c));
    w = V::slli16<Shift>(V::sub16(w, c));
    if constexpr (Shift == 4) y = V::slli16<1>(y);
    r = V::add16(y, V::mulhs(w, V::set16(cR)));
    g = V::add16(V::add16(y, V::mulhs(u, V::set16(cGu))), V::mulhs(w, V::set16(cGv)));
    b = V::add16(y, V::mulhs(u, V::set16(cB)));
    if constexpr (Shift == 4) r = V::srai16<1>(r), g = V::srai16<1>(g), b = V::srai16<1>(b);
  }
  static void vec(v y, v u, v w, v& R, v& G, v& B) {
    v yl, yh, ul, uh, wl, wh;
    widen(y, yl, yh), widen(u, ul, uh), widen(w, wl, wh);
    v r0, g0, b0, r1, g1, b1;
    half(yl, ul, wl, r0, g0, b0);
    half(yh, uh, wh, r1, g1, b1);
    R = V::packus16(r0, r1), G = V::packus16(g0, g1), B = V::packus16(b0, b1);
  }
};
using I1 = Inv<3, 9339, -3228, -4760, 16646>;
using I2 = Inv<4, 9338, -3227, -4759, 16645>;

// T1 in 32-bit lanes: the products and sums are those of the scalar form.
struct T1 {
  static void group(v R, v G, v B, v& Y, v& U, v& W) {
    const v y = V::add32(V::add32(V::mullo32(R, V::set32(19595)), V::mullo32(G, V::set32(38470))),
                         V::mullo32(B, V::set32(7471)));
    const v round = V::set32(32767), c128 = V::set32(128);
    Y = V::srai32<16>(y);
    U = V::add32(V::srai32<16>(V::mullo32(V::srai32<16>(V::add32(V::sub32(V::slli32<16>(B), y), round)),
                                          V::set32(32244))), c128);
    W = V::add32(V::srai32<16>(V::mullo32(V::srai32<16>(V::add32(V::sub32(V::slli32<16>(R), y), round)),
                                          V::set32(57475))), c128);
  }
  static void vec(v r, v g, v b, v& Y, v& U, v& W) {
    v R[4], G[4], B[4], y[4], u[4], w[4];
    widen32(r, R), widen32(g, G), widen32(b, B);
    for (int i = 0; i < 4; ++i) group(R[i], G[i], B[i], y[i], u[i], w[i]);
    // U lies in 0..255, so the saturating narrowing is the byte8 of the form.
    Y = narrow32(y), U = narrow32(u), W = narrow32(w);
  }
};

// K(a, b, c, d) in 32-bit lanes.
template <int a, int b, int c, int d>
struct K {
  static void group(v Y, v U, v W, v& R, v& G, v& B) {
    const v y = V::slli32<16>(Y), u = V::sub32(U, V::set32(128)), w = V::sub32(W, V::set32(128));
    R = V::srai32<16>(V::add32(y, V::mullo32(w, V::set32(a))));
    G = V::srai32<16>(V::add32(V::add32(y, V::mullo32(u, V::set32(b))), V::mullo32(w, V::set32(c))));
    B = V::srai32<16>(V::add32(y, V::mullo32(u, V::set32(d))));
  }
  static void vec(v y, v u, v w, v& R, v& G, v& B) {
    v Y[4], U[4], W[4], r[4], g[4], bb[4];
    widen32(y, Y), widen32(u, U), widen32(w, W);
    for (int i = 0; i < 4; ++i) group(Y[i], U[i], W[i], r[i], g[i], bb[i]);
    R = narrow32(r), G = narrow32(g), B = narrow32(bb);
  }
};
using KA = K<74711, -25821, -38076, 133169>;
using KB = K<74710, -25820, -38075, 133168>;

}  // namespace

extern const YuvKernels kYuvKernels = {
    kern3<Lay::C3, Lay::C3, V1>,   kern3<Lay::C3, Lay::P3, V1>,   kern3<Lay::P3, Lay::P3, V1>,
    kern3<Lay::AC4, Lay::P4A, V2>, kern3<Lay::C3, Lay::C3, I1>,   kern3<Lay::P3, Lay::C3, I2>,
    kern3<Lay::AC4, Lay::AC4, T1>, kern3<Lay::AC4, Lay::AC4, KA>, kern3<Lay::P3, Lay::P3, KB>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
