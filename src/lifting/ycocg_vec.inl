// Vector bodies of the YCoCg lifting transforms, written once on the lane
// words and compiled per instruction set. Each form is the lane-wise copy of
// the scalar form of the same name in ycocg.h: 8-bit and 16-bit samples in
// 16-bit lanes (the 8-bit sums cannot overflow, the 16-bit forms wrap as they
// are defined to), the 32-bit forms in 32-bit lanes, and two forms in the
// lanes of their samples by averaging (the RGB pair forward on bytes, the
// saturating 16s body on words), which gives the same values without widening.
#include "frame/simd.h"
#include "lifting/ycocg.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;

// ---- lane arithmetic ---------------------------------------------------------
struct W16 {
  static v add(v a, v b) { return V::add16(a, b); }
  static v sub(v a, v b) { return V::sub16(a, b); }
  template <int N>
  static v sra(v a) {
    return V::srai16<N>(a);
  }
  static v set(int k) { return V::set16(k); }
};
struct W32 {
  static v add(v a, v b) { return V::add32(a, b); }
  static v sub(v a, v b) { return V::sub32(a, b); }
  template <int N>
  static v sra(v a) {
    return V::srai32<N>(a);
  }
  static v set(int k) { return V::set32(k); }
};

// ---- the forms: samples in memory order in, Y, Co, Cg out (and back) --------
template <class W>
struct Plain {  // B, G, R
  static void vec(v b, v g, v r, v& y, v& co, v& cg) {
    const v g2 = W::add(g, g), two = W::set(2);
    y = W::template sra<2>(W::add(W::add(W::add(r, g2), b), two));
    co = W::template sra<1>(W::add(W::sub(r, b), W::set(1)));
    cg = W::template sra<2>(W::add(W::sub(W::sub(g2, r), b), two));
  }
};
template <class W>
struct Rev {  // B, G, R
  static void vec(v b, v g, v r, v& y, v& co, v& cg) {
    co = W::sub(r, b);
    const v t = W::add(b, W::template sra<1>(co));
    cg = W::sub(g, t);
    y = W::add(t, W::template sra<1>(cg));
  }
};
template <class W>
struct InvPlain {  // -> B, G, R
  static void vec(v y, v co, v cg, v& b, v& g, v& r) {
    r = W::sub(W::add(y, co), cg);
    g = W::add(y, cg);
    b = W::sub(W::sub(y, co), cg);
  }
};
template <class W>
struct InvRev {  // -> B, G, R
  static void vec(v y, v co, v cg, v& b, v& g, v& r) {
    const v t = W::sub(y, W::template sra<1>(cg));
    g = W::add(cg, t);
    b = W::sub(t, W::template sra<1>(co));
    r = W::add(b, co);
  }
};
// The RGB pair forward on bytes, without widening. With c = avg8(R, B), the
// rounded-up half of R + B, and odd = (R ^ B) & 1:
//   Y        = (R + 2G + B + 2) >> 2         = avg8(c - odd, G)
//   Co + 128 = (R + (255 - B) + 2) >> 1      = avg8(R, ~B) + odd
//   Cg + 128 = (2G + (510 - R - B) + 4) >> 2 = avg8(~c, G) + (~(~c ^ G) & 1)
// Co and Cg are at least 1 before the limit, so a sum that wraps to 0 was
// 256 and becomes 255: the upper limit of the pair.
struct PairFwd {  // R, G, B
  static v top(v a) { return V::or_(a, V::cmpeq8(a, V::zero())); }
  static void vec(v r, v g, v b, v& y, v& co, v& cg) {
    const v one = V::set8(1), ones = V::set8(-1);
    const v c = V::avg8(r, b), odd = V::and_(V::xor_(r, b), one);
    y = V::avg8(V::add8(c, V::cmpeq8(odd, one)), g);
    co = top(V::add8(V::avg8(r, V::xor_(b, ones)), odd));
    const v nc = V::xor_(c, ones);
    cg = top(V::add8(V::avg8(nc, g), V::andnot(V::xor_(nc, g), one)));
  }
};
// The RGB pair back in 16-bit lanes; the byte pack limits to 0..255.
struct PairInv {  // -> R, G, B
  static void vec(v y, v co, v cg, v& r, v& g, v& b) {
    r = V::sub16(V::add16(y, co), cg);
    g = V::sub16(V::add16(y, cg), V::set16(128));
    b = V::add16(V::sub16(V::sub16(y, co), cg), V::set16(256));
  }
};

// Signed 16-bit samples to 32-bit lanes: lo holds words 0-3 of each lane, hi 4-7.
inline void wide(v a, v& lo, v& hi) {
  lo = V::srai32<16>(V::unpacklo16(a, a));
  hi = V::srai32<16>(V::unpackhi16(a, a));
}
// The body form of the plain 16s forward members in 16-bit lanes: the 32-bit
// sums, saturated at the end. Samples biased to unsigned (s ^ 0x8000) let
// avg16 form exact 17-bit halves. With c = avg16(R', B'), the biased half of
// R + B rounded up, and odd = (R ^ B) & 1:
//   Y  = avg16(c - odd, G') ^ 0x8000                   (never out of range)
//   Co = adds16(avg16(R', ~B') ^ 0x8000, odd)
//   Cg = adds16(avg16(~c, G') ^ 0x8000, ~(~c ^ G') & 1)
// where the saturating add cuts the one value 32768 that Co and Cg can reach.
struct PlainSat16 {  // B, G, R
  static void vec(v b, v g, v r, v& y, v& co, v& cg) {
    const v sign = V::set16(-32768), one = V::set16(1), ones = V::set16(-1);
    const v rb = V::xor_(r, sign), bb = V::xor_(b, sign), gb = V::xor_(g, sign);
    const v c = V::avg16(rb, bb), odd = V::and_(V::xor_(r, b), one);
    y = V::xor_(V::avg16(V::sub16(c, odd), gb), sign);
    co = V::adds16(V::xor_(V::avg16(rb, V::xor_(bb, ones)), sign), odd);
    const v nc = V::xor_(c, ones);
    cg = V::adds16(V::xor_(V::avg16(nc, gb), sign), V::andnot(V::xor_(nc, gb), one));
  }
};

// ---- 16-bit pixels, 8 per lane -------------------------------------------------
// C3: words of channel `ch` out of block k of a 48-byte group, and back.
constexpr Mask16 maskW3Gather(int ch, int k) {
  Mask16 m{};
  for (int i = 0; i < 8; ++i)
    for (int h = 0; h < 2; ++h) {
      const int src = 2 * (3 * i + ch) + h;
      m.b[2 * i + h] = src / 16 == k ? static_cast<int8_t>(src % 16) : static_cast<int8_t>(-128);
    }
  return m;
}
constexpr Mask16 maskW3Scatter(int ch, int k) {
  Mask16 m{};
  for (int j = 0; j < 16; ++j) {
    const int word = (16 * k + j) / 2, h = j & 1;
    m.b[j] = word % 3 == ch ? static_cast<int8_t>(2 * (word / 3) + h) : static_cast<int8_t>(-128);
  }
  return m;
}
inline constexpr Mask16 kW3G[3][3] = {{maskW3Gather(0, 0), maskW3Gather(0, 1), maskW3Gather(0, 2)},
                                      {maskW3Gather(1, 0), maskW3Gather(1, 1), maskW3Gather(1, 2)},
                                      {maskW3Gather(2, 0), maskW3Gather(2, 1), maskW3Gather(2, 2)}};
inline constexpr Mask16 kW3S[3][3] = {{maskW3Scatter(0, 0), maskW3Scatter(0, 1), maskW3Scatter(0, 2)},
                                      {maskW3Scatter(1, 0), maskW3Scatter(1, 1), maskW3Scatter(1, 2)},
                                      {maskW3Scatter(2, 0), maskW3Scatter(2, 1), maskW3Scatter(2, 2)}};

// The first three channels of 8 * kLanes pixels of Ch words.
template <int Ch>
inline void loadW(const uint8_t* p, v& c0, v& c1, v& c2) {
  if constexpr (Ch == 3) {
    const v a = V::load<48>(p), b = V::load<48>(p + 16), c = V::load<48>(p + 32);
    v out[3];
    for (int ch = 0; ch < 3; ++ch)
      out[ch] = V::or_(V::or_(V::shuffle8(a, V::bcast(kW3G[ch][0].b)), V::shuffle8(b, V::bcast(kW3G[ch][1].b))),
                       V::shuffle8(c, V::bcast(kW3G[ch][2].b)));
    c0 = out[0], c1 = out[1], c2 = out[2];
  } else {
    const v a = V::load<64>(p), b = V::load<64>(p + 16), c = V::load<64>(p + 32), d = V::load<64>(p + 48);
    const v t0 = V::unpacklo16(a, b), t1 = V::unpackhi16(a, b);  // 0 2 pairs, 1 3 pairs
    const v t2 = V::unpacklo16(c, d), t3 = V::unpackhi16(c, d);
    const v u0 = V::unpacklo16(t0, t1), u1 = V::unpackhi16(t0, t1);  // c0 0-3 c1 0-3 | c2 0-3 c3 0-3
    const v u2 = V::unpacklo16(t2, t3), u3 = V::unpackhi16(t2, t3);
    c0 = V::unpacklo64(u0, u2), c1 = V::unpackhi64(u0, u2), c2 = V::unpacklo64(u1, u3);
  }
}
// Three channels (and for C4 the fourth, `c3`) into 8 * kLanes pixels of Ch words.
template <int Ch>
inline void storeW(uint8_t* p, v c0, v c1, v c2, v c3) {
  if constexpr (Ch == 3) {
    for (int k = 0; k < 3; ++k)
      V::store<48>(p + 16 * k,
                   V::or_(V::or_(V::shuffle8(c0, V::bcast(kW3S[0][k].b)), V::shuffle8(c1, V::bcast(kW3S[1][k].b))),
                          V::shuffle8(c2, V::bcast(kW3S[2][k].b))));
  } else {
    const v t0 = V::unpacklo16(c0, c1), t1 = V::unpackhi16(c0, c1);
    const v t2 = V::unpacklo16(c2, c3), t3 = V::unpackhi16(c2, c3);
    V::store<64>(p, V::unpacklo32(t0, t2));
    V::store<64>(p + 16, V::unpackhi32(t0, t2));
    V::store<64>(p + 32, V::unpacklo32(t1, t3));
    V::store<64>(p + 48, V::unpackhi32(t1, t3));
  }
}

// ---- kernels ---------------------------------------------------------------------
// 8-bit pixels to planes, 16 pixels per lane. Wide: a form in 16-bit lanes
// and 16-bit planes (two stores of 8 words per lane); otherwise a form on
// bytes and byte planes.
template <int Ch, class Form, bool Wide>
int toPlanes8(const YcocgRow& row, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  const YcocgRow io = row;  // byte stores could otherwise force reloads of the pointers
  for (; x + kBlock <= n; x += kBlock) {
    v a, b, c, alpha;
    if constexpr (Ch == 3) {
      loadC3(io.s[0] + 3 * x, a, b, c);
    } else {
      loadC4(io.s[0] + 4 * x, a, b, c, alpha);
    }
    if constexpr (Wide) {
      v al, ah, bl, bh, cl, ch, lo[3], hi[3];
      widen(a, al, ah), widen(b, bl, bh), widen(c, cl, ch);
      Form::vec(al, bl, cl, lo[0], lo[1], lo[2]);
      Form::vec(ah, bh, ch, hi[0], hi[1], hi[2]);
      for (int k = 0; k < 3; ++k) {
        V::store<32>(io.d[k] + 2 * x, lo[k]);
        V::store<32>(io.d[k] + 2 * x + 16, hi[k]);
      }
    } else {
      v o[3];
      Form::vec(a, b, c, o[0], o[1], o[2]);
      for (int k = 0; k < 3; ++k) V::store<16>(io.d[k] + x, o[k]);
    }
  }
  return x;
}
// Planes to 8-bit pixels, 16 pixels per lane; results clipped to bytes.
template <int Ch, class Form, bool Wide>
int toPixels8(const YcocgRow& row, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  const YcocgRow io = row;
  const v alpha = V::set8(io.alpha);
  for (; x + kBlock <= n; x += kBlock) {
    v lo[3], hi[3], o0[3], o1[3];
    for (int k = 0; k < 3; ++k) {
      if constexpr (Wide) {
        lo[k] = V::load<32>(io.s[k] + 2 * x), hi[k] = V::load<32>(io.s[k] + 2 * x + 16);
      } else {
        widen(V::load<16>(io.s[k] + x), lo[k], hi[k]);
      }
    }
    Form::vec(lo[0], lo[1], lo[2], o0[0], o0[1], o0[2]);
    Form::vec(hi[0], hi[1], hi[2], o1[0], o1[1], o1[2]);
    const v a = V::packus16(o0[0], o1[0]), b = V::packus16(o0[1], o1[1]), c = V::packus16(o0[2], o1[2]);
    if constexpr (Ch == 3)
      storeC3(io.d[0] + 3 * x, a, b, c);
    else
      storeC4(io.d[0] + 4 * x, a, b, c, alpha);
  }
  return x;
}

// 16-bit pixels to 16-bit planes, 8 pixels per lane; Form maps words to words.
template <int Ch, class Form>
int toPlanes16(const YcocgRow& row, int x, int n) {
  constexpr int kBlock = 8 * V::kLanes;
  const YcocgRow io = row;
  for (; x + kBlock <= n; x += kBlock) {
    v a, b, c, o[3];
    loadW<Ch>(io.s[0] + 2 * Ch * x, a, b, c);
    Form::vec(a, b, c, o[0], o[1], o[2]);
    for (int k = 0; k < 3; ++k) V::store<16>(io.d[k] + 2 * x, o[k]);
  }
  return x;
}
// 16-bit pixels to 32-bit planes.
template <int Ch, class Form>
int toPlanes32(const YcocgRow& row, int x, int n) {
  constexpr int kBlock = 8 * V::kLanes;
  const YcocgRow io = row;
  for (; x + kBlock <= n; x += kBlock) {
    v a, b, c, al, ah, bl, bh, cl, ch, lo[3], hi[3];
    loadW<Ch>(io.s[0] + 2 * Ch * x, a, b, c);
    wide(a, al, ah), wide(b, bl, bh), wide(c, cl, ch);
    Form::vec(al, bl, cl, lo[0], lo[1], lo[2]);
    Form::vec(ah, bh, ch, hi[0], hi[1], hi[2]);
    for (int k = 0; k < 3; ++k) {
      V::store<32>(io.d[k] + 4 * x, lo[k]);
      V::store<32>(io.d[k] + 4 * x + 16, hi[k]);
    }
  }
  return x;
}
// 16-bit planes to 16-bit pixels (16-bit lanes, wrapping).
template <int Ch, class Form>
int toPixels16(const YcocgRow& row, int x, int n) {
  constexpr int kBlock = 8 * V::kLanes;
  const YcocgRow io = row;
  const v alpha = V::set16(io.alpha);
  for (; x + kBlock <= n; x += kBlock) {
    v o[3];
    Form::vec(V::load<16>(io.s[0] + 2 * x), V::load<16>(io.s[1] + 2 * x), V::load<16>(io.s[2] + 2 * x), o[0], o[1],
              o[2]);
    storeW<Ch>(io.d[0] + 2 * Ch * x, o[0], o[1], o[2], alpha);
  }
  return x;
}
// 32-bit planes to 16-bit pixels: 32-bit lanes, the low 16 bits kept.
template <int Ch, class Form>
int toPixels32(const YcocgRow& row, int x, int n) {
  constexpr int kBlock = 8 * V::kLanes;
  const YcocgRow io = row;
  const v alpha = V::set16(io.alpha), low = V::set32(0xFFFF);
  for (; x + kBlock <= n; x += kBlock) {
    v lo[3], hi[3], o0[3], o1[3], o[3];
    for (int k = 0; k < 3; ++k) lo[k] = V::load<32>(io.s[k] + 4 * x), hi[k] = V::load<32>(io.s[k] + 4 * x + 16);
    Form::vec(lo[0], lo[1], lo[2], o0[0], o0[1], o0[2]);
    Form::vec(hi[0], hi[1], hi[2], o1[0], o1[1], o1[2]);
    for (int k = 0; k < 3; ++k) o[k] = V::packus32(V::and_(o0[k], low), V::and_(o1[k], low));
    storeW<Ch>(io.d[0] + 2 * Ch * x, o[0], o[1], o[2], alpha);
  }
  return x;
}

}  // namespace

extern const YcocgKernels kYcocgKernels = {
    {{toPlanes8<3, Plain<W16>, true>, toPlanes8<4, Plain<W16>, true>},
     {toPlanes8<3, Rev<W16>, true>, toPlanes8<4, Rev<W16>, true>}},
    {{toPixels8<3, InvPlain<W16>, true>, toPixels8<4, InvPlain<W16>, true>},
     {toPixels8<3, InvRev<W16>, true>, toPixels8<4, InvRev<W16>, true>}},
    {{toPlanes16<3, PlainSat16>, toPlanes16<4, PlainSat16>}, {toPlanes16<3, Rev<W16>>, toPlanes16<4, Rev<W16>>}},
    {{toPixels16<3, InvPlain<W16>>, toPixels16<4, InvPlain<W16>>},
     {toPixels16<3, InvRev<W16>>, toPixels16<4, InvRev<W16>>}},
    {{toPlanes32<3, Plain<W32>>, toPlanes32<4, Plain<W32>>}, {toPlanes32<3, Rev<W32>>, toPlanes32<4, Rev<W32>>}},
    {{toPixels32<3, InvPlain<W32>>, toPixels32<4, InvPlain<W32>>},
     {toPixels32<3, InvRev<W32>>, toPixels32<4, InvRev<W32>>}},
    toPlanes8<3, PairFwd, false>,
    toPixels8<3, PairInv, false>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
