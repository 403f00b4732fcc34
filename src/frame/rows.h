// The row walk: row addresses from signed steps, rows one at a time or in
// 4:2:0 pairs, the alignment test, and the forms without steps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <type_traits>

#include "frame/arith.h"

namespace kel {

// Internal linkage, as in frame/arith.h: per-ISA files include this too.
namespace {

// Row r of a plane: the pointer plus r times the step, the step widened
// with its sign before the product.
template <class T>
inline T* rowAt(T* p, int step, int r) {
  using Byte = typename std::conditional<std::is_const<T>::value, const char, char>::type;
  return reinterpret_cast<T*>(reinterpret_cast<Byte*>(p) + static_cast<ptrdiff_t>(step) * r);
}
// The same for a pixel or byte offset inside a row.
template <class T>
inline T* byteOffset(T* p, ptrdiff_t bytes) {
  using Byte = typename std::conditional<std::is_const<T>::value, const char, char>::type;
  return reinterpret_cast<T*>(reinterpret_cast<Byte*>(p) + bytes);
}

// Sample i of a run that starts at byte address p. Steps are bytes, so a
// 16-bit or float row may start off its sample boundary: samples move by
// memcpy (plain unaligned moves), never through a typed pointer.
template <class T>
inline T loadAt(const void* p, ptrdiff_t i = 0) {
  T v;
  std::memcpy(&v, static_cast<const char*>(p) + i * static_cast<ptrdiff_t>(sizeof(T)), sizeof(T));
  return v;
}
template <class T>
inline void storeAt(void* p, T v, ptrdiff_t i = 0) {
  std::memcpy(static_cast<char*>(p) + i * static_cast<ptrdiff_t>(sizeof(T)), &v, sizeof(T));
}

// Rows 0 .. h-1 on the caller's thread.
template <class F>
inline void forRows(int h, F&& f) {
  for (int r = 0; r < h; ++r) f(r);
}
// 4:2:0 row pairs: pair k covers full-resolution rows 2k, 2k+1 and chroma
// row k; a last odd row is not visited.
template <class F>
inline void forRowPairs(int h, F&& f) {
  const int pairs = h >> 1;
  for (int k = 0; k < pairs; ++k) f(k);
}

// The alignment test: every pointer and every step a multiple of 16 bytes.
inline bool isAligned16(const void* p) { return (reinterpret_cast<uintptr_t>(p) & 15) == 0; }
inline bool isAligned16(int step) { return (step & 15) == 0; }
inline bool allAligned16(std::initializer_list<const void*> ptrs, std::initializer_list<int> steps) {
  for (const void* p : ptrs)
    if (!isAligned16(p)) return false;
  for (int s : steps)
    if (!isAligned16(s)) return false;
  return true;
}

}  // namespace

// ---- forms without steps ---------------------------------------------
// 4:2:0 images: interleaved 3*w, full planes w, chroma planes w >> 1.
struct TightSteps {
  int c3, full, chroma;
};
namespace {
inline TightSteps tight420(int w) { return {3 * w, w, w >> 1}; }
// 4:2:2 images on the per-row path: chroma planes hold (w >> 1) + (w & 1).
inline TightSteps tight422(int w) { return {3 * w, w, (w >> 1) + (w & 1)}; }

// A 4:2:2 image without steps of 256 or more pixels (32-bit product) with
// an even width is one long row.
inline bool isLongRow422(KeliSize roi) { return area32(roi.width, roi.height) >= 256 && !(roi.width & 1); }
// The long row runs the row routine once on N with its low 3 bits cleared
// and, if any are left, once more on the N & 7 pixels behind them. The body
// and tail rule of the routine applies to each call. f(pixelOffset, count).
template <class F>
inline void forLongRow(int32_t n, F&& f) {
  const int32_t head = n & ~7;
  if (head) f(0, head);
  if (n & 7) f(head, n & 7);
}

}  // namespace
}  // namespace kel
