// Vector bodies of the AHD stages (see ahd.h for their scalar definitions):
// the green and chroma candidates in 32-bit integer lanes, Lab and hm in
// single-precision lanes, four pixels per 16-byte lane. Both site types of
// a row go through one pass; a parity mask picks the form of each pixel.
#include "demosaic/ahd.h"
#include "demosaic/store_vec.h"
#include "frame/simdf.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;
using f = F::f;
constexpr int kBlock = 4 * F::kLanes;

#if KEL_ISA == KEL_ISA_SSE41
inline v cmpgt32(v a, v b) { return _mm_cmpgt_epi32(a, b); }
inline v min32(v a, v b) { return _mm_min_epi32(a, b); }
inline v max32(v a, v b) { return _mm_max_epi32(a, b); }
inline f fdiv(f a, f b) { return _mm_div_ps(a, b); }
inline f fblend(f a, f b, f m) { return _mm_blendv_ps(a, b, m); }
inline f lt(f a, f b) { return _mm_cmplt_ps(a, b); }
inline f le(f a, f b) { return _mm_cmple_ps(a, b); }
inline f andf(f a, f b) { return _mm_and_ps(a, b); }
// kBlock samples widened to 32-bit lanes, in order, and back.
inline v load32(const uint8_t* p) {
  int32_t x;
  __builtin_memcpy(&x, p, 4);
  return _mm_cvtepu8_epi32(_mm_cvtsi32_si128(x));
}
inline v load32(const uint16_t* p) { return _mm_cvtepu16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))); }
inline __m128i narrow16(v x, bool sign) { return sign ? _mm_packs_epi32(x, x) : _mm_packus_epi32(x, x); }
#else
inline v cmpgt32(v a, v b) { return _mm256_cmpgt_epi32(a, b); }
inline v min32(v a, v b) { return _mm256_min_epi32(a, b); }
inline v max32(v a, v b) { return _mm256_max_epi32(a, b); }
inline f fdiv(f a, f b) { return _mm256_div_ps(a, b); }
inline f fblend(f a, f b, f m) { return _mm256_blendv_ps(a, b, m); }
inline f lt(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_LT_OQ); }
inline f le(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_LE_OQ); }
inline f andf(f a, f b) { return _mm256_and_ps(a, b); }
inline v load32(const uint8_t* p) { return _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))); }
inline v load32(const uint16_t* p) { return _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))); }
inline __m128i narrow16(v x, bool sign) {
  const v p = sign ? _mm256_packs_epi32(x, x) : _mm256_packus_epi32(x, x);
  return _mm256_castsi256_si128(_mm256_permute4x64_epi64(p, 0x08));
}
#endif
// 32-bit lanes holding values of the sample type (or of the hm type) back
// to kBlock samples.
inline void store32(uint8_t* p, v x) {
  const __m128i w = narrow16(x, false), b = _mm_packus_epi16(w, w);
  if constexpr (kBlock == 8) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), b);
  } else {
    const int32_t y = _mm_cvtsi128_si32(b);
    __builtin_memcpy(p, &y, 4);
  }
}
inline void store32(uint16_t* p, v x) {
  const __m128i w = narrow16(x, false);
  if constexpr (kBlock == 8) _mm_storeu_si128(reinterpret_cast<__m128i*>(p), w);
  else _mm_storel_epi64(reinterpret_cast<__m128i*>(p), w);
}
inline void store32(int8_t* p, v x) {
  const __m128i w = narrow16(x, true), b = _mm_packs_epi16(w, w);
  if constexpr (kBlock == 8) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), b);
  } else {
    const int32_t y = _mm_cvtsi128_si32(b);
    __builtin_memcpy(p, &y, 4);
  }
}
inline void store32(int16_t* p, v x) {
  const __m128i w = narrow16(x, true);
  if constexpr (kBlock == 8) _mm_storeu_si128(reinterpret_cast<__m128i*>(p), w);
  else _mm_storel_epi64(reinterpret_cast<__m128i*>(p), w);
}

// -1 in the lanes of a block whose offset from the block start has parity `par`.
inline v parityMask(int par) {
#if KEL_ISA == KEL_ISA_SSE41
  return par ? _mm_setr_epi32(0, -1, 0, -1) : _mm_setr_epi32(-1, 0, -1, 0);
#else
  return par ? _mm256_setr_epi32(0, -1, 0, -1, 0, -1, 0, -1) : _mm256_setr_epi32(-1, 0, -1, 0, -1, 0, -1, 0);
#endif
}

// ---- 1. green candidates ----------------------------------------------------------
inline v greenCandV(v s, v a, v b, v p, v q) {
  const v m = V::srai32<1>(V::add32(a, b));
  const v e = V::add32(m, V::srai32<2>(V::add32(V::sub32(s, p), V::sub32(s, q))));
  const v keep = cmpgt32(V::xor_(V::sub32(e, a), V::sub32(b, e)), V::zero());
  return V::blend8(m, e, keep);
}
template <class T>
int greenK(const AhdGreenRow<T>& row, int i, int n) {
  const AhdGreenRow<T> io = row;
  const v green = parityMask(io.gpar);
  for (; i + kBlock <= n; i += kBlock) {
    const T* r2 = io.r[2] + i;
    const v s = load32(r2);
    const v h = greenCandV(s, load32(r2 - 1), load32(r2 + 1), load32(r2 - 2), load32(r2 + 2));
    const v vv = greenCandV(s, load32(io.r[1] + i), load32(io.r[3] + i), load32(io.r[0] + i), load32(io.r[4] + i));
    store32(io.gh + i, V::blend8(h, s, green));
    store32(io.gv + i, V::blend8(vv, s, green));
  }
  return i;
}

// ---- 2. chroma candidates -----------------------------------------------------------
template <class T>
int chromaK(const AhdChromaRow<T>& row, int i, int n) {
  const AhdChromaRow<T> io = row;
  const v green = parityMask(io.gpar ^ (i & 1));  // i keeps its parity: blocks are even
  const v zero = V::zero(), top = V::set32(ahd::Depth<T>::kMax);
  auto clip = [&](v x) { return min32(max32(x, zero), top); };
  T* const kh = io.kIdx == 0 ? io.rh : io.bh;
  T* const oh = io.kIdx == 0 ? io.bh : io.rh;
  T* const kv = io.kIdx == 0 ? io.rv : io.bv;
  T* const ov = io.kIdx == 0 ? io.bv : io.rv;
  for (; i + kBlock <= n; i += kBlock) {
    const v cW = load32(io.r[1] + i - 1), cE = load32(io.r[1] + i + 1), cC = load32(io.r[1] + i);
    const v cN = load32(io.r[0] + i), cS = load32(io.r[2] + i);
    const v s1 = V::add32(V::add32(V::add32(load32(io.r[0] + i - 1), load32(io.r[0] + i + 1)), load32(io.r[2] + i - 1)),
                          load32(io.r[2] + i + 1));
    auto one = [&](const T* const* g, T* kOut, T* oOut) {
      const v gc = load32(g[1] + i);
      const v kr = V::add32(gc, V::srai32<1>(V::add32(V::sub32(cW, load32(g[1] + i - 1)), V::sub32(cE, load32(g[1] + i + 1)))));
      const v kc = V::add32(gc, V::srai32<1>(V::sub32(V::add32(cN, cS), V::add32(load32(g[0] + i), load32(g[2] + i)))));
      const v s2 = V::add32(V::add32(V::add32(load32(g[0] + i - 1), load32(g[0] + i + 1)), load32(g[2] + i - 1)),
                            load32(g[2] + i + 1));
      const v od = V::add32(gc, V::srai32<2>(V::sub32(s1, s2)));
      store32(kOut + i, V::blend8(cC, clip(kr), green));
      store32(oOut + i, clip(V::blend8(od, kc, green)));
    };
    one(io.gh, kh, oh);
    one(io.gv, kv, ov);
  }
  return i;
}

// ---- 3. Lab -------------------------------------------------------------------------
inline f labFV(f t) {
  const f lin = F::add(F::set1(0.13793103f), F::mul(t, F::set1(7.787037f)));
  f u = fdiv(F::add(F::set1(0.0081f), F::mul(t, F::set1(0.6f))), F::add(t, F::set1(0.054f)));
  for (int k = 0; k < 2; ++k) {
    const f u3 = F::mul(F::mul(u, u), u);
    u = F::mul(u, fdiv(F::add(u3, F::add(t, t)), F::add(F::add(t, u3), u3)));
  }
  return fblend(u, lin, lt(t, F::set1(0.008856f)));
}
template <class T>
inline void labV(f R, f G, f B, float* L, float* A, float* Bo) {
  using M = ahd::Matrix<T>;
  auto dot = [&](float a, float b, float c) {
    return F::add(F::add(F::mul(F::set1(a), R), F::mul(F::set1(b), G)), F::mul(F::set1(c), B));
  };
  const f fx = labFV(dot(M::x0, M::x1, M::x2)), fy = labFV(dot(M::y0, M::y1, M::y2)),
          fz = labFV(dot(M::z0, M::z1, M::z2));
  F::store<16>(L, F::sub(F::mul(F::set1(116.0f), fy), F::set1(16.0f)));
  F::store<16>(A, F::mul(F::set1(500.0f), F::sub(fx, fy)));
  F::store<16>(Bo, F::mul(F::set1(200.0f), F::sub(fy, fz)));
}
template <class T>
int labK(const AhdLabRow<T>& row, int i, int n) {
  const AhdLabRow<T> io = row;
  for (; i + kBlock <= n; i += kBlock) {
    labV<T>(F::cvt(load32(io.rh + i)), F::cvt(load32(io.gh + i)), F::cvt(load32(io.bh + i)), io.lab[0] + i,
            io.lab[1] + i, io.lab[2] + i);
    labV<T>(F::cvt(load32(io.rv + i)), F::cvt(load32(io.gv + i)), F::cvt(load32(io.bv + i)), io.lab[3] + i,
            io.lab[4] + i, io.lab[5] + i);
  }
  return i;
}

// ---- 4. homogeneity -------------------------------------------------------------------
template <class S>
int homK(const AhdHomRow<S>& row, int i, int n) {
  const AhdHomRow<S> io = row;
  const f sign = F::set1(-0.0f), eps = F::set1(io.eps);
  const bool widen = io.eps != 0.0f;
  auto ld = [](const float* p) { return F::load<16>(p); };
  for (; i + kBlock <= n; i += kBlock) {
    f dl[2][4], dc[2][4];
    for (int d = 0; d < 2; ++d) {
      const float* const* m = io.mid + 3 * d;
      const f L = ld(m[0] + i), A = ld(m[1] + i), B = ld(m[2] + i);
      const f nl[4] = {ld(m[0] + i - 1), ld(m[0] + i + 1), ld(io.up[3 * d] + i), ld(io.dn[3 * d] + i)};
      const f na[4] = {ld(m[1] + i - 1), ld(m[1] + i + 1), ld(io.up[3 * d + 1] + i), ld(io.dn[3 * d + 1] + i)};
      const f nb[4] = {ld(m[2] + i - 1), ld(m[2] + i + 1), ld(io.up[3 * d + 2] + i), ld(io.dn[3 * d + 2] + i)};
      for (int k = 0; k < 4; ++k) {
#if KEL_ISA == KEL_ISA_SSE41
        dl[d][k] = _mm_andnot_ps(sign, F::sub(nl[k], L));
#else
        dl[d][k] = _mm256_andnot_ps(sign, F::sub(nl[k], L));
#endif
        const f da = F::sub(na[k], A), db = F::sub(nb[k], B);
        dc[d][k] = F::add(F::mul(da, da), F::mul(db, db));
      }
    }
    // min(a, b) is a < b ? a : b and max(a, b) a > b ? a : b, as in the
    // scalar form.
    f epsL = F::min(F::max(dl[0][0], dl[0][1]), F::max(dl[1][2], dl[1][3]));
    f epsC = F::min(F::max(dc[0][0], dc[0][1]), F::max(dc[1][2], dc[1][3]));
    if (widen) epsL = F::add(epsL, eps), epsC = F::add(epsC, eps);
    v hm = V::zero();  // countH - countV: the masks are -1 where a neighbour counts
    for (int k = 0; k < 4; ++k) {
      hm = V::sub32(hm, F::asi(andf(le(dl[0][k], epsL), le(dc[0][k], epsC))));
      hm = V::add32(hm, F::asi(andf(le(dl[1][k], epsL), le(dc[1][k], epsC))));
    }
    store32(io.hm + i, hm);
  }
  return i;
}

// ---- 5. the choice ------------------------------------------------------------------
// The window sums lie within -36 .. 36, so they fit the hm lanes themselves
// (16 hm values of 8u or 8 of 16u per 16-byte lane), and the sign of a sum
// is the blend mask.
template <class T, class S>
int outK(const AhdOutRow<T, S>& row, int i, int n) {
  const AhdOutRow<T, S> io = row;
  constexpr int kPx = 16 / sizeof(T) * V::kLanes;
  auto ld = [](const void* p) { return V::load<16>(p); };
  for (; i + kPx <= n; i += kPx) {
    v sum = V::zero();
    for (int k = 0; k < 3; ++k) {
      const S* h = io.hm[k] + i;
      if constexpr (sizeof(S) == 1) sum = V::add8(V::add8(V::add8(sum, ld(h - 1)), ld(h)), ld(h + 1));
      else sum = V::add16(V::add16(V::add16(sum, ld(h - 1)), ld(h)), ld(h + 1));
    }
    if constexpr (sizeof(S) == 2) sum = V::srai16<15>(sum);
    const v r = V::blend8(ld(io.rh + i), ld(io.rv + i), sum), g = V::blend8(ld(io.gh + i), ld(io.gv + i), sum),
            b = V::blend8(ld(io.bh + i), ld(io.bv + i), sum);
    if constexpr (sizeof(T) == 1) storeC3(io.d + 3 * (i - 3), r, g, b);
    else storeC3w(io.d + 3 * (i - 3), r, g, b);
  }
  return i;
}

}  // namespace

extern const AhdKernels kAhdKernels = {greenK<uint8_t>,  greenK<uint16_t>, chromaK<uint8_t>, chromaK<uint16_t>,
                                       labK<uint8_t>,    labK<uint16_t>,   homK<int8_t>,     homK<int16_t>,
                                       outK<uint8_t, int8_t>, outK<uint16_t, int16_t>};

}  // namespace KEL_ISA_NS
}  // namespace kel
