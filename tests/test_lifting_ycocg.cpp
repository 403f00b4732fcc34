// YCoCg lifting transforms: 26 members, plain and reversible.
#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <utility>

#include "harness.h"

using namespace kt;

namespace {

template <class P, class Q>
using FwdFn = KelStatus (*)(const P*, int, Q* [3], int, KeliSize);
template <class Q, class P>
using InvFn = KelStatus (*)(const Q* const[3], int, P*, int, KeliSize);
template <class Q, class P>
using InvFnA = KelStatus (*)(const Q* const[3], int, P*, int, KeliSize, P);

template <class P, class Q>
Member base(const char* name, std::vector<Geom> src, std::vector<Geom> dst, Invoke call) {
  Member m{name, std::move(src), std::move(dst), std::move(call)};
  m.order = Order::F;
  m.sampleBytes = int(std::max(sizeof(P), sizeof(Q)));
  return m;
}
std::vector<Geom> planes3(int bytes) { return {full(bytes), full(bytes), full(bytes)}; }

template <class P, class Q>
Member fwd(const char* name, int ch, FwdFn<P, Q> f) {
  Member m = base<P, Q>(name, {full(ch * int(sizeof(P)))}, planes3(sizeof(Q)), [f](Call& c) {
    return f(c.sT<P>(0), c.ss(0), reinterpret_cast<Q**>(c.dArr(3)), c.ds(0), c.roi());
  });
  m.sharedDstStep = true;
  return m;
}
template <class Q, class P>
const Q* const* srcPlanes(Call& c) {
  return reinterpret_cast<const Q* const*>(c.sArr(3));
}
template <class Q, class P>
Member inv(const char* name, InvFn<Q, P> f) {
  Member m = base<P, Q>(name, planes3(sizeof(Q)), {full(3 * int(sizeof(P)))},
                        [f](Call& c) { return f(srcPlanes<Q, P>(c), c.ss(0), c.dT<P>(0), c.ds(0), c.roi()); });
  m.sharedSrcStep = true;
  return m;
}
template <class Q, class P>
Member invA(const char* name, InvFnA<Q, P> f) {
  Member m = base<P, Q>(name, planes3(sizeof(Q)), {full(4 * int(sizeof(P)))},
                        [f](Call& c) { return f(srcPlanes<Q, P>(c), c.ss(0), c.dT<P>(0), c.ds(0), c.roi(), P(-91)); });
  m.sharedSrcStep = true;
  return m;
}

#define KT_F(n, P, Q, ch) fwd<P, Q>(#n, ch, n)
#define KT_I(n, Q, P) inv<Q, P>(#n, n)
#define KT_IA(n, Q, P) invA<Q, P>(#n, n)

std::vector<Member> members() {
  return {KT_F(keliBGRToYCoCg_8u16s_C3P3R, Kel8u, Kel16s, 3),
          KT_F(keliBGRToYCoCg_8u16s_C4P3R, Kel8u, Kel16s, 4),
          KT_F(keliBGRToYCoCg_Rev_8u16s_C3P3R, Kel8u, Kel16s, 3),
          KT_F(keliBGRToYCoCg_Rev_8u16s_C4P3R, Kel8u, Kel16s, 4),
          KT_I(keliYCoCgToBGR_16s8u_P3C3R, Kel16s, Kel8u),
          KT_IA(keliYCoCgToBGR_16s8u_P3C4R, Kel16s, Kel8u),
          KT_I(keliYCoCgToBGR_Rev_16s8u_P3C3R, Kel16s, Kel8u),
          KT_IA(keliYCoCgToBGR_Rev_16s8u_P3C4R, Kel16s, Kel8u),
          KT_F(keliSBGRToYCoCg_16s_C3P3R, Kel16s, Kel16s, 3),
          KT_F(keliSBGRToYCoCg_16s_C4P3R, Kel16s, Kel16s, 4),
          KT_F(keliSBGRToYCoCg_Rev_16s_C3P3R, Kel16s, Kel16s, 3),
          KT_F(keliSBGRToYCoCg_Rev_16s_C4P3R, Kel16s, Kel16s, 4),
          KT_I(keliYCoCgToSBGR_16s_P3C3R, Kel16s, Kel16s),
          KT_IA(keliYCoCgToSBGR_16s_P3C4R, Kel16s, Kel16s),
          KT_I(keliYCoCgToSBGR_Rev_16s_P3C3R, Kel16s, Kel16s),
          KT_IA(keliYCoCgToSBGR_Rev_16s_P3C4R, Kel16s, Kel16s),
          KT_F(keliSBGRToYCoCg_16s32s_C3P3R, Kel16s, Kel32s, 3),
          KT_F(keliSBGRToYCoCg_16s32s_C4P3R, Kel16s, Kel32s, 4),
          KT_F(keliSBGRToYCoCg_Rev_16s32s_C3P3R, Kel16s, Kel32s, 3),
          KT_F(keliSBGRToYCoCg_Rev_16s32s_C4P3R, Kel16s, Kel32s, 4),
          KT_I(keliYCoCgToSBGR_32s16s_P3C3R, Kel32s, Kel16s),
          KT_IA(keliYCoCgToSBGR_32s16s_P3C4R, Kel32s, Kel16s),
          KT_I(keliYCoCgToSBGR_Rev_32s16s_P3C3R, Kel32s, Kel16s),
          KT_IA(keliYCoCgToSBGR_Rev_32s16s_P3C4R, Kel32s, Kel16s),
          KT_F(keliRGBToYCoCg_8u_C3P3R, Kel8u, Kel8u, 3),
          KT_I(keliYCoCgToRGB_8u_P3C3R, Kel8u, Kel8u)};
}

// ---- one row through a member, pixels given as three samples each -----------
template <class T>
using Px = std::array<T, 3>;

// Forward: the planes of a row of pixels. C4 sources carry `fourth` in the
// fourth sample.
template <class P, class Q>
std::vector<Px<Q>> toPlanes(FwdFn<P, Q> f, int ch, const std::vector<Px<P>>& px, P fourth = P(0)) {
  const int w = int(px.size());
  std::vector<P> s(size_t(ch) * w, fourth);
  for (int x = 0; x < w; ++x)
    for (int k = 0; k < 3; ++k) s[size_t(ch) * x + k] = px[x][k];
  std::vector<Q> pl(3 * size_t(w));
  Q* d[3] = {pl.data(), pl.data() + w, pl.data() + 2 * w};
  EXPECT_EQ(f(s.data(), ch * w * int(sizeof(P)), d, 3 * w * int(sizeof(Q)), {w, 1}), kelStatusOk);
  std::vector<Px<Q>> out(w);
  for (int x = 0; x < w; ++x) out[x] = {d[0][x], d[1][x], d[2][x]};
  return out;
}
// Inverse C3.
template <class Q, class P>
std::vector<Px<P>> toPixels(InvFn<Q, P> f, const std::vector<Px<Q>>& pl) {
  const int w = int(pl.size());
  std::vector<Q> a(3 * size_t(w));
  for (int x = 0; x < w; ++x)
    for (int k = 0; k < 3; ++k) a[size_t(k) * w + x] = pl[x][k];
  const Q* s[3] = {a.data(), a.data() + w, a.data() + 2 * w};
  std::vector<P> d(3 * size_t(w));
  EXPECT_EQ(f(s, 3 * w * int(sizeof(Q)), d.data(), 3 * w * int(sizeof(P)), {w, 1}), kelStatusOk);
  std::vector<Px<P>> out(w);
  for (int x = 0; x < w; ++x) out[x] = {d[3 * x], d[3 * x + 1], d[3 * x + 2]};
  return out;
}
// A pixel as a body pixel (in a row of 16) and as a tail pixel (a row of one).
template <class P, class Q>
std::array<Px<Q>, 2> fwdBoth(FwdFn<P, Q> f, Px<P> p) {
  return {toPlanes(f, 3, std::vector<Px<P>>(16, p))[0], toPlanes(f, 3, std::vector<Px<P>>{p})[0]};
}

using P8 = Px<Kel8u>;
using S3 = Px<Kel16s>;
using I3 = Px<Kel32s>;

}  // namespace

KT_MEMBERS(members);
TEST(LiftingYCoCg, GuardsErrorsAndPaths) { checkAll(members()); }

// The stated values, in body and tail pixels. (B, G, R) -> (Y, Co, Cg).
TEST(LiftingYCoCg, StatedValues) {
  const struct {
    P8 bgr;
    S3 plain, rev;
  } cases[] = {
      {{10, 20, 33}, {21, 12, -1}, {20, 23, -1}},     {{255, 255, 255}, {255, 0, 0}, {255, 0, 0}},
      {{0, 255, 0}, {128, 0, 128}, {127, 0, 255}},    {{255, 0, 0}, {64, -127, -64}, {63, -255, -127}},
      {{0, 0, 255}, {64, 128, -64}, {63, 255, -127}}, {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}},
  };
  for (const auto& c : cases) {
    for (const S3& o : fwdBoth(keliBGRToYCoCg_8u16s_C3P3R, c.bgr)) EXPECT_EQ(o, c.plain);
    for (const S3& o : fwdBoth(keliBGRToYCoCg_Rev_8u16s_C3P3R, c.bgr)) EXPECT_EQ(o, c.rev);
    // The same samples as signed 16-bit pixels give the same planes at both depths.
    const S3 s = {c.bgr[0], c.bgr[1], c.bgr[2]};
    for (const S3& o : fwdBoth(keliSBGRToYCoCg_16s_C3P3R, s)) EXPECT_EQ(o, c.plain);
    for (const S3& o : fwdBoth(keliSBGRToYCoCg_Rev_16s_C3P3R, s)) EXPECT_EQ(o, c.rev);
    for (const I3& o : fwdBoth(keliSBGRToYCoCg_Rev_16s32s_C3P3R, s)) EXPECT_EQ(o, (I3{c.rev[0], c.rev[1], c.rev[2]}));
    EXPECT_EQ(toPixels(keliYCoCgToBGR_Rev_16s8u_P3C3R, {c.rev})[0], c.bgr);
  }
  // The plain pair loses a bit: (10, 20, 33) comes back with R one off.
  EXPECT_EQ(toPixels(keliYCoCgToBGR_16s8u_P3C3R, {S3{21, 12, -1}})[0], (P8{10, 20, 34}));
  EXPECT_EQ(toPixels(keliYCoCgToSBGR_16s_P3C3R, {S3{21, 12, -1}})[0], (S3{10, 20, 34}));
  // The inverse 8-bit forms clip their 16-bit results.
  EXPECT_EQ(toPixels(keliYCoCgToBGR_16s8u_P3C3R, {S3{300, 100, -50}})[0], (P8{250, 250, 255}));
  EXPECT_EQ(toPixels(keliYCoCgToBGR_16s8u_P3C3R, {S3{-20, 5, 3}})[0], (P8{0, 0, 0}));
  // 16-bit wrapping before the clip: 32767 + 1 is -32768, so 0.
  EXPECT_EQ(toPixels(keliYCoCgToBGR_16s8u_P3C3R, {S3{32767, 1, 0}})[0], (P8{255, 255, 0}));
}

// The RGB pair: 8-bit planes with chroma on 128, limited at 255 and clipped back.
TEST(LiftingYCoCg, RgbPairValues) {
  const struct {
    P8 rgb, ycocg;
  } cases[] = {{{255, 0, 0}, {64, 255, 64}},       {{0, 255, 0}, {128, 128, 255}}, {{0, 0, 255}, {64, 1, 64}},
               {{255, 255, 255}, {255, 128, 128}}, {{33, 20, 10}, {21, 140, 127}}, {{0, 0, 0}, {0, 128, 128}}};
  for (const auto& c : cases) {
    const auto row = toPlanes(keliRGBToYCoCg_8u_C3P3R, 3, std::vector<P8>(40, c.rgb));
    for (const P8& o : row) EXPECT_EQ(o, c.ycocg);
  }
  EXPECT_EQ(toPixels(keliYCoCgToRGB_8u_P3C3R, {P8{64, 255, 64}})[0], (P8{255, 0, 1}));
  EXPECT_EQ(toPixels(keliYCoCgToRGB_8u_P3C3R, {P8{21, 140, 127}})[0], (P8{34, 20, 10}));
  EXPECT_EQ(toPixels(keliYCoCgToRGB_8u_P3C3R, {P8{255, 255, 0}})[0], (P8{255, 127, 255}));
  EXPECT_EQ(toPixels(keliYCoCgToRGB_8u_P3C3R, {P8{0, 255, 255}})[0], (P8{0, 127, 0}));
}

// Plain forward 16s: Co or Cg of 32768 saturates in body pixels (the first
// w & ~3) and wraps in tail pixels; 16s32s keeps it.
TEST(LiftingYCoCg, Plain16sBodySaturatesTailWraps) {
  const S3 redVsBlue = {-32768, 0, 32767}, greenVsRest = {-32768, 32767, -32768};
  for (kel::Isa isa : paths())
    for (int w : {1, 3, 4, 5, 7, 8, 9, 15, 16, 17, 19, 33, 70}) {
      IsaScope scope(isa);
      for (auto f : {keliSBGRToYCoCg_16s_C3P3R, keliSBGRToYCoCg_16s_C4P3R}) {
        const int ch = f == keliSBGRToYCoCg_16s_C3P3R ? 3 : 4;
        const auto a = toPlanes(f, ch, std::vector<S3>(w, redVsBlue));
        const auto b = toPlanes(f, ch, std::vector<S3>(w, greenVsRest));
        for (int x = 0; x < w; ++x) {
          const bool body = x < (w & ~3);
          ASSERT_EQ(a[x][1], body ? 32767 : -32768) << "width " << w << " column " << x;
          ASSERT_EQ(b[x][2], body ? 32767 : -32768) << "width " << w << " column " << x;
          ASSERT_EQ(a[x][0], 0);
        }
      }
      EXPECT_EQ(toPlanes(keliSBGRToYCoCg_16s32s_C3P3R, 3, std::vector<S3>(w, redVsBlue))[0][1], 32768);
    }
}

// The reversible forms restore every input: all 2^24 colours at 8 bits.
TEST(LiftingYCoCg, Reversible8uRestoresEveryColour) {
  const int w = 65536;
  std::vector<Kel8u> px(3 * size_t(w)), back(4 * size_t(w));
  std::vector<Kel16s> pl(3 * size_t(w));
  Kel16s* d[3] = {pl.data(), pl.data() + w, pl.data() + 2 * w};
  const Kel16s* s[3] = {d[0], d[1], d[2]};
  for (int r = 0; r < 256; ++r) {
    for (int i = 0; i < w; ++i) px[3 * i] = Kel8u(i), px[3 * i + 1] = Kel8u(i >> 8), px[3 * i + 2] = Kel8u(r);
    ASSERT_EQ(keliBGRToYCoCg_Rev_8u16s_C3P3R(px.data(), 0, d, 0, {w, 1}), kelStatusOk);
    ASSERT_EQ(keliYCoCgToBGR_Rev_16s8u_P3C4R(s, 0, back.data(), 0, {w, 1}, 7), kelStatusOk);
    for (int i = 0; i < w; ++i)
      ASSERT_TRUE(back[4 * i] == px[3 * i] && back[4 * i + 1] == px[3 * i + 1] && back[4 * i + 2] == px[3 * i + 2] &&
                  back[4 * i + 3] == 7)
          << "R " << r << " G " << (i >> 8) << " B " << (i & 255);
  }
}

// Every triple of extreme 16-bit samples, then random ones.
std::vector<S3> extremes16() {
  std::vector<S3> px;
  const Kel16s ext[] = {-32768, -32767, -16385, -2, -1, 0, 1, 2, 16384, 32766, 32767};
  for (Kel16s b : ext)
    for (Kel16s g : ext)
      for (Kel16s r : ext) px.push_back({b, g, r});
  std::mt19937 rng(5);
  while (px.size() < 4000) px.push_back({Kel16s(rng()), Kel16s(rng()), Kel16s(rng())});
  return px;
}

// The extremes give the scalar bytes on every vector path.
TEST(LiftingYCoCg, Extreme16sSamplesOnEveryPath) {
  const auto px = extremes16();
  auto both = [&](kel::Isa isa) {
    IsaScope scope(isa);
    return std::make_pair(toPlanes(keliSBGRToYCoCg_16s_C4P3R, 4, px), toPlanes(keliSBGRToYCoCg_16s32s_C3P3R, 3, px));
  };
  const auto ref = both(kel::Isa::Scalar);
  for (kel::Isa isa : paths()) EXPECT_TRUE(both(isa) == ref) << int(isa);
}

// 16-bit samples over their full range, extremes included, through 16-bit
// planes (thanks to the wrap) and 32-bit planes, C3 and C4, on every path.
TEST(LiftingYCoCg, Reversible16sRestoresEverySample) {
  const auto px = extremes16();
  for (kel::Isa isa : paths()) {
    IsaScope scope(isa);
    for (Kel16s fourth : {Kel16s(0), Kel16s(-1)}) {
      EXPECT_EQ(toPixels(keliYCoCgToSBGR_Rev_16s_P3C3R, toPlanes(keliSBGRToYCoCg_Rev_16s_C3P3R, 3, px)), px);
      EXPECT_EQ(toPixels(keliYCoCgToSBGR_Rev_16s_P3C3R, toPlanes(keliSBGRToYCoCg_Rev_16s_C4P3R, 4, px, fourth)), px);
      EXPECT_EQ(toPixels(keliYCoCgToSBGR_Rev_32s16s_P3C3R, toPlanes(keliSBGRToYCoCg_Rev_16s32s_C3P3R, 3, px)), px);
      EXPECT_EQ(toPixels(keliYCoCgToSBGR_Rev_32s16s_P3C3R, toPlanes(keliSBGRToYCoCg_Rev_16s32s_C4P3R, 4, px, fourth)),
                px);
    }
    // The plain pair through 32-bit planes is off by at most one per sample.
    const auto back = toPixels(keliYCoCgToSBGR_32s16s_P3C3R, toPlanes(keliSBGRToYCoCg_16s32s_C3P3R, 3, px));
    for (size_t i = 0; i < px.size(); ++i)
      for (int k = 0; k < 3; ++k) ASSERT_LE(std::abs(int(Kel16s(back[i][k] - px[i][k]))), 1);
  }
}

// C4: the forward forms ignore the fourth sample, the inverse forms write
// `alpha` into it in every pixel; nothing else of a pixel changes.
TEST(LiftingYCoCg, FourthSample) {
  std::mt19937 rng(8);
  std::vector<P8> px(37);
  for (auto& p : px) p = {Kel8u(rng()), Kel8u(rng()), Kel8u(rng())};
  EXPECT_EQ(toPlanes(keliBGRToYCoCg_8u16s_C4P3R, 4, px, Kel8u(0)),
            toPlanes(keliBGRToYCoCg_8u16s_C4P3R, 4, px, Kel8u(255)));
  EXPECT_EQ(toPlanes(keliBGRToYCoCg_8u16s_C4P3R, 4, px), toPlanes(keliBGRToYCoCg_8u16s_C3P3R, 3, px));
  const int w = 37;
  std::vector<Kel16s> pl(3 * w);
  for (auto& v : pl) v = Kel16s(rng() % 300);
  const Kel16s* s[3] = {pl.data(), pl.data() + w, pl.data() + 2 * w};
  std::vector<Kel8u> d8(4 * w, 1);
  std::vector<Kel16s> d16(4 * w, 1);
  ASSERT_EQ(keliYCoCgToBGR_16s8u_P3C4R(s, 2 * w, d8.data(), 4 * w, {w, 1}, 0xC3), kelStatusOk);
  ASSERT_EQ(keliYCoCgToSBGR_Rev_16s_P3C4R(s, 2 * w, d16.data(), 8 * w, {w, 1}, -777), kelStatusOk);
  for (int x = 0; x < w; ++x) EXPECT_TRUE(d8[4 * x + 3] == 0xC3 && d16[4 * x + 3] == -777) << x;
}

// Order F: a width or height of 0 or below returns Ok and touches nothing.
TEST(LiftingYCoCg, EmptySizesTouchNothing) {
  for (const Member& m : members())
    for (KeliSize roi : {KeliSize{0, 5}, KeliSize{5, 0}, KeliSize{-3, 5}, KeliSize{5, -1}}) {
      Images im = makeImages(m, {5, 5}, StepMode::Padded, 3, 17);
      for (auto& p : im.dst) p->snapshot();
      Call c(im.srcPtrs(), im.dstPtrs(), roi);
      EXPECT_EQ(m.call(c), kelStatusOk) << m.name;
      for (auto& p : im.dst) EXPECT_TRUE(p->allIntact()) << m.name;
    }
}

// Steps are bytes as they stand: a step that is no multiple of the sample
// size puts rows off sample boundaries, and they convert as any other row.
TEST(LiftingYCoCg, OddByteStepsAndAddresses) {
  const int w = 21, h = 3, sStep = 6 * w + 3, dStep = 2 * w + 1;
  std::vector<uint8_t> src(1 + size_t(sStep) * h), dst(3 + 3 * size_t(dStep) * h, 0);
  std::mt19937 rng(3);
  for (auto& b : src) b = uint8_t(rng());
  for (kel::Isa isa : paths()) {
    IsaScope scope(isa);
    Kel16s* d[3];
    for (int k = 0; k < 3; ++k) d[k] = reinterpret_cast<Kel16s*>(dst.data() + 3 + size_t(k) * dStep * h);
    ASSERT_EQ(keliSBGRToYCoCg_Rev_16s_C3P3R(reinterpret_cast<const Kel16s*>(src.data() + 1), sStep, d, dStep, {w, h}),
              kelStatusOk);
    for (int r = 0; r < h; ++r) {
      std::vector<S3> px(w);
      std::memcpy(px.data(), src.data() + 1 + size_t(r) * sStep, sizeof(S3) * w);
      const auto want = toPlanes(keliSBGRToYCoCg_Rev_16s_C3P3R, 3, px);
      for (int x = 0; x < w; ++x)
        for (int k = 0; k < 3; ++k) {
          Kel16s got;
          std::memcpy(&got, reinterpret_cast<const uint8_t*>(d[k]) + size_t(r) * dStep + 2 * x, 2);
          ASSERT_EQ(got, want[x][k]) << "row " << r << " column " << x << " plane " << k;
        }
    }
  }
}

// The RGB pair: every one of the 2^24 inputs of either direction gives the
// bytes of the scalar form on every vector path.
TEST(LiftingYCoCg, RgbPairEveryInputOnEveryPath) {
  const int w = 65536;
  std::vector<Kel8u> in(3 * size_t(w)), ref(3 * size_t(w)), out(3 * size_t(w));
  Kel8u* pl[3] = {in.data(), in.data() + w, in.data() + 2 * w};
  auto run = [&](kel::Isa isa, bool fwd, std::vector<Kel8u>& o) {
    IsaScope scope(isa);
    Kel8u* d[3] = {o.data(), o.data() + w, o.data() + 2 * w};
    return fwd ? keliRGBToYCoCg_8u_C3P3R(in.data(), 0, d, 0, {w, 1})
               : keliYCoCgToRGB_8u_P3C3R(pl, 0, o.data(), 0, {w, 1});
  };
  for (int r = 0; r < 256; ++r) {
    for (bool fwd : {true, false}) {
      // Sample k of input i: pixel samples side by side, or three planes.
      for (int i = 0; i < w; ++i)
        for (int k = 0; k < 3; ++k) in[fwd ? 3 * i + k : size_t(k) * w + i] = Kel8u(k == 0 ? r : k == 1 ? i >> 8 : i);
      ASSERT_EQ(run(kel::Isa::Scalar, fwd, ref), kelStatusOk);
      for (kel::Isa isa : paths()) {
        ASSERT_EQ(run(isa, fwd, out), kelStatusOk);
        ASSERT_TRUE(out == ref) << (fwd ? "forward" : "inverse") << " path " << int(isa) << " R " << r;
      }
    }
  }
}
