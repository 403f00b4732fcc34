// AHD demosaicing (keliDemosaicAHD_*).
#include <array>
#include <cmath>

#include "demosaic/ahd.h"
#include "demosaic_util.h"

using namespace dm;

namespace {

template <class T>
Fn<T> ahdFn(KeliRect roi, KeliSize size, int grid) {
  return [=](const T* s, int ss, T* d, int ds, T* tmp, int ts) -> KelStatus {
    if constexpr (sizeof(T) == 1)
      return keliDemosaicAHD_8u_C1C3R(s, roi, size, ss, d, ds, static_cast<KelBayerGrid>(grid), tmp, ts);
    else
      return keliDemosaicAHD_16u_C1C3R(s, roi, size, ss, d, ds, static_cast<KelBayerGrid>(grid), tmp, ts);
  };
}
template <class T>
std::vector<T> ahdRun(const Raw<T>& raw, KeliRect roi, int grid, uint32_t seed = 1, bool negative = false) {
  return run<T>(raw, roi, ahdFn<T>(roi, raw.size(), grid), seed, negative);
}

// The method on whole planes: candidates and Lab of every position within
// three pixels round the image, made from raw reads through the reflection
// (the candidates themselves are not mirror images: the sign test of the
// green candidate is not symmetric in its two neighbours), then hm on the
// fly. Pixels of the fast rectangle use tolerances without the 0.0001.
template <class T>
std::vector<T> reference(const Raw<T>& raw, KeliRect r, int grid) {
  using namespace kel::ahd;
  const int W = raw.W, H = raw.H, E = 3, EW = W + 2 * E;
  auto ref = [](int v, int m) {
    while (v < 0 || v > m) v = v < 0 ? -v : 2 * m - v;
    return v;
  };
  auto c = [&](int x, int y) -> int { return raw.at(ref(x, W - 1), ref(y, H - 1)); };
  auto idx = [&](int x, int y) { return static_cast<size_t>(y + E) * EW + (x + E); };
  const size_t n = static_cast<size_t>(EW) * (H + 2 * E);
  std::vector<int> G[2], K[2][3];
  std::vector<float> lab[2][3];
  for (int d = 0; d < 2; ++d) {
    G[d].resize(n);
    for (int y = -3; y < H + 3; ++y)
      for (int x = -3; x < W + 3; ++x)
        G[d][idx(x, y)] = site(grid, x, y) == 1 ? c(x, y)
                          : d == 0 ? greenCand(c(x, y), c(x - 1, y), c(x + 1, y), c(x - 2, y), c(x + 2, y))
                                   : greenCand(c(x, y), c(x, y - 1), c(x, y + 1), c(x, y - 2), c(x, y + 2));
    auto g = [&](int x, int y) { return G[d][idx(x, y)]; };
    for (int k = 0; k < 3; ++k) K[d][k].resize(n), lab[d][k].resize(n);
    for (int y = -2; y < H + 2; ++y)
      for (int x = -2; x < W + 2; ++x) {
        const int s = site(grid, x, y);
        int v[3];
        v[1] = g(x, y);
        if (s == 1) {
          v[site(grid, x + 1, y)] = clipM<T>(g(x, y) + (((c(x - 1, y) - g(x - 1, y)) + (c(x + 1, y) - g(x + 1, y))) >> 1));
          v[site(grid, x, y + 1)] = clipM<T>(g(x, y) + (((c(x, y - 1) + c(x, y + 1)) - (g(x, y - 1) + g(x, y + 1))) >> 1));
        } else {
          const int s1 = c(x - 1, y - 1) + c(x + 1, y - 1) + c(x - 1, y + 1) + c(x + 1, y + 1);
          const int s2 = g(x - 1, y - 1) + g(x + 1, y - 1) + g(x - 1, y + 1) + g(x + 1, y + 1);
          v[s] = c(x, y);
          v[2 - s] = clipM<T>(g(x, y) + ((s1 - s2) >> 2));
        }
        for (int k = 0; k < 3; ++k) K[d][k][idx(x, y)] = v[k];
        kel::ahd::lab<T>(float(v[0]), float(v[1]), float(v[2]), lab[d][0][idx(x, y)], lab[d][1][idx(x, y)],
                         lab[d][2][idx(x, y)]);
      }
  }
  auto hm = [&](int x, int y, float eps) {
    const int nx[4] = {x - 1, x + 1, x, x}, ny[4] = {y, y, y - 1, y + 1};
    float dl[2][4], dc[2][4];
    for (int d = 0; d < 2; ++d)
      for (int k = 0; k < 4; ++k) {
        const size_t a = idx(nx[k], ny[k]), o = idx(x, y);  // within the extended planes
        dl[d][k] = std::fabs(lab[d][0][a] - lab[d][0][o]);
        const float da = lab[d][1][a] - lab[d][1][o], db = lab[d][2][a] - lab[d][2][o];
        dc[d][k] = da * da + db * db;
      }
    const float eL = std::min(std::max(dl[0][0], dl[0][1]), std::max(dl[1][2], dl[1][3])) + eps;
    const float eC = std::min(std::max(dc[0][0], dc[0][1]), std::max(dc[1][2], dc[1][3])) + eps;
    int cnt[2] = {0, 0};
    for (int d = 0; d < 2; ++d)
      for (int k = 0; k < 4; ++k) cnt[d] += dl[d][k] <= eL && dc[d][k] <= eC;
    return cnt[0] - cnt[1];
  };
  const Rect f = fastRect(grid, r.x, r.y, r.width, r.height, W, H);
  const bool hasFast = f.w >= 2 && f.h >= 2;
  std::vector<T> out;
  for (int y = r.y; y < r.y + r.height; ++y)
    for (int x = r.x; x < r.x + r.width; ++x) {
      const bool inFast = hasFast && x >= f.x && x < f.x + f.w && y >= f.y && y < f.y + f.h;
      int s = 0;
      for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) s += hm(x + dx, y + dy, inFast ? 0.0f : 0.0001f);
      const int d = s >= 0 ? 0 : 1;
      for (int k = 0; k < 3; ++k) out.push_back(static_cast<T>(K[d][k][idx(x, y)]));
    }
  return out;
}

std::vector<kt::Member> members() {
  return {ahdMember<Kel8u>("keliDemosaicAHD_8u_C1C3R rggb", keliDemosaicAHD_8u_C1C3R, kelBayerRGGB),
          ahdMember<Kel8u>("keliDemosaicAHD_8u_C1C3R grbg", keliDemosaicAHD_8u_C1C3R, kelBayerGRBG),
          ahdMember<Kel16u>("keliDemosaicAHD_16u_C1C3R bggr", keliDemosaicAHD_16u_C1C3R, kelBayerBGGR),
          ahdMember<Kel16u>("keliDemosaicAHD_16u_C1C3R gbrg", keliDemosaicAHD_16u_C1C3R, kelBayerGBRG)};
}
KT_MEMBERS(members);

}  // namespace

// The generic checks of the harness (order G has its own test below).
TEST(DemosaicAhd, GuardsAndPaths) {
  for (const kt::Member& m : members()) {
    SCOPED_TRACE(m.name);
    kt::checkGuards(m, 40, 80, 14);
    kt::checkPaths(m, 30, 80, 14);
  }
}

// Order G: pointers, size (5 by 5, where bilinear takes 2 by 2), grid;
// nothing written on error. A region beyond the image, or empty after
// clipping, writes nothing.
TEST(DemosaicAhd, ChecksInOrderG) {
  static const Kel16u s[400] = {};
  static Kel16u tmp[30 * 32];
  const KeliRect r{0, 0, 5, 5};
  checkOrderG(5, [&](bool ns, bool nd, KeliSize size, int g, uint8_t* d) {
    return keliDemosaicAHD_8u_C1C3R(ns ? nullptr : reinterpret_cast<const Kel8u*>(s), r, size, 10, nd ? nullptr : d,
                                    15, gridArg(g), reinterpret_cast<Kel8u*>(tmp), 16);
  });
  checkOrderG(5, [&](bool ns, bool nd, KeliSize size, int g, uint8_t* d) {
    return keliDemosaicAHD_16u_C1C3R(ns ? nullptr : s, r, size, 20, nd ? nullptr : reinterpret_cast<Kel16u*>(d), 30,
                                     gridArg(g), tmp, 32);
  });
  std::vector<Kel8u> d(64, 0x5A);
  const auto* s8 = reinterpret_cast<const Kel8u*>(s);
  auto* t8 = reinterpret_cast<Kel8u*>(tmp);
  EXPECT_EQ(keliDemosaicAHD_8u_C1C3R(s8, {10, 0, 3, 3}, {10, 10}, 10, d.data(), 15, kelBayerGRBG, t8, 16), kelStatusOk);
  EXPECT_EQ(keliDemosaicAHD_8u_C1C3R(s8, {0, 0, 0, 3}, {10, 10}, 10, d.data(), 15, kelBayerGRBG, t8, 16), kelStatusOk);
  for (Kel8u b : d) ASSERT_EQ(b, 0x5A);
}

// The fast rectangle of a 25 x 22 image starts on a red site with even sides.
TEST(DemosaicAhd, FastRectangleStartsOnRed) {
  struct Case {
    int grid;
    kel::ahd::Rect want;
  } cases[] = {{kelBayerBGGR, {5, 5, 14, 12}},
               {kelBayerRGGB, {6, 6, 14, 10}},
               {kelBayerGBRG, {6, 5, 14, 12}},
               {kelBayerGRBG, {5, 6, 14, 10}}};
  for (const Case& c : cases) {
    const kel::ahd::Rect r = kel::ahd::fastRect(c.grid, 0, 0, 25, 22, 25, 22);
    const std::array<int, 4> got{r.x, r.y, r.w, r.h}, want{c.want.x, c.want.y, c.want.w, c.want.h};
    EXPECT_EQ(got, want);
    EXPECT_EQ(site(c.grid, r.x, r.y), 0);
  }
  // 5 by 5 has none; a 1 by 1 region in the middle has none.
  EXPECT_LT(kel::ahd::fastRect(0, 0, 0, 5, 5, 5, 5).w, 2);
  EXPECT_LT(kel::ahd::fastRect(0, 12, 12, 1, 1, 25, 25).w, 2);
}

// The correction of the green mean is kept only strictly between the two
// green neighbours.
TEST(DemosaicAhd, GreenCandidateSignTest) {
  struct Case {
    int s, a, b, p, q, want;
  } cases[] = {
      {100, 50, 60, 100, 100, 55},  // no second difference: the mean
      {100, 50, 60, 92, 92, 59},    // e = 55 + 4 inside
      {100, 50, 60, 80, 80, 55},    // e = 65 beyond b: mean
      {100, 60, 70, 120, 120, 65},  // e = 55 below a: mean
      {100, 60, 70, 120, 100, 60},  // e = 65 - 5 = 60 = a with b above a: kept
      {100, 70, 60, 120, 120, 65},  // e = 55 below b: mean
      {100, 70, 60, 110, 110, 65},  // e = 65 - 5 = 60 = b: mean
      {100, 70, 60, 100, 80, 65},   // e = 65 + 5 = 70 = a with b below a: mean
      {100, 60, 70, 101, 103, 64},  // (s - p) + (s - q) = -4: e = 64
  };
  for (const Case& c : cases)
    EXPECT_EQ(kel::ahd::greenCand(c.s, c.a, c.b, c.p, c.q), c.want) << c.s << " " << c.a << " " << c.b;
}

// The cube root is close: two Halley steps from the rational estimate; the
// linear piece below 0.008856; white is L 100 with a and b near 0.
TEST(DemosaicAhd, LabOfKnownColours) {
  for (float t : {0.009f, 0.05f, 0.2f, 0.5f, 1.0f, 1.5f})
    EXPECT_NEAR(kel::ahd::labF(t), std::cbrt(t), 3e-3f * std::cbrt(t)) << t;
  EXPECT_EQ(kel::ahd::labF(0.0f), 0.13793103f);
  float L, a, b;
  kel::ahd::lab<uint8_t>(255, 255, 255, L, a, b);
  EXPECT_NEAR(L, 100.0f, 0.1f);
  EXPECT_NEAR(a, 0.0f, 5e-3f);
  EXPECT_NEAR(b, 0.0f, 5e-3f);
  kel::ahd::lab<uint16_t>(65535, 65535, 65535, L, a, b);
  EXPECT_NEAR(L, 100.0f, 0.1f);
}

// Flat data stays flat; a sharp vertical edge is rebuilt exactly by the
// column direction and a horizontal one by the row direction, so the choice
// must fall on them wherever the other direction would blur: every pixel
// comes out as the raw value of its column (row).
template <class T>
void flatAndEdges(int lo, int hi) {
  for (int grid = 0; grid < 4; ++grid)
    for (auto [W, H] : {std::pair{5, 5}, {6, 7}, {7, 6}, {25, 22}, {40, 33}}) {
      Raw<T> flat(W, H), v(W, H), h(W, H);
      std::fill(flat.px.begin(), flat.px.end(), static_cast<T>(hi));
      for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
          v.at(x, y) = static_cast<T>(x < W / 2 ? lo : hi);
          h.at(x, y) = static_cast<T>(y < H / 2 ? lo : hi);
        }
      const KeliRect all{0, 0, W, H};
      for (T s : ahdRun(flat, all, grid)) ASSERT_EQ(s, hi);
      const auto ov = ahdRun(v, all, grid), oh = ahdRun(h, all, grid);
      for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x)
          for (int k = 0; k < 3; ++k) {
            ASSERT_EQ(ov[(size_t(y) * W + x) * 3 + k], v.at(x, y)) << W << "x" << H << " at " << x << "," << y;
            ASSERT_EQ(oh[(size_t(y) * W + x) * 3 + k], h.at(x, y)) << W << "x" << H << " at " << x << "," << y;
          }
    }
}
TEST(DemosaicAhd, FlatFieldsAndEdges8u) { flatAndEdges<Kel8u>(20, 230); }
TEST(DemosaicAhd, FlatFieldsAndEdges16u) { flatAndEdges<Kel16u>(20 * 257, 230 * 257); }

// Random images and regions (every edge, odd positions, 1 by 1, clipped,
// negative steps) against the whole-plane form: images of 5, 6 and 7 pixels
// in each direction, the 25 x 22 of the split, and one wide enough for two
// stripes of the rings.
template <class T>
void matchesReference(int maxV) {
  std::mt19937 g(11);
  std::vector<std::pair<int, int>> sizes;
  for (int W : {5, 6, 7})
    for (int H : {5, 6, 7}) sizes.push_back({W, H});
  sizes.insert(sizes.end(), {{25, 22}, {24, 21}, {31, 12}, {540, 12}, {13, 40}});
  for (auto [W, H] : sizes)
    for (int grid = 0; grid < 4; ++grid) {
      // Smooth data with a little noise: both directions win somewhere.
      Raw<T> raw(W, H);
      for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x)
          raw.at(x, y) = static_cast<T>(std::min<int>(maxV, (maxV / 3) * (1 + std::sin(0.4 * x + 0.3 * y * (grid + 1))) +
                                                                 int(g() % (maxV / 16 + 1))));
      for (int k = 0; k < 5; ++k) {
        KeliRect r{0, 0, W, H};
        if (k == 1) r = {int(g() % W), int(g() % H), 1, 1};
        if (k >= 2) r = {int(g() % W), int(g() % H), 1 + int(g() % (W + 2)), 1 + int(g() % (H + 2))};
        const KeliRect c = clipped(r, raw.size());
        const auto got = ahdRun(raw, r, grid, g(), k == 3), want = reference(raw, c, grid);
        for (size_t i = 0; i < got.size(); ++i)
          ASSERT_EQ(got[i], want[i]) << "pixel " << (i / 3) % c.width << "," << (i / 3) / c.width << " of "
                                     << W << "x" << H << " grid " << grid << " roi " << r.x << "," << r.y << " " << r.width << "x" << r.height;
      }
    }
}
TEST(DemosaicAhd, MatchesWholePlaneForm8u) { matchesReference<Kel8u>(255); }
TEST(DemosaicAhd, MatchesWholePlaneForm16u) { matchesReference<Kel16u>(65535); }

// Images of 5 to 10 pixels: the reach of five pixels and its reflection
// (twice over in five-pixel images) never leave the image.
TEST(DemosaicAhd, ReadsStayInsideTheImage) {
  checkPageEdges<Kel8u>(5, 255, ahdFn<Kel8u>);
  checkPageEdges<Kel16u>(5, 65535, ahdFn<Kel16u>);
}

// Every vector path gives the bytes of the scalar definitions.
template <class T>
void pathsAgree(int maxV) {
  std::mt19937 g(5);
  for (int W : {12, 13, 19, 20, 27, 28, 29, 44, 45, 61, 77, 531})
    for (int grid = 0; grid < 4; ++grid) {
      const Raw<T> raw = randomRaw<T>(W, 16, g(), (W & 1) ? maxV : maxV / 8);
      const KeliRect r{int(g() % 3), int(g() % 3), W, 16};
      std::vector<T> ref;
      for (kel::Isa isa : kt::paths()) {
        kt::IsaScope scope(isa);
        const auto out = ahdRun(raw, r, grid, g());
        if (ref.empty()) ref = out;
        else ASSERT_EQ(out, ref) << "path " << int(isa) << " width " << W << " grid " << grid;
      }
    }
}
TEST(DemosaicAhd, VectorPathsEqualScalar8u) { pathsAgree<Kel8u>(255); }
TEST(DemosaicAhd, VectorPathsEqualScalar16u) { pathsAgree<Kel16u>(65535); }
