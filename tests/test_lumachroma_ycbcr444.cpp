// RGB <-> studio-range YCbCr at full resolution.
#include <array>
#include <stdexcept>

#include "harness.h"

using namespace kt;

namespace {

using Px = std::array<int, 3>;
enum class L { C3, AC4, C4, P3 };

// One member, described once: its layouts, body count, order of checks and
// a call through pointer arrays. `run` serves both the harness (Call) and
// the one-row value tests.
struct Def {
  const char* name;
  L in, out;
  int (*body)(int w);
  Order order;
  bool alpha;
  KelStatus (*f)(const Kel8u* s, const Kel8u* const* sp, int ss, Kel8u* d, Kel8u** dp, int ds, KeliSize roi);
};

int b16(int w) { return w & ~15; }
int b8(int w) { return w & ~7; }
int b4(int w) { return w & ~3; }
int b0(int) { return 0; }
int ball(int w) { return w; }
constexpr int kAlpha = 0x1FF;  // only the low 8 bits count

#define S_ const Kel8u *s, const Kel8u *const *sp, int ss, Kel8u *d, Kel8u **dp, int ds, KeliSize roi
const Def kDefs[] = {
    {"keliRGBToYCbCr_8u_C3R", L::C3, L::C3, b16, Order::A, false, [](S_) { return keliRGBToYCbCr_8u_C3R(s, ss, d, ds, roi); }},
    {"keliRGBToYCbCr_8u_AC4R", L::AC4, L::AC4, b0, Order::A, false, [](S_) { return keliRGBToYCbCr_8u_AC4R(s, ss, d, ds, roi); }},
    {"keliRGBToYCbCr_8u_C3P3R", L::C3, L::P3, b8, Order::B, false, [](S_) { return keliRGBToYCbCr_8u_C3P3R(s, ss, dp, ds, roi); }},
    {"keliRGBToYCbCr_8u_AC4P3R", L::AC4, L::P3, b8, Order::B, false, [](S_) { return keliRGBToYCbCr_8u_AC4P3R(s, ss, dp, ds, roi); }},
    {"keliRGBToYCbCr_8u_P3R", L::P3, L::P3, b16, Order::A, false, [](S_) { return keliRGBToYCbCr_8u_P3R(sp, ss, dp, ds, roi); }},
    {"keliYCbCrToRGB_8u_C3R", L::C3, L::C3, b4, Order::A, false, [](S_) { return keliYCbCrToRGB_8u_C3R(s, ss, d, ds, roi); }},
    {"keliYCbCrToRGB_8u_AC4R", L::AC4, L::AC4, b0, Order::A, false, [](S_) { return keliYCbCrToRGB_8u_AC4R(s, ss, d, ds, roi); }},
    {"keliYCbCrToRGB_8u_P3R", L::P3, L::P3, b4, Order::A, false, [](S_) { return keliYCbCrToRGB_8u_P3R(sp, ss, dp, ds, roi); }},
    {"keliYCbCrToRGB_8u_P3C3R", L::P3, L::C3, b8, Order::A, false, [](S_) { return keliYCbCrToRGB_8u_P3C3R(sp, ss, d, ds, roi); }},
    {"keliYCbCrToRGB_8u_P3C4R", L::P3, L::C4, b8, Order::A, true, [](S_) { return keliYCbCrToRGB_8u_P3C4R(sp, ss, d, ds, roi, kAlpha); }},
    {"keliYCbCrToBGR_8u_P3C3R", L::P3, L::C3, ball, Order::B, false, [](S_) { return keliYCbCrToBGR_8u_P3C3R(sp, ss, d, ds, roi); }},
    {"keliYCbCrToBGR_8u_P3C4R", L::P3, L::C4, ball, Order::B, true, [](S_) { return keliYCbCrToBGR_8u_P3C4R(sp, ss, d, ds, roi, kAlpha); }},
};
#undef S_

const Def& def(const std::string& name) {
  for (const Def& d : kDefs)
    if (name == d.name || name == std::string(d.name).substr(4)) return d;
  throw std::runtime_error(name);
}

std::vector<Geom> geoms(L l) {
  if (l == L::P3) return {full(1), full(1), full(1)};
  return {full(l == L::C3 ? 3 : 4)};
}

std::vector<Member> members() {
  std::vector<Member> v;
  for (const Def& d : kDefs) {
    Member m{d.name, geoms(d.in), geoms(d.out), [&d](Call& c) {
               // Pointers in argument order: the source, then the destination.
               const Kel8u* s = nullptr;
               const Kel8u* const* sp = nullptr;
               if (d.in == L::P3) sp = c.sArr(3); else s = c.s(0);
               Kel8u* dd = nullptr;
               Kel8u** dp = nullptr;
               if (d.out == L::P3) dp = c.dArr(3); else dd = c.d(0);
               return d.f(s, sp, c.ss(0), dd, dp, c.ds(0), c.roi());
             }};
    m.order = d.order;
    m.sharedSrcStep = m.sharedDstStep = true;
    v.push_back(m);
  }
  return v;
}

int bytesOf(L l) { return l == L::C3 ? 3 : l == L::P3 ? 1 : 4; }

// A member on one row of pixels: the three output samples of each pixel,
// and the destination bytes for alpha checks.
std::vector<Px> convert(const Def& df, const std::vector<Px>& px, std::vector<Kel8u>* raw = nullptr) {
  const int w = static_cast<int>(px.size());
  std::vector<Kel8u> s(4 * w + 16), d(4 * w + 16, 0xEE);
  auto at = [w](L l, int x, int k) { return l == L::P3 ? k * w + x : bytesOf(l) * x + k; };
  for (int x = 0; x < w; ++x) {
    for (int k = 0; k < 3; ++k) s[at(df.in, x, k)] = static_cast<Kel8u>(px[x][k]);
    if (df.in == L::AC4) s[4 * x + 3] = static_cast<Kel8u>(x * 7 + 1);
  }
  const Kel8u* sp[3] = {s.data(), s.data() + w, s.data() + 2 * w};
  Kel8u* dp[3] = {d.data(), d.data() + w, d.data() + 2 * w};
  EXPECT_EQ(df.f(s.data(), sp, 4 * w, d.data(), dp, 4 * w, {w, 1}), kelStatusOk);
  std::vector<Px> o(w);
  for (int x = 0; x < w; ++x)
    for (int k = 0; k < 3; ++k) o[x][k] = d[at(df.out, x, k)];
  if (raw) *raw = d;
  return o;
}
// The body and the tail formula of a member for one pixel: a row of 16,
// all body where the member has a body, and a row of one, all tail.
Px bodyOf(const Def& d, Px p) { return convert(d, std::vector<Px>(16, p))[0]; }
Px tailOf(const Def& d, Px p) { return convert(d, {p})[0]; }
Px swap(Px p) { return {p[2], p[1], p[0]}; }

}  // namespace

KT_MEMBERS(members);
TEST(RgbYcbcr444, GuardsErrorsAndPaths) { checkAll(members()); }

TEST(RgbYcbcr444, TellingValuesOfTheForwardForms) {
  struct Case {
    Px rgb, f1, f2;  // F2 and FT agree on these
  } cases[] = {
      {{255, 255, 255}, {235, 128, 128}, {235, 128, 128}},
      {{255, 0, 0}, {81, 90, 239}, {82, 90, 240}},
      {{16, 128, 240}, {108, 193, 70}, {108, 194, 71}},
      {{0, 0, 0}, {16, 128, 128}, {16, 128, 128}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(bodyOf(def("RGBToYCbCr_8u_C3R"), c.rgb), c.f1);
    for (const char* m : {"RGBToYCbCr_8u_C3R", "RGBToYCbCr_8u_AC4R", "RGBToYCbCr_8u_C3P3R", "RGBToYCbCr_8u_P3R"})
      EXPECT_EQ(tailOf(def(m), c.rgb), c.f2) << m << " tail";
    for (const char* m : {"RGBToYCbCr_8u_C3P3R", "RGBToYCbCr_8u_AC4P3R", "RGBToYCbCr_8u_P3R"})
      EXPECT_EQ(bodyOf(def(m), c.rgb), c.f2) << m << " body";
  }
}

// Each inverse form reached through a member whose body or tail uses it.
TEST(RgbYcbcr444, TellingValuesOfTheInverseForms) {
  struct Form {
    const char* member;
    bool body, bgr;
    Px white, colour, black;  // (235,128,128), (100,200,50), (0,128,128)
  } forms[] = {
      {"YCbCrToRGB_8u_C3R", true, false, {255, 255, 255}, {0, 133, 243}, {0, 0, 0}},       // J1
      {"YCbCrToRGB_8u_P3R", true, false, {254, 254, 254}, {0, 132, 242}, {0, 0, 0}},       // J2
      {"YCbCrToRGB_8u_P3C3R", true, false, {255, 255, 255}, {0, 133, 243}, {0, 0, 0}},     // J3
      {"YCbCrToRGB_8u_P3C4R", true, false, {255, 255, 255}, {0, 133, 243}, {0, 0, 0}},     // J4
      {"YCbCrToBGR_8u_P3C3R", false, true, {255, 255, 255}, {0, 133, 243}, {0, 0, 0}},     // J3, one pixel
      {"YCbCrToBGR_8u_P3C4R", false, true, {255, 255, 255}, {0, 133, 243}, {0, 0, 0}},     // J4, one pixel
      {"YCbCrToRGB_8u_C3R", false, false, {254, 254, 254}, {0, 132, 243}, {0, 0, 0}},      // L1
      {"YCbCrToRGB_8u_AC4R", false, false, {254, 254, 254}, {0, 132, 243}, {0, 0, 0}},     // L1
      {"YCbCrToRGB_8u_P3C3R", false, false, {254, 254, 254}, {0, 132, 242}, {0, 0, 0}},    // L2
      {"YCbCrToRGB_8u_P3C4R", false, false, {255, 255, 255}, {0, 133, 243}, {0, 0, 0}},    // L3
  };
  for (const Form& f : forms) {
    const Def& d = def(f.member);
    auto run = [&](Px p) {
      const Px o = f.body ? bodyOf(d, p) : tailOf(d, p);
      return f.bgr ? swap(o) : o;
    };
    EXPECT_EQ(run({235, 128, 128}), f.white) << f.member << (f.body ? " body" : " tail");
    EXPECT_EQ(run({100, 200, 50}), f.colour) << f.member << (f.body ? " body" : " tail");
    EXPECT_EQ(run({0, 128, 128}), f.black) << f.member << (f.body ? " body" : " tail");
  }
}

// J4 subtracts floored products where J3 adds products by negative
// coefficients: G differs in some pixels, R and B never.
TEST(RgbYcbcr444, J4DiffersFromJ3InGreenOnly) {
  std::mt19937 rng(4);
  std::vector<Px> px(4096);
  for (Px& p : px) p = {int(rng() % 256), int(rng() % 256), int(rng() % 256)};
  const std::vector<Px> j3 = convert(def("YCbCrToBGR_8u_P3C3R"), px), j4 = convert(def("YCbCrToBGR_8u_P3C4R"), px);
  int differ = 0;
  for (size_t i = 0; i < px.size(); ++i) {
    EXPECT_EQ(j3[i][0], j4[i][0]);
    EXPECT_EQ(j3[i][2], j4[i][2]);
    EXPECT_LE(std::abs(j3[i][1] - j4[i][1]), 1);
    differ += j3[i][1] != j4[i][1];
  }
  EXPECT_GT(differ, 0);
}

// Each pixel takes the body formula below the member's body count and the
// tail formula from there on.
TEST(RgbYcbcr444, BodyAndTailSplitTheRowByColumn) {
  std::mt19937 rng(5);
  for (const Def& d : kDefs) {
    for (int w : {1, 3, 4, 5, 7, 8, 9, 12, 15, 16, 17, 24, 31, 32, 33, 47, 48, 65}) {
      std::vector<Px> px(w);
      for (Px& p : px) p = {int(rng() % 256), int(rng() % 256), int(rng() % 256)};
      const std::vector<Px> out = convert(d, px);
      for (int x = 0; x < w; ++x) {
        const Px want = x < d.body(w) ? bodyOf(d, px[x]) : tailOf(d, px[x]);
        ASSERT_EQ(out[x], want) << d.name << " width " << w << " column " << x;
      }
    }
  }
}

// The BGR members use the RGB member's body formula in every column, where
// the RGB member's tail uses another formula.
TEST(RgbYcbcr444, BgrMembersAreTheBodyFormulaSwapped) {
  std::mt19937 rng(6);
  for (auto [rgb, bgr] : {std::pair{"YCbCrToRGB_8u_P3C3R", "YCbCrToBGR_8u_P3C3R"},
                          std::pair{"YCbCrToRGB_8u_P3C4R", "YCbCrToBGR_8u_P3C4R"}}) {
    std::vector<Px> px(13);
    for (Px& p : px) p = {int(rng() % 256), int(rng() % 256), int(rng() % 256)};
    const std::vector<Px> out = convert(def(bgr), px);
    for (int x = 0; x < 13; ++x) EXPECT_EQ(swap(out[x]), bodyOf(def(rgb), px[x])) << bgr << " column " << x;
  }
}

TEST(RgbYcbcr444, AlphaBytes) {
  const std::vector<Px> px(21, Px{100, 120, 140});
  std::vector<Kel8u> d;
  for (const char* m : {"YCbCrToRGB_8u_P3C4R", "YCbCrToBGR_8u_P3C4R"}) {
    convert(def(m), px, &d);
    for (int x = 0; x < 21; ++x) EXPECT_EQ(d[4 * x + 3], 0xFF) << m << " column " << x;
  }
  for (const char* m : {"YCbCrToRGB_8u_AC4R", "RGBToYCbCr_8u_AC4R"}) {
    convert(def(m), px, &d);
    for (int x = 0; x < 21; ++x) EXPECT_EQ(d[4 * x + 3], 0xEE) << m << " keeps the destination alpha";
  }
}

// The C3R member's aligned and unaligned destinations give the same bytes.
TEST(RgbYcbcr444, AlignmentOfTheDestinationDoesNotChangeResults) {
  const int w = 53, h = 3;
  std::vector<Kel8u> s(3 * 64 * h);
  std::mt19937 rng(7);
  for (auto& b : s) b = static_cast<Kel8u>(rng());
  alignas(16) Kel8u a[3 * 64 * h + 16], u[3 * 64 * h + 16];
  ASSERT_EQ(keliRGBToYCbCr_8u_C3R(s.data(), 3 * 64, a, 3 * 64, {w, h}), kelStatusOk);
  ASSERT_EQ(keliRGBToYCbCr_8u_C3R(s.data(), 3 * 64, u + 1, 3 * 64, {w, h}), kelStatusOk);
  for (int y = 0; y < h; ++y)
    for (int i = 0; i < 3 * w; ++i) ASSERT_EQ(a[y * 192 + i], u[1 + y * 192 + i]);
}
