// Deinterlacing NV12 pictures that hold two fields: each destination luma
// row is a blend of the source row with its neighbours above and below, and
// each chroma row the mean of two chroma rows. The forms, the table of
// vector kernels each instruction-set file provides, and the row routines.
#pragma once

#include <algorithm>
#include <cstdint>

#include "frame/arith.h"
#include "frame/cpu.h"

namespace kel {

// Luma forms of the source samples u (row above), c (the row) and d (row
// below). The edge forms see one neighbour n only, which the row routine
// passes as d.
enum LForm : int { kBlend, kCentre, kEdge, kFloor4, kFloorEdge, kPlus4, kPlusEdge, kLForms };
// Chroma forms of the samples a and b of two chroma rows; kKeep takes a.
enum CForm : int { kCavg, kHalf, kKeep, kCForms };

// Vector kernels: from x on, in whole blocks while a block fits below n;
// they return where they stopped.
//   luma:   dst[x] = form(u[x], c[x], d[x])                        n pixels
//   chroma: d1[j] = form(a[2j], b[2j]), d2[j] = the same at 2j + 1  n pairs
//   yuy2:   dst[2x] = luma form, dst[2x + 1] = form(a[x], b[x])    n pixels
using KLuma = int (*)(const uint8_t* u, const uint8_t* c, const uint8_t* d, uint8_t* dst, int x, int n);
using KChroma = int (*)(const uint8_t* a, const uint8_t* b, uint8_t* d1, uint8_t* d2, int x, int n);
using KYuy2 = int (*)(const uint8_t* u, const uint8_t* c, const uint8_t* d, const uint8_t* a, const uint8_t* b,
                      uint8_t* dst, int x, int n);
struct DeinterlaceKernels {
  KLuma luma[kLForms];
  KChroma chroma[kCForms];
  KYuy2 yuy2[kLForms][kCForms];
};
namespace sse41 {
extern const DeinterlaceKernels kDeinterlaceKernels;
}
namespace avx2 {
extern const DeinterlaceKernels kDeinterlaceKernels;
}

namespace {
namespace dei {

// ---- the forms ---------------------------------------------------------
// blend and cavg round up at each step; floor4, flooredge and half drop the
// remainder; plus4 and plusedge add one level on top of that (a flat 100
// becomes 101).
inline int blend(int u, int c, int d) { return avg8(avg8(c, u), avg8(c, d)); }
inline int centre(int u, int c, int d) { return avg8(avg8(u, d), c); }
inline int edge(int c, int n) { return avg8(c, avg8(c, n)); }
inline int cavg(int a, int b) { return avg8(a, b); }
inline int floor4(int u, int c, int d) { return (u + 2 * c + d) >> 2; }
inline int flooredge(int c, int n) { return (3 * c + n) >> 2; }
inline int half(int a, int b) { return (a + b) >> 1; }
inline int plus4(int u, int c, int d) { return std::min((u + 2 * c + d + 4) >> 2, 255); }
inline int plusedge(int c, int n) { return std::min((3 * c + n + 4) >> 2, 255); }

inline int luma(LForm f, int u, int c, int d) {
  switch (f) {
    case kBlend: return blend(u, c, d);
    case kCentre: return centre(u, c, d);
    case kEdge: return edge(c, d);
    case kFloor4: return floor4(u, c, d);
    case kFloorEdge: return flooredge(c, d);
    case kPlus4: return plus4(u, c, d);
    default: return plusedge(c, d);
  }
}
inline int chroma(CForm f, int a, int b) { return f == kCavg ? cavg(a, b) : f == kHalf ? half(a, b) : a; }

// ---- row routines --------------------------------------------------------
// A row is a body run, columns below `body`, and a tail run; each has its
// own form. The vector kernels of the active path take whole blocks of each
// run, widest first, and the scalar definition of the run's form the rest.
struct Kernels {
  const DeinterlaceKernels* k[2] = {nullptr, nullptr};
};
inline Kernels kernels() {
  const Isa isa = activeIsa();
  if (isa >= Isa::AVX2) return {{&avx2::kDeinterlaceKernels, &sse41::kDeinterlaceKernels}};
  if (isa >= Isa::SSE41) return {{&sse41::kDeinterlaceKernels, nullptr}};
  return {};
}

// The three source luma rows of a destination row, and the two chroma rows.
struct Luma3 {
  const uint8_t *u, *c, *d;
};
struct Chroma2 {
  const uint8_t *a, *b;
};
// Forms of one run each: body first, then tail.
struct LSplit {
  LForm body, tail;
};
struct CSplit {
  CForm body, tail;
};

inline void lumaRow(Luma3 s, uint8_t* dst, int w, int body, LSplit f, const Kernels& ks) {
  int x = 0;
  for (int run = 0; run < 2; ++run) {
    const int end = run ? w : body;
    const LForm form = run ? f.tail : f.body;
    for (const DeinterlaceKernels* t : ks.k)
      if (t) x = t->luma[form](s.u, s.c, s.d, dst, x, end);
    for (; x < end; ++x) dst[x] = static_cast<uint8_t>(luma(form, s.u[x], s.c[x], s.d[x]));
  }
}

// n chroma pairs into two planes: d1 the first byte of each pair, d2 the second.
inline void chromaRow(Chroma2 s, uint8_t* d1, uint8_t* d2, int n, int body, CSplit f, const Kernels& ks) {
  int j = 0;
  for (int run = 0; run < 2; ++run) {
    const int end = run ? n : body;
    const CForm form = run ? f.tail : f.body;
    for (const DeinterlaceKernels* t : ks.k)
      if (t) j = t->chroma[form](s.a, s.b, d1, d2, j, end);
    for (; j < end; ++j) {
      d1[j] = static_cast<uint8_t>(chroma(form, s.a[2 * j], s.b[2 * j]));
      d2[j] = static_cast<uint8_t>(chroma(form, s.a[2 * j + 1], s.b[2 * j + 1]));
    }
  }
}

// A YUY2 row of w pixels (even): luma and the chroma byte of each column.
inline void yuy2Row(Luma3 s, Chroma2 cs, uint8_t* dst, int w, int body, LSplit lf, CSplit cf, const Kernels& ks) {
  int x = 0;
  for (int run = 0; run < 2; ++run) {
    const int end = run ? w : body;
    const LForm l = run ? lf.tail : lf.body;
    const CForm c = run ? cf.tail : cf.body;
    for (const DeinterlaceKernels* t : ks.k)
      if (t) x = t->yuy2[l][c](s.u, s.c, s.d, cs.a, cs.b, dst, x, end);
    for (; x < end; ++x) {
      dst[2 * x] = static_cast<uint8_t>(luma(l, s.u[x], s.c[x], s.d[x]));
      dst[2 * x + 1] = static_cast<uint8_t>(chroma(c, cs.a[x], cs.b[x]));
    }
  }
}

}  // namespace dei
}  // namespace

}  // namespace kel
