// Runtime choice of the vector path. The processor is examined once; each
// call then picks its kernels once, before its first row.
//
// Per-ISA translation units (generated from each src/<dir>/*_vec.inl) are
// compiled with their own -m flags. Everything they define lives in their
// own namespace (kel::sse41, kel::avx2, kel::avx512) or has internal linkage,
// so that no inline function built for a wide instruction set can be folded
// into code that runs on a narrower processor.
#pragma once

namespace kel {

enum class Isa : int { Scalar = 0, SSE41 = 1, AVX2 = 2, AVX512 = 3 };

// The widest path this processor runs.
Isa cpuIsa();
// The path calls made on this thread use: cpuIsa(), or less where a test has
// lowered the limit.
Isa activeIsa();

// True where the active path is AVX-512 and the processor has VBMI (byte
// permutes across the register), which some AVX-512 kernels use.
bool activeVbmi();

// Internal interface for tests and benchmarks of the static build: limit the
// calling thread's path (Isa::AVX512 lifts the limit). Not exported.
void setIsaLimit(Isa limit);

// Internal, for tests: with `allow` false, activeVbmi() is false on the
// calling thread, and AVX-512 kernels take their forms without VBMI.
void setVbmiLimit(bool allow);

// Picks the entry for the active path from a table ordered scalar, SSE4.1,
// AVX2, AVX-512; a null entry falls back to the next narrower one.
template <class T>
inline const T* pickIsa(const T* scalar, const T* sse41, const T* avx2 = nullptr, const T* avx512 = nullptr) {
  const Isa isa = activeIsa();
  if (isa >= Isa::AVX512 && avx512) return avx512;
  if (isa >= Isa::AVX2 && avx2) return avx2;
  if (isa >= Isa::SSE41 && sse41) return sse41;
  return scalar;
}

// The kernels of one body for the active path, widest first: on an AVX2
// processor the AVX2 kernel and then the SSE4.1 kernel for a block that the
// wider one leaves; the scalar definition of the body takes the rest.
// Each per-ISA file exports one table of kernels; `m` names the member.
// Families whose kernel source is also built for AVX-512 pass that table
// too, and an AVX-512 processor then runs AVX-512, AVX2, SSE4.1 in turn.
template <class K>
struct Chain {
  K k[3] = {nullptr, nullptr, nullptr};
};
// Runs the kernels of a chain from column x, each while its blocks fit
// below n; returns the column where the scalar definition takes over. A
// kernel is not called once the row is done (a kernel at x == n does
// nothing): on short rows the call of a narrower kernel that has nothing
// left is a good part of the row's cost.
namespace {
template <class K, class IO>
inline int runChain(const Chain<K>& chain, const IO& io, int x, int n) {
  for (K k : chain.k)
    if (k && x < n) x = k(io, x, n);
  return x;
}
}  // namespace
template <class T, class K>
inline Chain<K> chainFor(K T::*m, const T& sse41, const T& avx2) {
  const Isa isa = activeIsa();
  if (isa >= Isa::AVX2) return {{avx2.*m, sse41.*m}};
  if (isa >= Isa::SSE41) return {{sse41.*m, nullptr}};
  return {};
}
// The same for tables that hold their kernels in arrays: `pick(table)` gives
// the kernel of one table (for example t.k[layout][format]).
template <class T, class Pick>
inline auto chainOf(Pick pick, const T& sse41, const T& avx2) -> Chain<decltype(pick(sse41))> {
  const Isa isa = activeIsa();
  if (isa >= Isa::AVX2) return {{pick(avx2), pick(sse41)}};
  if (isa >= Isa::SSE41) return {{pick(sse41), nullptr}};
  return {};
}
template <class T, class K>
inline Chain<K> chainFor(K T::*m, const T& sse41, const T& avx2, const T& avx512) {
  if (activeIsa() >= Isa::AVX512) return {{avx512.*m, avx2.*m, sse41.*m}};
  return chainFor(m, sse41, avx2);
}
template <class T, class Pick>
inline auto chainOf(Pick pick, const T& sse41, const T& avx2, const T& avx512) -> Chain<decltype(pick(sse41))> {
  if (activeIsa() >= Isa::AVX512) return {{pick(avx512), pick(avx2), pick(sse41)}};
  return chainOf(pick, sse41, avx2);
}

}  // namespace kel
