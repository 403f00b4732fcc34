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
  add("keliYCbCr420ToYCbCr422_8u_P2C2R", {full(1), pairs420()}, {full(2)}, [](Call& c) {
    return keliYCbCr420ToYCbCr422_8u_P2C2R(c.s(0), c.ss(0), c.s(1), c.ss(1), c.d(0), c.ds(0), c.roi());
  });
  add("keliYCbCr420ToCbYCr422_8u_P2C2R", {full(1), pairs420()}, {full(2)}, [](Call& c) {
    return keliYCbCr420ToCbYCr422_8u_P2C2R(c.s(0), c.ss(0), c.s(1), c.ss(1), c.d(0), c.ds(0), c.roi());
  });
  add("keliYCbCr420ToYCrCb420_8u_P2P3R", {full(1), pairs420()}, {full(1), half420(), half420()}, [](Call& c) {
    const Kel8u *y = c.s(0), *cc = c.s(1);
    return keliYCbCr420ToYCrCb420_8u_P2P3R(y, c.ss(0), cc, c.ss(1), c.dArr(3), c.dsArr(3), c.roi());
  }, 2, Order::A);
  add("keliYCbCr422ToYCbCr420_8u_C2P2R", {full(2)}, {full(1), pairs420()}, [](Call& c) {
    return keliYCbCr422ToYCbCr420_8u_C2P2R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.d(1), c.ds(1), c.roi());
  });
  add("keliCbYCr422ToYCbCr420_8u_C2P2R", {full(2)}, {full(1), pairs420()}, [](Call& c) {
    return keliCbYCr422ToYCbCr420_8u_C2P2R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.d(1), c.ds(1), c.roi());
  });
  add("keliYCbCr422ToYCrCb420_8u_C2P3R", {full(2)}, {full(1), half420(), half420()}, [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliYCbCr422ToYCrCb420_8u_C2P3R(s, c.ss(0), c.dArr(3), c.dsArr(3), c.roi());
  });
  add("keliCbYCr422ToYCrCb420_8u_C2P3R", {full(2)}, {full(1), half420(), half420()}, [](Call& c) {
    const Kel8u* s = c.s(0);
    return keliCbYCr422ToYCrCb420_8u_C2P3R(s, c.ss(0), c.dArr(3), c.dsArr(3), c.roi());
  });
  add("keliYCbCr422ToCbYCr422_8u_C2R", {full(2)}, {full(2)}, [](Call& c) {
    return keliYCbCr422ToCbYCr422_8u_C2R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi());
  }, 1);
  add("keliCbYCr422ToYCbCr422_8u_C2R", {full(2)}, {full(2)}, [](Call& c) {
    return keliCbYCr422ToYCbCr422_8u_C2R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi());
  }, 1);
  add("keliYCrCb420ToYCbCr420_8u_P3P2R", {full(1), half420(), half420()}, {full(1), pairs420()}, [](Call& c) {
    auto s = c.sArr(3);
    return keliYCrCb420ToYCbCr420_8u_P3P2R(s, c.ssArr(3), c.d(0), c.ds(0), c.d(1), c.ds(1), c.roi());
  });
  add("keliYCrCb420ToYCbCr422_8u_P3C2R", {full(1), half420(), half420()}, {full(2)}, [](Call& c) {
    auto s = c.sArr(3);
    return keliYCrCb420ToYCbCr422_8u_P3C2R(s, c.ssArr(3), c.d(0), c.ds(0), c.roi());
  });
  add("keliYCrCb420ToCbYCr422_8u_P3C2R", {full(1), half420(), half420()}, {full(2)}, [](Call& c) {
    auto s = c.sArr(3);
    return keliYCrCb420ToCbYCr422_8u_P3C2R(s, c.ssArr(3), c.d(0), c.ds(0), c.roi());
  });
  // The deinterlacers, whole and as a slice of a picture (the harness's
  // region is the picture; the slice's pointers and height are inside it).
  for (const SliceCase& sc : kSlices) {
    const int t = sc.top, b = sc.below;
    const uint32_t f = sc.flags;
    auto slice = [t, b](KeliSize r) {  // saturated: the fuzzer passes extreme heights
      return KeliSize{r.width, int(std::max<int64_t>(INT32_MIN, int64_t{r.height} - t - b))};
    };
    // The fuzzer's flags: this slice's own, or values that name no slice. A
    // slice of another kind reads and writes rows that this one's place in
    // the picture does not have (a middle slice writes two rows above).
    auto flagsOf = [f](Call& c) {
      const uint32_t v = uint32_t(c.param(int32_t(f)));
      const bool names = (v & kWhole) == kWhole || v == kFirst || v == kMiddle || v == kLast;
      return names ? f : v;
    };
    add(std::string("keliYCbCr420ToYCbCr422_Filter_8u_P2C2R ") + sc.name, {full(1), pairs420()}, {full(2)}, [=](Call& c) {
      const Kel8u *y = c.s(0), *cc = c.s(1);
      Kel8u* d = c.d(0);
      return keliYCbCr420ToYCbCr422_Filter_8u_P2C2R(down(y, c.ss(0), t), c.ss(0), down(cc, c.ss(1), t / 2), c.ss(1),
                                                    down(d, c.ds(0), t), c.ds(0), slice(c.roi()), flagsOf(c));
    }, sc.minH);
    add(std::string("keliYCbCr420ToYCrCb420_Filter_8u_P2P3R ") + sc.name, {full(1), pairs420()},
        {full(1), half420(), half420()}, [=](Call& c) {
          const Kel8u *y = c.s(0), *cc = c.s(1);
          Kel8u** d = c.dArr(3);
          Kel8u* dd[3];
          int ds[3];
          for (int i = 0; i < 3; ++i) ds[i] = c.ds(i), dd[i] = d ? down(d[i], ds[i], i ? t / 2 : t) : nullptr;
          return keliYCbCr420ToYCrCb420_Filter_8u_P2P3R(down(y, c.ss(0), t), c.ss(0), down(cc, c.ss(1), t / 2),
                                                        c.ss(1), d ? dd : nullptr, ds, slice(c.roi()),
                                                        flagsOf(c));
        }, sc.minH, Order::A);
  }
  return v;
}

}  // namespace

KT_MEMBERS(members);
TEST(Nv12, GuardsErrorsAndPaths) { checkAll(members()); }

// The deinterlacers' body rows need pictures taller than the generic checks use.
TEST(Nv12, DeinterlacerPathsOnTallPictures) {
  for (const Member& m : members())
    if (m.name.find("_Filter_") != std::string::npos) checkPaths(m, 12, 300, 40);
}

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
using At = std::function<Kel8u&(int plane, int x, int r)>;
// Reads (Get) or writes the samples of a picture of even size in layout l.
template <bool Get>
void walk(Lay l, const At& at, Pic& pc) {
  auto mv = [](Kel8u& b, int& s) { Get ? void(s = b) : void(b = static_cast<Kel8u>(s)); };
  for (int r = 0; r < pc.h; ++r)
    for (int x = 0; x < pc.w; ++x) {
      const int i = x / 2, k = is422(l) ? r : r / 2;
      const bool chroma = (r % 2 == 0 || is422(l)) && x % 2 == 0;
      if (is422(l)) {
        const int o = l == Lay::UYVY;
        mv(at(0, 2 * x + o, r), pc.Y(x, r));
        if (chroma) mv(at(0, 4 * i + 1 - o, r), pc.Cb(i, k)), mv(at(0, 4 * i + 3 - o, r), pc.Cr(i, k));
        continue;
      }
      mv(at(0, x, r), pc.Y(x, r));
      if (!chroma) continue;
      if (l == Lay::NV12) mv(at(1, 2 * i, k), pc.Cb(i, k)), mv(at(1, 2 * i + 1, k), pc.Cr(i, k));
      else if (l == Lay::YV12) mv(at(2, i, k), pc.Cb(i, k)), mv(at(1, i, k), pc.Cr(i, k));
      else mv(at(1, i, k), pc.Cb(i, k)), mv(at(2, i, k), pc.Cr(i, k));
    }
}
// The picture on the other chroma grid: 4:2:0 rows repeated, or the even rows of 4:2:2.
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

// The plain members, in the order of members(), with their layouts.
const std::pair<Lay, Lay> kMoves[] = {
    {Lay::NV12, Lay::YUY2}, {Lay::NV12, Lay::UYVY}, {Lay::NV12, Lay::Pair3}, {Lay::YUY2, Lay::NV12},
    {Lay::UYVY, Lay::NV12}, {Lay::YUY2, Lay::YV12}, {Lay::UYVY, Lay::YV12}, {Lay::YUY2, Lay::UYVY},
    {Lay::UYVY, Lay::YUY2}, {Lay::YV12, Lay::NV12}, {Lay::YV12, Lay::YUY2}, {Lay::YV12, Lay::UYVY}};

}  // namespace

// Luma unchanged, chroma moved, repeated or taken from the upper row of each
// pair; the odd last row and column that trimming leaves are untouched.
// Padded and tight rows (tight ones of an even size go as one long row).
TEST(Nv12, MovesPlaceEverySampleOnTheTrimmedSize) {
  const std::vector<Member> ms = members();
  for (int m = 0; m < 12; ++m)
    for (KeliSize roi : {KeliSize{2, 2}, KeliSize{5, 5}, KeliSize{38, 4}, KeliSize{97, 3}, KeliSize{130, 6}})
      for (StepMode mode : {StepMode::Padded, StepMode::Tight}) {
        const auto [from, to] = kMoves[m];
        const int w = roi.width & ~1, h = roi.height & ~1;
        Images im = makeImages(ms[m], roi, mode, 3, 77 + m);
        auto at = [](std::vector<std::unique_ptr<Guarded>>& side) {
          return At([&side](int p, int x, int r) -> Kel8u& { return side[p]->at(x, r); });
        };
        Pic pc{w, h, is422(from) ? h : h / 2, std::vector<int>(w * h), {}, {}};
        pc.cb.assign(pc.crows * (w / 2), 0), pc.cr = pc.cb;
        walk<true>(from, at(im.src), pc);
        // The expected bytes: the destination as it was, with the picture written.
        Images want = makeImages(ms[m], roi, mode, 3, 77 + m);
        Pic out = regrid(pc, is422(to));
        walk<false>(to, at(want.dst), out);
        // The 4:2:2 swaps keep every row, an odd last one too.
        if (is422(from) && is422(to) && roi.height & 1)
          for (int x = 0; x < 2 * w; ++x) want.dst[0]->at(x, h) = im.src[0]->at(x ^ 1, h);
        ASSERT_EQ(run(ms[m], im, roi), kelStatusOk) << ms[m].name;
        for (size_t k = 0; k < im.dst.size(); ++k) {
          EXPECT_TRUE(im.dst[k]->region() == want.dst[k]->region())
              << ms[m].name << " plane " << k << " at " << roi.width << "x" << roi.height;
          EXPECT_TRUE(im.dst[k]->outsideIntact()) << ms[m].name << " plane " << k;
        }
      }
}

// ---- the deinterlacers -------------------------------------------------------
namespace {

int av(int a, int b) { return (a + b + 1) >> 1; }
// The forms by letter: luma B blend, C centre, E edge, F floor4, f flooredge,
// P plus4, p plusedge (edge forms take d as their one neighbour); chroma
// A cavg, H half, K the first row unchanged.
int form(char f, int u, int c, int d) {
  switch (f) {
    case 'B': return av(av(c, u), av(c, d));
    case 'C': return av(av(u, d), c);
    case 'E': return av(c, av(c, d));
    case 'F': return (u + 2 * c + d) >> 2;
    case 'f': return (3 * c + d) >> 2;
    case 'P': return std::min((u + 2 * c + d + 4) >> 2, 255);
    case 'p': return std::min((3 * c + d + 4) >> 2, 255);
    case 'A': return av(u, d);
    case 'H': return (u + d) >> 1;
    default: return u;
  }
}

// An NV12 picture and both destinations, with unequal chroma plane steps.
struct Field {
  static constexpr int kYs = 96, kCs = 100, kDs = 184, kPs[3] = {96, 50, 56};
  int w, rows;
  std::vector<Kel8u> y, c, yuy2, p[3];
  Field(int w_, int rows_, std::mt19937& rng) : w(w_), rows(rows_) {
    auto fill = [&](std::vector<Kel8u>& v, size_t n) {
      v.resize(n);
      for (auto& b : v) b = static_cast<Kel8u>(rng());
    };
    fill(y, kYs * rows), fill(c, kCs * rows / 2), fill(yuy2, kDs * rows);
    for (int i = 0; i < 3; ++i) fill(p[i], kPs[i] * (i ? rows / 2 : rows));
  }
  void flat(int v) { std::fill(y.begin(), y.end(), v), std::fill(c.begin(), c.end(), v); }
  // Runs a member on the slice of height h whose first row is `top`.
  KelStatus run(bool toYuy2, int top, int h, uint32_t flags) {
    const Kel8u* sy = y.data() + kYs * top;
    const Kel8u* sc = c.data() + kCs * (top / 2);
    if (toYuy2)
      return keliYCbCr420ToYCbCr422_Filter_8u_P2C2R(sy, kYs, sc, kCs, yuy2.data() + kDs * top, kDs, {w, h}, flags);
    Kel8u* d[3] = {p[0].data() + kPs[0] * top, p[1].data() + kPs[1] * (top / 2), p[2].data() + kPs[2] * (top / 2)};
    return keliYCbCr420ToYCrCb420_Filter_8u_P2P3R(sy, kYs, sc, kCs, d, kPs, {w, h}, flags);
  }
  int Y(int r, int x) const { return y[kYs * r + x]; }
  int C(int r, int x) const { return c[kCs * r + x]; }
};

// Destination rows relative to the slice: luma row r from rows u, r, d; chroma
// row j (the YUY2 row, or the plane row) from chroma rows a, b. Columns below
// `body` take the first form, the others the second.
struct LRule {
  int r, u, d;
  char fb, ft;
  int body;
};
struct CRule {
  int j, a, b;
  char fb, ft;
  int body;
};
struct Plan {
  const char* name;
  bool yuy2;
  uint32_t flags;
  std::vector<LRule> l;
  std::vector<CRule> c;
};
std::vector<LRule> inner(int r0, int r1, char fb, char ft, int body) {
  std::vector<LRule> v;
  for (int r = r0; r <= r1; ++r) v.push_back({r, r - 1, r + 1, fb, ft, body});
  return v;
}
// Chroma of YUY2 rows r0..r1 (their pair's rows), or plane rows j0..j1.
std::vector<CRule> pairs(int r0, int r1, char fb, char ft, int body, bool byRow) {
  std::vector<CRule> v;
  for (int r = r0; r <= r1; ++r) {
    const int k = byRow ? (r >> 1) : r;
    v.push_back({r, k, k + 1, fb, ft, body});
  }
  return v;
}
template <class T>
std::vector<T> cat(std::vector<T> a, const std::vector<T>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// Width 90, slice height 8: luma bodies 64 (w & ~31), 80 (w & ~15), 88 (w & ~7),
// chroma plane body 32 of 45 pairs.
std::vector<Plan> plans() {
  const auto midY = inner(-2, 5, 'B', 'F', 64);
  const auto midYc = pairs(-2, 5, 'A', 'H', 64, true);
  return {
      {"yuy2 whole", true, kWhole,
       cat(cat({{0, 1, 1, 'p', 'p', 0}, {1, 0, 2, 'P', 'P', 0}}, inner(2, 5, 'B', 'P', 64)),
           {{6, 5, 7, 'P', 'P', 0}, {7, 6, 6, 'p', 'p', 0}}),
       cat(cat({{0, 0, 1, 'H', 'H', 0}, {1, 0, 1, 'H', 'H', 0}}, pairs(2, 5, 'A', 'H', 64, true)),
           {{6, 2, 3, 'H', 'H', 0}, {7, 2, 3, 'H', 'H', 0}})},
      {"yuy2 first", true, kFirst, cat({{0, 1, 1, 'E', 'f', 88}, {1, 0, 2, 'B', 'F', 88}}, inner(2, 5, 'B', 'F', 64)),
       cat({{0, 0, 1, 'A', 'H', 88}, {1, 0, 1, 'A', 'H', 88}}, pairs(2, 5, 'A', 'H', 64, true))},
      {"yuy2 middle", true, kMiddle, midY, midYc},
      {"yuy2 last", true, kLast, cat(midY, {{6, 5, 7, 'B', 'F', 88}, {7, 6, 6, 'E', 'f', 88}}),
       cat(midYc, {{6, 2, 3, 'A', 'H', 88}, {7, 2, 3, 'A', 'H', 88}})},
      {"planes whole", false, kWhole,
       cat(cat({{0, 1, 1, 'f', 'f', 0}}, inner(1, 6, 'B', 'F', 80)), {{7, 6, 6, 'f', 'f', 0}}),
       cat(pairs(0, 2, 'A', 'H', 32, false), {{3, 2, 3, 'H', 'H', 0}})},
      {"planes first", false, kFirst, cat({{0, 1, 1, 'E', 'f', 80}}, inner(1, 5, 'C', 'F', 80)),
       pairs(0, 2, 'A', 'H', 32, false)},
      {"planes middle", false, kMiddle, inner(-2, 5, 'B', 'F', 80), pairs(-1, 2, 'A', 'H', 32, false)},
      {"planes last", false, kLast, cat(inner(-2, 6, 'F', 'F', 0), {{7, 6, 6, 'f', 'f', 0}}),
       cat(pairs(-1, 2, 'H', 'H', 0, false), {{3, 2, 3, 'H', 'H', 0}})},
  };
}

}  // namespace

// Every written row takes the forms, neighbours, chroma rows and body columns
// of its routine; the middle and last slices complete the rows above their
// pointers; no other byte changes.
TEST(Nv12Deinterlace, RowsFormsAndBodyColumnsOfEveryRoutine) {
  for (const Plan& pl : plans()) {
    for (kel::Isa isa : paths()) {
      std::mt19937 rng(17);
      Field f(90, 24, rng);
      const int top = pl.flags == kMiddle || pl.flags == kLast ? 8 : 0;
      Field want = f;
      for (const LRule& l : pl.l)
        for (int x = 0; x < 90; ++x) {
          const int v = form(x < l.body ? l.fb : l.ft, f.Y(top + l.u, x), f.Y(top + l.r, x), f.Y(top + l.d, x));
          if (pl.yuy2) want.yuy2[Field::kDs * (top + l.r) + 2 * x] = v;
          else want.p[0][Field::kPs[0] * (top + l.r) + x] = v;
        }
      for (const CRule& c : pl.c)
        for (int x = 0; x < 90; ++x) {
          const int a = f.C(top / 2 + c.a, x), b = f.C(top / 2 + c.b, x);
          if (pl.yuy2) {
            want.yuy2[Field::kDs * (top + c.j) + 2 * x + 1] = form(x < c.body ? c.fb : c.ft, a, 0, b);
          } else {
            const int i = x / 2, k = 1 + x % 2;
            want.p[k][Field::kPs[k] * (top / 2 + c.j) + i] = form(i < c.body ? c.fb : c.ft, a, 0, b);
          }
        }
      IsaScope scope(isa);
      ASSERT_EQ(f.run(pl.yuy2, top, 8, pl.flags), kelStatusOk);
      EXPECT_TRUE(f.yuy2 == want.yuy2) << pl.name << " path " << int(isa);
      for (int k = 0; k < 3; ++k) EXPECT_TRUE(f.p[k] == want.p[k]) << pl.name << " plane " << k << " path " << int(isa);
    }
  }
}

// Flat pictures: where the plus forms stand a flat 100 becomes 101; 255 stays.
TEST(Nv12Deinterlace, FlatPictures) {
  struct Case {
    bool yuy2;
    uint32_t flags;
    int h, v;
    std::function<int(int r, int x)> want;  // luma at row r, column x of the slice
  } cases[] = {
      {true, kWhole, 8, 100, [](int r, int x) { return r >= 2 && r <= 5 && x < 64 ? 100 : 101; }},
      {true, kWhole, 4, 100, [](int, int) { return 101; }},
      {true, kWhole, 2, 100, [](int, int) { return 101; }},
      {true, kWhole, 8, 255, [](int, int) { return 255; }},
      {true, kFirst, 8, 100, [](int, int) { return 100; }},
      {true, kLast, 8, 100, [](int, int) { return 100; }},
      {false, kWhole, 8, 100, [](int, int) { return 100; }},
      {false, kWhole, 4, 100, [](int, int) { return 100; }},
      {false, kWhole, 2, 100, [](int, int) { return 101; }},
      {false, kWhole, 2, 255, [](int, int) { return 255; }},
      {false, kLast, 8, 100, [](int, int) { return 100; }},
  };
  std::mt19937 rng(2);
  for (const Case& c : cases) {
    Field f(70, 16, rng);
    f.flat(c.v);
    const int top = c.flags == kLast ? 8 : 0, rows = c.flags == kLast ? 10 : c.flags == kFirst ? 6 : c.h;
    ASSERT_EQ(f.run(c.yuy2, top, c.h, c.flags), kelStatusOk);
    for (int r = 0; r < rows; ++r)
      for (int x = 0; x < 70; ++x) {
        const int rr = c.flags == kLast ? r - 2 : r;
        const int got = c.yuy2 ? f.yuy2[Field::kDs * (top + rr) + 2 * x] : f.p[0][Field::kPs[0] * (top + rr) + x];
        ASSERT_EQ(got, c.want(rr, x)) << "value " << c.v << " height " << c.h << " flags " << c.flags << " row " << rr
                                       << " column " << x;
        if (c.yuy2) ASSERT_EQ(f.yuy2[Field::kDs * (top + rr) + 2 * x + 1], c.v);
      }
  }
}

// Height 2, whole picture: the one chroma row serves both rows unaveraged.
TEST(Nv12Deinterlace, HeightTwoKeepsTheChromaRow) {
  std::mt19937 rng(6);
  Field f(40, 4, rng);
  ASSERT_EQ(f.run(true, 0, 2, kWhole), kelStatusOk);
  ASSERT_EQ(f.run(false, 0, 2, kWhole), kelStatusOk);
  for (int x = 0; x < 40; ++x) {
    EXPECT_EQ(f.yuy2[2 * x + 1], f.C(0, x));
    EXPECT_EQ(f.yuy2[Field::kDs + 2 * x + 1], f.C(0, x));
    EXPECT_EQ(f.p[1 + x % 2][x / 2], f.C(0, x));
  }
}

// Only the three single flags and the values holding all three bits do work.
TEST(Nv12Deinterlace, SliceFlags) {
  struct Case {
    uint32_t flags;
    bool whole;  // else nothing written
  } cases[] = {{0, false},  {2, false},  {3, false},  {5, false},          {8, false},
               {17, false}, {20, false}, {21, true},  {23, true}, {0xFFFFFFFFu, true}};
  std::mt19937 rng(9);
  for (bool yuy2 : {true, false}) {
    Field ref(50, 8, rng);
    Field want = ref;
    ASSERT_EQ(want.run(yuy2, 0, 8, kWhole), kelStatusOk);
    for (const Case& c : cases) {
      Field f = ref;
      ASSERT_EQ(f.run(yuy2, 0, 8, c.flags), kelStatusOk) << c.flags;
      const Field& w = c.whole ? want : ref;
      EXPECT_TRUE(f.yuy2 == w.yuy2 && f.p[0] == w.p[0] && f.p[1] == w.p[1] && f.p[2] == w.p[2]) << c.flags;
    }
  }
}

// A picture converted in slices from the top down agrees with the whole
// picture where their routines share forms: the blend rows in their body
// columns (YUY2, whose tails differ) or in all columns (planes), and the
// chroma that the first and middle slices average.
TEST(Nv12Deinterlace, SlicesInOrderAgreeWithTheWholePictureWhereTheirFormsMeet) {
  std::mt19937 rng(12);
  Field whole(90, 24, rng);
  Field sliced = whole;
  ASSERT_EQ(whole.run(true, 0, 24, kWhole), kelStatusOk);
  ASSERT_EQ(whole.run(false, 0, 24, kWhole), kelStatusOk);
  for (bool yuy2 : {true, false}) {
    ASSERT_EQ(sliced.run(yuy2, 0, 8, kFirst), kelStatusOk);
    ASSERT_EQ(sliced.run(yuy2, 8, 8, kMiddle), kelStatusOk);
    ASSERT_EQ(sliced.run(yuy2, 16, 8, kLast), kelStatusOk);
  }
  for (int r = 2; r <= 21; ++r)
    for (int x = 0; x < 90; ++x) {
      const int i = Field::kDs * r + 2 * x;
      if (x < 64) EXPECT_EQ(sliced.yuy2[i], whole.yuy2[i]) << "yuy2 luma row " << r << " column " << x;
      EXPECT_EQ(sliced.yuy2[i + 1], whole.yuy2[i + 1]) << "yuy2 chroma row " << r << " column " << x;
    }
  for (int r = 6; r <= 13; ++r)
    EXPECT_TRUE(std::equal(&sliced.p[0][Field::kPs[0] * r], &sliced.p[0][Field::kPs[0] * r + 90],
                           &whole.p[0][Field::kPs[0] * r]))
        << "luma row " << r;
  for (int k = 1; k < 3; ++k)
    for (int j : {0, 1, 2, 3, 4, 5, 6, 11})
      EXPECT_TRUE(std::equal(&sliced.p[k][Field::kPs[k] * j], &sliced.p[k][Field::kPs[k] * j + 45],
                             &whole.p[k][Field::kPs[k] * j]))
          << "plane " << k << " row " << j;
}
