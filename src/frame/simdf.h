// Float lane words for the per-ISA kernel files, the companion of the
// integer words V of frame/simd.h (include that first: it selects the ISA).
//
// As there, the vector is seen as lanes of 16 bytes (1 for SSE4.1, 2 for
// AVX2, 4 for AVX-512): a lane holds four single-precision values, i.e. four
// pixels of one channel, and loads and stores place one block per lane with
// a fixed distance between blocks. Shuffles act within a lane, so every
// kernel is written once for every width. Comparisons give a mask `F::m` (a
// vector of all-ones or zero elements up to AVX2, a mask register with
// AVX-512) that only the mask words take.
//
// Besides the arithmetic: pixels of three or four interleaved samples (float,
// or 16-bit integers widened to float) split into channel vectors, and the
// way back, with the integer conversions the colour models need.
#pragma once

#include <immintrin.h>

#include <cstdint>
#include <type_traits>

#include "frame/simd.h"

namespace kel {
namespace KEL_ISA_NS {

#if KEL_ISA == KEL_ISA_SSE41
struct F {
  using f = __m128;
  using i = __m128i;
  using m = __m128;  // all-ones or zero elements
  static constexpr int kLanes = 1;

  // 16 bytes per lane, lane k at p + k * Stride bytes.
  template <int Stride>
  static f load(const void* p) { return _mm_loadu_ps(static_cast<const float*>(p)); }
  template <int Stride>
  static void store(void* p, f x) { _mm_storeu_ps(static_cast<float*>(p), x); }
  // Integer blocks: 16 bytes, or 8 bytes in the low half, per lane.
  template <int Stride>
  static i loadi(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
  template <int Stride>
  static i loadi8(const void* p) { return _mm_loadl_epi64(static_cast<const __m128i*>(p)); }
  template <int Stride>
  static void storei(void* p, i x) { _mm_storeu_si128(static_cast<__m128i*>(p), x); }
  template <int Stride>
  static void storei8(void* p, i x) { _mm_storel_epi64(static_cast<__m128i*>(p), x); }

  static f set1(float x) { return _mm_set1_ps(x); }
  static f zero() { return _mm_setzero_ps(); }
  static i set32(int x) { return _mm_set1_epi32(x); }
  static f add(f a, f b) { return _mm_add_ps(a, b); }
  static f sub(f a, f b) { return _mm_sub_ps(a, b); }
  static f mul(f a, f b) { return _mm_mul_ps(a, b); }
  static f div(f a, f b) { return _mm_div_ps(a, b); }
  // a < b ? a : b and a > b ? a : b: with a NaN the second operand.
  static f min(f a, f b) { return _mm_min_ps(a, b); }
  static f max(f a, f b) { return _mm_max_ps(a, b); }
  template <int M>
  static f blend(f a, f b) { return _mm_blend_ps(a, b, M); }
  template <int M>
  static f permute(f a) { return _mm_shuffle_ps(a, a, M); }
  static f unpacklo(f a, f b) { return _mm_unpacklo_ps(a, b); }
  static f unpackhi(f a, f b) { return _mm_unpackhi_ps(a, b); }
  static f movelh(f a, f b) { return _mm_movelh_ps(a, b); }
  static f movehl(f a, f b) { return _mm_movehl_ps(a, b); }

  // Masks: ordered comparisons (false where an operand is NaN, as in C),
  // selection m ? a : b, and +0 where m holds.
  static m cmpeq(f a, f b) { return _mm_cmpeq_ps(a, b); }
  static m cmplt(f a, f b) { return _mm_cmplt_ps(a, b); }
  static m cmple(f a, f b) { return _mm_cmple_ps(a, b); }
  static m cmpgt(f a, f b) { return _mm_cmpgt_ps(a, b); }
  static m cmpeqi(i a, i b) { return _mm_castsi128_ps(_mm_cmpeq_epi32(a, b)); }
  static m cmpgti(i a, i b) { return _mm_castsi128_ps(_mm_cmpgt_epi32(a, b)); }
  static m mor(m a, m b) { return _mm_or_ps(a, b); }
  static f select(m k, f a, f b) { return _mm_blendv_ps(b, a, k); }
  static i selecti(m k, i a, i b) { return _mm_castps_si128(_mm_blendv_ps(_mm_castsi128_ps(b), _mm_castsi128_ps(a), k)); }
  static f zeroIf(m k, f a) { return _mm_andnot_ps(k, a); }
  // Table reads t[k] per element.
  static f gather(const float* t, i k) {
    alignas(16) int32_t x[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(x), k);
    return _mm_setr_ps(t[x[0]], t[x[1]], t[x[2]], t[x[3]]);
  }
  static i gatheri(const int32_t* t, i k) {
    alignas(16) int32_t x[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(x), k);
    return _mm_setr_epi32(t[x[0]], t[x[1]], t[x[2]], t[x[3]]);
  }

  static i cvtt(f a) { return _mm_cvttps_epi32(a); }  // toward zero; INT32_MIN if out of range
  static i cvtn(f a) { return _mm_cvtps_epi32(a); }   // to nearest even; INT32_MIN if out of range
  static f rcp(f a) { return _mm_rcp_ps(a); }         // arcp: the approximate reciprocal, unrefined
  static f cvt(i a) { return _mm_cvtepi32_ps(a); }
  static f asf(i a) { return _mm_castsi128_ps(a); }
  static i asi(f a) { return _mm_castps_si128(a); }
  static i add32(i a, i b) { return _mm_add_epi32(a, b); }
  static i sub32(i a, i b) { return _mm_sub_epi32(a, b); }
  static i and_(i a, i b) { return _mm_and_si128(a, b); }
  static i minu32(i a, i b) { return _mm_min_epu32(a, b); }
  static i u16to32(i a) { return _mm_cvtepu16_epi32(a); }  // low 4 words per lane
  static i s16to32(i a) { return _mm_cvtepi16_epi32(a); }
  static i packus32(i a, i b) { return _mm_packus_epi32(a, b); }
  static i packs32(i a, i b) { return _mm_packs_epi32(a, b); }
  template <int M>
  static i blend16(i a, i b) { return _mm_blend_epi16(a, b, M); }
  template <int N>
  static i bsrli(i a) { return _mm_srli_si128(a, N); }
};
#elif KEL_ISA == KEL_ISA_AVX2
struct F {
  using f = __m256;
  using i = __m256i;
  using m = __m256;
  static constexpr int kLanes = 2;

  template <int Stride>
  static f load(const void* p) {
    const char* c = static_cast<const char*>(p);
    if constexpr (Stride == 16) return _mm256_loadu_ps(reinterpret_cast<const float*>(c));
    else
      return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(reinterpret_cast<const float*>(c))),
                                  _mm_loadu_ps(reinterpret_cast<const float*>(c + Stride)), 1);
  }
  template <int Stride>
  static void store(void* p, f x) {
    char* c = static_cast<char*>(p);
    if constexpr (Stride == 16) {
      _mm256_storeu_ps(reinterpret_cast<float*>(c), x);
    } else {
      _mm_storeu_ps(reinterpret_cast<float*>(c), _mm256_castps256_ps128(x));
      _mm_storeu_ps(reinterpret_cast<float*>(c + Stride), _mm256_extractf128_ps(x, 1));
    }
  }
  template <int Stride>
  static i loadi(const void* p) { return V::load<Stride>(p); }
  template <int Stride>
  static i loadi8(const void* p) { return V::load8<Stride>(p); }
  template <int Stride>
  static void storei(void* p, i x) { V::store<Stride>(p, x); }
  template <int Stride>
  static void storei8(void* p, i x) { V::store8<Stride>(p, x); }

  static f set1(float x) { return _mm256_set1_ps(x); }
  static f zero() { return _mm256_setzero_ps(); }
  static i set32(int x) { return _mm256_set1_epi32(x); }
  static f add(f a, f b) { return _mm256_add_ps(a, b); }
  static f sub(f a, f b) { return _mm256_sub_ps(a, b); }
  static f mul(f a, f b) { return _mm256_mul_ps(a, b); }
  static f div(f a, f b) { return _mm256_div_ps(a, b); }
  static f min(f a, f b) { return _mm256_min_ps(a, b); }
  static f max(f a, f b) { return _mm256_max_ps(a, b); }
  template <int M>
  static f blend(f a, f b) { return _mm256_blend_ps(a, b, M | (M << 4)); }
  template <int M>
  static f permute(f a) { return _mm256_permute_ps(a, M); }
  static f unpacklo(f a, f b) { return _mm256_unpacklo_ps(a, b); }
  static f unpackhi(f a, f b) { return _mm256_unpackhi_ps(a, b); }
  static f movelh(f a, f b) {
    return _mm256_castpd_ps(_mm256_unpacklo_pd(_mm256_castps_pd(a), _mm256_castps_pd(b)));
  }
  static f movehl(f a, f b) {  // as _mm_movehl_ps: high half of b, then high half of a
    return _mm256_castpd_ps(_mm256_unpackhi_pd(_mm256_castps_pd(b), _mm256_castps_pd(a)));
  }

  static m cmpeq(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_EQ_OQ); }
  static m cmplt(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_LT_OS); }
  static m cmple(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_LE_OS); }
  static m cmpgt(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_GT_OS); }
  static m cmpeqi(i a, i b) { return _mm256_castsi256_ps(_mm256_cmpeq_epi32(a, b)); }
  static m cmpgti(i a, i b) { return _mm256_castsi256_ps(_mm256_cmpgt_epi32(a, b)); }
  static m mor(m a, m b) { return _mm256_or_ps(a, b); }
  static f select(m k, f a, f b) { return _mm256_blendv_ps(b, a, k); }
  static i selecti(m k, i a, i b) {
    return _mm256_castps_si256(_mm256_blendv_ps(_mm256_castsi256_ps(b), _mm256_castsi256_ps(a), k));
  }
  static f zeroIf(m k, f a) { return _mm256_andnot_ps(k, a); }
  static f gather(const float* t, i k) { return _mm256_i32gather_ps(t, k, 4); }
  static i gatheri(const int32_t* t, i k) { return _mm256_i32gather_epi32(t, k, 4); }

  static i cvtt(f a) { return _mm256_cvttps_epi32(a); }
  static i cvtn(f a) { return _mm256_cvtps_epi32(a); }
  static f rcp(f a) { return _mm256_rcp_ps(a); }  // the same bits as rcpps on each half
  static f cvt(i a) { return _mm256_cvtepi32_ps(a); }
  static f asf(i a) { return _mm256_castsi256_ps(a); }
  static i asi(f a) { return _mm256_castps_si256(a); }
  static i add32(i a, i b) { return _mm256_add_epi32(a, b); }
  static i sub32(i a, i b) { return _mm256_sub_epi32(a, b); }
  static i and_(i a, i b) { return _mm256_and_si256(a, b); }
  static i minu32(i a, i b) { return _mm256_min_epu32(a, b); }
  // Low 4 words of each lane to 4 double words in the same lane.
  static i u16to32(i a) { return _mm256_unpacklo_epi16(a, _mm256_setzero_si256()); }
  static i s16to32(i a) { return _mm256_srai_epi32(_mm256_unpacklo_epi16(a, a), 16); }
  static i packus32(i a, i b) { return _mm256_packus_epi32(a, b); }
  static i packs32(i a, i b) { return _mm256_packs_epi32(a, b); }
  template <int M>
  static i blend16(i a, i b) { return _mm256_blend_epi16(a, b, M); }
  template <int N>
  static i bsrli(i a) { return _mm256_bsrli_epi128(a, N); }
};
#elif KEL_ISA == KEL_ISA_AVX512
struct F {
  using f = __m512;
  using i = __m512i;
  using m = __mmask16;  // one bit per element
  static constexpr int kLanes = 4;

  template <int Stride>
  static f load(const void* p) {
    const char* c = static_cast<const char*>(p);
    if constexpr (Stride == 16) {
      return _mm512_loadu_ps(c);
    } else {
      auto l = [&](int k) { return _mm_loadu_ps(reinterpret_cast<const float*>(c + k * Stride)); };
      return _mm512_insertf32x4(_mm512_insertf32x4(_mm512_insertf32x4(_mm512_castps128_ps512(l(0)), l(1), 1), l(2), 2),
                                l(3), 3);
    }
  }
  template <int Stride>
  static void store(void* p, f x) {
    char* c = static_cast<char*>(p);
    if constexpr (Stride == 16) {
      _mm512_storeu_ps(c, x);
    } else {
      _mm_storeu_ps(reinterpret_cast<float*>(c), _mm512_castps512_ps128(x));
      _mm_storeu_ps(reinterpret_cast<float*>(c + Stride), _mm512_extractf32x4_ps(x, 1));
      _mm_storeu_ps(reinterpret_cast<float*>(c + 2 * Stride), _mm512_extractf32x4_ps(x, 2));
      _mm_storeu_ps(reinterpret_cast<float*>(c + 3 * Stride), _mm512_extractf32x4_ps(x, 3));
    }
  }
  template <int Stride>
  static i loadi(const void* p) { return V::load<Stride>(p); }
  template <int Stride>
  static i loadi8(const void* p) { return V::load8<Stride>(p); }
  template <int Stride>
  static void storei(void* p, i x) { V::store<Stride>(p, x); }
  template <int Stride>
  static void storei8(void* p, i x) { V::store8<Stride>(p, x); }

  static f set1(float x) { return _mm512_set1_ps(x); }
  static f zero() { return _mm512_setzero_ps(); }
  static i set32(int x) { return _mm512_set1_epi32(x); }
  static f add(f a, f b) { return _mm512_add_ps(a, b); }
  static f sub(f a, f b) { return _mm512_sub_ps(a, b); }
  static f mul(f a, f b) { return _mm512_mul_ps(a, b); }
  static f div(f a, f b) { return _mm512_div_ps(a, b); }
  static f min(f a, f b) { return _mm512_min_ps(a, b); }
  static f max(f a, f b) { return _mm512_max_ps(a, b); }
  template <int M>
  static f blend(f a, f b) { return _mm512_mask_blend_ps(static_cast<__mmask16>(M * 0x1111), a, b); }
  template <int M>
  static f permute(f a) { return _mm512_permute_ps(a, M); }
  static f unpacklo(f a, f b) { return _mm512_unpacklo_ps(a, b); }
  static f unpackhi(f a, f b) { return _mm512_unpackhi_ps(a, b); }
  static f movelh(f a, f b) {
    return _mm512_castpd_ps(_mm512_unpacklo_pd(_mm512_castps_pd(a), _mm512_castps_pd(b)));
  }
  static f movehl(f a, f b) {
    return _mm512_castpd_ps(_mm512_unpackhi_pd(_mm512_castps_pd(b), _mm512_castps_pd(a)));
  }

  static m cmpeq(f a, f b) { return _mm512_cmp_ps_mask(a, b, _CMP_EQ_OQ); }
  static m cmplt(f a, f b) { return _mm512_cmp_ps_mask(a, b, _CMP_LT_OS); }
  static m cmple(f a, f b) { return _mm512_cmp_ps_mask(a, b, _CMP_LE_OS); }
  static m cmpgt(f a, f b) { return _mm512_cmp_ps_mask(a, b, _CMP_GT_OS); }
  static m cmpeqi(i a, i b) { return _mm512_cmpeq_epi32_mask(a, b); }
  static m cmpgti(i a, i b) { return _mm512_cmpgt_epi32_mask(a, b); }
  static m mor(m a, m b) { return static_cast<m>(a | b); }
  static f select(m k, f a, f b) { return _mm512_mask_blend_ps(k, b, a); }
  static i selecti(m k, i a, i b) { return _mm512_mask_blend_epi32(k, b, a); }
  static f zeroIf(m k, f a) { return _mm512_maskz_mov_ps(static_cast<m>(~k), a); }
  static f gather(const float* t, i k) { return _mm512_i32gather_ps(k, t, 4); }
  static i gatheri(const int32_t* t, i k) { return _mm512_i32gather_epi32(k, t, 4); }
  // t[k mod 128] from registers: two-table permutes on the low five bits of
  // k, then bits 5 and 6 choose. Far cheaper than a gather of 16 elements.
  static f lookup128(const float* t, i k) {
    auto two = [&](int o) { return _mm512_permutex2var_ps(_mm512_loadu_ps(t + o), k, _mm512_loadu_ps(t + o + 16)); };
    const m b5 = _mm512_test_epi32_mask(k, _mm512_set1_epi32(32)), b6 = _mm512_test_epi32_mask(k, _mm512_set1_epi32(64));
    const f lo = _mm512_mask_blend_ps(b5, two(0), two(32)), hi = _mm512_mask_blend_ps(b5, two(64), two(96));
    return _mm512_mask_blend_ps(b6, lo, hi);
  }

  static i cvtt(f a) { return _mm512_cvttps_epi32(a); }
  static i cvtn(f a) { return _mm512_cvtps_epi32(a); }  // under the caller's rounding mode, as cvtps2dq
  // arcp: rcpps on each 256-bit half. The AVX-512 reciprocal (vrcp14ps) has
  // other bits and is never used.
  static f rcp(f a) {
    const __m256 lo = _mm256_rcp_ps(_mm512_castps512_ps256(a));
    const __m256 hi = _mm256_rcp_ps(_mm256_castpd_ps(_mm512_extractf64x4_pd(_mm512_castps_pd(a), 1)));
    return _mm512_castpd_ps(_mm512_insertf64x4(_mm512_castps_pd(_mm512_castps256_ps512(lo)), _mm256_castps_pd(hi), 1));
  }
  static f cvt(i a) { return _mm512_cvtepi32_ps(a); }
  static f asf(i a) { return _mm512_castsi512_ps(a); }
  static i asi(f a) { return _mm512_castps_si512(a); }
  static i add32(i a, i b) { return _mm512_add_epi32(a, b); }
  static i sub32(i a, i b) { return _mm512_sub_epi32(a, b); }
  static i and_(i a, i b) { return _mm512_and_si512(a, b); }
  static i minu32(i a, i b) { return _mm512_min_epu32(a, b); }
  static i u16to32(i a) { return _mm512_unpacklo_epi16(a, _mm512_setzero_si512()); }
  static i s16to32(i a) { return _mm512_srai_epi32(_mm512_unpacklo_epi16(a, a), 16); }
  static i packus32(i a, i b) { return _mm512_packus_epi32(a, b); }
  static i packs32(i a, i b) { return _mm512_packs_epi32(a, b); }
  template <int M>
  static i blend16(i a, i b) { return _mm512_mask_blend_epi16(static_cast<__mmask32>(M * 0x01010101u), a, b); }
  template <int N>
  static i bsrli(i a) { return _mm512_bsrli_epi128(a, N); }
};
#endif

// ---- channel vectors of interleaved pixels, four pixels per lane -------------
// Three samples: a = x0 y0 z0 x1, b = y1 z1 x2 y2, c = z2 x3 y3 z3.
inline void splitC3(F::f a, F::f b, F::f c, F::f& x, F::f& y, F::f& z) {
  x = F::permute<_MM_SHUFFLE(1, 2, 3, 0)>(F::blend<0b0010>(F::blend<0b0100>(a, b), c));  // x0 x3 x2 x1
  y = F::permute<_MM_SHUFFLE(2, 3, 0, 1)>(F::blend<0b0100>(F::blend<0b1001>(a, b), c));  // y1 y0 y3 y2
  z = F::permute<_MM_SHUFFLE(3, 0, 1, 2)>(F::blend<0b1001>(F::blend<0b0010>(a, b), c));  // z2 z1 z0 z3
}
inline void joinC3(F::f x, F::f y, F::f z, F::f& a, F::f& b, F::f& c) {
  const F::f px = F::permute<_MM_SHUFFLE(1, 2, 3, 0)>(x);  // x0 x3 x2 x1
  const F::f py = F::permute<_MM_SHUFFLE(2, 3, 0, 1)>(y);  // y1 y0 y3 y2
  const F::f pz = F::permute<_MM_SHUFFLE(3, 0, 1, 2)>(z);  // z2 z1 z0 z3
  a = F::blend<0b0100>(F::blend<0b0010>(px, py), pz);
  b = F::blend<0b0100>(F::blend<0b0010>(py, pz), px);
  c = F::blend<0b0100>(F::blend<0b0010>(pz, px), py);
}
// Four samples: a 4 x 4 transpose within each lane.
inline void transpose4(F::f& a, F::f& b, F::f& c, F::f& d) {
  const F::f t0 = F::unpacklo(a, b), t1 = F::unpacklo(c, d);  // a0 b0 a1 b1 | c0 d0 c1 d1
  const F::f t2 = F::unpackhi(a, b), t3 = F::unpackhi(c, d);
  a = F::movelh(t0, t1), b = F::movehl(t1, t0), c = F::movelh(t2, t3), d = F::movehl(t3, t2);
}

// Loading 4 * kLanes pixels as float channel vectors. T is float, uint16_t
// or int16_t; 16s samples come on their offset scale (s + 32768).
template <class T>
inline F::f widenF(F::i w) {
  if constexpr (std::is_same<T, uint16_t>::value) return F::cvt(F::u16to32(w));
  else return F::cvt(F::add32(F::s16to32(w), F::set32(32768)));
}
template <class T, int Ch>
inline void loadPx(const T* p, F::f& x, F::f& y, F::f& z) {
  constexpr int kBytes = 4 * Ch * static_cast<int>(sizeof(T));  // one lane's block
  F::f a, b, c, d;
  if constexpr (std::is_same<T, float>::value) {
    a = F::load<kBytes>(p), b = F::load<kBytes>(p + 4), c = F::load<kBytes>(p + 8);
    if constexpr (Ch == 4) d = F::load<kBytes>(p + 12);
  } else {
    a = widenF<T>(F::loadi8<kBytes>(p)), b = widenF<T>(F::loadi8<kBytes>(p + 4));
    c = widenF<T>(F::loadi8<kBytes>(p + 8));
    if constexpr (Ch == 4) d = widenF<T>(F::loadi8<kBytes>(p + 12));
  }
  if constexpr (Ch == 3) {
    splitC3(a, b, c, x, y, z);
  } else {
    transpose4(a, b, c, d);
    x = a, y = b, z = c;
  }
}

// Storing float channel vectors; an AC4 destination keeps its fourth sample.
template <int Ch>
inline void storePx(float* p, F::f x, F::f y, F::f z) {
  constexpr int kBytes = 4 * Ch * 4;
  if constexpr (Ch == 3) {
    F::f a, b, c;
    joinC3(x, y, z, a, b, c);
    F::store<kBytes>(p, a), F::store<kBytes>(p + 4, b), F::store<kBytes>(p + 8, c);
  } else {
    F::f w = F::zero();
    transpose4(x, y, z, w);
    F::store<kBytes>(p, F::blend<0b1000>(x, F::load<kBytes>(p)));
    F::store<kBytes>(p + 4, F::blend<0b1000>(y, F::load<kBytes>(p + 4)));
    F::store<kBytes>(p + 8, F::blend<0b1000>(z, F::load<kBytes>(p + 8)));
    F::store<kBytes>(p + 12, F::blend<0b1000>(w, F::load<kBytes>(p + 12)));
  }
}
// Storing 32-bit integer channel vectors as 16-bit samples, each value
// already within the sample's range or reduced by `pack`, which maps two
// vectors of double words to one of words (packus32 or packs32).
template <class T, int Ch, class Pack>
inline void storePx16(T* p, F::i x, F::i y, F::i z, Pack pack) {
  constexpr int kBytes = 4 * Ch * 2;
  if constexpr (Ch == 3) {
    F::f a, b, c;
    joinC3(F::asf(x), F::asf(y), F::asf(z), a, b, c);
    F::storei<kBytes>(p, pack(F::asi(a), F::asi(b)));
    F::storei8<kBytes>(p + 8, pack(F::asi(c), F::asi(c)));
  } else {
    F::f a = F::asf(x), b = F::asf(y), c = F::asf(z), d = F::zero();
    transpose4(a, b, c, d);
    // Words 3 and 7 of each 16-byte block are the alpha samples: kept.
    F::storei<kBytes>(p, F::blend16<0x88>(pack(F::asi(a), F::asi(b)), F::loadi<kBytes>(p)));
    F::storei<kBytes>(p + 8, F::blend16<0x88>(pack(F::asi(c), F::asi(d)), F::loadi<kBytes>(p + 8)));
  }
}

// Float limits as the scalar forms state them: lower bound first, then
// upper; a NaN passes through (operand order chosen for that).
inline F::f limit01(F::f v) { return F::min(F::set1(1.0f), F::max(F::zero(), v)); }

}  // namespace KEL_ISA_NS
}  // namespace kel
