// Vector bodies of RGB <-> YCC, written once on the lane words and compiled
// per instruction set. Each is the lane-wise form of the scalar definition
// of the same name in ycc.h.
// kelcc-isa: avx512
#include "colour/colour_vec.h"
#include "colour/ycc.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using namespace colourv;

// YF8 on 16-bit lanes: the inputs arrive as R << 8 etc.
struct YF8 {
  static void half(v r8, v g8, v b8, v& y, v& c1, v& c2) {
    const v Lv = V::add16(V::add16(V::mulhu(r8, V::set16(4898)), V::mulhu(g8, V::set16(9617))),
                          V::mulhu(b8, V::set16(1867)));
    const v Db = V::sub16(V::srli16<2>(b8), Lv), Dr = V::sub16(V::srli16<2>(r8), Lv);  // 64 B - Lv, 64 R - Lv
    y = V::srai16<2>(V::mulhs(Lv, V::set16(2921)));
    c1 = V::srai16<2>(V::add16(V::mulhs(Db, V::set16(1789)), V::set16(624)));
    c2 = V::srai16<2>(V::add16(V::mulhs(Dr, V::set16(2178)), V::set16(548)));
  }
  static void vec(v r, v g, v b, v& Y, v& C1, v& C2) {
    v rl, rh, gl, gh, bl, bh;
    widenHigh(r, rl, rh), widenHigh(g, gl, gh), widenHigh(b, bl, bh);
    v y0, u0, w0, y1, u1, w1;
    half(rl, gl, bl, y0, u0, w0);
    half(rh, gh, bh, y1, u1, w1);
    Y = V::packus16(y0, y1), C1 = V::packus16(u0, u1), C2 = V::packus16(w0, w1);
  }
};

// YI8: Y arrives as Y << 8, the chroma as plain 16-bit values.
struct YI8 {
  static void half(v y8, v c1, v c2, v& r, v& g, v& b) {
    const v Lv = V::mulhu(y8, V::set16(5563));
    const v T1 = V::mulhs(V::slli16<7>(V::sub16(c1, V::set16(156))), V::set16(18168));
    const v T2 = V::mulhs(V::slli16<7>(V::sub16(c2, V::set16(137))), V::set16(14921));
    r = V::srai16<4>(V::add16(Lv, T2));
    b = V::srai16<4>(V::add16(Lv, T1));
    g = V::srai16<3>(V::adds16(V::adds16(V::srli16<1>(Lv), V::mulhs(T1, V::set16(-6357))),
                               V::mulhs(T2, V::set16(-16679))));
  }
  static void vec(v y, v c1, v c2, v& R, v& G, v& B) {
    v yl, yh, ul, uh, wl, wh;
    widenHigh(y, yl, yh), widen(c1, ul, uh), widen(c2, wl, wh);
    v r0, g0, b0, r1, g1, b1;
    half(yl, ul, wl, r0, g0, b0);
    half(yh, uh, wh, r1, g1, b1);
    R = V::packus16(r0, r1), G = V::packus16(g0, g1), B = V::packus16(b0, b1);
  }
};

inline f luma(f R, f G, f B) { return addF(addF(mulk(R, 0.299f), mulk(G, 0.587f)), mulk(B, 0.114f)); }

struct YF16 {
  static void vec(f R, f G, f B, f& Y, f& C1, f& C2) {
    const f L = luma(R, G, B);
    Y = mulk(L, 0.7132668f);
    C1 = F::add(mulk(F::sub(B, L), 0.4368627f), F::set1(40092.0f));
    C2 = F::add(mulk(F::sub(R, L), 0.5319216f), F::set1(35209.0f));
  }
};
struct YF32f {
  static void vec(f R, f G, f B, f& Y, f& C1, f& C2) {
    const f L = luma(R, G, B);
    Y = mulk(L, 0.7132668f);
    C1 = F::add(F::set1(0.6117647f), mulk(subF(B, L), 0.4368627f));
    C2 = F::add(F::set1(0.5372549f), mulk(subF(R, L), 0.53192f));
  }
};
struct YI16 {
  static void vec(f Y, f C1, f C2, f& R, f& G, f& B) {
    const f L = mulk(Y, 1.3584f);
    const f T1 = mulk(F::sub(C1, F::set1(40092.0f)), 2.2179f), T2 = mulk(F::sub(C2, F::set1(35209.0f)), 1.8215f);
    R = F::add(L, T2);
    G = F::sub(F::sub(L, mulk(T1, 0.194f)), mulk(T2, 0.509f));
    B = F::add(L, T1);
  }
};
struct YI32f {
  static void vec(f Y, f C1, f C2, f& R, f& G, f& B) {
    const f L = mulk(Y, 1.3584f);
    const f T1 = mulk(F::sub(C1, F::set1(0.6117647f)), 2.2179f);
    const f T2 = mulk(F::sub(C2, F::set1(0.5372549f)), 1.8215f);
    R = limit01(addF(L, T2));
    G = limit01(subF(subF(L, mulk(T1, 0.194f)), mulk(T2, 0.509f)));
    B = limit01(addF(L, T1));
  }
};

template <bool Vb>
constexpr YccKernels kTable = {
    kern8For<3, YF8, Vb>(), kern8For<4, YF8, Vb>(), kern8For<3, YI8, Vb>(), kern8For<4, YI8, Vb>(),
    kernF<uint16_t, 3, YF16, OutSat>, kernF<uint16_t, 4, YF16, OutSat>,
    kernF<uint16_t, 3, YI16, OutSat>, kernF<uint16_t, 4, YI16, OutSat>,
    kernF<int16_t, 3, YF16, OutSat>, kernF<int16_t, 4, YF16, OutSat>,
    kernF<int16_t, 3, YI16, OutSat>, kernF<int16_t, 4, YI16, OutSat>,
    kernF<float, 3, YF32f, OutF>, kernF<float, 4, YF32f, OutF>,
    kernF<float, 3, YI32f, OutF>, kernF<float, 4, YI32f, OutF>,
};

}  // namespace

KEL_COLOUR_TABLES(YccKernels, kYccKernels, kTable)

}  // namespace KEL_ISA_NS
}  // namespace kel
