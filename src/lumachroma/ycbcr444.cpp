// RGB <-> YCbCr at full resolution: twelve members, each a row driver over
// one row routine whose body and tail use different formulas (ycbcr444.h).
#include "lumachroma/ycbcr444.h"

#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace ycc444;


// Three planes to four-byte pixels whose fourth byte is `alpha`, in body
// and tail alike.
template <class F>
inline void pxC4(const Row3& io, int x, uint8_t alpha) {
  int o0, o1, o2;
  F::px(io.s[0][x], io.s[1][x], io.s[2][x], o0, o1, o2);
  uint8_t* p = io.d[0] + 4 * x;
  p[0] = static_cast<uint8_t>(o0), p[1] = static_cast<uint8_t>(o1), p[2] = static_cast<uint8_t>(o2), p[3] = alpha;
}
template <class Body, class Tail>
void myRowsP3C4(const Row3& base, int srcStep, int dstStep, KeliSize roi, int body, uint8_t alpha,
                const Chain<Kern3A>& chain) {
  forRows(roi.height, [&](int r) {
    const Row3 io = rowOf(base, srcStep, dstStep, r);
    int x = 0;
    for (Kern3A k : chain.k)
      if (k) x = k(io, x, body, alpha);
    for (; x < body; ++x) pxC4<Body>(io, x, alpha);
    for (; x < roi.width; ++x) pxC4<Tail>(io, x, alpha);
  });
}

template <class K>
Chain<K> chain(K Ycc444Kernels::*m) {
  return chainFor(m, sse41::kYcc444Kernels, avx2::kYcc444Kernels);
}

inline int body16(int w) { return w & ~15; }
inline int body8(int w) { return w & ~7; }
inline int body4(int w) { return w & ~3; }

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:         body      body form  tail form
//  RGBToYCbCr C3R       w & ~15   F1         FT
//             C3P3R     w & ~7    F2         FT
//             AC4P3R    w & ~7    F2         FT   (source alpha ignored)
//             P3R       w & ~15   F2         FT
//             AC4R      0         -          FT   (destination alpha kept)
//  YCbCrToRGB C3R       w & ~3    J1         L1
//             P3R       w & ~3    J2         L1
//             AC4R      0         -          L1   (destination alpha kept)
//             P3C3R     w & ~7    J3         L2
//             P3C4R     w & ~7    J4         L3   (fourth byte = alpha)
//  YCbCrToBGR P3C3R     w         J3         -    (B, G, R)
//             P3C4R     w         J4         -    (B, G, R, alpha)
//
// keliRGBToYCbCr_8u_C3R could pick an aligned-store routine when dst and
// dstStep are multiples of 16; both routines give the same bytes, and
// unaligned stores cost nothing extra on aligned addresses, so one routine
// serves both cases.

extern "C" {

KelStatus keliRGBToYCbCr_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRows3<Lay::C3, Lay::C3, F1, FT>({{src}, {dst}}, srcStep, dstStep, roi, body16(roi.width),
                                    chain(&Ycc444Kernels::rgbC3_F1));
  return kelStatusOk;
}

KelStatus keliRGBToYCbCr_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRows3<Lay::AC4, Lay::AC4, FT, FT>({{src}, {dst}}, srcStep, dstStep, roi, 0, {}, chain(&Ycc444Kernels::rgbAC4_FT));
  return kelStatusOk;
}

// A null dst array is a null pointer like the other pointers of the order
// (checkB tests the array before its elements).
KelStatus keliRGBToYCbCr_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi)) return st;
  myRows3<Lay::C3, Lay::P3, F2, FT>({{src}, {dst[0], dst[1], dst[2]}}, srcStep, dstStep, roi, body8(roi.width),
                                    chain(&Ycc444Kernels::rgbC3P3_F2));
  return kelStatusOk;
}

KelStatus keliRGBToYCbCr_8u_AC4P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({src}, {planes(dst, 3)}, roi)) return st;
  myRows3<Lay::AC4, Lay::P3, F2, FT>({{src}, {dst[0], dst[1], dst[2]}}, srcStep, dstStep, roi, body8(roi.width),
                                     chain(&Ycc444Kernels::rgbAC4P3_F2));
  return kelStatusOk;
}

KelStatus keliRGBToYCbCr_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  myRows3<Lay::P3, Lay::P3, F2, FT>({{src[0], src[1], src[2]}, {dst[0], dst[1], dst[2]}}, srcStep, dstStep, roi,
                                    body16(roi.width), chain(&Ycc444Kernels::rgbP3_F2));
  return kelStatusOk;
}

KelStatus keliYCbCrToRGB_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRows3<Lay::C3, Lay::C3, J1, L1>({{src}, {dst}}, srcStep, dstStep, roi, body4(roi.width),
                                    chain(&Ycc444Kernels::yccC3_J1));
  return kelStatusOk;
}

KelStatus keliYCbCrToRGB_8u_AC4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myRows3<Lay::AC4, Lay::AC4, L1, L1>({{src}, {dst}}, srcStep, dstStep, roi, 0, {}, chain(&Ycc444Kernels::yccAC4_L1));
  return kelStatusOk;
}

KelStatus keliYCbCrToRGB_8u_P3R(const Kel8u* const src[3], int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({}, {planes(src, 3), planes(dst, 3)}, roi)) return st;
  myRows3<Lay::P3, Lay::P3, J2, L1>({{src[0], src[1], src[2]}, {dst[0], dst[1], dst[2]}}, srcStep, dstStep, roi,
                                    body4(roi.width), chain(&Ycc444Kernels::yccP3_J2));
  return kelStatusOk;
}

KelStatus keliYCbCrToRGB_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myRows3<Lay::P3, Lay::C3, J3, L2>({{src[0], src[1], src[2]}, {dst}}, srcStep, dstStep, roi, body8(roi.width),
                                    chain(&Ycc444Kernels::yccP3C3_J3));
  return kelStatusOk;
}

KelStatus keliYCbCrToRGB_8u_P3C4R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                  int alpha) {
  if (KelStatus st = checkA({dst}, {planes(src, 3)}, roi)) return st;
  myRowsP3C4<J4, L3>({{src[0], src[1], src[2]}, {dst}}, srcStep, dstStep, roi, body8(roi.width),
                     static_cast<uint8_t>(alpha), chain(&Ycc444Kernels::yccP3C4_J4));
  return kelStatusOk;
}

// The BGR members run their last pixels through the block formula one at a
// time: the whole row is body.
KelStatus keliYCbCrToBGR_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi)) return st;
  myRows3<Lay::P3, Lay::C3, Rev<J3>, Rev<J3>>({{src[0], src[1], src[2]}, {dst}}, srcStep, dstStep, roi, roi.width,
                                              chain(&Ycc444Kernels::yccP3C3_J3r));
  return kelStatusOk;
}

KelStatus keliYCbCrToBGR_8u_P3C4R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi,
                                  int alpha) {
  if (KelStatus st = checkB({dst}, {planes(src, 3)}, roi)) return st;
  myRowsP3C4<Rev<J4>, Rev<J4>>({{src[0], src[1], src[2]}, {dst}}, srcStep, dstStep, roi, roi.width,
                               static_cast<uint8_t>(alpha), chain(&Ycc444Kernels::yccP3C4_J4r));
  return kelStatusOk;
}

}  // extern "C"
