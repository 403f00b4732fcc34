// The hexcone models: RGB and BGR to and from HLS (hue, lightness,
// saturation) and HSV (hue, saturation, value).
//
// Every row has a body (vector blocks) and a tail (pixel by pixel) whose
// formulas differ in the reciprocal they use (arcp or nrcp), in the order of
// a few products and in the rounding of the result, so a pixel's value
// depends on its column, its member and its layout. Each form below is the
// scalar definition of one run; the vector kernels are held to them bit for
// bit.
//
// Scales: 8u hue 0..255 is a full turn, L, S, V 0..255; 16u 0..65535 for
// everything; 16s is 16u on s + 32768 with the result minus 32768; 32f
// 0.0..1.0 for everything.
#pragma once

#include "colour/colour_common.h"
#include "frame/pixel3.h"

namespace kel {

// The vector bodies each instruction-set file provides.
struct HlsHsvKernels {
  // RGB <-> HLS; 8u C3 and AC4 bodies differ in group size only.
  colour::KernPx<uint8_t> hls8C3, hls8AC4, rgb8C3, rgb8AC4;
  colour::KernPx<uint16_t> hls16uC3, hls16uAC4, rgb16uC3, rgb16uAC4;
  colour::KernPx<int16_t> hls16sC3, hls16sAC4, rgb16sC3, rgb16sAC4;
  colour::KernPx<float> hls32fC3, hls32fAC4, rgb32fC3, rgb32fAC4;
  // RGB <-> HSV.
  colour::KernPx<uint8_t> hsv8C3, hsv8AC4, hsvRgb8C3, hsvRgb8AC4;
  colour::KernPx<uint16_t> hsv16C3, hsv16AC4, hsvRgb16C3, hsvRgb16AC4;
  // The BGR group, by layout: slot 0 is AC4 going forward (the P3C3
  // form of BGR -> HLS has no body) and P3C3 on the way back; then C3P3,
  // P3, AC4P4, AP4C4, AP4.
  Kern3 bgrHls[6];
  Kern3 hlsBgr[6];
};
namespace sse41 {
extern const HlsHsvKernels kHlsHsvKernels;
}
namespace avx2 {
extern const HlsHsvKernels kHlsHsvKernels;
}
namespace avx512 {
extern const HlsHsvKernels kHlsHsvKernels;
extern const HlsHsvKernels kHlsHsvKernelsVbmi;  // 8u C3 bodies by VBMI permutes
}

namespace {
namespace hlshsv {

using colour::arcp;
using colour::nrcp;
using colour::roundF;
using colour::truncF;

// ---- constant tables -----------------------------------------------------------
// Each constant repeated over four lanes, as the vector routines load them.
struct Lanes4 {
  float v[4];
};
#define KEL_L4(x) {{x, x, x, x}}
// The HSV routines' constants (8u entries first, then 16u).
enum HsvK { kT8, kE8, k2, k4, kT16, kE16, k1, kSixtieth, kP8, kC8, kP16, kC16 };
alignas(16) inline constexpr Lanes4 HSV[12] = {
    KEL_L4(255.0f),        KEL_L4(42.5f),     KEL_L4(2.0f),        KEL_L4(4.0f),
    KEL_L4(65535.0f),      KEL_L4(10922.5f),  KEL_L4(1.0f),        KEL_L4(0.016666668f),
    KEL_L4(1.4117647f),    KEL_L4(0.003921569f), KEL_L4(0.005493248f), KEL_L4(1.5259022e-5f)};
// The 32f HLS to RGB routines' constants.
enum K32f { kf0, kfHalf, kf131070, kf60, kf120, kf240, kf360, kf65535, kfHue16, kfP16, kfC16, kfSixtieth, kf2, kfC8 };
alignas(16) inline constexpr Lanes4 k32f[14] = {
    KEL_L4(0.0f),        KEL_L4(0.5f),         KEL_L4(131070.0f),  KEL_L4(60.0f),    KEL_L4(120.0f),
    KEL_L4(240.0f),      KEL_L4(360.0f),       KEL_L4(65535.0f),   KEL_L4(182.04167f), KEL_L4(0.005493248f),
    KEL_L4(1.5259022e-5f), KEL_L4(0.016666668f), KEL_L4(2.0f),     KEL_L4(0.003921569f)};
#undef KEL_L4
inline float hsvK(HsvK k) { return HSV[k].v[0]; }
inline float f32K(K32f k) { return k32f[k].v[0]; }

// max and min as the vector units take them: a > b ? a : b and a < b ? a : b
// (with a NaN the second operand), applied as max(max(R, G), B).
inline float maxf(float a, float b) { return a > b ? a : b; }
inline float minf(float a, float b) { return a < b ? a : b; }

// ---- reciprocals, conversions ---------------------------------------------------
enum class Rcp { A, N };  // arcp, nrcp
template <Rcp K>
inline float rcp(float a) {
  return K == Rcp::A ? arcp(a) : nrcp(a);
}

// How a float result becomes a sample: nearest (ties to even) or toward zero,
// then saturated to the depth or reduced to its low bits. 16s results come
// off the 16u scale after that.
enum class Cv { NearSat, NearLow, TruncSat, TruncLow };
constexpr bool isNear(Cv c) { return c == Cv::NearSat || c == Cv::NearLow; }
constexpr bool isSat(Cv c) { return c == Cv::NearSat || c == Cv::TruncSat; }

template <Cv C>
inline int32_t toInt(float x) {
  return isNear(C) ? roundF(x) : truncF(x);
}

template <class T>
struct Depth;
template <>
struct Depth<uint8_t> {
  static float in(uint8_t v) { return v; }
  template <Cv C>
  static uint8_t out(float x) {
    return static_cast<uint8_t>(isSat(C) ? clip8(toInt<C>(x)) : toInt<C>(x));
  }
};
template <>
struct Depth<uint16_t> {
  static float in(uint16_t v) { return v; }
  template <Cv C>
  static uint16_t out(float x) {
    return static_cast<uint16_t>(isSat(C) ? sat16u(toInt<C>(x)) : toInt<C>(x));
  }
};
template <>
struct Depth<int16_t> {
  static float in(int16_t v) { return static_cast<float>(colour::in16s(v)); }
  template <Cv C>
  static int16_t out(float x) {
    return isSat(C) ? colour::out16sSat(toInt<C>(x)) : colour::out16sWrap(toInt<C>(x));
  }
};
template <class T>
constexpr float kFull = sizeof(T) == 1 ? 255.0f : 65535.0f;

// ===================================== RGB -> HLS ===================================
// Integer depths, single precision. S2 is the full scale, K the factor from
// degrees to the hue scale. The hue's reciprocal of D enters as
//   KFirst:  (G - B) * (60 * rcp(D))        (bodies of the RGB members)
//   Product: ((G - B) * 60) * rcp(D)        (tails; bodies of the BGR members)
// A gray pixel (D = 0) gives h = s = 0; lf is the unconverted lightness.
enum class HueK { KFirst, Product };

template <Rcp R_, HueK Hk>
inline void hlsFwd(float R, float G, float B, float S2, float K, float& h, float& lf, float& s) {
  const float mx = maxf(maxf(R, G), B), mn = minf(minf(R, G), B);
  const float D = mx - mn, U = mn + mx;
  lf = U * 0.5f;
  if (D == 0.0f) {
    h = 0.0f, s = 0.0f;
    return;
  }
  const float W = lf <= S2 * 0.5f ? U : 2.0f * S2 - U;
  s = (D * rcp<R_>(W)) * S2;
  float hue;
  if (Hk == HueK::KFirst) {
    const float k = 60.0f * rcp<R_>(D);
    hue = mx == R ? (G - B) * k : mx == G ? (B - R) * k + 120.0f : (R - G) * k + 240.0f;
  } else {
    const float r = rcp<R_>(D);
    hue = mx == R ? ((G - B) * 60.0f) * r : mx == G ? ((B - R) * 60.0f) * r + 120.0f : ((R - G) * 60.0f) * r + 240.0f;
  }
  if (hue < 0.0f) hue += 360.0f;
  h = hue * K;
}

// One form of an integer depth: reciprocal, hue order, conversion.
template <class T, Rcp R_, HueK Hk, Cv C>
struct HlsOf {
  static void px(const T* i, T* o) {
    using D = Depth<T>;
    float h, l, s;
    hlsFwd<R_, Hk>(D::in(i[0]), D::in(i[1]), D::in(i[2]), kFull<T>, sizeof(T) == 1 ? 0.7083333f : 182.04167f, h, l,
                   s);
    o[0] = D::template out<C>(h), o[1] = D::template out<C>(l), o[2] = D::template out<C>(s);
  }
};

// 32f, with true divisions; differences up to one float epsilon count as gray.
inline void hlsFwd32f(float R, float G, float B, float& H, float& L, float& S) {
  const float mx = maxf(maxf(R, G), B), mn = minf(minf(R, G), B);
  const float D = mx - mn, U = mx + mn;
  if (1.1920929e-7f >= D) {
    H = 0.0f, S = 0.0f;
  } else {
    S = 0.5f >= 0.5f * U ? D / U : D / (2.0f - U);
    float hue = mx == R ? (60.0f * (G - B)) / D
                        : mx == G ? 120.0f + (60.0f * (B - R)) / D : 240.0f + (60.0f * (R - G)) / D;
    if (hue < 0.0f) hue += 360.0f;
    H = hue / 360.0f;
  }
  L = 0.5f * U;
}
struct Hls32f {
  static void px(const float* i, float* o) { hlsFwd32f(i[0], i[1], i[2], o[0], o[1], o[2]); }
};

// ===================================== HLS -> RGB ===================================
// h in degrees, l and s on 0..1. M1 = 2 l - M2, and per channel
//   f(x) = ramp(x) below 60, M2 below 180, ramp(240 - x) below 240, else M1,
// R = f(h + 120, less 360 above 360), G = f(h), B = f(h - 120, plus 360
// below 0). The forms differ in how M2 and the ramp are written:
//   M2 kinds   A: l <= 0.5 ? (l * s) + l : (s - l * s) + l
//              B: l <= 0.5 ? l * (s + 1) : (l + s) - l * s
//              C: l <= 0.5 ? l + l * s   : (l + s) - l * s
//   ramp kinds A: ((M2 - M1) * x) * (1/60) + M1
//              B: M1 + ((M2 - M1) * x) / 60
//              C: (x * (1/60)) * (M2 - M1) + M1
enum class Kind { A, B, C };

template <Kind K>
inline float m2Of(float l, float s) {
  if (K == Kind::A) return l <= 0.5f ? (l * s) + l : (s - l * s) + l;
  if (K == Kind::B) return l <= 0.5f ? l * (s + 1.0f) : (l + s) - l * s;
  return l <= 0.5f ? l + l * s : (l + s) - l * s;
}
template <Kind K>
inline float rampOf(float m1, float m2, float x) {
  if (K == Kind::A) return ((m2 - m1) * x) * 0.016666668f + m1;
  if (K == Kind::B) return m1 + ((m2 - m1) * x) / 60.0f;
  return (x * 0.016666668f) * (m2 - m1) + m1;
}
template <Kind Km, Kind Kr>
inline void hlsInv(float h, float l, float s, float& r, float& g, float& b) {
  const float m2 = m2Of<Km>(l, s), m1 = 2.0f * l - m2;
  auto f = [&](float x) {
    return x < 60.0f ? rampOf<Kr>(m1, m2, x) : x < 180.0f ? m2 : x < 240.0f ? rampOf<Kr>(m1, m2, 240.0f - x) : m1;
  };
  float hr = h + 120.0f;
  if (hr > 360.0f) hr = hr - 360.0f;
  float hb = h - 120.0f;
  if (hb < 0.0f) hb = hb + 360.0f;
  r = f(hr), g = f(h), b = f(hb);
}

// Input scalings of the integer forms.
struct ScaleMul8 {  // 8u bodies, the BGR group
  static void in(float H, float L, float S, float& h, float& l, float& s) {
    h = H * 1.4117647f, l = L * 0.003921569f, s = S * 0.003921569f;
  }
};
struct ScaleDiv8 {  // 8u tails of the RGB members
  static void in(float H, float L, float S, float& h, float& l, float& s) {
    h = (360.0f * H) / 255.0f, l = L / 255.0f, s = S / 255.0f;
  }
};
struct ScaleMul16 {
  static void in(float H, float L, float S, float& h, float& l, float& s) {
    h = H * 0.005493248f, l = L * 1.5259022e-5f, s = S * 1.5259022e-5f;
  }
};

// An integer form: scaling, M2 and ramp kinds, conversion of full scale * f.
// Where CopyGray holds (the tails) a pixel with S = 0 gives back its L.
template <class T, class Sc, Kind Km, Kind Kr, Cv C, bool CopyGray>
struct RgbOf {
  static void px(const T* i, T* o) {
    using D = Depth<T>;
    if (CopyGray && i[2] == 0) {
      o[0] = o[1] = o[2] = i[1];
      return;
    }
    float h, l, s, r, g, b;
    Sc::in(D::in(i[0]), D::in(i[1]), D::in(i[2]), h, l, s);
    hlsInv<Km, Kr>(h, l, s, r, g, b);
    o[0] = D::template out<C>(kFull<T> * r), o[1] = D::template out<C>(kFull<T> * g);
    o[2] = D::template out<C>(kFull<T> * b);
  }
};
// 32f: h = 360 H, nothing limited. The tail copies L where S = 0.
template <Kind Km, Kind Kr, bool CopyGray>
struct Rgb32fOf {
  static void px(const float* i, float* o) {
    if (CopyGray && i[2] == 0.0f) {
      o[0] = o[1] = o[2] = i[1];
      return;
    }
    hlsInv<Km, Kr>(f32K(kf360) * i[0], i[1], i[2], o[0], o[1], o[2]);
  }
};

// ===================================== RGB -> HSV ===================================
// T the full scale, E = T / 6. Gray and black give h = s = 0. The sextant
// priorities: tails B over G over R, bodies B over R over G.
template <Rcp R_, bool Body>
inline void hsvFwd(float R, float G, float B, float T, float E, float& h, float& s) {
  const float mx = maxf(maxf(R, G), B), mn = minf(minf(R, G), B);
  const float D = mx - mn;
  if (mx == 0.0f || D == 0.0f) {
    h = 0.0f, s = 0.0f;
    return;
  }
  s = (rcp<R_>(mx) * D) * T;
  const float r = rcp<R_>(D);
  const float a = (mx - R) * r, b = (mx - G) * r, c = (mx - B) * r;
  float t;
  if (mx == B) t = (b - a) + hsvK(k4);
  else if (Body ? mx == R : mx != G) t = c - b;
  else t = (a - c) + hsvK(k2);
  h = t * E;
  if (h < 0.0f) h = h + T;
}
template <class T, Rcp R_, bool Body, Cv C>
struct HsvOf {
  static void px(const T* i, T* o) {
    using D = Depth<T>;
    const bool b8 = sizeof(T) == 1;
    const float R = D::in(i[0]), G = D::in(i[1]), B = D::in(i[2]);
    float h, s;
    hsvFwd<R_, Body>(R, G, B, hsvK(b8 ? kT8 : kT16), hsvK(b8 ? kE8 : kE16), h, s);
    o[0] = D::template out<C>(h), o[1] = D::template out<C>(s);
    o[2] = static_cast<T>(maxf(maxf(R, G), B));
  }
};

// ===================================== HSV -> RGB ===================================
// H = T is H = 0; q = (H / 60) * P runs over 0..6, i its sextant.
inline void hsvInv(float H, float S, float V, float T, float P, float C, float& r, float& g, float& b) {
  if (H == T) H = 0.0f;
  const float q = (H * hsvK(kSixtieth)) * P;
  const int32_t i = truncF(q);
  const float fr = q - static_cast<float>(i);
  const float vs = V * (S * C);
  const float p = V - vs, t1 = fr * vs, qv = V - t1, tv = p + t1;
  switch (i) {
    case 1: r = qv, g = V, b = p; break;
    case 2: r = p, g = V, b = tv; break;
    case 3: r = p, g = qv, b = V; break;
    case 4: r = tv, g = p, b = V; break;
    case 5: r = V, g = p, b = qv; break;
    default: r = V, g = tv, b = p; break;  // 0; no input gives i above 5
  }
}
// Body: the conversion C of every channel. Tail: nearest, with the channel
// that is V copied from the source.
template <class T, bool Body, Cv C>
struct HsvRgbOf {
  static void px(const T* i, T* o) {
    using D = Depth<T>;
    const bool b8 = sizeof(T) == 1;
    const float V = D::in(i[2]);
    float c[3];
    hsvInv(D::in(i[0]), D::in(i[1]), V, hsvK(b8 ? kT8 : kT16), hsvK(b8 ? kP8 : kP16), hsvK(b8 ? kC8 : kC16), c[0],
           c[1], c[2]);
    for (int k = 0; k < 3; ++k) o[k] = !Body && c[k] == V ? i[2] : D::template out<C>(c[k]);
  }
};

// ===================================== the BGR group ================================
// Pixels as the three-channel row routines see them: (B, G, R) -> (H, L, S)
// and back, in ints.
template <Rcp R_, HueK Hk, Cv C>
struct BgrHls {
  static void px(int B, int G, int R, int& H, int& L, int& S) {
    float h, l, s;
    hlsFwd<R_, Hk>(static_cast<float>(R), static_cast<float>(G), static_cast<float>(B), 255.0f, 0.7083333f, h, l, s);
    H = Depth<uint8_t>::out<C>(h), L = Depth<uint8_t>::out<C>(l), S = Depth<uint8_t>::out<C>(s);
  }
};
template <Cv C, bool CopyGray>
struct HlsBgr {
  static void px(int H, int L, int S, int& B, int& G, int& R) {
    if (CopyGray && S == 0) {
      B = G = R = L;
      return;
    }
    float h, l, s, r, g, b;
    ScaleMul8::in(static_cast<float>(H), static_cast<float>(L), static_cast<float>(S), h, l, s);
    hlsInv<Kind::C, Kind::C>(h, l, s, r, g, b);
    B = Depth<uint8_t>::out<C>(255.0f * b), G = Depth<uint8_t>::out<C>(255.0f * g), R = Depth<uint8_t>::out<C>(255.0f * r);
  }
};

// ---- the forms by member ------------------------------------------------------------
// RGB -> HLS                     body                                  tail
using HlsB8 = HlsOf<uint8_t, Rcp::A, HueK::KFirst, Cv::NearSat>;
using HlsT8C3 = HlsOf<uint8_t, Rcp::N, HueK::Product, Cv::TruncLow>;
using HlsT8AC4 = HlsOf<uint8_t, Rcp::N, HueK::Product, Cv::NearLow>;
template <class T>
using HlsB16 = HlsOf<T, Rcp::N, HueK::KFirst, Cv::NearSat>;
template <class T>
using HlsT16 = HlsOf<T, Rcp::N, HueK::Product, Cv::TruncLow>;
// HLS -> RGB
using RgbB8 = RgbOf<uint8_t, ScaleMul8, Kind::A, Kind::A, Cv::NearSat, false>;
using RgbT8 = RgbOf<uint8_t, ScaleDiv8, Kind::B, Kind::B, Cv::TruncLow, true>;
template <class T>
using RgbB16 = RgbOf<T, ScaleMul16, Kind::A, Kind::A, Cv::NearSat, false>;
template <class T>
using RgbT16 = RgbOf<T, ScaleMul16, Kind::C, Kind::C, Cv::NearLow, true>;
using RgbB32f = Rgb32fOf<Kind::C, Kind::C, false>;
using RgbT32f = Rgb32fOf<Kind::B, Kind::B, true>;
// RGB -> HSV and back
using HsvB8 = HsvOf<uint8_t, Rcp::A, true, Cv::TruncSat>;
using HsvT8 = HsvOf<uint8_t, Rcp::A, false, Cv::NearLow>;
using HsvB16 = HsvOf<uint16_t, Rcp::N, true, Cv::NearSat>;
using HsvT16 = HsvOf<uint16_t, Rcp::N, false, Cv::NearLow>;
using HsvRgbB8 = HsvRgbOf<uint8_t, true, Cv::TruncSat>;
using HsvRgbT8 = HsvRgbOf<uint8_t, false, Cv::NearLow>;
using HsvRgbB16 = HsvRgbOf<uint16_t, true, Cv::NearLow>;
using HsvRgbT16 = HsvRgbOf<uint16_t, false, Cv::NearLow>;
// The BGR group
using BgrHlsB = BgrHls<Rcp::A, HueK::Product, Cv::TruncSat>;
using BgrHlsT = BgrHls<Rcp::N, HueK::Product, Cv::TruncLow>;
using HlsBgrB = HlsBgr<Cv::TruncSat, false>;
using HlsBgrT = HlsBgr<Cv::TruncLow, true>;

}  // namespace hlshsv
}  // namespace

}  // namespace kel
