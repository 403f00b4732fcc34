// Round trips through the colour models XYZ and YCC (8-bit and float), and
// the gray rendition with the fixed luma weights.
#include "kelcc_tool.h"

namespace {
using tool::Image;

// RGB -> model -> RGB on interleaved 8-bit images.
template <KelStatus (*Fwd)(const Kel8u*, int, Kel8u*, int, KeliSize),
          KelStatus (*Inv)(const Kel8u*, int, Kel8u*, int, KeliSize)>
KelStatus roundTrip8(const Image& in, Image& out) {
  std::vector<Kel8u> mid(in.rgb.size());
  if (KelStatus st = Fwd(in.rgb.data(), in.step(), mid.data(), in.step(), in.size())) return st;
  return Inv(mid.data(), in.step(), out.rgb.data(), out.step(), in.size());
}

// The same through single-precision samples on the 0..1 scale.
template <KelStatus (*Fwd)(const Kel32f*, int, Kel32f*, int, KeliSize),
          KelStatus (*Inv)(const Kel32f*, int, Kel32f*, int, KeliSize)>
KelStatus roundTrip32f(const Image& in, Image& out) {
  const size_t n = in.rgb.size();
  std::vector<Kel32f> a(n), b(n);
  for (size_t i = 0; i < n; ++i) a[i] = in.rgb[i] / 255.0f;
  const int step = 3 * in.w * static_cast<int>(sizeof(Kel32f));
  if (KelStatus st = Fwd(a.data(), step, b.data(), step, in.size())) return st;
  if (KelStatus st = Inv(b.data(), step, a.data(), step, in.size())) return st;
  for (size_t i = 0; i < n; ++i) out.rgb[i] = static_cast<uint8_t>(a[i] * 255.0f + 0.5f);
  return kelStatusOk;
}

// Gray with the fixed weights, shown as an RGB picture.
KelStatus grayRendition(const Image& in, Image& out) {
  std::vector<Kel8u> g(static_cast<size_t>(in.w) * in.h);
  if (KelStatus st = keliRGBToGray_8u_C3C1R(in.rgb.data(), in.step(), g.data(), in.w, in.size())) return st;
  for (size_t i = 0; i < g.size(); ++i) out.rgb[3 * i] = out.rgb[3 * i + 1] = out.rgb[3 * i + 2] = g[i];
  return kelStatusOk;
}

// Interleaved 8-bit YCC and XYZ as raw formats.
size_t bytes3(int w, int h) { return static_cast<size_t>(3) * w * h; }
template <KelStatus (*Inv)(const Kel8u*, int, Kel8u*, int, KeliSize)>
KelStatus toRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  return Inv(raw, 3 * w, out.rgb.data(), out.step(), out.size());
}
template <KelStatus (*Fwd)(const Kel8u*, int, Kel8u*, int, KeliSize)>
KelStatus fromRgb(const Image& in, std::vector<uint8_t>& raw) {
  raw.resize(in.rgb.size());
  return Fwd(in.rgb.data(), in.step(), raw.data(), in.step(), in.size());
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-xyz-rgb", "RGB -> XYZ -> RGB, 8-bit",
                                   roundTrip8<keliRGBToXYZ_8u_C3R, keliXYZToRGB_8u_C3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-xyz-rgb-32f", "RGB -> XYZ -> RGB, single precision",
                                   roundTrip32f<keliRGBToXYZ_32f_C3R, keliXYZToRGB_32f_C3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycc-rgb", "RGB -> photo YCC -> RGB, 8-bit",
                                   roundTrip8<keliRGBToYCC_8u_C3R, keliYCCToRGB_8u_C3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycc-rgb-32f", "RGB -> photo YCC -> RGB, single precision",
                                   roundTrip32f<keliRGBToYCC_32f_C3R, keliYCCToRGB_32f_C3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{"gray", "RGB -> gray (0.299, 0.587, 0.114)", grayRendition, false});
KELCC_TOOL_REGISTER(tool::RawFormat{"ycc", "interleaved Y, C1, C2 (photo YCC, 8-bit)", bytes3,
                                    toRgb<keliYCCToRGB_8u_C3R>, fromRgb<keliRGBToYCC_8u_C3R>});
KELCC_TOOL_REGISTER(tool::RawFormat{"xyz", "interleaved X, Y, Z (CIE XYZ, 8-bit)", bytes3,
                                    toRgb<keliXYZToRGB_8u_C3R>, fromRgb<keliRGBToXYZ_8u_C3R>});
}  // namespace
