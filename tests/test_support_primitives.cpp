// Internal primitives (copy, fill, maximum, sums, mean, allocators) and the
// uniform random source.
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "core/core_test.h"
#include "harness.h"
#include "support/sum.h"
#include "support/support.h"

using namespace kt;

namespace {

// ---- copy and fill through the guarded harness --------------------------------
const std::vector<Member>& imageMembers() {
  static const std::vector<Member> m = {
      Member{"keliCopy_8u_C1R", {full(1)}, {full(1)},
             [](Call& c) { return keliCopy_8u_C1R(c.s(0), c.ss(0), c.d(0), c.ds(0), c.roi()); }},
      Member{"keliSet_8u_C1R", {}, {full(1)},
             [](Call& c) { return keliSet_8u_C1R(0x5A, c.d(0), c.ds(0), c.roi()); }},
  };
  return m;
}

KT_MEMBERS(imageMembers);

TEST(Support, CopyAndSetHarness) {
  for (const Member& m : imageMembers()) {
    SCOPED_TRACE(m.name);
    checkGuards(m);
    checkErrors(m);
  }
}

// Tight images take the one-row path, large ones the streamed path (and the
// fill's cache question above 512 KiB); the bytes are the same everywhere.
TEST(Support, CopyAndSetBySize) {
  struct Case {
    int w, h, pad;
  } cases[] = {{1, 1, 0}, {63, 3, 0}, {64, 2, 5}, {1000, 7, 0}, {1024, 512, 0}, {1024, 512, 1},
               {524288, 1, 0}, {524289, 1, 0}, {4099, 1100, 3}, {2048, 2048, 0}};
  std::mt19937 rng(7);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.w << "x" << c.h << " pad " << c.pad);
    const int step = c.w + c.pad;
    const size_t n = size_t(step) * c.h;
    std::vector<uint8_t> src(n + 1), dst(n + 17, 0xEE), want(n + 17, 0xEE);
    for (auto& b : src) b = uint8_t(rng());
    // Destination off 16 bytes by one, source by none.
    ASSERT_EQ(keliCopy_8u_C1R(src.data(), step, dst.data() + 1, step, {c.w, c.h}), kelStatusOk);
    for (int y = 0; y < c.h; ++y) std::memcpy(want.data() + 1 + size_t(y) * step, src.data() + size_t(y) * step, c.w);
    EXPECT_TRUE(dst == want);
    std::fill(want.begin(), want.end(), 0xEE);
    std::fill(dst.begin(), dst.end(), 0xEE);
    ASSERT_EQ(keliSet_8u_C1R(0x81, dst.data() + 3, step, {c.w, c.h}), kelStatusOk);
    for (int y = 0; y < c.h; ++y) std::memset(want.data() + 3 + size_t(y) * step, 0x81, c.w);
    EXPECT_TRUE(dst == want);
  }
}

// ---- maximum ------------------------------------------------------------------------
TEST(Support, Max) {
  const float inf = std::numeric_limits<float>::infinity();
  struct Case {
    std::vector<float> v;
    float want;
  } cases[] = {
      {{1.5f}, 1.5f},
      {{-inf, -inf, -inf}, -FLT_MAX},  // the start value, not -inf
      {{-FLT_MAX}, -FLT_MAX},
      {{3, inf, 2}, inf},
      {{-5, -7, -1e30f, -2, -9, -3, -4, -8, -6, -10, -11}, -2},
  };
  for (const Case& c : cases) {
    float m = 0;
    ASSERT_EQ(keliMax_32f_C1R(c.v.data(), 4 * int(c.v.size()), {int(c.v.size()), 1}, &m), kelStatusOk);
    EXPECT_EQ(m, c.want);
  }
  // Random images with padded rows: the padding holds larger values.
  std::mt19937 rng(3);
  std::uniform_real_distribution<float> u(-1e6f, 1e6f);
  for (int t = 0; t < 50; ++t) {
    const int w = 1 + rng() % 70, h = 1 + rng() % 5, step = w + 3;
    std::vector<float> img(size_t(step) * h, 1e30f);
    float want = -FLT_MAX;
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) want = std::max(want, img[y * step + x] = u(rng));
    float m = 0;
    ASSERT_EQ(keliMax_32f_C1R(img.data(), 4 * step, {w, h}, &m), kelStatusOk);
    EXPECT_EQ(m, want);
  }
}

// ---- sums -----------------------------------------------------------------------------
// The vector fast sum does the additions of its lane-by-lane definition, for
// every row length and every address (the four 4-byte offsets within 16
// bytes and an address off 4 bytes).
TEST(Support, FastSumPathsMatchDefinition) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<float> u(-1000.f, 1000.f);
  std::vector<float> buf(200);
  alignas(16) uint8_t raw[4 * 200 + 32];
  for (int n = 0; n <= 150; ++n)
    for (int off : {0, 4, 8, 12, 1, 6}) {
      for (auto& v : buf) v = u(rng) * (rng() % 5 == 0 ? 1e5f : 1.f);
      float* p = reinterpret_cast<float*>(raw + 16 + off);
      std::memcpy(p, buf.data(), 4 * n);
      const kel::sum::Pair a = kel::sum::fastRowScalar(p, n), b = kel::sum::fastRow(p, n);
      ASSERT_EQ(std::memcmp(&a, &b, sizeof a), 0) << "n " << n << " off " << off;
    }
}

// Worked by hand: five samples at an address 8 bytes past 16. The head takes
// two samples into lanes 0, 1 of A; the next two go to D, the last to C.
// Lane 0 folds as (x0 + 0) + (x4 + x2): 1e8 + (1 - 1e8) = 0 in single
// precision, where a plain left-to-right sum gives 1.
TEST(Support, FastSumGrouping) {
  alignas(16) float buf[12] = {};
  float* p = buf + 2;
  const float x[5] = {1e8f, 3.f, -1e8f, 4.f, 1.f};
  std::memcpy(p, x, sizeof x);
  double s = -1;
  ASSERT_EQ(keliSum_32f_C1R(p, 20, {5, 1}, &s, 1), kelStatusOk);
  EXPECT_EQ(s, 0.0 + 7.0);
  // On 16 bytes the first four go to C and the last to lane 0 of C as well:
  // lane 0 is (1e8 + 1) = 1e8, lane 2 is -1e8, and s0 = 0 again.
  alignas(16) float q[8] = {1e8f, 3.f, -1e8f, 4.f, 1.f};
  ASSERT_EQ(keliSum_32f_C1R(q, 20, {5, 1}, &s, 1), kelStatusOk);
  EXPECT_EQ(s, double((0.f + (1e8f + 1.f)) + (0.f + -1e8f)) + 7.0);
  // The accurate sum does not depend on the address and is exact here.
  ASSERT_EQ(keliSum_32f_C1R(p, 20, {5, 1}, &s, 2), kelStatusOk);
  EXPECT_EQ(s, 8.0);
  ASSERT_EQ(keliSum_32f_C1R(q, 20, {5, 1}, &s, 2), kelStatusOk);
  EXPECT_EQ(s, 8.0);
}

// The accurate sum of small integers is exact for every length (the blocks of
// 32 and the pairs left over), and the same at every address.
TEST(Support, AccurateSum) {
  std::mt19937 rng(5);
  alignas(16) float raw[4 * 300 + 8];
  for (int w : {1, 2, 31, 32, 33, 63, 64, 65, 95, 97, 200}) {
    for (int h : {1, 3}) {
      std::vector<float> v(size_t(w) * h);
      double want = 0;
      for (auto& x : v) want += (x = float(int(rng() % 2001) - 1000));
      for (int off : {0, 1, 3}) {
        std::memcpy(raw + off, v.data(), v.size() * 4);
        double s = 0, mean = 0;
        ASSERT_EQ(keliSum_32f_C1R(raw + off, 4 * w, {w, h}, &s, 2), kelStatusOk);
        EXPECT_EQ(s, want) << w << "x" << h;
        ASSERT_EQ(keliMean_32f_C1R(raw + off, 4 * w, {w, h}, &mean, 2), kelStatusOk);
        EXPECT_EQ(mean, want / (w * h));
      }
    }
  }
}

TEST(Support, FloatChecks) {
  float f[4] = {1, 2, 3, 4}, m = 9;
  double d = 9;
  struct Case {
    KelStatus got, want;
  } cases[] = {
      {keliMax_32f_C1R(nullptr, 16, {4, 1}, &m), kelStatusNullPointer},
      {keliMax_32f_C1R(f, 16, {4, 1}, nullptr), kelStatusNullPointer},
      {keliMax_32f_C1R(nullptr, 16, {0, 1}, &m), kelStatusNullPointer},
      {keliMax_32f_C1R(f, 16, {4, 0}, &m), kelStatusBadSize},
      {keliSum_32f_C1R(f, 16, {0, 1}, &d, 1), kelStatusBadSize},
      {keliSum_32f_C1R(f, 16, {4, 1}, nullptr, 1), kelStatusNullPointer},
      {keliMean_32f_C1R(nullptr, 16, {4, 1}, nullptr, 1), kelStatusNullPointer},
      {keliMean_32f_C1R(f, 16, {-1, 1}, &d, 1), kelStatusBadSize},
  };
  for (const Case& c : cases) EXPECT_EQ(c.got, c.want);
  EXPECT_EQ(m, 9.f);
  EXPECT_EQ(d, 9.0);
  // One sample: the sum and mean are the sample widened.
  const float one = 0.1f;
  ASSERT_EQ(keliMean_32f_C1R(&one, 4, {1, 1}, &d, 1), kelStatusOk);
  EXPECT_EQ(d, double(0.1f));
}

// ---- allocators ------------------------------------------------------------------------
TEST(Support, Allocators) {
  const long before = kelcore_test::allocations();
  EXPECT_EQ(kelsMalloc_32f(0), nullptr);
  EXPECT_EQ(kelsMalloc_16s(-3), nullptr);
  EXPECT_EQ(kelcore_test::allocations(), before);  // no call for a len below 1
  Kel16u* p = kelsMalloc_16u(70000);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % 16, 0u);
  p[69999] = 1;
  kelsFree(p);
  kelcore_test::failAllocation(1);
  EXPECT_EQ(kelsMalloc_32f(10), nullptr);
  EXPECT_EQ(kelcore_test::liveBlocks(), 0);
}

// ---- uniform random source -----------------------------------------------------------------
TEST(Support, RandomSeedAndFirstSamples) {
  KelRandUniformState* st = nullptr;
  ASSERT_EQ(kelsRandUniformInitAlloc_16s(&st, -100, 100, 0), kelStatusOk);
  EXPECT_EQ(st->idCtx, 36);
  EXPECT_EQ(st->lcg, 0x436CBAE9u);
  EXPECT_EQ(st->a, 0u);
  EXPECT_EQ(st->b, 1013904243u);
  EXPECT_EQ(st->c, 1013904243u * 69069u + 1013904243u);
  EXPECT_EQ(st->borrow, -1);
  EXPECT_EQ(st->mean, 0.0);
  uint64_t bits;
  const double k = st->scale / 200.0;
  std::memcpy(&bits, &k, 8);
  EXPECT_EQ(bits, 0x3DF0000000000007ull);
  // First sample by hand: lcg' = lcg * 69069 + 1013904243; d = b - c - 1,
  // negative as a signed value here, so borrow and e = d - 18.
  const uint32_t lcg = 0x436CBAE9u * 69069u + 1013904243u;
  const uint32_t d = 1013904243u - (1013904243u * 69069u + 1013904243u) - 1u;
  const uint32_t e = int32_t(d) < 0 ? d - 18 : d;
  const double x = 0.0 + st->scale * double(int32_t(e + lcg));
  Kel16s v[30];
  ASSERT_EQ(kelsRandUniform_16s(v, 1, st), kelStatusOk);
  EXPECT_EQ(v[0], Kel16s(int32_t(x)));
  EXPECT_EQ(st->a, e);
  EXPECT_EQ(kelsRandUniformFree_16s(st), kelStatusOk);
}

// Calls of 10 and 20 samples continue one sequence of 30; both variants run
// the same sequence; samples stay inside the range.
TEST(Support, RandomSequence) {
  KelRandUniformState *a, *b, *f;
  ASSERT_EQ(kelsRandUniformInitAlloc_16s(&a, -50, 70, 12345), kelStatusOk);
  ASSERT_EQ(kelsRandUniformInitAlloc_16s(&b, -50, 70, 12345), kelStatusOk);
  ASSERT_EQ(kelsRandUniformInitAlloc_32f(&f, -50.f, 70.f, 12345), kelStatusOk);
  Kel16s x[30], y[30];
  Kel32f z[30];
  ASSERT_EQ(kelsRandUniform_16s(x, 10, a), kelStatusOk);
  ASSERT_EQ(kelsRandUniform_16s(x + 10, 20, a), kelStatusOk);
  ASSERT_EQ(kelsRandUniform_16s(y, 30, b), kelStatusOk);
  ASSERT_EQ(kelsRandUniform_32f(z, 30, f), kelStatusOk);
  for (int i = 0; i < 30; ++i) {
    EXPECT_EQ(x[i], y[i]);
    EXPECT_EQ(x[i], Kel16s(int32_t(double(z[i]))) ) << i;  // same sequence, float stored
    EXPECT_GE(x[i], -50);
    EXPECT_LE(x[i], 70);
  }
  EXPECT_EQ(kelsRandUniformFree_16s(a), kelStatusOk);
  EXPECT_EQ(kelsRandUniformFree_16s(b), kelStatusOk);
  EXPECT_EQ(kelsRandUniformFree_32f(f), kelStatusOk);
}

TEST(Support, RandomChecks) {
  KelRandUniformState *s16, *s32;
  ASSERT_EQ(kelsRandUniformInitAlloc_16s(&s16, 7, 7, 99), kelStatusOk);
  ASSERT_EQ(kelsRandUniformInitAlloc_32f(&s32, 0.f, 1.f, 99), kelStatusOk);
  Kel16s v[8] = {};
  Kel32f f[8] = {};
  const KelRandUniformState saved = *s32;
  struct Case {
    KelStatus got, want;
  } cases[] = {
      {kelsRandUniformInitAlloc_16s(nullptr, 0, 1, 0), kelStatusNullPointer},
      {kelsRandUniform_16s(nullptr, 4, s16), kelStatusNullPointer},
      {kelsRandUniform_16s(v, 4, nullptr), kelStatusNullPointer},
      {kelsRandUniform_16s(v, 0, s16), kelStatusBadSize},
      {kelsRandUniform_16s(v, 4, s32), kelStatusBadContext},
      {kelsRandUniform_32f(f, 4, s16), kelStatusBadContext},
      {kelsRandUniformFree_16s(s32), kelStatusBadContext},
      {kelsRandUniformFree_32f(nullptr), kelStatusNullPointer},
  };
  for (const Case& c : cases) EXPECT_EQ(c.got, c.want);
  EXPECT_EQ(std::memcmp(&saved, s32, sizeof saved), 0);  // failed calls change nothing
  for (Kel16s x : v) EXPECT_EQ(x, 0);
  // low == high: scale 0, every sample is low.
  ASSERT_EQ(kelsRandUniform_16s(v, 8, s16), kelStatusOk);
  for (Kel16s x : v) EXPECT_EQ(x, 7);
  EXPECT_EQ(kelsRandUniformFree_16s(s16), kelStatusOk);
  EXPECT_EQ(kelsRandUniformFree_32f(s32), kelStatusOk);
  // No memory: the status, and nothing handed out.
  KelRandUniformState* none = nullptr;
  kelcore_test::failAllocation(1);
  EXPECT_EQ(kelsRandUniformInitAlloc_32f(&none, 0.f, 1.f, 0), kelStatusNoMemory);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(kelcore_test::liveBlocks(), 0);
}

}  // namespace
