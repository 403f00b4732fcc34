// RGB <-> YUV at full resolution: nine members, each a row driver over one
// row routine whose body and tail use different formulas (see yuv.h).
#include "lumachroma/yuv.h"

#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace yuv;

Chain3 chain(Kern3 YuvKernels::*m) { return chainFor(m, sse41::kYuvKernels, avx2::kYuvKernels); }

// Body pixel counts.
inline int body16(int w) { return w & ~15; }
inline int body8(int w) { return w & ~7; }

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:       body      body form  tail form
//  RGBToYUV  C3R      w & ~15   V1         T1
//            C3P3R    w & ~7    V1         T1
//            AC4R     0         -          T1
//            P3R      w & ~15   V1         T2
//            AC4P4R   w & ~7    V2         T1   (alpha to the fourth plane)
//  YUVToRGB  C3R      w & ~7    I1         KA
//            AC4R     0         -          KA
//            P3C3R    w & ~15   I2         KB
//            P3R      0         -          KB

extern "C" {

KelStatus keliRGBToYUV_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRows3<Lay::C3, Lay::C3, V1, T1>({{src}, {dst}}, srcStep, dstStep, roi, body16(roi.width), chain(&YuvKernels::rgbC3_V1));
  return kelStatusOk;
}

KelStatus keliRGBToYUV_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 3)}, roi)) return st;
  myRows3<Lay::C3, Lay::P3, V1, T1>({{src}, {dst[0], dst[1], dst[2]}}, srcStep, dstStep, roi, body8(roi.width),
                                    chain(&YuvKernels::rgbC3P3_V1));
  return kelStatusOk;
}

KelStatus keliRGBToYUV_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRows3<Lay::AC4, Lay::AC4, T1, T1>({{src}, {dst}}, srcStep, dstStep, roi, 0, {}, chain(&YuvKernels::rgbAC4_T1));
  return kelStatusOk;
}

KelStatus keliRGBToYUV_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  myRows3<Lay::P3, Lay::P3, V1, T2>({{src[0], src[1], src[2]}, {dst[0], dst[1], dst[2]}}, srcStep, dstStep, roi,
                                    body16(roi.width), chain(&YuvKernels::rgbP3_V1));
  return kelStatusOk;
}

// dst[3] receives the source alpha. A null fourth plane is reported like a
// null colour plane (after the size, as the plane elements are): every pixel
// writes to it, so accepting it could only crash.
KelStatus keliRGBToYUV_8u_AC4P4R(const Kel8u* src, int srcStep, Kel8u* dst[4], int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src}, {planes(dst, 4)}, roi)) return st;
  myRows3<Lay::AC4, Lay::P4A, V2, T1>({{src}, {dst[0], dst[1], dst[2], dst[3]}}, srcStep, dstStep, roi,
                                      body8(roi.width), chain(&YuvKernels::rgbAC4P4_V2));
  return kelStatusOk;
}

KelStatus keliYUVToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRows3<Lay::C3, Lay::C3, I1, KA>({{src}, {dst}}, srcStep, dstStep, roi, body8(roi.width), chain(&YuvKernels::yuvC3_I1));
  return kelStatusOk;
}

KelStatus keliYUVToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRows3<Lay::AC4, Lay::AC4, KA, KA>({{src}, {dst}}, srcStep, dstStep, roi, 0, {}, chain(&YuvKernels::yuvAC4_KA));
  return kelStatusOk;
}

KelStatus keliYUVToRGB_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myRows3<Lay::P3, Lay::C3, I2, KB>({{src[0], src[1], src[2]}, {dst}}, srcStep, dstStep, roi, body16(roi.width),
                                    chain(&YuvKernels::yuvP3C3_I2));
  return kelStatusOk;
}

KelStatus keliYUVToRGB_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  myRows3<Lay::P3, Lay::P3, KB, KB>({{src[0], src[1], src[2]}, {dst[0], dst[1], dst[2]}}, srcStep, dstStep, roi, 0, {},
                                    chain(&YuvKernels::yuvP3_KB));
  return kelStatusOk;
}

}  // extern "C"
