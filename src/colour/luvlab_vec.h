// Lane words shared by the LUV and Lab kernels: comparisons and selection
// with the scalar forms' NaN behaviour, division, table gathers, the refined
// reciprocal, the cube-root series, and 8-bit and 16-bit pixel moves with a
// free distance between the lanes' blocks. Include after defining KEL_ISA.
#pragma once

#include "colour/colour_vec.h"
#include "colour/luv.h"

namespace kel {
namespace KEL_ISA_NS {
namespace luvv {

using namespace colourv;

using m = F::m;
// Ordered comparisons: false where an operand is NaN, as in C.
inline m le(f a, f b) { return F::cmple(a, b); }
inline m lt(f a, f b) { return F::cmplt(a, b); }
inline m eq(f a, f b) { return F::cmpeq(a, b); }
inline f sel(m c, f no, f yes) { return F::select(c, yes, no); }
inline f div(f a, f b) { return F::div(a, b); }
inline fi minu32(fi a, fi b) { return F::minu32(a, b); }
inline m gti(fi a, fi b) { return F::cmpgti(a, b); }
inline m eqi(fi a, fi b) { return F::cmpeqi(a, b); }
inline fi seli(m c, fi no, fi yes) { return F::selecti(c, yes, no); }
inline f gather(const float* t, fi k) { return F::gather(t, k); }
inline fi gatheri(const int32_t* t, fi k) { return F::gatheri(t, k); }
// The cube-root anchors by k, which is 0..128 wherever they are read (the
// forms limit or scale their index so). AVX-512 reads them from registers.
#if KEL_ISA == KEL_ISA_AVX512
inline f anchor(const float* t, fi k) {
  return F::select(F::cmpeqi(k, F::set32(128)), F::set1(t[128]), F::lookup128(t, k));
}
#else
inline f anchor(const float* t, fi k) { return gather(t, k); }
#endif
inline f gatherC(fi k) { return anchor(POW_LUV.c, k); }
inline f gatherD(fi k) { return anchor(POW_LUV.d, k); }
inline f k1(float x) { return F::set1(x); }
// |a| <= b, NaN false.
inline m absLe(f a, f b) { return le(F::asf(F::and_(F::asi(a), F::set32(0x7FFFFFFF))), b); }

// nrcp: (r + r) - ((a * r) * r) with r the approximate reciprocal.
inline f nrcp(f a) {
  const f r = F::rcp(a);
  return F::sub(F::add(r, r), F::mul(F::mul(a, r), r));
}

// The cube-root series about anchor k, as luv::cubeRoot: returns p * c.
template <int Terms>
inline f cubeRoot(f y, fi k, float s7 = luv::kS[6], float s8 = luv::kS[7]) {
  const f c = gatherC(k), d = gatherD(k);
  const f z = F::mul(F::sub(y, F::mul(F::mul(c, c), c)), d);
  const float s[8] = {luv::kS[0], luv::kS[1], luv::kS[2], luv::kS[3], luv::kS[4], luv::kS[5], s7, s8};
  f zp = z, p = F::add(k1(1.0f), F::mul(zp, k1(s[0])));
  for (int t = 1; t < Terms; ++t) {
    zp = F::mul(zp, z);
    p = (t & 1) ? F::sub(p, F::mul(zp, k1(s[t]))) : F::add(p, F::mul(zp, k1(s[t])));
  }
  return F::mul(p, c);
}

inline void xyzOf(f R, f G, f B, f& X, f& Y, f& Z) {
  X = addF(addF(mulk(R, 0.412453f), mulk(G, 0.35758f)), mulk(B, 0.180423f));
  Y = addF(addF(mulk(R, 0.212671f), mulk(G, 0.71516f)), mulk(B, 0.072169f));
  Z = addF(addF(mulk(R, 0.019334f), mulk(G, 0.119193f)), mulk(B, 0.950227f));
}

// ---- 8-bit samples, 16 per lane, as four groups of 4 floats -----------------
// Group g of lane k holds samples 16 k + 4 g .. 16 k + 4 g + 3.
inline void bytesToF(v b, f o[4]) {
  v lo, hi;
  widen(b, lo, hi);
  o[0] = F::cvt(F::u16to32(lo)), o[1] = F::cvt(F::u16to32(V::bsrli<8>(lo)));
  o[2] = F::cvt(F::u16to32(hi)), o[3] = F::cvt(F::u16to32(V::bsrli<8>(hi)));
}
// Four groups of 32-bit integers back to bytes, each limited to 0..255.
inline v intsToBytes(const fi o[4]) { return V::packus16(V::packs32(o[0], o[1]), V::packs32(o[2], o[3])); }

// ---- 16-bit samples, 4 pixels of three per lane at a distance of Stride bytes
template <class T, int Stride>
inline void load16C3(const T* p, f& x, f& y, f& z) {
  const f a = widenF<T>(F::loadi8<Stride>(p)), b = widenF<T>(F::loadi8<Stride>(p + 4));
  const f c = widenF<T>(F::loadi8<Stride>(p + 8));
  splitC3(a, b, c, x, y, z);
}
// 32-bit values already within 0..65535.
template <int Stride>
inline void store16C3(uint16_t* p, fi x, fi y, fi z) {
  f a, b, c;
  joinC3(F::asf(x), F::asf(y), F::asf(z), a, b, c);
  F::storei<Stride>(p, F::packus32(F::asi(a), F::asi(b)));
  F::storei8<Stride>(p + 8, F::packus32(F::asi(c), F::asi(c)));
}

// ---- 16-bit and float pixels, 4 per lane: a form that gives 32-bit integers
// on the 16u scale, stored saturated (16s: less 32768 first, as colour's
// out16sSat does).
template <class T, int Ch, class Form>
int kernI(const T* s, T* d, int x, int n) {
  constexpr int kBlock = 4 * F::kLanes;
  for (; x + kBlock <= n; x += kBlock) {
    f a, b, c;
    fi o0, o1, o2;
    prefetchAhead<Ch * kBlock * static_cast<int>(sizeof(T))>(s + Ch * x);
    loadPx<T, Ch>(s + Ch * x, a, b, c);
    Form::vec(a, b, c, o0, o1, o2);
    auto prep = [](fi t) { return std::is_same<T, int16_t>::value ? F::sub32(t, F::set32(32768)) : t; };
    storePx16<T, Ch>(d + Ch * x, prep(o0), prep(o1), prep(o2),
                     [](fi p, fi q) { return OutSat::template pack<T>(p, q); });
  }
  return x;
}

}  // namespace luvv
}  // namespace KEL_ISA_NS
}  // namespace kel
