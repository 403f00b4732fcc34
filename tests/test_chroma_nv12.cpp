// NV12, YV12, YUY2 and UYVY converters and the NV12 deinterlacers.
#include <algorithm>
#include <functional>

#include "harness.h"

using namespace kt;

namespace {

// A pointer moved down `rows` rows; a null pointer stays null.
template <class T>
T* down(T* p, int step, int rows) {
  return p ? reinterpret_cast<T*>(reinterpret_cast<uintptr_t>(p) + static_cast<ptrdiff_t>(step) * rows) : p;
}

Geom pairs420() { return sub(2, 1, 1); }  // NV12 chroma: (w >> 1) pairs by h >> 1
Geom half420() { return sub(1, 1, 1); }

// Slices of one picture: the slice starts `top` luma rows down and leaves
// `below` rows of the picture under it.
enum Flags : uint32_t { kFirst = 1, kMiddle = 4, kLast = 16, kWhole = 21 };
struct SliceCase {
  const char* name;
  uint32_t flags;
  int top, below, minH;
};
const SliceCase kSlices[] = {
    {"whole", kWhole, 0, 0, 2}, {"first", kFirst, 0, 2, 4}, {"middle", kMiddle, 4, 0, 6}, {"last", kLast, 4, 0, 6}};

std::vector<Member> members() {
  std::vector<Member> v;
  auto add = [&](std::string name, std::vector<Geom> s, std::vector<Geom> d, Invoke f, int minH = 2,
                 Order o = Order::B) {
    Member m{name, s, d, f, o, 2, minH};
    v.push_back(m);
  };
  add("NV12ToYUY2", {full(1), pairs420()}, {full(2)}, [](Call& c) {
    return keliYCbCr420ToYCbCr422_8u_P2C2R(c.s(0), c.ss(0), c.s(1), c.ss(1), c.d(0), c.ds(0), c.roi());
  });
  add("NV12ToUYVY", {full(1), pairs420()}, {full(2)}, [](Call& c) {
    return keliYCbCr420ToCbYCr422_8u_P2C2R(c.s(0), c.ss(0), c.s(1), c.ss(1), c.d(0), c.ds(0), c.roi());
  });
  add("NV12ToP3", {full(1), pairs420()}, {full(1), half420(), half420()}, [](Call& c) {
    const Kel8u *y = c.s(0), *cc = c.s(1);
    return keliYCbCr420ToYCrCb420_8u_P2P3R(y, c.ss(0), cc, c.ss(1), c.dArr(3), c.dsArr(3), c.roi());
  }, 2, Order::A);
  add("YUY2ToNV12", {full(2)}, {full(1), pairs420()}, [](Call& c) {
    return keliYCbCr422ToYCbCr420_8u_C2P2R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.d(1), c.ds(1), c.roi());
  });
  add("UYVYToNV12", {full(2)}, {full(1), pairs420()}, [](Call& c) {
    return keliCbYCr422ToYCbCr420_8u_C2P2R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.d(1), c.ds(1), c.roi());
  });
  add("YUY2ToYV12", {full(2)}, {full(1), half420(), half420()}, [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliYCbCr422ToYCrCb420_8u_C2P3R(s, c.ss(0), c.dArr(3), c.dsArr(3), c.roi());
  });
  add("UYVYToYV12", {full(2)}, {full(1), half420(), half420()}, [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliCbYCr422ToYCrCb420_8u_C2P3R(s, c.ss(0), c.dArr(3), c.dsArr(3), c.roi());
  });
  add("YUY2ToUYVY", {full(2)}, {full(2)}, [](Call& c) {
    return keliYCbCr422ToCbYCr422_8u_C2R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi());
  }, 1);
  add("UYVYToYUY2", {full(2)}, {full(2)}, [](Call& c) {
    return keliCbYCr422ToYCbCr422_8u_C2R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi());
  }, 1);
  add("YV12ToNV12", {full(1), half420(), half420()}, {full(1), pairs420()}, [](Call& c) {
    auto s = c.sArr(3);
    return keliYCrCb420ToYCbCr420_8u_P3P2R(s, c.ssArr(3), c.d(0), c.ds(0), c.d(1), c.ds(1), c.roi());
  });
  add("YV12ToYUY2", {full(1), half420(), half420()}, {full(2)}, [](Call& c) {
    auto s = c.sArr(3);
    return keliYCrCb420ToYCbCr422_8u_P3C2R(s, c.ssArr(3), c.d(0), c.ds(0), c.roi());
  });
  add("YV12ToUYVY", {full(1), half420(), half420()}, {full(2)}, [](Call& c) {
    auto s = c.sArr(3);
    return keliYCrCb420ToCbYCr422_8u_P3C2R(s, c.ssArr(3), c.d(0), c.ds(0), c.roi());
  });
  // The deinterlacers, whole and as a slice of a picture (the harness's
  // region is the picture; the slice's pointers and height are inside it).
  for (const SliceCase& sc : kSlices) {
    const int t = sc.top, b = sc.below;
    const uint32_t f = sc.flags;
    auto slice = [t, b](KeliSize r) { return KeliSize{r.width, r.height - t - b}; };
    add(std::string("Filter_P2C2R ") + sc.name, {full(1), pairs420()}, {full(2)}, [=](Call& c) {
      const Kel8u *y = c.s(0), *cc = c.s(1);
      Kel8u* d = c.d(0);
      return keliYCbCr420ToYCbCr422_Filter_8u_P2C2R(down(y, c.ss(0), t), c.ss(0), down(cc, c.ss(1), t / 2), c.ss(1),
                                                    down(d, c.ds(0), t), c.ds(0), slice(c.roi()), f);
    }, sc.minH);
    add(std::string("Filter_P2P3R ") + sc.name, {full(1), pairs420()},
        {full(1), half420(), half420()}, [=](Call& c) {
          const Kel8u *y = c.s(0), *cc = c.s(1);
          Kel8u** d = c.dArr(3);
          Kel8u* dd[3];
          int ds[3];
          for (int i = 0; i < 3; ++i) ds[i] = c.ds(i), dd[i] = d ? down(d[i], ds[i], i ? t / 2 : t) : nullptr;
          return keliYCbCr420ToYCrCb420_Filter_8u_P2P3R(down(y, c.ss(0), t), c.ss(0), down(cc, c.ss(1), t / 2),
                                                        c.ss(1), d ? dd : nullptr, ds, slice(c.roi()), f);
        }, sc.minH, Order::A);
  }
  return v;
}

}  // namespace

TEST(Nv12, GuardsErrorsAndPaths) { checkAll(members()); }

// The plane-pointer elements of the NV12 to planes members are checked after
// a size below 1 and before a size below 2.
TEST(Nv12, PlanesMembersCheckElementsBetweenTheSizes) {
  Kel8u buf[64] = {};
  const int st[3] = {8, 4, 4};
  Kel8u* nullPlane[3] = {buf, nullptr, buf};
  struct Case {
    KeliSize roi;
    KelStatus want;
  } cases[] = {{{0, 4}, kelStatusBadSize}, {{1, 4}, kelStatusNullPointer}, {{4, 1}, kelStatusNullPointer}};
  for (const Case& c : cases) {
    EXPECT_EQ(keliYCbCr420ToYCrCb420_8u_P2P3R(buf, 8, buf, 8, nullPlane, st, c.roi), c.want);
    EXPECT_EQ(keliYCbCr420ToYCrCb420_Filter_8u_P2P3R(buf, 8, buf, 8, nullPlane, st, c.roi, kWhole), c.want);
  }
}

// ---- the plain members: every sample lands where the layouts say ----------
namespace {

enum class Lay { NV12, YV12, Pair3, YUY2, UYVY };  // Pair3: planes Y, first, second byte
bool is422(Lay l) { return l == Lay::YUY2 || l == Lay::UYVY; }

// Samples of a picture: luma and a chroma grid of `crows` rows.
struct Pic {
  int w, h, crows;
  std::vector<int> y, cb, cr;
  int& Y(int x, int r) { return y[r * w + x]; }
  int& Cb(int i, int k) { return cb[k * (w / 2) + i]; }
  int& Cr(int i, int k) { return cr[k * (w / 2) + i]; }
};
// Planes of one image, each with its own step (row bytes + 3).
struct Img {
  std::vector<std::vector<Kel8u>> p;
  std::vector<int> step;
  Kel8u& at(int plane, int x, int r) { return p[plane][r * step[plane] + x]; }
};
Img alloc(Lay l, int w, int h, std::mt19937& rng) {
  std::vector<std::pair<int, int>> dims;
  if (is422(l)) dims = {{2 * w, h}};
  else if (l == Lay::NV12) dims = {{w, h}, {(w >> 1) * 2, h >> 1}};
  else dims = {{w, h}, {w >> 1, h >> 1}, {w >> 1, h >> 1}};
  Img im;
  for (auto [bytes, rows] : dims) {
    im.step.push_back(bytes + 3);
    im.p.emplace_back((bytes + 3) * std::max(rows, 1));
    for (auto& b : im.p.back()) b = static_cast<Kel8u>(rng());
  }
  return im;
}
// Reads (Get) or writes the samples of a picture of even size w x h.
template <bool Get>
void walk(Lay l, Img& im, Pic& pc) {
  auto mv = [](Kel8u& b, int& s) { Get ? void(s = b) : void(b = static_cast<Kel8u>(s)); };
  for (int r = 0; r < pc.h; ++r)
    for (int x = 0; x < pc.w; ++x) {
      const int i = x / 2, k = is422(l) ? r : r / 2;
      const bool chroma = (r % 2 == 0 || is422(l)) && x % 2 == 0;
      if (is422(l)) {
        const int o = l == Lay::UYVY;
        mv(im.at(0, 2 * x + o, r), pc.Y(x, r));
        if (chroma) mv(im.at(0, 4 * i + 1 - o, r), pc.Cb(i, k)), mv(im.at(0, 4 * i + 3 - o, r), pc.Cr(i, k));
        continue;
      }
      mv(im.at(0, x, r), pc.Y(x, r));
      if (!chroma) continue;
      if (l == Lay::NV12) mv(im.at(1, 2 * i, k), pc.Cb(i, k)), mv(im.at(1, 2 * i + 1, k), pc.Cr(i, k));
      else if (l == Lay::YV12) mv(im.at(2, i, k), pc.Cb(i, k)), mv(im.at(1, i, k), pc.Cr(i, k));
      else mv(im.at(1, i, k), pc.Cb(i, k)), mv(im.at(2, i, k), pc.Cr(i, k));
    }
}
// The picture on the chroma grid of `to`: 4:2:0 rows repeated, or even rows of 4:2:2.
Pic regrid(const Pic& s, bool to422) {
  Pic d = s;
  d.crows = to422 ? s.h : s.h / 2;
  d.cb.assign(d.crows * (s.w / 2), 0), d.cr = d.cb;
  for (int k = 0; k < d.crows; ++k)
    for (int i = 0; i < s.w / 2; ++i) {
      const int sk = to422 == (s.crows == s.h) ? k : to422 ? k / 2 : 2 * k;
      d.cb[k * (s.w / 2) + i] = s.cb[sk * (s.w / 2) + i];
      d.cr[k * (s.w / 2) + i] = s.cr[sk * (s.w / 2) + i];
    }
  return d;
}

struct MoveCase {
  const char* name;
  Lay from, to;
  std::function<KelStatus(Img&, Img&, KeliSize)> f;
};
const MoveCase kMoves[] = {
    {"NV12ToYUY2", Lay::NV12, Lay::YUY2,
     [](Img& s, Img& d, KeliSize r) {
       return keliYCbCr420ToYCbCr422_8u_P2C2R(s.p[0].data(), s.step[0], s.p[1].data(), s.step[1], d.p[0].data(),
                                              d.step[0], r);
     }},
    {"NV12ToUYVY", Lay::NV12, Lay::UYVY,
     [](Img& s, Img& d, KeliSize r) {
       return keliYCbCr420ToCbYCr422_8u_P2C2R(s.p[0].data(), s.step[0], s.p[1].data(), s.step[1], d.p[0].data(),
                                              d.step[0], r);
     }},
    {"NV12ToP3", Lay::NV12, Lay::Pair3,
     [](Img& s, Img& d, KeliSize r) {
       Kel8u* dp[3] = {d.p[0].data(), d.p[1].data(), d.p[2].data()};
       return keliYCbCr420ToYCrCb420_8u_P2P3R(s.p[0].data(), s.step[0], s.p[1].data(), s.step[1], dp, d.step.data(), r);
     }},
    {"YUY2ToNV12", Lay::YUY2, Lay::NV12,
     [](Img& s, Img& d, KeliSize r) {
       return keliYCbCr422ToYCbCr420_8u_C2P2R(s.p[0].data(), s.step[0], d.p[0].data(), d.step[0], d.p[1].data(),
                                              d.step[1], r);
     }},
    {"UYVYToNV12", Lay::UYVY, Lay::NV12,
     [](Img& s, Img& d, KeliSize r) {
       return keliCbYCr422ToYCbCr420_8u_C2P2R(s.p[0].data(), s.step[0], d.p[0].data(), d.step[0], d.p[1].data(),
                                              d.step[1], r);
     }},
    {"YUY2ToYV12", Lay::YUY2, Lay::YV12,
     [](Img& s, Img& d, KeliSize r) {
       Kel8u* dp[3] = {d.p[0].data(), d.p[1].data(), d.p[2].data()};
       return keliYCbCr422ToYCrCb420_8u_C2P3R(s.p[0].data(), s.step[0], dp, d.step.data(), r);
     }},
    {"UYVYToYV12", Lay::UYVY, Lay::YV12,
     [](Img& s, Img& d, KeliSize r) {
       Kel8u* dp[3] = {d.p[0].data(), d.p[1].data(), d.p[2].data()};
       return keliCbYCr422ToYCrCb420_8u_C2P3R(s.p[0].data(), s.step[0], dp, d.step.data(), r);
     }},
    {"YUY2ToUYVY", Lay::YUY2, Lay::UYVY,
     [](Img& s, Img& d, KeliSize r) {
       return keliYCbCr422ToCbYCr422_8u_C2R(s.p[0].data(), s.step[0], d.p[0].data(), d.step[0], r);
     }},
    {"UYVYToYUY2", Lay::UYVY, Lay::YUY2,
     [](Img& s, Img& d, KeliSize r) {
       return keliCbYCr422ToYCbCr422_8u_C2R(s.p[0].data(), s.step[0], d.p[0].data(), d.step[0], r);
     }},
    {"YV12ToNV12", Lay::YV12, Lay::NV12,
     [](Img& s, Img& d, KeliSize r) {
       const Kel8u* sp[3] = {s.p[0].data(), s.p[1].data(), s.p[2].data()};
       return keliYCrCb420ToYCbCr420_8u_P3P2R(sp, s.step.data(), d.p[0].data(), d.step[0], d.p[1].data(), d.step[1], r);
     }},
    {"YV12ToYUY2", Lay::YV12, Lay::YUY2,
     [](Img& s, Img& d, KeliSize r) {
       const Kel8u* sp[3] = {s.p[0].data(), s.p[1].data(), s.p[2].data()};
       return keliYCrCb420ToYCbCr422_8u_P3C2R(sp, s.step.data(), d.p[0].data(), d.step[0], r);
     }},
    {"YV12ToUYVY", Lay::YV12, Lay::UYVY,
     [](Img& s, Img& d, KeliSize r) {
       const Kel8u* sp[3] = {s.p[0].data(), s.p[1].data(), s.p[2].data()};
       return keliYCrCb420ToCbYCr422_8u_P3C2R(sp, s.step.data(), d.p[0].data(), d.step[0], r);
     }},
};

}  // namespace

// Luma unchanged, chroma moved, repeated or taken from the upper row of each
// pair; the trimmed odd last row and column, and the step padding, untouched.
TEST(Nv12, MovesPlaceEverySampleOnTheTrimmedSize) {
  std::mt19937 rng(21);
  for (const MoveCase& mc : kMoves)
    for (KeliSize roi : {KeliSize{2, 2}, KeliSize{5, 5}, KeliSize{38, 4}, KeliSize{97, 3}, KeliSize{130, 6}}) {
      const int w = roi.width & ~1, h = roi.height & ~1;
      Img s = alloc(mc.from, roi.width, roi.height, rng), d = alloc(mc.to, roi.width, roi.height, rng);
      Pic pc{w, h, is422(mc.from) ? h : h / 2, std::vector<int>(w * h), {}, {}};
      pc.cb.assign(pc.crows * (w / 2), 0), pc.cr = pc.cb;
      walk<true>(mc.from, s, pc);
      Pic out = regrid(pc, is422(mc.to));
      Img want = d;
      walk<false>(mc.to, want, out);
      // The 4:2:2 swaps keep every row, the odd last one too.
      if (is422(mc.from) && is422(mc.to) && roi.height & 1)
        for (int x = 0; x < 2 * w; ++x) want.at(0, x, h) = s.at(0, x ^ 1, h);
      ASSERT_EQ(mc.f(s, d, roi), kelStatusOk) << mc.name;
      for (size_t k = 0; k < d.p.size(); ++k)
        EXPECT_TRUE(d.p[k] == want.p[k]) << mc.name << " plane " << k << " at " << roi.width << "x" << roi.height;
    }
}

// NV12 -> planes -> NV12 exchanges the chroma planes on the way: the planes
// member keeps the pair order, the NV12 member reads YV12 order.
TEST(Nv12, PairOrderOfThePlanesMember) {
  std::mt19937 rng(4);
  const KeliSize roi{34, 4};
  Img nv = alloc(Lay::NV12, 34, 4, rng), p3 = alloc(Lay::Pair3, 34, 4, rng), back = alloc(Lay::NV12, 34, 4, rng);
  ASSERT_EQ(kMoves[2].f(nv, p3, roi), kelStatusOk);
  ASSERT_EQ(kMoves[9].f(p3, back, roi), kelStatusOk);
  for (int k = 0; k < 2; ++k)
    for (int i = 0; i < 17; ++i) {
      EXPECT_EQ(back.at(1, 2 * i, k), nv.at(1, 2 * i + 1, k));
      EXPECT_EQ(back.at(1, 2 * i + 1, k), nv.at(1, 2 * i, k));
    }
}
