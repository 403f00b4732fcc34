#include "frame/simd.h"
#include "colour/gray.h"

namespace kel {
namespace KEL_ISA_NS {
extern const GrayKernels kGrayKernels = {};
}  // namespace KEL_ISA_NS
}  // namespace kel
