// RGB and BGR to and from packed CbYCr 4:2:2: five members. The two
// filtered forward members share one row routine, with and without the
// forward gamma curve in front; the others use the packed 4:2:2 row shapes
// of frame/packed422.h. Formulas in cbycr.h.
#include "cbycr/cbycr.h"

#include <algorithm>

#include "frame/checks.h"
#include "frame/rows.h"
#include "tone/gamma_tables.h"

namespace kel {
namespace {

using namespace cbycr;

ChainIO chain(KernIO CbYCrKernels::*m) { return chainFor(m, sse41::kCbYCrKernels, avx2::kCbYCrKernels); }

// RGB to CbYCr with the 1/4, 1/2, 1/4 chroma filter, pairs from column x
// (even) to n. The neighbour terms of the odd pixel of a pair serve it and
// the next pair; the row starts with none (the first pair's sum is not
// renormalised), a run from further in takes them from the pixel before x.
int pairsFiltered(const RowIO& io, int x, int n) {
  using F = Filtered;
  const uint8_t* s = io.s[0];
  int32_t cbLeft = 0, crLeft = 0;
  if (x > 0) {
    const uint8_t* p = s + 3 * (x - 1);
    cbLeft = F::cbSide(p[0], p[1], p[2]), crLeft = F::crSide(p[0], p[1], p[2]);
  }
  for (; x < n; x += 2) {
    const uint8_t* p = s + 3 * x;
    const int R0 = p[0], G0 = p[1], B0 = p[2], R1 = p[3], G1 = p[4], B1 = p[5];
    const int32_t cbRight = F::cbSide(R1, G1, B1), crRight = F::crSide(R1, G1, B1);
    uint8_t* o = io.d[0] + 2 * x;
    o[0] = static_cast<uint8_t>(F::chroma(cbLeft, F::cbCentre(R0, G0, B0), cbRight));
    o[1] = static_cast<uint8_t>(F::y(R0, G0, B0));
    o[2] = static_cast<uint8_t>(F::chroma(crLeft, F::crCentre(R0, G0, B0), crRight));
    o[3] = static_cast<uint8_t>(F::y(R1, G1, B1));
    cbLeft = cbRight, crLeft = crRight;
  }
  return x;
}

// A row, or the part of it from column x (even) on. The vector kernels take
// the pairs after the first: they read the left neighbour of a pair from the
// pixel before it. The arithmetic is the same for every pair, so where they
// stop changes no result.
void rowFiltered(const RowIO& io, int x, int w, const ChainIO& chain) {
  if (x == 0) x = pairsFiltered(io, 0, std::min(w & ~1, 2));
  x = pairsFiltered(io, runChain(chain, io, x, w & ~1), w & ~1);
  if (x < w) {
    const uint8_t* p = io.s[0] + 3 * x;
    io.d[0][2 * x] = static_cast<uint8_t>(Last::cb(p[0], p[1], p[2]));
    io.d[0][2 * x + 1] = static_cast<uint8_t>(Last::y(p[0], p[1], p[2]));
  }
}

// The gamma member maps a row chunk by chunk through the table into a
// local buffer, together with the pixel pair before the chunk (the left
// neighbour of its first pair), and converts each chunk as the plain member
// does, vector kernels included: one table look-up per colour sample (the
// vector look-ups of the gamma family), and two more per chunk for the pair
// before it.
void rowFilteredGamma(const RowIO& io, int w, const ChainIO& chain, const ByteLookUp& look) {
  constexpr int kChunk = 128;  // pixels, even
  uint8_t buf[3 * (kChunk + 2)];
  for (int x0 = 0; x0 < w; x0 += kChunk) {
    const int from = x0 ? x0 - 2 : 0, to = std::min(w, x0 + kChunk);
    look(io.s[0] + 3 * from, buf, 3 * (to - from), tableFwd8u);
    const RowIO chunk{{buf}, {io.d[0] + 2 * from}, 0};
    rowFiltered(chunk, x0 - from, to - from, chain);
  }
}

template <bool Gamma>
void myFiltered(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, const ChainIO& chain) {
  const ByteLookUp look = Gamma ? byteLookUp() : ByteLookUp{};
  forRows(roi.height, [&](int r) {
    const RowIO io{{rowAt(src, srcStep, r)}, {rowAt(dst, dstStep, r)}, 0};
    if constexpr (Gamma)
      rowFilteredGamma(io, roi.width, chain, look);
    else
      rowFiltered(io, 0, roi.width, chain);
  });
}

inline int body8(int w) { return w & ~7; }

// The aligned routines of the four-byte members use the same arithmetic as
// the general ones, so one routine serves every address.
void myToC2(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, const ChainIO& chain) {
  const int body = body8(roi.width);
  forRows(roi.height, [&](int r) {
    const RowIO io{{rowAt(src, srcStep, r)}, {rowAt(dst, dstStep, r)}, 0};
    rowToC2<Pix::BGRX, MeanBody, MeanTail, Last>(io, roi.width, body, chain);
  });
}

template <Pix Out>
void myFromC2(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int alpha, const ChainIO& chain) {
  const int body = body8(roi.width);
  forRows(roi.height, [&](int r) {
    const RowIO io{{rowAt(src, srcStep, r)}, {rowAt(dst, dstStep, r)}, alpha};
    rowFromC2<Out, InvBody, InvTail>(io, roi.width, body, chain);
  });
}

}  // namespace
}  // namespace kel

using namespace kel;

// Member table:              body pixels  body      tail      last odd pixel
//  RGBToCbYCr422      C3C2R  -            Filtered on every pair  Last
//  RGBToCbYCr422Gamma C3C2R  -            Filtered and Last, on samples through tableFwd8u
//  BGRToCbYCr422      AC4C2R w & ~7       MeanBody  MeanTail  Last
//  CbYCr422ToRGB      C2C3R  w & ~7       InvBody   InvTail   InvTail, Cr of the pair before
//  CbYCr422ToBGR      C2C4R  w & ~7       InvBody   InvTail   the same

extern "C" {

KelStatus keliRGBToCbYCr422_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myFiltered<false>(src, srcStep, dst, dstStep, roi, chain(&CbYCrKernels::filtered));
  return kelStatusOk;
}

KelStatus keliRGBToCbYCr422Gamma_8u_C3C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkC({src, dst}, {}, roi, {srcStep, dstStep})) return st;
  myFiltered<true>(src, srcStep, dst, dstStep, roi, chain(&CbYCrKernels::filtered));
  return kelStatusOk;
}

KelStatus keliBGRToCbYCr422_8u_AC4C2R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myToC2(src, srcStep, dst, dstStep, roi, chain(&CbYCrKernels::toC2AC4));
  return kelStatusOk;
}

KelStatus keliCbYCr422ToRGB_8u_C2C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myFromC2<Pix::RGB>(src, srcStep, dst, dstStep, roi, 0, chain(&CbYCrKernels::fromC2RGB));
  return kelStatusOk;
}

KelStatus keliCbYCr422ToBGR_8u_C2C4R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi, int alpha) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  myFromC2<Pix::BGRA>(src, srcStep, dst, dstStep, roi, alpha, chain(&CbYCrKernels::fromC2BGRA));
  return kelStatusOk;
}

}  // extern "C"
