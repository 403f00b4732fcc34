// The two sums of a float image, row by row.
//
// Fast sum: a row is added in four groups A, B, C, D of four single-precision
// lanes, then folded to two floats (s0, s1) that the caller adds in double.
// Which group a sample joins depends on the row's address (a head that
// brings the pointer to 16 bytes; a pointer off 4 bytes uses group A alone),
// so the same samples at another address can give other low bits. The
// vector form does exactly the additions of the lane-by-lane definition.
//
// Accurate sum: every sample widened to double, even and odd samples in
// separate accumulators that run across all rows, blocks of 32 samples in
// three sets of four double lanes.
#pragma once

#include <emmintrin.h>

#include <cstdint>
#include <cstring>

#include "frame/rows.h"

namespace kel {
namespace {
namespace sum {

// Rows of a float image may start anywhere (their address decides the
// grouping): samples are read by bytes, never through a float pointer.
inline float at(const float* s, int i) { return loadAt<float>(s, i); }
inline __m128 load1(const float* s) { return _mm_set_ss(at(s, 0)); }
inline __m128 load2(const float* s) { return _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(s))); }

struct Pair {
  float s0, s1;
};

// ---- fast sum: the lane-by-lane definition ----------------------------------
struct Lanes {
  float v[4] = {0, 0, 0, 0};
  void add4(const float* x) {
    for (int i = 0; i < 4; ++i) v[i] += at(x, i);
  }
};

inline Pair fastRowScalar(const float* s, int n) {
  Lanes A, B, C, D;
  const uintptr_t a = reinterpret_cast<uintptr_t>(s);
  if (a % 4 == 0 && a % 16 != 0) {
    const int k = 4 - static_cast<int>(a % 16) / 4;
    if (n >= k) {
      if (k >= 2) A.v[0] += at(s, 0), A.v[1] += at(s, 1), s += 2;
      if (k & 1) B.v[0] += at(s, 0), ++s;
      n -= k;
    }
  }
  if (a % 4 != 0) {
    for (; n >= 4; n -= 4, s += 4) A.add4(s);
  } else {
    for (; n >= 16; n -= 16, s += 16) A.add4(s), B.add4(s + 4), C.add4(s + 8), D.add4(s + 12);
    if (n >= 8) A.add4(s), B.add4(s + 4), n -= 8, s += 8;
    if (n >= 4) C.add4(s), n -= 4, s += 4;
  }
  if (n >= 2) D.v[0] += at(s, 0), D.v[1] += at(s, 1), n -= 2, s += 2;
  if (n == 1) C.v[0] += at(s, 0);
  float t[4];
  for (int i = 0; i < 4; ++i) t[i] = (A.v[i] + B.v[i]) + (C.v[i] + D.v[i]);
  return {t[0] + t[2], t[1] + t[3]};
}

// ---- fast sum: the same additions in SSE lanes ------------------------------------
inline Pair fastRow(const float* s, int n) {
  __m128 A = _mm_setzero_ps(), B = A, C = A, D = A;
  const uintptr_t a = reinterpret_cast<uintptr_t>(s);
  if (a % 4 == 0 && a % 16 != 0) {
    const int k = 4 - static_cast<int>(a % 16) / 4;
    if (n >= k) {
      if (k >= 2) A = _mm_add_ps(A, load2(s)), s += 2;
      if (k & 1) B = _mm_add_ps(B, load1(s)), ++s;
      n -= k;
    }
  }
  if (a % 4 != 0) {
    for (; n >= 4; n -= 4, s += 4) A = _mm_add_ps(A, _mm_loadu_ps(s));
  } else {
    for (; n >= 16; n -= 16, s += 16) {
      A = _mm_add_ps(A, _mm_loadu_ps(s));
      B = _mm_add_ps(B, _mm_loadu_ps(s + 4));
      C = _mm_add_ps(C, _mm_loadu_ps(s + 8));
      D = _mm_add_ps(D, _mm_loadu_ps(s + 12));
    }
    if (n >= 8) {
      A = _mm_add_ps(A, _mm_loadu_ps(s));
      B = _mm_add_ps(B, _mm_loadu_ps(s + 4));
      n -= 8, s += 8;
    }
    if (n >= 4) C = _mm_add_ps(C, _mm_loadu_ps(s)), n -= 4, s += 4;
  }
  // Lanes not loaded add +0.0, which leaves every value (-0.0 included,
  // since the lanes start at +0.0) as the definition has it.
  if (n >= 2) D = _mm_add_ps(D, load2(s)), n -= 2, s += 2;
  if (n == 1) C = _mm_add_ps(C, load1(s));
  const __m128 t = _mm_add_ps(_mm_add_ps(A, B), _mm_add_ps(C, D));
  const __m128 f = _mm_add_ps(t, _mm_movehl_ps(t, t));  // lanes 0, 1: t0 + t2, t1 + t3
  return {_mm_cvtss_f32(f), _mm_cvtss_f32(_mm_shuffle_ps(f, f, 1))};
}

// ---- accurate sum -----------------------------------------------------------------
struct Accurate {
  double E = 0, O = 0;
  void row(const float* c, int w) {
    const int p = w / 2;
    int j = 0;
    if (p >= 16) {
      const int p16 = p & ~15;
      double L[4] = {E, 0, 0, 0}, N[4] = {O, 0, 0, 0}, M[4] = {0, 0, 0, 0};
      for (int blk = 0; blk < 2 * p16; blk += 32) {
        const float* b = c + blk;
        for (int i = 0; i < 4; ++i) {
          L[i] += at(b, 2 * i);
          N[i] += at(b, 2 * i + 1);
          M[i] += at(b, 8 + 2 * i);
          N[i] += at(b, 9 + 2 * i);
          L[i] += at(b, 16 + 2 * i);
          N[i] += at(b, 17 + 2 * i);
          M[i] += at(b, 24 + 2 * i);
          N[i] += at(b, 25 + 2 * i);
        }
      }
      O = (N[0] + N[2]) + (N[1] + N[3]);
      double T[4];
      for (int i = 0; i < 4; ++i) T[i] = L[i] + M[i];
      E = (T[0] + T[2]) + (T[1] + T[3]);
      j = p16;
    }
    for (; j < p; ++j) {
      E += at(c, 2 * j);
      O += at(c, 2 * j + 1);
    }
    if (w & 1) E += at(c, w - 1);
  }
  double result() const { return O + E; }
};

}  // namespace sum
}  // namespace
}  // namespace kel
