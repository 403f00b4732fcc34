// RGB <-> YUV at full resolution.
#include <array>
#include <stdexcept>

#include "harness.h"

using namespace kt;

namespace {

// The nine members in the harness's terms.
std::vector<Member> members() {
  auto pix = [](const char* name, Geom s, Geom d, Invoke f) {
    Member m{name, {s}, {d}, f};
    return m;
  };
  std::vector<Member> v;
  v.push_back(pix("keliRGBToYUV_8u_C3R", full(3), full(3), [](Call& c) {
    return keliRGBToYUV_8u_C3R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi());
  }));
  v.push_back(pix("keliRGBToYUV_8u_AC4R", full(4), full(4), [](Call& c) {
    return keliRGBToYUV_8u_AC4R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi());
  }));
  v.push_back(pix("keliYUVToRGB_8u_C3R", full(3), full(3), [](Call& c) {
    return keliYUVToRGB_8u_C3R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi());
  }));
  v.push_back(pix("keliYUVToRGB_8u_AC4R", full(4), full(4), [](Call& c) {
    return keliYUVToRGB_8u_AC4R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi());
  }));
  Member m{"keliRGBToYUV_8u_C3P3R", {full(3)}, {full(1), full(1), full(1)}, [](Call& c) {
             const Kel8u* s = c.s(0);
             return keliRGBToYUV_8u_C3P3R(s, c.ss(0), c.dArr(3), c.ds(0), c.roi());
           }};
  m.sharedDstStep = true;
  v.push_back(m);
  m = {"keliRGBToYUV_8u_P3R", {full(1), full(1), full(1)}, {full(1), full(1), full(1)}, [](Call& c) {
         auto s = c.sArr(3);
         return keliRGBToYUV_8u_P3R(s, c.ss(0), c.dArr(3), c.ds(0), c.roi());
       }};
  m.sharedSrcStep = m.sharedDstStep = true;
  v.push_back(m);
  m = {"keliRGBToYUV_8u_AC4P4R", {full(4)}, {full(1), full(1), full(1), full(1)}, [](Call& c) {
         const Kel8u* s = c.s(0);
         return keliRGBToYUV_8u_AC4P4R(s, c.ss(0), c.dArr(4), c.ds(0), c.roi());
       }};
  m.sharedDstStep = true;
  v.push_back(m);
  m = {"keliYUVToRGB_8u_P3C3R", {full(1), full(1), full(1)}, {full(3)}, [](Call& c) {
         auto s = c.sArr(3);
         return keliYUVToRGB_8u_P3C3R(s, c.ss(0), c.d(0), c.ds(0), c.roi());
       }};
  m.sharedSrcStep = true;
  v.push_back(m);
  m = {"keliYUVToRGB_8u_P3R", {full(1), full(1), full(1)}, {full(1), full(1), full(1)}, [](Call& c) {
         auto s = c.sArr(3);
         return keliYUVToRGB_8u_P3R(s, c.ss(0), c.dArr(3), c.ds(0), c.roi());
       }};
  m.sharedSrcStep = m.sharedDstStep = true;
  v.push_back(m);
  return v;
}

using Px = std::array<int, 3>;
enum class L { C3, AC4, P3, P4 };

// A member seen as a row of pixels: `convert` runs it on one row of any
// width and gives the three output samples of each pixel.
struct RowMember {
  const char* name;
  int (*body)(int w);
  L in, out;
  KelStatus (*f)(const Kel8u* s, const Kel8u* const* sp, Kel8u* d, Kel8u** dp, int w);

  std::vector<Px> convert(const std::vector<Px>& px, std::vector<Kel8u>* alphaOut = nullptr) const {
    const int w = static_cast<int>(px.size());
    std::vector<Kel8u> s(4 * w + 16), d(4 * w + 16, 0xEE);
    auto sIndex = [&](L l, int x, int k) { return l == L::C3 ? 3 * x + k : l == L::AC4 ? 4 * x + k : k * w + x; };
    for (int x = 0; x < w; ++x) {
      for (int k = 0; k < 3; ++k) s[sIndex(in, x, k)] = static_cast<Kel8u>(px[x][k]);
      if (in == L::AC4) s[4 * x + 3] = static_cast<Kel8u>(x * 7 + 1);
    }
    const Kel8u* sp[3] = {s.data(), s.data() + w, s.data() + 2 * w};
    Kel8u* dp[4] = {d.data(), d.data() + w, d.data() + 2 * w, d.data() + 3 * w};
    EXPECT_EQ(f(s.data(), sp, d.data(), dp, w), kelStatusOk);
    std::vector<Px> o(w);
    for (int x = 0; x < w; ++x)
      for (int k = 0; k < 3; ++k) o[x][k] = d[sIndex(out == L::P4 ? L::P3 : out, x, k)];
    if (alphaOut) *alphaOut = d;
    return o;
  }
  // The body and the tail formula for one pixel: a row all of body, and a
  // row of one pixel, which is all tail.
  Px bodyOf(Px p) const { return convert(std::vector<Px>(16, p))[0]; }
  Px tailOf(Px p) const { return convert({p})[0]; }
};

int b16(int w) { return w & ~15; }
int b8(int w) { return w & ~7; }
int b0(int) { return 0; }
constexpr int kBig = 1 << 20;  // any step serves a one-row image

const RowMember kRows[] = {
    {"RGBToYUV_C3R", b16, L::C3, L::C3,
     [](const Kel8u* s, const Kel8u* const*, Kel8u* d, Kel8u**, int w) { return keliRGBToYUV_8u_C3R(s, kBig, d, kBig, {w, 1}); }},
    {"RGBToYUV_C3P3R", b8, L::C3, L::P3,
     [](const Kel8u* s, const Kel8u* const*, Kel8u*, Kel8u** dp, int w) { return keliRGBToYUV_8u_C3P3R(s, kBig, dp, kBig, {w, 1}); }},
    {"RGBToYUV_AC4R", b0, L::AC4, L::AC4,
     [](const Kel8u* s, const Kel8u* const*, Kel8u* d, Kel8u**, int w) { return keliRGBToYUV_8u_AC4R(s, kBig, d, kBig, {w, 1}); }},
    {"RGBToYUV_P3R", b16, L::P3, L::P3,
     [](const Kel8u*, const Kel8u* const* sp, Kel8u*, Kel8u** dp, int w) { return keliRGBToYUV_8u_P3R(sp, kBig, dp, kBig, {w, 1}); }},
    {"RGBToYUV_AC4P4R", b8, L::AC4, L::P4,
     [](const Kel8u* s, const Kel8u* const*, Kel8u*, Kel8u** dp, int w) { return keliRGBToYUV_8u_AC4P4R(s, kBig, dp, kBig, {w, 1}); }},
    {"YUVToRGB_C3R", b8, L::C3, L::C3,
     [](const Kel8u* s, const Kel8u* const*, Kel8u* d, Kel8u**, int w) { return keliYUVToRGB_8u_C3R(s, kBig, d, kBig, {w, 1}); }},
    {"YUVToRGB_AC4R", b0, L::AC4, L::AC4,
     [](const Kel8u* s, const Kel8u* const*, Kel8u* d, Kel8u**, int w) { return keliYUVToRGB_8u_AC4R(s, kBig, d, kBig, {w, 1}); }},
    {"YUVToRGB_P3C3R", b16, L::P3, L::C3,
     [](const Kel8u*, const Kel8u* const* sp, Kel8u* d, Kel8u**, int w) { return keliYUVToRGB_8u_P3C3R(sp, kBig, d, kBig, {w, 1}); }},
    {"YUVToRGB_P3R", b0, L::P3, L::P3,
     [](const Kel8u*, const Kel8u* const* sp, Kel8u*, Kel8u** dp, int w) { return keliYUVToRGB_8u_P3R(sp, kBig, dp, kBig, {w, 1}); }},
};
const RowMember& row(const char* name) {
  for (const RowMember& r : kRows)
    if (std::string(r.name) == name) return r;
  throw std::runtime_error(name);
}

}  // namespace

KT_MEMBERS(members);
TEST(RgbYuv, GuardsErrorsAndPaths) { checkAll(members()); }

// The published values of each form, reached through the member whose body
// or tail uses it.
TEST(RgbYuv, TellingValuesOfTheForwardForms) {
  struct Case {
    Px rgb, v1, t1, t2, v2;
  } cases[] = {
      {{255, 255, 255}, {254, 127, 127}, {255, 128, 128}, {254, 128, 128}, {254, 128, 128}},
      {{0, 0, 0}, {0, 128, 128}, {0, 128, 128}, {0, 128, 128}, {0, 128, 128}},
      {{255, 0, 0}, {76, 90, 255}, {76, 90, 255}, {76, 90, 255}, {76, 90, 255}},
      {{16, 128, 240}, {107, 193, 47}, {107, 193, 48}, {107, 193, 47}, {106, 193, 48}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(row("RGBToYUV_C3R").bodyOf(c.rgb), c.v1);
    EXPECT_EQ(row("RGBToYUV_C3P3R").bodyOf(c.rgb), c.v1);
    EXPECT_EQ(row("RGBToYUV_P3R").bodyOf(c.rgb), c.v1);
    EXPECT_EQ(row("RGBToYUV_C3R").tailOf(c.rgb), c.t1);
    EXPECT_EQ(row("RGBToYUV_AC4R").tailOf(c.rgb), c.t1);
    EXPECT_EQ(row("RGBToYUV_AC4P4R").tailOf(c.rgb), c.t1);
    EXPECT_EQ(row("RGBToYUV_P3R").tailOf(c.rgb), c.t2);
    EXPECT_EQ(row("RGBToYUV_AC4P4R").bodyOf(c.rgb), c.v2);
  }
}

TEST(RgbYuv, TellingValuesOfTheInverseForms) {
  for (const RowMember& r : kRows) {
    if (std::string(r.name).rfind("YUVToRGB", 0) != 0) continue;
    for (bool body : {true, false}) {
      if (body && r.body(16) == 0) continue;
      auto f = [&](Px p) { return body ? r.bodyOf(p) : r.tailOf(p); };
      EXPECT_EQ(f({100, 200, 50}), (Px{11, 116, 246})) << r.name << (body ? " body" : " tail");
      EXPECT_EQ(f({255, 128, 128}), (Px{255, 255, 255})) << r.name << (body ? " body" : " tail");
    }
  }
}

// Every pixel takes the body formula below the member's body count and the
// tail formula from there on, for widths around the block sizes.
TEST(RgbYuv, BodyAndTailSplitTheRowByColumn) {
  std::mt19937 rng(5);
  for (const RowMember& r : kRows) {
    for (int w : {1, 7, 8, 9, 12, 15, 16, 17, 23, 24, 31, 32, 33, 47, 50, 64, 65, 100}) {
      std::vector<Px> px(w);
      for (Px& p : px) p = {int(rng() % 256), int(rng() % 256), int(rng() % 256)};
      const std::vector<Px> out = r.convert(px);
      for (int x = 0; x < w; ++x) {
        const Px want = x < r.body(w) ? r.bodyOf(px[x]) : r.tailOf(px[x]);
        ASSERT_EQ(out[x], want) << r.name << " width " << w << " column " << x;
      }
    }
  }
}

// Over random colours the vector form V1 and the scalar form T1 differ in
// some pixels, by at most one in any sample.
TEST(RgbYuv, BodyAndTailOfTheForwardFormDifferByAtMostOne) {
  std::mt19937 rng(8);
  const RowMember& r = row("RGBToYUV_C3R");
  int differ = 0, n = 2000;
  for (int i = 0; i < n; ++i) {
    const Px p = {int(rng() % 256), int(rng() % 256), int(rng() % 256)};
    const Px b = r.bodyOf(p), t = r.tailOf(p);
    for (int k = 0; k < 3; ++k) ASSERT_LE(std::abs(b[k] - t[k]), 1);
    differ += b != t;
  }
  EXPECT_NEAR(differ / double(n), 0.31, 0.05);
}

TEST(RgbYuv, AlphaBytes) {
  std::vector<Px> px(19, Px{10, 20, 30});
  std::vector<Kel8u> d;
  row("RGBToYUV_AC4R").convert(px, &d);
  for (int x = 0; x < 19; ++x) EXPECT_EQ(d[4 * x + 3], 0xEE) << "destination alpha kept";
  row("YUVToRGB_AC4R").convert(px, &d);
  for (int x = 0; x < 19; ++x) EXPECT_EQ(d[4 * x + 3], 0xEE) << "destination alpha kept";
  row("RGBToYUV_AC4P4R").convert(px, &d);
  for (int x = 0; x < 19; ++x) EXPECT_EQ(d[3 * 19 + x], Kel8u(x * 7 + 1)) << "source alpha in the fourth plane";
}

// A negative step walks the rows upward: the rows come out in reverse order
// with the same values.
TEST(RgbYuv, NegativeStepReversesRows) {
  const int w = 37, h = 5, step = 3 * w;
  std::vector<Kel8u> s(step * h), a(step * h), b(step * h);
  std::mt19937 rng(3);
  for (auto& v : s) v = static_cast<Kel8u>(rng());
  ASSERT_EQ(keliRGBToYUV_8u_C3R(s.data(), step, a.data(), step, {w, h}), kelStatusOk);
  ASSERT_EQ(keliRGBToYUV_8u_C3R(s.data() + step * (h - 1), -step, b.data(), step, {w, h}), kelStatusOk);
  for (int y = 0; y < h; ++y)
    EXPECT_TRUE(std::equal(a.begin() + y * step, a.begin() + (y + 1) * step, b.begin() + (h - 1 - y) * step));
}
