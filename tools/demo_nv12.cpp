// NV12, YV12, YUY2 and UYVY (studio-range YCbCr) as raw formats, direct
// moves between them, and the NV12 deinterlacer at work on the picture.
#include "kelcc_tool.h"

namespace {
using tool::Image;

size_t px(int w, int h) { return static_cast<size_t>(w) * h; }
size_t c2Bytes(int w, int h) { return 2 * px(w, h); }
size_t yuv420Bytes(int w, int h) { return px(w, h) + 2 * px(w / 2, h / 2); }

// A 4:2:0 raw image: luma, then NV12's pair plane or YV12's Cr and Cb planes.
struct Raw420 {
  Kel8u *y, *c, *cr, *cb;
  Raw420(uint8_t* raw, int w, int h)
      : y(raw), c(raw + px(w, h)), cr(raw + px(w, h)), cb(raw + px(w, h) + px(w / 2, h / 2)) {}
};

// The picture's trip into YCbCr passes through YUY2; warnings go on.
KelStatus worse(KelStatus a, KelStatus b) { return a < 0 ? a : b < 0 ? b : (a ? a : b); }
KelStatus rgbToYuy2(const Image& in, std::vector<uint8_t>& c2) {
  c2.resize(c2Bytes(in.w, in.h));
  return keliRGBToYCbCr422_8u_C3C2R(in.rgb.data(), in.step(), c2.data(), 2 * in.w, in.size());
}
KelStatus yuy2ToRgb(const uint8_t* c2, int w, int h, Image& out) {
  out = Image(w, h);
  return keliYCbCr422ToRGB_8u_C2C3R(c2, 2 * w, out.rgb.data(), out.step(), out.size());
}

// ---- direct moves --------------------------------------------------------
KelStatus nv12ToYuy2(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out) {
  out.resize(c2Bytes(w, h));
  Raw420 s(const_cast<uint8_t*>(raw), w, h);
  return keliYCbCr420ToYCbCr422_8u_P2C2R(s.y, w, s.c, w & ~1, out.data(), 2 * w, {w, h});
}
KelStatus nv12ToUyvy(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out) {
  out.resize(c2Bytes(w, h));
  Raw420 s(const_cast<uint8_t*>(raw), w, h);
  return keliYCbCr420ToCbYCr422_8u_P2C2R(s.y, w, s.c, w & ~1, out.data(), 2 * w, {w, h});
}
// The planes member writes the first byte of each pair (Cb) to dst[1].
KelStatus nv12ToYv12(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out) {
  out.resize(yuv420Bytes(w, h));
  Raw420 s(const_cast<uint8_t*>(raw), w, h), d(out.data(), w, h);
  Kel8u* dst[3] = {d.y, d.cb, d.cr};
  const int steps[3] = {w, w / 2, w / 2};
  return keliYCbCr420ToYCrCb420_8u_P2P3R(s.y, w, s.c, w & ~1, dst, steps, {w, h});
}
template <bool CbYCr>
KelStatus c2ToNv12(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out) {
  out.resize(yuv420Bytes(w, h));
  Raw420 d(out.data(), w, h);
  return CbYCr ? keliCbYCr422ToYCbCr420_8u_C2P2R(raw, 2 * w, d.y, w, d.c, w & ~1, {w, h})
               : keliYCbCr422ToYCbCr420_8u_C2P2R(raw, 2 * w, d.y, w, d.c, w & ~1, {w, h});
}
template <bool CbYCr>
KelStatus c2ToYv12(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out) {
  out.resize(yuv420Bytes(w, h));
  Raw420 d(out.data(), w, h);
  Kel8u* dst[3] = {d.y, d.cr, d.cb};
  const int steps[3] = {w, w / 2, w / 2};
  return CbYCr ? keliCbYCr422ToYCrCb420_8u_C2P3R(raw, 2 * w, dst, steps, {w, h})
               : keliYCbCr422ToYCrCb420_8u_C2P3R(raw, 2 * w, dst, steps, {w, h});
}
template <bool FromCbYCr>
KelStatus swapC2(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out) {
  out.resize(c2Bytes(w, h));
  return FromCbYCr ? keliCbYCr422ToYCbCr422_8u_C2R(raw, 2 * w, out.data(), 2 * w, {w, h})
                   : keliYCbCr422ToCbYCr422_8u_C2R(raw, 2 * w, out.data(), 2 * w, {w, h});
}
KelStatus yv12ToNv12(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out) {
  out.resize(yuv420Bytes(w, h));
  Raw420 s(const_cast<uint8_t*>(raw), w, h), d(out.data(), w, h);
  const Kel8u* src[3] = {s.y, s.cr, s.cb};
  const int steps[3] = {w, w / 2, w / 2};
  return keliYCrCb420ToYCbCr420_8u_P3P2R(src, steps, d.y, w, d.c, w & ~1, {w, h});
}
template <bool CbYCr>
KelStatus yv12ToC2(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out) {
  out.resize(c2Bytes(w, h));
  Raw420 s(const_cast<uint8_t*>(raw), w, h);
  const Kel8u* src[3] = {s.y, s.cr, s.cb};
  const int steps[3] = {w, w / 2, w / 2};
  return CbYCr ? keliYCrCb420ToCbYCr422_8u_P3C2R(src, steps, out.data(), 2 * w, {w, h})
               : keliYCrCb420ToYCbCr422_8u_P3C2R(src, steps, out.data(), 2 * w, {w, h});
}

// ---- raw formats: through YUY2 to and from RGB -------------------------------
using Move = KelStatus (*)(const uint8_t*, int, int, std::vector<uint8_t>&);
template <Move ToYuy2>
KelStatus viaYuy2ToRgb(const uint8_t* raw, int w, int h, Image& out) {
  std::vector<uint8_t> c2;
  const KelStatus a = ToYuy2(raw, w, h, c2);
  return a < 0 ? a : worse(a, yuy2ToRgb(c2.data(), w, h, out));
}
template <Move FromYuy2>
KelStatus rgbViaYuy2(const Image& in, std::vector<uint8_t>& raw) {
  std::vector<uint8_t> c2;
  const KelStatus a = rgbToYuy2(in, c2);
  return a < 0 ? a : worse(a, FromYuy2(c2.data(), in.w, in.h, raw));
}
KelStatus copyC2(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out) {
  out.assign(raw, raw + c2Bytes(w, h));
  return kelStatusOk;
}

// ---- demo steps ----------------------------------------------------------
// RGB -> YUY2 -> NV12 -> YUY2 -> RGB: chroma of the odd rows is dropped.
KelStatus nv12RoundTrip(const Image& in, Image& out) {
  std::vector<uint8_t> c2, nv, back;
  KelStatus st = rgbToYuy2(in, c2);
  if (st >= 0) st = worse(st, c2ToNv12<false>(c2.data(), in.w, in.h, nv));
  if (st >= 0) st = worse(st, nv12ToYuy2(nv.data(), in.w, in.h, back));
  if (st >= 0) st = worse(st, yuy2ToRgb(back.data(), in.w, in.h, out));
  return st;
}
// The same with the picture's two fields blended on the way back to YUY2.
KelStatus nv12Deinterlace(const Image& in, Image& out) {
  std::vector<uint8_t> c2, nv, back(c2Bytes(in.w, in.h));
  KelStatus st = rgbToYuy2(in, c2);
  if (st >= 0) st = worse(st, c2ToNv12<false>(c2.data(), in.w, in.h, nv));
  if (st < 0) return st;
  Raw420 s(nv.data(), in.w, in.h);
  st = worse(st, keliYCbCr420ToYCbCr422_Filter_8u_P2C2R(s.y, in.w, s.c, in.w, back.data(), 2 * in.w, in.size(),
                                                        kelSliceWhole));
  return st < 0 ? st : worse(st, yuy2ToRgb(back.data(), in.w, in.h, out));
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-nv12-rgb", "RGB -> YUY2 -> NV12 -> YUY2 -> RGB (studio-range YCbCr)",
                                   nv12RoundTrip});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-nv12-deinterlace-rgb",
                                   "RGB -> NV12 -> fields blended into YUY2 -> RGB (a soft vertical filter)",
                                   nv12Deinterlace});
KELCC_TOOL_REGISTER(tool::RawFormat{"nv12", "Y plane, Cb Cr pairs, 4:2:0 (studio-range YCbCr)", yuv420Bytes,
                                    viaYuy2ToRgb<nv12ToYuy2>, rgbViaYuy2<c2ToNv12<false>>});
KELCC_TOOL_REGISTER(tool::RawFormat{"yv12", "Y, Cr, Cb planes, 4:2:0 (studio-range YCbCr)", yuv420Bytes,
                                    viaYuy2ToRgb<yv12ToC2<false>>, rgbViaYuy2<c2ToYv12<false>>});
KELCC_TOOL_REGISTER(tool::RawFormat{"yuy2", "packed Y0 Cb Y1 Cr, 4:2:2 (studio-range YCbCr)", c2Bytes,
                                    viaYuy2ToRgb<copyC2>, rgbViaYuy2<copyC2>});
KELCC_TOOL_REGISTER(tool::RawFormat{"uyvy", "packed Cb Y0 Cr Y1, 4:2:2 (studio-range YCbCr)", c2Bytes,
                                    viaYuy2ToRgb<swapC2<true>>, rgbViaYuy2<swapC2<false>>});
KELCC_TOOL_REGISTER(tool::RawConverter{"nv12", "yuy2", nv12ToYuy2});
KELCC_TOOL_REGISTER(tool::RawConverter{"nv12", "uyvy", nv12ToUyvy});
KELCC_TOOL_REGISTER(tool::RawConverter{"nv12", "yv12", nv12ToYv12});
KELCC_TOOL_REGISTER(tool::RawConverter{"yuy2", "nv12", c2ToNv12<false>});
KELCC_TOOL_REGISTER(tool::RawConverter{"uyvy", "nv12", c2ToNv12<true>});
KELCC_TOOL_REGISTER(tool::RawConverter{"yuy2", "yv12", c2ToYv12<false>});
KELCC_TOOL_REGISTER(tool::RawConverter{"uyvy", "yv12", c2ToYv12<true>});
KELCC_TOOL_REGISTER(tool::RawConverter{"yuy2", "uyvy", swapC2<false>});
KELCC_TOOL_REGISTER(tool::RawConverter{"uyvy", "yuy2", swapC2<true>});
KELCC_TOOL_REGISTER(tool::RawConverter{"yv12", "nv12", yv12ToNv12});
KELCC_TOOL_REGISTER(tool::RawConverter{"yv12", "yuy2", yv12ToC2<false>});
KELCC_TOOL_REGISTER(tool::RawConverter{"yv12", "uyvy", yv12ToC2<true>});
}  // namespace
