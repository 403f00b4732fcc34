// Demosaicing: `kelcc mosaic` samples an RGB picture through a Bayer grid
// into a PGM, `kelcc demosaic` turns a raw sensor image (8- or 16-bit PGM,
// or headerless samples with --size and --depth) back into RGB with the
// bilinear method or AHD; the demo mosaics the test picture and rebuilds it
// both ways.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "kelcc_tool.h"

namespace {
using tool::Image;

// A raw sensor image: samples of 8 or 16 bits, rows tightly packed.
struct Raw {
  int w = 0, h = 0, depth = 8;
  std::vector<uint8_t> s8;
  std::vector<uint16_t> s16;
};

int gridOf(const std::string& s) {
  if (s == "bggr") return kelBayerBGGR;
  if (s == "rggb") return kelBayerRGGB;
  if (s == "gbrg") return kelBayerGBRG;
  if (s == "grbg") return kelBayerGRBG;
  return -1;
}
// Channel (0 R, 1 G, 2 B) at (x, y) for a grid: [grid][y & 1][x & 1].
int channelAt(int grid, int x, int y) {
  static const int t[4][2][2] = {{{2, 1}, {1, 0}}, {{0, 1}, {1, 2}}, {{1, 2}, {0, 1}}, {{1, 0}, {2, 1}}};
  return t[grid][y & 1][x & 1];
}

bool readAll(const std::string& path, std::vector<uint8_t>& data) {
  std::ifstream f(path, std::ios::binary);
  if (!f) return false;
  data.assign(std::istreambuf_iterator<char>(f), {});
  return true;
}

// Binary PGM (P5): 8-bit samples for a maximum below 256, else 16-bit
// big-endian samples.
bool readPgm(const std::vector<uint8_t>& d, Raw& raw) {
  if (d.size() < 2 || d[0] != 'P' || d[1] != '5') return false;
  size_t i = 2;
  int vals[3];
  for (int& v : vals) {
    for (;;) {
      while (i < d.size() && std::isspace(d[i])) ++i;
      if (i < d.size() && d[i] == '#') {
        while (i < d.size() && d[i] != '\n') ++i;
      } else {
        break;
      }
    }
    v = 0;
    if (i >= d.size() || !std::isdigit(d[i])) return false;
    while (i < d.size() && std::isdigit(d[i])) v = v * 10 + (d[i++] - '0');
  }
  ++i;  // the single white-space byte before the samples
  raw.w = vals[0], raw.h = vals[1], raw.depth = vals[2] > 255 ? 16 : 8;
  const size_t n = static_cast<size_t>(raw.w) * raw.h;
  if (raw.w < 1 || raw.h < 1 || d.size() < i + n * (raw.depth / 8)) return false;
  if (raw.depth == 8) {
    raw.s8.assign(d.begin() + i, d.begin() + i + n);
  } else {
    raw.s16.resize(n);
    for (size_t k = 0; k < n; ++k) raw.s16[k] = static_cast<uint16_t>(d[i + 2 * k] << 8 | d[i + 2 * k + 1]);
  }
  return true;
}

bool writePgm(const std::string& path, const Raw& raw) {
  std::ofstream f(path, std::ios::binary);
  f << "P5\n" << raw.w << " " << raw.h << "\n" << (raw.depth == 8 ? 255 : 65535) << "\n";
  if (raw.depth == 8) {
    f.write(reinterpret_cast<const char*>(raw.s8.data()), static_cast<std::streamsize>(raw.s8.size()));
  } else {
    for (uint16_t v : raw.s16) f.put(static_cast<char>(v >> 8)), f.put(static_cast<char>(v & 255));
  }
  return static_cast<bool>(f);
}

// Demosaics a whole raw image; 8-bit results into `out8`, 16-bit into `out16`.
KelStatus demosaic(const Raw& raw, int grid, bool ahd, std::vector<uint8_t>& out8, std::vector<uint16_t>& out16) {
  const KeliRect all{0, 0, raw.w, raw.h};
  const KeliSize size{raw.w, raw.h};
  const auto g = static_cast<KelBayerGrid>(grid);
  const size_t n = static_cast<size_t>(3) * raw.w * raw.h;
  if (raw.depth == 8) {
    out8.resize(n);
    if (!ahd) return keliCFAToRGB_8u_C1C3R(raw.s8.data(), all, size, raw.w, out8.data(), 3 * raw.w, g);
    std::vector<Kel8u> tmp(KELCC_AHD_TMP_BYTES(raw.w, 1));
    return keliDemosaicAHD_8u_C1C3R(raw.s8.data(), all, size, raw.w, out8.data(), 3 * raw.w, g, tmp.data(),
                                    KELCC_AHD_TMP_STEP(raw.w, 1));
  }
  out16.resize(n);
  if (!ahd) return keliCFAToRGB_16u_C1C3R(raw.s16.data(), all, size, 2 * raw.w, out16.data(), 6 * raw.w, g);
  std::vector<Kel16u> tmp(KELCC_AHD_TMP_BYTES(raw.w, 2) / 2);
  return keliDemosaicAHD_16u_C1C3R(raw.s16.data(), all, size, 2 * raw.w, out16.data(), 6 * raw.w, g, tmp.data(),
                                   KELCC_AHD_TMP_STEP(raw.w, 2));
}

Raw mosaic(const Image& img, int grid, int depth) {
  Raw raw;
  raw.w = img.w, raw.h = img.h, raw.depth = depth;
  const size_t n = static_cast<size_t>(img.w) * img.h;
  (depth == 8 ? raw.s8.resize(n) : raw.s16.resize(n));
  for (int y = 0; y < img.h; ++y)
    for (int x = 0; x < img.w; ++x) {
      const size_t i = static_cast<size_t>(y) * img.w + x;
      const uint8_t v = img.rgb[3 * i + channelAt(grid, x, y)];
      if (depth == 8) raw.s8[i] = v;
      else raw.s16[i] = static_cast<uint16_t>(v * 257);
    }
  return raw;
}

int fail(const char* what, const std::string& arg = "") {
  std::fprintf(stderr, "kelcc: %s%s\n", what, arg.c_str());
  return 1;
}

int cmdDemosaic(int argc, char** argv) {
  std::string in, out, grid = "rggb", method = "bilinear";
  int w = 0, h = 0, depth = 8;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    auto next = [&]() -> std::string { return i + 1 < argc ? argv[++i] : std::string(); };
    if (a == "--grid") grid = next();
    else if (a == "--method") method = next();
    else if (a == "--size") {
      if (std::sscanf(next().c_str(), "%dx%d", &w, &h) != 2) return fail("--size takes WxH");
    } else if (a == "--depth") depth = std::atoi(next().c_str());
    else if (in.empty()) in = a;
    else if (out.empty()) out = a;
    else return fail("unexpected argument ", a);
  }
  const int g = gridOf(grid);
  if (in.empty() || out.empty() || g < 0 || (method != "bilinear" && method != "ahd") || (depth != 8 && depth != 16))
    return fail("usage: kelcc demosaic IN OUT --grid rggb|bggr|gbrg|grbg --method bilinear|ahd [--size WxH --depth 8|16]");
  std::vector<uint8_t> data;
  if (!readAll(in, data)) return fail("cannot read ", in);
  Raw raw;
  if (w > 0) {
    // Headerless samples, 16-bit ones in the machine's (little-endian) order.
    raw.w = w, raw.h = h, raw.depth = depth;
    const size_t n = static_cast<size_t>(w) * h;
    if (data.size() < n * (depth / 8)) return fail("raw input shorter than --size and --depth give: ", in);
    if (depth == 8) raw.s8.assign(data.begin(), data.begin() + n);
    else raw.s16.resize(n), std::memcpy(raw.s16.data(), data.data(), 2 * n);
  } else if (!readPgm(data, raw)) {
    return fail("not a binary PGM (give --size and --depth for raw samples): ", in);
  }
  std::vector<uint8_t> o8;
  std::vector<uint16_t> o16;
  const KelStatus st = demosaic(raw, g, method == "ahd", o8, o16);
  if (st < 0) return fail("demosaicing failed, status ", std::to_string(st));
  const bool png = out.size() >= 4 && strcasecmp(out.c_str() + out.size() - 4, ".png") == 0;
  if (raw.depth == 16) {
    if (png) return tool::writePng16(out, o16.data(), raw.w, raw.h) ? 0 : fail("cannot write ", out);
    std::ofstream f(out, std::ios::binary);
    f << "P6\n" << raw.w << " " << raw.h << "\n65535\n";
    for (uint16_t v : o16) f.put(static_cast<char>(v >> 8)), f.put(static_cast<char>(v & 255));
    return f ? 0 : fail("cannot write ", out);
  }
  Image img(raw.w, raw.h);
  img.rgb = o8;
  const bool ok = png ? tool::writePng(out, img) : tool::writePpm(out, img);
  return ok ? 0 : fail("cannot write ", out);
}

int cmdMosaic(int argc, char** argv) {
  std::string in, out, grid = "rggb";
  int depth = 8;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    auto next = [&]() -> std::string { return i + 1 < argc ? argv[++i] : std::string(); };
    if (a == "--grid") grid = next();
    else if (a == "--depth") depth = std::atoi(next().c_str());
    else if (in.empty()) in = a;
    else if (out.empty()) out = a;
    else return fail("unexpected argument ", a);
  }
  const int g = gridOf(grid);
  if (in.empty() || out.empty() || g < 0 || (depth != 8 && depth != 16))
    return fail("usage: kelcc mosaic IN.png OUT.pgm --grid rggb|bggr|gbrg|grbg [--depth 8|16]");
  Image img;
  if (!tool::readImage(in, img)) return fail("cannot read picture ", in);
  return writePgm(out, mosaic(img, g, depth)) ? 0 : fail("cannot write ", out);
}

// The demo: the test picture through an RGGB sensor and back.
template <bool kAhd>
KelStatus demoStep(const Image& in, Image& out) {
  std::vector<uint16_t> unused;
  const KelStatus st = demosaic(mosaic(in, kelBayerRGGB, 8), kelBayerRGGB, kAhd, out.rgb, unused);
  return st;
}

KELCC_TOOL_REGISTER(tool::Command{"demosaic",
                                  "IN.pgm OUT.png --grid rggb|bggr|gbrg|grbg --method bilinear|ahd "
                                  "[--size WxH --depth 8|16 for headerless samples]",
                                  cmdDemosaic,
                                  "Demosaics a Bayer image (binary PGM, 8 or 16 bits, or headerless samples) into RGB\n"
                                  "(PNG, or PPM by any other extension; 16-bit in, 16-bit out).\n"
                                  "  --grid G        colours of the top left 2 x 2 block: rggb (default), bggr, gbrg, grbg\n"
                                  "  --method M      bilinear (default; gradient test for green) or ahd\n"
                                  "  --size WxH      the input is headerless samples of this size ...\n"
                                  "  --depth 8|16    ... of this depth (16: little-endian words)"});
KELCC_TOOL_REGISTER(tool::Command{"mosaic", "IN.png OUT.pgm --grid rggb|bggr|gbrg|grbg [--depth 8|16]", cmdMosaic,
                                  "Samples an RGB picture through a Bayer colour filter into a binary PGM.\n"
                                  "  --grid G        colours of the top left 2 x 2 block: rggb (default), bggr, gbrg, grbg\n"
                                  "  --depth 8|16    sample depth of the PGM (default 8)"});
KELCC_TOOL_REGISTER(tool::DemoStep{"demosaic-bilinear", "RGB -> RGGB mosaic -> bilinear with gradient test",
                                   demoStep<false>});
KELCC_TOOL_REGISTER(tool::DemoStep{"demosaic-ahd", "RGB -> RGGB mosaic -> AHD", demoStep<true>});
}  // namespace
