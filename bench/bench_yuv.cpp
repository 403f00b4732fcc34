// RGB <-> YUV at full resolution beside OpenCV's analogue-TV YUV conversion.
#include <opencv2/imgproc.hpp>

#include "common.h"

namespace {

void registerYuv() {
  using namespace kb;
  static Plane rgb(3 * kW, kH, 1), yuv(3 * kW, kH, 2), out(3 * kW, kH, 3);
  static Plane rgba(4 * kW, kH, 4), outa(4 * kW, kH, 5);
  static Plane p0(kW, kH, 6), p1(kW, kH, 7), p2(kW, kH, 8), p3(kW, kH, 9);
  static Plane q0(kW, kH, 10), q1(kW, kH, 11), q2(kW, kH, 12);
  static Kel8u* dst3[3] = {q0.p, q1.p, q2.p};
  static Kel8u* dst4[4] = {q0.p, q1.p, q2.p, p3.p};
  static const Kel8u* src3[3] = {p0.p, p1.p, p2.p};
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mYuv(kH, kW, CV_8UC3, yuv.p), mOut(kH, kW, CV_8UC3, out.p);
  const size_t px = size_t(kW) * kH;

  add("RGBToYUV_8u_C3R", "kel", 6 * px, [] { keliRGBToYUV_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); });
  add("RGBToYUV_8u_C3R", "opencv", 6 * px, [] { cv::cvtColor(mRgb, mOut, cv::COLOR_RGB2YUV); });
  addMemcpy("RGBToYUV_8u_C3R", 3 * px, 3 * px);

  add("YUVToRGB_8u_C3R", "kel", 6 * px, [] { keliYUVToRGB_8u_C3R(yuv.p, yuv.step, out.p, out.step, kRoi); });
  add("YUVToRGB_8u_C3R", "opencv", 6 * px, [] { cv::cvtColor(mYuv, mOut, cv::COLOR_YUV2RGB); });
  addMemcpy("YUVToRGB_8u_C3R", 3 * px, 3 * px);

  add("RGBToYUV_8u_C3P3R", "kel", 6 * px, [] { keliRGBToYUV_8u_C3P3R(rgb.p, rgb.step, dst3, q0.step, kRoi); });
  addMemcpy("RGBToYUV_8u_C3P3R", 3 * px, 3 * px);
  add("RGBToYUV_8u_P3R", "kel", 6 * px, [] { keliRGBToYUV_8u_P3R(src3, p0.step, dst3, q0.step, kRoi); });
  addMemcpy("RGBToYUV_8u_P3R", 3 * px, 3 * px);
  add("RGBToYUV_8u_AC4R", "kel", 8 * px, [] { keliRGBToYUV_8u_AC4R(rgba.p, rgba.step, outa.p, outa.step, kRoi); });
  addMemcpy("RGBToYUV_8u_AC4R", 4 * px, 4 * px);
  add("RGBToYUV_8u_AC4P4R", "kel", 8 * px, [] { keliRGBToYUV_8u_AC4P4R(rgba.p, rgba.step, dst4, q0.step, kRoi); });
  addMemcpy("RGBToYUV_8u_AC4P4R", 4 * px, 4 * px);
  add("YUVToRGB_8u_AC4R", "kel", 8 * px, [] { keliYUVToRGB_8u_AC4R(rgba.p, rgba.step, outa.p, outa.step, kRoi); });
  addMemcpy("YUVToRGB_8u_AC4R", 4 * px, 4 * px);
  add("YUVToRGB_8u_P3C3R", "kel", 6 * px, [] { keliYUVToRGB_8u_P3C3R(src3, p0.step, out.p, out.step, kRoi); });
  addMemcpy("YUVToRGB_8u_P3C3R", 3 * px, 3 * px);
  add("YUVToRGB_8u_P3R", "kel", 6 * px, [] { keliYUVToRGB_8u_P3R(src3, p0.step, dst3, q0.step, kRoi); });
  addMemcpy("YUVToRGB_8u_P3R", 3 * px, 3 * px);
}
KB_REGISTER(registerYuv);

}  // namespace
