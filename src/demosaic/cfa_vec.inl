// Vector bodies of the bilinear rows (see cfa.h for their scalar
// definitions): 16 pixels of 8u or 8 pixels of 16u per lane, both site types
// in one pass. Every pixel computes the green-site and the chroma-site forms
// and a parity mask picks one; the gradient test is a pair of masks, and the
// four-way means are exact sums in wider lanes, so ties need no scalar path.
#include "demosaic/cfa.h"
#include "demosaic/store_vec.h"
#include "frame/simd.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;

#if KEL_ISA == KEL_ISA_SSE41
inline v subus8(v a, v b) { return _mm_subs_epu8(a, b); }
inline v subus16(v a, v b) { return _mm_subs_epu16(a, b); }
inline v cmpeq16(v a, v b) { return _mm_cmpeq_epi16(a, b); }
#else
inline v subus8(v a, v b) { return _mm256_subs_epu8(a, b); }
inline v subus16(v a, v b) { return _mm256_subs_epu16(a, b); }
inline v cmpeq16(v a, v b) { return _mm256_cmpeq_epi16(a, b); }
#endif

// The rounded mean of four, (a + b + c + d + 2) >> 2, from rounded means of
// two: with p = avg(a, b) and q = avg(c, d), avg(p, q) is one too high
// exactly where p + q is odd and a pair's sum was odd (it was rounded up).
template <class D>
inline v mean4By(v a, v b, v c, v d) {
  const v p = D::avg(a, b), q = D::avg(c, d);
  const v fix = V::and_(V::and_(V::xor_(p, q), V::or_(V::xor_(a, b), V::xor_(c, d))), D::one());
  return D::sub(D::avg(p, q), fix);
}

// Per-depth words: the rounded mean of two, the exact rounded mean of four,
// and "a <= b" as a mask.
struct D8 {
  using T = uint8_t;
  static constexpr int kPx = 16;
  static v avg(v a, v b) { return V::avg8(a, b); }
  static v sub(v a, v b) { return subus8(a, b); }  // b <= a here
  static v one() { return V::set8(1); }
  static v le(v a, v b) { return V::cmpeq8(subus8(a, b), V::zero()); }
  static v absd(v a, v b) { return V::or_(subus8(a, b), subus8(b, a)); }
  static v mean4(v a, v b, v c, v d) { return mean4By<D8>(a, b, c, d); }
  static v parity(int chromaPar) { return V::set16(chromaPar ? 0xFF00 : 0x00FF); }
  static void store(T* p, v r, v g, v b) { storeC3(p, r, g, b); }
};
struct D16 {
  using T = uint16_t;
  static constexpr int kPx = 8;
  static v avg(v a, v b) { return V::avg16(a, b); }
  static v sub(v a, v b) { return V::sub16(a, b); }
  static v one() { return V::set16(1); }
  static v le(v a, v b) { return cmpeq16(subus16(a, b), V::zero()); }
  static v absd(v a, v b) { return V::or_(subus16(a, b), subus16(b, a)); }
  static v mean4(v a, v b, v c, v d) { return mean4By<D16>(a, b, c, d); }
  static v parity(int chromaPar) { return V::set32(chromaPar ? static_cast<int>(0xFFFF0000u) : 0x0000FFFF); }
  static void store(T* p, v r, v g, v b) { storeC3w(p, r, g, b); }
};

template <class D>
int cfaRow(const CfaRow<typename D::T>& row, int i, int n) {
  using T = typename D::T;
  constexpr int kBlock = D::kPx * V::kLanes;
  const CfaRow<T> io = row;  // local copy: stores cannot alias the pointers
  const v chroma = D::parity(io.chromaPar);
  auto ld = [](const T* p) { return V::load<16>(p); };
  auto block = [&](int i, v chroma) {
    const T *r0 = io.r[0] + i, *r1 = io.r[1] + i, *r2 = io.r[2] + i, *r3 = io.r[3] + i, *r4 = io.r[4] + i;
    prefetchAhead<kBlock * static_cast<int>(sizeof(T))>(r4);  // the one row that is new to this row's blocks
    const v c = ld(r2), nn = ld(r1), s = ld(r3), w = ld(r2 - 1), e = ld(r2 + 1);
    const v hAvg = D::avg(w, e), vAvg = D::avg(nn, s);
    const v dv = D::absd(ld(r0), ld(r4)), dh = D::absd(ld(r2 - 2), ld(r2 + 2));
    const v hOk = D::le(dh, dv), vOk = D::le(dv, dh);  // dh <= dv, dv <= dh
    v g = V::blend8(vAvg, hAvg, hOk);
    g = V::blend8(g, D::mean4(nn, w, e, s), V::and_(hOk, vOk));
    const v diag = D::mean4(ld(r1 - 1), ld(r1 + 1), ld(r3 - 1), ld(r3 + 1));
    const v k = V::blend8(hAvg, c, chroma), gg = V::blend8(c, g, chroma), o = V::blend8(vAvg, diag, chroma);
    if (io.kIdx == 0) D::store(io.d + 3 * i, k, gg, o);
    else D::store(io.d + 3 * i, o, gg, k);
  };
  for (; i + kBlock <= n; i += kBlock) block(i, chroma);
  // Every pixel of the inner rectangle takes the same formula, so a row of
  // at least one block ends with a block that overlaps the one before it
  // (with the site pattern of its own first column): the pixels written
  // twice get the same values twice, and no narrower kernel or scalar rest
  // runs.
  if (i < n && n >= kBlock) {
    const int j = n - kBlock;
    block(j, (j & 1) ? D::parity(io.chromaPar ^ 1) : chroma);
    i = n;
  }
  return i;
}

}  // namespace

extern const CfaKernels kCfaKernels = {cfaRow<D8>, cfaRow<D16>};

}  // namespace KEL_ISA_NS
}  // namespace kel
