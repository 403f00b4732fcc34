// Shared pieces of the demosaicing tests: raw images, guarded calls of the
// members (whole-image source with a region, 8u or 16u) and the site table.
#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>
#include <type_traits>
#include <vector>

#include "harness.h"

namespace dm {

template <class T>
struct Raw {
  int W = 0, H = 0;
  std::vector<T> px;
  Raw() = default;
  Raw(int w, int h) : W(w), H(h), px(static_cast<size_t>(w) * h) {}
  T& at(int x, int y) { return px[static_cast<size_t>(y) * W + x]; }
  T at(int x, int y) const { return px[static_cast<size_t>(y) * W + x]; }
  KeliSize size() const { return {W, H}; }
};

template <class T>
Raw<T> randomRaw(int W, int H, uint32_t seed, int maxV) {
  Raw<T> r(W, H);
  std::mt19937 g(seed);
  for (auto& v : r.px) v = static_cast<T>(g() % (maxV + 1));
  return r;
}

// Colour at absolute (x, y): 0 R, 1 G, 2 B; [grid][y & 1][x & 1].
inline int site(int grid, int x, int y) {
  static const int t[4][2][2] = {{{2, 1}, {1, 0}}, {{0, 1}, {1, 2}}, {{1, 2}, {0, 1}}, {{1, 0}, {2, 1}}};
  return t[grid][y & 1][x & 1];
}

// The region a call writes: clipped at the right and bottom, a negative
// origin taken as 0.
inline KeliRect clipped(KeliRect roi, KeliSize s) {
  const int x0 = std::max(roi.x, 0), y0 = std::max(roi.y, 0);
  return {x0, y0, std::min(roi.width, s.width - x0), std::min(roi.height, s.height - y0)};
}

// One call of a member: fn(src at the image origin, srcStep, dst, dstStep,
// tmp, tmpStep) in the sample type's pointers; the source lies in a guarded
// plane with padded (or negative) steps and random bytes round it, the
// destination in a guarded plane. Checks that the source is unchanged,
// nothing outside the region is written, and the work buffer is used only
// within 30 rows of (w + 8) samples. Returns the region's samples.
template <class T>
using Fn = std::function<KelStatus(const T*, int, T*, int, T*, int)>;

template <class T>
std::vector<T> run(const Raw<T>& raw, KeliRect roi, const Fn<T>& fn, uint32_t seed, bool negative = false,
                   kt::PageEdge edge = kt::PageEdge::None) {
  constexpr int B = sizeof(T);
  std::mt19937 g(seed);
  const int pad = B * static_cast<int>(g() % 9);
  const int sRow = raw.W * B + pad;
  kt::Guarded src({raw.W * B, raw.H}, negative ? -sRow : sRow, B * static_cast<int>(g() % 8), g(), edge);
  for (int y = 0; y < raw.H; ++y) std::memcpy(&src.at(0, y), &raw.px[static_cast<size_t>(y) * raw.W], raw.W * B);
  src.snapshot();
  const KeliRect c = clipped(roi, raw.size());
  const int w = std::max(c.width, 0), h = std::max(c.height, 0);
  const int dRow = 3 * w * B + B * static_cast<int>(g() % 5);
  kt::Guarded dst({3 * w * B, h}, negative ? -dRow : dRow, B * static_cast<int>(g() % 8), g(), edge);
  dst.snapshot();
  // Work buffer: exactly what the header's sizing gives, a guard behind it,
  // random bytes in it.
  const int tmpStep = KELCC_AHD_TMP_STEP(std::max(w, 1), B);
  std::vector<uint8_t> tmp(static_cast<size_t>(KELCC_AHD_TMP_ROWS) * tmpStep + 64);
  for (auto& b : tmp) b = static_cast<uint8_t>(g());
  const std::vector<uint8_t> tail(tmp.end() - 64, tmp.end());
  const KelStatus st = fn(reinterpret_cast<const T*>(src.ptr()), src.step(), reinterpret_cast<T*>(dst.ptr()),
                          dst.step(), reinterpret_cast<T*>(tmp.data()), tmpStep);
  EXPECT_EQ(st, kelStatusOk);
  EXPECT_TRUE(src.allIntact()) << "source changed";
  EXPECT_TRUE(dst.outsideIntact());
  EXPECT_TRUE(std::equal(tail.begin(), tail.end(), tmp.end() - 64)) << "write behind the work buffer";
  std::vector<T> out(static_cast<size_t>(3) * w * h);
  const std::vector<uint8_t> bytes = dst.region();
  if (!out.empty()) std::memcpy(out.data(), bytes.data(), bytes.size());
  return out;
}

// The source and the destination against an inaccessible page at their
// start, then at their end: a read outside the image or a write outside the
// region faults. Small images, every grid, the whole image and random
// regions; each result equals the same place of a whole-image call.
template <class T>
void checkPageEdges(int minSide, int maxV, const std::function<Fn<T>(KeliRect, KeliSize, int)>& member) {
  std::mt19937 g(21);
  for (int W = minSide; W <= minSide + 5; ++W)
    for (int H = minSide; H <= minSide + 4; ++H)
      for (int grid = 0; grid < 4; ++grid) {
        Raw<T> raw(W, H);
        for (auto& v : raw.px) v = static_cast<T>(g() % (maxV + 1));
        const KeliRect all{0, 0, W, H};
        const std::vector<T> whole = run<T>(raw, all, member(all, raw.size(), grid), g());
        for (kt::PageEdge e : {kt::PageEdge::Start, kt::PageEdge::End})
          for (int k = 0; k < 3; ++k) {
            const KeliRect r = k == 0 ? all : KeliRect{int(g() % W), int(g() % H), 1 + int(g() % W), 1 + int(g() % H)};
            const KeliRect c = {r.x, r.y, std::min(r.width, W - r.x), std::min(r.height, H - r.y)};
            std::vector<T> want;
            for (int y = c.y; y < c.y + c.height; ++y)
              for (int x = c.x; x < c.x + c.width; ++x)
                for (int ch = 0; ch < 3; ++ch) want.push_back(whole[(static_cast<size_t>(y) * W + x) * 3 + ch]);
            ASSERT_EQ(run<T>(raw, r, member(r, raw.size(), grid), g(), false, e), want) << W << "x" << H;
          }
      }
}

// The samples of region (x, y, w, h) of a whole-image result.
template <class T>
std::vector<T> crop(const std::vector<T>& whole, int W, KeliRect r) {
  std::vector<T> out;
  for (int y = r.y; y < r.y + r.height; ++y)
    for (int x = r.x; x < r.x + r.width; ++x)
      for (int k = 0; k < 3; ++k) out.push_back(whole[(static_cast<size_t>(y) * W + x) * 3 + k]);
  return out;
}

// Order G for a member with minimum side `m`: pointers, size, then grid;
// with faults together the first decides, and nothing is written. call(src
// null, dst null, size, grid, dst) runs the member on a zeroed source and a
// destination buffer of 1024 bytes.
// The grid goes in as an int, as a C caller may pass it (out-of-range values
// included); made here without reading it as the enum type.
using ErrCall = std::function<KelStatus(bool, bool, KeliSize, int, uint8_t*)>;
#if defined(__clang__)
__attribute__((no_sanitize("enum")))
#endif
inline KelBayerGrid gridArg(int g) {
  KelBayerGrid v;
  std::memcpy(&v, &g, sizeof v);
  return v;
}
inline void checkOrderG(int m, const ErrCall& call) {
  const int bad = 4, neg = -1, bg = kelBayerBGGR, rg = kelBayerRGGB;
  struct Case {
    bool nullSrc, nullDst;
    KeliSize size;
    int grid;
    KelStatus want;
  } cases[] = {
      {true, false, {m, m}, rg, kelStatusNullPointer},   {false, true, {m - 1, m}, bad, kelStatusNullPointer},
      {false, false, {m - 1, m}, bad, kelStatusBadSize}, {false, false, {m, m - 1}, bg, kelStatusBadSize},
      {false, false, {m, m}, bad, kelStatusBadArgument},         {false, false, {2 * m, 2 * m}, neg, kelStatusBadArgument},
  };
  std::vector<uint8_t> d(1024, 0x5A);
  for (const Case& c : cases) EXPECT_EQ(call(c.nullSrc, c.nullDst, c.size, c.grid, d.data()), c.want);
  for (uint8_t b : d) ASSERT_EQ(b, 0x5A);
}

// The members in the harness's terms, with the whole image as the region:
// random sizes, offsets and steps, every vector path, inaccessible pages and
// many callers at once come from the generic checks. AHD members get a work
// buffer of their own per call.
template <class T>
kt::Member cfaMember(const char* name,
                     KelStatus (*f)(const T*, KeliRect, KeliSize, int, T*, int, KelBayerGrid), int grid) {
  kt::Member m{name, {kt::full(sizeof(T))}, {kt::full(3 * sizeof(T))}, [f, grid](kt::Call& c) {
                 const KeliSize s = c.roi();
                 return f(c.sT<T>(0), {0, 0, s.width, s.height}, s, c.ss(0), c.dT<T>(0), c.ds(0),
                          static_cast<KelBayerGrid>(grid));
               }};
  m.minW = m.minH = 2;
  m.sampleBytes = sizeof(T);
  return m;
}
template <class T>
kt::Member ahdMember(const char* name,
                     KelStatus (*f)(const T*, KeliRect, KeliSize, int, T*, int, KelBayerGrid, T*, int), int grid) {
  kt::Member m{name, {kt::full(sizeof(T))}, {kt::full(3 * sizeof(T))}, [f, grid](kt::Call& c) {
                 const KeliSize s = c.roi();
                 const int step = KELCC_AHD_TMP_STEP(std::max(s.width, 1), static_cast<int>(sizeof(T)));
                 std::vector<T> tmp(static_cast<size_t>(KELCC_AHD_TMP_ROWS) * step / sizeof(T));
                 return f(c.sT<T>(0), {0, 0, s.width, s.height}, s, c.ss(0), c.dT<T>(0), c.ds(0),
                          static_cast<KelBayerGrid>(grid), tmp.data(), step);
               }};
  m.minW = m.minH = 5;
  m.sampleBytes = sizeof(T);
  return m;
}

}  // namespace dm
