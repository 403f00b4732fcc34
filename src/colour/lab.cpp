// BGR <-> Lab: four members (formulas in lab.h). Rows go to the team at every
// size; steps stay in bytes on both sides, 16-bit ones included.
#include "colour/lab.h"

namespace kel {
namespace {

using namespace colour;

template <class S, class D>
Chain<KernLab<S, D>> chain(KernLab<S, D> LabKernels::*m) {
  return chainFor(m, sse41::kLabKernels, avx2::kLabKernels, avx512::kLabKernels);
}

// Checks (pointers, then size), then rows by static schedule with no
// threshold; each row: the kernels on the body, the scalar body form on what
// they leave of it, the tail form on the rest.
template <class S, class D, class Body, class Tail>
KelStatus convertLab(const S* src, int srcStep, D* dst, int dstStep, KeliSize roi, Chain<KernLab<S, D>> ch) {
  if (KelStatus st = checkA({src, dst}, {}, roi)) return st;
  const int w = roi.width, body = body4(w);
  const char* s0 = reinterpret_cast<const char*>(src);
  char* d0 = reinterpret_cast<char*>(dst);
  parallelRows(roi.height, [&](int r) {
    const auto* s = reinterpret_cast<const S*>(s0 + static_cast<ptrdiff_t>(srcStep) * r);
    auto* d = reinterpret_cast<D*>(d0 + static_cast<ptrdiff_t>(dstStep) * r);
    int x = 0;
    for (auto k : ch.k)
      if (k) x = k(s, d, x, body);
    for (; x < body; ++x) Body::px(s + 3 * x, d + 3 * x);
    for (; x < w; ++x) Tail::px(s + 3 * x, d + 3 * x);
  });
  return kelStatusOk;
}

}  // namespace
}  // namespace kel

using namespace kel;
using namespace kel::lab;

// Member table:            body     body form          tail form
//  BGRToLab  8u   C3R      w & ~3   Fwd<8u>, sat       Fwd<8u>, low bits
//            8u16u C3R     w & ~3   Fwd<16u>, sat      Fwd<16u>, low bits
//  LabToBGR  8u   C3R      w & ~3   Inv<8u>            Inv<8u>
//            16u8u C3R     w & ~3   Inv<16u>           Inv<16u>

extern "C" {

KelStatus keliBGRToLab_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertLab<Kel8u, Kel8u, Fwd<false, true>, Fwd<false, false>>(src, srcStep, dst, dstStep, roi,
                                                                       chain(&LabKernels::fwd8));
}
KelStatus keliBGRToLab_8u16u_C3R(const Kel8u* src, int srcStep, Kel16u* dst, int dstStep, KeliSize roi) {
  return convertLab<Kel8u, Kel16u, Fwd<true, true>, Fwd<true, false>>(src, srcStep, dst, dstStep, roi,
                                                                      chain(&LabKernels::fwd16));
}
KelStatus keliLabToBGR_8u_C3R(const Kel8u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertLab<Kel8u, Kel8u, Inv<false>, Inv<false>>(src, srcStep, dst, dstStep, roi, chain(&LabKernels::inv8));
}
KelStatus keliLabToBGR_16u8u_C3R(const Kel16u* src, int srcStep, Kel8u* dst, int dstStep, KeliSize roi) {
  return convertLab<Kel16u, Kel8u, Inv<true>, Inv<true>>(src, srcStep, dst, dstStep, roi, chain(&LabKernels::inv16));
}

}  // extern "C"
