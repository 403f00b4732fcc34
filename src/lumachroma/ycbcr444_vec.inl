// Vector bodies of RGB <-> YCbCr at full resolution, written once on the lane
// words of frame/simd.h and compiled per instruction set. Each is the
// lane-wise form of the scalar definition of the same name in ycbcr444.h.
#include "frame/simd.h"
#include "lumachroma/ycbcr444.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;

// Runs `half` on the low and the high eight samples of each lane, and packs
// the three results back to bytes with the clip to 0..255.
template <class H>
inline void byHalves(v a, v b, v c, v& x, v& y, v& z, bool high) {
  v al, ah, bl, bh, cl, ch;
  if (high) widenHigh(a, al, ah), widenHigh(b, bl, bh), widenHigh(c, cl, ch);
  else widen(a, al, ah), widen(b, bl, bh), widen(c, cl, ch);
  v x0, y0, z0, x1, y1, z1;
  H::half(al, bl, cl, x0, y0, z0);
  H::half(ah, bh, ch, x1, y1, z1);
  x = V::packus16(x0, x1), y = V::packus16(y0, y1), z = V::packus16(z0, z1);
}

// F1: inputs are R << 8 ..., the products take R << 7.
struct F1 {
  static v chroma(v p, v q, v s, int cp, int cq, int cs) {  // mulhr(p, cp) - mulhr(q, cq) - mulhr(s, cs) + 8194
    const v t = V::sub16(V::sub16(V::mulhr(p, V::set16(cp)), V::mulhr(q, V::set16(cq))), V::mulhr(s, V::set16(cs)));
    return V::srai16<6>(V::add16(t, V::set16(8194)));
  }
  static void half(v r8, v g8, v b8, v& y, v& cb, v& cr) {
    const v r = V::srli16<1>(r8), g = V::srli16<1>(g8), b = V::srli16<1>(b8);
    const v s = V::add16(V::add16(V::mulhr(r, V::set16(4211)), V::mulhr(g, V::set16(8258))),
                         V::mulhr(b, V::set16(1606)));
    y = V::srai16<6>(V::add16(s, V::set16(1026)));
    cb = chroma(b, g, r, 7193, 4768, 2425);
    cr = chroma(r, g, b, 7193, 6029, 1163);
  }
  static void vec(v r, v g, v b, v& y, v& cb, v& cr) { byHalves<F1>(r, g, b, y, cb, cr, true); }
};

// F2: luma sums as unsigned 16-bit (they reach 56204), chroma signed.
struct F2 {
  static v chroma(v r, v g, v b, int cr, int cg, int cb) {
    const v t = V::add16(V::add16(V::mulhs(r, V::set16(cr)), V::mulhs(g, V::set16(cg))), V::mulhs(b, V::set16(cb)));
    return V::add16(V::srai16<7>(V::add16(t, V::set16(64))), V::set16(128));
  }
  static void half(v r8, v g8, v b8, v& y, v& cb, v& cr) {
    const v s = V::add16(V::add16(V::mulhu(r8, V::set16(16843)), V::mulhu(g8, V::set16(33030))),
                         V::mulhu(b8, V::set16(6423)));
    y = V::add16(V::srli16<8>(V::add16(s, V::set16(128))), V::set16(16));
    const v r = V::srli16<1>(r8), g = V::srli16<1>(g8), b = V::srli16<1>(b8);
    cb = chroma(r, g, b, -9699, -19071, 28770);
    cr = chroma(r, g, b, 28770, -24117, -4653);
  }
  static void vec(v r, v g, v b, v& y, v& cb, v& cr) { byHalves<F2>(r, g, b, y, cb, cr, true); }
};

// J forms: y = (Y - 16) << 7, u = (Cb - 128) << 7, v = (Cr - 128) << 7.
template <int Ky, int Gu, int Rnd, bool NegG>
struct J {
  static void half(v Y, v Cb, v Cr, v& r, v& g, v& b) {
    const v y = V::slli16<7>(V::sub16(Y, V::set16(16)));
    const v u = V::slli16<7>(V::sub16(Cb, V::set16(128)));
    const v w = V::slli16<7>(V::sub16(Cr, V::set16(128)));
    const v t = V::add16(V::mulhs(y, V::set16(Ky)), V::set16(Rnd));
    r = V::srai16<4>(V::add16(t, V::mulhs(w, V::set16(13074))));
    if constexpr (NegG)
      g = V::srai16<4>(V::sub16(V::sub16(t, V::mulhs(u, V::set16(Gu))), V::mulhs(w, V::set16(6660))));
    else
      g = V::srai16<4>(V::add16(V::add16(t, V::mulhs(u, V::set16(-Gu))), V::mulhs(w, V::set16(-6660))));
    b = V::srai16<4>(V::add16(t, V::mulhs(u, V::set16(16523))));
  }
  static void vec(v Y, v Cb, v Cr, v& r, v& g, v& b) { byHalves<J>(Y, Cb, Cr, r, g, b, false); }
};
using J1 = J<9536, 3203, 8, false>;
using J2 = J<9536, 3203, 0, false>;
using J3 = J<9535, 3211, 8, false>;
using J4 = J<9535, 3211, 8, true>;

template <class F>
struct Rev {
  static void vec(v a, v b, v c, v& x, v& y, v& z) { F::vec(a, b, c, z, y, x); }
};

// FT and L in 32-bit lanes: the products and sums of the scalar forms. The
// results of FT lie in 0..255, so the saturating narrowing is its byte8.
inline v dot32(v a, v b, v c, int ka, int kb, int kc, int k0) {
  return V::add32(V::add32(V::add32(V::mullo32(a, V::set32(ka)), V::mullo32(b, V::set32(kb))),
                           V::mullo32(c, V::set32(kc))),
                  V::set32(k0));
}
struct FT {
  static void vec(v r, v g, v b, v& Y, v& Cb, v& Cr) {
    v R[4], G[4], B[4], y[4], cb[4], cr[4];
    widen32(r, R), widen32(g, G), widen32(b, B);
    for (int i = 0; i < 4; ++i) {
      y[i] = V::srai32<16>(dot32(R[i], G[i], B[i], 16843, 33030, 6423, 1081344));
      cb[i] = V::srai32<16>(dot32(R[i], G[i], B[i], -9699, -19071, 28770, 8421376));
      cr[i] = V::srai32<16>(dot32(R[i], G[i], B[i], 28770, -24117, -4653, 8421376));
    }
    Y = narrow32(y), Cb = narrow32(cb), Cr = narrow32(cr);
  }
};
template <int k, int a, int b, int c, int d, int e>
struct L {
  static void vec(v Y8, v Cb8, v Cr8, v& R8, v& G8, v& B8) {
    v Y[4], U[4], W[4], r[4], g[4], bb[4];
    widen32(Y8, Y), widen32(Cb8, U), widen32(Cr8, W);
    for (int i = 0; i < 4; ++i) {
      const v y = V::add32(V::mullo32(Y[i], V::set32(k)), V::set32(e - 16 * k));
      const v u = V::sub32(U[i], V::set32(128)), w = V::sub32(W[i], V::set32(128));
      r[i] = V::srai32<16>(V::add32(y, V::mullo32(w, V::set32(a))));
      g[i] = V::srai32<16>(V::add32(V::add32(y, V::mullo32(u, V::set32(b))), V::mullo32(w, V::set32(c))));
      bb[i] = V::srai32<16>(V::add32(y, V::mullo32(u, V::set32(d))));
    }
    R8 = narrow32(r), G8 = narrow32(g), B8 = narrow32(bb);
  }
};
using L1 = L<76284, 104595, -25690, -53281, 132186, 0>;

// Three planes to four-byte pixels with a constant fourth byte.
template <class F>
int kernP3C4(const Row3& io, int x, int n, uint8_t alpha) {
  constexpr int kBlock = 16 * V::kLanes;
  const v a8 = V::set8(alpha);
  for (; x + kBlock <= n; x += kBlock) {
    v a, b, c, o0, o1, o2;
    load3<Lay::P3>(io, x, a, b, c);
    F::vec(a, b, c, o0, o1, o2);
    storeC4(io.d[0] + 4 * x, o0, o1, o2, a8);
  }
  return x;
}

}  // namespace

extern const Ycc444Kernels kYcc444Kernels = {
    kern3<Lay::C3, Lay::C3, F1>,      kern3<Lay::C3, Lay::P3, F2>,      kern3<Lay::AC4, Lay::P3, F2>,
    kern3<Lay::P3, Lay::P3, F2>,      kern3<Lay::C3, Lay::C3, J1>,      kern3<Lay::P3, Lay::P3, J2>,
    kern3<Lay::P3, Lay::C3, J3>,      kern3<Lay::P3, Lay::C3, Rev<J3>>, kernP3C4<J4>,
    kernP3C4<Rev<J4>>,                kern3<Lay::AC4, Lay::AC4, FT>,    kern3<Lay::AC4, Lay::AC4, L1>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
