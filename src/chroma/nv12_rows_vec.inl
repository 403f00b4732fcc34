// Vector kernels of the byte moves of nv12_rows.h, written once on the lane
// words of frame/simd.h and compiled per instruction set. Each lane treats
// 16 bytes of the narrower side a pass.
#include "chroma/nv12_rows.h"
#include "frame/simd.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;
constexpr int kB = 16 * V::kLanes;

// Even bytes to the low half, odd bytes to the high half.
constexpr Mask16 kSplit = {{0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15}};
// Four Y0 Cb Y1 Cr quads to Y x8, Cb x4, Cr x4; and the same from Cb Y0 Cr Y1.
constexpr Mask16 kQuadYuyv = {{0, 2, 4, 6, 8, 10, 12, 14, 1, 5, 9, 13, 3, 7, 11, 15}};
constexpr Mask16 kQuadUyvy = {{1, 3, 5, 7, 9, 11, 13, 15, 0, 4, 8, 12, 2, 6, 10, 14}};
// Cb x4 Cr x4 Cb x4 Cr x4 to Cb x8 Cr x8.
constexpr Mask16 kChromaRuns = {{0, 1, 2, 3, 8, 9, 10, 11, 4, 5, 6, 7, 12, 13, 14, 15}};
constexpr Mask16 kSwap = {{1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14}};

template <bool Nt, int Stride>
inline void put(uint8_t* p, v x) {
  if constexpr (Nt) V::stream<Stride>(p, x);
  else V::store<Stride>(p, x);
}
// The two halves of an interleave: lane i of lo to p + 32i, of hi to
// p + 32i + 16. The AVX2 build puts each lane pair together first, so that
// it writes whole 32-byte vectors.
template <bool Nt>
inline void put2(uint8_t* p, v lo, v hi) {
#if KEL_ISA == KEL_ISA_AVX2
  put<Nt, 16>(p, _mm256_permute2x128_si256(lo, hi, 0x20));
  put<Nt, 16>(p + 32, _mm256_permute2x128_si256(lo, hi, 0x31));
#else
  put<Nt, 16>(p, lo);
  put<Nt, 16>(p + 16, hi);
#endif
}

int zip2(const uint8_t* a, const uint8_t* b, uint8_t* d, int x, int n) {
  for (; x + kB <= n; x += kB) {
    const v va = V::load<16>(a + x), vb = V::load<16>(b + x);
    put2<false>(d + 2 * x, V::unpacklo8(va, vb), V::unpackhi8(va, vb));
  }
  return x;
}

// The two halves of 32 source bytes per lane, each split into even and odd.
inline void split(const uint8_t* s, v& even, v& odd) {
  const v m = V::bcast(kSplit.b);
  const v s0 = V::shuffle8(V::load<32>(s), m), s1 = V::shuffle8(V::load<32>(s + 16), m);
  even = V::unpacklo64(s0, s1);
  odd = V::unpackhi64(s0, s1);
}

int unzip2(const uint8_t* s, uint8_t* a, uint8_t* b, int x, int n) {
  for (; x + kB <= n; x += kB) {
    v e, o;
    split(s + 2 * x, e, o);
    V::store<16>(a + x, e);
    V::store<16>(b + x, o);
  }
  return x;
}

template <bool Odd>
int pick2(const uint8_t* s, uint8_t* a, int x, int n) {
  for (; x + kB <= n; x += kB) {
    v e, o;
    split(s + 2 * x, e, o);
    V::store<16>(a + x, Odd ? o : e);
  }
  return x;
}

template <bool CbYCr, bool Nt>
int pack4(const uint8_t* y, const uint8_t* cb, const uint8_t* cr, uint8_t* d, int x, int n) {
  for (; x + kB <= n; x += kB) {
    const v vy = V::load<16>(y + x);
    const v c = V::unpacklo8(V::load8<8>(cb + (x >> 1)), V::load8<8>(cr + (x >> 1)));
    if (CbYCr) put2<Nt>(d + 2 * x, V::unpacklo8(c, vy), V::unpackhi8(c, vy));
    else put2<Nt>(d + 2 * x, V::unpacklo8(vy, c), V::unpackhi8(vy, c));
  }
  return x;
}

template <bool CbYCr>
int unpack4(const uint8_t* s, uint8_t* y, uint8_t* cb, uint8_t* cr, int x, int n) {
  const v q = V::bcast(CbYCr ? kQuadUyvy.b : kQuadYuyv.b), runs = V::bcast(kChromaRuns.b);
  for (; x + kB <= n; x += kB) {
    const v t0 = V::shuffle8(V::load<32>(s + 2 * x), q), t1 = V::shuffle8(V::load<32>(s + 2 * x + 16), q);
    V::store<16>(y + x, V::unpacklo64(t0, t1));
    const v c = V::shuffle8(V::unpackhi64(t0, t1), runs);
    V::store8<8>(cb + (x >> 1), c);
    V::store8<8>(cr + (x >> 1), V::bsrli<8>(c));
  }
  return x;
}

template <bool Nt>
int swap2(const uint8_t* s, uint8_t* d, int x, int n) {
  const v m = V::bcast(kSwap.b);
  for (; x + kB <= n; x += kB) put<Nt, 16>(d + x, V::shuffle8(V::load<16>(s + x), m));
  return x;
}

}  // namespace

extern const MoveKernels kMoveKernels = {
    zip2,          unzip2,          pick2<false>,         pick2<true>,         pack4<false, false>, pack4<true, false>,
    unpack4<false>, unpack4<true>,  swap2<false>,         pack4<false, true>,  pack4<true, true>,   swap2<true>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
