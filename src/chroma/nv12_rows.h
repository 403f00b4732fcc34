// Byte moves between the 4:2:0 and 4:2:2 layouts: interleaving two rows into
// one, splitting one into two, packing luma with chroma into Y0 Cb Y1 Cr or
// Cb Y0 Cr Y1 quads and unpacking them again, and swapping the bytes of each
// pair. Nothing is computed, so the vector kernels and the scalar loops give
// the same bytes; every row move runs the widest kernel of the active path,
// then the narrower one, then the scalar definition for what is left.
//
// The scalar definitions below are the meaning of each move; the kernels in
// nv12_rows_vec.inl are their lane-wise forms.
#pragma once

#include <immintrin.h>

#include <cstdint>
#include <cstring>

#include "frame/cpu.h"

namespace kel {

// One kernel per move. A kernel moves from x on, in whole blocks, while a
// block fits below n, and returns where it stopped. Counts are in bytes of
// the narrower side (zip2, unzip2, pick2, swap2) or in pixels (the quads).
struct MoveKernels {
  int (*zip2)(const uint8_t* a, const uint8_t* b, uint8_t* d, int x, int n);
  int (*unzip2)(const uint8_t* s, uint8_t* a, uint8_t* b, int x, int n);
  int (*pickEven)(const uint8_t* s, uint8_t* a, int x, int n);
  int (*pickOdd)(const uint8_t* s, uint8_t* a, int x, int n);
  int (*packYuyv)(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* d, int x, int n);
  int (*packUyvy)(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* d, int x, int n);
  int (*unpackYuyv)(const uint8_t* s, uint8_t* y, uint8_t* cb, uint8_t* cr, int x, int n);
  int (*unpackUyvy)(const uint8_t* s, uint8_t* y, uint8_t* cb, uint8_t* cr, int x, int n);
  int (*swap2)(const uint8_t* s, uint8_t* d, int x, int n);
  // The same packs and swap with non-temporal stores; the destination of
  // each row starts on a 16-byte boundary.
  int (*packYuyvNt)(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* d, int x, int n);
  int (*packUyvyNt)(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* d, int x, int n);
  int (*swap2Nt)(const uint8_t* s, uint8_t* d, int x, int n);
};
namespace sse41 {
extern const MoveKernels kMoveKernels;
}
namespace avx2 {
extern const MoveKernels kMoveKernels;
}

namespace {
namespace mv {

// The move tables of the active path, widest first; picked once per call.
struct Moves {
  const MoveKernels* k[2] = {nullptr, nullptr};
  template <class F>
  int run(F&& f) const {
    int x = 0;
    for (const MoveKernels* t : k)
      if (t) x = f(*t, x);
    return x;
  }
};
inline Moves moves() {
  const Isa isa = activeIsa();
  if (isa >= Isa::AVX2) return {{&avx2::kMoveKernels, &sse41::kMoveKernels}};
  if (isa >= Isa::SSE41) return {{&sse41::kMoveKernels, nullptr}};
  return {};
}

// d = a0 b0 a1 b1 ...: n bytes of each of a and b.
inline void zip2(const uint8_t* a, const uint8_t* b, uint8_t* d, int n, const Moves& m) {
  for (int x = m.run([&](const MoveKernels& t, int x) { return t.zip2(a, b, d, x, n); }); x < n; ++x)
    d[2 * x] = a[x], d[2 * x + 1] = b[x];
}
// a = s0 s2 s4 ..., b = s1 s3 s5 ...: n bytes each.
inline void unzip2(const uint8_t* s, uint8_t* a, uint8_t* b, int n, const Moves& m) {
  for (int x = m.run([&](const MoveKernels& t, int x) { return t.unzip2(s, a, b, x, n); }); x < n; ++x)
    a[x] = s[2 * x], b[x] = s[2 * x + 1];
}
// a = the even bytes (Odd: the odd bytes) of s, n of them.
template <bool Odd>
inline void pick2(const uint8_t* s, uint8_t* a, int n, const Moves& m) {
  int x = m.run([&](const MoveKernels& t, int x) { return Odd ? t.pickOdd(s, a, x, n) : t.pickEven(s, a, x, n); });
  for (; x < n; ++x) a[x] = s[2 * x + Odd];
}
// Luma with one chroma pair per two pixels into quads, n pixels (even):
// Y0 Cb Y1 Cr, or Cb Y0 Cr Y1 for CbYCr. Nt: non-temporal stores.
template <bool CbYCr, bool Nt = false>
inline void pack4(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* d, int n, const Moves& m) {
  int x = m.run([&](const MoveKernels& t, int x) {
    if (CbYCr) return Nt ? t.packUyvyNt(y, cb, cr, d, x, n) : t.packUyvy(y, cb, cr, d, x, n);
    return Nt ? t.packYuyvNt(y, cb, cr, d, x, n) : t.packYuyv(y, cb, cr, d, x, n);
  });
  constexpr int oy = CbYCr ? 1 : 0, oc = CbYCr ? 0 : 1;
  for (; x < n; x += 2) {
    uint8_t* q = d + 2 * x;
    q[oy] = y[x], q[oc] = cb[x >> 1], q[oy + 2] = y[x + 1], q[oc + 2] = cr[x >> 1];
  }
}
// The inverse of pack4: n pixels (even) of quads into luma and chroma.
template <bool CbYCr>
inline void unpack4(const uint8_t* s, uint8_t* y, uint8_t* cb, uint8_t* cr, int n, const Moves& m) {
  int x = m.run([&](const MoveKernels& t, int x) {
    return CbYCr ? t.unpackUyvy(s, y, cb, cr, x, n) : t.unpackYuyv(s, y, cb, cr, x, n);
  });
  constexpr int oy = CbYCr ? 1 : 0, oc = CbYCr ? 0 : 1;
  for (; x < n; x += 2) {
    const uint8_t* q = s + 2 * x;
    y[x] = q[oy], cb[x >> 1] = q[oc], y[x + 1] = q[oy + 2], cr[x >> 1] = q[oc + 2];
  }
}
// Bytes 0, 1 of each pair exchanged: n bytes (even).
template <bool Nt = false>
inline void swap2(const uint8_t* s, uint8_t* d, int n, const Moves& m) {
  int x = m.run([&](const MoveKernels& t, int x) { return Nt ? t.swap2Nt(s, d, x, n) : t.swap2(s, d, x, n); });
  for (; x < n; x += 2) d[x] = s[x + 1], d[x + 1] = s[x];
}
inline void copy(const uint8_t* s, uint8_t* d, int n) { std::memcpy(d, s, static_cast<size_t>(n)); }

// Non-temporal stores are ordered before the call returns.
inline void fence() { _mm_sfence(); }

}  // namespace mv
}  // namespace

}  // namespace kel
