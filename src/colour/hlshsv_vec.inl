// Vector bodies of RGB and BGR <-> HLS and HSV, written once on the float
// lane words and compiled per instruction set. Each core is the lane-wise
// form of the scalar definition of the same name in hlshsv.h, operation for
// operation; sextants and special pixels are chosen by masks with both
// sides evaluated. 8-bit pixels are widened to four float vectors per
// channel and narrowed back with saturation.
// kelcc-isa: avx512
#include "colour/colour_vec.h"
#include "colour/hlshsv.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using namespace colourv;
using hlshsv::Cv;
using hlshsv::HueK;
using hlshsv::Kind;
using hlshsv::Rcp;

// ---- masks ------------------------------------------------------------------------
using m = F::m;
inline m cmpeq(f a, f b) { return F::cmpeq(a, b); }
inline m cmplt(f a, f b) { return F::cmplt(a, b); }
inline m cmple(f a, f b) { return F::cmple(a, b); }
inline m cmpgt(f a, f b) { return F::cmpgt(a, b); }
inline f sel(m c, f a, f b) { return F::select(c, a, b); }  // c ? a : b
inline f zeroIf(m c, f a) { return F::zeroIf(c, a); }      // c ? +0 : a
inline m or_(m a, m b) { return F::mor(a, b); }
inline f div(f a, f b) { return F::div(a, b); }
inline f k(float x) { return F::set1(x); }
inline f add(f a, f b) { return F::add(a, b); }
inline f sub(f a, f b) { return F::sub(a, b); }
inline f mul(f a, f b) { return F::mul(a, b); }

template <Rcp R_>
inline f rcpv(f a) {
  const f r = F::rcp(a);
  if constexpr (R_ == Rcp::A) return r;
  else return sub(add(r, r), mul(mul(a, r), r));
}

// ---- RGB -> HLS, integer depths ------------------------------------------------------
template <Rcp R_, HueK Hk, bool B8>
struct HlsFwd {
  static void vec(f R, f G, f B, f& h, f& lf, f& s) {
    const float S2 = B8 ? 255.0f : 65535.0f, K = B8 ? 0.7083333f : 182.04167f;
    const f mx = F::max(F::max(R, G), B), mn = F::min(F::min(R, G), B);
    const f D = sub(mx, mn), U = add(mn, mx);
    lf = mul(U, k(0.5f));
    const m gray = cmpeq(D, F::zero());
    const f W = sel(cmple(lf, k(S2 * 0.5f)), U, sub(k(2.0f * S2), U));
    s = zeroIf(gray, mul(mul(D, rcpv<R_>(W)), k(S2)));
    f hR, hG, hB;
    if constexpr (Hk == HueK::KFirst) {
      const f kk = mul(k(60.0f), rcpv<R_>(D));
      hR = mul(sub(G, B), kk), hG = add(mul(sub(B, R), kk), k(120.0f)), hB = add(mul(sub(R, G), kk), k(240.0f));
    } else {
      const f r = rcpv<R_>(D);
      hR = mul(mul(sub(G, B), k(60.0f)), r);
      hG = add(mul(mul(sub(B, R), k(60.0f)), r), k(120.0f));
      hB = add(mul(mul(sub(R, G), k(60.0f)), r), k(240.0f));
    }
    f hue = sel(cmpeq(mx, R), hR, sel(cmpeq(mx, G), hG, hB));
    hue = sel(cmplt(hue, F::zero()), add(hue, k(360.0f)), hue);
    h = zeroIf(gray, mul(hue, k(K)));
  }
};

// 32f, true divisions. Where the branches divide different operands in the
// same way, each lane picks its operands first and one division serves all
// (the same operations on the same values per lane; divisions are the cost).
struct Hls32f {
  static void vec(f R, f G, f B, f& H, f& L, f& S) {
    const f mx = F::max(F::max(R, G), B), mn = F::min(F::min(R, G), B);
    const f D = sub(mx, mn), U = add(mx, mn);
    const m gray = cmple(D, k(1.1920929e-7f));
    S = zeroIf(gray, div(D, sel(cmple(mul(k(0.5f), U), k(0.5f)), U, sub(k(2.0f), U))));
    const m isR = cmpeq(mx, R), isG = cmpeq(mx, G);
    const f q = div(mul(k(60.0f), sel(isR, sub(G, B), sel(isG, sub(B, R), sub(R, G)))), D);
    f hue = sel(isR, q, sel(isG, add(k(120.0f), q), add(k(240.0f), q)));
    hue = sel(cmplt(hue, F::zero()), add(hue, k(360.0f)), hue);
    H = zeroIf(gray, div(hue, k(360.0f)));
    L = mul(k(0.5f), U);
  }
};

// ---- HLS -> RGB -------------------------------------------------------------------
template <Kind K>
inline f m2Of(f l, f s) {
  f lo, hi;
  if constexpr (K == Kind::A) lo = add(mul(l, s), l), hi = add(sub(s, mul(l, s)), l);
  else if constexpr (K == Kind::B) lo = mul(l, add(s, k(1.0f))), hi = sub(add(l, s), mul(l, s));
  else lo = add(l, mul(l, s)), hi = sub(add(l, s), mul(l, s));
  return sel(cmple(l, k(0.5f)), lo, hi);
}
template <Kind K>
inline f rampOf(f m1, f m2, f x) {
  if constexpr (K == Kind::A) return add(mul(mul(sub(m2, m1), x), k(0.016666668f)), m1);
  else if constexpr (K == Kind::B) return add(m1, div(mul(sub(m2, m1), x), k(60.0f)));
  else return add(mul(mul(x, k(0.016666668f)), sub(m2, m1)), m1);
}
template <Kind Km, Kind Kr>
inline void hlsInv(f h, f l, f s, f& r, f& g, f& b) {
  const f m2 = m2Of<Km>(l, s), m1 = sub(mul(k(2.0f), l), m2);
  // The rising and the falling ramp are one expression on the argument x
  // or 240 - x, chosen first: the same operations on the same values.
  auto fn = [&](f x) {
    const m lo = cmplt(x, k(60.0f));
    const f rp = rampOf<Kr>(m1, m2, sel(lo, x, sub(k(240.0f), x)));
    return sel(lo, rp, sel(cmplt(x, k(180.0f)), m2, sel(cmplt(x, k(240.0f)), rp, m1)));
  };
  f hr = add(h, k(120.0f));
  hr = sel(cmpgt(hr, k(360.0f)), sub(hr, k(360.0f)), hr);
  f hb = sub(h, k(120.0f));
  hb = sel(cmplt(hb, F::zero()), add(hb, k(360.0f)), hb);
  r = fn(hr), g = fn(h), b = fn(hb);
}
// Depth 8 (multiplied scalings), 16 or 32; results times the full scale.
template <int Depth, Kind Km, Kind Kr>
struct HlsInv {
  static void vec(f H, f L, f S, f& r, f& g, f& b) {
    f h, l, s;
    if constexpr (Depth == 8) h = mul(H, k(1.4117647f)), l = mul(L, k(0.003921569f)), s = mul(S, k(0.003921569f));
    else if constexpr (Depth == 16)
      h = mul(H, k(0.005493248f)), l = mul(L, k(1.5259022e-5f)), s = mul(S, k(1.5259022e-5f));
    else h = mul(k(hlshsv::f32K(hlshsv::kf360)), H), l = L, s = S;
    hlsInv<Km, Kr>(h, l, s, r, g, b);
    if constexpr (Depth != 32) {
      const f full = k(Depth == 8 ? 255.0f : 65535.0f);
      r = mul(full, r), g = mul(full, g), b = mul(full, b);
    }
  }
};

// ---- RGB -> HSV -------------------------------------------------------------------
template <Rcp R_, bool B8>
struct HsvFwd {  // the body form: sextants B over R over G
  static void vec(f R, f G, f B, f& h, f& s, f& v) {
    using hlshsv::hsvK;
    const f T = k(hsvK(B8 ? hlshsv::kT8 : hlshsv::kT16)), E = k(hsvK(B8 ? hlshsv::kE8 : hlshsv::kE16));
    const f mx = F::max(F::max(R, G), B), mn = F::min(F::min(R, G), B);
    const f D = sub(mx, mn);
    const m gray = or_(cmpeq(mx, F::zero()), cmpeq(D, F::zero()));
    s = zeroIf(gray, mul(mul(rcpv<R_>(mx), D), T));
    const f r = rcpv<R_>(D);
    const f a = mul(sub(mx, R), r), b = mul(sub(mx, G), r), c = mul(sub(mx, B), r);
    const f tB = add(sub(b, a), k(hsvK(hlshsv::k4))), tR = sub(c, b), tG = add(sub(a, c), k(hsvK(hlshsv::k2)));
    const f t = sel(cmpeq(mx, B), tB, sel(cmpeq(mx, R), tR, tG));
    f hh = mul(t, E);
    hh = sel(cmplt(hh, F::zero()), add(hh, T), hh);
    h = zeroIf(gray, hh);
    v = mx;
  }
};

// ---- HSV -> RGB -------------------------------------------------------------------
template <bool B8>
struct HsvInv {
  static void vec(f H, f S, f V, f& r, f& g, f& b) {
    using namespace hlshsv;
    H = zeroIf(cmpeq(H, k(hsvK(B8 ? kT8 : kT16))), H);
    const f q = mul(mul(H, k(hsvK(kSixtieth))), k(hsvK(B8 ? kP8 : kP16)));
    const f fi = F::cvt(F::cvtt(q));
    const f fr = sub(q, fi);
    const f vs = mul(V, mul(S, k(hsvK(B8 ? kC8 : kC16))));
    const f p = sub(V, vs), t1 = mul(fr, vs), qv = sub(V, t1), tv = add(p, t1);
    const m i1 = cmpeq(fi, k(1.0f)), i2 = cmpeq(fi, k(2.0f)), i3 = cmpeq(fi, k(3.0f));
    const m i4 = cmpeq(fi, k(4.0f)), i5 = cmpeq(fi, k(5.0f));
    r = sel(i4, tv, sel(or_(i2, i3), p, sel(i1, qv, V)));
    g = sel(or_(i4, i5), p, sel(i3, qv, sel(or_(i1, i2), V, tv)));
    b = sel(i5, qv, sel(or_(i3, i4), V, sel(i2, tv, p)));
  }
};

// ---- 8-bit pixels -----------------------------------------------------------------
// 16 pixels per lane: each channel widened to four float vectors, the core
// run four times, the results converted (nearest or toward zero) and
// narrowed with saturation. SwapIn / SwapOut reverse the channel order of
// the BGR forms.
template <class Core, bool Near, bool SwapIn = false, bool SwapOut = false>
struct Bytes {
  static void vec(v a, v b, v c, v& x, v& y, v& z) {
    if constexpr (SwapIn) std::swap(a, c);
    v qa[4], qb[4], qc[4], qx[4], qy[4], qz[4];
    widen32(a, qa), widen32(b, qb), widen32(c, qc);
    for (int i = 0; i < 4; ++i) {
      f o0, o1, o2;
      Core::vec(F::cvt(qa[i]), F::cvt(qb[i]), F::cvt(qc[i]), o0, o1, o2);
      qx[i] = Near ? F::cvtn(o0) : F::cvtt(o0);
      qy[i] = Near ? F::cvtn(o1) : F::cvtt(o1);
      qz[i] = Near ? F::cvtn(o2) : F::cvtt(o2);
    }
    x = narrow32(qx), y = narrow32(qy), z = narrow32(qz);
    if constexpr (SwapOut) std::swap(x, z);
  }
};

// ---- 16-bit outputs (the bodies convert to nearest) --------------------------------
template <bool Sat>
struct OutNear {
  template <class T>
  static fi prep(f a) {
    const fi t = F::cvtn(a);
    const fi u = std::is_same<T, int16_t>::value ? F::sub32(t, F::set32(32768)) : t;
    return Sat ? u : F::and_(u, F::set32(0xFFFF));
  }
  template <class T>
  static fi pack(fi a, fi b) {
    if constexpr (!Sat) return F::packus32(a, b);
    else if constexpr (std::is_same<T, int16_t>::value) return F::packs32(a, b);
    else return F::packus32(a, b);
  }
  template <class T, int Ch>
  static void put(T* p, f x, f y, f z) {
    storePx16<T, Ch>(p, prep<T>(x), prep<T>(y), prep<T>(z), [](fi a, fi b) { return pack<T>(a, b); });
  }
};

// ---- 8-bit forward and HSV bodies with the choices made on bytes -------------------
// Maxima, minima, D and the sextant's operands are exact small integers, so
// they are found 16 pixels at a time on bytes; the float lanes only see the
// values that enter the float operations of the definitions, which are
// formed from the same integers.
inline v maxu8(v a, v b) { return V::maxu8(a, b); }
inline v minu8(v a, v b) { return V::minu8(a, b); }
inline v minu16(v a, v b) { return V::minu16(a, b); }
inline v subu8(v a, v b) { return V::sub8(a, b); }
// 8 words per lane as two float vectors (words 0-3, 4-7), unsigned or signed.
inline void floatsU16(v x, f& lo, f& hi) {
  lo = F::cvt(V::unpacklo16(x, V::zero())), hi = F::cvt(V::unpackhi16(x, V::zero()));
}
inline void floatsS16(v x, f& lo, f& hi) {
  lo = F::cvt(V::srai32<16>(V::unpacklo16(x, x))), hi = F::cvt(V::srai32<16>(V::unpackhi16(x, x)));
}
// 16 bytes per lane as four float vectors.
inline void floats8(v x, f q[4]) {
  v w[4];
  widen32(x, w);
  for (int i = 0; i < 4; ++i) q[i] = F::cvt(w[i]);
}
// The same in the split of splitBytes32; results go back with joinBytes32
// and must then lie in 0..255.
inline void floatsBytes(v x, f q[4]) {
  v w[4];
  splitBytes32(x, w);
  for (int i = 0; i < 4; ++i) q[i] = F::cvt(w[i]);
}

// RGB -> HLS: with mR = (mx = R), mG = (mx = G) the hue is (P - Q) times
// the reciprocal term plus 0, 120 or 240, with (P, Q) = (G, B), (B, R) or
// (R, G). An added 0 only turns a -0 hue into +0, which converts alike.
// W = U below the middle, 510 - U above: min(U, 510 - U).
template <Rcp R_, HueK Hk, bool Near, bool Bgr>
struct HlsFwd8 {
  static void vec(v a, v g, v c, v& H, v& L, v& S) {
    const v r = Bgr ? c : a, b = Bgr ? a : c;
    const v mx = maxu8(maxu8(r, g), b), mn = minu8(minu8(r, g), b);
    const v D = subu8(mx, mn);
    const m8 gray = eq8m(D, V::zero());
    const m8 mR = eq8m(mx, r), mG = mandn8(mR, eq8m(mx, g));
    const v P = sel8(mR, sel8(mG, r, b), g), Q = sel8(mR, sel8(mG, g, r), b);
    const v off = sel8(mR, sel8(mG, V::set8(240), V::set8(120)), V::zero());
    v wD[2], wU[2], wW[2], wDf[2], wO[2];
    widen(D, wD[0], wD[1]), widen(off, wO[0], wO[1]);
    v mxl, mxh, mnl, mnh, pl, ph, ql, qh;
    widen(mx, mxl, mxh), widen(mn, mnl, mnh), widen(P, pl, ph), widen(Q, ql, qh);
    wU[0] = V::add16(mxl, mnl), wU[1] = V::add16(mxh, mnh);
    for (int i = 0; i < 2; ++i) wW[i] = minu16(wU[i], V::sub16(V::set16(510), wU[i]));
    wDf[0] = V::sub16(pl, ql), wDf[1] = V::sub16(ph, qh);
    v qH[4], qL[4], qS[4];
    for (int j = 0; j < 2; ++j) {
      f Dq[2], Uq[2], Wq[2], Fq[2], Oq[2];
      floatsU16(wD[j], Dq[0], Dq[1]), floatsU16(wU[j], Uq[0], Uq[1]), floatsU16(wW[j], Wq[0], Wq[1]);
      floatsS16(wDf[j], Fq[0], Fq[1]), floatsU16(wO[j], Oq[0], Oq[1]);
      for (int i = 0; i < 2; ++i) {
        const f lf = mul(Uq[i], k(0.5f));
        const f s = mul(mul(Dq[i], rcpv<R_>(Wq[i])), k(255.0f));
        f hue;
        if constexpr (Hk == HueK::KFirst) hue = add(mul(Fq[i], mul(k(60.0f), rcpv<R_>(Dq[i]))), Oq[i]);
        else hue = add(mul(mul(Fq[i], k(60.0f)), rcpv<R_>(Dq[i])), Oq[i]);
        hue = sel(cmplt(hue, F::zero()), add(hue, k(360.0f)), hue);
        const f h = mul(hue, k(0.7083333f));
        qH[2 * j + i] = Near ? F::cvtn(h) : F::cvtt(h);
        qL[2 * j + i] = Near ? F::cvtn(lf) : F::cvtt(lf);
        qS[2 * j + i] = Near ? F::cvtn(s) : F::cvtt(s);
      }
    }
    H = zeroIf8(gray, narrow32(qH)), L = narrow32(qL), S = zeroIf8(gray, narrow32(qS));
  }
};

// RGB -> HSV body: sextants B over R over G; t = (x - y) + 0, 2 or 4 with
// x, y = (mx - X1) r, (mx - X2) r and (X1, X2) = (G, R), (B, G) or (R, B).
struct HsvFwd8 {
  static void vec(v r, v g, v b, v& H, v& S, v& Vo) {
    const v mx = maxu8(maxu8(r, g), b), mn = minu8(minu8(r, g), b);
    const v D = subu8(mx, mn);
    const m8 gray = eq8m(D, V::zero());  // mx = 0 implies D = 0
    const m8 mB = eq8m(mx, b), mR = mandn8(mB, eq8m(mx, r));
    const v X1 = sel8(mB, sel8(mR, r, b), g), X2 = sel8(mB, sel8(mR, b, g), r);
    const v off = sel8(mB, sel8(mR, V::set8(2), V::zero()), V::set8(4));
    f fm[4], fD[4], f1[4], f2[4], fo[4];
    floatsBytes(mx, fm), floatsBytes(D, fD), floatsBytes(subu8(mx, X1), f1), floatsBytes(subu8(mx, X2), f2);
    floatsBytes(off, fo);
    v qH[4], qS[4];
    for (int i = 0; i < 4; ++i) {
      const f s = mul(mul(F::rcp(fm[i]), fD[i]), k(255.0f));
      const f rD = F::rcp(fD[i]);
      const f t = add(sub(mul(f1[i], rD), mul(f2[i], rD)), fo[i]);
      f h = mul(t, k(42.5f));
      h = sel(cmplt(h, F::zero()), add(h, k(255.0f)), h);
      qH[i] = F::cvtt(h), qS[i] = F::cvtt(s);
    }
    // H is below 255 and S at most 255 (arcp(mx) * mx is below 1.0001);
    // gray lanes hold 0x80000000 and are cleared.
    H = zeroIf8(gray, joinBytes32(qH)), S = zeroIf8(gray, joinBytes32(qS)), Vo = mx;
  }
};

// HSV -> RGB body: p, qv and tv truncated per pixel, the sextant chosen on
// bytes (V needs no conversion: it is its own truncation).
struct HsvInv8 {
  // Every result below lies in 0..255 before narrowing: i in 0..5 (H <= 254
  // gives q < 6), and p, qv, tv within -0.0001..255.0001 (S * C is at most
  // 1.0000001), which truncate into range. So the bytes are narrowed
  // without saturation, as joinBytes32 does.
  static void vec(v Hb, v Sb, v Vb, v& R, v& G, v& B) {
    Hb = zeroIf8(eq8m(Hb, V::set8(255)), Hb);
    f fh[4], fs[4], fv[4];
    floatsBytes(Hb, fh), floatsBytes(Sb, fs), floatsBytes(Vb, fv);
    v qi[4], qp[4], qq[4], qt[4];
    for (int n = 0; n < 4; ++n) {
      const f q = mul(mul(fh[n], k(0.016666668f)), k(1.4117647f));
      qi[n] = F::cvtt(q);
      const f fr = sub(q, F::cvt(qi[n]));
      const f vs = mul(fv[n], mul(fs[n], k(0.003921569f)));
      const f p = sub(fv[n], vs), t1 = mul(fr, vs);
      qp[n] = F::cvtt(p), qq[n] = F::cvtt(sub(fv[n], t1)), qt[n] = F::cvtt(add(p, t1));
    }
    const v i = joinBytes32(qi), p = joinBytes32(qp), qv = joinBytes32(qq), tv = joinBytes32(qt);
    const m8 i1 = eq8m(i, V::set8(1)), i2 = eq8m(i, V::set8(2)), i3 = eq8m(i, V::set8(3));
    const m8 i4 = eq8m(i, V::set8(4)), i5 = eq8m(i, V::set8(5));
    R = sel8(i4, sel8(mor8(i2, i3), sel8(i1, Vb, qv), p), tv);
    G = sel8(mor8(i4, i5), sel8(i3, sel8(mor8(i1, i2), tv, Vb), qv), p);
    B = sel8(i5, sel8(mor8(i3, i4), sel8(i2, p, tv), Vb), qv);
  }
};

using HlsB8 = HlsFwd8<Rcp::A, HueK::KFirst, true, false>;
using RgbB8 = Bytes<HlsInv<8, Kind::A, Kind::A>, true>;
using HsvB8 = HsvFwd8;
using HsvRgbB8 = HsvInv8;
using BgrHlsB = HlsFwd8<Rcp::A, HueK::Product, false, true>;
using HlsBgrB = Bytes<HlsInv<8, Kind::C, Kind::C>, false, false, true>;

template <class T>
using HlsB16 = HlsFwd<Rcp::N, HueK::KFirst, false>;
using RgbB16 = HlsInv<16, Kind::A, Kind::A>;
using RgbB32f = HlsInv<32, Kind::C, Kind::C>;

template <Lay In, Lay Out>
constexpr Kern3 fwd3 = kern3<In, Out, BgrHlsB>;
template <Lay In, Lay Out>
constexpr Kern3 inv3 = kern3<In, Out, HlsBgrB>;

template <bool Vb>
constexpr HlsHsvKernels kTable = {
    kern8For<3, HlsB8, Vb>(),
    kern8For<4, HlsB8, Vb>(),
    kern8For<3, RgbB8, Vb>(),
    kern8For<4, RgbB8, Vb>(),
    kernF<uint16_t, 3, HlsB16<uint16_t>, OutNear<true>>,
    kernF<uint16_t, 4, HlsB16<uint16_t>, OutNear<true>>,
    kernF<uint16_t, 3, RgbB16, OutNear<true>>,
    kernF<uint16_t, 4, RgbB16, OutNear<true>>,
    kernF<int16_t, 3, HlsB16<int16_t>, OutNear<true>>,
    kernF<int16_t, 4, HlsB16<int16_t>, OutNear<true>>,
    kernF<int16_t, 3, RgbB16, OutNear<true>>,
    kernF<int16_t, 4, RgbB16, OutNear<true>>,
    kernF<float, 3, Hls32f, OutF>,
    kernF<float, 4, Hls32f, OutF>,
    kernF<float, 3, RgbB32f, OutF>,
    kernF<float, 4, RgbB32f, OutF>,
    kern8For<3, HsvB8, Vb>(),
    kern8For<4, HsvB8, Vb>(),
    kern8For<3, HsvRgbB8, Vb>(),
    kern8For<4, HsvRgbB8, Vb>(),
    kernF<uint16_t, 3, HsvFwd<Rcp::N, false>, OutNear<true>>,
    kernF<uint16_t, 4, HsvFwd<Rcp::N, false>, OutNear<true>>,
    kernF<uint16_t, 3, HsvInv<false>, OutNear<false>>,
    kernF<uint16_t, 4, HsvInv<false>, OutNear<false>>,
    {fwd3<Lay::AC4, Lay::AC4>, fwd3<Lay::C3, Lay::P3>, fwd3<Lay::P3, Lay::P3>, fwd3<Lay::AC4, Lay::P4A>,
     fwd3<Lay::P3, Lay::C4Ap>, fwd3<Lay::P3, Lay::P4Ap>},
    {inv3<Lay::P3, Lay::C3>, inv3<Lay::C3, Lay::P3>, inv3<Lay::P3, Lay::P3>, inv3<Lay::AC4, Lay::P4A>,
     inv3<Lay::P3, Lay::C4Ap>, inv3<Lay::P3, Lay::P4Ap>},
};

}  // namespace

KEL_COLOUR_TABLES(HlsHsvKernels, kHlsHsvKernels, kTable)

}  // namespace KEL_ISA_NS
}  // namespace kel
