// RGB <-> XYZ: sixteen members over one row routine per direction and depth
// (formulas in xyz.h). Rows go to the team above 4096 pixels.
#include "colour/xyz.h"

namespace kel {
namespace {

using namespace colour;
using namespace xyz;

template <class T>
Chain<KernPx<T>> chain(KernPx<T> XyzKernels::*m) {
  return chainFor(m, sse41::kXyzKernels, avx2::kXyzKernels, activeVbmi() ? avx512::kXyzKernelsVbmi : avx512::kXyzKernels);
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:          body      body form     tail form
//  RGBToXYZ 8u  C3R      w & ~7    F15           F16
//           8u  AC4R     w & ~3    F15           F16
//           16u, 16s     w & ~3    Fwd16         Fwd16 (the same form)
//           32f          w & ~3    Fwd32f        Fwd32f
//  XYZToRGB 8u  C3R      w & ~7    I13           I16
//           8u  AC4R     w & ~3    I13           I16
//           16u, 16s     w & ~3    Inv16         Inv16
//           32f          (none)    -             Inv32f; as this one form
//                                                   serves every pixel, the
//                                                   vector kernel runs it on
//                                                   w & ~3 pixels
// AC4 members convert the first three samples and leave the fourth alone.

extern "C" {

KelStatus keliRGBToXYZ_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 3, F15, F16>(src, srcStep, dst, dstStep, roi, body8, chain(&XyzKernels::fwd8C3));
}
KelStatus keliRGBToXYZ_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 4, F15, F16>(src, srcStep, dst, dstStep, roi, body4, chain(&XyzKernels::fwd8AC4));
}
KelStatus keliRGBToXYZ_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 3, Fwd16<Kel16u>, Fwd16<Kel16u>>(src, srcStep, dst, dstStep, roi, body4,
                                                            chain(&XyzKernels::fwd16uC3));
}
KelStatus keliRGBToXYZ_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 4, Fwd16<Kel16u>, Fwd16<Kel16u>>(src, srcStep, dst, dstStep, roi, body4,
                                                            chain(&XyzKernels::fwd16uAC4));
}
KelStatus keliRGBToXYZ_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 3, Fwd16<Kel16s>, Fwd16<Kel16s>>(src, srcStep, dst, dstStep, roi, body4,
                                                            chain(&XyzKernels::fwd16sC3));
}
KelStatus keliRGBToXYZ_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 4, Fwd16<Kel16s>, Fwd16<Kel16s>>(src, srcStep, dst, dstStep, roi, body4,
                                                            chain(&XyzKernels::fwd16sAC4));
}
KelStatus keliRGBToXYZ_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 3, Fwd32f, Fwd32f>(src, srcStep, dst, dstStep, roi, body4, chain(&XyzKernels::fwd32fC3));
}
KelStatus keliRGBToXYZ_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 4, Fwd32f, Fwd32f>(src, srcStep, dst, dstStep, roi, body4, chain(&XyzKernels::fwd32fAC4));
}

KelStatus keliXYZToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 3, I13, I16>(src, srcStep, dst, dstStep, roi, body8, chain(&XyzKernels::inv8C3));
}
KelStatus keliXYZToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 4, I13, I16>(src, srcStep, dst, dstStep, roi, body4, chain(&XyzKernels::inv8AC4));
}
KelStatus keliXYZToRGB_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 3, Inv16<Kel16u>, Inv16<Kel16u>>(src, srcStep, dst, dstStep, roi, body4,
                                                            chain(&XyzKernels::inv16uC3));
}
KelStatus keliXYZToRGB_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 4, Inv16<Kel16u>, Inv16<Kel16u>>(src, srcStep, dst, dstStep, roi, body4,
                                                            chain(&XyzKernels::inv16uAC4));
}
KelStatus keliXYZToRGB_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 3, Inv16<Kel16s>, Inv16<Kel16s>>(src, srcStep, dst, dstStep, roi, body4,
                                                            chain(&XyzKernels::inv16sC3));
}
KelStatus keliXYZToRGB_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 4, Inv16<Kel16s>, Inv16<Kel16s>>(src, srcStep, dst, dstStep, roi, body4,
                                                            chain(&XyzKernels::inv16sAC4));
}
KelStatus keliXYZToRGB_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 3, Inv32f, Inv32f>(src, srcStep, dst, dstStep, roi, body4, chain(&XyzKernels::inv32fC3));
}
KelStatus keliXYZToRGB_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 4, Inv32f, Inv32f>(src, srcStep, dst, dstStep, roi, body4, chain(&XyzKernels::inv32fAC4));
}

}  // extern "C"
