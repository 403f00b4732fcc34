// Vector kernels of the deinterlacing forms of deinterlace.h, on the lane
// words of frame/simd.h, compiled per instruction set. Every form works on
// bytes: avg8 is pavgb, and the flooring forms use the exact identities
//   (a + b) >> 1            == (a & b) + ((a ^ b) >> 1)
//   (u + 2c + d) >> 2       == ((((u + d) >> 1) + c) >> 1)
//   (3c + n) >> 2           == floor4(c, c, n)
//   min(floor4 + 1, 255)    for the plus forms,
// and edge(c, n) == avg8(c, avg8(c, n)).
#include "chroma/deinterlace.h"
#include "frame/simd.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;
constexpr int kB = 16 * V::kLanes;

inline v favg(v a, v b) {
  const v h = V::and_(V::srli16<1>(V::xor_(a, b)), V::set8(0x7f));
  return V::add8(V::and_(a, b), h);
}
// x + 1, staying at 255.
inline v inc(v x) { return V::add8(x, V::andnot(V::cmpeq8(x, V::set8(-1)), V::set8(1))); }

template <int F>
inline v luma(v u, v c, v d) {
  if constexpr (F == kBlend) return V::avg8(V::avg8(c, u), V::avg8(c, d));
  else if constexpr (F == kCentre) return V::avg8(V::avg8(u, d), c);
  else if constexpr (F == kEdge) return V::avg8(c, V::avg8(c, d));
  else if constexpr (F == kFloor4) return favg(favg(u, d), c);
  else if constexpr (F == kFloorEdge) return favg(favg(c, d), c);
  else if constexpr (F == kPlus4) return inc(favg(favg(u, d), c));
  else return inc(favg(favg(c, d), c));
}
template <int F>
inline v chroma(v a, v b) {
  if constexpr (F == kCavg) return V::avg8(a, b);
  else if constexpr (F == kHalf) return favg(a, b);
  else return a;
}

template <int F>
int lumaK(const uint8_t* u, const uint8_t* c, const uint8_t* d, uint8_t* dst, int x, int n) {
  for (; x + kB <= n; x += kB)
    V::store<16>(dst + x, luma<F>(V::load<16>(u + x), V::load<16>(c + x), V::load<16>(d + x)));
  return x;
}

// Pairs j .. j + 16 per lane: 32 chroma bytes, split into the two planes.
template <int F>
int chromaK(const uint8_t* a, const uint8_t* b, uint8_t* d1, uint8_t* d2, int j, int n) {
  constexpr Mask16 kSplit = {{0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15}};
  const v m = V::bcast(kSplit.b);
  for (; j + kB <= n; j += kB) {
    const uint8_t *pa = a + 2 * j, *pb = b + 2 * j;
    const v s0 = V::shuffle8(chroma<F>(V::load<32>(pa), V::load<32>(pb)), m);
    const v s1 = V::shuffle8(chroma<F>(V::load<32>(pa + 16), V::load<32>(pb + 16)), m);
    V::store<16>(d1 + j, V::unpacklo64(s0, s1));
    V::store<16>(d2 + j, V::unpackhi64(s0, s1));
  }
  return j;
}

template <int L, int C>
int yuy2K(const uint8_t* u, const uint8_t* c, const uint8_t* d, const uint8_t* a, const uint8_t* b, uint8_t* dst,
          int x, int n) {
  for (; x + kB <= n; x += kB) {
    const v y = luma<L>(V::load<16>(u + x), V::load<16>(c + x), V::load<16>(d + x));
    const v ch = chroma<C>(V::load<16>(a + x), V::load<16>(b + x));
    const v lo = V::unpacklo8(y, ch), hi = V::unpackhi8(y, ch);
#if KEL_ISA == KEL_ISA_AVX2
    // Lane pairs together: whole 32-byte stores.
    V::store<16>(dst + 2 * x, _mm256_permute2x128_si256(lo, hi, 0x20));
    V::store<16>(dst + 2 * x + 32, _mm256_permute2x128_si256(lo, hi, 0x31));
#else
    V::store<16>(dst + 2 * x, lo);
    V::store<16>(dst + 2 * x + 16, hi);
#endif
  }
  return x;
}

template <int L>
constexpr void fillRow(DeinterlaceKernels& t) {
  t.luma[L] = lumaK<L>;
  t.yuy2[L][kCavg] = yuy2K<L, kCavg>;
  t.yuy2[L][kHalf] = yuy2K<L, kHalf>;
  t.yuy2[L][kKeep] = yuy2K<L, kKeep>;
}
constexpr DeinterlaceKernels makeTable() {
  DeinterlaceKernels t{};
  fillRow<kBlend>(t), fillRow<kCentre>(t), fillRow<kEdge>(t), fillRow<kFloor4>(t);
  fillRow<kFloorEdge>(t), fillRow<kPlus4>(t), fillRow<kPlusEdge>(t);
  t.chroma[kCavg] = chromaK<kCavg>, t.chroma[kHalf] = chromaK<kHalf>, t.chroma[kKeep] = chromaK<kKeep>;
  return t;
}

}  // namespace

extern const DeinterlaceKernels kDeinterlaceKernels = makeTable();

}  // namespace KEL_ISA_NS
}  // namespace kel
