// 4:2:2, 4:2:0 and 4:1:1 layout conversions beside libyuv's byte moves
// between the same layouts and memcpy of the same bytes. libyuv's 4:2:2 to
// 4:2:0 paths average the two chroma rows where ours keep the upper one; the
// traffic is the same.
#include <libyuv.h>

#include <memory>

#include "common.h"

namespace {

void registerLayouts() {
  using namespace kb;
  const size_t px = size_t(kW) * kH;
  // Luma, 4:2:2 / 4:2:0 / 4:1:1 chroma planes, packed 4:2:2 and P2 chroma.
  static Plane y0(kW, kH, 1), y1(kW, kH, 2);
  static Plane u422(half(kW), kH, 3), v422(half(kW), kH, 4), u422b(half(kW), kH, 5), v422b(half(kW), kH, 6);
  static Plane u420(half(kW), half(kH), 7), v420(half(kW), half(kH), 8), u420b(half(kW), half(kH), 9), v420b(half(kW), half(kH), 10);
  static Plane u411(quarter(kW), kH, 11), v411(quarter(kW), kH, 12), u411b(quarter(kW), kH, 13), v411b(quarter(kW), kH, 14);
  static Plane c2(2 * kW, kH, 15), c2b(2 * kW, kH, 16);
  static Plane nv420(kW, half(kH), 17), nv420b(kW, half(kH), 18), nv411(half(kW), kH, 19), nv411b(half(kW), kH, 20);

  static const Kel8u* s422[3] = {y0.p, u422.p, v422.p};
  static const int st422[3] = {y0.step, u422.step, v422.step};
  static Kel8u* d422[3] = {y1.p, u422b.p, v422b.p};
  static const Kel8u* s420[3] = {y0.p, u420.p, v420.p};
  static const int st420[3] = {y0.step, u420.step, v420.step};
  static Kel8u* d420[3] = {y1.p, u420b.p, v420b.p};
  static const Kel8u* s411[3] = {y0.p, u411.p, v411.p};
  static const int st411[3] = {y0.step, u411.step, v411.step};
  static Kel8u* d411[3] = {y1.p, u411b.p, v411b.p};

  const size_t b422 = 2 * px, b420 = px + px / 2, b411 = 3 * px / 2;

  // ---- packed 4:2:2 <-> planes
  add("YUY2ToI422", "kel", 2 * b422, [] { keliYCbCr422_8u_C2P3R(c2.p, c2.step, d422, st422, kRoi); });
  add("YUY2ToI422", "libyuv", 2 * b422, [] {
    libyuv::YUY2ToI422(c2.p, c2.step, y1.p, y1.step, u422b.p, u422b.step, v422b.p, v422b.step, kW, kH);
  });
  addMemcpy("YUY2ToI422", b422, b422);

  add("UYVYToI422", "kel", 2 * b422, [] { keliCbYCr422ToYCbCr422_8u_C2P3R(c2.p, c2.step, d422, st422, kRoi); });
  add("UYVYToI422", "libyuv", 2 * b422, [] {
    libyuv::UYVYToI422(c2.p, c2.step, y1.p, y1.step, u422b.p, u422b.step, v422b.p, v422b.step, kW, kH);
  });
  addMemcpy("UYVYToI422", b422, b422);

  add("I422ToYUY2", "kel", 2 * b422, [] { keliYCbCr422_8u_P3C2R(s422, st422, c2b.p, c2b.step, kRoi); });
  add("I422ToYUY2", "libyuv", 2 * b422, [] {
    libyuv::I422ToYUY2(y0.p, y0.step, u422.p, u422.step, v422.p, v422.step, c2b.p, c2b.step, kW, kH);
  });
  addMemcpy("I422ToYUY2", b422, b422);

  add("I422ToYVYU", "kel", 2 * b422, [] { keliYCbCr422ToYCrCb422_8u_P3C2R(s422, st422, c2b.p, c2b.step, kRoi); });
  add("I422ToYVYU", "libyuv", 2 * b422, [] {  // the same pack with the chroma planes exchanged
    libyuv::I422ToYUY2(y0.p, y0.step, v422.p, v422.step, u422.p, u422.step, c2b.p, c2b.step, kW, kH);
  });
  addMemcpy("I422ToYVYU", b422, b422);

  add("YUY2ToYVYU", "kel", 2 * b422, [] { keliYCbCr422ToYCrCb422_8u_C2R(c2.p, c2.step, c2b.p, c2b.step, kRoi); });
  addMemcpy("YUY2ToYVYU", b422, b422);

  // ---- 4:2:0 and 4:1:1 semi-planar <-> planes
  add("NV12ToI420", "kel", 2 * b420, [] { keliYCbCr420_8u_P2P3R(y0.p, y0.step, nv420.p, nv420.step, d420, st420, kRoi); });
  add("NV12ToI420", "libyuv", 2 * b420, [] {
    libyuv::NV12ToI420(y0.p, y0.step, nv420.p, nv420.step, y1.p, y1.step, u420b.p, u420b.step, v420b.p, v420b.step,
                       kW, kH);
  });
  addMemcpy("NV12ToI420", b420, b420);

  add("I420ToNV12", "kel", 2 * b420, [] { keliYCbCr420_8u_P3P2R(s420, st420, y1.p, y1.step, nv420b.p, nv420b.step, kRoi); });
  add("I420ToNV12", "libyuv", 2 * b420, [] {
    libyuv::I420ToNV12(y0.p, y0.step, u420.p, u420.step, v420.p, v420.step, y1.p, y1.step, nv420b.p, nv420b.step, kW,
                       kH);
  });
  addMemcpy("I420ToNV12", b420, b420);

  add("I411ToNV11", "kel", 2 * b411, [] { keliYCbCr411_8u_P3P2R(s411, st411, y1.p, y1.step, nv411b.p, nv411b.step, kRoi); });
  addMemcpy("I411ToNV11", b411, b411);

  // ---- 4:2:2 -> 4:2:0 (even rows)
  add("YUY2ToI420", "kel", b422 + b420, [] { keliYCbCr422ToYCbCr420_8u_C2P3R(c2.p, c2.step, d420, st420, kRoi); });
  add("YUY2ToI420", "libyuv", b422 + b420, [] {
    libyuv::YUY2ToI420(c2.p, c2.step, y1.p, y1.step, u420b.p, u420b.step, v420b.p, v420b.step, kW, kH);
  });
  addMemcpy("YUY2ToI420", b422, b420);

  add("UYVYToI420", "kel", b422 + b420, [] { keliCbYCr422ToYCbCr420_8u_C2P3R(c2.p, c2.step, d420, st420, kRoi); });
  add("UYVYToI420", "libyuv", b422 + b420, [] {
    libyuv::UYVYToI420(c2.p, c2.step, y1.p, y1.step, u420b.p, u420b.step, v420b.p, v420b.step, kW, kH);
  });
  addMemcpy("UYVYToI420", b422, b420);

  add("I422ToI420", "kel", b422 + b420, [] { keliYCbCr422ToYCbCr420_8u_P3R(s422, st422, d420, st420, kRoi); });
  add("I422ToI420", "libyuv", b422 + b420, [] {
    libyuv::I422ToI420(y0.p, y0.step, u422.p, u422.step, v422.p, v422.step, y1.p, y1.step, u420b.p, u420b.step,
                       v420b.p, v420b.step, kW, kH);
  });
  addMemcpy("I422ToI420", b422, b420);

  // ---- 4:2:0 -> 4:2:2 (row repeat)
  add("I420ToI422", "kel", b420 + b422, [] { keliYCbCr420ToYCbCr422_8u_P3R(s420, st420, d422, st422, kRoi); });
  add("I420ToI422", "libyuv", b420 + b422, [] {
    libyuv::I420ToI422(y0.p, y0.step, u420.p, u420.step, v420.p, v420.step, y1.p, y1.step, u422b.p, u422b.step,
                       v422b.p, v422b.step, kW, kH);
  });
  addMemcpy("I420ToI422", b420, b422);

  // ---- 4:2:2 <-> 4:1:1 and 4:1:1 <-> 4:2:0 (no peer does these)
  add("I422ToI411", "kel", b422 + b411, [] { keliYCbCr422ToYCbCr411_8u_P3R(s422, st422, d411, st411, kRoi); });
  addMemcpy("I422ToI411", b422, b411);
  add("YUY2ToI411", "kel", b422 + b411, [] { keliYCbCr422ToYCbCr411_8u_C2P3R(c2.p, c2.step, d411, st411, kRoi); });
  addMemcpy("YUY2ToI411", b422, b411);
  add("I411ToI422", "kel", b411 + b422, [] { keliYCbCr411ToYCbCr422_8u_P3R(s411, st411, d422, st422, kRoi); });
  addMemcpy("I411ToI422", b411, b422);
  add("I411ToYUY2", "kel", b411 + b422, [] { keliYCbCr411ToYCbCr422_8u_P3C2R(s411, st411, c2b.p, c2b.step, kRoi); });
  addMemcpy("I411ToYUY2", b411, b422);
  add("NV11ToYUY2", "kel", b411 + b422, [] {
    keliYCbCr411ToYCbCr422_8u_P2C2R(y0.p, y0.step, nv411.p, nv411.step, c2b.p, c2b.step, kRoi);
  });
  addMemcpy("NV11ToYUY2", b411, b422);
  add("I411ToNV12", "kel", 2 * b420, [] {
    keliYCbCr411ToYCbCr420_8u_P3P2R(s411, st411, y1.p, y1.step, nv420b.p, nv420b.step, kRoi);
  });
  addMemcpy("I411ToNV12", b411, b420);
  add("NV12ToI411", "kel", 2 * b420, [] { keliYCbCr420ToYCbCr411_8u_P2P3R(y0.p, y0.step, nv420.p, nv420.step, d411, st411, kRoi); });
  addMemcpy("NV12ToI411", b420, b411);
}
KB_REGISTER(registerLayouts);

}  // namespace
