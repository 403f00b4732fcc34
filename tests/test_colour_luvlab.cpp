// RGB <-> LUV at 8u, 16u, 16s and 32f; BGR <-> Lab at 8 bits with an 8-bit
// or 16-bit Lab side.
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "harness.h"

using namespace kt;

namespace {

template <class S, class D = S>
using Fn = KelStatus (*)(const S*, int, D*, int, KeliSize);

template <class S, class D = S>
Member member(const char* name, int ch, Fn<S, D> f, bool finite = false) {
  Member m{name, {full(ch * int(sizeof(S)))}, {full(ch * int(sizeof(D)))},
           [f](Call& c) { return f(c.sT<S>(0), c.ss(0), c.dT<D>(0), c.ds(0), c.roi()); }};
  m.sampleBytes = int(std::max(sizeof(S), sizeof(D)));
  m.finiteFloats = finite;
  return m;
}

#define KT_PAIR(op, d, T) member<T>("keli" #op "_" #d "_C3R", 3, keli##op##_##d##_C3R), \
                          member<T>("keli" #op "_" #d "_AC4R", 4, keli##op##_##d##_AC4R)
#define KT_DEPTHS(op) KT_PAIR(op, 8u, Kel8u), KT_PAIR(op, 16u, Kel16u), KT_PAIR(op, 16s, Kel16s), \
                      KT_PAIR(op, 32f, Kel32f)

std::vector<Member> luvMembers() { return {KT_DEPTHS(RGBToLUV), KT_DEPTHS(LUVToRGB)}; }
std::vector<Member> labMembers() {
  return {member<Kel8u>("keliBGRToLab_8u_C3R", 3, keliBGRToLab_8u_C3R),
          member<Kel8u, Kel16u>("keliBGRToLab_8u16u_C3R", 3, keliBGRToLab_8u16u_C3R),
          member<Kel8u>("keliLabToBGR_8u_C3R", 3, keliLabToBGR_8u_C3R),
          member<Kel16u, Kel8u>("keliLabToBGR_16u8u_C3R", 3, keliLabToBGR_16u8u_C3R)};
}

std::vector<Member> allMembers() {
  std::vector<Member> all = luvMembers();
  for (Member& m : labMembers()) all.push_back(std::move(m));
  return all;
}
KT_MEMBERS(allMembers);

// One row of a member on pixels of three samples; an AC4 destination's
// fourth sample must stay as it was.
template <class S, class D = S>
struct RowOf {
  Fn<S, D> f;
  int ch;
  using In = std::array<S, 3>;
  using Out = std::array<D, 3>;
  std::vector<Out> convert(const std::vector<In>& px) const {
    const int w = static_cast<int>(px.size());
    std::vector<S> s(ch * w);
    std::vector<D> d(ch * w);
    for (int x = 0; x < w; ++x) {
      for (int k = 0; k < 3; ++k) s[ch * x + k] = px[x][k];
      if (ch == 4) d[4 * x + 3] = D(100 + x);
    }
    EXPECT_EQ(f(s.data(), ch * w * int(sizeof(S)), d.data(), ch * w * int(sizeof(D)), {w, 1}), kelStatusOk);
    std::vector<Out> o(w);
    for (int x = 0; x < w; ++x) {
      for (int k = 0; k < 3; ++k) o[x][k] = d[ch * x + k];
      if (ch == 4) {
        EXPECT_EQ(d[4 * x + 3], D(100 + x)) << "destination alpha kept";
      }
    }
    return o;
  }
  Out bodyOf(In p) const { return convert(std::vector<In>(16, p))[0]; }
  Out tailOf(In p) const { return convert({p})[0]; }
};
using P8 = std::array<Kel8u, 3>;
using P16 = std::array<Kel16u, 3>;
using S16 = std::array<Kel16s, 3>;
using F3 = std::array<Kel32f, 3>;

}  // namespace

TEST(ColourLuvLab, GuardsErrorsAndPaths) { checkAll(allMembers()); }

// LUV: rows to the team above 4096 pixels; Lab: at every size. The bytes are
// the same for 1 to 4 threads.
TEST(ColourLuvLab, ThreadCountsGiveTheSameBytes) {
  const std::vector<KeliSize> sizes = {{64, 64}, {4096, 1}, {4097, 1}, {3, 7}, {37, 211}};
  for (const Member& m : luvMembers())
    if (m.name.find("C3R") != std::string::npos) checkThreads(m, sizes);
  for (const Member& m : labMembers()) checkThreads(m, sizes);
}

// Telling values, through the body (a row of 16) and the tail (one pixel).
TEST(ColourLuvLab, StatedValuesOfLuv) {
  const RowOf<Kel8u> f8{keliRGBToLUV_8u_C3R, 3}, f8a{keliRGBToLUV_8u_AC4R, 4};
  for (const auto* r : {&f8, &f8a}) {
    EXPECT_EQ(r->bodyOf({0, 0, 0}), (P8{0, 97, 136}));
    EXPECT_EQ(r->tailOf({0, 0, 0}), (P8{0, 97, 136}));
    EXPECT_EQ(r->tailOf({255, 255, 255})[0], 255);
  }
  // The boundary of the two L tables at Yr = 31.5: powL from there up (107 at 32).
  EXPECT_EQ(f8.tailOf({32, 32, 32})[0], 107);
  EXPECT_EQ(f8.tailOf({31, 31, 31})[0], (423 + 2) >> 2) << "from powLl[124]";
  // 16u and 16s black: body (0, 24807, 35019), tail (0, 0, 0); 16s less 32768.
  const RowOf<Kel16u> u3{keliRGBToLUV_16u_C3R, 3}, u4{keliRGBToLUV_16u_AC4R, 4};
  for (const auto* r : {&u3, &u4}) {
    EXPECT_EQ(r->bodyOf({0, 0, 0}), (P16{0, 24807, 35019}));
    EXPECT_EQ(r->tailOf({0, 0, 0}), (P16{0, 0, 0}));
  }
  const RowOf<Kel16s> s3{keliRGBToLUV_16s_C3R, 3}, s4{keliRGBToLUV_16s_AC4R, 4};
  for (const auto* r : {&s3, &s4}) {
    EXPECT_EQ(r->bodyOf({-32768, -32768, -32768}), (S16{-32768, 24807 - 32768, 35019 - 32768}));
    EXPECT_EQ(r->tailOf({-32768, -32768, -32768}), (S16{-32768, -32768, -32768}));
  }
  // 16u tails: C3 rounds to nearest, AC4 truncates; they differ somewhere.
  std::mt19937 rng(5);
  int differ = 0;
  for (int i = 0; i < 300; ++i) {
    const std::array<Kel16u, 3> p = {Kel16u(rng()), Kel16u(rng()), Kel16u(rng())};
    const P16 a = u3.tailOf(p), b = u4.tailOf(p);
    for (int k = 0; k < 3; ++k) ASSERT_LE(std::abs(a[k] - b[k]), 1);
    differ += a != b;
    const S16 c = s3.tailOf({Kel16s(p[0] - 32768), Kel16s(p[1] - 32768), Kel16s(p[2] - 32768)});
    const S16 e = s4.tailOf({Kel16s(p[0] - 32768), Kel16s(p[1] - 32768), Kel16s(p[2] - 32768)});
    ASSERT_EQ(c, e) << "16s tails round alike";
    for (int k = 0; k < 3; ++k) ASSERT_EQ(c[k] + 32768, a[k]);
  }
  EXPECT_GT(differ, 0);
  // 32f: black is (0, 0, 0) in body and tail; white has L 100.
  const RowOf<Kel32f> f32{keliRGBToLUV_32f_C3R, 3};
  for (const F3& o : {f32.bodyOf({0, 0, 0}), f32.tailOf({0, 0, 0})})
    for (float v : o) EXPECT_EQ(v, 0.0f);
  EXPECT_NEAR(f32.tailOf({1, 1, 1})[0], 100.0f, 0.01f);
  EXPECT_NEAR(f32.tailOf({1, 1, 1})[1], 0.0f, 0.05f);
  EXPECT_EQ(f32.tailOf({-0.5f, -0.5f, -0.5f})[0], -0.5f * 903.3f) << "negative Y takes the linear branch";
}

TEST(ColourLuvLab, StatedValuesOfLuvToRgb) {
  // 32f: L below 9e-5 gives black, and the pixel after it is converted.
  const RowOf<Kel32f> i32{keliLUVToRGB_32f_C3R, 3};
  const auto o = i32.convert({{0.00005f, 50, 50}, {100, 0, 0}});
  EXPECT_EQ(o[0], (F3{0, 0, 0}));
  for (float v : o[1]) EXPECT_NEAR(v, 1.0f, 0.002f);
  // 16u AC4 lifts the samples L = 0..7 of body pixels by 7.9996247, C3 does not.
  const RowOf<Kel16u> c3{keliLUVToRGB_16u_C3R, 3}, a4{keliLUVToRGB_16u_AC4R, 4};
  const P16 grey = {5, 24807, 35019};
  EXPECT_NE(c3.bodyOf(grey), a4.bodyOf(grey));
  EXPECT_EQ(c3.tailOf(grey), a4.tailOf(grey));
  // Round trips of the primaries, white and black stay close at 8 bits.
  const RowOf<Kel8u> fw{keliRGBToLUV_8u_C3R, 3}, bk{keliLUVToRGB_8u_C3R, 3};
  for (const P8& p : {P8{0, 0, 0}, P8{255, 255, 255}, P8{128, 128, 128}, P8{255, 0, 0}, P8{0, 255, 0}, P8{0, 0, 255}})
    for (const P8& back : {bk.bodyOf(fw.tailOf(p)), bk.tailOf(fw.tailOf(p))})
      for (int k = 0; k < 3; ++k) EXPECT_LE(std::abs(back[k] - p[k]), 6) << int(p[0]) << " " << int(p[1]);
}

// RGB -> LUV at 32f with Y at or above 129/128 takes the last anchor (1, 1):
// within one unit of L up to Y = 2, a finite polynomial up to Y = 1e4, NaN
// for infinite Y, and no read outside the table (the sanitizer build watches).
TEST(ColourLuvLab, LargeYTakesTheLastAnchor) {
  const RowOf<Kel32f> f32{keliRGBToLUV_32f_C3R, 3};
  for (float g : {129.0f / 128.0f, 1.2f, 1.6f, 2.0f}) {
    const float L = f32.tailOf({g, g, g})[0];
    EXPECT_NEAR(L, 116.0f * std::cbrt(g) - 16.0f, 1.0f) << g;
    EXPECT_EQ(f32.bodyOf({g, g, g})[0], L);
  }
  EXPECT_TRUE(std::isfinite(f32.tailOf({1e4f, 1e4f, 1e4f})[0]));
  const float inf = std::numeric_limits<float>::infinity();
  EXPECT_TRUE(std::isnan(f32.tailOf({inf, inf, inf})[0]));
}

TEST(ColourLuvLab, StatedValuesOfLab) {
  const RowOf<Kel8u> f8{keliBGRToLab_8u_C3R, 3}, i8{keliLabToBGR_8u_C3R, 3};
  const RowOf<Kel8u, Kel16u> f16{keliBGRToLab_8u16u_C3R, 3};
  const RowOf<Kel16u, Kel8u> i16{keliLabToBGR_16u8u_C3R, 3};
  for (int tail = 0; tail < 2; ++tail) {
    auto one = [&](const auto& r, auto p) { return tail ? r.tailOf(p) : r.bodyOf(p); };
    EXPECT_EQ(one(f8, P8{255, 255, 255}), (P8{255, 128, 128}));
    EXPECT_EQ(one(f8, P8{0, 0, 0}), (P8{0, 128, 128}));
    EXPECT_EQ(one(f16, P8{255, 255, 255}), (P16{65535, 32640, 32640}));
    EXPECT_EQ(one(f16, P8{0, 0, 0}), (P16{0, 32640, 32640}));
    EXPECT_EQ(one(i8, P8{0, 128, 128}), (P8{1, 1, 1}));
    EXPECT_EQ(one(i8, P8{255, 128, 128}), (P8{255, 255, 255}));
    EXPECT_EQ(one(i16, P16{65535, 32640, 32640}), (P8{255, 255, 255}));
  }
  // Primaries (BGR order) and their round trips.
  const P8 red = f8.tailOf({0, 0, 255}), blue = f8.tailOf({255, 0, 0});
  EXPECT_GT(red[1], 190);  // a of red near 80 + 128
  EXPECT_LT(blue[2], 40);  // b of blue near -108 + 128
  for (const P8& p : {P8{0, 0, 255}, P8{0, 255, 0}, P8{255, 0, 0}, P8{128, 128, 128}, P8{10, 200, 90}}) {
    const P8 b8 = i8.tailOf(f8.tailOf(p)), b16 = i16.tailOf(f16.tailOf(p));
    for (int k = 0; k < 3; ++k) {
      EXPECT_LE(std::abs(b8[k] - p[k]), 3);
      EXPECT_LE(std::abs(b16[k] - p[k]), 1);
    }
  }
}

// Lab: body saturation and tail low bits agree on every 8-bit colour (a
// coarse grid here), so no result depends on its column.
TEST(ColourLuvLab, LabBodyAndTailAgree) {
  const RowOf<Kel8u> f8{keliBGRToLab_8u_C3R, 3};
  const RowOf<Kel8u, Kel16u> f16{keliBGRToLab_8u16u_C3R, 3};
  std::vector<P8> px;
  for (int b = 0; b < 256; b += 15)
    for (int g = 0; g < 256; g += 15)
      for (int r = 0; r < 256; r += 15) px.push_back({Kel8u(b), Kel8u(g), Kel8u(r)});
  px.push_back({255, 0, 255}), px.push_back({0, 255, 0}), px.push_back({255, 255, 0});
  // The same pixels as one row (body but the last few) and as one column of
  // width 1 (all tail).
  const int n = int(px.size());
  const auto a = f8.convert(px);
  const auto a16 = f16.convert(px);
  std::vector<P8> t(n);
  std::vector<P16> t16(n);
  ASSERT_EQ(keliBGRToLab_8u_C3R(px[0].data(), 3, t[0].data(), 3, {1, n}), kelStatusOk);
  ASSERT_EQ(keliBGRToLab_8u16u_C3R(px[0].data(), 3, t16[0].data(), 6, {1, n}), kelStatusOk);
  EXPECT_EQ(a, t);
  EXPECT_EQ(a16, t16);
}

// Body/tail splits of LUV: which pixels take the body form.
TEST(ColourLuvLab, LuvBodyAndTailSplitTheRow) {
  const RowOf<Kel8u> c3{keliLUVToRGB_8u_C3R, 3}, a4{keliLUVToRGB_8u_AC4R, 4};
  std::mt19937 rng(9);
  for (int w : {1, 4, 7, 8, 9, 15, 17, 33}) {
    std::vector<P8> px(w);
    for (auto& p : px) p = {Kel8u(rng()), Kel8u(rng()), Kel8u(rng())};
    const auto o3 = c3.convert(px), o4 = a4.convert(px);
    for (int x = 0; x < w; ++x) {
      ASSERT_EQ(o3[x], x < (w & ~7) ? c3.bodyOf(px[x]) : c3.tailOf(px[x])) << w << " " << x;
      ASSERT_EQ(o4[x], x < (w & ~3) ? a4.bodyOf(px[x]) : a4.tailOf(px[x])) << w << " " << x;
    }
  }
}

// Black (D = 0), zeros of either sign, negative, large, infinite and NaN
// float samples mixed with values in range: every vector path gives the
// scalar bytes (any NaN for a NaN).
TEST(ColourLuvLab, VectorPathsOnNonFiniteAndZero) {
  const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
  const float odd[] = {0.0f, -0.0f, 1.0f, 0.5f, 0.004f, -0.3f, 1.5f, 3.0f, 1e30f, inf, -inf, nan, 1e-40f, 100.0f, -100.0f};
  std::mt19937 rng(3);
  for (auto f : {keliRGBToLUV_32f_C3R, keliLUVToRGB_32f_C3R}) {
    const int w = 61, h = 3;
    std::vector<float> s(3 * w * h);
    for (size_t i = 0; i < s.size(); ++i) s[i] = (rng() % 3) ? odd[rng() % 15] : float(rng() % 1000) / 999.0f;
    for (int i = 0; i < 8; ++i) s[3 * i] = s[3 * i + 1] = s[3 * i + 2] = 0.0f;  // D = 0 in the body
    std::vector<std::vector<float>> outs;
    for (kel::Isa isa : paths()) {
      IsaScope scope(isa);
      std::vector<float> d(3 * w * h);
      ASSERT_EQ(f(s.data(), 12 * w, d.data(), 12 * w, {w, h}), kelStatusOk);
      outs.push_back(d);
    }
    for (size_t p = 1; p < outs.size(); ++p)
      for (size_t i = 0; i < outs[0].size(); ++i) {
        const float a = outs[0][i], b = outs[p][i];
        ASSERT_TRUE((std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, 4) == 0) << i << " " << a << " " << b;
      }
  }
}

// Where two operands of one addition, subtraction or multiplication are NaN,
// the first one's payload (quieted) is stored, on every path, in body and
// tail, whatever order a compiler would choose for the operation.
TEST(ColourLuvLab, NaNPayloadsFollowTheOperandOrder) {
  auto bits = [](uint32_t u) { float f; std::memcpy(&f, &u, 4); return f; };
  const float a = bits(0x7F812345u), b = bits(0xFFC54321u), c = bits(0x7FE00777u);  // a signals
  const uint32_t qa = 0x7FC12345u, qb = 0xFFC54321u;
  struct Case {
    Fn<Kel32f> f;
    int ch;
    F3 in;
    uint32_t out;  // all three results
  };
  const Case cases[] = {
      {keliRGBToLUV_32f_C3R, 3, {a, b, 0.5f}, qa},  {keliRGBToLUV_32f_AC4R, 4, {a, b, 0.5f}, qa},
      {keliRGBToLUV_32f_C3R, 3, {a, 0.5f, c}, qa},  {keliRGBToLUV_32f_AC4R, 4, {0.5f, b, c}, qb},
      {keliLUVToRGB_32f_C3R, 3, {50.0f, a, b}, qa}, {keliLUVToRGB_32f_AC4R, 4, {50.0f, a, b}, qa},
      {keliLUVToRGB_32f_C3R, 3, {1e30f, b, 0.0f}, qb},  // y infinite: 3 T - 5 y is the default NaN
  };
  for (const Case& k : cases)
    for (kel::Isa isa : paths()) {
      IsaScope scope(isa);
      const RowOf<Kel32f> r{k.f, k.ch};
      for (const F3& o : {r.bodyOf(k.in), r.tailOf(k.in)})
        for (float v : o) {
          uint32_t u;
          std::memcpy(&u, &v, 4);
          EXPECT_EQ(u, k.out) << std::hex << k.in[0] << " " << k.in[1] << " " << k.in[2] << " path " << int(isa);
        }
    }
}

// RGB -> LUV at 32f and Lab keep their steps in bytes: an odd step is used
// as it stands (rows off the sample boundary).
TEST(ColourLuvLab, ByteStepsStayInBytes) {
  const int w = 5, h = 3, step = 3 * 4 * w + 1;
  std::vector<uint8_t> s(step * h + 4), d(step * h + 4, 7), e(3 * 4 * w * h, 7);
  std::mt19937 rng(1);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < 3 * w; ++x) {
      const float v = float(rng() % 1000) / 999.0f;
      std::memcpy(&s[y * step + 4 * x], &v, 4);
    }
  ASSERT_EQ(keliRGBToLUV_32f_C3R(reinterpret_cast<const float*>(s.data()), step, reinterpret_cast<float*>(d.data()),
                                 step, {w, h}), kelStatusOk);
  for (int y = 0; y < h; ++y) {
    std::vector<float> row(3 * w), out(3 * w);
    std::memcpy(row.data(), &s[y * step], 12 * w);
    ASSERT_EQ(keliRGBToLUV_32f_C3R(row.data(), 12 * w, out.data(), 12 * w, {w, 1}), kelStatusOk);
    EXPECT_EQ(std::memcmp(out.data(), &d[y * step], 12 * w), 0) << y;
  }
  // Lab's 16-bit side on an odd step.
  const int lstep = 6 * w + 1;
  std::vector<uint8_t> lab(lstep * h), bgr(3 * w * h), bgr2(3 * w * h);
  for (auto& v : lab) v = uint8_t(rng());
  ASSERT_EQ(keliLabToBGR_16u8u_C3R(reinterpret_cast<const Kel16u*>(lab.data()), lstep, bgr.data(), 3 * w, {w, h}),
            kelStatusOk);
  for (int y = 0; y < h; ++y) {
    std::vector<Kel16u> row(3 * w);
    std::memcpy(row.data(), &lab[y * lstep], 6 * w);
    ASSERT_EQ(keliLabToBGR_16u8u_C3R(row.data(), 6 * w, &bgr2[3 * w * y], 3 * w, {w, 1}), kelStatusOk);
  }
  EXPECT_EQ(bgr, bgr2);
}

// Every member on random rows in which some pixels are zero in all samples
// (D = 0, L = 0) and some in two: every vector path gives the scalar bytes.
TEST(ColourLuvLab, VectorPathsWithZeroPixels) {
  for (const Member& m : allMembers()) {
    const KeliSize roi{77, 3};
    std::vector<std::vector<uint8_t>> outs;
    for (kel::Isa isa : paths()) {
      IsaScope scope(isa);
      Images im = makeImages(m, roi, StepMode::Tight, 0, 17);
      Guarded& s = *im.src[0];
      const int px = s.dim().rowBytes / roi.width;
      for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width; ++x)
          if (x % 3 == 0)
            for (int b = (x % 2) * px / 3; b < px; ++b) s.at(px * x + b, y) = 0;
      ASSERT_EQ(run(m, im, roi), kelStatusOk);
      outs.push_back(im.dst[0]->region());
    }
    for (size_t p = 1; p < outs.size(); ++p) EXPECT_EQ(outs[p], outs[0]) << m.name << " path " << p;
  }
}
