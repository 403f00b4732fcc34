// 16-bit packed pixels: RGB565 round trips, packed sources through
// subsampled YCbCr and YUV and back, and the 565 word layouts as raw formats.
#include <algorithm>

#include "kelcc_tool.h"

namespace {
using tool::Image;

// The picture with its first and third samples exchanged (RGB <-> BGR).
std::vector<Kel8u> swapped(const Image& in) {
  std::vector<Kel8u> v(in.rgb);
  for (size_t i = 0; i + 2 < v.size(); i += 3) std::swap(v[i], v[i + 2]);
  return v;
}

KelStatus rgb565RoundTrip(const Image& in, Image& out) {
  std::vector<Kel16u> w(static_cast<size_t>(in.w) * in.h);
  if (KelStatus st = keliRGBToRGB565_8u16u_C3R(in.rgb.data(), in.step(), w.data(), 2 * in.w, in.size())) return st;
  return keliRGB565ToRGB_16u8u_C3R(w.data(), 2 * in.w, out.rgb.data(), out.step(), in.size());
}

// BGR565 words (blue in the low bits) of the picture.
std::vector<Kel16u> bgr565(const Image& in, KelStatus& st) {
  const std::vector<Kel8u> bgr = swapped(in);
  std::vector<Kel16u> w(static_cast<size_t>(in.w) * in.h);
  st = keliBGRToBGR565_8u16u_C3R(bgr.data(), in.step(), w.data(), 2 * in.w, in.size());
  return w;
}
// BGR555 words: the library reads them but does not pack them, so the tool does.
std::vector<Kel16u> bgr555(const Image& in) {
  std::vector<Kel16u> w(static_cast<size_t>(in.w) * in.h);
  for (size_t i = 0; i < w.size(); ++i) {
    const Kel8u* p = &in.rgb[3 * i];
    w[i] = static_cast<Kel16u>(((p[0] >> 3) << 10) | ((p[1] >> 3) << 5) | (p[2] >> 3));
  }
  return w;
}

struct Planes {
  std::vector<Kel8u> buf;
  Kel8u* p[3];
  int step[3];
  Planes(int w, int h, int cw, int ch) : buf(static_cast<size_t>(w) * h + 2 * static_cast<size_t>(cw) * ch) {
    p[0] = buf.data(), p[1] = p[0] + static_cast<size_t>(w) * h, p[2] = p[1] + static_cast<size_t>(cw) * ch;
    step[0] = w, step[1] = step[2] = cw;
  }
  const Kel8u* const* in() const { return p; }
};

KelStatus bgr565YCbCr420(const Image& in, Image& out) {
  KelStatus st;
  const std::vector<Kel16u> w = bgr565(in, st);
  if (st < 0) return st;
  Planes pl(in.w, in.h, in.w >> 1, in.h >> 1);
  if ((st = keliBGR565ToYCbCr420_16u8u_C3P3R(w.data(), 2 * in.w, pl.p, pl.step, in.size())) < 0) return st;
  return keliYCbCr420ToRGB_8u_P3C3R(pl.in(), pl.step, out.rgb.data(), out.step(), in.size());
}

KelStatus bgr555YCbCr422(const Image& in, Image& out) {
  const std::vector<Kel16u> w = bgr555(in);
  std::vector<Kel8u> c2(static_cast<size_t>(2) * in.w * in.h);
  if (KelStatus st = keliBGR555ToYCbCr422_16u8u_C3C2R(w.data(), 2 * in.w, c2.data(), 2 * in.w, in.size()); st < 0)
    return st;
  return keliYCbCr422ToRGB_8u_C2C3R(c2.data(), 2 * in.w, out.rgb.data(), out.step(), in.size());
}

KelStatus rgb565Yuv420(const Image& in, Image& out) {
  std::vector<Kel16u> w(static_cast<size_t>(in.w) * in.h);
  if (KelStatus st = keliRGBToRGB565_8u16u_C3R(in.rgb.data(), in.step(), w.data(), 2 * in.w, in.size())) return st;
  Planes pl(in.w, in.h, in.w >> 1, in.h >> 1);
  if (KelStatus st = keliRGB565ToYUV420_16u8u_C3P3R(w.data(), 2 * in.w, pl.p, pl.step, in.size()); st < 0) return st;
  return keliYUV420ToRGB_8u_P3C3R(pl.in(), pl.step, out.rgb.data(), out.step(), in.size());
}

// Raw 565 words, little-endian: "rgb565" has red in bits 4-0, "bgr565" blue
// (the common display layout).
size_t words(int w, int h) { return static_cast<size_t>(2) * w * h; }
KelStatus rgb565ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  return keliRGB565ToRGB_16u8u_C3R(reinterpret_cast<const Kel16u*>(raw), 2 * w, out.rgb.data(), out.step(), out.size());
}
KelStatus rgbToRgb565(const Image& in, std::vector<uint8_t>& raw) {
  raw.resize(words(in.w, in.h));
  return keliRGBToRGB565_8u16u_C3R(in.rgb.data(), in.step(), reinterpret_cast<Kel16u*>(raw.data()), 2 * in.w,
                                   in.size());
}
KelStatus bgr565ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  Image bgr(w, h);
  const KelStatus st =
      keliBGR565ToBGR_16u8u_C3R(reinterpret_cast<const Kel16u*>(raw), 2 * w, bgr.rgb.data(), bgr.step(), bgr.size());
  out = Image(w, h);
  out.rgb = swapped(bgr);
  return st;
}
KelStatus rgbToBgr565(const Image& in, std::vector<uint8_t>& raw) {
  KelStatus st;
  const std::vector<Kel16u> w = bgr565(in, st);
  raw.assign(reinterpret_cast<const uint8_t*>(w.data()), reinterpret_cast<const uint8_t*>(w.data() + w.size()));
  return st;
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-rgb565-rgb", "RGB -> RGB565 -> RGB (low bits cut off)", rgb565RoundTrip});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-bgr565-ycbcr420-rgb", "RGB -> BGR565 -> YCbCr 4:2:0 -> RGB", bgr565YCbCr420});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-bgr555-ycbcr422-rgb", "RGB -> BGR555 -> YCbCr 4:2:2 stream -> RGB",
                                   bgr555YCbCr422});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-rgb565-yuv420-rgb", "RGB -> RGB565 -> YUV 4:2:0 -> RGB", rgb565Yuv420});
KELCC_TOOL_REGISTER(tool::RawFormat{"rgb565", "16-bit words, red in bits 4-0", words, rgb565ToRgb, rgbToRgb565});
KELCC_TOOL_REGISTER(tool::RawFormat{"bgr565", "16-bit words, blue in bits 4-0", words, bgr565ToRgb,
                                    rgbToBgr565});
}  // namespace
