// Ordered dithering of 8-bit colours into the 4-, 5- and 6-bit fields of
// 16-bit pixels: a 4 by 4 threshold table indexed by the pixel's row and
// column within the region, [row & 3][column & 3].
#pragma once

#include <cstdint>

namespace kel {
namespace {
namespace dither16 {

// 4-bit fields: 289 times the Bayer ranks 0 8 2 10 / 12 4 14 6 / 3 11 1 9 / 15 7 13 5.
constexpr int32_t kThresh4[4][4] = {
    {0, 2312, 578, 2890}, {3468, 1156, 4046, 1734}, {867, 3179, 289, 2601}, {4335, 2023, 3757, 1445}};
// 5-bit fields, same ranks; 6-bit fields use half of it.
constexpr int32_t kThresh5[4][4] = {
    {0, 1118, 279, 1398}, {1678, 559, 1957, 839}, {419, 1538, 139, 1258}, {2097, 978, 1817, 699}};

// One field of `Bits` bits. `Mul` maps 0..255 to the level below the value;
// `Step` is 256 times one field step in 8-bit units (255 / (2^Bits - 1)),
// cut to an integer; the remainder above the level is compared with the
// threshold, strictly. The level is at most 2^Bits - 2, so the field never
// overflows.
template <int Bits>
struct Field;
template <>
struct Field<4> {
  static constexpr int kMul = 15, kStep = 4352;
  static int32_t thresh(int r, int c) { return kThresh4[r & 3][c & 3]; }
};
template <>
struct Field<5> {
  static constexpr int kMul = 31, kStep = 2105;
  static int32_t thresh(int r, int c) { return kThresh5[r & 3][c & 3]; }
};
template <>
struct Field<6> {
  static constexpr int kMul = 63, kStep = 1036;
  static int32_t thresh(int r, int c) { return kThresh5[r & 3][c & 3] >> 1; }
};

template <int Bits>
inline int32_t field(int32_t v, int r, int c) {
  using F = Field<Bits>;
  const int32_t level = (v * F::kMul) >> 8;
  const int32_t rest = (v << 8) - level * F::kStep;
  return rest > F::thresh(r, c) ? level + 1 : level;
}

// A row of a table spread over eight 16-bit lanes (columns 0..7), for the
// vector bodies, whose blocks start on columns that are multiples of 4.
struct ThreshRow {
  int16_t v[8];
};
template <int Bits>
constexpr ThreshRow threshRow(int r) {
  ThreshRow t{};
  for (int c = 0; c < 8; ++c) {
    const int32_t x = Bits == 4 ? kThresh4[r][c & 3] : (Bits == 5 ? kThresh5[r][c & 3] : kThresh5[r][c & 3] >> 1);
    t.v[c] = static_cast<int16_t>(x);
  }
  return t;
}
template <int Bits>
struct ThreshRows {
  static constexpr ThreshRow row[4] = {threshRow<Bits>(0), threshRow<Bits>(1), threshRow<Bits>(2), threshRow<Bits>(3)};
};

}  // namespace dither16
}  // namespace
}  // namespace kel
