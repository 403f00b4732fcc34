// CIE LUV and Lab in the tool: round trips at 8 bits, 16 bits and single
// precision with their error figures, the Lab channels as gray panels, the
// raw formats "luv" and "lab", and `kelcc lab` writing the three Lab
// channels of a picture as gray PNGs.
#include <cstdio>
#include <string>

#include "kelcc_tool.h"

namespace {
using tool::Image;

size_t bytes3(int w, int h) { return static_cast<size_t>(3) * w * h; }

// RGB <-> BGR on interleaved bytes (the Lab members take BGR).
void swapRB(const uint8_t* in, uint8_t* out, size_t px) {
  for (size_t i = 0; i < px; ++i) {
    const uint8_t r = in[3 * i], g = in[3 * i + 1], b = in[3 * i + 2];
    out[3 * i] = b, out[3 * i + 1] = g, out[3 * i + 2] = r;
  }
}
size_t pixels(const Image& im) { return static_cast<size_t>(im.w) * im.h; }

KelStatus rgbLuvRgb8(const Image& in, Image& out) {
  std::vector<Kel8u> luv(in.rgb.size());
  if (KelStatus st = keliRGBToLUV_8u_C3R(in.rgb.data(), in.step(), luv.data(), in.step(), in.size())) return st;
  return keliLUVToRGB_8u_C3R(luv.data(), in.step(), out.rgb.data(), out.step(), in.size());
}

// 16-bit samples: 8-bit RGB times 257 and back with rounding.
KelStatus rgbLuvRgb16(const Image& in, Image& out) {
  const size_t n = in.rgb.size();
  std::vector<Kel16u> a(n), b(n);
  for (size_t i = 0; i < n; ++i) a[i] = static_cast<Kel16u>(in.rgb[i] * 257);
  const int step = 6 * in.w;
  if (KelStatus st = keliRGBToLUV_16u_C3R(a.data(), step, b.data(), step, in.size())) return st;
  if (KelStatus st = keliLUVToRGB_16u_C3R(b.data(), step, a.data(), step, in.size())) return st;
  for (size_t i = 0; i < n; ++i) out.rgb[i] = static_cast<uint8_t>((a[i] + 128) / 257);
  return kelStatusOk;
}

KelStatus rgbLuvRgb32f(const Image& in, Image& out) {
  const size_t n = in.rgb.size();
  std::vector<Kel32f> a(n), b(n);
  for (size_t i = 0; i < n; ++i) a[i] = in.rgb[i] / 255.0f;
  const int step = 12 * in.w;
  if (KelStatus st = keliRGBToLUV_32f_C3R(a.data(), step, b.data(), step, in.size())) return st;
  if (KelStatus st = keliLUVToRGB_32f_C3R(b.data(), step, a.data(), step, in.size())) return st;
  for (size_t i = 0; i < n; ++i) out.rgb[i] = static_cast<uint8_t>(a[i] * 255.0f + 0.5f);
  return kelStatusOk;
}

KelStatus bgrLabBgr8(const Image& in, Image& out) {
  std::vector<Kel8u> bgr(in.rgb.size()), lab(in.rgb.size());
  swapRB(in.rgb.data(), bgr.data(), pixels(in));
  if (KelStatus st = keliBGRToLab_8u_C3R(bgr.data(), in.step(), lab.data(), in.step(), in.size())) return st;
  if (KelStatus st = keliLabToBGR_8u_C3R(lab.data(), in.step(), bgr.data(), in.step(), in.size())) return st;
  swapRB(bgr.data(), out.rgb.data(), pixels(in));
  return kelStatusOk;
}

KelStatus bgrLabBgr16(const Image& in, Image& out) {
  std::vector<Kel8u> bgr(in.rgb.size());
  std::vector<Kel16u> lab(in.rgb.size());
  swapRB(in.rgb.data(), bgr.data(), pixels(in));
  const int step16 = 6 * in.w;
  if (KelStatus st = keliBGRToLab_8u16u_C3R(bgr.data(), in.step(), lab.data(), step16, in.size())) return st;
  if (KelStatus st = keliLabToBGR_16u8u_C3R(lab.data(), step16, bgr.data(), in.step(), in.size())) return st;
  swapRB(bgr.data(), out.rgb.data(), pixels(in));
  return kelStatusOk;
}

// The 8-bit Lab of an RGB picture.
KelStatus labOf(const Image& in, std::vector<uint8_t>& lab) {
  std::vector<Kel8u> bgr(in.rgb.size());
  lab.resize(in.rgb.size());
  swapRB(in.rgb.data(), bgr.data(), pixels(in));
  return keliBGRToLab_8u_C3R(bgr.data(), in.step(), lab.data(), in.step(), in.size());
}

// L, a and b side by side as gray panels (a and b centred on 128).
KelStatus labPanels(const Image& in, Image& out) {
  std::vector<uint8_t> lab;
  if (KelStatus st = labOf(in, lab)) return st;
  out = Image(3 * in.w, in.h);
  for (int y = 0; y < in.h; ++y)
    for (int x = 0; x < in.w; ++x)
      for (int c = 0; c < 3; ++c) {
        const uint8_t v = lab[3 * (static_cast<size_t>(y) * in.w + x) + c];
        uint8_t* o = &out.rgb[3 * (static_cast<size_t>(y) * out.w + c * in.w + x)];
        o[0] = o[1] = o[2] = v;
      }
  return kelStatusOk;
}

// `kelcc lab IN PREFIX`: PREFIX-L.png, PREFIX-a.png, PREFIX-b.png.
int labCommand(int argc, char** argv) {
  const char* cmd = "lab";
  if (argc != 2 || argv[0][0] == '-' || argv[1][0] == '-')
    return tool::fail(cmd, "", "needs IN and PREFIX, no options (see kelcc lab --help)", 2);
  const char* names[3] = {"-L.png", "-a.png", "-b.png"};
  for (const char* n : names)
    if (!tool::outputOk(cmd, std::string(argv[1]) + n)) return 2;
  Image in;
  if (!tool::loadPicture(cmd, argv[0], in)) return 1;
  std::vector<uint8_t> lab;
  if (KelStatus st = labOf(in, lab)) return tool::fail(cmd, argv[0], tool::statusText(st));
  std::vector<uint8_t> plane(pixels(in));
  for (int c = 0; c < 3; ++c) {
    for (size_t i = 0; i < plane.size(); ++i) plane[i] = lab[3 * i + c];
    const std::string path = std::string(argv[1]) + names[c];
    if (!tool::writePngGray(path, plane.data(), in.w, in.h, in.w)) return tool::fail(cmd, path, "cannot write");
    std::printf("%s\n", path.c_str());
  }
  return 0;
}

// Raw formats: interleaved 8-bit L, u, v and L, a, b.
KelStatus luvToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  return keliLUVToRGB_8u_C3R(raw, 3 * w, out.rgb.data(), out.step(), out.size());
}
KelStatus rgbToLuv(const Image& in, std::vector<uint8_t>& raw) {
  raw.resize(in.rgb.size());
  return keliRGBToLUV_8u_C3R(in.rgb.data(), in.step(), raw.data(), in.step(), in.size());
}
KelStatus labToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  std::vector<Kel8u> bgr(out.rgb.size());
  if (KelStatus st = keliLabToBGR_8u_C3R(raw, 3 * w, bgr.data(), out.step(), out.size())) return st;
  swapRB(bgr.data(), out.rgb.data(), pixels(out));
  return kelStatusOk;
}
KelStatus rgbToLab(const Image& in, std::vector<uint8_t>& raw) { return labOf(in, raw); }

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-luv-rgb", "RGB -> CIE LUV -> RGB, 8-bit", rgbLuvRgb8});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-luv-rgb-16u", "RGB -> CIE LUV -> RGB, 16-bit", rgbLuvRgb16});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-luv-rgb-32f", "RGB -> CIE LUV -> RGB, single precision", rgbLuvRgb32f});
KELCC_TOOL_REGISTER(tool::DemoStep{"bgr-lab-bgr", "BGR -> CIE Lab -> BGR, 8-bit", bgrLabBgr8});
KELCC_TOOL_REGISTER(tool::DemoStep{"bgr-lab16-bgr", "BGR -> CIE Lab (16-bit) -> BGR", bgrLabBgr16});
KELCC_TOOL_REGISTER(tool::DemoStep{"lab-channels", "CIE Lab channels L, a, b as gray panels", labPanels, false});
KELCC_TOOL_REGISTER(tool::RawFormat{"luv", "interleaved L, u, v (CIE LUV, 8-bit)", bytes3, luvToRgb, rgbToLuv});
KELCC_TOOL_REGISTER(tool::RawFormat{"lab", "interleaved L, a, b (CIE Lab, 8-bit)", bytes3, labToRgb, rgbToLab});
KELCC_TOOL_REGISTER(tool::Command{"lab", "IN.png PREFIX  (writes PREFIX-L.png, PREFIX-a.png, PREFIX-b.png)", labCommand,
                                  "Converts a picture to 8-bit CIE Lab and writes its three channels as gray PNGs.\n"
                                  "No options."});
}  // namespace
