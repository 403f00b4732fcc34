// Three-channel 8-bit pixel conversions: the row routine shared by every
// family that maps three samples to three samples one pixel at a time
// (RGB <-> YUV, YCbCr, ... at full resolution).
//
// A row is a body run and a tail run. The body covers columns 0 .. body-1
// by the body formula; the vector kernels of the active path take as many
// whole blocks of it as they can (widest first) and the scalar definition of
// the body formula takes what is left of it. The tail formula covers the rest.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/cpu.h"
#include "kelcc.h"

namespace kel {

// Layouts of a three-channel row. P4A is three planes plus an alpha plane
// that receives the source alpha byte (AC4 -> P4 members). C4Ap and P4Ap
// are outputs of planar-alpha sources (AP4 -> C4, AP4 -> AP4): four
// interleaved samples or four planes whose fourth takes the source's alpha
// plane s[3]; on the input side such a source reads as P3.
enum class Lay : int { C3, AC4, P3, P4A, C4Ap, P4Ap };

// Row pointers of one row: interleaved layouts use element 0.
struct Row3 {
  const uint8_t* s[4];
  uint8_t* d[4];
};

// A vector kernel: converts pixels from x on, in whole blocks, while a block
// fits below n; returns the column where it stopped.
using Kern3 = int (*)(const Row3& io, int x, int n);

using Chain3 = Chain<Kern3>;

template <Lay L>
struct Px3;
template <>
struct Px3<Lay::C3> {
  static void get(const Row3& io, int x, int& a, int& b, int& c) {
    const uint8_t* p = io.s[0] + 3 * x;
    a = p[0], b = p[1], c = p[2];
  }
  static void put(const Row3& io, int x, int a, int b, int c) {
    uint8_t* p = io.d[0] + 3 * x;
    p[0] = static_cast<uint8_t>(a), p[1] = static_cast<uint8_t>(b), p[2] = static_cast<uint8_t>(c);
  }
};
template <>
struct Px3<Lay::AC4> {
  static void get(const Row3& io, int x, int& a, int& b, int& c) {
    const uint8_t* p = io.s[0] + 4 * x;
    a = p[0], b = p[1], c = p[2];
  }
  // The destination's fourth byte is left as it was.
  static void put(const Row3& io, int x, int a, int b, int c) {
    uint8_t* p = io.d[0] + 4 * x;
    p[0] = static_cast<uint8_t>(a), p[1] = static_cast<uint8_t>(b), p[2] = static_cast<uint8_t>(c);
  }
};
template <>
struct Px3<Lay::P3> {
  static void get(const Row3& io, int x, int& a, int& b, int& c) { a = io.s[0][x], b = io.s[1][x], c = io.s[2][x]; }
  static void put(const Row3& io, int x, int a, int b, int c) {
    io.d[0][x] = static_cast<uint8_t>(a), io.d[1][x] = static_cast<uint8_t>(b), io.d[2][x] = static_cast<uint8_t>(c);
  }
};
// Output side of AC4 -> P4: three planes, and the source alpha into d[3].
template <>
struct Px3<Lay::P4A> {
  static void put(const Row3& io, int x, int a, int b, int c) {
    Px3<Lay::P3>::put(io, x, a, b, c);
    io.d[3][x] = io.s[0][4 * x + 3];
  }
};

// ---- outputs of planar-alpha sources --------------------------------------
template <>
struct Px3<Lay::C4Ap> {
  static void put(const Row3& io, int x, int a, int b, int c) {
    uint8_t* p = io.d[0] + 4 * x;
    p[0] = static_cast<uint8_t>(a), p[1] = static_cast<uint8_t>(b), p[2] = static_cast<uint8_t>(c);
    p[3] = io.s[3][x];
  }
};
template <>
struct Px3<Lay::P4Ap> {
  static void put(const Row3& io, int x, int a, int b, int c) {
    Px3<Lay::P3>::put(io, x, a, b, c);
    io.d[3][x] = io.s[3][x];
  }
};

// One pixel through formula F: F::px(a, b, c, x, y, z).
template <Lay In, Lay Out, class F>
inline void px3(const Row3& io, int x) {
  int a, b, c, o0, o1, o2;
  Px3<In>::get(io, x, a, b, c);
  F::px(a, b, c, o0, o1, o2);
  Px3<Out>::put(io, x, o0, o1, o2);
}

// The row routine: body [0, body) then tail [body, w). A tail formula that is
// exact in 32-bit lanes may have vector kernels of its own (`tailChain`):
// they give the tail's bytes, only faster, for rows that are mostly tail.
template <Lay In, Lay Out, class Body, class Tail>
inline void row3(const Row3& io, int w, int body, const Chain3& chain, const Chain3& tailChain = {}) {
  int x = runChain(chain, io, 0, body);
  for (; x < body; ++x) px3<In, Out, Body>(io, x);
  for (x = runChain(tailChain, io, x, w); x < w; ++x) px3<In, Out, Tail>(io, x);
}

// The scalar definitions of a body, alone: what the vector kernels are held to.
template <Lay In, Lay Out, class Body>
inline int scalarBody3(const Row3& io, int x, int n) {
  for (; x < n; ++x) px3<In, Out, Body>(io, x);
  return x;
}

// Row r of an image whose planes share one step per side.
inline Row3 rowOf(const Row3& base, int srcStep, int dstStep, int r) {
  Row3 io{};
  for (int i = 0; i < 4; ++i) {
    io.s[i] = base.s[i] ? base.s[i] + static_cast<ptrdiff_t>(srcStep) * r : nullptr;
    io.d[i] = base.d[i] ? base.d[i] + static_cast<ptrdiff_t>(dstStep) * r : nullptr;
  }
  return io;
}

// The row driver of the per-pixel members: rows one by one on the caller's
// thread, each through row3.
template <Lay In, Lay Out, class Body, class Tail>
inline void myRows3(const Row3& base, int srcStep, int dstStep, KeliSize roi, int body, const Chain3& chain,
                    const Chain3& tailChain = {}) {
  for (int r = 0; r < roi.height; ++r)
    row3<In, Out, Body, Tail>(rowOf(base, srcStep, dstStep, r), roi.width, body, chain, tailChain);
}

}  // namespace kel
