// Vector forms of BGR <-> Lab, written once on the lane words and compiled
// per instruction set; each is the lane-wise form of its scalar definition
// in lab.h. Blocks of 16 pixels per lane; the 16-bit side moves in groups of
// 4 pixels per lane at the distance of 16 pixels between lanes.
// kelcc-isa: avx512
#include "colour/lab.h"
#include "colour/luvlab_vec.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using namespace luvv;

constexpr int kBlock = 16 * V::kLanes;
constexpr int kStride16 = 16 * 3 * 2;  // bytes between the lanes' groups on a 16-bit side

// ---- BGR -> Lab ---------------------------------------------------------------
template <int Terms>
inline f cube(f t) {
  return cubeRoot<Terms>(t, F::cvtt(F::mul(t, k1(127.998047f))), 0.0190012f, 0.0158343f);
}
// f(t) from g(t): the linear branch at and below 0.008856.
inline f fOf(f t, f g) { return sel(le(t, k1(0.008856f)), g, F::add(mulk(t, 7.787f), k1(0.13793103f))); }
// L, a', b' of 4 pixels per lane, before the depth's scale.
template <int Terms>
inline void labOf(f B, f G, f R, f& L, f& a, f& b) {
  const f tx = F::mul(F::add(F::add(mulk(R, 0.412453f), mulk(G, 0.35758f)), mulk(B, 0.180423f)), k1(0.0041259914f));
  const f ty = F::mul(F::add(F::add(mulk(R, 0.212671f), mulk(G, 0.71516f)), mulk(B, 0.072169f)), k1(0.003921569f));
  const f tz = F::mul(F::add(F::add(mulk(R, 0.019334f), mulk(G, 0.119193f)), mulk(B, 0.950227f)), k1(0.0036018905f));
  const f gy = cube<Terms>(ty);  // serves f(ty) and L
  const f fx = fOf(tx, cube<Terms>(tx)), fy = fOf(ty, gy), fz = fOf(tz, cube<Terms>(tz));
  L = sel(le(ty, k1(0.008856f)), F::sub(F::mul(gy, k1(116.0f)), k1(16.0f)), mulk(ty, 903.3f));
  a = F::add(F::mul(F::sub(fx, fy), k1(500.0f)), k1(128.0f));
  b = F::add(F::mul(F::sub(fy, fz), k1(200.0f)), k1(128.0f));
}

int fwd8(const uint8_t* s, uint8_t* d, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    prefetchAhead<3 * kBlock>(s + 3 * x);
    v b, g, r;
    loadC3(s + 3 * x, b, g, r);
    f B[4], G[4], R[4];
    bytesToF(b, B), bytesToF(g, G), bytesToF(r, R);
    fi L[4], A[4], Bo[4];
    for (int k = 0; k < 4; ++k) {
      f l, a, bb;
      labOf<6>(B[k], G[k], R[k], l, a, bb);
      L[k] = F::cvtn(F::mul(l, k1(2.55f))), A[k] = F::cvtn(a), Bo[k] = F::cvtn(bb);
    }
    storeC3(d + 3 * x, intsToBytes(L), intsToBytes(A), intsToBytes(Bo));
  }
  return x;
}

int fwd16(const uint8_t* s, uint16_t* d, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    prefetchAhead<3 * kBlock>(s + 3 * x);
    v b, g, r;
    loadC3(s + 3 * x, b, g, r);
    f B[4], G[4], R[4];
    bytesToF(b, B), bytesToF(g, G), bytesToF(r, R);
    for (int k = 0; k < 4; ++k) {
      f l, a, bb;
      labOf<8>(B[k], G[k], R[k], l, a, bb);
      store16C3<kStride16>(d + 3 * (x + 4 * k), F::cvtn(F::mul(l, k1(655.35f))), F::cvtn(F::mul(a, k1(255.0f))),
                           F::cvtn(F::mul(bb, k1(255.0f))));
    }
  }
  return x;
}

// ---- Lab -> BGR -----------------------------------------------------------------
inline void bgrOf(f Lp, f A, f Bv, fi& B, fi& G, fi& R) {
  const f P = F::mul(F::add(Lp, k1(16.0f)), k1(0.00862069f));
  const f fx = F::add(P, A), fz = F::sub(P, Bv);
  const f X = F::mul(F::mul(F::mul(fx, fx), fx), k1(242.366f));
  const f Y = F::mul(F::mul(F::mul(P, P), P), k1(255.0f));
  const f Z = F::mul(F::mul(F::mul(fz, fz), fz), k1(277.632f));
  R = F::cvtn(F::sub(F::sub(mulk(X, 3.240479f), mulk(Y, 1.53715f)), mulk(Z, 0.498535f)));
  G = F::cvtn(F::add(F::add(mulk(X, -0.969256f), mulk(Y, 1.875991f)), mulk(Z, 0.041556f)));
  B = F::cvtn(F::add(F::sub(mulk(X, 0.055648f), mulk(Y, 0.204043f)), mulk(Z, 1.057311f)));
}

int inv8(const uint8_t* s, uint8_t* d, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    prefetchAhead<3 * kBlock>(s + 3 * x);
    v l, a, b;
    loadC3(s + 3 * x, l, a, b);
    f L[4], A[4], Bb[4];
    bytesToF(l, L), bytesToF(a, A), bytesToF(b, Bb);
    fi B[4], G[4], R[4];
    for (int k = 0; k < 4; ++k)
      bgrOf(mulk(L[k], 0.392156869f), F::mul(F::sub(A[k], k1(128.0f)), k1(0.002f)),
            F::mul(F::sub(Bb[k], k1(128.0f)), k1(0.005f)), B[k], G[k], R[k]);
    storeC3(d + 3 * x, intsToBytes(B), intsToBytes(G), intsToBytes(R));
  }
  return x;
}

int inv16(const uint16_t* s, uint8_t* d, int x, int n) {
  for (; x + kBlock <= n; x += kBlock) {
    prefetchAhead<6 * kBlock>(s + 3 * x);
    fi B[4], G[4], R[4];
    for (int k = 0; k < 4; ++k) {
      f L, a, b;
      load16C3<uint16_t, kStride16>(s + 3 * (x + 4 * k), L, a, b);
      bgrOf(mulk(L, 0.00152590219f), F::mul(F::sub(mulk(a, 0.00392156886f), k1(128.0f)), k1(0.002f)),
            F::mul(F::sub(mulk(b, 0.00392156886f), k1(128.0f)), k1(0.005f)), B[k], G[k], R[k]);
    }
    storeC3(d + 3 * x, intsToBytes(B), intsToBytes(G), intsToBytes(R));
  }
  return x;
}

}  // namespace

extern const LabKernels kLabKernels = {fwd8, fwd16, inv8, inv16};

}  // namespace KEL_ISA_NS
}  // namespace kel
