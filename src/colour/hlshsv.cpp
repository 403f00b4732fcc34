// RGB and BGR <-> HLS and HSV: 37 members over the forms of hlshsv.h.
//
// The RGB members (HLS at 8u, 16u, 16s, 32f; HSV at 8u, 16u) share the
// three-channel row routine of the colour models and go to the team above
// 4096 pixels. The BGR members (8u only) are built on the three-channel
// rows of the frame, one layout each, check their steps, and always run
// their rows in a parallel region.
#include "colour/hlshsv.h"

#include "frame/checks.h"
#include "frame/parallel.h"

namespace kel {
namespace {

using namespace colour;
using namespace hlshsv;

template <class T>
Chain<KernPx<T>> chain(KernPx<T> HlsHsvKernels::*m) {
  return chainFor(m, sse41::kHlsHsvKernels, avx2::kHlsHsvKernels, activeVbmi() ? avx512::kHlsHsvKernelsVbmi : avx512::kHlsHsvKernels);
}
inline Chain3 chainBgrHls(int k) {
  return chainOf([k](const HlsHsvKernels& t) { return t.bgrHls[k]; }, sse41::kHlsHsvKernels, avx2::kHlsHsvKernels, activeVbmi() ? avx512::kHlsHsvKernelsVbmi : avx512::kHlsHsvKernels);
}
inline Chain3 chainHlsBgr(int k) {
  return chainOf([k](const HlsHsvKernels& t) { return t.hlsBgr[k]; }, sse41::kHlsHsvKernels, avx2::kHlsHsvKernels, activeVbmi() ? avx512::kHlsHsvKernelsVbmi : avx512::kHlsHsvKernels);
}

// ---- the BGR group ------------------------------------------------------------------
// Rows by static schedule at every size; every row through the frame's
// three-channel row routine, body w & ~3 (none for the P3C3 form).
template <Lay In, Lay Out, class Body, class Tail>
void bgrRows(const Row3& base, int srcStep, int dstStep, KeliSize roi, bool hasBody, const Chain3& ch) {
  const int w = roi.width, body = hasBody ? body4(w) : 0;
  parallelRows(roi.height,
               [&](int r) { row3<In, Out, Body, Tail>(rowOf(base, srcStep, dstStep, r), w, body, ch); });
}

// Steps before size, every plane pointer checked.
inline KelStatus checkBgr(Ptrs ptrs, Arrays arrays, int srcStep, int dstStep, KeliSize roi) {
  return checkD(ptrs, arrays, roi, {srcStep, dstStep});
}

template <Lay In, Lay Out, bool Fwd>
KelStatus bgrMember(const Row3& base, int srcStep, int dstStep, KeliSize roi, int kernel, bool hasBody = true) {
  if (Fwd)
    bgrRows<In, Out, BgrHlsB, BgrHlsT>(base, srcStep, dstStep, roi, hasBody, hasBody ? chainBgrHls(kernel) : Chain3{});
  else
    bgrRows<In, Out, HlsBgrB, HlsBgrT>(base, srcStep, dstStep, roi, hasBody, chainHlsBgr(kernel));
  return kelStatusOk;
}

Row3 rowsOf(const uint8_t* s, uint8_t* d) { return Row3{{s, nullptr, nullptr, nullptr}, {d, nullptr, nullptr, nullptr}}; }
Row3 rowsOf(const uint8_t* s, uint8_t* const* d, int nd) {
  Row3 r{{s, nullptr, nullptr, nullptr}, {}};
  for (int i = 0; i < nd; ++i) r.d[i] = d[i];
  return r;
}
Row3 rowsOf(const uint8_t* const* s, int ns, uint8_t* d) {
  Row3 r{{}, {d, nullptr, nullptr, nullptr}};
  for (int i = 0; i < ns; ++i) r.s[i] = s[i];
  return r;
}
Row3 rowsOf(const uint8_t* const* s, int ns, uint8_t* const* d, int nd) {
  Row3 r{};
  for (int i = 0; i < ns; ++i) r.s[i] = s[i];
  for (int i = 0; i < nd; ++i) r.d[i] = d[i];
  return r;
}

// Kernel slots of the BGR tables: slot 0 is AC4 going forward (BGR -> HLS)
// and P3C3 on the way back.
enum { kAC4, kC3P3, kP3, kAC4P4, kAP4C4, kAP4, kP3C3 = kAC4 };

// The layouts of the BGR group. Fwd selects BGR -> HLS (kernel slots as
// in HlsHsvKernels::bgrHls) or HLS -> BGR (slots of hlsBgr).
template <bool Fwd>
struct BgrLayouts {
  static KelStatus c3p3(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
    if (KelStatus st = checkBgr({src}, {planes(dst, 3)}, srcStep, dstStep, roi)) return st;
    return bgrMember<Lay::C3, Lay::P3, Fwd>(rowsOf(src, dst, 3), srcStep, dstStep, roi, kC3P3);
  }
  static KelStatus p3c3(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
    if (KelStatus st = checkBgr({dst}, {planes(src, 3)}, srcStep, dstStep, roi)) return st;
    // BGR -> HLS has no body in this layout: every pixel takes the tail form.
    return bgrMember<Lay::P3, Lay::C3, Fwd>(rowsOf(src, 3, dst), srcStep, dstStep, roi, kP3C3, !Fwd);
  }
  static KelStatus p3(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
    if (KelStatus st = checkBgr({}, {planes(src, 3), planes(dst, 3)}, srcStep, dstStep, roi)) return st;
    return bgrMember<Lay::P3, Lay::P3, Fwd>(rowsOf(src, 3, dst, 3), srcStep, dstStep, roi, kP3);
  }
  static KelStatus ac4p4(const Kel8u* src, int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi) {
    if (KelStatus st = checkBgr({src}, {planes(dst, 4)}, srcStep, dstStep, roi)) return st;
    return bgrMember<Lay::AC4, Lay::P4A, Fwd>(rowsOf(src, dst, 4), srcStep, dstStep, roi, kAC4P4);
  }
  static KelStatus ap4c4(const Kel8u* const src[4], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
    if (KelStatus st = checkBgr({dst}, {planes(src, 4)}, srcStep, dstStep, roi)) return st;
    return bgrMember<Lay::P3, Lay::C4Ap, Fwd>(rowsOf(src, 4, dst), srcStep, dstStep, roi, kAP4C4);
  }
  static KelStatus ap4(const Kel8u* const src[4], int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi) {
    if (KelStatus st = checkBgr({}, {planes(src, 4), planes(dst, 4)}, srcStep, dstStep, roi)) return st;
    return bgrMember<Lay::P3, Lay::P4Ap, Fwd>(rowsOf(src, 4, dst, 4), srcStep, dstStep, roi, kAP4);
  }
};

}  // namespace
}  // namespace kel

using namespace kel;

// Member table (body: pixels of a row in the body; forms in hlshsv.h).
//  RGBToHLS 8u  C3R      w & ~7   HlsB8 (arcp, nearest, sat.)    HlsT8C3 (nrcp, trunc, low bits)
//           8u  AC4R     w & ~3   HlsB8                          HlsT8AC4 (nrcp, nearest, low bits)
//           16u, 16s     w & ~3   HlsB16 (nrcp, nearest, sat.)   HlsT16 (nrcp, trunc, low bits)
//           32f          w & ~3   Hls32f (true divisions; one form for every pixel)
//  HLSToRGB 8u  C3R      w & ~7   RgbB8 (nearest, sat.)          RgbT8 (divisions, trunc, low bits)
//           8u  AC4R     w & ~3   RgbB8                          RgbT8
//           16u, 16s     w & ~3   RgbB16 (nearest, sat.)         RgbT16 (nearest, low bits)
//           32f          w & ~3   RgbB32f                        RgbT32f
//  RGBToHSV 8u           w & ~3   HsvB8 (arcp, trunc)            HsvT8 (arcp, nearest)
//           16u          w & ~3   HsvB16 (nrcp, nearest, sat.)   HsvT16 (nrcp, nearest)
//  HSVToRGB 8u           w & ~3   HsvRgbB8 (trunc, sat.)         HsvRgbT8 (nearest, V copied)
//           16u          w & ~3   HsvRgbB16 (nearest, low bits)  HsvRgbT16 (nearest, V copied)
//  BGRToHLS 8u all but P3C3  w & ~3   BgrHlsB (arcp, trunc, sat.)  BgrHlsT (nrcp, trunc, low bits)
//           8u P3C3R     none     -                              BgrHlsT
//  HLSToBGR 8u all       w & ~3   HlsBgrB (trunc, sat.)          HlsBgrT (trunc, low bits, L copied)
// Tails where S = 0 give back L (HLS) in every form; gray pixels give
// H = S = 0 everywhere.

extern "C" {

#define KEL_RGB_PAIR(op, d, T, kC3, kAC4, bodyC3, B_C3, T_C3, B_AC4, T_AC4)                                      \
  KelStatus keli##op##_##d##_C3R(const T* src, int srcStep, T* dst, int dstStep, KeliSize roi) {                  \
    return convertPx<T, 3, B_C3, T_C3>(src, srcStep, dst, dstStep, roi, bodyC3, chain(&HlsHsvKernels::kC3));      \
  }                                                                                                               \
  KelStatus keli##op##_##d##_AC4R(const T* src, int srcStep, T* dst, int dstStep, KeliSize roi) {                 \
    return convertPx<T, 4, B_AC4, T_AC4>(src, srcStep, dst, dstStep, roi, body4, chain(&HlsHsvKernels::kAC4));    \
  }

KEL_RGB_PAIR(RGBToHLS, 8u, Kel8u, hls8C3, hls8AC4, body8, HlsB8, HlsT8C3, HlsB8, HlsT8AC4)
KEL_RGB_PAIR(RGBToHLS, 16u, Kel16u, hls16uC3, hls16uAC4, body4, HlsB16<Kel16u>, HlsT16<Kel16u>, HlsB16<Kel16u>,
             HlsT16<Kel16u>)
KEL_RGB_PAIR(RGBToHLS, 16s, Kel16s, hls16sC3, hls16sAC4, body4, HlsB16<Kel16s>, HlsT16<Kel16s>, HlsB16<Kel16s>,
             HlsT16<Kel16s>)
KEL_RGB_PAIR(RGBToHLS, 32f, Kel32f, hls32fC3, hls32fAC4, body4, Hls32f, Hls32f, Hls32f, Hls32f)
KEL_RGB_PAIR(HLSToRGB, 8u, Kel8u, rgb8C3, rgb8AC4, body8, RgbB8, RgbT8, RgbB8, RgbT8)
KEL_RGB_PAIR(HLSToRGB, 16u, Kel16u, rgb16uC3, rgb16uAC4, body4, RgbB16<Kel16u>, RgbT16<Kel16u>, RgbB16<Kel16u>,
             RgbT16<Kel16u>)
KEL_RGB_PAIR(HLSToRGB, 16s, Kel16s, rgb16sC3, rgb16sAC4, body4, RgbB16<Kel16s>, RgbT16<Kel16s>, RgbB16<Kel16s>,
             RgbT16<Kel16s>)
KEL_RGB_PAIR(HLSToRGB, 32f, Kel32f, rgb32fC3, rgb32fAC4, body4, RgbB32f, RgbT32f, RgbB32f, RgbT32f)
KEL_RGB_PAIR(RGBToHSV, 8u, Kel8u, hsv8C3, hsv8AC4, body4, HsvB8, HsvT8, HsvB8, HsvT8)
KEL_RGB_PAIR(RGBToHSV, 16u, Kel16u, hsv16C3, hsv16AC4, body4, HsvB16, HsvT16, HsvB16, HsvT16)
KEL_RGB_PAIR(HSVToRGB, 8u, Kel8u, hsvRgb8C3, hsvRgb8AC4, body4, HsvRgbB8, HsvRgbT8, HsvRgbB8, HsvRgbT8)
KEL_RGB_PAIR(HSVToRGB, 16u, Kel16u, hsvRgb16C3, hsvRgb16AC4, body4, HsvRgbB16, HsvRgbT16, HsvRgbB16, HsvRgbT16)
#undef KEL_RGB_PAIR

// The AC4 form of BGR -> HLS checks the size before the steps.
KelStatus keliBGRToHLS_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkC({src, dst}, {}, roi, {srcStep, dstStep})) return st;
  return bgrMember<Lay::AC4, Lay::AC4, true>(rowsOf(src, dst), srcStep, dstStep, roi, kAC4);
}

#define KEL_BGR_LAYOUTS(op, fwd)                                                                                  \
  KelStatus keli##op##_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {      \
    return BgrLayouts<fwd>::c3p3(src, srcStep, dst, dstStep, roi);                                                \
  }                                                                                                               \
  KelStatus keli##op##_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) { \
    return BgrLayouts<fwd>::p3c3(src, srcStep, dst, dstStep, roi);                                                \
  }                                                                                                               \
  KelStatus keli##op##_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) { \
    return BgrLayouts<fwd>::p3(src, srcStep, dst, dstStep, roi);                                                  \
  }                                                                                                               \
  KelStatus keli##op##_8u_AC4P4R(const Kel8u* src, int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi) {     \
    return BgrLayouts<fwd>::ac4p4(src, srcStep, dst, dstStep, roi);                                               \
  }                                                                                                               \
  KelStatus keli##op##_8u_AP4C4R(const Kel8u* const src[4], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) { \
    return BgrLayouts<fwd>::ap4c4(src, srcStep, dst, dstStep, roi);                                               \
  }                                                                                                               \
  KelStatus keli##op##_8u_AP4R(const Kel8u* const src[4], int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi) { \
    return BgrLayouts<fwd>::ap4(src, srcStep, dst, dstStep, roi);                                                 \
  }

KEL_BGR_LAYOUTS(BGRToHLS, true)
KEL_BGR_LAYOUTS(HLSToBGR, false)
#undef KEL_BGR_LAYOUTS

}  // extern "C"
