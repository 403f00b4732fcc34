// Vector bodies of the ordered dither (every depth pair) and of the 8-bit
// nearest level, compiled once per instruction set from
// reduce_vec.inl. A kernel works on the samples of one row from sample i on,
// in whole chunks while a chunk fits below n, and returns the sample where
// it stopped; the scalar definition takes the rest. Results are those of the
// scalar definitions in reduce.h and ordered.h, sample for sample.
#pragma once

#include <cstdint>

namespace kel {

// Ordered dithering without noise of a row whose pixels hold p samples, all
// of them quantised (C1, C3, C4); thr4 holds the row's four thresholds. The
// sample types are those of the depth pair the kernel is made for; the
// pointers may lie off their sample boundaries.
using KernBayer = int64_t (*)(const void* s, void* d, int64_t i, int64_t n, int p, float step, float inv,
                              const float* thr4);
// Nearest level of a run of 8-bit samples (L = levels - 1, s = 1 / L, h = 0.5 / L).
using KernNearest8u = int64_t (*)(const uint8_t* s, uint8_t* d, int64_t i, int64_t n, float L, float sv, float h);

// The same with one threshold per sample (ordered dither with noise): thr[j]
// is the threshold of sample j of the run, from j = i to n.
using KernBayerT = int64_t (*)(const void* s, void* d, int64_t i, int64_t n, float step, float inv, const float* thr);

// 8u ordered dither without noise through the call's table: a whole row of n
// samples with p samples per pixel (AC4: p = 4 and the fourth sample of each
// pixel neither computed nor written); table[256 * j + v] is the output of
// value v at a column with x & 3 == j, for the row's y & 3. Processors with
// AVX-512 VBMI only; returns n.
using KernBayerLut = int64_t (*)(const uint8_t* s, uint8_t* d, int64_t n, int p, bool ac4, const uint8_t* table);

// Floyd-Steinberg 8u, 16 consecutive rows of a worker's stream of rows at
// once, one row per vector lane (AVX-512 only). Row r runs at column t - 2r
// at step t, as the scalar wavefront runs its rows; `above` is the error row
// of the row before row 0 (cells -1 .. w), and receives the errors of row
// 15, which the next rows of the stream read. Without noise every sample's
// threshold is `half`; with noise the threshold of pixel x in row y is
// noiseF[(colBase[x] + 2y) & 1023] (NoiseTables::at with the column part
// colBase[x] = tabI[x & 1023] read unsigned, plus x), colBase being readable
// from x = -30 to w + 31.
struct FsGroup16 {
  const uint8_t* s[16];  // sample 0 of each row (its channel)
  uint8_t* d[16];
  int w, p;              // pixels, samples per pixel
  float* above;          // cell of column 0
  float step, inv, half;
  const float* noiseF;   // null without noise
  const int32_t* colBase;
  int32_t y2[16];        // 2y of each row
  uint8_t* skew;         // 2 * fsSkewBytes(w) bytes of scratch
};
inline int64_t fsSkewBytes(int w) { return (static_cast<int64_t>(w) + 30) * 16; }
using KernFs16 = void (*)(const FsGroup16& g);

struct ReduceKernels {
  // By depth pair: 8u, 16u, 16s, 16u8u, 16s8u, 32f8u, 32f16u, 32f16s.
  KernBayer bayer[8];
  KernBayerT bayerT[8];
  KernNearest8u nearest8u;
  KernBayerLut bayerLut8u;  // AVX2 table only (null in SSE4.1)
  KernFs16 fs8u16;          // AVX2 table only (null in SSE4.1)
};
namespace sse41 {
extern const ReduceKernels kReduceKernels;
}
namespace avx2 {
extern const ReduceKernels kReduceKernels;
}

}  // namespace kel
