// RGB and BGR <-> studio-range YCbCr with subsampled chroma (4:2:2, 4:2:0,
// 4:1:1): the formulas, the row and group walks built from them, and the
// table of vector bodies each instruction-set file provides.
//
// Forward members average chroma by summing the group's R, G and B and
// applying the chroma coefficients to the sums; inverse members reuse the
// group's one chroma pair for all its pixels, without interpolation.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/arith.h"
#include "frame/cpu.h"
#include "frame/rows.h"
#include "lumachroma/ycbcr444.h"

namespace kel {

// The rows a row routine works on. One row of every plane, or for 4:2:0 a
// pair of rows of the full-resolution planes, [0] and [1], with the one row
// of each chroma plane in [0].
//   forward: s[r][0..2] the RGB side (interleaved rows use [r][0]);
//            d[r][0] luma row r (or the packed 4:2:2 row), d[0][1] Cb, d[0][2] Cr
//   inverse: s[r][0] luma row r (or the packed 4:2:2 row), s[0][1] Cb, s[0][2] Cr;
//            d[r][0..2] the RGB side
// Columns are always luma columns.
struct SubRows {
  const uint8_t* s[2][3];
  uint8_t* d[2][3];
  int alpha;
};

// A vector body: converts columns from x on in whole blocks while a block
// fits below n; returns the column where it stopped.
using KernSub = int (*)(const SubRows& io, int x, int n);

struct YccSubKernels {
  KernSub rgb420_YF_CG;   // RGB C3 -> Y, Cb, Cr 4:2:0
  KernSub p420_J3_rgb;    // 4:2:0 planes -> RGB C3
  KernSub p420_J3_bgr;    // 4:2:0 planes -> BGR C3
  KernSub p420_J5_bgr;    // 4:2:0 planes -> BGR C3, Q12 set
  KernSub p420_J4_bgra;   // 4:2:0 planes -> BGR + alpha
  KernSub p420_J4_rgba;   // 4:2:0 planes -> RGB + alpha
  KernSub p422_J3_rgb;    // 4:2:2 planes -> RGB C3
  KernSub p422_J5_rgb;    // 4:2:2 planes -> RGB C3, Q12 set
  KernSub p422_J3_bgr;    // 4:2:2 planes -> BGR C3
  KernSub c2_J2_rgb;      // packed Y0 Cb Y1 Cr -> RGB C3
  KernSub c2_J2_p3;       // packed Y0 Cb Y1 Cr -> RGB planes
  KernSub c2cr_J2_rgb;    // packed Y0 Cr Y1 Cb -> RGB C3
  KernSub c2cr_J2_p3;     // packed Y0 Cr Y1 Cb -> RGB planes
  KernSub c2_J3_bgr;      // packed Y0 Cb Y1 Cr -> BGR C3
  KernSub c2_J6_bgra;     // packed Y0 Cb Y1 Cr -> BGR + alpha
  KernSub bgr422_YO_CA;   // BGR C3 -> 4:2:2 planes
  KernSub bgra422_YO_CA;  // BGR + alpha -> 4:2:2 planes
  KernSub rgb422_YO_CA;   // RGB C3 -> 4:2:2 planes
  KernSub bgr422c2_YO_CA;   // BGR C3 -> packed Y0 Cb Y1 Cr
  KernSub bgra422c2_YO_CA;  // BGR + alpha -> packed Y0 Cb Y1 Cr
  KernSub bgr420_YO_CB;   // BGR C3 -> 4:2:0 planes
  KernSub bgra420_YO_CB;  // BGR + alpha -> 4:2:0 planes
  KernSub rgba420_YO_CB;  // RGB + alpha -> 4:2:0 planes
  KernSub rgbc2_YH_CF;    // RGB C3 -> packed Y0 Cb Y1 Cr
  KernSub p3c2_YH_CF;     // RGB planes -> packed Y0 Cb Y1 Cr
  KernSub rgbc2cr_YH_CF;  // RGB C3 -> packed Y0 Cr Y1 Cb
  KernSub p3c2cr_YH_CF;   // RGB planes -> packed Y0 Cr Y1 Cb
  KernSub bgr411_YG_CH;   // BGR C3 -> 4:1:1 planes
  KernSub bgra411_YO_CB;  // BGR + alpha -> 4:1:1 planes
  KernSub p411_J2_bgr;    // 4:1:1 planes -> BGR C3
  KernSub p411_J2_bgra;   // 4:1:1 planes -> BGR + alpha
};
namespace sse41 {
extern const YccSubKernels kYccSubKernels;
}
namespace avx2 {
extern const YccSubKernels kYccSubKernels;
}

namespace {
namespace ycc {

// The full-resolution family's forms that the subsampled members share.
using ycc444::J2;
using ycc444::J3;
using ycc444::J4;
using ycc444::L;
using ycc444::L2;

// ---- forward: luma of one pixel ---------------------------------------------
struct YF {  // Q14 through mulhr, offset inside the shift: the luma of F1
  static int px(int R, int G, int B) {
    int Y, Cb, Cr;
    ycc444::F1::px(R, G, B, Y, Cb, Cr);
    return Y;
  }
};
struct YG {  // the same products, offset after the shift
  static int px(int R, int G, int B) {
    return clip8(((mulhr(R << 7, 4211) + mulhr(G << 7, 8258) + mulhr(B << 7, 1606)) >> 6) + 16);
  }
};
struct YH {  // Q16 with mulhu, no rounding term
  static int px(int R, int G, int B) {
    return ((mulhu(R << 8, 16843) + mulhu(G << 8, 33030) + mulhu(B << 8, 6423)) >> 8) + 16;
  }
};
struct YO {  // Q15 with mulhu
  static int px(int R, int G, int B) {
    return clip8((mulhu(R << 8, 8422) + mulhu(G << 8, 16515) + mulhu(B << 8, 3212) + 2112) >> 7);
  }
};
struct YT {  // 32-bit Q16, rounded: the luma of FT
  static int px(int R, int G, int B) { return (16843 * R + 33030 * G + 6423 * B + 1081344) >> 16; }
};
struct YU {  // 32-bit Q16, offset 16 << 16 without the rounding half
  static int px(int R, int G, int B) { return (16843 * R + 33030 * G + 6423 * B + 1048576) >> 16; }
};

// ---- forward: chroma of a group from the sums of its samples ----------------
// 16-bit forms on sum << 5 with mulhu: CA (2 pixels) and CB (4 pixels).
template <int Off, int Sh>
struct CU {
  static void px(int sR, int sG, int sB, int& Cb, int& Cr) {
    const int r = sR << 5, g = sG << 5, b = sB << 5;
    Cb = clip8((mulhu(b, 28770) - mulhu(r, 9699) - mulhu(g, 19071) + Off) >> Sh);
    Cr = clip8((mulhu(r, 28770) - mulhu(g, 24117) - mulhu(b, 4653) + Off) >> Sh);
  }
};
using CA = CU<8200, 6>;
using CB = CU<16400, 7>;
// 32-bit forms: 128 in the form's scale plus a rounding term; CD and CF for
// 2 pixels, CE for 4.
template <int Off, int Sh>
struct CS {
  static void px(int sR, int sG, int sB, int& Cb, int& Cr) {
    Cb = byte8((28770 * sB - 19071 * sG - 9699 * sR + Off) >> Sh);
    Cr = byte8((28770 * sR - 24117 * sG - 4653 * sB + Off) >> Sh);
  }
};
using CD = CS<16793600, 17>;
using CE = CS<33587200, 18>;
using CF = CS<16842752, 17>;
// 16-bit forms on sum << 5 through mulhr (4 pixels): CG adds the offset
// inside the shift, CH adds 128 after it.
template <bool After>
struct CR_ {
  static void px(int sR, int sG, int sB, int& Cb, int& Cr) {
    const int r = sR << 5, g = sG << 5, b = sB << 5;
    const int cb = mulhr(b, 7193) - mulhr(r, 2425) - mulhr(g, 4768);
    const int cr = mulhr(r, 7193) - mulhr(b, 1163) - mulhr(g, 6029);
    Cb = After ? clip8((cb >> 6) + 128) : clip8((cb + 8194) >> 6);
    Cr = After ? clip8((cr >> 6) + 128) : clip8((cr + 8194) >> 6);
  }
};
using CG = CR_<false>;
using CH = CR_<true>;

// Chroma of a lone last pixel of a packed 4:2:2 row (Q16 on the samples).
template <int Off>
inline int cbOne(int R, int G, int B) { return byte8((28770 * B - 19071 * G - 9699 * R + Off) >> 16); }
inline int crOne(int R, int G, int B) { return byte8((28770 * R - 24117 * G - 4653 * B + 8421376) >> 16); }

// ---- inverse ------------------------------------------------------------------
// The 16-bit inverse forms with their constants named, for the vector
// bodies: y = (Y - 16) << 7, u = (Cb - 128) << 7, v = (Cr - 128) << 7,
// truncating products, final shift Sh. With NegG the G products take
// positive coefficients and are subtracted, each floored before the sign
// change.
template <int kY, int kR, int kGu, int kGv, int kB, int Rnd, int Sh, bool NegG>
struct JQ {
  static constexpr int cY = kY, cR = kR, cGu = kGu, cGv = kGv, cB = kB, rnd = Rnd, sh = Sh;
  static constexpr bool negG = NegG;
  static void px(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    const int y = (Y - 16) * 128, u = (Cb - 128) * 128, v = (Cr - 128) * 128;  // the shifts by 7, as products
    const int t = mulhs(y, kY);
    const int g = NegG ? -mulhs(u, kGu) - mulhs(v, kGv) : mulhs(u, kGu) + mulhs(v, kGv);
    R = clip8((t + mulhs(v, kR) + Rnd) >> Sh);
    G = clip8((t + g + Rnd) >> Sh);
    B = clip8((t + mulhs(u, kB) + Rnd) >> Sh);
  }
};
// Q12 sets of the subsampled members.
using J5 = JQ<4769, 6537, 1605, 3330, 8263, 0, 3, true>;
using J6 = JQ<4767, 6537, 1605, 3330, 8261, 0, 3, true>;
// The constants of the shared Q13 forms J2, J3 and J4, for the vector bodies
// (the routines' scalar definitions are J2, J3 and J4 themselves).
using J2c = JQ<9536, 13074, -3203, -6660, 16523, 0, 4, false>;
using J3c = JQ<9535, 13074, -3211, -6660, 16523, 8, 4, false>;
using J4c = JQ<9535, 13074, 3211, 6660, 16523, 8, 4, true>;
// 32-bit scalar sets: L4 rounds, L5 has its own factors for Y and for u in G.
using L4 = L<76284, 104595, -25690, -53281, 132186, 32768>;
using L5 = L<76294, 104595, -25625, -53281, 132186, 0>;
// S1 works on the sample bytes, its offsets folding in the centring.
struct S1 {
  static void px(int Y, int Cb, int Cr, int& R, int& G, int& B) {
    R = clip8((76284 * Y + 104595 * Cr - 14608761) >> 16);
    G = clip8((76284 * Y - 53281 * Cr - 25690 * Cb + 8887730) >> 16);
    B = clip8((76284 * Y + 132186 * Cb - 18140365) >> 16);
  }
};

// ---- pixel layouts of the RGB side ------------------------------------------
enum class Pix { RGB, BGR, RGBA, BGRA, P3 };  // RGBA/BGRA: 4 bytes per pixel

template <Pix P>
inline void getRGB(const uint8_t* const* s, int x, int& R, int& G, int& B) {
  if constexpr (P == Pix::P3) {
    R = s[0][x], G = s[1][x], B = s[2][x];
  } else {
    constexpr int n = (P == Pix::RGBA || P == Pix::BGRA) ? 4 : 3;
    constexpr bool bgr = P == Pix::BGR || P == Pix::BGRA;
    const uint8_t* p = s[0] + n * x;
    R = p[bgr ? 2 : 0], G = p[1], B = p[bgr ? 0 : 2];
  }
}
// Writes one pixel; a four-byte layout gets `alpha` as its fourth byte.
template <Pix P>
inline void putRGB(uint8_t* const* d, int x, int R, int G, int B, int alpha) {
  if constexpr (P == Pix::P3) {
    d[0][x] = uint8_t(R), d[1][x] = uint8_t(G), d[2][x] = uint8_t(B);
  } else {
    constexpr int n = (P == Pix::RGBA || P == Pix::BGRA) ? 4 : 3;
    constexpr bool bgr = P == Pix::BGR || P == Pix::BGRA;
    uint8_t* p = d[0] + n * x;
    p[bgr ? 2 : 0] = uint8_t(R), p[1] = uint8_t(G), p[bgr ? 0 : 2] = uint8_t(B);
    if constexpr (n == 4) p[3] = uint8_t(alpha);
  }
}

// ---- the YCbCr side -----------------------------------------------------------
// Planes: luma row r at d[r][0], chroma entry j at d[0][1][j], d[0][2][j].
struct Planar {
  static void putY(const SubRows& io, int r, int x, int Y) { io.d[r][0][x] = uint8_t(Y); }
  static void putC(const SubRows& io, int j, int Cb, int Cr) {
    io.d[0][1][j] = uint8_t(Cb), io.d[0][2][j] = uint8_t(Cr);
  }
  template <int Shift>
  static void get(const SubRows& io, int r, int x, int& Y, int& Cb, int& Cr) {
    Y = io.s[r][0][x], Cb = io.s[0][1][x >> Shift], Cr = io.s[0][2][x >> Shift];
  }
};
// Packed 4:2:2 bytes Y0 C Y1 C', Cb first or Cr first.
template <bool CrFirst>
struct Packed {
  static void putY(const SubRows& io, int, int x, int Y) { io.d[0][0][2 * x] = uint8_t(Y); }
  static void putC(const SubRows& io, int j, int Cb, int Cr) {
    io.d[0][0][4 * j + 1] = uint8_t(CrFirst ? Cr : Cb), io.d[0][0][4 * j + 3] = uint8_t(CrFirst ? Cb : Cr);
  }
  template <int>
  static void get(const SubRows& io, int, int x, int& Y, int& Cb, int& Cr) {
    const uint8_t* p = io.s[0][0] + 4 * (x >> 1);
    Y = io.s[0][0][2 * x];
    Cb = p[CrFirst ? 3 : 1], Cr = p[CrFirst ? 1 : 3];
  }
};

// ---- group walks (the scalar row routines' runs) -----------------------------
// Forward groups of GW columns by GH rows from column x0 to x1: the first
// pixel of each group row takes luma form Y0, the others Y1; the group's
// chroma goes through C on the sums.
template <int GW, int GH, Pix In, class Out, class Y0, class Y1, class C>
inline void fwdGroups(const SubRows& io, int x0, int x1) {
  for (int x = x0; x < x1; x += GW) {
    int sR = 0, sG = 0, sB = 0;
    for (int r = 0; r < GH; ++r)
      for (int i = 0; i < GW; ++i) {
        int R, G, B;
        getRGB<In>(io.s[r], x + i, R, G, B);
        Out::putY(io, r, x + i, i == 0 ? Y0::px(R, G, B) : Y1::px(R, G, B));
        sR += R, sG += G, sB += B;
      }
    int Cb, Cr;
    C::px(sR, sG, sB, Cb, Cr);
    Out::putC(io, x / GW, Cb, Cr);
  }
}
template <int GW, int GH, Pix In, class Out, class Ly, class C>
inline int fwdBody(const SubRows& io, int x, int n) {
  fwdGroups<GW, GH, In, Out, Ly, Ly, C>(io, x, n);
  return n > x ? n : x;
}
// Inverse pixels from column x0 to x1 of rows 0 .. Rows-1; chroma index x >> Shift.
template <int Rows, int Shift, class In, Pix Out, class F>
inline void invPixels(const SubRows& io, int x0, int x1) {
  for (int r = 0; r < Rows; ++r)
    for (int x = x0; x < x1; ++x) {
      int Y, Cb, Cr, R, G, B;
      In::template get<Shift>(io, r, x, Y, Cb, Cr);
      F::px(Y, Cb, Cr, R, G, B);
      putRGB<Out>(io.d[r], x, R, G, B, io.alpha);
    }
}
template <int Rows, int Shift, class In, Pix Out, class F>
inline int invBody(const SubRows& io, int x, int n) {
  invPixels<Rows, Shift, In, Out, F>(io, x, n);
  return n > x ? n : x;
}



// ---- row addresses ----------------------------------------------------------------
// One side of an image: its planes (one for an interleaved or packed image)
// and their steps. Plane 0 is at full resolution; with paired rows planes 1
// and 2 are 4:2:0 chroma planes, which give one row per pair.
struct Side {
  const uint8_t* p[3];
  int step[3];
  int n;
};
inline Side one(const void* p, int step) { return {{static_cast<const uint8_t*>(p)}, {step}, 1}; }
inline Side three(const uint8_t* p0, const uint8_t* p1, const uint8_t* p2, int s0, int s1, int s2) {
  return {{p0, p1, p2}, {s0, s1, s2}, 3};
}
// Row k of every plane, or (pair) rows 2k and 2k + 1 of plane 0 with row k
// of the chroma planes.
inline SubRows rowsOf(const Side& s, const Side& d, int k, bool pair, int alpha = 0) {
  SubRows io{};
  auto fill = [&](const Side& side, auto out) {
    for (int i = 0; i < side.n; ++i) {
      const int r0 = (pair && i == 0) ? 2 * k : k;
      out(0, i, rowAt(side.p[i], side.step[i], r0));
      out(1, i, (pair && i == 0) ? rowAt(side.p[i], side.step[i], r0 + 1) : rowAt(side.p[i], side.step[i], r0));
    }
  };
  fill(s, [&](int r, int i, const uint8_t* p) { io.s[r][i] = p; });
  fill(d, [&](int r, int i, const uint8_t* p) { io.d[r][i] = const_cast<uint8_t*>(p); });
  io.alpha = alpha & 0xff;
  return io;
}

inline Chain<KernSub> chainOf(KernSub YccSubKernels::*m) { return chainFor(m, sse41::kYccSubKernels, avx2::kYccSubKernels); }

}  // namespace ycc
}  // namespace
}  // namespace kel
