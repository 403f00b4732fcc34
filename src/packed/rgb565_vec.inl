// Vector bodies of the RGB565 pack and unpack, on the lane words of
// frame/simd.h: 16 pixels per lane and pass, fields split and joined with
// shifts and masks in 16-bit lanes.
#include "frame/simd.h"
#include "packed/rgb565.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;
constexpr int kBlock = 16 * V::kLanes;

// 8 words of one lane to the three fields as 16-bit values.
inline void fields(v w, v& f0, v& f1, v& f2) {
  f0 = V::slli16<3>(V::and_(w, V::set16(31)));
  f1 = V::slli16<2>(V::and_(V::srli16<5>(w), V::set16(63)));
  f2 = V::slli16<3>(V::srli16<11>(w));
}

int unpack(const uint16_t* src, uint8_t* dst, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    // Lane i holds words 16i .. 16i+7 in `lo`, 16i+8 .. 16i+15 in `hi`.
    const v lo = V::load<32>(src + x), hi = V::load<32>(src + x + 8);
    v a0, a1, a2, b0, b1, b2;
    fields(lo, a0, a1, a2);
    fields(hi, b0, b1, b2);
    storeC3(dst + 3 * x, V::packus16(a0, b0), V::packus16(a1, b1), V::packus16(a2, b2));
  }
  return x;
}

// 8 pixels of one lane (16-bit samples) to their words.
inline v word(v c0, v c1, v c2) {
  return V::or_(V::or_(V::srli16<3>(c0), V::slli16<3>(V::and_(c1, V::set16(0xFC)))),
                V::slli16<8>(V::and_(c2, V::set16(0xF8))));
}

int pack(const uint8_t* src, uint16_t* dst, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    v c0, c1, c2;
    loadC3(src + 3 * x, c0, c1, c2);
    v l0, h0, l1, h1, l2, h2;
    widen(c0, l0, h0), widen(c1, l1, h1), widen(c2, l2, h2);
    V::store<32>(dst + x, word(l0, l1, l2));
    V::store<32>(dst + x + 8, word(h0, h1, h2));
  }
  return x;
}

#if KEL_ISA == KEL_ISA_AVX2
// Unpack with AVX-512 VBMI, 64 pixels per block. Per word w, the low byte of
// w << 3 is field 0 in place and the high byte of w holds field 2 over
// three low bits, and the low byte of w >> 3 holds field 1 over two low
// bits: a byte blend makes X (low byte from w << 3, high byte from w), and
// Y = w >> 3. Each output vector takes its bytes from X and Y by a
// two-register byte permute (the middle one from both halves of the block)
// and clears the low bits of every field with one mask. The last block is
// done with masked loads and stores, which touch no byte outside the run.
#define KEL_WIDE_TARGET __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi")))
struct UnpackIdx {
  alignas(64) uint8_t idx[3][64];
  alignas(64) uint8_t keep[3][64];
  constexpr UnpackIdx() : idx{}, keep{} {
    for (int v = 0; v < 3; ++v)
      for (int b = 0; b < 64; ++b) {
        const int B = 64 * v + b, l = (B / 3) % 32, k = B % 3;
        idx[v][b] = static_cast<uint8_t>(k == 1 ? 64 + 2 * l : (k == 2 ? 2 * l + 1 : 2 * l));
        keep[v][b] = k == 1 ? 0xFC : 0xF8;
      }
  }
};
inline constexpr UnpackIdx kUnpackIdx{};
constexpr uint64_t kOddBytes = 0xAAAAAAAAAAAAAAAAull;
constexpr uint64_t kUpperHalf = ~0ull << 32;  // bytes 96..127 of the block: pixels 32..42 in vector 1

KEL_WIDE_TARGET inline void unpack64(__m512i w0, __m512i w1, __m512i out[3]) {
  const __m512i x0 = _mm512_mask_blend_epi8(kOddBytes, _mm512_slli_epi16(w0, 3), w0), y0 = _mm512_srli_epi16(w0, 3);
  const __m512i x1 = _mm512_mask_blend_epi8(kOddBytes, _mm512_slli_epi16(w1, 3), w1), y1 = _mm512_srli_epi16(w1, 3);
  const __m512i i0 = _mm512_load_si512(kUnpackIdx.idx[0]), i1 = _mm512_load_si512(kUnpackIdx.idx[1]),
                i2 = _mm512_load_si512(kUnpackIdx.idx[2]);
  out[0] = _mm512_and_si512(_mm512_permutex2var_epi8(x0, i0, y0), _mm512_load_si512(kUnpackIdx.keep[0]));
  out[1] = _mm512_and_si512(_mm512_mask_blend_epi8(kUpperHalf, _mm512_permutex2var_epi8(x0, i1, y0),
                                                   _mm512_permutex2var_epi8(x1, i1, y1)),
                            _mm512_load_si512(kUnpackIdx.keep[1]));
  out[2] = _mm512_and_si512(_mm512_permutex2var_epi8(x1, i2, y1), _mm512_load_si512(kUnpackIdx.keep[2]));
}
KEL_WIDE_TARGET int unpackWide(const uint16_t* src, uint8_t* dst, int x, int n) {
  __m512i out[3];
  for (; x + 64 <= n; x += 64) {
    unpack64(_mm512_loadu_si512(src + x), _mm512_loadu_si512(src + x + 32), out);
    uint8_t* d = dst + 3 * static_cast<ptrdiff_t>(x);
    _mm512_storeu_si512(d, out[0]), _mm512_storeu_si512(d + 64, out[1]), _mm512_storeu_si512(d + 128, out[2]);
  }
  if (x < n) {
    const int r = n - x;  // 1 .. 63 pixels
    auto upTo = [](int k) { return k >= 64 ? ~0ull : (k <= 0 ? 0ull : ~0ull >> (64 - k)); };
    unpack64(_mm512_maskz_loadu_epi16(static_cast<__mmask32>(upTo(r)), src + x),
             _mm512_maskz_loadu_epi16(static_cast<__mmask32>(upTo(r - 32)), src + x + 32), out);
    uint8_t* d = dst + 3 * static_cast<ptrdiff_t>(x);
    for (int v = 0; v < 3; ++v) _mm512_mask_storeu_epi8(d + 64 * v, upTo(3 * r - 64 * v), out[v]);
  }
  return n;
}
#undef KEL_WIDE_TARGET
#endif

}  // namespace

#if KEL_ISA == KEL_ISA_AVX2
extern const Rgb565Kernels kRgb565Kernels = {unpack, pack, unpackWide};
#else
extern const Rgb565Kernels kRgb565Kernels = {unpack, pack, nullptr};
#endif

}  // namespace KEL_ISA_NS
}  // namespace kel
