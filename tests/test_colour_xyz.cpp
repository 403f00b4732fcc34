// RGB <-> XYZ and RGB <-> YCC at 8u, 16u, 16s and 32f.
#include <array>
#include <cstring>
#include <random>

#include "colour_rows.h"
#include "harness.h"

using namespace kt;

namespace {

template <class T>
using Fn = KelStatus (*)(const T*, int, T*, int, KeliSize);

// A C3 or AC4 member of sample type T in the harness's terms.
template <class T>
Member member(const char* name, int ch, Fn<T> f) {
  Member m{name, {full(ch * int(sizeof(T)))}, {full(ch * int(sizeof(T)))},
           [f](Call& c) { return f(c.sT<T>(0), c.ss(0), c.dT<T>(0), c.ds(0), c.roi()); }};
  m.sampleBytes = sizeof(T);
  return m;
}

#define KT_PAIR(op, d, T) member<T>("keli" #op "_" #d "_C3R", 3, keli##op##_##d##_C3R), \
                          member<T>("keli" #op "_" #d "_AC4R", 4, keli##op##_##d##_AC4R)
#define KT_DEPTHS(op) KT_PAIR(op, 8u, Kel8u), KT_PAIR(op, 16u, Kel16u), KT_PAIR(op, 16s, Kel16s), \
                      KT_PAIR(op, 32f, Kel32f)

std::vector<Member> members() {
  return {KT_DEPTHS(RGBToXYZ), KT_DEPTHS(XYZToRGB), KT_DEPTHS(RGBToYCC), KT_DEPTHS(YCCToRGB)};
}

using P8 = std::array<Kel8u, 3>;

}  // namespace

KT_MEMBERS(members);
TEST(ColourXyzYcc, GuardsErrorsAndPaths) { checkAll(members()); }

// Rows go to the team above 4096 pixels; 4096 itself stays serial. The bytes
// are the same for 1 to 4 threads on either side.
TEST(ColourXyzYcc, ThreadCountsGiveTheSameBytes) {
  const std::vector<KeliSize> sizes = {{64, 64}, {4096, 1}, {4097, 1}, {65, 64}, {37, 211}};
  for (const Member& m : members())
    if (m.name.find("C3R") != std::string::npos) checkThreads(m, sizes);
}

// The published values, through the body (a row of 16) and the tail (a row of one).
TEST(ColourXyzYcc, TellingValuesOf8u) {
  const RowOf<Kel8u> xyzC3{keliRGBToXYZ_8u_C3R, 3, 8}, xyzAC4{keliRGBToXYZ_8u_AC4R, 4, 4};
  for (const auto* r : {&xyzC3, &xyzAC4}) {
    EXPECT_EQ(r->bodyOf({255, 255, 255}), (P8{242, 255, 255}));
    EXPECT_EQ(r->tailOf({255, 255, 255}), (P8{242, 254, 255}));
  }
  const RowOf<Kel8u> yccC3{keliRGBToYCC_8u_C3R, 3, 8}, yccAC4{keliRGBToYCC_8u_AC4R, 4, 4};
  const struct {
    P8 rgb, ycc;
  } ycc[] = {{{0, 0, 0}, {0, 156, 137}},    {{255, 255, 255}, {181, 156, 137}}, {{255, 0, 0}, {54, 122, 232}},
             {{0, 255, 0}, {106, 90, 57}}, {{0, 0, 255}, {20, 254, 121}}};
  for (const auto* r : {&yccC3, &yccAC4})
    for (const auto& c : ycc) {
      EXPECT_EQ(r->bodyOf(c.rgb), c.ycc);
      EXPECT_EQ(r->tailOf(c.rgb), c.ycc);
    }
}

TEST(ColourXyzYcc, TellingValuesOfFloatAndSigned) {
  using F3 = std::array<Kel32f, 3>;
  const RowOf<Kel32f> fwd{keliRGBToXYZ_32f_C3R, 3, 4};
  for (const F3& o : {fwd.bodyOf({1, 1, 1}), fwd.tailOf({1, 1, 1})}) {
    EXPECT_NEAR(o[0], 0.950456f, 1e-6f);
    EXPECT_NEAR(o[1], 1.0f, 1e-6f);
    EXPECT_EQ(o[2], 1.0f) << "Z limited from 1.088754";
  }
  EXPECT_GT(fwd.tailOf({2, 2, 2})[0], 1.0f) << "X and Y are not limited";
  EXPECT_EQ(fwd.tailOf({-1, -1, -1})[2], 0.0f) << "Z limited below";
  // YCC is stored as it comes; the way back limits every channel.
  const RowOf<Kel32f> ycc{keliRGBToYCC_32f_C3R, 3, 4};
  EXPECT_NEAR(ycc.tailOf({0, 0, 1})[1], 0.6117647f + 0.4368627f * 0.886f, 1e-6f);
  EXPECT_GT(ycc.tailOf({2, 0, 2})[2], 1.0f);
  const RowOf<Kel32f> back{keliYCCToRGB_32f_C3R, 3, 4}, backXyz{keliXYZToRGB_32f_C3R, 3, 4};
  for (const auto* r : {&back, &backXyz})
    for (const F3& o : {r->bodyOf({1, 0, 1}), r->tailOf({1, 0, 1}), r->tailOf({0, 1, 0})})
      for (float v : o) EXPECT_TRUE(v >= 0.0f && v <= 1.0f) << v;
  // 16s offset form: -32768 is black.
  using S3 = std::array<Kel16s, 3>;
  const RowOf<Kel16s> s16{keliRGBToYCC_16s_C3R, 3, 4};
  EXPECT_EQ(s16.bodyOf({-32768, -32768, -32768}), (S3{-32768, 7324, 2441}));
  EXPECT_EQ(s16.tailOf({-32768, -32768, -32768}), (S3{-32768, 7324, 2441}));
  const RowOf<Kel16s> x16{keliRGBToXYZ_16s_C3R, 3, 4};
  EXPECT_EQ(x16.tailOf({-32768, -32768, -32768}), (S3{-32768, -32768, -32768}));
}

// Every pixel takes the body form below the member's body count and the tail
// form from there on, for widths around the group sizes.
template <class T>
void expectSplit(const char* name, const RowOf<T>& r, std::mt19937& rng) {
  auto sample = [&]() -> T {
    if constexpr (std::is_same<T, Kel32f>::value) return static_cast<float>(rng() % 1200) / 1000.0f;
    else return static_cast<T>(rng());
  };
  for (int w : {1, 3, 4, 5, 7, 8, 9, 12, 15, 16, 17, 31, 33, 64, 67}) {
    std::vector<typename RowOf<T>::Px> px(w);
    for (auto& p : px) p = {sample(), sample(), sample()};
    const auto out = r.convert(px);
    for (int x = 0; x < w; ++x) {
      const auto want = x < r.body(w) ? r.bodyOf(px[x]) : r.tailOf(px[x]);
      ASSERT_TRUE(std::memcmp(&out[x], &want, sizeof(want)) == 0) << name << " width " << w << " column " << x;
    }
  }
}

TEST(ColourXyzYcc, BodyAndTailSplitTheRowByColumn) {
  std::mt19937 rng(11);
#define KT_SPLIT(op, d, T, g3, g4)                                    \
  expectSplit(#op "_" #d "_C3R", RowOf<T>{keli##op##_##d##_C3R, 3, g3}, rng); \
  expectSplit(#op "_" #d "_AC4R", RowOf<T>{keli##op##_##d##_AC4R, 4, g4}, rng);
  KT_SPLIT(RGBToXYZ, 8u, Kel8u, 8, 4)
  KT_SPLIT(XYZToRGB, 8u, Kel8u, 8, 4)
  KT_SPLIT(RGBToYCC, 8u, Kel8u, 8, 4)
  KT_SPLIT(YCCToRGB, 8u, Kel8u, 8, 4)
  KT_SPLIT(RGBToYCC, 16u, Kel16u, 4, 4)
  KT_SPLIT(YCCToRGB, 16u, Kel16u, 4, 4)
  KT_SPLIT(RGBToYCC, 16s, Kel16s, 4, 4)
  KT_SPLIT(RGBToXYZ, 16u, Kel16u, 4, 4)
  KT_SPLIT(XYZToRGB, 16s, Kel16s, 4, 4)
  KT_SPLIT(RGBToXYZ, 32f, Kel32f, 4, 4)
#undef KT_SPLIT
}

// The body and tail forms differ, and only in low bits: 8u by at most one
// (two in the inverse YCC), 16-bit YCC by at most one, in some pixels.
TEST(ColourXyzYcc, BodyAndTailDifferInLowBits) {
  std::mt19937 rng(4);
  const struct {
    RowOf<Kel8u> r;
    int maxDiff;
  } rows8[] = {{{keliRGBToXYZ_8u_C3R, 3, 8}, 1},
               {{keliXYZToRGB_8u_C3R, 3, 8}, 2},
               {{keliRGBToYCC_8u_C3R, 3, 8}, 1},
               {{keliYCCToRGB_8u_C3R, 3, 8}, 2}};
  for (const auto& c : rows8) {
    int differ = 0;
    for (int i = 0; i < 500; ++i) {
      const P8 p = {Kel8u(rng()), Kel8u(rng()), Kel8u(rng())};
      const P8 b = c.r.bodyOf(p), t = c.r.tailOf(p);
      for (int k = 0; k < 3; ++k) ASSERT_LE(std::abs(b[k] - t[k]), c.maxDiff);
      differ += b != t;
    }
    EXPECT_GT(differ, 0);
  }
  // A constant 16u image of width 5: four body pixels alike, and the tail
  // pixel one off in some channel.
  const RowOf<Kel16u> y16{keliRGBToYCC_16u_C3R, 3, 4};
  int found = 0;
  for (int i = 0; i < 200 && !found; ++i) {
    const std::array<Kel16u, 3> p = {Kel16u(rng()), Kel16u(rng()), Kel16u(rng())};
    const auto o = y16.convert(std::vector<std::array<Kel16u, 3>>(5, p));
    for (int x = 1; x < 4; ++x) ASSERT_EQ(o[x], o[0]);
    for (int k = 0; k < 3; ++k) ASSERT_LE(std::abs(o[4][k] - o[0][k]), 1);
    found += o[4] != o[0];
  }
  EXPECT_TRUE(found);
}

// Steps are turned into samples by a shift: an odd step of a 16-bit image
// reads and writes like the next lower even one.
TEST(ColourXyzYcc, OddStepActsAsNextLowerEven) {
  const int w = 9, h = 4, even = 3 * w * 2 + 6;
  std::vector<Kel16u> s(even / 2 * h), a(even / 2 * h, 7), b(even / 2 * h, 7);
  std::mt19937 rng(2);
  for (auto& v : s) v = Kel16u(rng());
  ASSERT_EQ(keliRGBToXYZ_16u_C3R(s.data(), even, a.data(), even, {w, h}), kelStatusOk);
  ASSERT_EQ(keliRGBToXYZ_16u_C3R(s.data(), even + 1, b.data(), even + 1, {w, h}), kelStatusOk);
  EXPECT_EQ(a, b);
  std::vector<Kel32f> f(24 * h), fa(24 * h, 0.5f), fb(24 * h, 0.5f);
  for (auto& v : f) v = static_cast<float>(rng() % 1000) / 1000.0f;
  ASSERT_EQ(keliRGBToYCC_32f_C3R(f.data(), 96, fa.data(), 96, {5, h}), kelStatusOk);
  ASSERT_EQ(keliRGBToYCC_32f_C3R(f.data(), 99, fb.data(), 98, {5, h}), kelStatusOk);
  EXPECT_TRUE(fa == fb);
}
