// Vector bodies of the colour twist, written once on the lane words and
// compiled per instruction set. Channels are held in float vectors, four
// pixels per 16-byte lane, and every lane computes the scalar definition of
// twist.h with the same operations in the same order, so each path gives the
// scalar bytes exactly.
#include <cmath>

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
// The float members' additions in a fixed operand order (twist.h, addA).
inline f addA(f a, f b) {
#if KEL_ISA == KEL_ISA_SSE41
  __asm__("addps %1, %0" : "+x"(a) : "x"(b));
  return a;
#else
  f r;
  __asm__("vaddps %2, %1, %0" : "=x"(r) : "x"(a), "x"(b));
  return r;
#endif
}
template <class T>
inline f sum(const Mat& M, int i, f c0, f c1, f c2) {
  if constexpr (std::is_same<T, Kel8s>::value)
    return F::add(F::add(F::add(F::mul(c0, M.w[0][i]), F::mul(c1, M.w[1][i])), F::mul(c2, M.w[2][i])), M.w[3][i]);
  else if constexpr (std::is_same<T, Kel32f>::value)
    return addA(addA(M.w[3][i], F::mul(c0, M.w[0][i])), addA(F::mul(c2, M.w[2][i]), F::mul(c1, M.w[1][i])));
  else
    return F::add(F::add(M.w[3][i], F::mul(c0, M.w[0][i])), F::add(F::mul(c2, M.w[2][i]), F::mul(c1, M.w[1][i])));
}
inline f sum4(const Mat& M, int i, const f c[4]) {
  return addA(addA(addA(F::mul(c[0], M.w[0][i]), F::mul(c[1], M.w[1][i])), F::mul(c[2], M.w[2][i])),
              F::mul(c[3], M.w[3][i]));
}
// Limits and the conversion to nearest even. The upper limit acts in float
// (min returns its second operand for a NaN, so NaN and +inf sums end there);
// the lower one falls to the saturating packs that follow: for a sum at or
// below the upper limit, converting first and saturating after gives the
// same integer, as the conversion is monotonic, keeps the lower limit and
// gives INT32_MIN for a sum beyond 32 bits. The 8s packs saturate to -128,
// which is that form's own rule.
//
// Where the matrix keeps every sum finite and far inside the 32-bit range
// (`Bounded`), the upper limit falls to the packs as well: the conversion
// then stays inside 32 bits and the packs saturate both ways.
template <class T, bool Bounded>
inline v toInt(f s) {
  constexpr float kHi = std::is_same<T, Kel8u>::value    ? 255.0f
                        : std::is_same<T, Kel8s>::value  ? 127.0f
                        : std::is_same<T, Kel16u>::value ? 65535.0f
                                                         : 32767.0f;
  if constexpr (Bounded) return F::cvtn(s);
  else return F::cvtn(F::min(s, F::set1(kHi)));
}
// Whether every sum stays below 1e9 in magnitude for samples of type T: the
// bound in double with the float roundings of the partial sums far below its
// margin to 2^31. A NaN or infinite entry fails the test.
template <class T>
inline bool boundedSums(const TwistMat& m) {
  constexpr double kMax = std::is_same<T, Kel8u>::value ? 255.0 : std::is_same<T, Kel8s>::value ? 128.0
                          : std::is_same<T, Kel16u>::value ? 65535.0 : 32768.0;
  for (int i = 0; i < 3; ++i) {
    const double b = std::fabs(double(m.g[3][i])) +
                     kMax * (std::fabs(double(m.g[0][i])) + std::fabs(double(m.g[1][i])) + std::fabs(double(m.g[2][i])));
    if (!(b < 1e9)) return false;
  }
  return true;
}

// ---- 8-bit samples: 16 pixels per lane ------------------------------------------
// Interleaved pixels go straight from bytes to 32-bit lanes: group g of four
// pixels is one 16-byte load at kOff[g] (C3: the last group loads from byte
// 32 so that no load passes the block's 48 bytes), and one shuffle per
// channel places each sample in the low byte of its lane (8u, zero-extended)
// or the high byte (8s, sign-extended by a shift).
template <int Ch>
constexpr int groupOffset(int g) {
  return Ch == 3 ? (g == 3 ? 32 : 12 * g) : 16 * g;
}
template <int Ch, bool Signed>
constexpr Mask16 gatherMask(int g, int k) {
  Mask16 m{};
  for (int p = 0; p < 4; ++p)
    for (int b = 0; b < 4; ++b)
      m.b[4 * p + b] = (b == (Signed ? 3 : 0)) ? static_cast<int8_t>(4 * Ch * g - groupOffset<Ch>(g) + Ch * p + k)
                                               : static_cast<int8_t>(-128);
  return m;
}
template <int Ch, bool Signed>
struct GatherMasks {
  Mask16 m[4][3];
  constexpr GatherMasks() : m{} {
    for (int g = 0; g < 4; ++g)
      for (int k = 0; k < 3; ++k) m[g][k] = gatherMask<Ch, Signed>(g, k);
  }
};
template <int Ch, bool Signed>
inline constexpr GatherMasks<Ch, Signed> kGather{};

template <class T, int L>
inline void loadQ(const Row3& io, int x, v q[3][4]) {
  constexpr bool kSigned = std::is_same<T, Kel8s>::value;
  if constexpr (L == kTwP3) {
    for (int k = 0; k < 3; ++k) {
      const v a = V::load<16>(io.s[k] + x);
      if constexpr (kSigned) {
        const v lo = V::srai16<8>(V::unpacklo8(a, a)), hi = V::srai16<8>(V::unpackhi8(a, a));
        q[k][0] = V::srai32<16>(V::unpacklo16(lo, lo)), q[k][1] = V::srai32<16>(V::unpackhi16(lo, lo));
        q[k][2] = V::srai32<16>(V::unpacklo16(hi, hi)), q[k][3] = V::srai32<16>(V::unpackhi16(hi, hi));
      } else {
        widen32(a, q[k]);
      }
    }
  } else {
    constexpr int Ch = L == kTwC3 ? 3 : 4;
    const uint8_t* p = io.s[0] + Ch * x;
    for (int g = 0; g < 4; ++g) {
      const v a = V::load<16 * Ch>(p + groupOffset<Ch>(g));
      for (int k = 0; k < 3; ++k) {
        const v b = V::shuffle8(a, V::bcast(kGather<Ch, kSigned>.m[g][k].b));
        q[k][g] = kSigned ? V::srai32<24>(b) : b;
      }
    }
  }
}
// Back to 16 bytes per lane with saturation: clip8 for 8u, -128..127 for 8s.
template <class T>
inline v narrowQ(const v q[4]) {
  if constexpr (std::is_same<T, Kel8u>::value) return narrow32(q);
  else return V::packs16(V::packs32(q[0], q[1]), V::packs32(q[2], q[3]));
}

constexpr Lay layOf(int L) { return L == kTwC3 ? Lay::C3 : (L == kTwAC4 ? Lay::AC4 : Lay::P3); }

template <class T, int L, bool Bounded>
int kern8Run(const TwistRow& row, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  const Row3 io = row.p;  // a local copy: stores cannot force reloads
  const Mat M(*row.m);
  for (; x + kBlock <= n; x += kBlock) {
    v q[3][4], o[3][4];
    loadQ<T, L>(io, x, q);
    for (int g = 0; g < 4; ++g) {
      const f c0 = F::cvt(q[0][g]), c1 = F::cvt(q[1][g]), c2 = F::cvt(q[2][g]);
      for (int i = 0; i < 3; ++i) o[i][g] = toInt<T, Bounded>(sum<T>(M, i, c0, c1, c2));
    }
    store3<layOf(L)>(io, x, narrowQ<T>(o[0]), narrowQ<T>(o[1]), narrowQ<T>(o[2]));
  }
  return x;
}
template <class T, int L>
int kern8(const TwistRow& row, int x, int n) {
  if (x + 16 * V::kLanes > n) return x;  // no block: skip the set-up (a row's narrower kernels land here)
  return boundedSums<T>(*row.m) ? kern8Run<T, L, true>(row, x, n) : kern8Run<T, L, false>(row, x, n);
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
template <class T, int L, bool Nt, bool Bounded>
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
    // The saturating packs give the lower limit; within the limits they keep
    // the value, i.e. its low 16 bits.
    auto pack = [](v a, v b) { return std::is_same<T, Kel16u>::value ? F::packus32(a, b) : F::packs32(a, b); };
    const v t0 = toInt<T, Bounded>(o[0]), t1 = toInt<T, Bounded>(o[1]), t2 = toInt<T, Bounded>(o[2]);
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
template <class T, int L, bool Nt, bool Bounded>
int kernWRun(const TwistRow& row, int x, int n) {
  constexpr int kBlock = 4 * F::kLanes;
  constexpr int kPx = (L == kTwP3 ? 1 : (L == kTwC3 ? 3 : 4)) * static_cast<int>(sizeof(T));
  if constexpr (Nt)
    if (!isAligned16(row.p.d[0] + kPx * x)) return kernWRun<T, L, false, Bounded>(row, x, n);
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
    storeW<T, L, Nt, Bounded>(io, x, o);
  }
  if constexpr (Nt) _mm_sfence();
  return x;
}
template <class T, int L, bool Nt = false>
int kernW(const TwistRow& row, int x, int n) {
  if (x + 4 * F::kLanes > n) return x;
  if constexpr (!std::is_same<T, Kel32f>::value)
    if (boundedSums<T>(*row.m)) return kernWRun<T, L, Nt, true>(row, x, n);
  return kernWRun<T, L, Nt, false>(row, x, n);
}

#if KEL_ISA == KEL_ISA_AVX2
// ---- 8u C3 with AVX-512 VBMI: 64 pixels per block --------------------------------
// Group g of 16 pixels (48 bytes) comes from one 64-byte load (the last group
// loads from byte 128, inside the block's 192 bytes); a zero-masked byte
// permute puts each channel's samples in the low bytes of 32-bit lanes. The
// sums are those of the 4-pixel lanes, sixteen pixels per vector. The
// results narrow as narrow32 does (signed then unsigned saturating packs,
// clip8) within 128-bit lanes, and two byte permutes per output vector
// interleave the three channel vectors into C3.
#define KEL_WIDE_TARGET __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi")))
// (GCC 12 takes the undefined upper operands inside some AVX-512 intrinsics
// for uninitialised values.)
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
constexpr int wideOffset(int g) { return g == 3 ? 128 : 48 * g; }
struct WideIdx {
  alignas(64) uint8_t gather[4][3][64];  // group, channel
  alignas(64) uint8_t join01[3][64];     // output vector: channels 0 and 1
  alignas(64) uint8_t join2[3][64];      // output vector: channel 2
  uint64_t mask2[3];                     // bytes of channel 2 in each output vector
  constexpr WideIdx() : gather{}, join01{}, join2{}, mask2{} {
    for (int g = 0; g < 4; ++g)
      for (int k = 0; k < 3; ++k)
        for (int b = 0; b < 64; ++b)
          gather[g][k][b] = b % 4 == 0 ? static_cast<uint8_t>(48 * g + 3 * (b / 4) + k - wideOffset(g)) : 0;
    for (int v = 0; v < 3; ++v)
      for (int b = 0; b < 64; ++b) {
        const int B = 64 * v + b, P = B / 3, k = B % 3;
        // Pixel P of the block after the packs: lane (P % 16) / 4, byte
        // 4 * group + P % 4 of that lane.
        const int pos = 16 * ((P % 16) / 4) + 4 * (P / 16) + P % 4;
        join01[v][b] = static_cast<uint8_t>(k == 1 ? 64 + pos : pos);
        join2[v][b] = static_cast<uint8_t>(pos);
        if (k == 2) mask2[v] |= uint64_t{1} << b;
      }
  }
};
inline constexpr WideIdx kWideIdx{};

template <bool Bounded>
KEL_WIDE_TARGET int wide8uC3Run(const TwistRow& row, int x, int n) {
  const uint8_t* s = row.p.s[0];
  uint8_t* d = row.p.d[0];
  const TwistMat& m = *row.m;
  __m512 w[4][3];
  for (int j = 0; j < 4; ++j)
    for (int i = 0; i < 3; ++i) w[j][i] = _mm512_set1_ps(m.g[j][i]);
  const __m512 hi = _mm512_set1_ps(255.0f);
  for (; x + 64 <= n; x += 64) {
    const uint8_t* p = s + 3 * static_cast<ptrdiff_t>(x);
    prefetchAhead<192>(p);
    __m512i o[3][4];
    for (int g = 0; g < 4; ++g) {
      const __m512i a = _mm512_loadu_si512(p + wideOffset(g));
      __m512 c[3];
      for (int k = 0; k < 3; ++k)
        c[k] = _mm512_cvtepi32_ps(_mm512_maskz_permutexvar_epi8(
            0x1111111111111111ull, _mm512_load_si512(kWideIdx.gather[g][k]), a));
      for (int i = 0; i < 3; ++i) {
        __m512 sum = _mm512_add_ps(_mm512_add_ps(w[3][i], _mm512_mul_ps(c[0], w[0][i])),
                                   _mm512_add_ps(_mm512_mul_ps(c[2], w[2][i]), _mm512_mul_ps(c[1], w[1][i])));
        if constexpr (!Bounded) sum = _mm512_min_ps(sum, hi);
        o[i][g] = _mm512_cvtps_epi32(sum);
      }
    }
    __m512i ch[3];
    for (int i = 0; i < 3; ++i)
      ch[i] = _mm512_packus_epi16(_mm512_packs_epi32(o[i][0], o[i][1]), _mm512_packs_epi32(o[i][2], o[i][3]));
    uint8_t* q = d + 3 * static_cast<ptrdiff_t>(x);
    for (int v = 0; v < 3; ++v) {
      const __m512i r = _mm512_permutex2var_epi8(ch[0], _mm512_load_si512(kWideIdx.join01[v]), ch[1]);
      _mm512_storeu_si512(q + 64 * v,
                          _mm512_mask_permutexvar_epi8(r, kWideIdx.mask2[v], _mm512_load_si512(kWideIdx.join2[v]), ch[2]));
    }
  }
  return x;
}
int wide8uC3(const TwistRow& row, int x, int n) {
  if (x + 64 > n) return x;
  return boundedSums<Kel8u>(*row.m) ? wide8uC3Run<true>(row, x, n) : wide8uC3Run<false>(row, x, n);
}
#undef KEL_WIDE_TARGET

// ---- 32f C3 with AVX-512: 16 pixels per block -------------------------------------
// Three 64-byte loads; two float permutes per channel gather its 16 samples
// (samples 3p + k of the block's 48), two per output vector put them back.
// The sums are sumA32f's, each addition with its operands in that order.
#define KEL_WIDE32_TARGET __attribute__((target("avx512f")))
struct Wide32Idx {
  alignas(64) int32_t split1[3][16], split2[3][16];  // channel k from (a, b), then from (that, c)
  alignas(64) int32_t join1[3][16], join2[3][16];    // output vector v from (o0, o1), then from (that, o2)
  constexpr Wide32Idx() : split1{}, split2{}, join1{}, join2{} {
    for (int k = 0; k < 3; ++k)
      for (int p = 0; p < 16; ++p) {
        const int f = 3 * p + k;
        split1[k][p] = f < 32 ? f : 0;
        split2[k][p] = f < 32 ? p : 16 + f - 32;
      }
    for (int v = 0; v < 3; ++v)
      for (int q = 0; q < 16; ++q) {
        const int f = 16 * v + q, px = f / 3, k = f % 3;
        join1[v][q] = k < 2 ? 16 * k + px : 0;
        join2[v][q] = k < 2 ? q : 16 + px;
      }
  }
};
inline constexpr Wide32Idx kWide32Idx{};

KEL_WIDE32_TARGET inline __m512 addA512(__m512 a, __m512 b) {
  __m512 r;
  __asm__("vaddps %2, %1, %0" : "=v"(r) : "v"(a), "v"(b));
  return r;
}
KEL_WIDE32_TARGET int wide32fC3Run(const TwistRow& row, int x, int n) {
  const float* s = reinterpret_cast<const float*>(row.p.s[0]);
  float* d = reinterpret_cast<float*>(row.p.d[0]);
  const TwistMat& m = *row.m;
  __m512 w[4][3];
  for (int j = 0; j < 4; ++j)
    for (int i = 0; i < 3; ++i) w[j][i] = _mm512_set1_ps(m.g[j][i]);
  for (; x + 16 <= n; x += 16) {
    const float* p = s + 3 * static_cast<ptrdiff_t>(x);
    const __m512 a = _mm512_loadu_ps(p), b = _mm512_loadu_ps(p + 16), c = _mm512_loadu_ps(p + 32);
    __m512 ch[3], o[3];
    for (int k = 0; k < 3; ++k)
      ch[k] = _mm512_permutex2var_ps(_mm512_permutex2var_ps(a, _mm512_load_si512(kWide32Idx.split1[k]), b),
                                     _mm512_load_si512(kWide32Idx.split2[k]), c);
    for (int i = 0; i < 3; ++i)
      o[i] = addA512(addA512(w[3][i], _mm512_mul_ps(ch[0], w[0][i])),
                     addA512(_mm512_mul_ps(ch[2], w[2][i]), _mm512_mul_ps(ch[1], w[1][i])));
    float* q = d + 3 * static_cast<ptrdiff_t>(x);
    for (int v = 0; v < 3; ++v)
      _mm512_storeu_ps(q + 16 * v, _mm512_permutex2var_ps(_mm512_permutex2var_ps(o[0], _mm512_load_si512(kWide32Idx.join1[v]), o[1]),
                                                          _mm512_load_si512(kWide32Idx.join2[v]), o[2]));
  }
  return x;
}
int wide32fC3(const TwistRow& row, int x, int n) { return x + 16 > n ? x : wide32fC3Run(row, x, n); }
#undef KEL_WIDE32_TARGET
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
#endif

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
#if KEL_ISA == KEL_ISA_AVX2
    wide8uC3,
    wide32fC3,
#else
    nullptr,
    nullptr,
#endif
};

}  // namespace KEL_ISA_NS
}  // namespace kel
