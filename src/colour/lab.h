// BGR <-> CIE L*a*b* at 8 bits, with an 8-bit or 16-bit Lab side. The
// forward direction takes the cube roots of X, Y and Z (each over its white)
// from the anchors of POW_LUV and a binomial series; the inverse cubes and
// has no linear branch. Body (groups of 4) and tail compute the same formula;
// the body saturates and the tail keeps the low bits, which every input
// leaves in range, so no result depends on its column.
#pragma once

#include "colour/luv.h"

namespace kel {

// The vector bodies each instruction-set file provides; pointers are rows.
template <class S, class D>
using KernLab = int (*)(const S* s, D* d, int x, int n);
struct LabKernels {
  KernLab<uint8_t, uint8_t> fwd8;
  KernLab<uint8_t, uint16_t> fwd16;
  KernLab<uint8_t, uint8_t> inv8;
  KernLab<uint16_t, uint8_t> inv16;
};
namespace sse41 {
extern const LabKernels kLabKernels;
}
namespace avx2 {
extern const LabKernels kLabKernels;
}
namespace avx512 {
extern const LabKernels kLabKernels;
}

namespace {
namespace lab {

using luv::ld;
using luv::st;

// g(t): the cube root about anchor trunc(127.998047 t), which keeps t = 1.0 at
// 127; 8-bit sources give t within 0..1, so k stays within 0..127. The 16-bit
// member's series runs to eight terms with s7, s8 at fewer digits.
template <int Terms>
inline float cube(float t) {
  const uint32_t k = static_cast<uint32_t>(colour::truncF(t * 127.998047f));
  return luv::cubeRoot<Terms>(t, k, 0.0190012f, 0.0158343f);
}
template <int Terms>
inline float f(float t) {
  return t <= 0.008856f ? 7.787f * t + 0.13793103f : cube<Terms>(t);
}

// BGR -> Lab. To16: the 16-bit Lab side (eight terms, values times 255 in a
// and b, L * 655.35). Body saturates, tail keeps the low bits.
template <bool To16, bool Body>
struct Fwd {
  using D = typename std::conditional<To16, uint16_t, uint8_t>::type;
  static D out(float v) {
    const int32_t n = colour::roundF(v);
    if (!Body) return static_cast<D>(n);
    return static_cast<D>(To16 ? sat16u(n) : clip8(n));
  }
  static void px(const uint8_t* i, D* o) {
    constexpr int kTerms = To16 ? 8 : 6;
    const float B = i[0], G = i[1], R = i[2];
    const float tx = ((0.412453f * R + 0.35758f * G) + 0.180423f * B) * 0.0041259914f;
    const float ty = ((0.212671f * R + 0.71516f * G) + 0.072169f * B) * 0.003921569f;
    const float tz = ((0.019334f * R + 0.119193f * G) + 0.950227f * B) * 0.0036018905f;
    const float fx = f<kTerms>(tx), fy = f<kTerms>(ty), fz = f<kTerms>(tz);
    const float L = ty <= 0.008856f ? 903.3f * ty : cube<kTerms>(ty) * 116.0f - 16.0f;
    const float a = (fx - fy) * 500.0f + 128.0f, b = (fy - fz) * 200.0f + 128.0f;
    if (To16) {
      st(o, out(L * 655.35f)), st(o + 1, out(a * 255.0f)), st(o + 2, out(b * 255.0f));
    } else {
      st(o, out(L * 2.55f)), st(o + 1, out(a)), st(o + 2, out(b));
    }
  }
};

// Lab -> BGR, one form for body and tail.
template <bool From16>
struct Inv {
  using S = typename std::conditional<From16, uint16_t, uint8_t>::type;
  static void px(const S* i, uint8_t* o) {
    const float L = ld(i), a = ld(i + 1), b = ld(i + 2);
    float Lp, A, Bv;
    if (From16) {
      Lp = L * 0.00152590219f;
      A = (a * 0.00392156886f - 128.0f) * 0.002f;
      Bv = (b * 0.00392156886f - 128.0f) * 0.005f;
    } else {
      Lp = L * 0.392156869f;
      A = (a - 128.0f) * 0.002f;
      Bv = (b - 128.0f) * 0.005f;
    }
    const float P = (Lp + 16.0f) * 0.00862069f;
    const float fx = P + A, fz = P - Bv;
    const float X = ((fx * fx) * fx) * 242.366f, Y = ((P * P) * P) * 255.0f, Z = ((fz * fz) * fz) * 277.632f;
    const float R = (3.240479f * X - 1.53715f * Y) - 0.498535f * Z;
    const float G = (-0.969256f * X + 1.875991f * Y) + 0.041556f * Z;
    const float Bo = (0.055648f * X - 0.204043f * Y) + 1.057311f * Z;
    o[0] = static_cast<uint8_t>(clip8(colour::roundF(Bo)));
    o[1] = static_cast<uint8_t>(clip8(colour::roundF(G)));
    o[2] = static_cast<uint8_t>(clip8(colour::roundF(R)));
  }
};

}  // namespace lab
}  // namespace

}  // namespace kel
