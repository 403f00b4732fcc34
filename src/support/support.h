// Internal primitives that families call from inside the library: copy and
// fill of 8-bit images, maximum, sum and mean of a float image, the typed
// allocators, and the uniform random source of the dithering noise.
//
// None of these is exported: they are built with hidden visibility, and the
// tests reach them through the static build.
#pragma once

#include <cstdint>

#include <kelcc.h>

// ---- images -------------------------------------------------------------------
// Checks: src or dst null -> kelStatusNullPointer; width or height below 1 ->
// kelStatusBadSize. Steps are not tested. Where width and both steps are
// equal the image is copied as one row of width * height bytes.
KelStatus keliCopy_8u_C1R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi);
// Checks: dst null, then the size. Where dstStep equals width the image is
// filled as one row.
KelStatus keliSet_8u_C1R(Kel8u value, Kel8u* dst, int dstStep, KeliSize roi);
// The largest sample, starting from -FLT_MAX (not from the first sample).
// Checks: src or max null, then the size.
KelStatus keliMax_32f_C1R(const Kel32f* src, int srcStep, KeliSize roi, Kel32f* max);
// hint 2: the accurate sum (every sample widened to double, in pairs);
// any other hint: the fast sum, whose single-precision lanes depend on each
// row's address. Checks: src or sum null, then the size.
KelStatus keliSum_32f_C1R(const Kel32f* src, int srcStep, KeliSize roi, double* sum, int hint);
// sum / (width * height). Checks: mean null, then those of the sum.
KelStatus keliMean_32f_C1R(const Kel32f* src, int srcStep, KeliSize roi, double* mean, int hint);

// ---- allocators -----------------------------------------------------------------
// len elements from kelMalloc (not cleared); null for len below 1 or when the
// core layer has no memory. kelsFree hands the block back to kelFree.
Kel16s* kelsMalloc_16s(int len);
Kel16u* kelsMalloc_16u(int len);
Kel32f* kelsMalloc_32f(int len);
void kelsFree(void* ptr);

// ---- uniform random source ---------------------------------------------------------
// A subtract-with-borrow sequence added to a congruential one, scaled into
// [low, high]. The 16s and 32f variants share the sequence and differ in
// the range's type and the stored sample.
struct KelRandUniformState {
  int32_t idCtx;  // 36: 16s variant, 37: 32f variant
  uint32_t seed;
  union {
    Kel16s s[2];
    Kel32f f[2];
  } range;  // low, high
  double mean;
  double scale;
  uint32_t lcg;
  uint32_t a, b, c;  // newest first
  int32_t borrow;    // 0 or -1
};

KelStatus kelsRandUniformInitAlloc_16s(KelRandUniformState** state, Kel16s low, Kel16s high, uint32_t seed);
KelStatus kelsRandUniformInitAlloc_32f(KelRandUniformState** state, Kel32f low, Kel32f high, uint32_t seed);
KelStatus kelsRandUniform_16s(Kel16s* dst, int len, KelRandUniformState* state);
KelStatus kelsRandUniform_32f(Kel32f* dst, int len, KelRandUniformState* state);
KelStatus kelsRandUniformFree_16s(KelRandUniformState* state);
KelStatus kelsRandUniformFree_32f(KelRandUniformState* state);
