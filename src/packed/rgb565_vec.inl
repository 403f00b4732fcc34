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

}  // namespace

extern const Rgb565Kernels kRgb565Kernels = {unpack, pack};

}  // namespace KEL_ISA_NS
}  // namespace kel
