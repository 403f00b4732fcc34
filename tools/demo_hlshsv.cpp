// The hexcone models at work: round trips through HLS and HSV (8-bit, 16-bit,
// float, and the planar BGR forms), the hue, lightness and value channels
// shown as gray pictures, and `hls` / `hsv` as raw formats.
#include "kelcc_tool.h"

namespace {
using tool::Image;

using Fn8 = KelStatus (*)(const Kel8u*, int, Kel8u*, int, KeliSize);

// RGB -> model -> RGB on interleaved 8-bit images.
template <Fn8 Fwd, Fn8 Inv>
KelStatus roundTrip8(const Image& in, Image& out) {
  std::vector<Kel8u> mid(in.rgb.size());
  if (KelStatus st = Fwd(in.rgb.data(), in.step(), mid.data(), in.step(), in.size())) return st;
  return Inv(mid.data(), in.step(), out.rgb.data(), out.step(), in.size());
}

// The same on 16-bit samples (x * 257 there, nearest on the way back).
KelStatus roundTripHls16u(const Image& in, Image& out) {
  const size_t n = in.rgb.size();
  std::vector<Kel16u> a(n), b(n);
  for (size_t i = 0; i < n; ++i) a[i] = static_cast<Kel16u>(in.rgb[i] * 257);
  const int step = 6 * in.w;
  if (KelStatus st = keliRGBToHLS_16u_C3R(a.data(), step, b.data(), step, in.size())) return st;
  if (KelStatus st = keliHLSToRGB_16u_C3R(b.data(), step, a.data(), step, in.size())) return st;
  for (size_t i = 0; i < n; ++i) out.rgb[i] = static_cast<uint8_t>((a[i] + 128) / 257);
  return kelStatusOk;
}

// And on floats on the 0..1 scale.
KelStatus roundTripHls32f(const Image& in, Image& out) {
  const size_t n = in.rgb.size();
  std::vector<Kel32f> a(n), b(n);
  for (size_t i = 0; i < n; ++i) a[i] = in.rgb[i] / 255.0f;
  const int step = 12 * in.w;
  if (KelStatus st = keliRGBToHLS_32f_C3R(a.data(), step, b.data(), step, in.size())) return st;
  if (KelStatus st = keliHLSToRGB_32f_C3R(b.data(), step, a.data(), step, in.size())) return st;
  for (size_t i = 0; i < n; ++i) {
    const float v = a[i] * 255.0f + 0.5f;
    out.rgb[i] = static_cast<uint8_t>(v < 0.0f ? 0.0f : v > 255.0f ? 255.0f : v);
  }
  return kelStatusOk;
}

// The planar BGR forms: interleaved BGR to three HLS planes and back. The
// picture's channels are swapped on the way in and out.
KelStatus roundTripBgrPlanes(const Image& in, Image& out) {
  const size_t px = static_cast<size_t>(in.w) * in.h;
  std::vector<Kel8u> bgr(3 * px), planes(3 * px);
  for (size_t i = 0; i < px; ++i)
    for (int k = 0; k < 3; ++k) bgr[3 * i + k] = in.rgb[3 * i + 2 - k];
  Kel8u* d[3] = {planes.data(), planes.data() + px, planes.data() + 2 * px};
  if (KelStatus st = keliBGRToHLS_8u_C3P3R(bgr.data(), in.step(), d, in.w, in.size())) return st;
  const Kel8u* const s[3] = {d[0], d[1], d[2]};
  if (KelStatus st = keliHLSToBGR_8u_P3C3R(s, in.w, bgr.data(), in.step(), in.size())) return st;
  for (size_t i = 0; i < px; ++i)
    for (int k = 0; k < 3; ++k) out.rgb[3 * i + k] = bgr[3 * i + 2 - k];
  return kelStatusOk;
}

// One channel of a model shown as a gray picture.
template <Fn8 Fwd, int Ch>
KelStatus channel(const Image& in, Image& out) {
  std::vector<Kel8u> mid(in.rgb.size());
  if (KelStatus st = Fwd(in.rgb.data(), in.step(), mid.data(), in.step(), in.size())) return st;
  for (size_t i = 0; i < mid.size(); i += 3) out.rgb[i] = out.rgb[i + 1] = out.rgb[i + 2] = mid[i + Ch];
  return kelStatusOk;
}

size_t bytes3(int w, int h) { return static_cast<size_t>(3) * w * h; }
template <Fn8 Inv>
KelStatus toRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  return Inv(raw, 3 * w, out.rgb.data(), out.step(), out.size());
}
template <Fn8 Fwd>
KelStatus fromRgb(const Image& in, std::vector<uint8_t>& raw) {
  raw.resize(in.rgb.size());
  return Fwd(in.rgb.data(), in.step(), raw.data(), in.step(), in.size());
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-hls-rgb", "RGB -> HLS -> RGB, 8-bit",
                                   roundTrip8<keliRGBToHLS_8u_C3R, keliHLSToRGB_8u_C3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-hsv-rgb", "RGB -> HSV -> RGB, 8-bit",
                                   roundTrip8<keliRGBToHSV_8u_C3R, keliHSVToRGB_8u_C3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-hls-rgb-16u", "RGB -> HLS -> RGB, 16-bit", roundTripHls16u});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-hls-rgb-32f", "RGB -> HLS -> RGB, single precision", roundTripHls32f});
KELCC_TOOL_REGISTER(tool::DemoStep{"bgr-hls-planes-bgr", "BGR -> HLS planes -> BGR, 8-bit", roundTripBgrPlanes});
KELCC_TOOL_REGISTER(tool::DemoStep{"hls-hue", "HLS hue as gray (0..255 a full turn)",
                                   channel<keliRGBToHLS_8u_C3R, 0>, false});
KELCC_TOOL_REGISTER(tool::DemoStep{"hls-lightness", "HLS lightness as gray", channel<keliRGBToHLS_8u_C3R, 1>,
                                   false});
KELCC_TOOL_REGISTER(tool::DemoStep{"hsv-value", "HSV value as gray", channel<keliRGBToHSV_8u_C3R, 2>, false});
KELCC_TOOL_REGISTER(tool::RawFormat{"hls", "interleaved H, L, S (8-bit, hue 0..255 a full turn)", bytes3,
                                    toRgb<keliHLSToRGB_8u_C3R>, fromRgb<keliRGBToHLS_8u_C3R>});
KELCC_TOOL_REGISTER(tool::RawFormat{"hsv", "interleaved H, S, V (8-bit, hue 0..255 a full turn)", bytes3,
                                    toRgb<keliHSVToRGB_8u_C3R>, fromRgb<keliRGBToHSV_8u_C3R>});
}  // namespace
