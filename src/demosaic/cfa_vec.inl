// Vector bodies of the bilinear rows (see cfa.h for their scalar definitions).
#include "demosaic/cfa.h"
#include "frame/simd.h"

namespace kel {
namespace KEL_ISA_NS {

extern const CfaKernels kCfaKernels = {nullptr, nullptr};

}  // namespace KEL_ISA_NS
}  // namespace kel
