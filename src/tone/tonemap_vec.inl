// Vector bodies of tone mapping: the single-precision product and the
// truncation of the scalar forms in tonemap.h, 16 samples per lane.
#include "frame/simdf.h"
#include "tone/tonemap.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

// Four vectors of 4 products per lane (samples 0-15 of a lane's block of 16)
// through `conv` to 32-bit integers, then down to bytes with unsigned
// saturation: each value is already 0..255 or, for the mean form, below 0.
template <class Conv>
int scale(const uint8_t* s, uint8_t* d, int x, int n, float fs, Conv conv) {
  constexpr int kBlock = 16 * F::kLanes;
  const F::f f = F::set1(fs);
  for (; x + kBlock <= n; x += kBlock) {
    const uint8_t* p = s + 4 * static_cast<ptrdiff_t>(x);
    F::i q[4];
    for (int k = 0; k < 4; ++k) q[k] = conv(F::mul(f, F::load<64>(p + 16 * k)));
    V::store<16>(d + x, V::packus16(F::packus32(q[0], q[1]), F::packus32(q[2], q[3])));
  }
  return x;
}

int linear(const uint8_t* s, uint8_t* d, int x, int n, float f) {
  const F::i low8 = F::set32(0xFF);
  return scale(s, d, x, n, f, [low8](F::f p) { return F::and_(F::cvtt(p), low8); });
}
int mean(const uint8_t* s, uint8_t* d, int x, int n, float f) {
  const F::f top = F::set1(255.0f);
  return scale(s, d, x, n, f, [top](F::f p) { return F::cvtt(F::min(top, p)); });
}

}  // namespace

extern const ToneKernels kToneKernels = {linear, mean};

}  // namespace KEL_ISA_NS
}  // namespace kel
