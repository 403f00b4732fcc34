// RGB <-> CIE XYZ at 8u, 16u, 16s and 32f. The matrices
//   X = 0.412453 R + 0.35758 G + 0.180423 B      R =  3.240479 X - 1.53715 Y - 0.498535 Z
//   Y = 0.212671 R + 0.71516 G + 0.072169 B      G = -0.969256 X + 1.875991 Y + 0.041556 Z
//   Z = 0.019334 R + 0.119193 G + 0.950227 B     B =  0.055648 X - 0.204043 Y + 1.057311 Z
// in the numeric form of each depth; the 8u bodies and tails use different
// fixed-point scales, so a pixel's value depends on its column.
#pragma once

#include "colour/colour_common.h"

namespace kel {

// The vector bodies each instruction-set file provides (null: none there).
struct XyzKernels {
  colour::KernPx<uint8_t> fwd8C3, fwd8AC4;     // RGB -> XYZ, form F15
  colour::KernPx<uint8_t> inv8C3, inv8AC4;     // XYZ -> RGB, form I13
  colour::KernPx<uint16_t> fwd16uC3, fwd16uAC4, inv16uC3, inv16uAC4;
  colour::KernPx<int16_t> fwd16sC3, fwd16sAC4, inv16sC3, inv16sAC4;
  // 32f: one form for every pixel, run four or eight at a time.
  colour::KernPx<float> fwd32fC3, fwd32fAC4, inv32fC3, inv32fAC4;
};
namespace sse41 {
extern const XyzKernels kXyzKernels;
}
namespace avx2 {
extern const XyzKernels kXyzKernels;
}
namespace avx512 {
extern const XyzKernels kXyzKernels;
extern const XyzKernels kXyzKernelsVbmi;  // 8u C3 bodies by VBMI permutes
}

namespace {
namespace xyz {

// ---- 8u -----------------------------------------------------------------
// F15: Q15 body, exact sums, saturated (only Z can exceed 255).
struct F15 {
  static void px(const uint8_t* i, uint8_t* o) {
    const int R = i[0], G = i[1], B = i[2];
    o[0] = static_cast<uint8_t>(clip8((13515 * R + 11717 * G + 5912 * B) >> 15));
    o[1] = static_cast<uint8_t>(clip8((6969 * R + 23434 * G + 2365 * B) >> 15));
    o[2] = static_cast<uint8_t>(clip8((634 * R + 3906 * G + 31137 * B) >> 15));
  }
};
// F16: Q16 tail; X and Y stay in range by construction, Z is limited above.
struct F16 {
  static void px(const uint8_t* i, uint8_t* o) {
    const int R = i[0], G = i[1], B = i[2];
    o[0] = static_cast<uint8_t>((27030 * R + 23434 * G + 11824 * B) >> 16);
    o[1] = static_cast<uint8_t>((13937 * R + 46868 * G + 4729 * B) >> 16);
    const int z = (1267 * R + 7811 * G + 62274 * B) >> 16;
    o[2] = static_cast<uint8_t>(z < 255 ? z : 255);
  }
};
// I13: Q13 body of the inverse.
struct I13 {
  static void px(const uint8_t* i, uint8_t* o) {
    const int X = i[0], Y = i[1], Z = i[2];
    o[0] = static_cast<uint8_t>(clip8((26546 * X - 12591 * Y - 4083 * Z) >> 13));
    o[1] = static_cast<uint8_t>(clip8((-7939 * X + 15368 * Y + 340 * Z) >> 13));
    o[2] = static_cast<uint8_t>(clip8((456 * X - 1671 * Y + 8661 * Z) >> 13));
  }
};
// I16: Q16 tail of the inverse.
struct I16 {
  static void px(const uint8_t* i, uint8_t* o) {
    const int X = i[0], Y = i[1], Z = i[2];
    o[0] = static_cast<uint8_t>(clip8((212368 * X - 100738 * Y - 32671 * Z) >> 16));
    o[1] = static_cast<uint8_t>(clip8((-63521 * X + 122944 * Y + 2723 * Z) >> 16));
    o[2] = static_cast<uint8_t>(clip8((3646 * X - 13372 * Y + 69291 * Z) >> 16));
  }
};

// ---- single precision ------------------------------------------------------
// Products rounded one by one and added left to right (no contraction),
// each sum in its written operand order (colour::addF): where two terms are
// NaN, the first one's payload is the one stored.
inline void fwdF(float R, float G, float B, float& X, float& Y, float& Z) {
  using colour::addF;
  X = addF(addF(0.412453f * R, 0.35758f * G), 0.180423f * B);
  Y = addF(addF(0.212671f * R, 0.71516f * G), 0.072169f * B);
  Z = addF(addF(0.019334f * R, 0.119193f * G), 0.950227f * B);
}
inline void invF(float X, float Y, float Z, float& R, float& G, float& B) {
  using colour::addF;
  using colour::subF;
  R = subF(subF(3.240479f * X, 1.53715f * Y), 0.498535f * Z);
  G = addF(addF(-0.969256f * X, 1.875991f * Y), 0.041556f * Z);
  B = addF(subF(0.055648f * X, 0.204043f * Y), 1.057311f * Z);
}

// 16-bit depths: samples on the 0..65535 scale (16s through its offset),
// results truncated and saturated. Body and tail are the same form.
template <class T>
struct Depth16;
template <>
struct Depth16<uint16_t> {
  static float in(uint16_t v) { return static_cast<float>(v); }
  static uint16_t sat(int32_t t) { return static_cast<uint16_t>(sat16u(t)); }
  static uint16_t wrap(int32_t t) { return static_cast<uint16_t>(t); }
};
template <>
struct Depth16<int16_t> {
  static float in(int16_t v) { return static_cast<float>(colour::in16s(v)); }
  static int16_t sat(int32_t t) { return colour::out16sSat(t); }
  static int16_t wrap(int32_t t) { return colour::out16sWrap(t); }
};

template <class T>
struct Fwd16 {
  static void px(const T* i, T* o) {
    using D = Depth16<T>;
    float X, Y, Z;
    fwdF(D::in(i[0]), D::in(i[1]), D::in(i[2]), X, Y, Z);
    o[0] = D::sat(colour::truncF(X)), o[1] = D::sat(colour::truncF(Y)), o[2] = D::sat(colour::truncF(Z));
  }
};
template <class T>
struct Inv16 {
  static void px(const T* i, T* o) {
    using D = Depth16<T>;
    float R, G, B;
    invF(D::in(i[0]), D::in(i[1]), D::in(i[2]), R, G, B);
    o[0] = D::sat(colour::truncF(R)), o[1] = D::sat(colour::truncF(G)), o[2] = D::sat(colour::truncF(B));
  }
};

// 32f: X and Y as they come, Z limited to 0..1; the inverse limits all three.
struct Fwd32f {
  static void px(const float* i, float* o) {
    float X, Y, Z;
    fwdF(i[0], i[1], i[2], X, Y, Z);
    o[0] = X, o[1] = Y, o[2] = colour::limit01(Z);
  }
};
struct Inv32f {
  static void px(const float* i, float* o) {
    float R, G, B;
    invF(i[0], i[1], i[2], R, G, B);
    o[0] = colour::limit01(R), o[1] = colour::limit01(G), o[2] = colour::limit01(B);
  }
};

}  // namespace xyz
}  // namespace

}  // namespace kel
