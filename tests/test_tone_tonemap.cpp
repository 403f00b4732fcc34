// Tone mapping: the linear and the mean member.
#include <cfloat>
#include <cmath>
#include <random>

#include "harness.h"

using namespace kt;

namespace {

using Fn = KelStatus (*)(const Kel32f*, int, Kel8u*, int, KeliSize);

Member member(const char* name, Fn f) {
  Member m{name, {full(4)}, {full(1)}, [f](Call& c) { return f(c.sT<Kel32f>(0), c.ss(0), c.d(0), c.ds(0), c.roi()); }};
  m.sampleBytes = 4;
  m.finiteFloats = true;
  m.nonNegativeFloats = true;
  return m;
}

// One row through a member on every path (the paths agree); bytes start as 9.
std::vector<Kel8u> mapRow(Fn f, const std::vector<Kel32f>& in, KelStatus want = kelStatusOk) {
  const int w = static_cast<int>(in.size());
  std::vector<Kel8u> out, ref;
  for (kel::Isa isa : paths()) {
    IsaScope scope(isa);
    out.assign(w, 9);
    EXPECT_EQ(f(in.data(), 4 * w, out.data(), w, {w, 1}), want);
    if (ref.empty()) ref = out;
    EXPECT_EQ(out, ref) << "path " << int(isa);
  }
  return out;
}
// A row of n samples of value v, with `head` in front.
std::vector<Kel32f> row(std::vector<Kel32f> head, int n, float v) {
  head.resize(head.size() + n, v);
  return head;
}

}  // namespace

// Random finite images at random sizes, offsets and steps: only the
// destination's region is written, and every path gives the same bytes.
// (The harness's images are random bit patterns, dominated by a few huge
// samples; the next test holds the paths to each other on moderate ones.)
std::vector<Member> members() {
  return {member("keliToneMapLinear_32f8u_C1R", keliToneMapLinear_32f8u_C1R),
          member("keliToneMapMean_32f8u_C1R", keliToneMapMean_32f8u_C1R)};
}
KT_MEMBERS(members);

TEST(ToneMap, GuardsAndPaths) {
  for (const Member& m : members()) {
    SCOPED_TRACE(m.name);
    checkGuards(m);
    checkPaths(m);
  }
}

TEST(ToneMap, Values) {
  // Linear: f = 255 / m. With m = 2, a sample of 1 gives 127 (127.5
  // truncated); with m = 255 (f = 1), -1.5 gives -1, stored as 255.
  const auto a = mapRow(keliToneMapLinear_32f8u_C1R, row({2.0f, 1.0f, 0.5f}, 40, 0.0f));
  EXPECT_EQ(a[0], 255);
  EXPECT_EQ(a[1], 127);
  EXPECT_EQ(a[2], 63);
  const auto b = mapRow(keliToneMapLinear_32f8u_C1R, row({255.0f, -1.5f, -256.5f}, 40, -1.5f));
  EXPECT_EQ(b[1], 255);
  EXPECT_EQ(b[2], 0) << "-256 wraps to 0";
  EXPECT_EQ(b[39], 255);
  // Mean: twice the mean maps to 255; above it 255, below 0 gives 0.
  // Mean 1 (samples 4, -2 and 38 ones): f = 127.5.
  const auto c = mapRow(keliToneMapMean_32f8u_C1R, row({4.0f, -2.0f}, 38, 1.0f));
  EXPECT_EQ(c[0], 255);
  EXPECT_EQ(c[1], 0);
  EXPECT_EQ(c[2], 127);
}

TEST(ToneMap, FillPathAndNothingDone) {
  const std::vector<Kel32f> zeros(37, 0.0f), negative(37, -1.0f);
  EXPECT_EQ(mapRow(keliToneMapLinear_32f8u_C1R, zeros), std::vector<Kel8u>(37, 0));
  EXPECT_EQ(mapRow(keliToneMapMean_32f8u_C1R, zeros), std::vector<Kel8u>(37, 0));
  // A negative statistic leaves the destination as it was.
  EXPECT_EQ(mapRow(keliToneMapLinear_32f8u_C1R, negative, kelStatusNothingDone), std::vector<Kel8u>(37, 9));
  EXPECT_EQ(mapRow(keliToneMapMean_32f8u_C1R, row({5.0f}, 36, -1.0f), kelStatusNothingDone),
            std::vector<Kel8u>(37, 9));
  // The least normal float as maximum is the fill path. The next float
  // above it is scaled, but 255 / m overflows to infinity there, and the
  // infinite or NaN products truncate to the integer indefinite, whose low
  // byte is 0. A maximum of 1e-36 still has a finite scale.
  const float least = FLT_MIN, next = std::nextafter(FLT_MIN, 1.0f);
  EXPECT_EQ(mapRow(keliToneMapLinear_32f8u_C1R, row({least}, 20, 0.0f)), std::vector<Kel8u>(21, 0));
  EXPECT_EQ(mapRow(keliToneMapLinear_32f8u_C1R, row({next}, 20, 0.0f)), std::vector<Kel8u>(21, 0));
  EXPECT_GE(mapRow(keliToneMapLinear_32f8u_C1R, row({1e-36f}, 20, 0.0f))[0], 254);
}

// Checks come from the statistic first (source, size); a null destination
// shows on the fill path (through the fill) and before the scaling path,
// and not where the statistic is negative.
TEST(ToneMap, Errors) {
  const Kel32f pos[4] = {1, 2, 3, 4}, zero[4] = {}, neg[4] = {-1, -2, -3, -4};
  Kel8u d[4] = {9, 9, 9, 9};
  for (Fn f : {keliToneMapLinear_32f8u_C1R, keliToneMapMean_32f8u_C1R}) {
    const struct {
      const Kel32f* s;
      Kel8u* d;
      KeliSize roi;
      KelStatus want;
    } rows[] = {{nullptr, d, {4, 1}, kelStatusNullPointer}, {nullptr, nullptr, {0, 1}, kelStatusNullPointer},
                {pos, d, {0, 1}, kelStatusBadSize},         {pos, nullptr, {4, 0}, kelStatusBadSize},
                {pos, nullptr, {4, 1}, kelStatusNullPointer}, {zero, nullptr, {4, 1}, kelStatusNullPointer},
                {neg, nullptr, {4, 1}, kelStatusNothingDone}};
    for (auto& r : rows) EXPECT_EQ(f(r.s, 16, r.d, 4, r.roi), r.want);
    for (Kel8u b : d) EXPECT_EQ(b, 9);
  }
}

// Moderate samples, negative ones among them, in rows at every offset from
// a 16-byte boundary: the vector bodies give the bytes of the scalar forms.
TEST(ToneMap, PathsAgreeOnModerateSamples) {
  std::mt19937 rng(3);
  std::uniform_real_distribution<float> u(-0.5f, 6.0f);
  for (int trial = 0; trial < 60; ++trial) {
    const int w = 1 + static_cast<int>(rng() % 200), h = 1 + static_cast<int>(rng() % 4), off = trial % 4;
    std::vector<Kel32f> src(off + (w + 3) * h);
    for (auto& v : src) v = u(rng);
    for (Fn f : {keliToneMapLinear_32f8u_C1R, keliToneMapMean_32f8u_C1R}) {
      std::vector<Kel8u> ref;
      for (kel::Isa isa : paths()) {
        IsaScope scope(isa);
        std::vector<Kel8u> d((w + 5) * h, 9);
        ASSERT_EQ(f(src.data() + off, 4 * (w + 3), d.data(), w + 5, {w, h}), kelStatusOk);
        if (ref.empty()) ref = d;
        ASSERT_EQ(d, ref) << "path " << int(isa) << " width " << w;
      }
    }
  }
}
