// Vector bodies of YCbCr and YUV to 16-bit packed RGB, written once on the
// lane words of frame/simd.h and compiled per instruction set. Each kernel is
// the lane-wise form of the scalar body definition of ycbcr16.h for its
// layout, colour form and packer: 16 pixels per lane, in two halves of eight
// 16-bit values.
#include "frame/simd.h"
#include "packed/ycbcr16.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;

// ---- source layouts -----------------------------------------------------------
// kChroma pixels share a chroma sample. Full: 16 luma and 16 chroma bytes
// per lane. Half and quarter: 16 luma bytes and the 8 or 4 chroma bytes of
// their groups at the low end of each lane, so that the chroma terms are
// computed once per group.
struct LC3 {
  static constexpr int kChroma = 1, kSlack = 0;
  static void bytes(const Io16& io, ptrdiff_t x, v& y, v& cb, v& cr) { loadC3(io.s[0] + 3 * x, y, cb, cr); }
};
struct LP3 {
  static constexpr int kChroma = 1, kSlack = 0;
  static void bytes(const Io16& io, ptrdiff_t x, v& y, v& cb, v& cr) {
    y = V::load<16>(io.s[0] + x), cb = V::load<16>(io.s[1] + x), cr = V::load<16>(io.s[2] + x);
  }
};
struct LHalf {
  static constexpr int kChroma = 2, kSlack = 0;
  static void bytes(const Io16& io, ptrdiff_t x, v& y, v& cb, v& cr) {
    y = V::load<16>(io.s[0] + x), cb = V::load8<8>(io.s[1] + (x >> 1)), cr = V::load8<8>(io.s[2] + (x >> 1));
  }
};
// Chroma planes with a sample per four columns: the 4 chroma bytes of a lane
// come with an 8-byte load, so the kernel stops 16 pixels early (kSlack) to
// stay inside the chroma row.
struct LQuarter {
  static constexpr int kChroma = 4, kSlack = 16;
  static void bytes(const Io16& io, ptrdiff_t x, v& y, v& cb, v& cr) {
    y = V::load<16>(io.s[0] + x), cb = V::load8<4>(io.s[1] + (x >> 2)), cr = V::load8<4>(io.s[2] + (x >> 2));
  }
};
// Y0 Cb Y1 Cr: 32 bytes per 16 pixels.
constexpr Mask16 maskC2(int first, int step, int count, int at) {
  Mask16 m{};
  for (int i = 0; i < 16; ++i) m.b[i] = -128;
  for (int i = 0; i < count; ++i) m.b[at + i] = static_cast<int8_t>(first + step * i);
  return m;
}
inline constexpr Mask16 kC2Y0 = maskC2(0, 2, 8, 0), kC2Y1 = maskC2(0, 2, 8, 8);
inline constexpr Mask16 kC2U0 = maskC2(1, 4, 4, 0), kC2U1 = maskC2(1, 4, 4, 4);
inline constexpr Mask16 kC2V0 = maskC2(3, 4, 4, 0), kC2V1 = maskC2(3, 4, 4, 4);
struct LC2 {
  static constexpr int kChroma = 2, kSlack = 0;
  static void bytes(const Io16& io, ptrdiff_t x, v& y, v& cb, v& cr) {
    const v a = V::load<32>(io.s[0] + 2 * x), b = V::load<32>(io.s[0] + 2 * x + 16);
    y = V::or_(V::shuffle8(a, mask<kC2Y0>()), V::shuffle8(b, mask<kC2Y1>()));
    cb = V::or_(V::shuffle8(a, mask<kC2U0>()), V::shuffle8(b, mask<kC2U1>()));
    cr = V::or_(V::shuffle8(a, mask<kC2V0>()), V::shuffle8(b, mask<kC2V1>()));
  }
};

// ---- colour forms ---------------------------------------------------------------
// luma(): the luma term; terms(): the chroma terms that R and B add and G
// subtracts; R = (y + tR) >> 4, G = (y - tG) >> 4, B = (y + tB) >> 4.
struct Ycc {
  static v luma(v Y) { return V::mulhs(V::slli16<7>(V::sub16(Y, V::set16(16))), V::set16(9535)); }
  static void terms(v Cb, v Cr, v& tR, v& tG, v& tB) {
    const v cb = V::slli16<7>(V::sub16(Cb, V::set16(128))), cr = V::slli16<7>(V::sub16(Cr, V::set16(128)));
    tR = V::mulhs(cr, V::set16(13074));
    tG = V::add16(V::mulhs(cb, V::set16(3211)), V::mulhs(cr, V::set16(6660)));
    tB = V::mulhs(cb, V::set16(16523));
  }
};
struct Yuv {
  static v luma(v Y) { return V::slli16<4>(Y); }
  static void terms(v U, v W, v& tR, v& tG, v& tB) {
    const v u = V::slli16<7>(V::sub16(U, V::set16(128))), w = V::slli16<7>(V::sub16(W, V::set16(128)));
    tR = V::mulhs(w, V::set16(9338));
    tG = V::add16(V::mulhs(w, V::set16(4759)), V::mulhs(u, V::set16(3227)));
    tB = V::mulhs(u, V::set16(16646));
  }
};

// The 4:1:1 form rounds before the shift: the 8 rides on the luma term.
struct YccRounded {
  static v luma(v Y) { return V::add16(Ycc::luma(Y), V::set16(8)); }
  static void terms(v Cb, v Cr, v& tR, v& tG, v& tB) { Ycc::terms(Cb, Cr, tR, tG, tB); }
};

// ---- packers ----------------------------------------------------------------------
// They take the colours clipped to 0..255 and held in the high byte of each
// lane (v << 8), as the unpack of the saturating pack gives them.
//
// Plain: the top `Bits` of the colour, moved to `Shift`.
template <int Bits, int Shift>
inline v plainField(v x8) {
  if constexpr (Shift + Bits == 16) {
    return V::and_(x8, V::set16(((1 << Bits) - 1) << (16 - Bits)));
  } else {
    const v f = V::srli16<16 - Bits>(x8);
    if constexpr (Shift == 0) return f;
    else return V::slli16<Shift>(f);
  }
}
template <int F>
struct VPlain {
  struct Thr {
    explicit Thr(int) {}
  };
  static v pack(v R8, v G8, v B8, const Thr&) {
    constexpr Fmt16Desc f = kFmt16[F];
    return V::or_(V::or_(plainField<f.bits[0], f.shift[0]>(R8), plainField<f.bits[1], f.shift[1]>(G8)),
                  plainField<f.bits[2], f.shift[2]>(B8));
  }
};

// Dithered: level = (v * m) >> 8 is the high half of (v << 8) * m; the rest
// (v << 8) - level * s lies in 0..s and so is exact in the lane's low 16 bits;
// the field is level + (rest > t), the compare giving -1 where true.
template <int Bits, int Shift>
inline v ditherField(v x8, v t) {
  using Fd = dither16::Field<Bits>;
  const v level = V::mulhu(x8, V::set16(Fd::kMul));
  const v rest = V::sub16(x8, V::mullo16(level, V::set16(Fd::kStep)));
  const v f = V::sub16(level, V::cmpgt16(rest, t));
  if constexpr (Shift == 0) return f;
  else return V::slli16<Shift>(f);
}
template <int F>
struct VDither {
  static constexpr Fmt16Desc f = kFmt16[F];
  // The thresholds of a row for the red/blue width and for green.
  struct Thr {
    v rb, g;
    explicit Thr(int r)
        : rb(V::bcast(dither16::ThreshRows<f.bits[0]>::row[r & 3].v)),
          g(V::bcast(dither16::ThreshRows<f.bits[1]>::row[r & 3].v)) {}
  };
  static v pack(v R8, v G8, v B8, const Thr& t) {
    return V::or_(V::or_(ditherField<f.bits[0], f.shift[0]>(R8, t.rb), ditherField<f.bits[1], f.shift[1]>(G8, t.g)),
                  ditherField<f.bits[2], f.shift[2]>(B8, t.rb));
  }
};

// ---- the kernel -------------------------------------------------------------------
// The colours of both halves are clipped by one saturating pack to bytes and
// come back as v << 8.
inline void clipHigh(v lo, v hi, v& x0, v& x1) {
  const v b = V::packus16(V::srai16<4>(lo), V::srai16<4>(hi));
  x0 = V::unpacklo8(V::zero(), b);
  x1 = V::unpackhi8(V::zero(), b);
}

// Chroma terms of 16 pixels per lane, in two halves.
template <class L, class Form>
inline void chromaTerms(v cb8, v cr8, v tR[2], v tG[2], v tB[2]) {
  if constexpr (L::kChroma > 1) {
    v r, g, b;
    Form::terms(V::unpacklo8(cb8, V::zero()), V::unpacklo8(cr8, V::zero()), r, g, b);
    if constexpr (L::kChroma == 4) {  // each value to four lanes
      r = V::unpacklo16(r, r), g = V::unpacklo16(g, g), b = V::unpacklo16(b, b);
      tR[0] = V::unpacklo32(r, r), tR[1] = V::unpackhi32(r, r);
      tG[0] = V::unpacklo32(g, g), tG[1] = V::unpackhi32(g, g);
      tB[0] = V::unpacklo32(b, b), tB[1] = V::unpackhi32(b, b);
    } else {
      tR[0] = V::unpacklo16(r, r), tR[1] = V::unpackhi16(r, r);
      tG[0] = V::unpacklo16(g, g), tG[1] = V::unpackhi16(g, g);
      tB[0] = V::unpacklo16(b, b), tB[1] = V::unpackhi16(b, b);
    }
  } else {
    v cb[2], cr[2];
    widen(cb8, cb[0], cb[1]);
    widen(cr8, cr[0], cr[1]);
    Form::terms(cb[0], cr[0], tR[0], tG[0], tB[0]);
    Form::terms(cb[1], cr[1], tR[1], tG[1], tB[1]);
  }
}
// Luma of 16 pixels per lane with their chroma terms, packed and stored at d.
template <class Form, class P>
inline void emit(uint16_t* d, v y8, const v tR[2], const v tG[2], const v tB[2], const typename P::Thr& thr) {
  v y[2];
  widen(y8, y[0], y[1]);
  y[0] = Form::luma(y[0]), y[1] = Form::luma(y[1]);
  v R[2], G[2], B[2];
  clipHigh(V::add16(y[0], tR[0]), V::add16(y[1], tR[1]), R[0], R[1]);
  clipHigh(V::sub16(y[0], tG[0]), V::sub16(y[1], tG[1]), G[0], G[1]);
  clipHigh(V::add16(y[0], tB[0]), V::add16(y[1], tB[1]), B[0], B[1]);
  V::store<32>(d, P::pack(R[0], G[0], B[0], thr));
  V::store<32>(d + 8, P::pack(R[1], G[1], B[1], thr));
}

template <class L, class Form, class P>
ptrdiff_t kern16(const Io16& io, ptrdiff_t x, ptrdiff_t n) {
  constexpr int kBlock = 16 * V::kLanes;
  const typename P::Thr thr(io.r);
  for (; x + kBlock + L::kSlack <= n; x += kBlock) {
    v y8, cb8, cr8, tR[2], tG[2], tB[2];
    L::bytes(io, x, y8, cb8, cr8);
    chromaTerms<L, Form>(cb8, cr8, tR, tG, tB);
    emit<Form, P>(io.d + x, y8, tR, tG, tB, thr);
  }
  return x;
}
// Two rows that share their half-width chroma row (4:2:0): the chroma terms
// are computed once for both.
template <class Form, class P>
ptrdiff_t kernPair(const Io16& a, const Io16& b, ptrdiff_t x, ptrdiff_t n) {
  constexpr int kBlock = 16 * V::kLanes;
  const typename P::Thr thrA(a.r), thrB(b.r);
  for (; x + kBlock <= n; x += kBlock) {
    v y8, cb8, cr8, tR[2], tG[2], tB[2];
    LHalf::bytes(a, x, y8, cb8, cr8);
    chromaTerms<LHalf, Form>(cb8, cr8, tR, tG, tB);
    emit<Form, P>(a.d + x, y8, tR, tG, tB, thrA);
    emit<Form, P>(b.d + x, V::load<16>(b.s[0] + x), tR, tG, tB, thrB);
  }
  return x;
}

template <bool D, int F>
using Pk = typename std::conditional<D, VDither<F>, VPlain<F>>::type;
template <class L, class Form, bool D>
struct Row6 {
  static constexpr Kern16 k[kFmt16Count] = {
      kern16<L, Form, Pk<D, kBGR444>>, kern16<L, Form, Pk<D, kBGR555>>, kern16<L, Form, Pk<D, kBGR565>>,
      kern16<L, Form, Pk<D, kRGB444>>, kern16<L, Form, Pk<D, kRGB555>>, kern16<L, Form, Pk<D, kRGB565>>};
};
template <class Form, bool D>
struct Pair6 {
  static constexpr Kern16x2 k[kFmt16Count] = {
      kernPair<Form, Pk<D, kBGR444>>, kernPair<Form, Pk<D, kBGR555>>, kernPair<Form, Pk<D, kBGR565>>,
      kernPair<Form, Pk<D, kRGB444>>, kernPair<Form, Pk<D, kRGB555>>, kernPair<Form, Pk<D, kRGB565>>};
};

template <class L, class Form>
constexpr void fill(Kern16 (&t)[2][kFmt16Count]) {
  for (int i = 0; i < kFmt16Count; ++i) t[0][i] = Row6<L, Form, false>::k[i], t[1][i] = Row6<L, Form, true>::k[i];
}
template <class Form>
constexpr void fillPair(Kern16x2 (&t)[2][kFmt16Count]) {
  for (int i = 0; i < kFmt16Count; ++i) t[0][i] = Pair6<Form, false>::k[i], t[1][i] = Pair6<Form, true>::k[i];
}
constexpr Ycc16Kernels makeTable() {
  Ycc16Kernels t{};
  fill<LC3, Ycc>(t.ycc[kSrcC3]);
  fill<LP3, Ycc>(t.ycc[kSrcP3]);
  fill<LC2, Ycc>(t.ycc[kSrcC2]);
  fill<LHalf, Ycc>(t.ycc[kSrcHalf]);
  fill<LHalf, Yuv>(t.yuv);
  fillPair<Ycc>(t.pair[0]);
  fillPair<Yuv>(t.pair[1]);
  t.q411[0] = kern16<LQuarter, YccRounded, VPlain<kBGR555>>;
  t.q411[1] = kern16<LQuarter, YccRounded, VPlain<kBGR565>>;
  return t;
}

}  // namespace

extern const Ycc16Kernels kYcc16Kernels = makeTable();

}  // namespace KEL_ISA_NS
}  // namespace kel
