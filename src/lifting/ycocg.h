// YCoCg lifting transforms: interleaved B, G, R pixels (R, G, B in the RGB
// pair) to three planes Y, Co, Cg and back, in a plain form with rounding
// terms and a reversible form of lifting steps that restores its input.
//
//   plain        Y  = (R + 2G + B + 2) >> 2     R = Y + Co - Cg
//                Co = (R - B + 1) >> 1          G = Y + Cg
//                Cg = (2G - R - B + 2) >> 2     B = Y - Co - Cg
//   reversible   Co = R - B                     t = Y - (Cg >> 1)
//                t  = B + (Co >> 1)             G = Cg + t
//                Cg = G - t                     B = t - (Co >> 1)
//                Y  = t + (Cg >> 1)             R = B + Co
//
// A form computes in 32 bits; an output rule then makes the stored sample
// (as is, saturated, the low 16 bits, or clipped to a byte).
#pragma once

#include <cstdint>

#include "frame/arith.h"
#include "frame/cpu.h"

namespace kel {

// Row pointers of one row. Forward: s[0] the pixel row, d[0..2] the planes
// Y, Co, Cg; inverse: s[0..2] the planes, d[0] the pixel row. Samples are
// reached through byte pointers: a step that is no multiple of the sample
// size is used as it stands, and such rows are read and written unaligned.
// `alpha` is the fourth sample that inverse C4 rows write.
struct YcocgRow {
  const uint8_t* s[3];
  uint8_t* d[3];
  int alpha;
};
// A vector kernel: converts whole blocks from x on while a block fits
// below n; returns the column where it stopped.
using YcocgKern = int (*)(const YcocgRow& io, int x, int n);

// The vector kernels of each instruction-set file, indexed [rev][c4].
struct YcocgKernels {
  YcocgKern fwd8[2][2];        // 8u pixels -> 16s planes
  YcocgKern inv8[2][2];        // 16s planes -> 8u pixels
  YcocgKern fwd16[2][2];       // 16s pixels -> 16s planes (plain: the saturating body form)
  YcocgKern inv16[2][2];       // 16s planes -> 16s pixels
  YcocgKern fwd32[2][2];       // 16s pixels -> 32s planes
  YcocgKern inv32[2][2];       // 32s planes -> 16s pixels
  YcocgKern pairFwd, pairInv;  // the RGB pair, 8u both sides
};
namespace sse41 {
extern const YcocgKernels kYcocgKernels;
}
namespace avx2 {
extern const YcocgKernels kYcocgKernels;
}

namespace {
namespace ycocg {

// Sums and differences wrap in 32 bits (the inverse forms see arbitrary
// plane values); >> is arithmetic.
inline int32_t add(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
inline int32_t sub(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// ---- forward forms: in = pixel samples in memory order, out = Y, Co, Cg ----
struct Plain {  // B, G, R
  static void px(const int32_t* in, int32_t* out) {
    const int32_t B = in[0], G = in[1], R = in[2];
    out[0] = (R + 2 * G + B + 2) >> 2;
    out[1] = (R - B + 1) >> 1;
    out[2] = (2 * G - R - B + 2) >> 2;
  }
};
struct Rev {  // B, G, R; exact in 32 bits for samples of up to 16 bits
  static void px(const int32_t* in, int32_t* out) {
    const int32_t B = in[0], G = in[1], R = in[2];
    const int32_t co = R - B, t = B + (co >> 1), cg = G - t;
    out[0] = t + (cg >> 1), out[1] = co, out[2] = cg;
  }
};
// The reversible steps modulo 2^16, each shift on the signed 16-bit value:
// any two 16-bit samples, however far apart, come back through 16-bit planes.
struct Rev16 {
  static void px(const int32_t* in, int32_t* out) {
    const int32_t B = in[0], G = in[1], R = in[2];
    const int32_t co = wrap16(R - B), t = wrap16(B + (co >> 1)), cg = wrap16(G - t);
    out[0] = wrap16(t + (cg >> 1)), out[1] = co, out[2] = cg;
  }
};

// ---- inverse forms: in = Y, Co, Cg, out = pixel samples in memory order ----
struct InvPlain {  // -> B, G, R
  static void px(const int32_t* in, int32_t* out) {
    const int32_t Y = in[0], Co = in[1], Cg = in[2];
    out[2] = sub(add(Y, Co), Cg);
    out[1] = add(Y, Cg);
    out[0] = sub(sub(Y, Co), Cg);
  }
};
struct InvRev {  // -> B, G, R
  static void px(const int32_t* in, int32_t* out) {
    const int32_t Y = in[0], Co = in[1], Cg = in[2];
    const int32_t t = sub(Y, Cg >> 1), B = sub(t, Co >> 1);
    out[1] = add(Cg, t), out[0] = B, out[2] = add(B, Co);
  }
};

// ---- the RGB pair: R, G, B pixels, 8-bit planes with chroma on 128 ----------
// The upper limit cuts 256 to 255 in the two extreme cases (pure red gives
// Co 128 + 128, pure green Cg 128 + 128).
struct PairFwd {
  static void px(const int32_t* in, int32_t* out) {
    const int32_t R = in[0], G = in[1], B = in[2];
    const int32_t co = ((R - B + 1) >> 1) + 128, cg = ((2 * G - B - R + 2) >> 2) + 128;
    out[0] = (R + 2 * G + B + 2) >> 2;
    out[1] = co < 255 ? co : 255;
    out[2] = cg < 255 ? cg : 255;
  }
};
struct PairInv {  // -> R, G, B, before the limit to 0..255
  static void px(const int32_t* in, int32_t* out) {
    const int32_t Y = in[0], Co = in[1], Cg = in[2];
    out[0] = Y + Co - Cg;
    out[1] = Y + Cg - 128;
    out[2] = Y - Co - Cg + 256;
  }
};

// ---- output rules: the stored sample from a form's 32-bit value ----------
struct AsIs {
  static int32_t out(int32_t v) { return v; }
};
struct Sat16 {  // saturated to -32768..32767
  static int32_t out(int32_t v) { return sat16s(v); }
};
struct Low16 {  // the low 16 bits
  static int32_t out(int32_t v) { return wrap16(v); }
};
struct Clip8 {  // the 16-bit value limited to 0..255
  static int32_t out(int32_t v) { return clip8(wrap16(v)); }
};

}  // namespace ycocg
}  // namespace
}  // namespace kel
