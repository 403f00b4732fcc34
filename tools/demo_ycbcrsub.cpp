// Round trips through studio-range YCbCr with subsampled chroma: 4:2:0
// planes, packed 4:2:2 in both chroma orders, BGR 4:2:2 planes and 4:1:1.
#include "kelcc_tool.h"

namespace {
using tool::Image;

// Tight planes: a full plane and two chroma planes of cw by ch.
struct Planes {
  std::vector<Kel8u> buf;
  Kel8u* p[3];
  int step[3];
  Planes(int w, int h, int cw, int ch) : buf(static_cast<size_t>(w) * h + 2 * static_cast<size_t>(cw) * ch + 1) {
    p[0] = buf.data(), p[1] = p[0] + static_cast<size_t>(w) * h, p[2] = p[1] + static_cast<size_t>(cw) * ch;
    step[0] = w, step[1] = step[2] = cw;
  }
  const Kel8u* const* src() const { return p; }
};

// Warnings (sizes that do not fill the chroma grid) keep the trip going.
KelStatus both(KelStatus a, KelStatus b) { return a < 0 ? a : b < 0 ? b : (a ? a : b); }

// The BGR members read and write B, G, R: swap the picture's channels on the way.
std::vector<Kel8u> swapped(const std::vector<Kel8u>& rgb) {
  std::vector<Kel8u> v(rgb);
  for (size_t i = 0; i + 2 < v.size(); i += 3) std::swap(v[i], v[i + 2]);
  return v;
}

KelStatus ycbcr420(const Image& in, Image& out) {
  Planes q(in.w, in.h, in.w / 2, in.h / 2);
  const KelStatus a = keliRGBToYCbCr420_8u_C3P3R(in.rgb.data(), in.step(), q.p, q.step, in.size());
  if (a < 0) return a;
  return both(a, keliYCbCr420ToRGB_8u_P3C3R(q.src(), q.step, out.rgb.data(), out.step(), in.size()));
}
KelStatus bgrYcbcr420(const Image& in, Image& out) {
  Planes q(in.w, in.h, in.w / 2, in.h / 2);
  const std::vector<Kel8u> bgr = swapped(in.rgb);
  const KelStatus a = keliBGRToYCbCr420_8u_C3P3R(bgr.data(), in.step(), q.p, q.step, in.size());
  if (a < 0) return a;
  std::vector<Kel8u> back(in.rgb.size());
  const KelStatus b = keliYCbCr420ToBGR_8u_P3C3R(q.src(), q.step, back.data(), out.step(), in.size());
  out.rgb = swapped(back);
  return both(a, b);
}
template <bool CrFirst>
KelStatus packed422(const Image& in, Image& out) {
  std::vector<Kel8u> c2(static_cast<size_t>(2) * in.w * in.h);
  auto fwd = CrFirst ? keliRGBToYCrCb422_8u_C3C2R : keliRGBToYCbCr422_8u_C3C2R;
  auto inv = CrFirst ? keliYCrCb422ToRGB_8u_C2C3R : keliYCbCr422ToRGB_8u_C2C3R;
  if (KelStatus st = fwd(in.rgb.data(), in.step(), c2.data(), 2 * in.w, in.size())) return st;
  return inv(c2.data(), 2 * in.w, out.rgb.data(), out.step(), in.size());
}
KelStatus bgrPlanes422(const Image& in, Image& out) {
  Planes q(in.w, in.h, in.w / 2, in.h);
  const std::vector<Kel8u> bgr = swapped(in.rgb);
  if (KelStatus st = keliBGRToYCbCr422_8u_C3P3R(bgr.data(), in.step(), q.p, q.step, in.size())) return st;
  std::vector<Kel8u> back(in.rgb.size());
  const KelStatus st = keliYCbCr422ToBGR_8u_P3C3R(q.src(), q.step, back.data(), out.step(), in.size());
  out.rgb = swapped(back);
  return st;
}
KelStatus bgr411(const Image& in, Image& out) {
  Planes q(in.w, in.h, in.w / 4, in.h);
  const std::vector<Kel8u> bgr = swapped(in.rgb);
  const KelStatus a = keliBGRToYCbCr411_8u_C3P3R(bgr.data(), in.step(), q.p, q.step, in.size());
  if (a < 0) return a;
  std::vector<Kel8u> back(in.rgb.size());
  const KelStatus b = keliYCbCr411ToBGR_8u_P3C3R(q.src(), q.step, back.data(), out.step(), in.size());
  out.rgb = swapped(back);
  return both(a, b);
}

KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycbcr420-rgb", "RGB -> studio-range YCbCr 4:2:0 planes -> RGB", ycbcr420});
KELCC_TOOL_REGISTER(tool::DemoStep{"bgr-ycbcr420-bgr", "BGR -> YCbCr 4:2:0 planes -> BGR (the BGR line's own forms)",
                                   bgrYcbcr420});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycbcr422packed-rgb", "RGB -> packed Y0 Cb Y1 Cr -> RGB", packed422<false>});
KELCC_TOOL_REGISTER(tool::DemoStep{"rgb-ycrcb422packed-rgb", "RGB -> packed Y0 Cr Y1 Cb -> RGB", packed422<true>});
KELCC_TOOL_REGISTER(tool::DemoStep{"bgr-ycbcr422-bgr", "BGR -> YCbCr 4:2:2 planes -> BGR", bgrPlanes422});
KELCC_TOOL_REGISTER(tool::DemoStep{"bgr-ycbcr411-bgr", "BGR -> YCbCr 4:1:1 planes -> BGR (a quarter of the chroma)",
                                   bgr411});
}  // namespace
