// Colour twist: 3 x 4 matrices at 8u, 8s, 16u, 16s and 32f in six layouts,
// and the 4 x 4 matrix on four float channels.
#include <xmmintrin.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>

#include "harness.h"

using namespace kt;

namespace {

using Matrix = std::array<Kel32f, 16>;  // row-major; 3 x 4 forms read the first 12
using MatrixPtr = std::shared_ptr<Matrix>;
using M34 = const Kel32f (*)[4];

template <class T>
using FnC = KelStatus (*)(const T*, int, T*, int, KeliSize, const Kel32f[3][4]);
template <class T>
using FnI = KelStatus (*)(T*, int, KeliSize, const Kel32f[3][4]);
template <class T>
using FnP = KelStatus (*)(const T* const[3], int, T* [3], int, KeliSize, const Kel32f[3][4]);
template <class T>
using FnIP = KelStatus (*)(T* [3], int, KeliSize, const Kel32f[3][4]);

M34 rows(const MatrixPtr& m) { return reinterpret_cast<M34>(m->data()); }
// The matrix argument of a harness call: the member's own entries unless the
// call's parameter source puts others in their place; a null slot of its own.
M34 rowsOf(Call& c, const MatrixPtr& m, Matrix& local) {
  for (size_t i = 0; i < local.size(); ++i) local[i] = c.paramF((*m)[i]);
  return c.arg(reinterpret_cast<M34>(local.data()));
}

template <class T>
Member base(std::string name, std::vector<Geom> src, std::vector<Geom> dst, Invoke call) {
  Member m{std::move(name), std::move(src), std::move(dst), std::move(call)};
  m.order = Order::C;
  m.checksSteps = true;
  m.sampleBytes = sizeof(T);
  m.finiteFloats = std::is_same<T, Kel32f>::value;
  return m;
}

// The six 3 x 4 members of a depth, and the 4 x 4 member, in the harness's
// terms; the matrix is an argument slot of its own (null in the error walk).
template <class T>
void addDepth(std::vector<Member>& out, const std::string& pre, const MatrixPtr& mat, FnC<T> c3, FnI<T> c3i,
              FnC<T> ac4, FnI<T> ac4i, FnP<T> p3, FnIP<T> ip3) {
  const int S = sizeof(T);
  for (auto [suffix, ch, f] : {std::tuple{"C3R", 3, c3}, std::tuple{"AC4R", 4, ac4}})
    out.push_back(base<T>(pre + suffix, {full(ch * S)}, {full(ch * S)}, [f = f, mat](Call& c) {
      Matrix local;
      return f(c.sT<T>(0), c.ss(0), c.dT<T>(0), c.ds(0), c.roi(), rowsOf(c, mat, local));
    }));
  for (auto [suffix, ch, f] : {std::tuple{"C3IR", 3, c3i}, std::tuple{"AC4IR", 4, ac4i}})
    out.push_back(base<T>(pre + suffix, {}, {full(ch * S)},
                          [f = f, mat](Call& c) {
                            Matrix local;
                            return f(c.dT<T>(0), c.ds(0), c.roi(), rowsOf(c, mat, local));
                          }));
  Member p = base<T>(pre + "P3R", {full(S), full(S), full(S)}, {full(S), full(S), full(S)}, [p3, mat](Call& c) {
    Matrix local;
    return p3(reinterpret_cast<const T* const*>(c.sArr(3)), c.ss(0), reinterpret_cast<T**>(c.dArr(3)), c.ds(0),
              c.roi(), rowsOf(c, mat, local));
  });
  p.sharedSrcStep = p.sharedDstStep = true;
  out.push_back(p);
  Member ip = base<T>(pre + "IP3R", {}, {full(S), full(S), full(S)}, [ip3, mat](Call& c) {
    Matrix local;
    return ip3(reinterpret_cast<T**>(c.dArr(3)), c.ds(0), c.roi(), rowsOf(c, mat, local));
  });
  ip.sharedDstStep = true;
  out.push_back(ip);
}

#define KT_DEPTH(out, pre, T, mat)                                                                             \
  addDepth<T>(out, #pre "_", mat, pre##_C3R, pre##_C3IR, pre##_AC4R, pre##_AC4IR, pre##_P3R, pre##_IP3R)

std::vector<Member> members(const MatrixPtr& mat) {
  std::vector<Member> out;
  KT_DEPTH(out, keliColorTwist32f_8u, Kel8u, mat);
  KT_DEPTH(out, keliColorTwist32f_8s, Kel8s, mat);
  KT_DEPTH(out, keliColorTwist32f_16u, Kel16u, mat);
  KT_DEPTH(out, keliColorTwist32f_16s, Kel16s, mat);
  KT_DEPTH(out, keliColorTwist_32f, Kel32f, mat);
  out.push_back(base<Kel32f>("keliColorTwist_32f_C4R", {full(16)}, {full(16)}, [mat](Call& c) {
    Matrix local;
    return keliColorTwist_32f_C4R(c.sT<Kel32f>(0), c.ss(0), c.dT<Kel32f>(0), c.ds(0), c.roi(), rowsOf(c, mat, local));
  }));
  return out;
}

MatrixPtr randomMatrix(uint32_t seed, float weight, float constant) {
  std::mt19937 g(seed);
  std::uniform_real_distribution<float> w(-weight, weight), k(-constant, constant);
  auto m = std::make_shared<Matrix>();
  for (int i = 0; i < 16; ++i) (*m)[i] = (i % 4 == 3 && i < 12) ? k(g) : w(g);
  return m;
}

// The processor's default NaN, the one that inf - inf and inf * 0 give: every
// NaN of a result then has the same bits in every path.
float defaultNaN() {
  const uint32_t u = 0xFFC00000u;
  float f;
  std::memcpy(&f, &u, 4);
  return f;
}

// MXCSR for the duration of a scope.
struct Csr {
  explicit Csr(unsigned v) : saved(_mm_getcsr()) { _mm_setcsr(v); }
  ~Csr() { _mm_setcsr(saved); }
  unsigned saved;
};
constexpr unsigned kDefaultCsr = 0x1F80;
constexpr unsigned kModes[4] = {0x0000, 0x2000, 0x4000, 0x6000};  // nearest, down, up, toward zero

// One row of pixels through a C3R member with a 3 x 4 matrix.
template <class T>
std::vector<std::array<T, 3>> twistRow(FnC<T> f, const Matrix& m, const std::vector<std::array<T, 3>>& px) {
  const int w = static_cast<int>(px.size()), step = 3 * w * int(sizeof(T));
  std::vector<std::array<T, 3>> out(w);
  EXPECT_EQ(f(px[0].data(), step, out[0].data(), step, {w, 1}, reinterpret_cast<M34>(m.data())), kelStatusOk);
  return out;
}
template <class T>
std::array<T, 3> twistPx(FnC<T> f, const Matrix& m, std::array<T, 3> p) {
  return twistRow<T>(f, m, {p})[0];
}
Matrix withRows(std::array<float, 4> r0, std::array<float, 4> r1, std::array<float, 4> r2) {
  Matrix m{};
  for (int j = 0; j < 4; ++j) m[j] = r0[j], m[4 + j] = r1[j], m[8 + j] = r2[j];
  return m;
}
const Matrix kIdentity = withRows({1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0});

}  // namespace

std::vector<Member> twistMembers() { return members(randomMatrix(5, 2.0f, 300.0f)); }
KT_MEMBERS(twistMembers);
TEST(ToneTwist, GuardsErrorsAndPaths) { checkAll(twistMembers()); }

// The vector paths hold to the scalar definitions with sums that overflow,
// and with infinite and NaN entries (NaN sums take the upper limit in the
// integer forms and are stored in the float forms).
TEST(ToneTwist, PathsWithExtremeMatrices) {
  const float inf = std::numeric_limits<float>::infinity(), nan = defaultNaN();
  std::vector<MatrixPtr> mats = {randomMatrix(8, 3e38f, 3e38f), randomMatrix(9, 1e30f, 1e5f)};
  for (float extreme : {inf, -inf, nan}) {
    auto m = randomMatrix(10, 2.0f, 200.0f);
    (*m)[0] = extreme, (*m)[6] = extreme, (*m)[11] = extreme, (*m)[13] = extreme;
    mats.push_back(m);
  }
  // NaNs of different payloads meeting in one sum: every path keeps the same one.
  auto nans = randomMatrix(11, 2.0f, 200.0f);
  const uint32_t payloads[] = {0x7FC00000u, 0x7FC12345u, 0xFFC00000u, 0x7F800001u, 0xFFD0F00Du};
  for (int i : {0, 3, 5, 6, 9, 11, 12, 15}) std::memcpy(&(*nans)[i], &payloads[i % 5], 4);
  mats.push_back(nans);
  for (const MatrixPtr& m : mats)
    for (const Member& mem : members(m)) {
      SCOPED_TRACE(mem.name);
      checkPaths(mem, 12);
    }
}

// Identity weights with zero constants give the image back in every form.
TEST(ToneTwist, IdentityGivesTheImageBack) {
  auto id = std::make_shared<Matrix>(kIdentity);
  (*id)[15] = 1.0f;  // the 4 x 4 identity
  for (const Member& m : members(id)) {
    const KeliSize roi{37, 3};
    std::mt19937 rng(3);
    Images im = makeImages(m, roi, rng, false);
    std::vector<std::vector<uint8_t>> before;
    for (auto* g : m.src.empty() ? im.dstPtrs() : im.srcPtrs()) before.push_back(g->region());
    ASSERT_EQ(run(m, im, roi), kelStatusOk) << m.name;
    // AC4R leaves the destination's alpha alone: only the colour samples compare.
    const bool ac4 = m.name.find("AC4R") != std::string::npos;
    const size_t px = 4 * m.sampleBytes;
    for (size_t k = 0; k < im.dst.size(); ++k) {
      const std::vector<uint8_t> after = im.dst[k]->region();
      for (size_t i = 0; i < after.size(); ++i)
        if (!ac4 || i % px < 3 * px / 4) {
          ASSERT_EQ(after[i], before[k][i]) << m.name << " byte " << i;
        }
    }
  }
}

// The stated values: constants with round-to-nearest-even, the limits of each
// depth, and the two groupings of the sum.
TEST(ToneTwist, TellingValues) {
  const Matrix half = withRows({1, 0, 0, 0.5f}, {0, 1, 0, 0.5f}, {0, 0, 1, 0.5f});
  using P8 = std::array<Kel8u, 3>;
  EXPECT_EQ(twistPx<Kel8u>(keliColorTwist32f_8u_C3R, half, {2, 3, 4}), (P8{2, 4, 4}));
  const Matrix big = withRows({2, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, 1, 255.5f});
  EXPECT_EQ(twistPx<Kel8u>(keliColorTwist32f_8u_C3R, big, {200, 1, 0}), (P8{255, 0, 255}));

  using P16s = std::array<Kel16s, 3>;
  const Matrix wide = withRows({2, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 1, -1e9f});
  EXPECT_EQ(twistPx<Kel16s>(keliColorTwist32f_16s_C3R, wide, {20000, -20000, 5}), (P16s{32767, -32768, -32768}));
  using P16u = std::array<Kel16u, 3>;
  EXPECT_EQ(twistPx<Kel16u>(keliColorTwist32f_16u_C3R, wide, {40000, 1000, 5}), (P16u{65535, 2000, 0}));

  using P8s = std::array<Kel8s, 3>;
  const Matrix down = withRows({0, 0, 0, -1000}, {0, 0, 0, 126.5f}, {0, 0, 0, 1e20f});
  EXPECT_EQ(twistPx<Kel8s>(keliColorTwist32f_8s_C3R, down, {1, 2, 3}), (P8s{-128, 126, 127}));

  // Weights of 0.1 and a constant of 0.5: the sums land a hair off the half
  // in opposite directions, so 8u and 8s round these pixels differently.
  const Matrix tenth = withRows({0.1f, 0.1f, 0.1f, 0.5f}, {0.1f, 0.1f, 0.1f, 0.5f}, {0.1f, 0.1f, 0.1f, 0.5f});
  const struct {
    int c0, c1, c2, u8, s8;
  } split[] = {{7, 121, 52, 19, 18}, {63, 44, 13, 12, 13}, {49, 99, 52, 20, 21}};
  for (const auto& s : split) {
    EXPECT_EQ(twistPx<Kel8u>(keliColorTwist32f_8u_C3R, tenth, {Kel8u(s.c0), Kel8u(s.c1), Kel8u(s.c2)})[0], s.u8);
    EXPECT_EQ(twistPx<Kel8s>(keliColorTwist32f_8s_C3R, tenth, {Kel8s(s.c0), Kel8s(s.c1), Kel8s(s.c2)})[0], s.s8);
  }

  // A NaN sum takes the upper limit; 32f stores it.
  const Matrix nanRow = withRows({defaultNaN(), 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0});
  EXPECT_EQ(twistPx<Kel8u>(keliColorTwist32f_8u_C3R, nanRow, {1, 2, 3}), (P8{255, 2, 3}));
  EXPECT_EQ(twistPx<Kel8s>(keliColorTwist32f_8s_C3R, nanRow, {1, 2, 3}), (P8s{127, 2, 3}));
  EXPECT_TRUE(std::isnan(twistPx<Kel32f>(keliColorTwist_32f_C3R, nanRow, {1, 2, 3})[0]));
}

// 4 x 4: the fourth output is computed like the others from row 3 in full.
TEST(ToneTwist, FourByFourUsesEveryEntry) {
  Matrix m{};
  for (int i = 0; i < 16; ++i) m[i] = std::ldexp(1.0f, i % 4 - 2) * float(1 + i / 4);  // row i: (i+1)/4, /2, 1, 2
  const std::array<float, 4> px = {4, 8, 16, 32};
  for (int w : {1, 4, 9}) {
    std::vector<std::array<float, 4>> s(w, px), d(w);
    ASSERT_EQ(keliColorTwist_32f_C4R(s[0].data(), 16 * w, d[0].data(), 16 * w, {w, 1},
                                     reinterpret_cast<const Kel32f(*)[4]>(m.data())),
              kelStatusOk);
    for (int x = 0; x < w; ++x)
      for (int i = 0; i < 4; ++i) EXPECT_EQ(d[x][i], 85.0f * float(i + 1)) << "width " << w << " channel " << i;
  }
}

// All six forms of a depth compute the same pixels; AC4 alpha is left alone,
// in place and not.
template <class T>
void expectFormsAgree(FnC<T> c3, FnI<T> c3i, FnC<T> ac4, FnI<T> ac4i, FnP<T> p3, FnIP<T> ip3) {
  const int w = 45, n = w;
  std::mt19937 g(21);
  auto sample = [&]() -> T {
    if constexpr (std::is_same<T, Kel32f>::value) return static_cast<float>(g() % 20000) / 7.0f - 1000.0f;
    else return static_cast<T>(g());
  };
  const MatrixPtr mp = randomMatrix(77, 1.5f, 1000.0f);
  const M34 m = rows(mp);
  std::vector<T> c(3 * n), a(4 * n), pl[3];
  for (int x = 0; x < n; ++x)
    for (int k = 0; k < 4; ++k) {
      const T v = sample();
      if (k < 3) c[3 * x + k] = v, a[4 * x + k] = v, pl[k].push_back(v);
      else a[4 * x + 3] = v;
    }
  const int S = sizeof(T);
  std::vector<T> ref(3 * n), outA(4 * n, T(9)), inC = c, inA = a, op[3] = {pl[0], pl[0], pl[0]}, ip[3] = {pl[0], pl[1], pl[2]};
  ASSERT_EQ(c3(c.data(), 3 * S * w, ref.data(), 3 * S * w, {w, 1}, m), kelStatusOk);
  ASSERT_EQ(c3i(inC.data(), 3 * S * w, {w, 1}, m), kelStatusOk);
  ASSERT_EQ(ac4(a.data(), 4 * S * w, outA.data(), 4 * S * w, {w, 1}, m), kelStatusOk);
  ASSERT_EQ(ac4i(inA.data(), 4 * S * w, {w, 1}, m), kelStatusOk);
  const T* srcP[3] = {pl[0].data(), pl[1].data(), pl[2].data()};
  T* dstP[3] = {op[0].data(), op[1].data(), op[2].data()};
  T* inP[3] = {ip[0].data(), ip[1].data(), ip[2].data()};
  ASSERT_EQ(p3(srcP, S * w, dstP, S * w, {w, 1}, m), kelStatusOk);
  ASSERT_EQ(ip3(inP, S * w, {w, 1}, m), kelStatusOk);
  for (int x = 0; x < n; ++x) {
    for (int k = 0; k < 3; ++k) {
      const T r = ref[3 * x + k];
      ASSERT_EQ(std::memcmp(&inC[3 * x + k], &r, S), 0) << x;
      ASSERT_EQ(std::memcmp(&outA[4 * x + k], &r, S), 0) << x;
      ASSERT_EQ(std::memcmp(&inA[4 * x + k], &r, S), 0) << x;
      ASSERT_EQ(std::memcmp(&op[k][x], &r, S), 0) << x;
      ASSERT_EQ(std::memcmp(&ip[k][x], &r, S), 0) << x;
    }
    EXPECT_EQ(outA[4 * x + 3], T(9)) << "destination alpha kept";
    EXPECT_EQ(std::memcmp(&inA[4 * x + 3], &a[4 * x + 3], S), 0) << "alpha kept in place";
  }
}
#define KT_FORMS(pre, T) \
  expectFormsAgree<T>(pre##_C3R, pre##_C3IR, pre##_AC4R, pre##_AC4IR, pre##_P3R, pre##_IP3R)
TEST(ToneTwist, FormsOfADepthAgree) {
  KT_FORMS(keliColorTwist32f_8u, Kel8u);
  KT_FORMS(keliColorTwist32f_8s, Kel8s);
  KT_FORMS(keliColorTwist32f_16u, Kel16u);
  KT_FORMS(keliColorTwist32f_16s, Kel16s);
  KT_FORMS(keliColorTwist_32f, Kel32f);
}

// Integer forms: the same bytes under each of the caller's rounding modes,
// with flags already raised or an exception unmasked, and MXCSR exactly as
// it was after every call (also after an error return).
TEST(ToneTwist, IntegerFormsIgnoreAndRestoreTheRoundingMode) {
  for (const MatrixPtr& mat : {randomMatrix(31, 2.0f, 300.0f), std::make_shared<Matrix>(Matrix{
                                                                   defaultNaN(), 0.5f, 0, 0.5f, 0, 1, 0, 2.5f, 0, 0, 1,
                                                                   -1e30f})}) {
    for (const Member& m : members(mat)) {
      if (m.name.find("_32f") != std::string::npos) continue;
      // Wide enough for the 64- and 32-pixel blocks and a scalar finish.
      const KeliSize roi{189, 3};
      std::vector<std::vector<uint8_t>> ref;
      for (unsigned extra : {0u, 0x3Fu, 0x0080u /* invalid unmasked */ | 0x8040u /* FTZ, DAZ */})
        for (unsigned mode : kModes) {
          Images im = makeImages(m, roi, StepMode::Padded, 5, 77);
          const unsigned csr = (kDefaultCsr | mode | extra) & ~(extra & 0x0080u ? 0x0080u : 0u);
          unsigned after = 0;
          KelStatus st;
          {
            Csr scope(csr);
            st = run(m, im, roi);
            after = _mm_getcsr();
          }
          ASSERT_EQ(st, kelStatusOk) << m.name;
          EXPECT_EQ(after, csr) << m.name << " MXCSR " << std::hex << csr;
          std::vector<std::vector<uint8_t>> out;
          for (auto& p : im.dst) out.push_back(p->region());
          if (ref.empty()) ref = out;
          else EXPECT_EQ(out, ref) << m.name << " mode " << std::hex << csr;
          Csr scope(csr);
          EXPECT_EQ(run(m, im, {0, 1}), kelStatusBadSize);
          EXPECT_EQ(_mm_getcsr(), csr);
        }
    }
  }
}

// 32f forms round in the caller's mode and leave it, and the masks, as they were.
TEST(ToneTwist, FloatFormsRoundInTheCallersMode) {
  const float tiny = std::ldexp(1.0f, -25);
  const Matrix m = withRows({1, 0, 0, 1}, {-1, 0, 0, -1}, {0, 0, 0, 0});
  const float up = std::nextafter(1.0f, 2.0f), down = std::nextafter(1.0f, 0.0f);
  const struct {
    unsigned mode;
    float r0, r1;
  } cases[] = {{0x0000, 1.0f, -1.0f}, {0x2000, 1.0f, -up}, {0x4000, up, -1.0f}, {0x6000, 1.0f, -1.0f}};
  for (const auto& c : cases) {
    std::array<float, 4> px = {tiny, 0, 0, 0}, px4 = {tiny / 2, 0, 0, down}, o4{};
    std::array<float, 3> o3{};
    Csr scope(kDefaultCsr | c.mode);
    ASSERT_EQ(keliColorTwist_32f_C3R(px.data(), 12, o3.data(), 12, {1, 1}, reinterpret_cast<M34>(m.data())),
              kelStatusOk);
    EXPECT_EQ(o3[0], c.r0) << std::hex << c.mode;
    EXPECT_EQ(o3[1], c.r1) << std::hex << c.mode;
    // 4 x 4: ((c0 + 0) + 0) + c3 with c0 = 2^-26, c3 = 1 - 2^-24: a quarter
    // of the spacing below 1 above c3.
    const Matrix m4 = {1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    ASSERT_EQ(keliColorTwist_32f_C4R(px4.data(), 16, o4.data(), 16, {1, 1}, reinterpret_cast<M34>(m4.data())),
              kelStatusOk);
    EXPECT_EQ(o4[0], c.mode == 0x4000 ? 1.0f : down) << std::hex << c.mode;
    EXPECT_EQ(_mm_getcsr() & ~0x3Fu, kDefaultCsr | c.mode);
  }
}

// Rows that follow each other without a gap form one run (and large images
// take the streaming stores); the bytes are those of padded rows through the
// scalar definitions.
TEST(ToneTwist, ContiguousRowsGiveThePaddedResult) {
  const MatrixPtr m = randomMatrix(4, 2.0f, 10.0f);
  for (KeliSize roi : {KeliSize{7, 5}, KeliSize{128, 100}, KeliSize{97, 121}})
    for (int ch : {3, 4}) {
      const int w = roi.width, h = roi.height, row = ch * w, pad = row + 5;
      std::vector<float> src(static_cast<size_t>(pad) * h + 4), a(src.size() + 4), b(src.size() + 4);
      std::mt19937 g(roi.width);
      for (auto& v : src) v = static_cast<float>(g() % 1000) / 3.0f;
      auto call = [&](const float* s, int sStep, float* d, int dStep) {
        return ch == 3 ? keliColorTwist_32f_C3R(s, sStep, d, dStep, roi, rows(m))
                       : keliColorTwist_32f_C4R(s, sStep, d, dStep, roi, reinterpret_cast<M34>(m->data()));
      };
      for (int off : {0, 1})  // pointers on and off 16-byte boundaries
        for (kel::Isa isa : paths()) {  // AVX-512 keeps plain stores; AVX2 streams them
          {
            IsaScope path(isa);
            ASSERT_EQ(call(src.data() + off, 4 * row, a.data() + off, 4 * row), kelStatusOk);
          }
          {
            IsaScope scalar(kel::Isa::Scalar);
            ASSERT_EQ(call(src.data() + off, 4 * row, b.data() + off, 4 * pad), kelStatusOk);
          }
          for (int y = 0; y < h; ++y)
            ASSERT_EQ(std::memcmp(&a[off + size_t(y) * row], &b[off + size_t(y) * pad], 4 * row), 0)
                << ch << " channels, row " << y << ", path " << int(isa);
        }
    }
}

// The integer interleaved forms join gapless rows into one run too.
TEST(ToneTwist, ContiguousRowsGiveThePaddedResultAtEveryDepth) {
  for (const Member& m : twistMembers())
    if (m.name.find("P3") == std::string::npos && m.name.find("_32f_") == std::string::npos)
      checkTightEqualsPadded(m, {{7, 5}, {64, 64}, {97, 3}});
}

// Steps are bytes and used as bytes: 16-bit rows may start at odd addresses.
TEST(ToneTwist, StepsAreUsedAsBytes) {
  const int w = 11, h = 4, tight = 6 * w, odd = tight + 3;
  const MatrixPtr m = randomMatrix(6, 1.5f, 500.0f);
  std::vector<uint8_t> src(odd * h), dst(odd * h, 0xAB);
  std::vector<Kel16u> ref(3 * w * h), px(3 * w * h);
  std::mt19937 g(1);
  for (auto& v : px) v = Kel16u(g());
  for (int y = 0; y < h; ++y) std::memcpy(&src[size_t(y) * odd], &px[size_t(y) * 3 * w], tight);
  ASSERT_EQ(keliColorTwist32f_16u_C3R(px.data(), tight, ref.data(), tight, {w, h}, rows(m)), kelStatusOk);
  ASSERT_EQ(keliColorTwist32f_16u_C3R(reinterpret_cast<const Kel16u*>(src.data()), odd,
                                      reinterpret_cast<Kel16u*>(dst.data()), odd, {w, h}, rows(m)),
            kelStatusOk);
  for (int y = 0; y < h; ++y) EXPECT_EQ(std::memcmp(&dst[size_t(y) * odd], &ref[size_t(y) * 3 * w], tight), 0);
}
