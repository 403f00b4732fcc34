// Bit-depth reduction at 1920x1080, 8u C1 and C3, every method, one and two
// threads ("@2t"), beside memcpy of the same bytes. OpenCV has no dithering;
// its table lookup (cv::LUT) does the work of the nearest level on 8-bit
// samples and stands beside that method.
#include <memory>

#include <opencv2/core.hpp>

#include "common.h"

namespace {

void registerReduce() {
  using namespace kb;
  static Plane src1(kW, kH, 1), dst1(kW, kH, 2), src3(3 * kW, kH, 3), dst3(3 * kW, kH, 4);
  static cv::Mat m1(kH, kW, CV_8UC1, src1.p), o1(kH, kW, CV_8UC1, dst1.p), m3(kH, kW, CV_8UC3, src3.p),
      o3(kH, kW, CV_8UC3, dst3.p);
  // The 8-level table of the nearest level, from the library itself.
  static cv::Mat lut(1, 256, CV_8UC1);
  {
    Kel8u ramp[256];
    for (int i = 0; i < 256; ++i) ramp[i] = Kel8u(i);
    keliReduceBits_8u_C1R(ramp, 256, lut.ptr<Kel8u>(), 256, {256, 1}, 0, kelDitherNone, 8);
  }
  const size_t px = size_t(kW) * kH;
  const struct {
    const char* name;
    KelDitherType t;
    int noise;
  } methods[] = {{"none", kelDitherNone, 0},     {"fs", kelDitherFloydSteinberg, 0},
                 {"fs_noise", kelDitherFloydSteinberg, 20}, {"jjn", kelDitherJarvisJudiceNinke, 0},
                 {"stucki", kelDitherStucki, 0}, {"bayer", kelDitherBayer, 0},
                 {"bayer_noise", kelDitherBayer, 20}};
  for (int ch : {1, 3})
    for (const auto& m : methods)
      for (int threads : threadCounts()) {
        const std::string g = std::string("ReduceBits_8u_C") + char('0' + ch) + "R_" + m.name + (threads == 2 ? "@2t" : "");
        const KelDitherType t = m.t;
        const int noise = m.noise;
        add(g, "kel", 2 * ch * px, [ch, t, noise, threads] {
          const int before = kelGetNumThreads();
          kelSetNumThreads(threads);
          if (ch == 1)
            keliReduceBits_8u_C1R(src1.p, src1.step, dst1.p, dst1.step, kRoi, noise, t, 8);
          else
            keliReduceBits_8u_C3R(src3.p, src3.step, dst3.p, dst3.step, kRoi, noise, t, 8);
          kelSetNumThreads(before);
        });
        if (t == kelDitherNone)
          add(g, "opencv", 2 * ch * px, [ch] { ch == 1 ? cv::LUT(m1, lut, o1) : cv::LUT(m3, lut, o3); });
        addMemcpy(g, ch * px, ch * px);
      }
}
KB_REGISTER(registerReduce);

}  // namespace
