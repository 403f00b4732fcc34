// RGB565 pack and unpack beside OpenCV's BGR565 conversions (the same bytes:
// byte 0 to the low five bits, no rounding, no bit replication) and libyuv's
// nearest conversions, which pack from and unpack to four-byte ARGB pixels.
// The "@2t" groups run ours with two threads (bands of rows); the peers stay
// single-threaded there too.
#include <libyuv.h>

#include <memory>

#include <opencv2/imgproc.hpp>

#include "common.h"

namespace {

void registerRgb565() {
  using namespace kb;
  static Plane rgb(3 * kW, kH, 1), out(3 * kW, kH, 2), argb(4 * kW, kH, 3), word(2 * kW, kH, 4), word2(2 * kW, kH, 5);
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mOut(kH, kW, CV_8UC3, out.p), mWord(kH, kW, CV_8UC2, word.p),
      mWord2(kH, kW, CV_8UC2, word2.p);
  const size_t px = size_t(kW) * kH;
  auto pack = [] {
    keliRGBToRGB565_8u16u_C3R(rgb.p, rgb.step, reinterpret_cast<Kel16u*>(word2.p), word2.step, kRoi);
  };
  auto unpack = [] {
    keliRGB565ToRGB_16u8u_C3R(reinterpret_cast<const Kel16u*>(word.p), word.step, out.p, out.step, kRoi);
  };
  for (int threads : threadCounts()) {
    const std::string t = threads == 1 ? "" : "@2t";
    auto withThreads = [threads](void (*f)()) {
      return [threads, f] {
        const int before = kelGetNumThreads();
        kelSetNumThreads(threads);
        f();
        kelSetNumThreads(before);
      };
    };
    add("RGBToRGB565_8u16u_C3R" + t, "kel", 5 * px, withThreads(+pack));
    add("RGBToRGB565_8u16u_C3R" + t, "opencv", 5 * px, [] { cv::cvtColor(mRgb, mWord2, cv::COLOR_RGB2BGR565); });
    add("RGBToRGB565_8u16u_C3R" + t, "libyuv", 6 * px, [] {
      libyuv::ARGBToRGB565(argb.p, argb.step, word2.p, word2.step, kW, kH);
    });
    addMemcpy("RGBToRGB565_8u16u_C3R" + t, 3 * px, 2 * px);

    add("RGB565ToRGB_16u8u_C3R" + t, "kel", 5 * px, withThreads(+unpack));
    add("RGB565ToRGB_16u8u_C3R" + t, "opencv", 5 * px, [] { cv::cvtColor(mWord, mOut, cv::COLOR_BGR5652RGB); });
    add("RGB565ToRGB_16u8u_C3R" + t, "libyuv", 6 * px, [] {
      libyuv::RGB565ToARGB(word.p, word.step, argb.p, argb.step, kW, kH);
    });
    addMemcpy("RGB565ToRGB_16u8u_C3R" + t, 2 * px, 3 * px);
  }
}
KB_REGISTER(registerRgb565);

}  // namespace
