// RGB <-> HLS and RGB <-> HSV beside OpenCV's full-range hue forms
// (COLOR_RGB2HLS_FULL and friends: hue 0..255 for a full turn, as ours).
// The "@2t" groups run ours with two threads; the peer stays as it is.
#include <opencv2/imgproc.hpp>

#include "common.h"

namespace {


void registerHlsHsv() {
  using namespace kb;
  static Plane rgb(3 * kW, kH, 11), out(3 * kW, kH, 12);
  static Plane rgb16(6 * kW, kH, 13), out16(6 * kW, kH, 14);
  static Plane rgbF(12 * kW, kH, 15), outF(12 * kW, kH, 16);
  {
    std::mt19937 g(9);
    float* f = reinterpret_cast<float*>(rgbF.p);
    for (size_t i = 0; i < rgbF.bytes / 4; ++i) f[i] = static_cast<float>(g() % 4096) / 4095.0f;
  }
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mOut(kH, kW, CV_8UC3, out.p);
  static cv::Mat mRgbF(kH, kW, CV_32FC3, rgbF.p), mOutF(kH, kW, CV_32FC3, outF.p);
  const size_t px = size_t(kW) * kH;

  using Fn8 = KelStatus (*)(const Kel8u*, int, Kel8u*, int, KeliSize);
  struct Case8 {
    const char* name;
    Fn8 fn;
    int code;  // the OpenCV conversion
  };
  static const Case8 cases8[] = {{"RGBToHSV_8u_C3R", keliRGBToHSV_8u_C3R, cv::COLOR_RGB2HSV_FULL},
                                 {"HSVToRGB_8u_C3R", keliHSVToRGB_8u_C3R, cv::COLOR_HSV2RGB_FULL},
                                 {"RGBToHLS_8u_C3R", keliRGBToHLS_8u_C3R, cv::COLOR_RGB2HLS_FULL},
                                 {"HLSToRGB_8u_C3R", keliHLSToRGB_8u_C3R, cv::COLOR_HLS2RGB_FULL}};

  for (int threads : threadCounts()) {
    const std::string t = threads == 1 ? "" : "@2t";
    auto with = [threads](std::function<void()> f) {
      return [threads, f] {
        const int before = kelGetNumThreads();
        kelSetNumThreads(threads);
        f();
        kelSetNumThreads(before);
      };
    };
    for (const Case8& c : cases8) {
      const std::string g = c.name + t;
      kb::addKelAndAvx2(g, 6 * px, with([&c] { c.fn(rgb.p, rgb.step, out.p, out.step, kRoi); }));
      add(g, "opencv", 6 * px, [&c] { cv::cvtColor(mRgb, mOut, c.code); });
      addMemcpy(g, 3 * px, 3 * px);
    }
    kb::addKelAndAvx2("RGBToHLS_16u_C3R" + t, 12 * px, with([] {
          keliRGBToHLS_16u_C3R(reinterpret_cast<const Kel16u*>(rgb16.p), rgb16.step,
                               reinterpret_cast<Kel16u*>(out16.p), out16.step, kRoi);
        }));
    addMemcpy("RGBToHLS_16u_C3R" + t, 6 * px, 6 * px);
    kb::addKelAndAvx2("RGBToHLS_32f_C3R" + t, 24 * px, with([] {
          keliRGBToHLS_32f_C3R(reinterpret_cast<const Kel32f*>(rgbF.p), rgbF.step,
                               reinterpret_cast<Kel32f*>(outF.p), outF.step, kRoi);
        }));
    add("RGBToHLS_32f_C3R" + t, "opencv", 24 * px, [] { cv::cvtColor(mRgbF, mOutF, cv::COLOR_RGB2HLS); });
    addMemcpy("RGBToHLS_32f_C3R" + t, 12 * px, 12 * px);
    kb::addKelAndAvx2("BGRToHLS_8u_C3P3R" + t, 6 * px, with([] {
          Kel8u* d[3] = {out.p, out.p + kW, out.p + 2 * kW};
          keliBGRToHLS_8u_C3P3R(rgb.p, rgb.step, d, out.step, kRoi);
        }));
    addMemcpy("BGRToHLS_8u_C3P3R" + t, 3 * px, 3 * px);
  }
}
KB_REGISTER(registerHlsHsv);

}  // namespace
