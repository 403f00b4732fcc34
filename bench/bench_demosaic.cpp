// Demosaicing beside OpenCV's Bayer conversions of the same raw frame:
// bilinear (COLOR_BayerBG2RGB), and in "-vs-" groups its other methods,
// edge-aware (_EA) and VNG (_VNG, 8-bit only); and memcpy of the same bytes.
// BG in OpenCV's naming reads the second row pair of an RGGB sensor; each
// conversion does the same work for any grid.
// The "@2t" groups run ours with two threads (bilinear: bands of rows; AHD
// is single-threaded by design and shows the same figure).
#include <memory>

#include <opencv2/imgproc.hpp>

#include "common.h"

namespace {

void registerDemosaic() {
  using namespace kb;
  static Plane raw8(kW, kH, 1), raw16(2 * kW, kH, 2), out8(3 * kW, kH, 3), out16(6 * kW, kH, 4);
  static std::vector<uint8_t> tmp8(KELCC_AHD_TMP_BYTES(kW, 1)), tmp16(KELCC_AHD_TMP_BYTES(kW, 2));
  static cv::Mat mRaw8(kH, kW, CV_8UC1, raw8.p), mRaw16(kH, kW, CV_16UC1, raw16.p), mOut8(kH, kW, CV_8UC3, out8.p),
      mOut16(kH, kW, CV_16UC3, out16.p);
  const size_t px = size_t(kW) * kH;
  const KeliRect roi{0, 0, kW, kH};
  auto s16 = reinterpret_cast<const Kel16u*>(raw16.p);
  auto d16 = reinterpret_cast<Kel16u*>(out16.p);
  for (int threads : threadCounts()) {
    const std::string t = threads == 1 ? "" : "@2t";
    auto withThreads = [threads](std::function<void()> f) {
      return [threads, f] {
        const int before = kelGetNumThreads();
        kelSetNumThreads(threads);
        f();
        kelSetNumThreads(before);
      };
    };
    const std::string b8 = "CFAToRGB_8u" + t, b16 = "CFAToRGB_16u" + t;
    add(b8, "kel", 4 * px, withThreads([=] { keliCFAToRGB_8u_C1C3R(raw8.p, roi, kRoi, raw8.step, out8.p, out8.step, kelBayerRGGB); }));
    add(b8, "opencv", 4 * px, [] { cv::cvtColor(mRaw8, mOut8, cv::COLOR_BayerBG2RGB); });
    add(b8 + "-vs-EA", "kel", 4 * px, withThreads([=] { keliCFAToRGB_8u_C1C3R(raw8.p, roi, kRoi, raw8.step, out8.p, out8.step, kelBayerRGGB); }));
    add(b8 + "-vs-EA", "opencv", 4 * px, [] { cv::cvtColor(mRaw8, mOut8, cv::COLOR_BayerBG2RGB_EA); });
    addMemcpy(b8, px, 3 * px);
    add(b16, "kel", 8 * px, withThreads([=] { keliCFAToRGB_16u_C1C3R(s16, roi, kRoi, raw16.step, d16, out16.step, kelBayerRGGB); }));
    add(b16, "opencv", 8 * px, [] { cv::cvtColor(mRaw16, mOut16, cv::COLOR_BayerBG2RGB); });
    add(b16 + "-vs-EA", "kel", 8 * px, withThreads([=] { keliCFAToRGB_16u_C1C3R(s16, roi, kRoi, raw16.step, d16, out16.step, kelBayerRGGB); }));
    add(b16 + "-vs-EA", "opencv", 8 * px, [] { cv::cvtColor(mRaw16, mOut16, cv::COLOR_BayerBG2RGB_EA); });
    addMemcpy(b16, 2 * px, 6 * px);

    const std::string a8 = "DemosaicAHD_8u" + t, a16 = "DemosaicAHD_16u" + t;
    add(a8, "kel", 4 * px, withThreads([=] {
          keliDemosaicAHD_8u_C1C3R(raw8.p, roi, kRoi, raw8.step, out8.p, out8.step, kelBayerRGGB, tmp8.data(), KELCC_AHD_TMP_STEP(kW, 1));
        }));
    // No open peer does AHD on 8 bits; OpenCV's VNG (a different, cheaper
    // interpolation) is shown beside it as another method.
    add(a8 + "-vs-VNG", "kel", 4 * px, withThreads([=] {
          keliDemosaicAHD_8u_C1C3R(raw8.p, roi, kRoi, raw8.step, out8.p, out8.step, kelBayerRGGB, tmp8.data(), KELCC_AHD_TMP_STEP(kW, 1));
        }));
    add(a8 + "-vs-VNG", "opencv", 4 * px, [] { cv::cvtColor(mRaw8, mOut8, cv::COLOR_BayerBG2RGB_VNG); });
    addMemcpy(a8, px, 3 * px);
    add(a16, "kel", 8 * px, withThreads([=] {
          keliDemosaicAHD_16u_C1C3R(s16, roi, kRoi, raw16.step, d16, out16.step, kelBayerRGGB,
                                    reinterpret_cast<Kel16u*>(tmp16.data()), KELCC_AHD_TMP_STEP(kW, 2));
        }));
    // The peer doing the same work at 16 bits is LibRaw's AHD (peer_libraw.cpp);
    // OpenCV's edge-aware bilinear is shown beside it as another method.
    add(a16 + "-vs-EA", "kel", 8 * px, withThreads([=] {
          keliDemosaicAHD_16u_C1C3R(s16, roi, kRoi, raw16.step, d16, out16.step, kelBayerRGGB,
                                    reinterpret_cast<Kel16u*>(tmp16.data()), KELCC_AHD_TMP_STEP(kW, 2));
        }));
    add(a16 + "-vs-EA", "opencv", 8 * px, [] { cv::cvtColor(mRaw16, mOut16, cv::COLOR_BayerBG2RGB_EA); });
    addMemcpy(a16, 2 * px, 6 * px);
  }
}
KB_REGISTER(registerDemosaic);

}  // namespace
