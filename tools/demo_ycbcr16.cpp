// Luma-chroma images straight to 16-bit display pixels: YCbCr 4:2:0 to 565
// plain and dithered, YUV 4:2:0 to dithered 444, YCbCr 4:4:4 to 555, shown
// after widening the words back to 8-bit RGB. Also "bgr555" and "bgr444"
// raw formats written through YCbCr.
#include <algorithm>

#include "kelcc_tool.h"

namespace {
using tool::Image;

// Planes of a 4:2:0 image with chroma rounded up to whole samples.
struct Planes420 {
  std::vector<Kel8u> buf;
  Kel8u* p[3];
  int step[3];
  Planes420(int w, int h) {
    const int cw = (w + 1) >> 1, ch = (h + 1) >> 1;
    buf.resize(static_cast<size_t>(w) * h + 2 * static_cast<size_t>(cw) * ch);
    p[0] = buf.data(), p[1] = p[0] + static_cast<size_t>(w) * h, p[2] = p[1] + static_cast<size_t>(cw) * ch;
    step[0] = w, step[1] = step[2] = cw;
  }
  const Kel8u* const* in() const { return p; }
};

// Widens words with fields of `bits` (red, green, blue) at `shift` to 8-bit
// RGB, repeating the top bits in the low ones so that full fields give 255.
void widen(const std::vector<Kel16u>& w, const int bits[3], const int shift[3], Image& out) {
  for (size_t i = 0; i < w.size(); ++i)
    for (int k = 0; k < 3; ++k) {
      const int n = bits[k], f = (w[i] >> shift[k]) & ((1 << n) - 1);
      int v = 0;
      for (int s = 8 - n; s > -n; s -= n) v |= s >= 0 ? f << s : f >> -s;
      out.rgb[3 * i + k] = static_cast<Kel8u>(v);
    }
}
const int k565[3] = {5, 6, 5}, kBgr565[3] = {11, 5, 0};
const int k555[3] = {5, 5, 5}, kBgr555[3] = {10, 5, 0};
const int k444[3] = {4, 4, 4}, kBgr444[3] = {8, 4, 0}, kRgb444[3] = {0, 4, 8};

using To16 = KelStatus (*)(const Kel8u* const src[3], const int srcStep[3], Kel16u*, int, KeliSize);
KelStatus ycbcr420To565(const Image& in, Image& out, To16 f) {
  Planes420 pl(in.w, in.h);
  if (KelStatus st = keliRGBToYCbCr420_8u_C3P3R(in.rgb.data(), in.step(), pl.p, pl.step, in.size()); st < 0) return st;
  std::vector<Kel16u> w(static_cast<size_t>(in.w) * in.h);
  if (KelStatus st = f(pl.in(), pl.step, w.data(), 2 * in.w, in.size())) return st;
  widen(w, k565, kBgr565, out);
  return kelStatusOk;
}
KelStatus plain565(const Image& in, Image& out) { return ycbcr420To565(in, out, keliYCbCr420ToBGR565_8u16u_P3C3R); }
KelStatus dither565(const Image& in, Image& out) {
  return ycbcr420To565(in, out, keliYCbCr420ToBGR565Dither_8u16u_P3C3R);
}

KelStatus yuv420To444Dither(const Image& in, Image& out) {
  Planes420 pl(in.w, in.h);
  if (KelStatus st = keliRGBToYUV420_8u_C3P3R(in.rgb.data(), in.step(), pl.p, pl.step, in.size()); st < 0) return st;
  std::vector<Kel16u> w(static_cast<size_t>(in.w) * in.h);
  if (KelStatus st = keliYUV420ToRGB444Dither_8u16u_P3C3R(pl.in(), pl.step, w.data(), 2 * in.w, in.size())) return st;
  widen(w, k444, kRgb444, out);
  return kelStatusOk;
}

// RGB -> interleaved YCbCr -> 16-bit words.
using C3To16 = KelStatus (*)(const Kel8u*, int, Kel16u*, int, KeliSize);
KelStatus toWords(const Image& in, C3To16 f, std::vector<Kel16u>& w) {
  std::vector<Kel8u> ycc(in.rgb.size());
  if (KelStatus st = keliRGBToYCbCr_8u_C3R(in.rgb.data(), in.step(), ycc.data(), in.step(), in.size())) return st;
  w.resize(static_cast<size_t>(in.w) * in.h);
  return f(ycc.data(), in.step(), w.data(), 2 * in.w, in.size());
}
KelStatus ycbcrTo555(const Image& in, Image& out) {
  std::vector<Kel16u> w;
  if (KelStatus st = toWords(in, keliYCbCrToBGR555_8u16u_C3R, w)) return st;
  widen(w, k555, kBgr555, out);
  return kelStatusOk;
}

// Raw words, little-endian, red in the high bits.
size_t words(int w, int h) { return static_cast<size_t>(2) * w * h; }
template <const int* Bits, const int* Shift>
KelStatus wordsToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  std::vector<Kel16u> v(static_cast<size_t>(w) * h);
  std::copy(raw, raw + words(w, h), reinterpret_cast<uint8_t*>(v.data()));
  widen(v, Bits, Shift, out);
  return kelStatusOk;
}
template <C3To16 F>
KelStatus rgbToWords(const Image& in, std::vector<uint8_t>& raw) {
  std::vector<Kel16u> w;
  const KelStatus st = toWords(in, F, w);
  raw.assign(reinterpret_cast<const uint8_t*>(w.data()), reinterpret_cast<const uint8_t*>(w.data() + w.size()));
  return st;
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycbcr420-bgr565", "RGB -> YCbCr 4:2:0 -> BGR565 (top bits kept)", plain565});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycbcr420-bgr565dither", "RGB -> YCbCr 4:2:0 -> BGR565, 4x4 ordered dither",
                                   dither565});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-yuv420-rgb444dither", "RGB -> YUV 4:2:0 -> RGB444, 4x4 ordered dither",
                                   yuv420To444Dither});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycbcr-bgr555", "RGB -> YCbCr -> BGR555", ycbcrTo555});
KELCC_TOOL_REGISTER(tool::RawFormat{"bgr555", "16-bit words, red in bits 14-10, written through YCbCr", words,
                                    wordsToRgb<k555, kBgr555>, rgbToWords<keliYCbCrToBGR555_8u16u_C3R>});
KELCC_TOOL_REGISTER(tool::RawFormat{"bgr444", "16-bit words, red in bits 11-8, written through YCbCr (dithered)",
                                    words, wordsToRgb<k444, kBgr444>, rgbToWords<keliYCbCrToBGR444Dither_8u16u_C3R>});
}  // namespace
