// BT.709 conversions: 4:2:0 planes, 4:4:4 planes and packed CbYCr 4:2:2.
#include <array>
#include <stdexcept>

#include "harness.h"

using namespace kt;

namespace {

// ---- the thirteen members in the harness's terms ------------------------------
Member to420(const char* name, int bpp,
             KelStatus (*f)(const Kel8u*, int, Kel8u* [3], const int[3], KeliSize)) {
  Member m{name, {full(bpp)}, {full(1), sub(1, 1, 1), sub(1, 1, 1)}, [f](Call& c) {
             const Kel8u* s = c.s(0);
             Kel8u** d = c.dArr(3);
             return f(s, c.ss(0), d, c.dsArr(3), c.roi());
           }};
  m.order = Order::B;
  m.minW = m.minH = 2;
  m.final = status420;
  return m;
}

std::vector<Member> members() {
  std::vector<Member> v;
  v.push_back(to420("keliBGRToYCbCr420_709CSC_8u_C3P3R", 3, keliBGRToYCbCr420_709CSC_8u_C3P3R));
  v.push_back(to420("keliBGRToYCbCr420_709CSC_8u_AC4P3R", 4, keliBGRToYCbCr420_709CSC_8u_AC4P3R));
  v.push_back(to420("keliBGRToYCrCb420_709CSC_8u_C3P3R", 3, keliBGRToYCrCb420_709CSC_8u_C3P3R));
  v.push_back(to420("keliBGRToYCrCb420_709CSC_8u_AC4P3R", 4, keliBGRToYCrCb420_709CSC_8u_AC4P3R));
  v.push_back(to420("keliBGRToYCbCr420_709HDTV_8u_AC4P3R", 4, keliBGRToYCbCr420_709HDTV_8u_AC4P3R));

  Member m{"keliYCbCr420ToBGR_709CSC_8u_P3C3R", {full(1), sub(1, 1, 1), sub(1, 1, 1)}, {full(3)}, [](Call& c) {
             auto s = c.sArr(3);
             return keliYCbCr420ToBGR_709CSC_8u_P3C3R(s, c.ssArr(3), c.d(0), c.ds(0), c.roi());
           }};
  m.final = status420;
  v.push_back(m);
  m = {"keliYCbCr420ToBGR_709HDTV_8u_P3C4R", {full(1), sub(1, 1, 1), sub(1, 1, 1)}, {full(4)}, [](Call& c) {
         auto s = c.sArr(3);
         return keliYCbCr420ToBGR_709HDTV_8u_P3C4R(s, c.ssArr(3), c.d(0), c.ds(0), c.roi(), 0x1C3);
       }};
  m.final = status420;
  v.push_back(m);

  m = {"keliYCbCrToBGR_709CSC_8u_P3C3R", {full(1), full(1), full(1)}, {full(3)}, [](Call& c) {
         auto s = c.sArr(3);
         return keliYCbCrToBGR_709CSC_8u_P3C3R(s, c.ss(0), c.d(0), c.ds(0), c.roi());
       }};
  m.order = Order::B;
  m.sharedSrcStep = true;
  v.push_back(m);
  m = {"keliYCbCrToBGR_709CSC_8u_P3C4R", {full(1), full(1), full(1)}, {full(4)}, [](Call& c) {
         auto s = c.sArr(3);
         return keliYCbCrToBGR_709CSC_8u_P3C4R(s, c.ss(0), c.d(0), c.ds(0), c.roi(), 77);
       }};
  m.order = Order::B;
  m.sharedSrcStep = true;
  v.push_back(m);

  auto pix = [&](const char* name, Geom s, Geom d, Invoke f) { v.push_back(Member{name, {s}, {d}, f}); };
  pix("keliBGRToCbYCr422_709HDTV_8u_C3C2R", full(3), full(2), [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliBGRToCbYCr422_709HDTV_8u_C3C2R(s, c.ss(0), c.d(0), c.ds(0), c.roi());
  });
  pix("keliBGRToCbYCr422_709HDTV_8u_AC4C2R", full(4), full(2), [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliBGRToCbYCr422_709HDTV_8u_AC4C2R(s, c.ss(0), c.d(0), c.ds(0), c.roi());
  });
  pix("keliCbYCr422ToBGR_709HDTV_8u_C2C3R", full(2), full(3), [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliCbYCr422ToBGR_709HDTV_8u_C2C3R(s, c.ss(0), c.d(0), c.ds(0), c.roi());
  });
  pix("keliCbYCr422ToBGR_709HDTV_8u_C2C4R", full(2), full(4), [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliCbYCr422ToBGR_709HDTV_8u_C2C4R(s, c.ss(0), c.d(0), c.ds(0), c.roi(), -1);
  });
  return v;
}

// ---- members seen as rows of blocks ---------------------------------------------
// A block is the unit that shares chroma: 2 by 2 pixels for 4:2:0, a pixel
// pair for 4:2:2. Its bytes in a canonical order:
//   BGR side   the pixels row by row, 3 or 4 bytes each;
//   4:2:0 side Y00 Y01 Y10 Y11, then the second and third plane's sample;
//   C2 side    Cb Y0 Cr Y1.
using Block = std::vector<Kel8u>;
enum class Shape { To420, From420, ToC2, FromC2 };

struct BlockMember {
  const char* name;
  Shape shape;
  int bpp;                   // bytes per BGR pixel
  int (*body)(int w);        // body pixels of a row
  int allBody;               // a width whose pixels are all in the body
  KelStatus (*f)(const Kel8u* const* s, const int* ss, Kel8u** d, const int* ds, KeliSize roi);

  int rows() const { return shape == Shape::To420 || shape == Shape::From420 ? 2 : 1; }

  // Runs the member on one row of blocks (one row pair for 4:2:0).
  std::vector<Block> convert(const std::vector<Block>& in) const {
    const int n = static_cast<int>(in.size()), w = 2 * n;
    std::vector<std::vector<Kel8u>> s(3), d(3);
    const int big = 4 * w + 64;
    for (auto& p : s) p.assign(2 * big, 0);
    for (auto& p : d) p.assign(2 * big, 0xEE);
    for (int j = 0; j < n; ++j) {
      const Block& b = in[j];
      switch (shape) {
        case Shape::To420:
          for (int i = 0; i < 4; ++i)
            for (int k = 0; k < bpp; ++k) s[0][(i >> 1) * big + (2 * j + (i & 1)) * bpp + k] = b[i * bpp + k];
          break;
        case Shape::From420:
          for (int i = 0; i < 4; ++i) s[0][(i >> 1) * big + 2 * j + (i & 1)] = b[i];
          s[1][j] = b[4], s[2][j] = b[5];
          break;
        case Shape::ToC2:
          for (int k = 0; k < 2 * bpp; ++k) s[0][2 * j * bpp + k] = b[k];
          break;
        case Shape::FromC2:
          for (int k = 0; k < 4; ++k) s[0][4 * j + k] = b[k];
          break;
      }
    }
    const Kel8u* sp[3] = {s[0].data(), s[1].data(), s[2].data()};
    Kel8u* dp[3] = {d[0].data(), d[1].data(), d[2].data()};
    const int steps[3] = {big, big, big};
    EXPECT_EQ(f(sp, steps, dp, steps, {w, rows()}), kelStatusOk) << name;
    std::vector<Block> out(n);
    for (int j = 0; j < n; ++j) {
      Block& b = out[j];
      switch (shape) {
        case Shape::To420:
          for (int i = 0; i < 4; ++i) b.push_back(d[0][(i >> 1) * big + 2 * j + (i & 1)]);
          b.push_back(d[1][j]), b.push_back(d[2][j]);
          break;
        case Shape::From420:
          for (int i = 0; i < 4; ++i)
            for (int k = 0; k < bpp; ++k) b.push_back(d[0][(i >> 1) * big + (2 * j + (i & 1)) * bpp + k]);
          break;
        case Shape::ToC2:
          b.assign(d[0].begin() + 4 * j, d[0].begin() + 4 * j + 4);
          break;
        case Shape::FromC2:
          b.assign(d[0].begin() + 2 * j * bpp, d[0].begin() + 2 * (j + 1) * bpp);
          break;
      }
    }
    return out;
  }
  int inBytes() const {
    switch (shape) {
      case Shape::To420: return 4 * bpp;
      case Shape::From420: return 6;
      case Shape::ToC2: return 2 * bpp;
      default: return 4;
    }
  }
  // The body and the tail form of one block: a row all of body, and a row of
  // one block, which is all tail.
  Block bodyOf(const Block& b) const { return convert(std::vector<Block>(allBody / 2, b))[0]; }
  Block tailOf(const Block& b) const { return convert({b})[0]; }
};

int bodyTo420(int w) { return (w & ~15) + ((w & 7) >= 4 ? 4 : 0); }
int bodyFrom420(int w) { return 2 * ((w >> 1) & ~3); }
int bodyC2C3(int w) { return (w & ~31) + (w & 8); }
int body8(int w) { return w & ~7; }

using P3 = const Kel8u* const*;
const BlockMember kBlocks[] = {
    {"keliBGRToYCbCr420_709CSC_8u_C3P3R", Shape::To420, 3, bodyTo420, 16,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliBGRToYCbCr420_709CSC_8u_C3P3R(s[0], ss[0], d, ds, r); }},
    {"keliBGRToYCbCr420_709CSC_8u_AC4P3R", Shape::To420, 4, bodyTo420, 16,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliBGRToYCbCr420_709CSC_8u_AC4P3R(s[0], ss[0], d, ds, r); }},
    {"keliBGRToYCrCb420_709CSC_8u_C3P3R", Shape::To420, 3, bodyTo420, 16,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliBGRToYCrCb420_709CSC_8u_C3P3R(s[0], ss[0], d, ds, r); }},
    {"keliBGRToYCbCr420_709HDTV_8u_AC4P3R", Shape::To420, 4, bodyTo420, 16,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliBGRToYCbCr420_709HDTV_8u_AC4P3R(s[0], ss[0], d, ds, r); }},
    {"keliYCbCr420ToBGR_709CSC_8u_P3C3R", Shape::From420, 3, bodyFrom420, 8,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliYCbCr420ToBGR_709CSC_8u_P3C3R(s, ss, d[0], ds[0], r); }},
    {"keliYCbCr420ToBGR_709HDTV_8u_P3C4R", Shape::From420, 4, bodyFrom420, 8,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliYCbCr420ToBGR_709HDTV_8u_P3C4R(s, ss, d[0], ds[0], r, 0xAB); }},
    {"keliBGRToCbYCr422_709HDTV_8u_C3C2R", Shape::ToC2, 3, bodyC2C3, 8,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliBGRToCbYCr422_709HDTV_8u_C3C2R(s[0], ss[0], d[0], ds[0], r); }},
    {"keliBGRToCbYCr422_709HDTV_8u_AC4C2R", Shape::ToC2, 4, body8, 8,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliBGRToCbYCr422_709HDTV_8u_AC4C2R(s[0], ss[0], d[0], ds[0], r); }},
    {"keliCbYCr422ToBGR_709HDTV_8u_C2C3R", Shape::FromC2, 3, body8, 8,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliCbYCr422ToBGR_709HDTV_8u_C2C3R(s[0], ss[0], d[0], ds[0], r); }},
    {"keliCbYCr422ToBGR_709HDTV_8u_C2C4R", Shape::FromC2, 4, body8, 8,
     [](P3 s, const int* ss, Kel8u** d, const int* ds, KeliSize r) { return keliCbYCr422ToBGR_709HDTV_8u_C2C4R(s[0], ss[0], d[0], ds[0], r, 0xAB); }},
};
const BlockMember& blocks(const std::string& name) {
  for (const BlockMember& b : kBlocks)
    if (name == b.name) return b;
  throw std::runtime_error(name);
}

// A block of 2 by 2 (or 2) BGR pixels of one colour.
Block solid(const BlockMember& m, std::array<int, 3> bgr) {
  Block b;
  for (int i = 0; i < (m.rows() == 2 ? 4 : 2); ++i) {
    for (int k = 0; k < 3; ++k) b.push_back(static_cast<Kel8u>(bgr[k]));
    if (m.bpp == 4) b.push_back(0x5A);
  }
  return b;
}

}  // namespace

KT_MEMBERS(members);
TEST(Rec709, GuardsErrorsAndPaths) { checkAll(members()); }

// Every block takes the body form below the member's body count and the
// tail form from there on, for widths around the block sizes.
TEST(Rec709, BodyAndTailSplitTheRowByColumn) {
  std::mt19937 rng(17);
  for (const BlockMember& m : kBlocks) {
    for (int w : {2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 24, 28, 30, 32, 40, 46, 48, 56, 62, 64, 72, 100}) {
      std::vector<Block> in(w / 2);
      for (Block& b : in) {
        b.resize(m.inBytes());
        for (Kel8u& x : b) x = static_cast<Kel8u>(rng());
      }
      const std::vector<Block> out = m.convert(in);
      for (int j = 0; j < w / 2; ++j) {
        const Block want = 2 * j < m.body(w) ? m.bodyOf(in[j]) : m.tailOf(in[j]);
        ASSERT_EQ(out[j], want) << m.name << " width " << w << " block " << j;
      }
    }
  }
}

// The published edge values: solid colours through body and tail forms.
TEST(Rec709, ForwardValuesOfSolidColours) {
  struct Case {
    const char* member;
    std::array<int, 3> bgr;
    std::array<int, 3> ycbcr;  // in plane (or byte) order; -1: not checked
  } cases[] = {
      {"keliBGRToYCbCr420_709HDTV_8u_AC4P3R", {0, 0, 0}, {1, 128, 128}},
      {"keliBGRToYCbCr420_709HDTV_8u_AC4P3R", {255, 255, 255}, {254, 128, 128}},
      {"keliBGRToYCbCr420_709HDTV_8u_AC4P3R", {0, 255, 255}, {-1, 1, -1}},
      {"keliBGRToYCbCr420_709HDTV_8u_AC4P3R", {255, 0, 0}, {-1, 254, -1}},
      {"keliBGRToYCbCr420_709HDTV_8u_AC4P3R", {0, 0, 255}, {-1, -1, 254}},
      {"keliBGRToYCbCr420_709CSC_8u_C3P3R", {255, 255, 255}, {235, 128, 128}},
      {"keliBGRToYCbCr420_709CSC_8u_C3P3R", {0, 0, 0}, {16, 128, 128}},
      {"keliBGRToYCbCr420_709CSC_8u_C3P3R", {255, 0, 0}, {-1, 240, -1}},
      {"keliBGRToYCbCr420_709CSC_8u_AC4P3R", {0, 0, 255}, {-1, -1, 240}},
      {"keliBGRToCbYCr422_709HDTV_8u_C3C2R", {255, 0, 0}, {-1, 254, -1}},
      {"keliBGRToCbYCr422_709HDTV_8u_AC4C2R", {255, 0, 0}, {-1, 254, -1}},
      {"keliBGRToCbYCr422_709HDTV_8u_C3C2R", {0, 0, 0}, {1, 128, 128}},
      // Planes Y, Cr, Cb: the second plane takes Cr.
      {"keliBGRToYCbCr420_709CSC_8u_C3P3R", {255, 0, 0}, {-1, 240, 117}},
      {"keliBGRToYCrCb420_709CSC_8u_C3P3R", {255, 0, 0}, {-1, 117, 240}},
  };
  for (const Case& c : cases) {
    const BlockMember& m = blocks(c.member);
    for (bool body : {true, false}) {
      const Block b = solid(m, c.bgr);
      const Block o = body ? m.bodyOf(b) : m.tailOf(b);
      // Y, Cb, Cr at their canonical places.
      const int y = o[m.shape == Shape::ToC2 ? 1 : 0];
      const int cb = o[m.shape == Shape::ToC2 ? 0 : 4], cr = o[m.shape == Shape::ToC2 ? 2 : 5];
      const std::string what = std::string(c.member) + (body ? " body" : " tail");
      if (c.ycbcr[0] >= 0) {
        EXPECT_EQ(y, c.ycbcr[0]) << what;
      }
      if (c.ycbcr[1] >= 0) {
        EXPECT_EQ(cb, c.ycbcr[1]) << what;
      }
      if (c.ycbcr[2] >= 0) {
        EXPECT_EQ(cr, c.ycbcr[2]) << what;
      }
      // Both luma samples of a solid pair agree.
      if (m.shape == Shape::ToC2) {
        EXPECT_EQ(o[1], o[3]) << what;
      }
    }
  }
}

TEST(Rec709, InverseValues) {
  struct Case {
    const char* member;
    std::array<int, 3> ycbcr;
    int bgr;  // all three colours
  } cases[] = {
      {"keliYCbCr420ToBGR_709CSC_8u_P3C3R", {16, 128, 128}, 0},
      {"keliYCbCr420ToBGR_709CSC_8u_P3C3R", {235, 128, 128}, 255},
      {"keliYCbCr420ToBGR_709HDTV_8u_P3C4R", {100, 128, 128}, 100},
      {"keliCbYCr422ToBGR_709HDTV_8u_C2C3R", {100, 128, 128}, 100},
      {"keliCbYCr422ToBGR_709HDTV_8u_C2C4R", {0, 128, 128}, 0},
      {"keliCbYCr422ToBGR_709HDTV_8u_C2C4R", {255, 128, 128}, 255},
  };
  for (const Case& c : cases) {
    const BlockMember& m = blocks(c.member);
    const int Y = c.ycbcr[0], Cb = c.ycbcr[1], Cr = c.ycbcr[2];
    const Block in = m.shape == Shape::FromC2 ? Block{Kel8u(Cb), Kel8u(Y), Kel8u(Cr), Kel8u(Y)}
                                              : Block{Kel8u(Y), Kel8u(Y), Kel8u(Y), Kel8u(Y), Kel8u(Cb), Kel8u(Cr)};
    for (bool body : {true, false}) {
      const Block o = body ? m.bodyOf(in) : m.tailOf(in);
      for (size_t i = 0; i < o.size(); ++i)
        EXPECT_EQ(o[i], m.bpp == 4 && i % 4 == 3 ? 0xAB : c.bgr) << c.member << (body ? " body" : " tail") << " byte " << i;
    }
  }
  // 4:4:4: every pixel by the body form.
  const Kel8u y[2] = {16, 235}, cb[2] = {128, 128}, cr[2] = {128, 128};
  const Kel8u* s[3] = {y, cb, cr};
  Kel8u d3[6], d4[8];
  ASSERT_EQ(keliYCbCrToBGR_709CSC_8u_P3C3R(s, 2, d3, 6, {2, 1}), kelStatusOk);
  ASSERT_EQ(keliYCbCrToBGR_709CSC_8u_P3C4R(s, 2, d4, 8, {2, 1}, 0x307), kelStatusOk);
  EXPECT_EQ(std::vector<Kel8u>(d3, d3 + 6), (std::vector<Kel8u>{0, 0, 0, 255, 255, 255}));
  EXPECT_EQ(std::vector<Kel8u>(d4, d4 + 8), (std::vector<Kel8u>{0, 0, 0, 7, 255, 255, 255, 7}));
}

// The two green forms differ: negated products (P3C3R) against subtracted
// ones (P3C4R) give different low bits for some colours, and both forms of
// each member stay within one of each other.
TEST(Rec709, GreenFormsOfThe444Members) {
  std::vector<Kel8u> y(256 * 64), cb(y.size()), cr(y.size());
  std::mt19937 rng(2);
  for (size_t i = 0; i < y.size(); ++i) y[i] = Kel8u(rng()), cb[i] = Kel8u(rng()), cr[i] = Kel8u(rng());
  const Kel8u* s[3] = {y.data(), cb.data(), cr.data()};
  const int n = static_cast<int>(y.size());
  std::vector<Kel8u> d3(3 * n), d4(4 * n);
  ASSERT_EQ(keliYCbCrToBGR_709CSC_8u_P3C3R(s, n, d3.data(), 3 * n, {n, 1}), kelStatusOk);
  ASSERT_EQ(keliYCbCrToBGR_709CSC_8u_P3C4R(s, n, d4.data(), 4 * n, {n, 1}, 0), kelStatusOk);
  int differ = 0;
  for (int i = 0; i < n; ++i) {
    EXPECT_EQ(d3[3 * i], d4[4 * i]);
    EXPECT_EQ(d3[3 * i + 2], d4[4 * i + 2]);
    EXPECT_LE(std::abs(d3[3 * i + 1] - d4[4 * i + 1]), 1);
    differ += d3[3 * i + 1] != d4[4 * i + 1];
  }
  EXPECT_GT(differ, 0);
}

// Which bytes of a row a call writes: the bytes that a run over a zeroed and
// a run over a filled destination agree on.
template <class F>
std::vector<bool> written(int rowBytes, F call) {
  std::vector<Kel8u> a(rowBytes + 16, 0x00), b(rowBytes + 16, 0xFF);
  call(a.data()), call(b.data());
  std::vector<bool> w(a.size());
  for (size_t i = 0; i < a.size(); ++i) w[i] = a[i] == b[i];
  return w;
}

TEST(Rec709, LastOddPixelAndOddSizes) {
  // BGR -> CbYCr, width 3: bytes 0..5 written, 6 and 7 left alone; the last
  // pixel takes the Cb of its own colour.
  for (int bpp : {3, 4}) {
    std::vector<Kel8u> px(4 * bpp, 0);
    for (int x = 0; x < 4; ++x) px[bpp * x] = 255;
    const Kel8u* blue = px.data();
    Kel8u out[8];
    const auto w = written(8, [&](Kel8u* d) {
      bpp == 3 ? keliBGRToCbYCr422_709HDTV_8u_C3C2R(blue, 12, d, 16, {3, 1})
               : keliBGRToCbYCr422_709HDTV_8u_AC4C2R(blue, 12, d, 16, {3, 1});
      std::copy(d, d + 8, out);
    });
    for (int i = 0; i < 8; ++i) EXPECT_EQ(w[i], i < 6) << bpp << " byte " << i;
    EXPECT_EQ(out[4], 254);
    EXPECT_EQ(out[5], out[1]);
  }
  // CbYCr -> BGR, width 1: Cr is the pixel's own Cb byte. Width 3: the
  // third pixel is the second pair's Cb and Y with the first pair's Cr.
  const BlockMember& m = blocks("keliCbYCr422ToBGR_709HDTV_8u_C2C4R");
  const Kel8u c2[6] = {60, 90, 200, 30, 180, 140};
  Kel8u one[4], three[12];
  ASSERT_EQ(keliCbYCr422ToBGR_709HDTV_8u_C2C4R(c2, 8, one, 4, {1, 1}, 0xAB), kelStatusOk);
  ASSERT_EQ(keliCbYCr422ToBGR_709HDTV_8u_C2C4R(c2, 8, three, 12, {3, 1}, 0xAB), kelStatusOk);
  const Block a = m.tailOf({60, 90, 60, 90}), b = m.tailOf({180, 140, 200, 140});
  EXPECT_EQ(Block(one, one + 4), Block(a.begin(), a.begin() + 4));
  EXPECT_EQ(Block(three + 8, three + 12), Block(b.begin(), b.begin() + 4));

  // 4:2:0 with odd sizes: the last column and row are not written; width or
  // height 1 writes nothing at all in the inverse direction.
  for (auto [w, h] : {std::pair{5, 3}, std::pair{1, 4}, std::pair{4, 1}}) {
    std::vector<Kel8u> ys(64, 100), cs(64, 128), dst(4 * 8 * 4, 0xEE);
    const Kel8u* s[3] = {ys.data(), cs.data(), cs.data()};
    const int ss[3] = {8, 4, 4};
    EXPECT_EQ(keliYCbCr420ToBGR_709HDTV_8u_P3C4R(s, ss, dst.data(), 32, {w, h}, 0), kelStatusOddSizeTrimmed);
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 8; ++x)
        EXPECT_EQ(dst[32 * y + 4 * x], (x < (w & ~1) && y < (h & ~1)) ? 100 : 0xEE) << w << "x" << h;
  }
  std::vector<Kel8u> src(4 * 8 * 3, 0), yp(8 * 3, 0xEE), cbp(4, 0xEE), crp(4, 0xEE);
  Kel8u* d[3] = {yp.data(), cbp.data(), crp.data()};
  const int ds[3] = {8, 4, 4};
  EXPECT_EQ(keliBGRToYCbCr420_709CSC_8u_AC4P3R(src.data(), 32, d, ds, {5, 3}), kelStatusOddSizeTrimmed);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 8; ++x) EXPECT_EQ(yp[8 * y + x], (x < 4 && y < 2) ? 16 : 0xEE);
}
