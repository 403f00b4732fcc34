// Vector words for the per-ISA kernel files.
//
// A kernel file defines KEL_ISA to one of KEL_ISA_SSE41, KEL_ISA_AVX2 and
// KEL_ISA_AVX512 and includes this header; it gets namespace kel::<isa> with
// the struct V of vector words, and writes its kernels inside that namespace.
//
// The vector is seen as lanes of 16 bytes (1 for SSE4.1, 2 for AVX2, 4 for
// AVX-512). Shuffles, packs and unpacks act within a lane, as the hardware
// does, and loads and stores place one 16-byte block per lane with a fixed
// distance between the blocks. A kernel therefore treats one block of 16
// pixels per lane and is written once for every width: the AVX2 build does
// two blocks a pass, the AVX-512 build four.
//
// Only kernel sources that ask for it are built for AVX-512 (a line
// "// kelcc-isa: avx512" in the .inl; see the top-level CMakeLists.txt):
// their families' dispatch passes the AVX-512 table, the others stay on
// AVX2 on such a processor.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "frame/pixel3.h"

#define KEL_ISA_SSE41 1
#define KEL_ISA_AVX2 2
#define KEL_ISA_AVX512 3

#if !defined(KEL_ISA)
#error "define KEL_ISA before including frame/simd.h"
#endif

#if KEL_ISA == KEL_ISA_SSE41
#define KEL_ISA_NS sse41
#elif KEL_ISA == KEL_ISA_AVX2
#define KEL_ISA_NS avx2
#elif KEL_ISA == KEL_ISA_AVX512
#define KEL_ISA_NS avx512
#endif

namespace kel {
namespace KEL_ISA_NS {

#if KEL_ISA == KEL_ISA_SSE41
struct V {
  using v = __m128i;
  static constexpr int kLanes = 1;

  // One 16-byte block per lane, lane i at p + i * Stride.
  template <int Stride>
  static v load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
  template <int Stride>
  static v loadA(const void* p) { return _mm_load_si128(static_cast<const __m128i*>(p)); }
  template <int Stride>
  static void store(void* p, v x) { _mm_storeu_si128(static_cast<__m128i*>(p), x); }
  template <int Stride>
  static void storeA(void* p, v x) { _mm_store_si128(static_cast<__m128i*>(p), x); }
  template <int Stride>
  static void stream(void* p, v x) { _mm_stream_si128(static_cast<__m128i*>(p), x); }
  // 8 bytes per lane into the low half; store of the low half.
  template <int Stride>
  static v load8(const void* p) { return _mm_loadl_epi64(static_cast<const __m128i*>(p)); }
  template <int Stride>
  static void store8(void* p, v x) { _mm_storel_epi64(static_cast<__m128i*>(p), x); }
  // 4 bytes per lane into the low quarter; store of the low quarter.
  template <int Stride>
  static v load4(const void* p) {
    int32_t x;
    __builtin_memcpy(&x, p, 4);
    return _mm_cvtsi32_si128(x);
  }
  template <int Stride>
  static void store4(void* p, v x) {
    const int32_t y = _mm_cvtsi128_si32(x);
    __builtin_memcpy(p, &y, 4);
  }
  // The low 8 bytes of every lane to lo, the high 8 bytes to hi, each side
  // contiguous (8 * kLanes bytes).
  static void storeHalves(void* lo, void* hi, v x) {
    _mm_storel_epi64(static_cast<__m128i*>(lo), x);
    _mm_storel_epi64(static_cast<__m128i*>(hi), _mm_unpackhi_epi64(x, x));
  }
  // The same 16 bytes in every lane.
  static v bcast(const void* p16) { return _mm_loadu_si128(static_cast<const __m128i*>(p16)); }
  // 16 * kLanes contiguous bytes with the 8-byte quarters in the order
  // 0, 2 | 1, 3 (one lane: as they are). Four in-lane 2:1 steps (two packs,
  // then unpacks) on such words give results in source order per lane pair.
  static v loadQ0213(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }

  static v zero() { return _mm_setzero_si128(); }
  static v set8(int x) { return _mm_set1_epi8(static_cast<char>(x)); }
  static v set16(int x) { return _mm_set1_epi16(static_cast<short>(x)); }
  static v set32(int x) { return _mm_set1_epi32(x); }

  static v or_(v a, v b) { return _mm_or_si128(a, b); }
  static v and_(v a, v b) { return _mm_and_si128(a, b); }
  static v andnot(v a, v b) { return _mm_andnot_si128(a, b); }
  static v xor_(v a, v b) { return _mm_xor_si128(a, b); }
  static v shuffle8(v a, v m) { return _mm_shuffle_epi8(a, m); }
  static v blend8(v a, v b, v m) { return _mm_blendv_epi8(a, b, m); }
  template <int N>
  static v alignr(v hi, v lo) { return _mm_alignr_epi8(hi, lo, N); }
  template <int N>
  static v bsrli(v a) { return _mm_srli_si128(a, N); }
  template <int N>
  static v bslli(v a) { return _mm_slli_si128(a, N); }

  static v unpacklo8(v a, v b) { return _mm_unpacklo_epi8(a, b); }
  static v unpackhi8(v a, v b) { return _mm_unpackhi_epi8(a, b); }
  static v unpacklo16(v a, v b) { return _mm_unpacklo_epi16(a, b); }
  static v unpackhi16(v a, v b) { return _mm_unpackhi_epi16(a, b); }
  static v unpacklo32(v a, v b) { return _mm_unpacklo_epi32(a, b); }
  static v unpackhi32(v a, v b) { return _mm_unpackhi_epi32(a, b); }
  static v unpacklo64(v a, v b) { return _mm_unpacklo_epi64(a, b); }
  static v unpackhi64(v a, v b) { return _mm_unpackhi_epi64(a, b); }
  // Lane i of a and lane i of b side by side, in lane order: lo holds the
  // first kLanes of those blocks, hi the rest (one lane: lo = a, hi = b).
  // Results of in-lane unpacks so become contiguous runs of bytes.
  static void interleaveLanes(v a, v b, v& lo, v& hi) { lo = a, hi = b; }
  // 4-byte units 0 and 1 of a, then 2 and 3 of b, each picked by two bits
  // of Imm per lane (shufps).
  template <int Imm>
  static v shuffle2x32(v a, v b) {
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), Imm));
  }
  // Contiguous loads of 16 * kLanes bytes deal their 16-byte blocks to the
  // lanes in turn; after in-lane narrowing to one 4-byte unit per block,
  // this puts the units back in memory order (one lane: nothing to do).
  static v zip32Lanes(v x) { return x; }
  static v packus16(v a, v b) { return _mm_packus_epi16(a, b); }
  static v packs16(v a, v b) { return _mm_packs_epi16(a, b); }
  static v packs32(v a, v b) { return _mm_packs_epi32(a, b); }
  static v packus32(v a, v b) { return _mm_packus_epi32(a, b); }

  static v add8(v a, v b) { return _mm_add_epi8(a, b); }
  static v sub8(v a, v b) { return _mm_sub_epi8(a, b); }
  static v maxu8(v a, v b) { return _mm_max_epu8(a, b); }
  static v minu8(v a, v b) { return _mm_min_epu8(a, b); }
  static v avg8(v a, v b) { return _mm_avg_epu8(a, b); }
  static v add16(v a, v b) { return _mm_add_epi16(a, b); }
  static v sub16(v a, v b) { return _mm_sub_epi16(a, b); }
  static v adds16(v a, v b) { return _mm_adds_epi16(a, b); }
  static v subs16(v a, v b) { return _mm_subs_epi16(a, b); }
  static v addus16(v a, v b) { return _mm_adds_epu16(a, b); }
  static v mulhs(v a, v b) { return _mm_mulhi_epi16(a, b); }
  static v mulhu(v a, v b) { return _mm_mulhi_epu16(a, b); }
  static v mulhr(v a, v b) { return _mm_mulhrs_epi16(a, b); }
  static v mullo16(v a, v b) { return _mm_mullo_epi16(a, b); }
  static v madd16(v a, v b) { return _mm_madd_epi16(a, b); }
  // Unsigned bytes of a times signed bytes of b, adjacent products summed (saturating) to 16 bits.
  static v maddubs(v a, v b) { return _mm_maddubs_epi16(a, b); }
  static v min16(v a, v b) { return _mm_min_epi16(a, b); }
  static v max16(v a, v b) { return _mm_max_epi16(a, b); }
  static v minu16(v a, v b) { return _mm_min_epu16(a, b); }
  static v avg16(v a, v b) { return _mm_avg_epu16(a, b); }
  template <int N>
  static v slli16(v a) { return _mm_slli_epi16(a, N); }
  template <int N>
  static v srli16(v a) { return _mm_srli_epi16(a, N); }
  template <int N>
  static v srai16(v a) { return _mm_srai_epi16(a, N); }
  static v add32(v a, v b) { return _mm_add_epi32(a, b); }
  static v sub32(v a, v b) { return _mm_sub_epi32(a, b); }
  static v mullo32(v a, v b) { return _mm_mullo_epi32(a, b); }
  template <int N>
  static v slli32(v a) { return _mm_slli_epi32(a, N); }
  template <int N>
  static v srli32(v a) { return _mm_srli_epi32(a, N); }
  template <int N>
  static v srai32(v a) { return _mm_srai_epi32(a, N); }
  static v cmpeq8(v a, v b) { return _mm_cmpeq_epi8(a, b); }
  static v cmpgt16(v a, v b) { return _mm_cmpgt_epi16(a, b); }
  static v cvt8to16(v a) { return _mm_cvtepu8_epi16(a); }  // low 8 bytes per lane
};
#elif KEL_ISA == KEL_ISA_AVX2
struct V {
  using v = __m256i;
  static constexpr int kLanes = 2;

  template <int Stride>
  static v load(const void* p) {
    const char* c = static_cast<const char*>(p);
    if constexpr (Stride == 16) {
      return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(c));
    } else {
      return _mm256_inserti128_si256(
          _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(c))),
          _mm_loadu_si128(reinterpret_cast<const __m128i*>(c + Stride)), 1);
    }
  }
  template <int Stride>
  static v loadA(const void* p) {
    if constexpr (Stride == 16) return _mm256_load_si256(static_cast<const __m256i*>(p));
    else return load<Stride>(p);
  }
  template <int Stride>
  static void store(void* p, v x) {
    char* c = static_cast<char*>(p);
    if constexpr (Stride == 16) {
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(c), x);
    } else {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(c), _mm256_castsi256_si128(x));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(c + Stride), _mm256_extracti128_si256(x, 1));
    }
  }
  template <int Stride>
  static void storeA(void* p, v x) {
    if constexpr (Stride == 16) _mm256_store_si256(static_cast<__m256i*>(p), x);
    else store<Stride>(p, x);
  }
  template <int Stride>
  static void stream(void* p, v x) {
    char* c = static_cast<char*>(p);
    if constexpr (Stride == 16) {
      if ((reinterpret_cast<uintptr_t>(c) & 31) == 0) {
        _mm256_stream_si256(reinterpret_cast<__m256i*>(c), x);
        return;
      }
    }
    _mm_stream_si128(reinterpret_cast<__m128i*>(c), _mm256_castsi256_si128(x));
    _mm_stream_si128(reinterpret_cast<__m128i*>(c + Stride), _mm256_extracti128_si256(x, 1));
  }
  template <int Stride>
  static v load8(const void* p) {
    const char* c = static_cast<const char*>(p);
    return _mm256_inserti128_si256(
        _mm256_castsi128_si256(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(c))),
        _mm_loadl_epi64(reinterpret_cast<const __m128i*>(c + Stride)), 1);
  }
  template <int Stride>
  static void store8(void* p, v x) {
    char* c = static_cast<char*>(p);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c), _mm256_castsi256_si128(x));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c + Stride), _mm256_extracti128_si256(x, 1));
  }
  template <int Stride>
  static v load4(const void* p) {
    const char* c = static_cast<const char*>(p);
    int32_t a, b;
    __builtin_memcpy(&a, c, 4);
    __builtin_memcpy(&b, c + Stride, 4);
    return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_cvtsi32_si128(a)), _mm_cvtsi32_si128(b), 1);
  }
  template <int Stride>
  static void store4(void* p, v x) {
    char* c = static_cast<char*>(p);
    const int32_t a = _mm_cvtsi128_si32(_mm256_castsi256_si128(x)), b = _mm_cvtsi128_si32(_mm256_extracti128_si256(x, 1));
    __builtin_memcpy(c, &a, 4);
    __builtin_memcpy(c + Stride, &b, 4);
  }
  static void storeHalves(void* lo, void* hi, v x) {
    const __m256i q = _mm256_permute4x64_epi64(x, 0xD8);
    _mm_storeu_si128(static_cast<__m128i*>(lo), _mm256_castsi256_si128(q));
    _mm_storeu_si128(static_cast<__m128i*>(hi), _mm256_extracti128_si256(q, 1));
  }
  static v bcast(const void* p16) {
    return _mm256_broadcastsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(p16)));
  }
  static v loadQ0213(const void* p) {
    return _mm256_permute4x64_epi64(_mm256_loadu_si256(static_cast<const __m256i*>(p)), 0xD8);
  }

  static v zero() { return _mm256_setzero_si256(); }
  static v set8(int x) { return _mm256_set1_epi8(static_cast<char>(x)); }
  static v set16(int x) { return _mm256_set1_epi16(static_cast<short>(x)); }
  static v set32(int x) { return _mm256_set1_epi32(x); }

  static v or_(v a, v b) { return _mm256_or_si256(a, b); }
  static v and_(v a, v b) { return _mm256_and_si256(a, b); }
  static v andnot(v a, v b) { return _mm256_andnot_si256(a, b); }
  static v xor_(v a, v b) { return _mm256_xor_si256(a, b); }
  static v shuffle8(v a, v m) { return _mm256_shuffle_epi8(a, m); }
  static v blend8(v a, v b, v m) { return _mm256_blendv_epi8(a, b, m); }
  template <int N>
  static v alignr(v hi, v lo) { return _mm256_alignr_epi8(hi, lo, N); }
  template <int N>
  static v bsrli(v a) { return _mm256_bsrli_epi128(a, N); }
  template <int N>
  static v bslli(v a) { return _mm256_bslli_epi128(a, N); }

  static v unpacklo8(v a, v b) { return _mm256_unpacklo_epi8(a, b); }
  static v unpackhi8(v a, v b) { return _mm256_unpackhi_epi8(a, b); }
  static v unpacklo16(v a, v b) { return _mm256_unpacklo_epi16(a, b); }
  static v unpackhi16(v a, v b) { return _mm256_unpackhi_epi16(a, b); }
  static v unpacklo32(v a, v b) { return _mm256_unpacklo_epi32(a, b); }
  static v unpackhi32(v a, v b) { return _mm256_unpackhi_epi32(a, b); }
  static v unpacklo64(v a, v b) { return _mm256_unpacklo_epi64(a, b); }
  static v unpackhi64(v a, v b) { return _mm256_unpackhi_epi64(a, b); }
  static void interleaveLanes(v a, v b, v& lo, v& hi) {
    lo = _mm256_permute2x128_si256(a, b, 0x20);
    hi = _mm256_permute2x128_si256(a, b, 0x31);
  }
  template <int Imm>
  static v shuffle2x32(v a, v b) {
    return _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), Imm));
  }
  static v zip32Lanes(v x) { return _mm256_permutevar8x32_epi32(x, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7)); }
  static v packus16(v a, v b) { return _mm256_packus_epi16(a, b); }
  static v packs16(v a, v b) { return _mm256_packs_epi16(a, b); }
  static v packs32(v a, v b) { return _mm256_packs_epi32(a, b); }
  static v packus32(v a, v b) { return _mm256_packus_epi32(a, b); }

  static v add8(v a, v b) { return _mm256_add_epi8(a, b); }
  static v sub8(v a, v b) { return _mm256_sub_epi8(a, b); }
  static v maxu8(v a, v b) { return _mm256_max_epu8(a, b); }
  static v minu8(v a, v b) { return _mm256_min_epu8(a, b); }
  static v avg8(v a, v b) { return _mm256_avg_epu8(a, b); }
  static v add16(v a, v b) { return _mm256_add_epi16(a, b); }
  static v sub16(v a, v b) { return _mm256_sub_epi16(a, b); }
  static v adds16(v a, v b) { return _mm256_adds_epi16(a, b); }
  static v subs16(v a, v b) { return _mm256_subs_epi16(a, b); }
  static v addus16(v a, v b) { return _mm256_adds_epu16(a, b); }
  static v mulhs(v a, v b) { return _mm256_mulhi_epi16(a, b); }
  static v mulhu(v a, v b) { return _mm256_mulhi_epu16(a, b); }
  static v mulhr(v a, v b) { return _mm256_mulhrs_epi16(a, b); }
  static v mullo16(v a, v b) { return _mm256_mullo_epi16(a, b); }
  static v madd16(v a, v b) { return _mm256_madd_epi16(a, b); }
  static v maddubs(v a, v b) { return _mm256_maddubs_epi16(a, b); }
  static v min16(v a, v b) { return _mm256_min_epi16(a, b); }
  static v max16(v a, v b) { return _mm256_max_epi16(a, b); }
  static v minu16(v a, v b) { return _mm256_min_epu16(a, b); }
  static v avg16(v a, v b) { return _mm256_avg_epu16(a, b); }
  template <int N>
  static v slli16(v a) { return _mm256_slli_epi16(a, N); }
  template <int N>
  static v srli16(v a) { return _mm256_srli_epi16(a, N); }
  template <int N>
  static v srai16(v a) { return _mm256_srai_epi16(a, N); }
  static v add32(v a, v b) { return _mm256_add_epi32(a, b); }
  static v sub32(v a, v b) { return _mm256_sub_epi32(a, b); }
  static v mullo32(v a, v b) { return _mm256_mullo_epi32(a, b); }
  template <int N>
  static v slli32(v a) { return _mm256_slli_epi32(a, N); }
  template <int N>
  static v srli32(v a) { return _mm256_srli_epi32(a, N); }
  template <int N>
  static v srai32(v a) { return _mm256_srai_epi32(a, N); }
  static v cmpeq8(v a, v b) { return _mm256_cmpeq_epi8(a, b); }
  static v cmpgt16(v a, v b) { return _mm256_cmpgt_epi16(a, b); }
};
#elif KEL_ISA == KEL_ISA_AVX512
// Four lanes (AVX-512 F, BW, VL). Comparisons give vectors of all-ones or
// zero elements as in the narrower paths (through the mask registers), and
// byte blends read the top bit of each mask byte as pblendvb does.
struct V {
  using v = __m512i;
  static constexpr int kLanes = 4;

  static v join4(__m128i a, __m128i b, __m128i c, __m128i d) {
    return _mm512_inserti32x4(_mm512_inserti32x4(_mm512_inserti32x4(_mm512_castsi128_si512(a), b, 1), c, 2), d, 3);
  }
  template <int K>
  static __m128i lane(v x) { return _mm512_extracti32x4_epi32(x, K); }

  template <int Stride>
  static v load(const void* p) {
    const char* c = static_cast<const char*>(p);
    if constexpr (Stride == 16) {
      return _mm512_loadu_si512(c);
    } else {
      auto l = [&](int k) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(c + k * Stride)); };
      return join4(l(0), l(1), l(2), l(3));
    }
  }
  // The 16-byte alignment the narrower paths ask for does not make 64: an
  // unaligned load, which costs nothing on aligned data.
  template <int Stride>
  static v loadA(const void* p) { return load<Stride>(p); }
  template <int Stride>
  static void store(void* p, v x) {
    char* c = static_cast<char*>(p);
    if constexpr (Stride == 16) {
      _mm512_storeu_si512(c, x);
    } else {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(c), lane<0>(x));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(c + Stride), lane<1>(x));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(c + 2 * Stride), lane<2>(x));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(c + 3 * Stride), lane<3>(x));
    }
  }
  template <int Stride>
  static void storeA(void* p, v x) { store<Stride>(p, x); }
  template <int Stride>
  static void stream(void* p, v x) {
    char* c = static_cast<char*>(p);
    if constexpr (Stride == 16) {
      if ((reinterpret_cast<uintptr_t>(c) & 63) == 0) {
        _mm512_stream_si512(reinterpret_cast<__m512i*>(c), x);
        return;
      }
    }
    _mm_stream_si128(reinterpret_cast<__m128i*>(c), lane<0>(x));
    _mm_stream_si128(reinterpret_cast<__m128i*>(c + Stride), lane<1>(x));
    _mm_stream_si128(reinterpret_cast<__m128i*>(c + 2 * Stride), lane<2>(x));
    _mm_stream_si128(reinterpret_cast<__m128i*>(c + 3 * Stride), lane<3>(x));
  }
  template <int Stride>
  static v load8(const void* p) {
    const char* c = static_cast<const char*>(p);
    auto l = [&](int k) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(c + k * Stride)); };
    return join4(l(0), l(1), l(2), l(3));
  }
  template <int Stride>
  static void store8(void* p, v x) {
    char* c = static_cast<char*>(p);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c), lane<0>(x));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c + Stride), lane<1>(x));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c + 2 * Stride), lane<2>(x));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(c + 3 * Stride), lane<3>(x));
  }
  template <int Stride>
  static v load4(const void* p) {
    const char* c = static_cast<const char*>(p);
    auto l = [&](int k) {
      int32_t a;
      __builtin_memcpy(&a, c + k * Stride, 4);
      return _mm_cvtsi32_si128(a);
    };
    return join4(l(0), l(1), l(2), l(3));
  }
  template <int Stride>
  static void store4(void* p, v x) {
    char* c = static_cast<char*>(p);
    const int32_t a = _mm_cvtsi128_si32(lane<0>(x)), b = _mm_cvtsi128_si32(lane<1>(x));
    const int32_t d = _mm_cvtsi128_si32(lane<2>(x)), e = _mm_cvtsi128_si32(lane<3>(x));
    __builtin_memcpy(c, &a, 4);
    __builtin_memcpy(c + Stride, &b, 4);
    __builtin_memcpy(c + 2 * Stride, &d, 4);
    __builtin_memcpy(c + 3 * Stride, &e, 4);
  }
  static void storeHalves(void* lo, void* hi, v x) {
    const v q = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), x);
    _mm256_storeu_si256(static_cast<__m256i*>(lo), _mm512_castsi512_si256(q));
    _mm256_storeu_si256(static_cast<__m256i*>(hi), _mm512_extracti64x4_epi64(q, 1));
  }
  static v bcast(const void* p16) { return _mm512_broadcast_i32x4(_mm_loadu_si128(static_cast<const __m128i*>(p16))); }
  // (loadQ0213 has no four-lane form yet: a kernel that needs it stays on AVX2.)

  static v zero() { return _mm512_setzero_si512(); }
  static v set8(int x) { return _mm512_set1_epi8(static_cast<char>(x)); }
  static v set16(int x) { return _mm512_set1_epi16(static_cast<short>(x)); }
  static v set32(int x) { return _mm512_set1_epi32(x); }

  static v or_(v a, v b) { return _mm512_or_si512(a, b); }
  static v and_(v a, v b) { return _mm512_and_si512(a, b); }
  static v andnot(v a, v b) { return _mm512_andnot_si512(a, b); }
  static v xor_(v a, v b) { return _mm512_xor_si512(a, b); }
  static v shuffle8(v a, v m) { return _mm512_shuffle_epi8(a, m); }
  static v blend8(v a, v b, v m) { return _mm512_mask_blend_epi8(_mm512_movepi8_mask(m), a, b); }
  template <int N>
  static v alignr(v hi, v lo) { return _mm512_alignr_epi8(hi, lo, N); }
  template <int N>
  static v bsrli(v a) { return _mm512_bsrli_epi128(a, N); }
  template <int N>
  static v bslli(v a) { return _mm512_bslli_epi128(a, N); }

  static v unpacklo8(v a, v b) { return _mm512_unpacklo_epi8(a, b); }
  static v unpackhi8(v a, v b) { return _mm512_unpackhi_epi8(a, b); }
  static v unpacklo16(v a, v b) { return _mm512_unpacklo_epi16(a, b); }
  static v unpackhi16(v a, v b) { return _mm512_unpackhi_epi16(a, b); }
  static v unpacklo32(v a, v b) { return _mm512_unpacklo_epi32(a, b); }
  static v unpackhi32(v a, v b) { return _mm512_unpackhi_epi32(a, b); }
  static v unpacklo64(v a, v b) { return _mm512_unpacklo_epi64(a, b); }
  static v unpackhi64(v a, v b) { return _mm512_unpackhi_epi64(a, b); }
  // Blocks a0 b0 a1 b1 to lo, a2 b2 a3 b3 to hi.
  static void interleaveLanes(v a, v b, v& lo, v& hi) {
    lo = _mm512_permutex2var_epi64(a, _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11), b);
    hi = _mm512_permutex2var_epi64(a, _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15), b);
  }
  template <int Imm>
  static v shuffle2x32(v a, v b) {
    return _mm512_castps_si512(_mm512_shuffle_ps(_mm512_castsi512_ps(a), _mm512_castsi512_ps(b), Imm));
  }
  // Unit u of lane l goes to place 4 u + l.
  static v zip32Lanes(v x) {
    return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15), x);
  }
  static v packus16(v a, v b) { return _mm512_packus_epi16(a, b); }
  static v packs16(v a, v b) { return _mm512_packs_epi16(a, b); }
  static v packs32(v a, v b) { return _mm512_packs_epi32(a, b); }
  static v packus32(v a, v b) { return _mm512_packus_epi32(a, b); }

  static v add8(v a, v b) { return _mm512_add_epi8(a, b); }
  static v sub8(v a, v b) { return _mm512_sub_epi8(a, b); }
  static v maxu8(v a, v b) { return _mm512_max_epu8(a, b); }
  static v minu8(v a, v b) { return _mm512_min_epu8(a, b); }
  static v avg8(v a, v b) { return _mm512_avg_epu8(a, b); }
  static v add16(v a, v b) { return _mm512_add_epi16(a, b); }
  static v sub16(v a, v b) { return _mm512_sub_epi16(a, b); }
  static v adds16(v a, v b) { return _mm512_adds_epi16(a, b); }
  static v subs16(v a, v b) { return _mm512_subs_epi16(a, b); }
  static v addus16(v a, v b) { return _mm512_adds_epu16(a, b); }
  static v mulhs(v a, v b) { return _mm512_mulhi_epi16(a, b); }
  static v mulhu(v a, v b) { return _mm512_mulhi_epu16(a, b); }
  static v mulhr(v a, v b) { return _mm512_mulhrs_epi16(a, b); }
  static v mullo16(v a, v b) { return _mm512_mullo_epi16(a, b); }
  static v madd16(v a, v b) { return _mm512_madd_epi16(a, b); }
  static v maddubs(v a, v b) { return _mm512_maddubs_epi16(a, b); }
  static v min16(v a, v b) { return _mm512_min_epi16(a, b); }
  static v max16(v a, v b) { return _mm512_max_epi16(a, b); }
  static v minu16(v a, v b) { return _mm512_min_epu16(a, b); }
  static v avg16(v a, v b) { return _mm512_avg_epu16(a, b); }
  template <int N>
  static v slli16(v a) { return _mm512_slli_epi16(a, N); }
  template <int N>
  static v srli16(v a) { return _mm512_srli_epi16(a, N); }
  template <int N>
  static v srai16(v a) { return _mm512_srai_epi16(a, N); }
  static v add32(v a, v b) { return _mm512_add_epi32(a, b); }
  static v sub32(v a, v b) { return _mm512_sub_epi32(a, b); }
  static v mullo32(v a, v b) { return _mm512_mullo_epi32(a, b); }
  template <int N>
  static v slli32(v a) { return _mm512_slli_epi32(a, N); }
  template <int N>
  static v srli32(v a) { return _mm512_srli_epi32(a, N); }
  template <int N>
  static v srai32(v a) { return _mm512_srai_epi32(a, N); }
  static v cmpeq8(v a, v b) { return _mm512_movm_epi8(_mm512_cmpeq_epi8_mask(a, b)); }
  static v cmpgt16(v a, v b) { return _mm512_movm_epi16(_mm512_cmpgt_epi16_mask(a, b)); }
};
#endif

// ---- software prefetch -----------------------------------------------------------
// Kernels that spend most of their time computing keep too few loads in
// flight for the hardware prefetcher to stay ahead of a frame that comes
// from memory; they ask for the source lines kPrefetchAhead bytes ahead of
// the block they read (a prefetch is a hint: it never faults and loads
// nothing into registers, also past the end of an image).
inline constexpr int kPrefetchAhead = 2048;
template <int Bytes>
inline void prefetchAhead(const void* p) {
  for (int o = 0; o < Bytes; o += 64)
    _mm_prefetch(static_cast<const char*>(p) + kPrefetchAhead + o, _MM_HINT_T0);
}

// ---- byte masks ---------------------------------------------------------------
// The outcome of a byte comparison as the path holds it best: a vector of
// 0 / FF bytes on SSE4.1 and AVX2, a mask register on AVX-512 (so that
// selections don't go through vpmovm2b / vpmovb2m).
#if KEL_ISA == KEL_ISA_AVX512
using m8 = __mmask64;
inline m8 eq8m(V::v a, V::v b) { return _mm512_cmpeq_epi8_mask(a, b); }
inline m8 mor8(m8 a, m8 b) { return _kor_mask64(a, b); }
inline m8 mandn8(m8 a, m8 b) { return _kandn_mask64(a, b); }  // b and not a
inline V::v sel8(m8 m, V::v a, V::v b) { return _mm512_mask_blend_epi8(m, a, b); }  // m ? b : a
inline V::v zeroIf8(m8 m, V::v a) { return _mm512_maskz_mov_epi8(_knot_mask64(m), a); }
#else
using m8 = V::v;
inline m8 eq8m(V::v a, V::v b) { return V::cmpeq8(a, b); }
inline m8 mor8(m8 a, m8 b) { return V::or_(a, b); }
inline m8 mandn8(m8 a, m8 b) { return V::andnot(a, b); }
inline V::v sel8(m8 m, V::v a, V::v b) { return V::blend8(a, b, m); }
inline V::v zeroIf8(m8 m, V::v a) { return V::andnot(m, a); }
#endif

#if KEL_ISA == KEL_ISA_AVX512
// ---- AVX-512 VBMI: three-byte pixels by byte permutes across the register ----
// The channel vectors of 64 pixels are the lane model's own (lane k holds
// pixels 16k..16k+15), so these words stand in for loadC3 / storeC3 in
// kernels marked KEL_VBMI, which run only where activeVbmi() holds: three
// 64-byte loads or stores and two permutes per vector instead of 12 partial
// moves and 9 + 9 shuffles.
#define KEL_VBMI __attribute__((target("avx512vbmi")))
struct Idx64 {
  alignas(64) uint8_t b[64];
  uint64_t m;  // the bytes the second permute writes
};
// Channel ch of 64 pixels from bytes 0..127 (first permute) and 128..191.
constexpr Idx64 vbmiC3Get(int ch, bool high) {
  Idx64 x{};
  for (int j = 0; j < 64; ++j) {
    const int s = 3 * j + ch;
    x.b[j] = static_cast<uint8_t>(high ? (s - 128) & 63 : s & 127);
    if (s >= 128) x.m |= uint64_t{1} << j;
  }
  return x;
}
// Output block k (bytes 64k..64k+63): channels 0 and 1 by the first permute,
// channel 2 by the second.
constexpr Idx64 vbmiC3Put(int k, bool high) {
  Idx64 x{};
  for (int i = 0; i < 64; ++i) {
    const int g = 64 * k + i, ch = g % 3, px = g / 3;
    x.b[i] = static_cast<uint8_t>(high ? px : px | (ch == 1 ? 64 : 0));
    if (ch == 2) x.m |= uint64_t{1} << i;
  }
  return x;
}
inline constexpr Idx64 kVbmiGet[3][2] = {{vbmiC3Get(0, false), vbmiC3Get(0, true)},
                                          {vbmiC3Get(1, false), vbmiC3Get(1, true)},
                                          {vbmiC3Get(2, false), vbmiC3Get(2, true)}};
inline constexpr Idx64 kVbmiPut[3][2] = {{vbmiC3Put(0, false), vbmiC3Put(0, true)},
                                          {vbmiC3Put(1, false), vbmiC3Put(1, true)},
                                          {vbmiC3Put(2, false), vbmiC3Put(2, true)}};
KEL_VBMI inline void loadC3Vbmi(const uint8_t* p, V::v& c0, V::v& c1, V::v& c2) {
  const V::v a = _mm512_loadu_si512(p), b = _mm512_loadu_si512(p + 64), c = _mm512_loadu_si512(p + 128);
  V::v out[3];
  for (int ch = 0; ch < 3; ++ch) {
    const Idx64& lo = kVbmiGet[ch][0];
    const Idx64& hi = kVbmiGet[ch][1];
    out[ch] = _mm512_mask_permutexvar_epi8(_mm512_permutex2var_epi8(a, _mm512_load_si512(lo.b), b), hi.m,
                                           _mm512_load_si512(hi.b), c);
  }
  c0 = out[0], c1 = out[1], c2 = out[2];
}
KEL_VBMI inline void storeC3Vbmi(uint8_t* p, V::v c0, V::v c1, V::v c2) {
  for (int k = 0; k < 3; ++k) {
    const Idx64& lo = kVbmiPut[k][0];
    const Idx64& hi = kVbmiPut[k][1];
    _mm512_storeu_si512(p + 64 * k, _mm512_mask_permutexvar_epi8(_mm512_permutex2var_epi8(c0, _mm512_load_si512(lo.b), c1),
                                                                 hi.m, _mm512_load_si512(hi.b), c2));
  }
}
#endif

// ---- in-lane byte masks built at compile time -----------------------------
struct Mask16 {
  alignas(16) int8_t b[16];
};

// Gather channel `ch` of 3-byte pixels out of input block k (bytes 16k..16k+15
// of a 48-byte group of 16 pixels); other places 0x80 (zero).
constexpr Mask16 maskC3Gather(int ch, int k) {
  Mask16 m{};
  for (int i = 0; i < 16; ++i) {
    const int src = 3 * i + ch;
    m.b[i] = (src / 16 == k) ? static_cast<int8_t>(src % 16) : static_cast<int8_t>(-128);
  }
  return m;
}
// Scatter pixel samples of channel `ch` into output block k of a 48-byte group.
constexpr Mask16 maskC3Scatter(int ch, int k) {
  Mask16 m{};
  for (int j = 0; j < 16; ++j) {
    const int g = 16 * k + j;
    m.b[j] = (g % 3 == ch) ? static_cast<int8_t>(g / 3) : static_cast<int8_t>(-128);
  }
  return m;
}
// Within a 4-byte-pixel block of 4 pixels: gather to r0..r3 g0..g3 b0..b3 a0..a3.
constexpr Mask16 maskC4Planar() {
  Mask16 m{};
  for (int c = 0; c < 4; ++c)
    for (int p = 0; p < 4; ++p) m.b[4 * c + p] = static_cast<int8_t>(4 * p + c);
  return m;
}

template <const Mask16& M>
inline V::v mask() {
  return V::bcast(M.b);
}

// ---- interleaved layouts, 16 pixels per lane ---------------------------------
// C3: three interleaved bytes per pixel, 48 bytes per block.
inline constexpr Mask16 kC3G[3][3] = {
    {maskC3Gather(0, 0), maskC3Gather(0, 1), maskC3Gather(0, 2)},
    {maskC3Gather(1, 0), maskC3Gather(1, 1), maskC3Gather(1, 2)},
    {maskC3Gather(2, 0), maskC3Gather(2, 1), maskC3Gather(2, 2)}};
inline constexpr Mask16 kC3S[3][3] = {
    {maskC3Scatter(0, 0), maskC3Scatter(0, 1), maskC3Scatter(0, 2)},
    {maskC3Scatter(1, 0), maskC3Scatter(1, 1), maskC3Scatter(1, 2)},
    {maskC3Scatter(2, 0), maskC3Scatter(2, 1), maskC3Scatter(2, 2)}};
inline constexpr Mask16 kC4P = maskC4Planar();

// Loads 16 * kLanes pixels of 3 bytes: c0, c1, c2 hold the three channels.
inline void loadC3(const uint8_t* p, V::v& c0, V::v& c1, V::v& c2) {
  const V::v a = V::load<48>(p), b = V::load<48>(p + 16), c = V::load<48>(p + 32);
  V::v out[3];
  for (int ch = 0; ch < 3; ++ch)
    out[ch] = V::or_(V::or_(V::shuffle8(a, V::bcast(kC3G[ch][0].b)), V::shuffle8(b, V::bcast(kC3G[ch][1].b))),
                     V::shuffle8(c, V::bcast(kC3G[ch][2].b)));
  c0 = out[0];
  c1 = out[1];
  c2 = out[2];
}
inline void storeC3(uint8_t* p, V::v c0, V::v c1, V::v c2) {
  for (int k = 0; k < 3; ++k) {
    const V::v o = V::or_(V::or_(V::shuffle8(c0, V::bcast(kC3S[0][k].b)), V::shuffle8(c1, V::bcast(kC3S[1][k].b))),
                          V::shuffle8(c2, V::bcast(kC3S[2][k].b)));
    V::store<48>(p + 16 * k, o);
  }
}
// Loads 16 * kLanes pixels of 4 bytes (64 bytes per block).
inline void loadC4(const uint8_t* p, V::v& c0, V::v& c1, V::v& c2, V::v& c3) {
  const V::v m = V::bcast(kC4P.b);
  const V::v a = V::shuffle8(V::load<64>(p), m), b = V::shuffle8(V::load<64>(p + 16), m);
  const V::v c = V::shuffle8(V::load<64>(p + 32), m), d = V::shuffle8(V::load<64>(p + 48), m);
  const V::v ab0 = V::unpacklo32(a, b), ab1 = V::unpackhi32(a, b);  // r r g g | b b a a
  const V::v cd0 = V::unpacklo32(c, d), cd1 = V::unpackhi32(c, d);
  c0 = V::unpacklo64(ab0, cd0);
  c1 = V::unpackhi64(ab0, cd0);
  c2 = V::unpacklo64(ab1, cd1);
  c3 = V::unpackhi64(ab1, cd1);
}
inline void storeC4(uint8_t* p, V::v c0, V::v c1, V::v c2, V::v c3) {
  const V::v t0 = V::unpacklo8(c0, c1), t1 = V::unpackhi8(c0, c1);  // c0 c1 pairs
  const V::v t2 = V::unpacklo8(c2, c3), t3 = V::unpackhi8(c2, c3);
  V::store<64>(p, V::unpacklo16(t0, t2));
  V::store<64>(p + 16, V::unpackhi16(t0, t2));
  V::store<64>(p + 32, V::unpacklo16(t1, t3));
  V::store<64>(p + 48, V::unpackhi16(t1, t3));
}

// Two runs of 16 * kLanes contiguous bytes zipped, a byte of a first: the
// first 32 * kLanes bytes of the result in lo, the rest in hi, each run of
// contiguous bytes again (for full-width stores).
inline void zip8(V::v a, V::v b, V::v& lo, V::v& hi) {
  V::interleaveLanes(V::unpacklo8(a, b), V::unpackhi8(a, b), lo, hi);
}

// Widening of 16 bytes per lane into two vectors of 16-bit values, and the
// same with the byte in the high half (x << 8).
inline void widen(V::v x, V::v& lo, V::v& hi) {
  lo = V::unpacklo8(x, V::zero());
  hi = V::unpackhi8(x, V::zero());
}
inline void widenHigh(V::v x, V::v& lo, V::v& hi) {
  lo = V::unpacklo8(V::zero(), x);
  hi = V::unpackhi8(V::zero(), x);
}
// 16 bytes per lane as four vectors of 32-bit values (pixels 0-3, 4-7, 8-11,
// 12-15 of each lane), and back with signed then unsigned saturation, which
// is clip8 for values that fit 16 bits.
inline void widen32(V::v x, V::v q[4]) {
  const V::v lo = V::unpacklo8(x, V::zero()), hi = V::unpackhi8(x, V::zero());
  q[0] = V::unpacklo16(lo, V::zero()), q[1] = V::unpackhi16(lo, V::zero());
  q[2] = V::unpacklo16(hi, V::zero()), q[3] = V::unpackhi16(hi, V::zero());
}
inline V::v narrow32(const V::v q[4]) { return V::packus16(V::packs32(q[0], q[1]), V::packs32(q[2], q[3])); }

// A four-way split of bytes into 32-bit values for float cores that don't
// care which pixels share a vector, by whatever is cheapest on the path: on
// AVX-512, whose shuffles have one port against two for shifts, q[i] holds
// bytes 4k + i (shifts and masks); elsewhere it is widen32. joinBytes32 is
// its inverse for values in 0..255, with no saturation; a lane holding the
// conversions' invalid-value result 0x80000000 gives 0 on every path.
#if KEL_ISA == KEL_ISA_AVX512
inline void splitBytes32(V::v x, V::v q[4]) {
  const V::v ff = V::set32(0xFF);
  q[0] = V::and_(x, ff), q[1] = V::and_(V::srli32<8>(x), ff);
  q[2] = V::and_(V::srli32<16>(x), ff), q[3] = V::srli32<24>(x);
}
inline V::v joinBytes32(const V::v q[4]) {
  const V::v lo = V::and_(q[0], V::set32(0xFF));  // the shifts push the other lanes' top bit out
  return V::or_(V::or_(lo, V::slli32<8>(q[1])), V::or_(V::slli32<16>(q[2]), V::slli32<24>(q[3])));
}
#else
inline void splitBytes32(V::v x, V::v q[4]) { widen32(x, q); }
inline V::v joinBytes32(const V::v q[4]) { return narrow32(q); }
#endif

// ---- three-channel rows (see frame/pixel3.h) ---------------------------------
template <Lay L>
inline void load3(const Row3& io, int x, V::v& a, V::v& b, V::v& c) {
  if constexpr (L == Lay::C3) {
    loadC3(io.s[0] + 3 * x, a, b, c);
  } else if constexpr (L == Lay::AC4) {
    V::v alpha;
    loadC4(io.s[0] + 4 * x, a, b, c, alpha);
  } else {
    a = V::load<16>(io.s[0] + x), b = V::load<16>(io.s[1] + x), c = V::load<16>(io.s[2] + x);
  }
}
template <Lay L>
inline void store3(const Row3& io, int x, V::v a, V::v b, V::v c) {
  if constexpr (L == Lay::C3) {
    storeC3(io.d[0] + 3 * x, a, b, c);
  } else if constexpr (L == Lay::AC4) {
    // The destination's fourth byte stays: read it back and write it again.
    V::v o0, o1, o2, alpha;
    loadC4(io.d[0] + 4 * x, o0, o1, o2, alpha);
    storeC4(io.d[0] + 4 * x, a, b, c, alpha);
  } else if constexpr (L == Lay::C4Ap) {
    storeC4(io.d[0] + 4 * x, a, b, c, V::load<16>(io.s[3] + x));
  } else if constexpr (L == Lay::P4Ap) {
    V::store<16>(io.d[0] + x, a), V::store<16>(io.d[1] + x, b), V::store<16>(io.d[2] + x, c);
    V::store<16>(io.d[3] + x, V::load<16>(io.s[3] + x));
  } else {
    V::store<16>(io.d[0] + x, a), V::store<16>(io.d[1] + x, b), V::store<16>(io.d[2] + x, c);
    if constexpr (L == Lay::P4A) {
      V::v s0, s1, s2, alpha;
      loadC4(io.s[0] + 4 * x, s0, s1, s2, alpha);
      V::store<16>(io.d[3] + x, alpha);
    }
  }
}
template <Lay L, int Block>
inline void prefetch3(const Row3& io, int x) {
  if constexpr (L == Lay::C3) {
    prefetchAhead<3 * Block>(io.s[0] + 3 * x);
  } else if constexpr (L == Lay::AC4) {
    prefetchAhead<4 * Block>(io.s[0] + 4 * x);
  } else {
    for (int k = 0; k < 3; ++k) prefetchAhead<Block>(io.s[k] + x);
  }
}
// The vector kernel of a three-channel body: F::vec(a, b, c, x, y, z) maps
// 16 pixels per lane of 8-bit samples.
template <Lay In, Lay Out, class F>
int kern3(const Row3& row, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  // A local copy of the row pointers: byte stores could alias the caller's
  // struct, which would make the compiler reload the pointers every pass.
  const Row3 io = row;
  for (; x + kBlock <= n; x += kBlock) {
    V::v a, b, c, o0, o1, o2;
    prefetch3<In, kBlock>(io, x);
    load3<In>(io, x, a, b, c);
    F::vec(a, b, c, o0, o1, o2);
    store3<Out>(io, x, o0, o1, o2);
  }
  return x;
}

}  // namespace KEL_ISA_NS
}  // namespace kel
