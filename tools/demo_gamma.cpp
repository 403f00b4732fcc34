// Gamma curves and tone mapping in the tool:
//   kelcc gamma IN OUT.png [--inv] [--16]    the curve (or its inverse) on a picture
//   kelcc tonemap IN OUT.png [--mean]        a float image (PFM) into 8 bits
// and demo steps: gamma round trips at 8 and 16 bits, and a synthesised
// high-dynamic-range rendition of the picture through tone mapping.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#include "kelcc_tool.h"

namespace {
using tool::Image;

// ---- gamma ----------------------------------------------------------------------
// 8-bit samples to 16 bits (v * 257) and back (nearest).
std::vector<Kel16u> widen16(const Image& in) {
  std::vector<Kel16u> w(in.rgb.size());
  for (size_t i = 0; i < w.size(); ++i) w[i] = static_cast<Kel16u>(in.rgb[i] * 257);
  return w;
}
void narrow16(const std::vector<Kel16u>& w, Image& out) {
  for (size_t i = 0; i < w.size(); ++i) out.rgb[i] = static_cast<uint8_t>((w[i] + 128) / 257);
}

KelStatus gamma8(const Image& in, Image& out, bool inv) {
  return (inv ? keliGammaInv_8u_C3R : keliGammaFwd_8u_C3R)(in.rgb.data(), in.step(), out.rgb.data(), out.step(),
                                                          in.size());
}
KelStatus gamma16(const Image& in, Image& out, bool inv) {
  std::vector<Kel16u> w = widen16(in);
  const int step = 6 * in.w;
  if (KelStatus st = (inv ? keliGammaInv_16u_C3IR : keliGammaFwd_16u_C3IR)(w.data(), step, in.size())) return st;
  narrow16(w, out);
  return kelStatusOk;
}

// To linear light and back: at 8 bits the dark values lose levels on the way
// (the inverse table maps 0..20 onto 0..4); at 16 bits the trip is close.
KelStatus roundTrip8(const Image& in, Image& out) {
  Image mid(in.w, in.h);
  if (KelStatus st = keliGammaInv_8u_C3R(in.rgb.data(), in.step(), mid.rgb.data(), mid.step(), in.size())) return st;
  return keliGammaFwd_8u_C3R(mid.rgb.data(), mid.step(), out.rgb.data(), out.step(), in.size());
}
KelStatus roundTrip16(const Image& in, Image& out) {
  std::vector<Kel16u> w = widen16(in), lin(w.size());
  const int step = 6 * in.w;
  if (KelStatus st = keliGammaInv_16u_C3R(w.data(), step, lin.data(), step, in.size())) return st;
  if (KelStatus st = keliGammaFwd_16u_C3R(lin.data(), step, w.data(), step, in.size())) return st;
  narrow16(w, out);
  return kelStatusOk;
}

int gammaCommand(int argc, char** argv) {
  const char* cmd = "gamma";
  std::string inPath, outPath;
  bool inv = false, deep = false;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    if (a == "--inv") inv = true;
    else if (a == "--16") deep = true;
    else if (!a.empty() && a[0] == '-') return tool::fail(cmd, "", "unknown option " + a + " (see kelcc gamma --help)", 2);
    else if (inPath.empty()) inPath = a;
    else if (outPath.empty()) outPath = a;
    else return tool::fail(cmd, "", "unexpected argument " + a + " (see kelcc gamma --help)", 2);
  }
  if (inPath.empty() || outPath.empty()) return tool::fail(cmd, "", "needs IN and OUT (see kelcc gamma --help)", 2);
  if (!tool::outputOk(cmd, outPath)) return 2;
  Image in;
  if (!tool::loadPicture(cmd, inPath, in)) return 1;
  Image out(in.w, in.h);
  const KelStatus st = deep ? gamma16(in, out, inv) : gamma8(in, out, inv);
  if (st < 0) return tool::fail(cmd, inPath, tool::statusText(st));
  return tool::writePng(outPath, out) ? 0 : tool::fail(cmd, outPath, "cannot write");
}

// ---- tone mapping ---------------------------------------------------------------
// A float image of three channels, rows top to bottom.
struct FloatImage {
  int w = 0, h = 0;
  std::vector<Kel32f> v;
};

// PFM: "PF" (colour) or "Pf" (gray), width, height, and a scale whose sign
// gives the byte order (negative: little-endian); rows bottom to top.
bool readPfm(const std::string& path, FloatImage& img) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return false;
  char kind[3] = {};
  double scale = 0;
  bool ok = std::fscanf(f, "%2s %d %d %lf", kind, &img.w, &img.h, &scale) == 4 && std::fgetc(f) != EOF &&
            img.w > 0 && img.h > 0 && img.w < 65536 && img.h < 65536 && (!std::strcmp(kind, "PF") || !std::strcmp(kind, "Pf"));
  if (ok) {
    const int ch = kind[1] == 'F' ? 3 : 1;
    std::vector<Kel32f> raw(static_cast<size_t>(ch) * img.w * img.h);
    ok = std::fread(raw.data(), sizeof(Kel32f), raw.size(), f) == raw.size();
    if (ok && scale > 0)  // big-endian samples
      for (Kel32f& s : raw) {
        uint32_t u;
        std::memcpy(&u, &s, 4);
        u = __builtin_bswap32(u);
        std::memcpy(&s, &u, 4);
      }
    img.v.assign(static_cast<size_t>(3) * img.w * img.h, 0.0f);
    for (int y = 0; y < img.h && ok; ++y)
      for (int x = 0; x < img.w; ++x)
        for (int k = 0; k < 3; ++k)
          img.v[3 * (static_cast<size_t>(y) * img.w + x) + k] =
              raw[ch * (static_cast<size_t>(img.h - 1 - y) * img.w + x) + (ch == 3 ? k : 0)];
  }
  std::fclose(f);
  return ok;
}

// An 8-bit picture as high-dynamic-range light: to linear light through the
// inverse curve (32f), lit by an exposure that rises from 1 at the left edge
// to 32 at the right.
FloatImage synthesise(const Image& in) {
  FloatImage img{in.w, in.h, std::vector<Kel32f>(in.rgb.size())};
  for (size_t i = 0; i < in.rgb.size(); ++i) img.v[i] = in.rgb[i] / 255.0f;
  keliGammaInv_32f_C3IR(img.v.data(), 12 * in.w, in.size(), 0.0f, 1.0f);
  for (int y = 0; y < in.h; ++y)
    for (int x = 0; x < in.w; ++x) {
      const float e = std::exp2(5.0f * x / std::max(1, in.w - 1));
      for (int k = 0; k < 3; ++k) img.v[3 * (static_cast<size_t>(y) * in.w + x) + k] *= e;
    }
  return img;
}

// One scale for all three channels keeps the colours: the image goes to the
// single-channel member as one plane of 3 w samples a row. The result is
// linear light, so the forward curve prepares it for display.
KelStatus toneMap(const FloatImage& img, Image& out, bool mean) {
  out = Image(img.w, img.h);
  const KeliSize plane{3 * img.w, img.h};
  const KelStatus st = (mean ? keliToneMapMean_32f8u_C1R : keliToneMapLinear_32f8u_C1R)(
      img.v.data(), 12 * img.w, out.rgb.data(), out.step(), plane);
  if (st != kelStatusOk) return st;
  return keliGammaFwd_8u_C3IR(out.rgb.data(), out.step(), out.size());
}

int toneMapCommand(int argc, char** argv) {
  const char* cmd = "tonemap";
  std::string inPath, outPath;
  bool mean = false;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    if (a == "--mean") mean = true;
    else if (!a.empty() && a[0] == '-') return tool::fail(cmd, "", "unknown option " + a + " (see kelcc tonemap --help)", 2);
    else if (inPath.empty()) inPath = a;
    else if (outPath.empty()) outPath = a;
    else return tool::fail(cmd, "", "unexpected argument " + a + " (see kelcc tonemap --help)", 2);
  }
  if (inPath.empty() || outPath.empty()) return tool::fail(cmd, "", "needs IN and OUT (see kelcc tonemap --help)", 2);
  if (!tool::outputOk(cmd, outPath)) return 2;
  FloatImage img;
  Image pic;
  if (!readPfm(inPath, img)) {
    std::string why;
    if (!tool::readImage(inPath, pic, &why))
      return tool::fail(cmd, inPath, why == "not a PNG or an 8-bit binary PPM (P6) picture" ? "not a PFM, PNG or PPM picture" : why);
    img = synthesise(pic);
  }
  Image out;
  const KelStatus st = toneMap(img, out, mean);
  if (st != kelStatusOk) return tool::fail(cmd, inPath, tool::statusText(st));
  return tool::writePng(outPath, out) ? 0 : tool::fail(cmd, outPath, "cannot write");
}

KelStatus toneMapDemo(const Image& in, Image& out) {
  const FloatImage img = synthesise(in);
  return toneMap(img, out, true);
}

KELCC_TOOL_REGISTER(tool::Command{"gamma", "IN OUT.png [--inv] [--16]   gamma curve (--inv: to linear light)",
                                  gammaCommand,
                                  "Passes every sample of a picture (PNG or PPM) through the forward gamma curve.\n"
                                  "  --inv    the inverse curve (gamma-encoded to linear light)\n"
                                  "  --16     through the 16-bit members (the picture widened to 16 bits and back)"});
KELCC_TOOL_REGISTER(tool::Command{"tonemap", "IN.pfm|IN.png OUT.png [--mean]   float image into 8 bits",
                                  toneMapCommand,
                                  "Maps a float image (PFM; a PNG/PPM picture is first made into a high-range float\n"
                                  "image) into 8 bits, then applies the forward gamma curve.\n"
                                  "  --mean   scale by twice the mean (default: by the maximum)"});
KELCC_TOOL_REGISTER(tool::DemoStep{"gamma-8u", "RGB -> linear light -> RGB, 8-bit gamma tables", roundTrip8});
KELCC_TOOL_REGISTER(tool::DemoStep{"gamma-16u", "RGB -> linear light -> RGB, 16-bit gamma curve", roundTrip16});
KELCC_TOOL_REGISTER(tool::DemoStep{"tonemap", "RGB as light of exposure 1..32, tone-mapped by the mean",
                                   toneMapDemo, false});

}  // namespace
