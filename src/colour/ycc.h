// RGB <-> YCC, the photographic luma-chroma model, at 8u, 16u, 16s and 32f.
// On the 0..1 scale
//   L  = 0.299 R + 0.587 G + 0.114 B         L' = 1.3584 Y
//   Y  = 0.7132668 L                         T1 = 2.2179 (C1 - 0.6117647)
//   C1 = 0.6117647 + 0.4368627 (B - L)       T2 = 1.8215 (C2 - 0.5372549)
//   C2 = 0.5372549 + 0.53192 (R - L)         R = L' + T2, B = L' + T1,
//                                            G = L' - 0.194 T1 - 0.509 T2
// The chroma offsets are 156 and 137 at 8 bits, 40092 and 35209 at 16 bits,
// where the C2 factor is 0.5319216. Results are in the order Y, C1, C2.
#pragma once

#include "colour/colour_common.h"
#include "colour/xyz.h"

namespace kel {

struct YccKernels {
  colour::KernPx<uint8_t> fwd8C3, fwd8AC4, inv8C3, inv8AC4;  // forms YF8, YI8
  colour::KernPx<uint16_t> fwd16uC3, fwd16uAC4, inv16uC3, inv16uAC4;
  colour::KernPx<int16_t> fwd16sC3, fwd16sAC4, inv16sC3, inv16sAC4;
  colour::KernPx<float> fwd32fC3, fwd32fAC4, inv32fC3, inv32fAC4;
};
namespace sse41 {
extern const YccKernels kYccKernels;
}
namespace avx2 {
extern const YccKernels kYccKernels;
}
namespace avx512 {
extern const YccKernels kYccKernels;
extern const YccKernels kYccKernelsVbmi;  // 8u C3 bodies by VBMI permutes
}

namespace {
namespace ycc {

using xyz::Depth16;

// ---- 8u forward -------------------------------------------------------------
// YF8: 16-bit factors; luma on a scale of 64 from three products truncated
// one by one (Q14 weights 4898, 9617, 1867, which add to 16382).
struct YF8 {
  static void px(const uint8_t* i, uint8_t* o) {
    const int R = i[0], G = i[1], B = i[2];
    const int Lv = mulhu(R << 8, 4898) + mulhu(G << 8, 9617) + mulhu(B << 8, 1867);
    const int Db = 64 * B - Lv, Dr = 64 * R - Lv;
    o[0] = static_cast<uint8_t>(clip8(mulhs(Lv, 2921) >> 2));
    o[1] = static_cast<uint8_t>(clip8((mulhs(Db, 1789) + 624) >> 2));
    o[2] = static_cast<uint8_t>(clip8((mulhs(Dr, 2178) + 548) >> 2));
  }
};
// YT8: 32-bit luma, differences on a scale of 16; the low bytes are stored.
struct YT8 {
  static void px(const uint8_t* i, uint8_t* o) {
    const int R = i[0], G = i[1], B = i[2];
    const int32_t Lw = 4898 * R + 9617 * G + 1867 * B;
    const int32_t Db = (16384 * B - Lw) >> 10, Dr = (16384 * R - Lw) >> 10;
    o[0] = static_cast<uint8_t>(((Lw >> 10) * 2921) >> 16);
    o[1] = static_cast<uint8_t>(((Db * 1789) >> 16) + 156);
    o[2] = static_cast<uint8_t>(((Dr * 2178) >> 16) + 137);
  }
};

// ---- 8u inverse -------------------------------------------------------------
// YI8: 16-bit factors, luma factor 5563, green from saturating sums.
struct YI8 {
  static void px(const uint8_t* i, uint8_t* o) {
    const int Lv = mulhu(i[0] << 8, 5563);
    const int T1 = mulhs(128 * (i[1] - 156), 18168), T2 = mulhs(128 * (i[2] - 137), 14921);
    o[0] = static_cast<uint8_t>(clip8((Lv + T2) >> 4));
    o[1] = static_cast<uint8_t>(clip8(adds(Lv >> 1, mulhs(T1, -6357), mulhs(T2, -16679)) >> 3));
    o[2] = static_cast<uint8_t>(clip8((Lv + T1) >> 4));
  }
};
// YJ8: 32-bit, luma factor 5564.
struct YJ8 {
  static void px(const uint8_t* i, uint8_t* o) {
    const int32_t Lw = 5564 * i[0], U = 9084 * i[1] - 1417104, V = 7460 * i[2] - 1022020;
    o[0] = static_cast<uint8_t>(clip8((Lw + V) >> 12));
    o[1] = static_cast<uint8_t>(clip8((16 * Lw - 794 * (U >> 8) - 2084 * (V >> 8)) >> 16));
    o[2] = static_cast<uint8_t>(clip8((Lw + U) >> 12));
  }
};

// ---- 16-bit depths, single precision ------------------------------------------
// Sums and differences of two samples' terms in their written operand order
// (colour::addF, subF): where both are NaN, the first one's payload.
inline float lumaF(float R, float G, float B) {
  return colour::addF(colour::addF(0.299f * R, 0.587f * G), 0.114f * B);
}

// YF16: truncating body of the forward transform; 16u, and 16s on its
// offset form, both saturated.
template <class T>
struct YF16 {
  static void px(const T* i, T* o) {
    using D = Depth16<T>;
    const float R = D::in(i[0]), G = D::in(i[1]), B = D::in(i[2]);
    const float L = lumaF(R, G, B);
    o[0] = D::sat(colour::truncF(0.7132668f * L));
    o[1] = D::sat(colour::truncF((B - L) * 0.4368627f + 40092.0f));
    o[2] = D::sat(colour::truncF((R - L) * 0.5319216f + 35209.0f));
  }
};
// YT16u: the 16u tail, coefficients folded, rounded, low 16 bits stored.
struct YT16u {
  static void px(const uint16_t* i, uint16_t* o) {
    const float R = i[0], G = i[1], B = i[2];
    o[0] = static_cast<uint16_t>(colour::truncF(0.49999f + ((0.213267f * R + 0.418688f * G) + 0.0813124f * B)));
    o[1] = static_cast<uint16_t>(
        colour::truncF(0.49999f + (((40092.0f - 0.130621f * R) - 0.256437f * G) + 0.387058f * B)));
    o[2] = static_cast<uint16_t>(
        colour::truncF(0.49999f + (((35209.0f + 0.372876f * R) - 0.312237f * G) - 0.0606389f * B)));
  }
};
// YT16s: the 16s tail, not folded, rounded, low 16 bits stored.
struct YT16s {
  static void px(const int16_t* i, int16_t* o) {
    using D = Depth16<int16_t>;
    const float R = D::in(i[0]), G = D::in(i[1]), B = D::in(i[2]);
    const float L = lumaF(R, G, B);
    o[0] = D::wrap(colour::truncF(0.49999f + 0.7132668f * L));
    o[1] = D::wrap(colour::truncF(0.49999f + (40092.0f + 0.4368627f * (B - L))));
    o[2] = D::wrap(colour::truncF(0.49999f + (35209.0f + 0.5319216f * (R - L))));
  }
};

// YI16: truncating inverse; the 16u body, and every 16s pixel on the offset
// form (C1 + 32768 - 40092 is the C1 - 7324 of the signed samples).
template <class T>
struct YI16 {
  static void px(const T* i, T* o) {
    using D = Depth16<T>;
    const float L = 1.3584f * D::in(i[0]);
    const float T1 = (D::in(i[1]) - 40092.0f) * 2.2179f;
    const float T2 = (D::in(i[2]) - 35209.0f) * 1.8215f;
    o[0] = D::sat(colour::truncF(L + T2));
    o[1] = D::sat(colour::truncF((L - T1 * 0.194f) - T2 * 0.509f));
    o[2] = D::sat(colour::truncF(L + T1));
  }
};
// YJ16u: the 16u tail of the inverse, rounded, folded green factors.
struct YJ16u {
  static void px(const uint16_t* i, uint16_t* o) {
    const float L = 1.3584f * static_cast<float>(i[0]);
    const float c1 = static_cast<float>(i[1] - 40092), c2 = static_cast<float>(i[2] - 35209);
    o[0] = static_cast<uint16_t>(sat16u(colour::truncF(0.49999f + (L + 1.8215f * c2))));
    o[1] = static_cast<uint16_t>(sat16u(colour::truncF(0.49999f + ((L - 0.4302726f * c1) - 0.92714345f * c2))));
    o[2] = static_cast<uint16_t>(sat16u(colour::truncF(0.49999f + (L + 2.2179f * c1))));
  }
};

// ---- 32f ----------------------------------------------------------------------
struct YF32f {
  static void px(const float* i, float* o) {
    const float R = i[0], G = i[1], B = i[2];
    const float L = lumaF(R, G, B);
    o[0] = 0.7132668f * L;
    o[1] = 0.6117647f + 0.4368627f * colour::subF(B, L);
    o[2] = 0.5372549f + 0.53192f * colour::subF(R, L);
  }
};
struct YI32f {
  static void px(const float* i, float* o) {
    const float L = 1.3584f * i[0];
    const float T1 = 2.2179f * (i[1] - 0.6117647f), T2 = 1.8215f * (i[2] - 0.5372549f);
    using colour::addF;
    using colour::subF;
    o[0] = colour::limit01(addF(L, T2));
    o[1] = colour::limit01(subF(subF(L, 0.194f * T1), 0.509f * T2));
    o[2] = colour::limit01(addF(L, T1));
  }
};

}  // namespace ycc
}  // namespace

}  // namespace kel
