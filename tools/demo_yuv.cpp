// Round trips through analogue-TV YUV at full resolution.
#include "kelcc_tool.h"

namespace {
using tool::Image;

KelStatus yuvRoundTrip(const Image& in, Image& out) {
  std::vector<Kel8u> yuv(in.rgb.size());
  if (KelStatus st = keliRGBToYUV_8u_C3R(in.rgb.data(), in.step(), yuv.data(), in.step(), in.size())) return st;
  return keliYUVToRGB_8u_C3R(yuv.data(), in.step(), out.rgb.data(), out.step(), in.size());
}

KelStatus yuvPlanarRoundTrip(const Image& in, Image& out) {
  std::vector<Kel8u> planes(in.rgb.size());
  Kel8u* p[3] = {planes.data(), planes.data() + in.w * in.h, planes.data() + 2 * in.w * in.h};
  if (KelStatus st = keliRGBToYUV_8u_C3P3R(in.rgb.data(), in.step(), p, in.w, in.size())) return st;
  const Kel8u* const q[3] = {p[0], p[1], p[2]};
  return keliYUVToRGB_8u_P3C3R(q, in.w, out.rgb.data(), out.step(), in.size());
}

// Interleaved 4:4:4 YUV as a raw format.
size_t yuv444Bytes(int w, int h) { return static_cast<size_t>(3) * w * h; }
KelStatus yuv444ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  return keliYUVToRGB_8u_C3R(raw, 3 * w, out.rgb.data(), out.step(), out.size());
}
KelStatus rgbToYuv444(const Image& in, std::vector<uint8_t>& raw) {
  raw.resize(in.rgb.size());
  return keliRGBToYUV_8u_C3R(in.rgb.data(), in.step(), raw.data(), in.step(), in.size());
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-yuv-rgb", "RGB -> YUV -> RGB, interleaved", yuvRoundTrip});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-yuvplanar-rgb", "RGB -> planar YUV -> RGB", yuvPlanarRoundTrip});
KELCC_TOOL_REGISTER(tool::RawFormat{"yuv444", "interleaved Y, U, V (analogue-TV YUV)", yuv444Bytes, yuv444ToRgb,
                                    rgbToYuv444});
}  // namespace
