// RGB <-> CIE L*u*v* at 8u, 16u, 16s and 32f, on the RGB -> XYZ matrix
//   X = (0.412453 R + 0.35758 G) + 0.180423 B
//   Y = (0.212671 R + 0.71516 G) + 0.072169 B
//   Z = (0.019334 R + 0.119193 G) + 0.950227 B,   D = (3 Z + 15 Y) + X
// and its inverse, with the white point u'n = 0.197839, v'n = 0.468342.
//
// The cube root of L = 116 Y^(1/3) - 16 is no library call: an anchor pair
// (c[k], d[k]) of POW_LUV and a short binomial series of (1 + z)^(1/3) about
// it. The 8u forward form takes L from the tables powL and powLl instead.
// Bodies and tails differ in reciprocals (approximate against divisions) and
// in the rounding of the results, so a pixel's value depends on its column.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

#include "colour/colour_common.h"
#include "frame/rows.h"

namespace kel {

// Anchors of the cube root (129 pairs); Lab uses the first 128.
struct PowLuvTable {
  float c[129];
  float d[129];
};
extern const PowLuvTable POW_LUV;
// L * 2.55 of the 8u forward form by rounded Y, and the dark end at four
// times that scale by rounded 4 Y.
extern const uint8_t powL[256];
extern const uint16_t powLl[128];
// The two joined on the scale of powLl, 32-bit, for the vector gathers.
extern const int32_t powLq[384];

// The vector bodies each instruction-set file provides.
struct LuvKernels {
  // RGB -> LUV. 8u has one form for every pixel; the kernels run it.
  colour::KernPx<uint8_t> fwd8C3, fwd8AC4;
  colour::KernPx<uint16_t> fwd16uC3, fwd16uAC4;
  colour::KernPx<int16_t> fwd16sC3, fwd16sAC4;
  colour::KernPx<float> fwd32fC3, fwd32fAC4;  // rows on byte steps
  // LUV -> RGB bodies; 32f has one form for every pixel.
  colour::KernPx<uint8_t> inv8C3, inv8AC4;
  colour::KernPx<uint16_t> inv16uC3, inv16uAC4;
  colour::KernPx<int16_t> inv16sC3, inv16sAC4;
  colour::KernPx<float> inv32fC3, inv32fAC4;
};
namespace sse41 {
extern const LuvKernels kLuvKernels;
}
namespace avx2 {
extern const LuvKernels kLuvKernels;
}
namespace avx512 {
extern const LuvKernels kLuvKernels;
extern const LuvKernels kLuvKernelsVbmi;  // 8u C3 bodies by VBMI permutes
}

namespace {
namespace luv {

// Binomial coefficients of (1 + z)^(1/3), in absolute value.
inline constexpr float kS[8] = {0.33333334f, 0.11111111f, 0.061728396f, 0.041152265f,
                                0.030178327f, 0.023472032f, 0.01900117f,  0.015834307f};

// The cube root of y about anchor k: z = (y - c^3) d, p = 1 + z s1 - z^2 s2
// + ... with Terms terms summed left to right and the powers by repeated
// multiplication; returns p * c. s7 and s8 are parameters because one Lab
// member writes them at fewer digits.
template <int Terms>
inline float cubeRoot(float y, uint32_t k, float s7 = kS[6], float s8 = kS[7]) {
  const float c = POW_LUV.c[k], d = POW_LUV.d[k];
  const float z = (y - (c * c) * c) * d;
  const float s[8] = {kS[0], kS[1], kS[2], kS[3], kS[4], kS[5], s7, s8};
  float zp = z, p = 1.0f + zp * s[0];
  for (int t = 1; t < Terms; ++t) {
    zp = zp * z;
    p = (t & 1) ? p - zp * s[t] : p + zp * s[t];
  }
  return p * c;
}

// Sums of two samples' terms go through colour::addF and the like: the 32f
// forms carry NaNs, and the one that survives is the first operand's.
inline void xyzOf(float R, float G, float B, float& X, float& Y, float& Z) {
  using colour::addF;
  X = addF(addF(0.412453f * R, 0.35758f * G), 0.180423f * B);
  Y = addF(addF(0.212671f * R, 0.71516f * G), 0.072169f * B);
  Z = addF(addF(0.019334f * R, 0.119193f * G), 0.950227f * B);
}
inline float denomOf(float X, float Y, float Z) { return colour::addF(colour::addF(3.0f * Z, 15.0f * Y), X); }

// ---- sample access ---------------------------------------------------------
// Rows of the 32f forward members lie on byte steps and may start off a
// float boundary: their samples are moved with memcpy.
template <class T>
inline T ld(const T* p) {
  return loadAt<T>(p);
}
template <class T>
inline void st(T* p, T v) {
  storeAt(p, v);
}

// 16-bit samples on the 0..65535 scale (16s through its offset) and back.
inline float in16(uint16_t v) { return static_cast<float>(v); }
inline float in16(int16_t v) { return static_cast<float>(colour::in16s(v)); }
template <class T>
inline T out16(int32_t v);
template <>
inline uint16_t out16<uint16_t>(int32_t v) { return static_cast<uint16_t>(sat16u(v)); }
template <>
inline int16_t out16<int16_t>(int32_t v) { return colour::out16sSat(v); }
inline int32_t cvtF(float v, bool nearest) { return nearest ? colour::roundF(v) : colour::truncF(v); }

// ---- RGB -> LUV, 32f ---------------------------------------------------------
// L of the 32f form: linear up to 0.008856 (negative Y and -0 included),
// else the cube root with eight terms about k = trunc(128 Y).
//
// Y is nominally below 129/128, where k stays within the table. Beyond it we
// limit k to 128, the last anchor (1, 1): the series then continues about 1
// on the unlimited Y, which keeps L within one unit of 116 Y^(1/3) - 16 up to
// Y = 2 (0.84 below it there), and is a polynomial in Y above it, finite up
// to about Y = 6e4 and not finite beyond (its terms overflow).
// A Y whose index conversion fails (infinity, NaN: the integer indefinite)
// takes the same anchor, read as unsigned; its L is NaN. No read leaves the
// table, and U and V follow from that L as for any other pixel.
inline uint32_t index32f(float Y) {
  const uint32_t k = static_cast<uint32_t>(colour::truncF(Y * 128.0f));
  return k < 128u ? k : 128u;
}
inline float lightness32f(float Y) {
  if (0.008856f >= Y) return Y * 903.3f;
  return (cubeRoot<8>(Y, index32f(Y)) * 116.0f) - 16.0f;
}
// Body: a zero D is replaced by 3. Tail: Z = 0 skips the reciprocal, u' = v' = 0.
template <bool Body>
struct Fwd32f {
  static void px(const float* i, float* o) {
    float X, Y, Z;
    xyzOf(ld(i), ld(i + 1), ld(i + 2), X, Y, Z);
    float D = denomOf(X, Y, Z);
    const float L = lightness32f(Y);
    float up = 0.0f, vp = 0.0f;
    if (Body || Z != 0.0f) {
      if (Body && D == 0.0f) D = 3.0f;
      const float r = colour::nrcp(D);
      up = colour::mulF(4.0f * X, r), vp = colour::mulF(9.0f * Y, r);
    }
    const float L13 = 13.0f * L;
    st(o, L), st(o + 1, colour::mulF(up - 0.197839f, L13)), st(o + 2, colour::mulF(vp - 0.468342f, L13));
  }
};

// ---- RGB -> LUV, 8u: one form for every pixel -----------------------------------
struct Fwd8u {
  static void px(const uint8_t* i, uint8_t* o) {
    float X, Y, Z;
    xyzOf(i[0], i[1], i[2], X, Y, Z);
    const float X1 = X / 255.0f, Y1 = Y / 255.0f, Z1 = Z / 255.0f;
    // Y of 8-bit samples stays below 255.5: the index is at most 255.
    int idx = colour::truncF(0.5f + Y);
    int L;
    float Lf;
    if (idx >= 32) {
      L = powL[idx], Lf = static_cast<float>(L);
    } else {
      idx = colour::truncF(0.5f + 4.0f * Y);  // below 126.5
      const int e = powLl[idx];
      L = (e + 2) >> 2, Lf = static_cast<float>(e) * 0.25f;
    }
    float up = 0.0f, vp = 0.0f;
    if (idx != 0) {
      const float W = (X1 + 3.0f * Z1) + 15.0f * Y1;
      up = (4.0f * X1) / W, vp = (9.0f * Y1) / W;
    }
    o[0] = static_cast<uint8_t>(L);
    o[1] = static_cast<uint8_t>(colour::truncF(97.025429f + (3.6723163f * Lf) * (up - 0.197839f)));
    o[2] = static_cast<uint8_t>(colour::truncF(136.75955f + (4.961832f * Lf) * (vp - 0.468342f)));
  }
};

// ---- RGB -> LUV, 16u and 16s -----------------------------------------------------
// NearIL: the index and L16 round to nearest (else truncate); NearUV the same
// for U16 and V16. Body: a zero D (black only, as the samples are not
// negative) is replaced by 3, which leaves u' = v' = 0 as any finite value
// would; tail: a zero D stores 0 for U and V before any offset.
template <class T, bool Body, bool NearIL, bool NearUV>
struct Fwd16 {
  static void px(const T* i, T* o) {
    float X, Y, Z;
    xyzOf(in16(i[0]), in16(i[1]), in16(i[2]), X, Y, Z);
    float D = denomOf(X, Y, Z);
    const float y = Y * 1.5259022e-5f;
    float L;
    if (580.378f >= Y) {
      L = y * 903.3f;
    } else {  // 512 units of Y per anchor; Y below 65536 keeps k within 1..127
      const uint32_t k = static_cast<uint32_t>(cvtF(Y, NearIL)) >> 9;
      L = (cubeRoot<6>(y, k) * 116.0f) - 16.0f;
    }
    int32_t u = 0, v = 0;
    if (Body || D != 0.0f) {
      if (Body && D == 0.0f) D = 3.0f;
      const float r = colour::nrcp(D), Q = L * 13.0f;
      u = cvtF(((((4.0f * X) * r) - 0.197839f) * Q + 134.0f) * 185.12712f, NearUV);
      v = cvtF(((((9.0f * Y) * r) - 0.468342f) * Q + 140.0f) * 250.13359f + 0.5f, NearUV);
    }
    o[0] = out16<T>(cvtF(L * 655.35f, NearIL)), o[1] = out16<T>(u), o[2] = out16<T>(v);
  }
};

// ---- LUV -> RGB ----------------------------------------------------------------
// Scale factors to L, U, V and the RGB scale of each depth.
template <class T>
struct InvScale;
template <>
struct InvScale<uint8_t> {
  static constexpr float cL = 0.39215687f, cU = 1.38823533f, cV = 1.02745104f, S = 255.0f;
  static float in(uint8_t v) { return static_cast<float>(v); }
  static uint8_t out(int32_t v) { return static_cast<uint8_t>(clip8(v)); }
  static constexpr uint8_t kBlack = 0;
};
template <class T>
struct InvScale16 {
  static constexpr float cL = 0.0015259022f, cU = 0.0054016938f, cV = 0.0039978637f, S = 65535.0f;
  static float in(T v) { return in16(v); }
  static T out(int32_t v) { return out16<T>(v); }
  static constexpr T kBlack = std::is_same<T, int16_t>::value ? T(-32768) : T(0);
};
template <>
struct InvScale<uint16_t> : InvScale16<uint16_t> {};
template <>
struct InvScale<int16_t> : InvScale16<int16_t> {};

// Where the body keeps L away from 0: on the scaled value (Lp <= 9e-5 gains
// 9e-5), on the sample (the same test and addition before the scale), or on
// the sample with 7.9996247 for both.
enum class Guard { Scaled, Sample, Sample8 };
template <Guard G>
inline float guardedL(float Lv, float cL) {
  if (G == Guard::Sample && Lv <= 9e-5f) Lv = Lv + 9e-5f;
  if (G == Guard::Sample8 && Lv <= 7.9996247f) Lv = Lv + 7.9996247f;
  float Lp = Lv * cL;
  if (G == Guard::Scaled && Lp <= 9e-5f) Lp = Lp + 9e-5f;
  return Lp;
}
// The body's reciprocal: arcp for 8u, nrcp for the 16-bit forms.
template <class T>
inline float bodyRcp(float a) {
  return std::is_same<T, uint8_t>::value ? colour::arcp(a) : colour::nrcp(a);
}

// Body pixels: reciprocals, no division.
template <class T, Guard G>
struct InvBody {
  static void px(const T* i, T* o) {
    using K = InvScale<T>;
    const float Lp = guardedL<G>(K::in(i[0]), K::cL);
    const float Up = K::in(i[1]) * K::cU - 134.0f, Vp = K::in(i[2]) * K::cV - 140.0f;
    const float r = bodyRcp<T>(13.0f * Lp);
    const float uq = Up * r + 0.197839f;
    float vq = Vp * r + 0.468342f;
    float y;
    if (Lp <= 7.9996247f) {
      y = Lp * 0.001107052f;
    } else {
      const float t = (Lp + 16.0f) * 0.00862069f;
      y = t * (t * t);
    }
    const float Yv = y * K::S;
    if (std::fabs(vq) <= 1.1920929e-5f) vq = vq + 9e-5f;
    const float T_ = bodyRcp<T>(vq) * Yv;
    const float Xv = (T_ * 2.25f) * uq;
    const float Zv = ((T_ * 3.0f) - (Yv * 5.0f)) - (Xv * 0.33333334f);
    o[0] = K::out(colour::truncF((3.240479f * Xv - 1.53715f * Yv) - 0.498535f * Zv));
    o[1] = K::out(colour::truncF((-0.969256f * Xv + 1.875991f * Yv) + 0.041556f * Zv));
    o[2] = K::out(colour::truncF((0.055648f * Xv - 0.204043f * Yv) + 1.057311f * Zv));
  }
};

// Tail pixels: true divisions; the last sum of B in double precision.
template <class T>
struct InvTail {
  static void px(const T* i, T* o) {
    using K = InvScale<T>;
    constexpr bool k16 = !std::is_same<T, uint8_t>::value;
    const float S = K::S;
    const float Lp = (100.0f * K::in(i[0])) / S;
    if (Lp < 9e-5f) {
      o[0] = o[1] = o[2] = K::kBlack;
      return;
    }
    const float Up = (354.0f * K::in(i[1])) / S - 134.0f, Vp = (K::in(i[2]) * 262.0f) / S - 140.0f;
    const float U1 = Up / (13.0f * Lp), V1 = Vp / (13.0f * Lp);
    float y;
    if (Lp >= 7.9996247f) {
      const float t = (Lp + 16.0f) / 116.0f;
      y = (t * t) * t;
    } else {
      y = Lp / 903.3f;
    }
    const float Yv = S * y;
    float vq = 0.4683422f + V1;
    if (k16 && 1.1920929e-5f > std::fabs(vq)) vq = 9e-5f + vq;
    const float T_ = Yv / vq;
    const float Xv = k16 ? ((0.19783941f + U1) * 2.25f) * T_ : (2.25f * T_) * (0.19783941f + U1);
    const float Zv = (3.0f * T_ - 5.0f * Yv) - Xv / 3.0f;
    o[0] = K::out(colour::truncF(((0.5f - 1.53715f * Yv) + 3.240479f * Xv) - 0.498535f * Zv));
    o[1] = K::out(colour::truncF(((0.5f + 1.875991f * Yv) - 0.969256f * Xv) + 0.041556f * Zv));
    const double b = (static_cast<double>(0.055648f * Xv - 0.204043f * Yv) + 0.5) + 1.057311 * static_cast<double>(Zv);
    o[2] = K::out(_mm_cvttsd_si32(_mm_set_sd(b)));
  }
};

// 32f, every pixel: true divisions, each result limited to 0..1. Any sample
// may be NaN: the sums and products of two of them are in the written order.
struct Inv32f {
  static void px(const float* i, float* o) {
    using colour::addF;
    using colour::mulF;
    using colour::subF;
    const float L = i[0], U = i[1], V = i[2];
    if (L < 9e-5f) {
      o[0] = o[1] = o[2] = 0.0f;
      return;
    }
    float y;
    if (L >= 7.9996247f) {
      const float t = (L + 16.0f) / 116.0f;
      y = (t * t) * t;
    } else {
      y = L / 903.3f;
    }
    const float uq = (0.197839f + U / (13.0f * L)) * 2.25f;
    float vq = 0.468342f + V / (13.0f * L);
    if (1.1920929e-7f > std::fabs(vq)) vq = 9e-5f + vq;
    const float T_ = y / vq;
    const float Xv = mulF(uq, T_);
    const float Zv = subF(subF(3.0f * T_, 5.0f * y), Xv / 3.0f);
    o[0] = colour::limit01(subF(subF(3.240479f * Xv, 1.53715f * y), 0.498535f * Zv));
    o[1] = colour::limit01(addF(subF(1.875991f * y, 0.969256f * Xv), 0.041556f * Zv));
    o[2] = colour::limit01(addF(subF(0.055648f * Xv, 0.204043f * y), 1.057311f * Zv));
  }
};

}  // namespace luv
}  // namespace

}  // namespace kel
