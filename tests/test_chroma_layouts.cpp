// 4:2:2, 4:2:0 and 4:1:1 layout conversions.
//
// Every member is described by its two sides (layout and sampling), its trim
// and its minimum; the expected bytes come from a model that reads the source
// as luma and chroma grids, applies the chroma rule between the two samplings
// and writes the grids in the destination layout.
#include <cstring>
#include <utility>

#include "chroma/layout_rows.h"
#include "harness.h"

using namespace kt;

namespace {

enum class Lay { P3, P3CrCb, P2, C2YCbCr, C2YCrCb, C2CbYCr };
enum class Samp { S422, S420, S411 };
struct Side {
  Lay lay;
  Samp s;
};

// ---- argument forms ----------------------------------------------------------------
using FC2P3 = KelStatus (*)(const Kel8u*, int, Kel8u**, const int*, KeliSize);
using FP3C2 = KelStatus (*)(const Kel8u* const*, const int*, Kel8u*, int, KeliSize);
using FC2C2 = KelStatus (*)(const Kel8u*, int, Kel8u*, int, KeliSize);
using FP2P3 = KelStatus (*)(const Kel8u*, int, const Kel8u*, int, Kel8u**, const int*, KeliSize);
using FP3P2 = KelStatus (*)(const Kel8u* const*, const int*, Kel8u*, int, Kel8u*, int, KeliSize);
using FP3P3 = KelStatus (*)(const Kel8u* const*, const int*, Kel8u**, const int*, KeliSize);
using FC2P2 = KelStatus (*)(const Kel8u*, int, Kel8u*, int, Kel8u*, int, KeliSize);
using FP2C2 = KelStatus (*)(const Kel8u*, int, const Kel8u*, int, Kel8u*, int, KeliSize);

// Pointers are asked for in argument order (the harness numbers them so).
Invoke inv(FC2P3 f) {
  return [f](Call& c) { const Kel8u* s = c.s(0); Kel8u** d = c.dArr(3); return f(s, c.ss(0), d, c.dsArr(3), c.roi()); };
}
Invoke inv(FP3C2 f) {
  return [f](Call& c) { auto s = c.sArr(3); Kel8u* d = c.d(0); return f(s, c.ssArr(3), d, c.ds(0), c.roi()); };
}
Invoke inv(FC2C2 f) {
  return [f](Call& c) { const Kel8u* s = c.s(0); Kel8u* d = c.d(0); return f(s, c.ss(0), d, c.ds(0), c.roi()); };
}
Invoke inv(FP2P3 f) {
  return [f](Call& c) {
    const Kel8u* y = c.s(0);
    const Kel8u* uv = c.s(1);
    Kel8u** d = c.dArr(3);
    return f(y, c.ss(0), uv, c.ss(1), d, c.dsArr(3), c.roi());
  };
}
Invoke inv(FP3P2 f) {
  return [f](Call& c) {
    auto s = c.sArr(3);
    Kel8u* y = c.d(0);
    Kel8u* uv = c.d(1);
    return f(s, c.ssArr(3), y, c.ds(0), uv, c.ds(1), c.roi());
  };
}
Invoke inv(FP3P3 f) {
  return [f](Call& c) { auto s = c.sArr(3); Kel8u** d = c.dArr(3); return f(s, c.ssArr(3), d, c.dsArr(3), c.roi()); };
}
Invoke inv(FC2P2 f) {
  return [f](Call& c) {
    const Kel8u* s = c.s(0);
    Kel8u* y = c.d(0);
    Kel8u* uv = c.d(1);
    return f(s, c.ss(0), y, c.ds(0), uv, c.ds(1), c.roi());
  };
}
Invoke inv(FP2C2 f) {
  return [f](Call& c) {
    const Kel8u* y = c.s(0);
    const Kel8u* uv = c.s(1);
    Kel8u* d = c.d(0);
    return f(y, c.ss(0), uv, c.ss(1), d, c.ds(0), c.roi());
  };
}

struct Desc {
  const char* name;
  Side from, to;
  int W, H, minW, minH;  // minH 0: the height is not examined
  Invoke call;
};

constexpr Side kP3_422{Lay::P3, Samp::S422}, kP3_420{Lay::P3, Samp::S420}, kP3_411{Lay::P3, Samp::S411};
constexpr Side kP2_420{Lay::P2, Samp::S420}, kP2_411{Lay::P2, Samp::S411};
constexpr Side kYCbCr{Lay::C2YCbCr, Samp::S422}, kYCrCb{Lay::C2YCrCb, Samp::S422}, kCbYCr{Lay::C2CbYCr, Samp::S422};

const std::vector<Desc>& descs() {
  static const std::vector<Desc> v = {
      {"keliCbYCr422ToYCbCr422_8u_C2P3R", kCbYCr, kP3_422, 2, 1, 2, 0, inv(keliCbYCr422ToYCbCr422_8u_C2P3R)},
      {"keliYCbCr422_8u_C2P3R", kYCbCr, kP3_422, 2, 1, 2, 1, inv(keliYCbCr422_8u_C2P3R)},
      {"keliYCrCb422ToYCbCr422_8u_C2P3R", kYCrCb, kP3_422, 2, 1, 2, 0, inv(keliYCrCb422ToYCbCr422_8u_C2P3R)},
      {"keliYCbCr422_8u_P3C2R", kP3_422, kYCbCr, 2, 1, 2, 1, inv(keliYCbCr422_8u_P3C2R)},
      {"keliYCbCr422ToYCrCb422_8u_C2R", kYCbCr, kYCrCb, 2, 1, 2, 0, inv(keliYCbCr422ToYCrCb422_8u_C2R)},
      {"keliYCbCr422ToYCrCb422_8u_P3C2R", kP3_422, kYCrCb, 2, 1, 2, 0, inv(keliYCbCr422ToYCrCb422_8u_P3C2R)},
      {"keliYCbCr420_8u_P2P3R", kP2_420, kP3_420, 2, 2, 2, 2, inv(keliYCbCr420_8u_P2P3R)},
      {"keliYCbCr420_8u_P3P2R", kP3_420, kP2_420, 2, 2, 2, 2, inv(keliYCbCr420_8u_P3P2R)},
      {"keliYCbCr411_8u_P2P3R", kP2_411, kP3_411, 4, 1, 4, 0, inv(keliYCbCr411_8u_P2P3R)},
      {"keliYCbCr411_8u_P3P2R", kP3_411, kP2_411, 4, 1, 4, 0, inv(keliYCbCr411_8u_P3P2R)},
      {"keliCbYCr422ToYCbCr420_8u_C2P3R", kCbYCr, kP3_420, 2, 2, 2, 2, inv(keliCbYCr422ToYCbCr420_8u_C2P3R)},
      {"keliYCbCr422ToYCbCr420_8u_C2P3R", kYCbCr, kP3_420, 2, 2, 2, 2, inv(keliYCbCr422ToYCbCr420_8u_C2P3R)},
      {"keliYCrCb422ToYCbCr420_8u_C2P3R", kYCrCb, kP3_420, 2, 2, 2, 2, inv(keliYCrCb422ToYCbCr420_8u_C2P3R)},
      {"keliYCbCr422ToYCbCr420_8u_P3R", kP3_422, kP3_420, 2, 2, 2, 2, inv(keliYCbCr422ToYCbCr420_8u_P3R)},
      {"keliYCbCr422ToYCbCr420_8u_P3P2R", kP3_422, kP2_420, 2, 2, 2, 2, inv(keliYCbCr422ToYCbCr420_8u_P3P2R)},
      {"keliCbYCr422ToYCbCr411_8u_C2P3R", kCbYCr, kP3_411, 4, 1, 4, 0, inv(keliCbYCr422ToYCbCr411_8u_C2P3R)},
      {"keliYCbCr422ToYCbCr411_8u_C2P3R", kYCbCr, kP3_411, 4, 1, 4, 0, inv(keliYCbCr422ToYCbCr411_8u_C2P3R)},
      {"keliYCrCb422ToYCbCr411_8u_C2P3R", kYCrCb, kP3_411, 4, 1, 4, 0, inv(keliYCrCb422ToYCbCr411_8u_C2P3R)},
      {"keliYCbCr422ToYCbCr411_8u_C2P2R", kYCbCr, kP2_411, 4, 1, 4, 0, inv(keliYCbCr422ToYCbCr411_8u_C2P2R)},
      {"keliYCbCr422ToYCbCr411_8u_P3R", kP3_422, kP3_411, 4, 1, 4, 0, inv(keliYCbCr422ToYCbCr411_8u_P3R)},
      {"keliYCbCr422ToYCbCr411_8u_P3P2R", kP3_422, kP2_411, 4, 1, 4, 0, inv(keliYCbCr422ToYCbCr411_8u_P3P2R)},
      {"keliYCbCr420ToYCbCr422_8u_P3R", kP3_420, kP3_422, 2, 2, 2, 2, inv(keliYCbCr420ToYCbCr422_8u_P3R)},
      {"keliYCbCr420ToYCbCr422_8u_P2P3R", kP2_420, kP3_422, 2, 2, 2, 2, inv(keliYCbCr420ToYCbCr422_8u_P2P3R)},
      {"keliYCrCb420ToYCbCr422_8u_P3R", {Lay::P3CrCb, Samp::S420}, kP3_422, 2, 2, 2, 2, inv(keliYCrCb420ToYCbCr422_8u_P3R)},
      {"keliYCbCr411ToYCbCr422_8u_P3R", kP3_411, kP3_422, 4, 1, 4, 0, inv(keliYCbCr411ToYCbCr422_8u_P3R)},
      {"keliYCbCr411ToYCrCb422_8u_P3R", kP3_411, {Lay::P3CrCb, Samp::S422}, 4, 1, 4, 0, inv(keliYCbCr411ToYCrCb422_8u_P3R)},
      {"keliYCbCr411ToYCbCr422_8u_P2P3R", kP2_411, kP3_422, 4, 1, 4, 0, inv(keliYCbCr411ToYCbCr422_8u_P2P3R)},
      {"keliYCbCr411ToYCbCr422_8u_P3C2R", kP3_411, kYCbCr, 4, 1, 4, 0, inv(keliYCbCr411ToYCbCr422_8u_P3C2R)},
      {"keliYCbCr411ToYCrCb422_8u_P3C2R", kP3_411, kYCrCb, 4, 1, 4, 0, inv(keliYCbCr411ToYCrCb422_8u_P3C2R)},
      {"keliYCbCr411ToYCbCr422_8u_P2C2R", kP2_411, kYCbCr, 4, 1, 4, 0, inv(keliYCbCr411ToYCbCr422_8u_P2C2R)},
      {"keliYCbCr411ToYCbCr420_8u_P3R", kP3_411, kP3_420, 4, 2, 4, 2, inv(keliYCbCr411ToYCbCr420_8u_P3R)},
      {"keliYCbCr411ToYCbCr420_8u_P2P3R", kP2_411, kP3_420, 4, 2, 4, 2, inv(keliYCbCr411ToYCbCr420_8u_P2P3R)},
      {"keliYCbCr411ToYCrCb420_8u_P2P3R", kP2_411, {Lay::P3CrCb, Samp::S420}, 4, 2, 4, 2,
       inv(keliYCbCr411ToYCrCb420_8u_P2P3R)},
      {"keliYCbCr411ToYCbCr420_8u_P3P2R", kP3_411, kP2_420, 4, 2, 4, 2, inv(keliYCbCr411ToYCbCr420_8u_P3P2R)},
      {"keliYCbCr420ToYCbCr411_8u_P2P3R", kP2_420, kP3_411, 4, 2, 4, 2, inv(keliYCbCr420ToYCbCr411_8u_P2P3R)},
      {"keliYCbCr420ToYCbCr411_8u_P3P2R", kP3_420, kP2_411, 4, 2, 4, 2, inv(keliYCbCr420ToYCbCr411_8u_P3P2R)},
      {"keliYCrCb420ToYCbCr411_8u_P3P2R", {Lay::P3CrCb, Samp::S420}, kP2_411, 4, 2, 4, 2,
       inv(keliYCrCb420ToYCbCr411_8u_P3P2R)},
  };
  return v;
}

// ---- the model -----------------------------------------------------------------------
int xShift(Samp s) { return s == Samp::S411 ? 2 : 1; }
int yShift(Samp s) { return s == Samp::S420 ? 1 : 0; }

std::vector<Geom> geoms(Side sd) {
  const int xs = xShift(sd.s), ys = yShift(sd.s);
  switch (sd.lay) {
    case Lay::P3:
    case Lay::P3CrCb: return {full(1), sub(1, xs, ys), sub(1, xs, ys)};
    case Lay::P2: return {full(1), sub(2, xs, ys)};
    default: return {full(2)};
  }
}

Member member(const Desc& d) {
  Member m{d.name, geoms(d.from), geoms(d.to), d.call};
  m.order = Order::B;
  m.minW = d.minW;
  m.minH = d.minH ? d.minH : 1;
  m.heightUnchecked = d.minH == 0;
  return m;
}

// Component c (0 luma, 1 Cb, 2 Cr) at row r, column i of its grid.
uint8_t& at(std::vector<Guarded*>& pl, Lay lay, int c, int r, int i) {
  auto quad = [&](int y0, int cb, int cr) -> uint8_t& {
    if (c == 0) return pl[0]->at(4 * (i >> 1) + y0 + 2 * (i & 1), r);
    return pl[0]->at(4 * i + (c == 1 ? cb : cr), r);
  };
  switch (lay) {
    case Lay::P3: return pl[c]->at(i, r);
    case Lay::P3CrCb: return pl[c == 0 ? 0 : 3 - c]->at(i, r);
    case Lay::P2: return c == 0 ? pl[0]->at(i, r) : pl[1]->at(2 * i + c - 1, r);
    case Lay::C2YCbCr: return quad(0, 1, 3);
    case Lay::C2YCrCb: return quad(0, 3, 1);
    case Lay::C2CbYCr: return quad(1, 0, 2);
  }
  throw 0;
}

// The source grid position of destination chroma sample (r, i): the chroma
// rules between two samplings.
std::pair<int, int> fromGrid(Samp a, Samp b, int r, int i) {
  using S = Samp;
  if (a == b) return {r, i};
  if (a == S::S422 && b == S::S420) return {2 * r, i};                // even rows
  if (a == S::S422 && b == S::S411) return {r, 2 * i};                // even columns
  if (a == S::S420 && b == S::S422) return {r >> 1, i};               // row repeat
  if (a == S::S411 && b == S::S422) return {r, i >> 1};               // column repeat
  if (a == S::S411 && b == S::S420) return {2 * r + (i & 1), i >> 1};  // row fold
  return {r >> 1, 2 * i + (r & 1)};                                   // row unfold
}

// Writes into `want` what the member must write, reading `src`.
void model(const Desc& d, KeliSize roi, std::vector<Guarded*> src, std::vector<Guarded*> want) {
  const int w = roi.width & ~(d.W - 1), h = roi.height & ~(d.H - 1);
  for (int r = 0; r < h; ++r)
    for (int x = 0; x < w; ++x) at(want, d.to.lay, 0, r, x) = at(src, d.from.lay, 0, r, x);
  const int cw = w >> xShift(d.to.s), ch = h >> yShift(d.to.s);
  for (int c = 1; c < 3; ++c)
    for (int r = 0; r < ch; ++r)
      for (int i = 0; i < cw; ++i) {
        const auto g = fromGrid(d.from.s, d.to.s, r, i);
        at(want, d.to.lay, c, r, i) = at(src, d.from.lay, c, g.first, g.second);
      }
}

// Runs the member and holds every destination byte of the region to the model.
void expectModel(const Desc& d, KeliSize roi, Images& got, Images& want) {
  const Member m = member(d);
  ASSERT_EQ(run(m, got, roi), kelStatusOk) << d.name;
  model(d, roi, got.srcPtrs(), want.dstPtrs());
  for (size_t k = 0; k < got.dst.size(); ++k) {
    ASSERT_TRUE(got.dst[k]->region() == want.dst[k]->region())
        << d.name << " plane " << k << " at " << roi.width << "x" << roi.height;
    ASSERT_TRUE(got.dst[k]->outsideIntact()) << d.name << " plane " << k;
  }
}

}  // namespace

std::vector<Member> layoutMembers() {
  std::vector<Member> ms;
  for (const Desc& d : descs()) ms.push_back(member(d));
  return ms;
}
KT_MEMBERS(layoutMembers);

TEST(ChromaLayouts, GuardsErrorsAndPaths) {
  checkAll(layoutMembers());
}

// Small and odd sizes around the trim, and rows longer than a few vector
// blocks, at random offsets and tight, padded or negative steps (tight rows
// of the trimmed width go as one long row).
TEST(ChromaLayouts, EveryByteFollowsTheChromaRule) {
  const KeliSize sizes[] = {{4, 2}, {5, 5}, {7, 3}, {8, 4}, {13, 6}, {33, 2}, {66, 3}, {130, 4}, {257, 5}, {300, 2}};
  uint32_t seed = 1;
  for (const Desc& d : descs())
    for (KeliSize roi : sizes)
      for (StepMode mode : {StepMode::Tight, StepMode::Padded, StepMode::Negative}) {
        const Member m = member(d);
        const int align = static_cast<int>(seed % 16);
        Images got = makeImages(m, roi, mode, align, seed), want = makeImages(m, roi, mode, align, seed);
        expectModel(d, roi, got, want);
        ++seed;
      }
}

// The streamed forms of the row moves (taken on large images, see
// layouts.cpp) give the bytes of the plain forms, on every path, for rows
// that start on 16-byte boundaries as the members ensure.
template <class Plain, class Streamed>
void expectSameMove(const char* what) {
  alignas(64) static uint8_t src[4][4096], a[4][4096], b[4][4096];
  std::mt19937 g(17);
  for (auto& row : src)
    for (auto& x : row) x = static_cast<uint8_t>(g());
  const kel::RowsIO ioA{{src[0], src[1], src[2], src[3]}, {a[0], a[1], a[2], a[3]}};
  const kel::RowsIO ioB{{src[0], src[1], src[2], src[3]}, {b[0], b[1], b[2], b[3]}};
  for (kel::Isa isa : paths()) {
    IsaScope scope(isa);
    for (int n : {0, 1, 7, 8, 15, 16, 17, 31, 32, 33, 63, 64, 65, 100, 127, 128, 129, 255, 300, 480}) {
      std::memset(a, 0x55, sizeof a), std::memset(b, 0x55, sizeof b);
      kel::mover<Plain>()(ioA, n);
      kel::mover<Streamed>()(ioB, n);
      kel::storeFence();
      ASSERT_EQ(std::memcmp(a, b, sizeof a), 0) << what << " n " << n << " path " << static_cast<int>(isa);
    }
  }
}

TEST(ChromaLayouts, StreamedRowMovesGiveTheSameBytes) {
  using namespace kel::lrow;
  using kel::kCbYCr, kel::kYCbCr, kel::kYCrCb;
  expectSameMove<Copy, CopyNt>("Copy");
  expectSameMove<P3ToC2<kYCbCr>, P3ToC2<kYCbCr, true>>("P3ToC2 YCbCr");
  expectSameMove<P3ToC2<kYCrCb>, P3ToC2<kYCrCb, true>>("P3ToC2 YCrCb");
  expectSameMove<P3ToC2<kCbYCr>, P3ToC2<kCbYCr, true>>("P3ToC2 CbYCr");
  expectSameMove<P2ToC2<kYCbCr>, P2ToC2<kYCbCr, true>>("P2ToC2 YCbCr");
  expectSameMove<P2ToC2<kCbYCr>, P2ToC2<kCbYCr, true>>("P2ToC2 CbYCr");
  expectSameMove<PermC2<0>, PermC2<0, true>>("PermC2 0");
  expectSameMove<PermC2<1>, PermC2<1, true>>("PermC2 1");
  expectSameMove<C2ToP2Even<kYCbCr>, C2ToP2Even<kYCbCr, true>>("C2ToP2Even");
  expectSameMove<P3ToC2Dup<kYCbCr>, P3ToC2Dup<kYCbCr, true>>("P3ToC2Dup YCbCr");
  expectSameMove<P3ToC2Dup<kYCrCb>, P3ToC2Dup<kYCrCb, true>>("P3ToC2Dup YCrCb");
  expectSameMove<P2ToC2Dup<kYCbCr>, P2ToC2Dup<kYCbCr, true>>("P2ToC2Dup YCbCr");
}

TEST(ChromaLayouts, EdgeCases) {
  struct Case {
    const char* name;
    KeliSize roi;
    KelStatus want;
  } cases[] = {
      {"keliYCbCr422ToYCbCr411_8u_P3R", {8, 0}, kelStatusOk},      // height not examined: nothing done
      {"keliYCbCr422ToYCbCr411_8u_P3R", {8, -3}, kelStatusOk},
      {"keliYCbCr422_8u_C2P3R", {8, 0}, kelStatusBadSize},         // the one C2 -> P3 member with a height minimum
      {"keliYCbCr420ToYCbCr422_8u_P3R", {8, 1}, kelStatusBadSize},
      {"keliYCbCr411ToYCbCr422_8u_P3R", {3, 4}, kelStatusBadSize},
      {"keliYCbCr411ToYCbCr420_8u_P3R", {4, 1}, kelStatusBadSize},
      {"keliYCbCr422ToYCrCb422_8u_C2R", {1, 4}, kelStatusBadSize},
  };
  for (const Case& c : cases) {
    const Desc* d = nullptr;
    for (const Desc& e : descs())
      if (std::string(e.name) == c.name) d = &e;
    ASSERT_TRUE(d) << c.name;
    const Member m = member(*d);
    Images im = makeImages(m, {8, 4}, StepMode::Padded, 3, 9);
    for (auto& p : im.dst) p->snapshot();
    EXPECT_EQ(run(m, im, c.roi), c.want) << c.name;
    for (auto& p : im.dst) EXPECT_TRUE(p->allIntact()) << c.name << " wrote with nothing to do";
  }
  // A null array of steps counts as a null pointer in this member.
  Kel8u buf[64] = {};
  Kel8u* planes3[3] = {buf, buf + 16, buf + 32};
  EXPECT_EQ(keliYCbCr422_8u_C2P3R(buf, 16, planes3, nullptr, {4, 2}), kelStatusNullPointer);
}

// 4:1:1 -> 4:2:0 -> 4:1:1 gives the bytes back; 4:2:2 -> 4:2:0 -> 4:2:2
// gives each row pair its upper row.
TEST(ChromaLayouts, RoundTrips) {
  const int w = 44, h = 6;  // trimmed to itself in every sampling
  std::mt19937 g(3);
  auto plane = [&](int bytes) {
    std::vector<Kel8u> p(bytes);
    for (auto& b : p) b = static_cast<Kel8u>(g());
    return p;
  };
  std::vector<Kel8u> y = plane(w * h), cb = plane(w / 4 * h), cr = plane(w / 4 * h);
  const Kel8u* s411[3] = {y.data(), cb.data(), cr.data()};
  const int st411[3] = {w, w / 4, w / 4};
  std::vector<Kel8u> y2(w * h), nv(w * h / 2), y3(w * h), cb3(w / 4 * h), cr3(w / 4 * h);
  ASSERT_EQ(keliYCbCr411ToYCbCr420_8u_P3P2R(s411, st411, y2.data(), w, nv.data(), w, {w, h}), kelStatusOk);
  Kel8u* d411[3] = {y3.data(), cb3.data(), cr3.data()};
  ASSERT_EQ(keliYCbCr420ToYCbCr411_8u_P2P3R(y2.data(), w, nv.data(), w, d411, st411, {w, h}), kelStatusOk);
  EXPECT_TRUE(y3 == y && cb3 == cb && cr3 == cr);

  std::vector<Kel8u> u422 = plane(w / 2 * h), v422 = plane(w / 2 * h);
  const Kel8u* s422[3] = {y.data(), u422.data(), v422.data()};
  const int st422[3] = {w, w / 2, w / 2}, st420[3] = {w, w / 2, w / 2};
  std::vector<Kel8u> u420(w / 2 * h / 2), v420(w / 2 * h / 2), u4(w / 2 * h), v4(w / 2 * h);
  Kel8u* d420[3] = {y2.data(), u420.data(), v420.data()};
  ASSERT_EQ(keliYCbCr422ToYCbCr420_8u_P3R(s422, st422, d420, st420, {w, h}), kelStatusOk);
  const Kel8u* s420[3] = {y2.data(), u420.data(), v420.data()};
  Kel8u* d422[3] = {y3.data(), u4.data(), v4.data()};
  ASSERT_EQ(keliYCbCr420ToYCbCr422_8u_P3R(s420, st420, d422, st422, {w, h}), kelStatusOk);
  EXPECT_TRUE(y3 == y);
  for (int r = 0; r < h; ++r)
    for (int i = 0; i < w / 2; ++i) {
      EXPECT_EQ(u4[r * w / 2 + i], u422[(r & ~1) * w / 2 + i]);
      EXPECT_EQ(v4[r * w / 2 + i], v422[(r & ~1) * w / 2 + i]);
    }
}
