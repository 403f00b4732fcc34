#include "frame/arith.h"

namespace kel {
namespace {
constexpr ChopTable makeChop() {
  ChopTable c{};
  for (int i = 0; i < 1000; ++i) c.t[i] = static_cast<uint8_t>(clip8(i - kChopBias));
  return c;
}
}  // namespace

alignas(64) extern const ChopTable kChopTable = makeChop();

}  // namespace kel
