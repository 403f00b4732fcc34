// Bilinear demosaicing, 8u and 16u (formulas in cfa.h). The frame of two
// pixels round the image runs on the caller's thread; the inner rectangle
// goes to fixed bands by thread number from 192 by 192 up.
#include "demosaic/cfa.h"

#include <algorithm>

#include "frame/checks.h"
#include "frame/cpu.h"
#include "frame/parallel.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace cfa;

template <class T>
KernCfa<T> CfaKernels::*rowKernel();
template <>
KernCfa<uint8_t> CfaKernels::*rowKernel<uint8_t>() { return &CfaKernels::row8; }
template <>
KernCfa<uint16_t> CfaKernels::*rowKernel<uint16_t>() { return &CfaKernels::row16; }

// Rows r0 .. r1-1 of the inner rectangle at (ix, iy), iw wide. Each row
// takes its site order from its absolute position, so any band starts on
// the right pattern.
template <class T>
void rectRows(const T* src, ptrdiff_t sstep, T* dst, ptrdiff_t dstep, int grid, int ix, int iy, int iw, int r0,
              int r1, const Chain<KernCfa<T>>& chain) {
  for (int r = r0; r < r1; ++r) {
    const int y = iy + r;
    CfaRow<T> io;
    for (int k = 0; k < 5; ++k) io.r[k] = src + sstep * (y - 2 + k) + ix;
    io.d = dst + dstep * r;
    io.chromaPar = siteAt(grid, ix, y) == kG ? 1 : 0;
    io.kIdx = siteAt(grid, ix + io.chromaPar, y);
    innerRow(io, runChain(chain, io, 0, iw), iw);
  }
}

// Samples of the step: bytes for 8u, an arithmetic shift by 1 for 16u.
template <class T>
ptrdiff_t samples(int step) {
  return sizeof(T) == 1 ? step : (step >> 1);
}

template <class T>
KelStatus cfaToRgb(const T* src, KeliRect roi, KeliSize size, int srcStep, T* dst, int dstStep, int grid) {
  if (KelStatus st = checkG({src, dst}, {}, size, 2, 2, grid >= 0 && grid <= 3)) return st;
  const int W = size.width, H = size.height;
  // The caller gives x and y from 0 up; a negative origin is taken as 0 (the
  // region moves, as in AHD demosaicing), so nothing outside the image is
  // read. Only the right and bottom limits shorten the region.
  const int x0 = std::max(roi.x, 0), y0 = std::max(roi.y, 0);
  const int w = std::min(roi.width, W - x0), h = std::min(roi.height, H - y0);
  if (w < 1 || h < 1) return kelStatusOk;
  const ptrdiff_t sstep = samples<T>(srcStep), dstep = samples<T>(dstStep);

  // Frame: rows within two of the top or bottom edge whole, columns within
  // two of the left or right edge on the other rows.
  const int x1 = x0 + w - 1, y1 = y0 + h - 1;
  auto frameAt = [&](int y, int a, int b) {
    if (a <= b) frameRow(src, sstep, W, H, grid, y, a, b, dst + dstep * (y - y0) + 3 * (a - x0));
  };
  for (int y = y0; y <= y1; ++y) {
    if (y < 2 || y > H - 3) {
      frameAt(y, x0, x1);
    } else {
      frameAt(y, x0, std::min(x1, 1));
      frameAt(y, std::max(x0, std::max(W - 2, 2)), x1);
    }
  }

  // Inner rectangle.
  const int ix = std::max(x0, 2), iy = std::max(y0, 2);
  const int iw = std::min(x1, W - 3) - ix + 1, ih = std::min(y1, H - 3) - iy + 1;
  if (iw < 1 || ih < 1) return kelStatusOk;
  const Chain<KernCfa<T>> chain = chainFor(rowKernel<T>(), sse41::kCfaKernels, avx2::kCfaKernels);
  T* idst = dst + dstep * (iy - y0) + 3 * (ix - x0);
  parallelFixedBands(iw, ih, kBandMin, kBandMin, [&](int r0, int r1) {
    rectRows(src, sstep, idst, dstep, grid, ix, iy, iw, r0, r1, chain);
  });
  return kelStatusOk;
}

}  // namespace
}  // namespace kel

using namespace kel;

extern "C" {

KelStatus keliCFAToRGB_8u_C1C3R(const Kel8u* src, KeliRect srcRoi, KeliSize srcSize, int srcStep, Kel8u* dst,
                                int dstStep, KelBayerGrid grid) {
  return cfaToRgb<Kel8u>(src, srcRoi, srcSize, srcStep, dst, dstStep, cfa::gridValue(grid));
}
KelStatus keliCFAToRGB_16u_C1C3R(const Kel16u* src, KeliRect srcRoi, KeliSize srcSize, int srcStep, Kel16u* dst,
                                 int dstStep, KelBayerGrid grid) {
  return cfaToRgb<Kel16u>(src, srcRoi, srcSize, srcStep, dst, dstStep, cfa::gridValue(grid));
}

}  // extern "C"
