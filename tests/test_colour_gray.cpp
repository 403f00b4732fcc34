// RGB to gray with fixed and with the caller's weights.
#include <array>
#include <cstring>
#include <random>

#include "harness.h"

using namespace kt;

namespace {

template <class T>
using GrayFn = KelStatus (*)(const T*, int, T*, int, KeliSize);
template <class T>
using ColorFn = KelStatus (*)(const T*, int, T*, int, KeliSize, const Kel32f*);

// The caller's weights of the ColorToGray members in the generic checks.
const Kel32f kWeights[3] = {0.2f, 0.5f, 0.3f};

template <class T>
Member grayMember(const char* name, int ch, GrayFn<T> f) {
  Member m{name, {full(ch * int(sizeof(T)))}, {full(int(sizeof(T)))},
           [f](Call& c) { return f(c.sT<T>(0), c.ss(0), c.dT<T>(0), c.ds(0), c.roi()); }};
  m.sampleBytes = sizeof(T);
  return m;
}
template <class T>
Member colorMember(const char* name, int ch, ColorFn<T> f) {
  Member m{name, {full(ch * int(sizeof(T)))}, {full(int(sizeof(T)))},
           [f](Call& c) {
             const Kel32f w[3] = {c.paramF(kWeights[0]), c.paramF(kWeights[1]), c.paramF(kWeights[2])};
             return f(c.sT<T>(0), c.ss(0), c.dT<T>(0), c.ds(0), c.roi(), w);
           }};
  m.sampleBytes = sizeof(T);
  return m;
}

#define KT_GRAY(d, T)                                                        \
  grayMember<T>("keliRGBToGray_" #d "_C3C1R", 3, keliRGBToGray_##d##_C3C1R),   \
      grayMember<T>("keliRGBToGray_" #d "_AC4C1R", 4, keliRGBToGray_##d##_AC4C1R), \
      colorMember<T>("keliColorToGray_" #d "_C3C1R", 3, keliColorToGray_##d##_C3C1R), \
      colorMember<T>("keliColorToGray_" #d "_AC4C1R", 4, keliColorToGray_##d##_AC4C1R)

// One row: pixels of three samples in, gray samples out. AC4 sources carry
// a varying fourth sample, which must not matter.
template <class T>
struct GrayRow {
  ColorFn<T> f;
  int ch;
  const Kel32f* w;
  using Px = std::array<T, 3>;
  std::vector<T> convert(const std::vector<Px>& px) const {
    const int n = static_cast<int>(px.size());
    std::vector<T> s(ch * n), d(n);
    for (int x = 0; x < n; ++x) {
      for (int k = 0; k < 3; ++k) s[ch * x + k] = px[x][k];
      if (ch == 4) s[4 * x + 3] = T(x * 77 + 5);
    }
    EXPECT_EQ(f(s.data(), ch * n * int(sizeof(T)), d.data(), n * int(sizeof(T)), {n, 1}, w), kelStatusOk);
    return d;
  }
  T bodyOf(Px p) const { return convert(std::vector<Px>(16, p))[0]; }
  T tailOf(Px p) const { return convert({p})[0]; }
};
using P8 = std::array<Kel8u, 3>;

}  // namespace

std::vector<Member> grayMembers() {
  return {KT_GRAY(8u, Kel8u), KT_GRAY(16u, Kel16u), KT_GRAY(16s, Kel16s), KT_GRAY(32f, Kel32f)};
}
KT_MEMBERS(grayMembers);

TEST(ColourGray, GuardsErrorsAndPaths) {
  checkAll(grayMembers());
}

TEST(ColourGray, TellingValuesOf8u) {
  const Kel32f luma[3] = {0.299f, 0.587f, 0.114f};
  const struct {
    P8 rgb;
    int body, tail;
  } cases[] = {{{255, 255, 255}, 255, 255}, {{255, 0, 0}, 76, 76}, {{0, 255, 0}, 150, 150},
               {{0, 0, 255}, 29, 29},       {{0, 5, 5}, 3, 4}};
  // Null weights and the luma weights in floats give the fixed weights.
  for (int ch : {3, 4})
    for (const Kel32f* w : {static_cast<const Kel32f*>(nullptr), luma}) {
      const GrayRow<Kel8u> r{ch == 3 ? keliColorToGray_8u_C3C1R : keliColorToGray_8u_AC4C1R, ch, w};
      for (const auto& c : cases) {
        EXPECT_EQ(r.bodyOf(c.rgb), c.body) << ch;
        EXPECT_EQ(r.tailOf(c.rgb), c.tail) << ch;
      }
    }
  Kel8u s[12] = {0, 5, 5, 0, 5, 5, 0, 5, 5, 0, 5, 5}, d[4];
  ASSERT_EQ(keliRGBToGray_8u_C3C1R(s, 12, d, 4, {4, 1}), kelStatusOk);
  EXPECT_EQ(d[0], 3) << "a width of 4 in C3 is all body";
  ASSERT_EQ(keliRGBToGray_8u_AC4C1R(s, 16, d, 4, {3, 1}), kelStatusOk);
  EXPECT_EQ(d[0], 4) << "a width of 3 in AC4 is all tail";
}

// Weights the 8u form keeps as 16-bit patterns: a negative weight acts as a
// large unsigned factor, a body sum of 32768 or more reads as negative.
TEST(ColourGray, CallersWeightsIn8u) {
  const struct {
    Kel32f w[3];
    P8 rgb;
    int body, tail;
  } cases[] = {
      // 0.5: 2048. Body (128*256*2048 >> 16) + 8 = 1032 >> 4 = 64; tail (128*2048 + 2048) >> 12 = 64.
      {{0.5f, 0, 0}, {128, 0, 0}, 64, 64},
      // -0.25: trunc(0.5 - 1024) = -1023, kept as 64513.
      {{-0.25f, 0, 0}, {1, 0, 0}, (((256 * 64513) >> 16) + 8) >> 4, ((64513 + 2048) >> 12) & 255},
      // 4.0: 16384. White makes the body sum 3 * 16320 + 8, above 32767: 0.
      {{4.0f, 4.0f, 4.0f}, {255, 255, 255}, 0, ((3 * 255 * 16384 + 2048) >> 12) & 255},
  };
  for (const auto& c : cases) {
    const GrayRow<Kel8u> r{keliColorToGray_8u_C3C1R, 3, c.w};
    EXPECT_EQ(r.bodyOf(c.rgb), c.body) << c.w[0];
    EXPECT_EQ(r.tailOf(c.rgb), c.tail) << c.w[0];
  }
}

TEST(ColourGray, OtherDepths) {
  // 16s: black stays black; 32f: weights above 1 are not limited.
  const GrayRow<Kel16s> s{keliColorToGray_16s_C3C1R, 3, nullptr};
  EXPECT_EQ(s.bodyOf({-32768, -32768, -32768}), -32768);
  EXPECT_EQ(s.tailOf({-32768, -32768, -32768}), -32768);
  const Kel32f big[3] = {1.0f, 1.0f, 1.0f};
  const GrayRow<Kel32f> f{keliColorToGray_32f_AC4C1R, 4, big};
  EXPECT_EQ(f.tailOf({0.5f, 0.5f, 0.5f}), 1.5f);
  EXPECT_EQ(f.bodyOf({0.5f, 0.5f, 0.5f}), 1.5f);
  // 16s with weights that sum above 1: the body saturates, the tail wraps.
  const Kel32f two[3] = {2.0f, 0.0f, 0.0f};
  const GrayRow<Kel16s> s2{keliColorToGray_16s_C3C1R, 3, two};
  EXPECT_EQ(s2.bodyOf({32767, 0, 0}), 32767);
  EXPECT_EQ(s2.tailOf({32767, 0, 0}), Kel16s(2 * 65535 - 32768));
  // 16u keeps the low 16 bits.
  const GrayRow<Kel16u> u{keliColorToGray_16u_C3C1R, 3, two};
  EXPECT_EQ(u.tailOf({40000, 0, 0}), Kel16u(80000));
  EXPECT_EQ(u.bodyOf({40000, 0, 0}), Kel16u(80000));
}

// Body below the body count (w & ~3 in C3, w & ~7 in 8u AC4), tail after.
TEST(ColourGray, BodyAndTailSplitTheRowByColumn) {
  std::mt19937 rng(3);
  const GrayRow<Kel8u> rows[] = {{keliColorToGray_8u_C3C1R, 3, nullptr}, {keliColorToGray_8u_AC4C1R, 4, nullptr}};
  for (const auto& r : rows)
    for (int w : {1, 3, 4, 5, 7, 8, 9, 12, 15, 16, 17, 35, 64, 70}) {
      std::vector<P8> px(w);
      for (auto& p : px) p = {Kel8u(rng()), Kel8u(rng()), Kel8u(rng())};
      const auto out = r.convert(px);
      const int body = w & (r.ch == 3 ? ~3 : ~7);
      for (int x = 0; x < w; ++x)
        ASSERT_EQ(out[x], x < body ? r.bodyOf(px[x]) : r.tailOf(px[x])) << r.ch << " width " << w << " col " << x;
    }
}
