// Colour twist in the tool: `kelcc twist IN.png OUT.png --matrix "..."`
// applies a 3 x 4 matrix to a picture, and the demo shows a sepia rendition
// and a round trip through a float YUV matrix and its inverse.
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "kelcc_tool.h"

namespace {
using tool::Image;

// Rows for R, G, B out; columns the weights of R, G, B in and a constant.
const Kel32f kSepia[3][4] = {{0.393f, 0.769f, 0.189f, 0.0f},
                             {0.349f, 0.686f, 0.168f, 0.0f},
                             {0.272f, 0.534f, 0.131f, 0.0f}};
// Analogue YUV from RGB on the 0..1 scale, and its inverse.
const Kel32f kToYuv[3][4] = {{0.299f, 0.587f, 0.114f, 0.0f},
                             {-0.147f, -0.289f, 0.436f, 0.0f},
                             {0.615f, -0.515f, -0.100f, 0.0f}};
const Kel32f kFromYuv[3][4] = {{1.0f, 0.0f, 1.140f, 0.0f},
                               {1.0f, -0.395f, -0.581f, 0.0f},
                               {1.0f, 2.032f, 0.0f, 0.0f}};

KelStatus sepia(const Image& in, Image& out) {
  return keliColorTwist32f_8u_C3R(in.rgb.data(), in.step(), out.rgb.data(), out.step(), in.size(), kSepia);
}

// RGB -> YUV -> RGB in single precision, the second twist in place.
KelStatus yuvRoundTrip(const Image& in, Image& out) {
  const size_t n = in.rgb.size();
  std::vector<Kel32f> a(n), b(n);
  for (size_t i = 0; i < n; ++i) a[i] = in.rgb[i] / 255.0f;
  const int step = 3 * in.w * static_cast<int>(sizeof(Kel32f));
  if (KelStatus st = keliColorTwist_32f_C3R(a.data(), step, b.data(), step, in.size(), kToYuv)) return st;
  if (KelStatus st = keliColorTwist_32f_C3IR(b.data(), step, in.size(), kFromYuv)) return st;
  for (size_t i = 0; i < n; ++i) {
    const float v = b[i] * 255.0f + 0.5f;
    out.rgb[i] = static_cast<uint8_t>(v < 0.0f ? 0.0f : (v > 255.0f ? 255.0f : v));
  }
  return kelStatusOk;
}

// "a,b,c,d;e,f,g,h;i,j,k,l", or the name "sepia".
bool parseMatrix(const char* text, Kel32f m[3][4]) {
  if (std::strcmp(text, "sepia") == 0) {
    std::memcpy(m, kSepia, sizeof(kSepia));
    return true;
  }
  const char* p = text;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 4; ++j) {
      char* end = nullptr;
      m[i][j] = std::strtof(p, &end);
      if (end == p) return false;
      const char want = j < 3 ? ',' : (i < 2 ? ';' : '\0');
      while (*end == ' ') ++end;
      if (*end != want) return false;
      p = end + (want ? 1 : 0);
    }
  return true;
}

int twistCommand(int argc, char** argv) {
  const char* cmd = "twist";
  std::string in, out, matrix;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    if (a == "--matrix") matrix = i + 1 < argc ? argv[++i] : "";
    else if (!a.empty() && a[0] == '-' && a.size() > 1 && !std::isdigit(static_cast<unsigned char>(a[1])))
      return tool::fail(cmd, "", "unknown option " + a + " (see kelcc twist --help)", 2);
    else if (in.empty()) in = a;
    else if (out.empty()) out = a;
    else return tool::fail(cmd, "", "unexpected argument " + a + " (see kelcc twist --help)", 2);
  }
  if (in.empty() || out.empty() || matrix.empty())
    return tool::fail(cmd, "", "needs IN, OUT and --matrix (see kelcc twist --help)", 2);
  Kel32f m[3][4];
  if (!parseMatrix(matrix.c_str(), m))
    return tool::fail(cmd, "", "--matrix takes three rows of four numbers, \"a,b,c,d;e,f,g,h;i,j,k,l\", or sepia; got '" +
                                   matrix + "'",
                      2);
  if (!tool::outputOk(cmd, out)) return 2;
  Image img;
  if (!tool::loadPicture(cmd, in, img)) return 1;
  Image dst(img.w, img.h);
  if (KelStatus st = keliColorTwist32f_8u_C3R(img.rgb.data(), img.step(), dst.rgb.data(), dst.step(), img.size(), m))
    return tool::fail(cmd, in, tool::statusText(st));
  return tool::writePng(out, dst) ? 0 : tool::fail(cmd, out, "cannot write");
}

KELCC_TOOL_REGISTER(tool::DemoStep{"twist-sepia", "colour twist 8u: sepia matrix", sepia, false});
KELCC_TOOL_REGISTER(tool::DemoStep{"twist-yuv-rgb-32f", "colour twist 32f: RGB -> YUV -> RGB (in place)",
                                   yuvRoundTrip});
KELCC_TOOL_REGISTER(tool::Command{"twist", "IN.png OUT.png --matrix \"a,b,c,d;e,f,g,h;i,j,k,l\" (or sepia)",
                                  twistCommand,
                                  "Multiplies every pixel by a 3 x 4 matrix: output channel i = a_i*R + b_i*G + c_i*B + d_i.\n"
                                  "  --matrix M    three rows of four numbers, rows split by ';', or the word sepia"});
}  // namespace
