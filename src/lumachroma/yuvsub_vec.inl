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

// ---- 4:2:0 forward, form Q1 ------------------------------------------------
// Luma terms y = mulhr(R << 7, 4899) + ... of eight pixels (inputs x << 8).
inline v lumaQ14(v r8, v g8, v b8) {
  return V::add16(V::add16(V::mulhr(V::srli16<1>(r8), V::set16(4899)), V::mulhr(V::srli16<1>(g8), V::set16(9617))),
                  V::mulhr(V::srli16<1>(b8), V::set16(1868)));
}
int rgbC3_Q1(const SubRows& io, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    v r[2], g[2], b[2], yl[2], yh[2];
    for (int k = 0; k < 2; ++k) {
      loadC3(io.s[k][0] + 3 * x, r[k], g[k], b[k]);
      v rl, rh, gl, gh, bl, bh;
      widenHigh(r[k], rl, rh), widenHigh(g[k], gl, gh), widenHigh(b[k], bl, bh);
      yl[k] = lumaQ14(rl, gl, bl), yh[k] = lumaQ14(rh, gh, bh);
      V::store<16>(io.d[k][0] + x, V::packus16(V::srli16<6>(yl[k]), V::srli16<6>(yh[k])));
    }
    // S: the four luma terms of a block summed (below 65536) and halved.
    const v S = pairSums<1>(V::add16(yl[0], yl[1]), V::add16(yh[0], yh[1]));
    auto sum4 = [](v t, v u) {  // sums of the four samples of each block
      v tl, th, ul, uh;
      widen(t, tl, th), widen(u, ul, uh);
      return pairSums<0>(V::add16(tl, ul), V::add16(th, uh));
    };
    const v sR = sum4(r[0], r[1]), sB = sum4(b[0], b[1]);
    const v U = V::add16(V::srai16<6>(V::mulhr(V::sub16(V::slli16<5>(sB), S), V::set16(8061))), V::set16(128));
    const v W = V::add16(V::srai16<6>(V::mulhr(V::sub16(V::slli16<5>(sR), S), V::set16(14369))), V::set16(128));
    V::store8<8>(io.d[0][1] + x / 2, V::packus16(U, U));
    V::store8<8>(io.d[0][2] + x / 2, V::packus16(W, W));
  }
  return x;
}

// ---- inverse, forms I2 and I3 ------------------------------------------------
// Chroma terms of eight pairs per lane, each then doubled to the two pixels
// of its pair: lo for pixels 0-7, hi for 8-15.
template <int cR, int cGu, int cGv, int cB>
struct Iq {
  struct Terms {
    v rl, rh, gl, gh, bl, bh;
  };
  static Terms terms(v u8, v w8) {  // eight chroma bytes per lane, low half
    const v u = V::slli16<4>(V::sub16(V::unpacklo8(u8, V::zero()), V::set16(128)));
    const v w = V::slli16<4>(V::sub16(V::unpacklo8(w8, V::zero()), V::set16(128)));
    const v r = V::mulhs(w, V::set16(cR));
    const v g = V::add16(V::mulhs(u, V::set16(cGu)), V::mulhs(w, V::set16(cGv)));
    const v b = V::mulhs(u, V::set16(cB));
    return {V::unpacklo16(r, r), V::unpackhi16(r, r), V::unpacklo16(g, g),
            V::unpackhi16(g, g), V::unpacklo16(b, b), V::unpackhi16(b, b)};
  }
  // Sixteen luma bytes per lane to R, G, B bytes.
  static void apply(const Terms& t, v y8, v& R, v& G, v& B) {
    v yl, yh;
    widen(y8, yl, yh);
    yl = V::slli16<1>(yl), yh = V::slli16<1>(yh);
    R = V::packus16(V::srai16<1>(V::add16(yl, t.rl)), V::srai16<1>(V::add16(yh, t.rh)));
    G = V::packus16(V::srai16<1>(V::add16(yl, t.gl)), V::srai16<1>(V::add16(yh, t.gh)));
    B = V::packus16(V::srai16<1>(V::add16(yl, t.bl)), V::srai16<1>(V::add16(yh, t.bh)));
  }
};
using I2 = Iq<9338, -3227, -4759, 16645>;
using I3 = Iq<9339, -3228, -4760, 16646>;

template <class F, bool Bgr>
int yuv420C3(const SubRows& io, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    const typename F::Terms t = F::terms(V::load8<8>(io.s[0][1] + x / 2), V::load8<8>(io.s[0][2] + x / 2));
    for (int k = 0; k < 2; ++k) {
      v R, G, B;
      F::apply(t, V::load<16>(io.s[k][0] + x), R, G, B);
      if (Bgr) storeC3(io.d[k][0] + 3 * x, B, G, R);
      else storeC3(io.d[k][0] + 3 * x, R, G, B);
    }
  }
  return x;
}

}  // namespace

extern const YuvSubKernels kYuvSubKernels = {
    /* rgbC3C2_P1 */ nullptr,
    /* rgbC3P3_P1 */ nullptr,
    /* rgbC3P3_P3 */ nullptr,
    /* rgbP3_P2 */ nullptr,
    /* rgbC3_Q1 */ rgbC3_Q1,
    /* bgrx_Q4 */ nullptr,
    /* yuvC2C3_I2 */ nullptr,
    /* yuvP3C3_I2 */ nullptr,
    /* yuvP3_I2 */ nullptr,
    /* yuvP3C4_IA */ nullptr,
    /* yuv420C3_I2 */ yuv420C3<I2, false>,
    /* yuv420C4_IA */ nullptr,
    /* yuv420BGR_I3 */ yuv420C3<I3, true>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
