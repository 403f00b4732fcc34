// RGB565 pack and unpack.
#include <array>

#include "harness.h"

using namespace kt;

namespace {

using Unpack = KelStatus (*)(const Kel16u*, int, Kel8u*, int, KeliSize);
using Pack = KelStatus (*)(const Kel8u*, int, Kel16u*, int, KeliSize);

const struct {
  const char* name;
  Unpack f;
} kUnpack[] = {{"keliBGR565ToBGR_16u8u_C3R", keliBGR565ToBGR_16u8u_C3R},
               {"keliRGB565ToRGB_16u8u_C3R", keliRGB565ToRGB_16u8u_C3R}};
const struct {
  const char* name;
  Pack f;
} kPack[] = {{"keliBGRToBGR565_8u16u_C3R", keliBGRToBGR565_8u16u_C3R},
             {"keliRGBToRGB565_8u16u_C3R", keliRGBToRGB565_8u16u_C3R}};

std::vector<Member> members() {
  std::vector<Member> v;
  for (auto& u : kUnpack) {
    Member m{u.name, {full(2)}, {full(3)}, [f = u.f](Call& c) {
               return f(c.sT<Kel16u>(0), c.ss(0), c.d(0), c.ds(0), c.roi());
             }};
    m.order = Order::C;
    m.checksSteps = m.evenSrcSteps = true;
    v.push_back(m);
  }
  for (auto& p : kPack) {
    Member m{p.name, {full(3)}, {full(2)}, [f = p.f](Call& c) {
               return f(c.s(0), c.ss(0), c.dT<Kel16u>(0), c.ds(0), c.roi());
             }};
    m.order = Order::C;
    m.checksSteps = m.evenDstSteps = true;
    v.push_back(m);
  }
  return v;
}

// One row through the members, on every vector path.
std::vector<Kel8u> unpackRow(Unpack f, const std::vector<Kel16u>& w) {
  std::vector<Kel8u> d(3 * w.size() + 1, 0xEE);
  EXPECT_EQ(f(w.data(), 1 << 20, d.data(), 1 << 20, {int(w.size()), 1}), kelStatusOk);
  EXPECT_EQ(d.back(), 0xEE) << "write behind the row";
  d.pop_back();
  return d;
}
std::vector<Kel16u> packRow(Pack f, const std::vector<Kel8u>& b) {
  std::vector<Kel16u> d(b.size() / 3 + 1, 0xEEEE);
  EXPECT_EQ(f(b.data(), 1 << 20, d.data(), 1 << 20, {int(b.size() / 3), 1}), kelStatusOk);
  EXPECT_EQ(d.back(), 0xEEEE) << "write behind the row";
  d.pop_back();
  return d;
}

}  // namespace

KT_MEMBERS(members);
TEST(Rgb565, GuardsErrorsAndPaths) { checkAll(members()); }

// Bands by thread number: below 192 in either dimension the caller's thread
// does all rows, from 192 by 192 the rows are split; the bytes are the same.
TEST(Rgb565, ThreadCountsGiveTheSameBytes) {
  for (const Member& m : members())
    checkThreads(m, {{191, 300}, {300, 191}, {192, 192}, {200, 193}, {257, 203}});
}

// Each field lands in its bits, unshifted bits are zero, and no rounding.
TEST(Rgb565, FieldPlaces) {
  struct Case {
    std::array<int, 3> bytes;
    Kel16u word;
  } cases[] = {
      {{255, 255, 255}, 0xFFFF}, {{248, 0, 0}, 0x001F}, {{0, 252, 0}, 0x07E0}, {{0, 0, 248}, 0xF800},
      {{7, 3, 7}, 0x0000},       {{8, 4, 8}, 0x0821},   {{15, 7, 15}, 0x0821}, {{128, 128, 128}, 0x8410},
  };
  for (const Case& c : cases)
    for (auto& p : kPack) {
      const std::vector<Kel8u> px(c.bytes.begin(), c.bytes.end());
      EXPECT_EQ(packRow(p.f, px)[0], c.word) << p.name;
    }
  for (auto& u : kUnpack) {
    EXPECT_EQ(unpackRow(u.f, {0xFFFF}), (std::vector<Kel8u>{248, 252, 248})) << u.name;
    EXPECT_EQ(unpackRow(u.f, {0x0821}), (std::vector<Kel8u>{8, 4, 8})) << u.name;
    EXPECT_EQ(unpackRow(u.f, {0x8000}), (std::vector<Kel8u>{0, 0, 128})) << u.name;
  }
}

// Unpack then pack gives every word back; pack then unpack drops the low
// bits. Widths around the body blocks (8 and 16 pixels) and on every path.
TEST(Rgb565, RoundTripsAtEveryWidth) {
  for (kel::Isa isa : paths()) {
    IsaScope scope(isa);
    for (int w : {1, 7, 8, 9, 15, 16, 17, 23, 24, 31, 32, 33, 47, 48, 63, 64, 65, 4096}) {
      std::vector<Kel16u> words(w);
      std::vector<Kel8u> bytes(3 * w);
      for (int x = 0; x < w; ++x) words[x] = static_cast<Kel16u>(x * 40503u + 12345u);
      for (int i = 0; i < 3 * w; ++i) bytes[i] = static_cast<Kel8u>(i * 97 + 31);
      for (int k = 0; k < 2; ++k) {
        ASSERT_EQ(packRow(kPack[k].f, unpackRow(kUnpack[k].f, words)), words) << w;
        const std::vector<Kel8u> back = unpackRow(kUnpack[k].f, packRow(kPack[k].f, bytes));
        for (int i = 0; i < 3 * w; ++i) ASSERT_EQ(back[i], bytes[i] & (i % 3 == 1 ? 252 : 248)) << w << " " << i;
      }
    }
  }
}

// The word image's step counts in whole words: an odd step acts as the even
// step below it, and a step of 1 makes every row the same words.
TEST(Rgb565, WordStepsDropTheirLowBit) {
  const int w = 21, h = 4;
  std::vector<Kel8u> rgb(3 * w * h);
  for (size_t i = 0; i < rgb.size(); ++i) rgb[i] = static_cast<Kel8u>(i * 13 + 7);
  std::vector<Kel16u> even(w * h), odd(w * h), one(w, 0);
  ASSERT_EQ(keliRGBToRGB565_8u16u_C3R(rgb.data(), 3 * w, even.data(), 2 * w, {w, h}), kelStatusOk);
  ASSERT_EQ(keliRGBToRGB565_8u16u_C3R(rgb.data(), 3 * w, odd.data(), 2 * w + 1, {w, h}), kelStatusOk);
  EXPECT_EQ(even, odd);
  ASSERT_EQ(keliRGBToRGB565_8u16u_C3R(rgb.data(), 3 * w, one.data(), 1, {w, h}), kelStatusOk);
  EXPECT_TRUE(std::equal(one.begin(), one.end(), even.begin() + (h - 1) * w)) << "the last row wins";

  std::vector<Kel8u> a(3 * w * h), b(3 * w * h);
  ASSERT_EQ(keliRGB565ToRGB_16u8u_C3R(even.data(), 1, a.data(), 3 * w, {w, h}), kelStatusOk);
  for (int y = 1; y < h; ++y) EXPECT_TRUE(std::equal(a.begin(), a.begin() + 3 * w, a.begin() + 3 * w * y));
  ASSERT_EQ(keliRGB565ToRGB_16u8u_C3R(even.data(), 2 * w + 1, b.data(), 3 * w, {w, h}), kelStatusOk);
  ASSERT_EQ(keliRGB565ToRGB_16u8u_C3R(even.data(), 2 * w, a.data(), 3 * w, {w, h}), kelStatusOk);
  EXPECT_EQ(a, b);
}
