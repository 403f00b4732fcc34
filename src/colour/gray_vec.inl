// Vector bodies of RGB to gray, written once on the lane words and compiled
// per instruction set. Each is the lane-wise form of the scalar definition
// of the same name in gray.h, with the weights of the call.
// kelcc-isa: avx512
#include "colour/colour_vec.h"
#include "colour/gray.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using namespace colourv;

// GB8: 16 pixels per lane; inputs as c << 8, unsigned high products summed
// with unsigned saturation, then read as signed and shifted.
template <int Ch>
int gb8(const uint8_t* s, uint8_t* d, int x, int n, const uint16_t* w) {
  constexpr int kBlock = 16 * V::kLanes;
  const v w0 = V::set16(w[0]), w1 = V::set16(w[1]), w2 = V::set16(w[2]), eight = V::set16(8);
  auto half = [&](v r, v g, v b) {
    return V::srai16<4>(V::addus16(V::addus16(V::addus16(V::mulhu(r, w0), V::mulhu(g, w1)), V::mulhu(b, w2)), eight));
  };
  for (; x + kBlock <= n; x += kBlock) {
    v a, b, c, al, ah, bl, bh, cl, ch;
    load8<Ch>(s + Ch * x, a, b, c);
    widenHigh(a, al, ah), widenHigh(b, bl, bh), widenHigh(c, cl, ch);
    V::store<16>(d + x, V::packus16(half(al, bl, cl), half(ah, bh, ch)));
  }
  return x;
}

// Floats: (w0 c0 + w1 c1) + w2 c2, four pixels per lane.
template <class T, int Ch, class Out>
int gf(const T* s, T* d, int x, int n, const float* w) {
  constexpr int kBlock = 4 * F::kLanes;
  const f w0 = F::set1(w[0]), w1 = F::set1(w[1]), w2 = F::set1(w[2]);
  for (; x + kBlock <= n; x += kBlock) {
    f a, b, c;
    loadPx<T, Ch>(s + Ch * x, a, b, c);
    Out::template put1<T>(d + x, addF(addF(mulF(w0, a), mulF(w1, b)), mulF(w2, c)));
  }
  return x;
}

}  // namespace

extern const GrayKernels kGrayKernels = {
    gb8<3>, gb8<4>,
    gf<uint16_t, 3, OutWrap>, gf<uint16_t, 4, OutWrap>,
    gf<int16_t, 3, OutSat>, gf<int16_t, 4, OutSat>,
    gf<float, 3, OutF>, gf<float, 4, OutF>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
