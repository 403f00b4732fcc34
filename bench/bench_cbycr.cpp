// Packed CbYCr 4:2:2 (UYVY byte order) and the BT.709 conversions beside
// libyuv and OpenCV where they do the same work, and beside memcpy of the
// same bytes. libyuv's "ARGB" is B, G, R, A in memory and its "RGB24" is
// B, G, R: the byte orders of our BGR members. Peers round differently in
// the low bits; the comparison is of the work, not of the values.
#include <libyuv.h>

#include <opencv2/imgproc.hpp>

#include "common.h"

namespace {

void registerCbYCr() {
  using namespace kb;
  static Plane c2(2 * kW, kH, 1), bgr(3 * kW, kH, 2), bgra(4 * kW, kH, 3);
  static Plane y(kW, kH, 4), u(half(kW), half(kH), 5), v(half(kW), half(kH), 6), u444(kW, kH, 7), v444(kW, kH, 8);
  static Plane oc2(2 * kW, kH, 9), obgr(3 * kW, kH, 10), obgra(4 * kW, kH, 11);
  static Plane oy(kW, kH, 12), ou(half(kW), half(kH), 13), ov(half(kW), half(kH), 14);
  static cv::Mat mC2(kH, kW, CV_8UC2, c2.p), mBgr(kH, kW, CV_8UC3, obgr.p), mBgra(kH, kW, CV_8UC4, obgra.p);
  static const Kel8u* p420[3] = {y.p, u.p, v.p};
  static const int s420[3] = {y.step, u.step, v.step};
  static const Kel8u* p444[3] = {y.p, u444.p, v444.p};
  static Kel8u* o420[3] = {oy.p, ou.p, ov.p};
  static const int os420[3] = {oy.step, ou.step, ov.step};
  const size_t px = size_t(kW) * kH, b420 = px * 3 / 2;

  // ---- BT.601 studio swing ----------------------------------------------
  add("UYVYToBGRA", "kel", 6 * px, [] { keliCbYCr422ToBGR_8u_C2C4R(c2.p, c2.step, obgra.p, obgra.step, kRoi, 255); });
  add("UYVYToBGRA", "libyuv", 6 * px, [] { libyuv::UYVYToARGB(c2.p, c2.step, obgra.p, obgra.step, kW, kH); });
  add("UYVYToBGRA", "opencv", 6 * px, [] { cv::cvtColor(mC2, mBgra, cv::COLOR_YUV2BGRA_UYVY); });
  addMemcpy("UYVYToBGRA", 2 * px, 4 * px);

  add("UYVYToRGB", "kel", 5 * px, [] { keliCbYCr422ToRGB_8u_C2C3R(c2.p, c2.step, obgr.p, obgr.step, kRoi); });
  add("UYVYToRGB", "opencv", 5 * px, [] { cv::cvtColor(mC2, mBgr, cv::COLOR_YUV2RGB_UYVY); });
  addMemcpy("UYVYToRGB", 2 * px, 3 * px);

  add("BGRAToUYVY", "kel", 6 * px, [] { keliBGRToCbYCr422_8u_AC4C2R(bgra.p, bgra.step, oc2.p, oc2.step, kRoi); });
  add("BGRAToUYVY", "libyuv", 6 * px, [] { libyuv::ARGBToUYVY(bgra.p, bgra.step, oc2.p, oc2.step, kW, kH); });
  addMemcpy("BGRAToUYVY", 4 * px, 2 * px);

  // The filtered forward conversion has no peer with the same chroma filter.
  add("RGBToUYVYFiltered", "kel", 5 * px, [] { keliRGBToCbYCr422_8u_C3C2R(bgr.p, bgr.step, oc2.p, oc2.step, kRoi); });
  addMemcpy("RGBToUYVYFiltered", 3 * px, 2 * px);
  add("RGBToUYVYGamma", "kel", 5 * px, [] { keliRGBToCbYCr422Gamma_8u_C3C2R(bgr.p, bgr.step, oc2.p, oc2.step, kRoi); });
  addMemcpy("RGBToUYVYGamma", 3 * px, 2 * px);

  // ---- BT.709 -------------------------------------------------------------
  add("I420To709BGR", "kel", b420 + 3 * px, [] {
    keliYCbCr420ToBGR_709CSC_8u_P3C3R(p420, s420, obgr.p, obgr.step, kRoi);
  });
  add("I420To709BGR", "libyuv", b420 + 3 * px, [] {
    libyuv::I420ToRGB24Matrix(y.p, y.step, u.p, u.step, v.p, v.step, obgr.p, obgr.step, &libyuv::kYuvH709Constants, kW,
                              kH);
  });
  addMemcpy("I420To709BGR", b420, 3 * px);

  // Full swing.
  add("I420To709FullBGRA", "kel", b420 + 4 * px, [] {
    keliYCbCr420ToBGR_709HDTV_8u_P3C4R(p420, s420, obgra.p, obgra.step, kRoi, 255);
  });
  add("I420To709FullBGRA", "libyuv", b420 + 4 * px, [] {
    libyuv::I420ToARGBMatrix(y.p, y.step, u.p, u.step, v.p, v.step, obgra.p, obgra.step, &libyuv::kYuvF709Constants, kW,
                             kH);
  });
  addMemcpy("I420To709FullBGRA", b420, 4 * px);

  add("I444To709BGR", "kel", 6 * px, [] { keliYCbCrToBGR_709CSC_8u_P3C3R(p444, y.step, obgr.p, obgr.step, kRoi); });
  add("I444To709BGR", "libyuv", 6 * px, [] {
    libyuv::I444ToRGB24Matrix(y.p, y.step, u444.p, u444.step, v444.p, v444.step, obgr.p, obgr.step,
                              &libyuv::kYuvH709Constants, kW, kH);
  });
  addMemcpy("I444To709BGR", 3 * px, 3 * px);

  add("UYVY709FullToBGRA", "kel", 6 * px, [] {
    keliCbYCr422ToBGR_709HDTV_8u_C2C4R(c2.p, c2.step, obgra.p, obgra.step, kRoi, 255);
  });
  addMemcpy("UYVY709FullToBGRA", 2 * px, 4 * px);

  add("BGRATo709FullUYVY", "kel", 6 * px, [] {
    keliBGRToCbYCr422_709HDTV_8u_AC4C2R(bgra.p, bgra.step, oc2.p, oc2.step, kRoi);
  });
  addMemcpy("BGRATo709FullUYVY", 4 * px, 2 * px);

  // BGR to 4:2:0 with BT.709 weights: no peer converts with these weights.
  add("BGRTo709I420", "kel", 3 * px + b420, [] {
    keliBGRToYCbCr420_709CSC_8u_C3P3R(bgr.p, bgr.step, o420, os420, kRoi);
  });
  addMemcpy("BGRTo709I420", 3 * px, b420);
  add("BGRATo709FullI420", "kel", 4 * px + b420, [] {
    keliBGRToYCbCr420_709HDTV_8u_AC4P3R(bgra.p, bgra.step, o420, os420, kRoi);
  });
  addMemcpy("BGRATo709FullI420", 4 * px, b420);
}
KB_REGISTER(registerCbYCr);

}  // namespace
