// Bit-depth reduction in the tool: `kelcc reduce IN OUT --levels N --dither
// none|fs|jjn|stucki|bayer --noise P`, and demo steps that reduce the test
// picture to four levels per channel by each method. Beside the tool's max
// error and PSNR, each demo line tells the mean error per sample and the
// mean error after a 3x3 box blur of both pictures: dithering trades the
// first for the second, which is what the eye sees from a distance.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "kelcc_tool.h"

namespace {
using tool::Image;

struct Method {
  const char* key;
  KelDitherType type;
  const char* what;
};
constexpr Method kMethods[] = {{"none", kelDitherNone, "nearest level"},
                               {"fs", kelDitherFloydSteinberg, "Floyd-Steinberg"},
                               {"jjn", kelDitherJarvisJudiceNinke, "Jarvis-Judice-Ninke"},
                               {"stucki", kelDitherStucki, "Stucki"},
                               {"bayer", kelDitherBayer, "4x4 ordered"}};

// Mean absolute difference per sample, plain and after a 3x3 box blur.
struct MeanErr {
  double plain = 0, blurred = 0;
};
MeanErr meanError(const Image& a, const Image& b) {
  MeanErr e;
  const int w = a.w, h = a.h;
  auto box = [&](const Image& im, int x, int y, int c) {
    int s = 0, n = 0;
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx) {
        const int xx = x + dx, yy = y + dy;
        if (xx < 0 || yy < 0 || xx >= w || yy >= h) continue;
        s += im.rgb[(static_cast<size_t>(yy) * w + xx) * 3 + c];
        ++n;
      }
    return static_cast<double>(s) / n;
  };
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      for (int c = 0; c < 3; ++c) {
        const size_t i = (static_cast<size_t>(y) * w + x) * 3 + c;
        e.plain += std::abs(int(a.rgb[i]) - int(b.rgb[i]));
        e.blurred += std::fabs(box(a, x, y, c) - box(b, x, y, c));
      }
  const double n = 3.0 * w * h;
  e.plain /= n;
  e.blurred /= n;
  return e;
}

KelStatus reduceImage(const Image& in, Image& out, KelDitherType t, int levels, int noise) {
  out = Image(in.w, in.h);
  return keliReduceBits_8u_C3R(in.rgb.data(), in.step(), out.rgb.data(), out.step(), in.size(), noise, t, levels);
}

// A demo step; its report line is completed with the mean errors once it has run.
template <int M, int Noise>
KelStatus demoStep(const Image& in, Image& out) {
  const KelStatus st = reduceImage(in, out, kMethods[M].type, 4, Noise);
  if (st < 0) return st;
  const MeanErr e = meanError(in, out);
  const std::string name = std::string("reduce-") + kMethods[M].key + (Noise ? "-noise" : "");
  for (tool::DemoStep& s : tool::demoSteps())
    if (s.name == name) {
      char buf[160];
      std::snprintf(buf, sizeof buf, "ReduceBits 8u C3, 4 levels, %s%s; mean error %.2f, blurred %.2f",
                    kMethods[M].what, Noise ? " with 25% noise" : "", e.plain, e.blurred);
      s.what = buf;
    }
  return st;
}

KELCC_TOOL_REGISTER(tool::DemoStep{"reduce-none", "ReduceBits 8u C3, nearest level", demoStep<0, 0>});
KELCC_TOOL_REGISTER(tool::DemoStep{"reduce-fs", "ReduceBits 8u C3, Floyd-Steinberg", demoStep<1, 0>});
KELCC_TOOL_REGISTER(tool::DemoStep{"reduce-fs-noise", "ReduceBits 8u C3, Floyd-Steinberg, noise", demoStep<1, 25>});
KELCC_TOOL_REGISTER(tool::DemoStep{"reduce-jjn", "ReduceBits 8u C3, Jarvis-Judice-Ninke", demoStep<2, 0>});
KELCC_TOOL_REGISTER(tool::DemoStep{"reduce-stucki", "ReduceBits 8u C3, Stucki", demoStep<3, 0>});
KELCC_TOOL_REGISTER(tool::DemoStep{"reduce-bayer", "ReduceBits 8u C3, ordered", demoStep<4, 0>});
KELCC_TOOL_REGISTER(tool::DemoStep{"reduce-bayer-noise", "ReduceBits 8u C3, ordered, noise", demoStep<4, 25>});

int reduceCommand(int argc, char** argv) {
  const char* cmd = "reduce";
  std::string in, outPath;
  int levels = 4, noise = 0;
  KelDitherType type = kelDitherFloydSteinberg;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    if (a.empty() || a[0] != '-') {
      if (in.empty()) in = a;
      else if (outPath.empty()) outPath = a;
      else return tool::fail(cmd, "", "unexpected argument " + a + " (see kelcc reduce --help)", 2);
      continue;
    }
    const char* v = i + 1 < argc ? argv[++i] : nullptr;
    if (a == "--levels") {
      if (!tool::intOption(cmd, a, v, 2, 256, levels)) return 2;
    } else if (a == "--noise") {
      if (!tool::intOption(cmd, a, v, 0, 100, noise)) return 2;
    } else if (a == "--dither") {
      bool found = false;
      for (const Method& m : kMethods)
        if (v && std::strcmp(m.key, v) == 0) type = m.type, found = true;
      if (!found)
        return tool::fail(cmd, "", std::string("--dither takes none, fs, jjn, stucki or bayer, got '") + (v ? v : "") + "'",
                          2);
    } else {
      return tool::fail(cmd, "", "unknown option " + a + " (see kelcc reduce --help)", 2);
    }
  }
  if (in.empty() || outPath.empty()) return tool::fail(cmd, "", "needs IN and OUT (see kelcc reduce --help)", 2);
  if (!tool::outputOk(cmd, outPath)) return 2;
  Image src, dst;
  if (!tool::loadPicture(cmd, in, src)) return 1;
  const KelStatus st = reduceImage(src, dst, type, levels, noise);
  if (st < 0) return tool::fail(cmd, in, tool::statusText(st));
  if (!tool::writePng(outPath, dst)) return tool::fail(cmd, outPath, "cannot write");
  const MeanErr e = meanError(src, dst);
  std::printf("%dx%d, %d levels: mean error %.2f, after a 3x3 blur %.2f\n", src.w, src.h, levels, e.plain, e.blurred);
  return 0;
}

KELCC_TOOL_REGISTER(tool::Command{"reduce", "IN.png OUT.png --levels N --dither none|fs|jjn|stucki|bayer --noise P",
                                  reduceCommand,
                                  "Quantises every channel of a picture to N levels, with a dither, and prints the mean\n"
                                  "error before and after a 3x3 blur.\n"
                                  "  --levels N    2..256 output levels (default 4)\n"
                                  "  --dither D    none, fs (Floyd-Steinberg, default), jjn (Jarvis-Judice-Ninke),\n"
                                  "                stucki, bayer (4x4 ordered)\n"
                                  "  --noise P     0..100 percent of noise mixed into the decisions (default 0)"});

}  // namespace
