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
// sample and writes the error.
template <class Dp, bool G, bool Noise>
inline typename Dp::D diffuseDecide(float a, float bottom, Scale sc, const DiffuseThresh<Noise>& th, int x, int y,
                                    float* err) {
  if (a >= Dp::kTop) {
    *err = 0.0f;
    return Dp::kTopOut;
  }
  if (bottom > a) {
    *err = 0.0f;
    return Dp::kBottomOut;
  }
  const float q = quant<G>(a, th.at(x, y), sc);
  *err = a - q;
  return Dp::template store<G>(q);
}

// Floyd-Steinberg, weights 7 (left), 3 (above right), 5 (above), 1 (above
// left) over 16. Two orders of the sum, by depth pair (Depth::kAlt).
template <class Dp, bool G, bool Noise>
inline void fsRow(const typename Dp::S* s, typename Dp::D* d, const float* prev, float* cur, int w, int p, int y,
                  Scale sc, const DiffuseThresh<Noise>& th) {
  for (int x = 0; x < w; ++x) {
    float sum;
    if constexpr (Dp::kAlt)
      sum = ((3.0f * prev[x + 1] + 5.0f * prev[x]) + prev[x - 1]) + 7.0f * cur[x - 1];
    else
      sum = ((3.0f * prev[x + 1] + prev[x - 1]) + 5.0f * prev[x]) + 7.0f * cur[x - 1];
    const ptrdiff_t i = static_cast<ptrdiff_t>(x) * p;
    const float a = Dp::work(ld(s + i)) + sum * 0.0625f;
    st(d + i, diffuseDecide<Dp, G, Noise>(a, Dp::kBottomFs, sc, th, x, y, cur + x));
  }
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
inline float sum12(const Kernel12& k, const float* r2, const float* r1, const float* cur, int x) {
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
inline void stJjRow(const typename Dp::S* s, typename Dp::D* d, const float* r2, const float* r1, float* cur, int w,
                    int p, int y, const Kernel12& k, Scale sc, const DiffuseThresh<Noise>& th) {
  for (int x = 0; x < w; ++x) {
    const float sum = sum12(k, r2, r1, cur, x);
    const ptrdiff_t i = static_cast<ptrdiff_t>(x) * p;
    const float a = Dp::work(ld(s + i)) + sum * k.factor;
    st(d + i, diffuseDecide<Dp, false, Noise>(a, 0.0f, sc, th, x, y, cur + x));
  }
}

}  // namespace reduce
}  // namespace
}  // namespace kel
