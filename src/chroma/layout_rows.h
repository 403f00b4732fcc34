// Row moves of the chroma layout conversions: the byte rearrangements one
// row (or one pair of rows) of a 4:2:2, 4:2:0 or 4:1:1 image goes through
// between planar (P3), semi-planar (P2: luma plus interleaved Cb/Cr pairs)
// and packed (C2) layouts. Nothing here computes a value: every output byte
// is an input byte.
//
// Each move has a scalar definition here (struct with run(io, x, n), which
// does units x .. n-1) and a vector kernel in layout_rows_vec.inl, compiled
// per instruction set. Vector blocks and scalar units give the same bytes,
// so a row is simply: widest kernel, narrower kernel, scalar rest. Use
//
//   const auto mv = mover<lrow::C2ToP3<kYCbCr>>();   // once per call
//   mv({{src}, {y, cb, cr}}, pairs);                 // per row
//
// Units (n) per move are given in each comment. C2 byte orders are named by
// the places of the first luma byte, Cb and Cr within a pixel pair's four
// bytes (the second luma byte sits two after the first).
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "frame/cpu.h"
#include "frame/rows.h"

namespace kel {

// Rows of one move: up to four source and four destination rows.
struct RowsIO {
  const uint8_t* s[4];
  uint8_t* d[4];
};

// A vector kernel: moves units from x on in whole blocks while a block fits
// below n; returns the unit where it stopped.
using RowMove = int (*)(const RowsIO& io, int x, int n);

// Byte order of a pixel pair in a C2 row.
struct Quad {
  int y0, cb, cr;
};
inline constexpr Quad kYCbCr{0, 1, 3};  // Y0 Cb Y1 Cr
inline constexpr Quad kYCrCb{0, 3, 1};  // Y0 Cr Y1 Cb
inline constexpr Quad kCbYCr{1, 0, 2};  // Cb Y0 Cr Y1

// The kernels each instruction-set file provides. `nt` entries store with
// non-temporal stores where the destination row is 16-byte aligned (a
// caller that asks for them issues the store fence).
struct LayoutRowKernels {
  RowMove copy, copyNt;
  RowMove c2ToP3[3];        // by order: YCbCr, YCrCb, CbYCr
  RowMove c2ToY[2];         // luma first (YCbCr, YCrCb), luma second (CbYCr)
  RowMove c2ToP2[3];
  RowMove p3ToC2[3], p3ToC2Nt[3];
  RowMove p2ToC2[3], p2ToC2Nt[3];  // Cb-first pairs into YCbCr / -, CbYCr
  RowMove permC2[2], permC2Nt[2];  // 1<->3 exchange, 0<->1 and 2<->3 exchange
  RowMove splitPairs, zipBytes;
  RowMove evenBytes;
  RowMove c2ToP3Even[3];
  RowMove c2ToP2Even[3], c2ToP2EvenNt[3];
  RowMove zipEvenBytes;
  RowMove dupBytes;
  RowMove splitPairsDup;
  RowMove p3ToC2Dup[3], p3ToC2DupNt[3];
  RowMove p2ToC2Dup[3], p2ToC2DupNt[3];
  RowMove foldPairs;
  RowMove zip4, unzip4;
  RowMove unfoldPairs;
};
namespace sse41 {
extern const LayoutRowKernels kLayoutRows;
}
namespace avx2 {
extern const LayoutRowKernels kLayoutRows;
}
namespace avx512 {
extern const LayoutRowKernels kLayoutRows;
}

// Index of a C2 byte order in the kernel arrays.
constexpr int quadIndex(Quad q) { return q.y0 == 1 ? 2 : (q.cb == 1 ? 0 : 1); }

namespace {
namespace lrow {

// The bytes one unit of a move covers in each source and destination row
// (0: plane not used). The vector forms read whole units, so a row of n
// units covers n times these bytes.
struct Span {
  int s[4], d[4];
};

// ---- copies -----------------------------------------------------------------
// n bytes: d0 = s0.
struct Copy {
  static constexpr Span kSpan{{1}, {1}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::copy;
  static void run(const RowsIO& io, int x, int n) {
    if (n > x) std::memmove(io.d[0] + x, io.s[0] + x, static_cast<size_t>(n - x));
  }
};
// The same with non-temporal stores on the aligned part of the row.
struct CopyNt : Copy {
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::copyNt;
};

// ---- packed 4:2:2 <-> planes ----------------------------------------------------
// n pixel pairs: C2 s0 -> Y d0 (2n), Cb d1 (n), Cr d2 (n).
template <const Quad& Q>
struct C2ToP3 {
  static constexpr Span kSpan{{4}, {2, 1, 1}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[3] = &LayoutRowKernels::c2ToP3;
  static constexpr int kIdx = quadIndex(Q);
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      const uint8_t* p = io.s[0] + 4 * x;
      io.d[0][2 * x] = p[Q.y0], io.d[0][2 * x + 1] = p[Q.y0 + 2];
      io.d[1][x] = p[Q.cb], io.d[2][x] = p[Q.cr];
    }
  }
};
// n pixel pairs: the luma of C2 s0 -> d0 (2n); chroma bytes are not read.
template <const Quad& Q>
struct C2ToY {
  static constexpr Span kSpan{{4}, {2}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[2] = &LayoutRowKernels::c2ToY;
  static constexpr int kIdx = Q.y0;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      const uint8_t* p = io.s[0] + 4 * x;
      io.d[0][2 * x] = p[Q.y0], io.d[0][2 * x + 1] = p[Q.y0 + 2];
    }
  }
};
// n pixel pairs: C2 s0 -> Y d0 (2n), Cb/Cr pairs d1 (2n).
template <const Quad& Q>
struct C2ToP2 {
  static constexpr Span kSpan{{4}, {2, 2}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[3] = &LayoutRowKernels::c2ToP2;
  static constexpr int kIdx = quadIndex(Q);
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      const uint8_t* p = io.s[0] + 4 * x;
      io.d[0][2 * x] = p[Q.y0], io.d[0][2 * x + 1] = p[Q.y0 + 2];
      io.d[1][2 * x] = p[Q.cb], io.d[1][2 * x + 1] = p[Q.cr];
    }
  }
};
// n pixel pairs: Y s0 (2n), Cb s1 (n), Cr s2 (n) -> C2 d0.
template <const Quad& Q, bool Nt = false>
struct P3ToC2 {
  static constexpr Span kSpan{{2, 1, 1}, {4}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[3] = Nt ? &LayoutRowKernels::p3ToC2Nt : &LayoutRowKernels::p3ToC2;
  static constexpr int kIdx = quadIndex(Q);
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      uint8_t* p = io.d[0] + 4 * x;
      p[Q.y0] = io.s[0][2 * x], p[Q.y0 + 2] = io.s[0][2 * x + 1];
      p[Q.cb] = io.s[1][x], p[Q.cr] = io.s[2][x];
    }
  }
};
// n pixel pairs: Y s0 (2n), Cb/Cr pairs s1 (2n) -> C2 d0.
template <const Quad& Q, bool Nt = false>
struct P2ToC2 {
  static constexpr Span kSpan{{2, 2}, {4}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[3] = Nt ? &LayoutRowKernels::p2ToC2Nt : &LayoutRowKernels::p2ToC2;
  static constexpr int kIdx = quadIndex(Q);
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      uint8_t* p = io.d[0] + 4 * x;
      p[Q.y0] = io.s[0][2 * x], p[Q.y0 + 2] = io.s[0][2 * x + 1];
      p[Q.cb] = io.s[1][2 * x], p[Q.cr] = io.s[1][2 * x + 1];
    }
  }
};
// n pixel pairs, C2 s0 -> C2 d0, bytes of each pair rearranged:
// P = 0 exchanges bytes 1 and 3 (YCbCr <-> YCrCb), P = 1 exchanges bytes 0
// and 1 and bytes 2 and 3 (YCbCr <-> CbYCr).
template <int P, bool Nt = false>
struct PermC2 {
  static constexpr Span kSpan{{4}, {4}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[2] = Nt ? &LayoutRowKernels::permC2Nt : &LayoutRowKernels::permC2;
  static constexpr int kIdx = P;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      const uint8_t* s = io.s[0] + 4 * x;
      uint8_t* d = io.d[0] + 4 * x;
      const uint8_t b0 = s[0], b1 = s[1], b2 = s[2], b3 = s[3];
      if (P == 0) d[0] = b0, d[1] = b3, d[2] = b2, d[3] = b1;
      else d[0] = b1, d[1] = b0, d[2] = b3, d[3] = b2;
    }
  }
};

// ---- interleaved chroma pairs <-> two planes -------------------------------------
// n pairs: pairs s0 (2n) -> first bytes d0 (n), second bytes d1 (n).
struct SplitPairs {
  static constexpr Span kSpan{{2}, {1, 1}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::splitPairs;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) io.d[0][x] = io.s[0][2 * x], io.d[1][x] = io.s[0][2 * x + 1];
  }
};
// n samples: s0, s1 -> d0 (2n) as s0[0] s1[0] s0[1] s1[1] ...
struct ZipBytes {
  static constexpr Span kSpan{{1, 1}, {2}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::zipBytes;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) io.d[0][2 * x] = io.s[0][x], io.d[0][2 * x + 1] = io.s[1][x];
  }
};

// ---- even columns (4:2:2 -> 4:1:1) -----------------------------------------------
// n outputs: d0[j] = s0[2j]. The vector form reads all 2n source bytes.
struct EvenBytes {
  static constexpr Span kSpan{{2}, {1}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::evenBytes;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) io.d[0][x] = io.s[0][2 * x];
  }
};
// n groups of four pixels: C2 s0 (8n) -> Y d0 (4n), Cb d1 (n), Cr d2 (n);
// the chroma of the group's first pixel pair stays.
template <const Quad& Q>
struct C2ToP3Even {
  static constexpr Span kSpan{{8}, {4, 1, 1}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[3] = &LayoutRowKernels::c2ToP3Even;
  static constexpr int kIdx = quadIndex(Q);
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      const uint8_t* p = io.s[0] + 8 * x;
      uint8_t* y = io.d[0] + 4 * x;
      y[0] = p[Q.y0], y[1] = p[Q.y0 + 2], y[2] = p[4 + Q.y0], y[3] = p[4 + Q.y0 + 2];
      io.d[1][x] = p[Q.cb], io.d[2][x] = p[Q.cr];
    }
  }
};
// n groups of four pixels: C2 s0 (8n) -> Y d0 (4n), Cb/Cr pairs d1 (2n).
template <const Quad& Q, bool Nt = false>
struct C2ToP2Even {
  static constexpr Span kSpan{{8}, {4, 2}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[3] =
      Nt ? &LayoutRowKernels::c2ToP2EvenNt : &LayoutRowKernels::c2ToP2Even;
  static constexpr int kIdx = quadIndex(Q);
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      const uint8_t* p = io.s[0] + 8 * x;
      uint8_t* y = io.d[0] + 4 * x;
      y[0] = p[Q.y0], y[1] = p[Q.y0 + 2], y[2] = p[4 + Q.y0], y[3] = p[4 + Q.y0 + 2];
      io.d[1][2 * x] = p[Q.cb], io.d[1][2 * x + 1] = p[Q.cr];
    }
  }
};
// n pairs: d0[2j] = s0[2j], d0[2j+1] = s1[2j] (the even samples of two planes
// as pairs). The vector form reads all 2n bytes of each source.
struct ZipEvenBytes {
  static constexpr Span kSpan{{2, 2}, {2}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::zipEvenBytes;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) io.d[0][2 * x] = io.s[0][2 * x], io.d[0][2 * x + 1] = io.s[1][2 * x];
  }
};

// ---- column repeat (4:1:1 -> 4:2:2) ------------------------------------------------
// n inputs: d0[2j] = d0[2j+1] = s0[j].
struct DupBytes {
  static constexpr Span kSpan{{1}, {2}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::dupBytes;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) io.d[0][2 * x] = io.d[0][2 * x + 1] = io.s[0][x];
  }
};
// n pairs: pairs s0 (2n) -> first bytes twice each d0 (2n), second d1 (2n).
struct SplitPairsDup {
  static constexpr Span kSpan{{2}, {2, 2}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::splitPairsDup;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      io.d[0][2 * x] = io.d[0][2 * x + 1] = io.s[0][2 * x];
      io.d[1][2 * x] = io.d[1][2 * x + 1] = io.s[0][2 * x + 1];
    }
  }
};
// n groups of four pixels: Y s0 (4n), Cb s1 (n), Cr s2 (n) -> C2 d0 (8n),
// each chroma sample serving both pixel pairs of its group.
template <const Quad& Q, bool Nt = false>
struct P3ToC2Dup {
  static constexpr Span kSpan{{4, 1, 1}, {8}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[3] =
      Nt ? &LayoutRowKernels::p3ToC2DupNt : &LayoutRowKernels::p3ToC2Dup;
  static constexpr int kIdx = quadIndex(Q);
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      uint8_t* p = io.d[0] + 8 * x;
      const uint8_t* y = io.s[0] + 4 * x;
      p[Q.y0] = y[0], p[Q.y0 + 2] = y[1], p[4 + Q.y0] = y[2], p[4 + Q.y0 + 2] = y[3];
      p[Q.cb] = p[4 + Q.cb] = io.s[1][x];
      p[Q.cr] = p[4 + Q.cr] = io.s[2][x];
    }
  }
};
// n groups of four pixels: Y s0 (4n), Cb/Cr pairs s1 (2n) -> C2 d0 (8n).
template <const Quad& Q, bool Nt = false>
struct P2ToC2Dup {
  static constexpr Span kSpan{{4, 2}, {8}};
  static constexpr RowMove (LayoutRowKernels::*kArr)[3] =
      Nt ? &LayoutRowKernels::p2ToC2DupNt : &LayoutRowKernels::p2ToC2Dup;
  static constexpr int kIdx = quadIndex(Q);
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      uint8_t* p = io.d[0] + 8 * x;
      const uint8_t* y = io.s[0] + 4 * x;
      p[Q.y0] = y[0], p[Q.y0 + 2] = y[1], p[4 + Q.y0] = y[2], p[4 + Q.y0 + 2] = y[3];
      p[Q.cb] = p[4 + Q.cb] = io.s[1][2 * x];
      p[Q.cr] = p[4 + Q.cr] = io.s[1][2 * x + 1];
    }
  }
};

// ---- row fold and unfold (4:1:1 <-> 4:2:0) ---------------------------------------
// n pairs: two rows of pairs s0 (upper), s1 (lower) -> first bytes d0 and
// second bytes d1 (2n each), upper and lower samples alternating:
// d0[2j] = s0[2j], d0[2j+1] = s1[2j], d1[2j] = s0[2j+1], d1[2j+1] = s1[2j+1].
struct FoldPairs {
  static constexpr Span kSpan{{2, 2}, {2, 2}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::foldPairs;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      io.d[0][2 * x] = io.s[0][2 * x], io.d[0][2 * x + 1] = io.s[1][2 * x];
      io.d[1][2 * x] = io.s[0][2 * x + 1], io.d[1][2 * x + 1] = io.s[1][2 * x + 1];
    }
  }
};
// n samples: s0, s1, s2, s3 -> d0 (4n) as s0[j] s1[j] s2[j] s3[j] ...
struct Zip4 {
  static constexpr Span kSpan{{1, 1, 1, 1}, {4}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::zip4;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      uint8_t* p = io.d[0] + 4 * x;
      p[0] = io.s[0][x], p[1] = io.s[1][x], p[2] = io.s[2][x], p[3] = io.s[3][x];
    }
  }
};
// n samples: the inverse of Zip4, s0 (4n) -> d0, d1, d2, d3.
struct Unzip4 {
  static constexpr Span kSpan{{4}, {1, 1, 1, 1}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::unzip4;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      const uint8_t* p = io.s[0] + 4 * x;
      io.d[0][x] = p[0], io.d[1][x] = p[1], io.d[2][x] = p[2], io.d[3][x] = p[3];
    }
  }
};
// n pairs: two planes s0, s1 (2n each) -> two rows of pairs, the even
// samples into d0 and the odd ones into d1:
// d0[2j] = s0[2j], d0[2j+1] = s1[2j], d1[2j] = s0[2j+1], d1[2j+1] = s1[2j+1].
struct UnfoldPairs {
  static constexpr Span kSpan{{2, 2}, {2, 2}};
  static constexpr RowMove LayoutRowKernels::*kVec = &LayoutRowKernels::unfoldPairs;
  static void run(const RowsIO& io, int x, int n) {
    for (; x < n; ++x) {
      io.d[0][2 * x] = io.s[0][2 * x], io.d[0][2 * x + 1] = io.s[1][2 * x];
      io.d[1][2 * x] = io.s[0][2 * x + 1], io.d[1][2 * x + 1] = io.s[1][2 * x + 1];
    }
  }
};

// The vector kernel entry of a move, whether it names one entry or one
// element of an array of byte orders; any table of kernels (the grid
// operations of grids.h name theirs the same way).
template <class M, class = void>
struct VecOf {
  template <class Table>
  static auto get(const Table& k) { return (k.*(M::kArr))[M::kIdx]; }
};
template <class M>
struct VecOf<M, decltype(void(M::kVec))> {
  template <class Table>
  static auto get(const Table& k) { return k.*(M::kVec); }
};

}  // namespace lrow

// h rows of `bytes` bytes `step` apart lie end to end when the step is the
// row's bytes; as one row their count must still fit an int (at most 2^30
// bytes a plane here).
inline bool rowsEndToEnd(int step, int64_t bytes, int h) {
  return step == bytes && bytes * h <= (int64_t(1) << 30);
}

// A move bound to the kernels of the active path: picked once per call,
// then applied to any number of rows.
template <class M>
struct Mover {
  Chain<RowMove> chain;
  void operator()(const RowsIO& io, int n) const { M::run(io, runChain(chain, io, 0, n), n); }
  // Rows r = 0 .. h-1 of n units: source rows r * sRows and destination rows
  // r * dRows of every plane the move uses. Where each row walked is exactly
  // the bytes its row covers and the next row follows it directly (every
  // step equal to those bytes, rows taken one by one), the h rows are one
  // row of n * h units: each output byte is the input byte of the same unit,
  // wherever a row ends, so the bytes are those of the row walk.
  void rows(const RowsIO& base, const int* ss, const int* ds, int h, int n, int sRows = 1, int dRows = 1) const {
    if (h < 1 || n < 1) return;
    if (sRows == 1 && dRows == 1 && endToEnd(ss, ds, h, n)) return (*this)(base, n * h);
    RowsIO io{};
    for (int r = 0; r < h; ++r) (*this)(seat(io, base, ss, ds, r * sRows, r * dRows), n);
  }
  // io pointed at source row rs and destination row rd of every plane the
  // move uses (one io serves all rows of a call).
  static const RowsIO& seat(RowsIO& io, const RowsIO& base, const int* ss, const int* ds, int rs, int rd) {
    for (int i = 0; i < 4; ++i) {
      if (M::kSpan.s[i]) io.s[i] = rowAt(base.s[i], ss[i], rs);
      if (M::kSpan.d[i]) io.d[i] = rowAt(base.d[i], ds[i], rd);
    }
    return io;
  }

 private:
  static bool endToEnd(const int* ss, const int* ds, int h, int n) {
    for (int i = 0; i < 4; ++i) {
      if (M::kSpan.s[i] && !rowsEndToEnd(ss[i], int64_t(M::kSpan.s[i]) * n, h)) return false;
      if (M::kSpan.d[i] && !rowsEndToEnd(ds[i], int64_t(M::kSpan.d[i]) * n, h)) return false;
    }
    return true;
  }
};
// The AVX-512 table holds few moves: the chain keeps the kernels that exist,
// widest first, with no empty entry in front.
template <class M>
inline Mover<M> mover() {
  const Isa isa = activeIsa();
  Mover<M> m;
  int j = 0;
  auto add = [&](const LayoutRowKernels& t) {
    if (RowMove k = lrow::VecOf<M>::get(t)) m.chain.k[j++] = k;
  };
  if (isa >= Isa::AVX512) add(avx512::kLayoutRows);
  if (isa >= Isa::AVX2) add(avx2::kLayoutRows);
  if (isa >= Isa::SSE41) add(sse41::kLayoutRows);
  return m;
}

// Orders the non-temporal stores of a row before what follows.
inline void storeFence() { _mm_sfence(); }

// ---- whole planes ------------------------------------------------------------
// A plane of w bytes by h rows. One whose rows lie end to end is one block
// for the C library's copy, which picks its own best way for large blocks.
inline void copyPlane(const uint8_t* s, int ss, uint8_t* d, int ds, int w, int h) {
  if (h > 0 && rowsEndToEnd(ss, w, h) && rowsEndToEnd(ds, w, h))
    return void(std::memcpy(d, s, static_cast<size_t>(w) * h));
  mover<lrow::Copy>().rows({{s}, {d}}, &ss, &ds, h, w);
}
// Interleaved chroma pairs (n a row) to two planes: `first` takes the first
// byte of each pair, `second` the other.
inline void splitChroma(const uint8_t* c, int cs, uint8_t* first, int fs, uint8_t* second, int ss, int n, int rows) {
  const int src[1] = {cs}, dst[2] = {fs, ss};
  mover<lrow::SplitPairs>().rows({{c}, {first, second}}, src, dst, rows, n);
}
// Two planes to interleaved chroma pairs, the byte of `first` first.
inline void zipChroma(const uint8_t* first, int fs, const uint8_t* second, int ss, uint8_t* c, int cs, int n, int rows) {
  const int src[2] = {fs, ss}, dst[1] = {cs};
  mover<lrow::ZipBytes>().rows({{first, second}, {c}}, src, dst, rows, n);
}

}  // namespace

}  // namespace kel
