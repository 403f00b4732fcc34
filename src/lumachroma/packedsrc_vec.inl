// Vector bodies of the packed 16-bit sources, on the lane words of
// frame/simd.h and compiled per instruction set. Each lane takes 16 source
// words a pass (32 for 4:1:1), widens their fields with shifts and masks in
// 16-bit lanes, and forms the chroma sums of pixel pairs with a multiply-add
// by 1. The forms are the lane-wise twins of the scalar definitions of the
// same names in packedsrc.h.
#include "frame/simd.h"
#include "lumachroma/packedsrc.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;
using pks::Src;

// ---- widening: 8 words per lane to R, G, B with their low bits 0 ----------------------
template <Src S>
inline void fields(v w, v& R, v& G, v& B) {
  const v m5 = V::set16(0xF8), m6 = V::set16(0xFC);
  if constexpr (S == Src::BGR555) {
    R = V::and_(V::srli16<7>(w), m5), G = V::and_(V::srli16<2>(w), m5), B = V::and_(V::slli16<3>(w), m5);
  } else if constexpr (S == Src::BGR565) {
    R = V::and_(V::srli16<8>(w), m5), G = V::and_(V::srli16<3>(w), m6), B = V::and_(V::slli16<3>(w), m5);
  } else {
    R = V::and_(V::slli16<3>(w), m5), G = V::and_(V::srli16<3>(w), m6), B = V::and_(V::srli16<8>(w), m5);
  }
}

// Sums of adjacent pairs: a holds pixels 0-7 of the lane, b pixels 8-15;
// the result holds the 8 pair sums in order.
inline v pairSums(v a, v b) {
  const v one = V::set16(1);
  return V::packs32(V::madd16(a, one), V::madd16(b, one));
}

// ---- forms ------------------------------------------------------------------------------------
inline v mulhuC(v x, int c) { return V::mulhu(x, V::set16(c)); }
inline v mulhsC(v x, int c) { return V::mulhs(x, V::set16(c)); }

struct YO {
  static v term(v R, v G, v B) {
    const v s = V::add16(V::add16(mulhuC(V::slli16<8>(R), 8422), mulhuC(V::slli16<8>(G), 16515)),
                         V::add16(mulhuC(V::slli16<8>(B), 3212), V::set16(2112)));
    return V::srai16<7>(s);
  }
  static v luma(v t) { return t; }
};
template <int Round, int Shift>
struct ChromaQ {
  static v c0(v sR, v sG, v sB, v) {
    const v r = V::slli16<5>(sR), g = V::slli16<5>(sG), b = V::slli16<5>(sB);
    return V::srai16<Shift>(V::add16(V::sub16(V::sub16(mulhuC(b, 28770), mulhuC(r, 9699)), mulhuC(g, 19071)),
                                     V::set16(Round)));
  }
  static v c1(v sR, v sG, v sB, v) {
    const v r = V::slli16<5>(sR), g = V::slli16<5>(sG), b = V::slli16<5>(sB);
    return V::srai16<Shift>(V::add16(V::sub16(V::sub16(mulhuC(r, 28770), mulhuC(g, 24117)), mulhuC(b, 4653)),
                                     V::set16(Round)));
  }
};
template <class C>
struct Ycc : YO, C {};
using YoCa = Ycc<ChromaQ<8200, 6>>;
using YoCb = Ycc<ChromaQ<16400, 7>>;

struct W1 {
  static v term(v R, v G, v B) {
    const v s = V::add16(V::add16(mulhuC(V::slli16<8>(R), 9798), mulhuC(V::slli16<8>(G), 19235)),
                         V::add16(mulhuC(V::slli16<8>(B), 3736), V::set16(64)));
    return V::srai16<7>(s);
  }
  static v luma(v t) { return t; }
  static v c0(v, v, v sB, v S) {
    return V::srai16<6>(V::add16(mulhsC(V::slli16<5>(V::sub16(sB, S)), 16122), V::set16(8224)));
  }
  static v c1(v sR, v, v, v S) {
    return V::srai16<6>(V::add16(mulhsC(V::slli16<5>(V::sub16(sR, S)), 28737), V::set16(8224)));
  }
};

struct XS {
  static v term(v R, v G, v B) {
    return V::add16(V::add16(mulhsC(V::slli16<2>(R), 9798), mulhsC(V::slli16<2>(B), 3736)),
                    mulhsC(V::slli16<2>(G), 19235));
  }
  static v luma(v S) { return V::srai16<1>(V::add16(S, V::set16(1))); }
};
// X1 (4 pixels, T = sum >> 2, half the sums) and X2 (2 pixels, T = sum >> 1).
template <bool Four>
struct XC : XS {
  static v T(v sS) { return Four ? V::srai16<2>(sS) : V::srai16<1>(sS); }
  static v half(v s) { return Four ? V::srai16<1>(s) : s; }
  static v c0(v, v, v sB, v sS) { return V::add16(mulhsC(V::sub16(half(sB), T(sS)), 16121), V::set16(128)); }
  static v c1(v sR, v, v, v sS) { return V::add16(mulhsC(V::sub16(half(sR), T(sS)), 28737), V::set16(128)); }
};
using X1 = XC<true>;
using X2 = XC<false>;

// 8 pixels of one lane through form F: luma (16-bit) and the term.
template <Src S, class F>
inline void pixels(v w, v& R, v& G, v& B, v& t, v& y) {
  fields<S>(w, R, G, B);
  t = F::term(R, G, B);
  y = F::luma(t);
}

// ---- kernels -------------------------------------------------------------------------------------
// 4:2:0 pairs of rows: 8 groups (16 columns) per lane and pass.
template <Src S, class F>
int k420(const Io420& io, int j, int n) {
  constexpr int kG = 8 * V::kLanes;
  for (; j + kG <= n; j += kG) {
    const int x = 2 * j;
    v sum[4][2];  // R, G, B, term; pixels 0-7 and 8-15 of the lane, both rows added
    for (int r = 0; r < 2; ++r) {
      const uint8_t* s = (r ? io.s1 : io.s0) + 2 * x;
      v y[2];
      for (int h = 0; h < 2; ++h) {
        v R, G, B, t;
        pixels<S, F>(V::load<32>(s + 16 * h), R, G, B, t, y[h]);
        if (r == 0) {
          sum[0][h] = R, sum[1][h] = G, sum[2][h] = B, sum[3][h] = t;
        } else {
          sum[0][h] = V::add16(sum[0][h], R), sum[1][h] = V::add16(sum[1][h], G);
          sum[2][h] = V::add16(sum[2][h], B), sum[3][h] = V::add16(sum[3][h], t);
        }
      }
      V::store<16>((r ? io.y1 : io.y0) + x, V::packus16(y[0], y[1]));
    }
    const v sR = pairSums(sum[0][0], sum[0][1]), sG = pairSums(sum[1][0], sum[1][1]);
    const v sB = pairSums(sum[2][0], sum[2][1]), sT = pairSums(sum[3][0], sum[3][1]);
    const v c0 = F::c0(sR, sG, sB, sT), c1 = F::c1(sR, sG, sB, sT);
    V::store8<8>(io.c0 + j, V::packus16(c0, c0));
    V::store8<8>(io.c1 + j, V::packus16(c1, c1));
  }
  return j;
}

// One row of 4:2:2 groups: 8 groups per lane and pass; luma and the two
// chroma samples (16-bit, one lane's 8 groups) go to `put`.
template <Src S, class F, class Put>
int k422(const IoRow& io, int j, int n, Put put) {
  constexpr int kG = 8 * V::kLanes;
  for (; j + kG <= n; j += kG) {
    const int x = 2 * j;
    v R[2], G[2], B[2], t[2], y[2];
    for (int h = 0; h < 2; ++h) pixels<S, F>(V::load<32>(io.s + 2 * x + 16 * h), R[h], G[h], B[h], t[h], y[h]);
    const v sR = pairSums(R[0], R[1]), sG = pairSums(G[0], G[1]), sB = pairSums(B[0], B[1]);
    const v sT = pairSums(t[0], t[1]);
    put(x, j, V::packus16(y[0], y[1]), F::c0(sR, sG, sB, sT), F::c1(sR, sG, sB, sT));
  }
  return j;
}
template <Src S, class F>
int k422P3(const IoRow& io, int j, int n) {
  return k422<S, F>(io, j, n, [&](int x, int jj, v y, v c0, v c1) {
    V::store<16>(io.y + x, y);
    V::store8<8>(io.c0 + jj, V::packus16(c0, c0));
    V::store8<8>(io.c1 + jj, V::packus16(c1, c1));
  });
}
// The Y0 Cb Y1 Cr stream: 32 bytes per lane.
template <Src S, class F>
int k422C2(const IoRow& io, int j, int n) {
  return k422<S, F>(io, j, n, [&](int x, int, v y, v c0, v c1) {
    const v cbcr = V::unpacklo8(V::packus16(c0, c0), V::packus16(c1, c1));
    V::store<32>(io.y + 2 * x, V::unpacklo8(y, cbcr));
    V::store<32>(io.y + 2 * x + 16, V::unpackhi8(y, cbcr));
  });
}

// 4:1:1 rows: 8 groups (32 columns) per lane and pass.
template <Src S, class F>
int k411(const IoRow& io, int j, int n) {
  constexpr int kG = 8 * V::kLanes;
  for (; j + kG <= n; j += kG) {
    const int x = 4 * j;
    v R[4], G[4], B[4], t[4], y[4];
    for (int q = 0; q < 4; ++q) pixels<S, F>(V::load<64>(io.s + 2 * x + 16 * q), R[q], G[q], B[q], t[q], y[q]);
    V::store<32>(io.y + x, V::packus16(y[0], y[1]));
    V::store<32>(io.y + x + 16, V::packus16(y[2], y[3]));
    auto quads = [](const v* a) { return pairSums(pairSums(a[0], a[1]), pairSums(a[2], a[3])); };
    const v sR = quads(R), sG = quads(G), sB = quads(B), sT = quads(t);
    const v c0 = F::c0(sR, sG, sB, sT), c1 = F::c1(sR, sG, sB, sT);
    V::store8<8>(io.c0 + j, V::packus16(c0, c0));
    V::store8<8>(io.c1 + j, V::packus16(c1, c1));
  }
  return j;
}

}  // namespace

extern const PackedSrcKernels kPackedSrcKernels = {
    k420<Src::BGR555, YoCb>,   k420<Src::BGR565, YoCb>,   k422P3<Src::BGR555, YoCa>, k422P3<Src::BGR565, YoCa>,
    k422C2<Src::BGR555, YoCa>, k422C2<Src::BGR565, YoCa>, k411<Src::BGR555, YoCb>,   k411<Src::BGR565, YoCb>,
    k420<Src::BGR555, W1>,     k420<Src::BGR565, W1>,     k420<Src::RGB565, X1>,     k422P3<Src::RGB565, X2>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
