// Error diffusion: one row of one channel. Errors are floats in working
// units kept in rows of a worker's block; `prev`, `r1`, `r2` and `cur` point
// at the cell of column 0, with zero margin cells to the left and right that
// are never written. Columns run left to right in every row. A sample whose
// value after the neighbours' errors reaches the top (or falls below the
// bottom) is stored as the top (bottom) value and passes on no error.
#pragma once

#include "reduce/reduce.h"

namespace kel {
namespace {
namespace reduce {

// The threshold of a sample: half a level distance, or with noise the
// pixel's noise value (whose table range already holds the level distance).
template <bool Noise>
struct DiffuseThresh {
  float half;
  const NoiseTables* nz;
  float at(int x, int y) const {
    if constexpr (Noise)
      return nz->at(x, y);
    else
      return half;
  }
};

// Decides one sample with value a (errors included); returns the output
// sample and writes the error. Written without branches: the level is
// computed for every sample and the saturated cases select over it.
template <class Dp, bool G, bool Noise>
KEL_REDUCE_INLINE typename Dp::D diffuseDecide(float a, float bottom, Scale sc, const DiffuseThresh<Noise>& th, int x, int y,
                                    float* err) {
  const float q = quant<G>(a, th.at(x, y), sc);
  const bool sat = (a >= Dp::kTop) | (bottom > a);
  *err = sat ? 0.0f : a - q;
  int32_t out = Dp::template store<G>(q);
  out = a >= Dp::kTop ? Dp::kTopOut : out;
  out = bottom > a ? Dp::kBottomOut : out;
  return static_cast<typename Dp::D>(out);
}

// One row of a worker's stream of rows: its source and destination samples
// (pixel distance p), its error rows and its row number in the channel.
// Floyd-Steinberg reads `r1` as the row above; the twelve-neighbour kernels
// read `r2` and `r1`.
template <class Dp>
struct RowCtx {
  const typename Dp::S* s;
  typename Dp::D* d;
  const float* r2;
  const float* r1;
  float* cur;
  int y;
};

// Floyd-Steinberg, weights 7 (left), 3 (above right), 5 (above), 1 (above
// left) over 16. Two orders of the sum, by depth pair (Depth::kAlt).
template <class Dp, bool G, bool Noise>
KEL_REDUCE_INLINE void fsPixel(const RowCtx<Dp>& c, int x, int p, Scale sc, const DiffuseThresh<Noise>& th) {
  const float* prev = c.r1;
  float sum;
  if constexpr (Dp::kAlt)
    sum = ((3.0f * prev[x + 1] + 5.0f * prev[x]) + prev[x - 1]) + 7.0f * c.cur[x - 1];
  else
    sum = ((3.0f * prev[x + 1] + prev[x - 1]) + 5.0f * prev[x]) + 7.0f * c.cur[x - 1];
  const ptrdiff_t i = static_cast<ptrdiff_t>(x) * p;
  const float a = Dp::work(ld(c.s + i)) + sum * 0.0625f;
  st(c.d + i, diffuseDecide<Dp, G, Noise>(a, Dp::kBottomFs, sc, th, x, c.y, c.cur + x));
}

// The definition of one row: columns left to right.
template <class Dp, bool G, bool Noise>
inline void fsRow(const typename Dp::S* s, typename Dp::D* d, const float* prev, float* cur, int w, int p, int y,
                  Scale sc, const DiffuseThresh<Noise>& th) {
  const RowCtx<Dp> c{s, d, nullptr, prev, cur, y};
  for (int x = 0; x < w; ++x) fsPixel<Dp, G, Noise>(c, x, p, sc, th);
}

// The twelve-neighbour kernels: two on the left in this row, five in each of
// the two rows above. Weights in the order x-2 .. x+2; the last weight of
// the row two above is 1 and the last of the row above equals its first.
struct Kernel12 {
  float k0[2], k1[5], k2[5], factor;
};
inline constexpr Kernel12 kJarvis = {{5, 7}, {3, 5, 7, 5, 3}, {1, 3, 5, 3, 1}, 0.020833334f};
inline constexpr Kernel12 kStucki = {{4, 8}, {2, 4, 8, 4, 2}, {1, 2, 4, 2, 1}, 0.023809524f};

// The gathered sum: four partial sums over columns x-2 .. x+1, paired
// (0 + 2) + (1 + 3), then the column x+2 of the row two above, then that of
// the row above.
KEL_REDUCE_INLINE float sum12(const Kernel12& k, const float* r2, const float* r1, const float* cur, int x) {
  float a0 = r1[x - 2] * k.k1[0] + r2[x - 2] * k.k2[0];
  float a1 = r1[x - 1] * k.k1[1] + r2[x - 1] * k.k2[1];
  const float a2 = r1[x] * k.k1[2] + r2[x] * k.k2[2];
  const float a3 = r1[x + 1] * k.k1[3] + r2[x + 1] * k.k2[3];
  a0 = a0 + cur[x - 2] * k.k0[0];
  a1 = a1 + cur[x - 1] * k.k0[1];
  float sum = (a0 + a2) + (a1 + a3);
  sum = sum + r2[x + 2];
  sum = sum + r1[x + 2] * k.k1[0];
  return sum;
}

template <class Dp, bool Noise>
KEL_REDUCE_INLINE void stJjPixel(const RowCtx<Dp>& c, int x, int p, const Kernel12& k, Scale sc, const DiffuseThresh<Noise>& th) {
  const float sum = sum12(k, c.r2, c.r1, c.cur, x);
  const ptrdiff_t i = static_cast<ptrdiff_t>(x) * p;
  const float a = Dp::work(ld(c.s + i)) + sum * k.factor;
  st(c.d + i, diffuseDecide<Dp, false, Noise>(a, 0.0f, sc, th, x, c.y, c.cur + x));
}

template <class Dp, bool Noise>
inline void stJjRow(const typename Dp::S* s, typename Dp::D* d, const float* r2, const float* r1, float* cur, int w,
                    int p, int y, const Kernel12& k, Scale sc, const DiffuseThresh<Noise>& th) {
  const RowCtx<Dp> c{s, d, r2, r1, cur, y};
  for (int x = 0; x < w; ++x) stJjPixel<Dp, Noise>(c, x, p, k, sc, th);
}

// ---- several rows at once -------------------------------------------------------
// A pixel needs the row above up to `Lag - 1` columns to its right (1 for
// Floyd-Steinberg, 2 for the twelve-neighbour kernels) and its left
// neighbour. So K consecutive rows of a stream can run together, row r at
// column t - Lag * r at step t: every pixel still sees exactly the cells
// that the row-by-row order gives it, and the K dependency chains overlap
// in the processor. The rows keep the roles of the row-by-row order (two or
// three error rows, turning); a row writing a cell always comes Lag columns
// or more behind the last read of the old value there, so the block needs
// no more rows.
template <int K, int Lag, class Ctx, class Px>
inline void wavefront(const Ctx* rows, int k, int w, Px&& px) {
  const int span = w + Lag * (k - 1);
  if (k == K && w > Lag * (K - 1)) {
    // A local copy: the sample stores cannot alias it, so the row pointers
    // need no reloading after each store.
    Ctx c[K];
    for (int r = 0; r < K; ++r) c[r] = rows[r];
    int t = 0;
    for (; t < Lag * (K - 1); ++t)
      for (int r = 0; r < K; ++r)
        if (t - Lag * r >= 0) px(c[r], t - Lag * r);
    for (; t < w; ++t)
      for (int r = 0; r < K; ++r) px(c[r], t - Lag * r);
    for (; t < span; ++t)
      for (int r = 0; r < K; ++r)
        if (t - Lag * r < w) px(c[r], t - Lag * r);
    return;
  }
  for (int t = 0; t < span; ++t)
    for (int r = 0; r < k; ++r) {
      const int x = t - Lag * r;
      if (x >= 0 && x < w) px(rows[r], x);
    }
}

}  // namespace reduce
}  // namespace
}  // namespace kel
