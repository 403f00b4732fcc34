// Bit-depth reduction: every member through the guarded harness for each
// method, stated values, error diffusion worked out by hand, the channel
// split among workers, noise tables, allocation failures.
#include <omp.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <vector>

#include "core/core_test.h"
#include "harness.h"
#include "reduce/diffusion.h"
#include "support/support.h"

using namespace kt;

namespace {

template <class S, class D>
using Fn = KelStatus (*)(const S*, int, D*, int, KeliSize, int, KelDitherType, int);

constexpr KelDitherType kNone = kelDitherNone, kFs = kelDitherFloydSteinberg, kJjn = kelDitherJarvisJudiceNinke,
                        kStucki = kelDitherStucki, kBayer = kelDitherBayer;

struct Entry {
  const char* name;
  int px;  // samples per pixel in memory
  int sb, db;  // bytes per source and destination sample
  bool floatSrc;
  std::function<KelStatus(const void*, int, void*, int, KeliSize, int, KelDitherType, int)> f;
};

template <class S, class D>
Entry entry(const char* name, int px, Fn<S, D> f) {
  return {name, px, int(sizeof(S)), int(sizeof(D)), std::is_same<S, Kel32f>::value,
          [f](const void* s, int ss, void* d, int ds, KeliSize r, int n, KelDitherType t, int l) {
            return f(static_cast<const S*>(s), ss, static_cast<D*>(d), ds, r, n, t, l);
          }};
}

#define KT_PAIR(d, S, D)                                                                              \
  entry<S, D>("keliReduceBits_" #d "_C1R", 1, keliReduceBits_##d##_C1R),                              \
      entry<S, D>("keliReduceBits_" #d "_C3R", 3, keliReduceBits_##d##_C3R),                          \
      entry<S, D>("keliReduceBits_" #d "_C4R", 4, keliReduceBits_##d##_C4R),                          \
      entry<S, D>("keliReduceBits_" #d "_AC4R", 4, keliReduceBits_##d##_AC4R)

const std::vector<Entry>& entries() {
  static const std::vector<Entry> e = {
      KT_PAIR(8u, Kel8u, Kel8u),       KT_PAIR(16u, Kel16u, Kel16u),   KT_PAIR(16s, Kel16s, Kel16s),
      KT_PAIR(16u8u, Kel16u, Kel8u),   KT_PAIR(16s8u, Kel16s, Kel8u),  KT_PAIR(32f8u, Kel32f, Kel8u),
      KT_PAIR(32f16u, Kel32f, Kel16u), KT_PAIR(32f16s, Kel32f, Kel16s)};
  return e;
}

Member member(const Entry& e, KelDitherType t, int noise, int levels) {
  Member m{std::string(e.name) + " dither " + std::to_string(t) + " noise " + std::to_string(noise),
           {full(e.px * e.sb)},
           {full(e.px * e.db)},
           [e, t, noise, levels](Call& c) {
             const int n = c.param(noise);
             // 0 to 7: the values a C++ caller can hold in the enumeration
             // (5 to 7 are the methods above 4, which do nothing).
             const auto type = static_cast<KelDitherType>(c.param(int32_t(t)) & 7);
             return e.f(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi(), n, type, c.param(levels));
           }};
  m.sampleBytes = std::max(e.sb, e.db);
  m.finiteFloats = e.floatSrc;
  return m;
}

// One call on tight images; returns the destination.
template <class S, class D>
std::vector<D> reduce(Fn<S, D> f, const std::vector<S>& src, int w, int h, int px, KelDitherType t, int levels,
                      int noise = 0, KelStatus want = kelStatusOk) {
  std::vector<D> dst(src.size(), D(7));
  EXPECT_EQ(f(src.data(), w * px * int(sizeof(S)), dst.data(), w * px * int(sizeof(D)), {w, h}, noise, t, levels),
            want);
  return dst;
}

// Every member under three methods, for the tests that take all members
// (the fuzzer also puts other methods, levels and noise in their place).
std::vector<Member> registered() {
  std::vector<Member> v;
  const struct {
    KelDitherType t;
    int noise, levels;
  } methods[] = {{kNone, 0, 7}, {kBayer, 40, 3}, {kFs, 25, 6}};
  for (const Entry& e : entries())
    for (const auto& mt : methods) v.push_back(member(e, mt.t, mt.noise, mt.levels));
  return v;
}

}  // namespace

KT_MEMBERS(registered);

// ---- every member, method and depth pair through the harness ------------------
TEST(ReduceBits, GuardsErrorsAndPaths) {
  const struct {
    KelDitherType t;
    int noise, levels;
  } methods[] = {{kNone, 0, 7}, {kBayer, 0, 5}, {kBayer, 40, 3}, {kFs, 0, 4},       {kFs, 25, 6},
                 {kJjn, 0, 9},  {kJjn, 60, 2},  {kStucki, 0, 3}, {kStucki, 100, 17}};
  // One thread: the team sizes have tests of their own, and a region per
  // call costs much on a busy machine.
  ThreadScope threads(1);
  for (const Entry& e : entries())
    for (const auto& mt : methods) {
      const Member m = member(e, mt.t, mt.noise, mt.levels);
      SCOPED_TRACE(m.name);
      checkErrors(m);
      checkGuards(m, 20, 200, 6);
      checkPaths(m, 8, 200, 4);
    }
}

// The ordered dither of every depth pair (with and without noise) and the
// 8-bit nearest level carry vector bodies: long rows, many level counts,
// every layout.
TEST(ReduceBits, VectorBodiesEqualScalar) {
  ThreadScope threads(1);
  for (int levels : {2, 3, 8, 16, 37, 100, 255, 256})
    for (size_t i = 0; i < entries().size(); ++i) {
      checkPaths(member(entries()[i], kBayer, 0, levels), 3, 700, 3);
      checkPaths(member(entries()[i], kBayer, levels % 101, levels), 2, 700, 3);
      if (i < 4) checkPaths(member(entries()[i], kNone, 0, levels), 3, 700, 3);
    }
  for (int i : {4, 5, 8, 9}) checkPaths(member(entries()[i], kBayer, 0, 65536), 4, 700, 3);
}

// 8u ordered dither without noise goes through a table of the call on large
// images (AVX-512 VBMI, 2^17 samples and more): every layout, level counts
// that put level edges in both halves of the table, widths whose rows end
// anywhere in a vector, heights below and above the four row phases.
TEST(ReduceBits, OrderedTableEqualsScalar) {
  ThreadScope threads(1);
  for (int levels : {2, 5, 129, 256})
    for (size_t i = 0; i < 4; ++i) {
      checkPaths(member(entries()[i], kBayer, 0, levels), 2, 20000 + 997 * levels, 40);
    }
  // Fewer rows than row phases.
  std::mt19937 rng(3);
  for (int h = 1; h <= 3; ++h) {
    const int w = 50000 + 61 * h;
    std::vector<Kel8u> src(size_t(w) * h * 3);
    for (auto& v : src) v = Kel8u(rng());
    std::vector<Kel8u> want;
    {
      IsaScope scalar(kel::Isa::Scalar);
      want = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C3R, src, w, h, 3, kBayer, 6);
    }
    EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C3R, src, w, h, 3, kBayer, 6)), want) << h;
  }
}

// The check list in its order; a method above 4 returns at once, reading nothing.
TEST(ReduceBits, CheckOrder) {
  Kel8u src[16] = {}, dst[16];
  std::memset(dst, 9, sizeof dst);
  const KeliSize roi{4, 1};
  const struct {
    const Kel8u* s;
    KeliSize r;
    int noise;
    int t;
    int levels;
    KelStatus want;
  } cases[] = {
      {nullptr, roi, 101, 0, 1, kelStatusNullPointer}, {src, {0, 1}, 101, 0, 1, kelStatusBadSize},
      {src, roi, 101, 0, 1, kelStatusBadNoise},        {src, roi, -1, 9, 1, kelStatusBadNoise},
      {src, roi, 100, 9, 1, kelStatusBadLevels},       {src, roi, 0, 9, 257, kelStatusBadLevels},
      {src, roi, 0, 0, 65536, kelStatusBadLevels},     {src, roi, 0, 5, 2, kelStatusOk},
      {src, roi, 0, -1, 2, kelStatusOk},               {reinterpret_cast<const Kel8u*>(64), roi, 0, 5, 2, kelStatusOk},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(keliReduceBits_8u_C1R(c.s, 4, dst, 4, c.r, c.noise, KelDitherType(c.t), c.levels), c.want);
    for (Kel8u v : dst) EXPECT_EQ(v, 9);
  }
  // 65536 levels: only 16u and 16s take them.
  Kel16u s16[4] = {0, 1, 65534, 65535}, d16[4];
  EXPECT_EQ(keliReduceBits_16u_C1R(s16, 8, d16, 8, roi, 0, kNone, 65536), kelStatusOk);
  EXPECT_EQ(std::vector<Kel16u>(d16, d16 + 4), std::vector<Kel16u>(s16, s16 + 4));
  EXPECT_EQ(keliReduceBits_16s_C1R(reinterpret_cast<Kel16s*>(s16), 8, reinterpret_cast<Kel16s*>(d16), 8, roi, 0,
                                   kBayer, 65536), kelStatusOk);
  EXPECT_EQ(keliReduceBits_32f16u_C1R(reinterpret_cast<Kel32f*>(s16), 8, d16, 8, {2, 1}, 0, kNone, 257),
            kelStatusBadLevels);
  EXPECT_EQ(keliReduceBits_16u8u_C1R(s16, 8, dst, 8, roi, 0, kNone, 65536), kelStatusBadLevels);
}

// ---- nearest level ---------------------------------------------------------------
TEST(ReduceBits, NearestLevelValues) {
  std::vector<Kel8u> ramp(256);
  for (int i = 0; i < 256; ++i) ramp[i] = Kel8u(i);
  // levels 5: the products q * 255 are truncated; ties stay on the lower level
  // (31.875 lies exactly half way: 32 is above it).
  const auto d5 = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, ramp, 256, 1, 1, kNone, 5);
  const struct {
    int v, out;
  } five[] = {{0, 0}, {31, 0}, {32, 63}, {63, 63}, {95, 63}, {96, 127}, {127, 127}, {160, 191}, {223, 191},
              {224, 255}, {255, 255}};
  for (auto c : five) EXPECT_EQ(d5[c.v], c.out) << c.v;
  const auto d2 = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, ramp, 256, 1, 1, kNone, 2);
  const auto d16 = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, ramp, 256, 1, 1, kNone, 16);
  const auto d256 = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, ramp, 256, 1, 1, kNone, 256);
  for (int v = 0; v < 256; ++v) {
    EXPECT_EQ(d2[v], v < 128 ? 0 : 255) << v;
    EXPECT_EQ(d16[v] % 17, 0) << v;
    EXPECT_LE(std::abs(d16[v] - v), 8) << v;
    EXPECT_EQ(d256[v], v);
  }
  // 16s: the lifted scale and the offset store (-1 lies just below the
  // middle, 0 just above it); 16u8u scales by 255.
  const std::vector<Kel16s> s16 = {-32768, -1, 0, 32767};
  EXPECT_EQ((reduce<Kel16s, Kel16s>(keliReduceBits_16s_C1R, s16, 4, 1, 1, kNone, 2)),
            (std::vector<Kel16s>{-32768, -32768, 32767, 32767}));
  EXPECT_EQ((reduce<Kel16u, Kel8u>(keliReduceBits_16u8u_C1R, {0, 32767, 32768, 65535}, 4, 1, 1, kNone, 2)),
            (std::vector<Kel8u>{0, 0, 255, 255}));
  EXPECT_EQ((reduce<Kel32f, Kel16u>(keliReduceBits_32f16u_C1R, {0.0f, 0.5f, 0.5001f, 1.0f}, 4, 1, 1, kNone, 3)),
            (std::vector<Kel16u>{0, 32767, 32767, 65535}));
  // AC4: the fourth sample is neither read nor written; C4 quantises it.
  const std::vector<Kel8u> px = {200, 100, 50, 200};
  for (KelDitherType t : {kNone, kFs, kJjn}) {
    EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_AC4R, px, 1, 1, 4, t, 2)), (std::vector<Kel8u>{255, 0, 0, 7}));
    EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C4R, px, 1, 1, 4, t, 2)), (std::vector<Kel8u>{255, 0, 0, 255}));
  }
  // The ordered threshold at the region's first pixel is 0: every sample above a level goes up.
  EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_AC4R, px, 1, 1, 4, kBayer, 2)), (std::vector<Kel8u>{255, 255, 255, 7}));
  EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C4R, px, 1, 1, 4, kBayer, 2)), (std::vector<Kel8u>{255, 255, 255, 255}));
}

// 8u nearest level from 4096 samples on goes through a table of the 256
// outputs; rows of fewer samples compute. Every byte value at every level
// count: the whole image (table) against its rows one call each (computed).
TEST(ReduceBits, NearestTableEqualsComputed) {
  const int w = 256, h = 20;  // 5120 samples; a row has 256
  std::vector<Kel8u> src(size_t(w) * h);
  for (size_t i = 0; i < src.size(); ++i) src[i] = Kel8u(i * 7 + i / w);
  for (int levels = 2; levels <= 256; ++levels) {
    const auto whole = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, src, w, h, 1, kNone, levels);
    for (int y = 0; y < h; ++y) {
      const std::vector<Kel8u> row(src.begin() + size_t(y) * w, src.begin() + size_t(y + 1) * w);
      const auto one = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, row, w, 1, 1, kNone, levels);
      ASSERT_TRUE(std::equal(one.begin(), one.end(), whole.begin() + size_t(y) * w)) << levels << " levels, row " << y;
    }
  }
}

// ---- ordered dithering ---------------------------------------------------------------
TEST(ReduceBits, OrderedLevels2FollowsTheMatrix) {
  static const int k[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
  for (int v = 0; v < 256; ++v) {
    const std::vector<Kel8u> flat(8 * 8, Kel8u(v));
    const auto d = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, flat, 8, 8, 1, kBayer, 2);
    for (int y = 0; y < 8; ++y)
      for (int x = 0; x < 8; ++x) {
        const float thr = 255.0f * (float(k[y & 3][x & 3]) / 15.0f);
        const int want = v == 255 ? 255 : (thr < float(v) ? 255 : 0);
        ASSERT_EQ(d[8 * y + x], want) << v << " at " << x << "," << y;
      }
  }
  // levels 8: the top level is 254.99998, cut to 254, except where the
  // threshold is 0.0 and the step up saturates to 255.
  const auto d8 = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, std::vector<Kel8u>(16, 255), 4, 4, 1, kBayer, 8);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(d8[i], i == 0 ? 255 : 254) << i;
}

// The pattern is anchored at the region: a region inside a larger image, and
// narrow widths, give the pixels of the same columns of a separate image.
TEST(ReduceBits, OrderedAnchoredAtTheRegion) {
  std::mt19937 rng(5);
  for (int px : {1, 3, 4}) {
    const Fn<Kel8u, Kel8u> f =
        px == 1 ? keliReduceBits_8u_C1R : (px == 3 ? keliReduceBits_8u_C3R : keliReduceBits_8u_C4R);
    const int W = 40, H = 9;
    std::vector<Kel8u> big(W * H * px);
    for (auto& v : big) v = Kel8u(rng());
    for (int noise : {0, 70}) {
      for (int w : {1, 2, 3, 5, 9, 33}) {
        const int x0 = 3, y0 = 2, h = 5;
        std::vector<Kel8u> sub(w * h * px), got(W * H * px, 0);
        for (int y = 0; y < h; ++y)
          std::memcpy(&sub[y * w * px], &big[((y + y0) * W + x0) * px], w * px);
        const auto want = reduce<Kel8u, Kel8u>(f, sub, w, h, px, kBayer, 6, noise);
        ASSERT_EQ(f(&big[(y0 * W + x0) * px], W * px, &got[(y0 * W + x0) * px], W * px, {w, h}, noise, kBayer, 6),
                  kelStatusOk);
        for (int y = 0; y < h; ++y)
          for (int i = 0; i < w * px; ++i)
            ASSERT_EQ(got[((y + y0) * W + x0) * px + i], want[y * w * px + i]) << px << " " << w << " " << noise;
      }
    }
  }
}

// The noise of a pixel: tabF[(tabI[x & 1023] + 2y + x) & 1023] from the
// uniform source with seed 0, added to the matrix entry before the product.
TEST(ReduceBits, OrderedNoiseFromTheTables) {
  const int noise = 80, w = 1100, h = 3;
  KelRandUniformState* g = nullptr;
  std::vector<Kel16s> tabI(1024);
  std::vector<Kel32f> tabF(1024);
  ASSERT_EQ(kelsRandUniformInitAlloc_16s(&g, 0, 1024, 0), kelStatusOk);
  kelsRandUniform_16s(tabI.data(), 1024, g);
  kelsRandUniformFree_16s(g);
  ASSERT_EQ(kelsRandUniformInitAlloc_32f(&g, float(-noise) / 100.0f, float(noise) / 100.0f, 0), kelStatusOk);
  kelsRandUniform_32f(tabF.data(), 1024, g);
  kelsRandUniformFree_32f(g);
  std::vector<Kel8u> src(w * h);
  std::mt19937 rng(3);
  for (auto& v : src) v = Kel8u(rng());
  const auto d = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, src, w, h, 1, kBayer, 2, noise);
  static const int k[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const float n = tabF[(uint16_t(tabI[x & 1023]) + 2 * y + x) & 1023];
      const float thr = (n + float(k[y & 3][x & 3]) / 15.0f) * 255.0f;
      const float v = src[y * w + x];
      ASSERT_EQ(d[y * w + x], (thr < v || v == 255) ? 255 : 0) << x << "," << y;
    }
  // The same output again, and with other team sizes.
  for (int t = 1; t <= 4; ++t) {
    ThreadScope threads(t);
    EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, src, w, h, 1, kBayer, 2, noise)), d);
  }
}

// ---- error diffusion -----------------------------------------------------------------------
// Worked by hand from the weights, levels 2 on 8u (step 255, threshold 127.5).
TEST(ReduceBits, DiffusionByHand) {
  // Floyd-Steinberg 2x2 of 100: (1,0) gets 7*100/16 = 43.75 -> 143.75 -> 255
  // (error -111.25); (0,1) gets (3*-111.25 + 5*100)/16 = 10.39 -> 0; (1,1)
  // gets (100 + 5*-111.25 + 7*110.39)/16 = 19.78 -> 0.
  EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, {100, 100, 100, 100}, 2, 2, 1, kFs, 2)),
            (std::vector<Kel8u>{0, 255, 0, 0}));
  // One row of three 100s: Jarvis-Judice-Ninke adds 7*100/48 then
  // (5*100 + 7*114.58)/48 = 27.1 (stays 0); Stucki adds 8*100/42 then
  // (4*100 + 8*119.05)/42 = 32.2, which crosses the threshold.
  EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, {100, 100, 100}, 3, 1, 1, kJjn, 2)),
            (std::vector<Kel8u>{0, 0, 0}));
  EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, {100, 100, 100}, 3, 1, 1, kStucki, 2)),
            (std::vector<Kel8u>{0, 0, 255}));
  // Jarvis second row, column 0: (7*100 + 5*114.58 + 3*127.13)/48 = 34.46
  // and the first-row errors 100, 114.58, 127.13 -> 134.46 -> 255.
  const auto j2 = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, {100, 100, 100, 100, 100, 100}, 3, 2, 1, kJjn, 2);
  EXPECT_EQ(j2[3], 255);
  // Flat on a level, white and black keep their values without error.
  for (KelDitherType t : {kFs, kJjn, kStucki}) {
    EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, std::vector<Kel8u>(35, 34), 7, 5, 1, t, 16)),
              std::vector<Kel8u>(35, 34));
    EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, std::vector<Kel8u>(35, 255), 7, 5, 1, t, 3, 100)),
              std::vector<Kel8u>(35, 255));
    EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, std::vector<Kel8u>(35, 0), 7, 5, 1, t, 3)),
              std::vector<Kel8u>(35, 0));
    EXPECT_EQ((reduce<Kel16s, Kel16s>(keliReduceBits_16s_C1R, std::vector<Kel16s>(6, 32767), 3, 2, 1, t, 3)),
              std::vector<Kel16s>(6, 32767));
  }
  // A 1x1 image: the nearest level by quant (ties stay low: 127.5 is no tie
  // for integers, 127 goes down, 128 up).
  for (KelDitherType t : {kFs, kJjn, kStucki}) {
    EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, {127}, 1, 1, 1, t, 2)), std::vector<Kel8u>{0});
    EXPECT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, {128}, 1, 1, 1, t, 2)), std::vector<Kel8u>{255});
  }
}

// A worker's channels run one after the other with its error rows going on,
// so without noise a worker with channels a, b gives channel b what a C1
// call gives the lower half of the image of channel a stacked over b.
TEST(ReduceBits, DiffusionChannelSplitByTeamSize) {
  const int w = 13, h = 7;
  std::mt19937 rng(11);
  for (int px : {3, 4})
    for (KelDitherType t : {kFs, kJjn, kStucki}) {
      const int n = px == 3 ? 3 : 4;
      std::vector<Kel8u> src(w * h * px);
      for (auto& v : src) v = Kel8u(rng());
      auto plane = [&](int c) {
        std::vector<Kel8u> p(w * h);
        for (int i = 0; i < w * h; ++i) p[i] = src[i * px + c];
        return p;
      };
      for (int team = 1; team <= 4; ++team) {
        ThreadScope threads(team);
        const auto d = reduce<Kel8u, Kel8u>(px == 3 ? keliReduceBits_8u_C3R : keliReduceBits_8u_C4R, src, w, h, px,
                                            t, 3);
        // The split of the frame: first workers take one channel more.
        const int W = std::min(team, n);
        std::vector<Kel8u> stack;
        for (int wk = 0, c = 0; wk < W; ++wk) {
          const int count = n / W + (wk < n % W ? 1 : 0);
          stack.clear();
          for (int k = 0; k < count; ++k) {
            const auto p = plane(c + k);
            stack.insert(stack.end(), p.begin(), p.end());
          }
          const auto want = reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, stack, w, h * count, 1, t, 3);
          for (int k = 0; k < count; ++k)
            for (int i = 0; i < w * h; ++i)
              ASSERT_EQ(d[i * px + c + k], want[k * w * h + i]) << "team " << team << " channel " << c + k;
          c += count;
        }
      }
    }
}

// With as many workers as channels, each channel equals a C1 call on it, also
// with noise (whose rows count from 0 in each channel); C1 and a runtime that
// refuses the team give the results of one thread.
TEST(ReduceBits, DiffusionThreads) {
  const int w = 21, h = 6;
  std::mt19937 rng(17);
  std::vector<Kel16u> src(w * h * 3);
  for (auto& v : src) v = Kel16u(rng());
  for (KelDitherType t : {kFs, kStucki})
    for (int noise : {0, 55}) {
      std::vector<Kel16u> d3;
      {
        ThreadScope threads(3);
        d3 = reduce<Kel16u, Kel16u>(keliReduceBits_16u_C3R, src, w, h, 3, t, 200, noise);
      }
      for (int c = 0; c < 3; ++c) {
        std::vector<Kel16u> p(w * h);
        for (int i = 0; i < w * h; ++i) p[i] = src[3 * i + c];
        const auto one = reduce<Kel16u, Kel16u>(keliReduceBits_16u_C1R, p, w, h, 1, t, 200, noise);
        for (int i = 0; i < w * h; ++i) ASSERT_EQ(d3[3 * i + c], one[i]) << c;
      }
      std::vector<Kel16u> d1;
      {
        ThreadScope threads(1);
        d1 = reduce<Kel16u, Kel16u>(keliReduceBits_16u_C3R, src, w, h, 3, t, 200, noise);
      }
      // Nested inside a region with nesting off, the team query gets one thread.
      ThreadScope threads(4);
      const int levels = omp_get_max_active_levels();
      omp_set_max_active_levels(1);
      std::vector<Kel16u> dn;
#pragma omp parallel num_threads(2)
      {
#pragma omp single
        dn = reduce<Kel16u, Kel16u>(keliReduceBits_16u_C3R, src, w, h, 3, t, 200, noise);
      }
      omp_set_max_active_levels(levels);
      EXPECT_EQ(dn, d1);
    }
  // C1 diffusion never depends on the team; ordered dithering in no layout.
  for (int pair : {0, 4, 5})
    for (KelDitherType t : {kFs, kJjn}) checkThreads(member(entries()[4 * pair], t, pair == 4 ? 30 : 0, 4), {{1, 1}, {333, 7}});
  for (int i : {0, 1, 4 * 2 + 2, 4 * 7 + 3})
    checkThreads(member(entries()[i], kBayer, i & 1 ? 20 : 0, 11), {{5, 3}, {97, 41}});
}

// Steps in samples lose a byte step's remainder; the plain path and the
// four-channel ordered path keep it.
TEST(ReduceBits, StepsInSamplesAndBytes) {
  std::vector<Kel16u> buf(32, 0);
  for (int i = 0; i < 32; ++i) buf[i] = Kel16u(i * 2000);
  const int oddStep = 4 * 2 * 2 + 1;  // two C4 pixels of 16u and one byte more
  auto rowOf = [&](int bytes) {
    std::vector<Kel16u> r(8);
    std::memcpy(r.data(), reinterpret_cast<const uint8_t*>(buf.data()) + bytes, 16);
    return r;
  };
  // 65536 levels reproduce the source in the dithered methods (step 1, no
  // error); the nearest level is row by row, so a one-row call tells it.
  for (auto [t, keeps] : {std::pair{kNone, true}, {kBayer, true}, {kFs, false}}) {
    std::vector<Kel16u> dst(16, 1);
    ASSERT_EQ(keliReduceBits_16u_C4R(buf.data(), oddStep, dst.data(), 16, {2, 2}, 0, t, 65536), kelStatusOk);
    auto expect = keeps ? rowOf(oddStep) : rowOf(oddStep - 1);
    if (t == kNone) expect = reduce<Kel16u, Kel16u>(keliReduceBits_16u_C4R, expect, 2, 1, 4, kNone, 65536);
    EXPECT_EQ(std::vector<Kel16u>(dst.begin() + 8, dst.begin() + 16), expect) << t;
  }
}

// Every allocation, made to fail in turn: no memory, nothing written,
// nothing left allocated; then the call succeeds.
TEST(ReduceBits, AllocationFailures) {
  std::vector<Kel32f> src(9 * 4 * 4);
  std::mt19937 rng(2);
  for (auto& v : src) v = float(rng() % 1000) / 1000.0f;
  const struct {
    KelDitherType t;
    int noise;
  } cases[] = {{kBayer, 10}, {kFs, 0}, {kFs, 30}, {kJjn, 0}, {kStucki, 90}};
  for (const auto& c : cases)
    for (int px : {1, 4}) {
      const auto f = px == 1 ? keliReduceBits_32f16s_C1R : keliReduceBits_32f16s_AC4R;
      int failures = 0;
      for (long k = 1; k < 20; ++k) {
        std::vector<Kel16s> dst(src.size(), 5);
        const long live = kelcore_test::liveBlocks();
        kelcore_test::failAllocation(k);
        const KelStatus st = f(src.data(), 9 * px * 4, dst.data(), 9 * px * 2, {9, 4 / px + 1}, c.noise, c.t, 50);
        kelcore_test::failAllocation(0);
        EXPECT_EQ(kelcore_test::liveBlocks(), live);
        if (st == kelStatusOk) break;
        ++failures;
        EXPECT_EQ(st, kelStatusNoMemory) << c.t << " allocation " << k;
        EXPECT_EQ(dst, std::vector<Kel16s>(src.size(), 5));
      }
      // Tables and two generators with noise, the error block in diffusion.
      EXPECT_EQ(failures, (c.noise ? 4 : 0) + (c.t == kBayer ? 0 : 1)) << c.t << " " << c.noise;
    }
}

// Rows run several at a time in the library; the row-by-row definition,
// with its two or three turning error rows, gives the same bytes.
namespace {
template <class Dp, bool Noise>
std::vector<typename Dp::D> rowByRow(const std::vector<typename Dp::S>& src, int w, int h, int levels, int noise,
                                     KelDitherType t) {
  using namespace kel::reduce;
  const Scale sc = Dp::scale(float(levels - 1));
  NoiseTables nz;
  if (Noise) {
    EXPECT_EQ(nz.build(float(50 - noise) * sc.step / 100.0f, float(50 + noise) * sc.step / 100.0f), kelStatusOk);
  }
  const DiffuseThresh<Noise> th{sc.step * 0.5f, &nz};
  const int wp = (w + 3) & ~3, len = t == kFs ? w + 2 : wp + 4, m = t == kFs ? 1 : 2;
  std::vector<float> e(3 * len, 0.0f);
  float* r[3] = {&e[m], &e[len + m], &e[2 * len + m]};
  std::vector<typename Dp::D> dst(src.size());
  for (int y = 0; y < h; ++y) {
    if (t == kFs) {
      fsRow<Dp, Dp::kAlt, Noise>(&src[y * w], &dst[y * w], r[0], r[1], w, 1, y, sc, th);
      std::swap(r[0], r[1]);
    } else {
      stJjRow<Dp, Noise>(&src[y * w], &dst[y * w], r[0], r[1], r[2], w, 1, y, t == kStucki ? kel::reduce::kStucki : kJarvis, sc, th);
      std::rotate(r, r + 1, r + 3);
    }
  }
  return dst;
}

template <class Dp>
void checkRowByRow(Fn<typename Dp::S, typename Dp::D> f, bool floatSrc) {
  std::mt19937 rng(21);
  for (int i = 0; i < 60; ++i) {
    const int w = 1 + int(rng() % 37), h = 1 + int(rng() % 11), levels = 2 + int(rng() % 200);
    const int noise = (i & 1) ? int(rng() % 101) : 0;
    const KelDitherType t = i % 3 == 0 ? kFs : (i % 3 == 1 ? kJjn : kStucki);
    std::vector<typename Dp::S> src(w * h);
    for (auto& v : src) v = floatSrc ? typename Dp::S(float(rng() % 1100) / 1000.0f - 0.05f) : typename Dp::S(rng());
    const auto want = noise ? rowByRow<Dp, true>(src, w, h, levels, noise, t) : rowByRow<Dp, false>(src, w, h, levels, 0, t);
    ASSERT_EQ((reduce<typename Dp::S, typename Dp::D>(f, src, w, h, 1, t, levels, noise)), want)
        << w << "x" << h << " levels " << levels << " noise " << noise << " method " << t;
  }
}
}  // namespace

// 8u Floyd-Steinberg runs sixteen rows per vector on AVX-512 processors,
// with and without noise: streams of 16 rows and more, any width (one pixel
// too), samples that saturate at both ends and long dark runs whose errors
// fade to subnormal floats, against the row-by-row definition and through
// the harness.
TEST(ReduceBits, DiffusionSixteenRowsEqualTheDefinition) {
  using namespace kel::reduce;
  std::mt19937 rng(5);
  for (int i = 0; i < 40; ++i) {
    const bool dark = (i & 3) == 3;
    const int w = i < 4 ? 1 + i : (dark ? 200 : 1) + int(rng() % 150), h = 16 + int(rng() % 50);
    const int levels = 2 + int(rng() % 255);
    std::vector<Kel8u> src(size_t(w) * h);
    for (size_t k = 0; k < src.size(); ++k) {
      const unsigned kind = dark && int(k % w) < w - 8 ? 4 : rng() % 4;
      src[k] = kind == 0 ? 0 : (kind == 1 ? 255 : (kind == 4 ? (k % w == 0 ? 200 : 0) : Kel8u(rng())));
    }
    const int noise = i % 3 == 1 ? 1 + int(rng() % 100) : 0;
    ASSERT_EQ((reduce<Kel8u, Kel8u>(keliReduceBits_8u_C1R, src, w, h, 1, kFs, levels, noise)),
              (noise ? rowByRow<D8u, true>(src, w, h, levels, noise, kFs) : rowByRow<D8u, false>(src, w, h, levels, 0, kFs)))
        << w << "x" << h << " levels " << levels << " noise " << noise;
  }
  ThreadScope threads(1);
  for (size_t i = 0; i < 4; ++i)
    for (int noise : {0, 35}) checkPaths(member(entries()[i], kFs, noise, 2 + int(i) * 60), 6, 120, 40);
}

TEST(ReduceBits, DiffusionEqualsTheRowByRowDefinition) {
  using namespace kel::reduce;
  checkRowByRow<D8u>(keliReduceBits_8u_C1R, false);
  checkRowByRow<D16u>(keliReduceBits_16u_C1R, false);
  checkRowByRow<D16s>(keliReduceBits_16s_C1R, false);
  checkRowByRow<D16u8u>(keliReduceBits_16u8u_C1R, false);
  checkRowByRow<D16s8u>(keliReduceBits_16s8u_C1R, false);
  checkRowByRow<D32f8u>(keliReduceBits_32f8u_C1R, true);
  checkRowByRow<D32f16u>(keliReduceBits_32f16u_C1R, true);
  checkRowByRow<D32f16s>(keliReduceBits_32f16s_C1R, true);
}
