// Vector bodies of RGB <-> subsampled YCbCr, written once on the lane words
// of frame/simd.h and compiled per instruction set. Each is the lane-wise
// form of the scalar definition of the same name in ycbcrsub.h.
#include "frame/simd.h"
#include "lumachroma/ycbcrsub.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;
constexpr int kBlock = 16 * V::kLanes;  // luma columns a pass

// ---- three-byte pixels to planar bytes -------------------------------------------
// The 48 bytes of a lane are read as four 16-byte views of 4 whole pixels
// each, each view is grouped R R R R G G G G B B B B by one shuffle, and two
// rounds of unpacking gather the channels. Fewer shuffles and live masks
// than frame/simd.h's loadC3, which matters in kernels that hold many
// coefficients in registers.
constexpr Mask16 maskQuad(int skip) {
  Mask16 m{};
  for (int c = 0; c < 3; ++c)
    for (int p = 0; p < 4; ++p) m.b[4 * c + p] = static_cast<int8_t>(skip + 3 * p + c);
  for (int i = 12; i < 16; ++i) m.b[i] = -128;
  return m;
}
inline constexpr Mask16 kQuad = maskQuad(0), kQuadLast = maskQuad(4);
// The four views are loaded directly from bytes 0, 12, 24 and 32 (the last
// one 4 bytes early, so as not to read past the 48 bytes of the lane).
inline void loadC3q(const uint8_t* p, v& c0, v& c1, v& c2) {
  const v m = V::bcast(kQuad.b);
  const v q0 = V::shuffle8(V::load<48>(p), m), q1 = V::shuffle8(V::load<48>(p + 12), m);
  const v q2 = V::shuffle8(V::load<48>(p + 24), m), q3 = V::shuffle8(V::load<48>(p + 32), V::bcast(kQuadLast.b));
  const v lo01 = V::unpacklo32(q0, q1), lo23 = V::unpacklo32(q2, q3);
  c0 = V::unpacklo64(lo01, lo23);
  c1 = V::unpackhi64(lo01, lo23);
  c2 = V::unpacklo64(V::unpackhi32(q0, q1), V::unpackhi32(q2, q3));
}

// ---- forward: RGB C3 -> 4:2:0 planes, luma YF and chroma CG -----------------
// Luma: even and odd pixels apart, as 16-bit lanes cut out of the byte
// vector by pmaddubsw (no unpacking). pmaddubsw gives R << 6, and
// mulhr(R << 6, 2c) equals mulhr(R << 7, c) bit for bit, since both are
// ((R * c >> 7) + 1) >> 1. YF stays within 16..235, so the two halves
// recombine with a shift and an or. Chroma: pmaddubsw with 32 sums
// horizontal pairs already << 5, the two rows are added, and the 2 x 2 sums
// go through pmulhrsw with the chroma coefficients.
inline v lumaYF(v r, v g, v b) {
  const v even = V::set16(0x0040), odd = V::set16(0x4000);
  auto y = [](v r6, v g6, v b6) {
    const v s = V::add16(V::add16(V::mulhr(r6, V::set16(2 * 4211)), V::mulhr(g6, V::set16(2 * 8258))),
                         V::add16(V::mulhr(b6, V::set16(2 * 1606)), V::set16(1026)));
    return V::srai16<6>(s);
  };
  const v ye = y(V::maddubs(r, even), V::maddubs(g, even), V::maddubs(b, even));
  const v yo = y(V::maddubs(r, odd), V::maddubs(g, odd), V::maddubs(b, odd));
  return V::or_(ye, V::slli16<8>(yo));
}

// YG: the same products as YF, 16 added after the shift.
inline v lumaYG(v r, v g, v b) {
  const v even = V::set16(0x0040), odd = V::set16(0x4000);
  auto y = [](v r6, v g6, v b6) {
    const v s = V::add16(V::add16(V::mulhr(r6, V::set16(2 * 4211)), V::mulhr(g6, V::set16(2 * 8258))),
                         V::mulhr(b6, V::set16(2 * 1606)));
    return V::add16(V::srai16<6>(s), V::set16(16));
  };
  const v ye = y(V::maddubs(r, even), V::maddubs(g, even), V::maddubs(b, even));
  const v yo = y(V::maddubs(r, odd), V::maddubs(g, odd), V::maddubs(b, odd));
  return V::or_(ye, V::slli16<8>(yo));
}

int rgb420_YF_CG(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v k32 = V::set8(32), off = V::set16(8194);
  for (; x + kBlock <= n; x += kBlock) {
    v r0, g0, b0, r1, g1, b1;
    loadC3q(io.s[0][0] + 3 * x, r0, g0, b0);
    loadC3q(io.s[1][0] + 3 * x, r1, g1, b1);
    V::store<16>(io.d[0][0] + x, lumaYF(r0, g0, b0));
    V::store<16>(io.d[1][0] + x, lumaYF(r1, g1, b1));
    const v sr = V::add16(V::maddubs(r0, k32), V::maddubs(r1, k32));
    const v sg = V::add16(V::maddubs(g0, k32), V::maddubs(g1, k32));
    const v sb = V::add16(V::maddubs(b0, k32), V::maddubs(b1, k32));
    const v cb = V::srai16<6>(V::add16(
        V::sub16(V::sub16(V::mulhr(sb, V::set16(7193)), V::mulhr(sr, V::set16(2425))), V::mulhr(sg, V::set16(4768))), off));
    const v cr = V::srai16<6>(V::add16(
        V::sub16(V::sub16(V::mulhr(sr, V::set16(7193)), V::mulhr(sb, V::set16(1163))), V::mulhr(sg, V::set16(6029))), off));
    V::storeHalves(io.d[0][1] + x / 2, io.d[0][2] + x / 2, V::packus16(cb, cr));
  }
  return x;
}

// ---- forward, the BGR line: luma YO, chroma CA (4:2:2) and CB (4:2:0) -----------
template <ycc::Pix In>
inline void loadRGB(const uint8_t* row, int x, v& R, v& G, v& B) {
  using ycc::Pix;
  v a;
  if constexpr (In == Pix::RGB) loadC3q(row + 3 * x, R, G, B);
  else if constexpr (In == Pix::BGR) loadC3q(row + 3 * x, B, G, R);
  else if constexpr (In == Pix::RGBA) loadC4(row + 4 * x, R, G, B, a);
  else loadC4(row + 4 * x, B, G, R, a);
}
// YO on the even and odd pixels apart (samples << 8 by a shift or a mask);
// YO stays within 16..235, so the halves recombine with a shift and an or.
inline v lumaYO(v r, v g, v b) {
  const v hi = V::set16(-256);
  auto y = [](v r8, v g8, v b8) {
    const v s = V::add16(V::add16(V::mulhu(r8, V::set16(8422)), V::mulhu(g8, V::set16(16515))),
                         V::add16(V::mulhu(b8, V::set16(3212)), V::set16(2112)));
    return V::srli16<7>(s);
  };
  const v ye = y(V::slli16<8>(r), V::slli16<8>(g), V::slli16<8>(b));
  const v yo = y(V::and_(r, hi), V::and_(g, hi), V::and_(b, hi));
  return V::or_(ye, V::slli16<8>(yo));
}
// CA / CB on sums << 5; the results lie in 16..240 before the clip, so the
// logical shift serves. Returns Cb in the low and Cr in the high 8 bytes of
// each lane.
template <int Off, int Sh>
inline v chromaCU(v sr, v sg, v sb) {
  const v off = V::set16(Off);
  const v cb = V::srli16<Sh>(V::add16(
      V::sub16(V::sub16(V::mulhu(sb, V::set16(28770)), V::mulhu(sr, V::set16(9699))), V::mulhu(sg, V::set16(19071))), off));
  const v cr = V::srli16<Sh>(V::add16(
      V::sub16(V::sub16(V::mulhu(sr, V::set16(28770)), V::mulhu(sg, V::set16(24117))), V::mulhu(sb, V::set16(4653))), off));
  return V::packus16(cb, cr);
}

// 4:2:2: planes, or packed Y0 Cb Y1 Cr.
template <ycc::Pix In, bool ToPacked>
int own422_YO_CA(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v k32 = V::set8(32);
  for (; x + kBlock <= n; x += kBlock) {
    v R, G, B;
    loadRGB<In>(io.s[0][0], x, R, G, B);
    const v y = lumaYO(R, G, B);
    const v c = chromaCU<8200, 6>(V::maddubs(R, k32), V::maddubs(G, k32), V::maddubs(B, k32));
    if constexpr (ToPacked) {
      const v cc = V::unpacklo8(c, V::bsrli<8>(c));  // Cb Cr pairs
      V::store<32>(io.d[0][0] + 2 * x, V::unpacklo8(y, cc));
      V::store<32>(io.d[0][0] + 2 * x + 16, V::unpackhi8(y, cc));
    } else {
      V::store<16>(io.d[0][0] + x, y);
      V::storeHalves(io.d[0][1] + x / 2, io.d[0][2] + x / 2, c);
    }
  }
  return x;
}

// 4:2:0 planes from a pair of rows.
template <ycc::Pix In>
int own420_YO_CB(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v k32 = V::set8(32);
  for (; x + kBlock <= n; x += kBlock) {
    v R0, G0, B0, R1, G1, B1;
    loadRGB<In>(io.s[0][0], x, R0, G0, B0);
    loadRGB<In>(io.s[1][0], x, R1, G1, B1);
    V::store<16>(io.d[0][0] + x, lumaYO(R0, G0, B0));
    V::store<16>(io.d[1][0] + x, lumaYO(R1, G1, B1));
    const v c = chromaCU<16400, 7>(V::add16(V::maddubs(R0, k32), V::maddubs(R1, k32)),
                                   V::add16(V::maddubs(G0, k32), V::maddubs(G1, k32)),
                                   V::add16(V::maddubs(B0, k32), V::maddubs(B1, k32)));
    V::storeHalves(io.d[0][1] + x / 2, io.d[0][2] + x / 2, c);
  }
  return x;
}

// 4:1:1 planes, groups of four in one row: YG with CH (C3 member) or YO with
// CB (AC4 member). The group sums << 5 come from pmaddubsw (pairs) and
// pmaddwd (pairs of pairs); the 4 chroma samples of a lane go out as 4 bytes.
inline v chromaCH(v sr, v sg, v sb) {
  const v c128 = V::set16(128);
  const v cb = V::add16(V::srai16<6>(V::sub16(V::sub16(V::mulhr(sb, V::set16(7193)), V::mulhr(sr, V::set16(2425))),
                                              V::mulhr(sg, V::set16(4768)))), c128);
  const v cr = V::add16(V::srai16<6>(V::sub16(V::sub16(V::mulhr(sr, V::set16(7193)), V::mulhr(sb, V::set16(1163))),
                                              V::mulhr(sg, V::set16(6029)))), c128);
  return V::packus16(cb, cr);
}
template <ycc::Pix In, bool FormsG>
int own411(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v k32 = V::set8(32), ones = V::set16(1);
  auto quad = [&](v c) {
    const v m = V::madd16(V::maddubs(c, k32), ones);
    return V::packs32(m, m);
  };
  for (; x + kBlock <= n; x += kBlock) {
    v R, G, B;
    loadRGB<In>(io.s[0][0], x, R, G, B);
    V::store<16>(io.d[0][0] + x, FormsG ? lumaYG(R, G, B) : lumaYO(R, G, B));
    const v sr = quad(R), sg = quad(G), sb = quad(B);
    const v c = FormsG ? chromaCH(sr, sg, sb) : chromaCU<16400, 7>(sr, sg, sb);  // Cb x 4 twice, Cr x 4 twice
    V::store4<4>(io.d[0][1] + x / 4, c);
    V::store4<4>(io.d[0][2] + x / 4, V::bsrli<8>(c));
  }
  return x;
}

// ---- forward, RGB -> packed 4:2:2: luma YH, chroma CF ----------------------------
// YH's sum of three truncated products stays below 65536 and YH within
// 16..235: even and odd pixels go apart and recombine as in lumaYO. CF is a
// 32-bit form: pmaddwd pairs (sB, sG) and (sR, 0) with their coefficients,
// the offset carries the rounding, and the result lies in 16..240.
inline v lumaYH(v r, v g, v b) {
  const v hi = V::set16(-256);
  auto y = [](v r8, v g8, v b8) {
    const v s = V::add16(V::add16(V::mulhu(r8, V::set16(16843)), V::mulhu(g8, V::set16(-32506))),
                         V::mulhu(b8, V::set16(6423)));  // -32506 is 33030 as a 16-bit lane
    return V::add16(V::srli16<8>(s), V::set16(16));
  };
  const v ye = y(V::slli16<8>(r), V::slli16<8>(g), V::slli16<8>(b));
  const v yo = y(V::and_(r, hi), V::and_(g, hi), V::and_(b, hi));
  return V::or_(ye, V::slli16<8>(yo));
}
// One chroma of 8 pairs per lane: (c0 * a + c1 * b + c2 * k + 16842752) >> 17.
inline v chromaCF(v a, v b, v c, int ka, int kb, int kc) {
  const v z = V::zero(), k01 = V::set32((ka & 0xFFFF) | (kb << 16)), k2 = V::set32(kc & 0xFFFF), off = V::set32(16842752);
  auto half = [&](v ab, v c0) { return V::srai32<17>(V::add32(V::add32(V::madd16(ab, k01), V::madd16(c0, k2)), off)); };
  return V::packs32(half(V::unpacklo16(a, b), V::unpacklo16(c, z)), half(V::unpackhi16(a, b), V::unpackhi16(c, z)));
}
template <ycc::Pix In, bool CrFirst>
int rgbToPacked_YH_CF(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v ones = V::set8(1);
  for (; x + kBlock <= n; x += kBlock) {
    v R, G, B;
    if constexpr (In == ycc::Pix::P3) {
      R = V::load<16>(io.s[0][0] + x), G = V::load<16>(io.s[0][1] + x), B = V::load<16>(io.s[0][2] + x);
    } else {
      loadC3q(io.s[0][0] + 3 * x, R, G, B);
    }
    const v y = lumaYH(R, G, B);
    const v sr = V::maddubs(R, ones), sg = V::maddubs(G, ones), sb = V::maddubs(B, ones);
    const v cb = chromaCF(sb, sg, sr, 28770, -19071, -9699);
    const v cr = chromaCF(sr, sg, sb, 28770, -24117, -4653);
    const v cc = CrFirst ? V::packus16(V::unpacklo16(cr, cb), V::unpackhi16(cr, cb))
                         : V::packus16(V::unpacklo16(cb, cr), V::unpackhi16(cb, cr));  // chroma byte pairs
    V::store<32>(io.d[0][0] + 2 * x, V::unpacklo8(y, cc));
    V::store<32>(io.d[0][0] + 2 * x + 16, V::unpackhi8(y, cc));
  }
  return x;
}

// ---- inverse: one chroma pair per two columns -> RGB ---------------------------
// The chroma terms are computed once per chroma sample and doubled out to
// both columns (and, for 4:2:0, shared by both rows).
template <ycc::Pix Out>
inline void storePx(uint8_t* const* row, int x, v R, v G, v B, int alpha) {
  using ycc::Pix;
  if constexpr (Out == Pix::RGB) storeC3(row[0] + 3 * x, R, G, B);
  else if constexpr (Out == Pix::BGR) storeC3(row[0] + 3 * x, B, G, R);
  else if constexpr (Out == Pix::RGBA) storeC4(row[0] + 4 * x, R, G, B, V::set8(alpha));
  else if constexpr (Out == Pix::BGRA) storeC4(row[0] + 4 * x, B, G, R, V::set8(alpha));
  else V::store<16>(row[0] + x, R), V::store<16>(row[1] + x, G), V::store<16>(row[2] + x, B);
}

template <class F>
struct Inv {
  // Terms of 8 chroma samples per lane (bytes widened to 16-bit words),
  // each doubled out to the two columns it serves: R, G, B, low and high.
  template <int Rep = 2>
  static void chroma(v u8, v w8, v t[6]) {
    const v c128 = V::set16(128), rnd = V::set16(F::rnd);
    const v u = V::slli16<7>(V::sub16(u8, c128)), w = V::slli16<7>(V::sub16(w8, c128));
    const v rc = V::add16(V::mulhs(w, V::set16(F::cR)), rnd);
    const v gc = F::negG ? V::sub16(V::sub16(rnd, V::mulhs(u, V::set16(F::cGu))), V::mulhs(w, V::set16(F::cGv)))
                         : V::add16(V::add16(V::mulhs(u, V::set16(F::cGu)), V::mulhs(w, V::set16(F::cGv))), rnd);
    const v bc = V::add16(V::mulhs(u, V::set16(F::cB)), rnd);
    if constexpr (Rep == 2) {
      t[0] = V::unpacklo16(rc, rc), t[1] = V::unpackhi16(rc, rc);
      t[2] = V::unpacklo16(gc, gc), t[3] = V::unpackhi16(gc, gc);
      t[4] = V::unpacklo16(bc, bc), t[5] = V::unpackhi16(bc, bc);
    } else {  // four columns a sample: the low 4 samples of the lane
      const v r2 = V::unpacklo16(rc, rc), g2 = V::unpacklo16(gc, gc), b2 = V::unpacklo16(bc, bc);
      t[0] = V::unpacklo32(r2, r2), t[1] = V::unpackhi32(r2, r2);
      t[2] = V::unpacklo32(g2, g2), t[3] = V::unpackhi32(g2, g2);
      t[4] = V::unpacklo32(b2, b2), t[5] = V::unpackhi32(b2, b2);
    }
  }
  // 16 luma bytes per lane with their chroma terms.
  static void pixels(v y8, const v t[6], v& R, v& G, v& B) {
    const v z = V::zero(), c16 = V::set16(16);
    const v tl = V::mulhs(V::slli16<7>(V::sub16(V::unpacklo8(y8, z), c16)), V::set16(F::cY));
    const v th = V::mulhs(V::slli16<7>(V::sub16(V::unpackhi8(y8, z), c16)), V::set16(F::cY));
    R = V::packus16(V::srai16<F::sh>(V::add16(tl, t[0])), V::srai16<F::sh>(V::add16(th, t[1])));
    G = V::packus16(V::srai16<F::sh>(V::add16(tl, t[2])), V::srai16<F::sh>(V::add16(th, t[3])));
    B = V::packus16(V::srai16<F::sh>(V::add16(tl, t[4])), V::srai16<F::sh>(V::add16(th, t[5])));
  }
};

template <int Rows, class F, ycc::Pix Out>
int planesToRGB(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v z = V::zero();
  for (; x + kBlock <= n; x += kBlock) {
    v t[6];
    Inv<F>::template chroma<2>(V::unpacklo8(V::load8<8>(io.s[0][1] + x / 2), z), V::unpacklo8(V::load8<8>(io.s[0][2] + x / 2), z), t);
    for (int r = 0; r < Rows; ++r) {
      v R, G, B;
      Inv<F>::pixels(V::load<16>(io.s[r][0] + x), t, R, G, B);
      storePx<Out>(io.d[r], x, R, G, B, io.alpha);
    }
  }
  return x;
}

// 4:1:1 planes: 4 chroma samples a lane, each serving four columns.
template <class F, ycc::Pix Out>
int p411ToRGB(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v z = V::zero();
  for (; x + kBlock <= n; x += kBlock) {
    v t[6], R, G, B;
    Inv<F>::template chroma<4>(V::unpacklo8(V::load4<4>(io.s[0][1] + x / 4), z),
                               V::unpacklo8(V::load4<4>(io.s[0][2] + x / 4), z), t);
    Inv<F>::pixels(V::load<16>(io.s[0][0] + x), t, R, G, B);
    storePx<Out>(io.d[0], x, R, G, B, io.alpha);
  }
  return x;
}

// Packed 4:2:2 rows: each 16-byte block of 4 pairs is shuffled to its 8 luma
// bytes, then its 4 first and 4 second chroma bytes.
constexpr Mask16 maskPacked422(bool crFirst) {
  Mask16 m{};
  for (int i = 0; i < 8; ++i) m.b[i] = static_cast<int8_t>(2 * i);
  for (int j = 0; j < 4; ++j) {
    m.b[8 + j] = static_cast<int8_t>(4 * j + (crFirst ? 3 : 1));   // Cb
    m.b[12 + j] = static_cast<int8_t>(4 * j + (crFirst ? 1 : 3));  // Cr
  }
  return m;
}
inline constexpr Mask16 kPacked422[2] = {maskPacked422(false), maskPacked422(true)};

template <bool CrFirst, class F, ycc::Pix Out>
int packedToRGB(const SubRows& rows, int x, int n) {
  const SubRows io = rows;  // a local copy: byte stores cannot alias it, so its pointers stay in registers
  const v z = V::zero(), m = V::bcast(kPacked422[CrFirst].b);
  for (; x + kBlock <= n; x += kBlock) {
    const uint8_t* p = io.s[0][0] + 2 * x;
    const v a = V::shuffle8(V::load<32>(p), m), b = V::shuffle8(V::load<32>(p + 16), m);
    const v c = V::unpackhi32(a, b);  // Cb 0-7, Cr 0-7
    v t[6], R, G, B;
    Inv<F>::template chroma<2>(V::unpacklo8(c, z), V::unpackhi8(c, z), t);
    Inv<F>::pixels(V::unpacklo64(a, b), t, R, G, B);
    storePx<Out>(io.d[0], x, R, G, B, io.alpha);
  }
  return x;
}

}  // namespace

using ycc::Pix;
extern const YccSubKernels kYccSubKernels = {
    rgb420_YF_CG,
    planesToRGB<2, ycc::J3c, Pix::RGB>,
    planesToRGB<2, ycc::J3c, Pix::BGR>,
    planesToRGB<2, ycc::J5, Pix::BGR>,
    planesToRGB<2, ycc::J4c, Pix::BGRA>,
    planesToRGB<2, ycc::J4c, Pix::RGBA>,
    planesToRGB<1, ycc::J3c, Pix::RGB>,
    planesToRGB<1, ycc::J5, Pix::RGB>,
    planesToRGB<1, ycc::J3c, Pix::BGR>,
    packedToRGB<false, ycc::J2c, Pix::RGB>,
    packedToRGB<false, ycc::J2c, Pix::P3>,
    packedToRGB<true, ycc::J2c, Pix::RGB>,
    packedToRGB<true, ycc::J2c, Pix::P3>,
    packedToRGB<false, ycc::J3c, Pix::BGR>,
    packedToRGB<false, ycc::J6, Pix::BGRA>,
    own422_YO_CA<Pix::BGR, false>,
    own422_YO_CA<Pix::BGRA, false>,
    own422_YO_CA<Pix::RGB, false>,
    own422_YO_CA<Pix::BGR, true>,
    own422_YO_CA<Pix::BGRA, true>,
    own420_YO_CB<Pix::BGR>,
    own420_YO_CB<Pix::BGRA>,
    own420_YO_CB<Pix::RGBA>,
    rgbToPacked_YH_CF<Pix::RGB, false>,
    rgbToPacked_YH_CF<Pix::P3, false>,
    rgbToPacked_YH_CF<Pix::RGB, true>,
    rgbToPacked_YH_CF<Pix::P3, true>,
    own411<Pix::BGR, true>,
    own411<Pix::BGRA, false>,
    p411ToRGB<ycc::J2c, Pix::BGR>,
    p411ToRGB<ycc::J2c, Pix::BGRA>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
