// Vector kernels of the chroma row moves, written once on the lane words of
// frame/simd.h and compiled per instruction set. Each kernel moves the same
// bytes as the scalar definition of the same name in layout_rows.h; lanes of
// the AVX2 build take consecutive blocks of the row.
// kelcc-isa: avx512
#include <utility>

#include "chroma/layout_rows.h"
#include "frame/simd.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;
constexpr int L = V::kLanes;

template <bool Nt>
inline void put(void* p, v x) {
  if constexpr (Nt) V::stream<16>(p, x);
  else V::store<16>(p, x);
}
// Store to lane i at p + i * S.
template <int S, bool Nt>
inline void putS(void* p, v x) {
  if constexpr (Nt) V::stream<S>(p, x);
  else V::store<S>(p, x);
}

// ---- masks -------------------------------------------------------------------
// A 16-byte block of four C2 pixel pairs -> luma in bytes 0-7, Cb in 8-11, Cr
// in 12-15.
constexpr Mask16 maskC2Split(Quad q) {
  Mask16 m{};
  for (int p = 0; p < 4; ++p) {
    m.b[2 * p] = static_cast<int8_t>(4 * p + q.y0);
    m.b[2 * p + 1] = static_cast<int8_t>(4 * p + q.y0 + 2);
    m.b[8 + p] = static_cast<int8_t>(4 * p + q.cb);
    m.b[12 + p] = static_cast<int8_t>(4 * p + q.cr);
  }
  return m;
}
// The same with the chroma as Cb/Cr pairs in bytes 8-15.
constexpr Mask16 maskC2SplitPairs(Quad q) {
  Mask16 m = maskC2Split(q);
  for (int p = 0; p < 4; ++p) {
    m.b[8 + 2 * p] = static_cast<int8_t>(4 * p + q.cb);
    m.b[9 + 2 * p] = static_cast<int8_t>(4 * p + q.cr);
  }
  return m;
}
// Two groups of four pixels -> luma in bytes 0-7, the first pair's chroma
// as Cb0 Cb1 Cr0 Cr1 in bytes 8-11 (Cb/Cr pairs Cb0 Cr0 Cb1 Cr1 when
// `pairs`), zero above.
constexpr Mask16 maskC2Even(Quad q, bool pairs) {
  Mask16 m = maskC2Split(q);
  for (int i = 8; i < 16; ++i) m.b[i] = -128;
  for (int g = 0; g < 2; ++g) {
    m.b[pairs ? 8 + 2 * g : 8 + g] = static_cast<int8_t>(8 * g + q.cb);
    m.b[pairs ? 9 + 2 * g : 10 + g] = static_cast<int8_t>(8 * g + q.cr);
  }
  return m;
}
// Pairs -> first bytes in 0-7, second bytes in 8-15.
constexpr Mask16 maskPairSplit() {
  Mask16 m{};
  for (int i = 0; i < 8; ++i) m.b[i] = static_cast<int8_t>(2 * i), m.b[8 + i] = static_cast<int8_t>(2 * i + 1);
  return m;
}
// Pairs -> byte `which` of each pair, twice.
constexpr Mask16 maskPairDup(int which) {
  Mask16 m{};
  for (int i = 0; i < 16; ++i) m.b[i] = static_cast<int8_t>(2 * (i / 2) + which);
  return m;
}
// Pixel pairs rearranged: P = 0 exchanges bytes 1 and 3, P = 1 bytes 0/1, 2/3.
constexpr Mask16 maskPerm(int p) {
  Mask16 m{};
  constexpr int kP[2][4] = {{0, 3, 2, 1}, {1, 0, 3, 2}};
  for (int i = 0; i < 16; ++i) m.b[i] = static_cast<int8_t>(4 * (i / 4) + kP[p][i % 4]);
  return m;
}
// 16-bit words: even words in bytes 0-7, odd words in 8-15.
constexpr Mask16 maskWordSplit() {
  Mask16 m{};
  for (int i = 0; i < 4; ++i) {
    m.b[2 * i] = static_cast<int8_t>(4 * i), m.b[2 * i + 1] = static_cast<int8_t>(4 * i + 1);
    m.b[8 + 2 * i] = static_cast<int8_t>(4 * i + 2), m.b[9 + 2 * i] = static_cast<int8_t>(4 * i + 3);
  }
  return m;
}

constexpr Mask16 kSplit[3] = {maskC2Split(kYCbCr), maskC2Split(kYCrCb), maskC2Split(kCbYCr)};
constexpr Mask16 kSplitPairs[3] = {maskC2SplitPairs(kYCbCr), maskC2SplitPairs(kYCrCb), maskC2SplitPairs(kCbYCr)};
constexpr Mask16 kEven[3] = {maskC2Even(kYCbCr, false), maskC2Even(kYCrCb, false), maskC2Even(kCbYCr, false)};
constexpr Mask16 kEvenPairs[3] = {maskC2Even(kYCbCr, true), maskC2Even(kYCrCb, true), maskC2Even(kCbYCr, true)};
constexpr Mask16 kPairSplit = maskPairSplit();
constexpr Mask16 kPairDup[2] = {maskPairDup(0), maskPairDup(1)};
constexpr Mask16 kPerm[2] = {maskPerm(0), maskPerm(1)};
constexpr Mask16 kWordSplit = maskWordSplit();
constexpr Quad kQuads[3] = {kYCbCr, kYCrCb, kCbYCr};

// ---- copies ------------------------------------------------------------------
int copy(const RowsIO& io, int x, int n) {
  constexpr int B = 16 * L;
  for (; x + 4 * B <= n; x += 4 * B) {
    const v a = V::load<16>(io.s[0] + x), b = V::load<16>(io.s[0] + x + B);
    const v c = V::load<16>(io.s[0] + x + 2 * B), d = V::load<16>(io.s[0] + x + 3 * B);
    V::store<16>(io.d[0] + x, a), V::store<16>(io.d[0] + x + B, b);
    V::store<16>(io.d[0] + x + 2 * B, c), V::store<16>(io.d[0] + x + 3 * B, d);
  }
  for (; x + B <= n; x += B) V::store<16>(io.d[0] + x, V::load<16>(io.s[0] + x));
  return x;
}
// Streams the part of the row from the first 16-byte boundary of the
// destination on; rows too short to gain leave everything to the next path.
int copyNt(const RowsIO& io, int x, int n) {
  constexpr int B = 16 * L;
  if (n - x < 4 * B) return x;
  const int head = static_cast<int>((0 - reinterpret_cast<uintptr_t>(io.d[0] + x)) & 15);
  if (head) std::memcpy(io.d[0] + x, io.s[0] + x, static_cast<size_t>(head));
  x += head;
  for (; x + B <= n; x += B) V::stream<16>(io.d[0] + x, V::load<16>(io.s[0] + x));
  return x;
}

// ---- packed 4:2:2 <-> planes (16 pixel pairs per lane) -----------------------------
// Splits 64 bytes of C2 per lane into 32 luma bytes (ya, yb) and the
// chroma words of the four blocks.
template <int Q>
inline void loadC2(const uint8_t* p, v& ya, v& yb, v& ca, v& cb) {
  const v m = V::bcast(kSplit[Q].b);
  const v a = V::shuffle8(V::load<64>(p), m), b = V::shuffle8(V::load<64>(p + 16), m);
  const v c = V::shuffle8(V::load<64>(p + 32), m), d = V::shuffle8(V::load<64>(p + 48), m);
  ya = V::unpacklo64(a, b), yb = V::unpacklo64(c, d);
  ca = V::unpackhi32(a, b), cb = V::unpackhi32(c, d);  // Cb Cb Cr Cr in 32-bit words
}
template <int Q>
int c2ToP3(const RowsIO& io, int x, int n) {
  for (; x + 16 * L <= n; x += 16 * L) {
    v ya, yb, ca, cb;
    loadC2<Q>(io.s[0] + 4 * x, ya, yb, ca, cb);
    V::store<32>(io.d[0] + 2 * x, ya), V::store<32>(io.d[0] + 2 * x + 16, yb);
    V::store<16>(io.d[1] + x, V::unpacklo64(ca, cb));
    V::store<16>(io.d[2] + x, V::unpackhi64(ca, cb));
  }
  return x;
}
template <int Q>
int c2ToY(const RowsIO& io, int x, int n) {
  constexpr int q = Q == 0 ? 0 : 2;
  for (; x + 16 * L <= n; x += 16 * L) {
    v ya, yb, ca, cb;
    loadC2<q>(io.s[0] + 4 * x, ya, yb, ca, cb);
    V::store<32>(io.d[0] + 2 * x, ya), V::store<32>(io.d[0] + 2 * x + 16, yb);
  }
  return x;
}
template <int Q>
int c2ToP2(const RowsIO& io, int x, int n) {
  const v m = V::bcast(kSplitPairs[Q].b);
  for (; x + 16 * L <= n; x += 16 * L) {
    const uint8_t* p = io.s[0] + 4 * x;
    const v a = V::shuffle8(V::load<64>(p), m), b = V::shuffle8(V::load<64>(p + 16), m);
    const v c = V::shuffle8(V::load<64>(p + 32), m), d = V::shuffle8(V::load<64>(p + 48), m);
    V::store<32>(io.d[0] + 2 * x, V::unpacklo64(a, b)), V::store<32>(io.d[0] + 2 * x + 16, V::unpacklo64(c, d));
    V::store<32>(io.d[1] + 2 * x, V::unpackhi64(a, b)), V::store<32>(io.d[1] + 2 * x + 16, V::unpackhi64(c, d));
  }
  return x;
}
// Interleaves 16 * kLanes contiguous luma bytes with as many contiguous
// bytes of chroma pairs (in the pair order of the C2 row) into 32 * kLanes
// contiguous bytes of C2.
template <int Q, bool Nt>
inline void storeC2(uint8_t* p, v y, v pr) {
  v lo, hi;
  if constexpr (kQuads[Q].y0 == 0) zip8(y, pr, lo, hi);
  else zip8(pr, y, lo, hi);
  put<Nt>(p, lo), put<Nt>(p + 16 * L, hi);
}
// Two planes' bytes as contiguous pairs: p0 the first 8 * kLanes pairs.
inline void zipPairs(v a, v b, v& p0, v& p1) { zip8(a, b, p0, p1); }
inline v swapPairs(v p) { return V::or_(V::slli16<8>(p), V::srli16<8>(p)); }

template <int Q, bool Nt>
int p3ToC2(const RowsIO& io, int x, int n) {
  for (; x + 16 * L <= n; x += 16 * L) {
    v c1 = V::load<16>(io.s[1] + x), c2 = V::load<16>(io.s[2] + x);
    if constexpr (kQuads[Q].cb > kQuads[Q].cr) std::swap(c1, c2);
    v p0, p1;
    zipPairs(c1, c2, p0, p1);
    storeC2<Q, Nt>(io.d[0] + 4 * x, V::load<16>(io.s[0] + 2 * x), p0);
    storeC2<Q, Nt>(io.d[0] + 4 * x + 32 * L, V::load<16>(io.s[0] + 2 * x + 16 * L), p1);
  }
  return x;
}
template <int Q, bool Nt>
int p2ToC2(const RowsIO& io, int x, int n) {
  for (; x + 16 * L <= n; x += 16 * L) {
    v p0 = V::load<16>(io.s[1] + 2 * x), p1 = V::load<16>(io.s[1] + 2 * x + 16 * L);
    if constexpr (kQuads[Q].cb > kQuads[Q].cr)  // Cr first in the C2 row: exchange each pair
      p0 = swapPairs(p0), p1 = swapPairs(p1);
    storeC2<Q, Nt>(io.d[0] + 4 * x, V::load<16>(io.s[0] + 2 * x), p0);
    storeC2<Q, Nt>(io.d[0] + 4 * x + 32 * L, V::load<16>(io.s[0] + 2 * x + 16 * L), p1);
  }
  return x;
}
// The exchange stays inside each pixel pair, so whole vectors of
// contiguous bytes go through one mask: full-width loads and stores.
template <int P, bool Nt>
int permC2(const RowsIO& io, int x, int n) {
  const v m = V::bcast(kPerm[P].b);
  constexpr int W = 16 * L;  // bytes of a vector
  for (; x + 16 * L <= n; x += 16 * L) {
    const uint8_t* s = io.s[0] + 4 * x;
    uint8_t* d = io.d[0] + 4 * x;
    const v a = V::load<16>(s), b = V::load<16>(s + W), c = V::load<16>(s + 2 * W), e = V::load<16>(s + 3 * W);
    put<Nt>(d, V::shuffle8(a, m)), put<Nt>(d + W, V::shuffle8(b, m));
    put<Nt>(d + 2 * W, V::shuffle8(c, m)), put<Nt>(d + 3 * W, V::shuffle8(e, m));
  }
  return x;
}

// ---- chroma pairs <-> planes (16 per lane) --------------------------------------
int splitPairs(const RowsIO& io, int x, int n) {
  const v m = V::bcast(kPairSplit.b);
  for (; x + 16 * L <= n; x += 16 * L) {
    // Each lane: 8 first bytes, 8 second bytes; lanes paired in order.
    v lo, hi;
    V::interleaveLanes(V::shuffle8(V::load<16>(io.s[0] + 2 * x), m),
                       V::shuffle8(V::load<16>(io.s[0] + 2 * x + 16 * L), m), lo, hi);
    V::store<16>(io.d[0] + x, V::unpacklo64(lo, hi)), V::store<16>(io.d[1] + x, V::unpackhi64(lo, hi));
  }
  return x;
}
int zipBytes(const RowsIO& io, int x, int n) {
  for (; x + 16 * L <= n; x += 16 * L) {
    v p0, p1;
    zipPairs(V::load<16>(io.s[0] + x), V::load<16>(io.s[1] + x), p0, p1);
    V::store<16>(io.d[0] + 2 * x, p0), V::store<16>(io.d[0] + 2 * x + 16 * L, p1);
  }
  return x;
}

// ---- even columns -------------------------------------------------------------
int evenBytes(const RowsIO& io, int x, int n) {
  const v lo = V::set16(0xff);
  for (; x + 16 * L <= n; x += 16 * L) {
    const v a = V::and_(V::load<32>(io.s[0] + 2 * x), lo), b = V::and_(V::load<32>(io.s[0] + 2 * x + 16), lo);
    V::store<16>(io.d[0] + x, V::packus16(a, b));
  }
  return x;
}
// 8 groups of four pixels per lane: 64 bytes of C2 -> 32 luma, 8 Cb, 8 Cr.
template <int Q>
int c2ToP3Even(const RowsIO& io, int x, int n) {
  const v m = V::bcast(kEven[Q].b);
  for (; x + 8 * L <= n; x += 8 * L) {
    const uint8_t* p = io.s[0] + 8 * x;
    const v a = V::shuffle8(V::load<64>(p), m), b = V::shuffle8(V::load<64>(p + 16), m);
    const v c = V::shuffle8(V::load<64>(p + 32), m), d = V::shuffle8(V::load<64>(p + 48), m);
    V::store<32>(io.d[0] + 4 * x, V::unpacklo64(a, b)), V::store<32>(io.d[0] + 4 * x + 16, V::unpacklo64(c, d));
    // Word 4 of each block holds its two Cb, word 5 its two Cr: the
    // unpacks gather 4 Cb, 4 Cr per block pair, then 8 Cb and 8 Cr.
    const v ab = V::unpackhi16(a, b), cd = V::unpackhi16(c, d);
    const v ch = V::unpacklo32(ab, cd);
    V::store8<8>(io.d[1] + x, ch);
    V::store8<8>(io.d[2] + x, V::bsrli<8>(ch));
  }
  return x;
}
template <int Q, bool Nt>
int c2ToP2Even(const RowsIO& io, int x, int n) {
  const v m = V::bcast(kEvenPairs[Q].b);
  for (; x + 8 * L <= n; x += 8 * L) {
    const uint8_t* p = io.s[0] + 8 * x;
    const v a = V::shuffle8(V::load<64>(p), m), b = V::shuffle8(V::load<64>(p + 16), m);
    const v c = V::shuffle8(V::load<64>(p + 32), m), d = V::shuffle8(V::load<64>(p + 48), m);
    putS<32, Nt>(io.d[0] + 4 * x, V::unpacklo64(a, b)), putS<32, Nt>(io.d[0] + 4 * x + 16, V::unpacklo64(c, d));
    // Words 2 of each block hold two pairs.
    const v ab = V::unpackhi32(a, b), cd = V::unpackhi32(c, d);  // pairs(a) pairs(b) 0 0
    putS<16, Nt>(io.d[1] + 2 * x, V::unpacklo64(ab, cd));
  }
  return x;
}
int zipEvenBytes(const RowsIO& io, int x, int n) {
  const v lo = V::set16(0xff);
  for (; x + 16 * L <= n; x += 16 * L) {
    for (int k = 0; k < 2; ++k) {
      const v a = V::load<32>(io.s[0] + 2 * x + 16 * k), b = V::load<32>(io.s[1] + 2 * x + 16 * k);
      V::store<32>(io.d[0] + 2 * x + 16 * k, V::or_(V::and_(a, lo), V::slli16<8>(b)));
    }
  }
  return x;
}

// ---- column repeat ----------------------------------------------------------------
int dupBytes(const RowsIO& io, int x, int n) {
  for (; x + 16 * L <= n; x += 16 * L) {
    const v a = V::load<16>(io.s[0] + x);
    V::store<32>(io.d[0] + 2 * x, V::unpacklo8(a, a)), V::store<32>(io.d[0] + 2 * x + 16, V::unpackhi8(a, a));
  }
  return x;
}
int splitPairsDup(const RowsIO& io, int x, int n) {
  const v m0 = V::bcast(kPairDup[0].b), m1 = V::bcast(kPairDup[1].b);
  for (; x + 8 * L <= n; x += 8 * L) {
    const v a = V::load<16>(io.s[0] + 2 * x);
    V::store<16>(io.d[0] + 2 * x, V::shuffle8(a, m0)), V::store<16>(io.d[1] + 2 * x, V::shuffle8(a, m1));
  }
  return x;
}
// 8 * kLanes groups of four pixels: 8 * kLanes chroma pairs, each serving
// two pixel pairs.
template <int Q, bool Nt>
inline void storeC2Dup(uint8_t* p, const uint8_t* y, v pr) {
  v q0, q1;
  V::interleaveLanes(V::unpacklo16(pr, pr), V::unpackhi16(pr, pr), q0, q1);
  storeC2<Q, Nt>(p, V::load<16>(y), q0);
  storeC2<Q, Nt>(p + 32 * L, V::load<16>(y + 16 * L), q1);
}
template <int Q, bool Nt>
int p3ToC2Dup(const RowsIO& io, int x, int n) {
  for (; x + 8 * L <= n; x += 8 * L) {
    v c1 = V::load8<8>(io.s[1] + x), c2 = V::load8<8>(io.s[2] + x);
    if constexpr (kQuads[Q].cb > kQuads[Q].cr) std::swap(c1, c2);
    storeC2Dup<Q, Nt>(io.d[0] + 8 * x, io.s[0] + 4 * x, V::unpacklo8(c1, c2));
  }
  return x;
}
template <int Q, bool Nt>
int p2ToC2Dup(const RowsIO& io, int x, int n) {
  for (; x + 8 * L <= n; x += 8 * L) {
    v pr = V::load<16>(io.s[1] + 2 * x);
    if constexpr (kQuads[Q].cb > kQuads[Q].cr) pr = swapPairs(pr);
    storeC2Dup<Q, Nt>(io.d[0] + 8 * x, io.s[0] + 4 * x, pr);
  }
  return x;
}

// ---- row fold and unfold ------------------------------------------------------------
int foldPairs(const RowsIO& io, int x, int n) {
  const v m = V::bcast(kWordSplit.b);
  for (; x + 8 * L <= n; x += 8 * L) {
    const v a = V::load<16>(io.s[0] + 2 * x), b = V::load<16>(io.s[1] + 2 * x);
    // Upper and lower bytes alternate: words of first bytes, words of second.
    const v lo = V::shuffle8(V::unpacklo8(a, b), m), hi = V::shuffle8(V::unpackhi8(a, b), m);
    V::store<16>(io.d[0] + 2 * x, V::unpacklo64(lo, hi)), V::store<16>(io.d[1] + 2 * x, V::unpackhi64(lo, hi));
  }
  return x;
}
int zip4(const RowsIO& io, int x, int n) {
  for (; x + 16 * L <= n; x += 16 * L)
    storeC4(io.d[0] + 4 * x, V::load<16>(io.s[0] + x), V::load<16>(io.s[1] + x), V::load<16>(io.s[2] + x),
            V::load<16>(io.s[3] + x));
  return x;
}
int unzip4(const RowsIO& io, int x, int n) {
  for (; x + 16 * L <= n; x += 16 * L) {
    v a, b, c, d;
    loadC4(io.s[0] + 4 * x, a, b, c, d);
    V::store<16>(io.d[0] + x, a), V::store<16>(io.d[1] + x, b);
    V::store<16>(io.d[2] + x, c), V::store<16>(io.d[3] + x, d);
  }
  return x;
}
int unfoldPairs(const RowsIO& io, int x, int n) {
  const v lo = V::set16(0xff), hi = V::set16(0xff00);
  for (; x + 8 * L <= n; x += 8 * L) {
    const v a = V::load<16>(io.s[0] + 2 * x), b = V::load<16>(io.s[1] + 2 * x);
    V::store<16>(io.d[0] + 2 * x, V::or_(V::and_(a, lo), V::slli16<8>(b)));
    V::store<16>(io.d[1] + 2 * x, V::or_(V::srli16<8>(a), V::and_(b, hi)));
  }
  return x;
}

constexpr LayoutRowKernels allMoves() {
  return {
      copy,
      copyNt,
      {c2ToP3<0>, c2ToP3<1>, c2ToP3<2>},
      {c2ToY<0>, c2ToY<1>},
      {c2ToP2<0>, c2ToP2<1>, c2ToP2<2>},
      {p3ToC2<0, false>, p3ToC2<1, false>, p3ToC2<2, false>},
      {p3ToC2<0, true>, p3ToC2<1, true>, p3ToC2<2, true>},
      {p2ToC2<0, false>, p2ToC2<1, false>, p2ToC2<2, false>},
      {p2ToC2<0, true>, p2ToC2<1, true>, p2ToC2<2, true>},
      {permC2<0, false>, permC2<1, false>},
      {permC2<0, true>, permC2<1, true>},
      splitPairs,
      zipBytes,
      evenBytes,
      {c2ToP3Even<0>, c2ToP3Even<1>, c2ToP3Even<2>},
      {c2ToP2Even<0, false>, c2ToP2Even<1, false>, c2ToP2Even<2, false>},
      {c2ToP2Even<0, true>, c2ToP2Even<1, true>, c2ToP2Even<2, true>},
      zipEvenBytes,
      dupBytes,
      splitPairsDup,
      {p3ToC2Dup<0, false>, p3ToC2Dup<1, false>, p3ToC2Dup<2, false>},
      {p3ToC2Dup<0, true>, p3ToC2Dup<1, true>, p3ToC2Dup<2, true>},
      {p2ToC2Dup<0, false>, p2ToC2Dup<1, false>, p2ToC2Dup<2, false>},
      {p2ToC2Dup<0, true>, p2ToC2Dup<1, true>, p2ToC2Dup<2, true>},
      foldPairs,
      zip4,
      unzip4,
      unfoldPairs,
  };
}
// The AVX-512 build keeps only the pair permutes, which take whole vectors
// of contiguous bytes and gain at small frames (a 64x64 YUY2 -> UYVY swap
// 65 -> 47 ns; at 1080p, bound by memory, the same speed). Its other
// entries are null and those moves run their AVX2 kernels: AVX-512 copies
// of short rows (blocks of 64 bytes) only add a call to the chain.
constexpr LayoutRowKernels permutesOnly() {
  const LayoutRowKernels all = allMoves();
  LayoutRowKernels t{};
  for (int i = 0; i < 2; ++i) t.permC2[i] = all.permC2[i], t.permC2Nt[i] = all.permC2Nt[i];
  return t;
}

}  // namespace

#if KEL_ISA == KEL_ISA_AVX512
extern const LayoutRowKernels kLayoutRows = permutesOnly();
#else
extern const LayoutRowKernels kLayoutRows = allMoves();
#endif

}  // namespace KEL_ISA_NS
}  // namespace kel
