// Vector bodies of the 8-bit ordered dither and nearest level, the lane-wise
// forms of the scalar definitions (ordered.h, reduce.h). A chunk is four
// float vectors of samples: 16 samples with SSE4.1, 32 with AVX2; bytes are
// widened to 32-bit lanes, and the results narrowed by signed then unsigned
// saturation, which is clip8 of the 32-bit value.
#include <cstring>

#include "frame/simd.h"
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
inline fv pick(fv no, fv yes, fv m) { return _mm256_blendv_ps(no, yes, m); }
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
inline fv pick(fv no, fv yes, fv m) { return _mm_blendv_ps(no, yes, m); }
inline void storeBytes(uint8_t* d, const iv r[4]) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(d),
                   _mm_packus_epi16(_mm_packs_epi32(r[0], r[1]), _mm_packs_epi32(r[2], r[3])));
}
#endif
constexpr int kChunk = 4 * kL;

// Ordered dither: the thresholds repeat every 4 pixels (4p samples); a
// table of one period plus one vector gives the thresholds of any vector by
// its offset in the period.
int64_t bayer8u(const uint8_t* s, uint8_t* d, int64_t i, int64_t n, int p, float step, float inv, const float* thr4) {
  const int period = 4 * p;
  alignas(32) float t[16 + kL];
  for (int j = 0; j < period + kL; ++j) t[j] = thr4[(j % period) / p];
  const fv vstep = set1(step), vinv = set1(inv);
  int o = static_cast<int>(i % period);
  // Stop on a pixel boundary: whole runs of p chunks for three samples.
  const int64_t unit = p == 3 ? 3 * kChunk : kChunk;
  const int64_t end = i + (n - i) / unit * unit;
  for (; i < end; i += kChunk) {
    iv r[4];
    for (int k = 0; k < 4; ++k) {
      const fv w = bytesToF(s + i + k * kL);
      const fv q = mul(cvt(cvtt(mul(w, vinv))), vstep);
      const fv up = lt(ld(t + o), sub(w, q));
      r[k] = cvtt(pick(q, add(q, vstep), up));
      o += kL;
      while (o >= period) o -= period;
    }
    storeBytes(d + i, r);
  }
  return i;
}

int64_t nearest8u(const uint8_t* s, uint8_t* d, int64_t i, int64_t n, float L, float sv, float h) {
  const fv vL = set1(L), vs = set1(sv), vh = set1(h), k255 = set1(255.0f), kNorm = set1(0.003921569f);
  for (; i + kChunk <= n; i += kChunk) {
    iv r[4];
    for (int k = 0; k < 4; ++k) {
      const fv x = mul(bytesToF(s + i + k * kL), kNorm);
      const fv q = mul(vs, cvt(cvtt(mul(x, vL))));
      const fv up = lt(vh, sub(x, q));
      r[k] = cvtt(mul(pick(q, add(q, vs), up), k255));
    }
    storeBytes(d + i, r);
  }
  return i;
}

}  // namespace

extern const ReduceKernels kReduceKernels = {bayer8u, nearest8u};

}  // namespace KEL_ISA_NS
}  // namespace kel
