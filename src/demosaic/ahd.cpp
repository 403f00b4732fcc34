// AHD demosaicing, 8u and 16u (stages in ahd.h). The region splits into one
// fast rectangle, which starts on a red site, has even sides and keeps five
// pixels from every image edge (so it reads the source without reflection),
// and up to four strips round it, which reflect their reads at the image
// edges and add 0.0001 to both tolerances. Everything runs on the caller's
// thread in the caller's 30-row work buffer.
#include "demosaic/ahd.h"

#include <algorithm>

#include "demosaic/cfa.h"
#include "frame/checks.h"
#include "frame/cpu.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace ahd;

// ---- kernels of the active path ------------------------------------------------
template <class T>
struct AhdChains {
  Chain<KernAhdGreen<T>> green;
  Chain<KernAhdChroma<T>> chroma;
  Chain<KernAhdLab<T>> lab;
  Chain<KernAhdHom<typename Depth<T>::Hm>> hom;
  Chain<KernAhdOut<T, typename Depth<T>::Hm>> out;
};
template <class T>
AhdChains<T> ahdChains() {
  const AhdKernels &s = sse41::kAhdKernels, &a = avx2::kAhdKernels;
  if constexpr (sizeof(T) == 1)
    return {chainFor(&AhdKernels::green8, s, a), chainFor(&AhdKernels::chroma8, s, a),
            chainFor(&AhdKernels::lab8, s, a), chainFor(&AhdKernels::hom8, s, a), chainFor(&AhdKernels::out8, s, a)};
  else
    return {chainFor(&AhdKernels::green16, s, a), chainFor(&AhdKernels::chroma16, s, a),
            chainFor(&AhdKernels::lab16, s, a), chainFor(&AhdKernels::hom16, s, a),
            chainFor(&AhdKernels::out16, s, a)};
}

// Reflection at the edge pixel without repeating it. A 5-pixel image reaches
// further than one reflection brings back (row 9 of five rows reflects to
// -1, row -5 to 5): the reflection is then applied again, which keeps the
// parity and so the colour (9 -> -1 -> 1, -5 -> 5 -> 3). From 6 pixels up
// one reflection always lands inside, so this changes nothing there.
inline int reflect(int v, int maxV) {
  while (v < 0 || v > maxV) v = v < 0 ? -v : 2 * maxV - v;
  return v;
}

// The source as the stages see it: raw rows of an absolute row y, and
// reads at absolute columns. Direct: the fast rectangle, always inside the
// image. Reflected: the strips.
template <class T>
struct DirectSrc {
  const T* src;
  ptrdiff_t step;  // samples
  const T* row(int y) const { return src + step * y; }
  static constexpr bool kReflect = false;
};
template <class T>
struct ReflectSrc {
  const T* src;
  ptrdiff_t step;
  int maxX, maxY;
  const T* row(int y) const { return src + step * reflect(y, maxY); }
  static constexpr bool kReflect = true;
};

// The reflected forms of the green and chroma rows for the strips: the same
// formulas on reads through reflect().
template <class T>
void greenRowReflect(const T* const rows[5], int base, int maxX, int gpar, T* gh, T* gv, int i, int n) {
  auto c = [&](int k, int e) -> int { return rows[k][reflect(base + e, maxX)]; };
  for (; i < n; ++i) {
    const int s = c(2, i);
    if ((i & 1) == gpar) {
      gh[i] = gv[i] = static_cast<T>(s);
    } else {
      gh[i] = static_cast<T>(greenCand(s, c(2, i - 1), c(2, i + 1), c(2, i - 2), c(2, i + 2)));
      gv[i] = static_cast<T>(greenCand(s, c(1, i), c(3, i), c(0, i), c(4, i)));
    }
  }
}
template <class T>
void chromaRowReflect(const AhdChromaRow<T>& io, int base, int maxX, int i, int n) {
  // Three raw samples around each element, gathered through the reflection
  // into a small window so that the shared formula reads them as a row.
  T* const kh = io.kIdx == 0 ? io.rh : io.bh;
  T* const oh = io.kIdx == 0 ? io.bh : io.rh;
  T* const kv = io.kIdx == 0 ? io.rv : io.bv;
  T* const ov = io.kIdx == 0 ? io.bv : io.rv;
  for (; i < n; ++i) {
    T win[3][3];
    for (int k = 0; k < 3; ++k)
      for (int d = -1; d <= 1; ++d) win[k][d + 1] = io.r[k][reflect(base + i + d, maxX)];
    const T* r[3] = {win[0], win[1], win[2]};
    const T* gh[3] = {io.gh[0] + i - 1, io.gh[1] + i - 1, io.gh[2] + i - 1};
    const T* gv[3] = {io.gv[0] + i - 1, io.gv[1] + i - 1, io.gv[2] + i - 1};
    const bool green = (i & 1) == io.gpar;
    chromaPx(r, gh, 1, green, io.kIdx, kh + i, oh + i);
    chromaPx(r, gv, 1, green, io.kIdx, kv + i, ov + i);
  }
}

// Output columns per stripe: the rings cover a stripe and its three
// columns of reach on each side, and the Lab rows of the stripe stay on
// the stack (three rows of six planes, 37 KB). Wider stripes walk the
// source and destination in longer runs; 512 columns is where the gain
// levels off.
constexpr int kStripe = 512;

// One rectangle: (x, y) its first pixel, w x h, dst at that pixel. The
// rings hold rows of the stripe being worked on: element i belongs to column
// sx - 3 + i. Rows are made in the order of need, one pipeline step per
// source row: green candidates of row s, chroma and Lab of row s - 1, hm of
// row s - 2, output row s - 3. So every ring element is written in this
// call before it is read, and only the elements that are read are made.
template <class T, class Src>
void ahdRect(const Src& src, int grid, int x, int y, int w, int h, T* dst, ptrdiff_t dstStep, T* tmp,
             ptrdiff_t tmpStep, float eps, const AhdChains<T>& ch) {
  using Hm = typename Depth<T>::Hm;
  auto tmpRow = [&](int k) { return byteOffset(tmp, tmpStep * k); };
  auto slot5 = [](int s) { return ((s % 5) + 5) % 5; };
  auto slot4 = [](int s) { return s & 3; };  // two's complement: -2 & 3 == 2
  auto gv = [&](int s) { return tmpRow(2 * slot5(s)); };
  auto gh = [&](int s) { return tmpRow(2 * slot5(s) + 1); };
  auto rv = [&](int s) { return tmpRow(10 + 5 * slot4(s)); };
  auto rh = [&](int s) { return tmpRow(11 + 5 * slot4(s)); };
  auto bv = [&](int s) { return tmpRow(12 + 5 * slot4(s)); };
  auto bh = [&](int s) { return tmpRow(13 + 5 * slot4(s)); };
  auto hm = [&](int s) { return reinterpret_cast<Hm*>(tmpRow(14 + 5 * slot4(s))); };

  float labBuf[3][6][kStripe + 6];
  auto labRowOf = [&](int s) { return labBuf[((s % 3) + 3) % 3]; };

  for (int sx = 0; sx < w; sx += kStripe) {
    const int sw = std::min(kStripe, w - sx);
    const int n = sw + 6;
    const int base = x + sx - 3;  // absolute column of element 0
    for (int s = -3; s <= h + 2; ++s) {
      // Green candidates of row s, elements 0 .. n-1.
      {
        const int Y = y + s;
        const int gpar = (cfa::siteAt(grid, base, Y) == cfa::kG) ? 0 : 1;
        if constexpr (Src::kReflect) {
          const T* rows[5];
          for (int k = 0; k < 5; ++k) rows[k] = src.row(Y - 2 + k);
          greenRowReflect(rows, base, src.maxX, gpar, gh(s), gv(s), 0, n);
        } else {
          AhdGreenRow<T> io;
          for (int k = 0; k < 5; ++k) io.r[k] = src.row(Y - 2 + k) + base;
          io.gh = gh(s), io.gv = gv(s), io.gpar = gpar;
          greenRow(io, runChain(ch.green, io, 0, n), n);
        }
      }
      // Chroma candidates and Lab of row s - 1, elements 1 .. n-2.
      if (s - 1 >= -2) {
        const int t = s - 1, Y = y + t;
        AhdChromaRow<T> io;
        const int gpar = (cfa::siteAt(grid, base, Y) == cfa::kG) ? 0 : 1;
        io.gpar = gpar;
        io.kIdx = cfa::siteAt(grid, base + (gpar ^ 1), Y);
        for (int k = 0; k < 3; ++k) {
          io.gh[k] = gh(t - 1 + k);
          io.gv[k] = gv(t - 1 + k);
        }
        io.rh = rh(t), io.bh = bh(t), io.rv = rv(t), io.bv = bv(t);
        if constexpr (Src::kReflect) {
          for (int k = 0; k < 3; ++k) io.r[k] = src.row(Y - 1 + k);
          chromaRowReflect(io, base, src.maxX, 1, n - 1);
        } else {
          for (int k = 0; k < 3; ++k) io.r[k] = src.row(Y - 1 + k) + base;
          chromaRow(io, runChain(ch.chroma, io, 1, n - 1), n - 1);
        }
        AhdLabRow<T> lio;
        lio.rh = io.rh, lio.gh = gh(t), lio.bh = io.bh, lio.rv = io.rv, lio.gv = gv(t), lio.bv = io.bv;
        for (int k = 0; k < 6; ++k) lio.lab[k] = labRowOf(t)[k];
        labRow(lio, runChain(ch.lab, lio, 1, n - 1), n - 1);
      }
      // hm of row s - 2, elements 2 .. n-3.
      if (s - 2 >= -1) {
        const int t = s - 2;
        AhdHomRow<Hm> io;
        for (int k = 0; k < 6; ++k) {
          io.up[k] = labRowOf(t - 1)[k];
          io.mid[k] = labRowOf(t)[k];
          io.dn[k] = labRowOf(t + 1)[k];
        }
        io.hm = hm(t);
        io.eps = eps;
        homRow(io, runChain(ch.hom, io, 2, n - 2), n - 2);
      }
      // Output row s - 3, elements 3 .. n-4.
      if (s - 3 >= 0) {
        const int t = s - 3;
        AhdOutRow<T, Hm> io;
        io.hm[0] = hm(t - 1), io.hm[1] = hm(t), io.hm[2] = hm(t + 1);
        io.rh = rh(t), io.gh = gh(t), io.bh = bh(t), io.rv = rv(t), io.gv = gv(t), io.bv = bv(t);
        io.d = byteOffset(dst, dstStep * t) + 3 * sx;
        outRow(io, runChain(ch.out, io, 3, n - 3), n - 3);
      }
    }
  }
}

template <class T>
KelStatus demosaicAhd(const T* src, KeliRect roi, KeliSize size, int srcStep, T* dst, int dstStep, int grid, T* tmp,
                      int tmpStep) {
  if (KelStatus st = checkG({src, dst}, {}, size, 5, 5, grid >= 0 && grid <= 3)) return st;
  const int W = size.width, H = size.height;
  // Clipping: a negative origin moves the region to 0 without shortening it.
  const int x0 = std::max(roi.x, 0), y0 = std::max(roi.y, 0);
  const int w = roi.width + std::min(0, W - x0 - roi.width), h = roi.height + std::min(0, H - y0 - roi.height);
  if (w < 1 || h < 1) return kelStatusOk;

  const ptrdiff_t sstep = sizeof(T) == 1 ? srcStep : (srcStep >> 1);
  const AhdChains<T> ch = ahdChains<T>();
  const DirectSrc<T> direct{src, sstep};
  const ReflectSrc<T> refl{src, sstep, W - 1, H - 1};
  auto out = [&](int x, int y) { return byteOffset(dst, static_cast<ptrdiff_t>(dstStep) * (y - y0)) + 3 * (x - x0); };
  auto strip = [&](int x, int y, int sw, int sh) {
    if (sw < 1 || sh < 1) return;
    ahdRect<T>(refl, grid, x, y, sw, sh, out(x, y), dstStep, tmp, tmpStep, 0.0001f, ch);
  };

  const Rect fast = fastRect(grid, x0, y0, w, h, W, H);
  if (fast.w < 2 || fast.h < 2) {
    strip(x0, y0, w, h);
    return kelStatusOk;
  }
  const int xs = fast.x, ys = fast.y, iw = fast.w, ih = fast.h;
  ahdRect<T>(direct, grid, xs, ys, iw, ih, out(xs, ys), dstStep, tmp, tmpStep, 0.0f, ch);
  strip(x0, y0, w, ys - y0);                        // top
  strip(x0, ys + ih, w, y0 + h - (ys + ih));        // bottom
  strip(x0, ys, xs - x0, ih);                       // left
  strip(xs + iw, ys, x0 + w - (xs + iw), ih);       // right
  return kelStatusOk;
}

}  // namespace
}  // namespace kel

using namespace kel;

extern "C" {

KelStatus keliDemosaicAHD_8u_C1C3R(const Kel8u* src, KeliRect srcRoi, KeliSize srcSize, int srcStep, Kel8u* dst,
                                   int dstStep, KelBayerGrid grid, Kel8u* tmp, int tmpStep) {
  return demosaicAhd<Kel8u>(src, srcRoi, srcSize, srcStep, dst, dstStep, cfa::gridValue(grid), tmp, tmpStep);
}
KelStatus keliDemosaicAHD_16u_C1C3R(const Kel16u* src, KeliRect srcRoi, KeliSize srcSize, int srcStep, Kel16u* dst,
                                    int dstStep, KelBayerGrid grid, Kel16u* tmp, int tmpStep) {
  return demosaicAhd<Kel16u>(src, srcRoi, srcSize, srcStep, dst, dstStep, cfa::gridValue(grid), tmp, tmpStep);
}

}  // extern "C"
