// YCoCg lifting transforms: 26 members over one row routine per direction
// (formulas in ycocg.h). Each member checks its pointers only; a width or
// height below 1 does nothing. Rows run on the caller's thread, nothing is
// allocated.
#include "lifting/ycocg.h"

#include <type_traits>

#include "frame/checks.h"
#include "frame/rows.h"

namespace kel {
namespace {

using namespace ycocg;

// Samples through byte pointers (rows may sit off sample boundaries).
template <class T>
inline int32_t ld(const uint8_t* p, int i) {
  return loadAt<T>(p, i);
}
template <class T>
inline void st(uint8_t* p, int i, int32_t v) {
  storeAt(p, static_cast<T>(v), i);
}

// One pixel, pixels (P, Ch samples each) to planes (Q), by Form then Out.
// A C4 pixel's fourth sample is not read.
template <class P, int Ch, class Q, class Form, class Out>
struct ToPlanes {
  static void px(const YcocgRow& io, int x) {
    const int32_t in[3] = {ld<P>(io.s[0], Ch * x), ld<P>(io.s[0], Ch * x + 1), ld<P>(io.s[0], Ch * x + 2)};
    int32_t o[3];
    Form::px(in, o);
    for (int k = 0; k < 3; ++k) st<Q>(io.d[k], x, Out::out(o[k]));
  }
};
// Planes (Q) to pixels (P, Ch samples); a C4 pixel gets the caller's alpha.
template <class Q, class P, int Ch, class Form, class Out>
struct ToPixels {
  static void px(const YcocgRow& io, int x) {
    const int32_t in[3] = {ld<Q>(io.s[0], x), ld<Q>(io.s[1], x), ld<Q>(io.s[2], x)};
    int32_t o[3];
    Form::px(in, o);
    for (int k = 0; k < 3; ++k) st<P>(io.d[0], Ch * x + k, Out::out(o[k]));
    if (Ch == 4) st<P>(io.d[0], 4 * x + 3, io.alpha);
  }
};

// The row routine: body [0, body) by the kernels of the active path and then
// the scalar body form, tail [body, w) by the tail form. One vector loop
// serves aligned and unaligned rows alike: its unaligned loads and stores
// cost nothing extra on aligned addresses and give the same bytes. Stores
// are ordinary ones, not streaming: the planes of a frame are read again
// soon by the caller, usually from cache.
template <class BodyPx, class TailPx>
void innerYCoCg(const YcocgRow& io, int w, int body, const Chain<YcocgKern>& chain) {
  int x = runChain(chain, io, 0, body);
  for (; x < body; ++x) BodyPx::px(io, x);
  for (; x < w; ++x) TailPx::px(io, x);
}

// The row driver: every row in order on the caller's thread; all planes
// share one step.
template <class BodyPx, class TailPx>
void myYCoCg(const YcocgRow& base, int srcStep, int dstStep, KeliSize roi, int body, const Chain<YcocgKern>& chain) {
  for (int r = 0; r < roi.height; ++r) {
    YcocgRow io = base;
    for (int k = 0; k < 3; ++k) {
      if (io.s[k]) io.s[k] = rowAt(io.s[k], srcStep, r);
      if (io.d[k]) io.d[k] = rowAt(io.d[k], dstStep, r);
    }
    innerYCoCg<BodyPx, TailPx>(io, roi.width, body, chain);
  }
}

Chain<YcocgKern> chain(YcocgKern YcocgKernels::*m) { return chainFor(m, sse41::kYcocgKernels, avx2::kYcocgKernels); }
template <int R, int C>
Chain<YcocgKern> chain(YcocgKern (YcocgKernels::*m)[2][2]) {
  return chainOf([m](const YcocgKernels& t) { return (t.*m)[R][C]; }, sse41::kYcocgKernels, avx2::kYcocgKernels);
}

// ---- members ------------------------------------------------------------------
// Forward: pixels of P with Ch samples to planes of Q. The body is the whole
// row, except in the plain 16s form (Split): its first w & ~3 pixels saturate,
// the rest keep the low 16 bits.
template <class P, int Ch, class Q, class Form, class Out, bool Split = false>
KelStatus forward(const P* src, int srcStep, Q* const dst[3], int dstStep, KeliSize roi, const Chain<YcocgKern>& ch) {
  if (KelStatus st = checkF({src}, {planes(dst, 3)})) return st;
  if (nothingToDo(roi)) return kelStatusOk;
  using Body = ToPlanes<P, Ch, Q, Form, Out>;
  using Tail = ToPlanes<P, Ch, Q, Form, typename std::conditional<Split, Low16, Out>::type>;
  const YcocgRow io{
      {reinterpret_cast<const uint8_t*>(src)},
      {reinterpret_cast<uint8_t*>(dst[0]), reinterpret_cast<uint8_t*>(dst[1]), reinterpret_cast<uint8_t*>(dst[2])},
      0};
  myYCoCg<Body, Tail>(io, srcStep, dstStep, roi, Split ? roi.width & ~3 : roi.width, ch);
  return kelStatusOk;
}
// Inverse: planes of Q to pixels of P with Ch samples (alpha into C4).
template <class Q, class P, int Ch, class Form, class Out>
KelStatus inverse(const Q* const src[3], int srcStep, P* dst, int dstStep, KeliSize roi, int alpha,
                  const Chain<YcocgKern>& ch) {
  if (KelStatus st = checkF({dst}, {planes(src, 3)})) return st;
  if (nothingToDo(roi)) return kelStatusOk;
  using Px = ToPixels<Q, P, Ch, Form, Out>;
  const YcocgRow io{{reinterpret_cast<const uint8_t*>(src[0]), reinterpret_cast<const uint8_t*>(src[1]),
                     reinterpret_cast<const uint8_t*>(src[2])},
                    {reinterpret_cast<uint8_t*>(dst)},
                    alpha};
  myYCoCg<Px, Px>(io, srcStep, dstStep, roi, roi.width, ch);
  return kelStatusOk;
}

using K = YcocgKernels;

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:                       form      stored as          body
//  BGRToYCoCg       8u16s   C3, C4    Plain     as is              whole row
//  BGRToYCoCg_Rev   8u16s   C3, C4    Rev       as is              whole row
//  YCoCgToBGR       16s8u   C3, C4    InvPlain  clip8 of 16 bits   whole row
//  YCoCgToBGR_Rev   16s8u   C3, C4    InvRev    clip8 of 16 bits   whole row
//  SBGRToYCoCg      16s     C3, C4    Plain     body: sat16s       w & ~3
//                                               tail: low 16 bits
//  SBGRToYCoCg_Rev  16s     C3, C4    Rev16     low 16 bits        whole row
//  YCoCgToSBGR(_Rev) 16s    C3, C4    InvPlain, InvRev; low 16     whole row
//  SBGRToYCoCg(_Rev) 16s32s C3, C4    Plain, Rev; as is            whole row
//  YCoCgToSBGR(_Rev) 32s16s C3, C4    InvPlain, InvRev; low 16     whole row
//  RGBToYCoCg       8u      C3        PairFwd   as is              whole row
//  YCoCgToRGB       8u      C3        PairInv   clip8              whole row
// Where one form serves the whole row, the vector kernels run it on every
// whole block and the scalar form finishes the row: the bytes are the same.
// The RGB pair has a single form for every pixel as well, so it gets vector
// kernels too. C4 forward rows skip the fourth sample; C4 inverse rows store
// `alpha` there.

extern "C" {

#define KEL_FWD(name, P, Q, Ch, Form, Out, Tab, Rv, ...)                                                              \
  KelStatus name(const P* src, int srcStep, Q* dst[3], int dstStep, KeliSize roi) {                                   \
    return forward<P, Ch, Q, Form, Out, ##__VA_ARGS__>(src, srcStep, dst, dstStep, roi, chain<Rv, Ch == 4>(&K::Tab)); \
  }
#define KEL_INV(name, Q, P, Ch, Form, Out, Tab, Rv)                                                 \
  KelStatus name(const Q* const src[3], int srcStep, P* dst, int dstStep, KeliSize roi) {           \
    return inverse<Q, P, Ch, Form, Out>(src, srcStep, dst, dstStep, roi, 0, chain<Rv, 0>(&K::Tab)); \
  }
#define KEL_INV4(name, Q, P, Form, Out, Tab, Rv)                                                       \
  KelStatus name(const Q* const src[3], int srcStep, P* dst, int dstStep, KeliSize roi, P alpha) {     \
    return inverse<Q, P, 4, Form, Out>(src, srcStep, dst, dstStep, roi, alpha, chain<Rv, 1>(&K::Tab)); \
  }

KEL_FWD(keliBGRToYCoCg_8u16s_C3P3R, Kel8u, Kel16s, 3, Plain, AsIs, fwd8, 0)
KEL_FWD(keliBGRToYCoCg_8u16s_C4P3R, Kel8u, Kel16s, 4, Plain, AsIs, fwd8, 0)
KEL_FWD(keliBGRToYCoCg_Rev_8u16s_C3P3R, Kel8u, Kel16s, 3, Rev, AsIs, fwd8, 1)
KEL_FWD(keliBGRToYCoCg_Rev_8u16s_C4P3R, Kel8u, Kel16s, 4, Rev, AsIs, fwd8, 1)
KEL_INV(keliYCoCgToBGR_16s8u_P3C3R, Kel16s, Kel8u, 3, InvPlain, Clip8, inv8, 0)
KEL_INV4(keliYCoCgToBGR_16s8u_P3C4R, Kel16s, Kel8u, InvPlain, Clip8, inv8, 0)
KEL_INV(keliYCoCgToBGR_Rev_16s8u_P3C3R, Kel16s, Kel8u, 3, InvRev, Clip8, inv8, 1)
KEL_INV4(keliYCoCgToBGR_Rev_16s8u_P3C4R, Kel16s, Kel8u, InvRev, Clip8, inv8, 1)

KEL_FWD(keliSBGRToYCoCg_16s_C3P3R, Kel16s, Kel16s, 3, Plain, Sat16, fwd16, 0, true)
KEL_FWD(keliSBGRToYCoCg_16s_C4P3R, Kel16s, Kel16s, 4, Plain, Sat16, fwd16, 0, true)
KEL_FWD(keliSBGRToYCoCg_Rev_16s_C3P3R, Kel16s, Kel16s, 3, Rev16, Low16, fwd16, 1)
KEL_FWD(keliSBGRToYCoCg_Rev_16s_C4P3R, Kel16s, Kel16s, 4, Rev16, Low16, fwd16, 1)
KEL_INV(keliYCoCgToSBGR_16s_P3C3R, Kel16s, Kel16s, 3, InvPlain, Low16, inv16, 0)
KEL_INV4(keliYCoCgToSBGR_16s_P3C4R, Kel16s, Kel16s, InvPlain, Low16, inv16, 0)
KEL_INV(keliYCoCgToSBGR_Rev_16s_P3C3R, Kel16s, Kel16s, 3, InvRev, Low16, inv16, 1)
KEL_INV4(keliYCoCgToSBGR_Rev_16s_P3C4R, Kel16s, Kel16s, InvRev, Low16, inv16, 1)

KEL_FWD(keliSBGRToYCoCg_16s32s_C3P3R, Kel16s, Kel32s, 3, Plain, AsIs, fwd32, 0)
KEL_FWD(keliSBGRToYCoCg_16s32s_C4P3R, Kel16s, Kel32s, 4, Plain, AsIs, fwd32, 0)
KEL_FWD(keliSBGRToYCoCg_Rev_16s32s_C3P3R, Kel16s, Kel32s, 3, Rev, AsIs, fwd32, 1)
KEL_FWD(keliSBGRToYCoCg_Rev_16s32s_C4P3R, Kel16s, Kel32s, 4, Rev, AsIs, fwd32, 1)
KEL_INV(keliYCoCgToSBGR_32s16s_P3C3R, Kel32s, Kel16s, 3, InvPlain, Low16, inv32, 0)
KEL_INV4(keliYCoCgToSBGR_32s16s_P3C4R, Kel32s, Kel16s, InvPlain, Low16, inv32, 0)
KEL_INV(keliYCoCgToSBGR_Rev_32s16s_P3C3R, Kel32s, Kel16s, 3, InvRev, Low16, inv32, 1)
KEL_INV4(keliYCoCgToSBGR_Rev_32s16s_P3C4R, Kel32s, Kel16s, InvRev, Low16, inv32, 1)

KelStatus keliRGBToYCoCg_8u_C3P3R(const Kel8u* src, int srcStep, Kel8u* dst[3], int dstStep, KeliSize roi) {
  return forward<Kel8u, 3, Kel8u, PairFwd, AsIs>(src, srcStep, dst, dstStep, roi, chain(&K::pairFwd));
}
KelStatus keliYCoCgToRGB_8u_P3C3R(const Kel8u* const src[3], int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return inverse<Kel8u, Kel8u, 3, PairInv, Clip8>(src, srcStep, dst, dstStep, roi, 0, chain(&K::pairInv));
}

#undef KEL_FWD
#undef KEL_INV
#undef KEL_INV4

}  // extern "C"
