// YCbCr and YUV to 16-bit packed RGB beside libyuv's I420 and I422 to RGB565
// (BT.601 studio range, nearest chroma, the same 2 bytes per pixel out; its
// dithered form adds a 4 by 4 table before the cut, as ours does).
#include <libyuv.h>

#include <memory>

#include "common.h"

namespace {

void registerPacked16() {
  using namespace kb;
  static Plane y(kW, kH, 1), u(half(kW), kH, 2), v(half(kW), kH, 3), c3(3 * kW, kH, 4), c2(2 * kW, kH, 5);
  static Plane f1(kW, kH, 6), f2(kW, kH, 7), out(2 * kW, kH, 8);
  static const Kel8u* const p420[3] = {y.p, u.p, v.p};
  static const int s420[3] = {y.step, u.step, v.step};
  static const Kel8u* const p444[3] = {y.p, f1.p, f2.p};
  static Kel16u* const dst = reinterpret_cast<Kel16u*>(out.p);
  static const uint8_t kDither[16] = {0, 4, 1, 5, 6, 2, 7, 3, 1, 5, 0, 4, 7, 3, 6, 2};
  const size_t px = size_t(kW) * kH, out16 = 2 * px;

  // 4:2:0 planes.
  const size_t in420 = px + px / 2;
  add("YCbCr420ToRGB565_8u16u_P3C3R", "kel", in420 + out16,
      [] { keliYCbCr420ToRGB565_8u16u_P3C3R(p420, s420, dst, out.step, kRoi); });
  add("YCbCr420ToRGB565_8u16u_P3C3R", "libyuv", in420 + out16,
      [] { libyuv::I420ToRGB565(y.p, y.step, u.p, u.step, v.p, v.step, out.p, out.step, kW, kH); });
  addMemcpy("YCbCr420ToRGB565_8u16u_P3C3R", in420, out16);

  add("YCbCr420ToBGR565Dither_8u16u_P3C3R", "kel", in420 + out16,
      [] { keliYCbCr420ToBGR565Dither_8u16u_P3C3R(p420, s420, dst, out.step, kRoi); });
  add("YCbCr420ToBGR565Dither_8u16u_P3C3R", "libyuv", in420 + out16, [] {
    libyuv::I420ToRGB565Dither(y.p, y.step, u.p, u.step, v.p, v.step, out.p, out.step, kDither, kW, kH);
  });
  addMemcpy("YCbCr420ToBGR565Dither_8u16u_P3C3R", in420, out16);

  add("YUV420ToRGB555_8u16u_P3C3R", "kel", in420 + out16,
      [] { keliYUV420ToRGB555_8u16u_P3C3R(p420, s420, dst, out.step, kRoi); });
  addMemcpy("YUV420ToRGB555_8u16u_P3C3R", in420, out16);

  // 4:2:2 planes and pairs.
  const size_t in422 = 2 * px;
  add("YCbCr422ToBGR565_8u16u_P3C3R", "kel", in422 + out16,
      [] { keliYCbCr422ToBGR565_8u16u_P3C3R(p420, s420, dst, out.step, kRoi); });
  add("YCbCr422ToBGR565_8u16u_P3C3R", "libyuv", in422 + out16,
      [] { libyuv::I422ToRGB565(y.p, y.step, u.p, u.step, v.p, v.step, out.p, out.step, kW, kH); });
  addMemcpy("YCbCr422ToBGR565_8u16u_P3C3R", in422, out16);

  add("YCbCr422ToBGR565_8u16u_C2C3R", "kel", in422 + out16,
      [] { keliYCbCr422ToBGR565_8u16u_C2C3R(c2.p, c2.step, dst, out.step, kRoi); });
  addMemcpy("YCbCr422ToBGR565_8u16u_C2C3R", in422, out16);

  // 4:4:4.
  add("YCbCrToBGR565_8u16u_C3R", "kel", 3 * px + out16,
      [] { keliYCbCrToBGR565_8u16u_C3R(c3.p, c3.step, dst, out.step, kRoi); });
  addMemcpy("YCbCrToBGR565_8u16u_C3R", 3 * px, out16);
  add("YCbCrToRGB444Dither_8u16u_P3C3R", "kel", 3 * px + out16,
      [] { keliYCbCrToRGB444Dither_8u16u_P3C3R(p444, y.step, dst, out.step, kRoi); });
  addMemcpy("YCbCrToRGB444Dither_8u16u_P3C3R", 3 * px, out16);
}
KB_REGISTER(registerPacked16);

}  // namespace
