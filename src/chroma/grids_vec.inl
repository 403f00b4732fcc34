// Vector kernels of the grid operations of grids.h, on the lane words of
// frame/simd.h, compiled per instruction set. Lane i of a block takes the
// i-th run of 16 units (16 * kLanes units a pass).
//
//   mixes   pmaddubsw of interleaved sample pairs by the weight pair, + 4, >> 3
//   tap4    16-bit sums; the pack with unsigned saturation is the clip
//   bgra    the body form in 16-bit lanes: pmulhw is mulhs
//   means   pavgb is avg8; the half mean is (a & b) + ((a ^ b) >> 1)
#include "chroma/grids.h"
#include "frame/simd.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;
constexpr int L = V::kLanes;

inline v half(v a, v b) { return V::add8(V::and_(a, b), V::and_(V::srli16<1>(V::xor_(a, b)), V::set8(0x7f))); }
template <int M>
inline v mean(v a, v b) {
  if constexpr (M == kAvg) return V::avg8(a, b);
  else return half(a, b);
}
// (wa a + wb b + 4) >> 3 for 16 bytes per lane; w holds the weights as a
// pair of signed bytes in every word.
inline v mix(v a, v b, v w) {
  const v r = V::set16(4);
  const v lo = V::srli16<3>(V::add16(V::maddubs(V::unpacklo8(a, b), w), r));
  const v hi = V::srli16<3>(V::add16(V::maddubs(V::unpackhi8(a, b), w), r));
  return V::packus16(lo, hi);
}
inline v weights(const GridIO& io) { return V::set16((io.wa & 0xff) | (io.wb << 8)); }

int mixK(const GridIO& io, int x, int n) {
  const v w = weights(io);
  const uint8_t *a = io.s[0], *b = io.s[1];
  uint8_t* d = io.d[0];
  for (; x + 16 * L <= n; x += 16 * L) V::store<16>(d + x, mix(V::load<16>(a + x), V::load<16>(b + x), w));
  return x;
}

// A block of four CbYCr pixel pairs -> luma in bytes 0-7, Cb in 8-11, Cr in 12-15.
constexpr Mask16 kCbYCrSplit = {{1, 3, 5, 7, 9, 11, 13, 15, 0, 4, 8, 12, 2, 6, 10, 14}};
// 16 pixel pairs per lane of a CbYCr row: luma (two halves), Cb and Cr.
inline void loadCbYCr(const uint8_t* p, v& y0, v& y1, v& cb, v& cr) {
  const v m = V::bcast(kCbYCrSplit.b);
  const v a = V::shuffle8(V::load<64>(p), m), b = V::shuffle8(V::load<64>(p + 16), m);
  const v c = V::shuffle8(V::load<64>(p + 32), m), d = V::shuffle8(V::load<64>(p + 48), m);
  y0 = V::unpacklo64(a, b), y1 = V::unpacklo64(c, d);
  const v ab = V::unpackhi32(a, b), cd = V::unpackhi32(c, d);  // Cb Cb Cr Cr in 32-bit words
  cb = V::unpacklo64(ab, cd), cr = V::unpackhi64(ab, cd);
}
int mixFromC2K(const GridIO& io, int x, int n) {
  const v w = weights(io);
  const GridIO q = io;
  for (; x + 16 * L <= n; x += 16 * L) {
    v ya0, ya1, cba, cra, yb0, yb1, cbb, crb;
    loadCbYCr(q.s[0] + 4 * x, ya0, ya1, cba, cra);
    loadCbYCr(q.s[1] + 4 * x, yb0, yb1, cbb, crb);
    V::store<32>(q.d[0] + 2 * x, ya0), V::store<32>(q.d[0] + 2 * x + 16, ya1);
    V::store<32>(q.d[1] + 2 * x, yb0), V::store<32>(q.d[1] + 2 * x + 16, yb1);
    V::store<16>(q.d[2] + x, mix(cba, cbb, w));
    V::store<16>(q.d[3] + x, mix(cra, crb, w));
  }
  return x;
}
int mixToC2K(const GridIO& io, int x, int n) {
  const v w = weights(io);
  const GridIO q = io;
  // Contiguous runs throughout (zip8), so that every store is full-width.
  for (; x + 16 * L <= n; x += 16 * L) {
    const v cb = mix(V::load<16>(q.s[1] + x), V::load<16>(q.s[2] + x), w);
    const v cr = mix(V::load<16>(q.s[3] + x), V::load<16>(q.s[4] + x), w);
    v p0, p1, lo, hi;
    zip8(cb, cr, p0, p1);  // Cb Cr pairs
    uint8_t* p = q.d[0] + 4 * x;
    zip8(p0, V::load<16>(q.s[0] + 2 * x), lo, hi);
    V::store<16>(p, lo), V::store<16>(p + 16 * L, hi);
    zip8(p1, V::load<16>(q.s[0] + 2 * x + 16 * L), lo, hi);
    V::store<16>(p + 32 * L, lo), V::store<16>(p + 48 * L, hi);
  }
  return x;
}

int tap4K(const GridIO& io, int x, int n) {
  const GridIO q = io;
  const v r = V::set16(8);
  for (; x + 16 * L <= n; x += 16 * L) {
    v a[2], b[2], c[2], d[2], o[2];
    widen(V::load<16>(q.s[0] + x), a[0], a[1]), widen(V::load<16>(q.s[1] + x), b[0], b[1]);
    widen(V::load<16>(q.s[2] + x), c[0], c[1]), widen(V::load<16>(q.s[3] + x), d[0], d[1]);
    for (int k = 0; k < 2; ++k) {
      const v s = V::add16(b[k], c[k]);
      const v nine = V::add16(V::slli16<3>(s), s);
      o[k] = V::srai16<4>(V::sub16(V::sub16(V::add16(nine, r), a[k]), d[k]));
    }
    V::store<16>(q.d[0] + x, V::packus16(o[0], o[1]));
  }
  return x;
}

// 8 pixel pairs (16 pixels) per lane. Chroma per pixel: C[i], avg8(C[i], C[i + 1]).
inline v chromaPerPixel(const uint8_t* c, int x) {
  const v a = V::load8<8>(c + x), b = V::load8<8>(c + x + 1);
  return V::unpacklo8(a, V::avg8(a, b));
}
// 8 samples per lane (the low or high half of a byte vector) as (s << 7) - bias.
template <bool Hi>
inline v scaled(v s, int bias) {
  const v w = Hi ? V::unpackhi8(V::zero(), s) : V::unpacklo8(V::zero(), s);  // s << 8
  return V::sub16(V::srli16<1>(w), V::set16(bias));
}
template <bool Hi>
inline void bgraHalf(v yb, v cbb, v crb, v& B, v& G, v& R) {
  const v y = V::mulhs(scaled<Hi>(yb, 16 << 7), V::set16(4769));
  const v p = scaled<Hi>(cbb, 128 << 7), q = scaled<Hi>(crb, 128 << 7);
  R = V::srai16<3>(V::add16(y, V::mulhs(q, V::set16(6537))));
  G = V::srai16<3>(V::sub16(y, V::add16(V::mulhs(p, V::set16(1605)), V::mulhs(q, V::set16(3330)))));
  B = V::srai16<3>(V::add16(y, V::mulhs(p, V::set16(8263))));
}
int bgraK(const GridIO& io, int x, int n) {
  const GridIO q = io;
  const v alpha = V::set8(io.alpha);
  for (; x + 8 * L <= n; x += 8 * L) {
    const v y = V::load<16>(q.s[0] + 2 * x);
    const v cr = chromaPerPixel(q.s[1], x), cb = chromaPerPixel(q.s[2], x);
    v b0, g0, r0, b1, g1, r1;
    bgraHalf<false>(y, cb, cr, b0, g0, r0);
    bgraHalf<true>(y, cb, cr, b1, g1, r1);
    storeC4(q.d[0] + 8 * x, V::packus16(b0, b1), V::packus16(g0, g1), V::packus16(r0, r1), alpha);
  }
  return x;
}

// 16 outputs per lane: the means of the even bytes of two rows.
template <int M>
int evenMeanK(const GridIO& io, int x, int n) {
  const GridIO q = io;
  const v lo = V::set16(0xff);
  for (; x + 16 * L <= n; x += 16 * L) {
    const v a = mean<M>(V::load<32>(q.s[0] + 2 * x), V::load<32>(q.s[1] + 2 * x));
    const v b = mean<M>(V::load<32>(q.s[0] + 2 * x + 16), V::load<32>(q.s[1] + 2 * x + 16));
    V::store<16>(q.d[0] + x, V::packus16(V::and_(a, lo), V::and_(b, lo)));
  }
  return x;
}
// Samples and their means with the right neighbour, interleaved, 16 inputs per
// lane into 32 contiguous bytes per lane pair.
inline void storeDup(uint8_t* d, v s, v m) {
  v o0, o1;
  V::interleaveLanes(V::unpacklo8(s, m), V::unpackhi8(s, m), o0, o1);
  V::store<16>(d, o0), V::store<16>(d + 16 * L, o1);
}
int dupMeanK(const GridIO& io, int x, int n) {
  const GridIO q = io;
  for (; x + 16 * L <= n; x += 16 * L) {
    const v t = V::load<16>(q.s[0] + x);
    storeDup(q.d[0] + 2 * x, t, V::avg8(t, V::load<16>(q.s[0] + x + 1)));
  }
  return x;
}
int quadMeanK(const GridIO& io, int x, int n) {
  const GridIO q = io;
  for (; x + 16 * L <= n; x += 16 * L) {
    const v t = V::load<16>(q.s[0] + x), u = V::load<16>(q.s[1] + x);
    const v tm = V::avg8(t, V::load<16>(q.s[0] + x + 1)), um = V::avg8(u, V::load<16>(q.s[1] + x + 1));
    storeDup(q.d[0] + 2 * x, t, tm);
    storeDup(q.d[1] + 2 * x, V::avg8(t, u), V::avg8(tm, um));
  }
  return x;
}

}  // namespace

extern const GridKernels kGridKernels = {
    mixK, mixFromC2K, mixToC2K, tap4K, bgraK, {evenMeanK<kAvg>, evenMeanK<kHalf>}, {dupMeanK, nullptr},
    {quadMeanK, nullptr},
};

}  // namespace KEL_ISA_NS
}  // namespace kel
