// Ordered dithering: one row of a region, scalar definition. A pixel's
// threshold comes from the 4x4 matrix at (x & 3, y & 3) of the region,
// scaled by the level distance; with noise the pixel's noise value is added
// to the matrix entry first. Every sample of a pixel uses the pixel's
// threshold. Vector kernels cover a leading run of the row and hand the rest
// to this definition with the column where they stopped.
#pragma once

#include "reduce/reduce.h"

namespace kel {
namespace {
namespace reduce {

// One output sample from source sample v and its pixel's threshold t.
template <class Dp, bool G>
KEL_REDUCE_INLINE typename Dp::D bayerSample(typename Dp::S v, float t, Scale sc) {
  return Dp::template store<G>(quant<G>(Dp::work(v), t, sc));
}

// The four thresholds of row y without noise: step * matrix entry.
inline void bayerRowThresh(float step, int y, float thr[4]) {
  for (int j = 0; j < 4; ++j) thr[j] = step * kBayerThresh.t[y & 3][j];
}

// Pixels x0 .. w-1 of one row; n samples quantised of p in memory.
template <class Dp, bool G>
inline void bayerRow(const typename Dp::S* s, typename Dp::D* d, int x0, int w, int n, int p, Scale sc,
                     const float thr[4]) {
  for (int x = x0; x < w; ++x) {
    const float t = thr[x & 3];
    for (int c = 0; c < n; ++c) {
      const ptrdiff_t i = static_cast<ptrdiff_t>(x) * p + c;
      st(d + i, bayerSample<Dp, G>(ld(s + i), t, sc));
    }
  }
}

template <class Dp, bool G>
inline void bayerNoiseRow(const typename Dp::S* s, typename Dp::D* d, int x0, int w, int y, int n, int p, Scale sc,
                          const NoiseTables& nz) {
  const float* m = kBayerThresh.t[y & 3];
  for (int x = x0; x < w; ++x) {
    const float t = (nz.at(x, y) + m[x & 3]) * sc.step;
    for (int c = 0; c < n; ++c) {
      const ptrdiff_t i = static_cast<ptrdiff_t>(x) * p + c;
      st(d + i, bayerSample<Dp, G>(ld(s + i), t, sc));
    }
  }
}

}  // namespace reduce
}  // namespace
}  // namespace kel
