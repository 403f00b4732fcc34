// Rows of subsampled images: one 4:2:2 row, or one 4:2:0 row pair (two
// full-resolution rows and the chroma row they share), with up to three
// planes per row on each side.
//
// A row routine over these runs its body through the vector kernels of the
// active path (widest first), then the scalar definition of the body formula
// for the body pixels they leave, then its tail.
#pragma once

#include <cstdint>

#include "frame/cpu.h"
#include "frame/rows.h"

namespace kel {

// s[r][p], d[r][p]: plane p of row r of the pair (r = 0 only for one row).
// Interleaved images use plane 0; chroma planes of a 4:2:0 pair sit in row 0.
struct SubRows {
  const uint8_t* s[2][3];
  uint8_t* d[2][3];
  int alpha;  // fourth byte of four-byte pixels, where a member writes one
};

// A vector kernel: converts pixels (full-resolution columns) from x on, in
// whole blocks, while a block fits below n; returns the column where it
// stopped. A 4:2:0 kernel converts both rows of its pair.
using KernSub = int (*)(const SubRows& io, int x, int n);
using ChainSub = Chain<KernSub>;


}  // namespace kel
