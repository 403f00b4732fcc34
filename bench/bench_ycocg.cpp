// YCoCg lifting transforms beside memcpy of the same bytes. Neither OpenCV
// nor libyuv has a YCoCg conversion, so memcpy is the only line to hold
// these memory-bound rows to. The family runs on the caller's thread.
#include <memory>  // common.h uses std::make_shared

#include "common.h"

namespace {

void registerYcocg() {
  using namespace kb;
  const size_t px = size_t(kW) * kH;
  static Plane bgr(3 * kW, kH, 1), bgra(4 * kW, kH, 2), back(4 * kW, kH, 3);
  static Plane s16(8 * kW, kH, 4), d16(8 * kW, kH, 5);
  static Plane p16[3] = {Plane(2 * kW, kH, 6), Plane(2 * kW, kH, 7), Plane(2 * kW, kH, 8)};
  static Plane p32[3] = {Plane(4 * kW, kH, 9), Plane(4 * kW, kH, 10), Plane(4 * kW, kH, 11)};
  static Plane p8[3] = {Plane(kW, kH, 12), Plane(kW, kH, 13), Plane(kW, kH, 14)};
  static Kel16s* d16p[3] = {reinterpret_cast<Kel16s*>(p16[0].p), reinterpret_cast<Kel16s*>(p16[1].p),
                            reinterpret_cast<Kel16s*>(p16[2].p)};
  static Kel32s* d32p[3] = {reinterpret_cast<Kel32s*>(p32[0].p), reinterpret_cast<Kel32s*>(p32[1].p),
                            reinterpret_cast<Kel32s*>(p32[2].p)};
  static Kel8u* d8p[3] = {p8[0].p, p8[1].p, p8[2].p};
  const int step16 = p16[0].step, step32 = p32[0].step;
  auto s16p = [] { return reinterpret_cast<const Kel16s*>(s16.p); };
  auto o16p = [] { return reinterpret_cast<Kel16s*>(d16.p); };

  // 8-bit pixels and 16-bit planes.
  add("BGRToYCoCg_8u16s_C3P3R", "kel", 9 * px,
      [] { keliBGRToYCoCg_8u16s_C3P3R(bgr.p, bgr.step, d16p, p16[0].step, kRoi); });
  addMemcpy("BGRToYCoCg_8u16s_C3P3R", 3 * px, 6 * px);
  add("BGRToYCoCg_Rev_8u16s_C3P3R", "kel", 9 * px,
      [] { keliBGRToYCoCg_Rev_8u16s_C3P3R(bgr.p, bgr.step, d16p, p16[0].step, kRoi); });
  addMemcpy("BGRToYCoCg_Rev_8u16s_C3P3R", 3 * px, 6 * px);
  add("BGRToYCoCg_Rev_8u16s_C4P3R", "kel", 10 * px,
      [] { keliBGRToYCoCg_Rev_8u16s_C4P3R(bgra.p, bgra.step, d16p, p16[0].step, kRoi); });
  addMemcpy("BGRToYCoCg_Rev_8u16s_C4P3R", 4 * px, 6 * px);
  add("YCoCgToBGR_16s8u_P3C3R", "kel", 9 * px,
      [] { keliYCoCgToBGR_16s8u_P3C3R(d16p, p16[0].step, back.p, 3 * kW, kRoi); });
  addMemcpy("YCoCgToBGR_16s8u_P3C3R", 6 * px, 3 * px);
  add("YCoCgToBGR_Rev_16s8u_P3C3R", "kel", 9 * px,
      [] { keliYCoCgToBGR_Rev_16s8u_P3C3R(d16p, p16[0].step, back.p, 3 * kW, kRoi); });
  addMemcpy("YCoCgToBGR_Rev_16s8u_P3C3R", 6 * px, 3 * px);
  add("YCoCgToBGR_Rev_16s8u_P3C4R", "kel", 10 * px,
      [] { keliYCoCgToBGR_Rev_16s8u_P3C4R(d16p, p16[0].step, back.p, back.step, kRoi, 255); });
  addMemcpy("YCoCgToBGR_Rev_16s8u_P3C4R", 6 * px, 4 * px);

  // The RGB pair: bytes on both sides.
  add("RGBToYCoCg_8u_C3P3R", "kel", 6 * px, [] { keliRGBToYCoCg_8u_C3P3R(bgr.p, bgr.step, d8p, p8[0].step, kRoi); });
  addMemcpy("RGBToYCoCg_8u_C3P3R", 3 * px, 3 * px);
  add("YCoCgToRGB_8u_P3C3R", "kel", 6 * px, [] { keliYCoCgToRGB_8u_P3C3R(d8p, p8[0].step, back.p, 3 * kW, kRoi); });
  addMemcpy("YCoCgToRGB_8u_P3C3R", 3 * px, 3 * px);

  // Signed 16-bit pixels and 16- or 32-bit planes.
  add("SBGRToYCoCg_16s_C3P3R", "kel", 12 * px, [=] { keliSBGRToYCoCg_16s_C3P3R(s16p(), 6 * kW, d16p, step16, kRoi); });
  addMemcpy("SBGRToYCoCg_16s_C3P3R", 6 * px, 6 * px);
  add("SBGRToYCoCg_Rev_16s_C3P3R", "kel", 12 * px,
      [=] { keliSBGRToYCoCg_Rev_16s_C3P3R(s16p(), 6 * kW, d16p, step16, kRoi); });
  addMemcpy("SBGRToYCoCg_Rev_16s_C3P3R", 6 * px, 6 * px);
  add("YCoCgToSBGR_Rev_16s_P3C3R", "kel", 12 * px,
      [=] { keliYCoCgToSBGR_Rev_16s_P3C3R(d16p, step16, o16p(), 6 * kW, kRoi); });
  addMemcpy("YCoCgToSBGR_Rev_16s_P3C3R", 6 * px, 6 * px);
  add("YCoCgToSBGR_Rev_16s_P3C4R", "kel", 14 * px,
      [=] { keliYCoCgToSBGR_Rev_16s_P3C4R(d16p, step16, o16p(), 8 * kW, kRoi, 0); });
  addMemcpy("YCoCgToSBGR_Rev_16s_P3C4R", 6 * px, 8 * px);
  add("SBGRToYCoCg_Rev_16s32s_C3P3R", "kel", 18 * px,
      [=] { keliSBGRToYCoCg_Rev_16s32s_C3P3R(s16p(), 6 * kW, d32p, step32, kRoi); });
  addMemcpy("SBGRToYCoCg_Rev_16s32s_C3P3R", 6 * px, 12 * px);
  add("YCoCgToSBGR_Rev_32s16s_P3C3R", "kel", 18 * px,
      [=] { keliYCoCgToSBGR_Rev_32s16s_P3C3R(d32p, step32, o16p(), 6 * kW, kRoi); });
  addMemcpy("YCoCgToSBGR_Rev_32s16s_P3C3R", 12 * px, 6 * px);
}
KB_REGISTER(registerYcocg);

}  // namespace
