// Vector bodies of the ordered dither and the 8-bit nearest level, the
// lane-wise forms of the scalar definitions (ordered.h, reduce.h). A chunk is
// four float vectors of samples: 16 samples with SSE4.1, 32 with AVX2.
// Samples are widened to 32-bit lanes; results are narrowed by signed then
// unsigned saturation (clip8 of the 32-bit value) or by unsigned saturation
// to 16 bits (sat16u), the 16s outputs then shifted by 32768 in their sign bit.
#include <algorithm>
#include <cstring>

#include "frame/simd.h"
#include "reduce/reduce.h"
#include "reduce/reduce_kernels.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

#if KEL_ISA == KEL_ISA_AVX2
using fv = __m256;
using iv = __m256i;
constexpr int kL = 8;
inline fv bytesToF(const uint8_t* p) {
  return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
}
inline fv ld(const float* p) { return _mm256_loadu_ps(p); }
inline fv set1(float x) { return _mm256_set1_ps(x); }
inline fv mul(fv a, fv b) { return _mm256_mul_ps(a, b); }
inline fv add(fv a, fv b) { return _mm256_add_ps(a, b); }
inline fv sub(fv a, fv b) { return _mm256_sub_ps(a, b); }
inline iv cvtt(fv a) { return _mm256_cvttps_epi32(a); }
inline fv cvt(iv a) { return _mm256_cvtepi32_ps(a); }
inline fv lt(fv a, fv b) { return _mm256_cmp_ps(a, b, _CMP_LT_OQ); }
inline fv andf(fv a, fv b) { return _mm256_and_ps(a, b); }
inline fv loadF(const Kel8u* p) { return bytesToF(p); }
inline fv loadF(const Kel16u* p) {
  return _mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
}
inline fv loadF(const Kel16s* p) {  // v + 32768
  const iv v = _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
  return _mm256_cvtepi32_ps(_mm256_add_epi32(v, _mm256_set1_epi32(32768)));
}
inline fv loadF(const Kel32f* p) { return _mm256_loadu_ps(p); }
inline iv sra8(iv a) { return _mm256_srai_epi32(a, 8); }
// Four vectors of 32-bit values as 16-bit samples, sat16u, then `flip`
// xored into each (0x8000 for 16s outputs).
inline void storeWords(void* d, const iv r[4], int flip) {
  const __m128i f = _mm_set1_epi16(static_cast<int16_t>(flip));
  for (int k = 0; k < 4; ++k) {
    const __m128i w = _mm_packus_epi32(_mm256_castsi256_si128(r[k]), _mm256_extracti128_si256(r[k], 1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(static_cast<char*>(d) + 16 * k), _mm_xor_si128(w, f));
  }
}
inline void storeBytes(uint8_t* d, const iv r[4]) {
  auto half = [](iv a) { return _mm_packs_epi32(_mm256_castsi256_si128(a), _mm256_extracti128_si256(a, 1)); };
  _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm_packus_epi16(half(r[0]), half(r[1])));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 16), _mm_packus_epi16(half(r[2]), half(r[3])));
}
#else
using fv = __m128;
using iv = __m128i;
constexpr int kL = 4;
inline fv bytesToF(const uint8_t* p) {
  int32_t v;
  std::memcpy(&v, p, 4);
  return _mm_cvtepi32_ps(_mm_cvtepu8_epi32(_mm_cvtsi32_si128(v)));
}
inline fv ld(const float* p) { return _mm_loadu_ps(p); }
inline fv set1(float x) { return _mm_set1_ps(x); }
inline fv mul(fv a, fv b) { return _mm_mul_ps(a, b); }
inline fv add(fv a, fv b) { return _mm_add_ps(a, b); }
inline fv sub(fv a, fv b) { return _mm_sub_ps(a, b); }
inline iv cvtt(fv a) { return _mm_cvttps_epi32(a); }
inline fv cvt(iv a) { return _mm_cvtepi32_ps(a); }
inline fv lt(fv a, fv b) { return _mm_cmplt_ps(a, b); }
inline fv andf(fv a, fv b) { return _mm_and_ps(a, b); }
inline fv loadF(const Kel8u* p) { return bytesToF(p); }
inline fv loadF(const Kel16u* p) {
  return _mm_cvtepi32_ps(_mm_cvtepu16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
}
inline fv loadF(const Kel16s* p) {  // v + 32768
  const iv v = _mm_cvtepi16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
  return _mm_cvtepi32_ps(_mm_add_epi32(v, _mm_set1_epi32(32768)));
}
inline fv loadF(const Kel32f* p) { return _mm_loadu_ps(p); }
inline iv sra8(iv a) { return _mm_srai_epi32(a, 8); }
inline void storeWords(void* d, const iv r[4], int flip) {
  const __m128i f = _mm_set1_epi16(static_cast<int16_t>(flip));
  for (int k = 0; k < 2; ++k)
    _mm_storeu_si128(reinterpret_cast<__m128i*>(static_cast<char*>(d) + 16 * k),
                     _mm_xor_si128(_mm_packus_epi32(r[2 * k], r[2 * k + 1]), f));
}
inline void storeBytes(uint8_t* d, const iv r[4]) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(d),
                   _mm_packus_epi16(_mm_packs_epi32(r[0], r[1]), _mm_packs_epi32(r[2], r[3])));
}
#endif
constexpr int kChunk = 4 * kL;

// Ordered dither: the thresholds repeat every 4 pixels (4p samples), so the
// vectors of a row need C = 4p / gcd(4p, lanes) distinct threshold vectors,
// kept in registers; a pass covers lcm(4, C) vectors, which always ends on a
// pixel boundary.
constexpr int gcd(int a, int b) { return b ? gcd(b, a % b) : a; }

// The store of a level q, before the final narrowing (trunc throughout:
// the noise-free ordered members never use the guarded cut).
template <class S, class D>
inline iv levelOut(fv q) {
  if constexpr (std::is_same_v<S, Kel32f>)
    return cvtt(mul(q, set1(sizeof(D) == 1 ? 255.0f : 65535.0f)));
  else if constexpr (sizeof(S) == 2 && sizeof(D) == 1)
    return sra8(cvtt(q));
  else
    return cvtt(q);
}

template <class S, class D, int P>
int64_t bayerP(const void* sv, void* dv, int64_t i, int64_t n, float step, float inv, const float* thr4) {
  const S* s = static_cast<const S*>(sv);
  D* d = static_cast<D*>(dv);
  constexpr int kPeriod = 4 * P;
  constexpr int kC = kPeriod / gcd(kPeriod, kL);
  constexpr int kPass = 4 * kC / gcd(4, kC);  // vectors per pass
  alignas(32) float t[kPeriod + kL];
  for (int j = 0; j < kPeriod + kL; ++j) t[j] = thr4[(j % kPeriod) / P];
  const int o0 = static_cast<int>(i % kPeriod);
  fv tv[kC];
  for (int m = 0; m < kC; ++m) tv[m] = ld(t + (o0 + m * kL) % kPeriod);
  const fv vstep = set1(step), vinv = set1(inv);
  const int64_t end = i + (n - i) / (kPass * kL) * (kPass * kL);
  for (; i < end; i += kPass * kL) {
    for (int g = 0; g < kPass / 4; ++g) {
      iv r[4];
      for (int k = 0; k < 4; ++k) {
        const fv w = loadF(s + i + (4 * g + k) * kL);
        const fv q = mul(cvt(cvtt(mul(w, vinv))), vstep);
        // q + (step or 0.0): q is float(int) * step with step > 0, never
        // -0.0, so adding 0.0 keeps it (a NaN w keeps q too: the
        // comparison with it is false).
        r[k] = levelOut<S, D>(add(q, andf(lt(tv[(4 * g + k) % kC], sub(w, q)), vstep)));
      }
      D* o = d + i + 4 * g * kL;
      if constexpr (sizeof(D) == 1)
        storeBytes(reinterpret_cast<uint8_t*>(o), r);
      else
        storeWords(o, r, std::is_same_v<D, Kel16s> ? 0x8000 : 0);
    }
  }
  return i;
}

// Thresholds given per sample.
template <class S, class D>
int64_t bayerT(const void* sv, void* dv, int64_t i, int64_t n, float step, float inv, const float* thr) {
  const S* s = static_cast<const S*>(sv);
  D* d = static_cast<D*>(dv);
  const fv vstep = set1(step), vinv = set1(inv);
  for (; i + kChunk <= n; i += kChunk) {
    iv r[4];
    for (int k = 0; k < 4; ++k) {
      const fv w = loadF(s + i + k * kL);
      const fv q = mul(cvt(cvtt(mul(w, vinv))), vstep);
      r[k] = levelOut<S, D>(add(q, andf(lt(ld(thr + i + k * kL), sub(w, q)), vstep)));
    }
    if constexpr (sizeof(D) == 1)
      storeBytes(reinterpret_cast<uint8_t*>(d + i), r);
    else
      storeWords(d + i, r, std::is_same_v<D, Kel16s> ? 0x8000 : 0);
  }
  return i;
}

template <class S, class D>
int64_t bayer(const void* s, void* d, int64_t i, int64_t n, int p, float step, float inv, const float* thr4) {
  if (p == 1) return bayerP<S, D, 1>(s, d, i, n, step, inv, thr4);
  if (p == 3) return bayerP<S, D, 3>(s, d, i, n, step, inv, thr4);
  return bayerP<S, D, 4>(s, d, i, n, step, inv, thr4);
}

int64_t nearest8u(const uint8_t* s, uint8_t* d, int64_t i, int64_t n, float L, float sv, float h) {
  const fv vL = set1(L), vs = set1(sv), vh = set1(h), k255 = set1(255.0f), kNorm = set1(0.003921569f);
  for (; i + kChunk <= n; i += kChunk) {
    iv r[4];
    for (int k = 0; k < 4; ++k) {
      const fv x = mul(bytesToF(s + i + k * kL), kNorm);
      const fv q = mul(vs, cvt(cvtt(mul(x, vL))));
      // q + (s or 0.0): q is never -0.0, so adding 0.0 keeps it.
      r[k] = cvtt(mul(add(q, andf(lt(vh, sub(x, q)), vs)), k255));
    }
    storeBytes(d + i, r);
  }
  return i;
}

#if KEL_ISA == KEL_ISA_AVX2
// The 8u ordered dither as a table look-up, on processors with AVX-512 VBMI
// (the caller checks). Each of the four column phases has its 256 outputs in
// four registers. A two-register byte permute looks up 128 entries by the
// low 7 bits of each sample; merged into the sample vector itself under the
// mask of one phase and one half (bit 7), it replaces exactly the lanes of
// that phase and half, whose index is still the source sample: after the
// eight permutes every lane has been replaced once.
#define KEL_WIDE_TARGET __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi")))
KEL_WIDE_TARGET inline __m512i bayerLook(const __m512i (&t)[16], __m512i v, const __mmask64 (&ph)[4]) {
  const __mmask64 top = _mm512_movepi8_mask(v);
  __m512i r = v;
  for (int j = 0; j < 4; ++j) {
    r = _mm512_mask2_permutex2var_epi8(t[4 * j], r, _kandn_mask64(top, ph[j]), t[4 * j + 1]);
    r = _mm512_mask2_permutex2var_epi8(t[4 * j + 2], r, _kand_mask64(top, ph[j]), t[4 * j + 3]);
  }
  return r;
}
// Lane masks of the column phases for the three vector positions of a
// 192-byte period (a whole number of pixel periods for p = 1, 3 and 4).
struct PhaseMasks {
  __mmask64 m[3][4];
  constexpr explicit PhaseMasks(int p) : m{} {
    for (int v = 0; v < 3; ++v)
      for (int j = 0; j < 64; ++j) m[v][((64 * v + j) / p) & 3] |= __mmask64{1} << j;
  }
};
inline constexpr PhaseMasks kPhaseMasks[3] = {PhaseMasks(1), PhaseMasks(3), PhaseMasks(4)};

template <bool AC4>
KEL_WIDE_TARGET int64_t bayerLutRow(const uint8_t* s, uint8_t* d, int64_t n, int p, const uint8_t* table) {
  __m512i t[16];
  for (int k = 0; k < 16; ++k) t[k] = _mm512_loadu_si512(table + 64 * k);
  const __mmask64(&ph)[3][4] = kPhaseMasks[p == 1 ? 0 : (p == 3 ? 1 : 2)].m;
  constexpr __mmask64 keep = AC4 ? 0x7777777777777777ull : ~0ull;
  int64_t i = 0;
  for (; i + 192 <= n; i += 192)
    for (int m = 0; m < 3; ++m) {
      const __m512i r = bayerLook(t, _mm512_loadu_si512(s + i + 64 * m), ph[m]);
      if constexpr (AC4)
        _mm512_mask_storeu_epi8(d + i + 64 * m, keep, r);
      else
        _mm512_storeu_si512(d + i + 64 * m, r);
    }
  // The rest in vectors, the last one masked (masked loads and stores touch
  // no byte outside their mask).
  for (int m = 0; i < n; i += 64, ++m) {
    const __mmask64 in = n - i >= 64 ? ~0ull : (~0ull >> (64 - (n - i)));
    const __m512i r = bayerLook(t, _mm512_maskz_loadu_epi8(in, s + i), ph[m]);
    _mm512_mask_storeu_epi8(d + i, in & keep, r);
  }
  return n;
}
int64_t bayerLut8u(const uint8_t* s, uint8_t* d, int64_t n, int p, bool ac4, const uint8_t* table) {
  return ac4 ? bayerLutRow<true>(s, d, n, p, table) : bayerLutRow<false>(s, d, n, p, table);
}

// Floyd-Steinberg 8u, sixteen rows in the lanes of one vector. At step t,
// lane r holds pixel x = t - 2r of its row (active while 0 <= x < w). Its
// neighbours in the row above (row r - 1, lane r - 1) were decided at steps
// t - 1 (x + 1), t - 2 (x) and t - 3 (x - 1): the error vector of the step
// before, moved up one lane with lane 0 taken from the error row above the
// group, is the "above right" vector of this step and the "above" and "above
// left" vectors of the next two. Inactive lanes carry error 0, which is what
// the margins and the cells left of column 0 hold in the scalar form. Each
// lane computes fsPixel's operations in its order (the level through the
// same truncation, the error of the chosen level). Samples go through
// skewed buffers: byte t * 16 + r holds pixel t - 2r of row r.
// (GCC 12 takes the undefined upper operands inside some AVX-512 intrinsics
// for uninitialised values.)
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
template <bool Noise>
__attribute__((target("avx512f,avx512bw,avx512vl"))) void fs8u16Run(const FsGroup16& g) {
  const int w = g.w, p = g.p, steps = w + 30;
  uint8_t* in = g.skew;
  uint8_t* out = g.skew + fsSkewBytes(w);
  std::memset(in, 0, static_cast<size_t>(fsSkewBytes(w)));
  for (int r = 0; r < 16; ++r) {
    const uint8_t* s = g.s[r];
    uint8_t* k = in + 32 * r + r;
    for (int x = 0; x < w; ++x) k[16 * x] = s[static_cast<ptrdiff_t>(x) * p];
  }
  float* above = g.above;
  const __m512 k3 = _mm512_set1_ps(3.0f), k5 = _mm512_set1_ps(5.0f), k7 = _mm512_set1_ps(7.0f),
               k16 = _mm512_set1_ps(0.0625f), inv = _mm512_set1_ps(g.inv), step = _mm512_set1_ps(g.step),
               half = _mm512_set1_ps(g.half), top = _mm512_set1_ps(255.0f), zero = _mm512_setzero_ps();
  const __m512i lane2 = _mm512_set_epi32(30, 28, 26, 24, 22, 20, 18, 16, 14, 12, 10, 8, 6, 4, 2, 0);
  const __m512i vw = _mm512_set1_epi32(w), k255 = _mm512_set1_epi32(255), izero = _mm512_setzero_si512();
  const __m512i colPick = _mm512_sub_epi32(_mm512_set1_epi32(30), lane2), k1023 = _mm512_set1_epi32(1023);
  const __m512i y2 = _mm512_loadu_si512(g.y2);
  // Errors of step t - 1 and the above vectors of steps t - 1 and t - 2.
  __m512 e = zero;
  __m512 pAbove = _mm512_castsi512_ps(
      _mm512_alignr_epi32(_mm512_setzero_si512(), _mm512_castps_si512(_mm512_set1_ps(above[0])), 15));
  __m512 pAboveLeft = _mm512_castsi512_ps(
      _mm512_alignr_epi32(_mm512_setzero_si512(), _mm512_castps_si512(_mm512_set1_ps(above[-1])), 15));
  for (int t = 0; t < steps; ++t) {
    const __m512 right = _mm512_castsi512_ps(
        _mm512_alignr_epi32(_mm512_castps_si512(e), _mm512_castps_si512(_mm512_set1_ps(above[std::min(t + 1, w)])), 15));
    const __m512 sum = _mm512_add_ps(
        _mm512_add_ps(_mm512_add_ps(_mm512_mul_ps(k3, right), pAboveLeft), _mm512_mul_ps(k5, pAbove)),
        _mm512_mul_ps(k7, e));
    const __m512 work = _mm512_cvtepi32_ps(_mm512_cvtepu8_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 16 * t))));
    const __m512 a = _mm512_add_ps(work, _mm512_mul_ps(sum, k16));
    const __m512 q = _mm512_mul_ps(_mm512_cvtepi32_ps(_mm512_cvttps_epi32(_mm512_mul_ps(a, inv))), step);
    const __m512 stay = _mm512_sub_ps(a, q);
    __m512 thr = half;
    if constexpr (Noise) {
      // colBase[t - 2r] for lane r out of the 32 values from t - 30 on.
      const __m512i cols = _mm512_permutex2var_epi32(_mm512_loadu_si512(g.colBase + t - 30), colPick,
                                                     _mm512_loadu_si512(g.colBase + t - 14));
      thr = _mm512_i32gather_ps(_mm512_and_si512(_mm512_add_epi32(cols, y2), k1023), g.noiseF, 4);
    }
    const __mmask16 up = _mm512_cmp_ps_mask(thr, stay, _CMP_LT_OQ);
    const __m512 qUp = _mm512_add_ps(q, step);
    const __m512 level = _mm512_mask_blend_ps(up, q, qUp);
    const __m512 err = _mm512_mask_blend_ps(up, stay, _mm512_sub_ps(a, qUp));
    const __mmask16 satTop = _mm512_cmp_ps_mask(a, top, _CMP_GE_OQ), satBottom = _mm512_cmp_ps_mask(a, zero, _CMP_LT_OQ);
    const __mmask16 active = _mm512_cmplt_epu32_mask(_mm512_sub_epi32(_mm512_set1_epi32(t), lane2), vw);
    const __m512 en = _mm512_maskz_mov_ps(active & ~(satTop | satBottom), err);
    __m512i o = _mm512_max_epi32(_mm512_min_epi32(_mm512_cvttps_epi32(level), k255), izero);
    o = _mm512_mask_mov_epi32(o, satTop, k255);
    o = _mm512_mask_mov_epi32(o, satBottom, izero);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 16 * t), _mm512_cvtepi32_epi8(o));
    if (t >= 30) {  // row 15's error, for the rows after the group
      const __m128 hi = _mm512_extractf32x4_ps(en, 3);
      _mm_store_ss(above + (t - 30), _mm_shuffle_ps(hi, hi, 3));
    }
    pAboveLeft = pAbove;
    pAbove = right;
    e = en;
  }
  for (int r = 0; r < 16; ++r) {
    uint8_t* d = g.d[r];
    const uint8_t* k = out + 32 * r + r;
    for (int x = 0; x < w; ++x) d[static_cast<ptrdiff_t>(x) * p] = k[16 * x];
  }
}
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
void fs8u16(const FsGroup16& g) { g.noiseF ? fs8u16Run<true>(g) : fs8u16Run<false>(g); }
#undef KEL_WIDE_TARGET
#endif

}  // namespace

extern const ReduceKernels kReduceKernels = {
    {bayer<Kel8u, Kel8u>, bayer<Kel16u, Kel16u>, bayer<Kel16s, Kel16s>, bayer<Kel16u, Kel8u>, bayer<Kel16s, Kel8u>,
     bayer<Kel32f, Kel8u>, bayer<Kel32f, Kel16u>, bayer<Kel32f, Kel16s>},
    {bayerT<Kel8u, Kel8u>, bayerT<Kel16u, Kel16u>, bayerT<Kel16s, Kel16s>, bayerT<Kel16u, Kel8u>,
     bayerT<Kel16s, Kel8u>, bayerT<Kel32f, Kel8u>, bayerT<Kel32f, Kel16u>, bayerT<Kel32f, Kel16s>},
    nearest8u,
#if KEL_ISA == KEL_ISA_AVX2
    bayerLut8u, fs8u16,
#else
    nullptr, nullptr,
#endif
};

}  // namespace KEL_ISA_NS
}  // namespace kel
