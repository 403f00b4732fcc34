// RGB <-> XYZ, RGB <-> YCC and RGB to gray beside OpenCV's cvtColor (the same
// matrices; OpenCV rounds where we truncate, which costs nothing either way).
// The "@2t" groups run ours with two threads (rows by static schedule); the
// peers stay single-threaded there too. Gray conversions have no parallel
// region and run on one thread only.
#include <opencv2/imgproc.hpp>

#include "common.h"

namespace {


void registerColour() {
  using namespace kb;
  static Plane rgb(3 * kW, kH, 1), out(3 * kW, kH, 2), gray(kW, kH, 3);
  static Plane rgbF(12 * kW, kH, 4), outF(12 * kW, kH, 5), grayF(4 * kW, kH, 6);
  // Float images in 0..1: random bytes would hold NaNs and denormals.
  for (Plane* p : {&rgbF, &outF}) {
    std::mt19937 g(7);
    float* f = reinterpret_cast<float*>(p->p);
    for (size_t i = 0; i < p->bytes / 4; ++i) f[i] = static_cast<float>(g() % 4096) / 4095.0f;
  }
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mOut(kH, kW, CV_8UC3, out.p), mGray(kH, kW, CV_8UC1, gray.p);
  static cv::Mat mRgbF(kH, kW, CV_32FC3, rgbF.p), mOutF(kH, kW, CV_32FC3, outF.p), mGrayF(kH, kW, CV_32FC1, grayF.p);
  const size_t px = size_t(kW) * kH;

  for (int threads : threadCounts()) {
    const std::string t = threads == 1 ? "" : "@2t";
    auto with = [threads](void (*f)()) {
      return [threads, f] {
        const int before = kelGetNumThreads();
        kelSetNumThreads(threads);
        f();
        kelSetNumThreads(before);
      };
    };
    kb::addKelAndAvx2("RGBToXYZ_8u_C3R" + t, 6 * px,
        with(+[] { keliRGBToXYZ_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); }));
    add("RGBToXYZ_8u_C3R" + t, "opencv", 6 * px, [] { cv::cvtColor(mRgb, mOut, cv::COLOR_RGB2XYZ); });
    addMemcpy("RGBToXYZ_8u_C3R" + t, 3 * px, 3 * px);

    kb::addKelAndAvx2("XYZToRGB_8u_C3R" + t, 6 * px,
        with(+[] { keliXYZToRGB_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); }));
    add("XYZToRGB_8u_C3R" + t, "opencv", 6 * px, [] { cv::cvtColor(mRgb, mOut, cv::COLOR_XYZ2RGB); });
    addMemcpy("XYZToRGB_8u_C3R" + t, 3 * px, 3 * px);

    kb::addKelAndAvx2("RGBToXYZ_32f_C3R" + t, 24 * px, with(+[] {
          keliRGBToXYZ_32f_C3R(reinterpret_cast<const Kel32f*>(rgbF.p), rgbF.step,
                               reinterpret_cast<Kel32f*>(outF.p), outF.step, kRoi);
        }));
    add("RGBToXYZ_32f_C3R" + t, "opencv", 24 * px, [] { cv::cvtColor(mRgbF, mOutF, cv::COLOR_RGB2XYZ); });
    addMemcpy("RGBToXYZ_32f_C3R" + t, 12 * px, 12 * px);

    kb::addKelAndAvx2("XYZToRGB_32f_C3R" + t, 24 * px, with(+[] {
          keliXYZToRGB_32f_C3R(reinterpret_cast<const Kel32f*>(rgbF.p), rgbF.step,
                               reinterpret_cast<Kel32f*>(outF.p), outF.step, kRoi);
        }));
    add("XYZToRGB_32f_C3R" + t, "opencv", 24 * px, [] { cv::cvtColor(mRgbF, mOutF, cv::COLOR_XYZ2RGB); });
    addMemcpy("XYZToRGB_32f_C3R" + t, 12 * px, 12 * px);

    kb::addKelAndAvx2("RGBToYCC_8u_C3R" + t, 6 * px,
        with(+[] { keliRGBToYCC_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); }));
    addMemcpy("RGBToYCC_8u_C3R" + t, 3 * px, 3 * px);
    kb::addKelAndAvx2("YCCToRGB_8u_C3R" + t, 6 * px,
        with(+[] { keliYCCToRGB_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); }));
    addMemcpy("YCCToRGB_8u_C3R" + t, 3 * px, 3 * px);
  }

  kb::addKelAndAvx2("RGBToGray_8u_C3C1R", 4 * px, [] { keliRGBToGray_8u_C3C1R(rgb.p, rgb.step, gray.p, gray.step, kRoi); });
  add("RGBToGray_8u_C3C1R", "opencv", 4 * px, [] { cv::cvtColor(mRgb, mGray, cv::COLOR_RGB2GRAY); });
  addMemcpy("RGBToGray_8u_C3C1R", 3 * px, px);
  kb::addKelAndAvx2("RGBToGray_32f_C3C1R", 16 * px, [] {
    keliRGBToGray_32f_C3C1R(reinterpret_cast<const Kel32f*>(rgbF.p), rgbF.step, reinterpret_cast<Kel32f*>(grayF.p),
                            grayF.step, kRoi);
  });
  add("RGBToGray_32f_C3C1R", "opencv", 16 * px, [] { cv::cvtColor(mRgbF, mGrayF, cv::COLOR_RGB2GRAY); });
  addMemcpy("RGBToGray_32f_C3C1R", 12 * px, 4 * px);
}
KB_REGISTER(registerColour);

}  // namespace
