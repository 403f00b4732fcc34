// Gamma curves and tone mapping at 1920x1080, one thread. The 8u curve is a
// table look-up: beside OpenCV's LUT with the same table (the same bytes) and
// memcpy. The 16u curve beside OpenCV's LUT over a 65536-entry table built
// with std::pow for the call (the work our call does: the table, then the
// look-up), and beside cv::pow on floats (the per-sample alternative).
#include <cmath>
#include <memory>

#include <opencv2/core.hpp>

#include "common.h"
#include "frame/cpu.h"
#include "tone/gamma_tables.h"

namespace {

void registerGamma() {
  using namespace kb;
  static const size_t px = size_t(kW) * kH;
  static Plane rgb(3 * kW, kH, 1), out(3 * kW, kH, 2), rgba(4 * kW, kH, 3), out4(4 * kW, kH, 4);
  static Plane w16(6 * kW, kH, 5), o16(6 * kW, kH, 6);
  static Plane planes[3] = {{kW, kH, 7}, {kW, kH, 8}, {kW, kH, 9}};
  static cv::Mat mRgb(kH, kW, CV_8UC3, rgb.p), mOut(kH, kW, CV_8UC3, out.p);
  static cv::Mat lut8(1, 256, CV_8U, const_cast<uint8_t*>(kel::tableFwd8u));

  add("GammaFwd_8u_C3R", "kel", 6 * px, [] { keliGammaFwd_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi); });
  // The same call held to narrower paths (the AVX-512 VBMI look-up is the
  // default where the processor has it).
  for (kel::Isa isa : {kel::Isa::AVX2, kel::Isa::SSE41, kel::Isa::Scalar}) {
    if (kel::cpuIsa() < isa) continue;
    const char* name = isa == kel::Isa::AVX2 ? "kel-avx2" : isa == kel::Isa::SSE41 ? "kel-sse41" : "kel-scalar";
    add("GammaFwd_8u_C3R", name, 6 * px, [isa] {
      kel::setIsaLimit(isa);
      keliGammaFwd_8u_C3R(rgb.p, rgb.step, out.p, out.step, kRoi);
      kel::setIsaLimit(kel::Isa::AVX512);
    });
  }
  add("GammaFwd_8u_C3R", "opencv", 6 * px, [] { cv::LUT(mRgb, lut8, mOut); });
  addMemcpy("GammaFwd_8u_C3R", 3 * px, 3 * px);
  add("GammaFwd_8u_C3IR", "kel", 6 * px, [] { keliGammaFwd_8u_C3IR(out.p, out.step, kRoi); });
  add("GammaInv_8u_AC4R", "kel", 8 * px, [] { keliGammaInv_8u_AC4R(rgba.p, rgba.step, out4.p, out4.step, kRoi); });
  addMemcpy("GammaInv_8u_AC4R", 4 * px, 4 * px);
  add("GammaFwd_8u_P3R", "kel", 6 * px, [] {
    const Kel8u* s[3] = {planes[0].p, planes[1].p, planes[2].p};
    Kel8u* d[3] = {planes[0].p, planes[1].p, planes[2].p};
    keliGammaFwd_8u_P3R(s, kW, d, kW, kRoi);
  });

  // 16u: the call builds its table of 65536 entries and looks every sample up.
  static cv::Mat m16(kH, kW, CV_16UC3, w16.p), mo16(kH, kW, CV_16UC3, o16.p);
  add("GammaFwd_16u_C3R", "kel", 12 * px, [] {
    keliGammaFwd_16u_C3R(reinterpret_cast<Kel16u*>(w16.p), w16.step, reinterpret_cast<Kel16u*>(o16.p), o16.step,
                         kRoi);
  });
  add("GammaFwd_16u_C3R", "opencv", 12 * px, [] {
    // cv::LUT takes 8-bit indices only: the 16-bit look-up is a plain loop
    // over a std::pow table built for the call.
    std::vector<uint16_t> t(65536);
    for (int i = 0; i < 65536; ++i) {
      const double x = i / 65535.0;
      const double v = x < 0.018 ? 4.5 * i : (std::pow(x, 0.45) * 1.099 - 0.099) * 65535.0;
      t[i] = static_cast<uint16_t>(std::lrint(v));
    }
    for (int y = 0; y < kH; ++y) {
      const uint16_t* s = m16.ptr<uint16_t>(y);
      uint16_t* d = mo16.ptr<uint16_t>(y);
      for (int x = 0; x < 3 * kW; ++x) d[x] = t[s[x]];
    }
  });
  static cv::Mat f32(kH, kW, CV_32FC3), fo32(kH, kW, CV_32FC3);
  track(f32.data, 12 * px);
  track(fo32.data, 12 * px);
  static const bool init = [] {
    m16.convertTo(f32, CV_32F, 1.0 / 65535);
    return true;
  }();
  (void)init;
  add("GammaFwd_16u_C3R", "opencv-pow", 12 * px, [] { cv::pow(f32, 0.45, fo32); });
  addMemcpy("GammaFwd_16u_C3R", 6 * px, 6 * px);

  // 32f: a double-precision power per sample.
  static std::vector<float> fsrc(3 * px, 0.5f), fdst(3 * px);
  track(fsrc.data(), 12 * px);
  track(fdst.data(), 12 * px);
  add("GammaFwd_32f_C3R", "kel", 24 * px, [] {
    keliGammaFwd_32f_C3R(fsrc.data(), 12 * kW, fdst.data(), 12 * kW, kRoi, 0.0f, 1.0f);
  });
  add("GammaFwd_32f_C3R", "opencv-pow", 24 * px, [] { cv::pow(f32, 0.45, fo32); });

  // Tone mapping: a statistic pass and a scaling pass over a float plane.
  static std::vector<float> hdr(px);
  track(hdr.data(), 4 * px);
  static Plane gray(kW, kH, 10);
  static const bool hdrInit = [] {
    for (size_t i = 0; i < px; ++i) hdr[i] = static_cast<float>((i * 2654435761u) % 100000) * 0.01f;
    return true;
  }();
  (void)hdrInit;
  add("ToneMapLinear_32f8u_C1R", "kel", 5 * px, [] {
    keliToneMapLinear_32f8u_C1R(hdr.data(), 4 * kW, gray.p, gray.step, kRoi);
  });
  add("ToneMapMean_32f8u_C1R", "kel", 5 * px, [] {
    keliToneMapMean_32f8u_C1R(hdr.data(), 4 * kW, gray.p, gray.step, kRoi);
  });
  static cv::Mat mh(kH, kW, CV_32F, hdr.data()), mg(kH, kW, CV_8U, gray.p);
  add("ToneMapLinear_32f8u_C1R", "opencv", 5 * px, [] {
    double mx = 0;
    cv::minMaxLoc(mh, nullptr, &mx);
    mh.convertTo(mg, CV_8U, 255.0 / mx);
  });
  addMemcpy("ToneMapLinear_32f8u_C1R", 4 * px, px);
}
KB_REGISTER(registerGamma);

}  // namespace
