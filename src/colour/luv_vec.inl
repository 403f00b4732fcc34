// Vector forms of RGB <-> LUV, written once on the lane words and compiled
// per instruction set. Each is the lane-wise form of the scalar definition
// of the same name in luv.h, operation for operation.
// kelcc-isa: avx512
#include "colour/luvlab_vec.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using namespace luvv;

// ---- RGB -> LUV, 8u, every pixel ---------------------------------------------
// One gather from powLq serves both tables: index 128 + i from i = trunc(0.5
// + Y) where i >= 32, else trunc(0.5 + 4 Y); entry e gives L = (e + 2) >> 2
// and Lf = e / 4 either way, and index 0 is the black test.
struct Fwd8u {
  static void group(f R, f G, f B, fi& L, fi& U, fi& V) {
    f X, Y, Z;
    xyzOf(R, G, B, X, Y, Z);
    const f X1 = div(X, k1(255.0f)), Y1 = div(Y, k1(255.0f)), Z1 = div(Z, k1(255.0f));
    const fi i = F::cvtt(F::add(k1(0.5f), Y));
    const fi i4 = F::cvtt(F::add(k1(0.5f), F::mul(k1(4.0f), Y)));
    const fi j = seli(gti(i, F::set32(31)), i4, F::add32(i, F::set32(128)));
    const fi e = gatheri(powLq, j);
    L = V::srai32<2>(F::add32(e, F::set32(2)));
    const f Lf = F::mul(F::cvt(e), k1(0.25f));
    const f W = F::add(F::add(X1, F::mul(k1(3.0f), Z1)), F::mul(k1(15.0f), Y1));
    const m black = eqi(j, F::set32(0));
    const f up = sel(black, div(F::mul(k1(4.0f), X1), W), F::zero());
    const f vp = sel(black, div(F::mul(k1(9.0f), Y1), W), F::zero());
    const fi low = F::set32(0xFF);
    U = F::and_(F::cvtt(F::add(k1(97.025429f), F::mul(F::mul(k1(3.6723163f), Lf), F::sub(up, k1(0.197839f))))), low);
    V = F::and_(F::cvtt(F::add(k1(136.75955f), F::mul(F::mul(k1(4.961832f), Lf), F::sub(vp, k1(0.468342f))))), low);
  }
  static void vec(v r, v g, v b, v& l, v& u, v& w) {
    f R[4], G[4], B[4];
    bytesToF(r, R), bytesToF(g, G), bytesToF(b, B);
    fi L[4], U[4], W[4];
    for (int k = 0; k < 4; ++k) group(R[k], G[k], B[k], L[k], U[k], W[k]);
    l = intsToBytes(L), u = intsToBytes(U), w = intsToBytes(W);
  }
};

// ---- RGB -> LUV, 16-bit bodies: index and L16 truncated, U16 and V16 nearest;
// a zero D becomes 3.
struct Fwd16 {
  static void vec(f R, f G, f B, fi& L16, fi& U16, fi& V16) {
    f X, Y, Z;
    xyzOf(R, G, B, X, Y, Z);
    f D = F::add(F::add(mulk(Z, 3.0f), mulk(Y, 15.0f)), X);
    D = sel(eq(D, F::zero()), D, k1(3.0f));
    const f y = F::mul(Y, k1(1.5259022e-5f));
    const fi k = V::srli32<9>(F::cvtt(Y));  // the index read as unsigned, as the scalar form
    const f Lc = F::sub(F::mul(cubeRoot<6>(y, k), k1(116.0f)), k1(16.0f));
    const f L = sel(le(Y, k1(580.378f)), Lc, F::mul(y, k1(903.3f)));
    const f r = nrcp(D), Q = F::mul(L, k1(13.0f));
    const f u = F::mul(F::add(F::mul(F::sub(F::mul(mulk(X, 4.0f), r), k1(0.197839f)), Q), k1(134.0f)),
                       k1(185.12712f));
    const f w = F::add(F::mul(F::add(F::mul(F::sub(F::mul(mulk(Y, 9.0f), r), k1(0.468342f)), Q), k1(140.0f)),
                              k1(250.13359f)),
                       k1(0.5f));
    L16 = F::cvtt(F::mul(L, k1(655.35f))), U16 = F::cvtn(u), V16 = F::cvtn(w);
  }
};

// ---- RGB -> LUV, 32f body: k limited to 128 (read as unsigned), a zero D
// becomes 3.
struct Fwd32f {
  static void vec(f R, f G, f B, f& L, f& U, f& V) {
    f X, Y, Z;
    xyzOf(R, G, B, X, Y, Z);
    f D = addF(addF(mulk(Z, 3.0f), mulk(Y, 15.0f)), X);
    D = sel(eq(D, F::zero()), D, k1(3.0f));
    const fi k = minu32(F::cvtt(F::mul(Y, k1(128.0f))), F::set32(128));
    const f Lc = F::sub(F::mul(cubeRoot<8>(Y, k), k1(116.0f)), k1(16.0f));
    L = sel(le(Y, k1(0.008856f)), Lc, F::mul(Y, k1(903.3f)));
    const f r = nrcp(D), L13 = F::mul(k1(13.0f), L);
    U = mulF(F::sub(mulF(mulk(X, 4.0f), r), k1(0.197839f)), L13);
    V = mulF(F::sub(mulF(mulk(Y, 9.0f), r), k1(0.468342f)), L13);
  }
};

// ---- LUV -> RGB bodies ------------------------------------------------------------
template <class T, luv::Guard G>
struct InvBody {
  using K = luv::InvScale<T>;
  static constexpr bool kArcp = std::is_same<T, uint8_t>::value;
  static f rc(f a) { return kArcp ? F::rcp(a) : nrcp(a); }
  static void vec(f Lv, f Uv, f Vv, fi& R, fi& Gr, fi& B) {
    if (G == luv::Guard::Sample) Lv = sel(le(Lv, k1(9e-5f)), Lv, F::add(Lv, k1(9e-5f)));
    if (G == luv::Guard::Sample8) Lv = sel(le(Lv, k1(7.9996247f)), Lv, F::add(Lv, k1(7.9996247f)));
    f Lp = F::mul(Lv, k1(K::cL));
    if (G == luv::Guard::Scaled) Lp = sel(le(Lp, k1(9e-5f)), Lp, F::add(Lp, k1(9e-5f)));
    const f Up = F::sub(F::mul(Uv, k1(K::cU)), k1(134.0f)), Vp = F::sub(F::mul(Vv, k1(K::cV)), k1(140.0f));
    const f r = rc(F::mul(k1(13.0f), Lp));
    const f uq = F::add(F::mul(Up, r), k1(0.197839f));
    f vq = F::add(F::mul(Vp, r), k1(0.468342f));
    const f t = F::mul(F::add(Lp, k1(16.0f)), k1(0.00862069f));
    const f y = sel(le(Lp, k1(7.9996247f)), F::mul(t, F::mul(t, t)), F::mul(Lp, k1(0.001107052f)));
    const f Yv = F::mul(y, k1(K::S));
    vq = sel(absLe(vq, k1(1.1920929e-5f)), vq, F::add(vq, k1(9e-5f)));
    const f Tv = F::mul(rc(vq), Yv);
    const f Xv = F::mul(F::mul(Tv, k1(2.25f)), uq);
    const f Zv = F::sub(F::sub(F::mul(Tv, k1(3.0f)), F::mul(Yv, k1(5.0f))), F::mul(Xv, k1(0.33333334f)));
    R = F::cvtt(F::sub(F::sub(mulk(Xv, 3.240479f), mulk(Yv, 1.53715f)), mulk(Zv, 0.498535f)));
    Gr = F::cvtt(F::add(F::add(mulk(Xv, -0.969256f), mulk(Yv, 1.875991f)), mulk(Zv, 0.041556f)));
    B = F::cvtt(F::add(F::sub(mulk(Xv, 0.055648f), mulk(Yv, 0.204043f)), mulk(Zv, 1.057311f)));
  }
};
struct InvBody8 {
  static void vec(v l, v u, v w, v& r, v& g, v& b) {
    f L[4], U[4], W[4];
    bytesToF(l, L), bytesToF(u, U), bytesToF(w, W);
    fi R[4], G[4], B[4];
    for (int k = 0; k < 4; ++k) InvBody<uint8_t, luv::Guard::Scaled>::vec(L[k], U[k], W[k], R[k], G[k], B[k]);
    r = intsToBytes(R), g = intsToBytes(G), b = intsToBytes(B);
  }
};

// ---- LUV -> RGB, 32f: true divisions, limits.
struct Inv32f {
  static void vec(f L, f U, f V, f& R, f& G, f& B) {
    // t = (L + 16) / 116 above the knee, L / 903.3 below: one division of
    // the operands each lane takes.
    const m cube = le(k1(7.9996247f), L);
    const f t = div(sel(cube, L, F::add(L, k1(16.0f))), sel(cube, k1(903.3f), k1(116.0f)));
    const f y = sel(cube, t, F::mul(F::mul(t, t), t));
    const f L13 = F::mul(k1(13.0f), L);
    const f uq = F::mul(F::add(k1(0.197839f), div(U, L13)), k1(2.25f));
    f vq = F::add(k1(0.468342f), div(V, L13));
    vq = sel(lt(F::asf(F::and_(F::asi(vq), F::set32(0x7FFFFFFF))), k1(1.1920929e-7f)), vq, F::add(k1(9e-5f), vq));
    const f Tv = div(y, vq);
    const f Xv = mulF(uq, Tv);
    const f Zv = subF(subF(F::mul(k1(3.0f), Tv), F::mul(k1(5.0f), y)), div(Xv, k1(3.0f)));
    const m black = lt(L, k1(9e-5f));
    R = sel(black, limit01(subF(subF(mulk(Xv, 3.240479f), mulk(y, 1.53715f)), mulk(Zv, 0.498535f))), F::zero());
    G = sel(black, limit01(addF(subF(mulk(y, 1.875991f), mulk(Xv, 0.969256f)), mulk(Zv, 0.041556f))), F::zero());
    B = sel(black, limit01(addF(subF(mulk(Xv, 0.055648f), mulk(y, 0.204043f)), mulk(Zv, 1.057311f))), F::zero());
  }
};

using luv::Guard;

template <bool Vb>
constexpr LuvKernels kTable = {
    kern8For<3, Fwd8u, Vb>(),
    kern8For<4, Fwd8u, Vb>(),
    kernI<uint16_t, 3, Fwd16>,
    kernI<uint16_t, 4, Fwd16>,
    kernI<int16_t, 3, Fwd16>,
    kernI<int16_t, 4, Fwd16>,
    kernF<float, 3, Fwd32f, OutF>,
    kernF<float, 4, Fwd32f, OutF>,
    kern8For<3, InvBody8, Vb>(),
    kern8For<4, InvBody8, Vb>(),
    kernI<uint16_t, 3, InvBody<uint16_t, Guard::Sample>>,
    kernI<uint16_t, 4, InvBody<uint16_t, Guard::Sample8>>,
    kernI<int16_t, 3, InvBody<int16_t, Guard::Scaled>>,
    kernI<int16_t, 4, InvBody<int16_t, Guard::Sample>>,
    kernF<float, 3, Inv32f, OutF>,
    kernF<float, 4, Inv32f, OutF>,
};

}  // namespace

KEL_COLOUR_TABLES(LuvKernels, kLuvKernels, kTable)

}  // namespace KEL_ISA_NS
}  // namespace kel
