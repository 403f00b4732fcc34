// Colour twist beside OpenCV's cv::transform with the same 3 x 4 matrix (the
// same affine map; OpenCV's sums are its own, the work is the same), and
// beside memcpy of the same bytes. The family has no parallel region: one
// thread throughout.
#include <opencv2/core.hpp>

#include "common.h"

namespace {

// A sepia-like map with an offset: weights near 1, results partly above 255.
const Kel32f kTwist[3][4] = {{0.393f, 0.769f, 0.189f, 4.0f}, {0.349f, 0.686f, 0.168f, 2.0f},
                             {0.272f, 0.534f, 0.131f, -3.0f}};
const Kel32f kTwist4[4][4] = {{0.393f, 0.769f, 0.189f, 0.1f}, {0.349f, 0.686f, 0.168f, 0.0f},
                              {0.272f, 0.534f, 0.131f, 0.0f}, {0.0f, 0.0f, 0.0f, 1.0f}};

void registerTwist() {
  using namespace kb;
  static Plane rgb(3 * kW, kH, 1), out(3 * kW, kH, 2);
  static Plane rgbF(12 * kW, kH, 4), outF(12 * kW, kH, 5), rgbaF(16 * kW, kH, 6), outF4(16 * kW, kH, 7);
  for (Plane* p : {&rgbF, &outF, &rgbaF, &outF4}) {  // floats in 0..1
    std::mt19937 g(7);
    float* f = reinterpret_cast<float*>(p->p);
    for (size_t i = 0; i < p->bytes / 4; ++i) f[i] = static_cast<float>(g() % 4096) / 4095.0f;
  }
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mOut(kH, kW, CV_8UC3, out.p);
  static cv::Mat mRgbF(kH, kW, CV_32FC3, rgbF.p), mOutF(kH, kW, CV_32FC3, outF.p);
  static cv::Mat mRgbaF(kH, kW, CV_32FC4, rgbaF.p), mOutF4(kH, kW, CV_32FC4, outF4.p);
  static cv::Mat m34(3, 4, CV_32F, const_cast<Kel32f*>(&kTwist[0][0]));
  static cv::Mat m44(4, 4, CV_32F, const_cast<Kel32f*>(&kTwist4[0][0]));
  const size_t px = size_t(kW) * kH;

  add("ColorTwist32f_8u_C3R", "kel", 6 * px,
      [] { keliColorTwist32f_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi, kTwist); });
  add("ColorTwist32f_8u_C3R", "opencv", 6 * px, [] { cv::transform(mRgb, mOut, m34); });
  addMemcpy("ColorTwist32f_8u_C3R", 3 * px, 3 * px);

  add("ColorTwist_32f_C3R", "kel", 24 * px, [] {
    keliColorTwist_32f_C3R(reinterpret_cast<const Kel32f*>(rgbF.p), rgbF.step, reinterpret_cast<Kel32f*>(outF.p),
                           outF.step, kRoi, kTwist);
  });
  add("ColorTwist_32f_C3R", "opencv", 24 * px, [] { cv::transform(mRgbF, mOutF, m34); });
  addMemcpy("ColorTwist_32f_C3R", 12 * px, 12 * px);

  add("ColorTwist_32f_C4R", "kel", 32 * px, [] {
    keliColorTwist_32f_C4R(reinterpret_cast<const Kel32f*>(rgbaF.p), rgbaF.step, reinterpret_cast<Kel32f*>(outF4.p),
                           outF4.step, kRoi, kTwist4);
  });
  add("ColorTwist_32f_C4R", "opencv", 32 * px, [] { cv::transform(mRgbaF, mOutF4, m44); });
  addMemcpy("ColorTwist_32f_C4R", 16 * px, 16 * px);
}
KB_REGISTER(registerTwist);

}  // namespace
