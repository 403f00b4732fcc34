// RGB and BGR <-> subsampled studio-range YCbCr beside libyuv's and OpenCV's
// BT.601 4:2:0 and 4:2:2 conversions (the same amount of work: 8-bit
// fixed-point matrices, chroma averaged or repeated).
#include <libyuv.h>

#include <opencv2/imgproc.hpp>

#include "common.h"

namespace {

void registerYccSub() {
  using namespace kb;
  static Plane rgb(3 * kW, kH, 1), out(3 * kW, kH, 2), bgra(4 * kW, kH, 3);
  static Plane y(kW, kH, 4), u(half(kW), half(kH), 5), v(half(kW), half(kH), 6);
  static Plane y422(kW, kH, 7), u422(half(kW), kH, 8), v422(half(kW), kH, 9), yuy2(2 * kW, kH, 10);
  static Plane i420(kW, kH * 3 / 2, 11);
  static Kel8u* d420[3] = {y.p, u.p, v.p};
  static const Kel8u* s420[3] = {y.p, u.p, v.p};
  static const int st420[3] = {y.step, u.step, v.step};
  static Kel8u* d422[3] = {y422.p, u422.p, v422.p};
  static const Kel8u* s422[3] = {y422.p, u422.p, v422.p};
  static const int st422[3] = {y422.step, u422.step, v422.step};
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mI420(kH * 3 / 2, kW, CV_8UC1, i420.p), mYuy2(kH, kW, CV_8UC2, yuy2.p);
  static cv::Mat mOut(kH, kW, CV_8UC3, out.p);
  const size_t px = size_t(kW) * kH, p420 = px * 3 / 2, p422 = 2 * px;

  // Input of the inverse groups: a real 4:2:0 image (the forward result).
  keliRGBToYCbCr420_8u_C3P3R(rgb.p, rgb.step, d420, st420, kRoi);

  const std::string f420 = "RGBToYCbCr420_8u_C3P3R";
  add(f420, "kel", 3 * px + p420, [] { keliRGBToYCbCr420_8u_C3P3R(rgb.p, rgb.step, d420, st420, kRoi); });
  add(f420, "libyuv", 3 * px + p420, [] {
    libyuv::RGB24ToI420(rgb.p, rgb.step, y.p, y.step, u.p, u.step, v.p, v.step, kW, kH);
  });
  add(f420, "opencv", 3 * px + p420, [] { cv::cvtColor(mRgb, mI420, cv::COLOR_RGB2YUV_I420); });
  addMemcpy(f420, 3 * px, p420);

  const std::string i420g = "YCbCr420ToRGB_8u_P3C3R";
  add(i420g, "kel", p420 + 3 * px, [] { keliYCbCr420ToRGB_8u_P3C3R(s420, st420, out.p, out.step, kRoi); });
  add(i420g, "libyuv", p420 + 3 * px, [] {
    libyuv::I420ToRGB24(y.p, y.step, u.p, u.step, v.p, v.step, out.p, out.step, kW, kH);
  });
  add(i420g, "opencv", p420 + 3 * px, [] { cv::cvtColor(mI420, mOut, cv::COLOR_YUV2RGB_I420); });
  addMemcpy(i420g, p420, 3 * px);

  add("YCbCr420ToBGR_8u_P3C3R", "kel", p420 + 3 * px, [] { keliYCbCr420ToBGR_8u_P3C3R(s420, st420, out.p, out.step, kRoi); });
  addMemcpy("YCbCr420ToBGR_8u_P3C3R", p420, 3 * px);
  add("YCbCr420ToBGR_8u_P3C4R", "kel", p420 + 4 * px, [] { keliYCbCr420ToBGR_8u_P3C4R(s420, st420, bgra.p, bgra.step, kRoi, 255); });
  add("YCbCr420ToBGR_8u_P3C4R", "libyuv", p420 + 4 * px, [] {
    libyuv::I420ToARGB(y.p, y.step, u.p, u.step, v.p, v.step, bgra.p, bgra.step, kW, kH);
  });
  addMemcpy("YCbCr420ToBGR_8u_P3C4R", p420, 4 * px);

  const std::string i422 = "YCbCr422ToRGB_8u_P3C3R";
  add(i422, "kel", p422 + 3 * px, [] { keliYCbCr422ToRGB_8u_P3C3R(s422, st422, out.p, out.step, kRoi); });
  add(i422, "libyuv", p422 + 3 * px, [] {
    libyuv::I422ToRGB24(y422.p, y422.step, u422.p, u422.step, v422.p, v422.step, out.p, out.step, kW, kH);
  });
  addMemcpy(i422, p422, 3 * px);

  const std::string f422 = "RGBToYCbCr422_8u_C3C2R";
  add(f422, "kel", 3 * px + p422, [] { keliRGBToYCbCr422_8u_C3C2R(rgb.p, rgb.step, yuy2.p, yuy2.step, kRoi); });
  addMemcpy(f422, 3 * px, p422);
  const std::string c2 = "YCbCr422ToRGB_8u_C2C3R";
  add(c2, "kel", p422 + 3 * px, [] { keliYCbCr422ToRGB_8u_C2C3R(yuy2.p, yuy2.step, out.p, out.step, kRoi); });
  add(c2, "opencv", p422 + 3 * px, [] { cv::cvtColor(mYuy2, mOut, cv::COLOR_YUV2RGB_YUY2); });
  addMemcpy(c2, p422, 3 * px);
  const std::string bgr422 = "BGRToYCbCr422_8u_C3P3R";
  add(bgr422, "kel", 3 * px + p422, [] { keliBGRToYCbCr422_8u_C3P3R(rgb.p, rgb.step, d422, st422, kRoi); });
  addMemcpy(bgr422, 3 * px, p422);
  const std::string bgr420 = "BGRToYCbCr420_8u_C3P3R";
  add(bgr420, "kel", 3 * px + p420, [] { keliBGRToYCbCr420_8u_C3P3R(rgb.p, rgb.step, d420, st420, kRoi); });
  add(bgr420, "libyuv", 3 * px + p420, [] {
    libyuv::RGB24ToI420(rgb.p, rgb.step, y.p, y.step, u.p, u.step, v.p, v.step, kW, kH);
  });
  addMemcpy(bgr420, 3 * px, p420);
}
KB_REGISTER(registerYccSub);

}  // namespace
