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

}  // namespace

extern const GammaKernels kGammaKernels = {lut, lutAC4};

}  // namespace KEL_ISA_NS
}  // namespace kel
