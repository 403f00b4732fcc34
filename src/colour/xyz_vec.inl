#include "frame/simd.h"
#include "colour/xyz.h"

namespace kel {
namespace KEL_ISA_NS {
extern const XyzKernels kXyzKernels = {};
}  // namespace KEL_ISA_NS
}  // namespace kel
