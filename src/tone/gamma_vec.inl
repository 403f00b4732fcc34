// Vector bodies of the 8-bit gamma look-up, written once on the lane words
// and compiled per instruction set. A byte shuffle looks up 16 entries at a
// time, so the 256-entry table is held as 16 sub-tables: every sub-table is
// shuffled by the low nibble of the samples, and a tree of byte blends picks,
// by bits 4, 5, 6 and 7 of each sample, the one its high nibble names.
// The result is the table entry itself, exactly as the scalar look-up.
#include "frame/simd.h"
#include "tone/gamma.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;

struct Lut {
  v t[16];
  explicit Lut(const uint8_t* table) {
    for (int k = 0; k < 16; ++k) t[k] = V::bcast(table + 16 * k);
  }
  v operator()(v x) const {
    const v lo = V::and_(x, V::set8(0x0F));
    v u[8];
    // blend8 takes its second operand where the mask byte's top bit is set;
    // 16-bit shifts bring bit b of every byte to bit 7 of that byte.
    const v m4 = V::slli16<3>(x), m5 = V::slli16<2>(x), m6 = V::add8(x, x);
    for (int j = 0; j < 8; ++j) u[j] = V::blend8(V::shuffle8(t[2 * j], lo), V::shuffle8(t[2 * j + 1], lo), m4);
    for (int j = 0; j < 4; ++j) u[j] = V::blend8(u[2 * j], u[2 * j + 1], m5);
    for (int j = 0; j < 2; ++j) u[j] = V::blend8(u[2 * j], u[2 * j + 1], m6);
    return V::blend8(u[0], u[1], x);
  }
};

int lut(const uint8_t* s, uint8_t* d, int x, int n, const uint8_t* table) {
  constexpr int kBlock = 16 * V::kLanes;
  const Lut look(table);
  for (; x + 2 * kBlock <= n; x += 2 * kBlock) {
    const v a = V::load<16>(s + x), b = V::load<16>(s + x + kBlock);
    V::store<16>(d + x, look(a));
    V::store<16>(d + x + kBlock, look(b));
  }
  for (; x + kBlock <= n; x += kBlock) V::store<16>(d + x, look(V::load<16>(s + x)));
  return x;
}

// Four-byte pixels: the fourth byte of each comes from the destination as it
// was (in place, that is the source's own).
int lutAC4(const uint8_t* s, uint8_t* d, int x, int n, const uint8_t* table) {
  constexpr int kBlock = 16 * V::kLanes;
  const Lut look(table);
  const v keep = V::set32(static_cast<int>(0xFF000000u));
  for (; x + kBlock <= n; x += kBlock) V::store<16>(d + x, V::blend8(look(V::load<16>(s + x)), V::load<16>(d + x), keep));
  return x;
}

#if KEL_ISA == KEL_ISA_AVX2
// Processors with AVX-512 VBMI hold the whole table in four registers: two
// two-register byte permutes look up the low and the high half of the table
// by the low 7 bits of each sample, and bit 7 picks one of them. Masked loads
// and stores (which touch no byte outside the mask) take the rest of the row,
// and leave the fourth byte of each four-byte pixel in the AC4 form, so the
// kernel always finishes the row.
#define KEL_WIDE_TARGET __attribute__((target("avx512f,avx512bw,avx512vbmi")))
struct Lut512 {
  __m512i t[4];
};
KEL_WIDE_TARGET inline __m512i look512(const Lut512& l, __m512i v) {
  const __m512i a = _mm512_permutex2var_epi8(l.t[0], v, l.t[1]), b = _mm512_permutex2var_epi8(l.t[2], v, l.t[3]);
  return _mm512_mask_blend_epi8(_mm512_movepi8_mask(v), a, b);
}
template <bool AC4>
KEL_WIDE_TARGET int lutWide(const uint8_t* s, uint8_t* d, int x, int n, const uint8_t* table) {
  Lut512 l;
  for (int k = 0; k < 4; ++k) l.t[k] = _mm512_loadu_si512(table + 64 * k);
  constexpr __mmask64 kColour = AC4 ? 0x7777777777777777ull : ~0ull;
  for (; x + 64 <= n; x += 64) {
    const __m512i v = look512(l, _mm512_loadu_si512(s + x));
    if constexpr (AC4) _mm512_mask_storeu_epi8(d + x, kColour, v);
    else _mm512_storeu_si512(d + x, v);
  }
  if (x < n) {
    const __mmask64 m = (~0ull >> (64 - (n - x)));
    _mm512_mask_storeu_epi8(d + x, m & kColour, look512(l, _mm512_maskz_loadu_epi8(m, s + x)));
  }
  return n;
}
#undef KEL_WIDE_TARGET
#endif

}  // namespace

#if KEL_ISA == KEL_ISA_AVX2
extern const GammaKernels kGammaKernels = {lut, lutAC4, lutWide<false>, lutWide<true>};
#else
extern const GammaKernels kGammaKernels = {lut, lutAC4, nullptr, nullptr};
#endif

}  // namespace KEL_ISA_NS
}  // namespace kel
