// Interlaced-field conversions, filtered chroma upsampling and the 420 / 411 /
// 1620 plane conversions at 1920 x 1080, one thread, beside memcpy of the same
// bytes and libyuv where it has a conversion between the same grids. libyuv's
// grid changes filter differently (box and bilinear scaling, no field
// separation), so those lines compare the same layouts, not the same
// arithmetic. The filtered BGRA member has libyuv's bilinear-filtered
// I420ToARGBMatrixFilter beside it.
#include <libyuv.h>

#include <memory>

#include "common.h"

namespace {

// Our call on the run's thread count (kb::threads), whatever the team size
// of the process.
template <class F>
std::function<void()> oneThread(F f) {
  return [f] {
    const int before = kelGetNumThreads();
    kelSetNumThreads(kb::threads());
    f();
    kelSetNumThreads(before);
  };
}

void registerGrids() {
  using namespace kb;
  const int cw = half(kW), qw = quarter(kW);
  static Plane y(kW, kH, 1), c422a(cw, kH, 2), c422b(cw, kH, 3), c420a(cw, half(kH), 4), c420b(cw, half(kH), 5);
  static Plane c411a(qw, kH, 6), c411b(qw, kH, 7), c1620a(qw, quarter(kH), 8), c1620b(qw, quarter(kH), 9), c2(2 * kW, kH, 10);
  static Plane oy(kW, kH, 11), o422a(cw, kH, 12), o422b(cw, kH, 13), o420a(cw, half(kH), 14), o420b(cw, half(kH), 15);
  static Plane o411a(qw, kH, 16), o411b(qw, kH, 17), o1620a(qw, quarter(kH), 18), o1620b(qw, quarter(kH), 19);
  static Plane oc2(2 * kW, kH, 20), obgra(4 * kW, kH, 21);
  struct P3 {
    const Kel8u* s[3];
    int ss[3];
    Kel8u* d[3];
    int ds[3];
  };
  auto p3 = [](Plane& a, Plane& b, Plane& c, Plane& d, Plane& e, Plane& f) {
    return P3{{a.p, b.p, c.p}, {a.step, b.step, c.step}, {d.p, e.p, f.p}, {d.step, e.step, f.step}};
  };
  static P3 i422to420 = p3(y, c422a, c422b, oy, o420a, o420b), i420to422 = p3(y, c420a, c420b, oy, o422a, o422b);
  static P3 i420to411 = p3(y, c420a, c420b, oy, o411a, o411b), i411to420 = p3(y, c411a, c411b, oy, o420a, o420b);
  static P3 i420to1620 = p3(y, c420a, c420b, oy, o1620a, o1620b), i1620to420 = p3(y, c1620a, c1620b, oy, o420a, o420b);
  const size_t px = size_t(kW) * kH, b422 = 2 * px, b420 = px * 3 / 2, b411 = b422 - px / 2, b1620 = px + px / 8;

  // One group: ours, the peer, memcpy of the same bytes.
  auto group = [](const char* name, size_t src, size_t dst, std::function<void()> kel, std::function<void()> peer) {
    add(name, "kel", src + dst, kel);
    add(name, "libyuv", src + dst, peer);
    addMemcpy(name, src, dst);
  };
  // ---- interlaced fields
  group("Interlace422To420_P3R", b422, b420, oneThread([] {
          keliYCbCr422To420_Interlace_8u_P3R(i422to420.s, i422to420.ss, i422to420.d, i422to420.ds, kRoi);
        }),
        [] {
          libyuv::I422ToI420(y.p, y.step, c422a.p, c422a.step, c422b.p, c422b.step, oy.p, oy.step, o420a.p,
                             o420a.step, o420b.p, o420b.step, kW, kH);
        });
  auto i420ToI422 = [] {
    libyuv::I420ToI422(y.p, y.step, c420a.p, c420a.step, c420b.p, c420b.step, oy.p, oy.step, o422a.p, o422a.step,
                       o422b.p, o422b.step, kW, kH);
  };
  group("Interlace420To422_P3R", b420, b422, oneThread([] {
          keliYCbCr420To422_Interlace_8u_P3R(i420to422.s, i420to422.ss, i420to422.d, i420to422.ds, kRoi);
        }),
        i420ToI422);
  group("InterlaceCbYCr422To420_C2P3R", b422, b420, oneThread([] {
          keliCbYCr422ToYCbCr420_Interlace_8u_C2P3R(c2.p, c2.step, i422to420.d, i422to420.ds, kRoi);
        }),
        [] { libyuv::UYVYToI420(c2.p, c2.step, oy.p, oy.step, o420a.p, o420a.step, o420b.p, o420b.step, kW, kH); });
  group("Interlace420ToCbYCr422_P3C2R", b420, b422, oneThread([] {
          keliYCbCr420ToCbYCr422_Interlace_8u_P3C2R(i420to422.s, i420to422.ss, oc2.p, oc2.step, kRoi);
        }),
        [] { libyuv::I420ToUYVY(y.p, y.step, c420a.p, c420a.step, c420b.p, c420b.step, oc2.p, oc2.step, kW, kH); });

  // ---- filtered upsampling
  group("Filter420To422_P3R", b420, b422, [] {
          keliYCbCr420ToYCbCr422_Filter_8u_P3R(i420to422.s, i420to422.ss, i420to422.d, i420to422.ds, kRoi);
        },
        i420ToI422);
  // The filtered BGRA member beside libyuv's conversion with bilinear chroma
  // upsampling (the same work); its plain I420ToARGB, which repeats chroma
  // rows, is shown beside it as another method.
  auto filterBgra = [] {
    const Kel8u* s[3] = {y.p, c420b.p, c420a.p};
    const int ss[3] = {y.step, c420b.step, c420a.step};
    keliYCrCb420ToBGR_Filter_8u_P3C4R(s, ss, obgra.p, obgra.step, kRoi, 255);
  };
  group("Filter420ToBGRA_P3C4R", b420, 4 * px, filterBgra, [] {
    libyuv::I420ToARGBMatrixFilter(y.p, y.step, c420a.p, c420a.step, c420b.p, c420b.step, obgra.p, obgra.step,
                                   &libyuv::kYuvI601Constants, kW, kH, libyuv::kFilterBilinear);
  });
  add("Filter420ToBGRA_P3C4R-vs-unfiltered", "kel", b420 + 4 * px, filterBgra);
  add("Filter420ToBGRA_P3C4R-vs-unfiltered", "libyuv", b420 + 4 * px,
      [] { libyuv::I420ToARGB(y.p, y.step, c420a.p, c420a.step, c420b.p, c420b.step, obgra.p, obgra.step, kW, kH); });

  // ---- 420, 411, 1620 (libyuv: its plane scaler on the chroma, plus the luma copy)
  auto scaled = [](const Plane& a, const Plane& b, int sw, int sh, Plane& c, Plane& d, int dw, int dh) {
    libyuv::CopyPlane(y.p, y.step, oy.p, oy.step, kW, kH);
    libyuv::ScalePlane(a.p, a.step, sw, sh, c.p, c.step, dw, dh, libyuv::kFilterBilinear);
    libyuv::ScalePlane(b.p, b.step, sw, sh, d.p, d.step, dw, dh, libyuv::kFilterBilinear);
  };
  struct G {
    const char* name;
    KelStatus (*f)(const Kel8u* const*, const int*, Kel8u**, const int*, KeliSize);
    P3* p;
    size_t src, dst;
    std::function<void()> peer;
  };
  const G gs[] = {
      {"Planes420To411_P3R", keliYCbCr420To411_8u_P3R, &i420to411, b420, b411,
       [=] { scaled(c420a, c420b, cw, kH / 2, o411a, o411b, qw, kH); }},
      {"Planes411To420_P3R", keliYCbCr411To420_8u_P3R, &i411to420, b411, b420,
       [=] { scaled(c411a, c411b, qw, kH, o420a, o420b, cw, kH / 2); }},
      {"Planes420To1620_P3R", keliYCbCr420To1620_8u_P3R, &i420to1620, b420, b1620,
       [=] { scaled(c420a, c420b, cw, kH / 2, o1620a, o1620b, qw, kH / 4); }},
      {"Planes1620To420_P3R", keliYCbCr1620To420_8u_P3R, &i1620to420, b1620, b420,
       [=] { scaled(c1620a, c1620b, qw, kH / 4, o420a, o420b, cw, kH / 2); }},
  };
  for (const G& g : gs) {
    auto f = g.f;
    P3* p = g.p;
    group(g.name, g.src, g.dst, [f, p] { f(p->s, p->ss, p->d, p->ds, kRoi); }, g.peer);
  }
}
KB_REGISTER(registerGrids);

}  // namespace
