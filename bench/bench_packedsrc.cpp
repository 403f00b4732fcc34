// Packed 16-bit sources to subsampled YCbCr and YUV beside libyuv's
// RGB565ToI420 and ARGB1555ToI420 (studio-range BT.601 4:2:0 from the same
// word layouts as our BGR565 and BGR555 sources).
#include <libyuv.h>

#include <memory>

#include "common.h"

namespace {

void registerPackedSrc() {
  using namespace kb;
  static Plane word(2 * kW, kH, 1), y(kW, kH, 2), u(half(kW), kH, 3), v(half(kW), kH, 4), c2(2 * kW, kH, 5);
  static Kel8u* dst[3] = {y.p, u.p, v.p};
  static const int ds[3] = {y.step, u.step, v.step};
  static const Kel16u* src = reinterpret_cast<const Kel16u*>(word.p);
  const size_t px = size_t(kW) * kH;
  const size_t b420 = 2 * px + px + px / 2, b422 = 2 * px + 2 * px, b411 = 2 * px + px + px / 2;

  add("BGR565ToYCbCr420_16u8u_C3P3R", "kel", b420, [] { keliBGR565ToYCbCr420_16u8u_C3P3R(src, word.step, dst, ds, kRoi); });
  add("BGR565ToYCbCr420_16u8u_C3P3R", "libyuv", b420, [] {
    libyuv::RGB565ToI420(word.p, word.step, y.p, y.step, u.p, u.step, v.p, v.step, kW, kH);
  });
  addMemcpy("BGR565ToYCbCr420_16u8u_C3P3R", 2 * px, px + px / 2);
  add("BGR555ToYCbCr420_16u8u_C3P3R", "kel", b420, [] { keliBGR555ToYCbCr420_16u8u_C3P3R(src, word.step, dst, ds, kRoi); });
  add("BGR555ToYCbCr420_16u8u_C3P3R", "libyuv", b420, [] {
    libyuv::ARGB1555ToI420(word.p, word.step, y.p, y.step, u.p, u.step, v.p, v.step, kW, kH);
  });
  addMemcpy("BGR555ToYCbCr420_16u8u_C3P3R", 2 * px, px + px / 2);

  add("BGR565ToYCbCr422_16u8u_C3P3R", "kel", b422, [] { keliBGR565ToYCbCr422_16u8u_C3P3R(src, word.step, dst, ds, kRoi); });
  addMemcpy("BGR565ToYCbCr422_16u8u_C3P3R", 2 * px, 2 * px);
  add("BGR565ToYCbCr422_16u8u_C3C2R", "kel", b422, [] { keliBGR565ToYCbCr422_16u8u_C3C2R(src, word.step, c2.p, c2.step, kRoi); });
  addMemcpy("BGR565ToYCbCr422_16u8u_C3C2R", 2 * px, 2 * px);
  add("BGR565ToYCbCr411_16u8u_C3P3R", "kel", b411, [] { keliBGR565ToYCbCr411_16u8u_C3P3R(src, word.step, dst, ds, kRoi); });
  addMemcpy("BGR565ToYCbCr411_16u8u_C3P3R", 2 * px, px + px / 2);
  add("BGR565ToYUV420_16u8u_C3P3R", "kel", b420, [] { keliBGR565ToYUV420_16u8u_C3P3R(src, word.step, dst, ds, kRoi); });
  addMemcpy("BGR565ToYUV420_16u8u_C3P3R", 2 * px, px + px / 2);
  add("RGB565ToYUV420_16u8u_C3P3R", "kel", b420, [] { keliRGB565ToYUV420_16u8u_C3P3R(src, word.step, dst, ds, kRoi); });
  addMemcpy("RGB565ToYUV420_16u8u_C3P3R", 2 * px, px + px / 2);
  add("RGB565ToYUV422_16u8u_C3P3R", "kel", b422, [] { keliRGB565ToYUV422_16u8u_C3P3R(src, word.step, dst, ds, kRoi); });
  addMemcpy("RGB565ToYUV422_16u8u_C3P3R", 2 * px, 2 * px);
}
KB_REGISTER(registerPackedSrc);

}  // namespace
