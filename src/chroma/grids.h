// Row operations of the chroma grid changes that compute values: the
// field-aware two-tap mixes of interlaced 4:2:2 <-> 4:2:0, the four-tap
// vertical filter and the BGRA rendition of filtered upsampling, and the
// means of the 420 / 411 / 1620 plane conversions.
//
// Each operation has its scalar definition here (run(io, x, n) does units
// x .. n-1) and a vector kernel in grids_vec.inl, compiled per instruction
// set; kernels return where they stopped and give the bytes of the scalar
// definition at tolerance 0. Where a row has runs of different formulas
// (body and tail), the caller runs each operation on its own run.
#pragma once

#include <cstdint>

#include "chroma/layout_rows.h"
#include "frame/arith.h"
#include "frame/cpu.h"

namespace kel {

// Rows of one operation and its parameters.
struct GridIO {
  const uint8_t* s[5];
  uint8_t* d[4];
  int wa = 0, wb = 0;  // two-tap weights, wa + wb == 8
  int alpha = 0;       // fourth byte of BGRA pixels
};
using GridMove = int (*)(const GridIO& io, int x, int n);

// Means: kAvg rounds half up (avg8), kHalf drops the remainder.
enum Mean : int { kAvg, kHalf };

struct GridKernels {
  GridMove mix, mixFromC2, mixToC2, tap4, bgra;
  // By Mean; the half forms of DupMean and QuadMean have no kernel (null):
  // their runs are shorter than one block.
  GridMove evenMean[2], dupMean[2], quadMean[2];
};
namespace sse41 {
extern const GridKernels kGridKernels;
}
namespace avx2 {
extern const GridKernels kGridKernels;
}

namespace {
namespace grid {

inline int mean(Mean m, int a, int b) { return m == kAvg ? avg8(a, b) : (a + b) >> 1; }
// The two-tap mix of weights summing to 8, rounded: (wa a + wb b + 4) >> 3.
// (3a + b + 2) >> 2 is the mix 6, 2; a row copy is the mix 8, 0.
inline uint8_t mix(const GridIO& io, int a, int b) { return static_cast<uint8_t>((io.wa * a + io.wb * b + 4) >> 3); }

// n bytes: d0 = mix(s0, s1).
struct Mix {
  static constexpr GridMove GridKernels::*kVec = &GridKernels::mix;
  static void run(const GridIO& io, int x, int n) {
    for (; x < n; ++x) io.d[0][x] = mix(io, io.s[0][x], io.s[1][x]);
  }
};
// n pixel pairs of two CbYCr rows s0 (weight wa) and s1 (wb): their luma
// into d0 and d1, the mixes of their Cb into d2 and of their Cr into d3.
struct MixFromC2 {
  static constexpr GridMove GridKernels::*kVec = &GridKernels::mixFromC2;
  static void run(const GridIO& io, int x, int n) {
    for (; x < n; ++x) {
      const uint8_t *a = io.s[0] + 4 * x, *b = io.s[1] + 4 * x;
      io.d[0][2 * x] = a[1], io.d[0][2 * x + 1] = a[3];
      io.d[1][2 * x] = b[1], io.d[1][2 * x + 1] = b[3];
      io.d[2][x] = mix(io, a[0], b[0]);
      io.d[3][x] = mix(io, a[2], b[2]);
    }
  }
};
// n pixel pairs of a CbYCr row d0 from luma s0, Cb mix(s1, s2) and Cr
// mix(s3, s4).
struct MixToC2 {
  static constexpr GridMove GridKernels::*kVec = &GridKernels::mixToC2;
  static void run(const GridIO& io, int x, int n) {
    for (; x < n; ++x) {
      uint8_t* p = io.d[0] + 4 * x;
      p[0] = mix(io, io.s[1][x], io.s[2][x]), p[1] = io.s[0][2 * x];
      p[2] = mix(io, io.s[3][x], io.s[4][x]), p[3] = io.s[0][2 * x + 1];
    }
  }
};
// n bytes: d0 = clip8((9 (s1 + s2) - s0 - s3 + 8) >> 4), taps -1 9 9 -1.
struct Tap4 {
  static constexpr GridMove GridKernels::*kVec = &GridKernels::tap4;
  static void run(const GridIO& io, int x, int n) {
    for (; x < n; ++x)
      io.d[0][x] = static_cast<uint8_t>(
          clip8((9 * (io.s[1][x] + io.s[2][x]) - io.s[0][x] - io.s[3][x] + 8) >> 4));
  }
};

// ---- BGRA from luma and horizontally interpolated chroma --------------------
// Pixel pair i: the left pixel takes Cb[i], Cr[i]; the right one their means
// with sample i + 1 (avg8), or the same samples in the last pair of a row.
// Body form (16-bit lanes, low bits dropped in each product), Q12 weights:
inline void bgraBody(int Y, int cb, int cr, uint8_t* p) {
  const int y = mulhs((Y - 16) << 7, 4769), pp = (cb - 128) << 7, q = (cr - 128) << 7;
  p[2] = static_cast<uint8_t>(clip8((y + mulhs(q, 6537)) >> 3));
  p[1] = static_cast<uint8_t>(clip8((y - (mulhs(pp, 1605) + mulhs(q, 3330))) >> 3));
  p[0] = static_cast<uint8_t>(clip8((y + mulhs(pp, 8263)) >> 3));
}
// Tail form (32-bit, one drop at the end).
inline void bgraTail(int Y, int cb, int cr, uint8_t* p) {
  const int t = 4769 * Y - 76304, pp = cb - 128, q = cr - 128;
  p[2] = static_cast<uint8_t>(clip8((t + 6537 * q) >> 12));
  p[1] = static_cast<uint8_t>(clip8((t - 1605 * pp - 3330 * q) >> 12));
  p[0] = static_cast<uint8_t>(clip8((t + 8263 * pp) >> 12));
}
// Pairs x .. n-1 of a row: luma s0, Cr s1, Cb s2 -> BGRA d0. `last` is the
// row's last pair, which takes no mean.
template <bool Body>
inline void bgraPairs(const GridIO& io, int x, int n, int last) {
  for (; x < n; ++x) {
    const int j = x == last ? x : x + 1;
    const int cr[2] = {io.s[1][x], avg8(io.s[1][x], io.s[1][j])};
    const int cb[2] = {io.s[2][x], avg8(io.s[2][x], io.s[2][j])};
    for (int k = 0; k < 2; ++k) {
      uint8_t* p = io.d[0] + 8 * x + 4 * k;
      if (Body) bgraBody(io.s[0][2 * x + k], cb[k], cr[k], p);
      else bgraTail(io.s[0][2 * x + k], cb[k], cr[k], p);
      p[3] = static_cast<uint8_t>(io.alpha);
    }
  }
}
// The body form on pairs that all have a right neighbour (x .. n-1, n
// below the row's pair count).
struct BgraBody {
  static constexpr GridMove GridKernels::*kVec = &GridKernels::bgra;
  static void run(const GridIO& io, int x, int n) { bgraPairs<true>(io, x, n, -1); }
};

// ---- means of the plane conversions ---------------------------------------------
// n outputs: d0[j] = mean(s0[2j], s1[2j]).
template <Mean M>
struct EvenMean {
  static constexpr GridMove (GridKernels::*kArr)[2] = &GridKernels::evenMean;
  static constexpr int kIdx = M;
  static void run(const GridIO& io, int x, int n) {
    for (; x < n; ++x) io.d[0][x] = static_cast<uint8_t>(mean(M, io.s[0][2 * x], io.s[1][2 * x]));
  }
};
// n inputs that all have a right neighbour: d0[2j] = s0[j],
// d0[2j + 1] = mean(s0[j], s0[j + 1]).
template <Mean M>
struct DupMean {
  static constexpr GridMove (GridKernels::*kArr)[2] = &GridKernels::dupMean;
  static constexpr int kIdx = M;
  static void run(const GridIO& io, int x, int n) {
    for (; x < n; ++x) {
      io.d[0][2 * x] = io.s[0][x];
      io.d[0][2 * x + 1] = static_cast<uint8_t>(mean(M, io.s[0][x], io.s[0][x + 1]));
    }
  }
};
// n inputs of two rows t = s0, u = s1 that all have a right neighbour: d0 the
// DupMean of t, and d1[2j] = m(t[j], u[j]),
// d1[2j + 1] = m(m(t[j], t[j + 1]), m(u[j], u[j + 1])).
template <Mean M>
struct QuadMean {
  static constexpr GridMove (GridKernels::*kArr)[2] = &GridKernels::quadMean;
  static constexpr int kIdx = M;
  static void run(const GridIO& io, int x, int n) {
    const uint8_t *t = io.s[0], *u = io.s[1];
    for (; x < n; ++x) {
      const int tm = mean(M, t[x], t[x + 1]), um = mean(M, u[x], u[x + 1]);
      io.d[0][2 * x] = t[x], io.d[0][2 * x + 1] = static_cast<uint8_t>(tm);
      io.d[1][2 * x] = static_cast<uint8_t>(mean(M, t[x], u[x]));
      io.d[1][2 * x + 1] = static_cast<uint8_t>(mean(M, tm, um));
    }
  }
};

}  // namespace grid

// An operation bound to the kernels of the active path, picked once per call.
template <class Op>
struct GridOp {
  Chain<GridMove> chain;
  void operator()(const GridIO& io, int x, int n) const { Op::run(io, runChain(chain, io, x, n), n); }
  void operator()(const GridIO& io, int n) const { (*this)(io, 0, n); }
};
template <class Op>
inline GridOp<Op> gridOp() {
  return {chainOf([](const GridKernels& t) { return lrow::VecOf<Op>::get(t); }, sse41::kGridKernels,
                  avx2::kGridKernels)};
}

// Row r of a plane whose step is an unsigned 32-bit number.
template <class T>
inline T* rowAtU(T* p, int step, int r) {
  return p + static_cast<uint64_t>(static_cast<uint32_t>(step)) * static_cast<uint64_t>(r);
}

}  // namespace

}  // namespace kel
