// Planar and semi-planar 4:2:2, 4:2:0 and 4:1:1 studio-range YCbCr as raw
// formats (i422, i420, i411, nv11, yvyu), direct moves between them and the
// packed and NV12 formats, and two demo trips: chroma thinned to 4:1:1 and
// back, and 4:2:0 folded into 4:1:1 and back, which loses nothing.
#include "kelcc_tool.h"

namespace {
using tool::Image;

size_t px(int w, int h) { return static_cast<size_t>(w) * h; }
size_t c2Bytes(int w, int h) { return 2 * px(w, h); }
size_t i422Bytes(int w, int h) { return px(w, h) + 2 * px(w / 2, h); }
size_t i420Bytes(int w, int h) { return px(w, h) + 2 * px(w / 2, h / 2); }
size_t i411Bytes(int w, int h) { return px(w, h) + 2 * px(w / 4, h); }
size_t nv11Bytes(int w, int h) { return px(w, h) + px(2 * (w / 4), h); }
size_t nv12Bytes(int w, int h) { return px(w, h) + px(w & ~1, h / 2); }

KelStatus worse(KelStatus a, KelStatus b) { return a < 0 ? a : b < 0 ? b : (a ? a : b); }

// Three planes one after the other: luma, Cb, Cr, chroma `cw` by `ch`.
struct Planes {
  Kel8u* p[3];
  int step[3];
  Planes(const uint8_t* raw, int w, int h, int cw, int ch) {
    Kel8u* r = const_cast<Kel8u*>(raw);
    p[0] = r, p[1] = r + px(w, h), p[2] = r + px(w, h) + px(cw, ch);
    step[0] = w, step[1] = step[2] = cw;
  }
  const Kel8u* const* src() const { return p; }
};
Planes i422(const uint8_t* raw, int w, int h) { return Planes(raw, w, h, w / 2, h); }
Planes i420(const uint8_t* raw, int w, int h) { return Planes(raw, w, h, w / 2, h / 2); }
Planes i411(const uint8_t* raw, int w, int h) { return Planes(raw, w, h, w / 4, h); }
// Luma plane then one plane of Cb/Cr pairs.
struct Pairs {
  Kel8u *y, *c;
  int cStep;
  Pairs(const uint8_t* raw, int w, int h, int cStep_) : cStep(cStep_) {
    y = const_cast<Kel8u*>(raw), c = y + px(w, h);
  }
};
Pairs nv11(const uint8_t* raw, int w, int h) { return Pairs(raw, w, h, 2 * (w / 4)); }
Pairs nv12(const uint8_t* raw, int w, int h) { return Pairs(raw, w, h, w & ~1); }

// ---- direct moves --------------------------------------------------------------
using Bytes = std::vector<uint8_t>;
KelStatus yuy2ToI422(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(i422Bytes(w, h), 0);
  Planes d = i422(out.data(), w, h);
  return keliYCbCr422_8u_C2P3R(raw, 2 * w, d.p, d.step, {w, h});
}
KelStatus uyvyToI422(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(i422Bytes(w, h), 0);
  Planes d = i422(out.data(), w, h);
  return keliCbYCr422ToYCbCr422_8u_C2P3R(raw, 2 * w, d.p, d.step, {w, h});
}
KelStatus yvyuToI422(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(i422Bytes(w, h), 0);
  Planes d = i422(out.data(), w, h);
  return keliYCrCb422ToYCbCr422_8u_C2P3R(raw, 2 * w, d.p, d.step, {w, h});
}
KelStatus i422ToYuy2(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(c2Bytes(w, h), 0);
  const Planes s = i422(raw, w, h);
  return keliYCbCr422_8u_P3C2R(s.src(), s.step, out.data(), 2 * w, {w, h});
}
KelStatus i422ToYvyu(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(c2Bytes(w, h), 0);
  const Planes s = i422(raw, w, h);
  return keliYCbCr422ToYCrCb422_8u_P3C2R(s.src(), s.step, out.data(), 2 * w, {w, h});
}
KelStatus yuy2ToYvyu(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(c2Bytes(w, h), 0);
  return keliYCbCr422ToYCrCb422_8u_C2R(raw, 2 * w, out.data(), 2 * w, {w, h});
}
KelStatus yuy2ToI420(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(i420Bytes(w, h), 0);
  Planes d = i420(out.data(), w, h);
  return keliYCbCr422ToYCbCr420_8u_C2P3R(raw, 2 * w, d.p, d.step, {w, h});
}
KelStatus i420ToI422(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(i422Bytes(w, h), 0);
  const Planes s = i420(raw, w, h);
  Planes d = i422(out.data(), w, h);
  return keliYCbCr420ToYCbCr422_8u_P3R(s.src(), s.step, d.p, d.step, {w, h});
}
KelStatus i420ToNv12(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(nv12Bytes(w, h), 0);
  const Planes s = i420(raw, w, h);
  Pairs d = nv12(out.data(), w, h);
  return keliYCbCr420_8u_P3P2R(s.src(), s.step, d.y, w, d.c, d.cStep, {w, h});
}
KelStatus nv12ToI420(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(i420Bytes(w, h), 0);
  const Pairs s = nv12(raw, w, h);
  Planes d = i420(out.data(), w, h);
  return keliYCbCr420_8u_P2P3R(s.y, w, s.c, s.cStep, d.p, d.step, {w, h});
}
KelStatus yuy2ToI411(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(i411Bytes(w, h), 0);
  Planes d = i411(out.data(), w, h);
  return keliYCbCr422ToYCbCr411_8u_C2P3R(raw, 2 * w, d.p, d.step, {w, h});
}
KelStatus yuy2ToNv11(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(nv11Bytes(w, h), 0);
  Pairs d = nv11(out.data(), w, h);
  return keliYCbCr422ToYCbCr411_8u_C2P2R(raw, 2 * w, d.y, w, d.c, d.cStep, {w, h});
}
KelStatus i411ToYuy2(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(c2Bytes(w, h), 0);
  const Planes s = i411(raw, w, h);
  return keliYCbCr411ToYCbCr422_8u_P3C2R(s.src(), s.step, out.data(), 2 * w, {w, h});
}
KelStatus nv11ToYuy2(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(c2Bytes(w, h), 0);
  const Pairs s = nv11(raw, w, h);
  return keliYCbCr411ToYCbCr422_8u_P2C2R(s.y, w, s.c, s.cStep, out.data(), 2 * w, {w, h});
}
KelStatus i411ToNv11(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(nv11Bytes(w, h), 0);
  const Planes s = i411(raw, w, h);
  Pairs d = nv11(out.data(), w, h);
  return keliYCbCr411_8u_P3P2R(s.src(), s.step, d.y, w, d.c, d.cStep, {w, h});
}
KelStatus nv11ToI411(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(i411Bytes(w, h), 0);
  const Pairs s = nv11(raw, w, h);
  Planes d = i411(out.data(), w, h);
  return keliYCbCr411_8u_P2P3R(s.y, w, s.c, s.cStep, d.p, d.step, {w, h});
}
KelStatus i411ToNv12(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(nv12Bytes(w, h), 0);
  const Planes s = i411(raw, w, h);
  Pairs d = nv12(out.data(), w, h);
  return keliYCbCr411ToYCbCr420_8u_P3P2R(s.src(), s.step, d.y, w, d.c, d.cStep, {w, h});
}
KelStatus nv12ToI411(const uint8_t* raw, int w, int h, Bytes& out) {
  out.assign(i411Bytes(w, h), 0);
  const Pairs s = nv12(raw, w, h);
  Planes d = i411(out.data(), w, h);
  return keliYCbCr420ToYCbCr411_8u_P2P3R(s.y, w, s.c, s.cStep, d.p, d.step, {w, h});
}

// ---- raw formats: through YUY2 (the packed format the RGB members speak) -----------
KelStatus rgbToYuy2(const Image& in, Bytes& c2) {
  c2.resize(c2Bytes(in.w, in.h));
  return keliRGBToYCbCr422_8u_C3C2R(in.rgb.data(), in.step(), c2.data(), 2 * in.w, in.size());
}
KelStatus yuy2ToRgb(const uint8_t* c2, int w, int h, Image& out) {
  out = Image(w, h);
  return keliYCbCr422ToRGB_8u_C2C3R(c2, 2 * w, out.rgb.data(), out.step(), out.size());
}
using Move = KelStatus (*)(const uint8_t*, int, int, Bytes&);
template <Move... Steps>
KelStatus chain(const uint8_t* raw, int w, int h, Bytes& out) {
  Bytes cur, next;
  const uint8_t* p = raw;
  KelStatus st = kelStatusOk;
  for (Move m : {Steps...}) {
    st = worse(st, m(p, w, h, next));
    if (st < 0) return st;
    cur.swap(next);
    p = cur.data();
  }
  out = cur;
  return st;
}
template <Move ToYuy2>
KelStatus toRgb(const uint8_t* raw, int w, int h, Image& out) {
  Bytes c2;
  const KelStatus a = ToYuy2(raw, w, h, c2);
  return a < 0 ? a : worse(a, yuy2ToRgb(c2.data(), w, h, out));
}
template <Move FromYuy2>
KelStatus fromRgb(const Image& in, Bytes& raw) {
  Bytes c2;
  const KelStatus a = rgbToYuy2(in, c2);
  return a < 0 ? a : worse(a, FromYuy2(c2.data(), in.w, in.h, raw));
}

// ---- demo steps ----------------------------------------------------------------
// RGB -> YUY2 -> 4:1:1 planes -> YUY2 -> RGB: every second chroma column is
// dropped and the kept one repeated.
KelStatus thin411(const Image& in, Image& out) {
  Bytes c2, back;
  KelStatus st = rgbToYuy2(in, c2);
  if (st >= 0) st = worse(st, chain<yuy2ToI411, i411ToYuy2>(c2.data(), in.w, in.h, back));
  return st < 0 ? st : worse(st, yuy2ToRgb(back.data(), in.w, in.h, out));
}
// RGB -> YUY2 -> I420 -> NV12 -> 4:1:1 planes -> NV12 -> I420 -> I422 -> YUY2
// -> RGB: the 4:2:0 <-> 4:1:1 moves only rearrange, so the picture equals
// that of the plain 4:2:0 trip.
KelStatus fold411(const Image& in, Image& out) {
  Bytes c2, back;
  KelStatus st = rgbToYuy2(in, c2);
  if (st >= 0)
    st = worse(st, chain<yuy2ToI420, i420ToNv12, nv12ToI411, i411ToNv12, nv12ToI420, i420ToI422, i422ToYuy2>(
                       c2.data(), in.w, in.h, back));
  return st < 0 ? st : worse(st, yuy2ToRgb(back.data(), in.w, in.h, out));
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-yuy2-i411-rgb", "RGB -> YUY2 -> 4:1:1 planes -> YUY2 -> RGB (chroma halved again)",
                                   thin411});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-i420-i411-i420-rgb",
                                   "RGB -> YUY2 -> I420 -> NV12 -> 4:1:1 -> NV12 -> I420 -> YUY2 -> RGB (4:2:0 <-> 4:1:1 "
                                   "rearranges, loses nothing)",
                                   fold411});
KELCC_TOOL_REGISTER(tool::RawFormat{"i422", "Y, Cb, Cr planes, 4:2:2 (studio-range YCbCr)", i422Bytes,
                                    toRgb<i422ToYuy2>, fromRgb<yuy2ToI422>});
KELCC_TOOL_REGISTER(tool::RawFormat{"i420", "Y, Cb, Cr planes, 4:2:0 (studio-range YCbCr)", i420Bytes,
                                    toRgb<chain<i420ToI422, i422ToYuy2>>, fromRgb<yuy2ToI420>});
KELCC_TOOL_REGISTER(tool::RawFormat{"i411", "Y, Cb, Cr planes, 4:1:1 (studio-range YCbCr)", i411Bytes,
                                    toRgb<i411ToYuy2>, fromRgb<yuy2ToI411>});
KELCC_TOOL_REGISTER(tool::RawFormat{"nv11", "Y plane, Cb Cr pairs, 4:1:1 (studio-range YCbCr)", nv11Bytes,
                                    toRgb<nv11ToYuy2>, fromRgb<yuy2ToNv11>});
KELCC_TOOL_REGISTER(tool::RawFormat{"yvyu", "packed Y0 Cr Y1 Cb, 4:2:2 (studio-range YCbCr)", c2Bytes,
                                    toRgb<chain<yvyuToI422, i422ToYuy2>>, fromRgb<yuy2ToYvyu>});
KELCC_TOOL_REGISTER(tool::RawConverter{"yuy2", "i422", yuy2ToI422});
KELCC_TOOL_REGISTER(tool::RawConverter{"uyvy", "i422", uyvyToI422});
KELCC_TOOL_REGISTER(tool::RawConverter{"yvyu", "i422", yvyuToI422});
KELCC_TOOL_REGISTER(tool::RawConverter{"i422", "yuy2", i422ToYuy2});
KELCC_TOOL_REGISTER(tool::RawConverter{"i422", "yvyu", i422ToYvyu});
KELCC_TOOL_REGISTER(tool::RawConverter{"yuy2", "yvyu", yuy2ToYvyu});
KELCC_TOOL_REGISTER(tool::RawConverter{"yuy2", "i420", yuy2ToI420});
KELCC_TOOL_REGISTER(tool::RawConverter{"i420", "i422", i420ToI422});
KELCC_TOOL_REGISTER(tool::RawConverter{"i420", "nv12", i420ToNv12});
KELCC_TOOL_REGISTER(tool::RawConverter{"nv12", "i420", nv12ToI420});
KELCC_TOOL_REGISTER(tool::RawConverter{"yuy2", "i411", yuy2ToI411});
KELCC_TOOL_REGISTER(tool::RawConverter{"yuy2", "nv11", yuy2ToNv11});
KELCC_TOOL_REGISTER(tool::RawConverter{"i411", "yuy2", i411ToYuy2});
KELCC_TOOL_REGISTER(tool::RawConverter{"nv11", "yuy2", nv11ToYuy2});
KELCC_TOOL_REGISTER(tool::RawConverter{"i411", "nv11", i411ToNv11});
KELCC_TOOL_REGISTER(tool::RawConverter{"nv11", "i411", nv11ToI411});
KELCC_TOOL_REGISTER(tool::RawConverter{"i411", "nv12", i411ToNv12});
KELCC_TOOL_REGISTER(tool::RawConverter{"nv12", "i411", nv12ToI411});
}  // namespace
