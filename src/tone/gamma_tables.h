// Constant tables of the gamma curve: a linear foot and a power law,
//   y = 4.5 x                  for x < 0.018,
//   y = 1.099 x^0.45 - 0.099   above,
// on the unit interval, and its inverse,
//   y = x / 4.5                          for x < 0.0812,
//   y = ((x + 0.099) / 1.099)^(1 / 0.45)  above.
// The two pieces of each curve do not meet exactly, so both curves step at
// their breakpoints; the tables keep those steps.
#pragma once

#include <cstdint>

#include "frame/cpu.h"

namespace kel {

// The forward curve at the scale 255: entry i is 4.5 i for i up to 4 and
// 255 (1.099 (i / 255)^0.45 - 0.099) above, rounded to the nearest integer,
// halves to even (entries 1 and 3 are 4 and 14). Shared by every 8-bit
// forward gamma conversion.
extern const uint8_t tableFwd8u[256];

// The inverse curve at the scale 255: entry i is i / 4.5 for i up to 20 and
// 255 ((i / 255 + 0.099) / 1.099)^(1 / 0.45) above, rounded to the nearest
// integer (no entry falls on a half).
extern const uint8_t tableInv8u[256];

// Bytes through a 256-entry table on the widest path of the call: the
// vector look-ups give the table entries themselves, so every path gives the
// scalar look-up's bytes. Take one per call (`byteLookUp()`), use it on
// every row.
using KernLut = int (*)(const uint8_t* s, uint8_t* d, int x, int n, const uint8_t* table);
struct ByteLookUp {
  Chain<KernLut> chain;
  void operator()(const uint8_t* s, uint8_t* d, int n, const uint8_t* table) const {
    int x = 0;
    for (KernLut k : chain.k)
      if (k) x = k(s, d, x, n, table);
    for (; x < n; ++x) d[x] = table[s[x]];
  }
};
ByteLookUp byteLookUp();

}  // namespace kel
