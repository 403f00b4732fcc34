// The arithmetic words in which every conversion states its per-sample
// result. Values are exact integers; each shift and each saturation is a
// step of the computation.
//
// Everything here has internal linkage (unnamed namespace): the per-ISA
// translation units include this header too, and an inline function shared
// across units compiled with different -m flags could be folded into the
// copy built for the widest instruction set.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kelcc.h"

namespace kel {
namespace {

// Arithmetic right shift (floor division by 2^n), also for negative values.
constexpr inline int32_t asr(int32_t x, int n) { return x >> n; }
constexpr inline int64_t asr64(int64_t x, int n) { return x >> n; }

constexpr inline int32_t clip8(int32_t x) { return x < 0 ? 0 : (x > 255 ? 255 : x); }
constexpr inline int32_t sat16s(int32_t x) { return x < -32768 ? -32768 : (x > 32767 ? 32767 : x); }
constexpr inline int32_t sat16u(int32_t x) { return x < 0 ? 0 : (x > 65535 ? 65535 : x); }
constexpr inline int32_t wrap16(int32_t x) { return static_cast<int16_t>(static_cast<uint16_t>(x)); }
constexpr inline int32_t byte8(int32_t x) { return x & 0xff; }

// Saturating sums, left to right, saturating at each step.
constexpr inline int32_t adds(int32_t a, int32_t b) { return sat16s(a + b); }
constexpr inline int32_t adds(int32_t a, int32_t b, int32_t c) { return sat16s(sat16s(a + b) + c); }
constexpr inline int32_t adds(int32_t a, int32_t b, int32_t c, int32_t d) { return sat16s(adds(a, b, c) + d); }
constexpr inline int32_t addu(int32_t a, int32_t b) { return sat16u(a + b); }
constexpr inline int32_t addu(int32_t a, int32_t b, int32_t c) { return sat16u(sat16u(a + b) + c); }

// High halves of 16 x 16 products: pmulhw, pmulhuw, pmulhrsw.
// Operands are taken as the 16-bit values the vector lanes would hold.
constexpr inline int32_t mulhs(int32_t a, int32_t c) {
  return (static_cast<int16_t>(a) * static_cast<int16_t>(c)) >> 16;
}
constexpr inline int32_t mulhu(int32_t a, int32_t c) {
  return static_cast<int32_t>((static_cast<uint32_t>(static_cast<uint16_t>(a)) *
                               static_cast<uint32_t>(static_cast<uint16_t>(c))) >> 16);
}
constexpr inline int32_t mulhr(int32_t a, int32_t c) {
  return (((static_cast<int16_t>(a) * static_cast<int16_t>(c)) >> 14) + 1) >> 1;
}
constexpr inline int32_t avg8(int32_t a, int32_t b) { return (a + b + 1) >> 1; }

// The size tests of the outer functions.
constexpr inline bool badSize(KeliSize roi, int minW = 1, int minH = 1) {
  return roi.width < minW || roi.height < minH;
}
// The 32-bit product width * height (wrapping as the 32-bit multiply does).
constexpr inline int32_t area32(int32_t w, int32_t h) {
  return static_cast<int32_t>(static_cast<uint32_t>(w) * static_cast<uint32_t>(h));
}

}  // namespace

// The clip table: entry i is clip8(i - 370), so chop(v) == clip8(v) for v
// in [-370, 629]. Constant data, initialised by the compiler.
inline constexpr int kChopBias = 370;
struct ChopTable {
  uint8_t t[1000];
};
extern const ChopTable kChopTable;
namespace {
inline uint8_t chop(int32_t v) { return kChopTable.t[v + kChopBias]; }
}  // namespace

}  // namespace kel
