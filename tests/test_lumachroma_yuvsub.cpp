// RGB <-> YUV with 4:2:2 and 4:2:0 chroma.
#include <array>
#include <map>
#include <stdexcept>

#include "harness.h"

using namespace kt;

namespace {

using Px = std::array<int, 3>;

// Layouts of one side of a member.
enum class Lay { RGB, BGRX, RGBA, BGR, RGBP, YUYV, YUV422P, YUV420P };

std::vector<Geom> geoms(Lay l) {
  switch (l) {
    case Lay::RGB: case Lay::BGR: return {full(3)};
    case Lay::BGRX: case Lay::RGBA: return {full(4)};
    case Lay::RGBP: return {full(1), full(1), full(1)};
    case Lay::YUYV: return {full(2)};
    case Lay::YUV422P: return {full(1), ceilHalfW(1), ceilHalfW(1)};
    case Lay::YUV420P: return {full(1), sub(1, 1, 1), sub(1, 1, 1)};
  }
  return {};
}

struct Def {
  Member m;
  Lay in, out;
  bool tight = false;  // a form without steps
};

// Calls by argument form, asking for the pointers in argument order:
// interleaved (I), planes with one step (P), planes with an array of steps
// (A), and the forms without steps (T).
#define I_I(fn) [](Call& c) { auto s = c.s(0); auto d = c.d(0); return fn(s, c.ss(0), d, c.ds(0), c.roi()); }
#define I_A(fn) [](Call& c) { auto s = c.s(0); auto d = c.dArr(3); return fn(s, c.ss(0), d, c.dsArr(3), c.roi()); }
#define P_A(fn) [](Call& c) { auto s = c.sArr(3); auto d = c.dArr(3); return fn(s, c.ss(0), d, c.dsArr(3), c.roi()); }
#define A_I(fn) [](Call& c) { auto s = c.sArr(3); auto d = c.d(0); return fn(s, c.ssArr(3), d, c.ds(0), c.roi()); }
#define A_P(fn) [](Call& c) { auto s = c.sArr(3); auto d = c.dArr(3); return fn(s, c.ssArr(3), d, c.ds(0), c.roi()); }
#define T_IP(fn) [](Call& c) { auto s = c.s(0); auto d = c.dArr(3); return fn(s, d, c.roi()); }
#define T_PP(fn) [](Call& c) { auto s = c.sArr(3); auto d = c.dArr(3); return fn(s, d, c.roi()); }
#define T_PI(fn) [](Call& c) { auto s = c.sArr(3); auto d = c.d(0); return fn(s, d, c.roi()); }

// Every member; sharedS / sharedD where one step serves all planes of a side.
std::vector<Def> defs() {
  struct Row {
    const char* name;
    Lay in, out;
    Invoke call;
    bool is420, tight, sharedS, sharedD;
  };
  const Row rows[] = {
      {"keliRGBToYUV422_8u_C3C2R", Lay::RGB, Lay::YUYV, I_I(keliRGBToYUV422_8u_C3C2R), false, false, false, false},
      {"keliRGBToYUV422_8u_C3P3R", Lay::RGB, Lay::YUV422P, I_A(keliRGBToYUV422_8u_C3P3R), false, false, false, false},
      {"keliRGBToYUV422_8u_C3P3", Lay::RGB, Lay::YUV422P, T_IP(keliRGBToYUV422_8u_C3P3), false, true, false, false},
      {"keliRGBToYUV422_8u_P3R", Lay::RGBP, Lay::YUV422P, P_A(keliRGBToYUV422_8u_P3R), false, false, true, false},
      {"keliRGBToYUV422_8u_P3", Lay::RGBP, Lay::YUV422P, T_PP(keliRGBToYUV422_8u_P3), false, true, false, false},
      {"keliRGBToYUV420_8u_C3P3R", Lay::RGB, Lay::YUV420P, I_A(keliRGBToYUV420_8u_C3P3R), true, false, false, false},
      {"keliRGBToYUV420_8u_C3P3", Lay::RGB, Lay::YUV420P, T_IP(keliRGBToYUV420_8u_C3P3), true, true, false, false},
      {"keliRGBToYUV420_8u_P3R", Lay::RGBP, Lay::YUV420P, P_A(keliRGBToYUV420_8u_P3R), true, false, true, false},
      {"keliRGBToYUV420_8u_P3", Lay::RGBP, Lay::YUV420P, T_PP(keliRGBToYUV420_8u_P3), true, true, false, false},
      {"keliBGRToYUV420_8u_AC4P3R", Lay::BGRX, Lay::YUV420P, I_A(keliBGRToYUV420_8u_AC4P3R), true, false, false, false},
      {"keliYUV422ToRGB_8u_C2C3R", Lay::YUYV, Lay::RGB, I_I(keliYUV422ToRGB_8u_C2C3R), false, false, false, false},
      {"keliYUV422ToRGB_8u_P3C3R", Lay::YUV422P, Lay::RGB, A_I(keliYUV422ToRGB_8u_P3C3R), false, false, false, false},
      {"keliYUV422ToRGB_8u_P3C3", Lay::YUV422P, Lay::RGB, T_PI(keliYUV422ToRGB_8u_P3C3), false, true, false, false},
      {"keliYUV422ToRGB_8u_P3R", Lay::YUV422P, Lay::RGBP, A_P(keliYUV422ToRGB_8u_P3R), false, false, false, true},
      {"keliYUV422ToRGB_8u_P3", Lay::YUV422P, Lay::RGBP, T_PP(keliYUV422ToRGB_8u_P3), false, true, false, false},
      {"keliYUV422ToRGB_8u_P3AC4R", Lay::YUV422P, Lay::RGBA, A_I(keliYUV422ToRGB_8u_P3AC4R), false, false, false, false},
      {"keliYUV420ToRGB_8u_P3C3R", Lay::YUV420P, Lay::RGB, A_I(keliYUV420ToRGB_8u_P3C3R), true, false, false, false},
      {"keliYUV420ToRGB_8u_P3C3", Lay::YUV420P, Lay::RGB, T_PI(keliYUV420ToRGB_8u_P3C3), true, true, false, false},
      {"keliYUV420ToRGB_8u_P3R", Lay::YUV420P, Lay::RGBP, A_P(keliYUV420ToRGB_8u_P3R), true, false, false, true},
      {"keliYUV420ToRGB_8u_P3", Lay::YUV420P, Lay::RGBP, T_PP(keliYUV420ToRGB_8u_P3), true, true, false, false},
      {"keliYUV420ToRGB_8u_P3AC4R", Lay::YUV420P, Lay::RGBA, A_I(keliYUV420ToRGB_8u_P3AC4R), true, false, false, false},
      {"keliYUV420ToBGR_8u_P3C3R", Lay::YUV420P, Lay::BGR, A_I(keliYUV420ToBGR_8u_P3C3R), true, false, false, false},
  };
  std::vector<Def> v;
  for (const Row& r : rows) {
    Def d{Member{r.name, geoms(r.in), geoms(r.out), r.call}, r.in, r.out, r.tight};
    d.m.tightSteps = r.tight;
    if (r.is420) d.m.final = status420;
    d.m.sharedSrcStep = r.sharedS, d.m.sharedDstStep = r.sharedD;
    if (d.m.name == "keliYUV420ToBGR_8u_P3C3R") d.m.minW = d.m.minH = 2;
    v.push_back(d);
  }
  return v;
}

const Def& get(const std::string& name) {
  static const std::vector<Def> all = defs();
  for (const Def& d : all)
    if (d.m.name == name || d.m.name == "keli" + name) return d;
  throw std::runtime_error(name);
}

// ---- images in member layouts -------------------------------------------
// An RGB image, or a YUV image with its chroma planes (cw by ch).
struct Rgb {
  int w, h;
  std::vector<Px> px;
  Px& at(int x, int y) { return px[y * w + x]; }
  const Px& at(int x, int y) const { return px[y * w + x]; }
};
struct Yuv {
  int w, h, cw, ch;
  std::vector<int> Y, U, V;
};
Yuv makeYuv(int w, int h, bool is420) {
  const int cw = is420 ? w >> 1 : (w + 1) >> 1, ch = is420 ? h >> 1 : h;
  return {w, h, cw, ch, std::vector<int>(w * h), std::vector<int>(cw * ch), std::vector<int>(cw * ch)};
}

// Guarded planes for a member at a size: tight for the forms without
// steps; otherwise steps and pointers on 16-byte boundaries or off them.
Images planesFor(const Def& d, KeliSize roi, bool aligned) {
  Images im;
  auto side = [&](const std::vector<Geom>& gs, bool shared, std::vector<std::unique_ptr<Guarded>>& out) {
    int widest = 0;
    for (auto& g : gs) widest = std::max(widest, g(roi).rowBytes);
    for (size_t i = 0; i < gs.size(); ++i) {
      const PlaneDim dim = gs[i](roi);
      const int base = shared ? widest : dim.rowBytes;
      const int step = d.tight ? dim.rowBytes : ((base + 15) & ~15) + (aligned ? 16 : 19);
      out.push_back(std::make_unique<Guarded>(dim, step, aligned ? 0 : 3 + 2 * int(i), 17 + uint32_t(i)));
    }
  };
  side(d.m.src, d.m.sharedSrcStep, im.src);
  side(d.m.dst, d.m.sharedDstStep, im.dst);
  for (auto& p : im.dst) p->fill(0);  // bytes a member leaves compare equal
  return im;
}

void putRgb(Images& im, Lay l, Rgb& img) {
  for (int y = 0; y < img.h; ++y)
    for (int x = 0; x < img.w; ++x) {
      const Px p = img.at(x, y);
      for (int k = 0; k < 3; ++k) {
        if (l == Lay::RGB) im.src[0]->at(3 * x + k, y) = Kel8u(p[k]);
        if (l == Lay::BGRX) im.src[0]->at(4 * x + 2 - k, y) = Kel8u(p[k]);
        if (l == Lay::RGBP) im.src[k]->at(x, y) = Kel8u(p[k]);
      }
    }
}
Rgb getRgb(Images& im, Lay l, int w, int h) {
  Rgb img{w, h, std::vector<Px>(w * h)};
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      for (int k = 0; k < 3; ++k) {
        if (l == Lay::RGB) img.at(x, y)[k] = im.dst[0]->at(3 * x + k, y);
        if (l == Lay::BGR) img.at(x, y)[k] = im.dst[0]->at(3 * x + 2 - k, y);
        if (l == Lay::RGBA) img.at(x, y)[k] = im.dst[0]->at(4 * x + k, y);
        if (l == Lay::RGBP) img.at(x, y)[k] = im.dst[k]->at(x, y);
      }
  return img;
}
// Packed 4:2:2: Y0 U Y1 V per pair; an odd last pixel has Y and U.
void putYuv(Images& im, Lay l, const Yuv& s) {
  for (int y = 0; y < s.h; ++y)
    for (int x = 0; x < s.w; ++x) {
      const int cy = l == Lay::YUV420P ? y >> 1 : y, c = cy * s.cw + (x >> 1);
      if (l == Lay::YUYV) {
        im.src[0]->at(2 * x, y) = Kel8u(s.Y[y * s.w + x]);
        im.src[0]->at(2 * x + 1, y) = Kel8u(x & 1 ? s.V[c] : s.U[c]);
      } else {
        im.src[0]->at(x, y) = Kel8u(s.Y[y * s.w + x]);
        if (cy < s.ch && (x >> 1) < s.cw) im.src[1]->at(x >> 1, cy) = Kel8u(s.U[c]), im.src[2]->at(x >> 1, cy) = Kel8u(s.V[c]);
      }
    }
}
Yuv getYuv(Images& im, Lay l, int w, int h) {
  Yuv o = makeYuv(w, h, l == Lay::YUV420P);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const int cy = l == Lay::YUV420P ? y >> 1 : y, c = cy * o.cw + (x >> 1);
      if (l == Lay::YUYV) {
        o.Y[y * w + x] = im.dst[0]->at(2 * x, y);
        (x & 1 ? o.V : o.U)[c] = im.dst[0]->at(2 * x + 1, y);
      } else {
        o.Y[y * w + x] = im.dst[0]->at(x, y);
        if (cy < o.ch && (x >> 1) < o.cw) o.U[c] = im.dst[1]->at(x >> 1, cy), o.V[c] = im.dst[2]->at(x >> 1, cy);
      }
    }
  return o;
}

// Runs a member on prepared images: its final status, sources unchanged,
// nothing written outside the destination regions (this also guards the
// forms without steps, which the harness's padded steps cannot run).
void runGuarded(const Def& d, Images& im, KeliSize roi) {
  for (auto& p : im.src) p->snapshot();
  for (auto& p : im.dst) p->snapshot();
  EXPECT_EQ(run(d.m, im, roi), d.m.final(roi)) << d.m.name;
  for (auto& p : im.src) EXPECT_TRUE(p->allIntact()) << d.m.name << " source changed";
  for (auto& p : im.dst) EXPECT_TRUE(p->outsideIntact()) << d.m.name;
}

Yuv fwd(const std::string& name, Rgb img, bool aligned = false) {
  const Def& d = get(name);
  Images im = planesFor(d, {img.w, img.h}, aligned);
  putRgb(im, d.in, img);
  runGuarded(d, im, {img.w, img.h});
  return getYuv(im, d.out, img.w, img.h);
}
Rgb inv(const std::string& name, const Yuv& img) {
  const Def& d = get(name);
  Images im = planesFor(d, {img.w, img.h}, false);
  putYuv(im, d.in, img);
  runGuarded(d, im, {img.w, img.h});
  return getRgb(im, d.out, img.w, img.h);
}

std::mt19937 rng(77);
Px randPx() { return {int(rng() % 256), int(rng() % 256), int(rng() % 256)}; }
Rgb randRgb(int w, int h) {
  Rgb r{w, h, std::vector<Px>(w * h)};
  for (Px& p : r.px) p = randPx();
  return r;
}
Yuv randYuv(int w, int h, bool is420) {
  Yuv y = makeYuv(w, h, is420);
  for (auto* v : {&y.Y, &y.U, &y.V})
    for (int& s : *v) s = int(rng() % 256);
  return y;
}
// A row of `w` pixels repeating the pair p0, p1.
Rgb pairRow(Px p0, Px p1, int w) {
  Rgb r{w, 1, std::vector<Px>(w)};
  for (int x = 0; x < w; ++x) r.px[x] = x & 1 ? p1 : p0;
  return r;
}
using Pair = std::array<int, 4>;  // Y0, Y1, U, V
Pair pairOf(const Yuv& o, int x) { return {o.Y[x], o.Y[x + 1], o.U[x >> 1], o.V[x >> 1]}; }

}  // namespace

// The members the harness can place (it pads steps; the forms without steps
// need tight images and are tested below).
std::vector<Member> steppedMembers() {
  std::vector<Member> ms;
  for (const Def& d : defs())
    if (!d.tight) ms.push_back(d.m);
  return ms;
}
std::vector<Member> allMembers() {
  std::vector<Member> ms;
  for (const Def& d : defs()) ms.push_back(d.m);
  return ms;
}
KT_MEMBERS(allMembers);

TEST(RgbYuvSub, GuardsErrorsAndPaths) {
  for (const Def& d : defs())
    if (d.tight) checkErrors(d.m);
  checkAll(steppedMembers());
}

// Values of each forward pair form, reached through the body (a row of 16)
// or the pair tail (a row of 2) of the members that use it.
TEST(RgbYuvSub, PairForms) {
  struct Case {
    Px p0, p1;
    Pair P1, P2, P3, PT;
  } cases[] = {
      {{255, 255, 255}, {255, 255, 255}, {254, 254, 128, 128}, {255, 255, 128, 128}, {255, 255, 128, 128}, {255, 255, 128, 128}},
      {{255, 201, 17}, {245, 124, 206}, {195, 169, 93, 187}, {195, 169, 93, 188}, {196, 169, 92, 186}, {196, 169, 93, 187}},
      {{21, 167, 95}, {162, 155, 125}, {114, 153, 116, 91}, {114, 153, 116, 90}, {115, 153, 115, 90}, {115, 153, 116, 90}},
  };
  for (const Case& c : cases) {
    const Rgb body = pairRow(c.p0, c.p1, 16), tail = pairRow(c.p0, c.p1, 2);
    EXPECT_EQ(pairOf(fwd("RGBToYUV422_8u_C3C2R", body), 0), c.P1);
    EXPECT_EQ(pairOf(fwd("RGBToYUV422_8u_C3P3R", body), 0), c.P1);
    EXPECT_EQ(pairOf(fwd("RGBToYUV422_8u_C3P3R", body, true), 0), c.P3) << "aligned body";
    EXPECT_EQ(pairOf(fwd("RGBToYUV422_8u_C3P3R", tail, true), 0), c.P1) << "aligned pair tail";
    EXPECT_EQ(pairOf(fwd("RGBToYUV422_8u_P3R", body), 0), c.P2);
    for (const char* m : {"RGBToYUV422_8u_C3C2R", "RGBToYUV422_8u_C3P3R", "RGBToYUV422_8u_P3R"})
      EXPECT_EQ(pairOf(fwd(m, tail), 0), c.PT) << m;
  }
}

// The last pixel of an odd width: O1 (Y, U) packed, O2 and O3 planar.
TEST(RgbYuvSub, LastOddPixelForms) {
  struct Case {
    Px p;
    std::array<int, 2> O1;
    std::array<int, 3> O2, O3;
  } cases[] = {
      {{255, 0, 0}, {76, 90}, {76, 90, 255}, {76, 90, 255}},
      {{16, 128, 240}, {107, 193}, {107, 193, 48}, {107, 192, 47}},
      {{171, 51, 47}, {86, 108}, {86, 108, 202}, {86, 108, 201}},
  };
  for (const Case& c : cases) {
    Rgb row = pairRow(randPx(), randPx(), 3);
    row.px[2] = c.p;
    const Yuv packed = fwd("RGBToYUV422_8u_C3C2R", row);
    EXPECT_EQ((std::array<int, 2>{packed.Y[2], packed.U[1]}), c.O1);
    for (bool aligned : {false, true}) {
      const Yuv o = fwd("RGBToYUV422_8u_C3P3R", row, aligned);
      EXPECT_EQ((std::array<int, 3>{o.Y[2], o.U[1], o.V[1]}), c.O2);
    }
    const Yuv o3 = fwd("RGBToYUV422_8u_P3R", row);
    EXPECT_EQ((std::array<int, 3>{o3.Y[2], o3.U[1], o3.V[1]}), c.O3);
  }
}

// Values of the 4:2:0 block forms: a 2 by 2 image is all tail, a 16 by 2
// image repeating the block all body.
TEST(RgbYuvSub, BlockForms) {
  using Out = std::array<int, 6>;  // Y of the four pixels, U, V
  struct Case {
    std::array<Px, 4> px;
    Out Q1, Q2, Q3, Q4;
  } cases[] = {
      {{{{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {128, 128, 128}}},
       {76, 149, 29, 128, 128, 128}, {76, 149, 29, 128, 128, 128}, {76, 149, 29, 128, 128, 128}, {76, 149, 29, 127, 128, 128}},
      {{{{64, 249, 108}, {61, 220, 209}, {60, 151, 142}, {127, 193, 2}}},
       {177, 171, 122, 151, 108, 59}, {177, 171, 122, 151, 107, 59}, {177, 171, 122, 151, 108, 60}, {177, 170, 122, 150, 108, 60}},
      {{{{95, 23, 28}, {11, 110, 17}, {253, 226, 175}, {140, 60, 88}}},
       {45, 69, 228, 87, 112, 143}, {45, 69, 228, 87, 112, 142}, {45, 69, 228, 87, 113, 143}, {44, 69, 227, 86, 113, 143}},
  };
  auto block = [](const std::string& m, const std::array<Px, 4>& px, int w) {
    Rgb img{w, 2, std::vector<Px>(2 * w)};
    for (int x = 0; x < w; ++x) img.at(x, 0) = px[x & 1], img.at(x, 1) = px[2 + (x & 1)];
    const Yuv o = fwd(m, img);
    return Out{o.Y[0], o.Y[1], o.Y[w], o.Y[w + 1], o.U[0], o.V[0]};
  };
  for (const Case& c : cases) {
    EXPECT_EQ(block("RGBToYUV420_8u_C3P3R", c.px, 16), c.Q1);
    EXPECT_EQ(block("RGBToYUV420_8u_C3P3R", c.px, 2), c.Q2);
    EXPECT_EQ(block("RGBToYUV420_8u_P3R", c.px, 16), c.Q3);
    EXPECT_EQ(block("BGRToYUV420_8u_AC4P3R", c.px, 2), c.Q3);
    EXPECT_EQ(block("BGRToYUV420_8u_AC4P3R", c.px, 32), c.Q4);
  }
}

// Values of the inverse forms through members whose body, tail or last
// odd pixel uses them.
TEST(RgbYuvSub, InverseForms) {
  struct Case {
    std::array<int, 3> yuv;
    Px I2, I3, IA, KA, KR, K13;
  } cases[] = {
      {{255, 128, 128}, {255, 255, 255}, {255, 255, 255}, {255, 255, 255}, {255, 255, 255}, {255, 255, 255}, {255, 255, 255}},
      {{128, 170, 178}, {184, 81, 213}, {185, 81, 213}, {185, 83, 213}, {184, 82, 213}, {185, 82, 213}, {184, 82, 213}},
      {{29, 222, 48}, {0, 37, 219}, {0, 37, 220}, {0, 39, 220}, {0, 38, 220}, {0, 38, 220}, {0, 38, 219}},
  };
  auto px = [](const std::string& m, std::array<int, 3> c, int w, int h, int x) {
    Yuv img = makeYuv(w, h, m.find("420") != std::string::npos);
    for (int& s : img.Y) s = c[0];
    for (int& s : img.U) s = c[1];
    for (int& s : img.V) s = c[2];
    return inv(m, img).at(x, 0);
  };
  for (const Case& c : cases) {
    for (const char* m : {"YUV422ToRGB_8u_C2C3R", "YUV422ToRGB_8u_P3C3R", "YUV422ToRGB_8u_P3R"}) {
      EXPECT_EQ(px(m, c.yuv, 16, 1, 0), c.I2) << m << " body";
      EXPECT_EQ(px(m, c.yuv, 18, 1, 17), c.KA) << m << " tail";
    }
    EXPECT_EQ(px("YUV422ToRGB_8u_P3C3R", c.yuv, 17, 1, 16), c.KA) << "last odd pixel";
    EXPECT_EQ(px("YUV422ToRGB_8u_P3R", c.yuv, 17, 1, 16), c.K13) << "last odd pixel";
    EXPECT_EQ(px("YUV422ToRGB_8u_P3AC4R", c.yuv, 4, 1, 3), c.IA);
    EXPECT_EQ(px("YUV422ToRGB_8u_P3AC4R", c.yuv, 7, 1, 5), c.KA);
    EXPECT_EQ(px("YUV420ToRGB_8u_P3C3R", c.yuv, 2, 2, 1), c.I2);
    EXPECT_EQ(px("YUV420ToRGB_8u_P3R", c.yuv, 32, 2, 0), c.KA);
    EXPECT_EQ(px("YUV420ToRGB_8u_P3AC4R", c.yuv, 4, 2, 3), c.IA);
    EXPECT_EQ(px("YUV420ToRGB_8u_P3AC4R", c.yuv, 6, 2, 5), c.KR);
    EXPECT_EQ(px("YUV420ToBGR_8u_P3C3R", c.yuv, 2, 2, 1), c.I3);
  }
}

// Forward 4:2:2: each pair takes the body form below the body count and the
// pair form of the tail after it; a last odd pixel its own form.
TEST(RgbYuvSub, ForwardSplitByColumn) {
  for (const char* m : {"RGBToYUV422_8u_C3C2R", "RGBToYUV422_8u_C3P3R", "RGBToYUV422_8u_P3R"})
    for (bool aligned : {false, true})
      for (int w : {1, 2, 3, 15, 16, 17, 18, 31, 33, 34, 47, 64}) {
        const Rgb img = randRgb(w, 1);
        const Yuv o = fwd(m, img, aligned);
        for (int x = 0; x + 1 < w; x += 2) {
          const Px p0 = img.px[x], p1 = img.px[x + 1];
          const Pair want = pairOf(fwd(m, pairRow(p0, p1, x < (w & ~15) ? 16 : 2), aligned), 0);
          ASSERT_EQ(pairOf(o, x), want) << m << " width " << w << " column " << x;
        }
        if (w & 1) {
          const Yuv one = fwd(m, Rgb{1, 1, {img.px[w - 1]}}, aligned);
          EXPECT_EQ(o.Y[w - 1], one.Y[0]) << m << " width " << w;
          EXPECT_EQ(o.U[w >> 1], one.U[0]) << m << " width " << w;
          if (std::string(m) != "RGBToYUV422_8u_C3C2R") {
            EXPECT_EQ(o.V[w >> 1], one.V[0]) << m << " width " << w;
          }
        }
      }
}

// Forward 4:2:0: blocks below the body count by the body form, the others
// by the tail form, on both rows of every pair.
TEST(RgbYuvSub, Forward420SplitByColumn) {
  for (auto [m, body] : {std::pair{"RGBToYUV420_8u_C3P3R", 8}, std::pair{"BGRToYUV420_8u_AC4P3R", 16},
                         std::pair{"RGBToYUV420_8u_P3R", 0}})
    for (int w : {2, 7, 8, 9, 15, 16, 17, 24, 33, 40, 47}) {
      const Rgb img = randRgb(w, 4);
      const Yuv o = fwd(m, img);
      const int bodyCols = body ? (w & ~1) & ~(body - 1) : 0;
      for (int k = 0; k < 2; ++k)
        for (int x = 0; x + 1 < w; x += 2) {
          const int bw = x < bodyCols ? 32 : 2;
          Rgb b{bw, 2, std::vector<Px>(2 * bw)};
          for (int i = 0; i < bw; ++i)
            for (int r = 0; r < 2; ++r) b.at(i, r) = img.at(x + (i & 1), 2 * k + r);
          const Yuv want = fwd(m, b);
          const int c = k * o.cw + (x >> 1);
          ASSERT_EQ((Pair{o.Y[2 * k * w + x], o.Y[(2 * k + 1) * w + x + 1], o.U[c], o.V[c]}),
                    (Pair{want.Y[0], want.Y[bw + 1], want.U[0], want.V[0]}))
              << m << " width " << w << " column " << x << " pair " << k;
        }
    }
}

// Inverse: every pixel by the body form below the body count, the tail form
// above; the pixels of a pair share its chroma.
TEST(RgbYuvSub, InverseSplitByColumn) {
  struct M {
    const char* name;
    int (*body)(int w);
  } ms[] = {
      {"YUV422ToRGB_8u_C2C3R", [](int w) { return w & ~15; }},  {"YUV422ToRGB_8u_P3C3R", [](int w) { return w & ~15; }},
      {"YUV422ToRGB_8u_P3R", [](int w) { return w & ~15; }},    {"YUV422ToRGB_8u_P3AC4R", [](int w) { return w & ~3; }},
      {"YUV420ToRGB_8u_P3C3R", [](int w) { return w; }},        {"YUV420ToRGB_8u_P3R", [](int) { return 0; }},
      {"YUV420ToRGB_8u_P3AC4R", [](int w) { return w & ~3; }},  {"YUV420ToBGR_8u_P3C3R", [](int w) { return w; }},
  };
  for (const M& m : ms) {
    const bool is420 = std::string(m.name).find("420") != std::string::npos;
    for (int w : {2, 4, 6, 7, 8, 15, 16, 17, 18, 20, 33, 48}) {
      const int h = is420 ? 4 : 2, last = w & ~1;
      const Yuv img = randYuv(w, h, is420);
      const Rgb o = inv(m.name, img);
      for (int y = 0; y < (h & ~1); ++y)
        for (int x = 0; x < last; ++x) {
          const int c = (is420 ? y >> 1 : y) * img.cw + (x >> 1);
          const int bw = x < m.body(w) ? 32 : 2;  // a row of 2 is all tail in every member with a tail
          Yuv one = makeYuv(bw, 2, is420);
          for (int& s : one.Y) s = img.Y[y * w + x];
          for (int& s : one.U) s = img.U[c];
          for (int& s : one.V) s = img.V[c];
          ASSERT_EQ(o.px[y * w + x], inv(m.name, one).px[0]) << m.name << " width " << w << " column " << x;
        }
    }
  }
}

TEST(RgbYuvSub, PackedSourceWithOddWidthTakesTheVOfThePairBefore) {
  for (int w : {1, 3, 19}) {
    Yuv img = randYuv(w, 1, false);
    const Rgb o = inv("YUV422ToRGB_8u_C2C3R", img);
    // The last pixel as the first of a pair whose V is the byte before it
    // (the pair before's V, or its own U in a row of one).
    Yuv pair = makeYuv(2, 1, false);
    pair.Y = {img.Y[w - 1], 0}, pair.U = {img.U[w >> 1]}, pair.V = {w > 1 ? img.V[(w >> 1) - 1] : img.U[0]};
    EXPECT_EQ(o.px[w - 1], inv("YUV422ToRGB_8u_C2C3R", pair).px[0]) << "width " << w;
  }
}

// The aligned C3P3R routine gives other values in the body; the 4:2:0
// member gives the same bytes either way.
TEST(RgbYuvSub, AlignmentChangesOnlyThe422Body) {
  const Rgb img = randRgb(64, 4);
  const Yuv a = fwd("RGBToYUV422_8u_C3P3R", img, true), u = fwd("RGBToYUV422_8u_C3P3R", img, false);
  EXPECT_NE(a.Y, u.Y);
  EXPECT_NE(a.U, u.U);
  const Yuv a0 = fwd("RGBToYUV420_8u_C3P3R", img, true), u0 = fwd("RGBToYUV420_8u_C3P3R", img, false);
  EXPECT_EQ(a0.Y, u0.Y);
  EXPECT_EQ(a0.U, u0.U);
  EXPECT_EQ(a0.V, u0.V);
}

// 4:2:0 with an odd size: a 5 by 3 image writes 4 by 2 luma and 2 by 1
// chroma; width or height 1 writes nothing. Status 35 in all these.
TEST(RgbYuvSub, Odd420SizesTrimTheLastColumnAndRow) {
  for (const char* m : {"RGBToYUV420_8u_P3R", "RGBToYUV420_8u_C3P3R", "BGRToYUV420_8u_AC4P3R"})
    for (KeliSize roi : {KeliSize{5, 3}, KeliSize{1, 4}, KeliSize{6, 1}, KeliSize{1, 1}}) {
      const Def& d = get(m);
      Images im = planesFor(d, roi, false);
      for (auto& p : im.dst) p->fill(0xA5);
      EXPECT_EQ(run(d.m, im, roi), kelStatusOddSizeTrimmed) << m;
      for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width; ++x) {
          const bool written = x < (roi.width & ~1) && y < (roi.height & ~1);
          EXPECT_EQ(im.dst[0]->at(x, y) != 0xA5 || written, written) << m << " " << x << "," << y;
        }
    }
}

TEST(RgbYuvSub, AlphaOfFourBytePixelsIsZero) {
  for (const char* m : {"YUV422ToRGB_8u_P3AC4R", "YUV420ToRGB_8u_P3AC4R"}) {
    const Def& d = get(m);
    Images im = planesFor(d, {21, 2}, false);
    for (auto& p : im.dst) p->fill(0xEE);
    run(d.m, im, {21, 2});
    const int w = std::string(m).find("420") != std::string::npos ? 20 : 21;
    for (int x = 0; x < 21; ++x) EXPECT_EQ(im.dst[0]->at(4 * x + 3, 0), x < w ? 0 : 0xEE) << m << " " << x;
  }
}

// The forms without steps: a 4:2:2 image of 256 or more pixels with an even
// width is one long row (so the member equals its R form on one row of
// w * h pixels); otherwise, and for 4:2:0, they are the R form on tight
// steps.
TEST(RgbYuvSub, FormsWithoutSteps) {
  const std::map<std::string, std::string> rForm = {
      {"RGBToYUV422_8u_C3P3", "RGBToYUV422_8u_C3P3R"}, {"RGBToYUV422_8u_P3", "RGBToYUV422_8u_P3R"},
      {"RGBToYUV420_8u_C3P3", "RGBToYUV420_8u_C3P3R"}, {"RGBToYUV420_8u_P3", "RGBToYUV420_8u_P3R"},
      {"YUV422ToRGB_8u_P3C3", "YUV422ToRGB_8u_P3C3R"}, {"YUV422ToRGB_8u_P3", "YUV422ToRGB_8u_P3R"},
      {"YUV420ToRGB_8u_P3C3", "YUV420ToRGB_8u_P3C3R"}, {"YUV420ToRGB_8u_P3", "YUV420ToRGB_8u_P3R"}};
  for (auto& [tight, r] : rForm) {
    const bool is420 = tight.find("420") != std::string::npos, forward = tight.rfind("RGB", 0) == 0;
    for (KeliSize roi : {KeliSize{16, 16}, KeliSize{15, 17}, KeliSize{6, 43}, KeliSize{14, 18}, KeliSize{8, 31},
                         KeliSize{7, 5}}) {
      const bool longRow = !is420 && roi.width * roi.height >= 256 && !(roi.width & 1);
      const int n = roi.width * roi.height;
      const std::string what = tight + " " + std::to_string(roi.width) + "x" + std::to_string(roi.height);
      if (forward) {
        const Rgb img = randRgb(roi.width, roi.height);
        const Yuv got = fwd(tight, img);
        if (longRow) {
          const Yuv want = fwd(r, Rgb{n, 1, img.px});
          EXPECT_EQ(got.Y, want.Y) << what;
          EXPECT_EQ(got.U, want.U) << what;
          EXPECT_EQ(got.V, want.V) << what;
        } else {
          const Yuv want = fwd(r, img);
          EXPECT_EQ(got.Y, want.Y) << what;
          EXPECT_EQ(got.U, want.U) << what;
        }
      } else {
        const Yuv img = randYuv(roi.width, roi.height, is420);
        const Rgb got = inv(tight, img);
        if (longRow) {
          Yuv row = img;
          row.w = row.cw = n, row.h = row.ch = 1, row.cw = n / 2;
          EXPECT_EQ(got.px, inv(r, row).px) << what;
        } else {
          EXPECT_EQ(got.px, inv(r, img).px) << what;
        }
      }
    }
  }
}

// The harness's random steps seldom put every plane on 16-byte boundaries:
// the aligned 4:2:2 routine's vector paths are held to its scalar path here.
TEST(RgbYuvSub, AlignedRoutineOnEveryPath) {
  for (int w : {16, 47, 64, 100, 130}) {
    const Rgb img = randRgb(w, 3);
    Yuv ref{};
    for (kel::Isa isa : paths()) {
      IsaScope scope(isa);
      const Yuv o = fwd("RGBToYUV422_8u_C3P3R", img, true);
      if (isa == kel::Isa::Scalar) {
        ref = o;
        continue;
      }
      EXPECT_EQ(o.Y, ref.Y) << "path " << int(isa) << " width " << w;
      EXPECT_EQ(o.U, ref.U) << "path " << int(isa) << " width " << w;
      EXPECT_EQ(o.V, ref.V) << "path " << int(isa) << " width " << w;
    }
  }
}

// Below 256 pixels the 4:2:2 form without steps works row by row, and a
// tight image whose rows and planes all sit on 16-byte boundaries takes the
// aligned routine like the R form.
TEST(RgbYuvSub, SmallTightImageOnBoundariesTakesTheAlignedRoutine) {
  const Rgb img = randRgb(32, 7);
  const Yuv tight = fwd("RGBToYUV422_8u_C3P3", img, true);
  EXPECT_EQ(tight.Y, fwd("RGBToYUV422_8u_C3P3R", img, true).Y);
  EXPECT_EQ(tight.U, fwd("RGBToYUV422_8u_C3P3R", img, true).U);
  EXPECT_NE(tight.Y, fwd("RGBToYUV422_8u_C3P3R", img, false).Y);
}
