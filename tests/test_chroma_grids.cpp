// Interlaced-field conversions, filtered chroma upsampling and the 420 / 411 /
// 1620 plane conversions.
#include <algorithm>
#include <functional>
#include <vector>

#include <omp.h>

#include "harness.h"

using namespace kt;

namespace {

Geom plane() { return full(1); }
Geom c422() { return sub(1, 1, 0); }
Geom c420() { return sub(1, 1, 1); }
Geom c411() { return sub(1, 2, 0); }
Geom c1620() { return sub(1, 2, 2); }

KelStatus interlaceStatus(KeliSize r) {
  return ((r.width & 1) || (r.height & 3)) ? kelStatusOddSizeTrimmed : kelStatusOk;
}

using P3Fn = KelStatus (*)(const Kel8u* const*, const int*, Kel8u**, const int*, KeliSize);

std::vector<Member> members() {
  std::vector<Member> v;
  auto p3 = [&](std::string name, std::vector<Geom> s, std::vector<Geom> d, P3Fn f, int minW, int minH) {
    v.push_back(Member{name, s, d, [f](Call& c) {
                         auto src = c.sArr(3);
                         return f(src, c.ssArr(3), c.dArr(3), c.dsArr(3), c.roi());
                       },
                       Order::B, minW, minH});
  };
  // ---- interlaced fields
  p3("keliYCbCr422To420_Interlace_8u_P3R", {plane(), c422(), c422()}, {plane(), c420(), c420()}, keliYCbCr422To420_Interlace_8u_P3R,
     2, 4);
  p3("keliYCbCr420To422_Interlace_8u_P3R", {plane(), c420(), c420()}, {plane(), c422(), c422()}, keliYCbCr420To422_Interlace_8u_P3R,
     2, 4);
  v.push_back(Member{"keliCbYCr422ToYCbCr420_Interlace_8u_C2P3R", {full(2)}, {plane(), c420(), c420()}, [](Call& c) {
                       const Kel8u* s = c.s(0);
                       return keliCbYCr422ToYCbCr420_Interlace_8u_C2P3R(s, c.ss(0), c.dArr(3), c.dsArr(3), c.roi());
                     },
                     Order::B, 2, 4});
  v.push_back(Member{"keliYCbCr420ToCbYCr422_Interlace_8u_P3C2R", {plane(), c420(), c420()}, {full(2)}, [](Call& c) {
                       auto s = c.sArr(3);
                       return keliYCbCr420ToCbYCr422_Interlace_8u_P3C2R(s, c.ssArr(3), c.d(0), c.ds(0), c.roi());
                     },
                     Order::B, 2, 4});
  for (size_t i = 0; i < v.size(); ++i) v[i].final = interlaceStatus;
  // ---- filtered upsampling
  p3("keliYCbCr420ToYCbCr422_Filter_8u_P3R", {plane(), c420(), c420()}, {plane(), c422(), c422()}, keliYCbCr420ToYCbCr422_Filter_8u_P3R, 2, 8);
  p3("keliYCrCb420ToYCbCr422_Filter_8u_P3R", {plane(), c420(), c420()}, {plane(), c422(), c422()}, keliYCrCb420ToYCbCr422_Filter_8u_P3R,
     2, 8);
  v.push_back(Member{"keliYCbCr420ToYCbCr422_Filter_8u_P2P3R", {plane(), sub(2, 1, 1)}, {plane(), c422(), c422()}, [](Call& c) {
                       const Kel8u *y = c.s(0), *cc = c.s(1);
                       return keliYCbCr420ToYCbCr422_Filter_8u_P2P3R(y, c.ss(0), cc, c.ss(1), c.dArr(3), c.dsArr(3),
                                                                     c.roi());
                     },
                     Order::B, 2, 8});
  Member bgr{"keliYCrCb420ToBGR_Filter_8u_P3C4R", {plane(), c420(), c420()}, {full(4)}, [](Call& c) {
               auto s = c.sArr(3);
               return keliYCrCb420ToBGR_Filter_8u_P3C4R(s, c.ssArr(3), c.d(0), c.ds(0), c.roi(), 0x1C7);
             },
             Order::A};
  bgr.final = status420;
  v.push_back(bgr);
  // ---- 420, 411, 1620: sizes off the grid are refused (see the tables
  // below); here the harness's random sizes are taken down to the grid.
  struct Grid {
    const char* name;
    Geom from, to;
    P3Fn f;
    int minH;
  } grids[] = {{"keliYCbCr420To411_8u_P3R", c420(), c411(), keliYCbCr420To411_8u_P3R, 2},
               {"keliYCbCr411To420_8u_P3R", c411(), c420(), keliYCbCr411To420_8u_P3R, 4},
               {"keliYCbCr420To1620_8u_P3R", c420(), c1620(), keliYCbCr420To1620_8u_P3R, 4},
               {"keliYCbCr1620To420_8u_P3R", c1620(), c420(), keliYCbCr1620To420_8u_P3R, 4}};
  for (const Grid& g : grids) {
    const P3Fn f = g.f;
    const int mh = g.minH;
    Member m{g.name, {plane(), g.from, g.from}, {plane(), g.to, g.to}, [f, mh](Call& c) {
               KeliSize r = c.roi();
               if (r.width >= 4 && r.height >= mh) r = {r.width & ~3, r.height & ~(mh - 1)};
               auto s = c.sArr(3);
               return f(s, c.ssArr(3), c.dArr(3), c.dsArr(3), r);
             },
             Order::B, 4, mh};
    m.nonNegativeSteps = true;
    v.push_back(m);
  }
  return v;
}

bool isInterlace(const Member& m) { return m.name.find("Interlace") != std::string::npos; }

}  // namespace

KT_MEMBERS(members);
TEST(ChromaGrids, GuardsErrorsAndPaths) { checkAll(members()); }

// Every path on pictures tall enough for many groups and filter rows.
TEST(ChromaGrids, PathsOnTallPictures) {
  for (const Member& m : members()) checkPaths(m, 12, 300, 40);
}

// Bands of whole groups by the team's size: the bytes of 1 to 4 threads agree,
// at the threshold (128 wide, 132 high) and above it.
TEST(ChromaGrids, InterlacedMembersGiveTheSameBytesForEveryThreadCount) {
  for (const Member& m : members())
    if (isInterlace(m)) checkThreads(m, {{128, 132}, {131, 135}, {256, 200}, {200, 516}, {128, 128}});
}

// ---- interlaced fields ----------------------------------------------------------
namespace {

// One chroma plane and the planes around it of a P3 call.
struct Planes3 {
  int w, h, cw, srcRows, dstRows;
  std::vector<Kel8u> s[3], d[3];
  Planes3(int w_, int h_, int srcRows_, int dstRows_, uint32_t seed) : w(w_), h(h_), cw(w_ / 2), srcRows(srcRows_), dstRows(dstRows_) {
    std::mt19937 rng(seed);
    for (int i = 0; i < 3; ++i) {
      s[i].resize(size_t(i ? cw : w) * (i ? srcRows : h));
      d[i].assign(size_t(i ? cw : w) * (i ? dstRows : h), 0xEE);
      for (auto& b : s[i]) b = static_cast<Kel8u>(rng());
    }
  }
  KelStatus run(P3Fn f, KeliSize roi) {
    const Kel8u* sp[3] = {s[0].data(), s[1].data(), s[2].data()};
    Kel8u* dp[3] = {d[0].data(), d[1].data(), d[2].data()};
    const int st[3] = {w, cw, cw};
    return f(sp, st, dp, st, roi);
  }
  int S(int c, int r, int i) const { return s[c][size_t(r) * cw + i]; }
  int D(int c, int r, int i) const { return d[c][size_t(r) * cw + i]; }
};

}  // namespace

// The filters: two destination rows from each group of four 4:2:2 rows, four
// from each group of four 4:2:0 rows; the edge rows of 4:2:0 -> 4:2:2 are
// copies. Weights as stated, each field kept to itself.
TEST(ChromaInterlace, RowWeightsOfBothDirections) {
  for (int h : {4, 8, 12, 20}) {
    Planes3 dn(10, h, h, h / 2, 1 + h);
    ASSERT_EQ(dn.run(keliYCbCr422To420_Interlace_8u_P3R, {10, h}), kelStatusOk);
    Planes3 up(10, h, h / 2, h, 2 + h);
    ASSERT_EQ(up.run(keliYCbCr420To422_Interlace_8u_P3R, {10, h}), kelStatusOk);
    for (int c = 1; c < 3; ++c)
      for (int i = 0; i < 5; ++i) {
        for (int g = 0; g < h / 4; ++g) {
          EXPECT_EQ(dn.D(c, 2 * g, i), (3 * dn.S(c, 4 * g, i) + dn.S(c, 4 * g + 2, i) + 2) >> 2);
          EXPECT_EQ(dn.D(c, 2 * g + 1, i), (dn.S(c, 4 * g + 1, i) + 3 * dn.S(c, 4 * g + 3, i) + 2) >> 2);
        }
        auto S = [&](int r) { return up.S(c, r, i); };
        const int want[4] = {S(0), S(1), S(h / 2 - 2), S(h / 2 - 1)};
        const int at[4] = {0, 1, h - 2, h - 1};
        for (int k = 0; k < 4; ++k) EXPECT_EQ(up.D(c, at[k], i), want[k]) << "edge row " << at[k];
        for (int g = 0; g + 2 <= h / 4; ++g) {
          const int s = 2 * g, r = 4 * g + 2;
          EXPECT_EQ(up.D(c, r, i), (5 * S(s) + 3 * S(s + 2) + 4) >> 3);
          EXPECT_EQ(up.D(c, r + 1, i), (7 * S(s + 1) + S(s + 3) + 4) >> 3);
          EXPECT_EQ(up.D(c, r + 2, i), (S(s) + 7 * S(s + 2) + 4) >> 3);
          EXPECT_EQ(up.D(c, r + 3, i), (3 * S(s + 1) + 5 * S(s + 3) + 4) >> 3);
        }
      }
    EXPECT_TRUE(dn.d[0] == dn.s[0] && up.d[0] == up.s[0]) << "luma moves unchanged";
  }
}

// Flat chroma stays flat for every value; the trimmed 7 x 10 picture is the
// 6 x 8 one with the warning.
TEST(ChromaInterlace, FlatPlanesAndTrimming) {
  for (P3Fn f : {keliYCbCr422To420_Interlace_8u_P3R, keliYCbCr420To422_Interlace_8u_P3R})
    for (int v : {0, 1, 127, 254, 255}) {
      Planes3 p(6, 8, 8, 8, 3);
      for (int c = 1; c < 3; ++c) std::fill(p.s[c].begin(), p.s[c].end(), v);
      ASSERT_EQ(p.run(f, {6, 8}), kelStatusOk);
      for (int c = 1; c < 3; ++c)
        for (int r = 0; r < (f == keliYCbCr422To420_Interlace_8u_P3R ? 4 : 8); ++r)
          for (int i = 0; i < 3; ++i) ASSERT_EQ(p.D(c, r, i), v);
    }
  for (P3Fn f : {keliYCbCr422To420_Interlace_8u_P3R, keliYCbCr420To422_Interlace_8u_P3R}) {
    Planes3 a(14, 12, 12, 12, 5), b = a;
    // Picture 7 x 10 inside planes 14 wide: the same samples as 6 x 8.
    EXPECT_EQ(a.run(f, {7, 10}), kelStatusOddSizeTrimmed);
    EXPECT_EQ(b.run(f, {6, 8}), kelStatusOk);
    for (int c = 0; c < 3; ++c) EXPECT_TRUE(a.d[c] == b.d[c]) << c;
  }
}

// Changing the odd source chroma rows changes no even destination row, and
// the reverse.
TEST(ChromaInterlace, FieldsNeverMix) {
  for (P3Fn f : {keliYCbCr422To420_Interlace_8u_P3R, keliYCbCr420To422_Interlace_8u_P3R}) {
    const bool down = f == keliYCbCr422To420_Interlace_8u_P3R;
    const int rows = down ? 16 : 8, outRows = down ? 8 : 16;
    for (int parity = 0; parity < 2; ++parity) {
      Planes3 a(8, 16, rows, outRows, 9), b = a;
      for (int r = parity; r < rows; r += 2)
        for (int i = 0; i < 4; ++i) b.s[1][r * 4 + i] ^= 0x5A;
      ASSERT_EQ(a.run(f, {8, 16}), kelStatusOk);
      ASSERT_EQ(b.run(f, {8, 16}), kelStatusOk);
      for (int r = 0; r < outRows; ++r)
        for (int i = 0; i < 4; ++i)
          if (r % 2 != parity) {
            EXPECT_EQ(a.D(1, r, i), b.D(1, r, i)) << "row " << r;
          }
    }
  }
}

// The C2 members move luma through bytes 1 and 3 and filter as the planar ones.
TEST(ChromaInterlace, PackedMembersAgreeWithThePlanarOnes) {
  const int w = 38, h = 24;
  Planes3 p(w, h, h, h / 2, 21);
  std::vector<Kel8u> c2(size_t(2) * w * h);
  for (int r = 0; r < h; ++r)
    for (int i = 0; i < w / 2; ++i) {
      Kel8u* q = &c2[size_t(r) * 2 * w + 4 * i];
      q[0] = p.s[1][r * (w / 2) + i], q[1] = p.s[0][r * w + 2 * i], q[2] = p.s[2][r * (w / 2) + i],
      q[3] = p.s[0][r * w + 2 * i + 1];
    }
  Planes3 q = p;
  ASSERT_EQ(p.run(keliYCbCr422To420_Interlace_8u_P3R, {w, h}), kelStatusOk);
  Kel8u* dp[3] = {q.d[0].data(), q.d[1].data(), q.d[2].data()};
  const int st[3] = {w, w / 2, w / 2};
  ASSERT_EQ(keliCbYCr422ToYCbCr420_Interlace_8u_C2P3R(c2.data(), 2 * w, dp, st, {w, h}), kelStatusOk);
  for (int c = 0; c < 3; ++c) EXPECT_TRUE(p.d[c] == q.d[c]) << c;
  // And back: 4:2:0 planes to C2 against 4:2:0 planes to 4:2:2 planes.
  Planes3 u(w, h, h / 2, h, 22);
  std::vector<Kel8u> out(c2.size());
  const Kel8u* sp[3] = {u.s[0].data(), u.s[1].data(), u.s[2].data()};
  ASSERT_EQ(keliYCbCr420ToCbYCr422_Interlace_8u_P3C2R(sp, st, out.data(), 2 * w, {w, h}), kelStatusOk);
  ASSERT_EQ(u.run(keliYCbCr420To422_Interlace_8u_P3R, {w, h}), kelStatusOk);
  for (int r = 0; r < h; ++r)
    for (int i = 0; i < w / 2; ++i) {
      const Kel8u* o = &out[size_t(r) * 2 * w + 4 * i];
      ASSERT_EQ(o[0], u.D(1, r, i));
      ASSERT_EQ(o[1], u.s[0][r * w + 2 * i]);
      ASSERT_EQ(o[2], u.D(2, r, i));
      ASSERT_EQ(o[3], u.s[0][r * w + 2 * i + 1]);
    }
}

// ---- filtered upsampling -----------------------------------------------------------
// Column values of the source chroma and what the vertical filter gives in a
// destination row.
TEST(ChromaFilter, VerticalFilterValues) {
  struct Case {
    std::vector<int> column;  // source chroma rows 0 .. 3
    int row, want;
  } cases[] = {
      {{0, 255, 255, 0}, 3, 255},  // unclipped 287
      {{255, 0, 0, 255}, 3, 0},    // unclipped -32
      {{0, 255, 0, 0}, 1, 143},    // the top edge takes row 0 above
      {{10, 20, 30, 40}, 7, 41},   // the bottom: 18 * 40 - 30 - 40 = 650
      {{10, 20, 30, 40}, 5, 36},   // 9 * 70 - 20 - 40 = 570
      {{100, 100, 100, 100}, 1, 100},
  };
  for (const Case& c : cases) {
    Planes3 p(4, 8, 4, 8, 1);
    for (int r = 0; r < 4; ++r)
      for (int i = 0; i < 2; ++i) p.s[1][r * 2 + i] = p.s[2][r * 2 + i] = static_cast<Kel8u>(c.column[r]);
    ASSERT_EQ(p.run(keliYCbCr420ToYCbCr422_Filter_8u_P3R, {4, 8}), kelStatusOk);
    EXPECT_EQ(p.D(1, c.row, 0), c.want) << "row " << c.row;
    EXPECT_EQ(p.D(2, c.row, 1), c.want) << "row " << c.row;
    for (int k = 0; k < 4; ++k) EXPECT_EQ(p.D(1, 2 * k, 0), c.column[k]);
  }
}

// Height 12 works as 8: rows 8 to 11 untouched, chroma rows 4 and 5 unread.
TEST(ChromaFilter, HeightIsTrimmedToEightRows) {
  Planes3 a(6, 12, 6, 12, 4), b = a;
  for (int c = 1; c < 3; ++c)
    for (int i = 12; i < 18; ++i) b.s[c][i] ^= 0xFF;  // rows 4, 5
  ASSERT_EQ(a.run(keliYCbCr420ToYCbCr422_Filter_8u_P3R, {6, 12}), kelStatusOk);
  ASSERT_EQ(b.run(keliYCbCr420ToYCbCr422_Filter_8u_P3R, {6, 12}), kelStatusOk);
  for (int c = 0; c < 3; ++c) EXPECT_TRUE(a.d[c] == b.d[c]);
  for (int r = 8; r < 12; ++r)
    for (int i = 0; i < 3; ++i) EXPECT_EQ(a.D(1, r, i), 0xEE);
  EXPECT_EQ(a.run(keliYCbCr420ToYCbCr422_Filter_8u_P3R, {6, 7}), kelStatusBadSize);
}

// The YCrCb member is the YCbCr one with its source chroma planes exchanged;
// the P2 member the same with the planes interleaved.
TEST(ChromaFilter, PlaneOrdersAgree) {
  Planes3 a(40, 16, 8, 16, 8), b = a, c = a;
  std::swap(b.s[1], b.s[2]);
  ASSERT_EQ(a.run(keliYCbCr420ToYCbCr422_Filter_8u_P3R, {40, 16}), kelStatusOk);
  ASSERT_EQ(b.run(keliYCrCb420ToYCbCr422_Filter_8u_P3R, {40, 16}), kelStatusOk);
  std::vector<Kel8u> pairs(a.s[1].size() * 2);
  for (size_t i = 0; i < a.s[1].size(); ++i) pairs[2 * i] = a.s[1][i], pairs[2 * i + 1] = a.s[2][i];
  Kel8u* dp[3] = {c.d[0].data(), c.d[1].data(), c.d[2].data()};
  const int st[3] = {40, 20, 20};
  ASSERT_EQ(keliYCbCr420ToYCbCr422_Filter_8u_P2P3R(a.s[0].data(), 40, pairs.data(), 40, dp, st, {40, 16}), kelStatusOk);
  for (int k = 0; k < 3; ++k) EXPECT_TRUE(a.d[k] == b.d[k] && a.d[k] == c.d[k]) << k;
}

namespace {
// keliYCrCb420ToBGR_Filter_8u_P3C4R on a picture of w x h with flat or random planes.
struct Bgr {
  int w, h;
  std::vector<Kel8u> y, cr, cb, out;
  // Chroma planes of exactly (w / 2) by (h / 2) samples, at least one.
  Bgr(int w_, int h_, uint32_t seed) : w(w_), h(h_) {
    std::mt19937 rng(seed);
    y.resize(size_t(w) * h), cr.resize(size_t(std::max(w / 2, 1)) * std::max(h / 2, 1)), cb.resize(cr.size());
    out.assign(size_t(4) * w * h, 0xEE);
    for (auto* v : {&y, &cr, &cb})
      for (auto& b : *v) b = static_cast<Kel8u>(rng());
  }
  KelStatus run(KeliSize roi, int alpha = 255) {
    const Kel8u* s[3] = {y.data(), cr.data(), cb.data()};
    const int st[3] = {w, std::max(w / 2, 1), std::max(w / 2, 1)};
    return keliYCrCb420ToBGR_Filter_8u_P3C4R(s, st, out.data(), 4 * w, roi, alpha);
  }
  const Kel8u* px(int r, int x) const { return &out[size_t(r) * 4 * w + 4 * x]; }
};
}  // namespace

// Which pixels are written, and the status, by size; width 1 writes nothing.
TEST(ChromaFilter, BgrWrittenRectangleAndStatus) {
  struct Case {
    KeliSize roi;
    int cols, rows;
    KelStatus st;
  } cases[] = {{{5, 3}, 4, 2, kelStatusOddSizeTrimmed}, {{5, 1}, 0, 0, kelStatusOddSizeTrimmed},
               {{1, 4}, 0, 0, kelStatusOddSizeTrimmed}, {{1, 1}, 0, 0, kelStatusOddSizeTrimmed},
               {{2, 2}, 2, 2, kelStatusOk},             {{6, 4}, 6, 4, kelStatusOk}};
  for (const Case& c : cases) {
    Bgr b(8, 6, 3);
    EXPECT_EQ(b.run(c.roi, 0x1234), c.st);
    for (int r = 0; r < 6; ++r)
      for (int x = 0; x < 8; ++x) {
        const bool in = r < c.rows && x < c.cols;
        EXPECT_EQ(b.px(r, x)[3], in ? 0x34 : 0xEE) << c.roi.width << "x" << c.roi.height << " at " << x << "," << r;
      }
  }
}

// Telling values of both colour forms, and the chroma each pixel takes.
TEST(ChromaFilter, BgrValuesOfBodyAndTail) {
  struct Case {
    int y, cb, cr, b, g, r;
  } cases[] = {{235, 128, 128, 254, 254, 254}, {16, 128, 128, 0, 0, 0}, {255, 128, 128, 255, 255, 255}};
  for (const Case& c : cases) {
    Bgr b(40, 2, 1);  // 20 pairs: body 16 pairs, tail 4
    std::fill(b.y.begin(), b.y.end(), c.y), std::fill(b.cb.begin(), b.cb.end(), c.cb);
    std::fill(b.cr.begin(), b.cr.end(), c.cr);
    ASSERT_EQ(b.run({40, 2}), kelStatusOk);
    for (int x = 0; x < 40; ++x) {
      EXPECT_EQ(b.px(1, x)[0], c.b) << x;
      EXPECT_EQ(b.px(1, x)[1], c.g) << x;
      EXPECT_EQ(b.px(1, x)[2], c.r) << x;
    }
  }
  // A Cb ramp with grey luma: the blue of a right pixel is that of its left
  // pixel's mean with the next sample; the last pair has no mean.
  Bgr b(40, 2, 2);
  std::fill(b.y.begin(), b.y.end(), 128), std::fill(b.cr.begin(), b.cr.end(), 128);
  for (int i = 0; i < 20; ++i) b.cb[i] = static_cast<Kel8u>(100 + 7 * i);
  ASSERT_EQ(b.run({40, 2}), kelStatusOk);
  auto blueOf = [](int cb, bool body) {
    const int t = 4769 * 128 - 76304;
    return body ? std::clamp((((112 << 7) * 4769 >> 16) + (((cb - 128) << 7) * 8263 >> 16)) >> 3, 0, 255)
                : std::clamp((t + 8263 * (cb - 128)) >> 12, 0, 255);
  };
  for (int i = 0; i < 20; ++i) {
    const bool body = i < 16;
    const int next = i == 19 ? b.cb[i] : (b.cb[i] + b.cb[i + 1] + 1) >> 1;
    EXPECT_EQ(b.px(0, 2 * i)[0], blueOf(b.cb[i], body)) << i;
    EXPECT_EQ(b.px(0, 2 * i + 1)[0], blueOf(next, body)) << i;
  }
}

// ---- 420, 411, 1620 ------------------------------------------------------------------
namespace {
// Planes of a 420 / 411 / 1620 call: chroma planes exactly their size, so a
// read outside them shows under the address sanitizer.
struct Grids {
  int w, h, scw, srows, dcw, drows;
  std::vector<Kel8u> s[3], d[3];
  Grids(int w_, int h_, int scw_, int srows_, int dcw_, int drows_) : w(w_), h(h_), scw(scw_), srows(srows_), dcw(dcw_), drows(drows_) {
    s[0].assign(size_t(w) * h, 1), d[0].assign(size_t(w) * h, 0xEE);
    for (int c = 1; c < 3; ++c) s[c].assign(size_t(scw) * srows, 0), d[c].assign(size_t(dcw) * (drows + 1), 0xEE);
  }
  void set(int r, std::vector<int> v) {
    for (size_t i = 0; i < v.size(); ++i) s[1][r * scw + i] = s[2][r * scw + i] = static_cast<Kel8u>(v[i]);
  }
  KelStatus run(P3Fn f) {
    const Kel8u* sp[3] = {s[0].data(), s[1].data(), s[2].data()};
    Kel8u* dp[3] = {d[0].data(), d[1].data(), d[2].data()};
    const int ss[3] = {w, scw, scw}, ds[3] = {w, dcw, dcw};
    return f(sp, ss, dp, ds, {w, h});
  }
  std::vector<int> row(int r, int plane = 1) const {
    return std::vector<int>(d[plane].begin() + r * dcw, d[plane].begin() + (r + 1) * dcw);
  }
};
int hf(int a, int b) { return (a + b) >> 1; }
}  // namespace

TEST(ChromaPlanes, SmallPicturesRowByRow) {
  const int a = 10, b = 21, c = 40, e = 77;
  {  // 1620 -> 420, 4 x 4: only the last-row rule
    Grids g(4, 4, 1, 1, 2, 2);
    g.set(0, {a});
    ASSERT_EQ(g.run(keliYCbCr1620To420_8u_P3R), kelStatusOk);
    EXPECT_EQ(g.row(0), (std::vector<int>{a, a}));
    EXPECT_EQ(g.row(1, 2), (std::vector<int>{a, a}));
    EXPECT_EQ(g.d[1][4], 0xEE);
  }
  {  // 1620 -> 420, 8 x 8
    Grids g(8, 8, 2, 2, 4, 4);
    g.set(0, {a, b}), g.set(1, {c, e});
    ASSERT_EQ(g.run(keliYCbCr1620To420_8u_P3R), kelStatusOk);
    EXPECT_EQ(g.row(0), (std::vector<int>{a, hf(a, b), b, b}));
    EXPECT_EQ(g.row(1), (std::vector<int>{hf(a, c), hf(hf(a, b), hf(c, e)), hf(b, e), hf(b, e)}));
    EXPECT_EQ(g.row(2), (std::vector<int>{c, hf(c, e), e, e}));
    EXPECT_EQ(g.row(3), (std::vector<int>{c, c, e, e}));
  }
  {  // 420 -> 1620, 4 x 4: s[0][0] only
    Grids g(4, 4, 2, 2, 1, 1);
    g.set(0, {a, b}), g.set(1, {c, e});
    ASSERT_EQ(g.run(keliYCbCr420To1620_8u_P3R), kelStatusOk);
    EXPECT_EQ(g.row(0), (std::vector<int>{a}));
  }
  {  // 411 -> 420, 4 x 4: source rows 0 and 2
    Grids g(4, 4, 1, 4, 2, 2);
    g.set(0, {a}), g.set(1, {b}), g.set(2, {c}), g.set(3, {e});
    ASSERT_EQ(g.run(keliYCbCr411To420_8u_P3R), kelStatusOk);
    EXPECT_EQ(g.row(0), (std::vector<int>{a, a}));
    EXPECT_EQ(g.row(1), (std::vector<int>{c, c}));
  }
  {  // 420 -> 411, 4 x 4: column a, half(a, c), c, c
    Grids g(4, 4, 2, 2, 1, 4);
    g.set(0, {a, b}), g.set(1, {c, e});
    ASSERT_EQ(g.run(keliYCbCr420To411_8u_P3R), kelStatusOk);
    for (int r = 0; r < 4; ++r) EXPECT_EQ(g.row(r)[0], (std::vector<int>{a, hf(a, c), c, c})[r]) << r;
  }
  {  // 420 -> 411, height 2: one source row (nothing below it is read), two rows out
    Grids g(8, 2, 4, 1, 2, 2);
    g.set(0, {a, b, c, e});
    ASSERT_EQ(g.run(keliYCbCr420To411_8u_P3R), kelStatusOk);
    EXPECT_EQ(g.row(0), (std::vector<int>{a, c}));
    EXPECT_EQ(g.row(1), (std::vector<int>{a, c}));
    EXPECT_EQ(g.row(2), (std::vector<int>{0xEE, 0xEE}));
  }
  {  // luma copied whole
    Grids g(8, 8, 2, 2, 4, 4);
    for (size_t i = 0; i < g.s[0].size(); ++i) g.s[0][i] = static_cast<Kel8u>(i * 7);
    ASSERT_EQ(g.run(keliYCbCr1620To420_8u_P3R), kelStatusOk);
    EXPECT_TRUE(g.s[0] == g.d[0]);
  }
}

// The mean of a column depends on the stage that holds it.
TEST(ChromaPlanes, StageOfEachMean) {
  // 420 -> 411 from rows of 1s and 2s: avg8 gives 2, half 1.
  for (auto [w, halfFrom] : {std::pair{128, 32}, {124, 0}, {132, 32}, {256, 64}, {260, 64}}) {
    const int n = w / 4;
    Grids g(w, 4, w / 2, 2, n, 4);
    g.set(0, std::vector<int>(w / 2, 1)), g.set(1, std::vector<int>(w / 2, 2));
    ASSERT_EQ(g.run(keliYCbCr420To411_8u_P3R), kelStatusOk);
    for (int j = 0; j < n; ++j) EXPECT_EQ(g.row(1)[j], j < halfFrom ? 2 : 1) << "width " << w << " column " << j;
  }
  // 411 -> 420 and 1620 -> 420: b = 16 ((n - 1) / 16) means by avg8, then half.
  for (auto [w, b] : {std::pair{64, 0}, {68, 16}, {128, 16}, {132, 32}}) {
    const int n = w / 4;
    std::vector<int> ramp(n);
    for (int j = 0; j < n; ++j) ramp[j] = j % 2;  // means of 0 and 1: avg8 1, half 0
    Grids g(w, 4, n, 4, 2 * n, 2);
    g.set(0, ramp), g.set(2, ramp);
    ASSERT_EQ(g.run(keliYCbCr411To420_8u_P3R), kelStatusOk);
    Grids q(w, 8, n, 2, 2 * n, 4);
    q.set(0, ramp), q.set(1, ramp);
    ASSERT_EQ(q.run(keliYCbCr1620To420_8u_P3R), kelStatusOk);
    for (int j = 0; j + 1 < n; ++j) {
      EXPECT_EQ(g.row(0)[2 * j + 1], j < b ? 1 : 0) << "411 width " << w << " column " << j;
      EXPECT_EQ(q.row(0)[2 * j + 1], j < b ? 1 : 0) << "1620 width " << w << " column " << j;
      EXPECT_EQ(q.row(2)[2 * j + 1], j < b ? 1 : 0) << "1620 last row, width " << w << " column " << j;
    }
    EXPECT_EQ(g.row(0)[2 * n - 1], ramp[n - 1]);
  }
}

// Accepted and refused sizes.
TEST(ChromaPlanes, SizesOffTheGridAreRefused) {
  const P3Fn fs[4] = {keliYCbCr420To411_8u_P3R, keliYCbCr411To420_8u_P3R, keliYCbCr420To1620_8u_P3R,
                      keliYCbCr1620To420_8u_P3R};
  struct Case {
    KeliSize roi;
    bool ok[4];
  } cases[] = {{{8, 6}, {true, false, false, false}}, {{8, 2}, {true, false, false, false}},
               {{6, 8}, {false, false, false, false}}, {{4, 4}, {true, true, true, true}},
               {{8, 3}, {false, false, false, false}}, {{2, 8}, {false, false, false, false}},
               {{12, 12}, {true, true, true, true}}};
  std::vector<Kel8u> buf(4096, 0);
  const Kel8u* s[3] = {buf.data(), buf.data(), buf.data()};
  std::vector<Kel8u> out(4096, 0xEE);
  Kel8u* d[3] = {out.data(), out.data() + 1024, out.data() + 2048};
  const int st[3] = {64, 64, 64};
  for (const Case& c : cases)
    for (int k = 0; k < 4; ++k) {
      std::fill(out.begin(), out.end(), 0xEE);
      EXPECT_EQ(fs[k](s, st, d, st, c.roi), c.ok[k] ? kelStatusOk : kelStatusBadSize)
          << k << " at " << c.roi.width << "x" << c.roi.height;
      if (!c.ok[k]) {
        EXPECT_TRUE(std::all_of(out.begin(), out.end(), [](Kel8u b) { return b == 0xEE; }));
      }
    }
}

// A team smaller than the thread count asked for (here: a call made inside a
// parallel region, where a nested region gets one thread) still does every
// row, with the bytes of the serial call.
TEST(ChromaGrids, InterlacedMembersDoEveryRowInASmallerTeam) {
  const KeliSize roi{256, 264};
  for (const Member& m : members()) {
    if (!isInterlace(m)) continue;
    Images ref = makeImages(m, roi, StepMode::Padded, 0, 31);
    {
      ThreadScope one(1);
      ASSERT_EQ(run(m, ref, roi), kelStatusOk);
    }
    Images got[2] = {makeImages(m, roi, StepMode::Padded, 0, 31), makeImages(m, roi, StepMode::Padded, 0, 31)};
    KelStatus st[2];
    const int levels = omp_get_max_active_levels();
    omp_set_max_active_levels(1);
    {
      ThreadScope four(4);
#pragma omp parallel for num_threads(2)
      for (int i = 0; i < 2; ++i) st[i] = run(m, got[i], roi);
    }
    omp_set_max_active_levels(levels);
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(st[i], kelStatusOk);
      for (size_t k = 0; k < ref.dst.size(); ++k) EXPECT_TRUE(got[i].dst[k]->region() == ref.dst[k]->region()) << m.name;
    }
  }
}

// Each destination chroma plane advances by its own step.
TEST(ChromaGrids, ChromaPlanesWithUnequalSteps) {
  const P3Fn fs[] = {keliYCbCr422To420_Interlace_8u_P3R, keliYCbCr420To422_Interlace_8u_P3R,
                     keliYCbCr420ToYCbCr422_Filter_8u_P3R, keliYCbCr420To411_8u_P3R, keliYCbCr1620To420_8u_P3R};
  const int w = 72, h = 16, cw = 36;
  std::mt19937 rng(5);
  std::vector<Kel8u> src(size_t(w) * h * 3);
  for (auto& b : src) b = static_cast<Kel8u>(rng());
  const Kel8u* s[3] = {src.data(), src.data() + w * h, src.data() + 2 * w * h};
  const int ss[3] = {w, cw, cw + 5};
  for (P3Fn f : fs) {
    std::vector<Kel8u> a(size_t(w) * h * 3, 0), b = a;
    Kel8u* da[3] = {a.data(), a.data() + w * h, a.data() + 2 * w * h};
    Kel8u* db[3] = {b.data(), b.data() + w * h, b.data() + 2 * w * h};
    const int equal[3] = {w, cw, cw}, unequal[3] = {w, cw + 9, cw + 2};
    ASSERT_EQ(f(s, ss, da, equal, {w, h}), kelStatusOk);
    ASSERT_EQ(f(s, ss, db, unequal, {w, h}), kelStatusOk);
    for (int p = 1; p < 3; ++p)
      for (int r = 0; r < h; ++r)
        for (int i = 0; i < cw; ++i)
          ASSERT_EQ(da[p][r * equal[p] + i], db[p][r * unequal[p] + i]) << "plane " << p << " row " << r;
  }
}
