// RGB <-> YCC: sixteen members over one row routine per direction and depth
// (formulas in ycc.h). Rows go to the team above 4096 pixels.
#include "colour/ycc.h"

namespace kel {
namespace {

using namespace colour;
using namespace ycc;

template <class T>
Chain<KernPx<T>> chain(KernPx<T> YccKernels::*m) {
  return chainFor(m, sse41::kYccKernels, avx2::kYccKernels, activeVbmi() ? avx512::kYccKernelsVbmi : avx512::kYccKernels);
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:          body      body form     tail form
//  RGBToYCC 8u  C3R      w & ~7    YF8           YT8
//           8u  AC4R     w & ~3    YF8           YT8
//           16u          w & ~3    YF16          YT16u (rounded, folded)
//           16s          w & ~3    YF16          YT16s (rounded)
//           32f          w & ~3    YF32f         YF32f (the same form)
//  YCCToRGB 8u  C3R      w & ~7    YI8           YJ8
//           8u  AC4R     w & ~3    YI8           YJ8
//           16u          w & ~3    YI16          YJ16u (rounded, folded)
//           16s          w & ~3    YI16          YI16 (the same form)
//           32f          w & ~3    YI32f         YI32f (the same form)
// AC4 members convert the first three samples and leave the fourth alone.

extern "C" {

KelStatus keliRGBToYCC_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 3, YF8, YT8>(src, srcStep, dst, dstStep, roi, body8, chain(&YccKernels::fwd8C3));
}
KelStatus keliRGBToYCC_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 4, YF8, YT8>(src, srcStep, dst, dstStep, roi, body4, chain(&YccKernels::fwd8AC4));
}
KelStatus keliRGBToYCC_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 3, YF16<Kel16u>, YT16u>(src, srcStep, dst, dstStep, roi, body4,
                                                   chain(&YccKernels::fwd16uC3));
}
KelStatus keliRGBToYCC_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 4, YF16<Kel16u>, YT16u>(src, srcStep, dst, dstStep, roi, body4,
                                                   chain(&YccKernels::fwd16uAC4));
}
KelStatus keliRGBToYCC_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 3, YF16<Kel16s>, YT16s>(src, srcStep, dst, dstStep, roi, body4,
                                                   chain(&YccKernels::fwd16sC3));
}
KelStatus keliRGBToYCC_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 4, YF16<Kel16s>, YT16s>(src, srcStep, dst, dstStep, roi, body4,
                                                   chain(&YccKernels::fwd16sAC4));
}
KelStatus keliRGBToYCC_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 3, YF32f, YF32f>(src, srcStep, dst, dstStep, roi, body4, chain(&YccKernels::fwd32fC3));
}
KelStatus keliRGBToYCC_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 4, YF32f, YF32f>(src, srcStep, dst, dstStep, roi, body4, chain(&YccKernels::fwd32fAC4));
}

KelStatus keliYCCToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 3, YI8, YJ8>(src, srcStep, dst, dstStep, roi, body8, chain(&YccKernels::inv8C3));
}
KelStatus keliYCCToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 4, YI8, YJ8>(src, srcStep, dst, dstStep, roi, body4, chain(&YccKernels::inv8AC4));
}
KelStatus keliYCCToRGB_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 3, YI16<Kel16u>, YJ16u>(src, srcStep, dst, dstStep, roi, body4,
                                                   chain(&YccKernels::inv16uC3));
}
KelStatus keliYCCToRGB_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 4, YI16<Kel16u>, YJ16u>(src, srcStep, dst, dstStep, roi, body4,
                                                   chain(&YccKernels::inv16uAC4));
}
KelStatus keliYCCToRGB_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 3, YI16<Kel16s>, YI16<Kel16s>>(src, srcStep, dst, dstStep, roi, body4,
                                                          chain(&YccKernels::inv16sC3));
}
KelStatus keliYCCToRGB_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 4, YI16<Kel16s>, YI16<Kel16s>>(src, srcStep, dst, dstStep, roi, body4,
                                                          chain(&YccKernels::inv16sAC4));
}
KelStatus keliYCCToRGB_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 3, YI32f, YI32f>(src, srcStep, dst, dstStep, roi, body4, chain(&YccKernels::inv32fC3));
}
KelStatus keliYCCToRGB_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 4, YI32f, YI32f>(src, srcStep, dst, dstStep, roi, body4, chain(&YccKernels::inv32fAC4));
}

}  // extern "C"
