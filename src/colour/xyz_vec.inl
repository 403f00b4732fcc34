// Vector bodies of RGB <-> XYZ, written once on the lane words and compiled
// per instruction set. Each is the lane-wise form of the scalar definition
// of the same name in xyz.h.
// kelcc-isa: avx512
#include "colour/colour_vec.h"
#include "colour/xyz.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using namespace colourv;

// A Q-scaled 3 x 3 matrix on 8-bit samples, exact: pairs (R, G) and (B, 0)
// through pmaddwd give the 32-bit sums, shifted, then saturated on packing.
template <int Shift, int a0, int a1, int a2, int b0, int b1, int b2, int c0, int c1, int c2>
struct Mat8 {
  static v pair(int lo, int hi) {
    return V::set32(static_cast<int>((static_cast<uint32_t>(hi) << 16) | (static_cast<uint32_t>(lo) & 0xFFFFu)));
  }
  static v row(v rgL, v bL, v rgH, v bH, int k0, int k1, int k2) {
    const v k01 = pair(k0, k1), k2_ = pair(k2, 0);
    const v lo = V::srai32<Shift>(V::add32(V::madd16(rgL, k01), V::madd16(bL, k2_)));
    const v hi = V::srai32<Shift>(V::add32(V::madd16(rgH, k01), V::madd16(bH, k2_)));
    return V::packs32(lo, hi);
  }
  static void half(v r, v g, v b, v& x, v& y, v& z) {  // 8 samples per lane in 16 bits
    const v rgL = V::unpacklo16(r, g), rgH = V::unpackhi16(r, g);
    const v bL = V::unpacklo16(b, V::zero()), bH = V::unpackhi16(b, V::zero());
    x = row(rgL, bL, rgH, bH, a0, a1, a2);
    y = row(rgL, bL, rgH, bH, b0, b1, b2);
    z = row(rgL, bL, rgH, bH, c0, c1, c2);
  }
  static void vec(v r, v g, v b, v& X, v& Y, v& Z) {
    v rl, rh, gl, gh, bl, bh;
    widen(r, rl, rh), widen(g, gl, gh), widen(b, bl, bh);
    v x0, y0, z0, x1, y1, z1;
    half(rl, gl, bl, x0, y0, z0);
    half(rh, gh, bh, x1, y1, z1);
    X = V::packus16(x0, x1), Y = V::packus16(y0, y1), Z = V::packus16(z0, z1);
  }
};
using F15 = Mat8<15, 13515, 11717, 5912, 6969, 23434, 2365, 634, 3906, 31137>;
using I13 = Mat8<13, 26546, -12591, -4083, -7939, 15368, 340, 456, -1671, 8661>;

// Single precision, products added left to right.
struct Fwd {
  static void vec(f R, f G, f B, f& X, f& Y, f& Z) {
    X = addF(addF(mulk(R, 0.412453f), mulk(G, 0.35758f)), mulk(B, 0.180423f));
    Y = addF(addF(mulk(R, 0.212671f), mulk(G, 0.71516f)), mulk(B, 0.072169f));
    Z = addF(addF(mulk(R, 0.019334f), mulk(G, 0.119193f)), mulk(B, 0.950227f));
  }
};
struct Inv {
  static void vec(f X, f Y, f Z, f& R, f& G, f& B) {
    R = subF(subF(mulk(X, 3.240479f), mulk(Y, 1.53715f)), mulk(Z, 0.498535f));
    G = addF(addF(mulk(X, -0.969256f), mulk(Y, 1.875991f)), mulk(Z, 0.041556f));
    B = addF(subF(mulk(X, 0.055648f), mulk(Y, 0.204043f)), mulk(Z, 1.057311f));
  }
};
struct Fwd32f {
  static void vec(f R, f G, f B, f& X, f& Y, f& Z) {
    Fwd::vec(R, G, B, X, Y, Z);
    Z = limit01(Z);
  }
};
struct Inv32f {
  static void vec(f X, f Y, f Z, f& R, f& G, f& B) {
    Inv::vec(X, Y, Z, R, G, B);
    R = limit01(R), G = limit01(G), B = limit01(B);
  }
};

template <bool Vb>
constexpr XyzKernels kTable = {
    kern8For<3, F15, Vb>(), kern8For<4, F15, Vb>(), kern8For<3, I13, Vb>(), kern8For<4, I13, Vb>(),
    kernF<uint16_t, 3, Fwd, OutSat>, kernF<uint16_t, 4, Fwd, OutSat>,
    kernF<uint16_t, 3, Inv, OutSat>, kernF<uint16_t, 4, Inv, OutSat>,
    kernF<int16_t, 3, Fwd, OutSat>, kernF<int16_t, 4, Fwd, OutSat>,
    kernF<int16_t, 3, Inv, OutSat>, kernF<int16_t, 4, Inv, OutSat>,
    kernF<float, 3, Fwd32f, OutF>, kernF<float, 4, Fwd32f, OutF>,
    kernF<float, 3, Inv32f, OutF>, kernF<float, 4, Inv32f, OutF>,
};

}  // namespace

KEL_COLOUR_TABLES(XyzKernels, kXyzKernels, kTable)

}  // namespace KEL_ISA_NS
}  // namespace kel
