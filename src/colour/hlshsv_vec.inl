// Vector bodies of RGB and BGR <-> HLS and HSV, written once on the float
// lane words and compiled per instruction set. Each core is the lane-wise
// form of the scalar definition of the same name in hlshsv.h, operation for
// operation; sextants and special pixels are chosen by masks with both
// sides evaluated. 8-bit pixels are widened to four float vectors per
// channel and narrowed back with saturation.
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
#if KEL_ISA == KEL_ISA_SSE41
inline f cmpeq(f a, f b) { return _mm_cmpeq_ps(a, b); }
inline f cmplt(f a, f b) { return _mm_cmplt_ps(a, b); }
inline f cmple(f a, f b) { return _mm_cmple_ps(a, b); }
inline f cmpgt(f a, f b) { return _mm_cmpgt_ps(a, b); }
inline f sel(f m, f a, f b) { return _mm_blendv_ps(b, a, m); }  // m ? a : b
inline f zeroIf(f m, f a) { return _mm_andnot_ps(m, a); }       // m ? +0 : a
inline f or_(f a, f b) { return _mm_or_ps(a, b); }
inline f div(f a, f b) { return _mm_div_ps(a, b); }
#else
inline f cmpeq(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_EQ_OQ); }
inline f cmplt(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_LT_OS); }
inline f cmple(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_LE_OS); }
inline f cmpgt(f a, f b) { return _mm256_cmp_ps(a, b, _CMP_GT_OS); }
inline f sel(f m, f a, f b) { return _mm256_blendv_ps(b, a, m); }
inline f zeroIf(f m, f a) { return _mm256_andnot_ps(m, a); }
inline f or_(f a, f b) { return _mm256_or_ps(a, b); }
inline f div(f a, f b) { return _mm256_div_ps(a, b); }
#endif
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
    const f gray = cmpeq(D, F::zero());
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

// 32f, true divisions.
struct Hls32f {
  static void vec(f R, f G, f B, f& H, f& L, f& S) {
    const f mx = F::max(F::max(R, G), B), mn = F::min(F::min(R, G), B);
    const f D = sub(mx, mn), U = add(mx, mn);
    const f gray = cmple(D, k(1.1920929e-7f));
    S = zeroIf(gray, sel(cmple(mul(k(0.5f), U), k(0.5f)), div(D, U), div(D, sub(k(2.0f), U))));
    const f hR = div(mul(k(60.0f), sub(G, B)), D);
    const f hG = add(k(120.0f), div(mul(k(60.0f), sub(B, R)), D));
    const f hB = add(k(240.0f), div(mul(k(60.0f), sub(R, G)), D));
    f hue = sel(cmpeq(mx, R), hR, sel(cmpeq(mx, G), hG, hB));
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
  auto fn = [&](f x) {
    f o = m1;
    o = sel(cmplt(x, k(240.0f)), rampOf<Kr>(m1, m2, sub(k(240.0f), x)), o);
    o = sel(cmplt(x, k(180.0f)), m2, o);
    return sel(cmplt(x, k(60.0f)), rampOf<Kr>(m1, m2, x), o);
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
    const f gray = or_(cmpeq(mx, F::zero()), cmpeq(D, F::zero()));
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
    const f i1 = cmpeq(fi, k(1.0f)), i2 = cmpeq(fi, k(2.0f)), i3 = cmpeq(fi, k(3.0f));
    const f i4 = cmpeq(fi, k(4.0f)), i5 = cmpeq(fi, k(5.0f));
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

using HlsB8 = Bytes<HlsFwd<Rcp::A, HueK::KFirst, true>, true>;
using RgbB8 = Bytes<HlsInv<8, Kind::A, Kind::A>, true>;
using HsvB8 = Bytes<HsvFwd<Rcp::A, true>, false>;
using HsvRgbB8 = Bytes<HsvInv<true>, false>;
using BgrHlsB = Bytes<HlsFwd<Rcp::A, HueK::Product, true>, false, true, false>;
using HlsBgrB = Bytes<HlsInv<8, Kind::C, Kind::C>, false, false, true>;

template <class T>
using HlsB16 = HlsFwd<Rcp::N, HueK::KFirst, false>;
using RgbB16 = HlsInv<16, Kind::A, Kind::A>;
using RgbB32f = HlsInv<32, Kind::C, Kind::C>;

template <Lay In, Lay Out>
constexpr Kern3 fwd3 = kern3<In, Out, BgrHlsB>;
template <Lay In, Lay Out>
constexpr Kern3 inv3 = kern3<In, Out, HlsBgrB>;

}  // namespace

extern const HlsHsvKernels kHlsHsvKernels = {
    kern8<3, HlsB8>,
    kern8<4, HlsB8>,
    kern8<3, RgbB8>,
    kern8<4, RgbB8>,
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
    kern8<3, HsvB8>,
    kern8<4, HsvB8>,
    kern8<3, HsvRgbB8>,
    kern8<4, HsvRgbB8>,
    kernF<uint16_t, 3, HsvFwd<Rcp::N, false>, OutNear<true>>,
    kernF<uint16_t, 4, HsvFwd<Rcp::N, false>, OutNear<true>>,
    kernF<uint16_t, 3, HsvInv<false>, OutNear<false>>,
    kernF<uint16_t, 4, HsvInv<false>, OutNear<false>>,
    {fwd3<Lay::AC4, Lay::AC4>, fwd3<Lay::C3, Lay::P3>, fwd3<Lay::P3, Lay::P3>, fwd3<Lay::AC4, Lay::P4A>,
     fwd3<Lay::P3, Lay::C4Ap>, fwd3<Lay::P3, Lay::P4Ap>},
    {inv3<Lay::P3, Lay::C3>, inv3<Lay::C3, Lay::P3>, inv3<Lay::P3, Lay::P3>, inv3<Lay::AC4, Lay::P4A>,
     inv3<Lay::P3, Lay::C4Ap>, inv3<Lay::P3, Lay::P4Ap>},
};

}  // namespace KEL_ISA_NS
}  // namespace kel
