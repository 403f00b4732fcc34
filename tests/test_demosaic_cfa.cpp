// Bilinear demosaicing with the gradient test (keliCFAToRGB_*).
#include <omp.h>

#include <array>

#include "demosaic_util.h"

using namespace dm;

namespace {

template <class T>
Fn<T> cfaFn(KeliRect roi, KeliSize size, int grid) {
  return [=](const T* s, int ss, T* d, int ds, T*, int) -> KelStatus {
    if constexpr (sizeof(T) == 1)
      return keliCFAToRGB_8u_C1C3R(s, roi, size, ss, d, ds, static_cast<KelBayerGrid>(grid));
    else
      return keliCFAToRGB_16u_C1C3R(s, roi, size, ss, d, ds, static_cast<KelBayerGrid>(grid));
  };
}
template <class T>
std::vector<T> cfa(const Raw<T>& raw, KeliRect roi, int grid, uint32_t seed = 1, bool negative = false) {
  return run<T>(raw, roi, cfaFn<T>(roi, raw.size(), grid), seed, negative);
}
template <class T>
std::vector<T> whole(const Raw<T>& raw, int grid) {
  return cfa(raw, {0, 0, raw.W, raw.H}, grid);
}
std::array<int, 3> px(const std::vector<Kel8u>& v, int W, int x, int y) {
  const size_t i = (static_cast<size_t>(y) * W + x) * 3;
  return {v[i], v[i + 1], v[i + 2]};
}

std::vector<kt::Member> members() {
  return {cfaMember<Kel8u>("keliCFAToRGB_8u_C1C3R rggb", keliCFAToRGB_8u_C1C3R, kelBayerRGGB),
          cfaMember<Kel8u>("keliCFAToRGB_8u_C1C3R gbrg", keliCFAToRGB_8u_C1C3R, kelBayerGBRG),
          cfaMember<Kel16u>("keliCFAToRGB_16u_C1C3R bggr", keliCFAToRGB_16u_C1C3R, kelBayerBGGR),
          cfaMember<Kel16u>("keliCFAToRGB_16u_C1C3R grbg", keliCFAToRGB_16u_C1C3R, kelBayerGRBG)};
}
KT_MEMBERS(members);

}  // namespace

// The generic checks of the harness (order G has its own test below).
TEST(DemosaicCfa, GuardsAndPaths) {
  for (const kt::Member& m : members()) {
    SCOPED_TRACE(m.name);
    kt::checkGuards(m);
    kt::checkPaths(m);
  }
}

// Order G: pointers, size (2 by 2), grid; nothing written on error. A region
// that starts at or beyond the right edge writes nothing.
TEST(DemosaicCfa, ChecksInOrderG) {
  static const Kel16u s[256] = {};
  const KeliRect r{0, 0, 4, 4};
  checkOrderG(2, [&](bool ns, bool nd, KeliSize size, int g, uint8_t* d) {
    return keliCFAToRGB_8u_C1C3R(ns ? nullptr : reinterpret_cast<const Kel8u*>(s), r, size, 8, nd ? nullptr : d, 24, gridArg(g));
  });
  checkOrderG(2, [&](bool ns, bool nd, KeliSize size, int g, uint8_t* d) {
    return keliCFAToRGB_16u_C1C3R(ns ? nullptr : s, r, size, 16, nd ? nullptr : reinterpret_cast<Kel16u*>(d), 48, gridArg(g));
  });
  std::vector<Kel8u> d(64, 0x5A);
  EXPECT_EQ(keliCFAToRGB_8u_C1C3R(reinterpret_cast<const Kel8u*>(s), {8, 0, 3, 3}, {8, 8}, 8, d.data(), 24,
                                  kelBayerGRBG),
            kelStatusOk);
  for (Kel8u b : d) ASSERT_EQ(b, 0x5A);
}

// A 2 by 2 image is all frame: each pixel takes its missing colours from
// the other three samples (the reflection doubles them).
TEST(DemosaicCfa, TwoByTwoTakesTheOtherSamples) {
  Raw<Kel8u> raw(2, 2);
  raw.at(0, 0) = 10, raw.at(1, 0) = 20, raw.at(0, 1) = 31, raw.at(1, 1) = 40;  // RGGB: R G / G B
  const auto out = whole(raw, kelBayerRGGB);
  EXPECT_EQ(px(out, 2, 0, 0), (std::array<int, 3>{10, 26, 40}));
  EXPECT_EQ(px(out, 2, 1, 0), (std::array<int, 3>{10, 20, 40}));
  EXPECT_EQ(px(out, 2, 0, 1), (std::array<int, 3>{10, 31, 40}));
  EXPECT_EQ(px(out, 2, 1, 1), (std::array<int, 3>{10, 26, 40}));
}

// Flat raw data gives flat pixels at every size from 2 up and every grid.
TEST(DemosaicCfa, FlatFieldsStayFlat) {
  for (int grid = 0; grid < 4; ++grid)
    for (int W : {2, 3, 5, 6, 7, 20})
      for (int H : {2, 3, 5, 6, 7, 19}) {
        Raw<Kel16u> raw(W, H);
        std::fill(raw.px.begin(), raw.px.end(), Kel16u(51234));
        for (Kel16u v : whole(raw, grid)) ASSERT_EQ(v, 51234) << W << "x" << H << " grid " << grid;
      }
}

// A horizontal ramp c = 4x: inside, every channel is 4x (the gradient test
// picks the column mean, which is exact); in column 0 the reflection makes
// both row neighbours 4, so a chroma site gets G = (0 + 0 + 4 + 4 + 2) >> 2
// and the other chroma 4, a green site gets 4 and 0.
TEST(DemosaicCfa, RampByHand) {
  for (int grid = 0; grid < 4; ++grid) {
    const int W = 12, H = 9;
    Raw<Kel8u> raw(W, H);
    for (int y = 0; y < H; ++y)
      for (int x = 0; x < W; ++x) raw.at(x, y) = static_cast<Kel8u>(4 * x);
    const auto out = whole(raw, grid);
    for (int y = 0; y < H; ++y) {
      for (int x = 2; x < W - 2; ++x) EXPECT_EQ(px(out, W, x, y), (std::array<int, 3>{4 * x, 4 * x, 4 * x}));
      const int s = site(grid, 0, y);
      std::array<int, 3> want{};
      if (s == 1) {
        want[site(grid, 1, y)] = 4, want[1] = 0, want[site(grid, 0, y + 1)] = 0;
      } else {
        want[s] = 0, want[1] = 2, want[2 - s] = 4;
      }
      EXPECT_EQ(px(out, W, 0, y), want) << "row " << y << " grid " << grid;
    }
  }
}

// The gradient test: along a vertical edge G of a chroma site is the column
// mean, along a horizontal edge the row mean; equal gradients take the
// four-way mean.
TEST(DemosaicCfa, GradientTest) {
  const int W = 10, H = 10;
  for (int grid = 0; grid < 4; ++grid) {
    Raw<Kel8u> v(W, H), h(W, H), t(W, H);
    for (int y = 0; y < H; ++y)
      for (int x = 0; x < W; ++x) {
        v.at(x, y) = x < 5 ? 10 : 200;
        h.at(x, y) = y < 5 ? 10 : 200;
        t.at(x, y) = static_cast<Kel8u>(x == 4 ? 100 : (y == 4 ? 60 : 0));
      }
    const auto ov = whole(v, grid), oh = whole(h, grid);
    for (int y = 2; y < H - 2; ++y)
      for (int x = 2; x < W - 2; ++x)
        if (site(grid, x, y) != 1) {
          EXPECT_EQ(px(ov, W, x, y)[1], v.at(x, y));
          EXPECT_EQ(px(oh, W, x, y)[1], h.at(x, y));
        }
    // At (4, 4) and the sites round it: a cross of two lines.
    const auto ot = whole(t, grid);
    for (int y = 3; y <= 5; ++y)
      for (int x = 3; x <= 5; ++x) {
        if (site(grid, x, y) == 1) continue;
        const int dv = std::abs(t.at(x, y - 2) - t.at(x, y + 2)), dh = std::abs(t.at(x - 2, y) - t.at(x + 2, y));
        const int n = t.at(x, y - 1), s = t.at(x, y + 1), w = t.at(x - 1, y), e = t.at(x + 1, y);
        const int g = dv < dh ? (n + s + 1) / 2 : dh < dv ? (w + e + 1) / 2 : (n + s + w + e + 2) / 4;
        EXPECT_EQ(px(ot, W, x, y)[1], g) << x << "," << y << " grid " << grid;
      }
  }
}

// A region anywhere (at every edge, odd positions, clipped at the right and
// bottom, negative steps) gets the pixels of the same place of the whole
// image; images of 2 to 7 pixels and larger ones, every grid, 8u and 16u.
template <class T>
void regionsMatchWhole(int maxV) {
  std::mt19937 g(7);
  std::vector<std::pair<int, int>> sizes;
  for (int W : {2, 3, 4, 5, 6, 7})
    for (int H : {2, 3, 5, 6, 7}) sizes.push_back({W, H});
  for (int k = 0; k < 30; ++k) sizes.push_back({2 + int(g() % 70), 2 + int(g() % 30)});
  for (auto [W, H] : sizes)
    for (int grid = 0; grid < 4; ++grid) {
      const Raw<T> raw = randomRaw<T>(W, H, g(), maxV);
      const auto all = whole(raw, grid);
      for (int k = 0; k < 6; ++k) {
        KeliRect r{int(g() % W), int(g() % H), 1 + int(g() % (W + 2)), 1 + int(g() % (H + 2))};
        if (k == 0) r = {W - 1, H - 1, 1, 1};
        const KeliRect c = clipped(r, raw.size());
        ASSERT_EQ(cfa(raw, r, grid, g(), k & 1), crop(all, W, c)) << W << "x" << H << " roi " << r.x << "," << r.y;
      }
    }
}
TEST(DemosaicCfa, RegionsMatchTheWholeImage8u) { regionsMatchWhole<Kel8u>(255); }
TEST(DemosaicCfa, RegionsMatchTheWholeImage16u) { regionsMatchWhole<Kel16u>(65535); }

TEST(DemosaicCfa, ReadsStayInsideTheImage) {
  checkPageEdges<Kel8u>(2, 255, cfaFn<Kel8u>);
  checkPageEdges<Kel16u>(2, 65535, cfaFn<Kel16u>);
}

// The formulas are the same integers at both depths: 16u samples below 256
// give the 8u results.
TEST(DemosaicCfa, SixteenBitAgreesOnEightBitValues) {
  for (int grid = 0; grid < 4; ++grid) {
    const Raw<Kel8u> a = randomRaw<Kel8u>(37, 23, 100 + grid, 255);
    Raw<Kel16u> b(37, 23);
    std::copy(a.px.begin(), a.px.end(), b.px.begin());
    const auto oa = whole(a, grid);
    const auto ob = whole(b, grid);
    ASSERT_TRUE(std::equal(oa.begin(), oa.end(), ob.begin()));
  }
}

// Every vector path gives the bytes of the scalar definitions, at widths
// round the blocks (16 and 32 pixels of 8u, 8 and 16 of 16u).
template <class T>
void pathsAgree(int maxV) {
  std::mt19937 g(3);
  for (int W : {5, 8, 9, 15, 16, 17, 20, 21, 31, 36, 37, 38, 52, 70, 101, 133})
    for (int grid = 0; grid < 4; ++grid) {
      // Ties of the gradient test are frequent in few-valued data.
      const Raw<T> raw = randomRaw<T>(W, 9, g(), (W & 1) ? maxV : 3);
      const KeliRect r{int(g() % 3), int(g() % 3), W, 9};
      std::vector<T> ref;
      for (kel::Isa isa : kt::paths()) {
        kt::IsaScope scope(isa);
        const auto out = cfa(raw, r, grid, g());
        if (ref.empty()) ref = out;
        else ASSERT_EQ(out, ref) << "path " << int(isa) << " width " << W;
      }
    }
}
TEST(DemosaicCfa, VectorPathsEqualScalar8u) { pathsAgree<Kel8u>(255); }
TEST(DemosaicCfa, VectorPathsEqualScalar16u) { pathsAgree<Kel16u>(65535); }

// Bands by thread number from 192 by 192 of inner rectangle: 1 to 4 threads,
// odd band starts, and a runtime free to give fewer threads than asked, all
// give the same bytes.
TEST(DemosaicCfa, ThreadCountsGiveTheSameBytes) {
  struct Case {
    int W, H;
    KeliRect roi;
  } cases[] = {{196, 196, {0, 0, 196, 196}}, {195, 197, {1, 0, 194, 197}}, {260, 203, {3, 5, 250, 197}},
               {200, 400, {0, 1, 200, 399}}, {193, 193, {0, 0, 193, 193}}};
  for (const Case& c : cases)
    for (int grid = 0; grid < 4; ++grid) {
      const Raw<Kel8u> raw = randomRaw<Kel8u>(c.W, c.H, c.W * 7 + grid, 255);
      std::vector<Kel8u> ref;
      {
        kt::ThreadScope t(1);
        ref = cfa(raw, c.roi, grid);
      }
      for (int n : {2, 3, 4, 7}) {
        kt::ThreadScope t(n);
        omp_set_dynamic(n == 7);
        ASSERT_EQ(cfa(raw, c.roi, grid, n), ref) << n << " threads, " << c.W << "x" << c.H;
      }
      omp_set_dynamic(0);
    }
}
