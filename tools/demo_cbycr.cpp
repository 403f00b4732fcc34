// Round trips through packed CbYCr 4:2:2 (BT.601, filtered chroma) and the
// BT.709 sets: studio-swing 4:2:0 planes and full-swing CbYCr 4:2:2.
#include <utility>

#include "kelcc_tool.h"

namespace {
using tool::Image;

// The BT.709 members take BGR pixels.
std::vector<Kel8u> swapped(const std::vector<Kel8u>& v) {
  std::vector<Kel8u> s = v;
  for (size_t i = 0; i + 2 < s.size(); i += 3) std::swap(s[i], s[i + 2]);
  return s;
}
// Four-byte BGR pixels with an opaque fourth byte, and back.
std::vector<Kel8u> toBgra(const Image& in) {
  std::vector<Kel8u> s(static_cast<size_t>(4) * in.w * in.h);
  for (size_t p = 0; p < s.size() / 4; ++p)
    s[4 * p] = in.rgb[3 * p + 2], s[4 * p + 1] = in.rgb[3 * p + 1], s[4 * p + 2] = in.rgb[3 * p], s[4 * p + 3] = 255;
  return s;
}
void fromBgra(const std::vector<Kel8u>& s, Image& out) {
  for (size_t p = 0; p < s.size() / 4; ++p)
    out.rgb[3 * p] = s[4 * p + 2], out.rgb[3 * p + 1] = s[4 * p + 1], out.rgb[3 * p + 2] = s[4 * p];
}

// ---- CbYCr 4:2:2, BT.601 ----------------------------------------------------
size_t c2Bytes(int w, int h) { return static_cast<size_t>(2) * w * h; }
KelStatus cbycrToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  return keliCbYCr422ToRGB_8u_C2C3R(raw, 2 * w, out.rgb.data(), out.step(), out.size());
}
KelStatus rgbToCbycr(const Image& in, std::vector<uint8_t>& raw) {
  raw.resize(c2Bytes(in.w, in.h));
  return keliRGBToCbYCr422_8u_C3C2R(in.rgb.data(), in.step(), raw.data(), 2 * in.w, in.size());
}
KelStatus cbycrRoundTrip(const Image& in, Image& out) {
  std::vector<uint8_t> raw;
  if (KelStatus st = rgbToCbycr(in, raw)) return st;
  return keliCbYCr422ToRGB_8u_C2C3R(raw.data(), 2 * in.w, out.rgb.data(), out.step(), in.size());
}
// The gamma member brightens: the way back does not undo the curve.
KelStatus cbycrGamma(const Image& in, Image& out) {
  std::vector<uint8_t> raw(c2Bytes(in.w, in.h));
  if (KelStatus st = keliRGBToCbYCr422Gamma_8u_C3C2R(in.rgb.data(), in.step(), raw.data(), 2 * in.w, in.size()))
    return st;
  return keliCbYCr422ToRGB_8u_C2C3R(raw.data(), 2 * in.w, out.rgb.data(), out.step(), in.size());
}

// ---- CbYCr 4:2:2, BT.709 full swing --------------------------------------------
KelStatus cbycr709ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  const KelStatus st = keliCbYCr422ToBGR_709HDTV_8u_C2C3R(raw, 2 * w, out.rgb.data(), out.step(), out.size());
  out.rgb = swapped(out.rgb);
  return st;
}
KelStatus rgbToCbycr709(const Image& in, std::vector<uint8_t>& raw) {
  raw.resize(c2Bytes(in.w, in.h));
  const std::vector<Kel8u> bgr = swapped(in.rgb);
  return keliBGRToCbYCr422_709HDTV_8u_C3C2R(bgr.data(), in.step(), raw.data(), 2 * in.w, in.size());
}
KelStatus cbycr709RoundTrip(const Image& in, Image& out) {
  const std::vector<Kel8u> bgra = toBgra(in);
  std::vector<Kel8u> raw(c2Bytes(in.w, in.h)), back(bgra.size());
  if (KelStatus st = keliBGRToCbYCr422_709HDTV_8u_AC4C2R(bgra.data(), 4 * in.w, raw.data(), 2 * in.w, in.size()))
    return st;
  const KelStatus st =
      keliCbYCr422ToBGR_709HDTV_8u_C2C4R(raw.data(), 2 * in.w, back.data(), 4 * in.w, in.size(), 255);
  fromBgra(back, out);
  return st;
}

// ---- 4:2:0 planes, BT.709 studio swing -----------------------------------------
// Y, Cb, Cr planes of w by h and (w / 2) by (h / 2); an odd last column and
// row carry no chroma and are not converted.
size_t i420Bytes(int w, int h) { return static_cast<size_t>(w) * h + 2 * static_cast<size_t>(w / 2) * (h / 2); }
KelStatus i420709ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  const Kel8u* p[3] = {raw, raw + w * h, raw + w * h + (w / 2) * (h / 2)};
  const int steps[3] = {w, w / 2, w / 2};
  const KelStatus st = keliYCbCr420ToBGR_709CSC_8u_P3C3R(p, steps, out.rgb.data(), out.step(), out.size());
  out.rgb = swapped(out.rgb);
  return st;
}
KelStatus rgbToI420709(const Image& in, std::vector<uint8_t>& raw) {
  raw.assign(i420Bytes(in.w, in.h), 128);
  const int w = in.w, h = in.h;
  Kel8u* p[3] = {raw.data(), raw.data() + w * h, raw.data() + w * h + (w / 2) * (h / 2)};
  const int steps[3] = {w, w / 2, w / 2};
  const std::vector<Kel8u> bgr = swapped(in.rgb);
  return keliBGRToYCbCr420_709CSC_8u_C3P3R(bgr.data(), in.step(), p, steps, in.size());
}
KelStatus i420709RoundTrip(const Image& in, Image& out) {
  std::vector<uint8_t> raw;
  if (KelStatus st = rgbToI420709(in, raw); st < 0) return st;
  Image back;
  const KelStatus st = i420709ToRgb(raw.data(), in.w, in.h, back);
  out.rgb = back.rgb;
  return st;
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-cbycr-rgb", "RGB -> CbYCr 4:2:2 (filtered chroma) -> RGB", cbycrRoundTrip});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-cbycrgamma-rgb", "RGB -> gamma -> CbYCr 4:2:2 -> RGB (gamma kept)", cbycrGamma,
                                   false});
KELCC_TOOL_REGISTER(tool::DemoStep{"bgra-cbycr709full-bgra", "BGRA -> BT.709 full-swing CbYCr 4:2:2 -> BGRA",
                                   cbycr709RoundTrip});
KELCC_TOOL_REGISTER(tool::DemoStep{"bgr-i420bt709-bgr", "BGR -> BT.709 studio-swing 4:2:0 -> BGR", i420709RoundTrip});
KELCC_TOOL_REGISTER(tool::RawFormat{"cbycr", "packed Cb Y0 Cr Y1 (BT.601 studio swing)", c2Bytes, cbycrToRgb,
                                    rgbToCbycr});
KELCC_TOOL_REGISTER(tool::RawFormat{"cbycr709", "packed Cb Y0 Cr Y1 (BT.709 full swing)", c2Bytes, cbycr709ToRgb,
                                    rgbToCbycr709});
KELCC_TOOL_REGISTER(tool::RawFormat{"i420bt709", "Y, Cb, Cr planes, 4:2:0 (BT.709 studio swing)", i420Bytes,
                                    i420709ToRgb, rgbToI420709});
}  // namespace
