// Vector bodies of the colour twist, written once on the lane words and
// compiled per instruction set. Channels are held in float vectors, four
// pixels per 16-byte lane, and every lane computes the scalar definition of
// twist.h with the same operations in the same order, so each path gives the
// scalar bytes exactly.
#include "frame/rows.h"
#include "frame/simd.h"
#include "frame/simdf.h"
#include "tone/twist.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using f = F::f;
using v = V::v;

// The local matrix with each entry in every lane: w[j][i] = m[i][j].
struct Mat {
  f w[4][4];
  explicit Mat(const TwistMat& m) {
    for (int j = 0; j < 4; ++j)
      for (int i = 0; i < 4; ++i) w[j][i] = F::set1(m.g[j][i]);
  }
};

// ---- sums and conversions, lane-wise forms of twist.h -----------------------------
template <class T>
inline f sum(const Mat& M, int i, f c0, f c1, f c2) {
  if constexpr (std::is_same<T, Kel8s>::value)
    return F::add(F::add(F::add(F::mul(c0, M.w[0][i]), F::mul(c1, M.w[1][i])), F::mul(c2, M.w[2][i])), M.w[3][i]);
  else
    return F::add(F::add(M.w[3][i], F::mul(c0, M.w[0][i])), F::add(F::mul(c2, M.w[2][i]), F::mul(c1, M.w[1][i])));
}
inline f sum4(const Mat& M, int i, const f c[4]) {
  return F::add(F::add(F::add(F::mul(c[0], M.w[0][i]), F::mul(c[1], M.w[1][i])), F::mul(c[2], M.w[2][i])),
                F::mul(c[3], M.w[3][i]));
}
// Limits, upper first (min returns its second operand for a NaN), then the
// conversion to nearest even.
inline v limited(f s, float hi, float lo) { return F::cvtn(F::max(F::min(s, F::set1(hi)), F::set1(lo))); }
template <class T>
inline v toInt(f s) {
  if constexpr (std::is_same<T, Kel8u>::value) return limited(s, 255.0f, 0.0f);
  else if constexpr (std::is_same<T, Kel8s>::value) return F::cvtn(F::min(s, F::set1(127.0f)));
  else if constexpr (std::is_same<T, Kel16u>::value) return limited(s, 65535.0f, 0.0f);
  else return limited(s, 32767.0f, -32768.0f);
}

// ---- 8-bit samples: 16 pixels per lane ------------------------------------------
// The 16 bytes of a lane as four vectors of 32-bit values and back; the
// values in range, or (8s) saturated to -128 by the packs.
template <class T>
inline void widenQ(v x, v q[4]) {
  if constexpr (std::is_same<T, Kel8u>::value) {
    widen32(x, q);
  } else {
    const v lo = V::srai16<8>(V::unpacklo8(x, x)), hi = V::srai16<8>(V::unpackhi8(x, x));
    q[0] = V::srai32<16>(V::unpacklo16(lo, lo)), q[1] = V::srai32<16>(V::unpackhi16(lo, lo));
    q[2] = V::srai32<16>(V::unpacklo16(hi, hi)), q[3] = V::srai32<16>(V::unpackhi16(hi, hi));
  }
}
template <class T>
inline v narrowQ(const v q[4]) {
  if constexpr (std::is_same<T, Kel8u>::value) return narrow32(q);
  else return V::packs16(V::packs32(q[0], q[1]), V::packs32(q[2], q[3]));
}

constexpr Lay layOf(int L) { return L == kTwC3 ? Lay::C3 : (L == kTwAC4 ? Lay::AC4 : Lay::P3); }

template <class T, int L>
int kern8(const TwistRow& row, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  constexpr Lay kLay = layOf(L);
  const Row3 io = row.p;  // a local copy: stores cannot force reloads
  const Mat M(*row.m);
  for (; x + kBlock <= n; x += kBlock) {
    v a[3], q[3][4], o[3][4];
    load3<kLay>(io, x, a[0], a[1], a[2]);
    for (int k = 0; k < 3; ++k) widenQ<T>(a[k], q[k]);
    for (int g = 0; g < 4; ++g) {
      const f c0 = F::cvt(q[0][g]), c1 = F::cvt(q[1][g]), c2 = F::cvt(q[2][g]);
      for (int i = 0; i < 3; ++i) o[i][g] = toInt<T>(sum<T>(M, i, c0, c1, c2));
    }
    store3<kLay>(io, x, narrowQ<T>(o[0]), narrowQ<T>(o[1]), narrowQ<T>(o[2]));
  }
  return x;
}

// ---- 16-bit and float samples: 4 pixels per lane ------------------------------------
// Four samples of a lane (lanes `Stride` bytes apart) as floats.
template <class T, int Stride>
inline f load4(const uint8_t* p) {
  if constexpr (std::is_same<T, Kel32f>::value) return F::load<Stride>(p);
  else if constexpr (std::is_same<T, Kel16u>::value) return F::cvt(F::u16to32(F::loadi8<Stride>(p)));
  else return F::cvt(F::s16to32(F::loadi8<Stride>(p)));
}
template <class T, int L>
inline void loadW(const Row3& io, int x, f c[4]) {
  constexpr int S = sizeof(T);
  if constexpr (L == kTwP3) {
    for (int k = 0; k < 3; ++k) c[k] = load4<T, 4 * S>(io.s[k] + S * x);
  } else {
    constexpr int Ch = L == kTwC3 ? 3 : 4, B = 4 * Ch * S;
    const uint8_t* p = io.s[0] + Ch * S * x;
    f a = load4<T, B>(p), b = load4<T, B>(p + 4 * S), d = load4<T, B>(p + 8 * S);
    if constexpr (Ch == 3) {
      splitC3(a, b, d, c[0], c[1], c[2]);
    } else {
      f e = load4<T, B>(p + 12 * S);
      transpose4(a, b, d, e);
      c[0] = a, c[1] = b, c[2] = d, c[3] = e;
    }
  }
}

template <int Stride, bool Nt>
inline void putF(uint8_t* p, f x) {
  if constexpr (Nt) V::stream<Stride>(p, F::asi(x));
  else F::store<Stride>(p, x);
}
template <class T, int L, bool Nt>
inline void storeW(const Row3& io, int x, f o[4]) {
  constexpr int S = sizeof(T);
  if constexpr (std::is_same<T, Kel32f>::value) {
    if constexpr (L == kTwP3) {
      for (int k = 0; k < 3; ++k) F::store<16>(io.d[k] + S * x, o[k]);
    } else if constexpr (L == kTwC3) {
      uint8_t* p = io.d[0] + 12 * x;
      f a, b, c;
      joinC3(o[0], o[1], o[2], a, b, c);
      putF<48, Nt>(p, a), putF<48, Nt>(p + 16, b), putF<48, Nt>(p + 32, c);
    } else if constexpr (L == kTwAC4) {
      storePx<4>(reinterpret_cast<float*>(io.d[0] + 16 * x), o[0], o[1], o[2]);
    } else {
      uint8_t* p = io.d[0] + 16 * x;
      transpose4(o[0], o[1], o[2], o[3]);
      putF<64, Nt>(p, o[0]), putF<64, Nt>(p + 16, o[1]), putF<64, Nt>(p + 32, o[2]), putF<64, Nt>(p + 48, o[3]);
    }
  } else {
    // In range after the limits, so the packs keep the values (the low 16 bits).
    auto pack = [](v a, v b) { return std::is_same<T, Kel16u>::value ? F::packus32(a, b) : F::packs32(a, b); };
    const v t0 = toInt<T>(o[0]), t1 = toInt<T>(o[1]), t2 = toInt<T>(o[2]);
    if constexpr (L == kTwP3) {
      F::storei8<8>(io.d[0] + S * x, pack(t0, t0));
      F::storei8<8>(io.d[1] + S * x, pack(t1, t1));
      F::storei8<8>(io.d[2] + S * x, pack(t2, t2));
    } else {
      constexpr int Ch = L == kTwC3 ? 3 : 4;
      storePx16<T, Ch>(reinterpret_cast<T*>(io.d[0] + Ch * S * x), t0, t1, t2, pack);
    }
  }
}

// Nt: stores stream past the cache where the destination block lies on a
// 16-byte boundary (every block of the run does when the first does).
template <class T, int L, bool Nt = false>
int kernW(const TwistRow& row, int x, int n) {
  constexpr int kBlock = 4 * F::kLanes;
  constexpr int kPx = (L == kTwP3 ? 1 : (L == kTwC3 ? 3 : 4)) * static_cast<int>(sizeof(T));
  if constexpr (Nt)
    if (!isAligned16(row.p.d[0] + kPx * x)) return kernW<T, L, false>(row, x, n);
  const Row3 io = row.p;
  const Mat M(*row.m);
  for (; x + kBlock <= n; x += kBlock) {
    f c[4], o[4];
    loadW<T, L>(io, x, c);
    if constexpr (L == kTwC4) {
      for (int i = 0; i < 4; ++i) o[i] = sum4(M, i, c);
    } else {
      for (int i = 0; i < 3; ++i) o[i] = sum<T>(M, i, c[0], c[1], c[2]);
    }
    storeW<T, L, Nt>(io, x, o);
  }
  if constexpr (Nt) _mm_sfence();
  return x;
}

}  // namespace

extern const TwistKernels kTwistKernels = {
    {{kern8<Kel8u, kTwC3>, kern8<Kel8u, kTwAC4>, kern8<Kel8u, kTwP3>},
     {kern8<Kel8s, kTwC3>, kern8<Kel8s, kTwAC4>, kern8<Kel8s, kTwP3>},
     {kernW<Kel16u, kTwC3>, kernW<Kel16u, kTwAC4>, kernW<Kel16u, kTwP3>},
     {kernW<Kel16s, kTwC3>, kernW<Kel16s, kTwAC4>, kernW<Kel16s, kTwP3>},
     {kernW<Kel32f, kTwC3>, kernW<Kel32f, kTwAC4>, kernW<Kel32f, kTwP3>}},
    kernW<Kel32f, kTwC3, true>,
    kernW<Kel32f, kTwC4>,
    kernW<Kel32f, kTwC4, true>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
