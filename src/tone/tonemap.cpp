// Tone mapping: two members, each two passes over the source. The first
// pass is a statistic through the support primitives (which also check the
// source and the size), the second the scaling loop on the caller's thread.
#include "tone/tonemap.h"

#include "frame/rows.h"
#include "kelcc.h"
#include "support/support.h"

namespace kel {
namespace {

using namespace tone;

constexpr float kLeastNormal = 1.1754944e-38f;

// The scaling loop: rows top to bottom, the vector kernels of the active
// path first, the per-sample form for what they leave.
template <uint8_t (*Px)(float, float)>
KelStatus scaleImage(const Kel32f* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, float f,
                     KernTone ToneKernels::*m) {
  const Chain<KernTone> chain = chainFor(m, sse41::kToneKernels, avx2::kToneKernels);
  forRows(roi.height, [&](int r) {
    const uint8_t* s = reinterpret_cast<const uint8_t*>(rowAt(src, srcStep, r));
    uint8_t* d = rowAt(dst, dstStep, r);
    int x = 0;
    for (KernTone k : chain.k)
      if (k) x = k(s, d, x, roi.width, f);
    for (; x < roi.width; ++x) d[x] = Px(sampleAt(s, x), f);
  });
  return kelStatusOk;
}

}  // namespace
}  // namespace kel

using namespace kel;

// Decision: the destination is looked at only where it is about to be
// written. A negative statistic returns kelStatusNothingDone without
// examining it; the fill path leaves its checks to keliSet_8u_C1R; the
// scaling path reports a null destination with kelStatusNullPointer before
// it writes. The destination step is never tested.

extern "C" {

KelStatus keliToneMapLinear_32f8u_C1R(const Kel32f* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  Kel32f m = 0.0f;
  const KelStatus st = keliMax_32f_C1R(src, srcStep, roi, &m);
  if (st < 0) return st;
  if (0.0f > m) return kelStatusNothingDone;
  if (!(m > kLeastNormal)) return keliSet_8u_C1R(0, dst, dstStep, roi);
  if (!dst) return kelStatusNullPointer;
  const float f = 255.0f / m;
  scaleImage<linear>(src, srcStep, dst, dstStep, roi, f, &ToneKernels::linear);
  return st;
}

KelStatus keliToneMapMean_32f8u_C1R(const Kel32f* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  double mean = 0.0;
  const KelStatus st = keliMean_32f_C1R(src, srcStep, roi, &mean, 1);
  if (st < 0) return st;
  const double t = mean + mean;
  if (0.0 > t) return kelStatusNothingDone;
  if (!(t > static_cast<double>(kLeastNormal))) return keliSet_8u_C1R(0, dst, dstStep, roi);
  if (!dst) return kelStatusNullPointer;
  const float f = static_cast<float>(255.0 / t);
  scaleImage<tone::mean>(src, srcStep, dst, dstStep, roi, f, &ToneKernels::mean);
  return st;
}

}  // extern "C"
