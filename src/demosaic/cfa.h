// Bilinear demosaicing of Bayer raw images with a one-tap gradient test for
// green. Every output pixel is a function of its absolute image position:
//
//   green site     own sample is G; the colour beside it on its row is the
//                  rounded mean of the two row neighbours, the colour above
//                  and below the rounded mean of the two column neighbours
//   red/blue site  own sample stays; the other chroma colour is the rounded
//                  mean of the four diagonals; G by the gradient test with
//                  dv = |c(x, y-2) - c(x, y+2)|, dh = |c(x-2, y) - c(x+2, y)|:
//                  dv < dh column mean, dh < dv row mean, else four-way mean
//
// Pixels within two of an image edge have too few neighbours for the test:
// they reflect missing neighbours at the edge (-1 -> 1, W -> W - 2) and
// always take the four-way mean.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "frame/arith.h"
#include "kelcc.h"

namespace kel {

// One row of the inner rectangle: r[k] is source row y - 2 + k at the first
// column of the rectangle, d the destination row there (three samples per
// pixel). Pixel i is a red or blue site when (i & 1) == chromaPar; kIdx is
// the destination channel (0 = R, 2 = B) of the chroma colour on this row.
template <class T>
struct CfaRow {
  const T* r[5];
  T* d;
  int chromaPar;
  int kIdx;
};
// A vector body: pixels from i on in whole blocks below n; returns where it
// stopped, for the scalar definition to go on.
template <class T>
using KernCfa = int (*)(const CfaRow<T>& io, int i, int n);

struct CfaKernels {
  KernCfa<uint8_t> row8;
  KernCfa<uint16_t> row16;
};
namespace sse41 {
extern const CfaKernels kCfaKernels;
}
namespace avx2 {
extern const CfaKernels kCfaKernels;
}

namespace {
namespace cfa {

enum Colour { kR = 0, kG = 1, kB = 2 };

// Colour at absolute position (x, y) for each grid: [grid][y & 1][x & 1].
inline constexpr uint8_t kSite[4][2][2] = {
    {{kB, kG}, {kG, kR}},  // BGGR
    {{kR, kG}, {kG, kB}},  // RGGB
    {{kG, kB}, {kR, kG}},  // GBRG
    {{kG, kR}, {kB, kG}},  // GRBG
};
inline int siteAt(int grid, int x, int y) { return kSite[grid][y & 1][x & 1]; }

// The grid argument as the caller passed it: a C caller may pass any int,
// which C++ must not load as the enum type, so its bytes are read as one.
inline int gridValue(const KelBayerGrid& g) {
  int v;
  std::memcpy(&v, &g, sizeof v);
  return v;
}

inline int absDiff(int a, int b) { return a > b ? a - b : b - a; }

// The scalar definition of one inner-rectangle pixel i of a row.
template <class T>
inline void innerPx(const CfaRow<T>& io, int i) {
  const T* const* r = io.r;
  const int c = r[2][i];
  const int n = r[1][i], s = r[3][i], w = r[2][i - 1], e = r[2][i + 1];
  T* d = io.d + 3 * i;
  if ((i & 1) == io.chromaPar) {
    const int dv = absDiff(r[0][i], r[4][i]), dh = absDiff(r[2][i - 2], r[2][i + 2]);
    int g;
    if (dv < dh) g = (n + s + 1) >> 1;
    else if (dh < dv) g = (w + e + 1) >> 1;
    else g = (n + w + e + s + 2) >> 2;
    const int o = (r[1][i - 1] + r[1][i + 1] + r[3][i - 1] + r[3][i + 1] + 2) >> 2;
    d[io.kIdx] = static_cast<T>(c);
    d[1] = static_cast<T>(g);
    d[2 - io.kIdx] = static_cast<T>(o);
  } else {
    d[io.kIdx] = static_cast<T>((w + e + 1) >> 1);
    d[1] = static_cast<T>(c);
    d[2 - io.kIdx] = static_cast<T>((n + s + 1) >> 1);
  }
}

template <class T>
inline void innerRow(const CfaRow<T>& io, int i, int n) {
  for (; i < n; ++i) innerPx(io, i);
}

// The reflected form of the frame, for pixels x0 .. x1 of row y: the plain
// form (no gradient test) with a row or column outside the image reflected
// at its edge (-1 reads 1, W reads W - 2). `src` is the image origin, `step`
// in samples, W x H the image; d receives pixel x0.
template <class T>
inline void frameRow(const T* src, ptrdiff_t step, int W, int H, int grid, int y, int x0, int x1, T* d) {
  auto ry = [H](int v) { return v < 0 ? -v : (v >= H ? 2 * (H - 1) - v : v); };
  const T *rn = src + step * ry(y - 1), *rc = src + step * y, *rs = src + step * ry(y + 1);
  const int siteEven = siteAt(grid, 0, y), siteOdd = siteAt(grid, 1, y);
  for (int x = x0; x <= x1; ++x) {
    const int xl = x == 0 ? 1 : x - 1, xr = x == W - 1 ? W - 2 : x + 1;
    const int site = (x & 1) ? siteOdd : siteEven, other = (x & 1) ? siteEven : siteOdd;
    const int own = rc[x], n = rn[x], s = rs[x], w = rc[xl], e = rc[xr];
    T* o = d + 3 * (x - x0);
    if (site == kG) {  // the row's other colour across, the other row's colour up and down
      o[other] = static_cast<T>((w + e + 1) >> 1);
      o[kG] = static_cast<T>(own);
      o[2 - other] = static_cast<T>((n + s + 1) >> 1);
    } else {
      o[site] = static_cast<T>(own);
      o[kG] = static_cast<T>((n + w + e + s + 2) >> 2);
      o[2 - site] = static_cast<T>((rn[xl] + rn[xr] + rs[xl] + rs[xr] + 2) >> 2);
    }
  }
}

}  // namespace cfa
}  // namespace
}  // namespace kel
