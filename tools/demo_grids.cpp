// The chroma grids that compute values: interlaced-field 4:2:2 <-> 4:2:0,
// filtered upsampling, and the 420 / 411 / 1620 plane conversions.
//
// Raw format i1620 (Y, Cb, Cr planes, one chroma sample per 4 x 4 pixels),
// direct converters i420 <-> i1620 and i420 <-> i411 through the mean-placing
// members, and demo trips of the picture through each.
#include "kelcc_tool.h"

namespace {
using tool::Image;
using Bytes = std::vector<uint8_t>;

size_t px(int w, int h) { return static_cast<size_t>(w) * h; }
size_t bytesOf(int w, int h, int cw, int ch) { return px(w, h) + 2 * px(cw, ch); }
size_t i422Bytes(int w, int h) { return bytesOf(w, h, w / 2, h); }
size_t i420Bytes(int w, int h) { return bytesOf(w, h, w / 2, h / 2); }
size_t i411Bytes(int w, int h) { return bytesOf(w, h, w / 4, h); }
size_t i1620Bytes(int w, int h) { return bytesOf(w, h, w / 4, h / 4); }

KelStatus worse(KelStatus a, KelStatus b) { return a < 0 ? a : b < 0 ? b : (a ? a : b); }

// Three planes one after the other in `raw`: luma, Cb, Cr of cw by ch.
struct Planes {
  Kel8u* p[3];
  int step[3];
  Planes(const uint8_t* raw, int w, int h, int cw, int ch) {
    Kel8u* r = const_cast<Kel8u*>(raw);
    p[0] = r, p[1] = r + px(w, h), p[2] = p[1] + px(cw, ch);
    step[0] = w, step[1] = step[2] = cw;
  }
};
Planes i422(const uint8_t* raw, int w, int h) { return Planes(raw, w, h, w / 2, h); }
Planes i420(const uint8_t* raw, int w, int h) { return Planes(raw, w, h, w / 2, h / 2); }
Planes i411(const uint8_t* raw, int w, int h) { return Planes(raw, w, h, w / 4, h); }
Planes i1620(const uint8_t* raw, int w, int h) { return Planes(raw, w, h, w / 4, h / 4); }

using P3Fn = KelStatus (*)(const Kel8u* const*, const int*, Kel8u**, const int*, KeliSize);
using Layout = Planes (*)(const uint8_t*, int, int);
using Size = size_t (*)(int, int);
// A planes-to-planes member as a move between raw images.
template <P3Fn F, Layout From, Layout To, Size ToBytes>
KelStatus move(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(ToBytes(w, h), 0);
  const Planes s = From(raw, w, h);
  Planes d = To(out.data(), w, h);
  return F(s.p, s.step, d.p, d.step, {w, h});
}

// ---- RGB <-> I420 through I422 planes (the plain layout members) -----------------
KelStatus rgbToI422(const Image& in, Bytes& out) {
  out.assign(i422Bytes(in.w, in.h), 0);
  Planes d = i422(out.data(), in.w, in.h);
  Bytes c2(px(2 * in.w, in.h));
  const KelStatus a = keliRGBToYCbCr422_8u_C3C2R(in.rgb.data(), in.step(), c2.data(), 2 * in.w, in.size());
  return a < 0 ? a : worse(a, keliYCbCr422_8u_C2P3R(c2.data(), 2 * in.w, d.p, d.step, in.size()));
}
KelStatus i422ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  out = Image(w, h);
  const Planes s = i422(raw, w, h);
  Bytes c2(px(2 * w, h));
  const KelStatus a = keliYCbCr422_8u_P3C2R(s.p, s.step, c2.data(), 2 * w, {w, h});
  return a < 0 ? a : worse(a, keliYCbCr422ToRGB_8u_C2C3R(c2.data(), 2 * w, out.rgb.data(), out.step(), {w, h}));
}
// 4:2:2 -> 4:2:0 keeping the even chroma rows, and back repeating them.
KelStatus rgbToI420(const Image& in, Bytes& out) {
  Bytes p422;
  const KelStatus a = rgbToI422(in, p422);
  return a < 0 ? a : worse(a, move<keliYCbCr422ToYCbCr420_8u_P3R, i422, i420, i420Bytes>(p422.data(), in.w, in.h, out));
}
KelStatus i420ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  Bytes p422;
  const KelStatus a = move<keliYCbCr420ToYCbCr422_8u_P3R, i420, i422, i422Bytes>(raw, w, h, p422);
  return a < 0 ? a : worse(a, i422ToRgb(p422.data(), w, h, out));
}

// ---- raw format i1620 ----------------------------------------------------------------
KelStatus i1620ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  Bytes p420;
  const KelStatus a = move<keliYCbCr1620To420_8u_P3R, i1620, i420, i420Bytes>(raw, w, h, p420);
  return a < 0 ? a : worse(a, i420ToRgb(p420.data(), w, h, out));
}
KelStatus rgbToI1620(const Image& in, Bytes& raw) {
  Bytes p420;
  const KelStatus a = rgbToI420(in, p420);
  return a < 0 ? a : worse(a, move<keliYCbCr420To1620_8u_P3R, i420, i1620, i1620Bytes>(p420.data(), in.w, in.h, raw));
}

// ---- demo trips ----------------------------------------------------------------------
// RGB -> planes of the base grid -> a grid and back -> RGB.
using FromRgb = KelStatus (*)(const Image&, Bytes&);
using ToRgb = KelStatus (*)(const uint8_t*, int, int, Image&);
template <FromRgb In, Layout Base, Size BaseBytes, ToRgb Out, P3Fn There, Layout Mid, Size MidBytes, P3Fn Back>
KelStatus trip(const Image& in, Image& out) {
  Bytes base, mid, back;
  KelStatus st = In(in, base);
  if (st >= 0) st = worse(st, move<There, Base, Mid, MidBytes>(base.data(), in.w, in.h, mid));
  if (st >= 0) st = worse(st, move<Back, Mid, Base, BaseBytes>(mid.data(), in.w, in.h, back));
  return st < 0 ? st : worse(st, Out(back.data(), in.w, in.h, out));
}
template <P3Fn There, Layout Mid, Size MidBytes, P3Fn Back>
constexpr auto trip422 = trip<rgbToI422, i422, i422Bytes, i422ToRgb, There, Mid, MidBytes, Back>;
template <P3Fn There, Layout Mid, Size MidBytes, P3Fn Back>
constexpr auto trip420 = trip<rgbToI420, i420, i420Bytes, i420ToRgb, There, Mid, MidBytes, Back>;
// RGB -> UYVY -> field-aware 4:2:0 planes -> UYVY -> RGB.
KelStatus tripInterlacedC2(const Image& in, Image& out) {
  const int w = in.w, h = in.h;
  Bytes c2(px(2 * w, h)), p420(i420Bytes(w, h)), back(px(2 * w, h)), yuy2(px(2 * w, h));
  Planes d = i420(p420.data(), w, h);
  KelStatus st = keliRGBToYCbCr422_8u_C3C2R(in.rgb.data(), in.step(), yuy2.data(), 2 * w, in.size());
  if (st >= 0) st = worse(st, keliYCbCr422ToCbYCr422_8u_C2R(yuy2.data(), 2 * w, c2.data(), 2 * w, {w, h}));
  if (st >= 0) st = worse(st, keliCbYCr422ToYCbCr420_Interlace_8u_C2P3R(c2.data(), 2 * w, d.p, d.step, {w, h}));
  if (st >= 0) st = worse(st, keliYCbCr420ToCbYCr422_Interlace_8u_P3C2R(d.p, d.step, back.data(), 2 * w, {w, h}));
  if (st >= 0) st = worse(st, keliCbYCr422ToYCbCr422_8u_C2R(back.data(), 2 * w, yuy2.data(), 2 * w, {w, h}));
  out = Image(w, h);
  return st < 0 ? st : worse(st, keliYCbCr422ToRGB_8u_C2C3R(yuy2.data(), 2 * w, out.rgb.data(), out.step(), {w, h}));
}
// RGB -> I420 -> I422 by the four-tap vertical filter -> RGB.
KelStatus filtered422(const Image& in, Image& out) {
  Bytes p420, p422;
  KelStatus st = rgbToI420(in, p420);
  if (st >= 0)
    st = worse(st, move<keliYCbCr420ToYCbCr422_Filter_8u_P3R, i420, i422, i422Bytes>(p420.data(), in.w, in.h, p422));
  return st < 0 ? st : worse(st, i422ToRgb(p422.data(), in.w, in.h, out));
}
// RGB -> I420 -> BGRA with chroma interpolated across -> RGB.
KelStatus filteredBgra(const Image& in, Image& out) {
  const int w = in.w, h = in.h;
  Bytes p420, bgra(px(4 * w, h));
  KelStatus st = rgbToI420(in, p420);
  if (st < 0) return st;
  const Planes s = i420(p420.data(), w, h);
  const Kel8u* yCrCb[3] = {s.p[0], s.p[2], s.p[1]};
  st = worse(st, keliYCrCb420ToBGR_Filter_8u_P3C4R(yCrCb, s.step, bgra.data(), 4 * w, {w, h}, 255));
  out = Image(w, h);
  for (size_t i = 0; i < px(w, h); ++i)
    for (int c = 0; c < 3; ++c) out.rgb[3 * i + c] = bgra[4 * i + 2 - c];
  return st;
}

KELCC_TOOL_REGISTER(tool::DemoStep{
    "rgb-i422-interlaced420-i422-rgb",
    "RGB -> 4:2:2 planes -> 4:2:0 and back with field-aware chroma filters",
    trip422<keliYCbCr422To420_Interlace_8u_P3R, i420, i420Bytes, keliYCbCr420To422_Interlace_8u_P3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-uyvy-interlaced420-uyvy-rgb",
                                   "RGB -> UYVY -> field-aware 4:2:0 planes -> UYVY -> RGB", tripInterlacedC2});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-i420-filtered422-rgb",
                                   "RGB -> I420 -> 4:2:2 by the four-tap vertical filter -> RGB", filtered422});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-i420-filtered-bgra-rgb",
                                   "RGB -> I420 -> BGRA with chroma interpolated across -> RGB", filteredBgra});
KELCC_TOOL_REGISTER(tool::DemoStep{
    "rgb-i420-i1620-i420-rgb", "RGB -> I420 -> 1620 (chroma per 4 x 4 pixels) -> I420 with means -> RGB",
    trip420<keliYCbCr420To1620_8u_P3R, i1620, i1620Bytes, keliYCbCr1620To420_8u_P3R>});
KELCC_TOOL_REGISTER(tool::DemoStep{
    "rgb-i420-mean411-i420-rgb", "RGB -> I420 -> 4:1:1 with vertical means -> I420 with horizontal means -> RGB",
    trip420<keliYCbCr420To411_8u_P3R, i411, i411Bytes, keliYCbCr411To420_8u_P3R>});
KELCC_TOOL_REGISTER(tool::RawFormat{"i1620", "Y, Cb, Cr planes, one chroma sample per 4 x 4 pixels (sizes in 4s)",
                                    i1620Bytes, i1620ToRgb, rgbToI1620});
KELCC_TOOL_REGISTER(tool::RawConverter{"i420", "i1620", move<keliYCbCr420To1620_8u_P3R, i420, i1620, i1620Bytes>});
KELCC_TOOL_REGISTER(tool::RawConverter{"i1620", "i420", move<keliYCbCr1620To420_8u_P3R, i1620, i420, i420Bytes>});
KELCC_TOOL_REGISTER(tool::RawConverter{"i420", "i411", move<keliYCbCr420To411_8u_P3R, i420, i411, i411Bytes>});
KELCC_TOOL_REGISTER(tool::RawConverter{"i411", "i420", move<keliYCbCr411To420_8u_P3R, i411, i420, i420Bytes>});
}  // namespace
