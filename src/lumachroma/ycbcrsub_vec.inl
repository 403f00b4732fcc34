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

// ---- forward: RGB C3 -> 4:2:0 planes, luma YF and chroma CG -----------------
// Luma: even and odd pixels apart, as 16-bit lanes cut out of the byte
// vector by pmaddubsw (no unpacking). pmaddubsw gives R << 6, and
// mulhr(R << 6, 2c) equals mulhr(R << 7, c) bit for bit, since both are
// ((R * c >> 7) + 1) >> 1. YF stays within 16..235, so the two halves
// recombine with a shift and an or. Chroma: pmaddubsw with 32 sums
// horizontal pairs already << 5, the two rows are added, and the 2 x 2 sums
// go through pmulhrsw with the chroma coefficients.
// Three-byte pixels to planar bytes with one shuffle mask: the 48 bytes of a
// lane are realigned into four 16-byte views of 4 whole pixels each, each
// view is grouped R R R R G G G G B B B B, and two rounds of unpacking
// gather the channels. Fewer live masks than frame/simd.h's loadC3, which
// matters in kernels that hold many coefficients in registers.
constexpr Mask16 maskQuad() {
  Mask16 m{};
  for (int c = 0; c < 3; ++c)
    for (int p = 0; p < 4; ++p) m.b[4 * c + p] = static_cast<int8_t>(3 * p + c);
  for (int i = 12; i < 16; ++i) m.b[i] = -128;
  return m;
}
inline constexpr Mask16 kQuad = maskQuad();
inline void loadC3q(const uint8_t* p, v& c0, v& c1, v& c2) {
  const v a = V::load<48>(p), b = V::load<48>(p + 16), c = V::load<48>(p + 32);
  const v m = V::bcast(kQuad.b);
  const v q0 = V::shuffle8(a, m), q1 = V::shuffle8(V::alignr<12>(b, a), m);
  const v q2 = V::shuffle8(V::alignr<8>(c, b), m), q3 = V::shuffle8(V::bsrli<4>(c), m);
  const v lo01 = V::unpacklo32(q0, q1), lo23 = V::unpacklo32(q2, q3);
  c0 = V::unpacklo64(lo01, lo23);
  c1 = V::unpackhi64(lo01, lo23);
  c2 = V::unpacklo64(V::unpackhi32(q0, q1), V::unpackhi32(q2, q3));
}

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

int rgb420_YF_CG(const SubRows& io, int x, int n) {
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

// ---- inverse: planes with one chroma pair per two columns -> RGB --------------
// The chroma terms are computed once per chroma sample and doubled out to
// both columns (and, for 4:2:0, shared by both rows).
template <class F, ycc::Pix Out>
inline void storePx(uint8_t* row, int x, v R, v G, v B, int alpha) {
  using ycc::Pix;
  if constexpr (Out == Pix::RGB) storeC3(row + 3 * x, R, G, B);
  else if constexpr (Out == Pix::BGR) storeC3(row + 3 * x, B, G, R);
  else if constexpr (Out == Pix::RGBA) storeC4(row + 4 * x, R, G, B, V::set8(alpha));
  else storeC4(row + 4 * x, B, G, R, V::set8(alpha));
}

template <int Rows, class F, ycc::Pix Out>
int planesToRGB(const SubRows& io, int x, int n) {
  const v z = V::zero(), c16 = V::set16(16), c128 = V::set16(128), rnd = V::set16(F::rnd);
  for (; x + kBlock <= n; x += kBlock) {
    const v u = V::slli16<7>(V::sub16(V::unpacklo8(V::load8<8>(io.s[0][1] + x / 2), z), c128));
    const v w = V::slli16<7>(V::sub16(V::unpacklo8(V::load8<8>(io.s[0][2] + x / 2), z), c128));
    const v rc = V::add16(V::mulhs(w, V::set16(F::cR)), rnd);
    const v gc = F::negG ? V::sub16(V::sub16(rnd, V::mulhs(u, V::set16(F::cGu))), V::mulhs(w, V::set16(F::cGv)))
                         : V::add16(V::add16(V::mulhs(u, V::set16(F::cGu)), V::mulhs(w, V::set16(F::cGv))), rnd);
    const v bc = V::add16(V::mulhs(u, V::set16(F::cB)), rnd);
    const v rl = V::unpacklo16(rc, rc), rh = V::unpackhi16(rc, rc);
    const v gl = V::unpacklo16(gc, gc), gh = V::unpackhi16(gc, gc);
    const v bl = V::unpacklo16(bc, bc), bh = V::unpackhi16(bc, bc);
    for (int r = 0; r < Rows; ++r) {
      const v y8 = V::load<16>(io.s[r][0] + x);
      const v tl = V::mulhs(V::slli16<7>(V::sub16(V::unpacklo8(y8, z), c16)), V::set16(F::cY));
      const v th = V::mulhs(V::slli16<7>(V::sub16(V::unpackhi8(y8, z), c16)), V::set16(F::cY));
      const v R = V::packus16(V::srai16<F::sh>(V::add16(tl, rl)), V::srai16<F::sh>(V::add16(th, rh)));
      const v G = V::packus16(V::srai16<F::sh>(V::add16(tl, gl)), V::srai16<F::sh>(V::add16(th, gh)));
      const v B = V::packus16(V::srai16<F::sh>(V::add16(tl, bl)), V::srai16<F::sh>(V::add16(th, bh)));
      storePx<F, Out>(io.d[r][0], x, R, G, B, io.alpha);
    }
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
};

}  // namespace KEL_ISA_NS
}  // namespace kel
