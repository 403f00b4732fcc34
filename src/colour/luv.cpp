// RGB <-> LUV: sixteen members over one row routine per direction, depth and
// form (formulas in luv.h). Rows go to the team above 4096 pixels.
#include "colour/luv.h"

namespace kel {
namespace {

using namespace colour;
using namespace luv;

template <class T>
Chain<KernPx<T>> chain(KernPx<T> LuvKernels::*m) {
  return chainFor(m, sse41::kLuvKernels, avx2::kLuvKernels, activeVbmi() ? avx512::kLuvKernelsVbmi : avx512::kLuvKernels);
}

inline int bodyAll(int w) { return w; }

// RGB -> LUV at 32f keeps its steps in bytes: an odd step is used as it
// stands, so rows are addressed on bytes (the forms move samples with memcpy,
// the kernels load and store unaligned).
template <int Ch>
KelStatus fwd32f(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  const int w = roi.width, b = body4(w);
  const Chain<KernPx<float>> ch = chain(Ch == 3 ? &LuvKernels::fwd32fC3 : &LuvKernels::fwd32fAC4);
  const char* s0 = reinterpret_cast<const char*>(src);
  char* d0 = reinterpret_cast<char*>(dst);
  parallelRowsAbove(w, roi.height, kRowsThreshold, [&](int r) {
    const auto* s = reinterpret_cast<const float*>(s0 + static_cast<ptrdiff_t>(srcStep) * r);
    auto* d = reinterpret_cast<float*>(d0 + static_cast<ptrdiff_t>(dstStep) * r);
    rowPx<float, Ch, Fwd32f<true>, Fwd32f<false>>(s, d, w, b, ch);
  });
  return kelStatusOk;
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:           body     body form               tail form
//  RGBToLUV 8u            (all)    Fwd8u                   Fwd8u; the kernels
//                                                            run it on any pixel
//           16u C3R       w & ~3   Fwd16 trunc/nearest     Fwd16 nearest/nearest
//           16u AC4R      w & ~3   Fwd16 trunc/nearest     Fwd16 trunc/trunc
//           16s           w & ~3   Fwd16 trunc/nearest     Fwd16 nearest/nearest
//                                  (index and L / U and V)
//           32f           w & ~3   Fwd32f<body>: D = 0     Fwd32f<tail>: Z = 0
//                                  becomes 3               gives u' = v' = 0
//  LUVToRGB 8u  C3R       w & ~7   InvBody arcp, Scaled    InvTail
//           8u  AC4R      w & ~3   InvBody arcp, Scaled    InvTail
//           16u C3R       w & ~3   InvBody nrcp, Sample    InvTail
//           16u AC4R      w & ~3   InvBody nrcp, Sample8   InvTail
//           16s C3R       w & ~3   InvBody nrcp, Scaled    InvTail
//           16s AC4R      w & ~3   InvBody nrcp, Sample    InvTail
//           32f           (all)    Inv32f                  Inv32f
// AC4 members convert the first three samples and leave the fourth alone.

extern "C" {

KelStatus keliRGBToLUV_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 3, Fwd8u, Fwd8u>(src, srcStep, dst, dstStep, roi, bodyAll, chain(&LuvKernels::fwd8C3));
}
KelStatus keliRGBToLUV_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 4, Fwd8u, Fwd8u>(src, srcStep, dst, dstStep, roi, bodyAll, chain(&LuvKernels::fwd8AC4));
}
KelStatus keliRGBToLUV_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 3, Fwd16<Kel16u, true, false, true>, Fwd16<Kel16u, false, true, true>>(
      src, srcStep, dst, dstStep, roi, body4, chain(&LuvKernels::fwd16uC3));
}
KelStatus keliRGBToLUV_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 4, Fwd16<Kel16u, true, false, true>, Fwd16<Kel16u, false, false, false>>(
      src, srcStep, dst, dstStep, roi, body4, chain(&LuvKernels::fwd16uAC4));
}
KelStatus keliRGBToLUV_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 3, Fwd16<Kel16s, true, false, true>, Fwd16<Kel16s, false, true, true>>(
      src, srcStep, dst, dstStep, roi, body4, chain(&LuvKernels::fwd16sC3));
}
KelStatus keliRGBToLUV_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 4, Fwd16<Kel16s, true, false, true>, Fwd16<Kel16s, false, true, true>>(
      src, srcStep, dst, dstStep, roi, body4, chain(&LuvKernels::fwd16sAC4));
}
KelStatus keliRGBToLUV_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return fwd32f<3>(src, srcStep, dst, dstStep, roi);
}
KelStatus keliRGBToLUV_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return fwd32f<4>(src, srcStep, dst, dstStep, roi);
}

KelStatus keliLUVToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 3, InvBody<Kel8u, Guard::Scaled>, InvTail<Kel8u>>(src, srcStep, dst, dstStep, roi, body8,
                                                                           chain(&LuvKernels::inv8C3));
}
KelStatus keliLUVToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel8u, 4, InvBody<Kel8u, Guard::Scaled>, InvTail<Kel8u>>(src, srcStep, dst, dstStep, roi, body4,
                                                                           chain(&LuvKernels::inv8AC4));
}
KelStatus keliLUVToRGB_16u_C3R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 3, InvBody<Kel16u, Guard::Sample>, InvTail<Kel16u>>(src, srcStep, dst, dstStep, roi,
                                                                              body4, chain(&LuvKernels::inv16uC3));
}
KelStatus keliLUVToRGB_16u_AC4R(const Kel16u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16u, 4, InvBody<Kel16u, Guard::Sample8>, InvTail<Kel16u>>(src, srcStep, dst, dstStep, roi,
                                                                               body4, chain(&LuvKernels::inv16uAC4));
}
KelStatus keliLUVToRGB_16s_C3R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 3, InvBody<Kel16s, Guard::Scaled>, InvTail<Kel16s>>(src, srcStep, dst, dstStep, roi,
                                                                              body4, chain(&LuvKernels::inv16sC3));
}
KelStatus keliLUVToRGB_16s_AC4R(const Kel16s* src, int srcStep, Kel16s* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel16s, 4, InvBody<Kel16s, Guard::Sample>, InvTail<Kel16s>>(src, srcStep, dst, dstStep, roi,
                                                                              body4, chain(&LuvKernels::inv16sAC4));
}
KelStatus keliLUVToRGB_32f_C3R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 3, Inv32f, Inv32f>(src, srcStep, dst, dstStep, roi, bodyAll, chain(&LuvKernels::inv32fC3));
}
KelStatus keliLUVToRGB_32f_AC4R(const Kel32f* src, int srcStep, Kel32f* dst, int dstStep, KeliSize roi) {
  return convertPx<Kel32f, 4, Inv32f, Inv32f>(src, srcStep, dst, dstStep, roi, bodyAll,
                                              chain(&LuvKernels::inv32fAC4));
}

}  // extern "C"
