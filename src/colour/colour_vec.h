// Kernel drivers of the colour models for the per-ISA files: 8-bit pixels
// on the integer lane words, 16-bit and float pixels on the float lane words.
// Include after defining KEL_ISA; everything here lives in the ISA's namespace.
#pragma once

#include "colour/colour_common.h"
#include "frame/simd.h"
#include "frame/simdf.h"

namespace kel {
namespace KEL_ISA_NS {
namespace colourv {

using v = V::v;
using f = F::f;
using fi = F::i;

// ---- 8u: 16 pixels per lane ------------------------------------------------
template <int Ch>
inline void load8(const uint8_t* p, v& a, v& b, v& c) {
  if constexpr (Ch == 3) {
    loadC3(p, a, b, c);
  } else {
    v alpha;
    loadC4(p, a, b, c, alpha);
  }
}
// An AC4 destination keeps its fourth byte: read back and written again.
template <int Ch>
inline void store8(uint8_t* p, v a, v b, v c) {
  if constexpr (Ch == 3) {
    storeC3(p, a, b, c);
  } else {
    v o0, o1, o2, alpha;
    loadC4(p, o0, o1, o2, alpha);
    storeC4(p, a, b, c, alpha);
  }
}
// Form::vec(a, b, c, x, y, z) maps 16 pixels per lane of 8-bit samples.
template <int Ch, class Form>
int kern8(const uint8_t* s, uint8_t* d, int x, int n) {
  constexpr int kBlock = 16 * V::kLanes;
  for (; x + kBlock <= n; x += kBlock) {
    v a, b, c, o0, o1, o2;
    prefetchAhead<Ch * kBlock>(s + Ch * x);
    load8<Ch>(s + Ch * x, a, b, c);
    Form::vec(a, b, c, o0, o1, o2);
    store8<Ch>(d + Ch * x, o0, o1, o2);
  }
  return x;
}

// The same with the three-byte moves by VBMI permutes where the build is
// AVX-512; tables for VBMI processors take these (`Vbmi` true). Four-byte
// pixels keep the lane-wise moves.
#if KEL_ISA == KEL_ISA_AVX512
template <class Form>
KEL_VBMI int kern8C3Vbmi(const uint8_t* s, uint8_t* d, int x, int n) {
  for (; x + 64 <= n; x += 64) {
    v a, b, c, o0, o1, o2;
    prefetchAhead<192>(s + 3 * x);
    loadC3Vbmi(s + 3 * x, a, b, c);
    Form::vec(a, b, c, o0, o1, o2);
    storeC3Vbmi(d + 3 * x, o0, o1, o2);
  }
  return x;
}
#endif
template <int Ch, class Form, bool Vbmi>
constexpr colour::KernPx<uint8_t> kern8For() {
#if KEL_ISA == KEL_ISA_AVX512
  if constexpr (Vbmi && Ch == 3) return kern8C3Vbmi<Form>;
#endif
  return kern8<Ch, Form>;
}

// A family's kernel table, built once per kind: KEL_COLOUR_TABLES(T, name,
// table) defines `name` from the template variable `table<false>` and, in
// the AVX-512 build, `name##Vbmi` from `table<true>`.
#if KEL_ISA == KEL_ISA_AVX512
#define KEL_COLOUR_TABLES(T, name, table) \
  extern const T name = table<false>;     \
  extern const T name##Vbmi = table<true>;
#else
#define KEL_COLOUR_TABLES(T, name, table) extern const T name = table<false>;
#endif

// ---- 16-bit and float: 4 pixels per lane ---------------------------------------
// How results reach the destination samples.
struct OutF {  // floats as they are (the form applies its own limits)
  template <class T, int Ch>
  static void put(T* p, f x, f y, f z) { storePx<Ch>(p, x, y, z); }
  template <class T>
  static void put1(T* p, f y) { F::store<16>(p, y); }
};
struct OutSat {  // truncated, saturated to the sample range (16s on its offset scale)
  template <class T>
  static fi prep(f a) {
    const fi t = F::cvtt(a);
    return std::is_same<T, int16_t>::value ? F::sub32(t, F::set32(32768)) : t;
  }
  template <class T>
  static fi pack(fi a, fi b) {
    if constexpr (std::is_same<T, int16_t>::value) return F::packs32(a, b);
    else return F::packus32(a, b);
  }
  template <class T, int Ch>
  static void put(T* p, f x, f y, f z) {
    storePx16<T, Ch>(p, prep<T>(x), prep<T>(y), prep<T>(z), [](fi a, fi b) { return pack<T>(a, b); });
  }
  template <class T>
  static void put1(T* p, f y) {
    const fi t = prep<T>(y);
    F::storei8<8>(p, pack<T>(t, t));
  }
};
struct OutWrap {  // truncated, the low 16 bits kept
  template <class T>
  static fi prep(f a) {
    const fi t = OutSat::prep<T>(a);
    return F::and_(t, F::set32(0xFFFF));
  }
  template <class T, int Ch>
  static void put(T* p, f x, f y, f z) {
    storePx16<T, Ch>(p, prep<T>(x), prep<T>(y), prep<T>(z), [](fi a, fi b) { return F::packus32(a, b); });
  }
  template <class T>
  static void put1(T* p, f y) {
    const fi t = prep<T>(y);
    F::storei8<8>(p, F::packus32(t, t));
  }
};

// Form::vec(a, b, c, x, y, z) maps 4 pixels per lane of float channels.
template <class T, int Ch, class Form, class Out>
int kernF(const T* s, T* d, int x, int n) {
  constexpr int kBlock = 4 * F::kLanes;
  for (; x + kBlock <= n; x += kBlock) {
    f a, b, c, o0, o1, o2;
    prefetchAhead<Ch * kBlock * static_cast<int>(sizeof(T))>(s + Ch * x);
    loadPx<T, Ch>(s + Ch * x, a, b, c);
    Form::vec(a, b, c, o0, o1, o2);
    Out::template put<T, Ch>(d + Ch * x, o0, o1, o2);
  }
  return x;
}

// a * k as the scalar forms write it (the product's operand order does not
// change an IEEE product; only the order of the sums matters).
inline f mulk(f a, float k) { return F::mul(F::set1(k), a); }

// Sums, differences and products in the written operand order: a lane whose
// operands are both NaN keeps the first one's payload, as with the scalar
// colour::addF and the like (a compiler may swap the operands of F::add and
// F::mul, or turn a - k * b into a + (-k) * b).
inline f addF(f a, f b) { KEL_COLOUR_OP(f, "add", "ps", a, b); }
inline f subF(f a, f b) { KEL_COLOUR_OP(f, "sub", "ps", a, b); }
inline f mulF(f a, f b) { KEL_COLOUR_OP(f, "mul", "ps", a, b); }

}  // namespace colourv
}  // namespace KEL_ISA_NS
}  // namespace kel
