// Vector bodies of the CbYCr 4:2:2 conversions, written once on the lane
// words of frame/simd.h and compiled per instruction set. Each is the
// lane-wise form of the scalar body of the same name in cbycr.h.
#include "cbycr/cbycr.h"
#include "frame/simd422.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;

// Pair means: luma of eight pixels, chroma of eight pairs (in range without
// a limit: 16..235 and 16..240).
struct MeanBody {
  static v y(v r8, v g8, v b8) { return lumaQ15<8422, 16515, 3212, 2112, 0, 255>(r8, g8, b8); }
  static void c(v sr, v sg, v sb, v& cb, v& cr) {
    cb = ChromaQ<true, 6, -9699, -19071, 28770, 16448, 7, 0, 255>::of(sr, sg, sb);
    cr = ChromaQ<true, 6, 28770, -24117, -4653, 16448, 7, 0, 255>::of(sr, sg, sb);
  }
};

// The chroma filter in 32-bit lanes: each lane holds one pair, the even
// pixel in its low word. madd16 by (centre, side) weights gives the pair's
// own terms; the left neighbour's term comes from the same pixels read two
// columns earlier, weighted (0, side).
inline v weights(int even, int odd) { return V::set32(static_cast<int>((static_cast<uint32_t>(odd) << 16) | (even & 0xFFFF))); }
inline v terms(v r, v g, v b, int rE, int rO, int gE, int gO, int bE, int bO) {
  return V::add32(V::add32(V::madd16(r, weights(rE, rO)), V::madd16(g, weights(gE, gO))), V::madd16(b, weights(bE, bO)));
}
struct FilteredHalf {
  // Eight pixels (four pairs) of 16-bit samples, and the same eight read two
  // columns earlier.
  static void chroma(v r, v g, v b, v rp, v gp, v bp, v& cb, v& cr) {
    const v c = V::set32(4210687);
    cb = V::add32(terms(r, g, b, -2426, -1213, -4769, -2385, 7193, 3596), terms(rp, gp, bp, 0, -1213, 0, -2385, 0, 3596));
    cr = V::add32(terms(r, g, b, 7193, 3596, -6030, -3015, -1164, -582), terms(rp, gp, bp, 0, 3596, 0, -3015, 0, -582));
    cb = V::srai32<15>(V::add32(cb, c));
    cr = V::srai32<15>(V::add32(cr, c));
  }
  static v luma(v r, v g, v b) {
    const v k = weights(8422, 16515), kb = weights(3212, 0), c = V::set32(540672);
    const v y0 = V::add32(V::add32(V::madd16(V::unpacklo16(r, g), k), V::madd16(V::unpacklo16(b, V::zero()), kb)), c);
    const v y1 = V::add32(V::add32(V::madd16(V::unpackhi16(r, g), k), V::madd16(V::unpackhi16(b, V::zero()), kb)), c);
    return V::packs32(V::srai32<15>(y0), V::srai32<15>(y1));
  }
};

// RGB -> CbYCr with the chroma filter, 16 pixels per lane, from x >= 2.
int kernFiltered(const RowIO& io, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  for (; x + kBlock <= n; x += kBlock) {
    v r, g, b, rp, gp, bp, rl, rh, gl, gh, bl, bh, rpl, rph, gpl, gph, bpl, bph;
    loadPix<Pix::RGB>(io.s[0], x, r, g, b);
    loadPix<Pix::RGB>(io.s[0], x - 2, rp, gp, bp);
    widen(r, rl, rh), widen(g, gl, gh), widen(b, bl, bh);
    widen(rp, rpl, rph), widen(gp, gpl, gph), widen(bp, bpl, bph);
    v cb0, cr0, cb1, cr1;
    FilteredHalf::chroma(rl, gl, bl, rpl, gpl, bpl, cb0, cr0);
    FilteredHalf::chroma(rh, gh, bh, rph, gph, bph, cb1, cr1);
    const v cb = V::packs32(cb0, cb1), cr = V::packs32(cr0, cr1);
    uint8_t* d = io.d[0] + 2 * x;
    V::store<32>(d, V::or_(V::unpacklo16(cb, cr), V::slli16<8>(FilteredHalf::luma(rl, gl, bl))));
    V::store<32>(d + 16, V::or_(V::unpackhi16(cb, cr), V::slli16<8>(FilteredHalf::luma(rh, gh, bh))));
  }
  return x;
}

}  // namespace

extern const CbYCrKernels kCbYCrKernels = {
    kernToC2<Pix::BGRX, MeanBody>,
    kernFromC2<Pix::RGB, cbycr::InvBody>,
    kernFromC2<Pix::BGRA, cbycr::InvBody>,
    kernFiltered,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
