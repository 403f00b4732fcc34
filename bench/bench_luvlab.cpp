// RGB <-> LUV and BGR <-> Lab beside OpenCV's cvtColor (COLOR_RGB2Luv,
// COLOR_Luv2RGB, COLOR_BGR2Lab, COLOR_Lab2BGR: the same models, with their
// own scales and roundings). The "@2t" groups run ours with two threads;
// OpenCV stays on one thread throughout.
#include <opencv2/imgproc.hpp>

#include "common.h"

namespace {


void registerLuvLab() {
  using namespace kb;
  static Plane rgb(3 * kW, kH, 1), out(3 * kW, kH, 2), lab16(6 * kW, kH, 3);
  static Plane rgbF(12 * kW, kH, 4), outF(12 * kW, kH, 5);
  for (Plane* p : {&rgbF}) {  // float RGB in 0..1
    std::mt19937 g(7);
    float* f = reinterpret_cast<float*>(p->p);
    for (size_t i = 0; i < p->bytes / 4; ++i) f[i] = static_cast<float>(g() % 4096) / 4095.0f;
  }
  static Plane luvF(12 * kW, kH, 6);  // float LUV of that picture, for the way back
  keliRGBToLUV_32f_C3R(reinterpret_cast<const Kel32f*>(rgbF.p), rgbF.step, reinterpret_cast<Kel32f*>(luvF.p),
                       luvF.step, kRoi);
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mOut(kH, kW, CV_8UC3, out.p);
  static cv::Mat mRgbF(kH, kW, CV_32FC3, rgbF.p), mLuvF(kH, kW, CV_32FC3, luvF.p), mOutF(kH, kW, CV_32FC3, outF.p);
  const size_t px = size_t(kW) * kH;

  for (int threads : threadCounts()) {
    const std::string t = threads == 1 ? "" : "@2t";
    auto with = [threads](void (*f)()) { return withThreads(threads, f); };
    kb::addKelAndAvx2("RGBToLUV_8u_C3R" + t, 6 * px,
        with(+[] { keliRGBToLUV_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); }));
    add("RGBToLUV_8u_C3R" + t, "opencv", 6 * px, [] { cv::cvtColor(mRgb, mOut, cv::COLOR_RGB2Luv); });
    addMemcpy("RGBToLUV_8u_C3R" + t, 3 * px, 3 * px);

    kb::addKelAndAvx2("LUVToRGB_8u_C3R" + t, 6 * px,
        with(+[] { keliLUVToRGB_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); }));
    add("LUVToRGB_8u_C3R" + t, "opencv", 6 * px, [] { cv::cvtColor(mRgb, mOut, cv::COLOR_Luv2RGB); });
    addMemcpy("LUVToRGB_8u_C3R" + t, 3 * px, 3 * px);

    kb::addKelAndAvx2("RGBToLUV_32f_C3R" + t, 24 * px, with(+[] {
          keliRGBToLUV_32f_C3R(reinterpret_cast<const Kel32f*>(rgbF.p), rgbF.step,
                               reinterpret_cast<Kel32f*>(outF.p), outF.step, kRoi);
        }));
    add("RGBToLUV_32f_C3R" + t, "opencv", 24 * px, [] { cv::cvtColor(mRgbF, mOutF, cv::COLOR_RGB2Luv); });
    addMemcpy("RGBToLUV_32f_C3R" + t, 12 * px, 12 * px);

    kb::addKelAndAvx2("LUVToRGB_32f_C3R" + t, 24 * px, with(+[] {
          keliLUVToRGB_32f_C3R(reinterpret_cast<const Kel32f*>(luvF.p), luvF.step,
                               reinterpret_cast<Kel32f*>(outF.p), outF.step, kRoi);
        }));
    add("LUVToRGB_32f_C3R" + t, "opencv", 24 * px, [] { cv::cvtColor(mLuvF, mOutF, cv::COLOR_Luv2RGB); });
    addMemcpy("LUVToRGB_32f_C3R" + t, 12 * px, 12 * px);

    kb::addKelAndAvx2("RGBToLUV_16u_C3R" + t, 12 * px, with(+[] {
          keliRGBToLUV_16u_C3R(reinterpret_cast<const Kel16u*>(lab16.p), lab16.step,
                               reinterpret_cast<Kel16u*>(outF.p), lab16.step, kRoi);
        }));
    addMemcpy("RGBToLUV_16u_C3R" + t, 6 * px, 6 * px);

    kb::addKelAndAvx2("BGRToLab_8u_C3R" + t, 6 * px,
        with(+[] { keliBGRToLab_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); }));
    add("BGRToLab_8u_C3R" + t, "opencv", 6 * px, [] { cv::cvtColor(mRgb, mOut, cv::COLOR_BGR2Lab); });
    addMemcpy("BGRToLab_8u_C3R" + t, 3 * px, 3 * px);

    kb::addKelAndAvx2("LabToBGR_8u_C3R" + t, 6 * px,
        with(+[] { keliLabToBGR_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); }));
    add("LabToBGR_8u_C3R" + t, "opencv", 6 * px, [] { cv::cvtColor(mRgb, mOut, cv::COLOR_Lab2BGR); });
    addMemcpy("LabToBGR_8u_C3R" + t, 3 * px, 3 * px);

    kb::addKelAndAvx2("BGRToLab_8u16u_C3R" + t, 9 * px, with(+[] {
          keliBGRToLab_8u16u_C3R(rgb.p, rgb.step, reinterpret_cast<Kel16u*>(lab16.p), lab16.step, kRoi);
        }));
    addMemcpy("BGRToLab_8u16u_C3R" + t, 3 * px, 6 * px);
    kb::addKelAndAvx2("LabToBGR_16u8u_C3R" + t, 9 * px, with(+[] {
          keliLabToBGR_16u8u_C3R(reinterpret_cast<const Kel16u*>(lab16.p), lab16.step, out.p, out.step, kRoi);
        }));
    addMemcpy("LabToBGR_16u8u_C3R" + t, 6 * px, 3 * px);
  }
}
KB_REGISTER(registerLuvLab);

}  // namespace
