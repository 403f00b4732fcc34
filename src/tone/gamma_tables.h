// Constant tables of the gamma curve: a linear foot and a power law,
//   y = 4.5 x                  for x < 0.018,
//   y = 1.099 x^0.45 - 0.099   above,
// on the unit interval.
#pragma once

#include <cstdint>

namespace kel {

// The forward curve at the scale 255: entry i is 4.5 i for i up to 4 and
// 255 (1.099 (i / 255)^0.45 - 0.099) above, rounded to the nearest integer,
// halves to even (entries 1 and 3 are 4 and 14). Shared by every 8-bit
// forward gamma conversion.
extern const uint8_t tableFwd8u[256];

}  // namespace kel
