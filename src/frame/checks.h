// The orders in which outer functions check their arguments. Where two
// faults are present, the first check in the order decides the status; no
// family writes anything before all its checks have passed.
//
//   A  argument pointers, size, then plane-array elements
//   B  all pointers (elements too), then size
//   C  all pointers, size, then steps >= 1
//   D  all pointers, steps >= 1, then size
//   E  the family's float range first, then C (the family tests its range)
//   F  pointers only; a size below 1 is "nothing to do" with kelStatusOk
//   G  all pointers, size, then the mode argument
#pragma once

#include <initializer_list>

#include "kelcc.h"

namespace kel {

// A plane-pointer array argument: the array itself and the number of
// elements its layout uses. A null array counts as a null pointer.
struct PlaneArray {
  const void* base;
  const void* const* elems;
  int n;
};
template <class T>
inline PlaneArray planes(T* const* a, int n) {
  return {static_cast<const void*>(a), reinterpret_cast<const void* const*>(a), n};
}

using Ptrs = std::initializer_list<const void*>;
using Arrays = std::initializer_list<PlaneArray>;
using Steps = std::initializer_list<int>;

namespace chk {
inline bool argsNull(Ptrs ptrs, Arrays arrays) {
  for (const void* p : ptrs)
    if (!p) return true;
  for (const PlaneArray& a : arrays)
    if (!a.base) return true;
  return false;
}
inline bool elemsNull(Arrays arrays) {
  for (const PlaneArray& a : arrays)
    for (int i = 0; i < a.n; ++i)
      if (!a.elems[i]) return true;
  return false;
}
inline bool anyNull(Ptrs ptrs, Arrays arrays) { return argsNull(ptrs, arrays) || elemsNull(arrays); }
inline bool sizeBelow(KeliSize roi, int minW, int minH) { return roi.width < minW || roi.height < minH; }
inline bool stepBelow1(Steps steps) {
  for (int s : steps)
    if (s < 1) return true;
  return false;
}
}  // namespace chk

inline KelStatus checkA(Ptrs ptrs, Arrays arrays, KeliSize roi, int minW = 1, int minH = 1) {
  if (chk::argsNull(ptrs, arrays)) return kelStatusNullPointer;
  if (chk::sizeBelow(roi, minW, minH)) return kelStatusBadSize;
  if (chk::elemsNull(arrays)) return kelStatusNullPointer;
  return kelStatusOk;
}

inline KelStatus checkB(Ptrs ptrs, Arrays arrays, KeliSize roi, int minW = 1, int minH = 1) {
  if (chk::anyNull(ptrs, arrays)) return kelStatusNullPointer;
  if (chk::sizeBelow(roi, minW, minH)) return kelStatusBadSize;
  return kelStatusOk;
}

inline KelStatus checkC(Ptrs ptrs, Arrays arrays, KeliSize roi, Steps steps, int minW = 1, int minH = 1) {
  if (chk::anyNull(ptrs, arrays)) return kelStatusNullPointer;
  if (chk::sizeBelow(roi, minW, minH)) return kelStatusBadSize;
  if (chk::stepBelow1(steps)) return kelStatusBadStep;
  return kelStatusOk;
}

inline KelStatus checkD(Ptrs ptrs, Arrays arrays, KeliSize roi, Steps steps, int minW = 1, int minH = 1) {
  if (chk::anyNull(ptrs, arrays)) return kelStatusNullPointer;
  if (chk::stepBelow1(steps)) return kelStatusBadStep;
  if (chk::sizeBelow(roi, minW, minH)) return kelStatusBadSize;
  return kelStatusOk;
}

// Order E: `rangeOk` is the family's own test of its float range.
inline KelStatus checkE(bool rangeOk, Ptrs ptrs, Arrays arrays, KeliSize roi, Steps steps) {
  if (!rangeOk) return kelStatusBadRange;
  return checkC(ptrs, arrays, roi, steps);
}

// Order F: only pointers are checked. The caller's row loop must then do
// nothing for a width or height below 1; `nothingToDo` tells it so.
inline KelStatus checkF(Ptrs ptrs, Arrays arrays) {
  return chk::anyNull(ptrs, arrays) ? kelStatusNullPointer : kelStatusOk;
}
inline bool nothingToDo(KeliSize roi) { return roi.width < 1 || roi.height < 1; }

inline KelStatus checkG(Ptrs ptrs, Arrays arrays, KeliSize roi, int minW, int minH, bool modeOk) {
  if (chk::anyNull(ptrs, arrays)) return kelStatusNullPointer;
  if (chk::sizeBelow(roi, minW, minH)) return kelStatusBadSize;
  if (!modeOk) return kelStatusBadArgument;
  return kelStatusOk;
}

// The final status of members with the odd-size warning, decided from the
// size in the call, not from what was processed.
inline KelStatus status420(KeliSize roi) {
  return ((roi.width | roi.height) & 1) ? kelStatusOddSizeTrimmed : kelStatusOk;
}
inline KelStatus status422(KeliSize roi) { return (roi.width & 1) ? kelStatusOddSizeTrimmed : kelStatusOk; }
inline KelStatus status411(KeliSize roi) { return (roi.width & 3) ? kelStatusOddSizeTrimmed : kelStatusOk; }

}  // namespace kel
