// The gamma curve in both directions at 8u, 16u and 32f (constants and the
// 8-bit tables in gamma_tables.h): the per-sample formulas of the 16u and
// 32f forms, which compute in double precision, and the vector kernels of
// the 8u table look-up.
#pragma once

#include <xmmintrin.h>

#include <cmath>
#include <cstdint>
#include <cstring>

#include "frame/cpu.h"
#include "frame/rows.h"
#include "tone/gamma_tables.h"

namespace kel {

// A look-up kernel (KernLut, gamma_tables.h): maps bytes s[x..] through a
// 256-entry table into d[x..] in whole vector blocks while a block fits
// below n (bytes of the row); returns the byte where it stopped. s may equal
// d. The AC4 kernel leaves every fourth byte of d (the alpha of a four-byte
// pixel) as it was; its blocks are whole pixels, so x stays on a pixel.

// `lutWide`, `lutWideAC4`: the AVX-512 VBMI kernels (in the AVX2 table
// only), which finish the row themselves.
struct GammaKernels {
  KernLut lut, lutAC4, lutWide, lutWideAC4;
};
namespace sse41 {
extern const GammaKernels kGammaKernels;
}
namespace avx2 {
extern const GammaKernels kGammaKernels;
}

namespace {
namespace gamma {

// ---- 16u -------------------------------------------------------------------
inline constexpr double kD65535 = 1.5259021896696422e-5;  // the double nearest 1 / 65535
inline constexpr double kD45 = 0.2222222222222222;        // 1 / 4.5
inline constexpr double kD1099 = 0.9099181073703366;      // 1 / 1.099
inline constexpr double kInvPow = 2.2222222222222223;     // 1 / 0.45

// Rounding of a 16u curve value: r = 0.5 + v rounded to single precision,
// truncated; an odd k that r equals exactly drops to k - 1 (halves to even,
// also for values within half a single-precision unit of a half, as the test
// looks at r). The low 16 bits are stored.
inline uint16_t round16(double v) {
  const float r = static_cast<float>(0.5 + v);
  int32_t k = _mm_cvtt_ss2si(_mm_set_ss(r));
  if ((k & 1) && static_cast<float>(k) == r) k -= 1;
  return static_cast<uint16_t>(k);
}
inline uint16_t fwd16(int i) {
  const double x = i * kD65535;
  const double v = 0.018 > x ? 4.5 * i : (std::pow(x, 0.45) * 1.099 - 0.099) * 65535.0;
  return round16(v);
}
inline uint16_t inv16(int i) {
  const double x = i * kD65535;
  const double v = 0.0812 > x ? i * kD45 : std::pow((x + 0.099) * kD1099, kInvPow) * 65535.0;
  return round16(v);
}

// ---- 32f -------------------------------------------------------------------
// The caller's value range, prepared once per call: the curve works on
// n = (s - vMin) / (vMax - vMin) and maps back onto the range. The range is
// a scale, not a limit: samples outside it are not clamped.
struct Range32 {
  float vMin;
  double vMinD, d, m;
  Range32(float lo, float hi)
      : vMin(lo), vMinD(lo), d(static_cast<double>(hi - lo)), m(1.0 / static_cast<double>(hi - lo)) {}
};
// The difference in single precision; a NaN difference passes.
inline bool rangeEmpty(float vMin, float vMax) { return 0.0f >= vMax - vMin; }

inline float fwd32(float s, const Range32& r) {
  const double t = static_cast<double>(s - r.vMin), n = r.m * t;
  const double y = 0.018 > n ? r.vMinD + t * 4.5 : r.vMinD + (std::pow(n, 0.45) * 1.099 - 0.099) * r.d;
  return static_cast<float>(y);
}
inline float inv32(float s, const Range32& r) {
  const double t = static_cast<double>(s - r.vMin), n = r.m * t;
  const double y = 0.0812 > n ? r.vMinD + t * kD45 : r.vMinD + std::pow((n + 0.099) * kD1099, kInvPow) * r.d;
  return static_cast<float>(y);
}

// ---- samples at byte addresses ------------------------------------------------
// Steps are bytes and are used with no rounding, so a 16u or 32f row may
// start at any byte: samples are moved by memcpy, which compiles to plain
// unaligned moves.
template <class T>
inline T load(const uint8_t* p) {
  return loadAt<T>(p);
}
template <class T>
inline void store(uint8_t* p, T v) {
  storeAt(p, v);
}

}  // namespace gamma
}  // namespace

}  // namespace kel
