#include "frame/cpu.h"

namespace kel {
namespace {

Isa detect() {
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl")) return Isa::AVX512;
  if (__builtin_cpu_supports("avx2")) return Isa::AVX2;
  if (__builtin_cpu_supports("sse4.1") && __builtin_cpu_supports("ssse3")) return Isa::SSE41;
  return Isa::Scalar;
}

// A per-thread limit keeps the library free of process-wide mutable state:
// only a test that asks for it sees a narrower path.
thread_local Isa t_limit = Isa::AVX512;
thread_local bool t_vbmi = true;

}  // namespace

Isa cpuIsa() {
  // Thread-safe one-time initialisation (a function-local static).
  static const Isa isa = detect();
  return isa;
}

Isa activeIsa() {
  const Isa c = cpuIsa();
  return t_limit < c ? t_limit : c;
}

void setIsaLimit(Isa limit) { t_limit = limit; }
void setVbmiLimit(bool allow) { t_vbmi = allow; }

bool activeVbmi() {
  static const bool vbmi = cpuIsa() >= Isa::AVX512 && __builtin_cpu_supports("avx512vbmi");
  return vbmi && t_vbmi && activeIsa() >= Isa::AVX512;
}

}  // namespace kel
