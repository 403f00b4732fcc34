// RGB <-> YUV with 4:2:2 and 4:2:0 chroma (YUV as at full resolution:
// U = 0.492 (B - Y), V = 0.877 (R - Y), offset by 128). Forward forms take
// the chroma of a pair or 2 by 2 block from the sums of its samples and of
// its luma terms; inverse forms give every pixel of a group the group's one
// chroma pair. Formulas, pixel access and the row routines of both
// directions, and the table of vector kernels each instruction-set file
// provides.
#pragma once

#include "frame/arith.h"
#include "frame/rows.h"
#include "frame/sub420.h"
#include "lumachroma/yuv.h"

namespace kel {

struct YuvSubKernels {
  KernSub rgbC3C2_P1;     // 4:2:2, C3 -> packed, form P1
  KernSub rgbC3P3_P1;     // 4:2:2, C3 -> planes, form P1
  KernSub rgbC3P3_P3;     // 4:2:2, C3 -> planes, form P3 (aligned images)
  KernSub rgbP3_P2;       // 4:2:2, planes -> planes, form P2
  KernSub rgbC3_Q1;       // 4:2:0, C3 -> planes, form Q1
  KernSub bgrx_Q4;        // 4:2:0, four-byte BGR -> planes, form Q4
  KernSub yuvC2C3_I2;     // 4:2:2, packed -> C3, form I2
  KernSub yuvP3C3_I2;     // 4:2:2, planes -> C3, form I2
  KernSub yuvP3_I2;       // 4:2:2, planes -> planes, form I2
  KernSub yuvP3C4_IA;     // 4:2:2, planes -> C4, form IA
  KernSub yuv420C3_I2;    // 4:2:0, planes -> C3, form I2
  KernSub yuv420C4_IA;    // 4:2:0, planes -> C4, form IA
  KernSub yuv420BGR_I3;   // 4:2:0, planes -> BGR, form I3
  // The 32-bit tail forms in 32-bit lanes, for the members that are all tail.
  KernSub rgbP3_Q3;       // 4:2:0, planes -> planes, form Q3
  KernSub yuv420P3_KA;    // 4:2:0, planes -> planes, form KA
};
namespace sse41 {
extern const YuvSubKernels kYuvSubKernels;
}
namespace avx2 {
extern const YuvSubKernels kYuvSubKernels;
}

namespace {
namespace yuvsub {

// ---- forward 4:2:2, pair forms ------------------------------------------
// pair(R0, G0, B0, R1, G1, B1, Y0, Y1, U, V): the even column first.

// P1: Q15 in 32-bit dot products; the R and G terms are shifted together and
// the B term by itself before they are added.
struct P1 {
  static int s(int R, int G, int B) { return ((9798 * R + 19235 * G) >> 14) + ((3736 * B) >> 14); }
  static void pair(int R0, int G0, int B0, int R1, int G1, int B1, int& Y0, int& Y1, int& U, int& V) {
    const int S0 = s(R0, G0, B0), S1 = s(R1, G1, B1);
    Y0 = clip8(S0 >> 1), Y1 = clip8(S1 >> 1);
    const int T = (S0 + S1) >> 1;
    U = clip8(mulhs(B0 + B1 - T, 16121) + 128);
    V = clip8(mulhs(R0 + R1 - T, 28737) + 128);
  }
};
// P2: Q15 through mulhs on samples spread to 10 bits, e(x) = (257 x) >> 6.
struct P2 {
  static int e(int x) { return (257 * x) >> 6; }
  static int s(int R, int G, int B) { return mulhs(e(R), 9798) + mulhs(e(G), 19235) + mulhs(e(B), 3736); }
  static void pair(int R0, int G0, int B0, int R1, int G1, int B1, int& Y0, int& Y1, int& U, int& V) {
    const int S0 = s(R0, G0, B0), S1 = s(R1, G1, B1);
    Y0 = clip8(S0 >> 1), Y1 = clip8(S1 >> 1);
    const int D = S0 + S1;
    U = clip8((mulhs(((e(B0) + e(B1)) >> 1) - D, 16121) >> 1) + 128);
    V = clip8((mulhs(((e(R0) + e(R1)) >> 1) - D, 28737) >> 1) + 128);
  }
};
// P3: Q14 through the rounding product.
struct P3 {
  static int y(int R, int G, int B) { return mulhr(R << 7, 4899) + mulhr(G << 7, 9617) + mulhr(B << 7, 1868); }
  static void pair(int R0, int G0, int B0, int R1, int G1, int B1, int& Y0, int& Y1, int& U, int& V) {
    const int y0 = y(R0, G0, B0), y1 = y(R1, G1, B1);
    Y0 = clip8(y0 >> 6), Y1 = clip8(y1 >> 6);
    const int S = y0 + y1;
    U = clip8((mulhr(((B0 + B1) << 6) - S, 8061) >> 6) + 128);
    V = clip8((mulhr(((R0 + R1) << 6) - S, 14369) >> 6) + 128);
  }
};
// PT: 32-bit, Q16.
struct PT {
  static int y(int R, int G, int B) { return 19595 * R + 38470 * G + 7471 * B; }
  static void pair(int R0, int G0, int B0, int R1, int G1, int B1, int& Y0, int& Y1, int& U, int& V) {
    const int y0 = y(R0, G0, B0), y1 = y(R1, G1, B1);
    Y0 = y0 >> 16, Y1 = y1 >> 16;
    const int s = y0 + y1, sR = R0 + R1, sB = B0 + B1;
    U = byte8(((((sB << 16) - s + 65535) >> 16) * 32244 >> 17) + 128);
    V = clip8(((((sR << 16) - s + 65535) >> 16) * 57475 >> 17) + 128);
  }
};

// ---- forward 4:2:2, the last pixel of an odd width ----------------------
// one(R, G, B, Y, U, V).
// O1: Q16; only Y and U are written (packed rows end in Y, U).
struct O1 {
  static void one(int R, int G, int B, int& Y, int& U, int& V) {
    const int y = 19595 * R + 38470 * G + 7471 * B;
    Y = y >> 16;
    U = byte8(((((B << 16) - y + 32767) >> 16) * 32244 >> 16) + 128);
    V = 0;
  }
};
// O2 (rounding terms 16383 for U, 32767 for V) and O3 (none): Q15.
template <int RndU, int RndV>
struct Oq {
  static void one(int R, int G, int B, int& Y, int& U, int& V) {
    const int y = 9798 * R + 19235 * G + 3736 * B;
    Y = y >> 15;
    U = byte8(((((B << 15) - y + RndU) >> 15) * 16121 >> 15) + 128);
    V = clip8(((((R << 15) - y + RndV) >> 15) * 28737 >> 15) + 128);
  }
};
using O2 = Oq<16383, 32767>;
using O3 = Oq<0, 0>;

// ---- forward 4:2:0, block forms -----------------------------------------
// block(R[4], G[4], B[4], Y[4], U, V): the four pixels of a 2 by 2 block.
// Q1: Q14 through the rounding product; the four luma terms are summed as
// unsigned 16-bit values and halved.
struct Q1 {
  static void block(const int* R, const int* G, const int* B, int* Y, int& U, int& V) {
    int sum = 0;
    for (int i = 0; i < 4; ++i) {
      const int y = P3::y(R[i], G[i], B[i]);
      Y[i] = clip8(y >> 6);
      sum += y;
    }
    const int S = sum >> 1;
    U = clip8((mulhr(((B[0] + B[1] + B[2] + B[3]) << 5) - S, 8061) >> 6) + 128);
    V = clip8((mulhr(((R[0] + R[1] + R[2] + R[3]) << 5) - S, 14369) >> 6) + 128);
  }
};
// Q2: 32-bit, Q14 luma.
struct Q2 {
  static void block(const int* R, const int* G, const int* B, int* Y, int& U, int& V) {
    int s = 0;
    for (int i = 0; i < 4; ++i) {
      const int y = 4899 * R[i] + 9617 * G[i] + 1868 * B[i];
      Y[i] = y >> 14;
      s += y;
    }
    const int sR = R[0] + R[1] + R[2] + R[3], sB = B[0] + B[1] + B[2] + B[3];
    U = byte8(((((sB << 14) - s) >> 14) * 8061 >> 16) + 128);
    V = clip8(((((sR << 14) - s) >> 14) * 14369 >> 16) + 128);
  }
};
// Q3: 32-bit, Q16.
struct Q3 {
  static void block(const int* R, const int* G, const int* B, int* Y, int& U, int& V) {
    int s = 0;
    for (int i = 0; i < 4; ++i) {
      const int y = PT::y(R[i], G[i], B[i]);
      Y[i] = y >> 16;
      s += y;
    }
    const int sR = R[0] + R[1] + R[2] + R[3], sB = B[0] + B[1] + B[2] + B[3];
    U = byte8(((((sB << 16) - s + 131071) >> 16) * 32244 >> 18) + 128);
    V = clip8(((((sR << 16) - s + 131071) >> 16) * 57475 >> 18) + 128);
  }
};
// Q4: Q15 through mulhs.
struct Q4 {
  static void block(const int* R, const int* G, const int* B, int* Y, int& U, int& V) {
    int sum = 0;
    for (int i = 0; i < 4; ++i) {
      const int S = mulhs(R[i] << 2, 9798) + mulhs(G[i] << 2, 19235) + mulhs(B[i] << 2, 3736);
      Y[i] = clip8(S >> 1);
      sum += S;
    }
    const int D = sum >> 2;
    U = clip8(mulhs(((B[0] + B[1] + B[2] + B[3]) >> 1) - D, 16121) + 128);
    V = clip8(mulhs(((R[0] + R[1] + R[2] + R[3]) >> 1) - D, 28737) + 128);
  }
};

// ---- inverse forms: px(Y, U, V, R, G, B) --------------------------------
// Iq: Q13 on y = Y << 1 and chroma << 4, final >> 1 (the shifts of signed
// values written as products, which C++ defines for negative values too).
template <int cR, int cGu, int cGv, int cB>
struct Iq {
  static void px(int Y, int U, int V, int& R, int& G, int& B) {
    const int y = Y * 2, u = (U - 128) * 16, v = (V - 128) * 16;
    R = clip8((y + mulhs(v, cR)) >> 1);
    G = clip8((y + mulhs(u, cGu) + mulhs(v, cGv)) >> 1);
    B = clip8((y + mulhs(u, cB)) >> 1);
  }
};
using I2 = Iq<9338, -3227, -4759, 16645>;
// I3: I2 with coefficients one larger in magnitude.
using I3 = Iq<9339, -3228, -4760, 16646>;
using yuv::KA;  // 32-bit, Q16
// IA: Q13 on y = Y << 4 and chroma << 7, rounding term 8; the green
// products are added first and subtracted together.
struct IA {
  static void px(int Y, int U, int V, int& R, int& G, int& B) {
    const int y = Y * 16, u = (U - 128) * 128, v = (V - 128) * 128;
    const int c = mulhs(u, 3227) + mulhs(v, 4759);
    R = clip8((y + mulhs(v, 9338) + 8) >> 4);
    G = clip8((y - c + 8) >> 4);
    B = clip8((y + mulhs(u, 16646) + 8) >> 4);
  }
};
// KR: KA with a rounding half in the luma term.
struct KR {
  static void px(int Y, int U, int V, int& R, int& G, int& B) {
    const int32_t y = (Y << 16) + 32768, u = U - 128, v = V - 128;
    R = clip8((y + 74711 * v) >> 16);
    G = clip8((y - 25821 * u - 38076 * v) >> 16);
    B = clip8((y + 133169 * u) >> 16);
  }
};
// K13: 32-bit, Q13.
struct K13 {
  static void px(int Y, int U, int V, int& R, int& G, int& B) {
    const int32_t y = Y << 13, u = U - 128, v = V - 128;
    R = clip8((y + 9338 * v) >> 13);
    G = clip8((y - 3227 * u - 4759 * v) >> 13);
    B = clip8((y + 16645 * u) >> 13);
  }
};

// ---- pixel access ---------------------------------------------------------
// Colour pixels of row r of a pair: get(io, r, x, R, G, B), put(...).
struct RGB3 {
  static void get(const SubRows& io, int r, int x, int& R, int& G, int& B) {
    const uint8_t* p = io.s[r][0] + 3 * x;
    R = p[0], G = p[1], B = p[2];
  }
  static void put(const SubRows& io, int r, int x, int R, int G, int B) {
    uint8_t* p = io.d[r][0] + 3 * x;
    p[0] = static_cast<uint8_t>(R), p[1] = static_cast<uint8_t>(G), p[2] = static_cast<uint8_t>(B);
  }
};
struct BGR3 {
  static void put(const SubRows& io, int r, int x, int R, int G, int B) { RGB3::put(io, r, x, B, G, R); }
};
// Four bytes B, G, R and an alpha byte that nobody reads.
struct BGRX {
  static void get(const SubRows& io, int r, int x, int& R, int& G, int& B) {
    const uint8_t* p = io.s[r][0] + 4 * x;
    B = p[0], G = p[1], R = p[2];
  }
};
// Four bytes R, G, B and the call's alpha.
struct RGBA {
  static void put(const SubRows& io, int r, int x, int R, int G, int B) {
    uint8_t* p = io.d[r][0] + 4 * x;
    p[0] = static_cast<uint8_t>(R), p[1] = static_cast<uint8_t>(G), p[2] = static_cast<uint8_t>(B);
    p[3] = static_cast<uint8_t>(io.alpha);
  }
};
// Three full-resolution planes.
struct RGBP {
  static void get(const SubRows& io, int r, int x, int& R, int& G, int& B) {
    R = io.s[r][0][x], G = io.s[r][1][x], B = io.s[r][2][x];
  }
  static void put(const SubRows& io, int r, int x, int R, int G, int B) {
    io.d[r][0][x] = static_cast<uint8_t>(R), io.d[r][1][x] = static_cast<uint8_t>(G),
    io.d[r][2][x] = static_cast<uint8_t>(B);
  }
};

// Subsampled YUV. Planes: luma of row r, chroma planes in row 0 at x >> 1.
struct YuvP {
  static void get(const SubRows& io, int r, int x, int& Y, int& U, int& V) {
    Y = io.s[r][0][x], U = io.s[0][1][x >> 1], V = io.s[0][2][x >> 1];
  }
  static void getLast(const SubRows& io, int x, int& Y, int& U, int& V) { get(io, 0, x, Y, U, V); }
  static void putPair(const SubRows& io, int x, int Y0, int Y1, int U, int V) {
    io.d[0][0][x] = static_cast<uint8_t>(Y0), io.d[0][0][x + 1] = static_cast<uint8_t>(Y1);
    io.d[0][1][x >> 1] = static_cast<uint8_t>(U), io.d[0][2][x >> 1] = static_cast<uint8_t>(V);
  }
  static void putLast(const SubRows& io, int x, int Y, int U, int V) {
    io.d[0][0][x] = static_cast<uint8_t>(Y);
    io.d[0][1][x >> 1] = static_cast<uint8_t>(U), io.d[0][2][x >> 1] = static_cast<uint8_t>(V);
  }
};
// Packed 4:2:2: Y0, U, Y1, V per pair. The last pixel of an odd row has Y
// and U only; it takes V from the byte before its Y (the V of the pair
// before), or its own U when it is the only pixel of the row.
struct YuvC2 {
  static void get(const SubRows& io, int, int x, int& Y, int& U, int& V) {
    const uint8_t* p = io.s[0][0];
    Y = p[2 * x], U = p[4 * (x >> 1) + 1], V = p[4 * (x >> 1) + 3];
  }
  static void getLast(const SubRows& io, int x, int& Y, int& U, int& V) {
    const uint8_t* p = io.s[0][0] + 2 * x;
    Y = p[0], U = p[1], V = x ? p[-1] : U;
  }
  static void putPair(const SubRows& io, int x, int Y0, int Y1, int U, int V) {
    uint8_t* p = io.d[0][0] + 2 * x;
    p[0] = static_cast<uint8_t>(Y0), p[1] = static_cast<uint8_t>(U);
    p[2] = static_cast<uint8_t>(Y1), p[3] = static_cast<uint8_t>(V);
  }
  static void putLast(const SubRows& io, int x, int Y, int U, int) {
    uint8_t* p = io.d[0][0] + 2 * x;
    p[0] = static_cast<uint8_t>(Y), p[1] = static_cast<uint8_t>(U);
  }
};

// ---- row routines -----------------------------------------------------------
// Forward 4:2:2 row of w pixels: body pairs [0, body) by Body (vector
// kernels first), then pairs by Tail, then a last odd pixel by Odd.
template <class In, class Out, class F>
inline void pairFwd(const SubRows& io, int x) {
  int R0, G0, B0, R1, G1, B1, Y0, Y1, U, V;
  In::get(io, 0, x, R0, G0, B0);
  In::get(io, 0, x + 1, R1, G1, B1);
  F::pair(R0, G0, B0, R1, G1, B1, Y0, Y1, U, V);
  Out::putPair(io, x, Y0, Y1, U, V);
}
template <class In, class Out, class Body, class Tail, class Odd>
inline void row422Fwd(const SubRows& io, int w, int body, const ChainSub& chain) {
  int x = runChain(chain, io, 0, body);
  for (; x < body; x += 2) pairFwd<In, Out, Body>(io, x);
  for (; x + 1 < w; x += 2) pairFwd<In, Out, Tail>(io, x);
  if (x < w) {
    int R, G, B, Y, U, V;
    In::get(io, 0, x, R, G, B);
    Odd::one(R, G, B, Y, U, V);
    Out::putLast(io, x, Y, U, V);
  }
}

// Forward 4:2:0 row pair of n (even) columns: blocks [0, body) by Body,
// the rest by Tail. Luma to d[0][0], d[1][0]; chroma to d[0][1], d[0][2].
template <class In, class F>
inline void blockFwd(const SubRows& io, int x) {
  int R[4], G[4], B[4], Y[4], U, V;
  In::get(io, 0, x, R[0], G[0], B[0]);
  In::get(io, 0, x + 1, R[1], G[1], B[1]);
  In::get(io, 1, x, R[2], G[2], B[2]);
  In::get(io, 1, x + 1, R[3], G[3], B[3]);
  F::block(R, G, B, Y, U, V);
  io.d[0][0][x] = static_cast<uint8_t>(Y[0]), io.d[0][0][x + 1] = static_cast<uint8_t>(Y[1]);
  io.d[1][0][x] = static_cast<uint8_t>(Y[2]), io.d[1][0][x + 1] = static_cast<uint8_t>(Y[3]);
  io.d[0][1][x >> 1] = static_cast<uint8_t>(U), io.d[0][2][x >> 1] = static_cast<uint8_t>(V);
}
template <class In, class Body, class Tail>
inline void row420Fwd(const SubRows& io, int n, int body, const ChainSub& chain) {
  int x = runChain(chain, io, 0, body);
  for (; x < body; x += 2) blockFwd<In, Body>(io, x);
  for (; x < n; x += 2) blockFwd<In, Tail>(io, x);
}

// Inverse row (rows = 1) or row pair (rows = 2) of w pixels: [0, body) by
// Body, then by Tail up to the last even column, then a last odd pixel by
// Odd (4:2:2 rows only; 4:2:0 rows have an even count).
template <class In, class Out, class F>
inline void pxInv(const SubRows& io, int r, int x) {
  int Y, U, V, R, G, B;
  In::get(io, r, x, Y, U, V);
  F::px(Y, U, V, R, G, B);
  Out::put(io, r, x, R, G, B);
}
template <class In, class Out, class Body, class Tail, class Odd = Tail>
inline void rowInv(const SubRows& io, int rows, int w, int body, const ChainSub& chain) {
  int x = runChain(chain, io, 0, body);
  for (; x < body; ++x)
    for (int r = 0; r < rows; ++r) pxInv<In, Out, Body>(io, r, x);
  for (; x < (w & ~1); ++x)
    for (int r = 0; r < rows; ++r) pxInv<In, Out, Tail>(io, r, x);
  if (x < w) {
    int Y, U, V, R, G, B;
    In::getLast(io, x, Y, U, V);
    Odd::px(Y, U, V, R, G, B);
    Out::put(io, 0, x, R, G, B);
  }
}

// ---- row drivers ------------------------------------------------------------
// One row at a time: row r of every plane, each plane with its own step.
// `ns`, `nd` planes on each side (1 for interleaved images).
template <class RowFn>
inline void myRowsSub(const uint8_t* const* s, const int* ss, int ns, uint8_t* const* d, const int* ds, int nd, int h,
                      int alpha, RowFn&& row) {
  forRows(h, [&](int r) {
    SubRows io{};
    for (int p = 0; p < ns; ++p) io.s[0][p] = rowAt(s[p], ss[p], r);
    for (int p = 0; p < nd; ++p) io.d[0][p] = rowAt(d[p], ds[p], r);
    io.alpha = alpha;
    row(io);
  });
}
// 4:2:0 row pairs: planes below `sFull` (`dFull`) are full-resolution and
// give rows 2k and 2k + 1; the others are chroma planes and give row k.
template <class RowFn>
inline void myPairsSub(const uint8_t* const* s, const int* ss, int ns, int sFull, uint8_t* const* d, const int* ds,
                       int nd, int dFull, int h, int alpha, RowFn&& row) {
  forRowPairs(h, [&](int k) {
    SubRows io{};
    for (int p = 0; p < ns; ++p) {
      io.s[0][p] = rowAt(s[p], ss[p], p < sFull ? 2 * k : k);
      if (p < sFull) io.s[1][p] = rowAt(s[p], ss[p], 2 * k + 1);
    }
    for (int p = 0; p < nd; ++p) {
      io.d[0][p] = rowAt(d[p], ds[p], p < dFull ? 2 * k : k);
      if (p < dFull) io.d[1][p] = rowAt(d[p], ds[p], 2 * k + 1);
    }
    io.alpha = alpha;
    row(io);
  });
}

}  // namespace yuvsub
}  // namespace

}  // namespace kel
