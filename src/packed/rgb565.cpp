// RGB565 pack and unpack: four members, two row routines. Rows are split
// into bands by thread number for large images (frame/parallel.h); a band
// boundary falls on whole rows and a row routine keeps nothing between rows,
// so the bytes do not depend on the thread count.
#include "packed/rgb565.h"

#include "frame/checks.h"
#include "frame/cpu.h"
#include "frame/parallel.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace rgb565;

// Body pixel counts. Body and tail compute the same bytes; the split only
// decides which pixels may go through the vector kernels.
inline int unpackBody(int w) { return w & ~7; }                   // groups of 8
inline int packBody(int w) { return w < 16 ? 0 : (w & ~7); }      // blocks of 16, then one group of 8

// The word image's step is taken in words: step >> 1, so an odd step loses
// its low bit and a step of 1 makes every row the same words.
inline ptrdiff_t wordStep(int step) { return static_cast<ptrdiff_t>(step >> 1); }

// Unpack rows r0 .. r1-1.
void owncnRGB565ToRGB(const uint16_t* src, ptrdiff_t srcWords, uint8_t* dst, int dstStep, int w, int r0, int r1,
                      const Chain<Kern565Unpack>& chain) {
  const int body = unpackBody(w);
  for (int r = r0; r < r1; ++r) {
    const uint16_t* s = src + srcWords * r;
    uint8_t* d = rowAt(dst, dstStep, r);
    int x = 0;
    for (Kern565Unpack k : chain.k)
      if (k) x = k(s, d, x, body);
    for (; x < w; ++x) unpack(getWord(s + x), d + 3 * x);
  }
}

// Pack rows r0 .. r1-1.
void owncnRGBToRGB565(const uint8_t* src, int srcStep, uint16_t* dst, ptrdiff_t dstWords, int w, int r0, int r1,
                      const Chain<Kern565Pack>& chain) {
  const int body = packBody(w);
  for (int r = r0; r < r1; ++r) {
    const uint8_t* s = rowAt(src, srcStep, r);
    uint16_t* d = dst + dstWords * r;
    int x = 0;
    for (Kern565Pack k : chain.k)
      if (k) x = k(s, d, x, body);
    for (; x < w; ++x) putWord(d + x, pack(s + 3 * x));
  }
}

KelStatus unpackImage(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkC({src, dst}, {}, roi, {srcStep, dstStep})) return st;
  auto chain = chainFor(&Rgb565Kernels::unpack, sse41::kRgb565Kernels, avx2::kRgb565Kernels);
  // With AVX-512 VBMI one kernel does the whole body, its last block masked.
  if (activeIsa() >= Isa::AVX512 && __builtin_cpu_supports("avx512vbmi"))
    chain = {{avx2::kRgb565Kernels.unpackWide, nullptr}};
  parallelFixedBands(roi.width, roi.height, kBandMin, kBandMin, [&](int r0, int r1) {
    owncnRGB565ToRGB(src, wordStep(srcStep), dst, dstStep, roi.width, r0, r1, chain);
  });
  return kelStatusOk;
}

KelStatus packImage(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkC({src, dst}, {}, roi, {srcStep, dstStep})) return st;
  const auto chain = chainFor(&Rgb565Kernels::pack, sse41::kRgb565Kernels, avx2::kRgb565Kernels);
  parallelFixedBands(roi.width, roi.height, kBandMin, kBandMin, [&](int r0, int r1) {
    owncnRGBToRGB565(src, srcStep, dst, wordStep(dstStep), roi.width, r0, r1, chain);
  });
  return kelStatusOk;
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:          routine   body            body form  tail form
//  BGR565ToBGR_16u8u_C3R  unpack    w & ~7          unpack     unpack
//  RGB565ToRGB_16u8u_C3R  unpack    w & ~7          unpack     unpack
//  BGRToBGR565_8u16u_C3R  pack      w & ~7 (w>=16)  pack       pack
//  RGBToRGB565_8u16u_C3R  pack      w & ~7 (w>=16)  pack       pack
// Checks: pointers, size at least 1 by 1, then both steps at least 1.

extern "C" {

KelStatus keliBGR565ToBGR_16u8u_C3R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return unpackImage(src, srcStep, dst, dstStep, roi);
}
KelStatus keliRGB565ToRGB_16u8u_C3R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return unpackImage(src, srcStep, dst, dstStep, roi);
}
KelStatus keliBGRToBGR565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return packImage(src, srcStep, dst, dstStep, roi);
}
KelStatus keliRGBToRGB565_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return packImage(src, srcStep, dst, dstStep, roi);
}

}  // extern "C"
