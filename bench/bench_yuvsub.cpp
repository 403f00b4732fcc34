// RGB <-> YUV 4:2:0 and 4:2:2 beside libyuv's and OpenCV's BT.601 4:2:0 and
// 4:2:2 conversions (another matrix, the same work: 8-bit fixed-point
// matrices, chroma averaged over the group or repeated to its pixels).
#include <libyuv.h>

#include <opencv2/imgproc.hpp>

#include "common.h"

namespace {

void registerYuvSub() {
  using namespace kb;
  static Plane rgb(3 * kW, kH, 1), out(3 * kW, kH, 2), bgra(4 * kW, kH, 3), rgba(4 * kW, kH, 4);
  static Plane r(kW, kH, 5), g(kW, kH, 6), b(kW, kH, 7);
  static Plane i420(kW, kH * 3 / 2, 8);  // Y, U and V back to back, as OpenCV wants them
  static Plane y422(kW, kH, 9), u422(half(kW), kH, 10), v422(half(kW), kH, 11), yuy2(2 * kW, kH, 12);
  static uint8_t* y = i420.p;
  static uint8_t* u = i420.p + kW * kH;
  static uint8_t* v = u + (kW / 2) * (kH / 2);
  static Kel8u* d420[3] = {y, u, v};
  static const Kel8u* s420[3] = {y, u, v};
  static const int st420[3] = {kW, kW / 2, kW / 2};
  static Kel8u* d422[3] = {y422.p, u422.p, v422.p};
  static const Kel8u* s422[3] = {y422.p, u422.p, v422.p};
  static const int st422[3] = {y422.step, u422.step, v422.step};
  static Kel8u* dRgb[3] = {r.p, g.p, b.p};
  static const Kel8u* sRgb[3] = {r.p, g.p, b.p};
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mI420(kH * 3 / 2, kW, CV_8UC1, i420.p);
  static cv::Mat mYuy2(kH, kW, CV_8UC2, yuy2.p), mOut(kH, kW, CV_8UC3, out.p);
  const size_t px = size_t(kW) * kH, p420 = px * 3 / 2, p422 = 2 * px;

  // Inputs of the inverse groups: real images (the forward results).
  keliRGBToYUV420_8u_C3P3R(rgb.p, rgb.step, d420, st420, kRoi);
  keliRGBToYUV422_8u_C3P3R(rgb.p, rgb.step, d422, st422, kRoi);
  keliRGBToYUV422_8u_C3C2R(rgb.p, rgb.step, yuy2.p, yuy2.step, kRoi);

  // ---- 4:2:0
  const std::string f420 = "RGBToYUV420_8u_C3P3R";
  add(f420, "kel", 3 * px + p420, [] { keliRGBToYUV420_8u_C3P3R(rgb.p, rgb.step, d420, st420, kRoi); });
  add(f420, "libyuv", 3 * px + p420, [] {
    libyuv::RAWToI420(rgb.p, rgb.step, y, kW, u, kW / 2, v, kW / 2, kW, kH);
  });
  add(f420, "opencv", 3 * px + p420, [] { cv::cvtColor(mRgb, mI420, cv::COLOR_RGB2YUV_I420); });
  addMemcpy(f420, 3 * px, p420);

  const std::string i420g = "YUV420ToRGB_8u_P3C3R";
  add(i420g, "kel", p420 + 3 * px, [] { keliYUV420ToRGB_8u_P3C3R(s420, st420, out.p, out.step, kRoi); });
  add(i420g, "libyuv", p420 + 3 * px, [] {
    libyuv::I420ToRAW(y, kW, u, kW / 2, v, kW / 2, out.p, out.step, kW, kH);
  });
  add(i420g, "opencv", p420 + 3 * px, [] { cv::cvtColor(mI420, mOut, cv::COLOR_YUV2RGB_I420); });
  addMemcpy(i420g, p420, 3 * px);

  add("RGBToYUV420_8u_P3R", "kel", 3 * px + p420, [] { keliRGBToYUV420_8u_P3R(sRgb, r.step, d420, st420, kRoi); });
  addMemcpy("RGBToYUV420_8u_P3R", 3 * px, p420);
  add("BGRToYUV420_8u_AC4P3R", "kel", 4 * px + p420, [] {
    keliBGRToYUV420_8u_AC4P3R(bgra.p, bgra.step, d420, st420, kRoi);
  });
  add("BGRToYUV420_8u_AC4P3R", "libyuv", 4 * px + p420, [] {
    libyuv::ARGBToI420(bgra.p, bgra.step, y, kW, u, kW / 2, v, kW / 2, kW, kH);
  });
  addMemcpy("BGRToYUV420_8u_AC4P3R", 4 * px, p420);
  add("YUV420ToRGB_8u_P3R", "kel", p420 + 3 * px, [] { keliYUV420ToRGB_8u_P3R(s420, st420, dRgb, r.step, kRoi); });
  addMemcpy("YUV420ToRGB_8u_P3R", p420, 3 * px);
  add("YUV420ToRGB_8u_P3AC4R", "kel", p420 + 4 * px, [] {
    keliYUV420ToRGB_8u_P3AC4R(s420, st420, rgba.p, rgba.step, kRoi);
  });
  add("YUV420ToRGB_8u_P3AC4R", "libyuv", p420 + 4 * px, [] {
    libyuv::I420ToABGR(y, kW, u, kW / 2, v, kW / 2, rgba.p, rgba.step, kW, kH);
  });
  addMemcpy("YUV420ToRGB_8u_P3AC4R", p420, 4 * px);
  add("YUV420ToBGR_8u_P3C3R", "kel", p420 + 3 * px, [] { keliYUV420ToBGR_8u_P3C3R(s420, st420, out.p, out.step, kRoi); });
  add("YUV420ToBGR_8u_P3C3R", "libyuv", p420 + 3 * px, [] {
    libyuv::I420ToRGB24(y, kW, u, kW / 2, v, kW / 2, out.p, out.step, kW, kH);
  });
  addMemcpy("YUV420ToBGR_8u_P3C3R", p420, 3 * px);

  // ---- 4:2:2
  add("RGBToYUV422_8u_C3C2R", "kel", 3 * px + p422, [] {
    keliRGBToYUV422_8u_C3C2R(rgb.p, rgb.step, yuy2.p, yuy2.step, kRoi);
  });
  addMemcpy("RGBToYUV422_8u_C3C2R", 3 * px, p422);
  // All pointers and steps here are multiples of 16: the aligned routine.
  add("RGBToYUV422_8u_C3P3R", "kel", 3 * px + p422, [] {
    keliRGBToYUV422_8u_C3P3R(rgb.p, rgb.step, d422, st422, kRoi);
  });
  addMemcpy("RGBToYUV422_8u_C3P3R", 3 * px, p422);
  add("RGBToYUV422_8u_P3R", "kel", 3 * px + p422, [] { keliRGBToYUV422_8u_P3R(sRgb, r.step, d422, st422, kRoi); });
  addMemcpy("RGBToYUV422_8u_P3R", 3 * px, p422);

  add("YUV422ToRGB_8u_C2C3R", "kel", p422 + 3 * px, [] {
    keliYUV422ToRGB_8u_C2C3R(yuy2.p, yuy2.step, out.p, out.step, kRoi);
  });
  add("YUV422ToRGB_8u_C2C3R", "opencv", p422 + 3 * px, [] { cv::cvtColor(mYuy2, mOut, cv::COLOR_YUV2RGB_YUY2); });
  addMemcpy("YUV422ToRGB_8u_C2C3R", p422, 3 * px);
  add("YUV422ToRGB_8u_P3C3R", "kel", p422 + 3 * px, [] { keliYUV422ToRGB_8u_P3C3R(s422, st422, out.p, out.step, kRoi); });
  add("YUV422ToRGB_8u_P3C3R", "libyuv", p422 + 3 * px, [] {
    libyuv::I422ToRAW(y422.p, y422.step, u422.p, u422.step, v422.p, v422.step, out.p, out.step, kW, kH);
  });
  addMemcpy("YUV422ToRGB_8u_P3C3R", p422, 3 * px);
  add("YUV422ToRGB_8u_P3R", "kel", p422 + 3 * px, [] { keliYUV422ToRGB_8u_P3R(s422, st422, dRgb, r.step, kRoi); });
  addMemcpy("YUV422ToRGB_8u_P3R", p422, 3 * px);
  add("YUV422ToRGB_8u_P3AC4R", "kel", p422 + 4 * px, [] {
    keliYUV422ToRGB_8u_P3AC4R(s422, st422, rgba.p, rgba.step, kRoi);
  });
  addMemcpy("YUV422ToRGB_8u_P3AC4R", p422, 4 * px);
}
KB_REGISTER(registerYuvSub);

// RGB <-> studio-range YCbCr at full resolution.
void registerYcc444() {
  using namespace kb;
  static Plane rgb(3 * kW, kH, 21), ycc(3 * kW, kH, 22), out(3 * kW, kH, 23), bgra(4 * kW, kH, 24);
  static Plane p0(kW, kH, 25), p1(kW, kH, 26), p2(kW, kH, 27);
  static Kel8u* d3[3] = {p0.p, p1.p, p2.p};
  static const Kel8u* s3[3] = {p0.p, p1.p, p2.p};
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mYcc(kH, kW, CV_8UC3, ycc.p), mOut(kH, kW, CV_8UC3, out.p);
  const size_t px = size_t(kW) * kH;

  keliRGBToYCbCr_8u_C3P3R(rgb.p, rgb.step, d3, p0.step, kRoi);
  keliRGBToYCbCr_8u_C3R(rgb.p, rgb.step, ycc.p, ycc.step, kRoi);

  add("RGBToYCbCr_8u_C3R", "kel", 6 * px, [] { keliRGBToYCbCr_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); });
  add("RGBToYCbCr_8u_C3R", "opencv", 6 * px, [] { cv::cvtColor(mRgb, mOut, cv::COLOR_RGB2YCrCb); });
  addMemcpy("RGBToYCbCr_8u_C3R", 3 * px, 3 * px);
  add("RGBToYCbCr_8u_C3P3R", "kel", 6 * px, [] { keliRGBToYCbCr_8u_C3P3R(rgb.p, rgb.step, d3, p0.step, kRoi); });
  addMemcpy("RGBToYCbCr_8u_C3P3R", 3 * px, 3 * px);
  add("YCbCrToRGB_8u_C3R", "kel", 6 * px, [] { keliYCbCrToRGB_8u_C3R(ycc.p, ycc.step, out.p, out.step, kRoi); });
  add("YCbCrToRGB_8u_C3R", "opencv", 6 * px, [] { cv::cvtColor(mYcc, mOut, cv::COLOR_YCrCb2RGB); });
  addMemcpy("YCbCrToRGB_8u_C3R", 3 * px, 3 * px);
  add("YCbCrToRGB_8u_P3C3R", "kel", 6 * px, [] { keliYCbCrToRGB_8u_P3C3R(s3, p0.step, out.p, out.step, kRoi); });
  add("YCbCrToRGB_8u_P3C3R", "libyuv", 6 * px, [] {
    libyuv::I444ToRAW(p0.p, p0.step, p1.p, p1.step, p2.p, p2.step, out.p, out.step, kW, kH);
  });
  addMemcpy("YCbCrToRGB_8u_P3C3R", 3 * px, 3 * px);
  add("YCbCrToBGR_8u_P3C4R", "kel", 7 * px, [] {
    keliYCbCrToBGR_8u_P3C4R(s3, p0.step, bgra.p, bgra.step, kRoi, 255);
  });
  add("YCbCrToBGR_8u_P3C4R", "libyuv", 7 * px, [] {
    libyuv::I444ToARGB(p0.p, p0.step, p1.p, p1.step, p2.p, p2.step, bgra.p, bgra.step, kW, kH);
  });
  addMemcpy("YCbCrToBGR_8u_P3C4R", 3 * px, 4 * px);
}
KB_REGISTER(registerYcc444);

}  // namespace
