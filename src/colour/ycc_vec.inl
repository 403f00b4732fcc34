#include "frame/simd.h"
#include "colour/ycc.h"

namespace kel {
namespace KEL_ISA_NS {
extern const YccKernels kYccKernels = {};
}  // namespace KEL_ISA_NS
}  // namespace kel
