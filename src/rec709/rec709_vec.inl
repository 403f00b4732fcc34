// Vector bodies of the BT.709 conversions, written once on the lane words
// of frame/simd.h and compiled per instruction set. Each is the lane-wise
// form of the scalar body of the same name in rec709.h.
#include "frame/simd422.h"
#include "rec709/rec709.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;

// Forward forms: luma of eight pixels, chroma of eight blocks from their sums.
template <int kR, int kG, int kB, int Off, int Lo, int Hi, class Cb, class Cr>
struct Fwd {
  static v y(v r8, v g8, v b8) { return lumaQ15<kR, kG, kB, Off, Lo, Hi>(r8, g8, b8); }
  static void c(v sr, v sg, v sb, v& cb, v& cr) { cb = Cb::of(sr, sg, sb), cr = Cr::of(sr, sg, sb); }
};
using Csc420 = Fwd<5997, 20120, 2032, 2112, 0, 255, ChromaQ<false, 5, -6619, -22151, 28770, 16400, 7, 0, 255>,
                   ChromaQ<false, 5, 28770, -26149, -2621, 16400, 7, 0, 255>>;
using Hdtv420 = Fwd<6980, 23429, 2359, 64, 1, 254, ChromaQ<false, 5, -3834, -12911, 16744, 8224, 6, 1, 254>,
                    ChromaQ<false, 5, 16744, -15204, -1540, 8224, 6, 1, 254>>;
using Hdtv422U = Fwd<6980, 23429, 2359, 64, 1, 254, ChromaQ<false, 6, -3834, -12911, 16744, 8224, 6, 1, 254>,
                     ChromaQ<false, 6, 16744, -15204, -1540, 8224, 6, 1, 254>>;
using Hdtv422S = Fwd<6980, 23429, 2359, 64, 1, 254, ChromaQ<true, 6, -3834, -12911, 16744, 8224, 6, 1, 254>,
                     ChromaQ<true, 6, 16744, -15204, -1540, 8224, 6, 1, 254>>;

// BGR -> 4:2:0, 16 columns of a row pair per lane.
template <Pix In, class VF>
int kernTo420(const RowIO& io, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  for (; x + kBlock <= n; x += kBlock) {
    v sr = V::zero(), sg = V::zero(), sb = V::zero();
    for (int i = 0; i < 2; ++i) {
      v r, g, b, rl, rh, gl, gh, bl, bh;
      loadPix<In>(io.s[i], x, r, g, b);
      widenHigh(r, rl, rh), widenHigh(g, gl, gh), widenHigh(b, bl, bh);
      V::store<16>(io.d[i] + x, V::packus16(VF::y(rl, gl, bl), VF::y(rh, gh, bh)));
      sr = V::add16(sr, pairSums(r)), sg = V::add16(sg, pairSums(g)), sb = V::add16(sb, pairSums(b));
    }
    v cb, cr;
    VF::c(sr, sg, sb, cb, cr);
    V::store8<8>(io.d[2] + (x >> 1), V::packus16(cb, cb));
    V::store8<8>(io.d[3] + (x >> 1), V::packus16(cr, cr));
  }
  return x;
}

// 4:2:0 -> BGR, 16 columns of a row pair per lane; each chroma sample serves
// two columns.
template <Pix Out, class F>
int kernFrom420(const RowIO& io, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  for (; x + kBlock <= n; x += kBlock) {
    v tR, tG, tB;
    yccChroma<F>(V::unpacklo8(V::load8<8>(io.s[2] + (x >> 1)), V::zero()),
                 V::unpacklo8(V::load8<8>(io.s[3] + (x >> 1)), V::zero()), tR, tG, tB);
    for (int i = 0; i < 2; ++i) {
      v yl, yh, R, G, B;
      widen(V::load<16>(io.s[i] + x), yl, yh);
      yccQ13Pairs<F>(yl, yh, tR, tG, tB, R, G, B);
      storePix<Out>(io.d[i], x, R, G, B, io.alpha);
    }
  }
  return x;
}

// 4:4:4 planes -> BGR, 16 pixels per lane.
template <Pix Out, class F>
int kernFrom444(const RowIO& io, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  for (; x + kBlock <= n; x += kBlock) {
    v R, G, B;
    yccQ13x16<F>(V::load<16>(io.s[0] + x), V::load<16>(io.s[1] + x), V::load<16>(io.s[2] + x), R, G, B);
    storePix<Out>(io.d[0], x, R, G, B, io.alpha);
  }
  return x;
}

}  // namespace

extern const Rec709Kernels kRec709Kernels = {
    kernTo420<Pix::BGR, Csc420>,
    kernTo420<Pix::BGRX, Csc420>,
    kernTo420<Pix::BGRX, Hdtv420>,
    kernFrom420<Pix::BGR, rec709::CscN>,
    kernFrom420<Pix::BGRA, rec709::HdtvS>,
    kernFrom444<Pix::BGR, rec709::CscN>,
    kernFrom444<Pix::BGRA, rec709::CscS>,
    kernToC2<Pix::BGR, Hdtv422U>,
    kernToC2<Pix::BGRX, Hdtv422S>,
    kernFromC2<Pix::BGR, rec709::HdtvN>,
    kernFromC2<Pix::BGRA, rec709::HdtvN>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
