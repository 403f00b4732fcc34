// YCbCr and YUV to 16-bit packed RGB, plain and dithered.
#include <array>
#include <cstring>
#include <map>
#include <stdexcept>

#include "harness.h"

using namespace kt;

namespace {

using FnI = KelStatus (*)(const Kel8u*, int, Kel16u*, int, KeliSize);                // interleaved source
using FnP = KelStatus (*)(const Kel8u* const*, int, Kel16u*, int, KeliSize);         // planes, one step
using FnS = KelStatus (*)(const Kel8u* const*, const int*, Kel16u*, int, KeliSize);  // planes, step array

// Source groups; within each, BGR444 BGR555 BGR565 RGB444 RGB555 RGB565, plain then dithered.
enum Grp { gC3, gP3, gC2, g422, g420, gYuv, g411 };
#define KEL_SIX(pre, v, post) pre##BGR444##v##post, pre##BGR555##v##post, pre##BGR565##v##post, \
                              pre##RGB444##v##post, pre##RGB555##v##post, pre##RGB565##v##post
#define KEL_TWELVE(pre, post) KEL_SIX(pre, , post), KEL_SIX(pre, Dither, post)
const FnI kC3[12] = {KEL_TWELVE(keliYCbCrTo, _8u16u_C3R)};
const FnP kP3[12] = {KEL_TWELVE(keliYCbCrTo, _8u16u_P3C3R)};
const FnI kC2[12] = {KEL_TWELVE(keliYCbCr422To, _8u16u_C2C3R)};
const FnS k422[12] = {KEL_TWELVE(keliYCbCr422To, _8u16u_P3C3R)};
const FnS k420[12] = {KEL_TWELVE(keliYCbCr420To, _8u16u_P3C3R)};
const FnS kYuv[12] = {KEL_TWELVE(keliYUV420To, _8u16u_P3C3R)};
const FnS k411[2] = {keliYCbCr411ToBGR555_8u16u_P3C3R, keliYCbCr411ToBGR565_8u16u_P3C3R};
const char* const kFmt[6] = {"BGR444", "BGR555", "BGR565", "RGB444", "RGB555", "RGB565"};

struct Entry {
  std::string name;
  Grp g;
  int fmt;  // index into kFmt
  bool dither;
  FnI fi;
  FnP fp;
  FnS fs;
  // The call with source planes, their steps, the destination and its step.
  KelStatus call(const Kel8u* const* s, const int* ss, Kel16u* d, int ds, KeliSize roi) const {
    if (fi) return fi(s ? s[0] : nullptr, ss[0], d, ds, roi);
    if (fp) return fp(s, ss[0], d, ds, roi);
    return fs(s, ss, d, ds, roi);
  }
  int bits(int field) const { return fmt % 3 == 0 ? 4 : (fmt % 3 == 1 || field != 1 ? 5 : 6); }
};

std::vector<Entry> entries() {
  std::vector<Entry> v;
  struct G {
    Grp g;
    const char *src, *lay;
  } groups[] = {{gC3, "YCbCr", "C3R"},        {gP3, "YCbCr", "P3C3R"},   {gC2, "YCbCr422", "C2C3R"},
                {g422, "YCbCr422", "P3C3R"}, {g420, "YCbCr420", "P3C3R"}, {gYuv, "YUV420", "P3C3R"}};
  for (const G& g : groups)
    for (int i = 0; i < 12; ++i) {
      Entry e{std::string("keli") + g.src + "To" + kFmt[i % 6] + (i >= 6 ? "Dither" : "") + "_8u16u_" + g.lay,
              g.g, i % 6, i >= 6, nullptr, nullptr, nullptr};
      if (g.g == gC3) e.fi = kC3[i];
      if (g.g == gC2) e.fi = kC2[i];
      if (g.g == gP3) e.fp = kP3[i];
      if (g.g == g422) e.fs = k422[i];
      if (g.g == g420) e.fs = k420[i];
      if (g.g == gYuv) e.fs = kYuv[i];
      v.push_back(e);
    }
  for (int i = 0; i < 2; ++i)
    v.push_back({std::string("keliYCbCr411To") + kFmt[1 + i] + "_8u16u_P3C3R", g411, 1 + i, false, nullptr, nullptr,
                 k411[i]});
  return v;
}
const Entry& entry(const std::string& name) {
  static const std::vector<Entry> all = entries();
  for (const Entry& e : all)
    if (e.name == name) return e;
  throw std::runtime_error(name);
}

// Source planes of a group: bytes per row and rows.
std::vector<PlaneDim> srcDims(Grp g, KeliSize r) {
  const int w = r.width, h = r.height, hw = (w + 1) >> 1, hh = (h + 1) >> 1;
  switch (g) {
    case gC3: return {{3 * w, h}};
    case gC2: return {{2 * w, h}};
    case gP3: return {{w, h}, {w, h}, {w, h}};
    case g422: return {{w, h}, {hw, h}, {hw, h}};
    case g411: return {{w, h}, {w >> 2, h}, {w >> 2, h}};
    default: return {{w, h}, {hw, hh}, {hw, hh}};
  }
}

Member member(const Entry& e) {
  Member m{e.name, {}, {full(2)}, nullptr};
  const int planes = e.g == gC3 || e.g == gC2 ? 1 : 3;
  for (int i = 0; i < planes; ++i)
    m.src.push_back([g = e.g, i](KeliSize r) { return srcDims(g, r)[i]; });
  m.call = [e, planes](Call& c) {
    const Kel8u* one = nullptr;
    const Kel8u* const* s = planes == 1 ? (one = c.s(0), &one) : c.sArr(3);
    if (planes == 1 && !one) s = nullptr;
    Kel16u* d = c.dT<Kel16u>(0);
    return e.call(s, c.ssArr(planes), d, c.ds(0), c.roi());
  };
  m.sharedSrcStep = e.g == gP3;
  m.evenDstSteps = e.g != g411;  // the others count their step in words
  if (e.g == g411) {
    m.order = Order::B;
    m.minW = 4;
    m.final = status411;
  }
  return m;
}

// A call on images laid out by the member's geometry: sources from a linear
// congruential sequence (or constant channels), steps padded by `pad` bytes
// (destination by 2 * pad, or pad for 4:1:1), destination rows read back.
struct Shot {
  std::vector<std::vector<Kel8u>> src;
  std::vector<int> steps;
  std::vector<Kel8u> dst;
  int dstStep = 0;
  KelStatus st = 0;
  uint16_t at(int c, int r) const {
    uint16_t w;
    std::memcpy(&w, dst.data() + static_cast<size_t>(dstStep) * r + 2 * c, 2);
    return w;
  }
};
Shot prepare(const Entry& e, KeliSize roi, int pad, uint32_t seed) {
  Shot img;
  uint32_t x = seed;
  const auto dims = srcDims(e.g, roi);
  for (const PlaneDim& d : dims) {
    const int step = (e.g == gP3 ? roi.width : d.rowBytes) + pad;
    img.steps.push_back(step);
    img.src.emplace_back(static_cast<size_t>(step) * std::max(d.rows, 1));
    for (Kel8u& b : img.src.back()) b = static_cast<Kel8u>(((x = (x * 1103515245u + 12345u) & 0x7fffffffu) >> 16) & 255);
  }
  img.dstStep = 2 * roi.width + (e.g == g411 ? pad : 2 * pad);
  img.dst.assign(static_cast<size_t>(img.dstStep) * roi.height + 2, 0xFF);
  return img;
}
void go(const Entry& e, Shot& img, KeliSize roi) {
  std::vector<const Kel8u*> p;
  for (auto& s : img.src) p.push_back(s.data());
  img.st = e.call(p.data(), img.steps.data(), reinterpret_cast<Kel16u*>(img.dst.data()), img.dstStep, roi);
}
// Every pixel (Y, Cb, Cr) the same.
Shot uniform(const Entry& e, KeliSize roi, std::array<int, 3> ycc, int pad = 0) {
  Shot img = prepare(e, roi, pad, 1);
  for (size_t i = 0; i < img.src.size(); ++i)
    for (size_t j = 0; j < img.src[i].size(); ++j) {
      const size_t k = j % img.steps[i];  // byte within its row
      int v = ycc[i];
      if (e.g == gC3) v = ycc[k % 3];
      if (e.g == gC2) v = k % 2 == 0 ? ycc[0] : ycc[1 + (k / 2) % 2];
      img.src[i][j] = static_cast<Kel8u>(v);
    }
  go(e, img, roi);
  return img;
}
// The fields of a word: red, green, blue.
std::array<int, 3> fields(const Entry& e, uint16_t w) {
  const bool bgr = e.fmt < 3;
  const int nr = e.bits(0), ng = e.bits(1), nb = e.bits(2);
  const int lo = w & ((1 << nr) - 1), mid = (w >> nr) & ((1 << ng) - 1), hi = (w >> (nr + ng)) & ((1 << nb) - 1);
  return bgr ? std::array<int, 3>{hi, mid, lo} : std::array<int, 3>{lo, mid, hi};
}

}  // namespace

std::vector<Member> packedMembers() {
  std::vector<Member> ms;
  for (const Entry& e : entries()) ms.push_back(member(e));
  return ms;
}
KT_MEMBERS(packedMembers);

TEST(YccToPacked16, GuardsErrorsAndPaths) {
  const std::vector<Member> ms = packedMembers();
  EXPECT_EQ(ms.size(), 74u);
  checkAll(ms);
}

// Checksums of whole images from an independent model of every member's
// forms, splits, layouts and packers: odd and even sizes, tight steps (the
// contiguous mode of the plain interleaved members), padded steps, one-pixel
// rows and columns, and an odd destination step for the 4:1:1 members.
TEST(YccToPacked16, MatchesTheModelOnWholeImages) {
  struct Config {
    int w, h, pad;
  } configs[] = {{13, 5, 0}, {13, 5, 3}, {16, 3, 0}, {1, 3, 0}, {3, 1, 0}, {6, 2, 1}};
  const std::map<std::string, std::array<uint32_t, 6>> golden = {
#include "test_packed_ycbcr16_golden.inc"
  };
  for (const Entry& e : entries()) {
    const auto& want = golden.at(e.name);
    for (int k = 0; k < 6; ++k) {
      const KeliSize roi{configs[k].w, configs[k].h};
      if (e.g == g411 && roi.width < 4) continue;
      Shot img = prepare(e, roi, configs[k].pad, 7 + k);
      go(e, img, roi);
      uint32_t h = 2166136261u;
      for (int r = 0; r < roi.height; ++r)
        for (int c = 0; c < roi.width; ++c) {
          const uint16_t w = img.at(c, r);
          h = (h ^ (w & 255)) * 16777619u;
          h = (h ^ (w >> 8)) * 16777619u;
        }
      EXPECT_EQ(h, want[k]) << e.name << " " << roi.width << "x" << roi.height << " pad " << configs[k].pad;
    }
  }
}

// Full white and black through every member, at every threshold position.
TEST(YccToPacked16, TellingValuesOfThePackers) {
  for (const Entry& e : entries()) {
    const bool yuv = e.g == gYuv;
    const Shot black = uniform(e, {9, 6}, {yuv ? 0 : 16, 128, 128});
    const Shot white = uniform(e, {9, 6}, {255, 128, 128});
    for (int r = 0; r < 6; ++r)
      for (int c = 0; c < 9; ++c) {
        EXPECT_EQ(black.at(c, r), 0) << e.name;
        std::array<int, 3> want = {(1 << e.bits(0)) - 1, (1 << e.bits(1)) - 1, (1 << e.bits(2)) - 1};
        // 6-bit green: rest 1048 equals the threshold 2097 >> 1 there, and the test is strict.
        if (e.dither && e.bits(1) == 6 && (r & 3) == 3 && (c & 3) == 0) want[1] = 62;
        ASSERT_EQ(fields(e, white.at(c, r)), want) << e.name << " row " << r << " column " << c;
      }
  }
}

// Plain interleaved YCbCr: 8-pixel body per row, pixel tail behind it; a
// contiguous image is one row, so only its last (w * h) & 7 pixels are tail.
TEST(YccToPacked16, BodyAndTailOfTheInterleavedPlainMembers) {
  const Entry& e = entry("keliYCbCrToRGB565_8u16u_C3R");
  // A colour whose body and tail values differ.
  std::array<int, 3> px{};
  uint16_t body = 0, tail = 0;
  for (int i = 0; body == tail; ++i) {
    px = {40 + i * 7 % 200, 30 + i * 13 % 190, 20 + i * 29 % 220};
    body = uniform(e, {8, 1}, px, 5).at(0, 0);
    tail = uniform(e, {1, 1}, px, 5).at(0, 0);
  }
  struct Case {
    int pad, tailPerRow, tailAtEnd;
  } cases[] = {{0, 0, 4}, {2, 2, 0}};  // 10 x 2: tight steps, then a source step of 32
  for (const Case& k : cases) {
    const Shot img = uniform(e, {10, 2}, px, k.pad);
    for (int i = 0; i < 20; ++i) {
      const int r = i / 10, c = i % 10;
      const bool isTail = c >= 10 - k.tailPerRow || i >= 20 - k.tailAtEnd;
      EXPECT_EQ(img.at(c, r), isTail ? tail : body) << "pad " << k.pad << " pixel " << i;
    }
  }
  // BGR444 takes the contiguous path only for an even width.
  const Entry& e444 = entry("keliYCbCrToBGR444_8u16u_C3R");
  std::mt19937 rng(17);
  for (int i = 0; i < 20000; ++i) {
    const std::array<int, 3> p = {int(rng() % 256), int(rng() % 256), int(rng() % 256)};
    const uint16_t b = uniform(e444, {8, 1}, p, 5).at(0, 0), t = uniform(e444, {1, 1}, p, 5).at(0, 0);
    if (b == t) continue;
    const Shot odd = uniform(e444, {9, 2}, p), even = uniform(e444, {10, 2}, p);
    EXPECT_EQ(odd.at(7, 1), b);    // per row: columns 0..7 are body
    EXPECT_EQ(even.at(7, 1), t);   // one row of 20: pixels 16..19 are tail
    EXPECT_EQ(even.at(5, 1), b);
    return;
  }
  FAIL() << "no colour told body from tail";
}

// The last pixel of an odd C2 row: plain takes the Cr of the pair before it
// through the pixel tail (width 1: its Cb through the pair tail); dithered
// takes its own Cb as Cr through the body form.
TEST(YccToPacked16, LastOddPixelOfPairs) {
  const int Y[3] = {90, 160, 220}, Cb = 70, Cr = 190, Cb2 = 200;
  const Kel8u row[6] = {Kel8u(Y[0]), Kel8u(Cb), Kel8u(Y[1]), Kel8u(Cr), Kel8u(Y[2]), Kel8u(Cb2)};
  for (int f = 0; f < 6; ++f) {
    const std::string fmt = kFmt[f];
    uint16_t got[3], ref[3];
    const int step = 1000;  // not tight: no contiguous mode
    ASSERT_EQ(kC2[f](row, step, got, step, {3, 1}), kelStatusOk);
    const Kel8u pix[3] = {Kel8u(Y[2]), Kel8u(Cb2), Kel8u(Cr)};
    entry("keliYCbCrTo" + fmt + "_8u16u_C3R").fi(pix, step, ref, step, {1, 1});
    EXPECT_EQ(got[2], ref[0]) << fmt << " plain";

    ASSERT_EQ(kC2[6 + f](row, step, got, step, {3, 1}), kelStatusOk);
    const Kel8u pix3[9] = {0, 0, 0, 0, 0, 0, Kel8u(Y[2]), Kel8u(Cb2), Kel8u(Cb2)};
    entry("keliYCbCrTo" + fmt + "Dither_8u16u_C3R").fi(pix3, step, ref, step, {3, 1});
    EXPECT_EQ(got[2], ref[2]) << fmt << " dithered";

    // Width 1: a pair of (Y, Cb, Y, Cb) gives the value of the lone pixel.
    const Kel8u one[2] = {Kel8u(Y[0]), Kel8u(Cb)}, pair[4] = {Kel8u(Y[0]), Kel8u(Cb), Kel8u(Y[0]), Kel8u(Cb)};
    kC2[f](one, step, got, step, {1, 1});
    kC2[f](pair, step, ref, step, {2, 1});
    EXPECT_EQ(got[0], ref[0]) << fmt << " width 1";
  }
}

// YUV 4:2:0 plain: a last odd column and a last odd row take the YUV tail;
// images one pixel wide or high are all tail and are converted.
TEST(YccToPacked16, YuvTailOnLastOddColumnAndRow) {
  for (int f = 0; f < 6; ++f) {
    const Entry& e = entry(std::string("keliYUV420To") + kFmt[f] + "_8u16u_P3C3R");
    int found = 0;
    for (int i = 0; i < 200 && !found; ++i) {
      const std::array<int, 3> p = {i * 37 % 256, i * 101 % 256, i * 53 % 256};
      const uint16_t body = uniform(e, {2, 2}, p).at(0, 0), tail = uniform(e, {1, 1}, p).at(0, 0);
      if (body == tail) continue;
      found = 1;
      const Shot img = uniform(e, {5, 3}, p);
      for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 5; ++c) EXPECT_EQ(img.at(c, r), (c == 4 || r == 2) ? tail : body) << e.name;
      for (KeliSize s : {KeliSize{1, 4}, KeliSize{6, 1}}) {
        const Shot one = uniform(e, s, p);
        EXPECT_EQ(one.st, kelStatusOk);
        for (int r = 0; r < s.height; ++r)
          for (int c = 0; c < s.width; ++c) EXPECT_EQ(one.at(c, r), tail) << e.name;
      }
    }
    EXPECT_TRUE(found) << e.name;
  }
}

// 4:1:1 converts every column: width 6 warns, and columns 4 and 5 use the
// chroma of the last whole group.
TEST(YccToPacked16, LastColumnsOf411) {
  for (int f = 0; f < 2; ++f) {
    const Entry& e = entry(std::string("keliYCbCr411To") + kFmt[1 + f] + "_8u16u_P3C3R");
    Shot img = prepare(e, {6, 2}, 0, 3);
    go(e, img, {6, 2});
    EXPECT_EQ(img.st, kelStatusOddSizeTrimmed);
    // Equal luma in columns 4 and 5 and in a width-5 image with the same chroma.
    for (auto& row : {0, 6}) img.src[0][row + 5] = img.src[0][row + 4];
    go(e, img, {6, 2});
    for (int r = 0; r < 2; ++r) {
      EXPECT_EQ(img.at(4, r), img.at(5, r));
      if (f == 0) {
        EXPECT_EQ(img.at(5, r) >> 15, 0) << "column 5 written";
      }
    }
  }
}

// The word-counted members drop the low bit of an odd destination step.
TEST(YccToPacked16, OddDestinationStepLosesItsLowBit) {
  const Entry& e = entry("keliYCbCr420ToRGB565_8u16u_P3C3R");
  Shot even = prepare(e, {37, 4}, 0, 9), odd = even;
  go(e, even, {37, 4});
  odd.dstStep += 1;
  odd.dst.assign(static_cast<size_t>(odd.dstStep) * 4 + 2, 0xFF);
  go(e, odd, {37, 4});
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 37; ++c) {
      uint16_t w;
      std::memcpy(&w, odd.dst.data() + static_cast<size_t>(even.dstStep) * r + 2 * c, 2);
      ASSERT_EQ(w, even.at(c, r)) << r << " " << c;
    }
}
