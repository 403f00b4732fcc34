// Interleaved stores of the demosaicing kernels, per instruction set (a
// kernel source includes this after frame/simd.h has chosen the ISA).
#pragma once

#include "frame/simd.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

// Interleaving three vectors of eight 16-bit samples per lane into 24 words
// (three 16-byte blocks per lane).
constexpr Mask16 maskC3Scatter16(int ch, int k) {
  Mask16 m{};
  for (int j = 0; j < 8; ++j) {
    const int g = 8 * k + j;
    const bool mine = g % 3 == ch;
    m.b[2 * j] = mine ? static_cast<int8_t>(2 * (g / 3)) : static_cast<int8_t>(-128);
    m.b[2 * j + 1] = mine ? static_cast<int8_t>(2 * (g / 3) + 1) : static_cast<int8_t>(-128);
  }
  return m;
}
inline constexpr Mask16 kC3S16[3][3] = {
    {maskC3Scatter16(0, 0), maskC3Scatter16(0, 1), maskC3Scatter16(0, 2)},
    {maskC3Scatter16(1, 0), maskC3Scatter16(1, 1), maskC3Scatter16(1, 2)},
    {maskC3Scatter16(2, 0), maskC3Scatter16(2, 1), maskC3Scatter16(2, 2)}};
inline void storeC3w(uint16_t* p, V::v c0, V::v c1, V::v c2) {
  for (int k = 0; k < 3; ++k) {
    const V::v o = V::or_(V::or_(V::shuffle8(c0, V::bcast(kC3S16[0][k].b)), V::shuffle8(c1, V::bcast(kC3S16[1][k].b))),
                       V::shuffle8(c2, V::bcast(kC3S16[2][k].b)));
    V::store<48>(reinterpret_cast<uint8_t*>(p) + 16 * k, o);
  }
}

}  // namespace
}  // namespace KEL_ISA_NS
}  // namespace kel
