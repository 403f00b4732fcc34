// Demosaicing: `kelcc mosaic` samples an RGB picture through a Bayer grid
// into a PGM, `kelcc demosaic` turns a raw sensor image (8- or 16-bit PGM,
// or headerless samples with --size and --depth) back into RGB with the
// bilinear method or AHD; the demo mosaics the test picture and rebuilds it
// both ways.
#include <cerrno>
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

// Binary PGM (P5): 8-bit samples for a maximum below 256, else 16-bit
// big-endian samples. Returns what is wrong with the data, or "".
std::string readPgm(const std::vector<uint8_t>& d, Raw& raw) {
  if (d.size() < 2 || d[0] != 'P' || d[1] != '5')
    return "not a binary PGM (P5); for headerless samples give --size WxH and --depth 8|16";
  size_t i = 2;
  long vals[3];
  for (long& v : vals) {
    for (;;) {
      while (i < d.size() && std::isspace(d[i])) ++i;
      if (i < d.size() && d[i] == '#') {
        while (i < d.size() && d[i] != '\n') ++i;
      } else {
        break;
      }
    }
    v = 0;
    if (i >= d.size() || !std::isdigit(d[i])) return "damaged PGM header";
    while (i < d.size() && std::isdigit(d[i]) && v < 1000000) v = v * 10 + (d[i++] - '0');
  }
  ++i;  // the single white-space byte before the samples
  if (vals[0] < 1 || vals[1] < 1 || vals[0] > 65535 || vals[1] > 65535 || vals[0] * vals[1] > (1L << 28) ||
      vals[2] < 1 || vals[2] > 65535)
    return "PGM header gives an impossible size or maximum";
  raw.w = static_cast<int>(vals[0]), raw.h = static_cast<int>(vals[1]), raw.depth = vals[2] > 255 ? 16 : 8;
  const size_t n = static_cast<size_t>(raw.w) * raw.h;
  if (d.size() < i + n * (raw.depth / 8))
    return "truncated PGM: " + std::to_string(d.size() - std::min(d.size(), i)) + " bytes of samples, " +
           std::to_string(raw.w) + "x" + std::to_string(raw.h) + " at " + std::to_string(raw.depth) + " bits needs " +
           std::to_string(n * (raw.depth / 8));
  if (raw.depth == 8) {
    raw.s8.assign(d.begin() + i, d.begin() + i + n);
  } else {
    raw.s16.resize(n);
    for (size_t k = 0; k < n; ++k) raw.s16[k] = static_cast<uint16_t>(d[i + 2 * k] << 8 | d[i + 2 * k + 1]);
  }
  return "";
}

bool writePgm(const std::string& path, const Raw& raw) {
  return tool::writeWhole(path, [&](const std::string& tmp) {
    std::ofstream f(tmp, std::ios::binary);
    f << "P5\n" << raw.w << " " << raw.h << "\n" << (raw.depth == 8 ? 255 : 65535) << "\n";
    if (raw.depth == 8) {
      f.write(reinterpret_cast<const char*>(raw.s8.data()), static_cast<std::streamsize>(raw.s8.size()));
    } else {
      for (uint16_t v : raw.s16) f.put(static_cast<char>(v >> 8)), f.put(static_cast<char>(v & 255));
    }
    f.close();
    return static_cast<bool>(f);
  });
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

// The options both commands share; false after a message.
bool gridOption(const std::string& cmd, const std::string& v, int& g) {
  g = gridOf(v);
  if (g >= 0) return true;
  tool::fail(cmd, "", "--grid takes rggb, bggr, gbrg or grbg, got '" + v + "'", 2);
  return false;
}

int cmdDemosaic(int argc, char** argv) {
  const char* cmd = "demosaic";
  std::string in, out, grid = "rggb", method = "bilinear";
  int w = 0, h = 0, depth = 8;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    auto next = [&]() -> std::string { return i + 1 < argc ? argv[++i] : std::string(); };
    if (a == "--grid") grid = next();
    else if (a == "--method") method = next();
    else if (a == "--size") {
      const std::string v = next();
      int n = 0;
      if (std::sscanf(v.c_str(), "%dx%d%n", &w, &h, &n) != 2 || v[n] || w < 1 || h < 1 || w > 65535 || h > 65535)
        return tool::fail(cmd, "", "--size takes WxH (e.g. 4000x3000), got '" + v + "'", 2);
    } else if (a == "--depth") {
      if (!tool::intOption(cmd, a, i + 1 < argc ? argv[++i] : nullptr, 8, 16, depth)) return 2;
      if (depth != 8 && depth != 16) return tool::fail(cmd, "", "--depth takes 8 or 16", 2);
    } else if (!a.empty() && a[0] == '-') return tool::fail(cmd, "", "unknown option " + a + " (see kelcc demosaic --help)", 2);
    else if (in.empty()) in = a;
    else if (out.empty()) out = a;
    else return tool::fail(cmd, "", "unexpected argument " + a + " (see kelcc demosaic --help)", 2);
  }
  int g;
  if (in.empty() || out.empty()) return tool::fail(cmd, "", "needs IN and OUT (see kelcc demosaic --help)", 2);
  if (!gridOption(cmd, grid, g)) return 2;
  if (method != "bilinear" && method != "ahd")
    return tool::fail(cmd, "", "--method takes bilinear or ahd, got '" + method + "'", 2);
  if (!tool::outputOk(cmd, out)) return 2;
  std::vector<uint8_t> data;
  if (!tool::readFileBytes(cmd, in, data)) return 1;
  Raw raw;
  if (w > 0) {
    // Headerless samples, 16-bit ones in the machine's (little-endian) order.
    raw.w = w, raw.h = h, raw.depth = depth;
    const size_t n = static_cast<size_t>(w) * h;
    if (data.size() != n * (depth / 8))
      return tool::fail(cmd, in,
                        std::to_string(data.size()) + " bytes, but " + std::to_string(w) + "x" + std::to_string(h) +
                            " samples of " + std::to_string(depth) + " bits are " + std::to_string(n * (depth / 8)));
    if (depth == 8) raw.s8.assign(data.begin(), data.begin() + n);
    else raw.s16.resize(n), std::memcpy(raw.s16.data(), data.data(), 2 * n);
  } else if (const std::string why = readPgm(data, raw); !why.empty()) {
    return tool::fail(cmd, in, why);
  }
  std::vector<uint8_t> o8;
  std::vector<uint16_t> o16;
  const KelStatus st = demosaic(raw, g, method == "ahd", o8, o16);
  if (st < 0) return tool::fail(cmd, in, tool::statusText(st) + (method == "ahd" ? " (AHD needs 5x5 pixels at least)" : ""));
  const bool png = out.size() >= 4 && strcasecmp(out.c_str() + out.size() - 4, ".png") == 0;
  bool ok;
  if (raw.depth == 16) {
    ok = png ? tool::writePng16(out, o16.data(), raw.w, raw.h) : tool::writeWhole(out, [&](const std::string& tmp) {
      std::ofstream f(tmp, std::ios::binary);
      f << "P6\n" << raw.w << " " << raw.h << "\n65535\n";
      for (uint16_t v : o16) f.put(static_cast<char>(v >> 8)), f.put(static_cast<char>(v & 255));
      f.close();
      return static_cast<bool>(f);
    });
  } else {
    Image img(raw.w, raw.h);
    img.rgb = o8;
    ok = png ? tool::writePng(out, img) : tool::writePpm(out, img);
  }
  return ok ? 0 : tool::fail(cmd, out, std::string("cannot write: ") + std::strerror(errno));
}

int cmdMosaic(int argc, char** argv) {
  const char* cmd = "mosaic";
  std::string in, out, grid = "rggb";
  int depth = 8;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    if (a == "--grid") grid = i + 1 < argc ? argv[++i] : "";
    else if (a == "--depth") {
      if (!tool::intOption(cmd, a, i + 1 < argc ? argv[++i] : nullptr, 8, 16, depth)) return 2;
      if (depth != 8 && depth != 16) return tool::fail(cmd, "", "--depth takes 8 or 16", 2);
    } else if (!a.empty() && a[0] == '-') return tool::fail(cmd, "", "unknown option " + a + " (see kelcc mosaic --help)", 2);
    else if (in.empty()) in = a;
    else if (out.empty()) out = a;
    else return tool::fail(cmd, "", "unexpected argument " + a + " (see kelcc mosaic --help)", 2);
  }
  int g;
  if (in.empty() || out.empty()) return tool::fail(cmd, "", "needs IN and OUT (see kelcc mosaic --help)", 2);
  if (!gridOption(cmd, grid, g) || !tool::outputOk(cmd, out)) return 2;
  Image img;
  if (!tool::loadPicture(cmd, in, img)) return 1;
  return writePgm(out, mosaic(img, g, depth)) ? 0 : tool::fail(cmd, out, std::string("cannot write: ") + std::strerror(errno));
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
