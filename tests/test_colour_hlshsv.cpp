// RGB and BGR <-> HLS and HSV: the 37 members.
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <random>

#include "colour_rows.h"
#include "harness.h"

using namespace kt;

namespace {

template <class T>
using Fn = KelStatus (*)(const T*, int, T*, int, KeliSize);
using Fc3p3 = KelStatus (*)(const Kel8u*, int, Kel8u* [3], int, KeliSize);
using Fp3c3 = KelStatus (*)(const Kel8u* const[3], int, Kel8u*, int, KeliSize);
using Fp3 = KelStatus (*)(const Kel8u* const[3], int, Kel8u* [3], int, KeliSize);
using Fac4p4 = KelStatus (*)(const Kel8u*, int, Kel8u* [4], int, KeliSize);
using Fap4c4 = KelStatus (*)(const Kel8u* const[4], int, Kel8u*, int, KeliSize);
using Fap4 = KelStatus (*)(const Kel8u* const[4], int, Kel8u* [4], int, KeliSize);

template <class T>
Member px(const char* name, int ch, Fn<T> f) {
  Member m{name, {full(ch * int(sizeof(T)))}, {full(ch * int(sizeof(T)))},
           [f](Call& c) { return f(c.sT<T>(0), c.ss(0), c.dT<T>(0), c.ds(0), c.roi()); }};
  m.sampleBytes = sizeof(T);
  return m;
}
std::vector<Geom> planesOf(int n) { return std::vector<Geom>(n, full(1)); }
// The BGR group: pointers, steps (one per side), then size.
Member bgr(Member m) {
  m.order = Order::D;
  m.checksSteps = true;
  m.sharedSrcStep = m.src.size() > 1;
  m.sharedDstStep = m.dst.size() > 1;
  return m;
}
void addBgr(std::vector<Member>& v, const std::string& op, Fc3p3 c3p3, Fp3c3 p3c3, Fp3 p3, Fac4p4 ac4p4, Fap4c4 ap4c4,
            Fap4 ap4) {
  v.push_back(bgr({"keli" + op + "_8u_C3P3R", {full(3)}, planesOf(3), [c3p3](Call& c) {
                     const Kel8u* s = c.s(0);
                     return c3p3(s, c.ss(0), c.dArr(3), c.ds(0), c.roi());
                   }}));
  v.push_back(bgr({"keli" + op + "_8u_P3C3R", planesOf(3), {full(3)}, [p3c3](Call& c) {
                     auto s = c.sArr(3);
                     return p3c3(s, c.ss(0), c.d(0), c.ds(0), c.roi());
                   }}));
  v.push_back(bgr({"keli" + op + "_8u_P3R", planesOf(3), planesOf(3), [p3](Call& c) {
                     auto s = c.sArr(3);
                     return p3(s, c.ss(0), c.dArr(3), c.ds(0), c.roi());
                   }}));
  v.push_back(bgr({"keli" + op + "_8u_AC4P4R", {full(4)}, planesOf(4), [ac4p4](Call& c) {
                     const Kel8u* s = c.s(0);
                     return ac4p4(s, c.ss(0), c.dArr(4), c.ds(0), c.roi());
                   }}));
  v.push_back(bgr({"keli" + op + "_8u_AP4C4R", planesOf(4), {full(4)}, [ap4c4](Call& c) {
                     auto s = c.sArr(4);
                     return ap4c4(s, c.ss(0), c.d(0), c.ds(0), c.roi());
                   }}));
  v.push_back(bgr({"keli" + op + "_8u_AP4R", planesOf(4), planesOf(4), [ap4](Call& c) {
                     auto s = c.sArr(4);
                     return ap4(s, c.ss(0), c.dArr(4), c.ds(0), c.roi());
                   }}));
}

#define KT_PAIR(op, d, T) px<T>("keli" #op "_" #d "_C3R", 3, keli##op##_##d##_C3R), \
                          px<T>("keli" #op "_" #d "_AC4R", 4, keli##op##_##d##_AC4R)

std::vector<Member> rgbMembers() {
  return {KT_PAIR(RGBToHLS, 8u, Kel8u),  KT_PAIR(RGBToHLS, 16u, Kel16u), KT_PAIR(RGBToHLS, 16s, Kel16s),
          KT_PAIR(RGBToHLS, 32f, Kel32f), KT_PAIR(HLSToRGB, 8u, Kel8u),   KT_PAIR(HLSToRGB, 16u, Kel16u),
          KT_PAIR(HLSToRGB, 16s, Kel16s), KT_PAIR(HLSToRGB, 32f, Kel32f), KT_PAIR(RGBToHSV, 8u, Kel8u),
          KT_PAIR(RGBToHSV, 16u, Kel16u), KT_PAIR(HSVToRGB, 8u, Kel8u),   KT_PAIR(HSVToRGB, 16u, Kel16u)};
}
std::vector<Member> bgrMembers() {
  Member ac4 = px<Kel8u>("keliBGRToHLS_8u_AC4R", 4, keliBGRToHLS_8u_AC4R);
  ac4.order = Order::C;
  ac4.checksSteps = true;
  std::vector<Member> v = {ac4};
  addBgr(v, "BGRToHLS", keliBGRToHLS_8u_C3P3R, keliBGRToHLS_8u_P3C3R, keliBGRToHLS_8u_P3R, keliBGRToHLS_8u_AC4P4R,
         keliBGRToHLS_8u_AP4C4R, keliBGRToHLS_8u_AP4R);
  addBgr(v, "HLSToBGR", keliHLSToBGR_8u_C3P3R, keliHLSToBGR_8u_P3C3R, keliHLSToBGR_8u_P3R, keliHLSToBGR_8u_AC4P4R,
         keliHLSToBGR_8u_AP4C4R, keliHLSToBGR_8u_AP4R);
  return v;
}

// Sources built from a few telling values (0, 1, mid, full, ties between
// channels, float specials), so that gray pixels, D = 0, mx = 0 and equal
// maxima are frequent rather than one in 65536.
void fillTelling(Images& im, int sampleBytes, std::mt19937& rng) {
  static const uint8_t b8[] = {0, 1, 2, 127, 128, 254, 255};
  static const uint16_t b16[] = {0, 1, 2, 32767, 32768, 65534, 65535};
  static const float f32[] = {0.0f, -0.0f, 1.0f, 0.5f, 0.25f, 1e-8f, -1.0f, 2.0f, 1e-40f,
                              std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::quiet_NaN(), 3.4e38f};
  for (auto& g : im.src) {
    for (int y = 0; y < g->dim().rows; ++y)
      for (int x = 0; x + sampleBytes <= g->dim().rowBytes; x += sampleBytes) {
        if (sampleBytes == 1) g->at(x, y) = b8[rng() % 7];
        else if (sampleBytes == 2) std::memcpy(&g->at(x, y), &b16[rng() % 7], 2);
        else std::memcpy(&g->at(x, y), &f32[rng() % 13], 4);
      }
    g->snapshot();
  }
}

std::vector<Member> allMembers() {
  std::vector<Member> v = rgbMembers(), b = bgrMembers();
  v.insert(v.end(), b.begin(), b.end());
  return v;
}

}  // namespace

KT_MEMBERS(allMembers);

TEST(ColourHlsHsv, GuardsErrorsAndPathsRgb) { checkAll(rgbMembers()); }
// The BGR members open a region at every size; the many small calls of the
// generic checks run with a team of one (the team sizes have their own test).
TEST(ColourHlsHsv, GuardsErrorsAndPathsBgr) {
  ThreadScope one(1);
  checkAll(bgrMembers());
}

// Vector paths against the scalar definitions where the reciprocals meet
// D = 0, mx = 0, ties of channels and, in 32f, infinities, NaNs, denormals.
TEST(ColourHlsHsv, PathsOnTellingValues) {
  std::vector<Member> all = rgbMembers(), b = bgrMembers();
  all.insert(all.end(), b.begin(), b.end());
  for (const Member& m : all) {
    std::mt19937 rng(5);
    for (int t = 0; t < 6; ++t) {
      const KeliSize roi = {1 + static_cast<int>(rng() % 90), 1 + static_cast<int>(rng() % 3)};
      const uint32_t seed = rng();
      std::vector<std::vector<uint8_t>> ref;
      for (kel::Isa isa : paths()) {
        Images im = makeImages(m, roi, StepMode::Padded, 0, seed);
        std::mt19937 fill(seed);
        fillTelling(im, m.sampleBytes, fill);
        IsaScope scope(isa);
        ThreadScope one(1);
        ASSERT_EQ(run(m, im, roi), kelStatusOk);
        std::vector<std::vector<uint8_t>> out;
        for (auto& p : im.dst) out.push_back(p->region());
        if (isa == kel::Isa::Scalar) ref = out;
        else ASSERT_TRUE(out == ref) << m.name << " path " << int(isa) << " at " << roi.width << "x" << roi.height;
      }
    }
  }
}

// RGB members go to the team above 4096 pixels, the BGR members always;
// the bytes do not depend on the team size.
TEST(ColourHlsHsv, ThreadCountsGiveTheSameBytes) {
  const std::vector<KeliSize> sizes = {{64, 64}, {4096, 1}, {4097, 1}, {37, 211}, {3, 5}};
  for (const Member& m : rgbMembers())
    if (m.name.find("C3R") != std::string::npos) checkThreads(m, sizes);
  for (const Member& m : bgrMembers()) checkThreads(m, sizes);
}

namespace {
using P8 = std::array<Kel8u, 3>;
const RowOf<Kel8u> kHls8[] = {{keliRGBToHLS_8u_C3R, 3, 8}, {keliRGBToHLS_8u_AC4R, 4, 4}};
const RowOf<Kel8u> kRgb8[] = {{keliHLSToRGB_8u_C3R, 3, 8}, {keliHLSToRGB_8u_AC4R, 4, 4}};
const RowOf<Kel8u> kHsv8[] = {{keliRGBToHSV_8u_C3R, 3, 4}, {keliRGBToHSV_8u_AC4R, 4, 4}};
const RowOf<Kel8u> kHsvRgb8[] = {{keliHSVToRGB_8u_C3R, 3, 4}, {keliHSVToRGB_8u_AC4R, 4, 4}};

::testing::AssertionResult near(const P8& got, const P8& want, int tol) {
  for (int k = 0; k < 3; ++k)
    if (std::abs(got[k] - want[k]) > tol)
      return ::testing::AssertionFailure() << "(" << int(got[0]) << "," << int(got[1]) << "," << int(got[2])
                                           << ") against (" << int(want[0]) << "," << int(want[1]) << ","
                                           << int(want[2]) << ")";
  return ::testing::AssertionSuccess();
}
}  // namespace

// Black, white, grays and primaries, body and tail, 8u. Gray pixels are
// exact everywhere; the primaries' hues are exact in the rounding forms and
// S may lose one in the truncating ones.
TEST(ColourHlsHsv, TellingValuesOf8u) {
  const struct {
    P8 rgb, hls, hsv;
  } cases[] = {{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}},         {{255, 255, 255}, {0, 255, 0}, {0, 0, 255}},
               {{128, 128, 128}, {0, 128, 0}, {0, 0, 128}}, {{255, 0, 0}, {0, 128, 255}, {0, 255, 255}},
               {{0, 255, 0}, {85, 128, 255}, {85, 255, 255}}, {{0, 0, 255}, {170, 128, 255}, {170, 255, 255}}};
  for (const auto& c : cases) {
    const bool gray = c.rgb[0] == c.rgb[1] && c.rgb[1] == c.rgb[2];
    for (const auto& r : kHls8) {
      EXPECT_TRUE(near(r.bodyOf(c.rgb), c.hls, gray ? 0 : 0)) << "body";
      // Tails: C3 truncates (L 127.5 gives 127, hue 120 * 0.7083333 gives 84).
      EXPECT_TRUE(near(r.tailOf(c.rgb), c.hls, gray ? 0 : (r.ch == 3 ? 1 : 0))) << "tail " << r.ch;
    }
    for (const auto& r : kHsv8) {
      EXPECT_TRUE(near(r.bodyOf(c.rgb), c.hsv, gray ? 0 : 1)) << "body";
      EXPECT_TRUE(near(r.tailOf(c.rgb), c.hsv, 0)) << "tail";
    }
    // And back: gray exactly, primaries within one.
    for (const auto& r : kRgb8) {
      EXPECT_TRUE(near(r.bodyOf(c.hls), c.rgb, gray ? 0 : 1));
      EXPECT_TRUE(near(r.tailOf(c.hls), c.rgb, gray ? 0 : 1));
    }
    for (const auto& r : kHsvRgb8) {
      EXPECT_TRUE(near(r.bodyOf(c.hsv), c.rgb, gray ? 0 : 1));
      EXPECT_TRUE(near(r.tailOf(c.hsv), c.rgb, 0));
    }
  }
  // (127, 128, 128): Lf = 127.5; nearest gives 128, trunc 127.
  EXPECT_EQ(kHls8[0].bodyOf({127, 128, 128})[1], 128);
  EXPECT_EQ(kHls8[0].tailOf({127, 128, 128})[1], 127);
  EXPECT_EQ(kHls8[1].tailOf({127, 128, 128})[1], 128);
  // HSV: a full-scale hue is a full turn; HLS: S = 0 gives L in every column.
  for (const auto& r : kHsvRgb8)
    for (Kel8u s : {0, 90, 255}) {
      EXPECT_EQ(r.bodyOf({255, s, 200}), r.bodyOf({0, s, 200}));
      EXPECT_EQ(r.tailOf({255, s, 200}), r.tailOf({0, s, 200}));
    }
  for (const auto& r : kRgb8)
    for (int l = 0; l < 256; ++l)
      for (Kel8u h : {0, 100, 255}) {
        const Kel8u L = Kel8u(l);
        ASSERT_EQ(r.bodyOf({h, L, 0}), (P8{L, L, L}));
        ASSERT_EQ(r.tailOf({h, L, 0}), (P8{L, L, L}));
      }
}

// Gray pixels at 16 bits and 32f: H = S = 0 (-32768 in 16s), L kept; a
// difference of one float epsilon still counts as gray in 32f.
TEST(ColourHlsHsv, GrayAndFloatValues) {
  using S3 = std::array<Kel16s, 3>;
  using U3 = std::array<Kel16u, 3>;
  using F3 = std::array<Kel32f, 3>;
  const RowOf<Kel16s> s16{keliRGBToHLS_16s_C3R, 3, 4};
  for (Kel16s g : {-32768, -1, 0, 32767}) {
    EXPECT_EQ(s16.bodyOf({g, g, g}), (S3{-32768, g, -32768}));
    EXPECT_EQ(s16.tailOf({g, g, g}), (S3{-32768, g, -32768}));
  }
  const RowOf<Kel16u> u16{keliRGBToHLS_16u_C3R, 3, 4}, hsv16{keliRGBToHSV_16u_C3R, 3, 4};
  EXPECT_EQ(u16.bodyOf({65535, 0, 0}), (U3{0, 32768, 65535}));
  EXPECT_EQ(u16.bodyOf({0, 0, 65535})[0], 43690);  // 240 degrees
  EXPECT_EQ(hsv16.bodyOf({0, 0, 0}), (U3{0, 0, 0}));
  EXPECT_EQ(hsv16.tailOf({0, 65535, 0}), (U3{21845, 65535, 65535}));
  const RowOf<Kel16u> rgb16{keliHLSToRGB_16u_C3R, 3, 4}, hsvRgb16{keliHSVToRGB_16u_C3R, 3, 4};
  for (Kel16u l : {0, 1, 12345, 32768, 65535}) {
    EXPECT_EQ(rgb16.bodyOf({999, l, 0}), (U3{l, l, l}));
    EXPECT_EQ(rgb16.tailOf({999, l, 0}), (U3{l, l, l}));
  }
  EXPECT_EQ(hsvRgb16.tailOf({65535, 40000, 50000}), hsvRgb16.tailOf({0, 40000, 50000}));

  const RowOf<Kel32f> f{keliRGBToHLS_32f_C3R, 3, 4}, back{keliHLSToRGB_32f_C3R, 3, 4};
  const float e = 1.1920929e-7f;
  EXPECT_EQ(f.tailOf({0.5f, 0.5f + e, 0.5f}), (F3{0.0f, 0.5f + e / 2, 0.0f}));
  const F3 blue = f.tailOf({0.0f, 0.0f, 1.0f});
  EXPECT_NEAR(blue[0], 240.0f / 360.0f, 1e-7f);
  EXPECT_EQ(blue[1], 0.5f);
  EXPECT_EQ(blue[2], 1.0f);
  for (const F3& o : {back.bodyOf(blue), back.tailOf(blue)}) {
    EXPECT_NEAR(o[0], 0.0f, 1e-6f);
    EXPECT_NEAR(o[1], 0.0f, 1e-6f);
    EXPECT_NEAR(o[2], 1.0f, 1e-6f);
  }
  // Nothing is limited: a lightness above 1 stays there.
  EXPECT_GT(back.tailOf({0.1f, 1.5f, 0.5f})[0], 1.0f);
}

// The row splits by column: body forms below the body count, tail forms
// from there on; C3 8u HLS has groups of 8, the rest groups of 4, and the
// P3C3 BGR form has no body at all.
TEST(ColourHlsHsv, BodyAndTailSplitTheRowByColumn) {
  std::mt19937 rng(8);
  const RowOf<Kel8u> rows[] = {kHls8[0], kHls8[1], kRgb8[0], kRgb8[1], kHsv8[0], kHsvRgb8[1],
                               {keliBGRToHLS_8u_AC4R, 4, 4}};
  for (const auto& r : rows)
    for (int w : {1, 3, 4, 5, 7, 8, 9, 15, 16, 17, 33}) {
      std::vector<P8> px(w);
      for (auto& p : px) p = {Kel8u(rng()), Kel8u(rng()), Kel8u(rng())};
      const auto out = r.convert(px);
      for (int x = 0; x < w; ++x)
        ASSERT_EQ(out[x], x < r.body(w) ? r.bodyOf(px[x]) : r.tailOf(px[x])) << "width " << w << " column " << x;
    }
  // P3C3: every pixel of a row of 1000 as in a row of one.
  std::vector<Kel8u> b(1000), g(1000), r(1000), o(3000), one(3);
  for (int x = 0; x < 1000; ++x) b[x] = Kel8u(rng()), g[x] = Kel8u(rng()), r[x] = Kel8u(rng());
  const Kel8u* const planes[3] = {b.data(), g.data(), r.data()};
  ASSERT_EQ(keliBGRToHLS_8u_P3C3R(planes, 1000, o.data(), 3000, {1000, 1}), kelStatusOk);
  for (int x = 0; x < 1000; ++x) {
    const Kel8u* const p1[3] = {&b[x], &g[x], &r[x]};
    ASSERT_EQ(keliBGRToHLS_8u_P3C3R(p1, 1, one.data(), 3, {1, 1}), kelStatusOk);
    ASSERT_TRUE(std::equal(one.begin(), one.end(), o.begin() + 3 * x)) << x;
  }
}

// BGR forms are the RGB arithmetic in the other channel order: the tails
// equal the C3 RGB tail exactly; bodies differ only in low bits.
TEST(ColourHlsHsv, BgrGroupOrderAndAlpha) {
  std::mt19937 rng(3);
  const int w = 37;
  std::vector<Kel8u> bgra(4 * w), planes[4], out[4], rgb(3 * w), hls(3 * w);
  for (auto& v : bgra) v = Kel8u(rng());
  for (int k = 0; k < 4; ++k) planes[k].resize(w), out[k].assign(w, 7);
  for (int x = 0; x < w; ++x) {
    for (int k = 0; k < 4; ++k) planes[k][x] = bgra[4 * x + k];
    for (int k = 0; k < 3; ++k) rgb[3 * x + k] = bgra[4 * x + 2 - k];
  }
  Kel8u* dp[4] = {out[0].data(), out[1].data(), out[2].data(), out[3].data()};
  ASSERT_EQ(keliBGRToHLS_8u_AC4P4R(bgra.data(), 4 * w, dp, w, {w, 1}), kelStatusOk);
  ASSERT_EQ(keliRGBToHLS_8u_C3R(rgb.data(), 3 * w, hls.data(), 3 * w, {w, 1}), kelStatusOk);
  for (int x = 0; x < w; ++x) {
    EXPECT_EQ(out[3][x], bgra[4 * x + 3]) << "alpha copied";
    for (int k = 0; k < 3; ++k) {
      if (x >= (w & ~7)) EXPECT_EQ(out[k][x], hls[3 * x + k]) << x;
      else EXPECT_LE(std::abs(out[k][x] - hls[3 * x + k]), 1) << x;
    }
  }
  // The way back writes B to channel 0 and copies the alpha plane.
  std::vector<Kel8u> c4(4 * w, 9);
  const Kel8u* const sp[4] = {out[0].data(), out[1].data(), out[2].data(), bgra.data()};
  ASSERT_EQ(keliHLSToBGR_8u_AP4C4R(sp, w, c4.data(), 4 * w, {w, 1}), kelStatusOk);
  for (int x = 0; x < w; ++x) {
    EXPECT_EQ(c4[4 * x + 3], bgra[x]) << "alpha copied";
    for (int k = 0; k < 3; ++k) EXPECT_LE(std::abs(c4[4 * x + k] - bgra[4 * x + k]), 8) << x << " " << k;
  }
}

// Step checks: the planar BGR members test steps before the size, the AC4
// member the size first.
TEST(ColourHlsHsv, StepsBeforeSizeInTheBgrGroup) {
  Kel8u buf[64] = {};
  Kel8u* d3[3] = {buf, buf + 16, buf + 32};
  EXPECT_EQ(keliBGRToHLS_8u_C3P3R(buf, 0, d3, 4, {0, 1}), kelStatusBadStep);
  EXPECT_EQ(keliHLSToBGR_8u_C3P3R(buf, 12, d3, -4, {1, 0}), kelStatusBadStep);
  EXPECT_EQ(keliBGRToHLS_8u_AC4R(buf, 0, buf + 32, 16, {0, 1}), kelStatusBadSize);
  EXPECT_EQ(keliBGRToHLS_8u_AC4R(buf, 0, buf + 32, 16, {1, 1}), kelStatusBadStep);
  EXPECT_EQ(keliRGBToHLS_8u_C3R(buf, -3, buf + 32, 0, {1, 1}), kelStatusOk);
}

// Round trips on every 8u colour of a coarse grid: the truncating forms
// lose a little, none loses much.
TEST(ColourHlsHsv, RoundTripsStayClose) {
  std::vector<Kel8u> src;
  for (int r = 0; r < 256; r += 15)
    for (int g = 0; g < 256; g += 15)
      for (int b = 0; b < 256; b += 15) src.insert(src.end(), {Kel8u(r), Kel8u(g), Kel8u(b)});
  const int w = static_cast<int>(src.size() / 3);
  std::vector<Kel8u> mid(src.size()), back(src.size());
  const struct {
    Fn<Kel8u> fwd, inv;
    int tol;
  } trips[] = {{keliRGBToHLS_8u_C3R, keliHLSToRGB_8u_C3R, 8}, {keliRGBToHSV_8u_C3R, keliHSVToRGB_8u_C3R, 8}};
  for (const auto& t : trips) {
    ASSERT_EQ(t.fwd(src.data(), 3 * w, mid.data(), 3 * w, {w, 1}), kelStatusOk);
    ASSERT_EQ(t.inv(mid.data(), 3 * w, back.data(), 3 * w, {w, 1}), kelStatusOk);
    int worst = 0;
    for (size_t i = 0; i < src.size(); ++i) worst = std::max(worst, std::abs(src[i] - back[i]));
    EXPECT_LE(worst, t.tol);
  }
}

// Every 8-bit pixel, once as RGB and once as HSV (so every H, S, V), through
// the 8-bit bodies of each path: the AVX-512 bodies narrow their results
// without saturation because the results are in range by construction, and
// this holds them to the scalar definitions over the whole input space.
TEST(ColourHlsHsv, Every8BitPixelOnEveryPath) {
  constexpr int kW = 4096, kH = 4096;  // 2^24 pixels, one of each
  std::vector<Kel8u> src(3u * kW * kH), ref(src.size()), out(src.size());
  for (uint32_t i = 0; i < uint32_t(kW) * kH; ++i)
    src[3 * i] = Kel8u(i), src[3 * i + 1] = Kel8u(i >> 8), src[3 * i + 2] = Kel8u(i >> 16);
  const struct {
    const char* name;
    Fn<Kel8u> f;
  } members[] = {{"keliRGBToHSV_8u_C3R", keliRGBToHSV_8u_C3R},
                 {"keliHSVToRGB_8u_C3R", keliHSVToRGB_8u_C3R},
                 {"keliRGBToHLS_8u_C3R", keliRGBToHLS_8u_C3R}};
  const std::vector<kel::Isa> ps = paths();
  for (const auto& m : members)
    for (size_t pi = 0; pi < ps.size(); ++pi) {
      IsaScope scope(ps[pi]);
      std::optional<NoVbmiScope> noVbmi;
      if (pi > 0 && ps[pi - 1] == ps[pi]) noVbmi.emplace();
      std::vector<Kel8u>& o = pi == 0 ? ref : out;
      ASSERT_EQ(m.f(src.data(), 3 * kW, o.data(), 3 * kW, {kW, kH}), kelStatusOk);
      if (pi > 0) ASSERT_TRUE(o == ref) << m.name << " path " << int(ps[pi]) << (noVbmi ? " without VBMI" : "");
    }
}

// A small image whose rows are all body and lie end to end is converted as
// one row: the same bytes as padded rows.
TEST(ColourHlsHsv, GaplessSmallImagesGiveThePaddedResult) {
  for (const Member& m : rgbMembers()) checkTightEqualsPadded(m, {{8, 5}, {64, 64}, {16, 256}});
}
