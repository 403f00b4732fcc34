// Adaptive homogeneity-directed demosaicing: every pixel is reconstructed
// twice, with green interpolated along the row (H) and along the column (V);
// both reconstructions go to CIE Lab, the number of neighbours within an
// adaptive tolerance is counted in each, and the 3 by 3 sum of the count
// differences picks the pixel of one of them (a tie takes H).
//
// The stages, each the scalar definition of a row of its ring:
//   green      GH, GV: the mean of the two green neighbours along the
//              direction, corrected by the second difference of the site's
//              own colour where that keeps it strictly between them
//   chroma     RD, BD from GD and the raw chroma samples (colour differences)
//   Lab        single precision, each operation rounded, a rational first
//              estimate and two Halley steps for the cube root
//   hm         countH - countV of the four neighbours within the tolerance
//   choice     the window sum of hm: >= 0 takes H, below 0 takes V
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "demosaic/cfa.h"
#include "frame/arith.h"
#include "kelcc.h"

namespace kel {

// ---- rows the vector bodies work on -------------------------------------------
// Element i of every ring row belongs to column base + i of the image.
// Rows come as pointers at element 0; `gpar` is the parity of i of the green
// sites of the row, `kIdx` the colour (0 = R, 2 = B) of the chroma sites.
template <class T>
struct AhdGreenRow {
  const T* r[5];  // raw rows y - 2 .. y + 2, at element 0
  T *gh, *gv;
  int gpar;
};
template <class T>
struct AhdChromaRow {
  const T* r[3];     // raw rows y - 1 .. y + 1
  const T* gh[3];    // GH rows y - 1 .. y + 1
  const T* gv[3];    // GV rows y - 1 .. y + 1
  T *rh, *bh, *rv, *bv;
  int gpar, kIdx;
};
// Lab of one row of both directions, from the candidate rows.
template <class T>
struct AhdLabRow {
  const T *rh, *gh, *bh, *rv, *gv, *bv;
  float* lab[6];  // L, a, b of H, then of V
};
// hm of one row from three rows of Lab (up, this, down).
template <class S>
struct AhdHomRow {
  const float* up[6];
  const float* mid[6];
  const float* dn[6];
  S* hm;
  float eps;  // 0.0001f in the strips; 0 in the fast rectangle, which adds nothing
};

// The choice for one output row: hm rows up, this, down; d at element 3.
template <class T, class S>
struct AhdOutRow {
  const S* hm[3];
  const T *rh, *gh, *bh, *rv, *gv, *bv;
  T* d;
};

template <class T>
using KernAhdGreen = int (*)(const AhdGreenRow<T>& io, int i, int n);
template <class T>
using KernAhdChroma = int (*)(const AhdChromaRow<T>& io, int i, int n);
template <class T>
using KernAhdLab = int (*)(const AhdLabRow<T>& io, int i, int n);
template <class S>
using KernAhdHom = int (*)(const AhdHomRow<S>& io, int i, int n);
template <class T, class S>
using KernAhdOut = int (*)(const AhdOutRow<T, S>& io, int i, int n);

struct AhdKernels {
  KernAhdGreen<uint8_t> green8;
  KernAhdGreen<uint16_t> green16;
  KernAhdChroma<uint8_t> chroma8;
  KernAhdChroma<uint16_t> chroma16;
  KernAhdLab<uint8_t> lab8;
  KernAhdLab<uint16_t> lab16;
  KernAhdHom<int8_t> hom8;
  KernAhdHom<int16_t> hom16;
  KernAhdOut<uint8_t, int8_t> out8;
  KernAhdOut<uint16_t, int16_t> out16;
};
namespace sse41 {
extern const AhdKernels kAhdKernels;
}
namespace avx2 {
extern const AhdKernels kAhdKernels;
}

namespace {
namespace ahd {

// ---- the sample depths -----------------------------------------------------------
// White point and the matrix rows divided by it; the last two entries of
// the Z row are fixed constants.
template <class T>
struct Depth;
template <>
struct Depth<uint8_t> {
  static constexpr int kMax = 255;
  static constexpr float kXn = 242.36629f, kYn = 255.0f, kZn = 277.63229f;
  static constexpr float kZ1 = 0.00042931965f, kZ2 = 0.0034226098f;
  using Hm = int8_t;
};
template <>
struct Depth<uint16_t> {
  static constexpr int kMax = 65535;
  static constexpr float kXn = 62288.137f, kYn = 65535.0f, kZn = 71351.5f;
  static constexpr float kZ1 = 1.6705045e-6f, kZ2 = 1.3317548e-5f;
  using Hm = int16_t;
};

// Each entry is the single-precision quotient of the two float constants.
template <class T>
struct Matrix {
  using D = Depth<T>;
  static constexpr float x0 = 0.412453f / D::kXn, x1 = 0.35758f / D::kXn, x2 = 0.180423f / D::kXn;
  static constexpr float y0 = 0.212671f / D::kYn, y1 = 0.71516f / D::kYn, y2 = 0.072169f / D::kYn;
  static constexpr float z0 = 0.019334f / D::kZn, z1 = D::kZ1, z2 = D::kZ2;
};

template <class T>
inline int clipM(int v) {
  return v < 0 ? 0 : (v > Depth<T>::kMax ? Depth<T>::kMax : v);
}

// ---- the split of the region ------------------------------------------------------
// Pattern code of the 2 by 2 block at (x, y): RGGB 0, GBRG 1, BGGR 2, GRBG 3.
// A shift by one column turns p into p ^ 3, one row into p - (p & 1) * 2 + 1.
inline int patternAt(int grid, int x, int y) {
  const int a = cfa::siteAt(grid, x, y), b = cfa::siteAt(grid, x + 1, y);
  if (a == cfa::kR) return 0;
  if (a == cfa::kB) return 2;
  return b == cfa::kB ? 1 : 3;
}

struct Rect {
  int x, y, w, h;
};
// The fast rectangle of the clipped region (x0, y0, w, h) in a W x H image:
// five pixels from every edge, moved to start on a red site, sides cut to
// even values. It exists when both sides are at least 2.
inline Rect fastRect(int grid, int x0, int y0, int w, int h, int W, int H) {
  int xs = x0 > 5 ? x0 : 5, ys = y0 > 5 ? y0 : 5;
  int iw = (W - 5 < x0 + w ? W - 5 : x0 + w) - xs, ih = (H - 5 < y0 + h ? H - 5 : y0 + h) - ys;
  int p = patternAt(grid, xs, ys);
  if (p == 2 || p == 3) {
    xs += 1, iw -= 1;
    p ^= 3;
  }
  if (p == 1) ys += 1, ih -= 1;
  return {xs, ys, iw & ~1, ih & ~1};
}

// ---- 1. green candidate of a red or blue site ------------------------------------
// a, b the green neighbours, p, q the own colour two away, s the site.
inline int greenCand(int s, int a, int b, int p, int q) {
  const int m = (a + b) >> 1;
  const int e = m + (((s - p) + (s - q)) >> 2);
  return ((e - a) ^ (b - e)) > 0 ? e : m;
}

// ---- 3. Lab -----------------------------------------------------------------------
inline float labF(float t) {
  if (t < 0.008856f) return 0.13793103f + t * 7.787037f;
  float u = (0.0081f + t * 0.6f) / (t + 0.054f);
  for (int k = 0; k < 2; ++k) {
    const float u3 = u * u * u;
    u = u * ((u3 + (t + t)) / (t + u3 + u3));
  }
  return u;
}
template <class T>
inline void lab(float R, float G, float B, float& L, float& a, float& b) {
  using M = Matrix<T>;
  const float X = (M::x0 * R + M::x1 * G) + M::x2 * B;
  const float Y = (M::y0 * R + M::y1 * G) + M::y2 * B;
  const float Z = (M::z0 * R + M::z1 * G) + M::z2 * B;
  const float fx = labF(X), fy = labF(Y), fz = labF(Z);
  L = 116.0f * fy - 16.0f;
  a = 500.0f * (fx - fy);
  b = 200.0f * (fy - fz);
}

// ---- scalar definitions of the stage rows -----------------------------------------
template <class T>
inline void greenRow(const AhdGreenRow<T>& io, int i, int n) {
  const T* const* r = io.r;
  for (; i < n; ++i) {
    const int s = r[2][i];
    if ((i & 1) == io.gpar) {
      io.gh[i] = io.gv[i] = static_cast<T>(s);
    } else {
      io.gh[i] = static_cast<T>(greenCand(s, r[2][i - 1], r[2][i + 1], r[2][i - 2], r[2][i + 2]));
      io.gv[i] = static_cast<T>(greenCand(s, r[1][i], r[3][i], r[0][i], r[4][i]));
    }
  }
}

// Chroma candidates of one direction at element i.
template <class T>
inline void chromaPx(const T* const* r, const T* const* g, int i, bool green, int kIdx, T* kOut, T* oOut) {
  const int gc = g[1][i];
  if (green) {
    // kIdx beside the site on its row, the other colour above and below.
    const int kr = gc + (((r[1][i - 1] - g[1][i - 1]) + (r[1][i + 1] - g[1][i + 1])) >> 1);
    const int kc = gc + (((r[0][i] + r[2][i]) - (g[0][i] + g[2][i])) >> 1);
    *kOut = static_cast<T>(clipM<T>(kr));
    *oOut = static_cast<T>(clipM<T>(kc));
  } else {
    const int s1 = r[0][i - 1] + r[0][i + 1] + r[2][i - 1] + r[2][i + 1];
    const int s2 = g[0][i - 1] + g[0][i + 1] + g[2][i - 1] + g[2][i + 1];
    *kOut = r[1][i];
    *oOut = static_cast<T>(clipM<T>(gc + ((s1 - s2) >> 2)));
  }
}
template <class T>
inline void chromaRow(const AhdChromaRow<T>& io, int i, int n) {
  T* const kh = io.kIdx == 0 ? io.rh : io.bh;
  T* const oh = io.kIdx == 0 ? io.bh : io.rh;
  T* const kv = io.kIdx == 0 ? io.rv : io.bv;
  T* const ov = io.kIdx == 0 ? io.bv : io.rv;
  for (; i < n; ++i) {
    const bool green = (i & 1) == io.gpar;
    chromaPx(io.r, io.gh, i, green, io.kIdx, kh + i, oh + i);
    chromaPx(io.r, io.gv, i, green, io.kIdx, kv + i, ov + i);
  }
}

template <class T>
inline void labRow(const AhdLabRow<T>& io, int i, int n) {
  for (; i < n; ++i) {
    lab<T>(static_cast<float>(io.rh[i]), static_cast<float>(io.gh[i]), static_cast<float>(io.bh[i]), io.lab[0][i],
           io.lab[1][i], io.lab[2][i]);
    lab<T>(static_cast<float>(io.rv[i]), static_cast<float>(io.gv[i]), static_cast<float>(io.bv[i]), io.lab[3][i],
           io.lab[4][i], io.lab[5][i]);
  }
}

inline float fmaxOf(float a, float b) { return a > b ? a : b; }
inline float fminOf(float a, float b) { return a < b ? a : b; }

template <class S>
inline void homRow(const AhdHomRow<S>& io, int i, int n) {
  for (; i < n; ++i) {
    float dl[2][4], dc[2][4];  // [direction][left, right, up, down]
    for (int d = 0; d < 2; ++d) {
      const float* const* m = io.mid + 3 * d;
      const float L = m[0][i], A = m[1][i], B = m[2][i];
      const float nl[4] = {m[0][i - 1], m[0][i + 1], io.up[3 * d][i], io.dn[3 * d][i]};
      const float na[4] = {m[1][i - 1], m[1][i + 1], io.up[3 * d + 1][i], io.dn[3 * d + 1][i]};
      const float nb[4] = {m[2][i - 1], m[2][i + 1], io.up[3 * d + 2][i], io.dn[3 * d + 2][i]};
      for (int k = 0; k < 4; ++k) {
        dl[d][k] = std::fabs(nl[k] - L);
        const float da = na[k] - A, db = nb[k] - B;
        dc[d][k] = da * da + db * db;
      }
    }
    float epsL = fminOf(fmaxOf(dl[0][0], dl[0][1]), fmaxOf(dl[1][2], dl[1][3]));
    float epsC = fminOf(fmaxOf(dc[0][0], dc[0][1]), fmaxOf(dc[1][2], dc[1][3]));
    if (io.eps != 0.0f) {  // the strips widen both tolerances; the fast rectangle does not
      epsL = epsL + io.eps;
      epsC = epsC + io.eps;
    }
    int count[2] = {0, 0};
    for (int d = 0; d < 2; ++d)
      for (int k = 0; k < 4; ++k) count[d] += (dl[d][k] <= epsL && dc[d][k] <= epsC) ? 1 : 0;
    io.hm[i] = static_cast<S>(count[0] - count[1]);
  }
}

// ---- 5. the choice ------------------------------------------------------------------
template <class T, class S>
inline void outRow(const AhdOutRow<T, S>& io, int i, int n) {
  for (; i < n; ++i) {
    const S *h0 = io.hm[0], *h1 = io.hm[1], *h2 = io.hm[2];
    const int sum = h0[i - 1] + h0[i] + h0[i + 1] + h1[i - 1] + h1[i] + h1[i + 1] + h2[i - 1] + h2[i] + h2[i + 1];
    T* d = io.d + 3 * (i - 3);
    if (sum >= 0) {
      d[0] = io.rh[i], d[1] = io.gh[i], d[2] = io.bh[i];
    } else {
      d[0] = io.rv[i], d[1] = io.gv[i], d[2] = io.bv[i];
    }
  }
}

}  // namespace ahd
}  // namespace
}  // namespace kel
