// Round trips through YCoCg: the reversible lifting form restores a picture
// exactly (max error 0), the plain form within one level; raw formats for
// the planes of both 8-bit forms. The tool's pictures are R, G, B; the forms
// with 16-bit planes take B, G, R.
#include "kelcc_tool.h"

namespace {
using tool::Image;

using Fwd16 = KelStatus (*)(const Kel8u*, int, Kel16s* [3], int, KeliSize);
using Inv16 = KelStatus (*)(const Kel16s* const[3], int, Kel8u*, int, KeliSize);

// Three 16-bit planes of w * h samples, one after another.
struct Planes16 {
  std::vector<Kel16s> buf;
  Kel16s* p[3];
  Planes16(int w, int h) : buf(3 * static_cast<size_t>(w) * h) {
    for (int k = 0; k < 3; ++k) p[k] = buf.data() + static_cast<size_t>(k) * w * h;
  }
};

// BGR -> YCoCg (16-bit planes) -> BGR.
template <Fwd16 F, Inv16 I>
KelStatus roundTrip16(const Image& in, Image& out) {
  const std::vector<Kel8u> bgr = tool::swappedRB(in.rgb);
  std::vector<Kel8u> back(bgr.size());
  Planes16 pl(in.w, in.h);
  const int planeStep = 2 * in.w;
  if (KelStatus st = F(bgr.data(), in.step(), pl.p, planeStep, in.size())) return st;
  if (KelStatus st = I(pl.p, planeStep, back.data(), in.step(), in.size())) return st;
  out.rgb = tool::swappedRB(back);
  return kelStatusOk;
}

// RGB -> 8-bit planes with chroma on 128 -> RGB.
KelStatus roundTripPair(const Image& in, Image& out) {
  std::vector<Kel8u> buf(3 * static_cast<size_t>(in.w) * in.h);
  Kel8u* p[3] = {buf.data(), buf.data() + buf.size() / 3, buf.data() + 2 * buf.size() / 3};
  if (KelStatus st = keliRGBToYCoCg_8u_C3P3R(in.rgb.data(), in.step(), p, in.w, in.size())) return st;
  return keliYCoCgToRGB_8u_P3C3R(p, in.w, out.rgb.data(), out.step(), in.size());
}

// Raw formats: "ycocg" is three 8-bit planes Y, Co + 128, Cg + 128; "ycocgr16"
// three planes of little-endian signed 16-bit YCoCg-R.
size_t bytesPair(int w, int h) { return 3 * static_cast<size_t>(w) * h; }
KelStatus pairToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  const size_t n = static_cast<size_t>(w) * h;
  const Kel8u* p[3] = {raw, raw + n, raw + 2 * n};
  return keliYCoCgToRGB_8u_P3C3R(p, w, out.rgb.data(), out.step(), out.size());
}
KelStatus pairFromRgb(const Image& in, std::vector<uint8_t>& raw) {
  const size_t n = static_cast<size_t>(in.w) * in.h;
  raw.resize(3 * n);
  Kel8u* p[3] = {raw.data(), raw.data() + n, raw.data() + 2 * n};
  return keliRGBToYCoCg_8u_C3P3R(in.rgb.data(), in.step(), p, in.w, in.size());
}
size_t bytesRev16(int w, int h) { return 6 * static_cast<size_t>(w) * h; }
KelStatus rev16ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  Planes16 pl(w, h);
  __builtin_memcpy(pl.buf.data(), raw, bytesRev16(w, h));
  std::vector<Kel8u> bgr(out.rgb.size());
  if (KelStatus st = keliYCoCgToBGR_Rev_16s8u_P3C3R(pl.p, 2 * w, bgr.data(), out.step(), out.size())) return st;
  out.rgb = tool::swappedRB(bgr);
  return kelStatusOk;
}
KelStatus rev16FromRgb(const Image& in, std::vector<uint8_t>& raw) {
  Planes16 pl(in.w, in.h);
  const std::vector<Kel8u> bgr = tool::swappedRB(in.rgb);
  if (KelStatus st = keliBGRToYCoCg_Rev_8u16s_C3P3R(bgr.data(), in.step(), pl.p, 2 * in.w, in.size())) return st;
  raw.resize(bytesRev16(in.w, in.h));
  __builtin_memcpy(raw.data(), pl.buf.data(), raw.size());
  return kelStatusOk;
}

KELCC_TOOL_REGISTER(tool::DemoStep{"bgr-ycocgr-bgr", "BGR -> YCoCg-R (lifting, 16-bit planes) -> BGR, exact",
                                   roundTrip16<keliBGRToYCoCg_Rev_8u16s_C3P3R, keliYCoCgToBGR_Rev_16s8u_P3C3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{"bgr-ycocg-bgr", "BGR -> YCoCg (plain, 16-bit planes) -> BGR",
                                   roundTrip16<keliBGRToYCoCg_8u16s_C3P3R, keliYCoCgToBGR_16s8u_P3C3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycocg-rgb", "RGB -> YCoCg (8-bit planes, chroma on 128) -> RGB",
                                   roundTripPair});
KELCC_TOOL_REGISTER(tool::RawFormat{"ycocg", "planar Y, Co + 128, Cg + 128 (8-bit)", bytesPair, pairToRgb,
                                    pairFromRgb});
KELCC_TOOL_REGISTER(tool::RawFormat{"ycocgr16", "planar YCoCg-R, signed 16-bit little-endian, exact", bytesRev16,
                                    rev16ToRgb, rev16FromRgb});
}  // namespace
