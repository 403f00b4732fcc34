// Round trips through subsampled analogue-TV YUV and full-resolution
// studio-range YCbCr, and their raw layouts.
#include "kelcc_tool.h"

namespace {
using tool::Image;

// Tight planes of one image: a full plane and two chroma planes.
struct Planes {
  std::vector<Kel8u> buf;
  Kel8u* p[3];
  int step[3];
  Planes(int w, int h, int cw, int ch) : buf(static_cast<size_t>(w) * h + 2 * static_cast<size_t>(cw) * ch) {
    p[0] = buf.data(), p[1] = p[0] + static_cast<size_t>(w) * h, p[2] = p[1] + static_cast<size_t>(cw) * ch;
    step[0] = w, step[1] = step[2] = cw;
  }
  const Kel8u* const* src() const { return p; }
};

// Warnings (odd sizes of 4:2:0) keep the round trip going.
KelStatus both(KelStatus a, KelStatus b) { return a < 0 ? a : b < 0 ? b : (a ? a : b); }

KelStatus yuv420RoundTrip(const Image& in, Image& out) {
  Planes q(in.w, in.h, in.w / 2, in.h / 2);
  const KelStatus a = keliRGBToYUV420_8u_C3P3R(in.rgb.data(), in.step(), q.p, q.step, in.size());
  if (a < 0) return a;
  return both(a, keliYUV420ToRGB_8u_P3C3R(q.src(), q.step, out.rgb.data(), out.step(), in.size()));
}
KelStatus yuv422RoundTrip(const Image& in, Image& out) {
  Planes q(in.w, in.h, (in.w + 1) / 2, in.h);
  if (KelStatus st = keliRGBToYUV422_8u_C3P3R(in.rgb.data(), in.step(), q.p, q.step, in.size())) return st;
  return keliYUV422ToRGB_8u_P3C3R(q.src(), q.step, out.rgb.data(), out.step(), in.size());
}
KelStatus yuyvRoundTrip(const Image& in, Image& out) {
  std::vector<Kel8u> c2(static_cast<size_t>(2) * in.w * in.h);
  if (KelStatus st = keliRGBToYUV422_8u_C3C2R(in.rgb.data(), in.step(), c2.data(), 2 * in.w, in.size())) return st;
  return keliYUV422ToRGB_8u_C2C3R(c2.data(), 2 * in.w, out.rgb.data(), out.step(), in.size());
}
KelStatus ycbcrRoundTrip(const Image& in, Image& out) {
  std::vector<Kel8u> ycc(in.rgb.size());
  if (KelStatus st = keliRGBToYCbCr_8u_C3R(in.rgb.data(), in.step(), ycc.data(), in.step(), in.size())) return st;
  return keliYCbCrToRGB_8u_C3R(ycc.data(), in.step(), out.rgb.data(), out.step(), in.size());
}
KelStatus ycbcrPlanarRoundTrip(const Image& in, Image& out) {
  Planes q(in.w, in.h, in.w, in.h);
  if (KelStatus st = keliRGBToYCbCr_8u_C3P3R(in.rgb.data(), in.step(), q.p, in.w, in.size())) return st;
  return keliYCbCrToRGB_8u_P3C3R(q.src(), in.w, out.rgb.data(), out.step(), in.size());
}

// ---- raw layouts ----------------------------------------------------------
size_t yuv420Bytes(int w, int h) { return static_cast<size_t>(w) * h + 2 * static_cast<size_t>(w / 2) * (h / 2); }
KelStatus yuv420ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  const Kel8u* p[3] = {raw, raw + static_cast<size_t>(w) * h, raw + static_cast<size_t>(w) * h + (w / 2) * (h / 2)};
  const int steps[3] = {w, w / 2, w / 2};
  return keliYUV420ToRGB_8u_P3C3R(p, steps, out.rgb.data(), out.step(), out.size());
}
KelStatus rgbToYuv420(const Image& in, std::vector<uint8_t>& raw) {
  Planes q(in.w, in.h, in.w / 2, in.h / 2);
  const KelStatus st = keliRGBToYUV420_8u_C3P3(in.rgb.data(), q.p, in.size());
  raw = q.buf;
  return st;
}
size_t yuv422Bytes(int w, int h) { return static_cast<size_t>(w) * h + 2 * static_cast<size_t>((w + 1) / 2) * h; }
KelStatus yuv422ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  const int cw = (w + 1) / 2;
  const Kel8u* p[3] = {raw, raw + static_cast<size_t>(w) * h, raw + static_cast<size_t>(w) * h + static_cast<size_t>(cw) * h};
  return keliYUV422ToRGB_8u_P3C3(p, out.rgb.data(), out.size());
}
KelStatus rgbToYuv422(const Image& in, std::vector<uint8_t>& raw) {
  Planes q(in.w, in.h, (in.w + 1) / 2, in.h);
  const KelStatus st = keliRGBToYUV422_8u_C3P3(in.rgb.data(), q.p, in.size());
  raw = q.buf;
  return st;
}
size_t yuyvBytes(int w, int h) { return static_cast<size_t>(2) * w * h; }
KelStatus yuyvToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  return keliYUV422ToRGB_8u_C2C3R(raw, 2 * w, out.rgb.data(), out.step(), out.size());
}
KelStatus rgbToYuyv(const Image& in, std::vector<uint8_t>& raw) {
  raw.resize(yuyvBytes(in.w, in.h));
  return keliRGBToYUV422_8u_C3C2R(in.rgb.data(), in.step(), raw.data(), 2 * in.w, in.size());
}
size_t ycbcrBytes(int w, int h) { return static_cast<size_t>(3) * w * h; }
KelStatus ycbcrToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  return keliYCbCrToRGB_8u_C3R(raw, 3 * w, out.rgb.data(), out.step(), out.size());
}
KelStatus rgbToYcbcr(const Image& in, std::vector<uint8_t>& raw) {
  raw.resize(in.rgb.size());
  return keliRGBToYCbCr_8u_C3R(in.rgb.data(), in.step(), raw.data(), in.step(), in.size());
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-yuv420-rgb", "RGB -> YUV 4:2:0 planes -> RGB", yuv420RoundTrip});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-yuv422-rgb", "RGB -> YUV 4:2:2 planes -> RGB", yuv422RoundTrip});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-yuyv-rgb", "RGB -> packed YUV 4:2:2 (Y0 U Y1 V) -> RGB", yuyvRoundTrip});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycbcr-rgb", "RGB -> studio-range YCbCr, interleaved -> RGB", ycbcrRoundTrip});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycbcrplanar-rgb", "RGB -> studio-range YCbCr planes -> RGB",
                                   ycbcrPlanarRoundTrip});
KELCC_TOOL_REGISTER(tool::RawFormat{"yuv420p", "Y, U, V planes, 4:2:0 (analogue-TV YUV)", yuv420Bytes, yuv420ToRgb,
                                    rgbToYuv420});
KELCC_TOOL_REGISTER(tool::RawFormat{"yuv422p", "Y, U, V planes, 4:2:2 (analogue-TV YUV)", yuv422Bytes, yuv422ToRgb,
                                    rgbToYuv422});
KELCC_TOOL_REGISTER(tool::RawFormat{"yuyv", "packed Y0 U Y1 V, 4:2:2 (analogue-TV YUV)", yuyvBytes, yuyvToRgb,
                                    rgbToYuyv});
KELCC_TOOL_REGISTER(tool::RawFormat{"ycbcr444", "interleaved Y, Cb, Cr (studio range)", ycbcrBytes, ycbcrToRgb,
                                    rgbToYcbcr});
}  // namespace
