// Bit-depth reduction: the working scale and store of each depth pair, the
// two truncations, the quantising step shared by the dithered methods, the
// ordered-dither matrix and the noise tables.
//
// A depth pair is a (source sample, destination sample) type pair. The
// dithered methods work on a value w in source units (16s lifted by 32768);
// the nearest-level method works on a value normalised to 0..1.
#pragma once

#include <immintrin.h>

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "frame/arith.h"
#include "frame/rows.h"
#include "kelcc.h"
#include "support/support.h"

// The per-sample steps are forced inline: the diffusion loops run several
// rows' chains side by side, which only pays when nothing is a call.
#define KEL_REDUCE_INLINE inline __attribute__((always_inline))
#define KEL_REDUCE_ALWAYS __attribute__((always_inline))

namespace kel {
namespace {
namespace reduce {

// Float to integer toward zero as cvttss2si gives it: INT32_MIN for values
// outside the 32-bit range and for NaN, so that float sources far outside
// 0..1 saturate at the store the same way in every path.
KEL_REDUCE_INLINE int32_t truncF(float a) { return _mm_cvtt_ss2si(_mm_set_ss(a)); }
// The guarded truncation: widened to double, 9e-6 added, then cut toward zero.
KEL_REDUCE_INLINE int32_t truncG(float a) { return _mm_cvttsd_si32(_mm_set_sd(static_cast<double>(a) + 9e-6)); }
template <bool G>
inline int32_t cut(float a) {
  if constexpr (G)
    return truncG(a);
  else
    return truncF(a);
}

// Sample access at any address: the nearest-level and the four-channel
// ordered paths take steps in bytes, so a 16-bit or float row may start off
// its sample boundary.
template <class T>
inline T ld(const T* p) {
  return loadAt<T>(p);
}
template <class T>
inline void st(T* p, T v) {
  storeAt(p, v);
}

struct Scale {
  float step;  // level distance in working units
  float inv;   // its inverse, as the levels per working unit
};

// The level chosen for working value w: the level below w (by the member's
// truncation t), moved one step up when w lies above it by more than thr.
// A tie stays on the lower level. Each operation is rounded to float.
// Written as a select of the step or 0.0 (q + 0.0 is q: q is never -0.0), so
// that the compiler needs no branch for this unpredictable decision.
template <bool G>
KEL_REDUCE_INLINE float quant(float w, float thr, Scale sc) {
  const float q = static_cast<float>(cut<G>(w * sc.inv)) * sc.step;
  const float up = thr < w - q ? sc.step : 0.0f;
  return q + up;
}

template <class S_, class D_>
struct Depth {
  using S = S_;
  using D = D_;
  static constexpr bool kFloat = std::is_same_v<S, Kel32f>;
  static constexpr bool kSigned = std::is_same_v<S, Kel16s>;
  static constexpr bool kWide = sizeof(S) == 2;  // 16-bit source
  static constexpr int kSrcShift = sizeof(S) == 1 ? 0 : (sizeof(S) == 2 ? 1 : 2);
  static constexpr int kDstShift = sizeof(D) == 1 ? 0 : 1;
  // 16u and 16s keep their depth and take up to 65536 levels; every other
  // pair (32f16u and 32f16s included) stops at 256.
  static constexpr int kMaxLevels = (kWide && sizeof(D) == 2) ? 65536 : 256;
  // The pairs whose Floyd-Steinberg members (and noisy ordered members of
  // one to three channels) cut with truncG, and whose Floyd-Steinberg sum
  // adds the middle neighbour above before the left one.
  static constexpr bool kAlt = kFloat || (kSigned && sizeof(D) == 1);

  // Working value.
  static float work(S v) {
    if constexpr (kFloat)
      return v;
    else if constexpr (kSigned)
      return static_cast<float>(static_cast<int32_t>(v) + 32768);
    else
      return static_cast<float>(v);
  }
  // Level distance and inverse for L = levels - 1. The 8-bit distance is
  // formed in two rounded steps, (65280 / L) / 256, not as 255 / L.
  static Scale scale(float L) {
    if constexpr (kFloat)
      return {1.0f / L, L};
    else if constexpr (kWide)
      return {65535.0f / L, L / 65535.0f};
    else
      return {(65280.0f / L) * 0.00390625f, L / 255.0f};
  }
  // Saturation bounds of error diffusion, in working units.
  static constexpr float kTop = kFloat ? 1.0f : (kWide ? 65535.0f : 255.0f);
  static constexpr float kBottomFs = kFloat ? 1.1920929e-7f : 0.0f;
  static constexpr D kTopOut = std::is_same_v<D, Kel8u> ? 255 : (std::is_same_v<D, Kel16u> ? 65535 : 32767);
  static constexpr D kBottomOut = std::is_same_v<D, Kel16s> ? -32768 : 0;

  // The output sample of a dithered level q.
  template <bool G>
  static D store(float q) {
    int32_t t;
    if constexpr (kFloat)
      t = cut<G>(q * (sizeof(D) == 1 ? 255.0f : 65535.0f));
    else
      t = cut<G>(q);
    if constexpr (sizeof(D) == 1)
      return static_cast<D>(clip8(kWide ? (t >> 8) : t));
    else if constexpr (std::is_same_v<D, Kel16u>)
      return static_cast<D>(sat16u(t));
    else
      return static_cast<D>(sat16u(t) - 32768);
  }

  // ---- nearest level: its own normalised arithmetic ------------------------
  static float norm(S v) {
    if constexpr (kFloat)
      return v;
    else if constexpr (kWide)
      return work(v) * 1.5259022e-5f;
    else
      return static_cast<float>(v) * 0.003921569f;
  }
  // s = 1 / L, h = 0.5 / L.
  static D nearest(S v, float L, float s, float h) {
    const float x = norm(v);
    float q = s * static_cast<float>(truncF(x * L));
    if (x - q > h) q = q + s;
    if constexpr (sizeof(D) == 1)
      return static_cast<D>(clip8(truncF(q * 255.0f)));
    else if constexpr (std::is_same_v<D, Kel16u>)
      return static_cast<D>(sat16u(truncF(q * 65535.0f)));
    else  // the subtraction wraps in 32 bits as the integer lanes do
      return static_cast<D>(sat16s(static_cast<int32_t>(static_cast<uint32_t>(truncF(q * 65535.0f)) - 32768u)));
  }
};

// Index of a depth pair in the kernel tables.
template <class S, class D>
constexpr int pairIndex() {
  if constexpr (std::is_same_v<S, Kel32f>)
    return std::is_same_v<D, Kel8u> ? 5 : (std::is_same_v<D, Kel16u> ? 6 : 7);
  else if constexpr (sizeof(S) == 1)
    return 0;
  else if constexpr (sizeof(D) == 2)
    return std::is_same_v<S, Kel16u> ? 1 : 2;
  else
    return std::is_same_v<S, Kel16u> ? 3 : 4;
}

using D8u = Depth<Kel8u, Kel8u>;
using D16u = Depth<Kel16u, Kel16u>;
using D16s = Depth<Kel16s, Kel16s>;
using D16u8u = Depth<Kel16u, Kel8u>;
using D16s8u = Depth<Kel16s, Kel8u>;
using D32f8u = Depth<Kel32f, Kel8u>;
using D32f16u = Depth<Kel32f, Kel16u>;
using D32f16s = Depth<Kel32f, Kel16s>;

// ---- ordered dithering ------------------------------------------------------
// The 4x4 index matrix over 15 (not 16): 0.0 at the top left, 1.0 at row 3
// column 0. Each entry is the float nearest k / 15, which the correctly
// rounded float division gives.
inline constexpr int kBayerIndex[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
struct BayerThresh {
  float t[4][4];
  constexpr BayerThresh() : t{} {
    for (int r = 0; r < 4; ++r)
      for (int c = 0; c < 4; ++c) t[r][c] = static_cast<float>(kBayerIndex[r][c]) / 15.0f;
  }
};
inline constexpr BayerThresh kBayerThresh{};

// ---- layouts ----------------------------------------------------------------
// Channel codes: 1 C1, 3 C3, 4 AC4 (three samples of four), 5 C4.
inline int samplesQuantised(int chan) { return chan == 1 ? 1 : (chan == 5 ? 4 : 3); }
inline int samplesInMemory(int chan) { return chan == 1 ? 1 : (chan == 3 ? 3 : 4); }

// ---- noise -----------------------------------------------------------------
// Two tables per call from the uniform source, both seeded 0: tabI scrambles
// the column, tabF holds the noise values in [low, high]. Everything made is
// released by the destructor, on the failure paths too; a table whose
// generator could not be made is never read (the call reports no memory).
class NoiseTables {
 public:
  NoiseTables() = default;
  NoiseTables(const NoiseTables&) = delete;
  NoiseTables& operator=(const NoiseTables&) = delete;
  ~NoiseTables() {
    if (tabF_) kelsFree(tabF_);
    if (tabI_) kelsFree(tabI_);
    if (genI_) kelsRandUniformFree_16s(genI_);
    if (genF_) kelsRandUniformFree_32f(genF_);
  }
  KelStatus build(float low, float high) {
    tabF_ = kelsMalloc_32f(kSize);
    if (!tabF_) return kelStatusNoMemory;
    tabI_ = kelsMalloc_16s(kSize);
    if (!tabI_) return kelStatusNoMemory;
    if (kelsRandUniformInitAlloc_16s(&genI_, 0, 1024, 0) != kelStatusOk || !genI_) return kelStatusNoMemory;
    if (KelStatus s = kelsRandUniform_16s(tabI_, kSize, genI_)) return s;
    if (kelsRandUniformInitAlloc_32f(&genF_, low, high, 0) != kelStatusOk || !genF_) return kelStatusNoMemory;
    if (KelStatus s = kelsRandUniform_32f(tabF_, kSize, genF_)) return s;
    return kelStatusOk;
  }
  // The noise value of column x, row y of the region (tabI read unsigned).
  float at(int x, int y) const {
    const uint32_t i = static_cast<uint32_t>(static_cast<uint16_t>(tabI_[x & 1023])) + 2u * static_cast<uint32_t>(y) +
                       static_cast<uint32_t>(x);
    return tabF_[i & 1023];
  }
  const Kel32f* tabF() const { return tabF_; }
  const Kel16s* tabI() const { return tabI_; }

 private:
  static constexpr int kSize = 1024;
  Kel32f* tabF_ = nullptr;
  Kel16s* tabI_ = nullptr;
  KelRandUniformState* genI_ = nullptr;
  KelRandUniformState* genF_ = nullptr;
};

}  // namespace reduce
}  // namespace
}  // namespace kel
