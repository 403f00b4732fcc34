// RGB565 pack and unpack: three 8-bit samples <-> one 16-bit word with fields
// of 5, 6 and 5 bits (bits 4-0 from byte 0, 10-5 from byte 1, 15-11 from
// byte 2). The same routine serves RGB and BGR order: only the names differ.
#pragma once

#include <cstdint>
#include <cstring>

#include "frame/arith.h"

namespace kel {

// A vector kernel: converts whole blocks from column x on while a block fits
// below n; returns the column where it stopped.
using Kern565Unpack = int (*)(const uint16_t* src, uint8_t* dst, int x, int n);
using Kern565Pack = int (*)(const uint8_t* src, uint16_t* dst, int x, int n);

struct Rgb565Kernels {
  Kern565Unpack unpack;
  Kern565Pack pack;
  // Unpack of the whole run with AVX-512 VBMI byte permutes (AVX2 table
  // only; null elsewhere).
  Kern565Unpack unpackWide;
};
namespace sse41 {
extern const Rgb565Kernels kRgb565Kernels;
}
namespace avx2 {
extern const Rgb565Kernels kRgb565Kernels;
}

namespace {
namespace rgb565 {

// Word access at any address (a caller's word image need not sit on an even
// address).
inline uint32_t getWord(const uint16_t* p) {
  uint16_t w;
  std::memcpy(&w, p, 2);
  return w;
}
inline void putWord(uint16_t* p, uint32_t w) {
  const uint16_t v = static_cast<uint16_t>(w);
  std::memcpy(p, &v, 2);
}

// Unpack: a left shift with zero fill; the top bits are not repeated in the
// low bits, so 0xFFFF gives 248, 252, 248.
inline void unpack(uint32_t w, uint8_t* d) {
  d[0] = static_cast<uint8_t>((w & 31) << 3);
  d[1] = static_cast<uint8_t>(((w >> 5) & 63) << 2);
  d[2] = static_cast<uint8_t>(((w >> 11) & 31) << 3);
}
// Pack: the low bits are cut off, no rounding.
inline uint32_t pack(const uint8_t* s) {
  return static_cast<uint32_t>((s[0] >> 3) | ((s[1] >> 2) << 5) | ((s[2] >> 3) << 11));
}

}  // namespace rgb565
}  // namespace

}  // namespace kel
