// The internal primitives beside the C library's own moves (copy and fill)
// and a plain double-precision loop (maximum, sums): the tone-mapping calls
// run through them.
#include <algorithm>

#include "common.h"
#include "support/support.h"

namespace {

void registerSupport() {
  using namespace kb;
  static const size_t px = size_t(kW) * kH;
  static Plane a(kW, kH, 1), b(kW, kH, 2);
  static Plane f(4 * kW, kH, 3);
  add("Copy_8u_C1R", "kel", 2 * px, [] { keliCopy_8u_C1R(a.p, a.step, b.p, b.step, kRoi); });
  addMemcpy("Copy_8u_C1R", px, px);
  add("Set_8u_C1R", "kel", px, [] { keliSet_8u_C1R(7, b.p, b.step, kRoi); });
  add("Set_8u_C1R", "memset", px, [] { std::memset(b.p, 7, px); });
  const auto* fp = reinterpret_cast<const Kel32f*>(f.p);
  // Float samples from the random bytes, kept finite.
  for (size_t i = 0; i < px; ++i) reinterpret_cast<Kel32f*>(f.p)[i] = float(f.p[4 * i % f.bytes]) * 0.25f;
  add("Max_32f_C1R", "kel", 4 * px, [fp] {
    Kel32f m;
    keliMax_32f_C1R(fp, f.step, kRoi, &m);
    benchmark::DoNotOptimize(m);
  });
  add("Max_32f_C1R", "std", 4 * px, [fp] { benchmark::DoNotOptimize(*std::max_element(fp, fp + px)); });
  add("Sum_32f_C1R", "kel", 4 * px, [fp] {
    double s;
    keliSum_32f_C1R(fp, f.step, kRoi, &s, 1);
    benchmark::DoNotOptimize(s);
  });
  add("Sum_32f_C1R", "kel-accurate", 4 * px, [fp] {
    double s;
    keliSum_32f_C1R(fp, f.step, kRoi, &s, 2);
    benchmark::DoNotOptimize(s);
  });
  add("Sum_32f_C1R", "double-loop", 4 * px, [fp] {
    double s = 0;
    for (size_t i = 0; i < px; ++i) s += fp[i];
    benchmark::DoNotOptimize(s);
  });
}
KB_REGISTER(registerSupport);

}  // namespace
