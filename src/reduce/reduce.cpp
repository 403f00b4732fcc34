// Bit-depth reduction: 32 members over one outer function. Nearest level and
// the ordered and error-diffusion dithers live in their own layers; formulas
// in reduce.h, row routines in ordered.h and diffusion.h.
#include <algorithm>
#include <climits>
#include <type_traits>

#include "frame/cpu.h"
#include "frame/parallel.h"
#include "frame/rows.h"
#include "reduce/diffusion.h"
#include "reduce/ordered.h"
#include "reduce/reduce_kernels.h"
#include "tone/gamma_tables.h"

namespace kel {
namespace {

using namespace reduce;

// ---- nearest level ----------------------------------------------------------
// Steps in bytes. C1, C3 and C4 rows are one run of width * samples; AC4
// handles the first three samples of each pixel. 8u to 8u maps each byte on
// its own: from kNearestTable samples on, the call runs the row routine over
// the 256 byte values once and rows go through the byte look-up of the gamma
// family with that table (table and computed path give the same bytes).
inline constexpr int64_t kNearestTable = 4096;
template <class Dp>
KelStatus ownNo(const typename Dp::S* src, int srcStep, typename Dp::D* dst, int dstStep, KeliSize roi, int lm1,
                int chan) {
  const float L = static_cast<float>(lm1);
  const float s = 1.0f / L, h = 0.5f / L;
  const int w = roi.width;
  if (chan == 1 || chan == 3 || chan == 5) {
    const int64_t len = static_cast<int64_t>(w) * (chan == 5 ? 4 : chan);
    Chain<KernNearest8u> chain{};
    if constexpr (std::is_same_v<Dp, D8u>)
      chain = chainFor(&ReduceKernels::nearest8u, sse41::kReduceKernels, avx2::kReduceKernels);
    auto row = [&](const typename Dp::S* sr, typename Dp::D* dr, int64_t n) {
      int64_t x = 0;
      if constexpr (std::is_same_v<Dp, D8u>)
        for (auto k : chain.k)
          if (k) x = k(sr, dr, x, n, L, s, h);
      for (; x < n; ++x) st(dr + x, Dp::nearest(ld(sr + x), L, s, h));
    };
    if constexpr (std::is_same_v<Dp, D8u>) {
      if (len * roi.height >= kNearestTable && len <= INT_MAX) {
        uint8_t ramp[256], table[256];
        for (int v = 0; v < 256; ++v) ramp[v] = static_cast<uint8_t>(v);
        row(ramp, table, 256);
        const ByteLookUp look = byteLookUp();
        for (int y = 0; y < roi.height; ++y) look(rowAt(src, srcStep, y), rowAt(dst, dstStep, y), static_cast<int>(len), table);
        return kelStatusOk;
      }
    }
    for (int y = 0; y < roi.height; ++y) row(rowAt(src, srcStep, y), rowAt(dst, dstStep, y), len);
  } else if (chan == 4) {
    for (int y = 0; y < roi.height; ++y) {
      const auto* sr = rowAt(src, srcStep, y);
      auto* dr = rowAt(dst, dstStep, y);
      for (int x = 0; x < w; ++x)
        for (int c = 0; c < 3; ++c) {
          const ptrdiff_t i = 4 * static_cast<ptrdiff_t>(x) + c;
          st(dr + i, Dp::nearest(ld(sr + i), L, s, h));
        }
    }
  }
  return kelStatusOk;
}

// ---- ordered dithering --------------------------------------------------------
// 8u without noise: a sample's output depends only on its value and on the
// column and row of its pixel in the region modulo 4. With AVX-512 VBMI and
// enough samples, the call tabulates the outputs of the rows it has (up to
// four phases of rows, four of columns, 256 values each) with the scalar
// formula itself, and rows go through byte permutes of that table. The
// table (up to 4096 evaluations, some 7 us) pays from about 80000 samples
// on; calls below 2^17 samples keep the computed path. Both give the same
// bytes.
constexpr int64_t kTableMinSamples = 1 << 17;

bool bayerByTable(const Kel8u* src, ptrdiff_t srcBytes, Kel8u* dst, ptrdiff_t dstBytes, KeliSize roi, Scale sc,
                  int chan) {
  const int n = samplesQuantised(chan), p = samplesInMemory(chan);
  if (static_cast<int64_t>(roi.width) * roi.height * n < kTableMinSamples || !activeVbmi()) return false;
  const int rows = std::min(roi.height, 4);
  alignas(64) Kel8u table[4][4][256];
  for (int y = 0; y < rows; ++y) {
    float thr[4];
    bayerRowThresh(sc.step, y, thr);
    for (int j = 0; j < 4; ++j)
      for (int v = 0; v < 256; ++v) table[y][j][v] = bayerSample<D8u, false>(static_cast<Kel8u>(v), thr[j], sc);
  }
  const KernBayerLut k = avx2::kReduceKernels.bayerLut8u;
  const int64_t len = static_cast<int64_t>(roi.width) * p;
  parallelRows(roi.height, [&](int y) {
    k(byteOffset(src, srcBytes * y), byteOffset(dst, dstBytes * y), len, p, chan == 4, &table[y & 3][0][0]);
  });
  return true;
}

// Rows by static schedule at every size; the pattern is anchored at the
// region. `srcBytes` and `dstBytes` are the row distances (from steps in
// samples, or in bytes for C4).
template <class Dp, bool Noise>
KelStatus ownBayer(const typename Dp::S* src, ptrdiff_t srcBytes, typename Dp::D* dst, ptrdiff_t dstBytes,
                   KeliSize roi, int lm1, int noise, int chan) {
  const Scale sc = Dp::scale(static_cast<float>(lm1));
  NoiseTables nz;
  if constexpr (Noise) {
    const float amp = static_cast<float>(noise) / 100.0f;
    if (KelStatus s = nz.build(static_cast<float>(-noise) / 100.0f, amp)) return s;
  }
  const int n = samplesQuantised(chan), p = samplesInMemory(chan);
  const int w = roi.width;
  // Rows whose samples are all quantised have vector bodies.
  Chain<KernBayer> chain{};
  Chain<KernBayerT> chainT{};
  if (chan != 4) {
    constexpr int pair = pairIndex<typename Dp::S, typename Dp::D>();
    chain = chainOf([](const ReduceKernels& t) { return t.bayer[pair]; }, sse41::kReduceKernels, avx2::kReduceKernels);
    chainT = chainOf([](const ReduceKernels& t) { return t.bayerT[pair]; }, sse41::kReduceKernels, avx2::kReduceKernels);
  }
  if constexpr (std::is_same_v<Dp, D8u> && !Noise)
    if (bayerByTable(src, srcBytes, dst, dstBytes, roi, sc, chan)) return kelStatusOk;
  parallelRows(roi.height, [&](int y) {
    const auto* s = byteOffset(src, srcBytes * y);
    auto* d = byteOffset(dst, dstBytes * y);
    if constexpr (Noise) {
      // Noisy members of one to three channels in the pairs with the guarded
      // cut use it in quant and the store; four-channel ones do not, and
      // they and the other pairs have vector bodies, fed with the pixels'
      // thresholds a run of 64 pixels at a time.
      if (Dp::kAlt && chan != 5) {
        bayerNoiseRow<Dp, true>(s, d, 0, w, y, n, p, sc, nz);
      } else if (chainT.k[0]) {
        constexpr int kRun = 64;
        alignas(32) float thr[kRun * 4];
        const float* m = kBayerThresh.t[y & 3];
        for (int x0 = 0; x0 < w; x0 += kRun) {
          const int run = std::min(kRun, w - x0);
          for (int x = 0; x < run; ++x) {
            const float t = (nz.at(x0 + x, y) + m[(x0 + x) & 3]) * sc.step;
            for (int c = 0; c < p; ++c) thr[x * p + c] = t;
          }
          const ptrdiff_t off = static_cast<ptrdiff_t>(x0) * p;
          int64_t i = 0;
          for (auto k : chainT.k)
            if (k) i = k(s + off, d + off, i, static_cast<int64_t>(run) * p, sc.step, sc.inv, thr);
          // The kernels stop on whole chunks; the run's last samples go one
          // by one with the same thresholds.
          for (; i < static_cast<int64_t>(run) * p; ++i)
            st(d + off + i, bayerSample<Dp, false>(ld(s + off + i), thr[i], sc));
        }
      } else {
        bayerNoiseRow<Dp, false>(s, d, 0, w, y, n, p, sc, nz);
      }
    } else {
      float thr[4];
      bayerRowThresh(sc.step, y, thr);
      int64_t i = 0;
      for (auto k : chain.k)
        if (k) i = k(s, d, i, static_cast<int64_t>(w) * p, p, sc.step, sc.inv, thr);
      const int x = static_cast<int>(i / p);  // the kernels stop on a pixel boundary
      bayerRow<Dp, false>(s, d, x, w, n, p, sc, thr);
    }
  });
  return kelStatusOk;
}

// ---- error diffusion ------------------------------------------------------------
// Channels among W = min(team, channels) workers; each worker clears its
// block of error rows once and keeps turning the row roles from channel to
// channel, so a worker's second channel starts with the errors its first
// one left behind. One channel never asks for a team.
template <class Dp, bool Fs, bool Noise>
KelStatus ownDiffuse(const typename Dp::S* src, ptrdiff_t srcSamples, typename Dp::D* dst, ptrdiff_t dstSamples,
                     KeliSize roi, int lm1, int noise, int chan, int type) {
  const Scale sc = Dp::scale(static_cast<float>(lm1));
  NoiseTables nz;
  if constexpr (Noise) {
    const float low = static_cast<float>(50 - noise) * sc.step / 100.0f;
    const float high = static_cast<float>(50 + noise) * sc.step / 100.0f;
    if (KelStatus s = nz.build(low, high)) return s;
  }
  const int n = samplesQuantised(chan), p = samplesInMemory(chan);
  const int workers = n > 1 ? channelTeamSize(n) : 1;
  const int w = roi.width, h = roi.height;
  const int64_t wp = (static_cast<int64_t>(w) + 3) & ~int64_t{3};
  const int64_t rowLen = Fs ? w + 2 : wp + 4;
  // 8u Floyd-Steinberg runs sixteen rows at a time in vector lanes on
  // AVX-512 processors (fs8u16); its skewed sample buffers (and with noise
  // the column parts of the noise index) follow the error rows in each
  // worker's block.
  KernFs16 fs16 = nullptr;
  if constexpr (std::is_same_v<Dp, D8u> && Fs)
    if (activeIsa() >= Isa::AVX512) fs16 = avx2::kReduceKernels.fs8u16;
  const int64_t colFloats = fs16 && Noise ? w + 62 : 0;
  const int64_t skewFloats = fs16 ? (2 * fsSkewBytes(w) + 3) / 4 + colFloats : 0;
  const int64_t blockLen = (Fs ? 2 * rowLen : 3 * rowLen) + skewFloats;
  // The block count is a 32-bit element count; widths whose blocks would
  // not fit in it are reported as no memory.
  if (blockLen * workers > INT_MAX) return kelStatusNoMemory;
  float* blocks = kelsMalloc_32f(static_cast<int>(blockLen * workers));
  if (!blocks) return kelStatusNoMemory;

  const DiffuseThresh<Noise> th{sc.step * 0.5f, &nz};
  const Kernel12 k12 = type == kelDitherStucki ? kStucki : kJarvis;
  runChannelWorkers(workers, n, [&](int wk, int first, int count) {
    float* b = blocks + wk * blockLen;
    std::fill(b, b + blockLen, 0.0f);
    const int margin = Fs ? 1 : 2;
    float* rows[3] = {b + margin, b + rowLen + margin, b + 2 * rowLen + margin};
    // The worker's channels as one stream of rows, row j of the stream being
    // row j % h of channel first + j / h; the error rows turn with j.
    constexpr int K = 4;
    const int64_t total = static_cast<int64_t>(count) * h;
    auto rowOf = [&](int64_t j, const typename Dp::S*& s, typename Dp::D*& d) {
      const int ch = first + static_cast<int>(j / h), y = static_cast<int>(j % h);
      s = src + srcSamples * y + ch;
      d = dst + dstSamples * y + ch;
      return y;
    };
    for (int64_t j0 = 0; j0 < total;) {
      if (fs16 && total - j0 >= 16) {
        FsGroup16 g{};
        for (int r = 0; r < 16; ++r) {
          const typename Dp::S* s;
          typename Dp::D* d;
          const int y = rowOf(j0 + r, s, d);
          g.s[r] = reinterpret_cast<const uint8_t*>(s);
          g.d[r] = reinterpret_cast<uint8_t*>(d);
          g.y2[r] = static_cast<int32_t>(2u * static_cast<uint32_t>(y));
        }
        g.w = w, g.p = p, g.above = rows[j0 & 1];
        g.step = sc.step, g.inv = sc.inv, g.half = th.half;
        if constexpr (Noise) {
          // The column parts, with 30 cells before column 0 and 32 after the
          // row for the lanes outside it (their thresholds go unused).
          int32_t* col = reinterpret_cast<int32_t*>(b + (blockLen - colFloats)) + 30;
          for (int x = 0; x < w; ++x)
            col[x] = static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint16_t>(nz.tabI()[x & 1023])) +
                                          static_cast<uint32_t>(x));
          g.noiseF = nz.tabF();
          g.colBase = col;
        }
        g.skew = reinterpret_cast<uint8_t*>(b + (blockLen - skewFloats));
        fs16(g);
        j0 += 16;
        continue;
      }
      const int k = static_cast<int>(std::min<int64_t>(K, total - j0));
      RowCtx<Dp> c[K];
      for (int r = 0; r < k; ++r) {
        const int64_t j = j0 + r;
        const typename Dp::S* s;
        typename Dp::D* d;
        const int y = rowOf(j, s, d);
        if constexpr (Fs)
          c[r] = {s, d, nullptr, rows[j & 1], rows[(j + 1) & 1], y};
        else
          c[r] = {s, d, rows[j % 3], rows[(j + 1) % 3], rows[(j + 2) % 3], y};
      }
      if constexpr (Fs)
        wavefront<K, 2>(c, k, w, [p, sc, th](const RowCtx<Dp>& rc, int x) KEL_REDUCE_ALWAYS { fsPixel<Dp, Dp::kAlt, Noise>(rc, x, p, sc, th); });
      else
        wavefront<K, 3>(c, k, w, [p, sc, th, k12](const RowCtx<Dp>& rc, int x) KEL_REDUCE_ALWAYS { stJjPixel<Dp, Noise>(rc, x, p, k12, sc, th); });
      j0 += k;
    }
  });
  kelsFree(blocks);
  return kelStatusOk;
}

// ---- the outer function -----------------------------------------------------------
template <class Dp, int Chan>
KelStatus reduceBits(const typename Dp::S* src, int srcStep, typename Dp::D* dst, int dstStep, KeliSize roi,
                     int noise, uint32_t type, int levels) {
  if (!src || !dst) return kelStatusNullPointer;
  if (roi.width < 1 || roi.height < 1) return kelStatusBadSize;
  if (noise < 0 || noise > 100) return kelStatusBadNoise;
  if (levels < 2 || levels > Dp::kMaxLevels) return kelStatusBadLevels;
  if (type > 4) return kelStatusOk;  // no method: nothing read, nothing written
  const int lm1 = levels - 1;
  if (type == kelDitherNone) return ownNo<Dp>(src, srcStep, dst, dstStep, roi, lm1, Chan);

  // Steps in samples, by arithmetic shifts of the byte steps.
  const ptrdiff_t srcSamples = srcStep >> Dp::kSrcShift;
  const ptrdiff_t dstSamples = dstStep >> Dp::kDstShift;
  using S = typename Dp::S;
  using D = typename Dp::D;
  if (type == kelDitherBayer) {
    // The four-channel layers keep the byte steps.
    const ptrdiff_t sb = Chan == 5 ? srcStep : srcSamples * static_cast<ptrdiff_t>(sizeof(S));
    const ptrdiff_t db = Chan == 5 ? dstStep : dstSamples * static_cast<ptrdiff_t>(sizeof(D));
    return noise > 0 ? ownBayer<Dp, true>(src, sb, dst, db, roi, lm1, noise, Chan)
                     : ownBayer<Dp, false>(src, sb, dst, db, roi, lm1, noise, Chan);
  }
  if (type == kelDitherFloydSteinberg)
    return noise > 0 ? ownDiffuse<Dp, true, true>(src, srcSamples, dst, dstSamples, roi, lm1, noise, Chan, type)
                     : ownDiffuse<Dp, true, false>(src, srcSamples, dst, dstSamples, roi, lm1, noise, Chan, type);
  return noise > 0 ? ownDiffuse<Dp, false, true>(src, srcSamples, dst, dstSamples, roi, lm1, noise, Chan, type)
                   : ownDiffuse<Dp, false, false>(src, srcSamples, dst, dstSamples, roi, lm1, noise, Chan, type);
}

}  // namespace
}  // namespace kel

using namespace kel;
using namespace kel::reduce;

// Member table: every member is reduceBits<pair, channel code>; the code
// is 1 for C1, 3 for C3, 4 for AC4 (three samples of four, the fourth
// neither read nor written), 5 for C4 (four samples).
//
// Checks: src, dst; width and height at least 1; noise 0..100; levels 2..256
// (65536 for 16u and 16s); then a ditherType above 4 (as unsigned) returns
// kelStatusOk with nothing read or written. Steps are not checked.

// The method as the int a C caller passes, any value: read by bytes, never
// as the enum type (a value outside the enumerators is no valid enum load).
static inline uint32_t methodOf(const KelDitherType& t) {
  uint32_t v;
  std::memcpy(&v, &t, sizeof v);
  return v;
}

#define KEL_REDUCE_MEMBER(depth, lay, Dp, code)                                                                  \
  KelStatus keliReduceBits_##depth##_##lay##R(const Dp::S* src, int srcStep, Dp::D* dst, int dstStep, KeliSize roi, \
                                              int noise, KelDitherType ditherType, int levels) {                  \
    return reduceBits<Dp, code>(src, srcStep, dst, dstStep, roi, noise, methodOf(ditherType), levels);            \
  }
#define KEL_REDUCE_PAIR(depth, Dp)         \
  KEL_REDUCE_MEMBER(depth, C1, Dp, 1)      \
  KEL_REDUCE_MEMBER(depth, C3, Dp, 3)      \
  KEL_REDUCE_MEMBER(depth, C4, Dp, 5)      \
  KEL_REDUCE_MEMBER(depth, AC4, Dp, 4)

extern "C" {
KEL_REDUCE_PAIR(8u, D8u)
KEL_REDUCE_PAIR(16u, D16u)
KEL_REDUCE_PAIR(16s, D16s)
KEL_REDUCE_PAIR(16u8u, D16u8u)
KEL_REDUCE_PAIR(16s8u, D16s8u)
KEL_REDUCE_PAIR(32f8u, D32f8u)
KEL_REDUCE_PAIR(32f16u, D32f16u)
KEL_REDUCE_PAIR(32f16s, D32f16s)
}  // extern "C"
