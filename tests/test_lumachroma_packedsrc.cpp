// Packed 16-bit sources (BGR555, BGR565, RGB565) to YCbCr and YUV.
#include <array>
#include <cmath>

#include "harness.h"

using namespace kt;

namespace {

using FnP = KelStatus (*)(const Kel16u*, int, Kel8u* [3], const int[3], KeliSize);
using FnC = KelStatus (*)(const Kel16u*, int, Kel8u*, int, KeliSize);
enum class Kind { P420, P422, C2, P411 };
enum class SrcF { BGR555, BGR565, RGB565 };

KelStatus ok(KeliSize) { return kelStatusOk; }
KelStatus st420(KeliSize r) { return status420(r); }
KelStatus st422(KeliSize r) { return status422(r); }
KelStatus st411(KeliSize r) { return status411(r); }
int bYcc420(int w) { return (w & 7) >= 4 ? (w & ~15) + 4 : (w & ~15); }
int bYcc422(int w) { return (w & 15) >= 8 ? (w & ~31) + 8 : (w & ~31); }
int bYuv420(int w) { return w & ~3; }
int b16(int w) { return w & ~15; }
int b4(int w) { return w & ~3; }

// What a member leaves beside its chroma grid.
enum class Left { None, LumaYT, LumaCbYT };

struct PS {
  const char* name;
  Kind kind;
  SrcF src;
  bool yuv;
  Order order;
  int minW, minH;
  KelStatus (*final)(KeliSize);
  int (*body)(int);
  Left left;
  bool lastRowYT;  // a last odd row gets luma by YT
  FnP p;
  FnC c = nullptr;
  bool swap = false;  // planes Y, Cr, Cb
};

const PS kMembers[] = {
    {"keliBGR555ToYCbCr411_16u8u_C3P3R", Kind::P411, SrcF::BGR555, false, Order::B, 4, 1, st411, b4, Left::LumaYT, false, keliBGR555ToYCbCr411_16u8u_C3P3R},
    {"keliBGR565ToYCbCr411_16u8u_C3P3R", Kind::P411, SrcF::BGR565, false, Order::B, 4, 1, st411, b4, Left::None, false, keliBGR565ToYCbCr411_16u8u_C3P3R},
    {"keliBGR555ToYCbCr420_16u8u_C3P3R", Kind::P420, SrcF::BGR555, false, Order::B, 2, 2, ok, bYcc420, Left::LumaYT, true, keliBGR555ToYCbCr420_16u8u_C3P3R},
    {"keliBGR565ToYCbCr420_16u8u_C3P3R", Kind::P420, SrcF::BGR565, false, Order::B, 2, 2, ok, bYcc420, Left::LumaYT, true, keliBGR565ToYCbCr420_16u8u_C3P3R},
    {"keliBGR555ToYCrCb420_16u8u_C3P3R", Kind::P420, SrcF::BGR555, false, Order::B, 2, 2, ok, bYcc420, Left::LumaYT, true, keliBGR555ToYCrCb420_16u8u_C3P3R, nullptr, true},
    {"keliBGR565ToYCrCb420_16u8u_C3P3R", Kind::P420, SrcF::BGR565, false, Order::B, 2, 2, ok, bYcc420, Left::LumaYT, true, keliBGR565ToYCrCb420_16u8u_C3P3R, nullptr, true},
    {"keliBGR555ToYCbCr422_16u8u_C3P3R", Kind::P422, SrcF::BGR555, false, Order::B, 2, 1, ok, bYcc422, Left::LumaYT, false, keliBGR555ToYCbCr422_16u8u_C3P3R},
    {"keliBGR565ToYCbCr422_16u8u_C3P3R", Kind::P422, SrcF::BGR565, false, Order::B, 2, 1, ok, bYcc422, Left::LumaYT, false, keliBGR565ToYCbCr422_16u8u_C3P3R},
    {"keliBGR555ToYCbCr422_16u8u_C3C2R", Kind::C2, SrcF::BGR555, false, Order::B, 2, 1, ok, bYcc422, Left::LumaCbYT, false, nullptr, keliBGR555ToYCbCr422_16u8u_C3C2R},
    {"keliBGR565ToYCbCr422_16u8u_C3C2R", Kind::C2, SrcF::BGR565, false, Order::B, 2, 1, ok, bYcc422, Left::LumaCbYT, false, nullptr, keliBGR565ToYCbCr422_16u8u_C3C2R},
    {"keliBGR555ToYUV420_16u8u_C3P3R", Kind::P420, SrcF::BGR555, true, Order::B, 2, 2, st420, bYuv420, Left::None, false, keliBGR555ToYUV420_16u8u_C3P3R},
    {"keliBGR565ToYUV420_16u8u_C3P3R", Kind::P420, SrcF::BGR565, true, Order::B, 2, 2, st420, bYuv420, Left::None, false, keliBGR565ToYUV420_16u8u_C3P3R},
    {"keliRGB565ToYUV420_16u8u_C3P3R", Kind::P420, SrcF::RGB565, true, Order::A, 1, 1, st420, b16, Left::None, false, keliRGB565ToYUV420_16u8u_C3P3R},
    {"keliRGB565ToYUV422_16u8u_C3P3R", Kind::P422, SrcF::RGB565, true, Order::A, 1, 1, st422, b16, Left::None, false, keliRGB565ToYUV422_16u8u_C3P3R},
};
const PS& member(const std::string& name) {
  for (const PS& m : kMembers)
    if (name == m.name) return m;
  throw std::runtime_error(name);
}

int groupW(Kind k) { return k == Kind::P411 ? 4 : 2; }
std::array<int, 2> chromaDim(Kind k, int w, int h) {
  return {w / groupW(k), k == Kind::P420 ? h >> 1 : h};
}

std::vector<Member> harnessMembers() {
  std::vector<Member> v;
  for (const PS& p : kMembers) {
    Member m;
    m.name = p.name;
    m.src = {full(2)};
    m.evenSrcSteps = true;
    if (p.kind == Kind::C2) {
      m.dst = {full(2)};
      m.call = [f = p.c](Call& c) {
        const Kel16u* s = c.sT<Kel16u>(0);
        return f(s, c.ss(0), c.d(0), c.ds(0), c.roi());
      };
    } else {
      const Geom ch = p.kind == Kind::P411 ? sub(1, 2, 0) : sub(1, 1, p.kind == Kind::P420 ? 1 : 0);
      m.dst = {full(1), ch, ch};
      m.call = [f = p.p](Call& c) {
        const Kel16u* s = c.sT<Kel16u>(0);
        return f(s, c.ss(0), c.dArr(3), c.dsArr(3), c.roi());
      };
    }
    m.order = p.order;
    m.minW = p.minW, m.minH = p.minH;
    m.final = p.final;
    v.push_back(m);
  }
  return v;
}

// The outputs of one call as planes Y, Cb (or U), Cr (or V); -1 marks a
// byte the member did not write. `odd` holds the C2 stream's byte behind the
// luma of a last odd pixel, per row.
struct Out {
  KelStatus st;
  int w, h, cw, chh;
  std::vector<int> Y, C0, C1, odd;
  int y(int x, int r) const { return Y[r * w + x]; }
  int c0(int j, int r) const { return C0[r * cw + j]; }
  int c1(int j, int r) const { return C1[r * cw + j]; }
};

Out run(const PS& m, const std::vector<Kel16u>& src, int w, int h) {
  const auto cd = chromaDim(m.kind, w, h);
  Out o{};
  o.w = w, o.h = h, o.cw = cd[0], o.chh = cd[1];
  std::vector<Kel8u> res[2][3];
  for (int pass = 0; pass < 2; ++pass) {
    const Kel8u fillv = pass ? 0xFF : 0x00;
    auto& r = res[pass];
    KelStatus st;
    if (m.kind == Kind::C2) {
      r[0].assign(2 * w * h, fillv);
      st = m.c(src.data(), 2 * w, r[0].data(), 2 * w, {w, h});
    } else {
      r[0].assign(w * h, fillv), r[1].assign(cd[0] * cd[1] + 1, fillv), r[2].assign(cd[0] * cd[1] + 1, fillv);
      Kel8u* d[3] = {r[0].data(), r[1].data(), r[2].data()};
      const int ds[3] = {w, cd[0], cd[0]};
      st = m.p(src.data(), 2 * w, d, ds, {w, h});
    }
    o.st = st;
  }
  auto val = [&](int plane, size_t i) { return res[0][plane][i] == res[1][plane][i] ? int(res[0][plane][i]) : -1; };
  if (m.kind == Kind::C2) {
    for (int r = 0; r < h; ++r) {
      for (int x = 0; x < w; ++x) o.Y.push_back(val(0, 2 * (r * w + x)));
      for (int j = 0; j < cd[0]; ++j) o.C0.push_back(val(0, 2 * (r * w) + 4 * j + 1));
      for (int j = 0; j < cd[0]; ++j) o.C1.push_back(val(0, 2 * (r * w) + 4 * j + 3));
      o.odd.push_back(w & 1 ? val(0, 2 * (r * w + w - 1) + 1) : -1);
    }
  } else {
    for (size_t i = 0; i < size_t(w * h); ++i) o.Y.push_back(val(0, i));
    const int a = m.swap ? 2 : 1, b = m.swap ? 1 : 2;
    for (int i = 0; i < cd[0] * cd[1]; ++i) o.C0.push_back(val(a, i)), o.C1.push_back(val(b, i));
  }
  return o;
}

// Words of a colour in each source form (5, 6 or 5 bits; 5 bits of G in 555).
Kel16u word(SrcF s, int R, int G, int B) {
  switch (s) {
    case SrcF::BGR555: return Kel16u(((R >> 3) << 10) | ((G >> 3) << 5) | (B >> 3));
    case SrcF::BGR565: return Kel16u(((R >> 3) << 11) | ((G >> 2) << 5) | (B >> 3));
    default: return Kel16u(((B >> 3) << 11) | ((G >> 2) << 5) | (R >> 3));
  }
}
void widened(SrcF s, Kel16u w, double& R, double& G, double& B) {
  if (s == SrcF::BGR555) R = ((w >> 10) & 31) << 3, G = ((w >> 5) & 31) << 3, B = (w & 31) << 3;
  else if (s == SrcF::BGR565) R = ((w >> 11) & 31) << 3, G = ((w >> 5) & 63) << 2, B = (w & 31) << 3;
  else R = (w & 31) << 3, G = ((w >> 5) & 63) << 2, B = ((w >> 11) & 31) << 3;
}

// One group's results when the group is a body group and when it is a tail
// group: images whose every group repeats the given words (group pixels
// left to right, then the second row for 4:2:0).
struct GroupOut {
  std::vector<int> y;
  int c0, c1;
};
int widestBody(const PS& m) { return m.kind == Kind::P411 ? 4 : (m.kind == Kind::P420 ? 16 : 32); }
GroupOut groupOf(const PS& m, const std::vector<Kel16u>& g, bool body) {
  const int n = groupW(m.kind), rows = m.kind == Kind::P420 ? 2 : 1;
  const int w = body ? widestBody(m) : n;
  std::vector<Kel16u> img(w * rows);
  for (int r = 0; r < rows; ++r)
    for (int x = 0; x < w; ++x) img[r * w + x] = g[r * n + x % n];
  const Out o = run(m, img, w, rows);
  GroupOut go{{}, o.c0(0, 0), o.c1(0, 0)};
  for (int r = 0; r < rows; ++r)
    for (int x = 0; x < n; ++x) go.y.push_back(o.y(x, r));
  return go;
}
// Luma by YT of one word, from the YCbCr 4:2:2 member's tail.
int lumaYT(SrcF s, Kel16u w) {
  const PS& m = member(s == SrcF::BGR555 ? "keliBGR555ToYCbCr422_16u8u_C3P3R" : "keliBGR565ToYCbCr422_16u8u_C3P3R");
  return groupOf(m, {w, w}, false).y[0];
}

}  // namespace

KT_MEMBERS(harnessMembers);
TEST(PackedSrc, GuardsErrorsAndPaths) { checkAll(harnessMembers()); }

// Widened white is 248 (252 for a 6-bit G) and bit 15 of a BGR555 word is
// not read; black is studio black. Body and tail agree on these.
TEST(PackedSrc, TellingValues) {
  struct Case {
    SrcF src;
    Kel16u w;
    int y, cb, cr;
  } cases[] = {{SrcF::BGR555, 0x7FFF, 229, 128, 128}, {SrcF::BGR555, 0xFFFF, 229, 128, 128},
               {SrcF::BGR565, 0xFFFF, 231, 126, 126}, {SrcF::BGR555, 0x0000, 16, 128, 128},
               {SrcF::BGR565, 0x0000, 16, 128, 128}};
  for (const Case& c : cases)
    for (const PS& m : kMembers) {
      if (m.src != c.src || m.yuv) continue;
      for (bool body : {true, false}) {
        if (!body && m.kind == Kind::P411) continue;
        const GroupOut g = groupOf(m, std::vector<Kel16u>(8, c.w), body);
        EXPECT_EQ(g.y[0], c.y) << m.name << (body ? " body" : " tail");
        EXPECT_EQ(g.c0, c.cb) << m.name << (body ? " body" : " tail");
        EXPECT_EQ(g.c1, c.cr) << m.name << (body ? " body" : " tail");
      }
    }
}

// Every form is close to the real-valued conversion of the widened samples:
// studio-range BT.601 YCbCr, or YUV with U = 0.492 (B - Y), V = 0.877 (R - Y).
// This also holds the chroma planes of the YCrCb members in their order.
TEST(PackedSrc, FormsFollowTheirColourModel) {
  std::mt19937 rng(17);
  for (const PS& m : kMembers) {
    const int n = groupW(m.kind) * (m.kind == Kind::P420 ? 2 : 1);
    for (int trial = 0; trial < 300; ++trial) {
      // Groups of near colours, as in real pictures.
      const int R = rng() % 256, G = rng() % 256, B = rng() % 256;
      std::vector<Kel16u> g(n);
      for (auto& w : g)
        w = word(m.src, std::min(255, R + int(rng() % 9)), std::min(255, G + int(rng() % 9)),
                 std::min(255, B + int(rng() % 9)));
      double sy = 0, sr = 0, sb = 0;
      std::vector<double> ys;
      for (Kel16u w : g) {
        double r, gg, b;
        widened(m.src, w, r, gg, b);
        const double y = m.yuv ? 0.299 * r + 0.587 * gg + 0.114 * b : 16 + (65.481 * r + 128.553 * gg + 24.966 * b) / 255;
        ys.push_back(y);
        sy += 0.299 * r + 0.587 * gg + 0.114 * b, sr += r, sb += b;
      }
      const double my = sy / n, mr = sr / n, mb = sb / n;
      auto clip = [](double v) { return std::min(255.0, std::max(0.0, v)); };
      const double c0 = m.yuv ? clip(128 + 0.492 * (mb - my)) : 128 + (mb - my) * 112 / 0.886 / 255;
      const double c1 = m.yuv ? clip(128 + 0.877 * (mr - my)) : 128 + (mr - my) * 112 / 0.701 / 255;
      for (bool body : {true, false}) {
        if (!body && m.kind == Kind::P411) continue;
        const GroupOut o = groupOf(m, g, body);
        for (int i = 0; i < n; ++i) ASSERT_NEAR(o.y[i], ys[i], 1.5) << m.name << (body ? " body" : " tail");
        ASSERT_NEAR(o.c0, c0, 2.5) << m.name << (body ? " body" : " tail") << " colour " << R << " " << G << " " << B;
        ASSERT_NEAR(o.c1, c1, 2.5) << m.name << (body ? " body" : " tail") << " colour " << R << " " << G << " " << B;
      }
    }
  }
}

// Each chroma group takes the body forms when it starts below the member's
// body count and the tail forms from there on; what lies beside the grid
// gets what the member's rule says.
TEST(PackedSrc, BodyTailAndLeftOverColumns) {
  std::mt19937 rng(23);
  for (const PS& m : kMembers) {
    const int n = groupW(m.kind);
    for (int w : {2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 15, 16, 17, 20, 23, 24, 28, 31, 32, 33, 40, 41, 47, 56, 63, 64, 77}) {
      if (w < m.minW) continue;
      for (int h : {2, 3}) {
        std::vector<Kel16u> img(w * h);
        for (auto& v : img) v = Kel16u(rng());
        const Out o = run(m, img, w, h);
        const std::string at = std::string(m.name) + " " + std::to_string(w) + "x" + std::to_string(h);
        ASSERT_EQ(o.st, m.final({w, h})) << at;
        const int rowsPerGroup = m.kind == Kind::P420 ? 2 : 1;
        for (int gr = 0; gr < o.chh; ++gr)
          for (int j = 0; j < o.cw; ++j) {
            std::vector<Kel16u> g;
            for (int r = 0; r < rowsPerGroup; ++r)
              for (int x = 0; x < n; ++x) g.push_back(img[(gr * rowsPerGroup + r) * w + n * j + x]);
            const GroupOut want = groupOf(m, g, n * j < m.body(w));
            ASSERT_EQ(o.c0(j, gr), want.c0) << at << " group " << j;
            ASSERT_EQ(o.c1(j, gr), want.c1) << at << " group " << j;
            for (int r = 0; r < rowsPerGroup; ++r)
              for (int x = 0; x < n; ++x)
                ASSERT_EQ(o.y(n * j + x, gr * rowsPerGroup + r), want.y[r * n + x]) << at << " group " << j;
          }
        // Columns and rows beside the grid.
        const int gridW = o.cw * n, gridH = m.kind == Kind::P420 ? o.chh * 2 : h;
        for (int r = 0; r < h; ++r)
          for (int x = 0; x < w; ++x) {
            if (x < gridW && r < gridH) continue;
            const bool yt = (r >= gridH) ? m.lastRowYT : m.left != Left::None;
            ASSERT_EQ(o.y(x, r), yt ? lumaYT(m.src, img[r * w + x]) : -1) << at << " column " << x << " row " << r;
          }
        if (m.kind == Kind::C2)
          for (int r = 0; r < h; ++r) {
            const Kel16u last = img[r * w + w - 1];
            ASSERT_EQ(o.odd[r], w & 1 ? groupOf(m, {last, last}, false).c0 : -1) << at << " row " << r;
          }
      }
    }
  }
}

// Small sizes: the status and how many luma and chroma samples are written.
TEST(PackedSrc, SmallSizes) {
  struct Case {
    const char* name;
    int w, h;
    KelStatus st;
    int luma, chroma;
  } cases[] = {
      {"keliBGR555ToYCbCr420_16u8u_C3P3R", 3, 3, kelStatusOk, 9, 1},
      {"keliBGR555ToYUV420_16u8u_C3P3R", 3, 3, kelStatusOddSizeTrimmed, 4, 1},
      {"keliRGB565ToYUV420_16u8u_C3P3R", 1, 1, kelStatusOddSizeTrimmed, 0, 0},
      {"keliRGB565ToYUV420_16u8u_C3P3R", 1, 4, kelStatusOddSizeTrimmed, 0, 0},
      {"keliRGB565ToYUV422_16u8u_C3P3R", 1, 1, kelStatusOddSizeTrimmed, 0, 0},
      {"keliRGB565ToYUV422_16u8u_C3P3R", 3, 2, kelStatusOddSizeTrimmed, 4, 2},
      {"keliBGR555ToYCbCr411_16u8u_C3P3R", 6, 1, kelStatusOddSizeTrimmed, 6, 1},
      {"keliBGR565ToYCbCr411_16u8u_C3P3R", 6, 1, kelStatusOddSizeTrimmed, 4, 1},
      {"keliBGR565ToYCbCr422_16u8u_C3C2R", 3, 1, kelStatusOk, 3, 1},
      {"keliBGR565ToYCbCr422_16u8u_C3P3R", 3, 1, kelStatusOk, 3, 1},
  };
  for (const Case& c : cases) {
    const Out o = run(member(c.name), std::vector<Kel16u>(c.w * c.h, 0x1234), c.w, c.h);
    EXPECT_EQ(o.st, c.st) << c.name;
    EXPECT_EQ(o.Y.size() - std::count(o.Y.begin(), o.Y.end(), -1), size_t(c.luma)) << c.name;
    EXPECT_EQ(o.C0.size() - std::count(o.C0.begin(), o.C0.end(), -1), size_t(c.chroma)) << c.name;
    EXPECT_EQ(o.C1.size() - std::count(o.C1.begin(), o.C1.end(), -1), size_t(c.chroma)) << c.name;
  }
}
