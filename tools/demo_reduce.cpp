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
  if (argc < 2) {
    std::fprintf(stderr, "kelcc reduce: need IN and OUT\n");
    return 2;
  }
  const std::string in = argv[0], outPath = argv[1];
  int levels = 4, noise = 0;
  KelDitherType type = kelDitherFloydSteinberg;
  for (int i = 2; i < argc; ++i) {
    const std::string a = argv[i];
    if (i + 1 >= argc) {
      std::fprintf(stderr, "kelcc reduce: %s needs a value\n", a.c_str());
      return 2;
    }
    const char* v = argv[++i];
    if (a == "--levels") {
      levels = std::atoi(v);
    } else if (a == "--noise") {
      noise = std::atoi(v);
    } else if (a == "--dither") {
      bool found = false;
      for (const Method& m : kMethods)
        if (std::strcmp(m.key, v) == 0) type = m.type, found = true;
      if (!found) {
        std::fprintf(stderr, "kelcc reduce: unknown dither %s (none, fs, jjn, stucki, bayer)\n", v);
        return 2;
      }
    } else {
      std::fprintf(stderr, "kelcc reduce: unknown option %s\n", a.c_str());
      return 2;
    }
  }
  Image src, dst;
  if (!tool::readImage(in, src)) {
    std::fprintf(stderr, "kelcc reduce: cannot read %s\n", in.c_str());
    return 1;
  }
  const KelStatus st = reduceImage(src, dst, type, levels, noise);
  if (st < 0) {
    std::fprintf(stderr, "kelcc reduce: status %d (levels 2..256, noise 0..100)\n", st);
    return 1;
  }
  if (!tool::writePng(outPath, dst)) {
    std::fprintf(stderr, "kelcc reduce: cannot write %s\n", outPath.c_str());
    return 1;
  }
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
