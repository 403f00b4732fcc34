// RGB and BGR <-> subsampled YCbCr / YCrCb (4:2:2, 4:2:0, 4:1:1).
#include <array>
#include <cstring>
#include <stdexcept>

#include "harness.h"

using namespace kt;

namespace {

// A member with the shape of its chroma grid: groups of gw columns by gh
// rows share one chroma pair; `body` is the member's count of body columns,
// `wBody` a width that is all body and `wTail` one that is all tail (0: the
// member has no tail).
struct Sub {
  Member m;
  int gw, gh;
  int (*body)(int w);
  int wBody, wTail;
};

int b7(int w) { return w & ~7; }
int b3(int w) { return w & ~3; }
int b1(int w) { return w & ~1; }
int b15(int w) { return w & ~15; }
int b31(int w) { return w & ~31; }
int bPairs4(int w) { return ((w >> 1) & ~3) << 1; }
int bOwn422(int w) { return (w & 15) >= 8 ? (w & ~31) + 8 : w & ~31; }
int bOwn420(int w) { return (w & 7) >= 4 ? (w & ~15) + 4 : w & ~15; }
int bC2C4(int w) { return (w & 15) >= 8 ? (w & ~15) + 8 : w & ~15; }

const Geom kC3 = full(3), kC4 = full(4), kC2 = full(2), kP = full(1);
const Geom kHalf = sub(1, 1, 0), kQuarter = sub(1, 2, 0), k420 = sub(1, 1, 1);

Sub make(const char* name, std::vector<Geom> s, std::vector<Geom> d, Invoke f, Order o, int minW, int minH,
         KelStatus (*fin)(KeliSize), int gw, int gh, int (*body)(int), int wBody, int wTail) {
  Sub x{Member{name, s, d, f}, gw, gh, body, wBody, wTail};
  x.m.order = o, x.m.minW = minW, x.m.minH = minH;
  if (fin) x.m.final = fin;
  return x;
}
KelStatus ok(KeliSize) { return kelStatusOk; }

#define FWD_C3C2(fn) [](Call& c) { return fn(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi()); }
#define FWD_P3C2(fn) [](Call& c) { auto s = c.sArr(3); return fn(s, c.ss(0), c.d(0), c.ds(0), c.roi()); }
#define FWD_C3P3(fn) [](Call& c) { auto s = c.s(0); auto d = c.dArr(3); return fn(s, c.ss(0), d, c.dsArr(3), c.roi()); }
#define INV_C2P3(fn) [](Call& c) { auto s = c.s(0); return fn(s, c.ss(0), c.dArr(3), c.ds(0), c.roi()); }
#define INV_P3C3(fn) [](Call& c) { auto s = c.sArr(3); return fn(s, c.ssArr(3), c.d(0), c.ds(0), c.roi()); }
#define INV_P3C4(fn) [](Call& c) { auto s = c.sArr(3); return fn(s, c.ssArr(3), c.d(0), c.ds(0), c.roi(), 0x1A7); }

std::vector<Sub> subs() {
  const Order A = Order::A, B = Order::B;
  std::vector<Sub> v = {
      make("keliRGBToYCbCr422_8u_C3C2R", {kC3}, {kC2}, FWD_C3C2(keliRGBToYCbCr422_8u_C3C2R), A, 1, 1, ok, 2, 1, b7, 32, 4),
      make("keliRGBToYCbCr422_8u_P3C2R", {kP, kP, kP}, {kC2}, FWD_P3C2(keliRGBToYCbCr422_8u_P3C2R), A, 1, 1, ok, 2, 1, b7, 32, 4),
      make("keliRGBToYCrCb422_8u_C3C2R", {kC3}, {kC2}, FWD_C3C2(keliRGBToYCrCb422_8u_C3C2R), A, 1, 1, ok, 2, 1, b7, 32, 4),
      make("keliRGBToYCrCb422_8u_P3C2R", {kP, kP, kP}, {kC2}, FWD_P3C2(keliRGBToYCrCb422_8u_P3C2R), A, 1, 1, ok, 2, 1, b7, 32, 4),
      make("keliRGBToYCbCr422_8u_C3P3R", {kC3}, {kP, kHalf, kHalf}, FWD_C3P3(keliRGBToYCbCr422_8u_C3P3R), B, 2, 1, status422, 2, 1, bOwn422, 32, 4),
      make("keliBGRToYCbCr422_8u_C3P3R", {kC3}, {kP, kHalf, kHalf}, FWD_C3P3(keliBGRToYCbCr422_8u_C3P3R), B, 2, 1, ok, 2, 1, bOwn422, 32, 4),
      make("keliBGRToYCbCr422_8u_AC4P3R", {kC4}, {kP, kHalf, kHalf}, FWD_C3P3(keliBGRToYCbCr422_8u_AC4P3R), B, 2, 1, ok, 2, 1, bOwn422, 32, 4),
      make("keliBGRToYCbCr422_8u_C3C2R", {kC3}, {kC2}, FWD_C3C2(keliBGRToYCbCr422_8u_C3C2R), B, 2, 1, ok, 2, 1, bOwn422, 32, 4),
      make("keliBGRToYCbCr422_8u_AC4C2R", {kC4}, {kC2}, FWD_C3C2(keliBGRToYCbCr422_8u_AC4C2R), B, 2, 1, ok, 2, 1, bOwn422, 32, 4),
      make("keliRGBToYCbCr420_8u_C3P3R", {kC3}, {kP, k420, k420}, FWD_C3P3(keliRGBToYCbCr420_8u_C3P3R), A, 1, 1, status420, 2, 2, bPairs4, 32, 4),
      make("keliBGRToYCbCr420_8u_C3P3R", {kC3}, {kP, k420, k420}, FWD_C3P3(keliBGRToYCbCr420_8u_C3P3R), B, 2, 2, status420, 2, 2, bOwn420, 32, 2),
      make("keliBGRToYCbCr420_8u_AC4P3R", {kC4}, {kP, k420, k420}, FWD_C3P3(keliBGRToYCbCr420_8u_AC4P3R), B, 2, 2, status420, 2, 2, bOwn420, 32, 2),
      make("keliBGRToYCrCb420_8u_C3P3R", {kC3}, {kP, k420, k420}, FWD_C3P3(keliBGRToYCrCb420_8u_C3P3R), B, 2, 2, status420, 2, 2, bOwn420, 32, 2),
      make("keliBGRToYCrCb420_8u_AC4P3R", {kC4}, {kP, k420, k420}, FWD_C3P3(keliBGRToYCrCb420_8u_AC4P3R), B, 2, 2, status420, 2, 2, bOwn420, 32, 2),
      make("keliRGBToYCrCb420_8u_AC4P3R", {kC4}, {kP, k420, k420}, FWD_C3P3(keliRGBToYCrCb420_8u_AC4P3R), B, 2, 2, status420, 2, 2, bOwn420, 32, 2),
      make("keliBGRToYCbCr411_8u_C3P3R", {kC3}, {kP, kQuarter, kQuarter}, FWD_C3P3(keliBGRToYCbCr411_8u_C3P3R), B, 4, 1, status411, 4, 1, b15, 32, 4),
      make("keliBGRToYCbCr411_8u_AC4P3R", {kC4}, {kP, kQuarter, kQuarter}, FWD_C3P3(keliBGRToYCbCr411_8u_AC4P3R), B, 4, 1, status411, 4, 1, b31, 32, 4),
      make("keliYCbCr422ToRGB_8u_C2C3R", {kC2}, {kC3}, FWD_C3C2(keliYCbCr422ToRGB_8u_C2C3R), A, 1, 1, ok, 2, 1, b3, 32, 2),
      make("keliYCbCr422ToRGB_8u_C2P3R", {kC2}, {kP, kP, kP}, INV_C2P3(keliYCbCr422ToRGB_8u_C2P3R), A, 1, 1, ok, 2, 1, b3, 32, 2),
      make("keliYCrCb422ToRGB_8u_C2C3R", {kC2}, {kC3}, FWD_C3C2(keliYCrCb422ToRGB_8u_C2C3R), A, 1, 1, ok, 2, 1, b3, 32, 2),
      make("keliYCrCb422ToRGB_8u_C2P3R", {kC2}, {kP, kP, kP}, INV_C2P3(keliYCrCb422ToRGB_8u_C2P3R), A, 1, 1, ok, 2, 1, b3, 32, 2),
      make("keliYCbCr422ToRGB_8u_P3C3R", {kP, ceilHalfW(1), ceilHalfW(1)}, {kC3}, INV_P3C3(keliYCbCr422ToRGB_8u_P3C3R), A, 1, 1, ok, 2, 1, b7, 32, 2),
      make("keliYCbCr422ToBGR_8u_C2C3R", {kC2}, {kC3}, FWD_C3C2(keliYCbCr422ToBGR_8u_C2C3R), B, 2, 1, ok, 2, 1, b1, 32, 0),
      make("keliYCbCr422ToBGR_8u_C2C4R", {kC2}, {kC4}, [](Call& c) { return keliYCbCr422ToBGR_8u_C2C4R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi(), 0x1A7); }, B, 2, 1, ok, 2, 1, bC2C4, 32, 2),
      make("keliYCbCr422ToBGR_8u_P3C3R", {kP, kHalf, kHalf}, {kC3}, INV_P3C3(keliYCbCr422ToBGR_8u_P3C3R), B, 2, 1, ok, 2, 1, b7, 32, 2),
      make("keliYCbCr420ToRGB_8u_P3C3R", {kP, k420, k420}, {kC3}, INV_P3C3(keliYCbCr420ToRGB_8u_P3C3R), A, 1, 1, status420, 2, 2, b7, 32, 2),
      make("keliYCbCr420ToBGR_8u_P3C3R", {kP, k420, k420}, {kC3}, INV_P3C3(keliYCbCr420ToBGR_8u_P3C3R), A, 1, 1, status420, 2, 2, b7, 32, 2),
      make("keliYCbCr420ToBGR_8u_P3C4R", {kP, k420, k420}, {kC4}, INV_P3C4(keliYCbCr420ToBGR_8u_P3C4R), A, 1, 1, status420, 2, 2, b7, 32, 2),
      make("keliYCrCb420ToRGB_8u_P3C4R", {kP, k420, k420}, {kC4}, INV_P3C4(keliYCrCb420ToRGB_8u_P3C4R), A, 1, 1, status420, 2, 2, b7, 32, 2),
      make("keliYCbCr411ToBGR_8u_P3C3R", {kP, kQuarter, kQuarter}, {kC3}, INV_P3C3(keliYCbCr411ToBGR_8u_P3C3R), B, 4, 1, ok, 4, 1, b3, 32, 0),
      make("keliYCbCr411ToBGR_8u_P3C4R", {kP, kQuarter, kQuarter}, {kC4}, INV_P3C4(keliYCbCr411ToBGR_8u_P3C4R), B, 4, 1, ok, 4, 1, b3, 32, 0),
  };
  for (Sub& s : v) {
    const std::string& n = s.m.name;
    s.m.sharedSrcStep = n.find("P3C2R") != std::string::npos;
    s.m.sharedDstStep = n.find("C2P3R") != std::string::npos;
  }
  return v;
}
const Sub& find(const std::string& name) {
  static const std::vector<Sub> all = subs();
  for (const Sub& s : all)
    if (s.m.name == "keli" + name) return s;
  throw std::runtime_error(name);
}

// ---- running a member on chosen bytes ------------------------------------------
// Planes as byte rows (row-major, tight); `misalign` keeps every plane off
// 16-byte boundaries, which selects the unaligned routines.
using Planes = std::vector<std::vector<uint8_t>>;

struct Result {
  Planes dst;
  KelStatus st;
};
Result runOn(const Sub& s, KeliSize roi, const Planes& src, uint8_t fill = 0xEE) {
  Images im = makeImages(s.m, roi, StepMode::Tight, 3, 17);
  for (size_t p = 0; p < im.src.size(); ++p) {
    const PlaneDim d = im.src[p]->dim();
    for (int y = 0; y < d.rows; ++y)
      for (int x = 0; x < d.rowBytes; ++x) im.src[p]->at(x, y) = src[p][size_t(y) * d.rowBytes + x];
  }
  for (auto& p : im.dst) p->fill(fill);
  Result r{{}, run(s.m, im, roi)};
  for (auto& p : im.dst) r.dst.push_back(p->region());
  return r;
}
Planes randomSrc(const Sub& s, KeliSize roi, std::mt19937& rng) {
  Planes v;
  for (const Geom& g : s.m.src) {
    const PlaneDim d = g(roi);
    std::vector<uint8_t> b(size_t(d.rowBytes) * d.rows);
    for (auto& x : b) x = static_cast<uint8_t>(rng());
    v.push_back(b);
  }
  return v;
}
// Bytes of group j (gw columns by gh rows) of each plane of a side.
struct GroupBytes {
  int per, rows;  // bytes of a group per row, rows of a group
};
GroupBytes groupBytes(const Geom& g, const Sub& s) {
  constexpr int n = 8;
  return {g({s.gw * n, s.gh}).rowBytes / n, g({s.gw * n, s.gh * n}).rows / n};
}
std::vector<uint8_t> group(const Sub& s, const std::vector<Geom>& gs, const Planes& pl, KeliSize roi, size_t p, int j) {
  const GroupBytes gb = groupBytes(gs[p], s);
  const int rb = gs[p](roi).rowBytes;
  std::vector<uint8_t> out;
  for (int y = 0; y < gb.rows; ++y)
    for (int i = 0; i < gb.per; ++i) out.push_back(pl[p][size_t(y) * rb + j * gb.per + i]);
  return out;
}
// The source group j of `src` repeated over a width of w.
Planes tile(const Sub& s, const Planes& src, KeliSize roi, int j, int w) {
  Planes out;
  const KeliSize r{w, s.gh};
  for (size_t p = 0; p < src.size(); ++p) {
    const GroupBytes gb = groupBytes(s.m.src[p], s);
    const std::vector<uint8_t> g = group(s, s.m.src, src, roi, p, j);
    const int rb = s.m.src[p](r).rowBytes;
    std::vector<uint8_t> b(size_t(rb) * gb.rows);
    for (int y = 0; y < gb.rows; ++y)
      for (int k = 0; k < w / s.gw; ++k) std::memcpy(&b[size_t(y) * rb + k * gb.per], &g[size_t(y) * gb.per], gb.per);
    out.push_back(b);
  }
  return out;
}

}  // namespace

std::vector<Member> subMembers() {
  std::vector<Member> ms;
  for (const Sub& s : subs()) ms.push_back(s.m);
  return ms;
}
KT_MEMBERS(subMembers);

TEST(YccSub, GuardsErrorsAndPaths) {
  checkAll(subMembers());
}

// Every group of a row takes the body forms below the member's body count and
// the tail forms from there on: a group's result equals the same group
// repeated over an all-body width, or over an all-tail width.
TEST(YccSub, BodyAndTailSplitTheRowByGroup) {
  std::mt19937 rng(21);
  for (const Sub& s : subs()) {
    for (int w = std::max(s.gw, s.m.minW); w <= 72; w += s.gw) {
      const KeliSize roi{w, s.gh};
      const Planes src = randomSrc(s, roi, rng);
      const Result whole = runOn(s, roi, src);
      const int body = s.body(w);
      if (!s.wTail) {
        ASSERT_EQ(body, w) << s.m.name;
      }
      for (int j = 0; j < w / s.gw; ++j) {
        const bool inBody = j * s.gw < body;
        const int wAlone = inBody ? s.wBody : s.wTail;
        const Result alone = runOn(s, {wAlone, s.gh}, tile(s, src, roi, j, wAlone));
        for (size_t p = 0; p < whole.dst.size(); ++p)
          ASSERT_EQ(group(s, s.m.dst, whole.dst, roi, p, j), group(s, s.m.dst, alone.dst, {wAlone, s.gh}, p, 0))
              << s.m.name << " width " << w << " group " << j << (inBody ? " (body)" : " (tail)") << " plane " << p;
      }
    }
  }
}

// The shared inverse forms at their published values, reached through the
// members whose body or tail uses them; J5 where the alignment test is met.
TEST(YccSub, TellingValuesOfTheInverseForms) {
  using Px = std::array<int, 3>;
  struct Case {
    const char* member;
    int w;        // 32: all body; 2: all tail
    bool aligned;
    bool bgr;
    Px white, colour;  // from Y, Cb, Cr = 235, 128, 128 and 100, 200, 50
  } cases[] = {
      {"YCbCr420ToRGB_8u_P3C3R", 32, false, false, {255, 255, 255}, {0, 133, 243}},  // J3
      {"YCbCr420ToRGB_8u_P3C3R", 2, false, false, {255, 255, 255}, {0, 133, 243}},   // L4
      {"YCbCr420ToBGR_8u_P3C4R", 32, false, true, {255, 255, 255}, {0, 133, 243}},   // J4
      {"YCbCr420ToBGR_8u_P3C3R", 32, true, true, {254, 254, 254}, {0, 133, 242}},    // J5
      {"YCbCr420ToBGR_8u_P3C3R", 32, false, true, {255, 255, 255}, {0, 133, 243}},   // J3
      {"YCbCr422ToRGB_8u_P3C3R", 2, false, false, {254, 254, 254}, {0, 132, 242}},   // L2
      {"YCbCr422ToRGB_8u_P3C3R", 32, true, false, {254, 254, 254}, {0, 133, 242}},   // J5
      {"YCbCr422ToRGB_8u_C2C3R", 32, false, false, {254, 254, 254}, {0, 132, 242}},  // J2
      {"YCbCr411ToBGR_8u_P3C3R", 32, false, true, {254, 254, 254}, {0, 132, 242}},   // J2
  };
  for (const Case& c : cases) {
    const Sub& s = find(c.member);
    for (int k = 0; k < 2; ++k) {
      const int Y = k ? 100 : 235, Cb = k ? 200 : 128, Cr = k ? 50 : 128;
      const KeliSize roi{c.w, 2};
      // Aligned planes and steps: tight rows of 32 (or 16 for chroma) at 64-byte boundaries.
      alignas(64) static uint8_t y[2 * 64 + 16], u[64 + 16], v[64 + 16], c2[2 * 64 + 16], d[2 * 128 + 16];
      std::memset(y, Y, sizeof y), std::memset(u, Cb, sizeof u), std::memset(v, Cr, sizeof v);
      for (int i = 0; i < 64; ++i) c2[2 * i] = uint8_t(Y), c2[2 * i + 1] = uint8_t(i & 1 ? Cr : Cb);
      const int off = c.aligned ? 0 : 1;
      const Kel8u* sp[3] = {y + off, u + off, v + off};
      const int ss[3] = {64, 32, 32};
      KelStatus st;
      if (s.m.name.find("C2C3R") != std::string::npos)
        st = keliYCbCr422ToRGB_8u_C2C3R(c2 + 4 * off, 64, d + off, 128, roi);
      else if (s.m.name.find("P3C4R") != std::string::npos)
        st = keliYCbCr420ToBGR_8u_P3C4R(sp, ss, d + off, 128, roi, 7);
      else if (s.m.name == "keliYCbCr411ToBGR_8u_P3C3R")
        st = keliYCbCr411ToBGR_8u_P3C3R(sp, ss, d + off, 128, roi);
      else if (s.m.name == "keliYCbCr422ToRGB_8u_P3C3R")
        st = keliYCbCr422ToRGB_8u_P3C3R(sp, ss, d + off, 128, roi);
      else if (s.m.name == "keliYCbCr420ToRGB_8u_P3C3R")
        st = keliYCbCr420ToRGB_8u_P3C3R(sp, ss, d + off, 128, roi);
      else
        st = keliYCbCr420ToBGR_8u_P3C3R(sp, ss, d + off, 128, roi);
      ASSERT_EQ(st, kelStatusOk) << c.member;
      const uint8_t* px = d + off;
      Px got = {px[0], px[1], px[2]};
      if (c.bgr) std::swap(got[0], got[2]);
      EXPECT_EQ(got, k ? c.colour : c.white) << c.member << " width " << c.w << (c.aligned ? " aligned" : "");
    }
  }
}

// The luma and chroma of a uniform colour: the 4:2:0 body (YF, CG) gives the
// full-resolution F1 values, since the 2 x 2 sum << 5 is the sample << 7.
TEST(YccSub, UniformColourThroughTheRgb420Body) {
  struct Case {
    int R, G, B, Y, Cb, Cr;
  } cases[] = {{255, 255, 255, 235, 128, 128}, {255, 0, 0, 81, 90, 239}, {16, 128, 240, 108, 193, 70}};
  for (const Case& c : cases) {
    const int w = 16, h = 2;
    std::vector<uint8_t> rgb(3 * w * h), y(w * h), u(w / 2), v(w / 2);
    for (int i = 0; i < w * h; ++i) rgb[3 * i] = uint8_t(c.R), rgb[3 * i + 1] = uint8_t(c.G), rgb[3 * i + 2] = uint8_t(c.B);
    Kel8u* d[3] = {y.data(), u.data(), v.data()};
    const int ds[3] = {w, w / 2, w / 2};
    ASSERT_EQ(keliRGBToYCbCr420_8u_C3P3R(rgb.data(), 3 * w, d, ds, {w, h}), kelStatusOk);
    EXPECT_EQ(y[w + 5], c.Y);
    EXPECT_EQ(u[3], c.Cb);
    EXPECT_EQ(v[3], c.Cr);
  }
}

namespace {
// Which bytes of each destination plane a call writes: the same call on
// destinations filled with 0x00 and with 0xFF.
std::vector<std::vector<bool>> written(const Sub& s, KeliSize roi, const Planes& src) {
  const Result a = runOn(s, roi, src, 0x00), b = runOn(s, roi, src, 0xFF);
  std::vector<std::vector<bool>> w;
  for (size_t p = 0; p < a.dst.size(); ++p) {
    w.emplace_back(a.dst[p].size());
    for (size_t i = 0; i < a.dst[p].size(); ++i) w[p][i] = a.dst[p][i] == b.dst[p][i];
  }
  return w;
}
}  // namespace

// Sizes that do not fill the chroma grid: which pixels stay as they were,
// and the status. `skipCols` columns at the right of the full-resolution
// plane and `skipRows` rows at the bottom are not written; all else is.
TEST(YccSub, SizesThatDoNotFillTheGrid) {
  struct Case {
    const char* member;
    int w, h, skipCols, skipRows;
    KelStatus st;
  } cases[] = {
      {"RGBToYCbCr422_8u_C3C2R", 9, 2, 0, 0, kelStatusOk},
      {"RGBToYCbCr422_8u_C3C2R", 1, 1, 0, 0, kelStatusOk},
      {"RGBToYCrCb422_8u_P3C2R", 9, 2, 0, 0, kelStatusOk},
      {"BGRToYCbCr422_8u_C3C2R", 9, 2, 0, 0, kelStatusOk},
      {"BGRToYCbCr422_8u_AC4P3R", 9, 2, 0, 0, kelStatusOk},
      {"RGBToYCbCr422_8u_C3P3R", 9, 2, 1, 0, kelStatusOddSizeTrimmed},
      {"RGBToYCbCr420_8u_C3P3R", 9, 3, 1, 1, kelStatusOddSizeTrimmed},
      {"RGBToYCbCr420_8u_C3P3R", 1, 1, 1, 1, kelStatusOddSizeTrimmed},
      {"BGRToYCrCb420_8u_AC4P3R", 13, 5, 1, 1, kelStatusOddSizeTrimmed},
      {"BGRToYCbCr411_8u_C3P3R", 5, 2, 1, 0, kelStatusOddSizeTrimmed},
      {"BGRToYCbCr411_8u_C3P3R", 23, 1, 3, 0, kelStatusOddSizeTrimmed},
      {"BGRToYCbCr411_8u_AC4P3R", 5, 2, 0, 0, kelStatusOddSizeTrimmed},
      {"YCbCr422ToRGB_8u_C2P3R", 9, 2, 0, 0, kelStatusOk},
      {"YCbCr422ToRGB_8u_C2C3R", 1, 1, 0, 0, kelStatusOk},
      {"YCbCr422ToRGB_8u_P3C3R", 9, 2, 0, 0, kelStatusOk},
      {"YCbCr422ToBGR_8u_C2C4R", 9, 2, 0, 0, kelStatusOk},
      {"YCbCr422ToBGR_8u_P3C3R", 9, 2, 1, 0, kelStatusOk},
      {"YCbCr420ToBGR_8u_P3C4R", 9, 3, 1, 1, kelStatusOddSizeTrimmed},
      {"YCrCb420ToRGB_8u_P3C4R", 1, 2, 1, 0, kelStatusOddSizeTrimmed},
      {"YCbCr411ToBGR_8u_P3C4R", 7, 2, 0, 0, kelStatusOk},
  };
  std::mt19937 rng(4);
  for (const Case& c : cases) {
    const Sub& s = find(c.member);
    const KeliSize roi{c.w, c.h};
    const Planes src = randomSrc(s, roi, rng);
    EXPECT_EQ(runOn(s, roi, src).st, c.st) << c.member;
    const auto wr = written(s, roi, src);
    for (size_t p = 0; p < wr.size(); ++p) {
      const PlaneDim d = s.m.dst[p](roi);
      const int bpp = d.rows == c.h && d.rowBytes >= c.w ? d.rowBytes / c.w : 0;  // 0: a chroma plane
      for (int y = 0; y < d.rows; ++y)
        for (int x = 0; x < d.rowBytes; ++x) {
          const bool skip = bpp && (x / bpp >= c.w - c.skipCols || y >= c.h - c.skipRows);
          ASSERT_EQ(wr[p][size_t(y) * d.rowBytes + x], !skip)
              << c.member << " " << c.w << "x" << c.h << " plane " << p << " byte " << x << " row " << y;
        }
    }
  }
}

// The lone last pixel of an odd width takes the tail forms of a pair made
// of it twice: luma YT, and chroma of the pair (packed destinations), or,
// on the inverse side, S1 / L2 with the chroma the row gives it.
TEST(YccSub, LastOddPixelMatchesAPairOfItself) {
  const uint8_t R = 201, G = 37, B = 90;
  for (const char* name : {"RGBToYCbCr422_8u_C3C2R", "RGBToYCrCb422_8u_C3C2R", "BGRToYCbCr422_8u_C3C2R"}) {
    const Sub& s = find(name);
    const bool bgr = name[0] == 'B';
    std::vector<uint8_t> odd(9), pair(6);
    for (int i = 0; i < 3; ++i) odd[3 * i] = 10, odd[3 * i + 1] = 20, odd[3 * i + 2] = 30;
    const uint8_t px[3] = {bgr ? B : R, G, bgr ? R : B};
    std::memcpy(&odd[6], px, 3), std::memcpy(&pair[0], px, 3), std::memcpy(&pair[3], px, 3);
    const Result a = runOn(s, {3, 1}, {odd}), b = runOn(s, {2, 1}, {pair});
    EXPECT_EQ(a.dst[0][4], b.dst[0][0]) << name << " luma";
    EXPECT_EQ(a.dst[0][5], b.dst[0][1]) << name << " chroma byte";
  }
  // Inverse from packed rows: the last pixel's other chroma is the byte
  // before its Y; in a row of one pixel its own byte serves as both.
  struct Case {
    const char* member;
    std::vector<uint8_t> row, pair;
  } cases[] = {
      {"YCbCr422ToRGB_8u_C2C3R", {50, 60, 70, 80, 90, 100}, {90, 100, 90, 80}},
      {"YCrCb422ToRGB_8u_C2C3R", {50, 60, 70, 80, 90, 100}, {90, 100, 90, 80}},
      {"YCbCr422ToRGB_8u_C2C3R", {90, 100}, {90, 100, 90, 100}},
      {"YCbCr422ToBGR_8u_C2C4R", {50, 60, 70, 80, 90, 100}, {90, 100, 90, 80}},
  };
  for (const Case& c : cases) {
    const Sub& s = find(c.member);
    const int w = int(c.row.size()) / 2, bpp = s.m.dst[0]({1, 1}).rowBytes;
    const Result a = runOn(s, {w, 1}, {c.row}), b = runOn(s, {2, 1}, {c.pair});
    EXPECT_TRUE(std::equal(b.dst[0].begin(), b.dst[0].begin() + bpp, a.dst[0].begin() + (w - 1) * bpp)) << c.member << " width " << w;
  }
  // keliYCbCr422ToBGR_8u_C2C3R has no tail: its last pixel is S1 as in the
  // tail of the C4 member.
  const Result c3 = runOn(find("YCbCr422ToBGR_8u_C2C3R"), {3, 1}, {{50, 60, 70, 80, 90, 100}});
  const Result c4 = runOn(find("YCbCr422ToBGR_8u_C2C4R"), {2, 1}, {{90, 100, 90, 80}});
  EXPECT_TRUE(std::equal(c4.dst[0].begin(), c4.dst[0].begin() + 3, c3.dst[0].begin() + 6));
}

// 4:1:1 sources whose width leaves 1 to 3 pixels past the last group: they
// take the last group's chroma, through J2 when 3 are left and through L5
// when 1 or 2 are left.
TEST(YccSub, Ycbcr411LastPixels) {
  struct Case {
    int w;
    std::array<int, 3> bgr;
  } cases[] = {{7, {242, 132, 0}}, {6, {243, 133, 0}}, {5, {243, 133, 0}}};
  for (const Case& c : cases) {
    std::vector<uint8_t> y(c.w, 100), u(1, 200), v(1, 50), d(3 * c.w);
    const Kel8u* sp[3] = {y.data(), u.data(), v.data()};
    const int ss[3] = {c.w, 1, 1};
    ASSERT_EQ(keliYCbCr411ToBGR_8u_P3C3R(sp, ss, d.data(), 3 * c.w, {c.w, 1}), kelStatusOk);
    for (int x = 4; x < c.w; ++x) EXPECT_EQ((std::array<int, 3>{d[3 * x], d[3 * x + 1], d[3 * x + 2]}), c.bgr) << "width " << c.w << " pixel " << x;
  }
}

// YCrCb members are their YCbCr counterparts with the chroma planes or bytes
// exchanged; alpha members write the low 8 bits of alpha.
TEST(YccSub, CrCbOrderAndAlpha) {
  std::mt19937 rng(77);
  const int w = 37, h = 6, cw = w >> 1, ch = h >> 1;
  std::vector<uint8_t> bgr(3 * w * h), bgra(4 * w * h), rgba(4 * w * h);
  for (auto& b : bgr) b = uint8_t(rng());
  for (int i = 0; i < w * h; ++i)
    for (int k = 0; k < 3; ++k) bgra[4 * i + k] = bgr[3 * i + k], rgba[4 * i + k] = bgr[3 * i + 2 - k];
  std::vector<uint8_t> y1(w * h), a1(cw * ch), b1(cw * ch), y2(w * h), a2(cw * ch), b2(cw * ch);
  Kel8u* d1[3] = {y1.data(), a1.data(), b1.data()};
  Kel8u* d2[3] = {y2.data(), b2.data(), a2.data()};
  const int ds[3] = {w, cw, cw};
  EXPECT_EQ(keliBGRToYCbCr420_8u_C3P3R(bgr.data(), 3 * w, d1, ds, {w, h}), kelStatusOddSizeTrimmed);
  EXPECT_EQ(keliBGRToYCrCb420_8u_C3P3R(bgr.data(), 3 * w, d2, ds, {w, h}), kelStatusOddSizeTrimmed);
  EXPECT_TRUE(y1 == y2 && a1 == a2 && b1 == b2) << "BGRToYCrCb420 C3";
  EXPECT_EQ(keliBGRToYCbCr420_8u_AC4P3R(bgra.data(), 4 * w, d1, ds, {w, h}), kelStatusOddSizeTrimmed);
  EXPECT_EQ(keliRGBToYCrCb420_8u_AC4P3R(rgba.data(), 4 * w, d2, ds, {w, h}), kelStatusOddSizeTrimmed);
  EXPECT_TRUE(y1 == y2 && a1 == a2 && b1 == b2) << "RGBToYCrCb420 AC4";

  // Packed rows: Y0 Cb Y1 Cr against Y0 Cr Y1 Cb.
  std::vector<uint8_t> cb(2 * w), cr(2 * w), o1(3 * w), o2(3 * w);
  for (auto& b : cb) b = uint8_t(rng());
  cr = cb;
  for (int j = 0; j + 1 < w; j += 2) std::swap(cr[2 * j + 1], cr[2 * j + 3]);
  EXPECT_EQ(keliYCbCr422ToRGB_8u_C2C3R(cb.data(), 2 * w, o1.data(), 3 * w, {w - 1, 1}), kelStatusOk);
  EXPECT_EQ(keliYCrCb422ToRGB_8u_C2C3R(cr.data(), 2 * w, o2.data(), 3 * w, {w - 1, 1}), kelStatusOk);
  EXPECT_TRUE(o1 == o2) << "YCrCb422ToRGB C2C3R";

  // 4:2:0 planes to four-byte pixels.
  std::vector<uint8_t> q1(4 * w * h), q2(4 * w * h);
  const Kel8u* s1[3] = {y1.data(), a1.data(), b1.data()};
  const Kel8u* s2[3] = {y1.data(), b1.data(), a1.data()};
  const int ss[3] = {w, cw, cw};
  EXPECT_EQ(keliYCbCr420ToBGR_8u_P3C4R(s1, ss, q1.data(), 4 * w, {w, h}, 0x3C5), kelStatusOddSizeTrimmed);
  EXPECT_EQ(keliYCrCb420ToRGB_8u_P3C4R(s2, ss, q2.data(), 4 * w, {w, h}, 0x3C5), kelStatusOddSizeTrimmed);
  for (int i = 0; i < w * h; ++i) {
    if ((i % w) >= (w & ~1)) continue;
    ASSERT_EQ(q1[4 * i], q2[4 * i + 2]) << i;
    ASSERT_EQ(q1[4 * i + 1], q2[4 * i + 1]) << i;
    ASSERT_EQ(q1[4 * i + 3], 0xC5) << i;
    ASSERT_EQ(q2[4 * i + 3], 0xC5) << i;
  }
}

// A tail pair of the RGB -> packed line rounds its first luma (YT) but not its
// second (YU); the body (YH) truncates both. Gray 128 tells them apart.
TEST(YccSub, PackedTailRoundsOnlyTheFirstLuma) {
  struct Case {
    int w, y0, y1;
  } cases[] = {{2, 126, 125}, {8, 125, 125}};
  for (const Case& c : cases) {
    std::vector<uint8_t> rgb(3 * c.w, 128), out(2 * c.w);
    ASSERT_EQ(keliRGBToYCbCr422_8u_C3C2R(rgb.data(), 3 * c.w, out.data(), 2 * c.w, {c.w, 1}), kelStatusOk);
    EXPECT_EQ(out[0], c.y0) << "width " << c.w;
    EXPECT_EQ(out[2], c.y1) << "width " << c.w;
    EXPECT_EQ(out[1], 128);
    EXPECT_EQ(out[3], 128);
  }
}
