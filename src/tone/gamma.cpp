// The gamma curve and its inverse: 36 members, six layouts at three depths
// (formulas in gamma.h). Everything runs on the caller's thread, directly in
// the outer function: the checks, then the planes and rows in order.
#include "tone/gamma.h"

#include <cstring>
#include <mutex>

#include "frame/checks.h"
#include "frame/rows.h"
#include "support/support.h"

namespace kel {
namespace {

using namespace gamma;

enum class Form { C3, AC4, P3 };

// The image of a call: one interleaved plane, or three planes that are worked
// one after another. `samples` counts the values of a row: 3 w for C3, 4 w for
// AC4 (of which every fourth stays as it was), w for a plane.
struct Planes {
  const uint8_t* s[3];
  uint8_t* d[3];
  int ss, ds, np, samples;
  bool ac4;
};

template <class RowFn>
void forPlanes(const Planes& im, int h, RowFn&& row) {
  for (int p = 0; p < im.np; ++p)
    forRows(h, [&](int r) { row(rowAt(im.s[p], im.ss, r), rowAt(im.d[p], im.ds, r)); });
}

// A row of T samples from sample x on through f; AC4 rows leave every fourth
// sample (x stays on a pixel there).
template <class T, class Map>
inline void mapRow(const uint8_t* s, uint8_t* d, int x, int n, bool ac4, Map&& f) {
  constexpr int b = sizeof(T);
  if (!ac4) {
    for (; x < n; ++x) store<T>(d + b * x, f(load<T>(s + b * x)));
    return;
  }
  for (; x < n; x += 4)
    for (int c = 0; c < 3; ++c) store<T>(d + b * (x + c), f(load<T>(s + b * (x + c))));
}

// ---- 8u: the constant tables --------------------------------------------------
// The byte-permute look-up needs AVX-512 VBMI besides the AVX-512 level that
// the processor check gives (and that a test may lower): activeVbmi().
Chain<KernLut> lookUpChain(bool ac4) {
  if (activeVbmi()) return {{ac4 ? avx2::kGammaKernels.lutWideAC4 : avx2::kGammaKernels.lutWide, nullptr}};
  return chainFor(ac4 ? &GammaKernels::lutAC4 : &GammaKernels::lut, sse41::kGammaKernels, avx2::kGammaKernels);
}

struct Op8 {
  const uint8_t* table;
  static constexpr bool rangeOk() { return true; }
  KelStatus operator()(const Planes& im, KeliSize roi) const {
    const Chain<KernLut> chain = lookUpChain(im.ac4);
    const uint8_t* t = table;
    forPlanes(im, roi.height, [&](const uint8_t* s, uint8_t* d) {
      int x = 0;
      for (KernLut k : chain.k)
        if (k) x = k(s, d, x, im.samples, t);
      mapRow<uint8_t>(s, d, x, im.samples, im.ac4, [t](uint8_t v) { return t[v]; });
    });
    return kelStatusOk;
  }
};

// ---- 16u: per sample, or through a table of the whole curve -------------------
// Each curve is evaluated at all 65536 indices once per process, on first
// use (16 or so power evaluations per microsecond: a millisecond), into a
// read-only master; calls then read it instead of evaluating the power per
// sample. Calls above 65536 samples still hold their own table, allocated
// per call (and so may still fail with kelStatusNoMemory), now a copy of
// the master. The values are the curve's, whichever way they are found.
template <bool Fwd>
struct Op16 {
  static uint16_t curve(int i) { return Fwd ? fwd16(i) : inv16(i); }
  static const uint16_t* master() {
    static uint16_t table[65536];
    static std::once_flag built;
    std::call_once(built, [] {
      for (int i = 0; i < 65536; ++i) table[i] = curve(i);
    });
    return table;
  }
  static constexpr bool rangeOk() { return true; }
  KelStatus operator()(const Planes& im, KeliSize roi) const {
    // The sample count with 3 per pixel, also for AC4 and planes, as a 32-bit
    // product (wrapping: an image too large for it takes the first branch,
    // which gives the same values).
    const int32_t n = static_cast<int32_t>(static_cast<uint32_t>(roi.width) * 3u * static_cast<uint32_t>(roi.height));
    const uint16_t* t = master();
    Kel16u* table = nullptr;
    if (n > 65536) {
      table = kelsMalloc_16u(65536);
      if (!table) return kelStatusNoMemory;
      std::memcpy(table, t, 65536 * sizeof(Kel16u));
      t = table;
    }
    forPlanes(im, roi.height, [&](const uint8_t* s, uint8_t* d) {
      mapRow<uint16_t>(s, d, 0, im.samples, im.ac4, [t](uint16_t v) { return t[v]; });
    });
    kelsFree(table);
    return kelStatusOk;
  }
};

// ---- 32f: per sample over the caller's range ------------------------------------
template <bool Fwd>
struct Op32 {
  float lo, hi;
  Op32(float vMin, float vMax) : lo(vMin), hi(vMax) {}
  bool rangeOk() const { return !rangeEmpty(lo, hi); }
  KelStatus operator()(const Planes& im, KeliSize roi) const {
    const Range32 r(lo, hi);
    forPlanes(im, roi.height, [&](const uint8_t* s, uint8_t* d) {
      mapRow<float>(s, d, 0, im.samples, im.ac4, [&r](float v) { return Fwd ? fwd32(v, r) : inv32(v, r); });
    });
    return kelStatusOk;
  }
};

// ---- outer functions ------------------------------------------------------------
// Order E: the 32f range (always right at the other depths), then order C:
// pointers (array entries included), size, steps; then the member's own
// work, which for 16u may still fail to allocate its table. In-place forms
// pass their one image as source and destination.
template <class T>
inline const uint8_t* bytes(const T* p) {
  return reinterpret_cast<const uint8_t*>(p);
}
template <class T>
inline uint8_t* bytes(T* p) {
  return reinterpret_cast<uint8_t*>(p);
}

template <Form F, class T, class Op>
KelStatus interleaved(const T* src, int ss, T* dst, int ds, KeliSize roi, const Op& op) {
  if (KelStatus st = checkE(op.rangeOk(), {src, dst}, {}, roi, {ss, ds})) return st;
  const Planes im{{bytes(src)}, {bytes(dst)}, ss, ds, 1, (F == Form::C3 ? 3 : 4) * roi.width, F == Form::AC4};
  return op(im, roi);
}
template <class T, class Op>
KelStatus planar(const T* const* src, int ss, T* const* dst, int ds, KeliSize roi, const Op& op) {
  if (KelStatus st = checkE(op.rangeOk(), {}, {planes(src, 3), planes(dst, 3)}, roi, {ss, ds})) return st;
  const Planes im{{bytes(src[0]), bytes(src[1]), bytes(src[2])},
                  {bytes(dst[0]), bytes(dst[1]), bytes(dst[2])},
                  ss,
                  ds,
                  3,
                  roi.width,
                  false};
  return op(im, roi);
}

constexpr Op8 kFwd8{tableFwd8u}, kInv8{tableInv8u};
constexpr Op16<true> kFwd16{};
constexpr Op16<false> kInv16{};

}  // namespace

ByteLookUp byteLookUp() { return {lookUpChain(false)}; }

}  // namespace kel

using namespace kel;

// Member table: depth   per sample                      layouts
//  8u    tableFwd8u / tableInv8u (vector look-up)       C3, AC4, P3, in place
//  16u   fwd16 / inv16 once per process into a master table; above 65536 samples
//        (3 per pixel) a table of the call, copied from it
//  32f   fwd32 / inv32 over vMin..vMax, range checked first
// AC4 leaves the fourth sample; P3 works plane 0, 1, 2 in turn with one step.

extern "C" {

// The arguments behind the size: the value range of the 32f forms.
#define KEL_GAMMA_ARGS_8u
#define KEL_GAMMA_ARGS_16u
#define KEL_GAMMA_ARGS_32f , Kel32f vMin, Kel32f vMax

#define KEL_GAMMA(Dir, dep, T, op)                                                                          \
  KelStatus keliGamma##Dir##_##dep##_C3R(const T* src, int srcStep, T* dst, int dstStep,                    \
                                         KeliSize roi KEL_GAMMA_ARGS_##dep) {                               \
    return interleaved<Form::C3>(src, srcStep, dst, dstStep, roi, op);                                     \
  }                                                                                                         \
  KelStatus keliGamma##Dir##_##dep##_C3IR(T* srcDst, int srcDstStep, KeliSize roi KEL_GAMMA_ARGS_##dep) {   \
    return interleaved<Form::C3>(srcDst, srcDstStep, srcDst, srcDstStep, roi, op);                          \
  }                                                                                                         \
  KelStatus keliGamma##Dir##_##dep##_AC4R(const T* src, int srcStep, T* dst, int dstStep,                   \
                                          KeliSize roi KEL_GAMMA_ARGS_##dep) {                              \
    return interleaved<Form::AC4>(src, srcStep, dst, dstStep, roi, op);                                    \
  }                                                                                                         \
  KelStatus keliGamma##Dir##_##dep##_AC4IR(T* srcDst, int srcDstStep, KeliSize roi KEL_GAMMA_ARGS_##dep) {  \
    return interleaved<Form::AC4>(srcDst, srcDstStep, srcDst, srcDstStep, roi, op);                         \
  }                                                                                                         \
  KelStatus keliGamma##Dir##_##dep##_P3R(const T* const src[3], int srcStep, T* dst[3], int dstStep,        \
                                         KeliSize roi KEL_GAMMA_ARGS_##dep) {                               \
    return planar(src, srcStep, dst, dstStep, roi, op);                                                     \
  }                                                                                                         \
  KelStatus keliGamma##Dir##_##dep##_IP3R(T* srcDst[3], int srcDstStep, KeliSize roi KEL_GAMMA_ARGS_##dep) { \
    return planar(srcDst, srcDstStep, srcDst, srcDstStep, roi, op);                                         \
  }

KEL_GAMMA(Fwd, 8u, Kel8u, kFwd8)
KEL_GAMMA(Inv, 8u, Kel8u, kInv8)
KEL_GAMMA(Fwd, 16u, Kel16u, kFwd16)
KEL_GAMMA(Inv, 16u, Kel16u, kInv16)
KEL_GAMMA(Fwd, 32f, Kel32f, (Op32<true>(vMin, vMax)))
KEL_GAMMA(Inv, 32f, Kel32f, (Op32<false>(vMin, vMax)))
#undef KEL_GAMMA

}  // extern "C"
