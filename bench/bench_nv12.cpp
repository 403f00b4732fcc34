// NV12, YV12, YUY2 and UYVY moves and the NV12 deinterlacers beside libyuv's
// layout conversions and memcpy of the same bytes. Where libyuv's function
// also filters (its 4:2:2 to 4:2:0 conversions average the chroma of two
// rows), the comparison is of the same layouts, not of the same work.
#include <libyuv.h>

#include <memory>

#include "common.h"

namespace {

void registerNv12() {
  using namespace kb;
  static Plane y(kW, kH, 1), uv(kW, half(kH), 2), u(half(kW), half(kH), 3), v(half(kW), half(kH), 4), c2(2 * kW, kH, 5);
  static Plane oy(kW, kH, 6), ouv(kW, half(kH), 7), ou(half(kW), half(kH), 8), ov(half(kW), half(kH), 9), oc2(2 * kW, kH, 10);
  // YV12 planes are Y, Cr, Cb.
  static const Kel8u* yv12[3] = {y.p, v.p, u.p};
  static const int yv12Steps[3] = {y.step, v.step, u.step};
  static Kel8u* oyv12[3] = {oy.p, ov.p, ou.p};
  static const int oyv12Steps[3] = {oy.step, ov.step, ou.step};
  const size_t px = size_t(kW) * kH, p420 = px * 3 / 2, p422 = 2 * px;

  add("NV12ToYV12", "kel", 2 * p420, [] {
    keliYCbCr420ToYCrCb420_8u_P2P3R(y.p, y.step, uv.p, uv.step, oyv12, oyv12Steps, kRoi);
  });
  add("NV12ToYV12", "libyuv", 2 * p420, [] {
    libyuv::NV12ToI420(y.p, y.step, uv.p, uv.step, oy.p, oy.step, ou.p, ou.step, ov.p, ov.step, kW, kH);
  });
  addMemcpy("NV12ToYV12", p420, p420);

  add("YV12ToNV12", "kel", 2 * p420, [] {
    keliYCrCb420ToYCbCr420_8u_P3P2R(yv12, yv12Steps, oy.p, oy.step, ouv.p, ouv.step, kRoi);
  });
  add("YV12ToNV12", "libyuv", 2 * p420, [] {
    libyuv::I420ToNV12(y.p, y.step, u.p, u.step, v.p, v.step, oy.p, oy.step, ouv.p, ouv.step, kW, kH);
  });
  addMemcpy("YV12ToNV12", p420, p420);

  add("YUY2ToNV12", "kel", p422 + p420, [] {
    keliYCbCr422ToYCbCr420_8u_C2P2R(c2.p, c2.step, oy.p, oy.step, ouv.p, ouv.step, kRoi);
  });
  add("YUY2ToNV12", "libyuv", p422 + p420, [] {
    libyuv::YUY2ToNV12(c2.p, c2.step, oy.p, oy.step, ouv.p, ouv.step, kW, kH);
  });
  addMemcpy("YUY2ToNV12", p422, p420);

  add("UYVYToNV12", "kel", p422 + p420, [] {
    keliCbYCr422ToYCbCr420_8u_C2P2R(c2.p, c2.step, oy.p, oy.step, ouv.p, ouv.step, kRoi);
  });
  add("UYVYToNV12", "libyuv", p422 + p420, [] {
    libyuv::UYVYToNV12(c2.p, c2.step, oy.p, oy.step, ouv.p, ouv.step, kW, kH);
  });
  addMemcpy("UYVYToNV12", p422, p420);

  add("YUY2ToYV12", "kel", p422 + p420, [] { keliYCbCr422ToYCrCb420_8u_C2P3R(c2.p, c2.step, oyv12, oyv12Steps, kRoi); });
  add("YUY2ToYV12", "libyuv", p422 + p420, [] {
    libyuv::YUY2ToI420(c2.p, c2.step, oy.p, oy.step, ou.p, ou.step, ov.p, ov.step, kW, kH);
  });
  addMemcpy("YUY2ToYV12", p422, p420);

  add("UYVYToYV12", "kel", p422 + p420, [] { keliCbYCr422ToYCrCb420_8u_C2P3R(c2.p, c2.step, oyv12, oyv12Steps, kRoi); });
  add("UYVYToYV12", "libyuv", p422 + p420, [] {
    libyuv::UYVYToI420(c2.p, c2.step, oy.p, oy.step, ou.p, ou.step, ov.p, ov.step, kW, kH);
  });
  addMemcpy("UYVYToYV12", p422, p420);

  add("YV12ToYUY2", "kel", p420 + p422, [] { keliYCrCb420ToYCbCr422_8u_P3C2R(yv12, yv12Steps, oc2.p, oc2.step, kRoi); });
  add("YV12ToYUY2", "libyuv", p420 + p422, [] {
    libyuv::I420ToYUY2(y.p, y.step, u.p, u.step, v.p, v.step, oc2.p, oc2.step, kW, kH);
  });
  addMemcpy("YV12ToYUY2", p420, p422);

  add("YV12ToUYVY", "kel", p420 + p422, [] { keliYCrCb420ToCbYCr422_8u_P3C2R(yv12, yv12Steps, oc2.p, oc2.step, kRoi); });
  add("YV12ToUYVY", "libyuv", p420 + p422, [] {
    libyuv::I420ToUYVY(y.p, y.step, u.p, u.step, v.p, v.step, oc2.p, oc2.step, kW, kH);
  });
  addMemcpy("YV12ToUYVY", p420, p422);

  add("NV12ToYUY2", "kel", p420 + p422, [] {
    keliYCbCr420ToYCbCr422_8u_P2C2R(y.p, y.step, uv.p, uv.step, oc2.p, oc2.step, kRoi);
  });
  addMemcpy("NV12ToYUY2", p420, p422);
  add("NV12ToUYVY", "kel", p420 + p422, [] {
    keliYCbCr420ToCbYCr422_8u_P2C2R(y.p, y.step, uv.p, uv.step, oc2.p, oc2.step, kRoi);
  });
  addMemcpy("NV12ToUYVY", p420, p422);

  // The byte swap is libyuv's four-byte shuffle on pixel pairs.
  static const uint8_t kSwap[16] = {1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14};
  add("YUY2ToUYVY", "kel", 2 * p422, [] { keliYCbCr422ToCbYCr422_8u_C2R(c2.p, c2.step, oc2.p, oc2.step, kRoi); });
  add("YUY2ToUYVY", "libyuv", 2 * p422, [] {
    libyuv::ARGBShuffle(c2.p, c2.step, oc2.p, oc2.step, kSwap, kW / 2, kH);
  });
  addMemcpy("YUY2ToUYVY", p422, p422);

  add("NV12DeinterlaceToYUY2", "kel", p420 + p422, [] {
    keliYCbCr420ToYCbCr422_Filter_8u_P2C2R(y.p, y.step, uv.p, uv.step, oc2.p, oc2.step, kRoi, kelSliceWhole);
  });
  addMemcpy("NV12DeinterlaceToYUY2", p420, p422);
  add("NV12DeinterlaceToYV12", "kel", 2 * p420, [] {
    keliYCbCr420ToYCrCb420_Filter_8u_P2P3R(y.p, y.step, uv.p, uv.step, oyv12, oyv12Steps, kRoi, kelSliceWhole);
  });
  addMemcpy("NV12DeinterlaceToYV12", p420, p420);
}
KB_REGISTER(registerNv12);

}  // namespace
