// Gamma curves: 36 members at 8u, 16u and 32f.
#include <cmath>
#include <cstring>
#include <random>
#include <tuple>

#include "core/core_test.h"
#include "harness.h"
#include "tone/gamma_tables.h"

using namespace kt;

namespace {

// ---- the members in the harness's terms -----------------------------------------
template <class T>
using Fn = KelStatus (*)(const T*, int, T*, int, KeliSize);
constexpr float kLo = 0.0f, kHi = 1.0f;

template <class T>
Member base(std::string name, int ch, bool inPlace, bool planar) {
  const int bpp = (planar ? 1 : ch) * int(sizeof(T));
  Member m;
  m.name = std::move(name);
  const std::vector<Geom> g(planar ? 3 : 1, full(bpp));
  if (!inPlace) m.src = g;
  m.dst = g;
  m.order = Order::C;
  m.checksSteps = true;
  m.sharedSrcStep = m.sharedDstStep = planar;
  m.sampleBytes = sizeof(T);
  m.finiteFloats = std::is_same<T, Kel32f>::value;
  return m;
}
template <class T>
const T* const* sPlanes(Call& c) {
  return reinterpret_cast<const T* const*>(c.sArr(3));
}
template <class T>
T** dPlanes(Call& c) {
  return reinterpret_cast<T**>(c.dArr(3));
}

// The six layouts of one depth and direction; `extra` are the arguments
// behind the size (the 32f range), which the fuzzer may replace.
template <class T, class F, class FI, class FP, class FIP, class... X>
std::vector<Member> sixOf(const std::string& op, F c3, FI c3i, F ac4, FI ac4i, FP p3, FIP ip3, X... extra) {
  // Braced initialisation draws the values left to right.
  auto params = [=](Call& c) { return std::tuple<X...>{c.paramF(extra)...}; };
  std::vector<Member> v;
  for (F f : {c3, ac4}) {
    v.push_back(base<T>(op + (f == c3 ? "_C3R" : "_AC4R"), f == c3 ? 3 : 4, false, false));
    v.back().call = [=](Call& c) {
      const T* s = c.sT<T>(0);
      T* d = c.dT<T>(0);
      return std::apply([&](auto... e) { return f(s, c.ss(0), d, c.ds(0), c.roi(), e...); }, params(c));
    };
  }
  for (FI f : {c3i, ac4i}) {
    v.push_back(base<T>(op + (f == c3i ? "_C3IR" : "_AC4IR"), f == c3i ? 3 : 4, true, false));
    v.back().call = [=](Call& c) {
      T* d = c.dT<T>(0);
      return std::apply([&](auto... e) { return f(d, c.ds(0), c.roi(), e...); }, params(c));
    };
  }
  v.push_back(base<T>(op + "_P3R", 1, false, true));
  v.back().call = [=](Call& c) {
    const T* const* s = sPlanes<T>(c);
    T** d = dPlanes<T>(c);
    return std::apply([&](auto... e) { return p3(s, c.ss(0), d, c.ds(0), c.roi(), e...); }, params(c));
  };
  v.push_back(base<T>(op + "_IP3R", 1, true, true));
  v.back().call = [=](Call& c) {
    T** d = dPlanes<T>(c);
    return std::apply([&](auto... e) { return ip3(d, c.ds(0), c.roi(), e...); }, params(c));
  };
  return v;
}

#define KT_SIX(Dir, d) keliGamma##Dir##_##d##_C3R, keliGamma##Dir##_##d##_C3IR, keliGamma##Dir##_##d##_AC4R, \
                       keliGamma##Dir##_##d##_AC4IR, keliGamma##Dir##_##d##_P3R, keliGamma##Dir##_##d##_IP3R

std::vector<Member> members() {
  std::vector<Member> all;
  for (auto&& v : {sixOf<Kel8u>("keliGammaFwd_8u", KT_SIX(Fwd, 8u)), sixOf<Kel8u>("keliGammaInv_8u", KT_SIX(Inv, 8u)),
                   sixOf<Kel16u>("keliGammaFwd_16u", KT_SIX(Fwd, 16u)),
                   sixOf<Kel16u>("keliGammaInv_16u", KT_SIX(Inv, 16u)),
                   sixOf<Kel32f>("keliGammaFwd_32f", KT_SIX(Fwd, 32f), kLo, kHi),
                   sixOf<Kel32f>("keliGammaInv_32f", KT_SIX(Inv, 32f), kLo, kHi)})
    all.insert(all.end(), v.begin(), v.end());
  return all;
}

// One C3 row of samples through a member, on every path; the paths agree.
template <class T>
std::vector<T> mapRow(Fn<T> f, const std::vector<T>& in) {
  const int w = static_cast<int>(in.size() / 3), bytes = 3 * w * int(sizeof(T));
  std::vector<T> out, ref;
  for (kel::Isa isa : paths()) {
    IsaScope scope(isa);
    out.assign(in.size(), T(0x5a));
    EXPECT_EQ(f(in.data(), bytes, out.data(), bytes, {w, 1}), kelStatusOk);
    if (ref.empty()) ref = out;
    EXPECT_EQ(out, ref) << "path " << int(isa);
  }
  return out;
}
// Every 16u index 0..65535 (padded to whole pixels) through one call of
// 65538 samples, which takes the table, and row by row in rows of 3 * 64
// samples, which compute per sample.
std::vector<Kel16u> allIndices() {
  std::vector<Kel16u> v(65538);
  for (size_t i = 0; i < v.size(); ++i) v[i] = Kel16u(i);
  return v;
}
std::vector<Kel16u> perSample(Fn<Kel16u> f, const std::vector<Kel16u>& in) {
  std::vector<Kel16u> out(in.size());
  const int w = static_cast<int>(in.size() / 3);
  for (int x = 0; x < w; x += 64) {
    const int n = std::min(64, w - x);
    EXPECT_EQ(f(in.data() + 3 * x, 6 * n, out.data() + 3 * x, 6 * n, {n, 1}), kelStatusOk);
  }
  return out;
}

}  // namespace

KT_MEMBERS(members);

TEST(ToneGamma, GuardsErrorsAndPaths) { checkAll(members()); }

// The 8-bit tables follow from the curve at the scale 255, rounded to the
// nearest integer with halves to even (entries 1 and 3 of the forward table).
TEST(ToneGamma, TablesFollowTheCurve) {
  for (int i = 0; i < 256; ++i) {
    const double x = i / 255.0;
    const double f = x < 0.018 ? 4.5 * i : 255 * (1.099 * std::pow(x, 0.45) - 0.099);
    const double v = x < 0.0812 ? i / 4.5 : 255 * std::pow((x + 0.099) / 1.099, 1 / 0.45);
    EXPECT_EQ(kel::tableFwd8u[i], std::nearbyint(f)) << i;
    EXPECT_EQ(kel::tableInv8u[i], std::nearbyint(v)) << i;
  }
}

TEST(ToneGamma, TellingRowsOf8u) {
  const struct {
    int in, fwd;
  } fwd[] = {{0, 0},    {1, 4},     {2, 9},     {3, 14},    {4, 18},    {5, 23},
             {20, 64},  {64, 125},  {128, 180}, {192, 221}, {254, 255}, {255, 255}};
  const struct {
    int in, inv;
  } inv[] = {{0, 0},   {1, 0},    {2, 0},     {3, 1},     {20, 4},    {21, 5},
             {64, 20}, {128, 67}, {192, 145}, {254, 253}, {255, 255}};
  // All 256 values in one row, so that the vector bodies see every entry.
  std::vector<Kel8u> row(3 * 256);
  for (int i = 0; i < 3 * 256; ++i) row[i] = Kel8u(i / 3 + 85 * (i % 3));
  const auto f = mapRow<Kel8u>(keliGammaFwd_8u_C3R, row), g = mapRow<Kel8u>(keliGammaInv_8u_C3R, row);
  for (int i = 0; i < 3 * 256; ++i) {
    EXPECT_EQ(f[i], kel::tableFwd8u[row[i]]);
    EXPECT_EQ(g[i], kel::tableInv8u[row[i]]);
  }
  for (auto r : fwd) EXPECT_EQ(kel::tableFwd8u[r.in], r.fwd) << r.in;
  for (auto r : inv) EXPECT_EQ(kel::tableInv8u[r.in], r.inv) << r.in;
}

TEST(ToneGamma, TellingValuesOf16uAndTheTableAgreesWithPerSample) {
  const auto in = allIndices();
  const auto fT = mapRow<Kel16u>(keliGammaFwd_16u_C3R, in), iT = mapRow<Kel16u>(keliGammaInv_16u_C3R, in);
  EXPECT_EQ(fT, perSample(keliGammaFwd_16u_C3R, in));
  EXPECT_EQ(iT, perSample(keliGammaInv_16u_C3R, in));
  const struct {
    int in, out;
  } fwd[] = {{1, 4}, {3, 14}, {4, 18}, {65534, 65535}, {65535, 65535}, {32768, 46236}, {1179, 5306}, {1180, 5326}},
    inv[] = {{0, 0}, {1, 0}, {2, 0}, {3, 1}, {32768, 17013}, {65535, 65535}, {5321, 1182}, {5322, 1179}};
  for (auto r : fwd) EXPECT_EQ(fT[r.in], r.out) << "forward " << r.in;
  for (auto r : inv) EXPECT_EQ(iT[r.in], r.out) << "inverse " << r.in;
  // The forward curve never falls; the inverse falls once, at 5322.
  for (int i = 1; i < 65536; ++i) {
    EXPECT_LE(fT[i - 1], fT[i]) << i;
    if (i != 5322) {
      EXPECT_LE(iT[i - 1], iT[i]) << i;
    }
  }
}

// The 32f forms map the range onto the unit interval and back, and do not
// clamp: below vMin the linear foot goes on.
TEST(ToneGamma, FloatRangeAndRoundTrip) {
  const float lo = 10.0f, hi = 20.0f;
  std::vector<Kel32f> in = {10.0f, 20.0f, 9.0f, 25.0f, 10.1f, 15.0f};
  for (int i = 0; i < 300; ++i) in.push_back(10.2f + i * 0.03f);
  const int w = static_cast<int>(in.size() / 3), step = 12 * w;
  std::vector<Kel32f> f(in.size()), back(in.size());
  ASSERT_EQ(keliGammaFwd_32f_C3R(in.data(), step, f.data(), step, {w, 1}, lo, hi), kelStatusOk);
  ASSERT_EQ(keliGammaInv_32f_C3R(f.data(), step, back.data(), step, {w, 1}, lo, hi), kelStatusOk);
  EXPECT_EQ(f[0], 10.0f) << "vMin stays";
  EXPECT_NEAR(f[1], 20.0f, 2e-6f) << "vMax up to rounding";
  EXPECT_FLOAT_EQ(f[2], 10.0f - 4.5f) << "below vMin: the linear foot";
  EXPECT_GT(f[3], 20.0f) << "no clamp above";
  EXPECT_FLOAT_EQ(f[4], 10.0f + 0.1f * 4.5f);
  EXPECT_NEAR(f[5], 10.0f + 10.0f * float(1.099 * std::pow(0.5, 0.45) - 0.099), 2e-6f);
  EXPECT_FLOAT_EQ(back[2], 10.0f - 4.5f * 0.2222222222f) << "the inverse's linear foot below vMin";
  for (size_t i = 6; i < in.size(); ++i) EXPECT_NEAR(back[i], in[i], 2e-5f) << in[i];
}

// The range comes first, even before null pointers; a NaN difference passes.
TEST(ToneGamma, FloatRangeIsCheckedFirst) {
  Kel32f px[12] = {};
  Kel32f* planes3[3] = {px, px + 4, px + 8};
  const KeliSize one{1, 1};
  const struct {
    float lo, hi;
    KelStatus want;
  } rows[] = {{1, 1, kelStatusBadRange}, {2, 1, kelStatusBadRange}, {0, NAN, kelStatusNullPointer},
              {0, 1, kelStatusNullPointer}};
  for (auto r : rows) {
    EXPECT_EQ(keliGammaFwd_32f_C3R(nullptr, 0, nullptr, 0, {0, 0}, r.lo, r.hi), r.want);
    EXPECT_EQ(keliGammaInv_32f_AC4IR(nullptr, 0, {0, 0}, r.lo, r.hi), r.want);
    EXPECT_EQ(keliGammaFwd_32f_IP3R(nullptr, 0, one, r.lo, r.hi), r.want);
  }
  EXPECT_EQ(keliGammaInv_32f_P3R(planes3, 16, planes3, 0, one, 1, 1), kelStatusBadRange);
  EXPECT_EQ(keliGammaInv_32f_P3R(planes3, 16, planes3, 0, one, 0, 1), kelStatusBadStep);
}

// AC4: the fourth sample of the destination is not written, in place it stays.
TEST(ToneGamma, FourthSampleStays) {
  std::vector<Kel8u> s8(4 * 40), d8(4 * 40, 7);
  std::vector<Kel16u> s16(4 * 40), d16(4 * 40, 7);
  for (int i = 0; i < 160; ++i) s8[i] = Kel8u(3 * i), s16[i] = Kel16u(977 * i);
  auto i8 = s8;
  auto i16 = s16;
  for (kel::Isa isa : paths()) {
    IsaScope scope(isa);
    ASSERT_EQ(keliGammaFwd_8u_AC4R(s8.data(), 160, d8.data(), 160, {40, 1}), kelStatusOk);
    ASSERT_EQ(keliGammaInv_8u_AC4IR(i8.data(), 160, {40, 1}), kelStatusOk);
    ASSERT_EQ(keliGammaFwd_16u_AC4R(s16.data(), 320, d16.data(), 320, {40, 1}), kelStatusOk);
    ASSERT_EQ(keliGammaInv_16u_AC4IR(i16.data(), 320, {40, 1}), kelStatusOk);
    for (int x = 3; x < 160; x += 4) {
      EXPECT_EQ(d8[x], 7);
      EXPECT_EQ(d16[x], 7);
      EXPECT_EQ(i8[x], s8[x]);
      EXPECT_EQ(i16[x], s16[x]);
    }
  }
}

// Steps are bytes, used as they are: a 16u or 32f image whose rows start at
// odd addresses gives the values of the same image packed tightly.
TEST(ToneGamma, OddByteStepsAreUsedAsTheyAre) {
  const int w = 5, h = 3, tight = 6 * w, odd = tight + 3;
  std::vector<uint8_t> a(odd * h + 8), b(odd * h + 8);
  std::vector<Kel16u> t(3 * w * h), u(3 * w * h);
  for (int i = 0; i < 3 * w * h; ++i) t[i] = Kel16u(1000 * i + 17);
  for (int y = 0; y < h; ++y) std::memcpy(&a[1 + odd * y], &t[3 * w * y], tight);
  ASSERT_EQ(keliGammaFwd_16u_C3R(reinterpret_cast<Kel16u*>(&a[1]), odd, reinterpret_cast<Kel16u*>(&b[1]), odd,
                                 {w, h}),
            kelStatusOk);
  ASSERT_EQ(keliGammaFwd_16u_C3R(t.data(), tight, u.data(), tight, {w, h}), kelStatusOk);
  for (int y = 0; y < h; ++y) EXPECT_EQ(std::memcmp(&b[1 + odd * y], &u[3 * w * y], tight), 0) << y;
}

// Above 65536 samples (3 per pixel in every layout) the 16u members allocate
// a table; a failed allocation writes nothing and leaks nothing. Up to
// 65536 samples they never allocate.
TEST(ToneGamma, TableAllocationFailure) {
  const KeliSize big{256, 86}, edge{21845, 1};  // 66048 and 65535 samples
  for (const Member& m : members()) {
    if (m.name.find("_16u_") == std::string::npos) continue;
    {
      Images im = makeImages(m, edge, StepMode::Padded, 0, 5);
      const long before = kelcore_test::allocations();
      EXPECT_EQ(run(m, im, edge), kelStatusOk) << m.name;
      EXPECT_EQ(kelcore_test::allocations(), before) << m.name << " allocated at 65535 samples";
    }
    Images im = makeImages(m, big, StepMode::Padded, 0, 5);
    for (auto& p : im.dst) p->snapshot();
    const long live = kelcore_test::liveBlocks();
    kelcore_test::failAllocation(1);
    EXPECT_EQ(run(m, im, big), kelStatusNoMemory) << m.name;
    kelcore_test::failAllocation(0);
    for (auto& p : im.dst) EXPECT_TRUE(p->allIntact()) << m.name;
    EXPECT_EQ(kelcore_test::liveBlocks(), live) << m.name;
    EXPECT_EQ(run(m, im, big), kelStatusOk) << m.name;
    EXPECT_EQ(kelcore_test::liveBlocks(), live) << m.name << " leaked its table";
  }
}
