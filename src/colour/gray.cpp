// RGB to gray with fixed weights and with the caller's weights: sixteen
// members over one row routine per depth (formulas in gray.h). These rows
// stay on the caller's thread: the work per pixel is too small to pay for a
// team.
#include "colour/gray.h"

#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace colour;
using namespace gray;

template <class T, class W>
Chain<KernGray<T, W>> chain(KernGray<T, W> GrayKernels::*m) {
  return chainFor(m, sse41::kGrayKernels, avx2::kGrayKernels, avx512::kGrayKernels);
}

// The row driver: checks (pointers, then size; the weights are not tested),
// then the rows in order on the caller's thread.
template <class T, class W, int Ch, class Body, class Tail>
KelStatus myGray(const T* src, int srcStep, T* dst, int dstStep, KeliSize roi, int body, const W* wt,
                 KernGray<T, W> GrayKernels::*m) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  const Chain<KernGray<T, W>> ch = chain(m);
  const int ss = stepElems<T>(srcStep), ds = stepElems<T>(dstStep);
  forRows(roi.height, [&](int r) {
    rowGray<T, W, Ch, Body, Tail>(rowIn(src, ss, r), rowIn(dst, ds, r), roi.width, body, wt, ch);
  });
  return kelStatusOk;
}

// Weights of a call: a null pointer selects the defaults.
struct Weights8 {
  uint16_t w[3];
  explicit Weights8(const float* c) {
    for (int k = 0; k < 3; ++k) w[k] = c ? weight8(c[k]) : kW8[k];
  }
};
inline const float* weightsF(const float* c) { return c ? c : kWf; }

template <int Ch>
KelStatus gray8(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, const Kel32f* c) {
  const Weights8 wt(c);
  // C3 bodies cover groups of 4 pixels, AC4 bodies groups of 8.
  const int body = Ch == 3 ? body4(roi.width) : body8(roi.width);
  return myGray<Kel8u, uint16_t, Ch, GB8, GT8>(src, srcStep, dst, dstStep, roi, body, wt.w,
                                               Ch == 3 ? &GrayKernels::g8C3 : &GrayKernels::g8AC4);
}
template <int Ch>
KelStatus gray16u(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi, const Kel32f* c) {
  return myGray<Kel16u, float, Ch, G16u, G16u>(src, srcStep, dst, dstStep, roi, body4(roi.width), weightsF(c),
                                               Ch == 3 ? &GrayKernels::g16uC3 : &GrayKernels::g16uAC4);
}
template <int Ch>
KelStatus gray16s(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi, const Kel32f* c) {
  return myGray<Kel16s, float, Ch, GB16s, GT16s>(src, srcStep, dst, dstStep, roi, body4(roi.width), weightsF(c),
                                                 Ch == 3 ? &GrayKernels::g16sC3 : &GrayKernels::g16sAC4);
}
template <int Ch>
KelStatus gray32f(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi, const Kel32f* c) {
  return myGray<Kel32f, float, Ch, G32f, G32f>(src, srcStep, dst, dstStep, roi, body4(roi.width), weightsF(c),
                                               Ch == 3 ? &GrayKernels::g32fC3 : &GrayKernels::g32fAC4);
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:        body       body form   tail form
//  8u   C3C1R          w & ~3     GB8         GT8
//  8u   AC4C1R         w & ~7     GB8         GT8
//  16u                 w & ~3     G16u        G16u (the same form)
//  16s                 w & ~3     GB16s       GT16s (saturated / low bits)
//  32f                 w & ~3     G32f        G32f (the same form)
// RGBToGray passes no weights (the defaults); ColorToGray passes the
// caller's, null again meaning the defaults. The AC4 source's fourth sample
// is not read.

extern "C" {

KelStatus keliRGBToGray_8u_C3C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return gray8<3>(src, srcStep, dst, dstStep, roi, nullptr);
}
KelStatus keliRGBToGray_8u_AC4C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return gray8<4>(src, srcStep, dst, dstStep, roi, nullptr);
}
KelStatus keliRGBToGray_16u_C3C1R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return gray16u<3>(src, srcStep, dst, dstStep, roi, nullptr);
}
KelStatus keliRGBToGray_16u_AC4C1R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return gray16u<4>(src, srcStep, dst, dstStep, roi, nullptr);
}
KelStatus keliRGBToGray_16s_C3C1R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return gray16s<3>(src, srcStep, dst, dstStep, roi, nullptr);
}
KelStatus keliRGBToGray_16s_AC4C1R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return gray16s<4>(src, srcStep, dst, dstStep, roi, nullptr);
}
KelStatus keliRGBToGray_32f_C3C1R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return gray32f<3>(src, srcStep, dst, dstStep, roi, nullptr);
}
KelStatus keliRGBToGray_32f_AC4C1R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return gray32f<4>(src, srcStep, dst, dstStep, roi, nullptr);
}

KelStatus keliColorToGray_8u_C3C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                   const Kel32f coeffs[3]) {
  return gray8<3>(src, srcStep, dst, dstStep, roi, coeffs);
}
KelStatus keliColorToGray_8u_AC4C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                    const Kel32f coeffs[3]) {
  return gray8<4>(src, srcStep, dst, dstStep, roi, coeffs);
}
KelStatus keliColorToGray_16u_C3C1R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi,
                                    const Kel32f coeffs[3]) {
  return gray16u<3>(src, srcStep, dst, dstStep, roi, coeffs);
}
KelStatus keliColorToGray_16u_AC4C1R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi,
                                     const Kel32f coeffs[3]) {
  return gray16u<4>(src, srcStep, dst, dstStep, roi, coeffs);
}
KelStatus keliColorToGray_16s_C3C1R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi,
                                    const Kel32f coeffs[3]) {
  return gray16s<3>(src, srcStep, dst, dstStep, roi, coeffs);
}
KelStatus keliColorToGray_16s_AC4C1R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi,
                                     const Kel32f coeffs[3]) {
  return gray16s<4>(src, srcStep, dst, dstStep, roi, coeffs);
}
KelStatus keliColorToGray_32f_C3C1R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                    const Kel32f coeffs[3]) {
  return gray32f<3>(src, srcStep, dst, dstStep, roi, coeffs);
}
KelStatus keliColorToGray_32f_AC4C1R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi,
                                     const Kel32f coeffs[3]) {
  return gray32f<4>(src, srcStep, dst, dstStep, roi, coeffs);
}

}  // extern "C"
