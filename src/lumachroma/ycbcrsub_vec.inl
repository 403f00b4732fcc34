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
// Luma: 16-bit lanes of R << 7 through pmulhrsw. Chroma: pmaddubsw sums
// horizontal pairs, the two rows are added, and the 2 x 2 sums (<< 5) go
// through pmulhrsw with the chroma coefficients.
inline v lumaYF(v r, v g, v b) {
  auto half = [](v r16, v g16, v b16) {
    const v s = V::add16(V::add16(V::mulhr(V::slli16<7>(r16), V::set16(4211)), V::mulhr(V::slli16<7>(g16), V::set16(8258))),
                         V::mulhr(V::slli16<7>(b16), V::set16(1606)));
    return V::srai16<6>(V::add16(s, V::set16(1026)));
  };
  const v z = V::zero();
  return V::packus16(half(V::unpacklo8(r, z), V::unpacklo8(g, z), V::unpacklo8(b, z)),
                     half(V::unpackhi8(r, z), V::unpackhi8(g, z), V::unpackhi8(b, z)));
}

int rgb420_YF_CG(const SubRows& io, int x, int n) {
  const v ones = V::set8(1), off = V::set16(8194);
  for (; x + kBlock <= n; x += kBlock) {
    v r0, g0, b0, r1, g1, b1;
    loadC3(io.s[0][0] + 3 * x, r0, g0, b0);
    loadC3(io.s[1][0] + 3 * x, r1, g1, b1);
    V::store<16>(io.d[0][0] + x, lumaYF(r0, g0, b0));
    V::store<16>(io.d[1][0] + x, lumaYF(r1, g1, b1));
    const v sr = V::slli16<5>(V::add16(V::maddubs(r0, ones), V::maddubs(r1, ones)));
    const v sg = V::slli16<5>(V::add16(V::maddubs(g0, ones), V::maddubs(g1, ones)));
    const v sb = V::slli16<5>(V::add16(V::maddubs(b0, ones), V::maddubs(b1, ones)));
    const v cb = V::srai16<6>(V::add16(
        V::sub16(V::sub16(V::mulhr(sb, V::set16(7193)), V::mulhr(sr, V::set16(2425))), V::mulhr(sg, V::set16(4768))), off));
    const v cr = V::srai16<6>(V::add16(
        V::sub16(V::sub16(V::mulhr(sr, V::set16(7193)), V::mulhr(sb, V::set16(1163))), V::mulhr(sg, V::set16(6029))), off));
    V::store8<8>(io.d[0][1] + x / 2, V::packus16(cb, cb));
    V::store8<8>(io.d[0][2] + x / 2, V::packus16(cr, cr));
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
