// One row of an interleaved three-channel colour-model member, for the
// colour tests: converts pixels given as three samples each, and checks
// for AC4 that the destination's fourth sample stays as it was.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "kelcc.h"

namespace kt {

template <class T>
using PxFn = KelStatus (*)(const T*, int, T*, int, KeliSize);

template <class T>
struct RowOf {
  PxFn<T> f;
  int ch;
  int group;  // body = width with the low bits below `group` cleared; 0: none
  using Px = std::array<T, 3>;

  std::vector<Px> convert(const std::vector<Px>& px) const {
    const int w = static_cast<int>(px.size());
    std::vector<T> s(ch * w), d(ch * w);
    for (int x = 0; x < w; ++x) {
      for (int k = 0; k < 3; ++k) s[ch * x + k] = px[x][k];
      if (ch == 4) s[4 * x + 3] = T(x + 3), d[4 * x + 3] = T(100 + x);
    }
    const int bytes = ch * w * int(sizeof(T));
    EXPECT_EQ(f(s.data(), bytes, d.data(), bytes, {w, 1}), kelStatusOk);
    std::vector<Px> o(w);
    for (int x = 0; x < w; ++x) {
      for (int k = 0; k < 3; ++k) o[x][k] = d[ch * x + k];
      if (ch == 4) EXPECT_EQ(d[4 * x + 3], T(100 + x)) << "destination alpha kept";
    }
    return o;
  }
  int body(int w) const { return group ? w & ~(group - 1) : 0; }
  // A pixel through the body (a row of 16) and through the tail (a row of one).
  Px bodyOf(Px p) const { return convert(std::vector<Px>(16, p))[0]; }
  Px tailOf(Px p) const { return convert({p})[0]; }
};

}  // namespace kt
