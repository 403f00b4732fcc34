// RGB and BGR to and from packed CbYCr 4:2:2, and the forward gamma table
// in front of the filtered conversion.
#include <cmath>

#include "harness.h"
#include "tone/gamma_tables.h"

using namespace kt;

namespace {

using Conv = KelStatus (*)(const Kel8u*, int, Kel8u*, int, KeliSize);

std::vector<Member> members() {
  std::vector<Member> v;
  auto pix = [&](const char* name, int sb, int db, Invoke f) {
    v.push_back(Member{name, {full(sb)}, {full(db)}, f});
    return &v.back();
  };
  pix("keliRGBToCbYCr422_8u_C3C2R", 3, 2, [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliRGBToCbYCr422_8u_C3C2R(s, c.ss(0), c.d(0), c.ds(0), c.roi());
  });
  Member* g = pix("keliRGBToCbYCr422Gamma_8u_C3C2R", 3, 2, [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliRGBToCbYCr422Gamma_8u_C3C2R(s, c.ss(0), c.d(0), c.ds(0), c.roi());
  });
  g->order = Order::C;
  g->checksSteps = true;
  pix("keliBGRToCbYCr422_8u_AC4C2R", 4, 2, [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliBGRToCbYCr422_8u_AC4C2R(s, c.ss(0), c.d(0), c.ds(0), c.roi());
  });
  pix("keliCbYCr422ToRGB_8u_C2C3R", 2, 3, [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliCbYCr422ToRGB_8u_C2C3R(s, c.ss(0), c.d(0), c.ds(0), c.roi());
  });
  pix("keliCbYCr422ToBGR_8u_C2C4R", 2, 4, [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliCbYCr422ToBGR_8u_C2C4R(s, c.ss(0), c.d(0), c.ds(0), c.roi(), 0x2F0);
  });
  return v;
}

// One row through a member with the tight steps of its width.
std::vector<Kel8u> row(Conv f, const std::vector<Kel8u>& src, int w, int dstBpp) {
  std::vector<Kel8u> d(dstBpp * w + 16, 0xEE);
  EXPECT_EQ(f(src.data(), static_cast<int>(src.size()), d.data(), static_cast<int>(d.size()), {w, 1}), kelStatusOk);
  return d;
}
std::vector<Kel8u> solidRow(int w, int bpp, std::initializer_list<int> px) {
  std::vector<Kel8u> s;
  for (int x = 0; x < w; ++x)
    for (int k = 0; k < bpp; ++k) s.push_back(static_cast<Kel8u>(k < 3 ? px.begin()[k] : 0x77));
  return s;
}

KelStatus fromC2BGRA(const Kel8u* s, int ss, Kel8u* d, int ds, KeliSize r) {
  return keliCbYCr422ToBGR_8u_C2C4R(s, ss, d, ds, r, 0xFF);
}

}  // namespace

KT_MEMBERS(members);
TEST(CbYCr, GuardsErrorsAndPaths) { checkAll(members()); }

// The table follows from its rule: 4.5 i for i up to 4 and the power law
// above, at the scale 255, rounded to nearest with halves to even.
TEST(CbYCr, ForwardGammaTable) {
  const int telling[][2] = {{0, 0},    {1, 4},     {2, 9},     {3, 14},    {4, 18},    {5, 23},
                            {20, 64},  {64, 125},  {128, 180}, {192, 221}, {254, 255}, {255, 255}};
  for (auto [i, v] : telling) EXPECT_EQ(kel::tableFwd8u[i], v) << "entry " << i;
  for (int i = 0; i < 256; ++i) {
    const double x = i / 255.0;
    const double v = x < 0.018 ? 4.5 * i : 255.0 * (1.099 * std::pow(x, 0.45) - 0.099);
    EXPECT_EQ(kel::tableFwd8u[i], static_cast<int>(std::nearbyint(v))) << "entry " << i;
  }
}

// The gamma member is the plain member on samples passed through the table,
// the last odd pixel included.
TEST(CbYCr, GammaMemberIsThePlainMemberAfterTheTable) {
  std::mt19937 rng(6);
  for (int w : {1, 2, 3, 7, 8, 33, 128, 129, 130, 131, 258, 301}) {
    std::vector<Kel8u> s(3 * w), t(3 * w);
    for (size_t i = 0; i < s.size(); ++i) s[i] = static_cast<Kel8u>(rng()), t[i] = kel::tableFwd8u[s[i]];
    EXPECT_EQ(row(keliRGBToCbYCr422Gamma_8u_C3C2R, s, w, 2), row(keliRGBToCbYCr422_8u_C3C2R, t, w, 2)) << w;
  }
}

// The chroma filter on solid colours: grey stays at 128 in every pair; a
// coloured first pair lacks its left neighbour and is drawn a quarter
// towards 128, the pairs after it agree.
TEST(CbYCr, FilteredChromaOfSolidRows) {
  struct Case {
    std::initializer_list<int> rgb;
    int y, cbFirst, cbNext, crFirst, crNext;
  } cases[] = {
      {{128, 128, 128}, 126, 128, 128, 128, 128},
      {{0, 0, 0}, 16, 128, 128, 128, 128},
      {{255, 255, 255}, 235, 128, 128, 128, 128},
      {{255, 0, 0}, 82, 100, 90, 212, 240},
  };
  for (const Case& c : cases) {
    const std::vector<Kel8u> d = row(keliRGBToCbYCr422_8u_C3C2R, solidRow(10, 3, c.rgb), 10, 2);
    EXPECT_EQ(d[1], c.y);
    EXPECT_EQ(d[0], c.cbFirst);
    EXPECT_EQ(d[2], c.crFirst);
    for (int k = 1; k < 5; ++k) {
      EXPECT_EQ(d[4 * k], c.cbNext) << k;
      EXPECT_EQ(d[4 * k + 2], c.crNext) << k;
      EXPECT_EQ(d[4 * k + 1], c.y) << k;
      EXPECT_EQ(d[4 * k + 3], c.y) << k;
    }
  }
}

// The filter weights reach across pairs: changing pixel 3 changes the
// chroma of pairs 1 and 2 and nothing else; changing pixel 2 only pair 1.
TEST(CbYCr, FilteredChromaNeighbours) {
  std::vector<Kel8u> s = solidRow(8, 3, {100, 150, 50});
  const std::vector<Kel8u> base = row(keliRGBToCbYCr422_8u_C3C2R, s, 8, 2);
  for (int px : {2, 3}) {
    std::vector<Kel8u> t = s;
    t[3 * px] = 250, t[3 * px + 2] = 0;
    const std::vector<Kel8u> d = row(keliRGBToCbYCr422_8u_C3C2R, t, 8, 2);
    for (int k = 0; k < 4; ++k) {
      const bool touched = k == 1 || (px == 3 && k == 2);
      EXPECT_EQ(d[4 * k] != base[4 * k], touched) << "pixel " << px << " pair " << k;
      EXPECT_EQ(d[4 * k + 2] != base[4 * k + 2], touched) << "pixel " << px << " pair " << k;
    }
  }
}

// Bytes written per row at odd and even widths, in every forward member: a
// last odd pixel writes Cb and Y only.
TEST(CbYCr, BytesWrittenPerRow) {
  const Conv fwd[] = {keliRGBToCbYCr422_8u_C3C2R, keliRGBToCbYCr422Gamma_8u_C3C2R, keliBGRToCbYCr422_8u_AC4C2R};
  for (Conv f : fwd) {
    for (int w : {1, 6, 7, 9}) {
      const std::vector<Kel8u> s = solidRow(w, 4, {1, 2, 3});
      std::vector<Kel8u> a(2 * w + 8, 0x00), b(2 * w + 8, 0xFF);
      ASSERT_EQ(f(s.data(), 64, a.data(), 64, {w, 1}), kelStatusOk);
      ASSERT_EQ(f(s.data(), 64, b.data(), 64, {w, 1}), kelStatusOk);
      for (int i = 0; i < 2 * w + 8; ++i) EXPECT_EQ(a[i] == b[i], i < 2 * w) << "width " << w << " byte " << i;
    }
  }
  // The last odd pixel: Y = 16 + 219 x, Cb from the pixel alone.
  const std::vector<Kel8u> d = row(keliRGBToCbYCr422_8u_C3C2R, solidRow(1, 3, {0, 0, 255}), 1, 2);
  EXPECT_EQ(d[0], 240);
  EXPECT_EQ(d[1], 41);
}

// BGR -> CbYCr with pair means and CbYCr -> RGB/BGR: body pairs below
// w & ~7, tail pairs behind them. The body form of a pair is read from a
// row of eight equal pairs, the tail form from a row of one pair.
TEST(CbYCr, BodyAndTailSplitTheRowByColumn) {
  struct Side {
    Conv f;
    int sb, db;
  } sides[] = {{keliBGRToCbYCr422_8u_AC4C2R, 8, 4},
               {keliCbYCr422ToRGB_8u_C2C3R, 4, 6},
               {fromC2BGRA, 4, 8}};
  std::mt19937 rng(12);
  for (const Side& sd : sides) {
    auto pairOut = [&](const std::vector<Kel8u>& pair, int copies) {
      std::vector<Kel8u> s;
      for (int i = 0; i < copies; ++i) s.insert(s.end(), pair.begin(), pair.end());
      const std::vector<Kel8u> d = row(sd.f, s, 2 * copies, sd.db / 2);
      return std::vector<Kel8u>(d.begin(), d.begin() + sd.db);
    };
    for (int w : {2, 6, 8, 10, 14, 16, 18, 24, 30, 40}) {
      std::vector<Kel8u> s(sd.sb / 2 * w);
      for (Kel8u& x : s) x = static_cast<Kel8u>(rng());
      const std::vector<Kel8u> d = row(sd.f, s, w, sd.db / 2);
      for (int k = 0; k < w / 2; ++k) {
        const std::vector<Kel8u> pair(s.begin() + sd.sb * k, s.begin() + sd.sb * (k + 1));
        const std::vector<Kel8u> want = pairOut(pair, 2 * k < (w & ~7) ? 4 : 1);
        ASSERT_EQ(std::vector<Kel8u>(d.begin() + sd.db * k, d.begin() + sd.db * (k + 1)), want)
            << "width " << w << " pair " << k;
      }
    }
  }
}

TEST(CbYCr, InverseValuesAndTheLastOddPixel) {
  // Studio black and white, through body (width 8) and tail (width 2).
  for (int w : {8, 2}) {
    for (auto [y, v] : {std::pair{16, 0}, std::pair{235, 255}, std::pair{0, 0}}) {
      std::vector<Kel8u> s;
      for (int k = 0; k < w / 2; ++k) s.insert(s.end(), {128, Kel8u(y), 128, Kel8u(y)});
      const std::vector<Kel8u> d = row(keliCbYCr422ToRGB_8u_C2C3R, s, w, 3);
      for (int i = 0; i < 3 * w; ++i) EXPECT_EQ(d[i], v) << "width " << w << " Y " << y;
    }
  }
  // Width 3: the third pixel is Cb and Y of bytes 4 and 5 with the Cr of
  // byte 2; width 1: Cr equals Cb.
  const std::vector<Kel8u> s = {60, 90, 200, 30, 180, 140};
  const std::vector<Kel8u> three = row(keliCbYCr422ToRGB_8u_C2C3R, s, 3, 3);
  const std::vector<Kel8u> pair = row(keliCbYCr422ToRGB_8u_C2C3R, {180, 140, 200, 140}, 2, 3);
  EXPECT_EQ(std::vector<Kel8u>(three.begin() + 6, three.begin() + 9), std::vector<Kel8u>(pair.begin(), pair.begin() + 3));
  const std::vector<Kel8u> one = row(fromC2BGRA, s, 1, 4);
  const std::vector<Kel8u> same = row(fromC2BGRA, {60, 90, 60, 90}, 2, 4);
  EXPECT_EQ(std::vector<Kel8u>(one.begin(), one.begin() + 4), std::vector<Kel8u>(same.begin(), same.begin() + 4));
  EXPECT_EQ(one[3], 0xFF);
}

// The four-byte members give the same bytes on and off 16-byte boundaries.
TEST(CbYCr, AlignedAndUnalignedImagesAgree) {
  const int w = 37, h = 4, s0 = 4 * 48, d0 = 2 * 48, s1 = s0 + 4, d1 = d0 + 2;
  alignas(16) static Kel8u src[2][4 * 49 * h + 16], dst[2][2 * 49 * h + 16];
  std::mt19937 rng(1);
  for (int r = 0; r < h; ++r)
    for (int i = 0; i < 4 * w; ++i) src[0][s0 * r + i] = src[1][3 + s1 * r + i] = static_cast<Kel8u>(rng());
  const Conv fs[] = {keliBGRToCbYCr422_8u_AC4C2R, keliBGRToCbYCr422_709HDTV_8u_AC4C2R};
  for (Conv f : fs) {
    ASSERT_EQ(f(src[0], s0, dst[0], d0, {w, h}), kelStatusOk);
    ASSERT_EQ(f(src[1] + 3, s1, dst[1] + 5, d1, {w, h}), kelStatusOk);
    for (int r = 0; r < h; ++r)
      EXPECT_TRUE(std::equal(dst[0] + d0 * r, dst[0] + d0 * r + 2 * w, dst[1] + 5 + d1 * r)) << "row " << r;
  }
}
